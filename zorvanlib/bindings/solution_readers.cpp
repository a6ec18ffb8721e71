// Members that read the last solution and basis, their single entries,
// infeasibilities and rays, and that compute values from a given point.
#include "bindings/workers_state.h"

#include "base/errors.h"
#include "bindings/state_arrays.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

using SolutionReader = int (*)(ZRVSprob, double *, double *, double *, double *);

// x, slack, duals, djs into the lists given (at least one).
PyObject *ReadSolution(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                       SolutionReader fn) {
  PyObject *out[4] = {Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &out[0], &out[1], &out[2], &out[3])) return nullptr;
  if (AllNone(b, out, 4)) return nullptr;
  int rows, cols;
  if (ProblemSize(p, &rows, &cols) < 0) return nullptr;
  const Py_ssize_t n[4] = {cols, rows, rows, cols};
  NativeArray arrays[4];
  for (int k = 0; k < 4; ++k)
    if (OutputArray(out[k], n[k], sizeof(double), arrays[k]) < 0) return nullptr;
  if (CallUnlocked(fn, p->prob, arrays[0].as<double>(), arrays[1].as<double>(),
                   arrays[2].as<double>(), arrays[3].as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  for (int k = 0; k < 4; ++k)
    if (ArrayToList(p, n[k], arrays[k].get(), out[k], ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

// An index argument: None (or absent) gives -1, which the engine skips.
int OptionalIndex(ProblemObject *p, PyObject *obj, int code, int *index) {
  *index = -1;
  if (!obj || obj == Py_None) return 0;
  int32_t i;
  if (ObjectToIndex(obj, p, &i, code) < 0) return -1;
  *index = i;
  return 0;
}

PyObject *FloatOrNone(bool present, double v) {
  if (!present) Py_RETURN_NONE;
  return PyFloat_FromDouble(v);
}

using InfeasReader = int (*)(ZRVSprob, int *, int *, int *, int *, int *, int *, int *, int *);

// The indices of infeasible columns and rows into the lists given.
PyObject *ReadInfeas(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                     InfeasReader fn) {
  PyObject *out[4] = {Py_None, Py_None, Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &out[0], &out[1], &out[2], &out[3])) return nullptr;
  if (AllNone(b, out, 4)) return nullptr;
  int count[4] = {0, 0, 0, 0};
  if (CallUnlocked(fn, p->prob, &count[0], &count[1], &count[2], &count[3],
                   static_cast<int *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<int *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray arrays[4];
  for (int k = 0; k < 4; ++k)
    if (OutputArray(out[k], count[k], sizeof(int), arrays[k]) < 0) return nullptr;
  if (CallUnlocked(fn, p->prob, &count[0], &count[1], &count[2], &count[3], arrays[0].as<int>(),
                   arrays[1].as<int>(), arrays[2].as<int>(), arrays[3].as<int>()) != 0)
    return ReportError(Self(p), nullptr);
  const int codes[4] = {ElemColumn, ElemRow, ElemRow, ElemColumn};
  for (int k = 0; k < 4; ++k)
    if (ArrayToList(p, count[k], arrays[k].get(), out[k], codes[k]) < 0) return nullptr;
  Py_RETURN_NONE;
}

using RayReader = int (*)(ZRVSprob, double *, int *);

// The ray as a new list, or None when the last solve left none.
PyObject *ReadRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                  RayReader fn, bool columns) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  int rows, cols, has = 0;
  if (ProblemSize(p, &rows, &cols) < 0) return nullptr;
  const Py_ssize_t n = columns ? cols : rows;
  if (CallUnlocked(fn, p->prob, static_cast<double *>(nullptr), &has) != 0)
    return ReportError(Self(p), nullptr);
  if (!has) Py_RETURN_NONE;
  NativeArray ray;
  if (NativeAllocator.allocate(NativeAllocator.context,
                               static_cast<size_t>(n > 0 ? n : 1) * sizeof(double),
                               ray.slot()) != 0)
    return nullptr;
  if (CallUnlocked(fn, p->prob, ray.as<double>(), &has) != 0) return ReportError(Self(p), nullptr);
  PyObject *list = PyList_New(0);
  if (!list || ArrayToList(p, n, ray.get(), list, ElemDouble) < 0) {
    Py_XDECREF(list);
    return nullptr;
  }
  return list;
}

PyObject *HasRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                 RayReader fn) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  int has = 0;
  if (CallUnlocked(fn, p->prob, static_cast<double *>(nullptr), &has) != 0)
    return ReportError(Self(p), nullptr);
  return PyBool_FromLong(has);
}

}  // namespace

PyObject *GetLpSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSolution(p, b, args, kwds, ZRVSgetlpsol);
}

PyObject *GetLastBarSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSolution(p, b, args, kwds, ZRVSgetlastbarsol);
}

PyObject *GetMipSol(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *out[2] = {Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &out[0], &out[1])) return nullptr;
  if (AllNone(b, out, 2)) return nullptr;
  int rows, cols;
  if (ProblemSize(p, &rows, &cols) < 0) return nullptr;
  NativeArray x, slack;
  if (OutputArray(out[0], cols, sizeof(double), x) < 0 ||
      OutputArray(out[1], rows, sizeof(double), slack) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetmipsol, p->prob, x.as<double>(), slack.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, cols, x.get(), out[0], ElemDouble) < 0 ||
      ArrayToList(p, rows, slack.get(), out[1], ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetLpSolVal(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *col_obj = Py_None, *row_obj = Py_None;
  if (!ParseArgs(b, args, kwds, &col_obj, &row_obj)) return nullptr;
  int col, row;
  if (OptionalIndex(p, col_obj, ElemColumn, &col) < 0 ||
      OptionalIndex(p, row_obj, ElemRow, &row) < 0)
    return nullptr;
  double x = 0, slack = 0, dual = 0, dj = 0;
  if (CallUnlocked(ZRVSgetlpsolval, p->prob, col, row, &x, &slack, &dual, &dj) != 0)
    return ReportError(Self(p), nullptr);
  return Py_BuildValue("(NNNN)", FloatOrNone(col >= 0, x), FloatOrNone(row >= 0, slack),
                       FloatOrNone(row >= 0, dual), FloatOrNone(col >= 0, dj));
}

PyObject *GetMipSolVal(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *col_obj = Py_None, *row_obj = Py_None;
  if (!ParseArgs(b, args, kwds, &col_obj, &row_obj)) return nullptr;
  int col, row;
  if (OptionalIndex(p, col_obj, ElemColumn, &col) < 0 ||
      OptionalIndex(p, row_obj, ElemRow, &row) < 0)
    return nullptr;
  double x = 0, slack = 0;
  if (CallUnlocked(ZRVSgetmipsolval, p->prob, col, row, &x, &slack) != 0)
    return ReportError(Self(p), nullptr);
  return Py_BuildValue("(NN)", FloatOrNone(col >= 0, x), FloatOrNone(row >= 0, slack));
}

PyObject *GetBasis(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *out[2] = {Py_None, Py_None};
  if (!ParseArgs(b, args, kwds, &out[0], &out[1])) return nullptr;
  if (AllNone(b, out, 2)) return nullptr;
  int rows, cols;
  if (ProblemSize(p, &rows, &cols) < 0) return nullptr;
  NativeArray rstat, cstat;
  if (OutputArray(out[0], rows, sizeof(int), rstat) < 0 ||
      OutputArray(out[1], cols, sizeof(int), cstat) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetbasis, p->prob, rstat.as<int>(), cstat.as<int>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, rows, rstat.get(), out[0], ElemInt) < 0 ||
      ArrayToList(p, cols, cstat.get(), out[1], ElemInt) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetBasisVal(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *row_obj = Py_None, *col_obj = Py_None;
  if (!ParseArgs(b, args, kwds, &row_obj, &col_obj)) return nullptr;
  int row, col;
  if (OptionalIndex(p, row_obj, ElemRow, &row) < 0 ||
      OptionalIndex(p, col_obj, ElemColumn, &col) < 0)
    return nullptr;
  int rstat = 0, cstat = 0;
  if (CallUnlocked(ZRVSgetbasisval, p->prob, row, col, &rstat, &cstat) != 0)
    return ReportError(Self(p), nullptr);
  PyObject *r = row >= 0 ? PyLong_FromLong(rstat) : Py_NewRef(Py_None);
  PyObject *c = col >= 0 ? PyLong_FromLong(cstat) : Py_NewRef(Py_None);
  return Py_BuildValue("(NN)", r, c);
}

PyObject *GetInfeas(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadInfeas(p, b, args, kwds, ZRVSgetinfeas);
}

PyObject *GetScaledInfeas(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadInfeas(p, b, args, kwds, ZRVSgetscaledinfeas);
}

PyObject *GetPrimalRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadRay(p, b, args, kwds, ZRVSgetprimalray, true);
}

PyObject *GetDualRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadRay(p, b, args, kwds, ZRVSgetdualray, false);
}

PyObject *HasPrimalRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return HasRay(p, b, args, kwds, ZRVSgetprimalray);
}

PyObject *HasDualRay(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return HasRay(p, b, args, kwds, ZRVSgetdualray);
}

PyObject *GetUnbVec(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  if (!ParseArgs(b, args, kwds)) return nullptr;
  int seq = -1;
  if (CallUnlocked(ZRVSgetunbvec, p->prob, &seq) != 0) return ReportError(Self(p), nullptr);
  return ElementToObject(p, &seq, 0, ElemUnified);
}

PyObject *CalcObjective(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *solution = nullptr;
  if (!ParseArgs(b, args, kwds, &solution)) return nullptr;
  if (solution == Py_None) return MissingArgument(b, 0);
  int cols;
  NativeArray x;
  if (ProblemSize(p, nullptr, &cols) < 0 || FullVector(p, solution, cols, ElemDouble, x) < 0)
    return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVScalcobjective, p->prob, x.as<const double>(), &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

PyObject *CalcObjN(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int objidx = 0;
  PyObject *solution = nullptr;
  if (!ParseArgs(b, args, kwds, &objidx, &solution)) return nullptr;
  if (solution == Py_None) return MissingArgument(b, 1);
  int cols;
  NativeArray x;
  if (ProblemSize(p, nullptr, &cols) < 0 || FullVector(p, solution, cols, ElemDouble, x) < 0)
    return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVScalcobjn, p->prob, objidx, x.as<const double>(), &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

PyObject *CalcReducedCosts(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *duals = nullptr, *solution = Py_None, *out = nullptr;
  if (!ParseArgs(b, args, kwds, &duals, &solution, &out)) return nullptr;
  if (duals == Py_None) return MissingArgument(b, 0);
  if (out == Py_None) return MissingArgument(b, 2);
  int rows, cols;
  NativeArray y, x, djs;
  if (ProblemSize(p, &rows, &cols) < 0 || FullVector(p, duals, rows, ElemDouble, y) < 0 ||
      (solution != Py_None && FullVector(p, solution, cols, ElemDouble, x) < 0) ||
      OutputArray(out, cols, sizeof(double), djs) < 0)
    return nullptr;
  if (CallUnlocked(ZRVScalcreducedcosts, p->prob, y.as<const double>(), x.as<const double>(),
                   djs.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, cols, djs.get(), out, ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *CalcSlacks(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *solution = nullptr, *out = nullptr;
  if (!ParseArgs(b, args, kwds, &solution, &out)) return nullptr;
  if (solution == Py_None) return MissingArgument(b, 0);
  if (out == Py_None) return MissingArgument(b, 1);
  int rows, cols;
  NativeArray x, slacks;
  if (ProblemSize(p, &rows, &cols) < 0 || FullVector(p, solution, cols, ElemDouble, x) < 0 ||
      OutputArray(out, rows, sizeof(double), slacks) < 0)
    return nullptr;
  if (CallUnlocked(ZRVScalcslacks, p->prob, x.as<const double>(), slacks.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, rows, slacks.get(), out, ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *CalcSolInfo(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *solution = nullptr, *duals = Py_None;
  int property = 0;
  if (!ParseArgs(b, args, kwds, &solution, &duals, &property)) return nullptr;
  if (solution == Py_None) return MissingArgument(b, 0);
  int rows, cols;
  NativeArray x, y;
  if (ProblemSize(p, &rows, &cols) < 0 || FullVector(p, solution, cols, ElemDouble, x) < 0 ||
      (duals != Py_None && FullVector(p, duals, rows, ElemDouble, y) < 0))
    return nullptr;
  double v = 0;
  if (CallUnlocked(ZRVScalcsolinfo, p->prob, x.as<const double>(), y.as<const double>(),
                   property, &v) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(v);
}

}  // namespace zrv
