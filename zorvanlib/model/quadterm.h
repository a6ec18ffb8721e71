// The `quadterm` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct QuadTermObject {
  PyObject_HEAD
  double coef;  // coefficient of the product of two variables
};
