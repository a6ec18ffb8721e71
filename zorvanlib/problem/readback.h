// Problem methods that read the model back from the engine, one engine
// function each: bounds, types, right-hand sides, names, the matrix,
// indicators and quadratic row parts. Results fill lists passed by the caller.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// The group of read-back methods (null-terminated).
extern PyMethodDef ReadBackMethods[];

}  // namespace zrv
