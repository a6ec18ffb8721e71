#include "module/errors.h"

#include <string>

#include "bindings/branchobj.h"
#include "module/globals.h"
#include "module/text.h"
#include "problem/problem.h"
#include "zorvan/zslp.h"

namespace zrv {

namespace {

std::string GlobalLastError(int *code) {
  char msg[ZRVS_MAXMESSAGELENGTH] = {0};
  int c = 0;
  int nbytes = 0;
  if (ZRVS_ge_getlasterror(&c, msg, sizeof msg, &nbytes) != 0) c = 0, msg[0] = '\0';
  msg[sizeof msg - 1] = '\0';
  if (code) *code = c;
  return msg;
}

void RaiseProblemError(ProblemObject *p) {
  char msg[ZRVS_MAXMESSAGELENGTH] = {0};
  int code = 0;
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  if (prob) {
    Py_BEGIN_ALLOW_THREADS
    if (ZRVSgetlasterror(prob, msg) != 0) msg[0] = '\0';
    Py_END_ALLOW_THREADS
    msg[sizeof msg - 1] = '\0';
    if (!msg[0] && slp && GetSlpStarted() != 0) {
      Py_BEGIN_ALLOW_THREADS
      if (ZSLPgetlasterror(slp, &code, msg) != 0) code = 0, msg[0] = '\0';
      Py_END_ALLOW_THREADS
      msg[sizeof msg - 1] = '\0';
    }
  }
  std::string text = msg;
  // Without an engine problem (its creation failed) the error is global.
  if (!prob) text = GlobalLastError(&code);
  if (code == 0 && text.empty()) text = "Unidentified error associated with optimization problem";
  SetErrorFromEngine(SolverError, text.c_str());
}

}  // namespace

PyObject *ReportError(PyObject *obj, PyObject *result) {
  if (result) return result;
  if (PyErr_Occurred()) return nullptr;  // keep the pending error unchanged
  if (obj && IsProblem(obj)) {
    RaiseProblemError(reinterpret_cast<ProblemObject *>(obj));
  } else if (obj && IsBranchObj(obj)) {
    // The engine has no per-object error text for branching objects yet.
    PyErr_SetString(SolverError, "Unidentified error associated with a branching object");
  } else if (!obj) {
    int code = 0;
    std::string text = GlobalLastError(&code);
    if (code == 0 && text.empty()) text = "Unidentified error associated with the global environment";
    SetErrorFromEngine(InterfaceError, text.c_str());
  } else {
    PyErr_SetString(InterfaceError, "");
  }
  return nullptr;
}

}  // namespace zrv
