// The one way the extension includes NumPy's C headers (base/ and numpy/).
// The extension is built against NumPy 2.x headers with the feature level of
// NumPy 1.24, so one binary runs with NumPy 1.24 and later and with 2.x; the
// tables are bound at module start-up (numpy_binding.cpp).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#define NPY_TARGET_VERSION NPY_1_24_API_VERSION
#define NPY_NO_DEPRECATED_API NPY_1_24_API_VERSION
#define PY_ARRAY_UNIQUE_SYMBOL ZorvanArrayApi
#define PY_UFUNC_UNIQUE_SYMBOL ZorvanUfuncApi
#ifndef ZRV_NUMPY_BINDING
#define NO_IMPORT_ARRAY
#define NO_IMPORT_UFUNC
#endif
#include <numpy/arrayobject.h>
#include <numpy/ufuncobject.h>
#include <numpy/npy_2_compat.h>
