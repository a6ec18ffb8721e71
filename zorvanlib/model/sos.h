// The `sos` object.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct SosObject {
  PyObject_HEAD
  uint64_t word;  // serial identifier and flags; 0: not initialized
};
