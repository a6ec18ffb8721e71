// Helpers of the members that read and load solver state: problem sizes,
// output arrays made only for the lists the caller passed, and input
// vectors that must cover every column or row.
#pragma once

#include "bindings/binding.h"

namespace zrv {

inline PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// Rows and columns of the problem. 0 or -1.
int ProblemSize(ProblemObject *p, int *rows, int *cols);

// Room for n elements of `width` bytes when `list` is a list to fill (None:
// no array, which tells the engine to skip that output). 0 or -1.
int OutputArray(PyObject *list, Py_ssize_t n, size_t width, NativeArray &array);

// A sequence of exactly n elements (None allowed when optional) into a
// native array; "Mismatched lengths in arguments" otherwise. 0 or -1.
int FullVector(ProblemObject *p, PyObject *obj, Py_ssize_t n, int code, NativeArray &array);

// InterfaceError "Must provide at least one of arguments ..." naming the
// first `count` keywords of the member, when every object given is None.
bool AllNone(const Binding &b, PyObject *const *objs, int count);

}  // namespace zrv
