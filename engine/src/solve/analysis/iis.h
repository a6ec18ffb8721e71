// Irreducible infeasible subsystems of the continuous relaxation: a set of
// rows and column bounds that no point satisfies, while every proper subset
// can be satisfied. Found by a deletion filter on HiGHS LPs, started from
// the support of a dual ray.
#pragma once
#include <vector>

#include "model/model.h"
#include "problem/iis_sets.h"

namespace zorvan {

// An IIS that avoids every row in `banned`; false when the model (with the
// banned rows dropped) is feasible.
bool find_iis(const Model &m, const std::vector<int> &banned, Iis &out, const char *who);

}  // namespace zorvan
