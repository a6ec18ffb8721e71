// A node of the search tree: the bounds, rows and cuts that hold below it,
// what its parent's LP gave, and the basis its LP starts from.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "interfaces/highs_c_api.h"
#include "problem/cut_pool.h"

namespace zorvan {

// A row beyond the problem's own rows: a cut or a row of a branch, with a
// key that names it across nodes. lo/up use HiGHS's infinity.
struct ExtraRow {
  int64_t key = 0;
  double lo = 0.0, up = 0.0;
  std::vector<HighsInt> col;
  std::vector<double> coef;
};
using RowPtr = std::shared_ptr<const ExtraRow>;

// A simplex basis of the search's LP: the columns, the problem's rows, and
// the extra rows by key.
struct LpBasis {
  std::vector<HighsInt> col, row;
  std::vector<std::pair<int64_t, HighsInt>> extra;
};

struct ColumnBound {
  int col;
  double lb, ub;
};

struct Node {
  int64_t id = 0, parent = 0;
  int depth = 0;
  int branch = 0;              // which branch of its parent's branching
  double bound = 0.0;          // a lower bound on its objective (minimised)
  std::vector<ColumnBound> bounds;  // along its path; later entries win
  std::vector<RowPtr> rows;         // local rows: branch rows and loaded cuts
  std::vector<CutPtr> cuts;         // the loaded cuts among them
  std::shared_ptr<const LpBasis> basis;  // the parent's final basis
  // The column branched on to make this node (-1: none), for pseudo-costs.
  int branch_col = -1;
  bool up = false;
  double distance = 0.0;  // how far the branch moved the column's value
};

}  // namespace zorvan
