// The problem's controls as HiGHS options: one row per control names the
// HiGHS option it sets and how its value is converted. HiGHS is used
// through its C interface, which does not depend on the C++ library ABI
// HiGHS was built with.
#pragma once
#include "problem/problem.h"

namespace zorvan {

// Sets HiGHS's options from the problem's controls. algorithm is the
// flags' choice ('d', 'p', 'b') or 0 to take the defaultalg control;
// threads the count of the solve's scheduler lease.
void apply_controls(void *highs, const zrvs_problem &p, char algorithm, int threads);

// The thread count a solve asks for: the threads control, or a fixed count
// under architecture consistency; 0 lets HiGHS choose.
int solve_threads(const zrvs_problem &p);

// The iterations HiGHS's active-set QP solver may take: the user's limit,
// capped by a bound that grows with the model, as the solver can cycle
// forever (on columns with no curvature it adds a small regularisation to).
int64_t qp_iteration_cap(const zrvs_problem &p);

}  // namespace zorvan
