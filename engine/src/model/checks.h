// Argument checks about the model (indices, ranges, values, batches). Each throws
// zorvan::Error naming the entry point and the argument.
#pragma once
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/arguments.h"
#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

// An index in 0..n-1 of a `what` ("row", "column", "set").
inline void check_index(int i, int n, const char *arg, int64_t k, const char *what,
                        const char *who) {
  if (i < 0 || i >= n)
    fail(ZRVS_ERR_ARGUMENT, "%s: %s[%lld] = %d is not a %s index (0..%d)", who, arg,
         (long long)k, i, what, n - 1);
}

// first..last inside 0..n-1.
inline void check_range(int first, int last, int n, const char *what, const char *who) {
  if (first < 0 || last >= n || first > last)
    fail(ZRVS_ERR_ARGUMENT, "%s: first..last = %d..%d is not a range of %ss (0..%d)", who,
         first, last, what, n - 1);
}

inline void check_finite(double v, const char *arg, int64_t k, const char *who) {
  if (!std::isfinite(v))
    fail(ZRVS_ERR_ARGUMENT, "%s: %s[%lld] is not a finite number", who, arg, (long long)k);
}

inline void check_not_nan(double v, const char *arg, int64_t k, const char *who) {
  if (std::isnan(v)) fail(ZRVS_ERR_ARGUMENT, "%s: %s[%lld] is NaN", who, arg, (long long)k);
}

// A row type: 'L', 'G', 'E', 'R' or 'N'.
inline void check_row_type(char t, int i, const char *who) {
  if (t != 'L' && t != 'G' && t != 'E' && t != 'R' && t != 'N')
    fail(ZRVS_ERR_ARGUMENT, "%s: rowtype[%d] is '%c', not one of L, G, E, R, N", who, i,
         t ? t : '?');
}

// The range of an 'R' row: rhs - range <= activity <= rhs.
inline void check_range_value(double r, int i, const char *who) {
  if (std::isnan(r) || r < 0)
    fail(ZRVS_ERR_ARGUMENT, "%s: rng[%d] must be a non-negative number", who, i);
}

// Flags (1: listed) over 0..n-1 of the `what` indices ind[0..count-1]
// (`countarg` and `arg` name the arguments).
inline std::vector<char> listed(int count, const char *countarg, const int *ind,
                                const char *arg, int n, const char *what, const char *who) {
  check_count(count, countarg, who);
  std::vector<char> flags(n, 0);
  if (count == 0) return flags;
  require(ind, arg, who);
  for (int k = 0; k < count; ++k) {
    check_index(ind[k], n, arg, k, what, who);
    flags[ind[k]] = 1;
  }
  return flags;
}

// Entries of line j of a batch: start[j] .. start[j+1]-1, the last line
// ending at ncoefs. Throws unless the offsets are non-decreasing in 0..ncoefs.
inline void check_starts(const int64_t *start, int n, int64_t ncoefs, const char *who) {
  if (n == 0) return;
  if (ncoefs > 0) require(start, "start", who);
  if (!start) return;
  for (int j = 0; j < n; ++j) {
    int64_t end = j + 1 < n ? start[j + 1] : ncoefs;
    if (start[j] < 0 || start[j] > end || end > ncoefs)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: start[%d] = %lld does not begin a valid range of entries (0..ncoefs=%lld)", who,
           j, (long long)start[j], (long long)ncoefs);
  }
}

}  // namespace zorvan
