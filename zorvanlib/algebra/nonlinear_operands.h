// The operators where modelling objects and nonlinear nodes meet: binary
// operations whose result leaves degree two, and the slots (abs, &, |) that
// always build a node.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// The nonlinear type's own binary operations. When the operation is not
// provided there, the node is built directly from the operator table.
enum class NlBin { Add, Subtract, Multiply, Divide, Power };
PyObject *NonlinearBinary(NlBin which, PyObject *a, PyObject *b);
// A node of the operator code over the two operands (numbers made plain).
PyObject *NonlinearNode(int op, PyObject *a, PyObject *b);

// Slots shared by var, linterm, quadterm and expression.
PyObject *ModelAbsolute(PyObject *self);
PyObject *ModelAnd(PyObject *a, PyObject *b);
PyObject *ModelOr(PyObject *a, PyObject *b);

}  // namespace zrv
