// Columns: appending a checked batch, and changes of bounds, types and thresholds.
#include "model/batch.h"
#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

namespace {
bool valid_coltype(char t) {
  return t == 'C' || t == 'B' || t == 'I' || t == 'S' || t == 'R' || t == 'P';
}
}  // namespace

void Model::add_columns(int n, int64_t ncoefs, const double *obj, const int64_t *start,
                        const int *rowind, const double *rowcoef, const double *lbs,
                        const double *ubs, const char *who) {
  check_count(n, "ncols", who);
  check_batch(n, ncoefs, start, rowind, rowcoef, rows(), "rowind", "row", who);
  for (int j = 0; j < n; ++j) {
    if (obj) check_finite(obj[j], "objcoef", j, who);
    if (lbs) check_not_nan(lbs[j], "lb", j, who);
    if (ubs) check_not_nan(ubs[j], "ub", j, who);
  }
  if (n == 0) return;
  int first = cols();
  append_entries(true, first, n, batch_line(start, n, ncoefs), rowind, rowcoef);
  append_columns(n);
  for (int j = 0; j < n; ++j) {
    int c = first + j;
    if (obj) objectives[0].coef[c] = obj[j];
    if (lbs) lb[c] = lbs[j];
    if (ubs) ub[c] = ubs[j];
  }
}

void Model::change_bounds(int n, const int *colind, const char *bndtype, const double *bndval,
                          const char *who) {
  check_count(n, "nbounds", who);
  if (n == 0) return;
  require(colind, "colind", who);
  require(bndtype, "bndtype", who);
  require(bndval, "bndval", who);
  for (int k = 0; k < n; ++k) {
    check_index(colind[k], cols(), "colind", k, "column", who);
    char t = bndtype[k];
    if (t != 'L' && t != 'U' && t != 'B')
      fail(ZRVS_ERR_ARGUMENT, "%s: bndtype[%d] is '%c', not one of L, U, B", who, k,
           t ? t : '?');
    check_not_nan(bndval[k], "bndval", k, who);
  }
  for (int k = 0; k < n; ++k) {
    int c = colind[k];
    if (bndtype[k] != 'U') lb[c] = bndval[k];
    if (bndtype[k] != 'L') ub[c] = bndval[k];
  }
}

void Model::change_column_types(int n, const int *colind, const char *type, const char *who) {
  check_count(n, "ncols", who);
  if (n == 0) return;
  require(colind, "colind", who);
  require(type, "coltype", who);
  for (int k = 0; k < n; ++k) {
    check_index(colind[k], cols(), "colind", k, "column", who);
    if (!valid_coltype(type[k]))
      fail(ZRVS_ERR_ARGUMENT, "%s: coltype[%d] is '%c', not one of C, B, I, S, R, P", who, k,
           type[k] ? type[k] : '?');
  }
  for (int k = 0; k < n; ++k) {
    int c = colind[k];
    coltype[c] = type[k];
    if (type[k] == 'B') lb[c] = 0.0, ub[c] = 1.0;
  }
}

void Model::change_limits(int n, const int *colind, const double *value, const char *who) {
  check_count(n, "ncols", who);
  if (n == 0) return;
  require(colind, "colind", who);
  require(value, "limit", who);
  for (int k = 0; k < n; ++k) {
    int c = colind[k];
    check_index(c, cols(), "colind", k, "column", who);
    char t = coltype[c];
    if (t != 'S' && t != 'R' && t != 'P')
      fail(ZRVS_ERR_ARGUMENT,
           "%s: column %d has type '%c'; only S, R and P columns have a threshold", who, c, t);
    check_finite(value[k], "limit", k, who);
  }
  for (int k = 0; k < n; ++k) limit[colind[k]] = value[k];
}

bool Model::is_binary(int c) const {
  return coltype[c] == 'B' || (coltype[c] == 'I' && lb[c] >= 0.0 && ub[c] <= 1.0);
}

}  // namespace zorvan
