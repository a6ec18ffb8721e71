// General constraints (max, min, and, or, abs) and piecewise-linear
// constraints: checked batches in, deletions, and renumbering when columns
// go.
#include <algorithm>

#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

namespace {

// Entries [begin, end) of item k of a batch of n items over `total` entries.
std::pair<int64_t, int64_t> part(const int64_t *start, int n, int64_t total, int k) {
  if (total == 0) return {0, 0};
  return {start[k], k + 1 < n ? start[k + 1] : total};
}

template <class T>
void keep_unflagged(std::vector<T> &v, const std::vector<char> &del) {
  size_t n = 0;
  for (size_t i = 0; i < v.size(); ++i)
    if (!del[i]) v[n++] = v[i];
  v.resize(n);
}

// Drops the parts of deleted items from a packed array with its starts.
template <class T>
void keep_parts(std::vector<int64_t> &start, std::vector<T> &v, const std::vector<char> &del) {
  std::vector<int64_t> out{0};
  size_t m = 0;
  for (size_t k = 0; k + 1 < start.size(); ++k) {
    if (del[k]) continue;
    for (int64_t e = start[k]; e < start[k + 1]; ++e) v[m++] = v[e];
    out.push_back(static_cast<int64_t>(m));
  }
  v.resize(m);
  start = std::move(out);
}

const char *type_name(int t) {
  switch (t) {
    case ZRVS_GENCONS_MAX: return "max";
    case ZRVS_GENCONS_MIN: return "min";
    case ZRVS_GENCONS_AND: return "and";
    case ZRVS_GENCONS_OR: return "or";
    default: return "abs";
  }
}

}  // namespace

void Model::add_general_constraints(int n, int64_t ncols, int64_t nvals, const int *type,
                                    const int *resultant, const int64_t *colstart,
                                    const int *colind, const int64_t *valstart,
                                    const double *val, const char *who) {
  check_count(n, "ncons", who);
  check_count(ncols, "ncols", who);
  check_count(nvals, "nvals", who);
  if (n == 0) return;
  require(type, "contype", who);
  require(resultant, "resultant", who);
  if (ncols > 0) require(colind, "colind", who), require(colstart, "colstart", who);
  if (nvals > 0) require(val, "val", who), require(valstart, "valstart", who);
  check_starts(colstart, n, ncols, who);
  check_starts(valstart, n, nvals, who);
  std::vector<int> seen;
  for (int k = 0; k < n; ++k) {
    const int t = type[k];
    if (t < ZRVS_GENCONS_MAX || t > ZRVS_GENCONS_ABS)
      fail(ZRVS_ERR_ARGUMENT, "%s: contype[%d] is %d, not a general constraint type (0..4)", who,
           k, t);
    check_index(resultant[k], cols(), "resultant", k, "column", who);
    auto [cb, ce] = part(colstart, n, ncols, k);
    auto [vb, ve] = part(valstart, n, nvals, k);
    seen.clear();
    for (int64_t e = cb; e < ce; ++e) {
      check_index(colind[e], cols(), "colind", e, "column", who);
      if (colind[e] == resultant[k])
        fail(ZRVS_ERR_ARGUMENT, "%s: general constraint %d uses its resultant %d as an operand",
             who, k, resultant[k]);
      seen.push_back(colind[e]);
    }
    std::sort(seen.begin(), seen.end());
    if (std::adjacent_find(seen.begin(), seen.end()) != seen.end())
      fail(ZRVS_ERR_ARGUMENT, "%s: general constraint %d names column %d twice", who, k,
           *std::adjacent_find(seen.begin(), seen.end()));
    for (int64_t e = vb; e < ve; ++e) check_finite(val[e], "val", e, who);
    const int64_t cols_k = ce - cb, vals_k = ve - vb;
    if (t == ZRVS_GENCONS_ABS && (cols_k != 1 || vals_k != 0))
      fail(ZRVS_ERR_ARGUMENT,
           "%s: general constraint %d (abs) needs exactly one column and no values, not %lld "
           "columns and %lld values",
           who, k, (long long)cols_k, (long long)vals_k);
    if ((t == ZRVS_GENCONS_AND || t == ZRVS_GENCONS_OR) && (cols_k == 0 || vals_k != 0))
      fail(ZRVS_ERR_ARGUMENT,
           "%s: general constraint %d (%s) needs at least one column and no values", who, k,
           type_name(t));
    if (cols_k + vals_k == 0)
      fail(ZRVS_ERR_ARGUMENT, "%s: general constraint %d (%s) has no operands", who, k,
           type_name(t));
  }
  reserve_more(gencol, ncols);
  reserve_more(genval, nvals);
  for (int k = 0; k < n; ++k) {
    auto [cb, ce] = part(colstart, n, ncols, k);
    auto [vb, ve] = part(valstart, n, nvals, k);
    gentype.push_back(type[k]);
    genres.push_back(resultant[k]);
    gencol.insert(gencol.end(), colind + cb, colind + ce);
    genval.insert(genval.end(), val + vb, val + ve);
    gencolstart.push_back(static_cast<int64_t>(gencol.size()));
    genvalstart.push_back(static_cast<int64_t>(genval.size()));
  }
}

void Model::add_piecewise_constraints(int n, int64_t npoints, const int *col,
                                      const int *resultant, const int64_t *start,
                                      const double *x, const double *y, const char *who) {
  check_count(n, "npwls", who);
  check_count(npoints, "npoints", who);
  if (n == 0) return;
  require(col, "colind", who);
  require(resultant, "resultant", who);
  require(start, "start", who);
  if (npoints > 0) require(x, "xval", who), require(y, "yval", who);
  check_starts(start, n, npoints, who);
  for (int k = 0; k < n; ++k) {
    check_index(col[k], cols(), "colind", k, "column", who);
    check_index(resultant[k], cols(), "resultant", k, "column", who);
    if (col[k] == resultant[k])
      fail(ZRVS_ERR_ARGUMENT, "%s: piecewise-linear constraint %d has column %d on both sides",
           who, k, col[k]);
    auto [b, e] = part(start, n, npoints, k);
    if (e - b < 2)
      fail(ZRVS_ERR_ARGUMENT, "%s: piecewise-linear constraint %d needs at least two points", who,
           k);
    for (int64_t p = b; p < e; ++p) {
      check_finite(x[p], "xval", p, who);
      check_finite(y[p], "yval", p, who);
      if (p > b && x[p] < x[p - 1])
        fail(ZRVS_ERR_ARGUMENT,
             "%s: the x values of piecewise-linear constraint %d decrease at point %lld", who, k,
             (long long)p);
      if (p > b + 1 && x[p] == x[p - 1] && x[p] == x[p - 2])
        fail(ZRVS_ERR_ARGUMENT,
             "%s: piecewise-linear constraint %d has three points at x = %g; a jump takes two",
             who, k, x[p]);
    }
    if (x[e - 1] == x[b])
      fail(ZRVS_ERR_ARGUMENT, "%s: all points of piecewise-linear constraint %d have x = %g", who,
           k, x[b]);
  }
  reserve_more(pwlx, npoints);
  reserve_more(pwly, npoints);
  for (int k = 0; k < n; ++k) {
    auto [b, e] = part(start, n, npoints, k);
    pwlcol.push_back(col[k]);
    pwlres.push_back(resultant[k]);
    pwlx.insert(pwlx.end(), x + b, x + e);
    pwly.insert(pwly.end(), y + b, y + e);
    pwlstart.push_back(static_cast<int64_t>(pwlx.size()));
  }
}

void Model::delete_general_constraints(const std::vector<char> &del) {
  keep_parts(gencolstart, gencol, del);
  keep_parts(genvalstart, genval, del);
  keep_unflagged(gentype, del);
  keep_unflagged(genres, del);
}

void Model::delete_piecewise_constraints(const std::vector<char> &del) {
  std::vector<int64_t> ystart = pwlstart;
  keep_parts(pwlstart, pwlx, del);
  keep_parts(ystart, pwly, del);
  keep_unflagged(pwlcol, del);
  keep_unflagged(pwlres, del);
}

void Model::renumber_general_columns(const std::vector<int> &map) {
  // Operands of deleted columns leave their constraint first; a constraint
  // that loses its resultant or every operand it needs goes as a whole.
  std::vector<int64_t> start{0};
  size_t m = 0;
  std::vector<char> drop(gentype.size(), 0);
  for (size_t k = 0; k < gentype.size(); ++k) {
    for (int64_t e = gencolstart[k]; e < gencolstart[k + 1]; ++e)
      if (map[gencol[e]] >= 0) gencol[m++] = map[gencol[e]];
    start.push_back(static_cast<int64_t>(m));
    const int64_t left = start[k + 1] - start[k];
    const int64_t values = genvalstart[k + 1] - genvalstart[k];
    genres[k] = map[genres[k]];
    const bool needs_column = gentype[k] >= ZRVS_GENCONS_AND;
    drop[k] = genres[k] < 0 || (left == 0 && (needs_column || values == 0));
  }
  gencol.resize(m);
  gencolstart = std::move(start);
  delete_general_constraints(drop);
  std::vector<char> gone(pwlcol.size(), 0);
  for (size_t k = 0; k < pwlcol.size(); ++k) {
    pwlcol[k] = map[pwlcol[k]];
    pwlres[k] = map[pwlres[k]];
    gone[k] = pwlcol[k] < 0 || pwlres[k] < 0;
  }
  delete_piecewise_constraints(gone);
}

}  // namespace zorvan
