// What the floors below problem/ know of a problem object: the engine
// problems it owns. The problem type (problem/problem.h) extends it with
// everything else; control views and error reports need only this part.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "base/globals.h"
#include "zorvan/zslp.h"

struct ProblemHandles {
  PyObject_HEAD
  ZRVSprob prob;     // null: the problem is not initialized
  ZSLPprob slpprob;  // null when the nonlinear library is not started
};

namespace zrv {

// Raises ModelError "Problem is not initialized" and returns true when the
// problem holds no engine problem.
inline bool NotInitialized(ProblemHandles *p) {
  if (p->prob) return false;
  PyErr_SetString(ModelError, "Problem is not initialized");
  return true;
}

}  // namespace zrv
