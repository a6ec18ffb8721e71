// Helpers shared by the files of the nonlinear expression tree.
#pragma once

#include "nonlinear/nonlinear.h"

#include "module/types.h"

namespace zrv {

inline bool IsNonlinear(PyObject *o) { return PyObject_TypeCheck(o, &NonlinearType); }

inline bool IsNode(PyObject *o, int op) {
  return IsNonlinear(o) && reinterpret_cast<NonlinearObject *>(o)->op == op;
}

inline PyObject *NodeArgs(PyObject *o) { return reinterpret_cast<NonlinearObject *>(o)->args; }
inline int NodeOp(PyObject *o) { return reinterpret_cast<NonlinearObject *>(o)->op; }

// A plain Python number (int, bool or float).
inline bool IsNumber(PyObject *o) { return PyLong_Check(o) || PyFloat_Check(o); }

// A node of op over args, stealing the reference to args (released on failure).
PyObject *NewNode(int op, PyObject *args);

}  // namespace zrv
