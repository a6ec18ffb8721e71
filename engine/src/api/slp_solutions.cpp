// Entry points of nonlinear solutions and starting points.
#include <algorithm>
#include <cmath>
#include <limits>

#include "core/arguments.h"
#include "model/checks.h"
#include "nlp/slp_problem.h"

using namespace zorvan;

extern "C" {

int ZSLPgetslpsol(ZSLPprob slp, double x[], double slack[], double duals[], double djs[]) {
  const char *who = "ZSLPgetslpsol";
  return slp_call(slp, who, [&](zslp_problem &s) {
    const zrvs_problem &p = *s.prob;
    const SolveState &r = p.results;
    if (r.nlpstatus == ZSLP_NLP_UNSTARTED || !r.has_lp_solution)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no nonlinear solution is available (not solved by the nonlinear solver since "
           "the last change, or the solve ended without a point)",
           who);
    auto out = [](const std::vector<double> &v, double *dest) {
      if (dest) std::copy(v.begin(), v.end(), dest);
    };
    out(r.x, x);
    out(r.slack, slack);
    out(r.duals, duals);
    out(r.djs, djs);
  });
}

int ZRVSnlpsetinitval(ZRVSprob prob, int nvars, const int colind[], const double initial[]) {
  const char *who = "ZRVSnlpsetinitval";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_count(nvars, "nvars", who);
    if (nvars == 0) return;
    require(colind, "colind", who);
    require(initial, "initial", who);
    const int n = p.model.cols();
    for (int k = 0; k < nvars; ++k) {
      check_index(colind[k], n, "colind", k, "column", who);
      if (std::isnan(initial[k]))
        fail(ZRVS_ERR_ARGUMENT, "%s: initial[%d] is not a number", who, k);
    }
    std::vector<double> &v = p.nlp_start.initial;
    v.resize(static_cast<size_t>(n), std::numeric_limits<double>::quiet_NaN());
    for (int k = 0; k < nvars; ++k)
      v[colind[k]] = std::fabs(initial[k]) >= ZRVS_PLUSINFINITY
                         ? std::numeric_limits<double>::quiet_NaN()
                         : initial[k];
  });
}

}  // extern "C"
