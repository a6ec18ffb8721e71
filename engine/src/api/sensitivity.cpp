// Entry points of ranging and of solves with the basis matrix.
#include <algorithm>

#include "core/arguments.h"
#include "problem/problem.h"
#include "solve/analysis/basis_solves.h"
#include "solve/analysis/ranging.h"

using namespace zorvan;

namespace {

void check_lines(int n, const int *ind, int count, const char *what, const char *who) {
  check_count(n, "the count", who);
  if (n > 0) require(ind, what, who);
  for (int k = 0; k < n; ++k)
    if (ind[k] < 0 || ind[k] >= count)
      fail(ZRVS_ERR_ARGUMENT, "%s: %s[%d] = %d is out of range (0..%d)", who, what, k, ind[k],
           count - 1);
}

void pick(const std::vector<double> &from, int n, const int *ind, double *out) {
  if (out)
    for (int k = 0; k < n; ++k) out[k] = from[ind[k]];
}

}  // namespace

extern "C" {

int ZRVSobjsa(ZRVSprob prob, int ncols, const int colind[], double lower[], double upper[]) {
  const char *who = "ZRVSobjsa";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_lines(ncols, colind, p.model.cols(), "colind", who);
    const Ranging r = range_basis(p, who);
    pick(r.cost_lower, ncols, colind, lower);
    pick(r.cost_upper, ncols, colind, upper);
  });
}

int ZRVSrhssa(ZRVSprob prob, int nrows, const int rowind[], double lower[], double upper[]) {
  const char *who = "ZRVSrhssa";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_lines(nrows, rowind, p.model.rows(), "rowind", who);
    const Ranging r = range_basis(p, who);
    pick(r.rhs_lower, nrows, rowind, lower);
    pick(r.rhs_upper, nrows, rowind, upper);
  });
}

int ZRVSbndsa(ZRVSprob prob, int ncols, const int colind[], double lblower[], double lbupper[],
              double ublower[], double ubupper[]) {
  const char *who = "ZRVSbndsa";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_lines(ncols, colind, p.model.cols(), "colind", who);
    const Ranging r = range_basis(p, who);
    pick(r.lb_lower, ncols, colind, lblower);
    pick(r.lb_upper, ncols, colind, lbupper);
    pick(r.ub_lower, ncols, colind, ublower);
    pick(r.ub_upper, ncols, colind, ubupper);
  });
}

int ZRVSgetpivotorder(ZRVSprob prob, int pivotorder[]) {
  const char *who = "ZRVSgetpivotorder";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(pivotorder, "pivotorder", who);
    const std::vector<int> order = pivot_order(p, who);
    std::copy(order.begin(), order.end(), pivotorder);
  });
}

int ZRVSbtran(ZRVSprob prob, double vec[]) {
  const char *who = "ZRVSbtran";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(vec, "vec", who);
    basis_solve(p, vec, true, who);
  });
}

int ZRVSftran(ZRVSprob prob, double vec[]) {
  const char *who = "ZRVSftran";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(vec, "vec", who);
    basis_solve(p, vec, false, who);
  });
}

int ZRVSbasisstability(ZRVSprob prob, int type, int norm, int scaled, double *value) {
  const char *who = "ZRVSbasisstability";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(value, "value", who);
    if (type != 0 || norm != 1 || scaled != 0)
      fail(ZRVS_ERR_UNSUPPORTED,
           "%s: only the condition estimate of the unscaled basis in the 1-norm (type 0, "
           "norm 1, scaled 0) is available",
           who);
    *value = basis_condition(p, who);
  });
}

}  // extern "C"
