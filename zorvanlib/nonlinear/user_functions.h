// Python functions called from formulas: registered once per problem with
// the nonlinear companion, called back from the solver's thread with the
// interpreter lock taken, their exceptions kept for the caller of optimize.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <map>
#include <memory>

#include "zorvan/zslp.h"

namespace zrv {

class UserFunctions;

// One registered function: what the engine's entry functions need.
struct UserFunctionRecord {
  UserFunctions *owner;
  ZSLPprob slp;        // the problem it was registered with
  PyObject *callable;  // owned
  int nargs;
  int op;     // the node's operator: which derivatives it gives
  int index;  // the engine's index
};

// The registry of one problem (shared with its copies, whose engine problems
// keep the registrations). Reference counted; used with the interpreter
// lock held.
class UserFunctions {
 public:
  static UserFunctions *New() { return new UserFunctions(); }
  void Ref() { ++refs_; }
  // Drops a reference; the last one releases the callables.
  void Unref();

  // The engine's index of callable with nargs arguments called as op
  // requires; registers it with slp on first use. 0, or -1 with an error.
  int IndexOf(ZSLPprob slp, PyObject *callable, int nargs, int op, int *index);

  // Keeps the pending Python exception as the first failure of a function
  // since the last TakeError (later ones are dropped).
  void KeepError();
  // Restores a kept failure as the pending exception; true when there was one.
  bool TakeError();

  int Traverse(visitproc visit, void *arg);

 private:
  UserFunctions() = default;
  ~UserFunctions();
  int refs_ = 1;
  std::multimap<PyObject *, std::unique_ptr<UserFunctionRecord>> records_;
  PyObject *error_type_ = nullptr, *error_value_ = nullptr, *error_traceback_ = nullptr;
};

}  // namespace zrv
