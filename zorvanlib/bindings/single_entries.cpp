// Members of single entries: matrix coefficients (one or a batch), entries
// of the quadratic objective and of quadratic rows, a row's quadratic
// matrix by columns, the rows that have one, and its removal. Indices are
// integers, names or the problem's var and constraint objects.
#include "bindings/workers.h"
#include "bindings/workers_model.h"

#include <cstdint>

#include "base/engine_call.h"
#include "base/errors.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// Converts objs[k] by codes[k] into indices; 0 or -1.
int Indices(ProblemObject *p, int n, PyObject *const *objs, const int *codes, int *out) {
  for (int k = 0; k < n; ++k) {
    int32_t i;
    if (ObjectToIndex(objs[k], p, &i, codes[k]) < 0) return -1;
    out[k] = i;
  }
  return 0;
}

}  // namespace

PyObject *ChgCoef(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2];
  double coef = 0;
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &coef)) return nullptr;
  const int codes[2] = {ElemRow, ElemColumn};
  int ind[2];
  if (Indices(p, 2, objs, codes, ind) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgcoef, p->prob, ind[0], ind[1], coef) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *ChgMCoef(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3] = {nullptr, nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2])) return nullptr;
  const int codes[3] = {ElemRow, ElemColumn, ElemDouble};
  NativeArray arrays[3];
  Py_ssize_t n = -1;
  for (int k = 0; k < 3; ++k) {
    if (objs[k] == Py_None) return MissingArgument(b, k);
    if (SequenceToArray(p, &n, objs[k], arrays[k].slot(), codes[k]) < 0) return nullptr;
  }
  if (CallUnlocked(ZRVSchgmcoef64, p->prob, static_cast<int64_t>(n), arrays[0].as<const int>(),
                   arrays[1].as<const int>(), arrays[2].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetCoef(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2];
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemRow, ElemColumn};
  int ind[2];
  if (Indices(p, 2, objs, codes, ind) < 0) return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVSgetcoef, p->prob, ind[0], ind[1], &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

PyObject *ChgQObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2];
  double coef = 0;
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &coef)) return nullptr;
  const int codes[2] = {ElemColumn, ElemColumn};
  int ind[2];
  if (Indices(p, 2, objs, codes, ind) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgqobj, p->prob, ind[0], ind[1], coef) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetQObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2];
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemColumn, ElemColumn};
  int ind[2];
  if (Indices(p, 2, objs, codes, ind) < 0) return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVSgetqobj, p->prob, ind[0], ind[1], &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

PyObject *ChgQRowCoeff(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3];
  double coef = 0;
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2], &coef)) return nullptr;
  const int codes[3] = {ElemRow, ElemColumn, ElemColumn};
  int ind[3];
  if (Indices(p, 3, objs, codes, ind) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgqrowcoeff, p->prob, ind[0], ind[1], ind[2], coef) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetQRowCoeff(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3];
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2])) return nullptr;
  const int codes[3] = {ElemRow, ElemColumn, ElemColumn};
  int ind[3];
  if (Indices(p, 3, objs, codes, ind) < 0) return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVSgetqrowcoeff, p->prob, ind[0], ind[1], ind[2], &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

PyObject *GetQRowQMatrix(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *row_obj, *start, *index, *coef, *first_obj = nullptr, *last_obj = nullptr;
  long long maxcoefs = 0;
  if (!ParseArgs(b, args, kwds, &row_obj, &start, &index, &coef, &maxcoefs, &first_obj,
                 &last_obj))
    return nullptr;
  if (start == Py_None && index == Py_None && coef == Py_None) {
    PyErr_Format(InterfaceError, "Must provide at least one of arguments %s, %s, %s",
                 b.keywords[1], b.keywords[2], b.keywords[3]);
    return nullptr;
  }
  int32_t row;
  int first, last;
  if (ObjectToIndex(row_obj, p, &row, ElemRow) < 0 ||
      ReadRange(p, first_obj, last_obj, true, &first, &last) < 0)
    return nullptr;
  int64_t total = 0;
  if (CallUnlocked(ZRVSgetqrowqmatrix, p->prob, int{row}, static_cast<int64_t *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<double *>(nullptr), int64_t{0},
                   &total, first, last) != 0)
    return ReportError(Self(p), nullptr);
  const int64_t count = total < maxcoefs ? total : (maxcoefs < 0 ? 0 : maxcoefs);
  const Py_ssize_t nstart = last - first + 2;
  NativeArray starts, indices, values;
  const Allocator &a = NativeAllocator;
  if ((start != Py_None &&
       a.allocate(a.context, static_cast<size_t>(nstart) * sizeof(int64_t), starts.slot()) !=
           0) ||
      (index != Py_None &&
       a.allocate(a.context, static_cast<size_t>(count) * sizeof(int) + 1, indices.slot()) !=
           0) ||
      (coef != Py_None &&
       a.allocate(a.context, static_cast<size_t>(count) * sizeof(double) + 1, values.slot()) !=
           0))
    return nullptr;
  if (CallUnlocked(ZRVSgetqrowqmatrix, p->prob, int{row}, starts.as<int64_t>(),
                   indices.as<int>(), values.as<double>(), count, &total, first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, nstart, starts.get(), start, ElemLong) < 0 ||
      ArrayToList(p, count, indices.get(), index, ElemColumn) < 0 ||
      ArrayToList(p, count, values.get(), coef, ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetQRows(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *rows = Py_None;
  if (!ParseArgs(b, args, kwds, &rows)) return nullptr;
  int n = 0;
  if (CallUnlocked(ZRVSgetqrows, p->prob, &n, static_cast<int *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  if (rows != Py_None) {
    NativeArray a;
    if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * sizeof(int) + 1,
                                 a.slot()) != 0)
      return nullptr;
    if (CallUnlocked(ZRVSgetqrows, p->prob, &n, a.as<int>()) != 0)
      return ReportError(Self(p), nullptr);
    if (ArrayToList(p, n, a.get(), rows, ElemRow) < 0) return nullptr;
  }
  return PyLong_FromLong(n);
}

PyObject *DelQMatrix(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *row_obj;
  if (!ParseArgs(b, args, kwds, &row_obj)) return nullptr;
  int32_t row;
  if (ObjectToIndex(row_obj, p, &row, ElemRow) < 0) return nullptr;
  if (CallUnlocked(ZRVSdelqmatrix, p->prob, int{row}) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
