// Which parts of a solution break its conditions: values outside their
// bounds, rows outside their sides, and prices of the wrong sign.
#pragma once
#include <vector>

#include "model/model.h"
#include "model/scaling.h"

namespace zorvan {

struct Infeasibilities {
  std::vector<int> cols;       // values outside their bounds
  std::vector<int> rows;       // activities outside the row's sides
  std::vector<int> dual_rows;  // duals whose sign the row's position forbids
  std::vector<int> dual_cols;  // reduced costs whose sign the value's position forbids
};

// Violations larger than feastol (primal) and opttol (dual) at x, duals,
// djs (duals and djs may be empty: no dual checks). With `scale`, the
// violations are measured in the scaled problem.
Infeasibilities find_infeasibilities(const Model &m, const std::vector<double> &x,
                                     const std::vector<double> &duals,
                                     const std::vector<double> &djs, double feastol,
                                     double opttol, const Scaling *scale);

// The largest primal violation (bounds and rows) at x, and the largest dual
// violation of the given prices (0 when duals is empty).
double max_primal_violation(const Model &m, const double *x);
double max_dual_violation(const Model &m, const double *x, const double *duals,
                          const double *djs);

}  // namespace zorvan
