// Helpers shared by the files of the nonlinear expression tree.
#pragma once

#include "nonlinear/nonlinear.h"
#include "base/limits.h"
#include "base/arrays.h"

#include "base/types.h"
#include "model/operand.h"

namespace zrv {

inline bool IsNonlinear(PyObject *o) { return PyObject_TypeCheck(o, &NonlinearType); }

inline bool IsNode(PyObject *o, int op) {
  return IsNonlinear(o) && reinterpret_cast<NonlinearObject *>(o)->op == op;
}

inline PyObject *NodeArgs(PyObject *o) { return reinterpret_cast<NonlinearObject *>(o)->args; }
inline int NodeOp(PyObject *o) { return reinterpret_cast<NonlinearObject *>(o)->op; }

// Whether o is a number equal to v (a number too large for a double is not).
bool IsNumberEqual(PyObject *o, double v);

// A number, or an expression with neither linear nor quadratic part: stores
// its value and returns true.
bool ConstantValue(PyObject *o, double *value);

// A node of op over args, stealing the reference to args (released on failure).
PyObject *NewNode(int op, PyObject *args);

// A deep copy of a tree: every node above the depth budget is rebuilt, so
// that changing the copy in place never reaches the original. Other objects
// are returned with a new reference.
PyObject *CopyTree(PyObject *o);

// The negation of any operand: a node op 2 around a tree, the interpreter's
// negation for anything else.
PyObject *Negate(PyObject *o);

// Number slots and methods of the type (operators.cpp, printing.cpp).
extern PyNumberMethods NonlinearNumberMethods;
PyObject *NonlinearRepr(PyObject *self);
extern PyMethodDef NonlinearMethods[];

}  // namespace zrv
