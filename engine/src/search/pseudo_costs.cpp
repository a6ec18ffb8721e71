#include "search/pseudo_costs.h"

#include <algorithm>

namespace zorvan {

void PseudoCosts::record(int col, bool up, double gain_per_unit) {
  gain_per_unit = std::max(gain_per_unit, 0.0);
  sum_[slot(col, up)] += gain_per_unit;
  ++count_[slot(col, up)];
  all_sum_[up] += gain_per_unit;
  ++all_count_[up];
}

double PseudoCosts::estimate(int col, bool up) const {
  const size_t s = slot(col, up);
  if (count_[s] > 0) return sum_[s] / static_cast<double>(count_[s]);
  return all_count_[up] > 0 ? all_sum_[up] / static_cast<double>(all_count_[up]) : 1.0;
}

}  // namespace zorvan
