// Starting and stopping the engine, and the catalogue of controls and
// attributes read from it.
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

// Fills the control, attribute and catalogue dictionaries and the default
// values once per process. Returns 0, or -1 with an error.
int EnsureCatalogue();

// Reads the engine's lists of controls and attributes (on a start of its own).
int LoadCatalogue(bool forced);

}  // namespace zrv
