// Members about the problem's messages: the show or suppress status of a
// message code, and the log file that receives a copy of them.
#include "bindings/workers_model.h"

#include "base/engine_call.h"
#include "base/errors.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {
PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }
}  // namespace

PyObject *GetMessageStatus(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int code = 0;
  if (!ParseArgs(b, args, kwds, &code)) return nullptr;
  int status = 0;
  if (CallUnlocked(ZRVSgetmessagestatus, p->prob, code, &status) != 0)
    return ReportError(Self(p), nullptr);
  return PyLong_FromLong(status);
}

PyObject *SetMessageStatus(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int code = 0, status = 0;
  if (!ParseArgs(b, args, kwds, &code, &status)) return nullptr;
  if (CallUnlocked(ZRVSsetmessagestatus, p->prob, code, status) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *SetLogFile(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  const char *filename = nullptr;  // None closes the file
  if (!ParseArgs(b, args, kwds, &filename)) return nullptr;
  if (CallUnlocked(ZRVSsetlogfile, p->prob, filename) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
