// Rows: appending a checked batch, and the quadratic parts of rows.
#include "model/batch.h"
#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

void Model::add_rows(int n, int64_t ncoefs, const char *type, const double *rhss,
                     const double *rng, const int64_t *start, const int *colind,
                     const double *rowcoef, const char *who) {
  check_count(n, "nrows", who);
  check_batch(n, ncoefs, start, colind, rowcoef, cols(), "colind", "column", who);
  if (n == 0) return;
  require(type, "rowtype", who);
  for (int i = 0; i < n; ++i) {
    check_row_type(type[i], i, who);
    if (type[i] != 'N') {
      require(rhss, "rhs", who);
      check_not_nan(rhss[i], "rhs", i, who);
    }
    if (type[i] == 'R') {
      require(rng, "rng", who);
      check_range_value(rng[i], i, who);
    }
  }
  int first = rows();
  append_entries(false, first, n, batch_line(start, n, ncoefs), colind, rowcoef);
  append_rows(n);
  for (int i = 0; i < n; ++i) {
    int r = first + i;
    rowtype[r] = type[i];
    rhs[r] = rhss ? rhss[i] : 0.0;
    if (std::isnan(rhs[r])) rhs[r] = 0.0;  // free rows may pass anything
    range[r] = type[i] == 'R' ? rng[i] : 0.0;
  }
}

void Model::add_row_quadratic(int row, int64_t n, const int *col1, const int *col2,
                              const double *coef, const char *who) {
  check_index(row, rows(), "row", 0, "row", who);
  check_count(n, "ncoefs", who);
  if (n == 0) return;
  require(col1, "rowqcol1", who);
  require(col2, "rowqcol2", who);
  require(coef, "rowqcoef", who);
  for (int64_t k = 0; k < n; ++k) {
    check_index(col1[k], cols(), "rowqcol1", k, "column", who);
    check_index(col2[k], cols(), "rowqcol2", k, "column", who);
    check_finite(coef[k], "rowqcoef", k, who);
  }
  QForm form = qrows.count(row) ? qrows[row] : QForm();
  for (int64_t k = 0; k < n; ++k) {
    double &v = form[qkey(col1[k], col2[k])];
    v += coef[k];
    if (v == 0.0) form.erase(qkey(col1[k], col2[k]));
  }
  if (form.empty())
    qrows.erase(row);
  else
    qrows[row] = std::move(form);
}

// Each batch is checked whole before any row changes.
void Model::change_rhs(int n, const int *rowind, const double *value, const char *who) {
  check_count(n, "nrows", who);
  if (n == 0) return;
  require(rowind, "rowind", who);
  require(value, "rhs", who);
  for (int k = 0; k < n; ++k) {
    check_index(rowind[k], rows(), "rowind", k, "row", who);
    check_not_nan(value[k], "rhs", k, who);
  }
  for (int k = 0; k < n; ++k) rhs[rowind[k]] = value[k];
}

void Model::change_ranges(int n, const int *rowind, const double *value, const char *who) {
  check_count(n, "nrows", who);
  if (n == 0) return;
  require(rowind, "rowind", who);
  require(value, "rng", who);
  for (int k = 0; k < n; ++k) {
    check_index(rowind[k], rows(), "rowind", k, "row", who);
    check_range_value(value[k], k, who);
    if (rowtype[rowind[k]] == 'N')
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d is free ('N') and cannot take a range", who,
           rowind[k]);
  }
  for (int k = 0; k < n; ++k) {
    const int r = rowind[k];
    if (rowtype[r] == 'G') rhs[r] += value[k];
    rowtype[r] = 'R';
    range[r] = value[k];
  }
}

void Model::change_row_types(int n, const int *rowind, const char *type, const char *who) {
  check_count(n, "nrows", who);
  if (n == 0) return;
  require(rowind, "rowind", who);
  require(type, "rowtype", who);
  for (int k = 0; k < n; ++k) {
    check_index(rowind[k], rows(), "rowind", k, "row", who);
    check_row_type(type[k], k, who);
  }
  for (int k = 0; k < n; ++k) {
    const int r = rowind[k];
    if (rowtype[r] != type[k]) range[r] = 0.0;
    rowtype[r] = type[k];
  }
}

}  // namespace zorvan
