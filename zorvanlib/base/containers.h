// Building containers of results from containers of arguments.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// A new dictionary with the keys of dict and, for each, fn(value) (a new
// reference or null with an error). The items are read once first, so
// fn may run Python code that changes dict. Null on failure.
template <typename Fn>
PyObject *MapDictValues(PyObject *dict, Fn &&fn) {
  PyObject *result = PyDict_New();
  PyObject *items = result ? PyDict_Items(dict) : nullptr;
  if (!items) {
    Py_XDECREF(result);
    return nullptr;
  }
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items); ++i) {
    PyObject *pair = PyList_GET_ITEM(items, i);
    PyObject *value = fn(PyTuple_GET_ITEM(pair, 1));
    if (!value || PyDict_SetItem(result, PyTuple_GET_ITEM(pair, 0), value) < 0) {
      Py_XDECREF(value);
      Py_CLEAR(result);
      break;
    }
    Py_DECREF(value);
  }
  Py_DECREF(items);
  return result;
}

}  // namespace zrv
