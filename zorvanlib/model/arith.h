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

// Fills the number slots of var, linterm and quadterm (expression false) or
// of expression (expression true, with its in-place accumulation).
void FillNumberMethods(PyNumberMethods &m, bool expression);

// extractQuadratic of objects without quadratic part: three empty lists.
PyObject *EmptyQuadratic(PyObject *self, PyObject *);

}  // namespace zrv
