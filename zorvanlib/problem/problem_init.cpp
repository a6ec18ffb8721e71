// Creating a problem: engine problems, bookkeeping, user defaults, sense and
// the positional declaration arguments.
#include "problem/problem_init.h"

#include <set>

#include "model/var.h"
#include "base/engine_call.h"
#include "base/environment.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/text.h"
#include "base/types.h"
#include "problem/add_objects.h"
#include "controls/control.h"
#include "problem/objective.h"

namespace zrv {

namespace {

constexpr char kErroneousDeclaration[] =
    "Erroneous problem declaration; argument contained object that was not a variable, "
    "constraint, or expression";

bool IsObjectiveKind(PyObject *o) {
  return PyObject_TypeCheck(o, &ExpressionType) || Py_TYPE(o) == &LinTermType ||
         Py_TYPE(o) == &QuadTermType || PyObject_TypeCheck(o, &NonlinearType);
}

// The model objects of the declaration, sorted by what becomes of them.
struct Declaration {
  OwnedObjects vars, constraints, sets, objectives;
  std::set<uint64_t> var_ids;
};

// Sorts the objects of one positional argument by the kind of its first
// object: variables (a repeated one is an objective), constraints, SOS or
// objectives.
int Classify(PyObject *arg, Declaration &d) {
  OwnedObjects items;
  if (FlattenObjects(arg, items, 0, "Error declaring problem") < 0) return -1;
  if (items.size() == 0) return 0;
  PyObject *head = items[0];
  for (Py_ssize_t i = 0; i < items.size(); ++i) {
    PyObject *o = items[i];
    Py_INCREF(o);
    if (Py_TYPE(head) == &VarType) {
      if (Py_TYPE(o) != &VarType) {
        Py_DECREF(o);
        PyErr_SetString(ModelError, "Incorrect objects added as variables to problem");
        return -1;
      }
      if (d.var_ids.insert(VarIdOf(o)).second)
        d.vars.Push(o);
      else
        d.objectives.Push(o);
    } else if (Py_TYPE(head) == &ConstraintType) {
      d.constraints.Push(o);
    } else if (Py_TYPE(head) == &SosType) {
      d.sets.Push(o);
    } else if (IsObjectiveKind(head) && (IsObjectiveKind(o) || Py_TYPE(o) == &VarType)) {
      d.objectives.Push(o);
    } else {
      Py_DECREF(o);
      PyErr_SetString(ModelError, kErroneousDeclaration);
      return -1;
    }
  }
  return 0;
}

}  // namespace

int CreateBookkeeping(ProblemObject *p) {
  p->varlist = PyList_New(0);
  p->conlist = PyList_New(0);
  p->soslist = PyList_New(0);
  if (!p->varlist || !p->conlist || !p->soslist) return -1;
  p->colmap = new IndexMap();
  p->rowmap = new IndexMap();
  p->setmap = new IndexMap();
  Py_XSETREF(p->controls, NewControlView(p, ControlDict));
  Py_XSETREF(p->attributes, NewAttributeView(p, -1));
  Py_XSETREF(p->objattribs, NewObjAttribView(p));
  if (!p->controls || !p->attributes || !p->objattribs) return -1;
  return 0;
}

int CreateEngineProblems(ProblemObject *p) {
  PyObject *self = reinterpret_cast<PyObject *>(p);
  bool slp_started = GetSlpStarted() == 1;
  ZRVSprob prob = nullptr;
  ZSLPprob slp = nullptr;
  int rc, slp_rc = 0;
  CallUnlocked([&] {
    rc = ZRVScreateprob(&prob);
    if (rc == 0 && slp_started) {
      slp_rc = ZSLPcreateprob(&slp, &prob);
      if (slp_rc == 0) slp_rc = ZSLPsetintcontrol(slp, ZSLP_PRESOLVE, 0);
    }
  });
  p->prob = prob;
  p->slpprob = slp;
  if (rc != 0 || slp_rc != 0) return ReportFailure(self);
  return 0;
}

int RegisterMessageCallbacks(ProblemObject *p) {
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  int rc;
  CallUnlocked([&] {
    rc = ZRVSaddcbmessage(prob, ProblemMessage, p, 1);
    if (rc == 0 && slp) rc = ZSLPsetcbmessage(slp, ProblemSlpMessage, p);
  });
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

int InitializeProblem(ProblemObject *p, PyObject *args, PyObject *kwds) {
  if (p->prob) {
    PyErr_SetString(ModelError, "Problem is already initialized");
    return -1;
  }
  static const char *keywords[] = {"name", "sense", nullptr};
  const char *name = nullptr;
  long sense = 1;
  PyObject *empty = PyTuple_New(0);
  if (!empty) return -1;
  int ok = PyArg_ParseTupleAndKeywords(empty, kwds, "|$zl", const_cast<char **>(keywords),
                                       &name, &sense);
  Py_DECREF(empty);
  if (!ok) return -1;
  if (sense != 1 && sense != -1) {
    PyErr_SetString(ModelError, "Invalid optimization sense");
    return -1;
  }
  if (EnsureEnvironment() < 0) return -1;

  PyObject *self = reinterpret_cast<PyObject *>(p);
  int rc = CreateBookkeeping(p);
  p->nl_constraints = 0;
  p->nl_objective = 0;
  p->formula_column = -1;
  p->objtransfer = -1;
  ForgetUserFunctions(p);
  if (rc == 0) rc = CreateEngineProblems(p);
  if (rc == 0) {
    // Load the empty problem silently: the load message is not wanted here.
    ZRVSprob prob = p->prob;
    int engine_rc;
    CallUnlocked([&] {
      int saved = 1;
      engine_rc = ZRVSgetintcontrol(prob, ZRVS_OUTPUTLOG, &saved);
      if (engine_rc == 0) engine_rc = ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0);
      if (engine_rc == 0)
        engine_rc = ZRVSloadlp(prob, name ? name : "noname", 0, 0, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
      if (engine_rc == 0) engine_rc = ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, saved);
    });
    if (engine_rc != 0) rc = ReportFailure(self);
  }
  if (rc == 0) rc = RegisterMessageCallbacks(p);
  if (rc == 0) rc = ApplyUserDefaults(p);
  if (rc == 0) rc = SetSense(p, static_cast<int>(sense));
  if (rc == 0 && args) rc = ProcessDeclaration(p, args);
  if (rc < 0) {
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    ReleaseProblem(p);
    PyErr_Restore(type, value, traceback);
  }
  return rc;
}

int ProcessDeclaration(ProblemObject *p, PyObject *args) {
  bool named = false;
  Declaration d;
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(args); ++i) {
    PyObject *arg = PyTuple_GET_ITEM(args, i);
    if (PyUnicode_Check(arg) || PyBytes_Check(arg)) {
      if (named) {
        PyErr_SetString(ModelError, "More than one string passed in problem declaration");
        return -1;
      }
      named = true;
      Py_ssize_t length = 0;
      const char *text = PyUnicode_Check(arg) ? PyUnicode_AsUTF8AndSize(arg, &length)
                                              : PyBytes_AS_STRING(arg);
      if (PyBytes_Check(arg)) length = PyBytes_GET_SIZE(arg);
      if (!text || CheckNameText(text, length, "problem", arg) < 0) return -1;
      ZRVSprob prob = p->prob;
      int rc;
      rc = CallUnlocked(ZRVSsetprobname, prob, text);
      if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
      continue;
    }
    if (Classify(arg, d) < 0) return -1;
  }
  // Variables first, so that the constraints, sets and objective find them.
  if (AddVariableBatch(p, d.vars.data(), d.vars.size()) < 0) return -1;
  if (AddConstraintBatch(p, d.constraints.data(), d.constraints.size()) < 0) return -1;
  if (AddSosBatch(p, d.sets.data(), d.sets.size()) < 0) return -1;
  if (d.objectives.size() > 1) {
    PyErr_SetString(ModelError, "More than one objective passed in problem declaration");
    return -1;
  }
  if (d.objectives.size() == 1) {
    PyObject *r = PyObject_CallMethod(reinterpret_cast<PyObject *>(p), "setObjective", "O",
                                      d.objectives[0]);
    if (!r) return -1;
    Py_DECREF(r);
  }
  return 0;
}

}  // namespace zrv
