// problem.read and problem.write: problem files through the engine.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

struct ProblemObject;

namespace zrv {

// Replaces the problem's var, constraint and sos objects (lists and maps)
// with new ones describing the model the engine holds now, after the whole
// model was replaced by a read or a load. On failure the problem is left
// with empty lists. Without column_names (row_names) the new var
// (constraint) objects take no names from the engine: they stay unnamed, as
// columns added without names do. 0 or -1.
int AdoptEngineModel(ProblemObject *p, bool column_names = true, bool row_names = true);

PyObject *ProblemRead(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemWrite(PyObject *self, PyObject *args, PyObject *kwds);

extern const char ReadDoc[];
extern const char WriteDoc[];

}  // namespace zrv
