#include "problem/solve_guard.h"

#include <pythread.h>

#include "base/globals.h"

namespace zrv {

SolveScope::SolveScope(ProblemObject *p) : p_(p) {
  p_->solving_thread = PyThread_get_thread_ident();
  p_->solving = 1;
}

SolveScope::~SolveScope() { p_->solving = 0; }

bool CannotChange(ProblemObject *p, const char *what) {
  if (!p->prob || !p->solving) return NotInitialized(p);
  PyErr_Format(ModelError,
               "The problem is being solved: %s cannot change it until the solve ends", what);
  return true;
}

bool AnyProblemSolving(const char *what) {
  for (ProblemObject *p = LiveProblems; p; p = p->next) {
    if (!p->solving) continue;
    PyErr_Format(ModelError, "A problem is being solved: %s must wait until the solve ends",
                 what);
    return true;
  }
  return false;
}

}  // namespace zrv
