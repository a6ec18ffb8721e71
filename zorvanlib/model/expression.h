// The `expression` object: a constant, a linear part and a quadratic part,
// each part ordered by variable identifier (see model/entry_part.h).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "model/entry_part.h"

namespace zrv {

struct LinEntry {
  uint64_t id;    // the variable's identifier
  PyObject *var;  // owned reference to the `var`
  double coef;
  bool operator<(const LinEntry &o) const { return id < o.id; }
  bool SameKey(const LinEntry &o) const { return id == o.id; }
  void Release() const { Py_DECREF(var); }
  void Retain() const { Py_INCREF(var); }
};

struct QuadEntry {
  uint64_t id1, id2;        // id1 <= id2
  PyObject *var1, *var2;    // owned references
  double coef;
  bool operator<(const QuadEntry &o) const {
    return id1 < o.id1 || (id1 == o.id1 && id2 < o.id2);
  }
  bool SameKey(const QuadEntry &o) const { return id1 == o.id1 && id2 == o.id2; }
  void Release() const {
    Py_DECREF(var1);
    Py_DECREF(var2);
  }
  void Retain() const {
    Py_INCREF(var1);
    Py_INCREF(var2);
  }
};

using LinearPart = Part<LinEntry>;
using QuadraticPart = Part<QuadEntry>;
using LinearEntries = EntryView<LinEntry>;
using QuadraticEntries = EntryView<QuadEntry>;

}  // namespace zrv

struct ExpressionObject {
  PyObject_HEAD
  double constant;
  // Each part is one pointer to its block of entries, null when it has
  // none; a zero-filled new object holds two empty parts.
  zrv::LinearPart linear;
  zrv::QuadraticPart quadratic;
};

namespace zrv {

inline ExpressionObject *AsExpression(PyObject *o) { return reinterpret_cast<ExpressionObject *>(o); }

// An expression without linear and quadratic entries.
bool ExpressionIsConstant(PyObject *e);

// A new empty expression with the given constant.
PyObject *NewExpression(double constant);

// Adds coef * var to the linear part (a new reference to var is taken).
int ExpressionAddLinear(PyObject *e, PyObject *var, double coef);
// Room for n more linear entries, for a sum whose length is known. 0 or -1.
int ExpressionReserveLinear(PyObject *e, size_t n);
// Adds coef * a * b to the quadratic part in canonical order.
int ExpressionAddQuadratic(PyObject *e, PyObject *a, PyObject *b, double coef);
// Adds factor times o (a number, var, linterm, quadterm or expression) to e
// in place. -1 with ModelError set for another operand.
int ExpressionAddScaled(PyObject *e, PyObject *o, double factor);

// Copy with scale factor: a number becomes a float, a var or term an
// expression, an expression a scaled copy (entries becoming exactly zero are
// left out) and a nonlinear tree a copy through the nonlinear operations.
PyObject *CopyScaled(PyObject *o, double factor);

// Ordered entries of the parts (empty when absent); valid until e changes.
LinearEntries ExpressionLinear(PyObject *e);
QuadraticEntries ExpressionQuadratic(PyObject *e);

// Multiplies the constant and every coefficient of e in place.
void ExpressionScaleInPlace(PyObject *e, double factor);

// Printing of an expression.
PyObject *ExpressionRepr(PyObject *self);

}  // namespace zrv
