// Entry points of the section "Solutions, bases and analysis": readers of
// the last solution and basis, infeasibilities, rays and values computed
// from a given point.
#include <algorithm>
#include <cmath>

#include "core/arguments.h"
#include "model/evaluate.h"
#include "problem/problem.h"
#include "solve/analysis/infeasibility.h"
#include "solve/analysis/rays.h"

using namespace zorvan;

namespace {

void check_index(int i, int n, const char *what, const char *who) {
  if (i >= n) fail(ZRVS_ERR_ARGUMENT, "%s: %s %d is out of range (0..%d)", who, what, i, n - 1);
}

const SolveState &lp_solution(const zrvs_problem &p, const char *who) {
  if (!p.results.has_lp_solution)
    fail(ZRVS_ERR_ARGUMENT,
         "%s: no LP solution is available (not solved as an LP since the last change)", who);
  return p.results;
}

bool has_prices(const zrvs_problem &p) {
  return p.results.duals.size() == static_cast<size_t>(p.model.rows()) &&
         p.results.djs.size() == static_cast<size_t>(p.model.cols());
}

void copy_out(const std::vector<double> &v, double *out) {
  if (out) std::copy(v.begin(), v.end(), out);
}

void copy_out(const std::vector<int> &v, int *count, int *out) {
  if (count) *count = static_cast<int>(v.size());
  if (out) std::copy(v.begin(), v.end(), out);
}

int infeasibilities(ZRVSprob prob, bool scaled, int *npv, int *nps, int *nds, int *ndv,
                    int mx[], int mslack[], int mdual[], int mdj[], const char *who) {
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const SolveState &r = p.results;
    if (!r.has_lp_solution && !r.has_mip_solution)
      fail(ZRVS_ERR_ARGUMENT, "%s: no solution is available (none since the last change)", who);
    const std::vector<double> none;
    const bool prices = r.has_lp_solution && has_prices(p);
    Scaling scale;
    if (scaled) scale = geometric_scaling(p.model);
    Infeasibilities inf = find_infeasibilities(
        p.model, r.x, prices ? r.duals : none, prices ? r.djs : none,
        p.controls.get_dbl(ZRVS_FEASTOL, who), p.controls.get_dbl(ZRVS_OPTIMALITYTOL, who),
        scaled ? &scale : nullptr);
    copy_out(inf.cols, npv, mx);
    copy_out(inf.rows, nps, mslack);
    copy_out(inf.dual_rows, nds, mdual);
    copy_out(inf.dual_cols, ndv, mdj);
  });
}

double largest_magnitude(const double *v, size_t n, bool skip_infinite) {
  double big = 0.0;
  for (size_t k = 0; k < n; ++k)
    if (!skip_infinite || std::fabs(v[k]) < ZRVS_PLUSINFINITY) big = std::max(big, std::fabs(v[k]));
  return big;
}

}  // namespace

extern "C" {

int ZRVSgetlpsolval(ZRVSprob prob, int col, int row, double *x, double *slack, double *dual,
                    double *dj) {
  const char *who = "ZRVSgetlpsolval";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const SolveState &r = lp_solution(p, who);
    check_index(col, p.model.cols(), "column", who);
    check_index(row, p.model.rows(), "row", who);
    if ((dual && row >= 0) || (dj && col >= 0))
      if (!has_prices(p)) fail(ZRVS_ERR_ARGUMENT, "%s: the last solve produced no dual values", who);
    if (col >= 0) {
      if (x) *x = r.x[col];
      if (dj) *dj = r.djs[col];
    }
    if (row >= 0) {
      if (slack) *slack = r.slack[row];
      if (dual) *dual = r.duals[row];
    }
  });
}

int ZRVSgetmipsolval(ZRVSprob prob, int col, int row, double *x, double *slack) {
  const char *who = "ZRVSgetmipsolval";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (!p.results.has_mip_solution)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no integer solution is available (none found since the last change)", who);
    check_index(col, p.model.cols(), "column", who);
    check_index(row, p.model.rows(), "row", who);
    if (col >= 0 && x) *x = p.results.x[col];
    if (row >= 0 && slack) *slack = p.results.slack[row];
  });
}

int ZRVSgetlastbarsol(ZRVSprob prob, double x[], double slack[], double duals[], double djs[]) {
  const char *who = "ZRVSgetlastbarsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const SolveState &r = lp_solution(p, who);
    if (!r.barrier)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: the last LP solve did not run the barrier (solve with the 'b' flag or "
           "defaultalg 4)",
           who);
    if ((duals || djs) && !has_prices(p))
      fail(ZRVS_ERR_ARGUMENT, "%s: the last solve produced no dual values", who);
    copy_out(r.x, x);
    copy_out(r.slack, slack);
    copy_out(r.duals, duals);
    copy_out(r.djs, djs);
  });
}

int ZRVSgetbasisval(ZRVSprob prob, int row, int col, int *rowstat, int *colstat) {
  const char *who = "ZRVSgetbasisval";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    check_index(col, m.cols(), "column", who);
    check_index(row, m.rows(), "row", who);
    if (m.basis_col.size() != static_cast<size_t>(m.cols()) ||
        m.basis_row.size() != static_cast<size_t>(m.rows()))
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no basis of the problem as it is (solve it as an LP or load a basis first)",
           who);
    if (row >= 0 && rowstat) *rowstat = m.basis_row[row];
    if (col >= 0 && colstat) *colstat = m.basis_col[col];
  });
}

int ZRVSgetinfeas(ZRVSprob prob, int *npv, int *nps, int *nds, int *ndv, int mx[], int mslack[],
                  int mdual[], int mdj[]) {
  return infeasibilities(prob, false, npv, nps, nds, ndv, mx, mslack, mdual, mdj,
                         "ZRVSgetinfeas");
}

int ZRVSgetscaledinfeas(ZRVSprob prob, int *npv, int *nps, int *nds, int *ndv, int mx[],
                        int mslack[], int mdual[], int mdj[]) {
  return infeasibilities(prob, true, npv, nps, nds, ndv, mx, mslack, mdual, mdj,
                         "ZRVSgetscaledinfeas");
}

int ZRVSgetprimalray(ZRVSprob prob, double ray[], int *hasray) {
  const char *who = "ZRVSgetprimalray";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(hasray, "hasray", who);
    std::vector<double> d;
    *hasray = primal_ray(p, d, who) ? 1 : 0;
    if (*hasray) copy_out(d, ray);
  });
}

int ZRVSgetdualray(ZRVSprob prob, double ray[], int *hasray) {
  const char *who = "ZRVSgetdualray";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(hasray, "hasray", who);
    std::vector<double> y;
    *hasray = dual_ray(p, y, who) ? 1 : 0;
    if (*hasray) copy_out(y, ray);
  });
}

int ZRVSgetunbvec(ZRVSprob prob, int *seq) {
  const char *who = "ZRVSgetunbvec";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(seq, "seq", who);
    *seq = unbounded_entry(p, who);
  });
}

int ZRVScalcobjective(ZRVSprob prob, const double solution[], double *objval) {
  const char *who = "ZRVScalcobjective";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(solution, "solution", who), require(objval, "objval", who);
    *objval = objective_value(p.model, 0, solution);
  });
}

int ZRVScalcobjn(ZRVSprob prob, int objidx, const double solution[], double *objval) {
  const char *who = "ZRVScalcobjn";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(solution, "solution", who), require(objval, "objval", who);
    p.model.objective(objidx, who);
    *objval = objective_value(p.model, objidx, solution);
  });
}

int ZRVScalcreducedcosts(ZRVSprob prob, const double duals[], const double solution[],
                         double djs[]) {
  const char *who = "ZRVScalcreducedcosts";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(duals, "duals", who), require(djs, "djs", who);
    if (!p.model.qobj.empty()) require(solution, "solution (the objective is quadratic)", who);
    copy_out(reduced_costs(p.model, duals, solution), djs);
  });
}

int ZRVScalcslacks(ZRVSprob prob, const double solution[], double slacks[]) {
  const char *who = "ZRVScalcslacks";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(solution, "solution", who), require(slacks, "slacks", who);
    copy_out(row_slacks(p.model, solution), slacks);
  });
}

int ZRVScalcsolinfo(ZRVSprob prob, const double solution[], const double duals[], int property,
                    double *value) {
  const char *who = "ZRVScalcsolinfo";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(solution, "solution", who), require(value, "value", who);
    const Model &m = p.model;
    const size_t n = static_cast<size_t>(m.cols());
    switch (property) {
      case ZRVS_SOLINFO_ABSPRIMALINFEAS:
      case ZRVS_SOLINFO_RELPRIMALINFEAS: {
        double v = max_primal_violation(m, solution);
        if (property == ZRVS_SOLINFO_RELPRIMALINFEAS)
          v /= 1.0 + std::max(largest_magnitude(solution, n, false),
                              largest_magnitude(m.rhs.data(), m.rhs.size(), true));
        *value = v;
        return;
      }
      case ZRVS_SOLINFO_ABSDUALINFEAS:
      case ZRVS_SOLINFO_RELDUALINFEAS: {
        require(duals, "duals", who);
        const std::vector<double> djs = reduced_costs(m, duals, solution);
        double v = max_dual_violation(m, solution, duals, djs.data());
        if (property == ZRVS_SOLINFO_RELDUALINFEAS)
          v /= 1.0 + largest_magnitude(m.objectives[0].coef.data(), n, false);
        *value = v;
        return;
      }
      case ZRVS_SOLINFO_MAXMIPFRACTIONAL: {
        double v = 0.0;
        for (size_t j = 0; j < n; ++j)
          if (m.coltype[j] != 'C' && m.coltype[j] != 'S' &&
              !(m.coltype[j] == 'P' && solution[j] > m.limit[j]))
            v = std::max(v, std::fabs(solution[j] - std::round(solution[j])));
        *value = v;
        return;
      }
    }
    fail(ZRVS_ERR_ARGUMENT, "%s: property %d is not one of ZRVS_SOLINFO_* (0..4)", who, property);
  });
}

}  // extern "C"
