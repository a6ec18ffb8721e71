// The five controls each objective carries: its priority, weight, absolute
// and relative tolerances, and its constant (rhs).
#include <cstring>
#include <string>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "controls/control.h"

namespace zrv {

namespace {

struct ObjControl {
  int id;
  const char *name;
};

// In the order a listing of all five uses.
constexpr ObjControl kObjControls[] = {
    {ZRVS_OBJECTIVE_PRIORITY, "priority"}, {ZRVS_OBJECTIVE_WEIGHT, "weight"},
    {ZRVS_OBJECTIVE_ABSTOL, "abstol"},     {ZRVS_OBJECTIVE_RELTOL, "reltol"},
    {ZRVS_OBJECTIVE_RHS, "rhs"},
};

bool SameIgnoringCase(const char *a, Py_ssize_t n, const char *b) {
  if (static_cast<size_t>(n) != std::strlen(b)) return false;
  for (Py_ssize_t i = 0; i < n; ++i) {
    char c = a[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != b[i]) return false;
  }
  return true;
}

}  // namespace

const char *ObjControlName(int id) {
  for (const ObjControl &c : kObjControls)
    if (c.id == id) return c.name;
  return nullptr;
}

int ObjControlId(PyObject *key, int &id) {
  if (PyLong_Check(key)) {
    int overflow = 0;
    long v = PyLong_AsLongAndOverflow(key, &overflow);
    if (v == -1 && PyErr_Occurred()) return -1;
    if (overflow || v < ZRVS_OBJECTIVE_PRIORITY || v > ZRVS_OBJECTIVE_RHS) {
      // Out of int range the identifier is shown as -1: it cannot be one.
      PyErr_Format(InterfaceError, "Invalid objective control id: %d",
                   overflow ? -1 : static_cast<int>(v));
      return -1;
    }
    id = static_cast<int>(v);
    return 0;
  }
  const char *text = nullptr;
  Py_ssize_t size = 0;
  int rc = NameText(key, &text, &size);
  if (rc <= 0) {
    if (rc == 0) PyErr_SetString(InterfaceError, "Expected a string control name or integer id");
    return -1;
  }
  for (const ObjControl &c : kObjControls) {
    if (SameIgnoringCase(text, size, c.name)) {
      id = c.id;
      return 0;
    }
  }
  PyErr_Format(InterfaceError, "Invalid objective control: %s", text);
  return -1;
}

PyObject *GetObjControl(ProblemHandles *p, int objidx, int id) {
  ZRVSprob prob = p->prob;
  int rc;
  if (id == ZRVS_OBJECTIVE_PRIORITY) {
    int v = 0;
    rc = CallUnlocked(ZRVSgetobjintcontrol, prob, objidx, id, &v);
    if (rc != 0) return ReportError(reinterpret_cast<PyObject *>(p), nullptr);
    return PyLong_FromLong(v);
  }
  double v = 0;
  rc = CallUnlocked(ZRVSgetobjdblcontrol, prob, objidx, id, &v);
  if (rc != 0) return ReportError(reinterpret_cast<PyObject *>(p), nullptr);
  return PyFloat_FromDouble(v);
}

int SetObjControl(ProblemHandles *p, int objidx, int id, PyObject *key, PyObject *value) {
  ZRVSprob prob = p->prob;
  int rc;
  if (id == ZRVS_OBJECTIVE_PRIORITY) {
    if (!PyLong_Check(value)) {
      PyErr_Format(ModelError, "Control %R requires an integer value", key);
      return -1;
    }
    int overflow = 0;
    long v = PyLong_AsLongAndOverflow(value, &overflow);
    if (v == -1 && PyErr_Occurred()) return -1;
    if (overflow || v < INT32_MIN || v > INT32_MAX) {
      PyErr_Format(ModelError, "Control %R: priority %R is out of range", key, value);
      return -1;
    }
    rc = CallUnlocked(ZRVSsetobjintcontrol, prob, objidx, id, static_cast<int>(v));
  } else {
    // An int is refused on purpose: these are tolerances and weights.
    if (!PyFloat_Check(value)) {
      PyErr_Format(ModelError, "Control %R requires a float value", key);
      return -1;
    }
    double v = PyFloat_AsDouble(value);
    if (v == -1.0 && PyErr_Occurred()) return -1;
    rc = CallUnlocked(ZRVSsetobjdblcontrol, prob, objidx, id, v);
  }
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

}  // namespace zrv
