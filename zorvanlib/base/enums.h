// Members of the status enumerations of the Python package (zorvan.enums).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

enum class StatusEnum { kSolveStatus = 0, kSolStatus = 1 };

// The member of the enumeration for value (new reference), or null with an
// error. The classes are looked up once and kept until ReleaseEnums.
PyObject *EnumMember(StatusEnum which, long long value);

// Drops the kept classes (the module is being freed).
void ReleaseEnums();

}  // namespace zrv
