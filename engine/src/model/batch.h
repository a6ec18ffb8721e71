// Checks of a batch of matrix lines (columns or rows) given by start offsets.
#pragma once
#include <cstdint>
#include <utility>

namespace zorvan {

// Lines j = 0..n-1 hold entries start[j] .. start[j+1]-1 (the last ends at
// ncoefs). Throws unless every index is in 0..nother-1, every value finite
// and no line has two entries with the same index. `what` names the
// indexed entity ("row", "column").
void check_batch(int n, int64_t ncoefs, const int64_t *start, const int *ind,
                 const double *val, int nother, const char *indname, const char *what,
                 const char *who);

// The entries [begin, end) of line j of a batch given by start offsets, the
// last line ending at ncoefs (start may be NULL when there are none).
struct BatchLines {
  const int64_t *start;
  int n;
  int64_t ncoefs;
  std::pair<int64_t, int64_t> operator()(int j) const {
    if (ncoefs == 0) return {0, 0};
    return {start[j], j + 1 < n ? start[j + 1] : ncoefs};
  }
};
inline BatchLines batch_line(const int64_t *start, int n, int64_t ncoefs) {
  return {start, n, ncoefs};
}

}  // namespace zorvan
