// Reading and setting single controls and attributes of a problem.
#include <functional>
#include <string>

#include "base/engine_call.h"
#include "base/enums.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/text.h"
#include "controls/accessors.h"
#include "controls/control.h"
#include "zorvan/zslp.h"

namespace zrv {

int UnpackDescriptor(PyObject *tuple, int &id, int &kind, int &source) {
  if (!PyTuple_Check(tuple) || !PyArg_ParseTuple(tuple, "iii", &id, &kind, &source)) {
    if (!PyErr_Occurred()) PyErr_SetString(InterfaceError, "Invalid control descriptor");
    return -1;
  }
  return 0;
}

int KindOfIdentifier(int id, int &kind) {
  const int *ids = nullptr;
  const int *flags = nullptr;
  int rc;
  rc = CallUnlocked(ZRVSgetcalist_d, &ids, &flags);
  if (rc != 0 || !ids || !flags) {
    PyErr_SetString(ModelError, "Internal error: failed to get control list");
    return -1;
  }
  for (int i = 0; ids[i] != 0; ++i) {
    if (ids[i] != id) continue;
    int type = flags[i] & 7;
    switch (type) {
      case ZRVS_CAFLAG_INT: kind = kInt; return 0;
      case ZRVS_CAFLAG_DOUBLE: kind = kReal; return 0;
      case ZRVS_CAFLAG_STRING: kind = kString; return 0;
      default: PyErr_Format(InterfaceError, "Unknown control type %d", type); return -1;
    }
  }
  PyErr_Format(InterfaceError, "Unknown control ID %d", id);
  return -1;
}

int CheckControlValue(int kind, PyObject *value) {
  switch (kind) {
    case kInt:
      if (PyFloat_Check(value) || !PyIndex_Check(value)) {
        PyErr_SetString(ModelError, "Cannot set non-integer value to an integer control");
        return -1;
      }
      return 0;
    case kReal:
      if (!PyFloat_Check(value) && !PyLong_Check(value)) {
        PyErr_SetString(ModelError, "Cannot set non-numerical value to a floating-point control");
        return -1;
      }
      return 0;
    case kString:
      if (!PyUnicode_Check(value)) {
        PyErr_SetString(ModelError, "Cannot set non-string value to a string control");
        return -1;
      }
      return 0;
    default:
      PyErr_SetString(ModelError, "setControl called with unknown ID");
      return -1;
  }
}

int SetControlValue(ProblemHandles *p, int id, int kind, int source, PyObject *value) {
  if (CheckControlValue(kind, value) < 0) return -1;
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  if (source != kMain && !slp) {
    PyErr_SetString(InterfaceError,
                    "Nonlinear controls need the nonlinear library, which is not started");
    return -1;
  }
  ControlValue v;
  if (kind == kInt) {
    PyObject *index = PyNumber_Index(value);
    if (!index) return -1;
    long long i = PyLong_AsLongLong(index);
    Py_DECREF(index);
    if (i == -1 && PyErr_Occurred()) return -1;
    if (source != kMain && (i < INT32_MIN || i > INT32_MAX)) {
      PyErr_SetString(ModelError, "Integer control value out of range");
      return -1;
    }
    v.i = i;
  } else if (kind == kReal) {
    v.d = PyFloat_AsDouble(value);
    if (v.d == -1.0 && PyErr_Occurred()) return -1;
  } else {
    // The text belongs to value, which the caller keeps alive.
    v.text = PyUnicode_AsUTF8(value);
    if (!v.text) return -1;
  }
  int rc = CallUnlocked(SetControl, prob, slp, source, kind, id, std::cref(v));
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

PyObject *ReadValue(ProblemHandles *p, int id, int kind, int source, bool is_control,
                    int index) {
  PyObject *self = reinterpret_cast<PyObject *>(p);
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  if (source != kMain && !slp) {
    PyErr_SetString(InterfaceError,
                    "Nonlinear controls need the nonlinear library, which is not started");
    return nullptr;
  }
  if (is_control) {
    ControlValue v;
    if (CallUnlocked(GetControl, prob, slp, source, kind, id, std::ref(v)) != 0)
      return ReportError(self, nullptr);
    return ControlValueObject(kind, v);
  }
  // Attributes: of the last solve, or of one objective (index >= 0).
  int rc = 0;
  if (kind == kInt) {
    long long v = 0;
    if (source == kMain) {
      int64_t v64 = 0;
      CallUnlocked([&] {
        rc = index >= 0 ? ZRVSgetobjintattrib64(prob, index, id, &v64)
                        : ZRVSgetintattrib64(prob, id, &v64);
      });
      v = v64;
    } else {
      int v32 = 0;
      CallUnlocked([&] {
        rc = ZSLPgetintattrib(slp, id, &v32);
      });
      v = v32;
    }
    if (rc != 0) return ReportError(self, nullptr);
    if (source == kMain && id == ZRVS_SOLSTATUS) return EnumMember(StatusEnum::kSolStatus, v);
    if (source == kMain && id == ZRVS_SOLVESTATUS) return EnumMember(StatusEnum::kSolveStatus, v);
    return PyLong_FromLongLong(v);
  }
  if (kind == kReal) {
    double v = 0;
    CallUnlocked([&] {
      if (source == kMain)
        rc = index >= 0 ? ZRVSgetobjdblattrib(prob, index, id, &v) : ZRVSgetdblattrib(prob, id, &v);
      else
        rc = ZSLPgetdblattrib(slp, id, &v);
    });
    if (rc != 0) return ReportError(self, nullptr);
    return PyFloat_FromDouble(v);
  }
  if (kind == kString) {
    if (index >= 0) {
      PyErr_SetString(InterfaceError, "Multi-objective string attributes are not supported");
      return nullptr;
    }
    char buf[ZRVS_MAXSTRINGLENGTH] = {0};
    int nbytes = 0;
    CallUnlocked([&] {
      if (source == kMain)
        rc = ZRVSgetstringattrib(prob, id, buf, sizeof buf, &nbytes);
      else
        rc = ZSLPgetstrattrib(slp, id, buf);
    });
    if (rc != 0) return ReportError(self, nullptr);
    buf[sizeof buf - 1] = '\0';
    return TextFromEngine(buf);
  }
  PyErr_SetString(ModelError, is_control ? "getControl() called with unknown ID"
                                         : "getAttrib() called with unknown ID");
  return nullptr;
}

namespace {

// Whether the engine keeps the attribute per objective (the listings of one
// objective hold only those). Asked for objective 0: the engine names an
// attribute it does not keep per objective with ZRVS_ERR_UNKNOWNID whatever
// the index.
bool PerObjective(ProblemHandles *p, int id, int kind) {
  int64_t i = 0;
  double d = 0.0;
  int rc = kind == kInt ? CallUnlocked(ZRVSgetobjintattrib64, p->prob, 0, id, &i)
                        : CallUnlocked(ZRVSgetobjdblattrib, p->prob, 0, id, &d);
  return rc != ZRVS_ERR_UNKNOWNID;
}

}  // namespace

PyObject *ReadAllValues(ProblemHandles *p, PyObject *table, bool is_control, int index,
                        bool for_display) {
  PyObject *result = PyDict_New();
  if (!result) return nullptr;
  // Snapshot the table so no lock is held across engine calls.
  PyObject *items;
  {
    GilSafeLock lock(ControlNameLock);
    items = PyDict_Items(table);
  }
  if (!items) {
    Py_DECREF(result);
    return nullptr;
  }
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items); ++i) {
    PyObject *pair = PyList_GET_ITEM(items, i);
    int id, kind, source;
    PyObject *value = nullptr;
    if (UnpackDescriptor(PyTuple_GET_ITEM(pair, 1), id, kind, source) == 0) {
      if (index >= 0 && (kind == kString || source != kMain || !PerObjective(p, id, kind)))
        continue;
      value = ReadValue(p, id, kind, source, is_control, index);
      if (!value && for_display && index >= 0 && PyErr_ExceptionMatches(SolverError)) {
        PyErr_Clear();
        value = Py_NewRef(Py_None);
      }
    }
    if (!value || PyDict_SetItem(result, PyTuple_GET_ITEM(pair, 0), value) < 0) {
      Py_XDECREF(value);
      Py_DECREF(items);
      Py_DECREF(result);
      if (!PyErr_Occurred())
        PyErr_SetString(InterfaceError, is_control ? "Requested value of an unknown control"
                                                   : "Requested value of an unknown attribute");
      return nullptr;
    }
    Py_DECREF(value);
  }
  Py_DECREF(items);
  return result;
}

}  // namespace zrv
