// How a C entry point runs its C++ body: exceptions become status codes, and
// the error text is kept where the caller reads it (the thread's global error,
// and the handle's own error for calls on a problem).
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

// Runs body(*object) for entry point `who` on a handle. check(object, who)
// throws Error when the handle is not usable (that failure can only go to the
// global error); a failure of the body is also handed to record(*object,
// status), which keeps it with the object.
template <class Object, class Check, class Record, class Body>
int handle_call(Object *object, const char *who, Check &&check, Record &&record, Body &&body) {
  try {
    check(object, who);
  } catch (const Error &e) {
    set_global_error(e.code(), e.what());
    return e.code();
  }
  int status = global_call([&] { body(*object); });
  if (status != 0) record(*object, status);
  return status;
}

}  // namespace zorvan
