#include "callbacks/trampolines.h"

#include <cstdio>

#include "base/arrays.h"
#include "base/globals.h"
#include "callbacks/dispatch.h"

namespace zrv {

BranchObjectBridge BranchObjects{nullptr, nullptr};

namespace {

// Kinds whose callable takes (problem, data) only: the result, or null.
PyObject *CallPlain(CallbackCall &call) {
  if (!call.active()) return nullptr;
  return call.Call(Py_BuildValue("(OO)", call.problem(), call.data()));
}

// Kinds whose result is ignored.
void Notice(int kind, ZRVSprob prob, void *record) {
  CallbackCall call(kind, prob, record);
  Py_XDECREF(CallPlain(call));
}

// Kinds returning an int to the solver; `on_failure` when the call fails.
int Returned(int kind, ZRVSprob prob, void *record, int on_failure) {
  CallbackCall call(kind, prob, record);
  PyObject *result = CallPlain(call);
  if (!result) return call.stopping() ? on_failure : 0;
  int value = IntResult(result);
  Py_DECREF(result);
  return value;
}

// Kinds writing the result to an int output of the solver.
void IntOutput(int kind, ZRVSprob prob, void *record, int *out) {
  CallbackCall call(kind, prob, record);
  PyObject *result = CallPlain(call);
  if (!result) return;
  if (out) *out = IntResult(result);
  Py_DECREF(result);
}

// A tuple of `n` numbers or None; false (after printing `complaint`) for
// anything else. values[k] changes only for a number.
bool NumberTuple(CallbackCall &call, PyObject *result, int n, double *values,
                 const char *complaint) {
  bool ok = PyTuple_Check(result) && PyTuple_GET_SIZE(result) == n;
  double read[4];
  for (int k = 0; ok && k < n; ++k) {
    read[k] = values[k];
    ok = OptionalNumber(PyTuple_GET_ITEM(result, k), &read[k]);
  }
  if (!ok) {
    PySys_WriteStderr("%s", complaint);
    call.Fail();
    return false;
  }
  for (int k = 0; k < n; ++k) values[k] = read[k];
  return true;
}

}  // namespace

void OnBarIteration(ZRVSprob prob, void *record, int *action) {
  IntOutput(0, prob, record, action);
}
int OnBarLog(ZRVSprob prob, void *record) { return Returned(1, prob, record, 1); }

void OnChgBranchObject(ZRVSprob prob, void *record, ZRVSbranchobject branch,
                       ZRVSbranchobject *newbranch) {
  CallbackCall call(2, prob, record);
  if (!call.active()) return;
  if (!BranchObjects.wrap || !BranchObjects.take) {
    PyErr_SetString(InterfaceError,
                    "chgbranchobject: branching objects are not available in this build");
    call.Fail();
    return;
  }
  PyObject *wrapped = BranchObjects.wrap(call.problem(), branch);
  if (!wrapped) {
    call.Fail();
    return;
  }
  PyObject *result = call.Call(Py_BuildValue("(OOO)", call.problem(), call.data(), wrapped));
  Py_DECREF(wrapped);
  if (!result) return;
  ZRVSbranchobject chosen = BranchObjects.take(result);
  Py_DECREF(result);
  if (!chosen) {
    PyErr_Clear();
    PySys_WriteStderr("returned object from chgbranchobject() should be a branching object\n");
    call.Fail();
    return;
  }
  if (newbranch) *newbranch = chosen;
}

int OnCutLog(ZRVSprob prob, void *record) { return Returned(3, prob, record, 1); }
void OnDestroyMt(ZRVSprob prob, void *record) { Notice(4, prob, record); }

void OnGapNotify(ZRVSprob prob, void *record, double *relgap, double *absgap, double *absobj,
                 double *absbound) {
  CallbackCall call(5, prob, record);
  PyObject *result = CallPlain(call);
  if (!result) return;
  double targets[4] = {*relgap, *absgap, *absobj, *absbound};
  if (result == Py_None ||
      NumberTuple(call, result, 4, targets,
                  "Problem in GapNotify callback: must return tuple of four elements, each "
                  "being a number or None.\n")) {
    *relgap = targets[0], *absgap = targets[1], *absobj = targets[2], *absbound = targets[3];
  }
  Py_DECREF(result);
}

int OnMipLog(ZRVSprob prob, void *record) { return Returned(6, prob, record, 1); }
void OnInfNode(ZRVSprob prob, void *record) { Notice(7, prob, record); }
void OnIntSol(ZRVSprob prob, void *record) { Notice(8, prob, record); }
int OnLpLog(ZRVSprob prob, void *record) { return Returned(9, prob, record, 0); }

void OnMessage(ZRVSprob prob, void *record, const char *msg, int, int msgtype) {
  CallbackCall call(10, prob, record);
  if (!call.active()) return;
  Py_XDECREF(call.Call(
      Py_BuildValue("(OOsl)", call.problem(), call.data(), msg, static_cast<long>(msgtype))));
}

void OnMipThread(ZRVSprob prob, void *record, ZRVSprob threadprob) {
  CallbackCall call(11, prob, record);
  if (!call.active()) return;
  PyObject *thread = call.Wrap(threadprob);
  if (!thread) return;
  Py_XDECREF(call.Call(Py_BuildValue("(OOO)", call.problem(), call.data(), thread)));
  Py_DECREF(thread);
}

void OnNewNode(ZRVSprob prob, void *record, int parentnode, int node, int branch) {
  CallbackCall call(12, prob, record);
  if (!call.active()) return;
  Py_XDECREF(call.Call(Py_BuildValue("(OOlll)", call.problem(), call.data(),
                                     static_cast<long>(parentnode), static_cast<long>(node),
                                     static_cast<long>(branch))));
}

void OnNodeCutoff(ZRVSprob prob, void *record, int node) {
  CallbackCall call(13, prob, record);
  if (!call.active()) return;
  Py_XDECREF(
      call.Call(Py_BuildValue("(OOl)", call.problem(), call.data(), static_cast<long>(node))));
}

void OnNodeLpSolved(ZRVSprob prob, void *record) { Notice(14, prob, record); }
void OnOptNode(ZRVSprob prob, void *record, int *feas) { IntOutput(15, prob, record, feas); }

void OnPreIntSol(ZRVSprob prob, void *record, int soltype, int *reject, double *cutoff) {
  CallbackCall call(16, prob, record);
  if (!call.active()) return;
  PyObject *result = call.Call(Py_BuildValue("(OOld)", call.problem(), call.data(),
                                             static_cast<long>(soltype), *cutoff));
  if (!result) return;
  double values[2] = {static_cast<double>(*reject), *cutoff};
  bool integral = PyTuple_Check(result) && PyTuple_GET_SIZE(result) == 2 &&
                  (PyTuple_GET_ITEM(result, 0) == Py_None ||
                   PyLong_Check(PyTuple_GET_ITEM(result, 0)) ||
                   IsNumpySignedInteger(PyTuple_GET_ITEM(result, 0)));
  const char *complaint =
      "Problem in PreIntSol callback: must return tuple of two elements, both being a number "
      "or None.\n";
  if (!integral) {
    PySys_WriteStderr("%s", complaint);
    call.Fail();
  } else if (NumberTuple(call, result, 2, values, complaint)) {
    *reject = static_cast<int>(values[0]);
    *cutoff = values[1];
  }
  Py_DECREF(result);
}

void OnPreNode(ZRVSprob prob, void *record, int *nodinfeas) {
  IntOutput(17, prob, record, nodinfeas);
}

void OnUserSolNotify(ZRVSprob prob, void *record, const char *solname, int status) {
  CallbackCall call(18, prob, record);
  if (!call.active()) return;
  Py_XDECREF(call.Call(Py_BuildValue("(OOsl)", call.problem(), call.data(), solname,
                                     static_cast<long>(status))));
}

int OnCheckTime(ZRVSprob prob, void *record) { return Returned(19, prob, record, 1); }
void OnBeforeObjective(ZRVSprob prob, void *record) { Notice(20, prob, record); }
void OnAfterObjective(ZRVSprob prob, void *record) { Notice(21, prob, record); }

}  // namespace zrv
