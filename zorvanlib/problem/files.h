// problem.read and problem.write: problem files through the engine.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

struct ProblemObject;

namespace zrv {

// Replaces the problem's var, constraint and sos objects (lists and maps)
// with new ones describing the model the engine holds now, after the whole
// model was replaced by a read or a load. On failure the problem is left
// with empty lists. 0 or -1.
int AdoptEngineModel(ProblemObject *p);

PyObject *ProblemRead(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemWrite(PyObject *self, PyObject *args, PyObject *kwds);

extern const char ReadDoc[];
extern const char WriteDoc[];

}  // namespace zrv
