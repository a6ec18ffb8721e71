#include "optimize/solution.h"

namespace zorvan {

namespace {

double objective_value(const Model &m, int k, const std::vector<double> &x) {
  const Objective &o = m.objectives[k];
  double v = o.constant;
  for (int j = 0; j < m.cols(); ++j) v += o.coef[j] * x[j];
  if (k == 0)
    for (const auto &e : m.qobj) {
      int i = e.first.first, j = e.first.second;
      v += (i == j ? 0.5 : 1.0) * e.second * x[i] * x[j];
    }
  return v;
}

}  // namespace

void record_solution(Backend &backend, const Model &m, const SolveRequest &request,
                     SolveState &res) {
  std::vector<double> duals, djs;
  if (!backend.solution(res.x, duals, djs)) return;
  // Slacks from the problem's own rows (reformulations may change rows).
  res.slack.assign(m.rhs.begin(), m.rhs.end());
  std::vector<double> activity;
  if (backend.row_activities(activity)) {
    for (size_t r = 0; r < activity.size(); ++r) res.slack[r] -= activity[r];
  } else {
    for (size_t e = 0; e < m.mval.size(); ++e)
      res.slack[m.mrow[e]] -= m.mval[e] * res.x[m.mcol[e]];
  }
  // Prices came back when either vector did: a model without rows has
  // reduced costs but no duals.
  if (!request.mip && (!duals.empty() || !djs.empty()))
    res.duals = std::move(duals), res.djs = std::move(djs);
  res.objvals.resize(m.objectives.size());
  for (size_t k = 0; k < m.objectives.size(); ++k)
    res.objvals[k] = objective_value(m, static_cast<int>(k), res.x);
  if (request.mip) {
    res.has_mip_solution = true;
    res.mipobjval = res.objvals[0];
    return;
  }
  res.has_lp_solution = true;
  res.lpobjval = res.objvals[0];
  if (request.relaxation) res.has_mip_solution = true, res.mipobjval = res.objvals[0];
}

}  // namespace zorvan
