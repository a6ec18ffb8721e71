// Columns of a continuous QP that appear neither in the Hessian nor in any
// row. HiGHS's QP solver regularises columns without curvature, which made
// it cycle or misjudge boundedness on such columns; their best value needs
// no solver at all.
#pragma once
#include "problem/problem.h"
#include "solve/highs/builder.h"

namespace zorvan {

// Fixes each such column of `build` at its best value: the bound its cost
// points to (for the objective's sense), or the value nearest 0 when its
// cost is 0. A column whose cost points to an infinite bound is left as it
// is: the QP is then unbounded if it is feasible, which the result check
// proves. Returns the number of columns fixed.
int pin_loose_columns(const Model &m, HighsBuild &build);

}  // namespace zorvan
