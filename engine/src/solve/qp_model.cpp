#include "solve/qp_model.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zorvan {

QpModel::QpModel(const Model &model, const HighsBuild &build)
    : n(build.lp.cols()),
      m(build.lp.rows()),
      sense(model.objsense),
      cost(build.lp.cost),
      col_lower(build.lp.col_lower),
      col_upper(build.lp.col_upper),
      row_lower(build.lp.row_lower),
      row_upper(build.lp.row_upper),
      a(highs_matrix(model, build.lp)),
      q(build.hessian) {}

std::vector<double> QpModel::gradient(const std::vector<double> &x) const {
  std::vector<double> g(cost);
  for (int j = 0; j + 1 < static_cast<int>(q.start.size()); ++j)
    for (HighsInt k = q.start[j]; k < q.start[j + 1]; ++k) {
      int i = q.index[k];
      g[i] += q.value[k] * x[j];
      if (i != j) g[j] += q.value[k] * x[i];
    }
  return g;
}

std::vector<double> QpModel::activity(const std::vector<double> &x) const {
  std::vector<double> r(m, 0.0);
  for (int j = 0; j < n; ++j)
    for (HighsInt k = a.start[j]; k < a.start[j + 1]; ++k) r[a.index[k]] += a.value[k] * x[j];
  return r;
}

std::vector<double> QpModel::times_transposed(const std::vector<double> &y) const {
  std::vector<double> t(n, 0.0);
  for (int j = 0; j < n; ++j)
    for (HighsInt k = a.start[j]; k < a.start[j + 1]; ++k) t[j] += a.value[k] * y[a.index[k]];
  return t;
}

double QpModel::objective(const std::vector<double> &x) const {
  std::vector<double> g = gradient(x);
  double v = 0.0;
  for (int j = 0; j < n; ++j) v += 0.5 * (g[j] + cost[j]) * x[j];
  return v;
}

namespace {

std::string describe(const char *fmt, const char *what, int index, double amount) {
  char text[160];
  std::snprintf(text, sizeof text, fmt, what, index, amount);
  return text;
}

// Checks one bounded quantity (a column or a row) with value v, sides
// [lo, up] and dual d (sign already turned to the minimisation's); adds its
// complementarity product to the gap.
std::string check_side(const char *what, int index, double v, double lo, double up, double d,
                       double primal_tol, double dual_tol, double &gap) {
  double over = std::max(lo - v, v - up);
  if (over > primal_tol * (1.0 + std::min(std::fabs(lo), std::fabs(up))))
    return describe("%s %d violates its bounds by %g", what, index, over);
  if (d > dual_tol && std::isinf(lo))
    return describe("the dual of %s %d has the wrong sign (%g)", what, index, d);
  if (d < -dual_tol && std::isinf(up))
    return describe("the dual of %s %d has the wrong sign (%g)", what, index, d);
  if (d > 0 && !std::isinf(lo)) gap += d * std::max(v - lo, 0.0);
  if (d < 0 && !std::isinf(up)) gap -= d * std::max(up - v, 0.0);
  return std::string();
}

bool finite_vector(const std::vector<double> &v) {
  return std::all_of(v.begin(), v.end(), [](double e) { return std::isfinite(e); });
}

}  // namespace

std::string kkt_failure(const QpModel &qp, const QpPoint &pt, double primal_tol,
                        double dual_tol) {
  if (static_cast<int>(pt.x.size()) != qp.n || !finite_vector(pt.x))
    return "no finite primal solution";
  if (static_cast<int>(pt.y.size()) != qp.m || static_cast<int>(pt.z.size()) != qp.n ||
      !finite_vector(pt.y) || !finite_vector(pt.z))
    return "no finite dual solution";
  std::vector<double> g = qp.gradient(pt.x), r = qp.activity(pt.x),
                      aty = qp.times_transposed(pt.y);
  double scale = 1.0;
  for (int j = 0; j < qp.n; ++j) scale = std::max(scale, std::fabs(g[j]));
  const double dtol = dual_tol * scale;
  for (int j = 0; j < qp.n; ++j) {
    double residual = g[j] - aty[j] - pt.z[j];
    if (std::fabs(residual) > dtol * (1.0 + std::fabs(aty[j]) / scale))
      return describe("stationarity fails at %s %d by %g", "column", j, residual);
  }
  double gap = 0.0;
  for (int j = 0; j < qp.n; ++j) {
    std::string why = check_side("column", j, pt.x[j], qp.col_lower[j], qp.col_upper[j],
                                 qp.sense * pt.z[j], primal_tol, dtol, gap);
    if (!why.empty()) return why;
  }
  for (int i = 0; i < qp.m; ++i) {
    std::string why = check_side("row", i, r[i], qp.row_lower[i], qp.row_upper[i],
                                 qp.sense * pt.y[i], primal_tol, dtol, gap);
    if (!why.empty()) return why;
  }
  // With feasible duals of the right signs the gap bounds the distance of
  // the objective from the optimum.
  double f = qp.objective(pt.x);
  if (gap > dual_tol * (1.0 + std::fabs(f))) {
    char text[120];
    std::snprintf(text, sizeof text, "the duality gap is %g at objective %g", gap, f);
    return text;
  }
  return std::string();
}

}  // namespace zorvan
