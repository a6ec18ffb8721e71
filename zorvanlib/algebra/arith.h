// Arithmetic of variables, terms and expressions: one routine per operator
// decides the result type from the kinds of both operands.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

PyObject *ModelAdd(PyObject *a, PyObject *b);
PyObject *ModelSubtract(PyObject *a, PyObject *b);
PyObject *ModelMultiply(PyObject *a, PyObject *b);
PyObject *ModelDivide(PyObject *a, PyObject *b);
PyObject *ModelPower(PyObject *a, PyObject *b, PyObject *mod);
PyObject *ModelNegative(PyObject *a);

// Fills the number slots and the comparison slot of var, linterm, quadterm
// and expression (with its in-place accumulation) and the comparison slot of
// nonlinear. Called at start-up after the types are set up and before they
// are made ready.
void InstallOperators();
// Lets NumPy scalars on the left of var, linterm, quadterm and expression
// hand their operators over to these types (arrays keep theirs). After the
// types are ready. 0 or -1.
int DeferNumpyScalars();

}  // namespace zrv
