// The MIP and barrier controls beyond the basic set: cutoff, solution limit,
// barrier iteration limit, convergence tolerance and crossover.
#pragma once

#include <vector>

#include "core/problem.h"
#include "solve/results.h"

namespace zorvan {

// Sets the HiGHS options of these controls; called after apply_controls.
void apply_more_controls(void *highs, const zrvs_problem &p);

// The MIP cutoff as a row of the HiGHS model: objective 0 (coefficients over
// the model's columns, plus constant) no worse than the cutoff. Only for MIP
// solves; HiGHS's own objective bound is not used, as without presolve it
// is not always honoured. True when the row was added.
bool add_cutoff_row(void *highs, const zrvs_problem &p, const std::vector<double> &cost,
                    double constant, bool mip);

// HiGHS reports every MIP limit alike; a stop short of the node limit with a
// solution limit set is the solution limit.
void refine_stop_reason(const zrvs_problem &p, StageResult &r);

}  // namespace zorvan
