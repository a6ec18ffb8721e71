// Whether the quadratic objective can go to the convex QP solver: its
// Hessian positive semidefinite for a minimisation (negative for a
// maximisation).
#pragma once
#include "model/model.h"

namespace zorvan {

// Blocks of coupled columns larger than this are not factorised; such a
// block counts as convex only when its Hessian is diagonally dominant.
constexpr int kConvexityBlockLimit = 500;

// True when the objective's quadratic part is convex in the sense of the
// objective (checked block by block by a pivoted Cholesky factorisation).
bool quadratic_objective_convex(const Model &m);

}  // namespace zorvan
