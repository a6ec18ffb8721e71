// Members of ranging and of solves with the basis matrix.
#include "bindings/workers_state.h"

#include "base/errors.h"
#include "bindings/state_arrays.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// Indices (first argument) and `nout` output lists of doubles, one value
// per index, filled by fn.
template <class Fn>
PyObject *RangeLines(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                     int code, int nout, Fn fn) {
  PyObject *objs[5] = {nullptr, Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2], &objs[3], &objs[4]))
    return nullptr;
  if (objs[0] == Py_None) return MissingArgument(b, 0);
  if (AllNone(b, objs + 1, nout)) {
    // AllNone names the member's first keywords; name the outputs instead.
    PyErr_Clear();
    MissingKeywords(b.keywords, 1, 1 + nout);
    return nullptr;
  }
  NativeArray ind, out[4];
  Py_ssize_t n = -1;
  if (SequenceToArray(p, &n, objs[0], ind.slot(), code) < 0) return nullptr;
  for (int k = 0; k < nout; ++k)
    if (OutputArray(objs[1 + k], n, sizeof(double), out[k]) < 0) return nullptr;
  if (CallUnlocked(fn, p->prob, static_cast<int>(n), ind.as<const int>(), out[0].as<double>(),
                   out[1].as<double>(), out[2].as<double>(), out[3].as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  for (int k = 0; k < nout; ++k)
    if (ArrayToList(p, n, out[k].get(), objs[1 + k], ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

int ObjSa4(ZRVSprob q, int n, const int *i, double *a, double *b, double *, double *) {
  return ZRVSobjsa(q, n, i, a, b);
}
int RhsSa4(ZRVSprob q, int n, const int *i, double *a, double *b, double *, double *) {
  return ZRVSrhssa(q, n, i, a, b);
}

PyObject *BasisSolve(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                     int (*fn)(ZRVSprob, double *)) {
  PyObject *vec = nullptr;
  if (!ParseArgs(b, args, kwds, &vec)) return nullptr;
  if (vec == Py_None) return MissingArgument(b, 0);
  if (!PyList_Check(vec)) {
    PyErr_SetString(ModelError, "Unexpected argument to conv_arr2obj");
    return nullptr;
  }
  int rows;
  NativeArray v;
  if (ProblemSize(p, &rows, nullptr) < 0 || FullVector(p, vec, rows, ElemDouble, v) < 0)
    return nullptr;
  if (CallUnlocked(fn, p->prob, v.as<double>()) != 0) return ReportError(Self(p), nullptr);
  if (ArrayToList(p, rows, v.get(), vec, ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

}  // namespace

PyObject *ObjSa(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RangeLines(p, b, args, kwds, ElemColumn, 2, ObjSa4);
}

PyObject *RhsSa(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RangeLines(p, b, args, kwds, ElemRow, 2, RhsSa4);
}

PyObject *BndSa(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RangeLines(p, b, args, kwds, ElemColumn, 4, ZRVSbndsa);
}

PyObject *BTran(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return BasisSolve(p, b, args, kwds, ZRVSbtran);
}

PyObject *FTran(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return BasisSolve(p, b, args, kwds, ZRVSftran);
}

PyObject *GetPivotOrder(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *out = nullptr;
  if (!ParseArgs(b, args, kwds, &out)) return nullptr;
  if (out == Py_None) return MissingArgument(b, 0);
  int rows;
  NativeArray order;
  if (ProblemSize(p, &rows, nullptr) < 0 || OutputArray(out, rows, sizeof(int), order) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetpivotorder, p->prob, order.as<int>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, rows, order.get(), out, ElemUnified) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *BasisStability(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int type = 0, norm = 1, scaled = 0;
  if (!ParseArgs(b, args, kwds, &type, &norm, &scaled)) return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVSbasisstability, p->prob, type, norm, scaled, &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

}  // namespace zrv
