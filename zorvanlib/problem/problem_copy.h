// Allocation of problem objects and copying of problems.
#pragma once

#include "problem/problem.h"

namespace zrv {

// A new, uninitialized problem object linked into the live list.
PyObject *NewProblemObject(PyTypeObject *type);
// problem.copy(): a new problem with the model, controls and bookkeeping.
PyObject *CopyProblem(ProblemObject *src);

}  // namespace zrv
