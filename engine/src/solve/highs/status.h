// HiGHS's outcome of one run turned into the engine's statuses.
#pragma once
#include "problem/problem.h"
#include <vector>

#include "interfaces/highs_c_api.h"
#include "problem/results.h"

namespace zorvan {

// Fills the statuses and counters of r from a finished run. interrupt is
// the stop reason given to ZRVSinterrupt (ZRVS_STOP_NONE if none).
void record_stage(void *highs, bool mip, int interrupt, StageResult &r);

const char *model_status_text(HighsInt status);

// True when a finished run left an outcome that a run without presolve can
// settle: unbounded or infeasible undecided, or a continuous problem whose
// postsolve lost the optimality of the point (the barrier without crossover
// on a problem that presolve removes entirely ends "unknown").
bool presolve_hid_the_answer(void *highs, bool mip);

// HiGHS calls a model without columns empty, and optimal, whatever its rows
// say. Every row's activity is then 0: when a row's sides exclude 0 (beyond
// the feasibility tolerance), r is turned into a proof of infeasibility.
void check_rows_without_columns(const std::vector<double> &row_lower,
                                const std::vector<double> &row_upper, double tolerance,
                                bool mip, StageResult &r);

// HiGHS reports every MIP limit alike; a stop short of the node limit with a
// solution limit set is the solution limit.
void refine_stop_reason(const zrvs_problem &p, StageResult &r);

}  // namespace zorvan
