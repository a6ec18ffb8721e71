#include "solve/highs/loose_columns.h"

#include <algorithm>
#include <vector>

namespace zorvan {

int pin_loose_columns(const Model &m, HighsBuild &build) {
  LpBuilder &lp = build.lp;
  const int n = lp.cols();
  std::vector<char> used(static_cast<size_t>(n), 0);
  for (size_t e = 0; e < m.mval.size(); ++e)
    if (m.mval[e] != 0.0) used[m.mcol[e]] = 1;
  for (size_t e = 0; e < lp.eval.size(); ++e)
    if (lp.eval[e] != 0.0) used[lp.ecol[e]] = 1;
  const HighsCsc &q = build.hessian;
  for (int j = 0; j + 1 < static_cast<int>(q.start.size()); ++j)
    for (HighsInt k = q.start[j]; k < q.start[j + 1]; ++k)
      if (q.value[k] != 0.0) used[j] = used[q.index[k]] = 1;
  int pinned = 0;
  for (int j = 0; j < n; ++j) {
    if (used[j] || lp.col_lower[j] > lp.col_upper[j]) continue;
    double &lower = lp.col_lower[j], &upper = lp.col_upper[j];
    const double slope = m.objsense * lp.cost[j];  // the cost of a minimisation
    double best;
    if (slope > 0.0)
      best = lower;
    else if (slope < 0.0)
      best = upper;
    else
      best = std::min(std::max(0.0, lower), upper);
    if (best <= -kHighsInf || best >= kHighsInf) continue;
    lower = upper = best;
    ++pinned;
  }
  return pinned;
}

}  // namespace zorvan
