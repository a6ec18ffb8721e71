// The `quadterm` object: a coefficient times the product of two variables,
// the one with the smaller identifier first.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct QuadTermObject {
  PyObject_HEAD
  double coef;
  PyObject *var1;  // owned; the variable with the smaller identifier
  PyObject *var2;  // owned; the same object as var1 for a square
};

namespace zrv {

// coef * a * b in canonical order; kept even when coef is 0. New reference.
PyObject *MakeQuadTerm(double coef, PyObject *a, PyObject *b);

}  // namespace zrv
