// Members for parts of the model: an objective added whole, names of sets,
// indicator marks removed from a range of rows, and the list of
// non-continuous columns and sets.
#include "bindings/workers.h"
#include "bindings/workers_model.h"

#include <cstdint>

#include "base/engine_call.h"
#include "base/errors.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

PyObject *Self(ProblemObject *p) { return reinterpret_cast<PyObject *>(p); }

bool Given(PyObject *o) { return o && o != Py_None; }

int Allocate(NativeArray &a, bool wanted, int64_t count, size_t width) {
  if (!wanted) return 0;
  const size_t bytes = static_cast<size_t>(count > 0 ? count : 0) * width;
  return NativeAllocator.allocate(NativeAllocator.context, bytes ? bytes : 1, a.slot());
}

}  // namespace

PyObject *AddObj(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *colind = nullptr, *objcoef = nullptr;
  int priority = 0;
  double weight = 1.0;
  if (!ParseArgs(b, args, kwds, &colind, &objcoef, &priority, &weight)) return nullptr;
  if (colind == Py_None) return MissingArgument(b, 0);
  if (objcoef == Py_None) return MissingArgument(b, 1);
  Py_ssize_t n = -1;
  NativeArray cols, coefs;
  if (SequenceToArray(p, &n, colind, cols.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &n, objcoef, coefs.slot(), ElemDouble) < 0)
    return nullptr;
  if (CallUnlocked(ZRVSaddobj, p->prob, static_cast<int>(n), cols.as<const int>(),
                   coefs.as<const double>(), priority, weight) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *AddSetNames(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *names = nullptr, *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &names, &first_obj, &last_obj)) return nullptr;
  int32_t first, last;
  if (ObjectToIndex(first_obj, p, &first, ElemSet) < 0 ||
      ObjectToIndex(last_obj, p, &last, ElemSet) < 0)
    return nullptr;
  if (last < first) {
    PyErr_SetString(InterfaceError, "Empty range of sets requested");
    return nullptr;
  }
  NativeArray buffer;
  if (StringsToBuffer(names, last - first + 1, buffer.slot()) < 0) return nullptr;
  if (CallUnlocked(ZRVSaddsetnames, p->prob, buffer.as<const char>(), int{first}, int{last}) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *DelIndicators(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *first_obj = nullptr, *last_obj = nullptr;
  if (!ParseArgs(b, args, kwds, &first_obj, &last_obj)) return nullptr;
  int first, last;
  if (ReadRange(p, first_obj, last_obj, false, &first, &last) < 0) return nullptr;
  if (CallUnlocked(ZRVSdelindicators, p->prob, first, last) != 0)
    return ReportError(Self(p), nullptr);
  Py_RETURN_NONE;
}

PyObject *GetMipEntities(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *coltype = Py_None, *colind = Py_None, *limit = Py_None, *settype = Py_None,
           *start = Py_None, *setcols = Py_None, *refval = Py_None;
  if (!ParseArgs(b, args, kwds, &coltype, &colind, &limit, &settype, &start, &setcols, &refval))
    return nullptr;
  int nent = 0, nsets = 0;
  using Null = std::nullptr_t;
  auto counts = [&](int64_t *set_start) {
    return ZRVSgetmipentities64(p->prob, &nent, &nsets, Null(), Null(), Null(), Null(),
                                set_start, Null(), Null());
  };
  if (CallUnlocked(counts, static_cast<int64_t *>(nullptr)) != 0)
    return ReportError(Self(p), nullptr);
  NativeArray starts;
  if (Allocate(starts, true, nsets + 1, sizeof(int64_t)) ||
      CallUnlocked(counts, starts.as<int64_t>()) != 0)
    return PyErr_Occurred() ? nullptr : ReportError(Self(p), nullptr);
  const int64_t nelems = starts.as<int64_t>()[nsets];
  NativeArray ct, ci, li, st, sc, rv;
  if (Allocate(ct, Given(coltype), nent, 1) || Allocate(ci, Given(colind), nent, sizeof(int)) ||
      Allocate(li, Given(limit), nent, sizeof(double)) ||
      Allocate(st, Given(settype), nsets, 1) ||
      Allocate(sc, Given(setcols), nelems, sizeof(int)) ||
      Allocate(rv, Given(refval), nelems, sizeof(double)))
    return nullptr;
  if (CallUnlocked(ZRVSgetmipentities64, p->prob, &nent, &nsets, ct.as<char>(), ci.as<int>(),
                   li.as<double>(), st.as<char>(), starts.as<int64_t>(), sc.as<int>(),
                   rv.as<double>()) != 0)
    return ReportError(Self(p), nullptr);
  if (ArrayToList(p, nent, ct.get(), coltype, ElemChar) < 0 ||
      ArrayToList(p, nent, ci.get(), colind, ElemColumn) < 0 ||
      ArrayToList(p, nent, li.get(), limit, ElemDouble) < 0 ||
      ArrayToList(p, nsets, st.get(), settype, ElemChar) < 0 ||
      ArrayToList(p, Given(start) ? nsets + 1 : 0, starts.get(), start, ElemLong) < 0 ||
      ArrayToList(p, nelems, sc.get(), setcols, ElemColumn) < 0 ||
      ArrayToList(p, nelems, rv.get(), refval, ElemDouble) < 0)
    return nullptr;
  return Py_BuildValue("(ii)", nent, nsets);
}

}  // namespace zrv
