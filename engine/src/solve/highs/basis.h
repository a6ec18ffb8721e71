// Warm starts: the problem's stored basis (ZRVS_BASIS_* statuses) turned
// into a HiGHS starting basis, and the basis of an LP solve stored back.
#pragma once
#include <vector>

#include "solve/highs/builder.h"

namespace zorvan {

// Whether a solve of this build can start from and leave a basis: a
// continuous LP whose HiGHS model has exactly the problem's columns and rows.
bool basis_applies(const Model &m, const HighsBuild &build, bool mip);

// HiGHS statuses for the LP of `build` from the stored basis of m. Columns
// and rows appended since the basis was stored start nonbasic at a finite
// bound (columns) or basic (rows). False when m has no basis.
bool start_basis(const Model &m, const LpBuilder &lp, std::vector<HighsInt> &col,
                 std::vector<HighsInt> &row);

// Stores the HiGHS basis of a solve as the problem's basis.
void store_basis(Model &m, const std::vector<HighsInt> &col, const std::vector<HighsInt> &row);

// Checks a basis given by the user against the problem (status values,
// statuses the bounds allow, as many basic entries as rows) and stores it.
// Throws zorvan::Error naming the first fault.
void load_basis(Model &m, const int *rstatus, const int *cstatus, const char *who);

}  // namespace zorvan
