// Steps of creating a problem, shared by __init__, reset() and copy().
#pragma once

#include "problem/problem.h"

namespace zrv {

// __init__: everything from the keywords to the positional declaration.
int InitializeProblem(ProblemObject *p, PyObject *args, PyObject *kwds);
// Lists, index maps and the three views.
int CreateBookkeeping(ProblemObject *p);
// The engine problem and, with the nonlinear library, its companion.
int CreateEngineProblems(ProblemObject *p);
int RegisterMessageCallbacks(ProblemObject *p);
// Positional arguments of the declaration: a name, or model objects.
int ProcessDeclaration(ProblemObject *p, PyObject *args);

}  // namespace zrv
