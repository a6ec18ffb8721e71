// Engine messages written to Python's standard output, from any thread.
#include "base/output.h"

#include <cstring>

#include "base/globals.h"
#include "zorvan/zrvs.h"

namespace zrv {

bool PythonAvailable() { return Py_IsInitialized() && !_Py_IsFinalizing(); }

void WriteMessage(const char *text) {
  if (!GetOutputEnabled() || !PythonAvailable()) return;
  PyGILState_STATE state = PyGILState_Ensure();
  // PySys_FormatStdout keeps a pending exception intact.
  PySys_FormatStdout("%s\n", text ? text : "");
  PyGILState_Release(state);
}

void FlushOutput() {
  if (!GetOutputEnabled() || !PythonAvailable()) return;
  PyGILState_STATE state = PyGILState_Ensure();
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  PyObject *out = PySys_GetObject("stdout");  // borrowed
  if (out && out != Py_None) {
    PyObject *r = PyObject_CallMethod(out, "flush", nullptr);
    Py_XDECREF(r);
    PyErr_Clear();
  }
  PyErr_Restore(type, value, traceback);
  PyGILState_Release(state);
}

int GlobalMessageCallback(void *object, void *, void *, const char *msg, int, int msgtype) {
  const char *name = nullptr;
  if (object && ZRVSgetobjecttypename(object, &name) == 0 && name &&
      (std::strcmp(name, "ZRVSprob") == 0 || std::strcmp(name, "ZSLPprob") == 0)) {
    // Problems write their messages through their own message callbacks.
    return 0;
  }
  if (msgtype > 0)
    WriteMessage(msg);
  else
    FlushOutput();
  return 0;
}

}  // namespace zrv
