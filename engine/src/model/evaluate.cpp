#include "model/evaluate.h"

#include "zorvan/zrvs.h"

namespace zorvan {

double objective_value(const Model &m, int k, const double *x) {
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

std::vector<double> row_activities(const Model &m, const double *x) {
  std::vector<double> act(static_cast<size_t>(m.rows()), 0.0);
  for (size_t e = 0; e < m.mval.size(); ++e) act[m.mrow[e]] += m.mval[e] * x[m.mcol[e]];
  for (const auto &q : m.qrows)
    for (const auto &e : q.second) {
      int i = e.first.first, j = e.first.second;
      act[q.first] += (i == j ? 1.0 : 2.0) * e.second * x[i] * x[j];
    }
  return act;
}

std::vector<double> row_slacks(const Model &m, const double *x) {
  std::vector<double> s = row_activities(m, x);
  for (int i = 0; i < m.rows(); ++i) s[i] = m.rhs[i] - s[i];
  return s;
}

std::vector<double> reduced_costs(const Model &m, const double *duals, const double *x) {
  std::vector<double> dj(m.objectives[0].coef);
  for (size_t e = 0; e < m.mval.size(); ++e) dj[m.mcol[e]] -= m.mval[e] * duals[m.mrow[e]];
  if (x)
    for (const auto &e : m.qobj) {
      int i = e.first.first, j = e.first.second;
      dj[i] += e.second * x[j];
      if (i != j) dj[j] += e.second * x[i];
    }
  return dj;
}

void row_sides(const Model &m, int i, double *lower, double *upper) {
  const double inf = ZRVS_PLUSINFINITY;
  switch (m.rowtype[i]) {
    case 'L': *lower = -inf, *upper = m.rhs[i]; return;
    case 'G': *lower = m.rhs[i], *upper = inf; return;
    case 'E': *lower = *upper = m.rhs[i]; return;
    case 'R': *lower = m.rhs[i] - m.range[i], *upper = m.rhs[i]; return;
    default: *lower = -inf, *upper = inf; return;
  }
}

}  // namespace zorvan
