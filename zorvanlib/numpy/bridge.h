// The NumPy bridge: the data types npvar, npexpr and npconstraint with their
// casts and element-wise loops, and vectorised products of arrays. This
// header does not include NumPy's headers.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Registers the data types and their casts (after BindNumpy). 0 or -1.
int RegisterNumpyTypes();
// Registers the element-wise loops of NumPy's ufuncs and of matmul for the
// data types (after RegisterNumpyTypes). 0 or -1 with an error.
int RegisterNumpyLoops();
// Adds npvar, npexpr and npconstraint to the module.
int AddNumpyTypes(PyObject *module);

// Whether Dot(a, b) is a product of arrays (an array of two or more
// dimensions or a sparse matrix among the two).
bool IsArrayProduct(PyObject *a, PyObject *b);
// The product of a and b with the rules of numpy.matmul (1-D operands are
// vectors), built one expression per result element; a and b are arrays,
// sequences convertible to arrays, or a sparse matrix on the left.
PyObject *ArrayDot(PyObject *a, PyObject *b);

}  // namespace zrv
