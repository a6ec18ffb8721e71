// The `linterm` object: a coefficient times one variable.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct LinTermObject {
  PyObject_HEAD
  double coef;    // coefficient, never 0.0 for a term made by arithmetic
  PyObject *var;  // owned reference to a `var`
};

namespace zrv {

// coef * var, or the float 0.0 when coef is exactly 0.0. New reference.
PyObject *MakeLinTerm(double coef, PyObject *var);

}  // namespace zrv
