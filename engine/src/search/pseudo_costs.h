// Pseudo-costs: per column and direction, the average rise of the LP
// objective per unit of distance the branch moved the column. Columns
// without history are scored by strong branching, whose results seed them.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zorvan {

class PseudoCosts {
 public:
  explicit PseudoCosts(int ncols) : sum_(2 * ncols, 0.0), count_(2 * ncols, 0) {}
  void record(int col, bool up, double gain_per_unit);
  bool known(int col, bool up) const { return count_[slot(col, up)] > 0; }
  // The column's average, or the average over all known columns.
  double estimate(int col, bool up) const;

 private:
  static size_t slot(int col, bool up) { return 2 * static_cast<size_t>(col) + (up ? 1 : 0); }
  std::vector<double> sum_;
  std::vector<int64_t> count_;
  double all_sum_[2] = {0.0, 0.0};
  int64_t all_count_[2] = {0, 0};
};

// The product score of a branching: both children's gains count.
inline double branch_score(double down, double up) {
  const double eps = 1e-6;
  return (down > eps ? down : eps) * (up > eps ? up : eps);
}

}  // namespace zorvan
