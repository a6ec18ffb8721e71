#include "solve/highs/status.h"

#include <algorithm>

namespace zorvan {

namespace {

int stop_reason(HighsInt s, int interrupt) {
  if (s == kHighsModelStatusTimeLimit) return ZRVS_STOP_TIMELIMIT;
  if (s == kHighsModelStatusIterationLimit) return ZRVS_STOP_ITERLIMIT;
  if (s == kHighsModelStatusSolutionLimit) return ZRVS_STOP_NODELIMIT;
  if (s == kHighsModelStatusInterrupt)
    return interrupt != ZRVS_STOP_NONE ? interrupt : ZRVS_STOP_USER;
  return ZRVS_STOP_GENERICERROR;
}

HighsInt int_info(void *h, const char *name) {
  HighsInt v = 0;
  Highs_getIntInfoValue(h, name, &v);
  return std::max<HighsInt>(v, 0);
}

double dbl_info(void *h, const char *name) {
  double v = 0.0;
  Highs_getDoubleInfoValue(h, name, &v);
  return v;
}

}  // namespace

const char *model_status_text(HighsInt s) {
  static const char *const names[] = {
      "not set", "load error", "model error", "presolve error", "solve error",
      "postsolve error", "empty", "optimal", "infeasible", "unbounded or infeasible",
      "unbounded", "objective bound", "objective target", "time limit", "iteration limit",
      "unknown", "solution limit", "interrupted", "memory limit"};
  if (s < 0 || s >= static_cast<HighsInt>(sizeof names / sizeof *names)) return "unknown";
  return names[s];
}

bool presolve_hid_the_answer(void *h, bool mip) {
  HighsInt s = Highs_getModelStatus(h);
  return s == kHighsModelStatusUnboundedOrInfeasible || (!mip && s == kHighsModelStatusUnknown);
}

void record_stage(void *h, bool mip, int interrupt, StageResult &r) {
  HighsInt s = Highs_getModelStatus(h);
  bool feasible = int_info(h, "primal_solution_status") == kHighsSolutionStatusFeasible;
  r.objval = dbl_info(h, "objective_function_value");
  r.simplexiter = int_info(h, "simplex_iteration_count") + int_info(h, "qp_iteration_count");
  r.bariter = int_info(h, "ipm_iteration_count");
  if (mip) {
    int64_t nodes = 0;
    Highs_getInt64InfoValue(h, "mip_node_count", &nodes);
    r.nodes = std::max<int64_t>(nodes, 0);
    r.bestbound = dbl_info(h, "mip_dual_bound");
  } else {
    r.bestbound = r.objval;
  }
  int &status = mip ? r.mipstatus : r.lpstatus;
  r.stopstatus = ZRVS_STOP_NONE;
  r.solvestatus = ZRVS_SOLVESTATUS_COMPLETED;
  if (s == kHighsModelStatusOptimal || s == kHighsModelStatusModelEmpty) {
    r.solstatus = ZRVS_SOLSTATUS_OPTIMAL;
    status = mip ? ZRVS_MIP_OPTIMAL : ZRVS_LP_OPTIMAL;
    r.stopstatus = ZRVS_STOP_SOLVECOMPLETE;
  } else if (s == kHighsModelStatusInfeasible) {
    r.solstatus = ZRVS_SOLSTATUS_INFEASIBLE;
    status = mip ? ZRVS_MIP_INFEAS : ZRVS_LP_INFEAS;
  } else if (s == kHighsModelStatusUnbounded) {
    r.solstatus = ZRVS_SOLSTATUS_UNBOUNDED;
    status = mip ? ZRVS_MIP_UNBOUNDED : ZRVS_LP_UNBOUNDED;
  } else if (s == kHighsModelStatusUnboundedOrInfeasible) {
    // Neither is proven: no solution status can be claimed.
    r.solstatus = ZRVS_SOLSTATUS_NOTFOUND;
    status = mip ? ZRVS_MIP_NO_SOL_FOUND : ZRVS_LP_UNSOLVED;
  } else {
    bool stopped = s == kHighsModelStatusTimeLimit || s == kHighsModelStatusIterationLimit ||
                   s == kHighsModelStatusSolutionLimit || s == kHighsModelStatusInterrupt ||
                   s == kHighsModelStatusObjectiveBound ||
                   s == kHighsModelStatusObjectiveTarget;
    r.solvestatus = stopped ? ZRVS_SOLVESTATUS_STOPPED : ZRVS_SOLVESTATUS_FAILED;
    r.solstatus = feasible ? ZRVS_SOLSTATUS_FEASIBLE : ZRVS_SOLSTATUS_NOTFOUND;
    if (mip)
      status = feasible ? ZRVS_MIP_SOLUTION : ZRVS_MIP_NO_SOL_FOUND;
    else
      status = stopped ? ZRVS_LP_UNFINISHED : ZRVS_LP_UNSOLVED;
    r.stopstatus = stop_reason(s, interrupt);
  }
}

void refine_stop_reason(const zrvs_problem &p, StageResult &r) {
  if (r.stopstatus != ZRVS_STOP_NODELIMIT) return;
  const char *who = "optimize";
  if (p.controls.get_int(ZRVS_MAXMIPSOL, who) > 0 &&
      r.nodes < p.controls.get_int(ZRVS_MAXNODE, who))
    r.stopstatus = ZRVS_STOP_SOLLIMIT;
}

void check_rows_without_columns(const std::vector<double> &row_lower,
                                const std::vector<double> &row_upper, double tolerance,
                                bool mip, StageResult &r) {
  for (size_t i = 0; i < row_lower.size(); ++i) {
    if (row_lower[i] <= tolerance && row_upper[i] >= -tolerance) continue;
    r.solstatus = ZRVS_SOLSTATUS_INFEASIBLE;
    (mip ? r.mipstatus : r.lpstatus) = mip ? ZRVS_MIP_INFEAS : ZRVS_LP_INFEAS;
    r.stopstatus = ZRVS_STOP_NONE;
    return;
  }
}

}  // namespace zorvan
