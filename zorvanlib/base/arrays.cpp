// Array tests used throughout the module, mapping a function over an array,
// and reading the object elements of an array.
#include "base/numpy_api.h"

#include "base/globals.h"
#include "base/arrays.h"

namespace zrv {

int NpVarTypeNum = -1;
int NpExprTypeNum = -1;
int NpConstraintTypeNum = -1;

bool IsNumpyArray(PyObject *o) { return PyArray_API && PyArray_Check(o); }

bool PlainNumpyVector(PyObject *o, char *kind, const void **data, Py_ssize_t *n) {
  if (!IsNumpyArray(o)) return false;
  auto *a = reinterpret_cast<PyArrayObject *>(o);
  if (PyArray_NDIM(a) != 1 || !PyArray_ISCARRAY_RO(a) || !PyArray_ISNOTSWAPPED(a))
    return false;
  switch (PyArray_TYPE(a)) {
    case NPY_DOUBLE: *kind = 'd'; break;
    case NPY_INT32: *kind = 'i'; break;
    case NPY_INT64: *kind = 'l'; break;
    default: return false;
  }
  *data = PyArray_DATA(a);
  *n = PyArray_DIM(a, 0);
  return true;
}

bool IsNumpySignedInteger(PyObject *o) {
  return PyArray_API && PyArray_IsScalar(o, SignedInteger);
}

bool IsNumpyNumber(PyObject *o) {
  return PyArray_API && (PyArray_IsScalar(o, SignedInteger) || PyArray_IsScalar(o, Floating));
}

bool IsNumpyScalar(PyObject *o) { return PyArray_API && PyArray_IsScalar(o, Generic); }
bool IsNumpyComplex(PyObject *o) {
  return PyArray_API && PyArray_IsScalar(o, ComplexFloating);
}

PyObject *NumpyScalarItem(PyObject *o) {
  if (PyFloat_Check(o)) return PyFloat_FromDouble(PyFloat_AS_DOUBLE(o));
  // The numbers of the module's rule convert without a method call: a
  // signed integer to its int, a float of at most double width to its value.
  if (PyArray_IsScalar(o, SignedInteger)) return PyNumber_Index(o);
  if (PyArray_IsScalar(o, Floating) && !PyArray_IsScalar(o, LongDouble)) return PyNumber_Float(o);
  PyObject *item = PyObject_CallMethod(o, "item", nullptr);
  if (item && IsNumpyScalar(item)) Py_CLEAR(item);
  return item;
}

bool IsVectorOperand(PyObject *o) {
  if (PyUnicode_Check(o) || PyBytes_Check(o) || PyByteArray_Check(o)) return false;
  return PySequence_Check(o) || IsNumpyArray(o);
}

bool IsSparseMatrix(PyObject *o) {
  if (IsNumpyArray(o) || PyUnicode_Check(o)) return false;
  // scipy is never imported here: without it no sparse matrix can exist.
  PyObject *modules = PyImport_GetModuleDict();
  PyObject *sparse = PyDict_GetItemString(modules, "scipy.sparse");  // borrowed
  if (!sparse) return false;
  PyObject *r = PyObject_CallMethod(sparse, "issparse", "O", o);
  if (!r) {
    PyErr_Clear();
    return false;
  }
  bool yes = PyObject_IsTrue(r) == 1;
  Py_DECREF(r);
  return yes;
}

bool IsModuleType(int typenum) {
  return typenum >= 0 && (typenum == NpVarTypeNum || typenum == NpExprTypeNum ||
                          typenum == NpConstraintTypeNum);
}

PyObject *ObjectElements(PyObject *o, Py_ssize_t *n, PyObject ***items) {
  auto *a = reinterpret_cast<PyArrayObject *>(o);
  int t = PyArray_TYPE(a);
  if (t != NPY_OBJECT && !IsModuleType(t)) {
    PyErr_SetString(PyExc_TypeError, "an array of objects is needed here");
    return nullptr;
  }
  PyObject *c;
  if (PyArray_IS_C_CONTIGUOUS(a) && PyArray_ISALIGNED(a)) {
    c = Py_NewRef(o);
  } else {
    c = PyArray_NewCopy(a, NPY_CORDER);
    if (!c) return nullptr;
  }
  *n = PyArray_SIZE(reinterpret_cast<PyArrayObject *>(c));
  *items = static_cast<PyObject **>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(c)));
  return c;
}

PyObject *NewVarArray(int ndim, const Py_ssize_t *dims, PyObject ***items) {
  if (ndim > NPY_MAXDIMS) {
    PyErr_Format(PyExc_ValueError, "An array can have at most %d dimensions", NPY_MAXDIMS);
    return nullptr;
  }
  npy_intp shape[NPY_MAXDIMS];
  for (int i = 0; i < ndim; ++i) shape[i] = dims[i];
  PyObject *a = PyArray_ZEROS(ndim, shape, NpVarTypeNum, 0);
  if (a) *items = static_cast<PyObject **>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(a)));
  return a;
}

PyObject *MapArray(PyObject *o, PyObject *(*fn)(PyObject *)) {
  if (!IsNumpyArray(o)) {
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
    PyObject *r = fn(items[i] ? items[i] : Py_None);
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
