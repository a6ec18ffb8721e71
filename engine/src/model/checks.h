// Argument checks shared by the model entry points. Each throws
// zorvan::Error naming the entry point and the argument.
#pragma once
#include <cmath>
#include <cstdint>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

inline void check_count(int64_t n, const char *arg, const char *who) {
  if (n < 0) fail(ZRVS_ERR_ARGUMENT, "%s: %s is negative (%lld)", who, arg, (long long)n);
}

template <class T>
void require(const T *ptr, const char *arg, const char *who) {
  if (!ptr) fail(ZRVS_ERR_ARGUMENT, "%s: %s is NULL", who, arg);
}

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
