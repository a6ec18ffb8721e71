// ReportError: one place that turns an engine failure into the module's
// exception, for problems, branching objects and the global environment.
#include "base/errors.h"

#include "base/globals.h"
#include "base/text.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

struct ErrorSource {
  PyTypeObject *type;
  RaiseObjectError raise;
};
// Problems and branching objects; room for the handles still to come.
ErrorSource Sources[4];
int SourceCount = 0;

}  // namespace

void RegisterErrorSource(PyTypeObject *type, RaiseObjectError raise) {
  for (int i = 0; i < SourceCount; ++i) {
    if (Sources[i].type == type) {
      Sources[i].raise = raise;
      return;
    }
  }
  if (SourceCount < static_cast<int>(sizeof Sources / sizeof Sources[0]))
    Sources[SourceCount++] = {type, raise};
}

std::string GlobalLastError(int *code) {
  char msg[ZRVS_MAXMESSAGELENGTH] = {0};
  int c = 0;
  int nbytes = 0;
  if (ZRVS_ge_getlasterror(&c, msg, sizeof msg, &nbytes) != 0) c = 0, msg[0] = '\0';
  msg[sizeof msg - 1] = '\0';
  if (code) *code = c;
  return msg;
}

PyObject *ReportError(PyObject *obj, PyObject *result) {
  if (result) return result;
  if (PyErr_Occurred()) return nullptr;  // keep the pending error unchanged
  if (!obj) {
    int code = 0;
    std::string text = GlobalLastError(&code);
    if (code == 0 && text.empty())
      text = "Unidentified error associated with the global environment";
    SetErrorFromEngine(InterfaceError, text.c_str());
    return nullptr;
  }
  for (int i = 0; i < SourceCount; ++i) {
    if (PyObject_TypeCheck(obj, Sources[i].type)) {
      Sources[i].raise(obj);
      return nullptr;
    }
  }
  PyErr_SetString(InterfaceError, "");
  return nullptr;
}

}  // namespace zrv
