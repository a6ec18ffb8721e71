#include "problem/callback_problem.h"

#include <new>
#include <utility>

#include "problem/problem_copy.h"

namespace zrv {

int (*CopyCallbackRegistrations)(ProblemObject *, ProblemObject *) = nullptr;

PyObject *NewCallbackProblem(ProblemObject *owner, ZRVSprob prob) {
  PyObject *object = NewProblemObject(Py_TYPE(owner));
  if (!object) return nullptr;
  auto *t = reinterpret_cast<ProblemObject *>(object);
  try {
    t->colmap = new IndexMap(*owner->colmap);
    t->rowmap = new IndexMap(*owner->rowmap);
    t->setmap = new IndexMap(*owner->setmap);
  } catch (const std::bad_alloc &) {
    ReleaseCallbackProblem(object);
    PyErr_NoMemory();
    return nullptr;
  }
  t->borrowed = 1;
  t->prob = prob;
  t->slpprob = owner->slpprob;
  t->solving = 1;
  t->solving_thread = PyThread_get_thread_ident();
  t->varlist = Py_XNewRef(owner->varlist);
  t->conlist = Py_XNewRef(owner->conlist);
  t->soslist = Py_XNewRef(owner->soslist);
  t->controls = Py_XNewRef(owner->controls);
  t->attributes = Py_XNewRef(owner->attributes);
  t->objattribs = Py_XNewRef(owner->objattribs);
  t->nl_constraints = owner->nl_constraints;
  t->nl_objective = owner->nl_objective;
  t->output_enabled = owner->output_enabled;
  return object;
}

void ReleaseCallbackProblem(PyObject *temporary) {
  if (!temporary) return;
  auto *t = reinterpret_cast<ProblemObject *>(temporary);
  // The engine problem belongs to the owner (or the solver): never destroyed here.
  t->prob = nullptr;
  t->slpprob = nullptr;
  // The views are the owner's: dropped, not detached.
  Py_CLEAR(t->controls);
  Py_CLEAR(t->attributes);
  Py_CLEAR(t->objattribs);
  ReleaseProblem(t);
  Py_DECREF(temporary);
}

bool RaiseCallbackError(ProblemObject *p) {
  PyObject *error = std::exchange(p->callback_error, nullptr);
  if (!error) return false;
  PyObject *traceback = PyException_GetTraceback(error);
  PyErr_Restore(Py_NewRef(reinterpret_cast<PyObject *>(Py_TYPE(error))), error, traceback);
  return true;
}

}  // namespace zrv
