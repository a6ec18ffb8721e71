// Whole sequences to native arrays (lists, tuples, iterators and other
// sequences, with one common length per call) and native arrays back into
// the lists a caller passed.
#include "problem/arguments.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include "base/arrays.h"

#include "base/errors.h"

namespace zrv {

namespace {

// A NumPy vector whose elements already have the native form of the code
// (doubles; 32- or 64-bit integers for integer codes and plain indices) is
// copied as a block instead of element by element. 0 when done; 1 when the
// general path must run; -1 with an error.
int PlainArrayToNative(ProblemObject *, Py_ssize_t *length, PyObject *obj, void **array,
                       int code, size_t width) {
  char kind;
  const void *data;
  Py_ssize_t n;
  if (!PlainNumpyVector(obj, &kind, &data, &n)) return 1;
  const bool index = code == ElemRow || code == ElemColumn || code == ElemSet ||
                     code == ElemInt;
  const bool direct = (code == ElemDouble && kind == 'd') || (code == ElemLong && kind == 'l') ||
                      (index && kind == 'i');
  const bool narrow = index && kind == 'l';  // int64 values into int32, checked
  if (!direct && !narrow && !(code == ElemLong && kind == 'i')) return 1;
  if (length) {
    if (*length >= 0 && *length != n) {
      PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                   static_cast<int>(*length), static_cast<int>(n));
      return -1;
    }
    *length = n;
  }
  void *block = nullptr;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * width,
                               &block) != 0)
    return -1;
  if (direct) {
    std::memcpy(block, data, static_cast<size_t>(n) * width);
  } else if (narrow) {
    const int64_t *from = static_cast<const int64_t *>(data);
    int32_t *to = static_cast<int32_t *>(block);
    for (Py_ssize_t i = 0; i < n; ++i) {
      if (from[i] < INT32_MIN || from[i] > INT32_MAX) {
        NativeAllocator.release(NativeAllocator.context, &block);
        PyErr_Format(PyExc_OverflowError, "%lld does not fit in a 32-bit integer",
                     static_cast<long long>(from[i]));
        return -1;
      }
      to[i] = static_cast<int32_t>(from[i]);
    }
  } else {  // int32 values into int64
    const int32_t *from = static_cast<const int32_t *>(data);
    int64_t *to = static_cast<int64_t *>(block);
    for (Py_ssize_t i = 0; i < n; ++i) to[i] = from[i];
  }
  *array = block;
  return 0;
}

}  // namespace

int SequenceToArray(ProblemObject *p, Py_ssize_t *length, PyObject *obj, void **array,
                    int code) {
  *array = nullptr;
  if (!obj || obj == Py_None) return 0;
  size_t width = ElementWidth(code);
  if (PlainArrayToNative(p, length, obj, array, code, width) == 0) return 0;
  if (PyErr_Occurred()) return -1;
  bool is_list = PyList_Check(obj), is_tuple = PyTuple_Check(obj);
  bool is_iter = !is_list && !is_tuple && PyIter_Check(obj);
  bool is_seq = !is_list && !is_tuple && !is_iter && PySequence_Check(obj);
  Py_ssize_t size = is_list    ? PyList_GET_SIZE(obj)
                    : is_tuple ? PyTuple_GET_SIZE(obj)
                    : is_seq   ? PySequence_Size(obj)
                               : 0;
  if ((!is_list && !is_tuple && !is_iter && !is_seq) || size < 0 || width == 0 ||
      code == ElemUnified) {
    PyErr_Clear();
    PyErr_SetString(InterfaceError, "Invalid sequence of objects");
    return -1;
  }
  if (!is_iter && length) {
    if (*length >= 0 && *length != size) {
      PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                   static_cast<int>(*length), static_cast<int>(size));
      return -1;
    }
    *length = size;
  }
  Py_INCREF(obj);
  PyObject *items = nullptr;  // fast sequence of a generic sequence
  void *block = nullptr;
  int result = -1;
  Py_ssize_t n = 0;  // items converted (iterators)
  if (is_iter) {
    Py_ssize_t capacity = 256;
    if (NativeAllocator.allocate(NativeAllocator.context, capacity * width, &block) != 0)
      goto done;
    if (code == ElemString) std::memset(block, 0, capacity * width);
    for (;;) {
      PyObject *item = PyIter_Next(obj);
      if (!item) break;
      if (n >= capacity) {
        Py_ssize_t grown = 2 * capacity;
        if (NativeAllocator.reallocate(NativeAllocator.context, &block, grown * width) != 0) {
          Py_DECREF(item);
          goto done;
        }
        if (code == ElemString)
          std::memset(static_cast<char *>(block) + capacity * width, 0,
                      (grown - capacity) * width);
        capacity = grown;
      }
      int rc = ElementToNative(p, item, block, n, code);
      Py_DECREF(item);
      if (rc < 0) goto done;
      ++n;
    }
    if (PyErr_Occurred()) goto done;
    // The arrays of one call are read with one length: an iterator must
    // agree with the arrays before it as much as a list must.
    if (length && *length >= 0 && *length != n) {
      PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                   static_cast<int>(*length), static_cast<int>(n));
      goto done;
    }
    if (length) *length = n;
    result = 0;
    goto done;
  }
  if (is_seq) {
    items = PySequence_Fast(obj, "Unable to scan sequence");
    if (!items) goto done;
    if (PySequence_Fast_GET_SIZE(items) != size) {  // the sequence misreported its size
      PyErr_SetString(InterfaceError, "Invalid sequence of objects");
      goto done;
    }
  }
  if (NativeAllocator.allocate(NativeAllocator.context, size * width, &block) != 0) goto done;
  if (code == ElemString) std::memset(block, 0, size * width);
  for (Py_ssize_t i = 0; i < size; ++i) {
    // Converting an item may run Python code that changes the list.
    if (is_list && i >= PyList_GET_SIZE(obj)) {
      PyErr_SetString(InterfaceError, "Sequence changed size during conversion");
      goto done;
    }
    PyObject *item = is_list ? PyList_GET_ITEM(obj, i)
                     : is_tuple ? PyTuple_GET_ITEM(obj, i)
                                : PySequence_Fast_GET_ITEM(items, i);
    Py_INCREF(item);
    int rc = ElementToNative(p, item, block, i, code);
    Py_DECREF(item);
    if (rc < 0) goto done;
  }
  result = 0;
done:
  Py_XDECREF(items);
  Py_DECREF(obj);
  if (result == 0) {
    *array = block;
  } else if (block) {
    if (code == ElemString) ReleaseStrings(block, is_iter ? n : size);
    NativeAllocator.release(NativeAllocator.context, &block);
  }
  return result;
}

int ArrayToList(ProblemObject *p, Py_ssize_t count, const void *array, PyObject *list,
                int code) {
  if (!array || !list || list == Py_None) return 0;
  if (!PyList_Check(list)) {
    PyErr_Format(ModelError,
                 "Unexpected argument to conv_arr2obj: results are written into a list "
                 "given by the caller, not a %s",
                 Py_TYPE(list)->tp_name);
    return -1;
  }
  Py_ssize_t old = PyList_GET_SIZE(list);
  if (old > count && PyList_SetSlice(list, count, old, nullptr) < 0) return -1;
  for (Py_ssize_t i = 0; i < count; ++i) {
    PyObject *item = ElementToObject(p, array, i, code);
    if (!item) {
      if (!PyErr_Occurred())
        PyErr_Format(InterfaceError, "Wrong item returned from API call, type %d", code);
      return -1;
    }
    if (i < old) {
      PyList_SetItem(list, i, item);  // steals the reference
    } else {
      int rc = PyList_Append(list, item);
      Py_DECREF(item);
      if (rc < 0) return -1;
    }
  }
  return 0;
}

}  // namespace zrv
