// The catalogue of controls and attributes: the module's dictionaries of
// names, read from the engine once per process.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Fills the control, attribute and catalogue dictionaries and the default
// values once per process. Returns 0, or -1 with an error.
int EnsureCatalogue();

}  // namespace zrv
