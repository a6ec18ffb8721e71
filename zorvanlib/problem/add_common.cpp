// Shared steps of the adders: walking nested arguments, reading counts and
// undoing the recording of objects.
#include <new>

#include "problem/arguments.h"
#include "model/constraint.h"
#include "model/sos.h"
#include "model/var.h"
#include "base/limits.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/types.h"
#include "base/arrays.h"
#include "problem/add_objects.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

bool IsLeaf(PyObject *o) {
  PyTypeObject *t = Py_TYPE(o);
  return t == &VarType || t == &ConstraintType || t == &SosType || PyUnicode_Check(o) ||
         PyBytes_Check(o) || PyObject_TypeCheck(o, &ExpressionType) || t == &LinTermType ||
         t == &QuadTermType || PyObject_TypeCheck(o, &NonlinearType) || PyLong_Check(o) ||
         PyFloat_Check(o);
}

}  // namespace

int FlattenObjects(PyObject *obj, OwnedObjects &out, int depth, const char *too_deep) {
  if (IsLeaf(obj)) {
    Py_INCREF(obj);
    out.Push(obj);
    return 0;
  }
  if (depth >= kArgumentNesting) {
    PyErr_SetString(ModelError, too_deep ? too_deep
                                          : "Sequences of objects are nested too deeply (32 levels at most)");
    return -1;
  }
  if (PyList_Check(obj) || PyTuple_Check(obj)) {
    // The list may change while it is walked: read its size every time.
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(obj); ++i) {
      PyObject *item = PySequence_Fast_GET_ITEM(obj, i);
      Py_INCREF(item);
      int rc = FlattenObjects(item, out, depth + 1, too_deep);
      Py_DECREF(item);
      if (rc < 0) return -1;
    }
    return 0;
  }
  // Arrays of objects in one pass over their elements, any shape or layout;
  // other arrays are walked as iterables below.
  int array = ForEachArrayObject(
      obj, [&](PyObject *item) { return FlattenObjects(item, out, depth + 1, too_deep); });
  if (array != 1) return array;
  PyObject *source = PyDict_Check(obj) ? PyDict_Values(obj) : nullptr;
  if (PyDict_Check(obj) && !source) return -1;
  PyObject *iter = PyObject_GetIter(source ? source : obj);
  Py_XDECREF(source);
  if (!iter) {
    if (!PyErr_ExceptionMatches(PyExc_TypeError)) return -1;
    PyErr_Clear();  // not iterable: a leaf, judged by the caller
    Py_INCREF(obj);
    out.Push(obj);
    return 0;
  }
  int rc = 0;
  while (PyObject *item = PyIter_Next(iter)) {
    rc = FlattenObjects(item, out, depth + 1, too_deep);
    Py_DECREF(item);
    if (rc < 0) break;
  }
  Py_DECREF(iter);
  if (rc == 0 && PyErr_Occurred()) rc = -1;
  return rc;
}

uint64_t MapKey(PyObject *o, ModelObjectKind kind) {
  switch (kind) {
    case ModelObjectKind::Variable: return VarIdOf(o);
    case ModelObjectKind::Constraint: return ConId(reinterpret_cast<ConstraintObject *>(o)->word);
    case ModelObjectKind::Sos: return reinterpret_cast<SosObject *>(o)->word;
  }
  return 0;
}

int RecordIndex(IndexMap *map, uint64_t id, int32_t pos, const char *already) {
  try {
    if (map->Insert(id, pos)) return 0;
    PyErr_SetString(ModelError, already);
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
  }
  return -1;
}

IndexMap *MapOf(ProblemObject *p, ModelObjectKind kind) {
  switch (kind) {
    case ModelObjectKind::Variable: return p->colmap;
    case ModelObjectKind::Constraint: return p->rowmap;
    case ModelObjectKind::Sos: return p->setmap;
  }
  return nullptr;
}

PyObject *ListOf(ProblemObject *p, ModelObjectKind kind) {
  switch (kind) {
    case ModelObjectKind::Variable: return p->varlist;
    case ModelObjectKind::Constraint: return p->conlist;
    case ModelObjectKind::Sos: return p->soslist;
  }
  return nullptr;
}

void ForgetTail(ProblemObject *p, ModelObjectKind kind, Py_ssize_t from) {
  PyObject *list = ListOf(p, kind);
  IndexMap *map = MapOf(p, kind);
  if (!list) return;
  Py_ssize_t n = PyList_GET_SIZE(list);
  if (from >= n) return;
  if (map)
    for (Py_ssize_t i = from; i < n; ++i) map->Erase(MapKey(PyList_GET_ITEM(list, i), kind));
  // Keep a pending error across the list change.
  PyObject *type, *value, *trace;
  PyErr_Fetch(&type, &value, &trace);
  if (PyList_SetSlice(list, from, n, nullptr) < 0) PyErr_Clear();
  PyErr_Restore(type, value, trace);
}

}  // namespace zrv
