// Special ordered sets and indicator constraints.
#include <algorithm>
#include <numeric>

#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

namespace {
// Positions b..e-1 ordered by key(position).
template <class Key>
void order_by(std::vector<int64_t> &order, int64_t b, int64_t e, Key key) {
  order.resize(e - b);
  std::iota(order.begin(), order.end(), b);
  std::sort(order.begin(), order.end(), [&](int64_t x, int64_t y) { return key(x) < key(y); });
}
}  // namespace

void Model::add_sets(int n, int64_t nelems, const char *type, const int64_t *start,
                     const int *colind, const double *refval, const char *who) {
  check_count(n, "nsets", who);
  check_count(nelems, "nelems", who);
  if (n == 0) return;
  require(type, "settype", who);
  check_starts(start, n, nelems, who);
  if (nelems > 0) {
    require(colind, "colind", who);
    require(refval, "refval", who);
  }
  auto members = [&](int s) -> std::pair<int64_t, int64_t> {
    if (nelems == 0) return {0, 0};
    return {start[s], s + 1 < n ? start[s + 1] : nelems};
  };
  auto by_ref = [&](int64_t k) { return refval[k]; };
  std::vector<int64_t> order;
  for (int s = 0; s < n; ++s) {
    if (type[s] != '1' && type[s] != '2')
      fail(ZRVS_ERR_ARGUMENT, "%s: settype[%d] is '%c', not '1' or '2'", who, s,
           type[s] ? type[s] : '?');
    auto [b, e] = members(s);
    for (int64_t k = b; k < e; ++k) {
      check_index(colind[k], cols(), "colind", k, "column", who);
      check_finite(refval[k], "refval", k, who);
    }
    order_by(order, b, e, by_ref);
    for (size_t k = 1; k < order.size(); ++k)
      if (refval[order[k]] == refval[order[k - 1]])
        fail(ZRVS_ERR_ARGUMENT, "%s: set %d has two members with reference value %g", who, s,
             refval[order[k]]);
    order_by(order, b, e, [&](int64_t k) { return colind[k]; });
    for (size_t k = 1; k < order.size(); ++k)
      if (colind[order[k]] == colind[order[k - 1]])
        fail(ZRVS_ERR_ARGUMENT, "%s: set %d holds column %d twice", who, s, colind[order[k]]);
  }
  reserve_more(setcol, nelems);
  reserve_more(setref, nelems);
  for (int s = 0; s < n; ++s) {
    auto [b, e] = members(s);
    order_by(order, b, e, by_ref);
    for (int64_t k : order) {
      setcol.push_back(colind[k]);
      setref.push_back(refval[k]);
    }
    settype.push_back(type[s]);
    setstart.push_back(static_cast<int64_t>(setcol.size()));
  }
  setnames.append_unnamed(n);
}

void Model::set_indicators(int n, const int *rowind, const int *colind, const int *complement,
                           const char *who) {
  check_count(n, "nrows", who);
  if (n == 0) return;
  require(rowind, "rowind", who);
  require(colind, "colind", who);
  require(complement, "complement", who);
  for (int k = 0; k < n; ++k) {
    check_index(rowind[k], rows(), "rowind", k, "row", who);
    int f = complement[k];
    if (f != 0 && f != 1 && f != -1)
      fail(ZRVS_ERR_ARGUMENT, "%s: complement[%d] is %d, not 1, -1 or 0", who, k, f);
    if (f == 0) continue;
    check_index(colind[k], cols(), "colind", k, "column", who);
    if (!is_binary(colind[k]))
      fail(ZRVS_ERR_ARGUMENT, "%s: colind[%d] = %d is not a binary column", who, k, colind[k]);
    if (qrows.count(rowind[k]))
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d has a quadratic part and cannot be an indicator row",
           who, rowind[k]);
  }
  for (int k = 0; k < n; ++k) {
    int r = rowind[k];
    indflag[r] = complement[k];
    indcol[r] = complement[k] == 0 ? -1 : colind[k];
  }
}

}  // namespace zorvan
