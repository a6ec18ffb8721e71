// Special ordered sets and indicator constraints.
#include <algorithm>
#include <numeric>

#include "core/problem.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

// A binary column: type 'B', or 'I' with bounds inside [0, 1].
bool is_binary(const Model &m, int c) {
  return m.coltype[c] == 'B' || (m.coltype[c] == 'I' && m.lb[c] >= 0.0 && m.ub[c] <= 1.0);
}

}  // namespace

extern "C" {

int ZRVSaddsets64(ZRVSprob prob, int nsets, int64_t nelems, const char settype[],
                  const int64_t start[], const int colind[], const double refval[]) {
  const char *who = "ZRVSaddsets64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nsets, "nsets", who);
    check_count(nelems, "nelems", who);
    if (nsets == 0) return;
    require(settype, "settype", who);
    check_starts(start, nsets, nelems, who);
    if (nelems > 0) {
      require(colind, "colind", who);
      require(refval, "refval", who);
    }
    std::vector<int64_t> order;
    for (int s = 0; s < nsets; ++s) {
      if (settype[s] != '1' && settype[s] != '2')
        fail(ZRVS_ERR_ARGUMENT, "%s: settype[%d] is '%c', not '1' or '2'", who, s,
             settype[s] ? settype[s] : '?');
      if (nelems == 0) continue;
      int64_t b = start[s], e = s + 1 < nsets ? start[s + 1] : nelems;
      for (int64_t k = b; k < e; ++k) {
        check_index(colind[k], m.cols(), "colind", k, "column", who);
        check_finite(refval[k], "refval", k, who);
      }
      order.resize(e - b);
      std::iota(order.begin(), order.end(), b);
      std::sort(order.begin(), order.end(),
                [&](int64_t x, int64_t y) { return refval[x] < refval[y]; });
      for (size_t k = 1; k < order.size(); ++k)
        if (refval[order[k]] == refval[order[k - 1]])
          fail(ZRVS_ERR_ARGUMENT, "%s: set %d has two members with reference value %g", who, s,
               refval[order[k]]);
      std::sort(order.begin(), order.end(),
                [&](int64_t x, int64_t y) { return colind[x] < colind[y]; });
      for (size_t k = 1; k < order.size(); ++k)
        if (colind[order[k]] == colind[order[k - 1]])
          fail(ZRVS_ERR_ARGUMENT, "%s: set %d holds column %d twice", who, s, colind[order[k]]);
    }
    reserve_more(m.setcol, nelems);
    reserve_more(m.setref, nelems);
    for (int s = 0; s < nsets; ++s) {
      if (nelems > 0) {
        int64_t b = start[s], e = s + 1 < nsets ? start[s + 1] : nelems;
        order.resize(e - b);
        std::iota(order.begin(), order.end(), b);
        std::sort(order.begin(), order.end(),
                  [&](int64_t x, int64_t y) { return refval[x] < refval[y]; });
        for (int64_t k : order) {
          m.setcol.push_back(colind[k]);
          m.setref.push_back(refval[k]);
        }
      }
      m.settype.push_back(settype[s]);
      m.setstart.push_back(static_cast<int64_t>(m.setcol.size()));
    }
    m.setnames.append_unnamed(nsets);
    p.model_changed();
  });
}

int ZRVSdelsets(ZRVSprob prob, int nsets, const int setind[]) {
  const char *who = "ZRVSdelsets";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nsets, "nsets", who);
    if (nsets == 0) return;
    require(setind, "setind", who);
    std::vector<char> del(m.sets(), 0);
    for (int k = 0; k < nsets; ++k) {
      check_index(setind[k], m.sets(), "setind", k, "set", who);
      del[setind[k]] = 1;
    }
    m.delete_sets(del);
    p.model_changed();
  });
}

int ZRVSgetsets64(ZRVSprob prob, char settype[], int64_t start[], int colind[],
                  double refval[], int64_t maxelems, int64_t *nelems, int first, int last) {
  const char *who = "ZRVSgetsets64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    require(nelems, "nelems", who);
    check_range(first, last, m.sets(), "set", who);
    int64_t base = m.setstart[first], total = m.setstart[last + 1] - base;
    int64_t room = std::min(std::max<int64_t>(maxelems, 0), total);
    for (int s = first; s <= last; ++s)
      if (settype) settype[s - first] = m.settype[s];
    if (start)
      for (int s = first; s <= last + 1; ++s) start[s - first] = std::min(m.setstart[s] - base, room);
    for (int64_t k = 0; k < room; ++k) {
      if (colind) colind[k] = m.setcol[base + k];
      if (refval) refval[k] = m.setref[base + k];
    }
    *nelems = total;
  });
}

int ZRVSsetindicators(ZRVSprob prob, int nrows, const int rowind[], const int colind[],
                      const int complement[]) {
  const char *who = "ZRVSsetindicators";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nrows, "nrows", who);
    if (nrows == 0) return;
    require(rowind, "rowind", who);
    require(colind, "colind", who);
    require(complement, "complement", who);
    for (int k = 0; k < nrows; ++k) {
      check_index(rowind[k], m.rows(), "rowind", k, "row", who);
      int f = complement[k];
      if (f != 0 && f != 1 && f != -1)
        fail(ZRVS_ERR_ARGUMENT, "%s: complement[%d] is %d, not 1, -1 or 0", who, k, f);
      if (f == 0) continue;
      check_index(colind[k], m.cols(), "colind", k, "column", who);
      if (!is_binary(m, colind[k]))
        fail(ZRVS_ERR_ARGUMENT, "%s: colind[%d] = %d is not a binary column", who, k, colind[k]);
      if (m.qrows.count(rowind[k]))
        fail(ZRVS_ERR_ARGUMENT, "%s: row %d has a quadratic part and cannot be an indicator row",
             who, rowind[k]);
    }
    for (int k = 0; k < nrows; ++k) {
      int r = rowind[k];
      m.indflag[r] = complement[k];
      m.indcol[r] = complement[k] == 0 ? -1 : colind[k];
    }
    p.model_changed();
  });
}

int ZRVSgetindicators(ZRVSprob prob, int colind[], int complement[], int first, int last) {
  const char *who = "ZRVSgetindicators";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_range(first, last, p.model.rows(), "row", who);
    for (int r = first; r <= last; ++r) {
      if (colind) colind[r - first] = p.model.indcol[r];
      if (complement) complement[r - first] = p.model.indflag[r];
    }
  });
}

}  // extern "C"
