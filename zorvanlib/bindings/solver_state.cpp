// Members about the problem's state rather than its model: its name, its
// last error, the catalogue of controls and attributes, control defaults,
// and the indicator marks of rows.
#include "bindings/workers.h"

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/text.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// (identifier, type) of a control or attribute by name.
PyObject *Info(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
               int (*f)(ZRVSprob, const char *, int *, int *)) {
  const char *name = nullptr;
  if (!ParseArgs(b, args, kwds, &name)) return nullptr;
  int id = 0, type = 0;
  if (CallUnlocked(f, p->prob, name, &id, &type) != 0) return ReportError(Self(p), nullptr);
  return Py_BuildValue("(ii)", id, type);
}

}  // namespace

PyObject *GetLastError(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  char text[ZRVS_MAXMESSAGELENGTH + 1] = "";
  if (CallUnlocked(ZRVSgetlasterror, p->prob, static_cast<char *>(text)) != 0)
    return ReportError(Self(p), nullptr);
  return TextFromEngine(text);
}

PyObject *GetAttribInfo(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return Info(p, b, args, kwds, ZRVSgetattribinfo);
}

PyObject *GetControlInfo(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return Info(p, b, args, kwds, ZRVSgetcontrolinfo);
}

PyObject *SetProbName(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *name = nullptr;
  if (!ParseArgs(b, args, kwds, &name)) return nullptr;
  char *text = nullptr;  // a copy of the name from the allocation interface
  if (ElementToNative(p, name, &text, 0, ElemString) < 0) return nullptr;
  int status = CallUnlocked(ZRVSsetprobname, p->prob, static_cast<const char *>(text));
  ReleaseStrings(&text, 1);
  if (status != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *SetDefaults(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  if (CallUnlocked(ZRVSsetdefaults, p->prob) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *SetDefaultControl(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int control = 0;
  if (!ParseArgs(b, args, kwds, &control)) return nullptr;
  if (CallUnlocked(ZRVSsetdefaultcontrol, p->prob, control) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *SetIndicators(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3] = {nullptr, nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2])) return nullptr;
  const int codes[3] = {ElemRow, ElemColumn, ElemInt};
  NativeArray arrays[3];
  Py_ssize_t n = -1;
  for (int k = 0; k < 3; ++k) {
    if (objs[k] == Py_None) return MissingArgument(b, k);
    if (SequenceToArray(p, &n, objs[k], arrays[k].slot(), codes[k]) < 0) return nullptr;
  }
  if (CallUnlocked(ZRVSsetindicators, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const int>(), arrays[2].as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
