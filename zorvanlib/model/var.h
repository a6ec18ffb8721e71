// The `var` object: one 64-bit word holding the serial identifier (bits
// 0-51), bound codes and stored flags (52-59) and the variable type (60-62).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct VarObject {
  PyObject_HEAD
  uint64_t word;  // 0: allocated but not initialized
};

namespace zrv {

constexpr uint64_t kVarIdMask = (uint64_t{1} << 52) - 1;

inline uint64_t VarId(uint64_t word) { return word & kVarIdMask; }

}  // namespace zrv
