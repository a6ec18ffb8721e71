#include "solve/analysis/rays.h"

#include <algorithm>
#include <cmath>

#include "model/evaluate.h"
#include "solve/analysis/solved_lp.h"

namespace zorvan {

namespace {

// The Farkas gap of y: min over column bounds of (y'A)x minus max over row
// sides of y'r. -infinity where an infinite bound meets a nonzero weight.
double farkas_gap(const Model &m, const std::vector<double> &y) {
  std::vector<double> ya(static_cast<size_t>(m.cols()), 0.0);
  for (size_t e = 0; e < m.mval.size(); ++e) ya[m.mcol[e]] += y[m.mrow[e]] * m.mval[e];
  double gap = 0.0;
  const double tiny = 1e-12;
  for (int j = 0; j < m.cols(); ++j) {
    if (std::fabs(ya[j]) <= tiny) continue;
    const double bound = ya[j] > 0 ? m.lb[j] : m.ub[j];
    if (is_infinite(bound)) return -HUGE_VAL;
    gap += ya[j] * bound;
  }
  for (int i = 0; i < m.rows(); ++i) {
    if (std::fabs(y[i]) <= tiny) continue;
    double lower, upper;
    row_sides(m, i, &lower, &upper);
    const double side = y[i] > 0 ? upper : lower;
    if (is_infinite(side)) return -HUGE_VAL;
    gap -= y[i] * side;
  }
  return gap;
}

}  // namespace

bool primal_ray(zrvs_problem &p, std::vector<double> &ray, const char *who) {
  void *h = solved_lp(p, "a primal ray", who);
  if (p.results.lpstatus != ZRVS_LP_UNBOUNDED) return false;
  HighsInt has = 0;
  ray.assign(static_cast<size_t>(p.model.cols()), 0.0);
  if (Highs_getPrimalRay(h, &has, ray.data()) == kHighsStatusError || !has) return false;
  return true;
}

bool dual_ray(zrvs_problem &p, std::vector<double> &ray, const char *who) {
  void *h = solved_lp(p, "a dual ray", who);
  if (p.results.lpstatus != ZRVS_LP_INFEAS) return false;
  HighsInt has = 0;
  ray.assign(static_cast<size_t>(p.model.rows()), 0.0);
  if (Highs_getDualRay(h, &has, ray.data()) == kHighsStatusError || !has) return false;
  // HiGHS's sign convention differs by how it found the ray: the sign that
  // makes the certificate read as documented is kept.
  std::vector<double> flipped(ray);
  for (double &v : flipped) v = -v;
  const double gap = farkas_gap(p.model, ray), flipped_gap = farkas_gap(p.model, flipped);
  if (flipped_gap > gap) ray.swap(flipped);
  return std::max(gap, flipped_gap) > 0.0;
}

int unbounded_entry(zrvs_problem &p, const char *who) {
  std::vector<double> ray;
  if (!primal_ray(p, ray, who)) return -1;
  void *h = p.highs->handle();
  const Model &m = p.model;
  std::vector<HighsInt> col(static_cast<size_t>(m.cols())), row(static_cast<size_t>(m.rows()));
  if (Highs_getBasis(h, col.data(), row.data()) == kHighsStatusError) return -1;
  // Along a simplex ray only basic variables and the one entering column or
  // row move.
  const double tiny = 1e-9;
  for (int j = 0; j < m.cols(); ++j)
    if (col[j] != kHighsBasisStatusBasic && std::fabs(ray[j]) > tiny) return m.rows() + j;
  const std::vector<double> act = row_activities(m, ray.data());
  for (int i = 0; i < m.rows(); ++i)
    if (row[i] != kHighsBasisStatusBasic && std::fabs(act[i]) > tiny) return i;
  return -1;
}

}  // namespace zorvan
