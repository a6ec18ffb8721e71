// While a solve runs, the engine problem is in use by the solving thread with
// the interpreter lock released. These helpers keep other calls off it: model
// changes are refused from every thread (callbacks included), any use from
// another thread is refused until the solve ends.
#pragma once

#include "problem/problem.h"

namespace zrv {

// Marks the problem as being solved by the calling thread for its lifetime.
class SolveScope {
 public:
  explicit SolveScope(ProblemObject *p);
  ~SolveScope();
  SolveScope(const SolveScope &) = delete;
  SolveScope &operator=(const SolveScope &) = delete;

 private:
  ProblemObject *p_;
};

// Raises ModelError and returns true when the problem is not initialized or
// is being solved; `what` names the refused call in the message. Every method
// that changes the model or releases the engine problem starts with it.
bool CannotChange(ProblemObject *p, const char *what);

// Raises ModelError and returns true when any live problem is being solved
// (before the engine is stopped, which releases every problem).
bool AnyProblemSolving(const char *what);

}  // namespace zrv
