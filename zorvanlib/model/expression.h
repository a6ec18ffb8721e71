// The `expression` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct ExpressionObject {
  PyObject_HEAD
  double constant;  // the polynomial's constant; linear and quadratic parts follow
};
