// The check every continuous QP result passes before it is reported.
#pragma once
#include <string>

#include "problem/problem.h"

namespace zorvan {

// Checks the first-order conditions at the solution of a continuous QP solve
// recorded in p.results, on the model as the solver was given it. When they
// fail, or the solver failed (solver_status says how), the QP is solved again
// by the dense interior point method; its result replaces the first when it
// passes the check. When neither path gives a verified optimum the results
// say "failed" and an Error names both reasons: a point that fails the check
// is never reported optimal.
void verify_qp_result(zrvs_problem &p, const std::string &solver_status, const char *who);

}  // namespace zorvan
