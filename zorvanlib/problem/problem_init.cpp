// Creating a problem: engine problems, bookkeeping, user defaults, sense and
// the positional declaration arguments.
#include "problem/problem_init.h"

#include "module/environment.h"
#include "module/errors.h"
#include "module/globals.h"
#include "module/types.h"
#include "problem/control.h"

namespace zrv {

namespace {

constexpr int kMaxDeclarationDepth = 32;

bool IsModelObject(PyObject *o) {
  PyTypeObject *types[] = {&VarType,    &ConstraintType, &SosType,      &ExpressionType,
                           &LinTermType, &QuadTermType,  &NonlinearType};
  for (PyTypeObject *t : types)
    if (PyObject_TypeCheck(o, t)) return true;
  return false;
}

// Classifies one positional argument of the declaration, walking nested
// sequences by their first element.
int CheckDeclarationItem(PyObject *item, int depth) {
  if (depth > kMaxDeclarationDepth) {
    PyErr_SetString(ModelError, "Error declaring problem");
    return -1;
  }
  if (IsModelObject(item)) {
    PyErr_SetString(ModelError,
                    "Adding variables, constraints, SOS or an objective in the problem "
                    "declaration is not available yet");
    return -1;
  }
  if (PyUnicode_Check(item) || PyBytes_Check(item) || PyNumber_Check(item) ||
      !(PyList_Check(item) || PyTuple_Check(item) || PyIter_Check(item) ||
        PyAnySet_Check(item) || PyDict_Check(item))) {
    PyErr_SetString(ModelError,
                    "Erroneous problem declaration; argument contained object that was not a "
                    "variable, constraint, or expression");
    return -1;
  }
  PyObject *iter = PyObject_GetIter(item);
  if (!iter) return -1;
  PyObject *first = PyIter_Next(iter);
  Py_DECREF(iter);
  if (!first) return PyErr_Occurred() ? -1 : 0;  // empty: nothing to add
  int rc = CheckDeclarationItem(first, depth + 1);
  Py_DECREF(first);
  return rc;
}

int SetObjectiveSense(ProblemObject *p, long sense) {
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  int rc;
  Py_BEGIN_ALLOW_THREADS
  rc = ZRVSchgobjsense(prob, sense == 1 ? ZRVS_OBJ_MINIMIZE : ZRVS_OBJ_MAXIMIZE);
  if (rc == 0 && slp) rc = ZSLPsetdblcontrol(slp, ZSLP_OBJSENSE, sense == 1 ? 1.0 : -1.0);
  Py_END_ALLOW_THREADS
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
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
  Py_BEGIN_ALLOW_THREADS
  rc = ZRVScreateprob(&prob);
  if (rc == 0 && slp_started) {
    slp_rc = ZSLPcreateprob(&slp, &prob);
    if (slp_rc == 0) slp_rc = ZSLPsetintcontrol(slp, ZSLP_PRESOLVE, 0);
  }
  Py_END_ALLOW_THREADS
  p->prob = prob;
  p->slpprob = slp;
  if (rc != 0 || slp_rc != 0) return ReportFailure(self);
  return 0;
}

int RegisterMessageCallbacks(ProblemObject *p) {
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  int rc;
  Py_BEGIN_ALLOW_THREADS
  rc = ZRVSaddcbmessage(prob, ProblemMessage, p, 1);
  if (rc == 0 && slp) rc = ZSLPsetcbmessage(slp, ProblemSlpMessage, p);
  Py_END_ALLOW_THREADS
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
  p->formula_state = -1;
  p->obj_transfer_index = -1;
  p->nl_constraints = 0;
  p->nl_objective = 0;
  p->userfuncs = nullptr;
  if (rc == 0) rc = CreateEngineProblems(p);
  if (rc == 0) {
    // Load the empty problem silently: the load message is not wanted here.
    ZRVSprob prob = p->prob;
    int engine_rc;
    Py_BEGIN_ALLOW_THREADS
    int saved = 1;
    engine_rc = ZRVSgetintcontrol(prob, ZRVS_OUTPUTLOG, &saved);
    if (engine_rc == 0) engine_rc = ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0);
    if (engine_rc == 0)
      engine_rc = ZRVSloadlp(prob, name ? name : "noname", 0, 0, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (engine_rc == 0) engine_rc = ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, saved);
    Py_END_ALLOW_THREADS
    if (engine_rc != 0) rc = ReportFailure(self);
  }
  if (rc == 0) rc = RegisterMessageCallbacks(p);
  if (rc == 0) rc = ApplyUserDefaults(p);
  if (rc == 0) rc = SetObjectiveSense(p, sense);
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
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(args); ++i) {
    PyObject *arg = PyTuple_GET_ITEM(args, i);
    if (PyUnicode_Check(arg) || PyBytes_Check(arg)) {
      if (named) {
        PyErr_SetString(ModelError, "More than one string passed in problem declaration");
        return -1;
      }
      named = true;
      const char *text = PyUnicode_Check(arg) ? PyUnicode_AsUTF8(arg) : PyBytes_AS_STRING(arg);
      if (!text) return -1;
      ZRVSprob prob = p->prob;
      int rc;
      Py_BEGIN_ALLOW_THREADS
      rc = ZRVSsetprobname(prob, text);
      Py_END_ALLOW_THREADS
      if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
      continue;
    }
    if (CheckDeclarationItem(arg, 0) < 0) return -1;
  }
  return 0;
}

}  // namespace zrv
