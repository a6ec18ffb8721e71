// Members that load solver state: a basis, an LP start, MIP starts and
// branching directives, and the presolved-space loaders.
#include "bindings/workers_state.h"

#include "base/errors.h"
#include "bindings/state_arrays.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

using BasisLoader = int (*)(ZRVSprob, const int *, const int *);

PyObject *LoadBasisWith(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                        BasisLoader fn) {
  PyObject *rowstat = nullptr, *colstat = nullptr;
  if (!ParseArgs(b, args, kwds, &rowstat, &colstat)) return nullptr;
  if (rowstat == Py_None) return MissingArgument(b, 0);
  if (colstat == Py_None) return MissingArgument(b, 1);
  int rows, cols;
  NativeArray r, c;
  if (ProblemSize(p, &rows, &cols) < 0 || FullVector(p, rowstat, rows, ElemInt, r) < 0 ||
      FullVector(p, colstat, cols, ElemInt, c) < 0)
    return nullptr;
  if (CallUnlocked(fn, p->prob, r.as<const int>(), c.as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

using DirLoader = int (*)(ZRVSprob, int, const int *, const int *, const char *, const double *,
                          const double *);

PyObject *LoadDirsWith(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                       DirLoader fn) {
  PyObject *objs[5] = {nullptr, Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2], &objs[3], &objs[4]))
    return nullptr;
  if (objs[0] == Py_None) return MissingArgument(b, 0);
  const int codes[5] = {ElemColumn, ElemInt, ElemChar, ElemDouble, ElemDouble};
  NativeArray arrays[5];
  Py_ssize_t n = -1;
  for (int k = 0; k < 5; ++k)
    if (SequenceToArray(p, &n, objs[k], arrays[k].slot(), codes[k]) < 0) return nullptr;
  if (CallUnlocked(fn, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const int>(), arrays[2].as<const char>(),
                   arrays[3].as<const double>(), arrays[4].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace

PyObject *LoadBasis(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return LoadBasisWith(p, b, args, kwds, ZRVSloadbasis);
}

PyObject *LoadPresolveBasis(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return LoadBasisWith(p, b, args, kwds, ZRVSloadpresolvebasis);
}

PyObject *LoadLpSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[4] = {nullptr, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2], &objs[3])) return nullptr;
  if (objs[0] == Py_None) return MissingArgument(b, 0);
  int rows, cols;
  if (ProblemSize(p, &rows, &cols) < 0) return nullptr;
  const Py_ssize_t n[4] = {cols, rows, rows, cols};
  NativeArray arrays[4];
  for (int k = 0; k < 4; ++k)
    if (objs[k] != Py_None && FullVector(p, objs[k], n[k], ElemDouble, arrays[k]) < 0)
      return nullptr;
  if (CallUnlocked(ZRVSloadlpsol, p->prob, arrays[0].as<const double>(),
                   arrays[1].as<const double>(), arrays[2].as<const double>(),
                   arrays[3].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *LoadMipSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *x = nullptr;
  if (!ParseArgs(b, args, kwds, &x)) return nullptr;
  if (x == Py_None) return MissingArgument(b, 0);
  int cols, status = 0;
  NativeArray values;
  if (ProblemSize(p, nullptr, &cols) < 0 || FullVector(p, x, cols, ElemDouble, values) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSloadmipsol, p->prob, values.as<const double>(), &status) != 0)
    return ReportError(Self(p), nullptr);
  return PyLong_FromLong(status);
}

PyObject *AddMipSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *solval = nullptr, *colind = Py_None, *name = Py_None;
  if (!ParseArgs(b, args, kwds, &solval, &colind, &name)) return nullptr;
  if (solval == Py_None) return MissingArgument(b, 0);
  NativeArray values, cols;
  Py_ssize_t n = -1;
  if (SequenceToArray(p, &n, solval, values.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &n, colind, cols.slot(), ElemColumn) < 0)
    return nullptr;
  char *text = nullptr;
  if (name != Py_None && ElementToNative(p, name, &text, 0, ElemString) < 0) return nullptr;
  int status = CallUnlocked(ZRVSaddmipsol, p->prob, static_cast<int>(n),
                            values.as<const double>(), cols.as<const int>(),
                            static_cast<const char *>(text));
  if (text) ReleaseStrings(&text, 1);
  if (status != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *LoadDirs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return LoadDirsWith(p, b, args, kwds, ZRVSloaddirs);
}

PyObject *LoadPresolveDirs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return LoadDirsWith(p, b, args, kwds, ZRVSloadpresolvedirs);
}

PyObject *LoadBranchDirs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *colind = nullptr, *dir = nullptr;
  if (!ParseArgs(b, args, kwds, &colind, &dir)) return nullptr;
  if (colind == Py_None) return MissingArgument(b, 0);
  if (dir == Py_None) return MissingArgument(b, 1);
  NativeArray cols, dirs;
  Py_ssize_t n = -1;
  if (SequenceToArray(p, &n, colind, cols.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &n, dir, dirs.slot(), ElemInt) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSloadbranchdirs, p->prob, static_cast<int>(n), cols.as<const int>(),
                   dirs.as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetDirs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *out[5] = {Py_None, Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &out[0], &out[1], &out[2], &out[3], &out[4])) return nullptr;
  int n = 0;
  if (CallUnlocked(ZRVSgetdirs, p->prob, &n, static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<char *>(nullptr),
                   static_cast<double *>(nullptr), static_cast<double *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  const size_t widths[5] = {sizeof(int), sizeof(int), 1, sizeof(double), sizeof(double)};
  NativeArray arrays[5];
  for (int k = 0; k < 5; ++k)
    if (OutputArray(out[k], n, widths[k], arrays[k]) < 0) return nullptr;
  if (CallUnlocked(ZRVSgetdirs, p->prob, &n, arrays[0].as<int>(), arrays[1].as<int>(),
                   arrays[2].as<char>(), arrays[3].as<double>(), arrays[4].as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  const int codes[5] = {ElemColumn, ElemInt, ElemChar, ElemDouble, ElemDouble};
  for (int k = 0; k < 5; ++k)
    if (ArrayToList(p, n, arrays[k].get(), out[k], codes[k]) < 0) return nullptr;
  return PyLong_FromLong(n);
}

PyObject *LoadSecureVecs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *rowind = Py_None, *colind = Py_None;
  if (!ParseArgs(b, args, kwds, &rowind, &colind)) return nullptr;
  NativeArray rows, cols;
  Py_ssize_t nr = -1, nc = -1;
  if (SequenceToArray(p, &nr, rowind, rows.slot(), ElemRow) < 0 ||
      SequenceToArray(p, &nc, colind, cols.slot(), ElemColumn) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSloadsecurevecs, p->prob, static_cast<int>(nr < 0 ? 0 : nr),
                   static_cast<int>(nc < 0 ? 0 : nc), rows.as<const int>(),
                   cols.as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
