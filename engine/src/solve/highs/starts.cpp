#include "solve/highs/starts.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/evaluate.h"

namespace zorvan {

namespace {

void hand_over_lp_start(zrvs_problem &p, void *h, const HighsBuild &build) {
  SolverStarts &s = p.starts;
  const Model &m = p.model;
  const bool fits = s.lp_x.size() == static_cast<size_t>(m.cols()) &&
                    s.lp_slack.size() == static_cast<size_t>(m.rows()) &&
                    build.lp.cols() == m.cols() && build.lp.rows() == m.rows();
  if (!fits) {
    p.message(ZRVS_MSG_WARNING, "The loaded LP solution does not fit the problem; not used");
    return;
  }
  std::vector<double> activity(static_cast<size_t>(m.rows()));
  for (int i = 0; i < m.rows(); ++i) activity[i] = m.rhs[i] - s.lp_slack[i];
  const bool prices = s.lp_duals.size() == static_cast<size_t>(m.rows()) &&
                      s.lp_djs.size() == static_cast<size_t>(m.cols());
  Highs_setSolution(h, s.lp_x.data(), activity.data(), prices ? s.lp_djs.data() : nullptr,
                    prices ? s.lp_duals.data() : nullptr);
}

// The full start with the best objective among the feasible ones, else
// the first start that lists only some columns; null when there is none.
const MipStart *best_mip_start(const zrvs_problem &p) {
  const Model &m = p.model;
  const double feastol = p.controls.get_dbl(ZRVS_FEASTOL, "optimize");
  const double inttol = p.controls.get_dbl(ZRVS_MIPTOL, "optimize");
  const MipStart *best = nullptr, *partial = nullptr;
  double best_value = std::numeric_limits<double>::infinity();
  std::vector<double> x;
  for (const MipStart &s : p.starts.mip) {
    x.assign(static_cast<size_t>(m.cols()), std::nan(""));
    for (size_t k = 0; k < s.cols.size(); ++k) x[s.cols[k]] = s.values[k];
    bool full = true;
    for (double v : x) full = full && !std::isnan(v);
    if (!full) {
      if (!partial) partial = &s;
      continue;
    }
    if (!feasible_point(m, x.data(), feastol, inttol)) continue;
    const double value = m.objsense * objective_value(m, 0, x.data());
    if (value < best_value) best_value = value, best = &s;
  }
  return best ? best : partial;
}

}  // namespace

bool feasible_point(const Model &m, const double *x, double feastol, double inttol) {
  const std::vector<double> act = row_activities(m, x);
  for (int i = 0; i < m.rows(); ++i) {
    double lower, upper;
    row_sides(m, i, &lower, &upper);
    if (act[i] < lower - feastol || act[i] > upper + feastol) return false;
  }
  for (int j = 0; j < m.cols(); ++j) {
    const char t = m.coltype[j];
    const bool semi = t == 'S' || t == 'R';
    // A semi-continuous value is 0 or lies between max(lb, threshold) and ub.
    const double lower = semi ? std::max(m.lb[j], m.limit[j]) : m.lb[j];
    const bool off = semi && std::fabs(x[j]) <= feastol;
    if (!off && (x[j] < lower - feastol || x[j] > m.ub[j] + feastol)) return false;
    const bool integral = t == 'B' || t == 'I' || t == 'R' || (t == 'P' && x[j] <= m.limit[j]);
    if (integral && std::fabs(x[j] - std::round(x[j])) > inttol) return false;
  }
  return true;
}

void hand_over_starts(zrvs_problem &p, void *h, const HighsBuild &build, bool mip) {
  SolverStarts &s = p.starts;
  if (!mip && s.has_lp) hand_over_lp_start(p, h, build);
  if (!mip) s.has_lp = false;
  if (!mip || s.mip.empty()) return;
  // The one place where a MIP start reaches the solver: a notification of
  // the user's solution (name and what became of it) belongs here.
  if (const MipStart *start = best_mip_start(p)) {
    std::vector<HighsInt> cols(start->cols.begin(), start->cols.end());
    if (Highs_setSparseSolution(h, static_cast<HighsInt>(cols.size()), cols.data(),
                                start->values.data()) == kHighsStatusError)
      p.message(ZRVS_MSG_WARNING, "HiGHS refused the MIP start '" + start->name + "'");
  }
  s.mip.clear();
}

}  // namespace zorvan
