// Calling the engine from Python: the interpreter lock is released for the
// call, and a failure becomes the module's exception (ReportError). Every
// engine call of the extension goes through here.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "base/errors.h"
#include "base/problem_handles.h"

namespace zrv {

// Calls f(args...) with the interpreter lock released and returns what it
// returns: an engine function with its arguments, or a lambda that makes
// several engine calls which belong together. Nothing inside may touch
// Python objects.
template <class F, class... Args>
auto CallUnlocked(F f, Args... args) -> decltype(f(args...)) {
  struct Relock {
    PyThreadState *state;
    ~Relock() { PyEval_RestoreThread(state); }
  } relock{PyEval_SaveThread()};
  return f(args...);
}

// The same for a call whose failure is reported at once: 0, or -1 with the
// error the engine recorded for owner (a problem, or null for the global
// environment) raised.
template <class F, class... Args>
int CallEngine(PyObject *owner, F f, Args... args) {
  return CallUnlocked(f, args...) == 0 ? 0 : ReportFailure(owner);
}

// One integer attribute of a problem's main engine problem. 0, or -1 with
// the problem's error raised.
inline int ReadIntAttrib(ProblemHandles *p, int id, int *value) {
  return CallEngine(reinterpret_cast<PyObject *>(p), ZRVSgetintattrib, p->prob, id, value);
}

}  // namespace zrv
