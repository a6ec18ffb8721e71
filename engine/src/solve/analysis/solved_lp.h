// The HiGHS object that holds the problem's last LP solve, for the analyses
// that read its basis, factorisation, rays or ranging.
#pragma once

#include "problem/problem.h"
#include "solve/highs/instance.h"

namespace zorvan {

// HiGHS's handle when the last solve was a single-objective continuous LP of
// the model as it is now (no change since); else throws naming `who` and
// what the caller needs (`need`, e.g. "an optimal basis").
void *solved_lp(zrvs_problem &p, const char *need, const char *who);

// As solved_lp, and the solve ended optimal with a valid basis.
void *optimal_lp(zrvs_problem &p, const char *need, const char *who);

}  // namespace zorvan
