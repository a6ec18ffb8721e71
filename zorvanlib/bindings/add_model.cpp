// Members that add to the model from arrays: addcols and addrows (which
// keep the problem's lists of var and constraint objects in step with the
// engine), addnames and addqmatrix. Arguments are all converted and checked
// before the engine is changed; a step that fails after the engine call
// removes what the call added.
#include "bindings/workers.h"

#include <cstdint>
#include <string>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/types.h"
#include "model/constraint.h"
#include "model/var.h"
#include "problem/add_objects.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// Optional names of n new columns or rows, packed for ZRVSaddnames; an
// empty buffer when names is None.
int PackNames(PyObject *names, Py_ssize_t n, const char *bad_length, const char *bad_name,
              std::string &packed, std::vector<PyObject *> &items) {
  if (!names || names == Py_None) return 0;
  if (!PyList_Check(names) || PyList_GET_SIZE(names) != n) {
    PyErr_SetString(ModelError, bad_length);
    return -1;
  }
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *item = PyList_GET_ITEM(names, i);
    Py_ssize_t len = 0;
    const char *text = PyUnicode_Check(item) ? PyUnicode_AsUTF8AndSize(item, &len)
                       : PyBytes_Check(item) ? PyBytes_AS_STRING(item)
                                             : nullptr;
    if (text && PyBytes_Check(item)) len = PyBytes_GET_SIZE(item);
    if (!text || static_cast<Py_ssize_t>(std::char_traits<char>::length(text)) != len) {
      PyErr_Clear();
      PyErr_Format(ModelError, bad_name, static_cast<int>(i));
      return -1;
    }
    packed.append(text, static_cast<size_t>(len));
    packed += '\0';
    items.push_back(item);
  }
  return 0;
}

// Optional type letters of n new columns; empty when types is None.
int ReadTypes(PyObject *types, Py_ssize_t n, std::vector<char> &letters) {
  if (!types || types == Py_None) return 0;
  if (!PyList_Check(types) || PyList_GET_SIZE(types) != n) {
    PyErr_SetString(ModelError, "Incorrect length of variable type list");
    return -1;
  }
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *item = PyList_GET_ITEM(types, i);
    if (!PyUnicode_Check(item) || PyUnicode_GET_LENGTH(item) != 1) {
      PyErr_Format(ModelError, "Cannot get variable type with index %d", static_cast<int>(i));
      return -1;
    }
    Py_UCS4 c = PyUnicode_READ_CHAR(item, 0);
    if (c > 127 || VarTypeOfLetter(static_cast<char>(c)) < 0) {
      PyErr_SetString(ModelError, "Incorrect variable type");
      return -1;
    }
    letters.push_back(static_cast<char>(c));
  }
  return 0;
}

// Takes back the columns (rows) first.. of a failed add.
void Undo(ProblemObject *p, bool columns, int first, Py_ssize_t n) {
  std::vector<int> added(static_cast<size_t>(n));
  for (Py_ssize_t i = 0; i < n; ++i) added[static_cast<size_t>(i)] = first + static_cast<int>(i);
  PyObject *type, *value, *trace;
  PyErr_Fetch(&type, &value, &trace);
  CallUnlocked(columns ? ZRVSdelcols : ZRVSdelrows, p->prob, static_cast<int>(n),
               static_cast<const int *>(added.data()));
  PyErr_Restore(type, value, trace);
}

// The sequences of a batch of lines: per-line arrays of one length n, the
// start offsets (length n too) and the entries (their own length).
struct LineArrays {
  NativeArray start, index, coef;
  Py_ssize_t ncoefs = -1;
};

int ConvertEntries(ProblemObject *p, const Binding &b, int start_pos, PyObject *start,
                   PyObject *index, PyObject *coef, int index_code, Py_ssize_t *n,
                   LineArrays &out) {
  if (SequenceToArray(p, &out.ncoefs, index, out.index.slot(), index_code) < 0 ||
      SequenceToArray(p, &out.ncoefs, coef, out.coef.slot(), ElemDouble) < 0)
    return -1;
  if (out.ncoefs < 0) out.ncoefs = 0;
  if ((index == Py_None) != (coef == Py_None)) {
    MissingArgument(b, index == Py_None ? start_pos + 1 : start_pos + 2);
    return -1;
  }
  if (out.ncoefs > 0 && start == Py_None) {
    MissingArgument(b, start_pos);
    return -1;
  }
  return SequenceToArray(p, n, start, out.start.slot(), ElemLong);
}

}  // namespace

PyObject *AddCols(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *obj = nullptr, *start = nullptr, *rowind = nullptr, *rowcoef = nullptr,
           *lb = nullptr, *ub = nullptr, *names = Py_None, *types = Py_None;
  if (!ParseArgs(b, args, kwds, &obj, &start, &rowind, &rowcoef, &lb, &ub, &names, &types))
    return nullptr;
  Py_ssize_t n = -1;
  NativeArray objs, lbs, ubs;
  LineArrays lines;
  if (SequenceToArray(p, &n, obj, objs.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &n, lb, lbs.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &n, ub, ubs.slot(), ElemDouble) < 0 ||
      ConvertEntries(p, b, 1, start, rowind, rowcoef, ElemRow, &n, lines) < 0)
    return nullptr;
  if (n < 0) return MissingArgument(b, 0);
  std::string packed;
  std::vector<PyObject *> name_items;
  std::vector<char> letters;
  if (PackNames(names, n, "Incorrect length of variable name list",
                "Erroneous name for variable %d", packed, name_items) < 0 ||
      ReadTypes(types, n, letters) < 0)
    return nullptr;
  int first = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &first) < 0) return nullptr;
  if (n == 0) Py_RETURN_NONE;
  if (CallUnlocked(ZRVSaddcols64, p->prob, static_cast<int>(n),
                   static_cast<int64_t>(lines.ncoefs), objs.as<const double>(),
                   lines.start.as<const int64_t>(), lines.index.as<const int>(),
                   lines.coef.as<const double>(), lbs.as<const double>(),
                   ubs.as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  const int last = first + static_cast<int>(n) - 1;
  std::vector<int> cols;
  if (!letters.empty()) {
    for (int j = first; j <= last; ++j) cols.push_back(j);
  }
  if ((!packed.empty() &&
       CallUnlocked(ZRVSaddnames, p->prob, 2, packed.c_str(), first, last) != 0) ||
      (!letters.empty() &&
       CallUnlocked(ZRVSchgcoltype, p->prob, static_cast<int>(n),
                    static_cast<const int *>(cols.data()),
                    static_cast<const char *>(letters.data())) != 0)) {
    ReportError(Self(p), nullptr);
    Undo(p, true, first, n);
    return nullptr;
  }
  // The mirror: one new var per column, with the column's bounds and type.
  const Py_ssize_t listed = PyList_GET_SIZE(p->varlist);
  for (Py_ssize_t k = 0; k < n; ++k) {
    PyObject *o = VarType.tp_alloc(&VarType, 0);
    if (!o) break;
    uint64_t &word = reinterpret_cast<VarObject *>(o)->word;
    word = NextVarId() & kVarIdMask;
    const double l = lbs.get() ? lbs.as<double>()[k] : 0.0;
    const double u = ubs.get() ? ubs.as<double>()[k] : kInfinity;
    const int t = letters.empty() ? 0 : VarTypeOfLetter(letters[static_cast<size_t>(k)]);
    if (l != 0.0) VarSetLb(word, l);
    if (u < kInfinity) VarSetUb(word, u);
    if (t) VarSetType(word, t);
    if (!name_items.empty()) VarSetName(word, name_items[static_cast<size_t>(k)]);
    int rc = PyList_Append(p->varlist, o);
    Py_DECREF(o);
    if (rc < 0 || RecordIndex(p->colmap, VarId(word), first + static_cast<int>(k),
                              "Variable already in problem") < 0)
      break;
  }
  if (PyErr_Occurred()) {
    ForgetTail(p, ModelObjectKind::Variable, listed);
    Undo(p, true, first, n);
    return nullptr;
  }
  Py_RETURN_NONE;
}

PyObject *AddRows(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *type = nullptr, *rhs = nullptr, *start = nullptr, *colind = nullptr,
           *rowcoef = nullptr, *range = Py_None, *names = Py_None;
  if (!ParseArgs(b, args, kwds, &type, &rhs, &start, &colind, &rowcoef, &range, &names))
    return nullptr;
  if (type == Py_None) return MissingArgument(b, 0);
  Py_ssize_t n = -1;
  NativeArray types, rhss, ranges;
  LineArrays lines;
  if (SequenceToArray(p, &n, type, types.slot(), ElemChar) < 0 ||
      SequenceToArray(p, &n, rhs, rhss.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &n, range, ranges.slot(), ElemDouble) < 0 ||
      ConvertEntries(p, b, 2, start, colind, rowcoef, ElemColumn, &n, lines) < 0)
    return nullptr;
  std::string packed;
  std::vector<PyObject *> name_items;
  if (PackNames(names, n, "Incorrect length of constraint name list",
                "Erroneous name for constraint %d", packed, name_items) < 0)
    return nullptr;
  int first = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALROWS, &first) < 0) return nullptr;
  if (n == 0) Py_RETURN_NONE;
  if (CallUnlocked(ZRVSaddrows64, p->prob, static_cast<int>(n),
                   static_cast<int64_t>(lines.ncoefs), types.as<const char>(),
                   rhss.as<const double>(), ranges.as<const double>(),
                   lines.start.as<const int64_t>(), lines.index.as<const int>(),
                   lines.coef.as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  const int last = first + static_cast<int>(n) - 1;
  if (!packed.empty() &&
      CallUnlocked(ZRVSaddnames, p->prob, 1, packed.c_str(), first, last) != 0) {
    ReportError(Self(p), nullptr);
    Undo(p, false, first, n);
    return nullptr;
  }
  // The mirror: one new constraint per row, bounded as the row.
  const Py_ssize_t listed = PyList_GET_SIZE(p->conlist);
  for (Py_ssize_t k = 0; k < n; ++k) {
    PyObject *o = ConstraintType.tp_alloc(&ConstraintType, 0);
    if (!o) break;
    uint64_t &word = reinterpret_cast<ConstraintObject *>(o)->word;
    const double r = rhss.get() ? rhss.as<double>()[k] : 0.0;
    double lo = -kInfinity, up = kInfinity;
    switch (types.as<char>()[k]) {
      case 'E': lo = up = r; break;
      case 'G': lo = r; break;
      case 'L': up = r; break;
      case 'R':
        lo = r - (ranges.get() ? ranges.as<double>()[k] : 0.0);
        up = r;
        break;
      default: break;  // 'N': a free row
    }
    ConSetLb(word, lo);
    ConSetUb(word, up);
    if (!name_items.empty()) ConSetName(word, name_items[static_cast<size_t>(k)]);
    int rc = PyList_Append(p->conlist, o);
    Py_DECREF(o);
    if (rc < 0 || RecordIndex(p->rowmap, ConId(word), first + static_cast<int>(k),
                              "Constraint already in problem") < 0)
      break;
  }
  if (PyErr_Occurred()) {
    ForgetTail(p, ModelObjectKind::Constraint, listed);
    Undo(p, false, first, n);
    return nullptr;
  }
  Py_RETURN_NONE;
}

PyObject *AddNames(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  int type = 0;
  PyObject *names = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &type, &names, &first_obj, &last_obj)) return nullptr;
  if (type < 1 || type > 3) {
    PyErr_SetString(InterfaceError, "Argument type must be 1 (rows), 2 (columns), or 3 (sets)");
    return nullptr;
  }
  const int code = type == 1 ? ElemRow : type == 2 ? ElemColumn : ElemSet;
  int32_t first, last;
  if (ObjectToIndex(first_obj, p, &first, code) < 0 ||
      ObjectToIndex(last_obj, p, &last, code) < 0)
    return nullptr;
  if (last < first) {
    PyErr_SetString(InterfaceError, type == 1   ? "Empty range of rows requested"
                                    : type == 2 ? "Empty range of columns requested"
                                                : "Empty range of sets requested");
    return nullptr;
  }
  NativeArray buffer;
  if (StringsToBuffer(names, last - first + 1, buffer.slot()) < 0) return nullptr;
  if (CallUnlocked(ZRVSaddnames, p->prob, type, buffer.as<const char>(), int{first},
                   int{last}) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *AddQMatrix(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *row_obj = nullptr, *objs[3] = {nullptr, nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &row_obj, &objs[0], &objs[1], &objs[2])) return nullptr;
  int32_t row;
  if (ObjectToIndex(row_obj, p, &row, ElemRow) < 0) return nullptr;
  const int codes[3] = {ElemColumn, ElemColumn, ElemDouble};
  NativeArray arrays[3];
  Py_ssize_t n = -1;
  for (int k = 0; k < 3; ++k) {
    if (objs[k] == Py_None) return MissingArgument(b, k + 1);
    if (SequenceToArray(p, &n, objs[k], arrays[k].slot(), codes[k]) < 0) return nullptr;
  }
  if (CallUnlocked(ZRVSaddqmatrix64, p->prob, int{row}, static_cast<int64_t>(n),
                   arrays[0].as<const int>(), arrays[1].as<const int>(),
                   arrays[2].as<const double>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

}  // namespace zrv
