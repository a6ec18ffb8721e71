// The `constraint` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct ConstraintObject {
  PyObject_HEAD
  uint64_t word;  // serial identifier and flags; 0: not initialized
};
