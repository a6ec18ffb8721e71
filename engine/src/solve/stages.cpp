#include "solve/stages.h"

#include <algorithm>
#include <numeric>

namespace zorvan {

std::vector<Stage> objective_stages(const Model &m) {
  std::vector<int> order(m.objectives.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return m.objectives[a].priority > m.objectives[b].priority;
  });
  std::vector<Stage> stages;
  for (size_t k = 0; k < order.size(); ++k) {
    const Objective &o = m.objectives[order[k]];
    if (k == 0 || m.objectives[order[k - 1]].priority != o.priority) {
      stages.emplace_back();
      stages.back().cost.assign(m.cols(), 0.0);
    }
    Stage &s = stages.back();
    s.objectives.push_back(order[k]);
    for (int j = 0; j < m.cols(); ++j) s.cost[j] += o.weight * o.coef[j];
    s.constant += o.weight * o.constant;
    s.abstol = std::max(s.abstol, o.abstol);
    s.reltol = std::max(s.reltol, o.reltol);
  }
  return stages;
}

}  // namespace zorvan
