// The `nonlinear` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct NonlinearObject {
  PyObject_HEAD
  int32_t op;  // operator code of the node
};
