// The `branchobj` object: a user branching object of the engine.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct BranchObjObject {
  PyObject_HEAD
  void *handle;       // the engine's branching object; null until created
  PyObject *problem;  // the owning problem (strong reference)
  int32_t isoriginal; // 1: in terms of the original problem
};

namespace zrv {

extern PyTypeObject BranchObjType;

}  // namespace zrv
