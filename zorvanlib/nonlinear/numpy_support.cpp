#define PY_SSIZE_T_CLEAN
#include <Python.h>

#define PY_ARRAY_UNIQUE_SYMBOL ZorvanNonlinearArrayApi
#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#include <numpy/arrayobject.h>

#include "nonlinear/numpy_support.h"

#include "module/globals.h"

namespace zrv {

namespace {

// Loads the array interface once NumPy is in the program.
bool NumpyReady() {
  if (PyArray_API) return true;
  PyObject *name = PyUnicode_FromString("numpy");
  if (!name) {
    PyErr_Clear();
    return false;
  }
  PyObject *numpy = PyImport_GetModule(name);
  Py_DECREF(name);
  if (!numpy) {
    PyErr_Clear();
    return false;
  }
  Py_DECREF(numpy);
  if (_import_array() < 0) {
    PyErr_Clear();
    return false;
  }
  return true;
}

}  // namespace

bool IsNumpyArray(PyObject *o) { return NumpyReady() && PyArray_Check(o); }

bool IsNumpyNumber(PyObject *o) {
  return NumpyReady() &&
         (PyArray_IsScalar(o, SignedInteger) || PyArray_IsScalar(o, Floating));
}

bool IsVectorOperand(PyObject *o) {
  if (PyUnicode_Check(o) || PyBytes_Check(o) || PyByteArray_Check(o)) return false;
  return PySequence_Check(o) || IsNumpyArray(o);
}

PyObject *MapArray(PyObject *o, PyObject *(*fn)(PyObject *)) {
  if (!NumpyReady() || !PyArray_Check(o)) {
    PyErr_SetString(PyExc_TypeError, "not a NumPy array");
    return nullptr;
  }
  auto *a = reinterpret_cast<PyArrayObject *>(o);
  int numeric = PyArray_ISINTEGER(a) || PyArray_ISFLOAT(a) || PyArray_ISBOOL(a);
  int outType = numeric ? NPY_DOUBLE : NPY_OBJECT;
  // A C-ordered array of objects (numbers become Python numbers) to walk.
  PyObject *in = PyArray_FROMANY(o, NPY_OBJECT, 0, 0, NPY_ARRAY_CARRAY | NPY_ARRAY_ENSURECOPY);
  if (!in) return nullptr;
  auto *ia = reinterpret_cast<PyArrayObject *>(in);
  PyObject *out = PyArray_SimpleNew(PyArray_NDIM(ia), PyArray_DIMS(ia), outType);
  if (!out) {
    Py_DECREF(in);
    return nullptr;
  }
  npy_intp n = PyArray_SIZE(ia);
  auto **items = static_cast<PyObject **>(PyArray_DATA(ia));
  void *data = PyArray_DATA(reinterpret_cast<PyArrayObject *>(out));
  for (npy_intp i = 0; i < n; ++i) {
    PyObject *r = fn(items[i]);
    if (!r) {
      if (!PyErr_Occurred())
        PyErr_SetString(ModelError, "Cannot iterate on sequence of arguments");
      Py_DECREF(in);
      Py_DECREF(out);
      return nullptr;
    }
    if (numeric) {
      double v = PyFloat_AsDouble(r);
      Py_DECREF(r);
      if (v == -1.0 && PyErr_Occurred()) {
        Py_DECREF(in);
        Py_DECREF(out);
        return nullptr;
      }
      static_cast<double *>(data)[i] = v;
    } else {
      // A new object array holds None references; replace them.
      PyObject **slot = static_cast<PyObject **>(data) + i;
      Py_XSETREF(*slot, r);
    }
  }
  Py_DECREF(in);
  return out;
}

}  // namespace zrv
