#include "solve/analysis/basis_solves.h"

#include <algorithm>
#include <cmath>

#include "solve/analysis/solved_lp.h"

namespace zorvan {

namespace {

// The sign s of HiGHS's logical columns s*e_i, read by one solve with a
// unit vector, so that the engine's B always has +e_i.
double logical_sign(void *h, int rows, const std::vector<HighsInt> &basic) {
  for (int k = 0; k < rows; ++k) {
    if (basic[k] >= 0) continue;
    const int i = static_cast<int>(-basic[k] - 1);
    std::vector<double> e(static_cast<size_t>(rows), 0.0), out(static_cast<size_t>(rows));
    std::vector<HighsInt> index(static_cast<size_t>(rows));
    HighsInt nz = 0;
    e[i] = 1.0;
    Highs_getBasisSolve(h, e.data(), out.data(), &nz, index.data());
    return out[k] < 0 ? -1.0 : 1.0;
  }
  return 1.0;
}

}  // namespace

std::vector<int> pivot_order(zrvs_problem &p, const char *who) {
  void *h = optimal_lp(p, "the pivot order", who);
  const int rows = p.model.rows();
  std::vector<HighsInt> basic(static_cast<size_t>(rows));
  if (rows && Highs_getBasicVariables(h, basic.data()) != kHighsStatusOk)
    fail(ZRVS_ERR_INTERNAL, "%s: HiGHS has no factored basis", who);
  std::vector<int> out(static_cast<size_t>(rows));
  for (int k = 0; k < rows; ++k)
    out[k] = basic[k] >= 0 ? rows + static_cast<int>(basic[k]) : static_cast<int>(-basic[k] - 1);
  return out;
}

void basis_solve(zrvs_problem &p, double *vec, bool transposed, const char *who) {
  void *h = optimal_lp(p, transposed ? "btran" : "ftran", who);
  const int rows = p.model.rows();
  if (rows == 0) return;
  std::vector<HighsInt> basic(static_cast<size_t>(rows)), index(static_cast<size_t>(rows));
  if (Highs_getBasicVariables(h, basic.data()) != kHighsStatusOk)
    fail(ZRVS_ERR_INTERNAL, "%s: HiGHS has no factored basis", who);
  const double sign = logical_sign(h, rows, basic);
  // With HiGHS's logical columns s*e_i: B = B' D where D flips the basic
  // rows' columns when s = -1. ftran: B^-1 v = D B'^-1 v; btran:
  // B^-T v = B'^-T D v.
  std::vector<double> in(vec, vec + rows), out(static_cast<size_t>(rows), 0.0);
  if (transposed && sign < 0)
    for (int k = 0; k < rows; ++k)
      if (basic[k] < 0) in[k] = -in[k];
  HighsInt nz = 0;
  const HighsInt status =
      transposed ? Highs_getBasisTransposeSolve(h, in.data(), out.data(), &nz, index.data())
                 : Highs_getBasisSolve(h, in.data(), out.data(), &nz, index.data());
  if (status != kHighsStatusOk) fail(ZRVS_ERR_INTERNAL, "%s: HiGHS could not solve with the basis", who);
  if (!transposed && sign < 0)
    for (int k = 0; k < rows; ++k)
      if (basic[k] < 0) out[k] = -out[k];
  std::copy(out.begin(), out.end(), vec);
}

double basis_condition(zrvs_problem &p, const char *who) {
  const std::vector<int> order = pivot_order(p, who);
  const Model &m = p.model;
  const int rows = m.rows();
  if (rows == 0) return 1.0;
  // |B|_1: the largest column sum of |entries|.
  std::vector<double> colsum(static_cast<size_t>(m.cols()), 0.0);
  for (size_t e = 0; e < m.mval.size(); ++e) colsum[m.mcol[e]] += std::fabs(m.mval[e]);
  double norm = 0.0;
  for (int v : order) norm = std::max(norm, v < rows ? 1.0 : colsum[v - rows]);
  // Hager: maximise |B^-1 x|_1 over the unit ball of the 1-norm.
  std::vector<double> x(static_cast<size_t>(rows), 1.0 / rows), z(static_cast<size_t>(rows));
  double estimate = 0.0;
  for (int iter = 0; iter < 5; ++iter) {
    std::vector<double> y(x);
    basis_solve(p, y.data(), false, who);
    double ynorm = 0.0;
    for (double v : y) ynorm += std::fabs(v);
    if (ynorm <= estimate) break;
    estimate = ynorm;
    for (int k = 0; k < rows; ++k) z[k] = y[k] >= 0 ? 1.0 : -1.0;
    basis_solve(p, z.data(), true, who);
    int best = 0;
    for (int k = 1; k < rows; ++k)
      if (std::fabs(z[k]) > std::fabs(z[best])) best = k;
    double zx = 0.0;
    for (int k = 0; k < rows; ++k) zx += z[k] * x[k];
    if (std::fabs(z[best]) <= zx) break;
    std::fill(x.begin(), x.end(), 0.0);
    x[best] = 1.0;
  }
  return norm * estimate;
}

}  // namespace zorvan
