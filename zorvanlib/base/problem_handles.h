// What the floors below problem/ know of a problem object: the engine
// problems it owns. The problem type (problem/problem.h) extends it with
// everything else; control views and error reports need only this part.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <pythread.h>

#include "base/globals.h"
#include "zorvan/zslp.h"

struct ProblemHandles {
  PyObject_HEAD
  ZRVSprob prob;     // null: the problem is not initialized
  ZSLPprob slpprob;  // null when the nonlinear library is not started
  // While a solve runs with the interpreter lock released, the engine problem
  // belongs to the solving thread (problem/solve_guard.h).
  int32_t solving;
  unsigned long solving_thread;
};

namespace zrv {

// Raises ModelError and returns true when another thread is solving the
// problem: the engine problem is used by one thread at a time.
inline bool BusyInOtherThread(ProblemHandles *p) {
  if (!p->solving || p->solving_thread == PyThread_get_thread_ident()) return false;
  PyErr_SetString(ModelError,
                  "The problem is being solved in another thread: it cannot be used until "
                  "the solve ends");
  return true;
}

// Raises ModelError "Problem is not initialized" and returns true when the
// problem holds no engine problem, or ModelError when another thread is
// solving it (so every call that reaches the engine problem is covered).
inline bool NotInitialized(ProblemHandles *p) {
  if (p->prob) return BusyInOtherThread(p);
  PyErr_SetString(ModelError, "Problem is not initialized");
  return true;
}

}  // namespace zrv
