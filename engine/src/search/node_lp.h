// The LP the search solves at every node, on one HiGHS instance kept for
// the whole search: the problem's columns and rows (with those of the
// reformulations), then extra rows (cuts, rows of branches). Moving to a
// node changes bounds and extra rows only, and starts the dual simplex from
// the parent's basis.
#pragma once
#include <cstdint>
#include <vector>

#include "search/node.h"
#include "solve/highs/builder.h"

namespace zorvan {

enum class LpOutcome { optimal, infeasible, unbounded, limit, failed };

class NodeLp {
 public:
  // The LP of `build` with costs `cost` (minimised) and constant `offset`;
  // rows flagged in `hidden` start free (delayed rows, model cuts).
  NodeLp(const HighsBuild &build, const HighsCsc &matrix, const std::vector<double> &cost,
         double offset,
         const std::vector<char> &hidden, double feastol, double opttol, int threads);
  ~NodeLp();
  NodeLp(const NodeLp &) = delete;
  NodeLp &operator=(const NodeLp &) = delete;

  int cols() const { return ncols_; }
  int base_rows() const { return nrows_; }
  void set_costs(const std::vector<double> &cost, double offset);
  // Gives row i of the problem its own sides again (a hidden row joins).
  void reveal_row(int i);
  // Adds a row to the problem's rows for good (a level of the objectives).
  void add_base_row(double lo, double up, const std::vector<HighsInt> &col,
                    const std::vector<double> &coef);
  void set_bounds(const std::vector<double> &lb, const std::vector<double> &ub);
  void set_column_bounds(int j, double lb, double ub);
  // Makes the extra rows exactly `rows`, in order, keeping a common prefix.
  void set_extra_rows(const std::vector<RowPtr> &rows);
  const std::vector<RowPtr> &extra_rows() const { return extra_; }
  // The LP row of an extra row by key, -1 when absent.
  int row_of_key(int64_t key) const;

  LpBasis basis() const;
  void set_basis(const LpBasis &b);

  // Solves by the dual simplex; iteration_limit < 0: none.
  LpOutcome solve(int64_t iteration_limit, double time_limit);
  double objective() const { return objective_; }
  const std::vector<double> &x() const { return x_; }
  const std::vector<double> &row_activity() const { return row_value_; }
  const std::vector<double> &row_duals() const { return row_dual_; }
  const std::vector<double> &col_duals() const { return col_dual_; }
  int64_t iterations() const { return iterations_; }

 private:
  void *h_;
  int ncols_, nrows_;
  std::vector<double> row_lower_, row_upper_;  // the problem's rows' own sides
  std::vector<RowPtr> extra_;
  double objective_ = 0.0;
  std::vector<double> x_, col_dual_, row_value_, row_dual_;
  int64_t iterations_ = 0;
};

}  // namespace zorvan
