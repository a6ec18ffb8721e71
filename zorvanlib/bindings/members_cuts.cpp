// The cut pool members: storing, loading, reading and deleting cuts, and
// marking delayed rows and model cuts. Cut handles travel as poolcut
// objects. One table of their own, joined into the problem's methods by
// RegisterCutMembers.
#include <cstdint>
#include <iterator>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "bindings/help_cuts.h"
#include "bindings/members.h"
#include "bindings/workers.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

#define ZRV_BINDING_WORKER(name) \
  PyObject *name(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds)

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

// Handles of a sequence of poolcut objects; None: no array, count -1.
int Handles(ProblemObject *p, PyObject *obj, NativeArray &out, int *count) {
  Py_ssize_t n = -1;
  if (SequenceToArray(p, &n, obj, out.slot(), ElemCut) < 0) return -1;
  *count = obj == Py_None ? -1 : static_cast<int>(n < 0 ? 0 : n);
  return 0;
}

// A scratch array of n elements of a code's width.
int Scratch(NativeArray &a, Py_ssize_t n, size_t width) {
  return NativeAllocator.allocate(NativeAllocator.context,
                                  static_cast<size_t>(n > 0 ? n : 1) * width, a.slot());
}

// The shared body of addcuts and storecuts.
PyObject *CutBatch(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                   bool store) {
  int nodups = 0;
  PyObject *cuttype = nullptr, *rowtype = nullptr, *rhs = nullptr, *start = nullptr,
           *cutind = Py_None, *colind = nullptr, *coef = nullptr;
  const bool parsed = store ? ParseArgs(b, args, kwds, &nodups, &cuttype, &rowtype, &rhs,
                                        &start, &cutind, &colind, &coef)
                            : ParseArgs(b, args, kwds, &cuttype, &rowtype, &rhs, &start,
                                        &colind, &coef);
  if (!parsed) return nullptr;
  Py_ssize_t n = -1, nz = -1;
  NativeArray types, rows, rhss, starts, cols, coefs;
  if (SequenceToArray(p, &n, cuttype, types.slot(), ElemInt) < 0 ||
      SequenceToArray(p, &n, rowtype, rows.slot(), ElemChar) < 0 ||
      SequenceToArray(p, &n, rhs, rhss.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &nz, colind, cols.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &nz, coef, coefs.slot(), ElemDouble) < 0)
    return nullptr;
  if (n < 0) return MissingArgument(b, store ? 1 : 0);
  if (nz < 0) nz = 0;
  // start: n offsets, or n + 1 with the end; the end is added when absent.
  Py_ssize_t ns = -1;
  if (SequenceToArray(p, &ns, start, starts.slot(), ElemLong) < 0) return nullptr;
  NativeArray full;
  if (Scratch(full, n + 1, sizeof(int64_t)) != 0) return nullptr;
  for (Py_ssize_t k = 0; k <= n; ++k)
    full.as<int64_t>()[k] = k < ns ? starts.as<int64_t>()[k] : static_cast<int64_t>(nz);
  NativeArray handles;
  if (Scratch(handles, n, sizeof(void *)) != 0) return nullptr;
  const int status =
      store ? CallUnlocked(ZRVSstorecuts64, p->prob, static_cast<int>(n), nodups,
                           types.as<const int>(), rows.as<const char>(), rhss.as<const double>(),
                           full.as<const int64_t>(), handles.as<ZRVScut>(),
                           cols.as<const int>(), coefs.as<const double>())
            : CallUnlocked(ZRVSaddcuts64, p->prob, static_cast<int>(n), types.as<const int>(),
                           rows.as<const char>(), rhss.as<const double>(),
                           full.as<const int64_t>(), cols.as<const int>(),
                           coefs.as<const double>());
  if (status != 0) return ReportError(Self(p), nullptr);
  if (store && cutind != Py_None && ArrayToList(p, n, handles.get(), cutind, ElemCut) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(AddCuts) { return CutBatch(p, b, args, kwds, false); }
ZRV_BINDING_WORKER(StoreCuts) { return CutBatch(p, b, args, kwds, true); }

ZRV_BINDING_WORKER(LoadCuts) {
  int cuttype = 0, interp = 0, n = -1;
  PyObject *cutind = Py_None;
  if (!ParseArgs(b, args, kwds, &cuttype, &interp, &cutind)) return nullptr;
  NativeArray h;
  if (Handles(p, cutind, h, &n) < 0) return nullptr;
  if (CallUnlocked(ZRVSloadcuts, p->prob, cuttype, interp, n, h.as<const ZRVScut>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(DelCuts) {
  int basis = 0, cuttype = 0, interp = 0, n = -1;
  double delta = 0.0;
  PyObject *cutind = Py_None;
  if (!ParseArgs(b, args, kwds, &basis, &cuttype, &interp, &delta, &cutind)) return nullptr;
  NativeArray h;
  if (Handles(p, cutind, h, &n) < 0) return nullptr;
  if (CallUnlocked(ZRVSdelcuts, p->prob, basis, cuttype, interp, delta, n,
                   h.as<const ZRVScut>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(DelCpCuts) {
  int cuttype = 0, interp = 0, n = -1;
  PyObject *cutind = Py_None;
  if (!ParseArgs(b, args, kwds, &cuttype, &interp, &cutind)) return nullptr;
  NativeArray h;
  if (Handles(p, cutind, h, &n) < 0) return nullptr;
  if (CallUnlocked(ZRVSdelcpcuts, p->prob, cuttype, interp, n, h.as<const ZRVScut>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(GetCpCutList) {
  int cuttype = 0, interp = 0, maxcuts = 0, n = 0;
  double delta = 0.0;
  PyObject *cutind = Py_None, *viol = Py_None;
  if (!ParseArgs(b, args, kwds, &cuttype, &interp, &delta, &maxcuts, &cutind, &viol))
    return nullptr;
  NativeArray h, v;
  if (Scratch(h, maxcuts, sizeof(void *)) != 0 || Scratch(v, maxcuts, sizeof(double)) != 0)
    return nullptr;
  if (CallUnlocked(ZRVSgetcpcutlist, p->prob, cuttype, interp, delta, &n, maxcuts,
                   h.as<ZRVScut>(), v.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  const Py_ssize_t got = n < maxcuts ? n : maxcuts;
  if ((cutind != Py_None && ArrayToList(p, got, h.get(), cutind, ElemCut) < 0) ||
      (viol != Py_None && ArrayToList(p, got, v.get(), viol, ElemDouble) < 0))
    return nullptr;
  return PyLong_FromLong(n);
}

ZRV_BINDING_WORKER(GetCpCuts) {
  PyObject *rowind = nullptr, *cuttype = Py_None, *rowtype = Py_None, *start = Py_None,
           *colind = Py_None, *coef = Py_None, *rhs = Py_None;
  long long maxcoefs = 0;
  if (!ParseArgs(b, args, kwds, &rowind, &maxcoefs, &cuttype, &rowtype, &start, &colind, &coef,
                 &rhs))
    return nullptr;
  NativeArray h;
  int n = 0;
  if (Handles(p, rowind, h, &n) < 0) return nullptr;
  if (n < 0) return MissingArgument(b, 0);
  NativeArray t, r, s, c, v, d;
  const Py_ssize_t nz = maxcoefs > 0 ? static_cast<Py_ssize_t>(maxcoefs) : 0;
  if (Scratch(t, n, sizeof(int)) != 0 || Scratch(r, n, 1) != 0 ||
      Scratch(s, n + 1, sizeof(int64_t)) != 0 || Scratch(c, nz, sizeof(int)) != 0 ||
      Scratch(v, nz, sizeof(double)) != 0 || Scratch(d, n, sizeof(double)) != 0)
    return nullptr;
  int64_t total = 0;
  if (CallUnlocked(ZRVSgetcpcuts64, p->prob, h.as<const ZRVScut>(), n,
                   static_cast<int64_t>(maxcoefs), &total, t.as<int>(), r.as<char>(),
                   s.as<int64_t>(), c.as<int>(), v.as<double>(), d.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  const Py_ssize_t got = total < nz ? static_cast<Py_ssize_t>(total) : nz;
  if ((cuttype != Py_None && ArrayToList(p, n, t.get(), cuttype, ElemInt) < 0) ||
      (rowtype != Py_None && ArrayToList(p, n, r.get(), rowtype, ElemChar) < 0) ||
      (start != Py_None && ArrayToList(p, n + 1, s.get(), start, ElemLong) < 0) ||
      (colind != Py_None && ArrayToList(p, got, c.get(), colind, ElemColumn) < 0) ||
      (coef != Py_None && ArrayToList(p, got, v.get(), coef, ElemDouble) < 0) ||
      (rhs != Py_None && ArrayToList(p, n, d.get(), rhs, ElemDouble) < 0))
    return nullptr;
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(GetCutList) {
  int cuttype = 0, interp = 0, maxcuts = 0, n = 0;
  PyObject *cutind = Py_None;
  if (!ParseArgs(b, args, kwds, &cuttype, &interp, &maxcuts, &cutind)) return nullptr;
  NativeArray h;
  if (Scratch(h, maxcuts, sizeof(void *)) != 0) return nullptr;
  if (CallUnlocked(ZRVSgetcutlist, p->prob, cuttype, interp, &n, maxcuts, h.as<ZRVScut>()) != 0)
    return ReportError(Self(p), nullptr);
  if (cutind != Py_None && ArrayToList(p, n < maxcuts ? n : maxcuts, h.get(), cutind, ElemCut) < 0)
    return nullptr;
  return PyLong_FromLong(n);
}

ZRV_BINDING_WORKER(GetCutMap) {
  PyObject *cutind = nullptr, *cutmap = nullptr;
  if (!ParseArgs(b, args, kwds, &cutind, &cutmap)) return nullptr;
  NativeArray h, m;
  int n = 0;
  if (Handles(p, cutind, h, &n) < 0) return nullptr;
  if (n < 0) return MissingArgument(b, 0);
  if (cutmap == Py_None) return MissingArgument(b, 1);
  if (Scratch(m, n, sizeof(int)) != 0) return nullptr;
  if (CallUnlocked(ZRVSgetcutmap, p->prob, n, h.as<const ZRVScut>(), m.as<int>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, n, m.get(), cutmap, ElemInt) < 0) return nullptr;
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(GetCutSlack) {
  PyObject *cut = nullptr;
  if (!ParseArgs(b, args, kwds, &cut)) return nullptr;
  NativeArray h;
  if (Scratch(h, 1, sizeof(void *)) != 0 || ElementToNative(p, cut, h.get(), 0, ElemCut) < 0)
    return nullptr;
  double slack = 0.0;
  if (CallUnlocked(ZRVSgetcutslack, p->prob, h.as<ZRVScut>()[0], &slack) != 0)
    return ReportError(Self(p), nullptr);
  return PyFloat_FromDouble(slack);
}

// loaddelayedrows and loadmodelcuts: a list of rows.
PyObject *MarkRows(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds,
                   int (*fn)(ZRVSprob, int, const int *)) {
  PyObject *rows = nullptr;
  if (!ParseArgs(b, args, kwds, &rows)) return nullptr;
  Py_ssize_t n = -1;
  NativeArray r;
  if (SequenceToArray(p, &n, rows, r.slot(), ElemRow) < 0) return nullptr;
  if (n < 0) return MissingArgument(b, 0);
  if (CallUnlocked(fn, p->prob, static_cast<int>(n), r.as<const int>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

ZRV_BINDING_WORKER(LoadDelayedRows) { return MarkRows(p, b, args, kwds, ZRVSloaddelayedrows); }
ZRV_BINDING_WORKER(LoadModelCuts) { return MarkRows(p, b, args, kwds, ZRVSloadmodelcuts); }

ZRV_BINDING_WORKER(SetBranchCuts) {
  PyObject *cutind = nullptr;
  if (!ParseArgs(b, args, kwds, &cutind)) return nullptr;
  NativeArray h;
  int n = 0;
  if (Handles(p, cutind, h, &n) < 0) return nullptr;
  if (n < 0) return MissingArgument(b, 0);
  if (CallUnlocked(ZRVSsetbranchcuts, p->prob, n, h.as<const ZRVScut>()) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

#undef ZRV_BINDING_WORKER

using KW = const char *const[];
constexpr KW kAddCutsKw = {"cuttype", "rowtype", "rhs", "start", "colind", "cutcoef", nullptr};
constexpr KW kAddCutsOld = {"mtype", "rtype", "rhs", "mstart", "mcols", "dmatval", nullptr};
constexpr KW kStoreCutsKw = {"nodups", "cuttype", "rowtype", "rhs", "start", "cutind",
                             "colind", "cutcoef", nullptr};
constexpr KW kStoreCutsOld = {"nodupl", "mtype", "rtype", "rhs", "mstart", "mindex",
                              "mcols", "dmatval", nullptr};
constexpr KW kLoadCutsKw = {"cuttype", "interp", "cutind", nullptr};
constexpr KW kLoadCutsOld = {"itype", "interp", "cutind", nullptr};
constexpr KW kDelCutsKw = {"basis", "cuttype", "interp", "delta", "cutind", nullptr};
constexpr KW kDelCutsOld = {"ibasis", "itype", "interp", "delta", "cutind", nullptr};
constexpr KW kCpListKw = {"cuttype", "interp", "delta", "maxcuts", "cutind", "viol", nullptr};
constexpr KW kCpListOld = {"itype", "interp", "delta", "size", "cutind", "viol", nullptr};
constexpr KW kCpCutsKw = {"rowind", "maxcoefs", "cuttype", "rowtype", "start", "colind",
                          "cutcoef", "rhs", nullptr};
constexpr KW kCpCutsOld = {"index", "size", "type", "rtype", "mstart", "mcols", "dmatval",
                           "drhs", nullptr};
constexpr KW kCutListKw = {"cuttype", "interp", "maxcuts", "cutind", nullptr};
constexpr KW kCutListOld = {"itype", "interp", "size", "cutind", nullptr};
constexpr KW kCutMapKw = {"cutind", "cutmap", nullptr};
constexpr KW kCutMapOld = {"cuts", "cutmap", nullptr};
constexpr KW kCutSlackKw = {"cutind", nullptr};
constexpr KW kCutSlackOld = {"cut", nullptr};
constexpr KW kRowsKw = {"rowind", nullptr};
constexpr KW kRowsOld = {"mrows", nullptr};
constexpr KW kBranchCutsKw = {"cutind", nullptr};
constexpr KW kBranchCutsOld = {"mindex", nullptr};

}  // namespace

struct CutMemberTable {
  static const Binding rows[];
};

// Cuts change the search's inputs, not the model: allowed during a solve
// (from the node callbacks), except the row marks.
const Binding CutMemberTable::rows[] = {
    {"addcuts", AddCuts, "OOOOOO", kAddCutsKw, kAddCutsOld, false, help::kAddCuts},
    {"storecuts", StoreCuts, "iOOOOOOO", kStoreCutsKw, kStoreCutsOld, false, help::kStoreCuts},
    {"loadcuts", LoadCuts, "ii|O", kLoadCutsKw, kLoadCutsOld, false, help::kLoadCuts},
    {"delcuts", DelCuts, "iiid|O", kDelCutsKw, kDelCutsOld, false, help::kDelCuts},
    {"delcpcuts", DelCpCuts, "ii|O", kLoadCutsKw, kLoadCutsOld, false, help::kDelCpCuts},
    {"getcpcutlist", GetCpCutList, "iidi|OO", kCpListKw, kCpListOld, false,
     help::kGetCpCutList},
    {"getcpcuts", GetCpCuts, "OL|OOOOOO", kCpCutsKw, kCpCutsOld, false, help::kGetCpCuts},
    {"getcutlist", GetCutList, "iii|O", kCutListKw, kCutListOld, false, help::kGetCutList},
    {"getcutmap", GetCutMap, "OO", kCutMapKw, kCutMapOld, false, help::kGetCutMap},
    {"getcutslack", GetCutSlack, "O", kCutSlackKw, kCutSlackOld, false, help::kGetCutSlack},
    {"loaddelayedrows", LoadDelayedRows, "O", kRowsKw, kRowsOld, true, help::kLoadDelayedRows},
    {"loadmodelcuts", LoadModelCuts, "O", kRowsKw, kRowsOld, true, help::kLoadModelCuts},
    {"setbranchcuts", SetBranchCuts, "O", kBranchCutsKw, kBranchCutsOld, false,
     help::kSetBranchCuts},
};

int RegisterCutMembers() {
  return RegisterTable<CutMemberTable>(
      std::make_index_sequence<std::size(CutMemberTable::rows)>());
}

}  // namespace zrv
