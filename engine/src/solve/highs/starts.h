// The user's starting solutions handed to HiGHS before a run: the LP start
// of ZRVSloadlpsol, and the best of the MIP starts of ZRVSloadmipsol and
// ZRVSaddmipsol.
#pragma once

#include "problem/problem.h"
#include "solve/highs/builder.h"

namespace zorvan {

// Hands the starts that fit this solve to HiGHS (h holds `build`) and
// drops them from the problem: each is for the next solve only.
void hand_over_starts(zrvs_problem &p, void *h, const HighsBuild &build, bool mip);

// Whether x (one value per column) satisfies bounds, rows and integrality
// of m within the tolerances.
bool feasible_point(const Model &m, const double *x, double feastol, double inttol);

}  // namespace zorvan
