#include "solve/qp_recession.h"

#include <cmath>
#include <memory>

#include "solve/highs/builder.h"

namespace zorvan {

namespace {

// A HiGHS instance of its own, silent, freed on every path.
struct HighsDeleter {
  void operator()(void *h) const { Highs_destroy(h); }
};
using HighsHandle = std::unique_ptr<void, HighsDeleter>;

HighsHandle quiet_highs() {
  HighsHandle h(Highs_create());
  Highs_setBoolOptionValue(h.get(), "output_flag", false);
  Highs_setStringOptionValue(h.get(), "solver", "simplex");
  return h;
}

// The symmetric Hessian (stored as a lower triangle by columns) by rows:
// row i of Q as column indices and values, so that Qd = 0 can be posed.
void hessian_rows(const QpModel &qp, std::vector<HighsInt> &start, std::vector<HighsInt> &index,
                  std::vector<double> &value) {
  std::vector<std::vector<std::pair<HighsInt, double>>> rows(static_cast<size_t>(qp.n));
  for (int j = 0; j + 1 < static_cast<int>(qp.q.start.size()); ++j)
    for (HighsInt k = qp.q.start[j]; k < qp.q.start[j + 1]; ++k) {
      const HighsInt i = qp.q.index[k];
      if (qp.q.value[k] == 0.0) continue;
      rows[i].push_back({j, qp.q.value[k]});
      if (i != j) rows[j].push_back({i, qp.q.value[k]});
    }
  start.clear(), index.clear(), value.clear();
  for (const auto &row : rows) {
    start.push_back(static_cast<HighsInt>(index.size()));
    for (const auto &e : row) index.push_back(e.first), value.push_back(e.second);
  }
  start.push_back(static_cast<HighsInt>(index.size()));
}

// Looks for a point within the rows and bounds (an LP without costs).
QpRecession find_point(const QpModel &qp, std::string &why) {
  HighsHandle h = quiet_highs();
  const std::vector<double> zero(static_cast<size_t>(qp.n), 0.0);
  Highs_passLp(h.get(), qp.n, qp.m, static_cast<HighsInt>(qp.a.value.size()),
               kHighsMatrixFormatColwise, kHighsObjSenseMinimize, 0.0, zero.data(),
               qp.col_lower.data(), qp.col_upper.data(), qp.row_lower.data(),
               qp.row_upper.data(), qp.a.start.data(), qp.a.index.data(), qp.a.value.data());
  Highs_run(h.get());
  const HighsInt status = Highs_getModelStatus(h.get());
  if (status == kHighsModelStatusOptimal) return QpRecession::bounded;  // "a point exists"
  if (status == kHighsModelStatusInfeasible) return QpRecession::infeasible;
  why = "the LP that looks for a feasible point did not end";
  return QpRecession::undecided;
}

}  // namespace

bool qp_point_feasible(const QpModel &qp, const std::vector<double> &x, double tol) {
  if (static_cast<int>(x.size()) != qp.n) return false;
  for (int j = 0; j < qp.n; ++j)
    if (!std::isfinite(x[j]) || x[j] < qp.col_lower[j] - tol || x[j] > qp.col_upper[j] + tol)
      return false;
  const std::vector<double> r = qp.activity(x);
  for (int i = 0; i < qp.m; ++i)
    if (r[i] < qp.row_lower[i] - tol || r[i] > qp.row_upper[i] + tol) return false;
  return true;
}

QpRecession qp_recession(const QpModel &qp, const std::vector<double> &point, double feastol,
                         std::vector<double> &direction, std::string &why) {
  // The directions the bounds and rows allow: a finite lower side keeps the
  // change from falling, a finite upper side from rising. Each entry is
  // limited to [-1, 1] so that the LP has an optimum.
  const size_t n = static_cast<size_t>(qp.n), m = static_cast<size_t>(qp.m);
  std::vector<double> d_lower(n), d_upper(n), r_lower(m), r_upper(m);
  for (size_t j = 0; j < n; ++j) {
    d_lower[j] = std::isfinite(qp.col_lower[j]) && qp.col_lower[j] > -kHighsInf ? 0.0 : -1.0;
    d_upper[j] = std::isfinite(qp.col_upper[j]) && qp.col_upper[j] < kHighsInf ? 0.0 : 1.0;
  }
  for (size_t i = 0; i < m; ++i) {
    r_lower[i] = qp.row_lower[i] > -kHighsInf ? 0.0 : -kHighsInf;
    r_upper[i] = qp.row_upper[i] < kHighsInf ? 0.0 : kHighsInf;
  }
  std::vector<double> cost(n);
  for (size_t j = 0; j < n; ++j) cost[j] = qp.sense * qp.cost[j];
  HighsHandle h = quiet_highs();
  Highs_passLp(h.get(), qp.n, qp.m, static_cast<HighsInt>(qp.a.value.size()),
               kHighsMatrixFormatColwise, kHighsObjSenseMinimize, 0.0, cost.data(),
               d_lower.data(), d_upper.data(), r_lower.data(), r_upper.data(),
               qp.a.start.data(), qp.a.index.data(), qp.a.value.data());
  // No curvature along d: Qd = 0 (for a PSD Q the same as d'Qd = 0).
  std::vector<HighsInt> q_start, q_index;
  std::vector<double> q_value;
  hessian_rows(qp, q_start, q_index, q_value);
  const std::vector<double> zeros(n, 0.0);
  if (Highs_addRows(h.get(), qp.n, zeros.data(), zeros.data(),
                    static_cast<HighsInt>(q_value.size()), q_start.data(), q_index.data(),
                    q_value.data()) == kHighsStatusError) {
    why = "HiGHS refused the rows of the recession LP";
    return QpRecession::undecided;
  }
  Highs_run(h.get());
  if (Highs_getModelStatus(h.get()) != kHighsModelStatusOptimal) {
    why = "the LP that looks for a direction of unbounded descent did not end";
    return QpRecession::undecided;
  }
  double descent = 0.0;
  Highs_getDoubleInfoValue(h.get(), "objective_function_value", &descent);
  // The descent must stand clear of the LP's own tolerances.
  double scale = 1.0;
  for (double c : qp.cost) scale = std::max(scale, std::fabs(c));
  if (descent > -1e-7 * scale) return QpRecession::bounded;
  direction.assign(n, 0.0);
  std::vector<double> col_dual(n), row_value(Highs_getNumRow(h.get())),
      row_dual(Highs_getNumRow(h.get()));
  Highs_getSolution(h.get(), direction.data(), col_dual.data(), row_value.data(),
                    row_dual.data());
  if (!point.empty() && qp_point_feasible(qp, point, feastol)) return QpRecession::unbounded;
  const QpRecession found = find_point(qp, why);
  return found == QpRecession::bounded ? QpRecession::unbounded : found;
}

}  // namespace zorvan
