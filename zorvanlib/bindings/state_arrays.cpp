#include "bindings/state_arrays.h"

#include <string>

#include "base/errors.h"
#include "zorvan/zrvs.h"

namespace zrv {

int ProblemSize(ProblemObject *p, int *rows, int *cols) {
  if (rows && ReadIntAttrib(p, ZRVS_ORIGINALROWS, rows) < 0) return -1;
  if (cols && ReadIntAttrib(p, ZRVS_ORIGINALCOLS, cols) < 0) return -1;
  return 0;
}

int OutputArray(PyObject *list, Py_ssize_t n, size_t width, NativeArray &array) {
  if (!list || list == Py_None) return 0;
  // At least one byte, so that an empty output is still asked for.
  const size_t bytes = n > 0 ? static_cast<size_t>(n) * width : 1;
  return NativeAllocator.allocate(NativeAllocator.context, bytes, array.slot()) != 0 ? -1 : 0;
}

int FullVector(ProblemObject *p, PyObject *obj, Py_ssize_t n, int code, NativeArray &array) {
  Py_ssize_t length = n;
  if (SequenceToArray(p, &length, obj, array.slot(), code) < 0) return -1;
  if (length != n) {  // an iterator of another length
    PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                 static_cast<int>(n), static_cast<int>(length));
    return -1;
  }
  return 0;
}

bool AllNone(const Binding &b, PyObject *const *objs, int count) {
  for (int k = 0; k < count; ++k)
    if (objs[k] && objs[k] != Py_None) return false;
  std::string names;
  for (int k = 0; k < count; ++k) names += (k ? ", " : "") + std::string(b.keywords[k]);
  PyErr_Format(InterfaceError, "Must provide at least one of arguments %s", names.c_str());
  return true;
}

}  // namespace zrv
