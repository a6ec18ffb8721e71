// Turning failed engine calls into Python exceptions.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <string>

namespace zrv {

// The central error routine. When result is null, raises the error that the
// engine recorded for obj (an object of a registered type, or null for the
// global environment), unless a Python error is already pending. Returns
// result unchanged.
PyObject *ReportError(PyObject *obj, PyObject *result);

// Same for internal routines: raises the engine's error and returns -1.
inline int ReportFailure(PyObject *obj) {
  ReportError(obj, nullptr);
  return -1;
}

// Raises the engine's error for an object of one type (a problem, a
// branching object). The folders that own those types register theirs when
// they set the type up, so this floor knows none of them.
using RaiseObjectError = void (*)(PyObject *obj);
void RegisterErrorSource(PyTypeObject *type, RaiseObjectError raise);

// The engine's last global error text; *code (if given) receives its code.
std::string GlobalLastError(int *code);

}  // namespace zrv
