// The `branchobj` type: a user branching object (not available yet: its
// constructor says so), and how its errors are reported.
#include "bindings/branchobj.h"

#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject BranchObjType{};

namespace {

int BranchObjInit(PyObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError, "Branching objects are not available yet");
  return -1;
}

// The engine has no per-object error text for branching objects yet.
void RaiseBranchObjError(PyObject *) {
  PyErr_SetString(SolverError, "Unidentified error associated with a branching object");
}

void BranchObjDealloc(PyObject *self) {
  Py_CLEAR(reinterpret_cast<BranchObjObject *>(self)->problem);
  Py_TYPE(self)->tp_free(self);
}

}  // namespace

void SetupBranchObjType() {
  PyTypeObject &t = BranchObjType;
  InitType(t, "zorvan.branchobj", sizeof(BranchObjObject));
  t.tp_init = BranchObjInit;
  t.tp_dealloc = BranchObjDealloc;
  RegisterErrorSource(&t, RaiseBranchObjError);
  t.tp_doc = ZRV_HELP(
      "A user branching object: custom branches for the branch-and-bound search.",
      "b = zorvan.branchobj(prob, branches=None, isoriginal=True)",
      "prob: the problem; branches: the number of branches; isoriginal: whether columns "
      "and rows refer to the original (not presolved) problem.",
      "b = zorvan.branchobj(p, branches=2)",
      "Branching objects are usually built inside branching callbacks and handed back to "
      "the solver.",
      "problem, poolcut");
}

}  // namespace zrv
