// problem.read and problem.write: problem files through the engine.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

PyObject *ProblemRead(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemWrite(PyObject *self, PyObject *args, PyObject *kwds);

extern const char ReadDoc[];
extern const char WriteDoc[];

}  // namespace zrv
