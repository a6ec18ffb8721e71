// The checked build of a whole LP for ZRVSloadlp.
#include <cmath>

#include "core/errors.h"
#include "model/checks.h"
#include "model/model.h"
#include "zorvan/zrvs.h"

namespace zorvan {

void check_problem_name(const char *name, const char *who) {
  require(name, "the problem name", who);
  size_t n = std::string(name).size();
  if (n > ZRVS_MAXNAMELENGTH)
    fail(ZRVS_ERR_ARGUMENT, "%s: the problem name is longer than %d characters", who,
         ZRVS_MAXNAMELENGTH);
}

namespace {
int64_t column_start(const LpData &d, int j) {
  return d.start64 ? d.start64[j] : static_cast<int64_t>(d.start32[j]);
}
}  // namespace

Model build_lp_model(const LpData &d, const char *who) {
  if (d.ncols < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncols is negative (%d)", who, d.ncols);
  if (d.nrows < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nrows is negative (%d)", who, d.nrows);
  if (d.name) check_problem_name(d.name, who);
  if (d.nrows > 0 && (!d.rowtype || !d.rhs))
    fail(ZRVS_ERR_ARGUMENT, "%s: rowtype and rhs are required when nrows > 0", who);
  bool have_start = d.start64 || d.start32;
  if (d.ncols > 0 && !have_start && d.collen)
    fail(ZRVS_ERR_ARGUMENT, "%s: collen needs start", who);

  Model m;
  if (d.name && *d.name) m.name = d.name;
  m.append_rows(d.nrows);
  m.append_columns(d.ncols);

  for (int i = 0; i < d.nrows; ++i) {
    char t = d.rowtype[i];
    check_row_type(t, i, who);
    check_not_nan(d.rhs[i], "rhs", i, who);
    m.rowtype[i] = t;
    m.rhs[i] = d.rhs[i];
    if (t == 'R') {
      if (!d.rng) fail(ZRVS_ERR_ARGUMENT, "%s: row %d is a range row but rng is NULL", who, i);
      check_range_value(d.rng[i], i, who);
      m.range[i] = d.rng[i];
    }
  }

  // Entries [begin, end) of column j.
  auto entries = [&](int j) -> std::pair<int64_t, int64_t> {
    int64_t begin = column_start(d, j);
    return {begin, d.collen ? begin + d.collen[j] : column_start(d, j + 1)};
  };
  std::vector<char> seen(d.nrows, 0);
  std::vector<double> &obj = m.objectives[0].coef;
  for (int j = 0; j < d.ncols; ++j) {
    double o = d.obj ? d.obj[j] : 0.0;
    double l = d.lb ? d.lb[j] : 0.0;
    double u = d.ub ? d.ub[j] : ZRVS_PLUSINFINITY;
    check_finite(o, "obj", j, who);
    if (std::isnan(l) || std::isnan(u))
      fail(ZRVS_ERR_ARGUMENT, "%s: a bound of column %d is NaN", who, j);
    obj[j] = o;
    m.lb[j] = l;
    m.ub[j] = u;
    if (!have_start) continue;
    auto [begin, end] = entries(j);
    if (begin < 0 || end < begin)
      fail(ZRVS_ERR_ARGUMENT, "%s: the entries of column %d are given by an invalid range", who,
           j);
    if (end > begin && (!d.rowind || !d.rowcoef))
      fail(ZRVS_ERR_ARGUMENT, "%s: rowind and rowcoef are required for matrix entries", who);
    for (int64_t k = begin; k < end; ++k) {
      int r = d.rowind[k];
      check_index(r, d.nrows, "rowind", k, "row", who);
      check_finite(d.rowcoef[k], "rowcoef", k, who);
      if (seen[r])
        fail(ZRVS_ERR_ARGUMENT, "%s: column %d has two entries in row %d", who, j, r);
      seen[r] = 1;
    }
    for (int64_t k = begin; k < end; ++k) seen[d.rowind[k]] = 0;
  }
  if (have_start) m.append_entries(true, 0, d.ncols, entries, d.rowind, d.rowcoef);
  return m;
}

}  // namespace zorvan
