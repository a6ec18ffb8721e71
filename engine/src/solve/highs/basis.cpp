#include "solve/highs/basis.h"

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

// A nonbasic column at the bound its status names, or at the other bound
// when that one is infinite, or at zero when both are.
HighsInt column_status(int status, double lower, double upper) {
  if (status == ZRVS_BASIS_BASIC) return kHighsBasisStatusBasic;
  bool has_lower = lower > -kHighsInf, has_upper = upper < kHighsInf;
  if (status == ZRVS_BASIS_NONBASIC_UPPER && has_upper) return kHighsBasisStatusUpper;
  if (has_lower) return kHighsBasisStatusLower;
  if (has_upper) return kHighsBasisStatusUpper;
  return kHighsBasisStatusZero;
}

// A row's slack status in HiGHS's terms, which speak of the row activity:
// the slack at its lower bound puts 'L', 'R' rows at their upper side and
// 'G', 'E' rows at their lower side.
HighsInt row_status(int status, char type) {
  if (status == ZRVS_BASIS_BASIC || type == 'N') return kHighsBasisStatusBasic;
  if (type == 'R' && status == ZRVS_BASIS_NONBASIC_UPPER) return kHighsBasisStatusLower;
  return type == 'L' || type == 'R' ? kHighsBasisStatusUpper : kHighsBasisStatusLower;
}

}  // namespace

bool basis_applies(const Model &m, const HighsBuild &build, bool mip) {
  return !mip && m.qobj.empty() && build.lp.cols() == m.cols() && build.lp.rows() == m.rows();
}

bool start_basis(const Model &m, const LpBuilder &lp, std::vector<HighsInt> &col,
                 std::vector<HighsInt> &row) {
  if (m.basis_col.empty() && m.basis_row.empty()) return false;
  col.resize(static_cast<size_t>(m.cols()));
  row.resize(static_cast<size_t>(m.rows()));
  for (int j = 0; j < m.cols(); ++j) {
    int status = j < static_cast<int>(m.basis_col.size()) ? m.basis_col[j]
                                                          : ZRVS_BASIS_NONBASIC_LOWER;
    col[j] = column_status(status, lp.col_lower[j], lp.col_upper[j]);
  }
  for (int i = 0; i < m.rows(); ++i) {
    int status = i < static_cast<int>(m.basis_row.size()) ? m.basis_row[i] : ZRVS_BASIS_BASIC;
    row[i] = row_status(status, m.rowtype[i]);
  }
  return true;
}

void store_basis(Model &m, const std::vector<HighsInt> &col, const std::vector<HighsInt> &row) {
  m.basis_col.resize(col.size());
  for (size_t j = 0; j < col.size(); ++j) {
    switch (col[j]) {
      case kHighsBasisStatusBasic: m.basis_col[j] = ZRVS_BASIS_BASIC; break;
      case kHighsBasisStatusUpper: m.basis_col[j] = ZRVS_BASIS_NONBASIC_UPPER; break;
      case kHighsBasisStatusZero: m.basis_col[j] = ZRVS_BASIS_SUPERBASIC; break;
      default: m.basis_col[j] = ZRVS_BASIS_NONBASIC_LOWER; break;
    }
  }
  m.basis_row.resize(row.size());
  for (size_t i = 0; i < row.size(); ++i) {
    if (row[i] == kHighsBasisStatusBasic)
      m.basis_row[i] = ZRVS_BASIS_BASIC;
    else if (m.rowtype[i] == 'R' && row[i] == kHighsBasisStatusLower)
      m.basis_row[i] = ZRVS_BASIS_NONBASIC_UPPER;
    else
      m.basis_row[i] = ZRVS_BASIS_NONBASIC_LOWER;
  }
}

void load_basis(Model &m, const int *rstatus, const int *cstatus, const char *who) {
  if (!rstatus || !cstatus) fail(ZRVS_ERR_ARGUMENT, "%s: both status arrays are needed", who);
  int basic = 0;
  for (int j = 0; j < m.cols(); ++j) {
    int s = cstatus[j];
    if (s < ZRVS_BASIS_NONBASIC_LOWER || s > ZRVS_BASIS_SUPERBASIC)
      fail(ZRVS_ERR_ARGUMENT, "%s: status %d of column %d is not a basis status (0 to 3)", who,
           s, j);
    if (s == ZRVS_BASIS_NONBASIC_LOWER && m.lb[j] <= -ZRVS_PLUSINFINITY)
      fail(ZRVS_ERR_ARGUMENT, "%s: column %d is nonbasic at its lower bound, which is infinite",
           who, j);
    if (s == ZRVS_BASIS_NONBASIC_UPPER && m.ub[j] >= ZRVS_PLUSINFINITY)
      fail(ZRVS_ERR_ARGUMENT, "%s: column %d is nonbasic at its upper bound, which is infinite",
           who, j);
    basic += s == ZRVS_BASIS_BASIC;
  }
  for (int i = 0; i < m.rows(); ++i) {
    int s = rstatus[i];
    if (s < ZRVS_BASIS_NONBASIC_LOWER || s > ZRVS_BASIS_SUPERBASIC)
      fail(ZRVS_ERR_ARGUMENT, "%s: status %d of row %d is not a basis status (0 to 3)", who, s,
           i);
    if (m.rowtype[i] == 'N' && s != ZRVS_BASIS_BASIC)
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d has no sides (type N) and must be basic", who, i);
    if (s == ZRVS_BASIS_NONBASIC_UPPER && m.rowtype[i] != 'R')
      fail(ZRVS_ERR_ARGUMENT,
           "%s: row %d is nonbasic at its upper bound, which only ranged rows have", who, i);
    basic += s == ZRVS_BASIS_BASIC;
  }
  if (basic != m.rows())
    fail(ZRVS_ERR_ARGUMENT, "%s: the basis has %d basic entries; it needs one per row (%d)",
         who, basic, m.rows());
  m.basis_col.assign(cstatus, cstatus + m.cols());
  m.basis_row.assign(rstatus, rstatus + m.rows());
}

}  // namespace zorvan
