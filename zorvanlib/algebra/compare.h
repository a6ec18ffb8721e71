// The comparison slot of var, linterm, quadterm, expression and nonlinear.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Builds a constraint from left OP right (<=, == or >=; the others are
// refused with ModelError).
PyObject *ModelRichCompare(PyObject *a, PyObject *b, int op);

}  // namespace zrv
