// The controls of more_options.h turned into HiGHS options and model rows.
#include "solve/highs/more_options.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "core/errors.h"
#include "interfaces/highs_c_api.h"

namespace zorvan {

namespace {
constexpr double kInf = 1e300;  // HiGHS reads any value >= its infinity as infinite

void check(HighsInt status, const char *name) {
  if (status == kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "HiGHS refused the value of option %s", name);
}
}  // namespace

void apply_more_controls(void *h, const zrvs_problem &p) {
  const ControlValues &c = p.controls;
  const char *who = "optimize";
  // The barrier obeys both iteration limits.
  int64_t iterlimit =
      std::min(c.get_int(ZRVS_LPITERLIMIT, who), c.get_int(ZRVS_BARITERLIMIT, who));
  check(Highs_setIntOptionValue(h, "ipm_iteration_limit",
                                static_cast<HighsInt>(std::min<int64_t>(iterlimit, INT_MAX))),
        "ipm_iteration_limit");
  check(Highs_setDoubleOptionValue(h, "ipm_optimality_tolerance",
                                   c.get_dbl(ZRVS_BARGAPSTOP, who)),
        "ipm_optimality_tolerance");
  check(Highs_setStringOptionValue(h, "run_crossover",
                                   c.get_int(ZRVS_CROSSOVER, who) ? "on" : "off"),
        "run_crossover");
  int64_t maxsol = c.get_int(ZRVS_MAXMIPSOL, who);
  check(Highs_setIntOptionValue(h, "mip_max_improving_sols",
                                maxsol > 0 ? static_cast<HighsInt>(maxsol) : INT_MAX),
        "mip_max_improving_sols");
  check(Highs_setDoubleOptionValue(h, "mip_heuristic_effort", c.get_dbl(ZRVS_HEUREMPHASIS, who)),
        "mip_heuristic_effort");
  check(Highs_setBoolOptionValue(h, "mip_detect_symmetry", c.get_int(ZRVS_SYMMETRY, who) != 0),
        "mip_detect_symmetry");
  // HiGHS's default scaling (2: equilibration) or none (0).
  check(Highs_setIntOptionValue(h, "simplex_scale_strategy", c.get_int(ZRVS_SCALING, who) ? 2 : 0),
        "simplex_scale_strategy");
}

bool add_cutoff_row(void *h, const zrvs_problem &p, const std::vector<double> &cost,
                    double constant, bool mip) {
  double cutoff = p.controls.get_dbl(ZRVS_MIPABSCUTOFF, "optimize");
  if (!mip || std::fabs(cutoff) >= 1e20) return false;
  std::vector<HighsInt> index;
  std::vector<double> value;
  for (size_t j = 0; j < cost.size(); ++j)
    if (cost[j] != 0.0) index.push_back(static_cast<HighsInt>(j)), value.push_back(cost[j]);
  double bound = cutoff - constant;
  bool minimise = p.model.objsense > 0;
  if (Highs_addRow(h, minimise ? -kInf : bound, minimise ? bound : kInf,
                   static_cast<HighsInt>(index.size()), index.data(), value.data()) ==
      kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "optimize: HiGHS refused the row of the cutoff (mipabscutoff)");
  return true;
}

void refine_stop_reason(const zrvs_problem &p, StageResult &r) {
  if (r.stopstatus != ZRVS_STOP_NODELIMIT) return;
  const char *who = "optimize";
  if (p.controls.get_int(ZRVS_MAXMIPSOL, who) > 0 &&
      r.nodes < p.controls.get_int(ZRVS_MAXNODE, who))
    r.stopstatus = ZRVS_STOP_SOLLIMIT;
}

}  // namespace zorvan
