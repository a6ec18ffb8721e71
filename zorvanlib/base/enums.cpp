// The classes of zorvan.enums, imported on first use rather than per call.
#include "base/enums.h"

namespace zrv {

namespace {

const char *const kNames[] = {"SolveStatus", "SolStatus"};
PyObject *Classes[2] = {nullptr, nullptr};

PyObject *EnumClass(StatusEnum which) {
  const int i = static_cast<int>(which);
  if (Classes[i]) return Classes[i];
  PyObject *enums = PyImport_ImportModule("zorvan.enums");
  if (!enums) return nullptr;
  PyObject *type = PyObject_GetAttrString(enums, kNames[i]);
  Py_DECREF(enums);
  if (!type) return nullptr;
  if (!PyCallable_Check(type)) {
    PyErr_Format(PyExc_TypeError, "zorvan.enums.%s is not callable", kNames[i]);
    Py_DECREF(type);
    return nullptr;
  }
  Classes[i] = type;
  return type;
}

}  // namespace

PyObject *EnumMember(StatusEnum which, long long value) {
  PyObject *type = EnumClass(which);
  return type ? PyObject_CallFunction(type, "L", value) : nullptr;
}

void ReleaseEnums() {
  for (PyObject *&c : Classes) Py_CLEAR(c);
}

}  // namespace zrv
