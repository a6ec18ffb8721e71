#include "callbacks/dispatch.h"

#include <cstdio>

#include "base/arrays.h"
#include "problem/callback_problem.h"

namespace zrv {

namespace {

// Stops the solve with the stop reason of a failed callback.
void StopSolve(ZRVSprob prob) {
  Py_BEGIN_ALLOW_THREADS
  ZRVSinterrupt(prob, ZRVS_STOP_GENERICERROR);
  Py_END_ALLOW_THREADS
}

}  // namespace

CallbackCall::CallbackCall(int kind, ZRVSprob prob, void *record)
    : kind_(FindCallbackKind(kind)), prob_(prob), gil_(PyGILState_Ensure()) {
  auto *list = static_cast<PyObject *>(record);
  if (!kind_ || !list || !PyList_Check(list) || PyList_GET_SIZE(list) != 4) return;
  PyObject *owner = PyList_GET_ITEM(list, 0);
  if (!IsProblem(owner)) return;  // removed meanwhile
  owner_ = reinterpret_cast<ProblemObject *>(Py_NewRef(owner));
  // An earlier callback of this solve failed: nothing more runs.
  if (owner_->callback_error || PyErr_Occurred()) {
    pending_ = true;
    StopSolve(prob_);
    return;
  }
  callable_ = Py_NewRef(PyList_GET_ITEM(list, 1));
  data_ = Py_NewRef(PyList_GET_ITEM(list, 2));
  active_ = true;
  problem_ = NewCallbackProblem(owner_, prob_);
  if (!problem_) failed_ = true;
}

PyObject *CallbackCall::Wrap(ZRVSprob prob) {
  if (failed_) return nullptr;
  Py_XSETREF(extra_, NewCallbackProblem(owner_, prob));
  if (!extra_) Fail();
  return Py_XNewRef(extra_);
}

PyObject *CallbackCall::Call(PyObject *args) {
  if (!active_ || failed_) {
    Py_XDECREF(args);
    return nullptr;
  }
  PyObject *result = nullptr;
  if (args) result = PyObject_Call(callable_, args, nullptr);
  Py_XDECREF(args);
  if (!result) failed_ = true;
  return result;
}

void CallbackCall::Fail() { failed_ = true; }

CallbackCall::~CallbackCall() {
  if (problem_) ReleaseCallbackProblem(problem_);
  if (extra_) ReleaseCallbackProblem(extra_);
  Py_XDECREF(data_);
  if (failed_) {
    const bool named = kind_ && kind_->display[0];
    PySys_FormatStderr("Problem in callback%s%s, stopping optimization\n", named ? " " : "",
                       named ? kind_->display : "");
    // Outside a solve (messages of other engine calls) nobody waits for the
    // exception: it is reported as unraisable.
    if (PyErr_Occurred() && owner_ && !owner_->solving) {
      PyErr_WriteUnraisable(callable_);
    } else if (PyErr_Occurred()) {
      // The exception waits for the caller of the solve; the first one wins.
      PyObject *type, *value, *traceback;
      PyErr_Fetch(&type, &value, &traceback);
      PyErr_NormalizeException(&type, &value, &traceback);
      if (traceback && value) PyException_SetTraceback(value, traceback);
      if (owner_ && !owner_->callback_error && value)
        owner_->callback_error = Py_NewRef(value);
      Py_XDECREF(type);
      Py_XDECREF(value);
      Py_XDECREF(traceback);
    }
    StopSolve(prob_);
  }
  Py_XDECREF(callable_);
  Py_XDECREF(owner_);
  PyGILState_Release(gil_);
}

int IntResult(PyObject *result) {
  if (result == Py_None) return 0;
  if (PyLong_Check(result) || IsNumpySignedInteger(result)) {
    long v = PyLong_AsLong(result);
    if (v == -1 && PyErr_Occurred()) {
      PyErr_Clear();
      return -1;
    }
    return static_cast<int>(v);
  }
  return -1;
}

bool OptionalNumber(PyObject *item, double *value) {
  if (item == Py_None) return true;
  if (PyBool_Check(item)) return false;
  if (PyLong_Check(item) || PyFloat_Check(item) || IsNumpyNumber(item)) {
    double v = PyFloat_AsDouble(item);
    if (v == -1.0 && PyErr_Occurred()) {
      PyErr_Clear();
      return false;
    }
    *value = v;
    return true;
  }
  return false;
}

}  // namespace zrv
