// Releasing problems, the list of live problems, user defaults and the
// problem's message callbacks.
#include <utility>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/output.h"
#include "controls/control.h"
#include "problem/problem.h"

namespace zrv {

namespace {

// Cuts a view loose and puts None in its place.
void DropView(PyObject *&field) {
  if (!field) return;
  DetachView(field);
  Py_SETREF(field, Py_NewRef(Py_None));
}

}  // namespace

void ReleaseProblem(ProblemObject *p) {
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  p->prob = nullptr;
  p->slpprob = nullptr;
  // After the last stop the engine has forgotten its problems; they are
  // released before that stop, so a stopped engine means nothing to destroy.
  if (prob && GetEnvCount() > 0) {
    CallUnlocked([&] {
      ZRVSremovecbmessage(prob, ProblemMessage, p);
      if (slp) {
        ZSLPsetcbmessage(slp, nullptr, nullptr);
        ZSLPdestroyprob(slp);
      }
      ZRVSdestroyprob(prob);
    });
  }
  for (PyObject *&slot : p->callbacks) Py_CLEAR(slot);
  Py_CLEAR(p->callback_error);
  DropView(p->controls);
  DropView(p->attributes);
  DropView(p->objattribs);
  Py_CLEAR(p->varlist);
  Py_CLEAR(p->conlist);
  Py_CLEAR(p->soslist);
  delete std::exchange(p->colmap, nullptr);
  delete std::exchange(p->rowmap, nullptr);
  delete std::exchange(p->setmap, nullptr);
}

void ReleaseAllProblems() {
  // Collect first: releasing runs engine calls without the interpreter lock,
  // during which other threads may change the list.
  std::vector<ProblemObject *> live;
  for (ProblemObject *p = LiveProblems; p; p = p->next) {
    Py_INCREF(p);
    live.push_back(p);
  }
  for (ProblemObject *p : live) {
    ReleaseProblem(p);
    Py_DECREF(p);
  }
}

int ApplyUserDefaults(ProblemObject *p) {
  // Pair every default with its descriptor under both locks, then set them
  // with no lock held: setting a control releases the interpreter lock.
  std::vector<std::pair<PyObject *, PyObject *>> settings;  // (descriptor, value)
  auto release = [&settings] {
    for (auto &s : settings) {
      Py_DECREF(s.first);
      Py_DECREF(s.second);
    }
  };
  bool unknown = false;
  {
    GilSafeLock names(ControlNameLock);
    GilSafeLock defaults(DefaultControlsLock);
    PyObject *key, *value;
    Py_ssize_t pos = 0;
    while (PyDict_Next(UserDefaults, &pos, &key, &value)) {
      PyObject *tuple = PyDict_GetItem(ControlDict, key);
      if (!tuple) {
        unknown = true;
        break;
      }
      settings.emplace_back(Py_NewRef(tuple), Py_NewRef(value));
    }
  }
  if (unknown) {
    release();
    PyErr_SetString(InterfaceError, "Incorrect control name in initialization");
    return -1;
  }
  int rc = 0;
  for (auto &s : settings) {
    int id, kind, source;
    if (UnpackDescriptor(s.first, id, kind, source) < 0 ||
        SetControlValue(p, id, kind, source, s.second) < 0) {
      rc = -1;
      break;
    }
  }
  release();
  return rc;
}

void ProblemMessage(ZRVSprob, void *data, const char *msg, int, int msgtype) {
  auto *p = static_cast<ProblemObject *>(data);
  // Engine threads call this without the interpreter lock, while a Python
  // thread may switch the output: the flag is read atomically.
  if (!p || !__atomic_load_n(&p->output_enabled, __ATOMIC_RELAXED)) return;
  if (msgtype < 1)
    FlushOutput();
  else
    WriteMessage(msg);
}

void ProblemSlpMessage(ZSLPprob, void *data, const char *msg, int len, int msgtype) {
  ProblemMessage(nullptr, data, msg, len, msgtype);
}

}  // namespace zrv
