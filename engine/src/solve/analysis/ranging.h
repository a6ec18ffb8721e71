// Ranging of the optimal basis of the last LP solve (HiGHS's ranging):
// how far a cost, a right-hand side or a bound may move before the basis
// stops being optimal. Infinite ends are +-ZRVS_PLUSINFINITY.
#pragma once
#include <vector>

#include "problem/problem.h"

namespace zorvan {

struct Ranging {
  std::vector<double> cost_lower, cost_upper;   // by column
  std::vector<double> lb_lower, lb_upper;       // by column
  std::vector<double> ub_lower, ub_upper;       // by column
  std::vector<double> rhs_lower, rhs_upper;     // by row
};

Ranging range_basis(zrvs_problem &p, const char *who);

}  // namespace zorvan
