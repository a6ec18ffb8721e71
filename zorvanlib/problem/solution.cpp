// problem.getSolution, getSlack, getDual and getRCost: one result vector of
// the last solve, read whole, by index, by name or by object, or (for values)
// used to evaluate expressions.
#include "problem/solution.h"

#include "problem/arguments.h"
#include "model/constraint.h"
#include "model/var.h"
#include "base/limits.h"
#include "base/containers.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "nonlinear/evaluate.h"
#include "problem/formula_batch.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

enum Vector { kPrimal, kSlack, kDual, kRCost };

bool RowVector(Vector v) { return v == kSlack || v == kDual; }

int FailWithReason(PyObject *self, const char *what);

// A vector of the nonlinear solver's last solution.
int FetchNonlinear(ProblemObject *p, Vector which, std::vector<double> &out) {
  ZSLPprob slp = p->slpprob;
  int n = 0;
  const int count = RowVector(which) ? ZSLP_ORIGINALROWS : ZSLP_ORIGINALCOLS;
  PyObject *self = reinterpret_cast<PyObject *>(p);
  if (CallUnlocked(ZSLPgetintattrib, slp, count, &n) != 0)
    return RaiseSlpError(p, "Could not read the size of the nonlinear problem");
  out.assign(static_cast<size_t>(n > 0 ? n : 0), 0.0);
  double scratch = 0.0;
  double *buffer = out.empty() ? &scratch : out.data();
  int rc = CallUnlocked(ZSLPgetslpsol, slp, which == kPrimal ? buffer : nullptr,
                        which == kSlack ? buffer : nullptr, which == kDual ? buffer : nullptr,
                        which == kRCost ? buffer : nullptr);
  if (rc == 0) return 0;
  RaiseSlpError(p, "No solution of the nonlinear problem is available");
  switch (which) {
    case kPrimal: return -1;
    case kSlack: return FailWithReason(self, "Could not get constraints' slack");
    case kDual: return FailWithReason(self, "Could not get dual solution");
    case kRCost: return FailWithReason(self, "Could not retrieve reduced costs");
  }
  return -1;
}

// SolverError "<what>: <the engine's reason>" (such as no solution being
// available since the last change), the reason being the pending error when
// there is one. Returns -1.
int FailWithReason(PyObject *self, const char *what) {
  ReportError(self, nullptr);
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  PyObject *reason = value ? PyObject_Str(value) : nullptr;
  Py_XDECREF(type);
  Py_XDECREF(value);
  Py_XDECREF(traceback);
  if (reason && PyUnicode_GET_LENGTH(reason) > 0)
    PyErr_Format(SolverError, "%s: %U", what, reason);
  else
    PyErr_SetString(SolverError, what);
  Py_XDECREF(reason);
  return -1;
}

// The whole vector of the last solve.
int Fetch(ProblemObject *p, Vector which, std::vector<double> &out) {
  bool nonlinear, mip;
  if (UsesNonlinearSolution(p, &nonlinear) < 0) return -1;
  if (nonlinear) return FetchNonlinear(p, which, out);
  int n = 0;
  if (ReadIntAttrib(p, RowVector(which) ? ZRVS_ORIGINALROWS : ZRVS_ORIGINALCOLS, &n) < 0) return -1;
  if (ProblemIsMip(p, &mip) < 0) return -1;
  if (mip && which == kDual) {
    PyErr_SetString(SolverError, "Cannot retrieve dual variables in a MIP");
    return -1;
  }
  if (mip && which == kRCost) {
    PyErr_SetString(SolverError, "Cannot retrieve reduced cost in a MIP");
    return -1;
  }
  out.assign(static_cast<size_t>(n > 0 ? n : 0), 0.0);
  // The engine takes a null array as "not wanted"; an empty vector is given
  // a one-entry buffer so that the call still checks that a solution exists.
  double scratch = 0.0;
  double *buffer = out.empty() ? &scratch : out.data();
  ZRVSprob prob = p->prob;
  int rc;
  CallUnlocked([&] {
    if (mip) {
      rc = ZRVSgetmipsol(prob, which == kPrimal ? buffer : nullptr,
                         which == kSlack ? buffer : nullptr);
    } else {
      rc = ZRVSgetlpsol(prob, which == kPrimal ? buffer : nullptr,
                        which == kSlack ? buffer : nullptr, which == kDual ? buffer : nullptr,
                        which == kRCost ? buffer : nullptr);
    }
  });
  if (rc == 0) return 0;
  // The engine keeps no solution vectors for a problem without columns or
  // rows; an empty vector is all there is to give when the solve succeeded.
  if (out.empty()) {
    int status = 0;
    if (ReadIntAttrib(p, mip ? ZRVS_MIPSTATUS : ZRVS_LPSTATUS, &status) < 0) return -1;
    if (mip ? status == ZRVS_MIP_SOLUTION || status == ZRVS_MIP_OPTIMAL
            : status == ZRVS_LP_OPTIMAL)
      return 0;
  }
  PyObject *self = reinterpret_cast<PyObject *>(p);
  switch (which) {
    case kPrimal: return ReportFailure(self);
    case kSlack: return FailWithReason(self, "Could not get constraints' slack");
    case kDual: return FailWithReason(self, "Could not get dual solution");
    case kRCost: return FailWithReason(self, "Could not retrieve reduced costs");
  }
  return -1;
}

bool IsScalarArgument(PyObject *o) {
  if (PyUnicode_Check(o) || PyBytes_Check(o)) return true;
  return !PyList_Check(o) && !PyTuple_Check(o) && !PySequence_Check(o) && !PyIter_Check(o) &&
         !PyDict_Check(o);
}

// The value at the position an index, name or object stands for.
PyObject *ValueAt(ProblemObject *p, PyObject *o, Vector which, const std::vector<double> &v) {
  int32_t index = -1;
  PyTypeObject *type = Py_TYPE(o);
  const bool rows = RowVector(which);
  if (IsIntegerObject(o)) {
    long i = PyLong_AsLong(o);
    if (i == -1 && PyErr_Occurred()) {
      if (!PyErr_ExceptionMatches(PyExc_OverflowError)) return nullptr;
      PyErr_Clear();
      i = -1;  // beyond any position
    }
    if (i < 0 || static_cast<size_t>(i) >= v.size()) {
      PyErr_SetString(ModelError, "Index out of range");
      return nullptr;
    }
    index = static_cast<int32_t>(i);
  } else if (PyUnicode_Check(o) || PyBytes_Check(o) || (rows && type == &ConstraintType) ||
             (!rows && type == &VarType)) {
    if (ObjectToIndex(o, p, &index, rows ? ElemRow : ElemColumn) < 0) return nullptr;
  } else {
    PyErr_SetString(ModelError, "Incorrect object(s) passed: need index, variable, constraint, or SOS");
    return nullptr;
  }
  if (index < 0 || static_cast<size_t>(index) >= v.size()) {
    PyErr_SetString(ModelError, "Index out of range");
    return nullptr;
  }
  return PyFloat_FromDouble(v[static_cast<size_t>(index)]);
}

// Follows nested sequences: a list gives a list, a tuple a tuple, a
// dictionary a dictionary with the same keys, any other sequence or
// iterator a list; everything else is a position.
PyObject *Walk(ProblemObject *p, PyObject *o, Vector which, const std::vector<double> &v,
               int depth) {
  if (IsScalarArgument(o)) return ValueAt(p, o, which, v);
  if (depth <= 0) {
    PyErr_SetString(ModelError, "Sequences of indices are nested too deeply");
    return nullptr;
  }
  if (PyDict_Check(o))
    return MapDictValues(o, [&](PyObject *item) { return Walk(p, item, which, v, depth - 1); });
  const bool tuple = PyTuple_Check(o);
  PyObject *items = PySequence_List(o);  // also drains an iterator
  if (!items) return nullptr;
  const Py_ssize_t n = PyList_GET_SIZE(items);
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *value = Walk(p, PyList_GET_ITEM(items, i), which, v, depth - 1);
    if (!value) {
      Py_DECREF(items);
      return nullptr;
    }
    PyList_SetItem(items, i, value);  // steals value, drops the old item
  }
  if (!tuple) return items;
  PyObject *result = PyList_AsTuple(items);
  Py_DECREF(items);
  return result;
}

PyObject *AllValues(const std::vector<double> &v) {
  PyObject *list = PyList_New(static_cast<Py_ssize_t>(v.size()));
  if (!list) return nullptr;
  for (size_t i = 0; i < v.size(); ++i) {
    PyObject *f = PyFloat_FromDouble(v[i]);
    if (!f) {
      Py_DECREF(list);
      return nullptr;
    }
    PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), f);
  }
  return list;
}

// The whole vector as the user sees it: without the entry of the transfer
// row or column of a nonlinear objective.
PyObject *VisibleValues(ProblemObject *p, Vector which, std::vector<double> &v) {
  int row = -1, col = -1;
  if (FindTransfer(p, &row, &col) < 0) return nullptr;
  const int hidden = which == kPrimal || which == kRCost ? col : row;
  if (hidden >= 0 && static_cast<size_t>(hidden) < v.size())
    v.erase(v.begin() + hidden);
  return AllValues(v);
}

PyObject *Getter(PyObject *self, PyObject *args, Vector which) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  std::vector<double> v;
  if (Fetch(p, which, v) < 0) return nullptr;
  const Py_ssize_t n = PyTuple_GET_SIZE(args);
  if (n == 0) return VisibleValues(p, which, v);
  if (n == 1) return Walk(p, PyTuple_GET_ITEM(args, 0), which, v, kArgumentNesting);
  PyObject *list = PySequence_List(args);
  if (!list) return nullptr;
  PyObject *result = Walk(p, list, which, v, kArgumentNesting);
  Py_DECREF(list);
  return result;
}

}  // namespace

int ProblemIsMip(ProblemObject *p, bool *mip) {
  static const int kIds[] = {ZRVS_MIPENTS, ZRVS_SETS, ZRVS_GENCONS, ZRVS_INDICATORS};
  *mip = false;
  for (int id : kIds) {
    int n = 0;
    if (ReadIntAttrib(p, id, &n) < 0) return -1;
    if (n != 0) *mip = true;
  }
  return 0;
}

int UsesNonlinearSolution(ProblemObject *p, bool *yes) {
  *yes = false;
  ZSLPprob slp = p->slpprob;
  if (GetSlpStarted() != 1 || !slp) return 0;
  if (p->nl_constraints > 0 || p->nl_objective) {
    *yes = true;
    return 0;
  }
  int status = 0, rc;
  rc = CallUnlocked(ZSLPgetintattrib, slp, ZSLP_NLPSTATUS, &status);
  if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
  *yes = status >= 1 && status <= 6;
  return 0;
}

int FetchPrimal(ProblemObject *p, std::vector<double> &x) { return Fetch(p, kPrimal, x); }

PyObject *ProblemGetSolution(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  PyObject *flatten = Py_False;
  if (kwds) {
    static const char *keywords[] = {"flatten", nullptr};
    PyObject *empty = PyTuple_New(0);
    if (!empty) return nullptr;
    int ok = PyArg_ParseTupleAndKeywords(empty, kwds, "|$O", const_cast<char **>(keywords),
                                         &flatten);
    Py_DECREF(empty);
    if (!ok) return nullptr;
  }
  const Py_ssize_t n = PyTuple_GET_SIZE(args);
  if (n == 0 || flatten == Py_True) return Getter(self, args, kPrimal);
  std::vector<double> x;
  if (FetchPrimal(p, x) < 0) return nullptr;
  EvalPoint point;
  point.values = x.data();
  point.count = static_cast<Py_ssize_t>(x.size());
  point.columns = p->colmap;
  if (n == 1) return EvaluateObject(PyTuple_GET_ITEM(args, 0), point);
  PyObject *list = PySequence_List(args);
  if (!list) return nullptr;
  PyObject *result = EvaluateObject(list, point);
  Py_DECREF(list);
  return result;
}

PyObject *ProblemGetSlack(PyObject *self, PyObject *args) { return Getter(self, args, kSlack); }
PyObject *ProblemGetDual(PyObject *self, PyObject *args) { return Getter(self, args, kDual); }
PyObject *ProblemGetRCost(PyObject *self, PyObject *args) { return Getter(self, args, kRCost); }

const char GetSolutionDoc[] = ZRV_HELP(
    "Read the values of the variables in the current solution, or evaluate expressions "
    "there.",
    "p.getSolution(*args, flatten=False)",
    "args: nothing (all columns), or variables, terms, expressions, nonlinear expressions and "
    "lists, tuples, dictionaries or NumPy arrays of them; flatten: True reads args as "
    "positions instead: column indices, column names, variables, or (nested) sequences of "
    "them.",
    "p.optimize()\n    p.getSolution()         # [x value, y value, ...]\n"
    "    p.getSolution(x)        # 3.0\n    p.getSolution(2*x + 1)  # 7.0\n"
    "    p.getSolution('x', 0, flatten=True)  # [3.0, 3.0]",
    "Without flatten, every argument is evaluated at the solution, so that an integer stands "
    "for itself; use flatten=True to read by column index or name. One argument gives one "
    "result; several give a list. For a MIP the best integer solution is read. Variables "
    "not in the problem raise ModelError.",
    "problem.optimize, problem.getSlack, problem.getDual, problem.getRCost, zorvan.evaluate");

#define ZRV_ROW_GETTER_HELP(what, example, further)                                         \
  ZRV_HELP("Read the " what " of the constraints in the current solution.",               \
           "p." example "(*args)",                                                          \
           "args: nothing (all rows), or row indices, row names, constraints, or (nested) " \
           "lists, tuples, dictionaries or iterators of them.",                             \
           "p.optimize()\n    p." example "()  # one value per row\n    p." example        \
           "(c1)  # one float\n    p." example "([c1, 'c2', 0])  # a list",                  \
           further, "problem.optimize, problem.getSolution, problem.getSlack, "              \
           "problem.getDual, problem.getRCost")

const char GetSlackDoc[] = ZRV_ROW_GETTER_HELP(
    "slacks", "getSlack",
    "The slack of a row is its right-hand side minus its activity. A position outside the "
    "rows raises ModelError 'Index out of range'.");
const char GetDualDoc[] = ZRV_ROW_GETTER_HELP(
    "dual values", "getDual",
    "The dual value of a row is the change of the objective per unit increase of its "
    "right-hand side. A MIP has none: SolverError 'Cannot retrieve dual variables in a MIP'.");
const char GetRCostDoc[] = ZRV_HELP(
    "Read the reduced costs of the variables in the current solution.", "p.getRCost(*args)",
    "args: nothing (all columns), or column indices, column names, variables, or (nested) "
    "lists, tuples, dictionaries or iterators of them.",
    "p.optimize()\n    p.getRCost()  # one value per column\n    p.getRCost(x)  # one float",
    "A MIP has no reduced costs: SolverError 'Cannot retrieve reduced cost in a MIP'. A "
    "position outside the columns raises ModelError 'Index out of range'.",
    "problem.optimize, problem.getSolution, problem.getDual, problem.getSlack");

}  // namespace zrv
