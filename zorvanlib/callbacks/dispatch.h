// The one path by which the engine calls Python. A trampoline (one per
// kind) opens a CallbackCall: it takes the interpreter lock from whatever
// thread the solver runs on, and skips the call when an earlier callback of
// the solve failed. Call() wraps the engine problem in a temporary `problem`
// and runs the user's callable; Fail() reports a refused result. Closing
// the call tears the temporary problem down and, after a failure, prints
// "Problem in callback...", keeps the exception for the caller of the solve
// and interrupts the solve with stop reason 7.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "callbacks/kinds.h"
#include "problem/problem.h"

namespace zrv {

class CallbackCall {
 public:
  CallbackCall(int kind, ZRVSprob prob, void *record);
  ~CallbackCall();
  CallbackCall(const CallbackCall &) = delete;
  CallbackCall &operator=(const CallbackCall &) = delete;

  // False when the callable is not to be called (an earlier failure).
  bool active() const { return active_; }
  // The temporary problem (None when it could not be made) and the
  // record's data, for building arguments.
  PyObject *problem() const { return problem_ ? problem_ : Py_None; }
  PyObject *data() const { return data_; }
  // Wraps another engine problem of the same owner (mipthread's thread
  // problem). New reference, or null after Fail().
  PyObject *Wrap(ZRVSprob prob);
  // Calls the callable with args (stolen; null: building them failed).
  // Returns its result (new reference), or null after a failure.
  PyObject *Call(PyObject *args);
  // The result was refused: the call counts as failed.
  void Fail();
  bool failed() const { return failed_; }
  // Whether the solve is being stopped: this call failed, or an earlier one.
  bool stopping() const { return failed_ || pending_; }

 private:
  const CallbackKind *kind_;
  ZRVSprob prob_;
  PyGILState_STATE gil_;
  ProblemObject *owner_ = nullptr;
  PyObject *callable_ = nullptr, *data_ = nullptr, *problem_ = nullptr, *extra_ = nullptr;
  bool active_ = false, failed_ = false, pending_ = false;
};

// Result conversions shared by the kinds. An integer result: a Python int
// or NumPy integer scalar; None counts as 0, anything else as -1.
int IntResult(PyObject *result);
// A number or None: true with *value set for a number (unchanged for None);
// false for anything else.
bool OptionalNumber(PyObject *item, double *value);

}  // namespace zrv
