// problem.getVariable, getConstraint, getSOS and getIndex: from indices to
// objects and back.
#include "problem/arguments.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "problem/add_objects.h"

namespace zrv {

namespace {

const char *const kGetKeywords[] = {"index", "first", "last", nullptr};

PyObject *Get(PyObject *self, PyObject *args, PyObject *kwds, ModelObjectKind kind) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  PyObject *index = nullptr;
  int first = -1, last = -1;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|Oii", const_cast<char **>(kGetKeywords), &index,
                                   &first, &last))
    return nullptr;
  bool has_index = index && index != Py_None;
  if (has_index && (first >= 0 || last >= 0)) {
    PyErr_SetString(ModelError,
                    "Parameters 'first' and 'last' cannot be specified if 'index' is also "
                    "specified");
    return nullptr;
  }
  if ((first >= 0) != (last >= 0)) {
    PyErr_SetString(ModelError,
                    "Parameters 'first' and 'last' must be both nonnegative when specified");
    return nullptr;
  }
  PyObject *list = ListOf(p, kind);
  const Py_ssize_t size = PyList_GET_SIZE(list);
  if (first >= 0) {
    if (first > last) {
      PyErr_SetString(ModelError, "Parameter 'first' must be less than, or equal to, 'last'");
      return nullptr;
    }
    if (first >= size || last >= size) {
      PyErr_SetString(ModelError, "Parameters 'first' and 'last' are out of range");
      return nullptr;
    }
    return PyList_GetSlice(list, first, last + 1);
  }
  if (!has_index) return PyList_GetSlice(list, 0, size);
  if (IsIntegerObject(index)) {
    Py_ssize_t i = PyNumber_AsSsize_t(index, PyExc_IndexError);
    if (i == -1 && PyErr_Occurred()) return nullptr;
    return PySequence_GetItem(list, i);
  }
  if (PyUnicode_Check(index) || PyBytes_Check(index)) {
    PyErr_SetString(ModelError, "Error in index list(s): must contain only integers");
    return nullptr;
  }
  OwnedObjects items;
  if (FlattenObjects(index, items) < 0) return nullptr;
  PyObject *result = PyList_New(items.size());
  if (!result) return nullptr;
  for (Py_ssize_t k = 0; k < items.size(); ++k) {
    if (!IsIntegerObject(items[k])) {
      Py_DECREF(result);
      PyErr_SetString(ModelError, "Error in index list(s): must contain only integers");
      return nullptr;
    }
    Py_ssize_t i = PyNumber_AsSsize_t(items[k], PyExc_IndexError);
    PyObject *o = i == -1 && PyErr_Occurred() ? nullptr : PySequence_GetItem(list, i);
    if (!o) {
      Py_DECREF(result);
      return nullptr;
    }
    PyList_SET_ITEM(result, k, o);
  }
  return result;
}

}  // namespace

PyObject *ProblemGetVariable(PyObject *self, PyObject *args, PyObject *kwds) {
  return Get(self, args, kwds, ModelObjectKind::Variable);
}
PyObject *ProblemGetConstraint(PyObject *self, PyObject *args, PyObject *kwds) {
  return Get(self, args, kwds, ModelObjectKind::Constraint);
}
PyObject *ProblemGetSos(PyObject *self, PyObject *args, PyObject *kwds) {
  return Get(self, args, kwds, ModelObjectKind::Sos);
}

PyObject *ProblemGetIndex(PyObject *self, PyObject *obj) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  PyTypeObject *t = Py_TYPE(obj);
  int code = t == &VarType ? ElemColumn : t == &ConstraintType ? ElemRow
                                        : t == &SosType        ? ElemSet
                                                               : -1;
  if (code < 0) {
    PyErr_SetString(ModelError, "Incorrect object(s) passed: need variable, constraint, or SOS");
    return nullptr;
  }
  int32_t index;
  if (ObjectToIndex(obj, p, &index, code) < 0) return nullptr;
  return PyLong_FromLong(index);
}

#define ZRV_GET_ARGS(what)                                                                 \
  "index: an index or a (nested) sequence of indices of " what "; first, last: an "     \
  "inclusive range of indices, instead of index. With no argument, all of them."

const char GetVariableDoc[] = ZRV_HELP(
    "Return variables of the problem by their column index.",
    "v = p.getVariable(index=None, first=-1, last=-1)", ZRV_GET_ARGS("variables"),
    "x0 = p.getVariable(0)\n    some = p.getVariable([0, 2])\n    all_vars = p.getVariable()",
    "An integer index gives one variable; a sequence or a range gives a new list.",
    "problem.getIndex, problem.getConstraint, problem.getSOS, problem.addVariable");

const char GetConstraintDoc[] = ZRV_HELP(
    "Return constraints of the problem by their row index.",
    "c = p.getConstraint(index=None, first=-1, last=-1)", ZRV_GET_ARGS("constraints"),
    "first_rows = p.getConstraint(first=0, last=2)",
    "An integer index gives one constraint; a sequence or a range gives a new list.",
    "problem.getIndex, problem.getVariable, problem.addConstraint");

const char GetSosDoc[] = ZRV_HELP(
    "Return special ordered sets of the problem by their set index.",
    "s = p.getSOS(index=None, first=-1, last=-1)", ZRV_GET_ARGS("sets"),
    "s0 = p.getSOS(0)",
    "An integer index gives one set; a sequence or a range gives a new list.",
    "problem.getIndex, problem.addSOS");

const char GetIndexDoc[] = ZRV_HELP(
    "Return the index of a variable, constraint or SOS in the problem.",
    "i = p.getIndex(obj)",
    "obj: a var (its column), a constraint (its row) or an sos (its set) of this problem.",
    "p.addVariable(x, y)\n    p.getIndex(y)  # 1",
    "Indices change when objects before them are deleted. An object that is not in the "
    "problem raises ModelError.",
    "problem.getVariable, problem.getConstraint, problem.getSOS");

}  // namespace zrv
