#include "callbacks/registry.h"

#include <new>
#include <string>
#include <utility>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "callbacks/kinds.h"
#include "problem/method_table.h"
#include "problem/problem.h"
#include "problem/solve_guard.h"

namespace zrv {

namespace {

// Registers callable f with data and priority for kind k on p: the record
// [problem, f, data, priority] goes to the engine as user pointer and, on
// success, to the kind's slot. 0, or -1 with an error.
int AddRecord(ProblemObject *p, const CallbackKind &kind, PyObject *f, PyObject *data,
              PyObject *priority) {
  long prio = PyLong_AsLong(priority);
  if (prio == -1 && PyErr_Occurred()) return -1;
  PyObject *self = reinterpret_cast<PyObject *>(p);
  PyObject *record = PyList_New(4);
  if (!record) return -1;
  PyList_SET_ITEM(record, 0, Py_NewRef(self));
  PyList_SET_ITEM(record, 1, Py_NewRef(f));
  PyList_SET_ITEM(record, 2, Py_NewRef(data));
  PyList_SET_ITEM(record, 3, Py_NewRef(priority));
  PyObject *&slot = p->callbacks[kind.number];
  if (!slot && !(slot = PyList_New(0))) {
    Py_DECREF(record);
    return -1;
  }
  // The slot's list holds the record before the engine sees it: whatever
  // the engine calls with stays alive.
  if (PyList_Append(slot, record) < 0) {
    Py_DECREF(record);
    return -1;
  }
  ZRVSprob prob = p->prob;
  const int rc = CallUnlocked(kind.add, prob, static_cast<void *>(record), static_cast<int>(prio));
  if (rc != 0) {
    PyList_SetSlice(slot, PyList_GET_SIZE(slot) - 1, PyList_GET_SIZE(slot), nullptr);
    PyList_SET_ITEM(record, 0, Py_NewRef(Py_None));
    Py_DECREF(self);
    if (PyList_GET_SIZE(slot) == 0) Py_CLEAR(slot);
    Py_DECREF(record);
    return ReportFailure(self);
  }
  Py_DECREF(record);
  return 0;
}

PyObject *AddCallback(PyObject *self, PyObject *args, PyObject *kwds, int number) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  const CallbackKind *kind = FindCallbackKind(number);
  if (!kind) {
    PyErr_SetString(InterfaceError, "Incorrect callback function");
    return nullptr;
  }
  if (CannotChange(p, ("addcb" + std::string(kind->name)).c_str())) return nullptr;
  static const char *keywords[] = {"callback", "data", "priority", nullptr};
  PyObject *f = nullptr, *data = Py_None;
  long priority = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O|Ol", const_cast<char **>(keywords), &f,
                                   &data, &priority) ||
      !PyCallable_Check(f)) {
    PyErr_Clear();
    PyErr_SetString(InterfaceError, "Cannot add callback");
    return nullptr;
  }
  PyObject *prio = PyLong_FromLong(priority);
  if (!prio) return nullptr;
  const int rc = AddRecord(p, *kind, f, data, prio);
  Py_DECREF(prio);
  if (rc < 0) return nullptr;
  Py_RETURN_NONE;
}

// Removes the record at position i of kind's slot from the engine and the
// slot, breaking the record's link to its problem.
int RemoveRecord(ProblemObject *p, const CallbackKind &kind, Py_ssize_t i) {
  PyObject *slot = p->callbacks[kind.number];
  PyObject *record = PyList_GET_ITEM(slot, i);
  ZRVSprob prob = p->prob;
  if (CallUnlocked(kind.remove, prob, static_cast<void *>(record)) != 0)
    return ReportFailure(reinterpret_cast<PyObject *>(p));
  if (PyList_SetItem(record, 0, Py_NewRef(Py_None)) < 0) return -1;
  return PyList_SetSlice(slot, i, i + 1, nullptr);
}

// Removes every record of a kind matching f and data (null or None: any).
// 0, or -1 with an error.
int RemoveMatching(ProblemObject *p, const CallbackKind &kind, PyObject *f, PyObject *data) {
  PyObject *&slot = p->callbacks[kind.number];
  const bool any_f = !f || f == Py_None, any_data = !data || data == Py_None;
  if (!slot) {
    if (any_f) return 0;
    PyErr_SetString(InterfaceError, "Cannot remove callback from an empty set");
    return -1;
  }
  bool matched = false;
  for (Py_ssize_t i = PyList_GET_SIZE(slot) - 1; i >= 0; --i) {
    PyObject *record = PyList_GET_ITEM(slot, i);
    if (!PyList_Check(record) || PyList_GET_SIZE(record) != 4) {
      PyErr_SetString(InterfaceError, "Incorrect data stored in callback");
      return -1;
    }
    if ((any_f || PyList_GET_ITEM(record, 1) == f) &&
        (any_data || PyList_GET_ITEM(record, 2) == data)) {
      matched = true;
      if (RemoveRecord(p, kind, i) < 0) return -1;
    }
  }
  if ((any_f && any_data) || PyList_GET_SIZE(slot) == 0) Py_CLEAR(slot);
  if (!matched && !(any_f && any_data)) {
    PyErr_SetString(InterfaceError, "Callback not found");
    return -1;
  }
  return 0;
}

PyObject *RemoveCallback(PyObject *self, PyObject *args, PyObject *kwds, int number) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  const CallbackKind *kind = FindCallbackKind(number);
  if (!kind) {
    PyErr_SetString(InterfaceError, "Incorrect callback function");
    return nullptr;
  }
  if (CannotChange(p, ("removecb" + std::string(kind->name)).c_str())) return nullptr;
  static const char *keywords[] = {"callback", "data", nullptr};
  PyObject *f = nullptr, *data = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|OO", const_cast<char **>(keywords), &f,
                                   &data))
    return nullptr;
  if (f && f != Py_None && !PyCallable_Check(f)) {
    PyErr_SetString(InterfaceError, "Cannot remove callback");
    return nullptr;
  }
  if (RemoveMatching(p, *kind, f, data) < 0) return nullptr;
  Py_RETURN_NONE;
}

// Re-registers every record of src on dst (same callable, data, priority).
int CopyRegistrations(ProblemObject *dst, ProblemObject *src) {
  for (const CallbackKind &kind : kCallbackKinds) {
    PyObject *slot = src->callbacks[kind.number];
    if (!slot) continue;
    // A snapshot: registering may run Python code that changes the source.
    PyObject *records = PyList_GetSlice(slot, 0, PyList_GET_SIZE(slot));
    if (!records) return -1;
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(records); ++i) {
      PyObject *record = PyList_GET_ITEM(records, i);
      if (!PyList_Check(record) || PyList_GET_SIZE(record) != 4) {
        Py_DECREF(records);
        PyErr_SetString(InterfaceError, "Invalid callback to be copied");
        return -1;
      }
      if (AddRecord(dst, kind, PyList_GET_ITEM(record, 1), PyList_GET_ITEM(record, 2),
                    PyList_GET_ITEM(record, 3)) < 0) {
        Py_DECREF(records);
        return -1;
      }
    }
    Py_DECREF(records);
  }
  return 0;
}

PyObject *CopyCallbacks(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "copycallbacks")) return nullptr;
  static const char *keywords[] = {"src", nullptr};
  PyObject *src = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O", const_cast<char **>(keywords), &src))
    return nullptr;
  if (!IsProblem(src)) {
    PyErr_SetString(InterfaceError, "copycallbacks: src must be a problem");
    return nullptr;
  }
  auto *from = reinterpret_cast<ProblemObject *>(src);
  if (NotInitialized(from)) return nullptr;
  if (from == p) Py_RETURN_NONE;
  // The problem's own registrations give way to the copied ones.
  for (const CallbackKind &kind : kCallbackKinds)
    if (RemoveMatching(p, kind, nullptr, nullptr) < 0) return nullptr;
  if (CopyRegistrations(p, from) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *Interrupt(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemHandles *>(self);
  // Allowed from any thread while the problem solves: that is its purpose.
  if (!p->prob) {
    PyErr_SetString(ModelError, "Problem is not initialized");
    return nullptr;
  }
  static const char *keywords[] = {"reason", nullptr};
  int reason = ZRVS_STOP_USER;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|i", const_cast<char **>(keywords), &reason))
    return nullptr;
  ZRVSprob prob = p->prob;
  if (CallEngine(self, ZRVSinterrupt, prob, reason) < 0) return nullptr;
  Py_RETURN_NONE;
}

template <int K>
PyObject *AddKind(PyObject *self, PyObject *args, PyObject *kwds) {
  return AddCallback(self, args, kwds, K);
}
template <int K>
PyObject *RemoveKind(PyObject *self, PyObject *args, PyObject *kwds) {
  return RemoveCallback(self, args, kwds, K);
}

using Method = PyObject *(*)(PyObject *, PyObject *, PyObject *);

template <int... K>
void KindMethods(std::integer_sequence<int, K...>, Method *adds, Method *removes) {
  ((adds[K] = AddKind<K>, removes[K] = RemoveKind<K>), ...);
}

// Names and help texts live as long as the module.
std::vector<std::string> Texts;
std::vector<PyMethodDef> Methods;

const char CopyCallbacksDoc[] = ZRV_HELP(
    "Copy the callbacks of another problem to this one.", "p.copycallbacks(src)",
    "src: the problem whose callbacks are copied.", "p2.copycallbacks(p1)",
    "This problem's own callbacks are removed first; each callback of src is then "
    "registered here with the same function, data and priority.",
    "problem.copy, problem.addcbintsol");
const char InterruptDoc[] = ZRV_HELP(
    "Ask a running solve of this problem to stop.", "p.interrupt(reason=9)",
    "reason: the stop reason the solve reports in the attribute stopstatus (1 to 13; 9, the "
    "default, is a user's request).",
    "p.addcbintsol(lambda prob, data: prob.interrupt())",
    "Callable from a callback or another thread while the problem solves; the solve stops at "
    "its next check. A request made while no solve runs is dropped when the next one starts.",
    "problem.optimize, problem.addcbchecktime");

}  // namespace

int RegisterCallbackMethods() {
  static Method adds[kSolverCallbackKinds], removes[kSolverCallbackKinds];
  KindMethods(std::make_integer_sequence<int, kSolverCallbackKinds>(), adds, removes);
  try {
    Texts.clear();
    Methods.clear();
    Texts.reserve(4 * kSolverCallbackKinds);
    for (const CallbackKind &kind : kCallbackKinds) {
      const std::string name = kind.name;
      Texts.push_back("addcb" + name);
      Texts.push_back(std::string("Purpose:\n    Add a ") + name +
                      " callback.\n\nSynopsis:\n    p.addcb" + name +
                      "(callback, data=None, priority=0)\n\nArguments:\n    callback: a "
                      "callable; data: any object, passed back on every call; priority: "
                      "callbacks of a kind run by decreasing priority, then in the order "
                      "added.\n\nExample:\n    p.addcb" + name +
                      "(f, None, 0)\n\nFurther information:\n    " + kind.help +
                      " A callback that raises stops the solve (stop status 7) and its "
                      "exception reaches the caller of the solve. The problem passed to the "
                      "callback shares this problem's variables and constraints; the model "
                      "cannot be changed while it solves.\n\nRelated topics:\n    "
                      "problem.removecb" + name + ", problem.copycallbacks\n");
      Texts.push_back("removecb" + name);
      Texts.push_back(std::string("Purpose:\n    Remove ") + name +
                      " callbacks.\n\nSynopsis:\n    p.removecb" + name +
                      "(callback=None, data=None)\n\nArguments:\n    callback: the callable "
                      "to remove (None: any); data: the data it was added with (None: "
                      "any).\n\nExample:\n    p.removecb" + name +
                      "()\n\nFurther information:\n    Every matching callback is removed; "
                      "with no arguments, all of the kind.\n\nRelated topics:\n    "
                      "problem.addcb" + name + "\n");
    }
    for (int k = 0; k < kSolverCallbackKinds; ++k) {
      Methods.push_back({Texts[4 * k].c_str(), WithKeywords(adds[k]),
                         METH_VARARGS | METH_KEYWORDS, Texts[4 * k + 1].c_str()});
      Methods.push_back({Texts[4 * k + 2].c_str(), WithKeywords(removes[k]),
                         METH_VARARGS | METH_KEYWORDS, Texts[4 * k + 3].c_str()});
    }
    Methods.push_back({"copycallbacks", WithKeywords(CopyCallbacks),
                       METH_VARARGS | METH_KEYWORDS, CopyCallbacksDoc});
    Methods.push_back({"interrupt", WithKeywords(Interrupt),
                       METH_VARARGS | METH_KEYWORDS, InterruptDoc});
    Methods.push_back({nullptr, nullptr, 0, nullptr});
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  AddProblemMethods(Methods.data());
  CopyCallbackRegistrations = CopyRegistrations;
  return 0;
}

}  // namespace zrv
