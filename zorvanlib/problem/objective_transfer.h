// The transfer row and column that carry a nonlinear objective. They are
// kept after every row and column of the model, so that rows and columns
// keep the positions of their constraints and variables in the problem's
// lists: adders take them out first and put them back after.
#pragma once

#include "problem/formula_batch.h"
#include "problem/problem.h"

namespace zrv {

// Adds the transfer row and column at the end and the formulas to the row,
// and sets the nonlinear objective flag. 0 or -1; on failure nothing is
// left of them.
int AddTransfer(ProblemObject *p, FormulaBatch &formulas);

// Removes them (the engine drops the row's formulas with it) and clears
// the flag. 0 or -1.
int RemoveTransfer(ProblemObject *p);

// The formulas of a transfer row taken out for a while.
struct DetachedTransfer {
  bool active = false;
  FormulaBatch *formulas = nullptr;
  ~DetachedTransfer() { delete formulas; }
};

// Takes the transfer row and column out, keeping their formulas in `saved`
// (nothing happens without a nonlinear objective). 0 or -1.
int DetachTransfer(ProblemObject *p, DetachedTransfer &saved);
// Puts them back at the end. 0 or -1; keeps an error already pending.
int ReattachTransfer(ProblemObject *p, DetachedTransfer &saved);

}  // namespace zrv
