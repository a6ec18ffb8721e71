#include "solve/analysis/infeasibility.h"

#include <algorithm>
#include <cmath>

#include "model/evaluate.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

// How far v lies outside [lower, upper] (0 inside).
double outside(double v, double lower, double upper) {
  if (lower > -ZRVS_PLUSINFINITY && v < lower) return lower - v;
  if (upper < ZRVS_PLUSINFINITY && v > upper) return v - upper;
  return 0.0;
}

// How far a price breaks its sign rule, for a minimising objective: a
// value above its lower side may not have a positive price (lowering it
// would pay), a value below its upper side may not have a negative one.
double wrong_sign(double price, double v, double lower, double upper, double tol) {
  double worst = 0.0;
  if (v > lower + tol && price > 0.0) worst = std::max(worst, price);
  if (v < upper - tol && price < 0.0) worst = std::max(worst, -price);
  return worst;
}

}  // namespace

Infeasibilities find_infeasibilities(const Model &m, const std::vector<double> &x,
                                     const std::vector<double> &duals,
                                     const std::vector<double> &djs, double feastol,
                                     double opttol, const Scaling *scale) {
  Infeasibilities out;
  const std::vector<double> act = row_activities(m, x.data());
  const bool prices = !duals.empty() && !djs.empty();
  for (int j = 0; j < m.cols(); ++j) {
    const double s = scale ? 1.0 / scale->col[j] : 1.0;
    if (outside(x[j], m.lb[j], m.ub[j]) * s > feastol) out.cols.push_back(j);
    if (prices && wrong_sign(m.objsense * djs[j], x[j], m.lb[j], m.ub[j], feastol) / s > opttol)
      out.dual_cols.push_back(j);
  }
  for (int i = 0; i < m.rows(); ++i) {
    double lower, upper;
    row_sides(m, i, &lower, &upper);
    const double s = scale ? scale->row[i] : 1.0;
    if (outside(act[i], lower, upper) * s > feastol) out.rows.push_back(i);
    if (prices && wrong_sign(m.objsense * duals[i], act[i], lower, upper, feastol) / s > opttol)
      out.dual_rows.push_back(i);
  }
  return out;
}

double max_primal_violation(const Model &m, const double *x) {
  double worst = 0.0;
  for (int j = 0; j < m.cols(); ++j) worst = std::max(worst, outside(x[j], m.lb[j], m.ub[j]));
  const std::vector<double> act = row_activities(m, x);
  for (int i = 0; i < m.rows(); ++i) {
    double lower, upper;
    row_sides(m, i, &lower, &upper);
    worst = std::max(worst, outside(act[i], lower, upper));
  }
  return worst;
}

double max_dual_violation(const Model &m, const double *x, const double *duals,
                          const double *djs) {
  double worst = 0.0;
  const std::vector<double> act = row_activities(m, x);
  for (int j = 0; j < m.cols(); ++j)
    worst = std::max(worst, wrong_sign(m.objsense * djs[j], x[j], m.lb[j], m.ub[j], 1e-9));
  for (int i = 0; i < m.rows(); ++i) {
    double lower, upper;
    row_sides(m, i, &lower, &upper);
    worst = std::max(worst, wrong_sign(m.objsense * duals[i], act[i], lower, upper, 1e-9));
  }
  return worst;
}

}  // namespace zorvan
