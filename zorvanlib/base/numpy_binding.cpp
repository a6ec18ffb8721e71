// Binding NumPy's array and ufunc interfaces at module start-up. The checks
// follow NumPy's own import procedure, with this module's messages: any
// failure is printed and replaced by an ImportError.
#define ZRV_NUMPY_BINDING
#include "base/numpy_api.h"

#include "base/arrays.h"

namespace zrv {

namespace {

// The module holding the interface capsules: numpy._core in NumPy 2,
// numpy.core before.
PyObject *ImportMultiarrayUmath() {
  PyObject *m = PyImport_ImportModule("numpy._core._multiarray_umath");
  if (!m && PyErr_ExceptionMatches(PyExc_ModuleNotFoundError)) {
    PyErr_Clear();
    m = PyImport_ImportModule("numpy.core._multiarray_umath");
  }
  return m;
}

// The pointer table in the capsule attribute `name`; NULL with an error.
void **CapsuleTable(PyObject *module, const char *name) {
  PyObject *c_api = PyObject_GetAttrString(module, name);
  if (!c_api) {
    if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
      PyErr_Clear();
      PyErr_Format(PyExc_AttributeError, "%s not found", name);
    }
    return nullptr;
  }
  if (!PyCapsule_CheckExact(c_api)) {
    PyErr_Format(PyExc_RuntimeError, "%s is not PyCapsule object", name);
    Py_DECREF(c_api);
    return nullptr;
  }
  void **table = static_cast<void **>(PyCapsule_GetPointer(c_api, nullptr));
  Py_DECREF(c_api);
  if (!table) {
    PyErr_Clear();
    PyErr_Format(PyExc_RuntimeError, "%s is NULL pointer", name);
  }
  return table;
}

int BindArrayApi() {
  PyObject *module = ImportMultiarrayUmath();
  if (!module) return -1;
  void **table = CapsuleTable(module, "_ARRAY_API");
  Py_DECREF(module);
  if (!table) return -1;
  PyArray_API = table;
  // The binary interface of NumPy 2 keeps what a module built for the
  // feature level below needs from NumPy 1.x, so an older runtime ABI is
  // accepted and a newer one is not.
  unsigned int abi = PyArray_GetNDArrayCVersion();
  if (abi > NPY_VERSION) {
    PyErr_Format(PyExc_RuntimeError,
                 "module compiled against ABI version 0x%x but this version of numpy is 0x%x",
                 static_cast<int>(NPY_VERSION), static_cast<int>(abi));
    return -1;
  }
  int feature = static_cast<int>(PyArray_GetNDArrayCFeatureVersion());
  if (feature < NPY_FEATURE_VERSION) {
    PyErr_Format(PyExc_RuntimeError,
                 "module compiled against API version 0x%x but this version of numpy is 0x%x",
                 static_cast<int>(NPY_FEATURE_VERSION), feature);
    return -1;
  }
  PyArray_RUNTIME_VERSION = feature;
  int endian = PyArray_GetEndianness();
  if (endian == NPY_CPU_UNKNOWN_ENDIAN) {
    PyErr_SetString(PyExc_RuntimeError, "FATAL: module compiled as unknown endian");
    return -1;
  }
  if (endian != NPY_CPU_LITTLE) {
    PyErr_SetString(PyExc_RuntimeError,
                    "FATAL: module compiled as little endian, but detected different "
                    "endianness at runtime");
    return -1;
  }
  return 0;
}

int BindUfuncApi() {
  PyObject *module = ImportMultiarrayUmath();
  if (!module) {
    PyErr_Print();
    PyErr_SetString(PyExc_ImportError, "numpy.core._multiarray_umath failed to import");
    return -1;
  }
  void **table = CapsuleTable(module, "_UFUNC_API");
  Py_DECREF(module);
  if (!table) return -1;
  PyUFunc_API = table;
  return 0;
}

// Prints the pending error and puts an ImportError with text in its place.
int ImportFailure(const char *text) {
  PyErr_Print();
  PyErr_SetString(PyExc_ImportError, text);
  return -1;
}

}  // namespace

int BindNumpy() {
  if (PyArray_API && PyUFunc_API) return 0;
  if (BindArrayApi() < 0) {
    PyArray_API = nullptr;
    return ImportFailure("numpy.core.multiarray failed to import");
  }
  if (BindUfuncApi() < 0) {
    PyUFunc_API = nullptr;
    return ImportFailure("numpy.core.umath failed to import");
  }
  return 0;
}

}  // namespace zrv
