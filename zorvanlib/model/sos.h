// The `sos` object: a special ordered set of type 1 or 2 given by a list of
// variables and a list of weights.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct SosObject {
  PyObject_HEAD
  uint64_t word;      // serial identifier (the whole word)
  PyObject *name;     // owned
  int32_t type;       // 1 or 2
  PyObject *indices;  // owned list of variables
  PyObject *weights;  // owned list of weights
};
