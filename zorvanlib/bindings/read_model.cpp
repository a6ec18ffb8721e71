// Members that read the model back from the engine: bounds, types,
// right-hand sides, objective coefficients, names, the matrix and the
// quadratic objective, indicators and quadratic row parts. Results fill lists
// passed by the caller.
#include "bindings/workers.h"

#include <cstdint>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/text.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// The number of columns or rows.
int Count(ProblemObject *p, bool columns, int *n) {
  return ReadIntAttrib(p, columns ? ZRVS_ORIGINALCOLS : ZRVS_ORIGINALROWS, n);
}

// One value per row or column of a range, into the caller's list (the
// row's first argument).
template <class T>
PyObject *ReadSlice(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                    bool columns, int (*fn)(ZRVSprob, T *, int, int), int code,
                    const char *out_name) {
  PyObject *out = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &out, &first_obj, &last_obj)) return nullptr;
  if (out == Py_None) {
    if (b.keywords) return MissingArgument(b, 0);
    MissingArguments(&out_name, 1);
    return nullptr;
  }
  int first, last;
  if (ReadRange(p, first_obj, last_obj, columns, &first, &last) < 0) return nullptr;
  const Py_ssize_t n = last - first + 1;
  NativeArray values;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * sizeof(T),
                               values.slot()) != 0)
    return nullptr;
  if (CallUnlocked(fn, p->prob, values.as<T>(), first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, values.get(), out, code) < 0) return nullptr;
  Py_RETURN_NONE;
}

using MatrixReader = int (*)(ZRVSprob, int64_t *, int *, double *, int64_t, int64_t *, int, int);

// A sparse matrix over a range of lines, in two passes: the count first,
// then at most maxcoefs entries into the lists the caller gave.
PyObject *ReadMatrix(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                     bool columns, int index_code, MatrixReader fn) {
  PyObject *start = nullptr, *index = nullptr, *coef = nullptr, *first_obj = nullptr,
           *last_obj = nullptr;
  long long maxcoefs = 0;
  if (!ParseArgs(b, args, kwds, &start, &index, &coef, &maxcoefs, &first_obj, &last_obj))
    return nullptr;
  if (start == Py_None && index == Py_None && coef == Py_None) {
    PyErr_Format(InterfaceError, "Must provide at least one of arguments %s, %s, %s",
                 b.keywords[0], b.keywords[1], b.keywords[2]);
    return nullptr;
  }
  int first, last;
  if (ReadRange(p, first_obj, last_obj, columns, &first, &last) < 0) return nullptr;
  int64_t total = 0;
  if (CallUnlocked(fn, p->prob, static_cast<int64_t *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<double *>(nullptr), int64_t{0}, &total, first, last) != 0)
    return ReportError(Self(p), nullptr);
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
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, nstart, starts.get(), start, ElemLong) < 0 ||
      ArrayToList(p, count, indices.get(), index, index_code) < 0 ||
      ArrayToList(p, count, values.get(), coef, ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

// The packed names of first..last of one kind as a new list of str.
PyObject *NameList(ProblemObject *p, int type, int first, int last) {
  int bytes = 0;
  if (CallUnlocked(ZRVSgetnamelist, p->prob, type, static_cast<char *>(nullptr), 0, &bytes,
                   first, last) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray buffer;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(bytes) + 1,
                               buffer.slot()) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetnamelist, p->prob, type, buffer.as<char>(), bytes + 1,
                   static_cast<int *>(nullptr), first, last) != 0)
    return ReportError(Self(p), nullptr);
  const Py_ssize_t n = last - first + 1;
  PyObject *list = PyList_New(n);
  if (!list) return nullptr;
  const char *cursor = buffer.as<char>();
  for (Py_ssize_t k = 0; k < n; ++k) {
    PyObject *name = TextFromEngine(cursor);
    if (!name) {
      Py_DECREF(list);
      return nullptr;
    }
    PyList_SET_ITEM(list, k, name);
    while (*cursor) ++cursor;
    ++cursor;
  }
  return list;
}

// type (1 rows, 2 columns, 3 sets) and its range; absent ends span all.
int NameRange(ProblemObject *p, int type, PyObject *first_obj, PyObject *last_obj, int *first,
              int *last) {
  if (type < 1 || type > 3) {
    PyErr_SetString(InterfaceError, "Argument type must be 1 (rows), 2 (columns), or 3 (sets)");
    return -1;
  }
  if (type != 3) return ReadRange(p, first_obj, last_obj, type == 2, first, last);
  int sets = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALSETS, &sets) < 0) return -1;
  *first = 0;
  *last = sets - 1;
  int32_t i;
  if (first_obj && first_obj != Py_None) {
    if (ObjectToIndex(first_obj, p, &i, ElemSet) < 0) return -1;
    *first = i;
  }
  if (last_obj && last_obj != Py_None) {
    if (ObjectToIndex(last_obj, p, &i, ElemSet) < 0) return -1;
    *last = i;
  }
  if (*last < *first) {
    PyErr_SetString(InterfaceError, "Empty range of sets requested");
    return -1;
  }
  return 0;
}

}  // namespace

int ReadRange(ProblemObject *p, PyObject *first_obj, PyObject *last_obj, bool columns,
              int *first, int *last) {
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

PyObject *GetLb(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, true, ZRVSgetlb, ElemDouble, "lb");
}
PyObject *GetUb(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, true, ZRVSgetub, ElemDouble, "ub");
}
PyObject *GetColType(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<char>(p, b, args, kwds, true, ZRVSgetcoltype, ElemChar, "coltype");
}
PyObject *GetGlbLimit(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, true, ZRVSgetglblimit, ElemDouble, "limit");
}
PyObject *GetObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, true, ZRVSgetobj, ElemDouble, "objcoef");
}
PyObject *GetRhs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, false, ZRVSgetrhs, ElemDouble, "rhs");
}
PyObject *GetRhsRange(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<double>(p, b, args, kwds, false, ZRVSgetrhsrange, ElemDouble, "range");
}
PyObject *GetRowType(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadSlice<char>(p, b, args, kwds, false, ZRVSgetrowtype, ElemChar, "rowtype");
}

PyObject *GetObjN(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int objidx = 0, first = 0, last = -1;
  PyObject *out = nullptr;
  if (!ParseArgs(b, args, kwds, &objidx, &out, &first, &last)) return nullptr;
  if (CheckRange(first, last, true) < 0) return nullptr;
  if (out == Py_None) return MissingArgument(b, 1);
  const Py_ssize_t n = last - first + 1;
  NativeArray values;
  if (NativeAllocator.allocate(NativeAllocator.context, static_cast<size_t>(n) * sizeof(double),
                               values.slot()) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetobjn, p->prob, objidx, values.as<double>(), first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, values.get(), out, ElemDouble) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetNames(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int type = 0;
  PyObject *out = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &type, &out, &first_obj, &last_obj)) return nullptr;
  int first = 0, last = -1;
  if (NameRange(p, type, first_obj, last_obj, &first, &last) < 0) return nullptr;
  if (out == Py_None) return MissingArgument(b, 1);
  PyObject *names = NameList(p, type, first, last);
  if (!names) return nullptr;
  int rc = PyList_Check(out) ? PyList_SetSlice(out, 0, PyList_GET_SIZE(out), names) : -1;
  Py_DECREF(names);
  if (rc < 0) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Unexpected argument to conv_arr2obj");
    return nullptr;
  }
  Py_RETURN_NONE;
}

PyObject *GetNameList(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int type = 0;
  PyObject *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &type, &first_obj, &last_obj)) return nullptr;
  int first = 0, last = -1;
  if (NameRange(p, type, first_obj, last_obj, &first, &last) < 0) return nullptr;
  return NameList(p, type, first, last);
}

PyObject *GetIndexFromName(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int type = 0;
  const char *name = nullptr;
  if (!ParseArgs(b, args, kwds, &type, &name)) return nullptr;
  if (type < 1 || type > 3) {
    PyErr_SetString(InterfaceError, "Argument type must be 1 (rows), 2 (columns), or 3 (sets)");
    return nullptr;
  }
  int index = -1;
  if (CallUnlocked(ZRVSgetindex, p->prob, type, name, &index) != 0)
    return ReportError(Self(p), nullptr);
  return PyLong_FromLong(index);
}

PyObject *GetCols(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadMatrix(p, b, args, kwds, true, ElemRow, ZRVSgetcols64);
}
PyObject *GetRows(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadMatrix(p, b, args, kwds, false, ElemColumn, ZRVSgetrows64);
}
PyObject *GetMQObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return ReadMatrix(p, b, args, kwds, true, ElemColumn, ZRVSgetmqobj64);
}

PyObject *GetIndicators(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *cols = Py_None, *comps = Py_None, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &cols, &comps, &first_obj, &last_obj)) return nullptr;
  if (cols == Py_None && comps == Py_None) {
    MissingKeywords(b.keywords, 0, 2);
    return nullptr;
  }
  int first, last;
  if (ReadRange(p, first_obj, last_obj, false, &first, &last) < 0) return nullptr;
  const Py_ssize_t n = last - first + 1;
  NativeArray c, k;
  const Allocator &a = NativeAllocator;
  if (a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), c.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), k.slot()) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetindicators, p->prob, c.as<int>(), k.as<int>(), first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, c.get(), cols, ElemColumn) < 0 ||
      ArrayToList(p, n, k.get(), comps, ElemInt) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *GetQRowTriplets(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *row_obj, *c1 = Py_None, *c2 = Py_None, *v = Py_None;
  if (!ParseArgs(b, args, kwds, &row_obj, &c1, &c2, &v)) return nullptr;
  int32_t row;
  if (ObjectToIndex(row_obj, p, &row, ElemRow) < 0) return nullptr;
  int64_t n = 0;
  if (CallUnlocked(ZRVSgetqrowqmatrixtriplets, p->prob, static_cast<int>(row), &n,
                   static_cast<int *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<double *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray a1, a2, av;
  const Allocator &a = NativeAllocator;
  if (a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), a1.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(int), a2.slot()) != 0 ||
      a.allocate(a.context, static_cast<size_t>(n) * sizeof(double), av.slot()) != 0)
    return nullptr;
  if (n > 0 && CallUnlocked(ZRVSgetqrowqmatrixtriplets, p->prob, static_cast<int>(row), &n,
                            a1.as<int>(), a2.as<int>(), av.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, a1.get(), c1, ElemColumn) < 0 ||
      ArrayToList(p, n, a2.get(), c2, ElemColumn) < 0 ||
      ArrayToList(p, n, av.get(), v, ElemDouble) < 0)
    return nullptr;
  return PyLong_FromLongLong(n);
}

}  // namespace zrv
