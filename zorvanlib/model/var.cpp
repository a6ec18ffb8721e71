#include "model/var.h"

#include "module/globals.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject VarType{};

namespace {

PyObject *VarNew(PyTypeObject *type, PyObject *, PyObject *) {
  // Allocation alone leaves the word 0: an uninitialized variable.
  return type->tp_alloc(type, 0);
}

int VarInit(PyObject *self, PyObject *args, PyObject *kwds) {
  if (PyTuple_GET_SIZE(args) > 0 || (kwds && PyDict_GET_SIZE(kwds) > 0)) {
    PyErr_SetString(ModelError,
                    "Variable names, bounds and types are not available yet: use var()");
    return -1;
  }
  reinterpret_cast<VarObject *>(self)->word = NextVarId() & kVarIdMask;
  return 0;
}

PyObject *VarRepr(PyObject *self) {
  // The default name of a variable is "C" followed by its identifier.
  return PyUnicode_FromFormat("C%llu", static_cast<unsigned long long>(
                                           VarId(reinterpret_cast<VarObject *>(self)->word)));
}

Py_hash_t VarHash(PyObject *self) {
  return static_cast<Py_hash_t>(reinterpret_cast<VarObject *>(self)->word & 0xffffffffu);
}

}  // namespace

void SetupVarType() {
  PyTypeObject &t = VarType;
  InitType(t, "zorvan.var", sizeof(VarObject));
  t.tp_new = VarNew;
  t.tp_init = VarInit;
  t.tp_repr = VarRepr;
  t.tp_str = VarRepr;
  t.tp_hash = VarHash;
  t.tp_doc = ZRV_HELP(
      "A decision variable of an optimization problem.",
      "x = zorvan.var(name=None, lb=0, ub=zorvan.infinity, threshold=-zorvan.infinity, "
      "vartype=zorvan.continuous)",
      "name: optional name; lb, ub: bounds; threshold: semi-continuous threshold; "
      "vartype: zorvan.continuous, binary, integer, semicontinuous, semiinteger or "
      "partiallyinteger. For now only var() without arguments is available.",
      "x = zorvan.var()",
      "Each variable gets a serial identifier, starting at 1, that names it (C1, C2, ...).",
      "problem, expression, constraint");
}

}  // namespace zrv
