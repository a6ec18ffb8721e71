// Sums over arrays of variables and expressions in time linear in the number
// of terms: the running expression of a reduction is extended in place when
// nothing but the reduction holds it, instead of being copied at every step.
#pragma once

#include "base/numpy_api.h"

namespace zrv {

// Adds factor * y to acc in place when acc is an expression referenced only
// by its one slot (the caller's) and y is a number, variable, term or
// expression; the result is what acc + factor * y would give. 1 when done,
// 0 when the general path must be taken, -1 with an error.
int AccumulateInPlace(PyObject *acc, PyObject *y, double factor);

// numpy.dot's element kernel for npvar and npexpr arrays: the sum of the
// element products, a[0]*b[0] + a[1]*b[1] + ..., accumulated in place.
void ModelDot(void *ip1, npy_intp is1, void *ip2, npy_intp is2, void *op, npy_intp n,
              void *arr);

}  // namespace zrv
