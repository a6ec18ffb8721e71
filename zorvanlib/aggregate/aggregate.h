// Module functions that fold collections (Sum, Dot, Prod, And, Or) and the
// variable factory vars.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Added to the module at start-up; ends with a null entry.
extern PyMethodDef AggregateFunctions[];  // aggregate.cpp
extern PyMethodDef VarsFunctions[];       // vars.cpp

}  // namespace zrv
