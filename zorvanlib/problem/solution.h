// Solving a problem and reading its results: which solution answers (MIP or
// continuous), the solve methods and the getters of values, slacks, duals and
// reduced costs.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <vector>

#include "problem/problem.h"

namespace zrv {

// Whether the problem is a MIP: it has integer columns, sets, general
// constraints or indicators. 0 or -1 with an error set.
int ProblemIsMip(ProblemObject *p, bool *mip);

// Whether results must come from the nonlinear solver. 0 or -1.
int UsesNonlinearSolution(ProblemObject *p, bool *yes);

// The primal value of every column of the current solution. 0 or -1.
int FetchPrimal(ProblemObject *p, std::vector<double> &x);

// The methods (solve.cpp and solution.cpp) and their help texts.
PyObject *ProblemOptimize(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemLpOptimize(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemMipOptimize(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetObjVal(PyObject *self, PyObject *);
PyObject *ProblemGetProbStatus(PyObject *self, PyObject *);
PyObject *ProblemGetProbStatusString(PyObject *self, PyObject *);
PyObject *ProblemGetSolution(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetSlack(PyObject *self, PyObject *args);
PyObject *ProblemGetDual(PyObject *self, PyObject *args);
PyObject *ProblemGetRCost(PyObject *self, PyObject *args);

extern const char OptimizeDoc[];
extern const char SolveDoc[];
extern const char LpOptimizeDoc[];
extern const char MipOptimizeDoc[];
extern const char GetObjValDoc[];
extern const char GetProbStatusDoc[];
extern const char GetProbStatusStringDoc[];
extern const char GetSolutionDoc[];
extern const char GetSlackDoc[];
extern const char GetDualDoc[];
extern const char GetRCostDoc[];

}  // namespace zrv
