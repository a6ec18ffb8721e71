// A continuous QP as it was handed to the solver, for checking a result and
// for solving it by a second path: min (or max) c'x + x'Qx/2 over
// row_lower <= Ax <= row_upper and col_lower <= x <= col_upper.
#pragma once
#include <string>
#include <vector>

#include "solve/highs/builder.h"

namespace zorvan {

struct QpModel {
  QpModel(const Model &model, const HighsBuild &build);
  int n, m;
  double sense;  // 1 minimise, -1 maximise
  const std::vector<double> &cost, &col_lower, &col_upper, &row_lower, &row_upper;
  HighsCsc a;         // by columns
  const HighsCsc &q;  // lower triangle by columns

  std::vector<double> gradient(const std::vector<double> &x) const;  // Qx + c
  std::vector<double> activity(const std::vector<double> &x) const;  // Ax
  std::vector<double> times_transposed(const std::vector<double> &y) const;  // A'y
  double objective(const std::vector<double> &x) const;  // c'x + x'Qx/2
};

// A primal point with row duals y and column duals z, in the convention
// Qx + c - A'y - z = 0 (for a minimisation, y >= 0 at a row's lower side).
struct QpPoint {
  std::vector<double> x, y, z;
};

// Empty when the point meets the first-order conditions of the QP within the
// tolerances (primal: bounds and rows; dual: stationarity, signs of the
// duals and the duality gap), else what fails first, in words.
std::string kkt_failure(const QpModel &qp, const QpPoint &pt, double primal_tol,
                        double dual_tol);

}  // namespace zorvan
