// Members of irreducible infeasible subsystems.
#include "bindings/workers_state.h"

#include "base/errors.h"
#include "bindings/state_arrays.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// InterfaceError for outputs the engine does not compute.
bool Unavailable(const Binding &b, PyObject *const *objs, int first, int count) {
  for (int k = first; k < first + count; ++k)
    if (objs[k] && objs[k] != Py_None) {
      PyErr_Format(InterfaceError,
                   "Argument %s is not available: the engine's subsystems carry no %s",
                   b.keywords[k], "infeasibility sums, prices or isolations");
      return true;
    }
  return false;
}

}  // namespace

PyObject *IisFirst(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int mode = 1, status = 0;
  if (!ParseArgs(b, args, kwds, &mode)) return nullptr;
  if (CallUnlocked(ZRVSiisfirst, p->prob, mode, &status) != 0) return ReportError(Self(p), nullptr);
  return PyLong_FromLong(status);
}

PyObject *IisNext(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int status = 0;
  if (!ParseArgs(b, args, kwds)) return nullptr;
  if (CallUnlocked(ZRVSiisnext, p->prob, &status) != 0) return ReportError(Self(p), nullptr);
  return PyLong_FromLong(status);
}

PyObject *IisAll(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  if (CallUnlocked(ZRVSiisall, p->prob) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *IisClear(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  if (CallUnlocked(ZRVSiisclear, p->prob) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *IisStatus(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[4] = {Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2], &objs[3])) return nullptr;
  if (Unavailable(b, objs, 2, 2)) return nullptr;
  int n = 0;
  if (CallUnlocked(ZRVSiisstatus, p->prob, &n, static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray rows, cols;
  if (OutputArray(objs[0], n, sizeof(int), rows) < 0 ||
      OutputArray(objs[1], n, sizeof(int), cols) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSiisstatus, p->prob, &n, rows.as<int>(), cols.as<int>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, rows.get(), objs[0], ElemInt) < 0 ||
      ArrayToList(p, n, cols.get(), objs[1], ElemInt) < 0)
    return nullptr;
  return PyLong_FromLong(n);
}

PyObject *GetIisData(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int num = 0;
  PyObject *objs[9] = {nullptr, Py_None, Py_None, Py_None, Py_None,
                       Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &num, &objs[1], &objs[2], &objs[3], &objs[4], &objs[5],
                 &objs[6], &objs[7], &objs[8]))
    return nullptr;
  if (Unavailable(b, objs, 5, 4)) return nullptr;
  int nrows = 0, ncols = 0;
  if (CallUnlocked(ZRVSgetiisdata, p->prob, num, &nrows, &ncols, static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<char *>(nullptr),
                   static_cast<char *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray rows, cols, types, bounds;
  if (OutputArray(objs[1], nrows, sizeof(int), rows) < 0 ||
      OutputArray(objs[2], ncols, sizeof(int), cols) < 0 ||
      OutputArray(objs[3], nrows, 1, types) < 0 || OutputArray(objs[4], ncols, 1, bounds) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetiisdata, p->prob, num, &nrows, &ncols, rows.as<int>(), cols.as<int>(),
                   types.as<char>(), bounds.as<char>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, nrows, rows.get(), objs[1], ElemRow) < 0 ||
      ArrayToList(p, ncols, cols.get(), objs[2], ElemColumn) < 0 ||
      ArrayToList(p, nrows, types.get(), objs[3], ElemChar) < 0 ||
      ArrayToList(p, ncols, bounds.get(), objs[4], ElemChar) < 0)
    return nullptr;
  return Py_BuildValue("(ii)", nrows, ncols);
}

}  // namespace zrv
