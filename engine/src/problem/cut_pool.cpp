#include "problem/cut_pool.h"

#include <cmath>

#include "core/errors.h"

namespace zorvan {

void check_cut_interp(int interp, const char *who) {
  if (interp != cut_any && interp != cut_equal && interp != cut_some_bits &&
      interp != cut_all_bits)
    fail(ZRVS_ERR_ARGUMENT,
         "%s: interp %d is not known (-1 every cut, 1 equal type, 2 some bit in common, 3 "
         "all bits)",
         who, interp);
}

bool cut_matches(const zrvs_cut &c, int cuttype, int interp) {
  switch (interp) {
    case cut_equal: return c.type == cuttype;
    case cut_some_bits: return (c.type & cuttype) != 0;
    case cut_all_bits: return (c.type & cuttype) == cuttype;
    default: return true;
  }
}

double cut_activity(const zrvs_cut &c, const double *x) {
  double a = 0.0;
  for (size_t k = 0; k < c.col.size(); ++k) a += c.coef[k] * x[c.col[k]];
  return a;
}

double cut_violation(const zrvs_cut &c, const double *x) {
  double a = cut_activity(c, x);
  switch (c.rowtype) {
    case 'L': return a - c.rhs;
    case 'G': return c.rhs - a;
    default: return std::fabs(a - c.rhs);
  }
}

std::vector<std::shared_ptr<zrvs_cut>> make_cuts(int ncuts, const int cuttype[],
                                                 const char rowtype[], const double rhs[],
                                                 const int64_t start[], const int colind[],
                                                 const double cutcoef[], int ncols,
                                                 const char *who) {
  if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is negative (%d)", who, ncuts);
  if (ncuts == 0) return {};
  if (!rowtype || !rhs || !start)
    fail(ZRVS_ERR_ARGUMENT, "%s: rowtype, rhs and start are needed", who);
  std::vector<std::shared_ptr<zrvs_cut>> cuts;
  cuts.reserve(static_cast<size_t>(ncuts));
  for (int k = 0; k < ncuts; ++k) {
    auto c = std::make_shared<zrvs_cut>();
    c->type = cuttype ? cuttype[k] : 0;
    c->rowtype = rowtype[k];
    if (c->rowtype != 'L' && c->rowtype != 'G' && c->rowtype != 'E')
      fail(ZRVS_ERR_ARGUMENT, "%s: cut %d has row type '%c' (a cut is 'L', 'G' or 'E')", who,
           k, c->rowtype);
    c->rhs = rhs[k];
    if (!std::isfinite(c->rhs) || std::fabs(c->rhs) >= ZRVS_PLUSINFINITY)
      fail(ZRVS_ERR_ARGUMENT, "%s: cut %d has an infinite or undefined right-hand side", who, k);
    int64_t b = start[k], e = start[k + 1];
    if (b < 0 || e < b) fail(ZRVS_ERR_ARGUMENT, "%s: start offsets of cut %d go backwards", who, k);
    if (e > b && (!colind || !cutcoef))
      fail(ZRVS_ERR_ARGUMENT, "%s: colind and cutcoef are needed for cut coefficients", who);
    for (int64_t i = b; i < e; ++i) {
      int j = colind[i];
      if (j < 0 || j >= ncols)
        fail(ZRVS_ERR_ARGUMENT, "%s: cut %d names column %d; the problem has %d columns", who,
             k, j, ncols);
      if (!std::isfinite(cutcoef[i]))
        fail(ZRVS_ERR_ARGUMENT, "%s: cut %d has an undefined coefficient", who, k);
      if (cutcoef[i] == 0.0) continue;
      for (int seen : c->col)
        if (seen == j)
          fail(ZRVS_ERR_ARGUMENT, "%s: cut %d names column %d twice", who, k, j);
      c->col.push_back(j);
      c->coef.push_back(cutcoef[i]);
    }
    cuts.push_back(std::move(c));
  }
  return cuts;
}

ZRVScut CutPool::store(std::shared_ptr<zrvs_cut> cut, int nodups) {
  if (nodups == 1 || nodups == 2)
    for (const CutPtr &c : cuts_)
      if ((nodups == 2 || c->type == cut->type) && c->rowtype == cut->rowtype &&
          c->rhs == cut->rhs && c->col == cut->col && c->coef == cut->coef)
        return const_cast<zrvs_cut *>(c.get());
  cut->serial = next_serial_++;
  ZRVScut handle = cut.get();
  where_.emplace(handle, cut);
  cuts_.push_back(std::move(cut));
  return handle;
}

CutPtr CutPool::find(ZRVScut handle) const {
  auto it = where_.find(handle);
  return it == where_.end() ? nullptr : it->second;
}

CutPtr CutPool::require(ZRVScut handle, const char *who) const {
  CutPtr c = find(handle);
  if (!c) fail(ZRVS_ERR_ARGUMENT, "%s: a cut handle is not a cut of this problem's pool", who);
  return c;
}

void CutPool::remove(ZRVScut handle) {
  auto it = where_.find(handle);
  if (it == where_.end()) return;
  where_.erase(it);
  for (auto c = cuts_.begin(); c != cuts_.end(); ++c)
    if (c->get() == handle) {
      cuts_.erase(c);
      break;
    }
}

}  // namespace zorvan
