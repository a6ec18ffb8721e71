// loadproblem: a whole model from arrays, replacing the current one. The
// linear part is one engine load; quadratic objective and rows, column types
// and thresholds, sets and names follow. With any of those the model is
// built in a scratch problem first and copied over only when every step has
// succeeded, so a failed load leaves the problem as it was.
#include "bindings/workers.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "problem/files.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// The arguments of loadproblem, by keyword position.
enum Arg {
  kRowType = 1, kRhs, kRng, kObjCoef, kStart, kColLen, kRowInd, kRowCoef, kLb, kUb,
  kObjQCol1, kObjQCol2, kObjQCoef, kQRowInd, kNRowQCoefs, kRowQCol1, kRowQCol2, kRowQCoef,
  kColType, kEntInd, kLimit, kSetType, kSetStart, kSetInd, kRefVal, kColNames, kRowNames,
  kArgs
};

// The converted arrays and their lengths.
struct LoadArrays {
  PyObject *obj[kArgs] = {};
  NativeArray a[kArgs];
  Py_ssize_t nrows = -1, ncols = -1, ncoefs = -1, nq = -1, nqrows = -1, nqcoefs = -1,
             nents = -1, nsets = -1, nelems = -1, nstart = -1;
  template <class T>
  const T *at(int k) const { return a[k].as<const T>(); }
  bool given(int k) const { return obj[k] && obj[k] != Py_None; }
};

int Convert(ProblemObject *p, LoadArrays &l, int k, Py_ssize_t *n, int code) {
  return SequenceToArray(p, n, l.obj[k], l.a[k].slot(), code);
}

// A group of arguments given all together or not at all; InterfaceError
// naming the first one missing.
int AllOrNone(const Binding &b, const LoadArrays &l, std::initializer_list<int> group) {
  bool any = false;
  for (int k : group) any = any || l.given(k);
  if (!any) return 0;
  for (int k : group)
    if (!l.given(k)) return MissingArgument(b, k), -1;
  return 0;
}

// Every argument into native form, lengths checked group by group.
int ConvertAll(ProblemObject *p, const Binding &b, LoadArrays &l) {
  for (int k : {kRowType, kRhs})
    if (!l.given(k)) return MissingArgument(b, k), -1;
  if (AllOrNone(b, l, {kRowInd, kRowCoef}) < 0 ||
      AllOrNone(b, l, {kObjQCol1, kObjQCol2, kObjQCoef}) < 0 ||
      AllOrNone(b, l, {kQRowInd, kNRowQCoefs, kRowQCol1, kRowQCol2, kRowQCoef}) < 0 ||
      AllOrNone(b, l, {kColType, kEntInd}) < 0 ||
      AllOrNone(b, l, {kSetType, kSetStart, kSetInd, kRefVal}) < 0)
    return -1;
  if (l.given(kLimit) && !l.given(kColType)) return MissingArgument(b, kColType), -1;
  Py_ssize_t nstart = -1;
  if (Convert(p, l, kRowType, &l.nrows, ElemChar) < 0 ||
      Convert(p, l, kRhs, &l.nrows, ElemDouble) < 0 ||
      Convert(p, l, kRng, &l.nrows, ElemDouble) < 0 ||
      Convert(p, l, kObjCoef, &l.ncols, ElemDouble) < 0 ||
      Convert(p, l, kColLen, &l.ncols, ElemInt) < 0 ||
      Convert(p, l, kLb, &l.ncols, ElemDouble) < 0 ||
      Convert(p, l, kUb, &l.ncols, ElemDouble) < 0 ||
      Convert(p, l, kStart, &nstart, ElemLong) < 0 ||
      Convert(p, l, kRowInd, &l.ncoefs, ElemInt) < 0 ||
      Convert(p, l, kRowCoef, &l.ncoefs, ElemDouble) < 0 ||
      Convert(p, l, kObjQCol1, &l.nq, ElemInt) < 0 ||
      Convert(p, l, kObjQCol2, &l.nq, ElemInt) < 0 ||
      Convert(p, l, kObjQCoef, &l.nq, ElemDouble) < 0 ||
      Convert(p, l, kQRowInd, &l.nqrows, ElemInt) < 0 ||
      Convert(p, l, kNRowQCoefs, &l.nqrows, ElemInt) < 0 ||
      Convert(p, l, kRowQCol1, &l.nqcoefs, ElemInt) < 0 ||
      Convert(p, l, kRowQCol2, &l.nqcoefs, ElemInt) < 0 ||
      Convert(p, l, kRowQCoef, &l.nqcoefs, ElemDouble) < 0 ||
      Convert(p, l, kColType, &l.nents, ElemChar) < 0 ||
      Convert(p, l, kEntInd, &l.nents, ElemInt) < 0 ||
      Convert(p, l, kLimit, &l.nents, ElemDouble) < 0 ||
      Convert(p, l, kSetType, &l.nsets, ElemChar) < 0 ||
      Convert(p, l, kSetStart, &l.nsets, ElemLong) < 0 ||
      Convert(p, l, kSetInd, &l.nelems, ElemInt) < 0 ||
      Convert(p, l, kRefVal, &l.nelems, ElemDouble) < 0)
    return -1;
  if (l.ncols < 0) l.ncols = nstart;  // only start says how many columns there are
  if (l.ncols < 0) return MissingArgument(b, kObjCoef), -1;
  if (l.ncoefs < 0) l.ncoefs = 0;
  if (l.ncoefs > 0 && nstart < 0) return MissingArgument(b, kStart), -1;
  if (nstart >= 0 && nstart != l.ncols && nstart != l.ncols + 1) {
    PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                 static_cast<int>(l.ncols), static_cast<int>(nstart));
    return -1;
  }
  l.nstart = nstart;
  return 0;
}

// Loads the arrays into prob. 0, or the failing engine status.
int LoadInto(ZRVSprob prob, const char *name, const LoadArrays &l,
             const std::vector<int64_t> &start, const char *colnames, const char *rownames) {
  const int ncols = static_cast<int>(l.ncols), nrows = static_cast<int>(l.nrows);
  int rc = ZRVSloadlp64(prob, name, ncols, nrows, l.at<char>(kRowType), l.at<double>(kRhs),
                        l.at<double>(kRng), l.at<double>(kObjCoef), start.data(),
                        l.at<int>(kColLen), l.at<int>(kRowInd), l.at<double>(kRowCoef),
                        l.at<double>(kLb), l.at<double>(kUb));
  if (rc == 0 && l.nq > 0)
    rc = ZRVSchgmqobj64(prob, l.nq, l.at<int>(kObjQCol1), l.at<int>(kObjQCol2),
                        l.at<double>(kObjQCoef));
  int64_t offset = 0;
  for (Py_ssize_t r = 0; rc == 0 && r < l.nqrows; ++r) {
    const int64_t n = l.at<int>(kNRowQCoefs)[r];
    if (n < 0 || offset + n > l.nqcoefs) return -2;  // the counts overrun the entries
    rc = ZRVSaddqmatrix64(prob, l.at<int>(kQRowInd)[r], n, l.at<int>(kRowQCol1) + offset,
                          l.at<int>(kRowQCol2) + offset, l.at<double>(kRowQCoef) + offset);
    offset += n;
  }
  if (rc == 0 && l.nents > 0) {
    rc = ZRVSchgcoltype(prob, static_cast<int>(l.nents), l.at<int>(kEntInd),
                        l.at<char>(kColType));
    for (Py_ssize_t k = 0; rc == 0 && l.at<double>(kLimit) && k < l.nents; ++k)
      if (l.at<double>(kLimit)[k] > ZRVS_MINUSINFINITY)
        rc = ZRVSchgglblimit(prob, 1, l.at<int>(kEntInd) + k, l.at<double>(kLimit) + k);
  }
  if (rc == 0 && l.nsets > 0)
    rc = ZRVSaddsets64(prob, static_cast<int>(l.nsets), l.nelems < 0 ? 0 : l.nelems,
                       l.at<char>(kSetType), l.at<int64_t>(kSetStart), l.at<int>(kSetInd),
                       l.at<double>(kRefVal));
  if (rc == 0 && colnames && ncols > 0) rc = ZRVSaddnames(prob, 2, colnames, 0, ncols - 1);
  if (rc == 0 && rownames && nrows > 0) rc = ZRVSaddnames(prob, 1, rownames, 0, nrows - 1);
  return rc;
}

// A scratch engine problem, destroyed with its holder.
struct Scratch {
  ZRVSprob prob = nullptr;
  ~Scratch() {
    if (prob) ZRVSdestroyprob(prob);
  }
};

}  // namespace

PyObject *LoadProblem(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  const char *name = nullptr;
  LoadArrays l;
  PyObject **o = l.obj;
  if (!ParseArgs(b, args, kwds, &name, &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &o[7], &o[8],
                 &o[9], &o[10], &o[11], &o[12], &o[13], &o[14], &o[15], &o[16], &o[17],
                 &o[18], &o[19], &o[20], &o[21], &o[22], &o[23], &o[24], &o[25], &o[26],
                 &o[27]))
    return nullptr;
  if (ConvertAll(p, b, l) < 0) return nullptr;
  NativeArray colnames, rownames;
  if ((l.given(kColNames) && StringsToBuffer(l.obj[kColNames], l.ncols, colnames.slot()) < 0) ||
      (l.given(kRowNames) && StringsToBuffer(l.obj[kRowNames], l.nrows, rownames.slot()) < 0))
    return nullptr;
  // start with its closing offset when the lengths do not give it.
  std::vector<int64_t> start(static_cast<size_t>(l.ncols) + 1, 0);
  for (Py_ssize_t j = 0; j < l.nstart; ++j)
    start[static_cast<size_t>(j)] = l.at<int64_t>(kStart)[j];
  if (l.nstart <= l.ncols) start[static_cast<size_t>(l.ncols)] = l.ncoefs;
  const bool extras = l.nq > 0 || l.nqrows > 0 || l.nents > 0 || l.nsets > 0;
  int rc;
  std::string scratch_error;  // the engine's text when the scratch problem failed
  if (!extras) {
    rc = CallUnlocked(LoadInto, p->prob, name, std::cref(l), std::cref(start),
                      colnames.as<const char>(), rownames.as<const char>());
  } else {
    rc = CallUnlocked([&]() {
      Scratch scratch;
      int status = ZRVScreateprob(&scratch.prob);
      if (status == 0) status = ZRVScopycontrols(scratch.prob, p->prob);
      if (status == 0)
        status = LoadInto(scratch.prob, name, l, start, colnames.as<const char>(),
                          rownames.as<const char>());
      if (status == 0) status = ZRVScopyprob(p->prob, scratch.prob, name);
      if (status != 0 && status != -2 && scratch.prob) {
        char text[ZRVS_MAXMESSAGELENGTH + 1] = "";
        if (ZRVSgetlasterror(scratch.prob, text) == 0) scratch_error = text;
      }
      return status;
    });
  }
  if (rc == -2) {
    PyErr_SetString(InterfaceError, "Mismatched lengths in arguments: the counts of "
                                    "quadratic row entries exceed the entries given");
    return nullptr;
  }
  if (rc != 0 && !scratch_error.empty()) {
    PyErr_SetString(SolverError, scratch_error.c_str());
    return nullptr;
  }
  if (rc != 0) return ReportError(Self(p), nullptr);
  if (AdoptEngineModel(p, l.given(kColNames), l.given(kRowNames)) < 0) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Could not read problem");
    return nullptr;
  }
  Py_RETURN_NONE;
}

}  // namespace zrv
