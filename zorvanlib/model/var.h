// The `var` object: one 64-bit word holding the serial identifier (bits
// 0-51), bound codes and stored flags (52-59) and the variable type (60-62).
// Attributes that the codes cannot express live in the module-wide maps,
// keyed by the identifier.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "zorvan/zrvs.h"

struct VarObject {
  PyObject_HEAD
  uint64_t word;  // 0: allocated but not initialized
};

namespace zrv {

constexpr uint64_t kVarIdMask = (uint64_t{1} << 52) - 1;
constexpr int kVarLbShift = 52;
constexpr uint64_t kVarLbCode = uint64_t{3} << kVarLbShift;
constexpr uint64_t kVarLbStored = uint64_t{1} << 54;
constexpr int kVarUbShift = 55;
constexpr uint64_t kVarUbCode = uint64_t{3} << kVarUbShift;
constexpr uint64_t kVarUbStored = uint64_t{1} << 57;
constexpr uint64_t kVarThresholdStored = uint64_t{1} << 58;
constexpr uint64_t kVarNameStored = uint64_t{1} << 59;
constexpr int kVarTypeShift = 60;
constexpr uint64_t kVarTypeMask = uint64_t{7} << kVarTypeShift;

// Bounds at or beyond this are no bound.
constexpr double kInfinity = ZRVS_PLUSINFINITY;

inline constexpr char kBadVarType[] =
    "Invalid variable type: should be one of zorvan.binary, zorvan.continuous, etc.";

inline uint64_t VarId(uint64_t word) { return word & kVarIdMask; }
inline uint64_t VarWordOf(PyObject *v) { return reinterpret_cast<VarObject *>(v)->word; }
inline uint64_t VarIdOf(PyObject *v) { return VarId(VarWordOf(v)); }
// The type of a variable as its code (the constants continuous ... partiallyinteger).
inline int VarTypeCode(uint64_t word) { return static_cast<int>((word & kVarTypeMask) >> kVarTypeShift); }
inline void VarSetType(uint64_t &word, int type) {
  word = (word & ~kVarTypeMask) | (static_cast<uint64_t>(type & 7) << kVarTypeShift);
}

// The variable type of an engine column type letter ('C' 0, 'B' 1, 'I' 2,
// 'S' 3, 'R' 4, 'P' 5), or -1 for any other letter.
inline int VarTypeOfLetter(char c) {
  switch (c) {
    case 'C': return 0;
    case 'B': return 1;
    case 'I': return 2;
    case 'S': return 3;
    case 'R': return 4;
    case 'P': return 5;
  }
  return -1;
}

// The attribute store.
double VarGetLb(uint64_t word);
void VarSetLb(uint64_t &word, double v);
double VarGetUb(uint64_t word);
void VarSetUb(uint64_t &word, double v);
double VarGetThreshold(uint64_t word);
void VarSetThreshold(uint64_t &word, double v);
// New reference: the stored name object, or "C<id>".
PyObject *VarGetName(uint64_t word);
// The name as a str (the stored object's str when it is not a string).
PyObject *VarNameStr(uint64_t word);
void VarSetName(uint64_t &word, PyObject *name);
// The attributes of a new variable from its constructor's arguments (type
// 0..5 already checked): a binary without upper bound gets 1, binaries and
// integers get integral bounds.
void VarSetInitial(uint64_t &word, double lb, double ub, double threshold, int vartype);
// Erases every map entry of the variable and clears its flags.
void VarReleaseStore(uint64_t &word);

// The number slots of `var` (also used by the shared arithmetic).
extern PyNumberMethods VarNumberMethods;

}  // namespace zrv
