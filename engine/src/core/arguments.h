// Checks of entry-point arguments that are not about the model. Each throws
// zorvan::Error naming the entry point and the argument.
#pragma once
#include <cstdint>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

// A pointer argument (data or function) that must not be NULL.
template <class Pointer>
void require(Pointer ptr, const char *arg, const char *who) {
  if (!ptr) fail(ZRVS_ERR_ARGUMENT, "%s: %s is NULL", who, arg);
}

inline void check_count(int64_t n, const char *arg, const char *who) {
  if (n < 0) fail(ZRVS_ERR_ARGUMENT, "%s: %s is negative (%lld)", who, arg, (long long)n);
}

// The value of a 64-bit integer control or attribute `id` for an entry point
// with a 32-bit output; refused when it does not fit (`wider`, if any, names
// the entry point that reads all 64 bits).
inline int fit_in_32_bits(int64_t v, const char *what, int id, const char *wider,
                          const char *who) {
  if (v > INT32_MAX || v < INT32_MIN)
    fail(ZRVS_ERR_ARGUMENT, "%s: the value of %s %d does not fit in 32 bits%s%s", who, what, id,
         wider ? "; use " : "", wider ? wider : "");
  return static_cast<int>(v);
}

}  // namespace zorvan
