// The `objattrib` type: p.objattribs, the attributes of each objective.
#include "module/errors.h"
#include "module/globals.h"
#include "module/help.h"
#include "module/types.h"
#include "problem/control.h"

namespace zrv {

PyTypeObject ObjAttribType{};

namespace {

ProblemObject *Owner(PyObject *self) {
  ProblemObject *p = reinterpret_cast<ObjAttribObject *>(self)->problem;
  if (!p) {
    PyErr_SetString(InterfaceError, "Object is not initialized");
    return nullptr;
  }
  return NotInitialized(p) ? nullptr : p;
}

Py_ssize_t ObjAttribLength(PyObject *self) {
  ProblemObject *p = Owner(self);
  if (!p) return -1;
  PyObject *n = ReadValue(p, ZRVS_OBJECTIVES, kInt, kMain, false);
  if (!n) return -1;
  Py_ssize_t result = PyLong_AsSsize_t(n);
  Py_DECREF(n);
  return result;
}

PyObject *ObjAttribItem(PyObject *self, Py_ssize_t) {
  if (!Owner(self)) return nullptr;
  PyErr_SetString(ModelError, "Attributes of single objectives are not available yet");
  return nullptr;
}

void ObjAttribDealloc(PyObject *self) { Py_TYPE(self)->tp_free(self); }

PySequenceMethods ObjAttribSequence{};

}  // namespace

PyObject *NewObjAttribView(ProblemObject *p) {
  auto *o = PyObject_New(ObjAttribObject, &ObjAttribType);
  if (!o) return nullptr;
  o->problem = p;
  return reinterpret_cast<PyObject *>(o);
}

void SetupObjAttribType() {
  PyTypeObject &t = ObjAttribType;
  InitType(t, "zorvan.objattrib", sizeof(ObjAttribObject));
  t.tp_dealloc = ObjAttribDealloc;
  ObjAttribSequence.sq_length = ObjAttribLength;
  ObjAttribSequence.sq_item = ObjAttribItem;
  t.tp_as_sequence = &ObjAttribSequence;
  t.tp_doc = ZRV_HELP(
      "The attributes of each objective of a multi-objective problem.",
      "len(p.objattribs); p.objattribs[i].<name>",
      "i: the objective index, from 0 to len(p.objattribs) - 1.",
      "p = zorvan.problem(); print(len(p.objattribs))",
      "len() gives the number of objectives of the problem.",
      "problem, problem.attributes");
}

}  // namespace zrv
