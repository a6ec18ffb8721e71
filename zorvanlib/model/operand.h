// Operand handling shared by the arithmetic of variables, terms and
// expressions: the one classifier of operands, what counts as a number, and
// the error texts of invalid operands.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

namespace zrv {

// Operand kinds: 0 to 5 are the scalar operands a nonlinear node may hold.
enum OperandKind : int {
  KindInvalid = -1,
  KindNumber = 0,
  KindVar = 1,
  KindLinTerm = 2,
  KindQuadTerm = 3,
  KindExpression = 4,
  KindNonlinear = 5,
  KindVector = 6,  // a NumPy array or another sequence (not a string)
};

// The kind of o; never sets an exception.
OperandKind KindOf(PyObject *o);

// A number: a Python int (bool included) or float, or a NumPy signed
// integer or floating scalar.
inline bool IsModelNumber(PyObject *o) { return KindOf(o) == KindNumber; }

// The kind of a scalar operand (number to nonlinear), or KindInvalid with
// ModelError "Invalid object in operation: <...>" set.
OperandKind ScalarKind(PyObject *o);

// The value of a number operand; -1.0 with an exception set on failure
// (an int too large for a double).
double NumberValue(PyObject *o);

// Whether o is a number or an expression without linear and quadratic part;
// then *value holds its value. Returns -1 with an exception set on failure.
int ConstantOperand(PyObject *o, OperandKind kind, double *value);

// A number operand as a Python int or float (NumPy scalars become floats),
// new reference.
PyObject *PlainNumber(PyObject *o);

// Operand kind names for building errors.
PyObject *InvalidOperand(PyObject *o);  // "Invalid object in operation: <%S>"
PyObject *ModelErrorText(const char *text);

// x divided by a vector operand: (1 / divisor) * x, so that the vector's
// own (element-wise) arithmetic does the work. New reference or null.
PyObject *DivideByVector(PyObject *x, PyObject *divisor);

// Formats a double with a printf format into out (512 bytes).
void FormatDouble(char *out, const char *fmt, double v);

// The common check on tuples returned by extraction methods.
PyObject *CheckResult(PyObject *result);

// extractQuadratic of objects without quadratic part: three empty lists.
PyObject *EmptyQuadratic(PyObject *self, PyObject *);

}  // namespace zrv
