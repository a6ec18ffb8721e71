// Members of general constraints (max, min, and, or, abs) and
// piecewise-linear constraints: add from arrays, read into the caller's
// lists, delete by index.
#include "bindings/workers_model.h"

#include <cstdint>

#include "base/engine_call.h"
#include "base/errors.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

bool Given(PyObject *o) { return o && o != Py_None; }

// A list of entries (index or values) with its start offsets: both or
// neither. `total` gets the entries' length (0 without them).
int ConvertParts(ProblemObject *p, const Binding &b, int start_pos, int entries_pos,
                 PyObject *start, PyObject *entries, int code, Py_ssize_t *nitems,
                 NativeArray &starts, NativeArray &values, Py_ssize_t *total) {
  *total = -1;
  if (Given(entries) && !Given(start)) return MissingArgument(b, start_pos), -1;
  if (Given(start) && !Given(entries)) return MissingArgument(b, entries_pos), -1;
  if (SequenceToArray(p, nitems, start, starts.slot(), ElemLong) < 0 ||
      SequenceToArray(p, total, entries, values.slot(), code) < 0)
    return -1;
  if (*total < 0) *total = 0;
  return 0;
}

// Index arguments by position, deleted through f(prob, n, indices).
PyObject *DeleteIndices(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                        int (*f)(ZRVSprob, int, const int *)) {
  PyObject *ind = nullptr;
  if (!ParseArgs(b, args, kwds, &ind)) return nullptr;
  if (ind == Py_None) return MissingArgument(b, 0);
  Py_ssize_t n = -1;
  NativeArray a;
  if (SequenceToArray(p, &n, ind, a.slot(), ElemInt) < 0) return nullptr;
  if (CallUnlocked(f, p->prob, static_cast<int>(n), a.as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

// first..last of the general (piecewise-linear) constraints; InterfaceError
// for an empty range. The gencons attribute counts both kinds.
int ItemRange(ProblemObject *p, bool general, const char *what, int first, int last) {
  int n = 0, pwl = 0;
  if ((general && ReadIntAttrib(p, ZRVS_GENCONS, &n) < 0) ||
      ReadIntAttrib(p, ZRVS_PWLCONS, &pwl) < 0)
    return -1;
  n = general ? n - pwl : pwl;
  if (last < first || first < 0 || last >= n) {
    PyErr_Format(InterfaceError, "Empty or invalid range of %s requested (%d..%d of %d)", what,
                 first, last, n);
    return -1;
  }
  return 0;
}

int Allocate(NativeArray &a, bool wanted, int64_t count, size_t width) {
  if (!wanted) return 0;
  const size_t bytes = static_cast<size_t>(count > 0 ? count : 0) * width;
  return NativeAllocator.allocate(NativeAllocator.context, bytes ? bytes : 1, a.slot());
}

}  // namespace

PyObject *AddGenCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *type = nullptr, *res = nullptr, *colstart = Py_None, *colind = Py_None,
           *valstart = Py_None, *val = Py_None;
  if (!ParseArgs(b, args, kwds, &type, &res, &colstart, &colind, &valstart, &val))
    return nullptr;
  if (type == Py_None) return MissingArgument(b, 0);
  if (res == Py_None) return MissingArgument(b, 1);
  Py_ssize_t n = -1, ncols, nvals;
  NativeArray types, results, cstart, cols, vstart, vals;
  if (SequenceToArray(p, &n, type, types.slot(), ElemInt) < 0 ||
      SequenceToArray(p, &n, res, results.slot(), ElemColumn) < 0 ||
      ConvertParts(p, b, 2, 3, colstart, colind, ElemColumn, &n, cstart, cols, &ncols) < 0 ||
      ConvertParts(p, b, 4, 5, valstart, val, ElemDouble, &n, vstart, vals, &nvals) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSaddgencons64, p->prob, static_cast<int>(n), static_cast<int64_t>(ncols),
                   static_cast<int64_t>(nvals), types.as<const int>(), results.as<const int>(),
                   cstart.as<const int64_t>(), cols.as<const int>(), vstart.as<const int64_t>(),
                   vals.as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetGenCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *type = Py_None, *res = Py_None, *colstart = Py_None, *colind = Py_None,
           *valstart = Py_None, *val = Py_None;
  long long maxcols = 0, maxvals = 0;
  int first = 0, last = -1;
  if (!ParseArgs(b, args, kwds, &type, &res, &colstart, &colind, &maxcols, &valstart, &val,
                 &maxvals, &first, &last))
    return nullptr;
  if (ItemRange(p, true, "general constraints", first, last) < 0) return nullptr;
  int64_t ncols = 0, nvals = 0;
  if (CallUnlocked(ZRVSgetgencons64, p->prob, static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<int64_t *>(nullptr),
                   static_cast<int *>(nullptr), int64_t{0}, &ncols,
                   static_cast<int64_t *>(nullptr), static_cast<double *>(nullptr), int64_t{0},
                   &nvals, first, last) != 0)
    return ReportError(Self(p), nullptr);
  const int64_t n = last - first + 1;
  const int64_t rc = ncols < maxcols ? ncols : (maxcols < 0 ? 0 : maxcols);
  const int64_t rv = nvals < maxvals ? nvals : (maxvals < 0 ? 0 : maxvals);
  NativeArray t, r, cs, ci, vs, vv;
  if (Allocate(t, Given(type), n, sizeof(int)) || Allocate(r, Given(res), n, sizeof(int)) ||
      Allocate(cs, Given(colstart), n + 1, sizeof(int64_t)) ||
      Allocate(ci, Given(colind), rc, sizeof(int)) ||
      Allocate(vs, Given(valstart), n + 1, sizeof(int64_t)) ||
      Allocate(vv, Given(val), rv, sizeof(double)))
    return nullptr;
  if (CallUnlocked(ZRVSgetgencons64, p->prob, t.as<int>(), r.as<int>(), cs.as<int64_t>(),
                   ci.as<int>(), rc, &ncols, vs.as<int64_t>(), vv.as<double>(), rv, &nvals,
                   first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, t.get(), type, ElemInt) < 0 ||
      ArrayToList(p, n, r.get(), res, ElemColumn) < 0 ||
      ArrayToList(p, n + 1, cs.get(), colstart, ElemLong) < 0 ||
      ArrayToList(p, rc, ci.get(), colind, ElemColumn) < 0 ||
      ArrayToList(p, n + 1, vs.get(), valstart, ElemLong) < 0 ||
      ArrayToList(p, rv, vv.get(), val, ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *DelGenCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return DeleteIndices(p, b, args, kwds, ZRVSdelgencons);
}

PyObject *AddPwlCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *col = nullptr, *res = nullptr, *start = nullptr, *x = nullptr, *y = nullptr;
  if (!ParseArgs(b, args, kwds, &col, &res, &start, &x, &y)) return nullptr;
  PyObject *objs[5] = {col, res, start, x, y};
  for (int k = 0; k < 5; ++k)
    if (objs[k] == Py_None) return MissingArgument(b, k);
  Py_ssize_t n = -1, npoints = -1;
  NativeArray cols, results, starts, xs, ys;
  if (SequenceToArray(p, &n, col, cols.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &n, res, results.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &n, start, starts.slot(), ElemLong) < 0 ||
      SequenceToArray(p, &npoints, x, xs.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &npoints, y, ys.slot(), ElemDouble) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSaddpwlcons64, p->prob, static_cast<int>(n),
                   static_cast<int64_t>(npoints), cols.as<const int>(), results.as<const int>(),
                   starts.as<const int64_t>(), xs.as<const double>(),
                   ys.as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetPwlCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *col = Py_None, *res = Py_None, *start = Py_None, *x = Py_None, *y = Py_None;
  long long maxpoints = 0;
  int first = 0, last = -1;
  if (!ParseArgs(b, args, kwds, &col, &res, &start, &x, &y, &maxpoints, &first, &last))
    return nullptr;
  if (ItemRange(p, false, "piecewise-linear constraints", first, last) < 0)
    return nullptr;
  int64_t npoints = 0;
  if (CallUnlocked(ZRVSgetpwlcons64, p->prob, static_cast<int *>(nullptr),
                   static_cast<int *>(nullptr), static_cast<int64_t *>(nullptr),
                   static_cast<double *>(nullptr), static_cast<double *>(nullptr), int64_t{0},
                   &npoints, first, last) != 0)
    return ReportError(Self(p), nullptr);
  const int64_t n = last - first + 1;
  const int64_t room = npoints < maxpoints ? npoints : (maxpoints < 0 ? 0 : maxpoints);
  NativeArray c, r, s, xs, ys;
  if (Allocate(c, Given(col), n, sizeof(int)) || Allocate(r, Given(res), n, sizeof(int)) ||
      Allocate(s, Given(start), n + 1, sizeof(int64_t)) ||
      Allocate(xs, Given(x), room, sizeof(double)) || Allocate(ys, Given(y), room, sizeof(double)))
    return nullptr;
  if (CallUnlocked(ZRVSgetpwlcons64, p->prob, c.as<int>(), r.as<int>(), s.as<int64_t>(),
                   xs.as<double>(), ys.as<double>(), room, &npoints, first, last) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, c.get(), col, ElemColumn) < 0 ||
      ArrayToList(p, n, r.get(), res, ElemColumn) < 0 ||
      ArrayToList(p, n + 1, s.get(), start, ElemLong) < 0 ||
      ArrayToList(p, room, xs.get(), x, ElemDouble) < 0 ||
      ArrayToList(p, room, ys.get(), y, ElemDouble) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *DelPwlCons(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return DeleteIndices(p, b, args, kwds, ZRVSdelpwlcons);
}

}  // namespace zrv
