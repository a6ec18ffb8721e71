// Turning failed engine calls into Python exceptions.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// The central error routine. When result is null, raises the error that the
// engine recorded for obj (a problem, a branching object, or null for the
// global environment), unless a Python error is already pending. Returns
// result unchanged.
PyObject *ReportError(PyObject *obj, PyObject *result);

// Same for internal routines: raises the engine's error and returns -1.
inline int ReportFailure(PyObject *obj) {
  ReportError(obj, nullptr);
  return -1;
}

}  // namespace zrv
