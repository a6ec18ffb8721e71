// The `objattrib` type: p.objattribs, the attributes of each objective.
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "controls/control.h"

namespace zrv {

PyTypeObject ObjAttribType{};

namespace {

ProblemHandles *Owner(PyObject *self) {
  ProblemHandles *p = reinterpret_cast<ObjAttribObject *>(self)->problem;
  if (!p) {
    PyErr_SetString(InterfaceError, "Object is not initialized");
    return nullptr;
  }
  return NotInitialized(p) ? nullptr : p;
}

Py_ssize_t Objectives(ProblemHandles *p) {
  PyObject *n = ReadValue(p, ZRVS_OBJECTIVES, kInt, kMain, false);
  if (!n) return -1;
  Py_ssize_t result = PyLong_AsSsize_t(n);
  Py_DECREF(n);
  return result;
}

Py_ssize_t ObjAttribLength(PyObject *self) {
  ProblemHandles *p = Owner(self);
  return p ? Objectives(p) : -1;
}

PyObject *ObjAttribItem(PyObject *self, Py_ssize_t i) {
  auto *o = reinterpret_cast<ObjAttribObject *>(self);
  ProblemHandles *p = Owner(self);
  if (!p) return nullptr;
  Py_ssize_t n = Objectives(p);
  if (n < 0) return nullptr;
  if (i < 0 || i >= n || i > INT32_MAX) {
    PyErr_SetString(ModelError, "Invalid objective index");
    return nullptr;
  }
  if (!o->cache && !(o->cache = PyList_New(0))) return nullptr;
  while (PyList_GET_SIZE(o->cache) < n)
    if (PyList_Append(o->cache, Py_None) < 0) return nullptr;
  PyObject *view = PyList_GET_ITEM(o->cache, i);
  if (view == Py_None) {
    view = NewAttributeView(p, static_cast<int32_t>(i));
    if (!view) return nullptr;
    PyList_SetItem(o->cache, i, view);  // steals the new view
  }
  return Py_NewRef(view);
}

// objattribs[i] with the index as given: a negative one is refused rather
// than counted from the end.
PyObject *ObjAttribSubscript(PyObject *self, PyObject *key) {
  Py_ssize_t i = PyNumber_AsSsize_t(key, PyExc_IndexError);
  if (i == -1 && PyErr_Occurred()) return nullptr;
  if (i < 0) {
    if (!Owner(self)) return nullptr;
    PyErr_SetString(ModelError, "Invalid objective index");
    return nullptr;
  }
  return ObjAttribItem(self, i);
}

// iter(p.objattribs): the views of the objectives there are now (indexing
// past the end raises ModelError, which would end a plain sequence walk with
// an error).
PyObject *ObjAttribIter(PyObject *self) {
  ProblemHandles *p = Owner(self);
  if (!p) return nullptr;
  Py_ssize_t n = Objectives(p);
  if (n < 0) return nullptr;
  PyObject *views = PyList_New(0);
  for (Py_ssize_t i = 0; views && i < n; ++i) {
    PyObject *view = ObjAttribItem(self, i);
    if (!view || PyList_Append(views, view) < 0) Py_CLEAR(views);
    Py_XDECREF(view);
  }
  if (!views) return nullptr;
  PyObject *iter = PyObject_GetIter(views);
  Py_DECREF(views);
  return iter;
}

PyObject *ObjAttribRepr(PyObject *self) {
  ProblemHandles *p = Owner(self);
  if (!p) return nullptr;
  Py_ssize_t n = Objectives(p);
  if (n < 0) return nullptr;
  PyObject *all = PyList_New(0);
  if (!all) return nullptr;
  for (Py_ssize_t i = 0; i < n && i <= INT32_MAX; ++i) {
    PyObject *values = ReadAllValues(p, AttributeDict, false, static_cast<int>(i), true);
    if (!values || PyList_Append(all, values) < 0) {
      Py_XDECREF(values);
      Py_DECREF(all);
      return nullptr;
    }
    Py_DECREF(values);
  }
  PyObject *text = PyUnicode_FromFormat("%S", all);
  Py_DECREF(all);
  return text;
}

void ObjAttribDealloc(PyObject *self) {
  Py_CLEAR(reinterpret_cast<ObjAttribObject *>(self)->cache);
  Py_TYPE(self)->tp_free(self);
}

PySequenceMethods ObjAttribSequence{};
PyMappingMethods ObjAttribMapping{};

}  // namespace

PyObject *NewObjAttribView(ProblemHandles *p) {
  auto *o = PyObject_New(ObjAttribObject, &ObjAttribType);
  if (!o) return nullptr;
  o->problem = p;
  o->cache = nullptr;
  return reinterpret_cast<PyObject *>(o);
}

void SetupObjAttribType() {
  PyTypeObject &t = ObjAttribType;
  InitType(t, "zorvan.objattrib", sizeof(ObjAttribObject));
  t.tp_dealloc = ObjAttribDealloc;
  t.tp_repr = ObjAttribRepr;
  ObjAttribSequence.sq_length = ObjAttribLength;
  ObjAttribSequence.sq_item = ObjAttribItem;
  t.tp_as_sequence = &ObjAttribSequence;
  ObjAttribMapping.mp_length = ObjAttribLength;
  ObjAttribMapping.mp_subscript = ObjAttribSubscript;
  t.tp_as_mapping = &ObjAttribMapping;
  t.tp_iter = ObjAttribIter;
  t.tp_doc = ZRV_HELP(
      "The attributes of each objective of a multi-objective problem.",
      "len(p.objattribs); p.objattribs[i].<name>",
      "i: the objective index, from 0 to len(p.objattribs) - 1.",
      "p = zorvan.problem(); print(len(p.objattribs), p.objattribs[0].lpobjval)",
      "len() gives the number of objectives; p.objattribs[i] is an attribute view that "
      "reads the results of objective i (string and nonlinear attributes excepted).",
      "problem, problem.attributes");
}

}  // namespace zrv
