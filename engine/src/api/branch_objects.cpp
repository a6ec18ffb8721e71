// Entry points of branching objects (ZRVS_bo_...): building one, reading it
// back, and handing it to the search.
#include <cmath>

#include "problem/problem.h"

using namespace zorvan;

namespace {

template <class Body>
int bo_call(ZRVSbranchobject bo, const char *who, Body &&body) {
  return handle_call(
      bo, who, check_branch_object,
      [](zrvs_branchobject &b, int code) {
        b.last_code = code;
        b.last_error = global_error_text();
      },
      body);
}

Branch &branch_of(zrvs_branchobject &bo, int branch, const char *who) {
  const int n = static_cast<int>(bo.spec.branches.size());
  if (branch < 0 || branch >= n)
    fail(ZRVS_ERR_ARGUMENT, "%s: branch %d does not exist (the object has %d branches)", who,
         branch, n);
  return bo.spec.branches[branch];
}

int columns_of(const zrvs_branchobject &bo, const char *who) {
  check_problem_handle(bo.prob, who);
  return bo.prob->model.cols();
}

}  // namespace

extern "C" {

int ZRVS_bo_create(ZRVSbranchobject *bo, ZRVSprob prob, int isoriginal) {
  return global_call([&] {
    const char *who = "ZRVS_bo_create";
    if (!bo) fail(ZRVS_ERR_ARGUMENT, "%s: bo is NULL", who);
    *bo = nullptr;
    check_problem_handle(prob, who);
    *bo = create_branch_object(prob, isoriginal);
  });
}

int ZRVS_bo_destroy(ZRVSbranchobject bo) {
  return global_call([&] {
    check_branch_object(bo, "ZRVS_bo_destroy");
    destroy_branch_object(bo);
  });
}

int ZRVS_bo_addbranches(ZRVSbranchobject bo, int nbranches) {
  const char *who = "ZRVS_bo_addbranches";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    if (nbranches < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nbranches is negative (%d)", who, nbranches);
    b.spec.branches.resize(b.spec.branches.size() + static_cast<size_t>(nbranches));
  });
}

int ZRVS_bo_getbranches(ZRVSbranchobject bo, int *nbranches) {
  return bo_call(bo, "ZRVS_bo_getbranches", [&](zrvs_branchobject &b) {
    if (nbranches) *nbranches = static_cast<int>(b.spec.branches.size());
  });
}

int ZRVS_bo_addbounds(ZRVSbranchobject bo, int branch, int nbounds, const char bndtype[],
                      const int colind[], const double bndval[]) {
  const char *who = "ZRVS_bo_addbounds";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    Branch &br = branch_of(b, branch, who);
    if (nbounds < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nbounds is negative (%d)", who, nbounds);
    if (nbounds > 0 && (!bndtype || !colind || !bndval))
      fail(ZRVS_ERR_ARGUMENT, "%s: bndtype, colind and bndval are needed", who);
    const int ncols = columns_of(b, who);
    std::vector<BoundChange> add;
    for (int k = 0; k < nbounds; ++k) {
      if (bndtype[k] != 'L' && bndtype[k] != 'U' && bndtype[k] != 'B')
        fail(ZRVS_ERR_ARGUMENT, "%s: bound type '%c' is not 'L', 'U' or 'B'", who, bndtype[k]);
      if (colind[k] < 0 || colind[k] >= ncols)
        fail(ZRVS_ERR_ARGUMENT, "%s: column %d does not exist (the problem has %d columns)",
             who, colind[k], ncols);
      if (std::isnan(bndval[k])) fail(ZRVS_ERR_ARGUMENT, "%s: a bound is NaN", who);
      add.push_back({bndtype[k], colind[k], bndval[k]});
    }
    br.bounds.insert(br.bounds.end(), add.begin(), add.end());
  });
}

int ZRVS_bo_getbounds(ZRVSbranchobject bo, int branch, int *nbounds, int maxbounds,
                      char bndtype[], int colind[], double bndval[]) {
  const char *who = "ZRVS_bo_getbounds";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    const Branch &br = branch_of(b, branch, who);
    const int n = static_cast<int>(br.bounds.size());
    if (nbounds) *nbounds = n;
    for (int k = 0; k < n && k < maxbounds; ++k) {
      if (bndtype) bndtype[k] = br.bounds[k].type;
      if (colind) colind[k] = br.bounds[k].col;
      if (bndval) bndval[k] = br.bounds[k].value;
    }
  });
}

int ZRVS_bo_addrows(ZRVSbranchobject bo, int branch, int nrows, int ncoefs, const char rowtype[],
                    const double rhs[], const int start[], const int colind[],
                    const double rowcoef[]) {
  const char *who = "ZRVS_bo_addrows";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    Branch &br = branch_of(b, branch, who);
    if (nrows < 0 || ncoefs < 0)
      fail(ZRVS_ERR_ARGUMENT, "%s: nrows (%d) and ncoefs (%d) must not be negative", who, nrows,
           ncoefs);
    if (nrows == 0) return;
    if (!rowtype || !rhs || !start) fail(ZRVS_ERR_ARGUMENT, "%s: rowtype, rhs and start are needed", who);
    if (ncoefs > 0 && (!colind || !rowcoef))
      fail(ZRVS_ERR_ARGUMENT, "%s: colind and rowcoef are needed", who);
    const int ncols = columns_of(b, who);
    BranchRows rows = br.rows;  // changed as a copy: a failure leaves the branch as it was
    for (int r = 0; r < nrows; ++r) {
      const char t = rowtype[r];
      if (t != 'L' && t != 'G' && t != 'E')
        fail(ZRVS_ERR_ARGUMENT, "%s: row %d has type '%c' (a branch row is 'L', 'G' or 'E')",
             who, r, t);
      if (!std::isfinite(rhs[r]) || std::fabs(rhs[r]) >= ZRVS_PLUSINFINITY)
        fail(ZRVS_ERR_ARGUMENT, "%s: row %d has an infinite right-hand side", who, r);
      const int s = start[r], e = r + 1 < nrows ? start[r + 1] : ncoefs;
      if (s < 0 || e < s || e > ncoefs)
        fail(ZRVS_ERR_ARGUMENT, "%s: the start offsets of row %d are out of order", who, r);
      for (int k = s; k < e; ++k) {
        if (colind[k] < 0 || colind[k] >= ncols)
          fail(ZRVS_ERR_ARGUMENT, "%s: row %d names column %d (the problem has %d columns)", who,
               r, colind[k], ncols);
        if (rowcoef[k] == 0.0) continue;
        rows.col.push_back(colind[k]);
        rows.coef.push_back(rowcoef[k]);
      }
      rows.type.push_back(t);
      rows.rhs.push_back(rhs[r]);
      rows.start.push_back(static_cast<int>(rows.col.size()));
    }
    br.rows = std::move(rows);
  });
}

int ZRVS_bo_getrows(ZRVSbranchobject bo, int branch, int *nrows, int maxrows, int *ncoefs,
                    int maxcoefs, char rowtype[], double rhs[], int start[], int colind[],
                    double rowcoef[]) {
  const char *who = "ZRVS_bo_getrows";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    const BranchRows &rows = branch_of(b, branch, who).rows;
    const int n = rows.size(), nz = static_cast<int>(rows.col.size());
    if (nrows) *nrows = n;
    if (ncoefs) *ncoefs = nz;
    const int rcount = std::min(n, std::max(maxrows, 0));
    for (int r = 0; r < rcount; ++r) {
      if (rowtype) rowtype[r] = rows.type[r];
      if (rhs) rhs[r] = rows.rhs[r];
    }
    if (start)
      for (int r = 0; r <= rcount; ++r) start[r] = std::min(rows.start[r], std::max(maxcoefs, 0));
    for (int k = 0; k < nz && k < maxcoefs; ++k) {
      if (colind) colind[k] = rows.col[k];
      if (rowcoef) rowcoef[k] = rows.coef[k];
    }
  });
}

int ZRVS_bo_addcuts(ZRVSbranchobject bo, int branch, int ncuts, const ZRVScut cutind[]) {
  const char *who = "ZRVS_bo_addcuts";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    Branch &br = branch_of(b, branch, who);
    if (ncuts < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncuts is negative (%d)", who, ncuts);
    if (ncuts > 0 && !cutind) fail(ZRVS_ERR_ARGUMENT, "%s: cutind is NULL", who);
    check_problem_handle(b.prob, who);
    std::vector<CutPtr> cuts;
    for (int k = 0; k < ncuts; ++k) cuts.push_back(b.prob->search.pool.require(cutind[k], who));
    br.cuts.insert(br.cuts.end(), cuts.begin(), cuts.end());
  });
}

int ZRVS_bo_setpriority(ZRVSbranchobject bo, int priority) {
  return bo_call(bo, "ZRVS_bo_setpriority",
                 [&](zrvs_branchobject &b) { b.spec.priority = priority; });
}

int ZRVS_bo_setpreferredbranch(ZRVSbranchobject bo, int branch) {
  const char *who = "ZRVS_bo_setpreferredbranch";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    branch_of(b, branch, who);
    b.spec.preferred = branch;
  });
}

int ZRVS_bo_getid(ZRVSbranchobject bo, int *id) {
  return bo_call(bo, "ZRVS_bo_getid", [&](zrvs_branchobject &b) {
    if (id) *id = b.spec.id;
  });
}

int ZRVS_bo_validate(ZRVSbranchobject bo) {
  const char *who = "ZRVS_bo_validate";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    validate_branching(b.spec, columns_of(b, who), b.prob->search.pool, who);
  });
}

int ZRVS_bo_store(ZRVSbranchobject bo) {
  const char *who = "ZRVS_bo_store";
  return bo_call(bo, who, [&](zrvs_branchobject &b) {
    validate_branching(b.spec, columns_of(b, who), b.prob->search.pool, who);
    SearchInputs &s = b.prob->search;
    if (s.node)
      s.node->store_branching(b.spec, who);
    else
      s.root_branchings.push_back(b.spec);
  });
}

int ZRVS_bo_getlasterror(ZRVSbranchobject bo, int *msgcode, char *msg, int maxbytes,
                         int *nbytes) {
  return global_call([&] {
    check_branch_object(bo, "ZRVS_bo_getlasterror");
    if (msgcode) *msgcode = bo->last_code;
    if (nbytes) *nbytes = static_cast<int>(bo->last_error.size());
    if (msg && maxbytes > 0) copy_text(bo->last_error, msg, static_cast<size_t>(maxbytes));
  });
}

}  // extern "C"
