// Starting and stopping the engine (counted: every start is matched by a
// stop).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Starts the engine. With explicit false this is the lazy start: it does
// nothing when the engine is already started. Returns 0, or -1 with an error.
int StartEnvironment(const char *path, bool explicit_start);
inline int EnsureEnvironment() { return StartEnvironment(nullptr, false); }

// Stops the engine once (once true) or until the start count is 0.
int StopEnvironment(bool once);

// What starting and stopping involve above this floor, registered by the
// module at start-up: after a start, reading the catalogue of controls (0 or
// -1 with an error; a failure undoes the start); before the last stop,
// releasing every live problem (problems cannot outlive the engine).
struct EnvironmentHooks {
  int (*after_start)() = nullptr;
  void (*before_last_stop)() = nullptr;
};
void SetEnvironmentHooks(const EnvironmentHooks &hooks);

}  // namespace zrv
