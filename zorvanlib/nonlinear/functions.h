// The module functions of nonlinear expressions (sin ... erfc, max, min, pwl, user).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Added to the module at start-up; ends with a null entry.
extern PyMethodDef NonlinearFunctions[];

}  // namespace zrv
