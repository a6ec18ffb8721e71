// NumPy's C interface as every floor uses it: binding it at start-up, the
// array tests, and reading or mapping the elements of arrays. The module's
// own data types (npvar, npexpr, npconstraint) are registered by numpy/;
// their type numbers live here so that array access can recognise them.
// This header does not include NumPy's headers.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "base/globals.h"

namespace zrv {

// Type numbers of the module's data types (-1 before registration).
extern int NpVarTypeNum;
extern int NpExprTypeNum;
extern int NpConstraintTypeNum;

// Start-up: binds the array and ufunc interfaces (ImportError on failure).
// 0 or -1 with an error.
int BindNumpy();

// A NumPy array (or a subtype).
bool IsNumpyArray(PyObject *o);
// The NumPy scalar rules of the whole module: a signed integer scalar
// (byte, short, int, long, long long) counts as an integer, and a signed
// integer or floating scalar (half, float, double) as a number. Unsigned
// scalars are neither.
bool IsNumpySignedInteger(PyObject *o);
bool IsNumpyNumber(PyObject *o);
// Any NumPy scalar (numbers, booleans, complex, dates, strings ...).
bool IsNumpyScalar(PyObject *o);
bool IsNumpyComplex(PyObject *o);
// The Python object a NumPy scalar holds (its item(): a float, int, bool,
// complex ...), as NumPy's object loops see it. New reference, NULL with an
// error, or NULL without one when the item is the scalar's own type again
// (a long double): then the scalar itself is the operand.
PyObject *NumpyScalarItem(PyObject *o);
// An operand that NumPy or the interpreter must handle element by element:
// an array or any other sequence (strings excepted).
bool IsVectorOperand(PyObject *o);
// The elements of a one-dimensional, aligned, C-contiguous NumPy array of
// native byte order whose type is double ('d'), int32 ('i') or int64 ('l'):
// *kind receives that letter, *data the element pointer and *n the count.
// False (and nothing set) for anything else.
bool PlainNumpyVector(PyObject *o, char *kind, const void **data, Py_ssize_t *n);
// A sparse matrix or array of scipy.sparse (only when scipy is loaded).
bool IsSparseMatrix(PyObject *o);

// Applies fn to each element of the array o, giving a new array of the same
// shape: of doubles when o holds numbers, else of objects. NULL on failure.
PyObject *MapArray(PyObject *o, PyObject *(*fn)(PyObject *));

// A new C-ordered array of npvar of the given shape with empty (NULL)
// elements; *items receives the element pointer, to be filled in C order
// with new references.
PyObject *NewVarArray(int ndim, const Py_ssize_t *dims, PyObject ***items);

// For a NumPy array o: a new reference to a C-ordered object view or copy
// whose elements can be read as PyObject pointers, with *n the element count
// and *items the element pointer (elements may be NULL in empty-initialised
// arrays). Returns NULL with an error for arrays of other data types.
PyObject *ObjectElements(PyObject *o, Py_ssize_t *n, PyObject ***items);

// Calls fn(element) for each element of o in C order, whatever its shape or
// layout, when o is a NumPy array of objects: 0 when all calls returned 0,
// -1 with an error (an empty element, or fn failing). Returns 1, with
// nothing called, when o is not an array of objects.
template <typename Fn>
int ForEachArrayObject(PyObject *o, Fn &&fn) {
  if (!IsNumpyArray(o)) return 1;
  Py_ssize_t n = 0;
  PyObject **items = nullptr;
  PyObject *elements = ObjectElements(o, &n, &items);
  if (!elements) {
    if (!PyErr_ExceptionMatches(PyExc_TypeError)) return -1;
    PyErr_Clear();
    return 1;
  }
  int rc = 0;
  for (Py_ssize_t i = 0; i < n && rc == 0; ++i) {
    if (!items[i]) {
      PyErr_SetString(ModelError, "The array holds empty elements (made by numpy.empty?)");
      rc = -1;
    } else {
      rc = fn(items[i]);
    }
  }
  Py_DECREF(elements);
  return rc;
}

}  // namespace zrv
