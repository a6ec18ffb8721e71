// The solution of a solve as the problem keeps it: the backend's vectors
// over the problem's columns and rows, slacks and objective values computed
// from the problem's own rows and objectives.
#pragma once
#include "solve/backend.h"

namespace zorvan {

// Fills the solution vectors and objective values of res from the
// backend's last run. An LP solve keeps an LP solution, a MIP solve an
// integer solution; the relaxation of a MIP keeps both, as it is also
// where readers of a model with discrete parts look for its solution.
void record_solution(Backend &backend, const Model &m, const SolveRequest &request,
                     SolveState &res);

}  // namespace zorvan
