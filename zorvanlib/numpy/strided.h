// Reading one element of strided array data (loop arguments, array buffers),
// which need not be aligned.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstring>

namespace zrv {

inline double DoubleAt(const char *p) {
  double v;
  std::memcpy(&v, p, sizeof v);
  return v;
}

// The object pointer stored at p (null in an empty-initialised array).
inline PyObject *ObjectAt(const char *p) {
  PyObject *o;
  std::memcpy(&o, p, sizeof o);
  return o;
}

}  // namespace zrv
