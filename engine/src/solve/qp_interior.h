// A dense primal-dual interior point method for convex QPs of moderate size:
// the second path when HiGHS's active-set QP solver fails or returns a point
// that is not optimal.
#pragma once
#include <string>

#include "solve/qp_model.h"

namespace zorvan {

// Columns plus twice the rows above which the dense method is not tried.
constexpr int kDenseQpLimit = 2000;

// Solves qp; on success fills pt (duals in QpPoint's convention) and the
// iteration count and returns true; otherwise says why in `why`.
bool solve_qp_interior(const QpModel &qp, QpPoint &pt, int &iterations, std::string &why);

}  // namespace zorvan
