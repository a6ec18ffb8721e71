// The `sos` type: a special ordered set of variables with weights.
#include "model/sos.h"

#include <cstddef>

#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

#include <structmember.h>

namespace zrv {

PyTypeObject SosType{};

namespace {

inline SosObject *Sos(PyObject *o) { return reinterpret_cast<SosObject *>(o); }

// The allocation slot takes an identifier, which initialisation replaces.
PyObject *SosAlloc(PyTypeObject *type, Py_ssize_t n) {
  PyObject *o = PyType_GenericAlloc(type, n);
  if (o) {
    Sos(o)->word = NextSosId();
    Sos(o)->type = 1;
  }
  return o;
}

int SosInit(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *kwlist[] = {"indices", "weights", "type", "name", nullptr};
  SosObject *s = Sos(self);
  PyObject *indices, *weights, *type = nullptr, *name = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "OO|OO", const_cast<char **>(kwlist), &indices,
                                   &weights, &type, &name))
    return -1;
  s->word = NextSosId();
  if (name && name != Py_None) {
    Py_INCREF(name);
  } else {
    name = PyUnicode_FromFormat("sos%d", static_cast<int>(s->word));
    if (!name) return -1;
  }
  Py_XSETREF(s->name, name);
  long t = 1;
  if (type) {
    t = PyLong_AsLong(type);
    if (t == -1 && PyErr_Occurred()) return -1;
    if (t != 1 && t != 2) {
      PyErr_SetString(ModelError, "SOS type must be 1 or 2");
      return -1;
    }
  }
  if (!PyList_Check(weights)) {
    PyErr_SetString(ModelError, "SOS weights must be passed as a list");
    return -1;
  }
  if (!PyList_Check(indices)) {
    PyErr_SetString(ModelError, "SOS indices must be passed as a list");
    return -1;
  }
  s->type = static_cast<int32_t>(t);
  Py_INCREF(indices);
  Py_XSETREF(s->indices, indices);
  Py_INCREF(weights);
  Py_XSETREF(s->weights, weights);
  return 0;
}

void SosDealloc(PyObject *self) {
  SosObject *s = Sos(self);
  Py_CLEAR(s->name);
  Py_CLEAR(s->indices);
  Py_CLEAR(s->weights);
  Py_TYPE(self)->tp_free(self);
}

PyObject *SosStr(PyObject *self) {
  PyObject *name = Sos(self)->name;
  if (!name) return PyUnicode_FromFormat("sos%d", static_cast<int>(Sos(self)->word));
  return PyObject_Str(name);
}

PyObject *SosCopy(PyObject *self, PyObject *) {
  SosObject *s = Sos(self);
  PyObject *r = PyType_GenericAlloc(&SosType, 0);
  if (!r) return nullptr;
  SosObject *c = Sos(r);
  c->word = NextSosId();
  c->type = s->type;
  c->indices = s->indices ? PyList_GetSlice(s->indices, 0, PyList_GET_SIZE(s->indices))
                          : PyList_New(0);
  c->weights = s->weights ? PyList_GetSlice(s->weights, 0, PyList_GET_SIZE(s->weights))
                          : PyList_New(0);
  c->name = PyUnicode_FromFormat("sos%d_copy_%S", static_cast<int>(s->word),
                                 s->name ? s->name : Py_None);
  if (!c->indices || !c->weights || !c->name) Py_CLEAR(r);
  return r;
}

PyMethodDef SosMethods[] = {
    {"copy", SosCopy, METH_NOARGS,
     ZRV_HELP("A copy of the set.", "s2 = s.copy()", "None.",
              "s = zorvan.sos([x, y, z], [1, 2, 3], type=2, name='route')\n    t = s.copy()"
              "  # named sos<id>_copy_route",
              "The copy has a new identifier, the same type and new lists holding the same "
              "variables and weights.",
              "sos, problem.addSOS")},
    {nullptr, nullptr, 0, nullptr}};

PyMemberDef SosMembers[] = {{"name", T_OBJECT, offsetof(SosObject, name), 0, "SOS's name"},
                            {nullptr, 0, 0, 0, nullptr}};

}  // namespace

void SetupSosType() {
  PyTypeObject &t = SosType;
  InitType(t, "zorvan.sos", sizeof(SosObject));
  t.tp_alloc = SosAlloc;
  t.tp_init = SosInit;
  t.tp_dealloc = SosDealloc;
  t.tp_repr = SosStr;
  t.tp_str = SosStr;
  t.tp_methods = SosMethods;
  t.tp_members = SosMembers;
  t.tp_doc = ZRV_HELP(
      "A special ordered set of type 1 (at most one variable nonzero) or type 2 (at most "
      "two consecutive variables nonzero).",
      "s = zorvan.sos(indices, weights, type=1, name=None)",
      "indices: a list of variables; weights: a list of distinct weights ordering them; "
      "type: 1 or 2; name: any object, by default sos<identifier>.",
      "s = zorvan.sos([x1, x2, x3], [1.0, 2.0, 3.0], type=2)",
      "The lists' contents are checked when the set is added to a problem. The name may be "
      "reassigned; copy() gives an independent copy.",
      "problem.addSOS, var, constraint");
}

}  // namespace zrv
