// The temporary `problem` a callback receives: it points at the engine
// problem the solver passes (the owner's, or a thread's copy), shares the
// owner's index maps (copy on write, so constant time), object lists, views
// and nonlinear handle, and counts as being solved by the calling thread,
// so that model changes through it are refused.
#pragma once

#include "problem/problem.h"

namespace zrv {

// A new temporary problem, or null with an error set.
PyObject *NewCallbackProblem(ProblemObject *owner, ZRVSprob prob);
// Cuts it loose from the engine problem and drops it.
void ReleaseCallbackProblem(PyObject *temporary);

}  // namespace zrv
