// Wrappers that turn engine exceptions into C status codes at the entry points.
#pragma once
#include <new>

#include "core/errors.h"
#include "zorvan/zrvs.h"

#define ZORVAN_STRINGIFY_(x) #x
#define ZORVAN_STRINGIFY(x) ZORVAN_STRINGIFY_(x)

namespace zorvan {

// Runs body; any failure is stored as the calling thread's global error.
template <class Body>
int global_call(Body &&body) {
  try {
    body();
    return 0;
  } catch (const Error &e) {
    set_global_error(e.code(), e.what());
    return e.code();
  } catch (const std::bad_alloc &) {
    set_global_error(ZRVS_ERR_MEMORY, "Out of memory");
    return ZRVS_ERR_MEMORY;
  } catch (const std::exception &e) {
    set_global_error(ZRVS_ERR_INTERNAL, std::string("Internal error: ") + e.what());
    return ZRVS_ERR_INTERNAL;
  }
}

}  // namespace zorvan
