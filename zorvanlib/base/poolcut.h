// The `poolcut` object: the handle of a cut in the engine's cut pool.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

struct PoolCutObject {
  PyObject_HEAD
  void *handle;
};
