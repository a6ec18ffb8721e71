// The callback kinds of `problem`, one row each: the number of the kind's
// slot, its name (addcb<name>, removecb<name>), the name used in the
// "Problem in callback" report, and how it is added to and removed from the
// engine with its trampoline.
#pragma once

#include "zorvan/zrvs.h"

namespace zrv {

struct CallbackKind {
  int number;
  const char *name;
  const char *display;  // "message()", or "" for kinds reported without a name
  // record: the registration record, the engine's user pointer.
  int (*add)(ZRVSprob prob, void *record, int priority);
  // Removes this module's registration for record.
  int (*remove)(ZRVSprob prob, void *record);
  const char *help;
};

// The kinds with their own add and remove methods (0 to 21), by number.
constexpr int kSolverCallbackKinds = 22;
extern const CallbackKind kCallbackKinds[kSolverCallbackKinds];

// The row of a kind number, or null.
const CallbackKind *FindCallbackKind(int number);

}  // namespace zrv
