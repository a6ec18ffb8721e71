// Entry points that load starting solutions and branching directives.
#include <algorithm>
#include <cmath>

#include "core/arguments.h"
#include "model/evaluate.h"
#include "problem/problem.h"
#include "solve/highs/starts.h"

using namespace zorvan;

namespace {

void check_columns(const Model &m, int n, const int *colind, const char *who) {
  check_count(n, "the count", who);
  if (n > 0) require(colind, "colind", who);
  for (int k = 0; k < n; ++k)
    if (colind[k] < 0 || colind[k] >= m.cols())
      fail(ZRVS_ERR_ARGUMENT, "%s: colind[%d] = %d is not a column index (0..%d)", who, k,
           colind[k], m.cols() - 1);
}

void check_values(const double *v, size_t n, const char *arg, const char *who) {
  for (size_t k = 0; k < n; ++k)
    if (std::isnan(v[k])) fail(ZRVS_ERR_ARGUMENT, "%s: %s[%zu] is NaN", who, arg, k);
}

void load_directives(zrvs_problem &p, int n, const int *colind, const int *priority,
                     const char *dir, const int *intdir, const double *up, const double *down,
                     const char *who) {
  check_columns(p.model, n, colind, who);
  for (int k = 0; k < n; ++k)
    if (dir && dir[k] != 'U' && dir[k] != 'D' && dir[k] != 'N')
      fail(ZRVS_ERR_ARGUMENT, "%s: dir[%d] = '%c' is not 'U', 'D' or 'N'", who, k, dir[k]);
  for (int k = 0; k < n; ++k) {
    Directive &d = p.starts.dirs[colind[k]];
    if (priority) d.priority = priority[k];
    if (dir) d.dir = dir[k];
    if (intdir) d.dir = intdir[k] > 0 ? 'U' : intdir[k] < 0 ? 'D' : 'N';
    if (up) d.up = up[k];
    if (down) d.down = down[k];
  }
}

[[noreturn]] void no_presolved_problem(const char *who) {
  fail(ZRVS_ERR_UNSUPPORTED,
       "%s: the engine keeps no presolved problem (HiGHS presolves inside each solve and drops "
       "its presolved model); use the original problem's loaders instead",
       who);
}

}  // namespace

extern "C" {

int ZRVSloadlpsol(ZRVSprob prob, const double x[], const double slack[], const double duals[],
                  const double djs[]) {
  const char *who = "ZRVSloadlpsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    require(x, "x", who);
    if (!duals != !djs) fail(ZRVS_ERR_ARGUMENT, "%s: give both duals and djs, or neither", who);
    const size_t n = static_cast<size_t>(m.cols()), r = static_cast<size_t>(m.rows());
    check_values(x, n, "x", who);
    SolverStarts &s = p.starts;
    s.lp_x.assign(x, x + n);
    s.lp_slack = slack ? std::vector<double>(slack, slack + r) : row_slacks(m, x);
    s.lp_duals.assign(duals ? duals : x, duals ? duals + r : x);
    s.lp_djs.assign(djs ? djs : x, djs ? djs + n : x);
    s.has_lp = true;
  });
}

int ZRVSloadmipsol(ZRVSprob prob, const double x[], int *status) {
  const char *who = "ZRVSloadmipsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    require(x, "x", who), require(status, "status", who);
    check_values(x, static_cast<size_t>(m.cols()), "x", who);
    if (!feasible_point(m, x, p.controls.get_dbl(ZRVS_FEASTOL, who),
                        p.controls.get_dbl(ZRVS_MIPTOL, who))) {
      *status = 1;
      return;
    }
    MipStart s;
    for (int j = 0; j < m.cols(); ++j) s.cols.push_back(j), s.values.push_back(x[j]);
    p.starts.mip.push_back(std::move(s));
    *status = 0;
  });
}

int ZRVSaddmipsol(ZRVSprob prob, int ncols, const double solval[], const int colind[],
                  const char *name) {
  const char *who = "ZRVSaddmipsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    check_count(ncols, "ncols", who);
    if (ncols > 0) require(solval, "solval", who);
    if (colind)
      check_columns(m, ncols, colind, who);
    else if (ncols > m.cols())
      fail(ZRVS_ERR_ARGUMENT, "%s: %d values for %d columns", who, ncols, m.cols());
    check_values(solval, static_cast<size_t>(ncols), "solval", who);
    MipStart s;
    s.name = name ? name : "";
    std::vector<char> seen(static_cast<size_t>(m.cols()), 0);
    for (int k = 0; k < ncols; ++k) {
      const int j = colind ? colind[k] : k;
      if (seen[j]) fail(ZRVS_ERR_ARGUMENT, "%s: column %d is given twice", who, j);
      seen[j] = 1;
      s.cols.push_back(j), s.values.push_back(solval[k]);
    }
    p.starts.mip.push_back(std::move(s));
  });
}

int ZRVSloaddirs(ZRVSprob prob, int ndirs, const int colind[], const int priority[],
                 const char dir[], const double uppseudo[], const double downpseudo[]) {
  const char *who = "ZRVSloaddirs";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    load_directives(p, ndirs, colind, priority, dir, nullptr, uppseudo, downpseudo, who);
  });
}

int ZRVSloadbranchdirs(ZRVSprob prob, int ncols, const int colind[], const int dir[]) {
  const char *who = "ZRVSloadbranchdirs";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (ncols > 0) require(dir, "dir", who);
    load_directives(p, ncols, colind, nullptr, nullptr, dir, nullptr, nullptr, who);
  });
}

int ZRVSgetdirs(ZRVSprob prob, int *ndirs, int colind[], int priority[], char dir[],
                double uppseudo[], double downpseudo[]) {
  const char *who = "ZRVSgetdirs";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(ndirs, "ndirs", who);
    int k = 0;
    for (const auto &e : p.starts.dirs) {
      if (colind) colind[k] = e.first;
      if (priority) priority[k] = e.second.priority;
      if (dir) dir[k] = e.second.dir;
      if (uppseudo) uppseudo[k] = e.second.up;
      if (downpseudo) downpseudo[k] = e.second.down;
      ++k;
    }
    *ndirs = k;
  });
}

int ZRVSloadpresolvebasis(ZRVSprob prob, const int *, const int *) {
  const char *who = "ZRVSloadpresolvebasis";
  return problem_call(prob, who, [&](zrvs_problem &) { no_presolved_problem(who); });
}

int ZRVSloadpresolvedirs(ZRVSprob prob, int, const int *, const int *, const char *,
                         const double *, const double *) {
  const char *who = "ZRVSloadpresolvedirs";
  return problem_call(prob, who, [&](zrvs_problem &) { no_presolved_problem(who); });
}

int ZRVSloadsecurevecs(ZRVSprob prob, int, int, const int *, const int *) {
  const char *who = "ZRVSloadsecurevecs";
  return problem_call(prob, who, [&](zrvs_problem &) {
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: HiGHS's presolve cannot be told to keep given rows or columns, and the engine "
         "keeps no presolved problem in which they would matter",
         who);
  });
}

}  // extern "C"
