// Objectives of a problem: the primary objective (index 0, linear or
// quadratic) and further linear objectives (index 1 and up).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "problem/problem.h"

namespace zrv {

// Makes expr objective k: k = 0 replaces the primary objective, an existing
// k > 0 replaces that objective, and k equal to the number of objectives
// adds one. Nothing changes when the expression is refused. 0 or -1.
int SetObjectiveAt(ProblemObject *p, PyObject *expr, int k);

// Sets the optimisation sense (1 minimise, -1 maximise) of the problem and
// of its nonlinear side. 0 or -1.
int SetSense(ProblemObject *p, int sense);

PyObject *ProblemSetObjective(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemAddObjective(PyObject *self, PyObject *args, PyObject *kwds);

extern const char SetObjectiveDoc[];
extern const char AddObjectiveDoc[];

}  // namespace zrv
