// Entry points of the cut pool, delayed rows, model cuts and branch bounds.
// Inside a search they act on the node that the running callback belongs
// to; outside, on the root of the next search.
#include <algorithm>
#include <cmath>

#include "model/checks.h"
#include "problem/problem.h"

using namespace zorvan;

namespace {

// The cuts a call names: every candidate of the type (ncuts -1), or the
// given handles of the type, each of which must be in the pool.
std::vector<CutPtr> select_cuts(const zrvs_problem &p, const std::vector<CutPtr> &candidates,
                                int cuttype, int interp, int ncuts, const ZRVScut cutind[],
                                const char *who) {
  check_cut_interp(interp, who);
  std::vector<CutPtr> out;
  if (ncuts == -1) {
    for (const CutPtr &c : candidates)
      if (cut_matches(*c, cuttype, interp)) out.push_back(c);
    return out;
  }
  if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is %d (-1 for every cut, or a count)", who, ncuts);
  if (ncuts > 0 && !cutind) fail(ZRVS_ERR_ARGUMENT, "%s: cutind is NULL", who);
  for (int k = 0; k < ncuts; ++k) {
    CutPtr c = p.search.pool.require(cutind[k], who);
    if (cut_matches(*c, cuttype, interp)) out.push_back(c);
  }
  return out;
}

// The point that violations and slacks are measured at: the current node's
// LP solution in a search, else the last solution; empty when none.
const std::vector<double> &current_point(const zrvs_problem &p) {
  static const std::vector<double> none;
  if (p.search.node) return p.search.node->lp_x();
  const SolveState &r = p.results;
  if ((r.has_lp_solution || r.has_mip_solution) &&
      r.x.size() == static_cast<size_t>(p.model.cols()))
    return r.x;
  return none;
}

void load_at_current_node(zrvs_problem &p, const std::vector<CutPtr> &cuts) {
  if (p.search.node) {
    p.search.node->load_cuts(cuts);
    return;
  }
  auto &root = p.search.root_cuts;
  for (const CutPtr &c : cuts)
    if (std::find(root.begin(), root.end(), c) == root.end()) root.push_back(c);
}

std::vector<CutPtr> cuts_at_current_node(const zrvs_problem &p) {
  return p.search.node ? p.search.node->node_cuts() : p.search.root_cuts;
}

void mark_rows(zrvs_problem &p, std::vector<char> &marks, int nrows, const int rowind[],
               const char *who) {
  if (nrows < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nrows is negative (%d)", who, nrows);
  if (nrows > 0 && !rowind) fail(ZRVS_ERR_ARGUMENT, "%s: rowind is NULL", who);
  const int rows = p.model.rows();
  for (int k = 0; k < nrows; ++k)
    if (rowind[k] < 0 || rowind[k] >= rows)
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d does not exist (the problem has %d rows)", who,
           rowind[k], rows);
  if (marks.size() < static_cast<size_t>(rows)) marks.resize(static_cast<size_t>(rows), 0);
  for (int k = 0; k < nrows; ++k) marks[rowind[k]] = 1;
}

std::vector<BoundChange> checked_bounds(const zrvs_problem &p, int nbounds, const int colind[],
                                        const char bndtype[], const double bndval[],
                                        const char *who) {
  if (nbounds < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nbounds is negative (%d)", who, nbounds);
  if (nbounds > 0 && (!colind || !bndtype || !bndval))
    fail(ZRVS_ERR_ARGUMENT, "%s: colind, bndtype and bndval are needed", who);
  std::vector<BoundChange> out;
  for (int k = 0; k < nbounds; ++k) {
    if (colind[k] < 0 || colind[k] >= p.model.cols())
      fail(ZRVS_ERR_ARGUMENT, "%s: column %d does not exist (the problem has %d columns)", who,
           colind[k], p.model.cols());
    if (bndtype[k] != 'L' && bndtype[k] != 'U' && bndtype[k] != 'B')
      fail(ZRVS_ERR_ARGUMENT, "%s: bound type '%c' is not 'L', 'U' or 'B'", who, bndtype[k]);
    if (std::isnan(bndval[k])) fail(ZRVS_ERR_ARGUMENT, "%s: a bound is NaN", who);
    out.push_back({bndtype[k], colind[k], bndval[k]});
  }
  return out;
}

}  // namespace

extern "C" {

int ZRVSstorecuts64(ZRVSprob prob, int ncuts, int nodups, const int cuttype[],
                    const char rowtype[], const double rhs[], const int64_t start[],
                    ZRVScut cutind[], const int colind[], const double cutcoef[]) {
  const char *who = "ZRVSstorecuts64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (nodups < 0 || nodups > 2)
      fail(ZRVS_ERR_ARGUMENT, "%s: nodups is %d (0 keep all, 1 drop equal cuts, 2 drop equal "
           "cuts of any type)", who, nodups);
    auto cuts = make_cuts(ncuts, cuttype, rowtype, rhs, start, colind, cutcoef,
                          p.model.cols(), who);
    for (size_t k = 0; k < cuts.size(); ++k) {
      ZRVScut h = p.search.pool.store(std::move(cuts[k]), nodups);
      if (cutind) cutind[k] = h;
    }
  });
}

int ZRVSaddcuts64(ZRVSprob prob, int ncuts, const int cuttype[], const char rowtype[],
                  const double rhs[], const int64_t start[], const int colind[],
                  const double cutcoef[]) {
  const char *who = "ZRVSaddcuts64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    auto cuts = make_cuts(ncuts, cuttype, rowtype, rhs, start, colind, cutcoef,
                          p.model.cols(), who);
    std::vector<CutPtr> stored;
    for (auto &c : cuts) stored.push_back(p.search.pool.find(p.search.pool.store(c, 0)));
    load_at_current_node(p, stored);
  });
}

int ZRVSloadcuts(ZRVSprob prob, int cuttype, int interp, int ncuts, const ZRVScut cutind[]) {
  const char *who = "ZRVSloadcuts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    load_at_current_node(p, select_cuts(p, p.search.pool.cuts(), cuttype, interp, ncuts,
                                        cutind, who));
  });
}

int ZRVSdelcuts(ZRVSprob prob, int basis, int cuttype, int interp, double delta, int ncuts,
                const ZRVScut cutind[]) {
  const char *who = "ZRVSdelcuts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<CutPtr> chosen =
        select_cuts(p, cuts_at_current_node(p), cuttype, interp, ncuts, cutind, who);
    if (!p.search.node) {
      auto &root = p.search.root_cuts;
      for (const CutPtr &c : chosen) root.erase(std::remove(root.begin(), root.end(), c), root.end());
      return;
    }
    const std::vector<double> &x = p.search.node->lp_x();
    std::vector<CutPtr> unload;
    for (const CutPtr &c : chosen) {
      if (!x.empty()) {
        const double slack = std::fabs(cut_slack(*c, x.data()));
        if (basis && slack <= 1e-9) continue;  // tight: part of the node's basis
        if (slack <= delta) continue;
      }
      unload.push_back(c);
    }
    p.search.node->unload_cuts(unload);
  });
}

int ZRVSdelcpcuts(ZRVSprob prob, int cuttype, int interp, int ncuts, const ZRVScut cutind[]) {
  const char *who = "ZRVSdelcpcuts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<CutPtr> chosen =
        select_cuts(p, p.search.pool.cuts(), cuttype, interp, ncuts, cutind, who);
    auto &root = p.search.root_cuts;
    for (const CutPtr &c : chosen) {
      root.erase(std::remove(root.begin(), root.end(), c), root.end());
      p.search.pool.remove(const_cast<zrvs_cut *>(c.get()));
    }
  });
}

int ZRVSgetcutlist(ZRVSprob prob, int cuttype, int interp, int *ncuts, int maxcuts,
                   ZRVScut cutind[]) {
  const char *who = "ZRVSgetcutlist";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<CutPtr> chosen =
        select_cuts(p, cuts_at_current_node(p), cuttype, interp, -1, nullptr, who);
    if (ncuts) *ncuts = static_cast<int>(chosen.size());
    if (!cutind) return;
    for (int k = 0; k < maxcuts && k < static_cast<int>(chosen.size()); ++k)
      cutind[k] = const_cast<zrvs_cut *>(chosen[k].get());
  });
}

int ZRVSgetcpcutlist(ZRVSprob prob, int cuttype, int interp, double delta, int *ncuts,
                     int maxcuts, ZRVScut cutind[], double viol[]) {
  const char *who = "ZRVSgetcpcutlist";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<CutPtr> chosen =
        select_cuts(p, p.search.pool.cuts(), cuttype, interp, -1, nullptr, who);
    const std::vector<double> &x = current_point(p);
    int n = 0;
    for (const CutPtr &c : chosen) {
      const double v = x.empty() ? 0.0 : std::max(0.0, cut_violation(*c, x.data()));
      if (v < delta) continue;
      if (n < maxcuts) {
        if (cutind) cutind[n] = const_cast<zrvs_cut *>(c.get());
        if (viol) viol[n] = v;
      }
      ++n;
    }
    if (ncuts) *ncuts = n;
  });
}

int ZRVSgetcpcuts64(ZRVSprob prob, const ZRVScut cutind[], int ncuts, int64_t maxcoefs,
                    int64_t *ncoefs, int cuttype[], char rowtype[], int64_t start[],
                    int colind[], double cutcoef[], double rhs[]) {
  const char *who = "ZRVSgetcpcuts64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is negative (%d)", who, ncuts);
    if (ncuts > 0 && !cutind) fail(ZRVS_ERR_ARGUMENT, "%s: cutind is NULL", who);
    std::vector<CutPtr> cuts;
    for (int k = 0; k < ncuts; ++k) cuts.push_back(p.search.pool.require(cutind[k], who));
    int64_t pos = 0;
    for (int k = 0; k < ncuts; ++k) {
      const zrvs_cut &c = *cuts[k];
      if (cuttype) cuttype[k] = c.type;
      if (rowtype) rowtype[k] = c.rowtype;
      if (rhs) rhs[k] = c.rhs;
      if (start) start[k] = std::min(pos, maxcoefs);
      for (size_t e = 0; e < c.col.size(); ++e, ++pos) {
        if (pos >= maxcoefs) continue;
        if (colind) colind[pos] = c.col[e];
        if (cutcoef) cutcoef[pos] = c.coef[e];
      }
    }
    if (start) start[ncuts] = std::min(pos, maxcoefs);
    if (ncoefs) *ncoefs = pos;
  });
}

int ZRVSgetcutmap(ZRVSprob prob, int ncuts, const ZRVScut cutind[], int cutmap[]) {
  const char *who = "ZRVSgetcutmap";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is negative (%d)", who, ncuts);
    if (ncuts > 0 && (!cutind || !cutmap))
      fail(ZRVS_ERR_ARGUMENT, "%s: cutind and cutmap are needed", who);
    std::vector<CutPtr> cuts;
    for (int k = 0; k < ncuts; ++k) cuts.push_back(p.search.pool.require(cutind[k], who));
    for (int k = 0; k < ncuts; ++k)
      cutmap[k] = p.search.node ? p.search.node->lp_row_of(*cuts[k]) : -1;
  });
}

int ZRVSgetcutslack(ZRVSprob prob, ZRVScut cut, double *slack) {
  const char *who = "ZRVSgetcutslack";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    CutPtr c = p.search.pool.require(cut, who);
    const std::vector<double> &x = current_point(p);
    if (x.empty())
      fail(ZRVS_ERR_ARGUMENT, "%s: no solution to measure the cut at (solve first, or call "
           "from a node callback)", who);
    if (slack) *slack = cut_slack(*c, x.data());
  });
}

int ZRVSloaddelayedrows(ZRVSprob prob, int nrows, const int rowind[]) {
  const char *who = "ZRVSloaddelayedrows";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (p.search.node) fail(ZRVS_ERR_ARGUMENT, "%s: rows cannot be marked during a search", who);
    mark_rows(p, p.search.delayed, nrows, rowind, who);
  });
}

int ZRVSloadmodelcuts(ZRVSprob prob, int nrows, const int rowind[]) {
  const char *who = "ZRVSloadmodelcuts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (p.search.node) fail(ZRVS_ERR_ARGUMENT, "%s: rows cannot be marked during a search", who);
    mark_rows(p, p.search.model_cut, nrows, rowind, who);
  });
}

int ZRVSstorebounds(ZRVSprob prob, int nbounds, const int colind[], const char bndtype[],
                    const double bndval[], void **bounds) {
  const char *who = "ZRVSstorebounds";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (!bounds) fail(ZRVS_ERR_ARGUMENT, "%s: bounds is NULL", who);
    auto stored = std::make_unique<std::vector<BoundChange>>(
        checked_bounds(p, nbounds, colind, bndtype, bndval, who));
    *bounds = stored.get();
    p.search.stored_bounds.push_back(std::move(stored));
  });
}

int ZRVSsetbranchbounds(ZRVSprob prob, void *bounds) {
  const char *who = "ZRVSsetbranchbounds";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const std::vector<BoundChange> *found = nullptr;
    for (const auto &b : p.search.stored_bounds)
      if (b.get() == bounds) found = b.get();
    if (!found)
      fail(ZRVS_ERR_ARGUMENT, "%s: the bounds were not stored on this problem (ZRVSstorebounds)",
           who);
    for (const BoundChange &c : *found)
      if (c.col >= p.model.cols())
        fail(ZRVS_ERR_ARGUMENT, "%s: the stored bounds name column %d, which no longer exists",
             who, c.col);
    if (p.search.node)
      p.search.node->tighten(*found, who);
    else
      p.search.root_bounds.insert(p.search.root_bounds.end(), found->begin(), found->end());
  });
}

int ZRVSsetbranchcuts(ZRVSprob prob, int ncuts, const ZRVScut cutind[]) {
  const char *who = "ZRVSsetbranchcuts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is negative (%d)", who, ncuts);
    load_at_current_node(p, select_cuts(p, p.search.pool.cuts(), 0, cut_any, ncuts, cutind, who));
  });
}

}  // extern "C"
