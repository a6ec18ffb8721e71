// The solve driver: decides what is solved (the model's class, not the
// entry point, chooses between a MIP and an LP), picks the backend, runs
// one backend run per objective priority level and records the results.
#pragma once
#include "problem/problem.h"

namespace zorvan {

// automatic: by the model's class; lp: the continuous relaxation of a
// model with discrete parts; mip: every discrete part enforced (a model
// without any is an LP whichever is asked).
enum class SolveKind { automatic, lp, mip };

// Runs a solve of p; throws zorvan::Error when the problem cannot be solved
// (a class no backend solves, an infinite big-M bound, bad flags). A solve
// that runs records its outcome in p.results, whatever the outcome.
void optimize(zrvs_problem &p, SolveKind kind, const char *flags, const char *who);

}  // namespace zorvan
