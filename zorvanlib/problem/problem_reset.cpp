#include "problem/problem_reset.h"

#include <utility>

#include "problem/problem_init.h"

namespace zrv {

namespace {

// Moves what a problem holds (engine problems, lists, maps, views, callback
// registrations and model flags) from `from` to `to`; `from` is left empty
// and uninitialized, anything `to` held is released first.
void MoveState(ProblemObject *from, ProblemObject *to) {
  Py_XSETREF(to->varlist, std::exchange(from->varlist, nullptr));
  Py_XSETREF(to->conlist, std::exchange(from->conlist, nullptr));
  Py_XSETREF(to->soslist, std::exchange(from->soslist, nullptr));
  Py_XSETREF(to->controls, std::exchange(from->controls, nullptr));
  Py_XSETREF(to->attributes, std::exchange(from->attributes, nullptr));
  Py_XSETREF(to->objattribs, std::exchange(from->objattribs, nullptr));
  for (int k = 0; k < kCallbackKinds; ++k)
    Py_XSETREF(to->callbacks[k], std::exchange(from->callbacks[k], nullptr));
  delete std::exchange(to->colmap, std::exchange(from->colmap, nullptr));
  delete std::exchange(to->rowmap, std::exchange(from->rowmap, nullptr));
  delete std::exchange(to->setmap, std::exchange(from->setmap, nullptr));
  to->prob = std::exchange(from->prob, nullptr);
  to->slpprob = std::exchange(from->slpprob, nullptr);
  to->nl_constraints = from->nl_constraints;
  to->nl_objective = from->nl_objective;
  to->formula_column = from->formula_column;
  to->objtransfer = from->objtransfer;
  ForgetUserFunctions(to);
  to->userfuncs = std::exchange(from->userfuncs, nullptr);
  to->objtokens = std::exchange(from->objtokens, nullptr);
  to->objtokens_cols = from->objtokens_cols;
}

// Releases state moved out of a problem. The views still point at the
// problem they came from; ReleaseProblem cuts them loose.
void ReleaseMovedState(ProblemObject &old) {
  ReleaseProblem(&old);
  Py_CLEAR(old.controls);
  Py_CLEAR(old.attributes);
  Py_CLEAR(old.objattribs);
}

}  // namespace

int ResetProblem(ProblemObject *p) {
  // A plain holder, never seen by Python: only its fields are used.
  ProblemObject old{};
  MoveState(p, &old);
  if (InitializeProblem(p, nullptr, nullptr) < 0) {
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    MoveState(&old, p);
    PyErr_Restore(type, value, traceback);
    return -1;
  }
  ReleaseMovedState(old);
  return 0;
}

}  // namespace zrv
