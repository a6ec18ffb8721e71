// The `problem` object: one engine problem (and its nonlinear companion),
// the bookkeeping between modelling objects and engine indices, and views of
// its controls and attributes.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "base/index_map.h"
#include "base/problem_handles.h"
#include "zorvan/zslp.h"

// One slot per callback kind; each slot is empty or a list of registrations.
constexpr int kCallbackKinds = 44;

// The engine problems (prob, slpprob) come first, in ProblemHandles.
struct ProblemObject : ProblemHandles {
  PyObject *varlist;      // `var` objects in column order
  PyObject *conlist;      // `constraint` objects in row order
  PyObject *soslist;      // `sos` objects in set order
  PyObject *controls;     // `control` view
  PyObject *attributes;   // `attribute` view (all solves)
  PyObject *objattribs;   // `objattrib` view
  zrv::IndexMap *colmap;       // variable id -> column
  zrv::IndexMap *rowmap;       // constraint id -> row
  zrv::IndexMap *setmap;       // SOS word -> set
  PyObject *callbacks[kCallbackKinds];
  // An exception raised by a callback of the running solve, kept until the
  // solve returns (callbacks/dispatch.h); null when none.
  PyObject *callback_error;
  // A temporary problem handed to a callback: it shares the owner's maps,
  // lists and views, and never releases the engine problem.
  int32_t borrowed;
  // Nonlinear rows and objective of the problem. Nothing sets them yet: they
  // stay 0 until the nonlinear layer adds formulas, and the paths that test
  // them (solve, solutions, files, objectives) are ready for that.
  int32_t nl_constraints;
  int32_t nl_objective;
  int64_t output_enabled;
  ProblemObject *prev;    // live-problem list
  ProblemObject *next;
  PyObject *module;       // keeps the module alive while the problem lives
};

namespace zrv {

extern PyTypeObject ProblemType;

inline bool IsProblem(PyObject *o) { return PyObject_TypeCheck(o, &ProblemType); }

// self (a problem method's self) when it holds an engine problem; else null
// with ModelError "Problem is not initialized".
inline ProblemObject *Checked(PyObject *self) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  return NotInitialized(p) ? nullptr : p;
}

// Releases the engine problems, registrations, lists, maps and views of a
// problem; it becomes uninitialized. Safe to call more than once.
void ReleaseProblem(ProblemObject *p);

// Releases every live problem (used by the last environment stop).
void ReleaseAllProblems();

// Applies the user defaults to a freshly created engine problem.
int ApplyUserDefaults(ProblemObject *p);

// Copies the callback registrations of src onto dst; installed by the
// callbacks floor at start-up (problem.copy copies them). 0, or -1 with an
// error.
extern int (*CopyCallbackRegistrations)(ProblemObject *dst, ProblemObject *src);

// Raises the exception a callback left pending in the solve that just
// returned, and returns true; false when there is none.
bool RaiseCallbackError(ProblemObject *p);

// Message callbacks registered on the engine problems.
void ProblemMessage(ZRVSprob prob, void *data, const char *msg, int len, int msgtype);
void ProblemSlpMessage(ZSLPprob slp, void *data, const char *msg, int len, int msgtype);

}  // namespace zrv
