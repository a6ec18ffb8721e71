// Opaque handles passed to Python callbacks: `zrvsobject` wraps an engine
// object, `generic` any other pointer (such as a thread).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

struct ZrvsObjectObject {
  PyObject_HEAD
  void *handle;
};

struct GenericObject {
  PyObject_HEAD
  void *pointer;
};

namespace zrv {

PyObject *NewZrvsObject(void *handle);
PyObject *NewGeneric(void *pointer);

}  // namespace zrv
