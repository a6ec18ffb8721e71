// Why the solver refused a model, in words that name the column or row.
#pragma once
#include <string>

#include "solve/highs/builder.h"

namespace zorvan {

// The first part of the built model that the solver cannot take: a lower
// bound or lower row side at plus infinity, an upper one at minus infinity,
// a number that is not finite, or a coefficient at or beyond
// large_coefficient. Empty when none is found.
std::string rejected_part(const Model &m, const HighsBuild &build, double large_coefficient);

}  // namespace zorvan
