// The little of NumPy the expression tree needs before the NumPy bridge
// exists: recognising arrays and scalars, and mapping a function over an
// array. NumPy is only looked at once the program has imported it; before
// that no array can exist.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// A NumPy array (or a subtype).
bool IsNumpyArray(PyObject *o);
// A NumPy scalar of a signed integer or floating type.
bool IsNumpyNumber(PyObject *o);
// An operand that NumPy or the interpreter must handle element by element:
// an array or any other sequence (strings excepted).
bool IsVectorOperand(PyObject *o);

// Applies fn to each element of the array o, giving a new array of the same
// shape: of doubles when o holds numbers, else of objects. NULL on failure.
PyObject *MapArray(PyObject *o, PyObject *(*fn)(PyObject *));

}  // namespace zrv
