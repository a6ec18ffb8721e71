// problem.reset(): a fresh empty problem in place of the current one, or no
// change at all when the fresh one cannot be made.
#pragma once

#include "problem/problem.h"

namespace zrv {

// Replaces the model, bookkeeping, views and registrations of an initialized
// problem by those of a new empty problem. On failure the problem is left as
// it was and -1 is returned with the error set.
int ResetProblem(ProblemObject *p);

}  // namespace zrv
