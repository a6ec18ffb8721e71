#include "solve/analysis/ranging.h"

#include <cmath>

#include "solve/analysis/solved_lp.h"

namespace zorvan {

namespace {

double engine_value(double v) {
  if (v >= ZRVS_PLUSINFINITY) return ZRVS_PLUSINFINITY;
  if (v <= -ZRVS_PLUSINFINITY) return -ZRVS_PLUSINFINITY;
  return v;
}

void to_engine(std::vector<double> &v) {
  for (double &x : v) x = engine_value(x);
}

}  // namespace

Ranging range_basis(zrvs_problem &p, const char *who) {
  void *h = optimal_lp(p, "ranging", who);
  const Model &m = p.model;
  const size_t n = static_cast<size_t>(m.cols()), r = static_cast<size_t>(m.rows());
  std::vector<double> cu(n), cuo(n), cd(n), cdo(n), bu(n), buo(n), bd(n), bdo(n);
  std::vector<double> ru(r), ruo(r), rd(r), rdo(r);
  std::vector<HighsInt> ci(4 * n), ri(2 * r);
  HighsInt *c = ci.data(), *q = ri.data();
  if (Highs_getRanging(h, cu.data(), cuo.data(), c, c + n, cd.data(), cdo.data(), c, c + n,
                       bu.data(), buo.data(), c + 2 * n, c + 3 * n, bd.data(), bdo.data(),
                       c + 2 * n, c + 3 * n, ru.data(), ruo.data(), q, q + r, rd.data(),
                       rdo.data(), q, q + r) != kHighsStatusOk)
    fail(ZRVS_ERR_INTERNAL, "%s: HiGHS could not range the basis", who);
  Ranging out;
  out.cost_lower = cd, out.cost_upper = cu;
  out.rhs_lower = rd, out.rhs_upper = ru;
  std::vector<HighsInt> col(n), row(r);
  Highs_getBasis(h, col.data(), row.data());
  const SolveState &res = p.results;
  const double inf = ZRVS_PLUSINFINITY;
  out.lb_lower.assign(n, -inf), out.lb_upper.assign(n, inf);
  out.ub_lower.assign(n, -inf), out.ub_upper.assign(n, inf);
  // HiGHS ranges the value of a column at its active bound; the other
  // bound may move anywhere that keeps the current value inside the box.
  for (size_t j = 0; j < n; ++j) {
    const double x = res.x[j];
    out.lb_upper[j] = x, out.ub_lower[j] = x;
    if (col[j] == kHighsBasisStatusLower) out.lb_lower[j] = bd[j], out.lb_upper[j] = bu[j];
    if (col[j] == kHighsBasisStatusUpper) out.ub_lower[j] = bd[j], out.ub_upper[j] = bu[j];
  }
  for (auto *v : {&out.cost_lower, &out.cost_upper, &out.lb_lower, &out.lb_upper, &out.ub_lower,
                  &out.ub_upper, &out.rhs_lower, &out.rhs_upper})
    to_engine(*v);
  return out;
}

}  // namespace zorvan
