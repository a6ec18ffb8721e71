// The `branchobj` type: a user branching object of the engine, built from
// constraints or filled branch by branch, and handed to the search (store).
// Its engine errors are raised through the central error routine.
#include "bindings/branchobj.h"

#include <cstdint>
#include <string>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "model/constraint.h"
#include "problem/arguments.h"
#include "problem/problem.h"
#include "problem/terms.h"
#include "zorvan/zrvs.h"

namespace zrv {

PyTypeObject BranchObjType{};

namespace {

BranchObjObject *Bo(PyObject *self) { return reinterpret_cast<BranchObjObject *>(self); }
ZRVSbranchobject Handle(PyObject *self) { return static_cast<ZRVSbranchobject>(Bo(self)->handle); }
ProblemObject *Owner(PyObject *self) { return reinterpret_cast<ProblemObject *>(Bo(self)->problem); }

void RaiseBranchObjError(PyObject *self) {
  char text[ZRVS_MAXMESSAGELENGTH] = "";
  int code = 0;
  if (!Handle(self) ||
      ZRVS_bo_getlasterror(Handle(self), &code, text, sizeof text, nullptr) != 0 || !*text) {
    PyErr_SetString(SolverError, "Unidentified error associated with a branching object");
    return;
  }
  PyErr_SetString(SolverError, text);
}

int Fail(PyObject *self) {
  ReportError(self, nullptr);
  return -1;
}

constexpr double kFiniteLower = -5e19, kInf = 1e20;

struct LinearSink {
  std::vector<int> col;
  std::vector<double> coef;
  bool quadratic = false;
  int Linear(int c, double v) {
    col.push_back(c), coef.push_back(v);
    return 0;
  }
  int Quadratic(int, int, double) {
    quadratic = true;
    return 0;
  }
};

// One constraint of branch i into bounds or rows of the engine object.
int AddConstraint(PyObject *self, int i, PyObject *con) {
  ProblemObject *p = Owner(self);
  auto *c = reinterpret_cast<ConstraintObject *>(con);
  const double lb = ConGetLb(c->word), ub = ConGetUb(c->word);
  LinearSink sink;
  double constant = 0.0;
  const BodyRules rules{true, "Branch contains a nonlinear constraint, invalid",
                        "Invalid constraint in addbounds"};
  if (DecomposeBody(p->colmap, c->body, rules, sink, &constant) < 0) {
    if (PyErr_ExceptionMatches(ModelError)) {
      PyObject *t, *v, *tb;
      PyErr_Fetch(&t, &v, &tb);
      const bool missing = v && PyUnicode_Check(v) &&
                           std::string(PyUnicode_AsUTF8(v)).find("not in problem") != std::string::npos;
      Py_XDECREF(t), Py_XDECREF(v), Py_XDECREF(tb);
      PyErr_SetString(ModelError, missing ? "Variable in branching object has not been added to problem yet"
                                          : "Invalid constraint in addbounds");
    }
    return -1;
  }
  if (sink.quadratic) {
    PyErr_Format(ModelError, "Branch %i contains a quadratic or nonlinear constraint, invalid", i);
    return -1;
  }
  if (sink.col.size() == 1) {
    const double a = sink.coef[0];
    const int col = sink.col[0];
    if (a == 0.0) {
      PyErr_SetString(ModelError, "Coefficient zero in branch");
      return -1;
    }
    const double lo = lb - constant, up = ub - constant;
    std::vector<char> type;
    std::vector<int> cols;
    std::vector<double> val;
    if (a > 0) {
      if (lb > kFiniteLower) type.push_back('L'), cols.push_back(col), val.push_back(lo / a);
      if (ub < kInf) type.push_back('U'), cols.push_back(col), val.push_back(up / a);
    } else {
      if (ub < kInf) type.push_back('L'), cols.push_back(col), val.push_back(up / a);
      if (lb > kFiniteLower) type.push_back('U'), cols.push_back(col), val.push_back(lo / a);
    }
    if (CallUnlocked(ZRVS_bo_addbounds, Handle(self), i, static_cast<int>(type.size()),
                     static_cast<const char *>(type.data()), static_cast<const int *>(cols.data()),
                     static_cast<const double *>(val.data())) != 0)
      return Fail(self);
    return 0;
  }
  const bool has_lb = lb > -kInf, has_ub = ub < kInf;
  std::vector<char> type;
  std::vector<double> rhs;
  if (has_lb && has_ub && lb == ub) {
    type.push_back('E'), rhs.push_back(lb - constant);
  } else {
    if (has_lb) type.push_back('G'), rhs.push_back(lb - constant);
    if (has_ub) type.push_back('L'), rhs.push_back(ub - constant);
  }
  if (type.empty()) {
    PyErr_SetString(ModelError, "Branch cannot have a free row");
    return -1;
  }
  const int n = static_cast<int>(sink.col.size());
  for (size_t r = 0; r < type.size(); ++r) {
    int start = 0;
    if (CallUnlocked(ZRVS_bo_addrows, Handle(self), i, 1, n, &type[r],
                     static_cast<const double *>(&rhs[r]), static_cast<const int *>(&start),
                     static_cast<const int *>(sink.col.data()),
                     static_cast<const double *>(sink.coef.data())) != 0)
      return Fail(self);
  }
  return 0;
}

int BranchObjInit(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *kw[] = {"prob", "branches", "isoriginal", nullptr};
  PyObject *prob = nullptr, *branches = Py_None, *flag = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O|OO", const_cast<char **>(kw), &prob,
                                   &branches, &flag) ||
      !IsProblem(prob)) {
    PyErr_Clear();
    PyErr_SetString(ModelError,
                    "Incorrect creation of branching object: must provide a problem and, "
                    "optionally, a list of branches and a True/False flag. The flag must be True "
                    "if the list of branches is provided");
    return -1;
  }
  int isoriginal = 1;
  if (flag && flag != Py_True) {
    isoriginal = 0;
    if (PyLong_Check(flag) && !PyBool_Check(flag) && PyLong_AsLong(flag) == 1) isoriginal = 1;
    PyErr_Clear();
  }
  if (!isoriginal && branches != Py_None) {
    PyErr_SetString(ModelError,
                    "Cannot define the branches of a branching object if the isoriginal flag is "
                    "false");
    return -1;
  }
  BranchObjObject *bo = Bo(self);
  Py_INCREF(prob);
  Py_XSETREF(bo->problem, prob);
  bo->isoriginal = isoriginal;
  ZRVSbranchobject h = nullptr;
  if (CallUnlocked(ZRVS_bo_create, &h, reinterpret_cast<ProblemObject *>(prob)->prob,
                   isoriginal) != 0)
    return ReportFailure(nullptr);
  bo->handle = h;
  if (branches == Py_None) return 0;
  if (!PyList_Check(branches) && !PyTuple_Check(branches)) {
    PyErr_SetString(ModelError,
                    "The branches parameter must be a list or a tuple of elements. Each element "
                    "of the list/tuple must be a constraint, a variable bound, or a list/tuple "
                    "thereof");
    return -1;
  }
  const Py_ssize_t n = PySequence_Fast_GET_SIZE(branches);
  if (CallUnlocked(ZRVS_bo_addbranches, h, static_cast<int>(n)) != 0) return Fail(self);
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *branch = PySequence_Fast_GET_ITEM(branches, i);
    const bool many = PyList_Check(branch) || PyTuple_Check(branch);
    const Py_ssize_t m = many ? PySequence_Fast_GET_SIZE(branch) : 1;
    for (Py_ssize_t k = 0; k < m; ++k) {
      PyObject *item = many ? PySequence_Fast_GET_ITEM(branch, k) : branch;
      if (!item) {
        PyErr_Format(ModelError, "Branch %i is invalid: %s", static_cast<int>(i),
                     "could not get element of branch");
        return -1;
      }
      if (Py_TYPE(item) != &ConstraintType) {
        PyErr_Format(ModelError, "Branch %i is invalid: %s", static_cast<int>(i),
                     "element of branch not of the valid type (constraint)");
        return -1;
      }
      if (AddConstraint(self, static_cast<int>(i), item) < 0) return -1;
    }
  }
  return 0;
}

void BranchObjDealloc(PyObject *self) {
  BranchObjObject *bo = Bo(self);
  if (bo->handle) ZRVS_bo_destroy(static_cast<ZRVSbranchobject>(bo->handle));
  bo->handle = nullptr;
  Py_CLEAR(bo->problem);
  Py_TYPE(self)->tp_free(self);
}

int Ready(PyObject *self) {
  if (Handle(self) && Bo(self)->problem) return 0;
  PyErr_SetString(ModelError, "The branching object has not been created");
  return -1;
}

// Parses with current and legacy keywords.
template <class... Out>
bool Parse(PyObject *args, PyObject *kwds, const char *format, const char *const *kw,
           const char *const *legacy, Out *...out) {
  return ParseWithLegacy(args, kwds, format, kw, legacy, out...) != 0;
}

PyObject *Done(PyObject *self, int status) {
  if (status != 0) return ReportError(self, nullptr);
  Py_RETURN_NONE;
}

PyObject *AddBounds(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", "bndtype", "colind", "bndval", nullptr};
  static const char *const old[] = {"ibranch", "bndtype", "bndcol", "bndval", nullptr};
  int branch = 0;
  PyObject *type = nullptr, *cols = nullptr, *vals = nullptr;
  if (Ready(self) < 0 || !Parse(args, kwds, "iOOO", kw, old, &branch, &type, &cols, &vals))
    return nullptr;
  Py_ssize_t n = -1;
  NativeArray t, c, v;
  ProblemObject *p = Owner(self);
  if (SequenceToArray(p, &n, type, t.slot(), ElemChar) < 0 ||
      SequenceToArray(p, &n, cols, c.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &n, vals, v.slot(), ElemDouble) < 0)
    return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_addbounds, Handle(self), branch,
                                 static_cast<int>(n < 0 ? 0 : n), t.as<const char>(),
                                 c.as<const int>(), v.as<const double>()));
}

PyObject *AddBranches(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"nbranches", nullptr};
  int n = 0;
  if (Ready(self) < 0 || !Parse(args, kwds, "i", kw, nullptr, &n)) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_addbranches, Handle(self), n));
}

PyObject *AddCuts(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", "cutind", nullptr};
  static const char *const old[] = {"ibranch", "cutind", nullptr};
  int branch = 0;
  PyObject *cuts = nullptr;
  if (Ready(self) < 0 || !Parse(args, kwds, "iO", kw, old, &branch, &cuts)) return nullptr;
  Py_ssize_t n = -1;
  NativeArray h;
  if (SequenceToArray(Owner(self), &n, cuts, h.slot(), ElemCut) < 0) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_addcuts, Handle(self), branch,
                                 static_cast<int>(n < 0 ? 0 : n), h.as<const ZRVScut>()));
}

PyObject *AddRows(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", "rowtype", "rhs", "start", "colind", "rowcoef",
                                   nullptr};
  static const char *const old[] = {"ibranch", "rtype", "rhs", "beg", "mcol", "val", nullptr};
  int branch = 0;
  PyObject *type = nullptr, *rhs = nullptr, *start = nullptr, *cols = nullptr, *vals = nullptr;
  if (Ready(self) < 0 ||
      !Parse(args, kwds, "iOOOOO", kw, old, &branch, &type, &rhs, &start, &cols, &vals))
    return nullptr;
  Py_ssize_t n = -1, nz = -1;
  NativeArray t, r, s, c, v;
  ProblemObject *p = Owner(self);
  if (SequenceToArray(p, &n, type, t.slot(), ElemChar) < 0 ||
      SequenceToArray(p, &n, rhs, r.slot(), ElemDouble) < 0 ||
      SequenceToArray(p, &n, start, s.slot(), ElemInt) < 0 ||
      SequenceToArray(p, &nz, cols, c.slot(), ElemColumn) < 0 ||
      SequenceToArray(p, &nz, vals, v.slot(), ElemDouble) < 0)
    return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_addrows, Handle(self), branch,
                                 static_cast<int>(n < 0 ? 0 : n), static_cast<int>(nz < 0 ? 0 : nz),
                                 t.as<const char>(), r.as<const double>(), s.as<const int>(),
                                 c.as<const int>(), v.as<const double>()));
}

int Scratch(NativeArray &a, Py_ssize_t n, size_t width) {
  return NativeAllocator.allocate(NativeAllocator.context,
                                  static_cast<size_t>(n > 0 ? n : 1) * width, a.slot());
}

PyObject *GetBounds(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", "maxbounds", "bndtype", "colind", "bndval", nullptr};
  static const char *const old[] = {"ibranch", "nbounds_size", "bndtype", "bndcol", "bndval",
                                    nullptr};
  int branch = 0, maxb = 0, n = 0;
  PyObject *type = Py_None, *cols = Py_None, *vals = Py_None;
  if (Ready(self) < 0 || !Parse(args, kwds, "ii|OOO", kw, old, &branch, &maxb, &type, &cols, &vals))
    return nullptr;
  NativeArray t, c, v;
  if (Scratch(t, maxb, 1) || Scratch(c, maxb, sizeof(int)) || Scratch(v, maxb, sizeof(double)))
    return nullptr;
  if (CallUnlocked(ZRVS_bo_getbounds, Handle(self), branch, &n, maxb, t.as<char>(), c.as<int>(),
                   v.as<double>()) != 0)
    return ReportError(self, nullptr);
  const Py_ssize_t got = n < maxb ? n : maxb;
  ProblemObject *p = Owner(self);
  if ((type != Py_None && ArrayToList(p, got, t.get(), type, ElemChar) < 0) ||
      (cols != Py_None && ArrayToList(p, got, c.get(), cols, ElemColumn) < 0) ||
      (vals != Py_None && ArrayToList(p, got, v.get(), vals, ElemDouble) < 0))
    return nullptr;
  return PyLong_FromLong(n);
}

PyObject *GetRows(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", "maxrows", "maxcoefs", "rowtype", "rhs",
                                   "start", "colind", "rowcoef", nullptr};
  static const char *const old[] = {"ibranch", "nrows_size", "nelems_size", "rtype", "rrhs",
                                    "rbeg", "mcol", "dval", nullptr};
  int branch = 0, maxr = 0, maxc = 0, nr = 0, nc = 0;
  PyObject *type = Py_None, *rhs = Py_None, *start = Py_None, *cols = Py_None, *vals = Py_None;
  if (Ready(self) < 0 || !Parse(args, kwds, "iii|OOOOO", kw, old, &branch, &maxr, &maxc, &type,
                                &rhs, &start, &cols, &vals))
    return nullptr;
  NativeArray t, r, s, c, v;
  if (Scratch(t, maxr, 1) || Scratch(r, maxr, sizeof(double)) ||
      Scratch(s, maxr + 1, sizeof(int)) || Scratch(c, maxc, sizeof(int)) ||
      Scratch(v, maxc, sizeof(double)))
    return nullptr;
  if (CallUnlocked(ZRVS_bo_getrows, Handle(self), branch, &nr, maxr, &nc, maxc, t.as<char>(),
                   r.as<double>(), s.as<int>(), c.as<int>(), v.as<double>()) != 0)
    return ReportError(self, nullptr);
  const Py_ssize_t gr = nr < maxr ? nr : maxr, gc = nc < maxc ? nc : maxc;
  ProblemObject *p = Owner(self);
  if ((type != Py_None && ArrayToList(p, gr, t.get(), type, ElemChar) < 0) ||
      (rhs != Py_None && ArrayToList(p, gr, r.get(), rhs, ElemDouble) < 0) ||
      (start != Py_None && ArrayToList(p, gr + 1, s.get(), start, ElemInt) < 0) ||
      (cols != Py_None && ArrayToList(p, gc, c.get(), cols, ElemColumn) < 0) ||
      (vals != Py_None && ArrayToList(p, gc, v.get(), vals, ElemDouble) < 0))
    return nullptr;
  return Py_BuildValue("(ii)", nr, nc);
}

PyObject *GetBranches(PyObject *self, PyObject *) {
  int n = 0;
  if (Ready(self) < 0) return nullptr;
  if (CallUnlocked(ZRVS_bo_getbranches, Handle(self), &n) != 0) return ReportError(self, nullptr);
  return PyLong_FromLong(n);
}

PyObject *GetId(PyObject *self, PyObject *) {
  int id = 0;
  if (Ready(self) < 0) return nullptr;
  if (CallUnlocked(ZRVS_bo_getid, Handle(self), &id) != 0) return ReportError(self, nullptr);
  return PyLong_FromLong(id);
}

PyObject *GetLastError(PyObject *self, PyObject *) {
  char text[ZRVS_MAXMESSAGELENGTH] = "";
  int code = 0;
  if (Ready(self) < 0) return nullptr;
  if (CallUnlocked(ZRVS_bo_getlasterror, Handle(self), &code, static_cast<char *>(text),
                   static_cast<int>(sizeof text), static_cast<int *>(nullptr)) != 0)
    return ReportError(nullptr, nullptr);
  return Py_BuildValue("(is)", code, text);
}

PyObject *SetPreferredBranch(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"branch", nullptr};
  static const char *const old[] = {"ibranch", nullptr};
  int branch = 0;
  if (Ready(self) < 0 || !Parse(args, kwds, "i", kw, old, &branch)) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_setpreferredbranch, Handle(self), branch));
}

PyObject *SetPriority(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *const kw[] = {"priority", nullptr};
  int priority = 0;
  if (Ready(self) < 0 || !Parse(args, kwds, "i", kw, nullptr, &priority)) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_setpriority, Handle(self), priority));
}

PyObject *Store(PyObject *self, PyObject *) {
  if (Ready(self) < 0) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_store, Handle(self)));
}

PyObject *Validate(PyObject *self, PyObject *) {
  if (Ready(self) < 0) return nullptr;
  return Done(self, CallUnlocked(ZRVS_bo_validate, Handle(self)));
}

#define KW_METHOD(name, fn, doc) \
  {name, reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(fn)), \
   METH_VARARGS | METH_KEYWORDS, doc}
#define NO_ARGS(name, fn, doc) {name, fn, METH_NOARGS, doc}

PyMethodDef kMethods[] = {
    KW_METHOD("addbounds", AddBounds, "addbounds(branch, bndtype, colind, bndval): bounds of a branch."),
    KW_METHOD("addbranches", AddBranches, "addbranches(nbranches): appends empty branches."),
    KW_METHOD("addcuts", AddCuts, "addcuts(branch, cutind): pool cuts loaded in a branch."),
    KW_METHOD("addrows", AddRows, "addrows(branch, rowtype, rhs, start, colind, rowcoef): rows of a branch."),
    KW_METHOD("getbounds", GetBounds, "getbounds(branch, maxbounds, bndtype, colind, bndval): the bounds of a branch; returns their number."),
    NO_ARGS("getbranches", GetBranches, "getbranches(): the number of branches."),
    NO_ARGS("getid", GetId, "getid(): the object's identifier."),
    NO_ARGS("getlasterror", GetLastError, "getlasterror(): (code, message) of the last error."),
    KW_METHOD("getrows", GetRows, "getrows(branch, maxrows, maxcoefs, rowtype, rhs, start, colind, rowcoef): rows of a branch; returns (rows, coefficients)."),
    KW_METHOD("setpreferredbranch", SetPreferredBranch, "setpreferredbranch(branch): the branch explored first."),
    KW_METHOD("setpriority", SetPriority, "setpriority(priority): lower values are used first."),
    NO_ARGS("store", Store, "store(): hands a copy to the search."),
    NO_ARGS("validate", Validate, "validate(): checks branches, columns, rows and cuts."),
    {nullptr, nullptr, 0, nullptr}};

}  // namespace

void SetupBranchObjType() {
  PyTypeObject &t = BranchObjType;
  InitType(t, "zorvan.branchobj", sizeof(BranchObjObject));
  t.tp_init = BranchObjInit;
  t.tp_dealloc = BranchObjDealloc;
  t.tp_methods = kMethods;
  RegisterErrorSource(&t, RaiseBranchObjError);
  t.tp_doc = ZRV_HELP(
      "A user branching object: custom branches for the branch-and-bound search.",
      "b = zorvan.branchobj(prob, branches=None, isoriginal=True)",
      "prob: the problem; branches: a list whose items are branches, each a constraint or a "
      "list of constraints (single-variable ones become bounds); isoriginal: whether columns "
      "and rows refer to the original problem.",
      "b = zorvan.branchobj(p, [x <= 0, x >= 1]); b.store()",
      "Stored outside a solve, the object branches the root of the next search; stored from "
      "a node callback, the node.",
      "problem, poolcut");
}

}  // namespace zrv
