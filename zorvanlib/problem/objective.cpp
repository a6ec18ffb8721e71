// problem.setObjective and problem.addObjective.
#include "problem/objective.h"

#include <vector>

#include "problem/arguments.h"
#include "problem/terms.h"
#include "problem/formula_batch.h"
#include "problem/objective_transfer.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "base/engine_call.h"
#include "base/limits.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "controls/control.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// An objective in engine terms: constant, coefficients by column and the
// quadratic part as coef * x[col1] * x[col2].
struct Objective {
  double constant = 0.0;
  std::vector<int> cols;
  std::vector<double> coefs;
  std::vector<int> qcol1, qcol2;
  std::vector<double> qcoefs;
};

// Objective entries as they are written: coef * x[col1] * x[col2].
struct ObjectiveTerms {
  Objective &obj;
  int Linear(int col, double coef) {
    obj.cols.push_back(col);
    obj.coefs.push_back(coef);
    return 0;
  }
  int Quadratic(int c1, int c2, double coef) {
    obj.qcol1.push_back(c1);
    obj.qcol2.push_back(c2);
    obj.qcoefs.push_back(coef);
    return 0;
  }
};

// What cannot be an objective is refused before anything changes.
const BodyRules kObjectiveRules = {
    false,
    "Nonlinear objectives need the nonlinear library, which could not be started",
    "Invalid object set as objective"};

int Decompose(ProblemObject *p, PyObject *o, Objective &obj,
              const BodyFormulas &formulas = BodyFormulas()) {
  ObjectiveTerms terms{obj};
  return DecomposeBody(p->colmap, o, kObjectiveRules, terms, &obj.constant, formulas);
}

// Every column's coefficient of the new objective, zero where it has none;
// with a leading entry for the constant (column -1) when `constant` is set.
void DenseCoefficients(const Objective &obj, int ncols, bool constant, std::vector<int> &ind,
                       std::vector<double> &val) {
  const size_t offset = constant ? 1 : 0;
  ind.resize(static_cast<size_t>(ncols) + offset);
  val.assign(static_cast<size_t>(ncols) + offset, 0.0);
  if (constant) {
    ind[0] = -1;
    val[0] = obj.constant;
  }
  for (int j = 0; j < ncols; ++j) ind[static_cast<size_t>(j) + offset] = j;
  for (size_t i = 0; i < obj.cols.size(); ++i)
    val[static_cast<size_t>(obj.cols[i]) + offset] += obj.coefs[i];
}

int SetPrimary(ProblemObject *p, const Objective &obj, FormulaBatch &formulas) {
  if (RemoveTransfer(p) < 0) return -1;
  int ncols = 0, qelems = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &ncols) < 0) return -1;
  if (ReadIntAttrib(p, ZRVS_QELEMS, &qelems) < 0) return -1;
  std::vector<int> ind;
  std::vector<double> val;
  DenseCoefficients(obj, ncols, true, ind, val);
  // The old quadratic part, upper triangle, to be cleared.
  std::vector<int64_t> start;
  std::vector<int> qind, clear1, clear2;
  std::vector<double> qval;
  // The new one: a x_i^2 is the matrix entry (i, i, 2a), b x_i x_j is (i, j, b).
  std::vector<int> new1(obj.qcol1), new2(obj.qcol2);
  std::vector<double> newv(obj.qcoefs);
  for (size_t i = 0; i < newv.size(); ++i)
    if (new1[i] == new2[i]) newv[i] *= 2.0;
  ZRVSprob prob = p->prob;
  int rc = 0;
  CallUnlocked([&] {
    rc = ZRVSchgobj(prob, static_cast<int>(ind.size()), ind.data(), val.data());
    if (rc == 0 && qelems > 0 && ncols > 0) {
      int64_t n = 0;
      start.resize(static_cast<size_t>(ncols) + 1);
      rc = ZRVSgetmqobj64(prob, start.data(), nullptr, nullptr, 0, &n, 0, ncols - 1);
      if (rc == 0 && n > 0) {
        qind.resize(static_cast<size_t>(n));
        qval.resize(static_cast<size_t>(n));
        rc = ZRVSgetmqobj64(prob, start.data(), qind.data(), qval.data(), n, &n, 0, ncols - 1);
      }
      if (rc == 0 && n > 0) {
        for (int j = 0; j < ncols; ++j) {
          for (int64_t k = start[static_cast<size_t>(j)]; k < start[static_cast<size_t>(j) + 1]; ++k) {
            if (qind[static_cast<size_t>(k)] <= j) {
              clear1.push_back(qind[static_cast<size_t>(k)]);
              clear2.push_back(j);
            }
          }
        }
        std::vector<double> zeros(clear1.size(), 0.0);
        rc = ZRVSchgmqobj64(prob, static_cast<int64_t>(clear1.size()), clear1.data(),
                            clear2.data(), zeros.data());
      }
    }
    if (rc == 0 && !newv.empty())
      rc = ZRVSchgmqobj64(prob, static_cast<int64_t>(newv.size()), new1.data(), new2.data(),
                          newv.data());
  });
  if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
  return formulas.count() > 0 ? AddTransfer(p, formulas) : 0;
}

int SetFurther(ProblemObject *p, const Objective &obj, int k, int count) {
  int ncols = 0, qelems = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &ncols) < 0) return -1;
  if (ReadIntAttrib(p, ZRVS_QELEMS, &qelems) < 0) return -1;
  if (!obj.qcoefs.empty() || qelems != 0 || p->nl_objective) {
    PyErr_SetString(ModelError,
                    "Quadratic and nonlinear objectives are not supported in multi-objective "
                    "problems");
    return -1;
  }
  std::vector<int> ind;
  std::vector<double> val;
  DenseCoefficients(obj, ncols, false, ind, val);
  ZRVSprob prob = p->prob;
  const double constant = obj.constant;
  int rc;
  CallUnlocked([&] {
    rc = ZRVSchgobjn(prob, k, static_cast<int>(ind.size()), ind.data(), val.data());
    if (rc == 0) {
      rc = ZRVSsetobjdblcontrol(prob, k, ZRVS_OBJECTIVE_RHS, constant);
      // A new objective that could not be completed is taken out again.
      if (rc != 0 && k == count) ZRVSdelobj(prob, k);
    }
  });
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

int ObjectiveCount(ProblemObject *p, int *count) { return ReadIntAttrib(p, ZRVS_OBJECTIVES, count); }

// The objective controls given with a call, by identifier.
struct ControlArgs {
  PyObject *priority = nullptr, *weight = nullptr, *abstol = nullptr, *reltol = nullptr;
};

// Objective controls as they were before a call changed them: (id, value).
struct SavedControls {
  std::vector<std::pair<int, PyObject *>> values;
  ~SavedControls() {
    for (auto &v : values) Py_DECREF(v.second);
  }
};

int ReadSense(ProblemObject *p, int *sense) {
  double v = 0.0;
  PyObject *self = reinterpret_cast<PyObject *>(p);
  if (CallEngine(self, ZRVSgetdblattrib, p->prob, ZRVS_OBJSENSE, &v) < 0) return -1;
  *sense = v < 0 ? -1 : 1;
  return 0;
}

// Undoes a failed setObjective: the old sense (when not 0) and the old
// values of the controls it set. The pending error is kept.
void Restore(ProblemObject *p, int k, const SavedControls &saved, int sense) {
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  if (sense != 0 && SetSense(p, sense) < 0) PyErr_Clear();
  for (const auto &v : saved.values) {
    PyObject *key = PyUnicode_FromString(ObjControlName(v.first));
    if (key && SetObjControl(p, k, v.first, key, v.second) < 0) PyErr_Clear();
    Py_XDECREF(key);
    if (!key) PyErr_Clear();
  }
  PyErr_Restore(type, value, traceback);
}

// Sets the controls given (not None) on objective k. With `saved`, each old
// value is recorded first, and on failure the ones already changed are set
// back.
int ApplyControls(ProblemObject *p, int k, const ControlArgs &c, SavedControls *saved) {
  const struct {
    PyObject *value;
    int id;
  } items[] = {{c.priority, ZRVS_OBJECTIVE_PRIORITY},
               {c.weight, ZRVS_OBJECTIVE_WEIGHT},
               {c.abstol, ZRVS_OBJECTIVE_ABSTOL},
               {c.reltol, ZRVS_OBJECTIVE_RELTOL}};
  for (const auto &item : items) {
    if (!item.value || item.value == Py_None) continue;
    if (saved) {
      PyObject *old = GetObjControl(p, k, item.id);
      if (!old) {
        Restore(p, k, *saved, 0);
        return -1;
      }
      saved->values.emplace_back(item.id, old);
    }
    PyObject *key = PyUnicode_FromString(ObjControlName(item.id));
    int rc = key ? SetObjControl(p, k, item.id, key, item.value) : -1;
    Py_XDECREF(key);
    if (rc < 0) {
      if (saved) Restore(p, k, *saved, 0);
      return -1;
    }
  }
  return 0;
}

// Checks the types of the controls before anything changes, with the
// messages of SetObjControl.
int CheckControls(const ControlArgs &c) {
  if (c.priority && c.priority != Py_None && !PyLong_Check(c.priority)) {
    PyErr_SetString(ModelError, "Control 'priority' requires an integer value");
    return -1;
  }
  const struct {
    PyObject *value;
    const char *message;
  } reals[] = {{c.weight, "Control 'weight' requires a float value"},
               {c.abstol, "Control 'abstol' requires a float value"},
               {c.reltol, "Control 'reltol' requires a float value"}};
  for (const auto &r : reals) {
    if (r.value && r.value != Py_None && !PyFloat_Check(r.value)) {
      PyErr_SetString(ModelError, r.message);
      return -1;
    }
  }
  return 0;
}

// Collects the objectives of (nested) sequences in order.
int Collect(PyObject *o, std::vector<PyObject *> &out, int depth) {
  if (PyList_Check(o) || PyTuple_Check(o) || PyIter_Check(o)) {
    if (depth <= 0) {
      PyErr_SetString(ModelError, "Sequences of objectives are nested too deeply");
      return -1;
    }
    PyObject *items = PySequence_List(o);
    if (!items) return -1;
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items); ++i) {
      if (Collect(PyList_GET_ITEM(items, i), out, depth - 1) < 0) {
        Py_DECREF(items);
        return -1;
      }
    }
    Py_DECREF(items);
    return 0;
  }
  Py_INCREF(o);
  out.push_back(o);
  return 0;
}

int ParseSense(PyObject *sense, int *out) {
  if (IsIntegerObject(sense)) {
    long v = PyLong_AsLong(sense);
    if (v == -1 && PyErr_Occurred()) PyErr_Clear();
    if (v == 1 || v == -1) {
      *out = static_cast<int>(v);
      return 0;
    }
  }
  PyErr_SetString(ModelError, "Invalid optimization sense");
  return -1;
}

}  // namespace

int SetSense(ProblemObject *p, int sense) {
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  int rc;
  CallUnlocked([&] {
    rc = ZRVSchgobjsense(prob, sense == 1 ? ZRVS_OBJ_MINIMIZE : ZRVS_OBJ_MAXIMIZE);
    if (rc == 0 && slp) rc = ZSLPsetdblcontrol(slp, ZSLP_OBJSENSE, sense == 1 ? 1.0 : -1.0);
  });
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

int SetObjectiveAt(ProblemObject *p, PyObject *expr, int k) {
  Objective obj;
  if (k == 0) {
    FormulaBatch formulas(p);
    if (Decompose(p, expr, obj, formulas.Body()) < 0) return -1;
    return SetPrimary(p, obj, formulas);
  }
  if (KindOf(expr) == KindNonlinear) {
    PyErr_SetString(ModelError,
                    "Quadratic and nonlinear objectives are not supported in multi-objective "
                    "problems");
    return -1;
  }
  if (Decompose(p, expr, obj) < 0) return -1;
  int count = 0;
  if (ObjectiveCount(p, &count) < 0) return -1;
  if (k < 0 || k > count) {
    PyErr_SetString(ModelError, "Invalid objective index");
    return -1;
  }
  return SetFurther(p, obj, k, count);
}

PyObject *ProblemSetObjective(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "setObjective")) return nullptr;
  static const char *keywords[] = {"objective", "sense",  "objidx", "priority",
                                   "weight",    "abstol", "reltol", nullptr};
  PyObject *objective = nullptr, *sense = nullptr;
  int objidx = 0;
  ControlArgs c;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|OOiOOOO", const_cast<char **>(keywords),
                                   &objective, &sense, &objidx, &c.priority, &c.weight,
                                   &c.abstol, &c.reltol))
    return nullptr;
  int count = 0, sense_value = 0;
  if (ObjectiveCount(p, &count) < 0) return nullptr;
  if (objidx < 0 || objidx >= count) {
    PyErr_SetString(ModelError, "Invalid objective index");
    return nullptr;
  }
  if (sense && sense != Py_None && ParseSense(sense, &sense_value) < 0) return nullptr;
  if (CheckControls(c) < 0) return nullptr;
  // A failed call changes nothing: the controls go first (their old values
  // kept), then the sense, then the objective; a failure undoes the earlier.
  SavedControls saved;
  if (ApplyControls(p, objidx, c, &saved) < 0) return nullptr;
  int old_sense = 0;
  if (sense_value != 0 && (ReadSense(p, &old_sense) < 0 || SetSense(p, sense_value) < 0)) {
    Restore(p, objidx, saved, 0);
    return nullptr;
  }
  if (objective && objective != Py_None && SetObjectiveAt(p, objective, objidx) < 0) {
    Restore(p, objidx, saved, old_sense);
    return nullptr;
  }
  Py_RETURN_NONE;
}

PyObject *ProblemAddObjective(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "addObjective")) return nullptr;
  static const char *keywords[] = {"priority", "weight", "abstol", "reltol", nullptr};
  ControlArgs c;
  PyObject *empty = PyTuple_New(0);
  if (!empty) return nullptr;
  int ok = PyArg_ParseTupleAndKeywords(empty, kwds, "|$OOOO", const_cast<char **>(keywords),
                                       &c.priority, &c.weight, &c.abstol, &c.reltol);
  Py_DECREF(empty);
  if (!ok || CheckControls(c) < 0) return nullptr;
  std::vector<PyObject *> objectives;
  int rc = Collect(args, objectives, kArgumentNesting + 1);  // the argument tuple is no level
  int first = 0;
  if (rc == 0) rc = ObjectiveCount(p, &first);
  int added = 0;
  for (size_t i = 0; rc == 0 && i < objectives.size(); ++i) {
    const int k = first + added;
    rc = SetObjectiveAt(p, objectives[i], k);
    if (rc == 0) {
      ++added;
      rc = ApplyControls(p, k, c, nullptr);
    }
  }
  for (PyObject *o : objectives) Py_DECREF(o);
  if (rc == 0) Py_RETURN_NONE;
  // Take out what this call added, last first, keeping the pending error.
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  ZRVSprob prob = p->prob;
  CallUnlocked([&] {
    for (int k = first + added - 1; k >= first; --k) ZRVSdelobj(prob, k);
  });
  PyErr_Restore(type, value, traceback);
  return nullptr;
}

const char SetObjectiveDoc[] = ZRV_HELP(
    "Set the objective of the problem, its sense, and its objective controls.",
    "p.setObjective(objective, sense=None, objidx=0, priority=None, weight=None, "
    "abstol=None, reltol=None)",
    "objective: a variable, a linear or quadratic term, or an expression, in variables of "
    "the problem; sense: zorvan.minimize or zorvan.maximize (unchanged when not given); "
    "objidx: which objective to replace (0, the default, is the primary one); priority: an "
    "integer; weight, abstol, reltol: floats (the objective controls of that objective).",
    "x, y = zorvan.var(), zorvan.var()\n    p.addVariable(x, y)\n"
    "    p.setObjective(3*x + 2*y + x**2, sense=zorvan.maximize)",
    "The primary objective may be quadratic; further objectives (objidx 1 and up, added with "
    "addObjective) must be linear, and their constant is kept as the objective control "
    "'rhs'. A nonlinear primary objective is carried by a row 'objtransferrow' and a free "
    "column 'objtransfercol' (objective coefficient 1) that equals its nonlinear part; they "
    "are left out of the vectors that getSolution, getSlack, getDual and getRCost return "
    "whole. An objidx that is not an existing "
    "objective raises ModelError 'Invalid objective index'. The sense applies to every "
    "objective.",
    "problem.addObjective, problem.getControl, problem.objattribs, problem.optimize");

const char AddObjectiveDoc[] = ZRV_HELP(
    "Add further linear objectives to a multi-objective problem.",
    "p.addObjective(*objectives, priority=None, weight=None, abstol=None, reltol=None)",
    "objectives: linear expressions in variables of the problem, or (nested) lists and "
    "tuples of them; priority: an integer; weight, abstol, reltol: floats; the keywords "
    "apply to every objective of the call.",
    "p.setObjective(x + y)\n    p.addObjective(x - y, priority=1, weight=1.0)\n"
    "    p.optimize(); print(p.objattribs[1].lpobjval)",
    "Objectives are solved by decreasing priority; within one priority they are blended by "
    "weight, and each level may worsen by at most its tolerances afterwards. A quadratic "
    "expression, or a problem whose primary objective is quadratic, is refused. If one "
    "objective of the call fails, none is added.",
    "problem.setObjective, problem.objattribs, problem.getControl, problem.setControl");

}  // namespace zrv
