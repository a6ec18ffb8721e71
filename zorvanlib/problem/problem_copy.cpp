// problem.copy(): the engine copies the model and controls; the module copies
// its bookkeeping and shares the modelling objects.
#include <new>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "problem/problem_copy.h"
#include "problem/problem_init.h"

namespace zrv {

namespace {

int CopyInto(ProblemObject *dst, ProblemObject *src) {
  PyObject *self = reinterpret_cast<PyObject *>(dst);
  if (CreateEngineProblems(dst) < 0 || ApplyUserDefaults(dst) < 0) return -1;
  ZRVSprob dprob = dst->prob, sprob = src->prob;
  ZSLPprob dslp = dst->slpprob, sslp = src->slpprob;
  int rc;
  CallUnlocked([&] {
    rc = ZRVScopyprob(dprob, sprob, "");
    if (rc == 0 && dslp && sslp) rc = ZSLPcopyprob(dslp, sslp, "");
    if (rc == 0) rc = ZRVScopycontrols(dprob, sprob);
    if (rc == 0 && dslp && sslp) rc = ZSLPcopycontrols(dslp, sslp);
  });
  if (rc != 0) return ReportFailure(self);
  if (RegisterMessageCallbacks(dst) < 0 || CreateBookkeeping(dst) < 0) return -1;
  if (CopyCallbackRegistrations && CopyCallbackRegistrations(dst, src) < 0) return -1;
  try {
    *dst->colmap = *src->colmap;
    *dst->rowmap = *src->rowmap;
    *dst->setmap = *src->setmap;
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  if (PyList_SetSlice(dst->varlist, 0, 0, src->varlist) < 0 ||
      PyList_SetSlice(dst->conlist, 0, 0, src->conlist) < 0 ||
      PyList_SetSlice(dst->soslist, 0, 0, src->soslist) < 0)
    return -1;
  dst->output_enabled = src->output_enabled;
  dst->nl_constraints = src->nl_constraints;
  dst->nl_objective = src->nl_objective;
  return 0;
}

}  // namespace

PyObject *CopyProblem(ProblemObject *src) {
  PyObject *copy = NewProblemObject(Py_TYPE(src));
  if (!copy) return nullptr;
  if (CopyInto(reinterpret_cast<ProblemObject *>(copy), src) < 0) {
    Py_DECREF(copy);  // releases whatever was built
    return nullptr;
  }
  return copy;
}

}  // namespace zrv
