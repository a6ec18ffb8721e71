// The `nonlinear` object: a node of an expression tree, and the internal
// constructors that every modelling type uses to build such nodes.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

struct NonlinearObject {
  PyObject_HEAD
  PyObject *args;  // unary: the operand; binary: (left, right); n-ary: list
  int32_t op;      // operator code, a row of the operator table
};

namespace zrv {

// Operator codes (rows of the operator table shared by printing, formula
// conversion and evaluation).
enum NonlinearOp : int32_t {
  OpSum = 0,        // n-ary +
  OpMinus = 1,      // binary -
  OpUminus = 2,     // unary -
  OpProduct = 3,    // n-ary *
  OpDivide = 4,     // binary /
  OpPower = 5,      // binary **
  OpExp = 6,
  OpLog = 7,
  OpLog10 = 8,
  OpSin = 9,
  OpCos = 10,
  OpTan = 11,
  OpAsin = 12,
  OpAcos = 13,
  OpAtan = 14,
  OpMax = 15,
  OpMin = 16,
  OpAbs = 17,
  OpSign = 18,
  OpErf = 19,
  OpErfc = 20,
  OpSqrt = 21,
  OpAnd = 22,
  OpOr = 23,
  OpPwl = 24,
  OpUserNoDerivatives = 25,
  OpUserDerivatives = 26,
  OpUserDerivativesOnDemand = 27,
  OpCount = 28
};

struct OperatorInfo {
  const char *name;
  int arity;     // 1 unary, 2 binary, -1 n-ary
  int notation;  // -1 function style, 0 infix
};
extern const OperatorInfo kOperators[OpCount];

// All return a new reference, or NULL with an exception set.
// A unary (nary false) or n-ary (nary true) node over args.
PyObject *MakeNonlinear(int op, PyObject *args, bool nary);
// A binary node; for OpSum and OpProduct a two-element list, number last.
PyObject *MakeNonlinearBinary(int op, PyObject *left, PyObject *right);
// A flattened n-ary node (OpSum or OpProduct) of two operands.
PyObject *MakeNonlinearFlat(int op, PyObject *left, PyObject *right);
// Appends right to left in place when left is a node of the same n-ary op
// (returning left with a new reference), else as MakeNonlinearFlat.
PyObject *NonlinearAppend(int op, PyObject *left, PyObject *right);

}  // namespace zrv
