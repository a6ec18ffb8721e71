// Problem methods that read the model back from the engine, one engine
// function each (bounds, types, right-hand sides, names, the matrix,
// indicators, quadratic row parts); results fill lists the caller passes.
#include "problem/readback.h"

#include <cstdint>
#include <vector>

#include "base/types.h"

#include "problem/arguments.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "controls/control_methods.h"
#include "problem/problem.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// The number of columns or rows.
int Count(ProblemObject *p, bool columns, int *n) {
  return ReadIntAttrib(p, columns ? ZRVS_ORIGINALCOLS : ZRVS_ORIGINALROWS, n);
}

// first and last as row or column indices; absent ones span the whole model.
int Range(ProblemObject *p, PyObject *first_obj, PyObject *last_obj, bool columns, int *first,
          int *last) {
  int code = columns ? ElemColumn : ElemRow;
  int n = 0;
  if ((!first_obj || first_obj == Py_None || !last_obj || last_obj == Py_None) &&
      Count(p, columns, &n) < 0)
    return -1;
  *first = 0;
  *last = n - 1;
  int32_t i;
  if (first_obj && first_obj != Py_None) {
    if (ObjectToIndex(first_obj, p, &i, code) < 0) return -1;
    *first = i;
  }
  if (last_obj && last_obj != Py_None) {
    if (ObjectToIndex(last_obj, p, &i, code) < 0) return -1;
    *last = i;
  }
  return CheckRange(*first, *last, columns);
}

// One value per row or column of a range, into the caller's list.
template <class T>
PyObject *ReadSlice(PyObject *self, PyObject *args, PyObject *kwds, const char *const *keywords,
                    bool columns, int (*fn)(ZRVSprob, T *, int, int), int code) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  PyObject *out = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseWithLegacy(args, kwds, "O|OO", keywords, nullptr, &out, &first_obj, &last_obj))
    return nullptr;
  if (out == Py_None) {
    MissingKeywords(keywords, 0, 1);
    return nullptr;
  }
  int first, last;
  if (Range(p, first_obj, last_obj, columns, &first, &last) < 0) return nullptr;
  const Py_ssize_t n = last - first + 1;
  NativeArray values;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * sizeof(T),
                               values.slot()) != 0)
    return nullptr;
  if (CallUnlocked(fn, p->prob, values.as<T>(), first, last) != 0)
    return ReportError(self, nullptr);
  if (ArrayToList(p, n, values.get(), out, code) < 0) return nullptr;
  Py_RETURN_NONE;
}

const char *const kLbKeywords[] = {"lb", "first", "last", nullptr};
const char *const kUbKeywords[] = {"ub", "first", "last", nullptr};
const char *const kColTypeKeywords[] = {"coltype", "first", "last", nullptr};
const char *const kLimitKeywords[] = {"limit", "first", "last", nullptr};
const char *const kRhsKeywords[] = {"rhs", "first", "last", nullptr};
const char *const kRangeKeywords[] = {"range", "first", "last", nullptr};
const char *const kRowTypeKeywords[] = {"rowtype", "first", "last", nullptr};

PyObject *GetLb(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(self, args, kwds, kLbKeywords, true, ZRVSgetlb, ElemDouble);
}
PyObject *GetUb(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(self, args, kwds, kUbKeywords, true, ZRVSgetub, ElemDouble);
}
PyObject *GetColType(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<char>(self, args, kwds, kColTypeKeywords, true, ZRVSgetcoltype, ElemChar);
}
PyObject *GetGlbLimit(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(self, args, kwds, kLimitKeywords, true, ZRVSgetglblimit, ElemDouble);
}
PyObject *GetRhs(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(self, args, kwds, kRhsKeywords, false, ZRVSgetrhs, ElemDouble);
}
PyObject *GetRhsRange(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(self, args, kwds, kRangeKeywords, false, ZRVSgetrhsrange, ElemDouble);
}
PyObject *GetRowType(PyObject *self, PyObject *args, PyObject *kwds) {
  return ReadSlice<char>(self, args, kwds, kRowTypeKeywords, false, ZRVSgetrowtype, ElemChar);
}

// getnames(type, names, first, last)
PyObject *GetNames(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const keywords[] = {"type", "names", "first", "last", nullptr};
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  int type = 0;
  PyObject *out = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseWithLegacy(args, kwds, "iO|OO", keywords, nullptr, &type, &out, &first_obj,
                       &last_obj))
    return nullptr;
  if (type < 1 || type > 3) {
    PyErr_SetString(InterfaceError, "Argument type must be 1 (rows), 2 (columns), or 3 (sets)");
    return nullptr;
  }
  if (out == Py_None) {
    MissingKeywords(keywords, 1, 2);
    return nullptr;
  }
  int first = 0, last = -1;
  if (type == 3) {
    int sets = 0;
    if (ReadIntAttrib(p, ZRVS_ORIGINALSETS, &sets) < 0) return nullptr;
    last = sets - 1;
    int32_t i;
    if (first_obj && first_obj != Py_None) {
      if (ObjectToIndex(first_obj, p, &i, ElemSet) < 0) return nullptr;
      first = i;
    }
    if (last_obj && last_obj != Py_None) {
      if (ObjectToIndex(last_obj, p, &i, ElemSet) < 0) return nullptr;
      last = i;
    }
    if (last < first) {
      PyErr_SetString(InterfaceError, "Empty range of sets requested");
      return nullptr;
    }
  } else if (Range(p, first_obj, last_obj, type == 2, &first, &last) < 0) {
    return nullptr;
  }
  int bytes = 0;
  if (CallUnlocked(ZRVSgetnamelist, p->prob, type, static_cast<char *>(nullptr), 0, &bytes, first,
                   last) != 0)
    return ReportError(self, nullptr);
  NativeArray buffer;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(bytes) + 1,
                               buffer.slot()) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetnamelist, p->prob, type, buffer.as<char>(), bytes + 1,
                   static_cast<int *>(nullptr), first, last) != 0)
    return ReportError(self, nullptr);
  // Point at each packed name and hand them over as strings.
  const Py_ssize_t n = last - first + 1;
  NativeArray pointers;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * sizeof(char *),
                               pointers.slot()) != 0)
    return nullptr;
  const char *cursor = buffer.as<char>();
  for (Py_ssize_t k = 0; k < n; ++k) {
    pointers.as<const char *>()[k] = cursor;
    while (*cursor) ++cursor;
    ++cursor;
  }
  if (ArrayToList(p, n, pointers.get(), out, ElemString) < 0) return nullptr;
  Py_RETURN_NONE;
}

using MatrixReader = int (*)(ZRVSprob, int64_t *, int *, double *, int64_t, int64_t *, int, int);

// getcols / getrows: the matrix over a range, in two passes.
PyObject *ReadMatrix(PyObject *self, PyObject *args, PyObject *kwds, const char *const *keywords,
                     const char *const *legacy, bool columns, MatrixReader fn) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  PyObject *start = nullptr, *index = nullptr, *coef = nullptr, *first_obj = nullptr,
           *last_obj = nullptr;
  long long maxcoefs = 0;
  if (!ParseWithLegacy(args, kwds, "OOOLOO", keywords, legacy, &start, &index, &coef, &maxcoefs,
                       &first_obj, &last_obj))
    return nullptr;
  if (start == Py_None && index == Py_None && coef == Py_None) {
    PyErr_Format(InterfaceError, "Must provide at least one of arguments %s, %s, %s", keywords[0],
                 keywords[1], keywords[2]);
    return nullptr;
  }
  int first, last;
  if (Range(p, first_obj, last_obj, columns, &first, &last) < 0) return nullptr;
  int64_t total = 0;
  if (CallUnlocked(fn, p->prob, static_cast<int64_t *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<double *>(nullptr), int64_t{0}, &total, first, last) != 0)
    return ReportError(self, nullptr);
  int64_t count = total < maxcoefs ? total : (maxcoefs < 0 ? 0 : maxcoefs);
  const Py_ssize_t nstart = last - first + 2;
  NativeArray starts, indices, values;
  const Allocator &a = NativeAllocator;
  if ((start != Py_None &&
       a.allocate(a.context, static_cast<size_t>(nstart) * sizeof(int64_t), starts.slot()) != 0) ||
      (index != Py_None &&
       a.allocate(a.context, static_cast<size_t>(count) * sizeof(int), indices.slot()) != 0) ||
      (coef != Py_None &&
       a.allocate(a.context, static_cast<size_t>(count) * sizeof(double), values.slot()) != 0))
    return nullptr;
  int64_t got = 0;
  if (CallUnlocked(fn, p->prob, starts.as<int64_t>(), indices.as<int>(), values.as<double>(),
                   count, &got, first, last) != 0)
    return ReportError(self, nullptr);
  if (ArrayToList(p, nstart, starts.get(), start, ElemLong) < 0 ||
      ArrayToList(p, count, indices.get(), index, columns ? ElemRow : ElemColumn) < 0 ||
      ArrayToList(p, count, values.get(), coef, ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetCols(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const keywords[] = {"start", "rowind", "rowcoef", "maxcoefs",
                                         "first", "last",   nullptr};
  static const char *const legacy[] = {"mstart", "mrwind", "dmatval", "size",
                                       "first",  "last",   nullptr};
  return ReadMatrix(self, args, kwds, keywords, legacy, true, ZRVSgetcols64);
}

PyObject *GetRows(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const keywords[] = {"start", "colind", "rowcoef", "maxcoefs",
                                         "first", "last",   nullptr};
  static const char *const legacy[] = {"mstart", "mclind", "dmatval", "size",
                                       "first",  "last",   nullptr};
  return ReadMatrix(self, args, kwds, keywords, legacy, false, ZRVSgetrows64);
}

// getindicators(colind, complement, first, last)
PyObject *GetIndicators(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const keywords[] = {"colind", "complement", "first", "last", nullptr};
  static const char *const legacy[] = {"inds", "comps", "first", "last", nullptr};
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  PyObject *cols = Py_None, *comps = Py_None, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseWithLegacy(args, kwds, "|OOOO", keywords, legacy, &cols, &comps, &first_obj,
                       &last_obj))
    return nullptr;
  if (cols == Py_None && comps == Py_None) {
    MissingKeywords(keywords, 0, 2);
    return nullptr;
  }
  int first, last;
  if (Range(p, first_obj, last_obj, false, &first, &last) < 0) return nullptr;
  const Py_ssize_t n = last - first + 1;
  NativeArray c, k;
  const Allocator &a = NativeAllocator;
  if (a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), c.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), k.slot()) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetindicators, p->prob, c.as<int>(), k.as<int>(), first, last) != 0)
    return ReportError(self, nullptr);
  if (ArrayToList(p, n, c.get(), cols, ElemColumn) < 0 ||
      ArrayToList(p, n, k.get(), comps, ElemInt) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

// getqrowqmatrixtriplets(row, rowqcol1, rowqcol2, rowqcoef): returns the count.
PyObject *GetQRowTriplets(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const keywords[] = {"row", "rowqcol1", "rowqcol2", "rowqcoef", nullptr};
  static const char *const legacy[] = {"irow", "mqcol1", "mqcol2", "dqe", nullptr};
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  PyObject *row_obj, *c1 = Py_None, *c2 = Py_None, *v = Py_None;
  if (!ParseWithLegacy(args, kwds, "O|OOO", keywords, legacy, &row_obj, &c1, &c2, &v))
    return nullptr;
  int32_t row;
  if (ObjectToIndex(row_obj, p, &row, ElemRow) < 0) return nullptr;
  int64_t n = 0;
  if (CallUnlocked(ZRVSgetqrowqmatrixtriplets, p->prob, static_cast<int>(row), &n,
                   static_cast<int *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<double *>(nullptr)) != 0)
    return ReportError(self, nullptr);
  NativeArray a1, a2, av;
  const Allocator &a = NativeAllocator;
  if (a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), a1.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), a2.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(double), av.slot()) != 0)
    return nullptr;
  if (n > 0 && CallUnlocked(ZRVSgetqrowqmatrixtriplets, p->prob, static_cast<int>(row), &n,
                            a1.as<int>(), a2.as<int>(), av.as<double>()) != 0)
    return ReportError(self, nullptr);
  if (ArrayToList(p, n, a1.get(), c1, ElemColumn) < 0 ||
      ArrayToList(p, n, a2.get(), c2, ElemColumn) < 0 ||
      ArrayToList(p, n, av.get(), v, ElemDouble) < 0)
    return nullptr;
  return PyLong_FromLongLong(n);
}

#define ZRV_SLICE_HELP(what, out, fn, example)                                             \
  ZRV_HELP("Read the " what " of a range of the problem into a list.",                     \
           "p." fn "(" out ", first=None, last=None)",                                     \
           out ": a list, filled in place with one item per index; first, last: the "     \
           "inclusive range as indices, names or objects (by default all).",               \
           example,                                                                       \
           "The list is cut or extended to exactly as many items as the range holds.",     \
           "problem.getVariable, problem.getConstraint, problem.getnames")

}  // namespace

PyMethodDef ReadBackMethods[] = {
    {"getlb", WithKeywords(GetLb),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("lower bounds of columns", "lb", "getlb", "lb = []; p.getlb(lb, 0, 2)")},
    {"getub", WithKeywords(GetUb),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("upper bounds of columns", "ub", "getub", "ub = []; p.getub(ub, x, y)")},
    {"getcoltype", WithKeywords(GetColType),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("column types ('C', 'B', 'I', 'S', 'R', 'P')", "coltype", "getcoltype",
                    "t = []; p.getcoltype(t)")},
    {"getglblimit", WithKeywords(GetGlbLimit),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("thresholds of semi-continuous, semi-integer and partially integer columns",
                    "limit", "getglblimit", "t = []; p.getglblimit(t, 'x', 'x')")},
    {"getrhs", WithKeywords(GetRhs),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("right-hand sides of rows", "rhs", "getrhs", "rhs = []; p.getrhs(rhs)")},
    {"getrhsrange", WithKeywords(GetRhsRange),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("ranges of rows (infinite for rows that are not ranges)", "range",
                    "getrhsrange", "r = []; p.getrhsrange(r, c, c)")},
    {"getrowtype", WithKeywords(GetRowType),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_SLICE_HELP("row types ('L', 'G', 'E', 'R', 'N')", "rowtype", "getrowtype",
                    "t = []; p.getrowtype(t, 0, 1)")},
    {"getnames", WithKeywords(GetNames),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Read the names of rows, columns or sets into a list.",
              "p.getnames(type, names, first=None, last=None)",
              "type: 1 rows, 2 columns, 3 sets; names: a list filled in place; first, last: "
              "the inclusive range (by default all).",
              "names = []; p.getnames(2, names)",
              "Unnamed entries read as R<i>, C<j> or S<k> by their current index.",
              "problem.addVariable, problem.addConstraint")},
    {"getcols", WithKeywords(GetCols),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Read the matrix coefficients of a range of columns.",
              "p.getcols(start, rowind, rowcoef, maxcoefs, first, last)",
              "start: a list for the offsets of each column's entries (one more than the "
              "columns); rowind: a list for the constraints of the entries; rowcoef: a list for "
              "the coefficients; maxcoefs: at most this many entries; first, last: the range. "
              "Any of the lists may be None, but not all. Legacy keywords: mstart, mrwind, "
              "dmatval, size.",
              "s, r, v = [], [], []; p.getcols(s, r, v, 100, 0, 1)",
              "Rows beyond the problem's constraint list come back as plain indices.",
              "problem.getrows, problem.addConstraint")},
    {"getrows", WithKeywords(GetRows),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Read the matrix coefficients of a range of rows.",
              "p.getrows(start, colind, rowcoef, maxcoefs, first, last)",
              "start: a list for the offsets of each row's entries (one more than the rows); "
              "colind: a list for the variables of the entries; rowcoef: a list for the "
              "coefficients; maxcoefs: at most this many entries; first, last: the range. Any "
              "of the lists may be None, but not all. Legacy keywords: mstart, mclind, dmatval, "
              "size.",
              "s, c, v = [], [], []; p.getrows(s, c, v, 100, 0, 0)",
              "Entries come back as the problem's var objects.",
              "problem.getcols, problem.addConstraint")},
    {"getindicators", WithKeywords(GetIndicators),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Read the indicator variables and their values of a range of rows.",
              "p.getindicators(colind, complement, first=None, last=None)",
              "colind: a list for the indicator variable of each row (-1 for none); "
              "complement: a list for 1 (active at 1), -1 (active at 0) or 0 (not an "
              "indicator row); one of the two may be None. Legacy keywords: inds, comps.",
              "v, k = [], []; p.getindicators(v, k)",
              "Indicator rows are made with addIndicator.",
              "problem.addIndicator")},
    {"getqrowqmatrixtriplets",
     WithKeywords(GetQRowTriplets),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Read the quadratic part of a row as triplets.",
              "n = p.getqrowqmatrixtriplets(row, rowqcol1, rowqcol2, rowqcoef)",
              "row: a constraint, index or name; rowqcol1, rowqcol2, rowqcoef: lists (or None) "
              "for the two variables and the coefficient of each entry, one per pair i <= j. "
              "Legacy keywords: irow, mqcol1, mqcol2, dqe.",
              "a, b, v = [], [], []; p.getqrowqmatrixtriplets(c, a, b, v)",
              "The row's activity is its linear part plus x'Qx for the symmetric Q whose "
              "entries are returned: an entry v for i != j stands for 2 v x_i x_j. Returns the "
              "number of entries.",
              "problem.addConstraint")},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace zrv
