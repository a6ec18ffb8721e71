// The `linterm` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct LinTermObject {
  PyObject_HEAD
  double coef;  // coefficient of one variable
};
