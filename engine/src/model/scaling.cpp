#include "model/scaling.h"

#include <algorithm>
#include <cmath>

namespace zorvan {

namespace {

double power_of_two(double v) { return std::ldexp(1.0, static_cast<int>(std::lround(std::log2(v)))); }

// Factors that bring the largest and smallest scaled entry of each line
// around 1; lines without entries keep 1.
void scale_lines(const Model &m, bool rows, const std::vector<double> &other,
                 std::vector<double> &out) {
  const size_t n = rows ? m.rows() : m.cols();
  std::vector<double> big(n, 0.0), small(n, HUGE_VAL);
  for (size_t e = 0; e < m.mval.size(); ++e) {
    const int line = rows ? m.mrow[e] : m.mcol[e];
    const double v = std::fabs(m.mval[e]) * other[rows ? m.mcol[e] : m.mrow[e]];
    big[line] = std::max(big[line], v), small[line] = std::min(small[line], v);
  }
  for (size_t k = 0; k < n; ++k)
    out[k] = big[k] > 0.0 ? power_of_two(1.0 / std::sqrt(big[k] * small[k])) : 1.0;
}

}  // namespace

Scaling geometric_scaling(const Model &m) {
  Scaling s;
  s.row.assign(static_cast<size_t>(m.rows()), 1.0);
  s.col.assign(static_cast<size_t>(m.cols()), 1.0);
  for (int pass = 0; pass < 4; ++pass) {
    scale_lines(m, true, s.col, s.row);
    scale_lines(m, false, s.row, s.col);
  }
  return s;
}

}  // namespace zorvan
