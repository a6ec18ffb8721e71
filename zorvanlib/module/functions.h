// Module-level functions.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// The module's method table (ends with a null entry).
extern PyMethodDef ModuleMethods[];

// Global message handlers (msghandlers.cpp).
PyObject *AddMessageHandler(PyObject *, PyObject *args, PyObject *kwds);
PyObject *RemoveMessageHandler(PyObject *, PyObject *args, PyObject *kwds);

}  // namespace zrv
