// Certificates of the last LP solve: a primal ray of an unbounded LP and a
// dual (Farkas) ray of an infeasible one, from the HiGHS object that solved
// it.
#pragma once
#include <vector>

#include "problem/problem.h"

namespace zorvan {

// A direction d (one entry per column) that keeps every row and bound
// satisfied from a feasible point and improves the objective without end.
// False when the last LP solve left none.
bool primal_ray(zrvs_problem &p, std::vector<double> &ray, const char *who);

// Multipliers y (one per row) that prove the rows and bounds inconsistent:
// the least value of y'Ax over the column bounds exceeds the largest value
// of y'r over the row sides r. False when the last LP solve left none.
bool dual_ray(zrvs_problem &p, std::vector<double> &ray, const char *who);

// The nonbasic column or row whose move the primal ray follows, in the
// unified numbering (rows first, then columns); -1 when there is none.
int unbounded_entry(zrvs_problem &p, const char *who);

}  // namespace zorvan
