// The `constraint` object: a body with a lower and an upper bound. The
// bounds and the name live in one 64-bit word and the module-wide maps, as
// for variables: the identifier in bits 0-56, the lower-bound code in 57-58
// (0: no bound, 1: 0.0, 2: 1.0, 3: stored), its stored flag in 59, the
// upper-bound code in 60-61 (0: no bound, 1: 0.0, 2: 1.0, 3: stored), its
// flag in 62 and the name flag in 63.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct ConstraintObject {
  PyObject_HEAD
  uint64_t word;
  PyObject *body;  // owned; a number or a modelling object
};

namespace zrv {

constexpr uint64_t kConstraintIdMask = (uint64_t{1} << 57) - 1;

inline uint64_t ConId(uint64_t word) { return word & kConstraintIdMask; }

double ConGetLb(uint64_t word);
void ConSetLb(uint64_t &word, double v);
double ConGetUb(uint64_t word);
void ConSetUb(uint64_t &word, double v);
// New reference: the stored name object, or "R<id>".
PyObject *ConGetName(uint64_t word);
void ConSetName(uint64_t &word, PyObject *name);

// A constraint with one new identifier and no bounds; takes body's
// reference (also on failure).
PyObject *NewConstraint(PyObject *body);

// The constraint `e OP v` for an expression e and a number v (op Py_LE,
// Py_EQ or Py_GE), as a comparison builds it, without making v an
// object or forming the difference: the body is a copy of e without its
// constant, which moves into the bound.
PyObject *CompareExpressionWithNumber(PyObject *e, double v, int op);
// The same in two steps, for loops that set the bounds of many rows
// together: the constraint without bounds (its right-hand side in *rhs),
// then its bounds.
PyObject *UnboundedComparison(PyObject *e, double v, double *rhs);
void BoundComparison(PyObject *c, double rhs, int op);

}  // namespace zrv
