// Lists of strings packed into one buffer of NUL-terminated names, and the
// release of per-element string copies.
#include "problem/arguments.h"

#include <cstring>

#include "base/errors.h"
#include "base/text.h"

namespace zrv {

void ReleaseStrings(void *array, Py_ssize_t count) {
  if (!array) return;
  void **slots = static_cast<void **>(array);
  for (Py_ssize_t i = 0; i < count; ++i)
    if (slots[i]) NativeAllocator.release(NativeAllocator.context, &slots[i]);
}

int StringsToBuffer(PyObject *obj, Py_ssize_t count, void **buffer) {
  *buffer = nullptr;
  bool is_iter = obj && obj != Py_None && !PyList_Check(obj) && !PyTuple_Check(obj) &&
                 PyIter_Check(obj);
  if (!obj || obj == Py_None || count < 0 ||
      (!is_iter && !PyList_Check(obj) && !PyTuple_Check(obj) && !PySequence_Check(obj))) {
    PyErr_SetString(InterfaceError, "Invalid sequence of strings");
    return -1;
  }
  PyObject *items = nullptr;
  if (!is_iter) {
    items = PySequence_Fast(obj, "Invalid sequence of strings");
    if (!items) return -1;
    Py_ssize_t found = PySequence_Fast_GET_SIZE(items);
    if (found < count) {
      Py_DECREF(items);
      PyErr_Format(InterfaceError, "Expected %d strings but found %d", static_cast<int>(count),
                   static_cast<int>(found));
      return -1;
    }
  }
  size_t capacity = 9 * static_cast<size_t>(count), used = 0;
  void *block = nullptr;
  int result = -1;
  Py_ssize_t n = is_iter ? count : PySequence_Fast_GET_SIZE(items);
  if (NativeAllocator.allocate(NativeAllocator.context, capacity ? capacity : 1, &block) != 0) {
    Py_XDECREF(items);
    return -1;
  }
  Py_ssize_t i = 0;
  for (; i < n; ++i) {
    PyObject *item = is_iter ? PyIter_Next(obj) : PySequence_Fast_GET_ITEM(items, i);
    if (!item) {
      if (!PyErr_Occurred())
        PyErr_Format(InterfaceError, "Expected %d strings but found %d",
                     static_cast<int>(count), static_cast<int>(i));
      goto done;
    }
    Py_ssize_t len;
    const char *text = PyUnicode_Check(item) ? PyUnicode_AsUTF8AndSize(item, &len) : nullptr;
    if (!text || CheckNameText(text, len, "string", item) < 0) {
      if (!PyErr_Occurred()) PyErr_Format(InterfaceError, "Invalid string %S", item);
      if (is_iter) Py_DECREF(item);
      goto done;
    }
    size_t need = used + static_cast<size_t>(len) + 1;
    if (need > capacity) {
      size_t grown = need > 2 * capacity ? need : 2 * capacity;
      if (NativeAllocator.reallocate(NativeAllocator.context, &block, grown) != 0) {
        PyErr_Clear();
        PyErr_SetString(InterfaceError, "Out of memory");
        if (is_iter) Py_DECREF(item);
        goto done;
      }
      capacity = grown;
    }
    std::memcpy(static_cast<char *>(block) + used, text, static_cast<size_t>(len) + 1);
    used = need;
    if (is_iter) Py_DECREF(item);
  }
  result = 0;
done:
  Py_XDECREF(items);
  if (result == 0)
    *buffer = block;
  else
    NativeAllocator.release(NativeAllocator.context, &block);
  return result;
}

}  // namespace zrv
