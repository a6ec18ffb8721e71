// HiGHS's outcome of one run turned into the engine's statuses.
#pragma once
#include "problem/problem.h"
#include "interfaces/highs_c_api.h"
#include "problem/results.h"

namespace zorvan {

// Fills the statuses and counters of r from a finished run. interrupt is
// the stop reason given to ZRVSinterrupt (ZRVS_STOP_NONE if none).
void record_stage(void *highs, bool mip, int interrupt, StageResult &r);

const char *model_status_text(HighsInt status);

// HiGHS reports every MIP limit alike; a stop short of the node limit with a
// solution limit set is the solution limit.
void refine_stop_reason(const zrvs_problem &p, StageResult &r);

}  // namespace zorvan
