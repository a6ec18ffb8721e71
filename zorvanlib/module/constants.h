// The table of named constants published as module attributes.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Adds every constant to the module.
// Returns 0, or -1 with a Python error set.
int PublishConstants(PyObject *module);

}  // namespace zrv
