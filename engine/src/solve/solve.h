// Solving a problem with HiGHS and recording the results.
#pragma once
#include "core/problem.h"

namespace zorvan {

enum class SolveKind { automatic, lp, mip };

// Runs a solve of p; throws zorvan::Error when the problem cannot be solved
// (unsupported problem class, infinite big-M bound, bad flags). A solve that
// runs records its outcome in p.results, whatever the outcome.
void solve(zrvs_problem &p, SolveKind kind, const char *flags, const char *who);

}  // namespace zorvan
