// Checks of a batch of matrix lines (columns or rows) given by start offsets.
#pragma once
#include <cstdint>

namespace zorvan {

// Lines j = 0..n-1 hold entries start[j] .. start[j+1]-1 (the last ends at
// ncoefs). Throws unless every index is in 0..nother-1, every value finite
// and no line has two entries with the same index. `what` names the
// indexed entity ("row", "column").
void check_batch(int n, int64_t ncoefs, const int64_t *start, const int *ind,
                 const double *val, int nother, const char *indname, const char *what,
                 const char *who);

}  // namespace zorvan
