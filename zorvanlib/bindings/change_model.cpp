// Members that change the model in batches: bounds, column types and
// thresholds, right-hand sides, ranges and row types, objective coefficients and sense, the quadratic objective;
// and delobj. Every array of a batch is converted (and so checked) before
// the one engine call, which itself applies all or nothing.
#include "bindings/workers.h"

#include <cstdint>

#include "base/engine_call.h"
#include "base/errors.h"
#include "model/var.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// Converts the required sequences objs[k] (keyword position first + k of
// the row) by codes[k] into arrays[k], all of one length n.
int ConvertBatch(ProblemObject *p, const Binding &b, int first, int count, PyObject **objs,
                 const int *codes, NativeArray *arrays, Py_ssize_t *n) {
  *n = -1;
  for (int k = 0; k < count; ++k) {
    if (!objs[k] || objs[k] == Py_None) {
      MissingArgument(b, first + k);
      return -1;
    }
    if (SequenceToArray(p, n, objs[k], arrays[k].slot(), codes[k]) < 0) return -1;
  }
  return 0;
}

int FitsInt(Py_ssize_t n) {
  if (n <= INT32_MAX) return 0;
  PyErr_SetString(InterfaceError, "Too many elements in one call");
  return -1;
}

// f(prob, n, index array, value array) over two sequences.
template <class V>
PyObject *IndexedValues(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                        int value_code, int (*f)(ZRVSprob, int, const int *, const V *)) {
  PyObject *objs[2] = {nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemColumn, value_code};
  NativeArray arrays[2];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 0, 2, objs, codes, arrays, &n) < 0 || FitsInt(n) < 0) return nullptr;
  if (CallUnlocked(f, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const V>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

// f(prob, n, row index array, value array) over two sequences.
template <class V>
PyObject *RowValues(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                    int value_code, int (*f)(ZRVSprob, int, const int *, const V *)) {
  PyObject *objs[2] = {nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemRow, value_code};
  NativeArray arrays[2];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 0, 2, objs, codes, arrays, &n) < 0 || FitsInt(n) < 0) return nullptr;
  if (CallUnlocked(f, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const V>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace

PyObject *ChgBounds(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3] = {nullptr, nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2])) return nullptr;
  const int codes[3] = {ElemColumn, ElemChar, ElemDouble};
  NativeArray arrays[3];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 0, 3, objs, codes, arrays, &n) < 0 || FitsInt(n) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgbounds, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const char>(), arrays[2].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *ChgColType(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2] = {nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemColumn, ElemChar};
  NativeArray arrays[2];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 0, 2, objs, codes, arrays, &n) < 0 || FitsInt(n) < 0) return nullptr;
  const int *cols = arrays[0].as<const int>();
  const char *letters = arrays[1].as<const char>();
  if (CallUnlocked(ZRVSchgcoltype, p->prob, static_cast<int>(n), cols, letters) != 0)
    return ReportError(Self(p), nullptr);
  // The var objects of the columns take the new types (and a binary the
  // bounds [0, 1] that the engine gave its column).
  const Py_ssize_t listed = PyList_GET_SIZE(p->varlist);
  for (Py_ssize_t k = 0; k < n; ++k) {
    if (cols[k] < 0 || cols[k] >= listed) continue;
    uint64_t &word = reinterpret_cast<VarObject *>(PyList_GET_ITEM(p->varlist, cols[k]))->word;
    const int type = VarTypeOfLetter(letters[k]);
    if (type < 0) continue;
    VarSetType(word, type);
    if (type == 1) VarSetLb(word, 0.0), VarSetUb(word, 1.0);
  }
  Py_RETURN_NONE;
}

PyObject *ChgGlbLimit(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return IndexedValues<double>(p, b, args, kwds, ElemDouble, ZRVSchgglblimit);
}

PyObject *ChgObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return IndexedValues<double>(p, b, args, kwds, ElemDouble, ZRVSchgobj);
}

PyObject *ChgObjN(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int objidx = 0;
  PyObject *objs[2] = {nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objidx, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemColumn, ElemDouble};
  NativeArray arrays[2];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 1, 2, objs, codes, arrays, &n) < 0 || FitsInt(n) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgobjn, p->prob, objidx, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *ChgRhs(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RowValues<double>(p, b, args, kwds, ElemDouble, ZRVSchgrhs);
}

PyObject *ChgRhsRange(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RowValues<double>(p, b, args, kwds, ElemDouble, ZRVSchgrhsrange);
}

PyObject *ChgRowType(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  return RowValues<char>(p, b, args, kwds, ElemChar, ZRVSchgrowtype);
}

PyObject *ChgObjSense(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int sense = 0;
  if (!ParseArgs(b, args, kwds, &sense)) return nullptr;
  if (CallUnlocked(ZRVSchgobjsense, p->prob, sense) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *ChgMQObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[3] = {nullptr, nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1], &objs[2])) return nullptr;
  const int codes[3] = {ElemColumn, ElemColumn, ElemDouble};
  NativeArray arrays[3];
  Py_ssize_t n;
  if (ConvertBatch(p, b, 0, 3, objs, codes, arrays, &n) < 0) return nullptr;
  if (CallUnlocked(ZRVSchgmqobj64, p->prob, static_cast<int64_t>(n), arrays[0].as<const int>(),
                   arrays[1].as<const int>(), arrays[2].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *DelObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int objidx = 0;
  if (!ParseArgs(b, args, kwds, &objidx)) return nullptr;
  if (CallUnlocked(ZRVSdelobj, p->prob, objidx) != 0) return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
