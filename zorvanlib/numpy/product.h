// Products of arrays of numbers, variables and expressions: the matmul
// loops and the kernel shared with zorvan.Dot.
#pragma once

#include "base/numpy_api.h"

namespace zrv {

// Registers the loops of numpy.matmul for the module's data types.
int RegisterProductLoops(PyObject *numpy);

// The sum over i < k of a[i] * b[i], where a and b point at elements with the
// given strides, each a double (when the flag says so) or an object
// reference. A new expression (or a nonlinear node when a product is not
// polynomial), NULL with an error.
PyObject *DotElements(const char *a, npy_intp sa, bool aDouble, const char *b, npy_intp sb,
                      bool bDouble, npy_intp k);

}  // namespace zrv
