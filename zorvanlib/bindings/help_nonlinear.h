// Help texts of the nonlinear solver's one-to-one members.
#pragma once

#include "base/help.h"

namespace zrv::help {

inline constexpr char kNlpSetInitVal[] = ZRV_HELP(
    "Set the values the nonlinear solver starts from.",
    "p.nlpsetinitval(colind, initial)",
    "colind: columns (indices, names or variables); initial: their starting values (a value "
    "of 1e20 or more in magnitude removes a column's starting value).",
    "p.nlpsetinitval([x, y], [1.0, 2.5])\n    p.optimize()",
    "Columns without a starting value start from the last nonlinear solution when the "
    "problem still has its shape, else from 0 moved into their bounds.",
    "problem.optimize, problem.getSolution");

}  // namespace zrv::help
