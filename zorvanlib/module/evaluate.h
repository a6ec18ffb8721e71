// The module function zorvan.evaluate.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// zorvan.evaluate(*objects, problem=None, solution=None).
PyObject *ModuleEvaluate(PyObject *, PyObject *args, PyObject *kwds);
extern const char EvaluateDoc[];

}  // namespace zrv
