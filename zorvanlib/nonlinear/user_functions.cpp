// The registry of user functions and the entry functions the engine calls.
#include "nonlinear/user_functions.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <new>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "nonlinear/nonlinear.h"

namespace zrv {

namespace {

// The arguments of a call: the n values, and for the on-demand mode, when
// derivatives are asked for, the n request flags after them.
PyObject *CallArguments(const UserFunctionRecord &r, const double *x, const double *request) {
  const bool flags = r.op == OpUserDerivativesOnDemand && request;
  const Py_ssize_t n = r.nargs;
  PyObject *args = PyTuple_New(flags ? 2 * n : n);
  if (!args) return nullptr;
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *v = PyFloat_FromDouble(x[i]);
    if (!v) {
      Py_DECREF(args);
      return nullptr;
    }
    PyTuple_SET_ITEM(args, i, v);
  }
  for (Py_ssize_t i = 0; flags && i < n; ++i) {
    PyObject *v = PyFloat_FromDouble(request[i]);
    if (!v) {
      Py_DECREF(args);
      return nullptr;
    }
    PyTuple_SET_ITEM(args, n + i, v);
  }
  return args;
}

// Calls the function; a tuple result gives its first item as the value and,
// when partials is not null, the next nargs items as the derivatives.
int Call(const UserFunctionRecord &r, const double *x, const double *request, double *value,
         double *partials) {
  PyObject *args = CallArguments(r, x, request);
  if (!args) return -1;
  PyObject *result = PyObject_Call(r.callable, args, nullptr);
  Py_DECREF(args);
  if (!result) return -1;
  int rc = 0;
  if (partials) {
    if (!PyTuple_Check(result) || PyTuple_GET_SIZE(result) < r.nargs + 1) {
      PyErr_SetString(ModelError, "User function must return a tuple containing result and all derivatives");
      rc = -1;
    }
    for (Py_ssize_t i = 0; rc == 0 && i < r.nargs; ++i) {
      double d = PyFloat_AsDouble(PyTuple_GET_ITEM(result, i + 1));
      if (d == -1.0 && PyErr_Occurred()) rc = -1;
      else partials[i] = d;
    }
  }
  if (rc == 0) {
    PyObject *item = result;
    if (PyTuple_Check(result)) {
      if (PyTuple_GET_SIZE(result) == 0) {
        PyErr_SetString(ModelError, "User function returned an empty tuple");
        rc = -1;
      } else {
        item = PyTuple_GET_ITEM(result, 0);
      }
    }
    if (rc == 0) {
      double v = PyFloat_AsDouble(item);
      if (v == -1.0 && PyErr_Occurred()) rc = -1;
      else *value = v;
    }
  }
  Py_DECREF(result);
  return rc;
}

// Value only: a failure is told to the engine with ZSLPsetfunctionerror,
// and the value given back is NaN, which no solver takes for a number.
double ValueEntry(const double *x, void *data) {
  auto *r = static_cast<UserFunctionRecord *>(data);
  PyGILState_STATE gil = PyGILState_Ensure();
  double value = 0.0;
  const bool failed = Call(*r, x, nullptr, &value, nullptr) < 0;
  if (failed) r->owner->KeepError();
  PyGILState_Release(gil);
  if (!failed) return value;
  ZSLPsetfunctionerror(r->slp);
  return std::numeric_limits<double>::quiet_NaN();
}

// Value and, when request is given, the derivatives: 0, or 1 on failure.
int DerivativesEntry(const double *x, const double *request, double *value, double *partials,
                     void *data) {
  auto *r = static_cast<UserFunctionRecord *>(data);
  PyGILState_STATE gil = PyGILState_Ensure();
  const bool failed = Call(*r, x, request, value, request ? partials : nullptr) < 0;
  if (failed) r->owner->KeepError();
  PyGILState_Release(gil);
  return failed ? 1 : 0;
}

}  // namespace

UserFunctions::~UserFunctions() {
  for (auto &entry : records_) Py_DECREF(entry.second->callable);
  Py_XDECREF(error_type_);
  Py_XDECREF(error_value_);
  Py_XDECREF(error_traceback_);
}

void UserFunctions::Unref() {
  if (--refs_ == 0) delete this;
}

int UserFunctions::IndexOf(ZSLPprob slp, PyObject *callable, int nargs, int op, int *index) {
  auto range = records_.equal_range(callable);
  for (auto it = range.first; it != range.second; ++it) {
    const UserFunctionRecord &r = *it->second;
    if (r.nargs == nargs && r.op == op && r.slp == slp) {
      *index = r.index;
      return 0;
    }
  }
  std::unique_ptr<UserFunctionRecord> record(new (std::nothrow) UserFunctionRecord{
      this, slp, callable, nargs, op, 0});
  if (!record) {
    PyErr_SetString(ModelError, "Out of memory");
    return -1;
  }
  char name[65];
  if (PyFunction_Check(callable)) {
    PyObject *text = PyObject_GetAttrString(callable, "__name__");
    const char *s = text && PyUnicode_Check(text) ? PyUnicode_AsUTF8(text) : nullptr;
    std::snprintf(name, sizeof name, "%s", s ? s : "user");
    Py_XDECREF(text);
    PyErr_Clear();
  } else {
    std::snprintf(name, sizeof name, "Func%p", static_cast<void *>(callable));
  }
  const bool derivatives = op != OpUserNoDerivatives;
  ZSLP_userfunc entry = derivatives ? reinterpret_cast<ZSLP_userfunc>(&DerivativesEntry)
                                    : reinterpret_cast<ZSLP_userfunc>(&ValueEntry);
  const int type = derivatives ? ZSLP_USERFUNC_DERIVS : ZSLP_USERFUNC_VALUE;
  void *data = record.get();
  int found = 0;
  int rc = CallUnlocked(ZSLPadduserfunction, slp, static_cast<const char *>(name), type, nargs, 1,
                        0, entry, data, &found);
  if (rc != 0) {
    char text[ZRVS_MAXMESSAGELENGTH] = "";
    ZSLPgetlasterror(slp, nullptr, text);
    PyErr_Format(SolverError, "%s", text[0] ? text : "The user function could not be registered");
    return -1;
  }
  Py_INCREF(callable);
  record->index = found;
  *index = found;
  try {
    records_.emplace(callable, std::move(record));
  } catch (const std::bad_alloc &) {
    // The engine keeps the registration; its record must outlive it.
    record.release();
    PyErr_SetString(ModelError, "Out of memory");
    return -1;
  }
  return 0;
}

void UserFunctions::KeepError() {
  if (error_type_) {
    PyErr_Clear();
    return;
  }
  PyErr_Fetch(&error_type_, &error_value_, &error_traceback_);
  PyErr_NormalizeException(&error_type_, &error_value_, &error_traceback_);
}

bool UserFunctions::TakeError() {
  if (!error_type_) return false;
  PyErr_Restore(error_type_, error_value_, error_traceback_);
  error_type_ = error_value_ = error_traceback_ = nullptr;
  return true;
}

int UserFunctions::Traverse(visitproc visit, void *arg) {
  // Shared with a copy: neither problem owns the references alone.
  if (refs_ != 1) return 0;
  for (auto &entry : records_) Py_VISIT(entry.second->callable);
  return 0;
}

}  // namespace zrv
