// Python functions as global message handlers of the engine.
#include "base/handles.h"
#include "base/environment.h"
#include "base/errors.h"
#include "module/functions.h"
#include "base/globals.h"
#include "base/output.h"
#include "base/text.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// Called by the engine, from any thread, with the entry [handler, data].
int HandlerTrampoline(void *object, void *data, void *thread, const char *msg, int len,
                      int msgtype) {
  if (!PythonAvailable()) return 0;
  PyGILState_STATE state = PyGILState_Ensure();
  int result = 0;
  if (!PyErr_Occurred()) {
    auto *entry = static_cast<PyObject *>(data);
    if (!entry || !PyList_Check(entry) || PyList_GET_SIZE(entry) != 2) {
      PyErr_SetString(InterfaceError, "Incorrect general environment message handler detected");
      result = -1;
    } else {
      // Own the items: the handler may remove its own entry while it runs.
      PyObject *handler = Py_NewRef(PyList_GET_ITEM(entry, 0));
      PyObject *user = Py_NewRef(PyList_GET_ITEM(entry, 1));
      PyObject *wrapped = NewZrvsObject(object);
      PyObject *pointer = NewGeneric(thread);
      PyObject *call = nullptr;
      if (wrapped && pointer)
        call = Py_BuildValue("(OOONll)", wrapped, user, pointer, TextFromEngine(msg ? msg : ""),
                             static_cast<long>(len),
                             static_cast<long>(msgtype));
      PyObject *r = call ? PyObject_Call(handler, call, nullptr) : nullptr;
      // The result is ignored. A failure of the handler is reported here, so
      // that it cannot surface later in an unrelated call.
      if (!r) PyErr_WriteUnraisable(handler);
      Py_XDECREF(r);
      Py_XDECREF(call);
      Py_XDECREF(pointer);
      Py_XDECREF(wrapped);
      Py_DECREF(user);
      Py_DECREF(handler);
    }
  }
  PyGILState_Release(state);
  return result;
}

}  // namespace

PyObject *AddMessageHandler(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"msghandler", "data", "priority", nullptr};
  PyObject *handler = nullptr, *data = Py_None;
  int priority = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O|Oi", const_cast<char **>(keywords), &handler,
                                   &data, &priority) ||
      !PyCallable_Check(handler)) {
    PyErr_Clear();
    PyErr_SetString(InterfaceError,
                    "Incorrect arguments in addcbmsghandler. Must provide correct list of three "
                    "arguments");
    return nullptr;
  }
  PyObject *entry = Py_BuildValue("[OO]", handler, data);
  if (!entry) return nullptr;
  int rc;
  {
    GilSafeLock lock(MessageHandlerLock);
    rc = PyList_Append(MessageHandlers, entry);
  }
  // The list keeps the entry alive while the engine holds it as data.
  Py_DECREF(entry);
  if (rc < 0 || EnsureEnvironment() < 0) return nullptr;
  if (ZRVS_ge_addcbmsghandler(HandlerTrampoline, entry, priority) != 0)
    return ReportError(nullptr, nullptr);
  Py_RETURN_NONE;
}

PyObject *RemoveMessageHandler(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"msghandler", "data", nullptr};
  PyObject *handler = Py_None, *data = Py_None;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|OO", const_cast<char **>(keywords), &handler,
                                   &data) ||
      (handler != Py_None && !PyCallable_Check(handler))) {
    PyErr_Clear();
    PyErr_SetString(InterfaceError,
                    "Incorrect arguments in removecbmsghandler. Must provide correct list of two "
                    "arguments");
    return nullptr;
  }
  PyObject *removed = PyList_New(0);  // released after the lock is dropped
  if (!removed) return nullptr;
  bool empty, bad = false;
  {
    GilSafeLock lock(MessageHandlerLock);
    Py_ssize_t n = PyList_GET_SIZE(MessageHandlers);
    empty = n == 0;
    for (Py_ssize_t i = n - 1; i >= 0; --i) {
      PyObject *entry = PyList_GET_ITEM(MessageHandlers, i);
      if (!PyList_Check(entry) || PyList_GET_SIZE(entry) != 2) {
        bad = true;
        break;
      }
      if ((handler == Py_None || PyList_GET_ITEM(entry, 0) == handler) &&
          (data == Py_None || PyList_GET_ITEM(entry, 1) == data)) {
        ZRVS_ge_removecbmsghandler(HandlerTrampoline, entry);
        if (PyList_Append(removed, entry) < 0 ||
            PyList_SetSlice(MessageHandlers, i, i + 1, nullptr) < 0) {
          bad = true;
          break;
        }
      }
    }
  }
  Py_ssize_t count = PyList_GET_SIZE(removed);
  Py_DECREF(removed);
  if (bad) {
    if (!PyErr_Occurred()) PyErr_SetString(InterfaceError, "Incorrect data stored in callback");
    return nullptr;
  }
  if (empty) {
    if (handler == Py_None) Py_RETURN_NONE;
    PyErr_SetString(InterfaceError, "Cannot remove callback from an empty set");
    return nullptr;
  }
  if (count == 0) {
    PyErr_SetString(InterfaceError, "Callback not found");
    return nullptr;
  }
  Py_RETURN_NONE;
}

}  // namespace zrv
