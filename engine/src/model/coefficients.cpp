// Single entries of the model: matrix coefficients, entries of quadratic
// forms, and the removal of a row's quadratic part or of indicator marks.
#include <unordered_map>

#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

namespace {
uint64_t pair_key(int row, int col) {
  return (static_cast<uint64_t>(static_cast<uint32_t>(row)) << 32) | static_cast<uint32_t>(col);
}
}  // namespace

void Model::change_coefficients(int64_t n, const int *row, const int *col, const double *coef,
                                const char *who) {
  check_count(n, "ncoefs", who);
  if (n == 0) return;
  require(row, "rowind", who);
  require(col, "colind", who);
  require(coef, "rowcoef", who);
  for (int64_t k = 0; k < n; ++k) {
    check_index(row[k], rows(), "rowind", k, "row", who);
    check_index(col[k], cols(), "colind", k, "column", who);
    check_finite(coef[k], "rowcoef", k, who);
  }
  // The last value given for each pair; then one pass over the entries
  // updates those present, and the rest are appended.
  std::unordered_map<uint64_t, int64_t> wanted;
  wanted.reserve(static_cast<size_t>(n));
  for (int64_t k = 0; k < n; ++k) wanted[pair_key(row[k], col[k])] = k;
  reserve_more(mrow, wanted.size());
  reserve_more(mcol, wanted.size());
  reserve_more(mval, wanted.size());
  size_t kept = 0;
  for (size_t e = 0; e < mval.size(); ++e) {
    double v = mval[e];
    auto it = wanted.find(pair_key(mrow[e], mcol[e]));
    if (it != wanted.end()) {
      v = coef[it->second];
      wanted.erase(it);
    }
    if (v == 0.0) continue;
    mrow[kept] = mrow[e], mcol[kept] = mcol[e], mval[kept] = v;
    ++kept;
  }
  mrow.resize(kept), mcol.resize(kept), mval.resize(kept);
  for (int64_t k = 0; k < n; ++k) {
    auto it = wanted.find(pair_key(row[k], col[k]));
    if (it == wanted.end() || it->second != k || coef[k] == 0.0) continue;
    mrow.push_back(row[k]), mcol.push_back(col[k]), mval.push_back(coef[k]);
  }
}

double Model::coefficient(int row, int col, const char *who) const {
  check_index(row, rows(), "row", 0, "row", who);
  check_index(col, cols(), "col", 0, "column", who);
  for (size_t e = 0; e < mval.size(); ++e)
    if (mrow[e] == row && mcol[e] == col) return mval[e];
  return 0.0;
}

void Model::change_quadratic_entry(QForm &q, int i, int j, double v, const char *who) {
  check_index(i, cols(), "col1", 0, "column", who);
  check_index(j, cols(), "col2", 0, "column", who);
  check_finite(v, "coef", 0, who);
  if (v == 0.0)
    q.erase(qkey(i, j));
  else
    q[qkey(i, j)] = v;
}

void Model::delete_row_quadratic(int row, const char *who) {
  check_index(row, rows(), "row", 0, "row", who);
  qrows.erase(row);
}

void Model::delete_indicators(int first, int last, const char *who) {
  check_range(first, last, rows(), "row", who);
  for (int r = first; r <= last; ++r) indcol[r] = -1, indflag[r] = 0;
}

}  // namespace zorvan
