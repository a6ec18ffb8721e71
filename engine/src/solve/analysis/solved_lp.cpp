#include "solve/analysis/solved_lp.h"

#include "core/errors.h"
#include "solve/highs/instance.h"

namespace zorvan {

void *solved_lp(zrvs_problem &p, const char *need, const char *who) {
  const SolveState &r = p.results;
  if (r.lpstatus == ZRVS_LP_UNSTARTED && r.mipstatus != ZRVS_MIP_NOT_LOADED)
    fail(ZRVS_ERR_ARGUMENT, "%s: %s needs an LP solve; the last solve was a MIP", who, need);
  if (r.lpstatus == ZRVS_LP_UNSTARTED)
    fail(ZRVS_ERR_ARGUMENT,
         "%s: %s needs the problem solved as an LP first (no solve since the last change)", who,
         need);
  if (!p.highs || !p.highs->holds_lp() || !p.model.qobj.empty() || !p.model.qrows.empty())
    fail(ZRVS_ERR_ARGUMENT,
         "%s: %s needs a solve of a linear problem as a continuous LP with one objective; the "
         "last solve was a MIP, a QP, several objectives or a reformulated model",
         who, need);
  return p.highs->handle();
}

void *optimal_lp(zrvs_problem &p, const char *need, const char *who) {
  void *h = solved_lp(p, need, who);
  HighsInt validity = 0;
  Highs_getIntInfoValue(h, "basis_validity", &validity);
  if (p.results.lpstatus != ZRVS_LP_OPTIMAL || validity != kHighsBasisValidityValid)
    fail(ZRVS_ERR_ARGUMENT, "%s: %s needs an optimal LP basis; the last LP solve did not end "
         "optimal with a basis", who, need);
  return h;
}

}  // namespace zorvan
