// problem.getControl, problem.setControl and problem.getAttrib.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

PyObject *ProblemGetControl(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemSetControl(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetAttrib(PyObject *self, PyObject *args, PyObject *kwds);

extern const char GetControlDoc[];
extern const char SetControlDoc[];
extern const char GetAttribDoc[];

}  // namespace zrv
