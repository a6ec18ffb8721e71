// The `problem` type: allocation, destruction and the lifecycle methods.
#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/text.h"
#include "base/types.h"
#include "controls/control.h"
#include "controls/control_methods.h"
#include "problem/files.h"
#include "problem/method_table.h"
#include "problem/problem.h"
#include "problem/add_objects.h"
#include "problem/problem_copy.h"
#include "problem/problem_init.h"
#include "problem/problem_reset.h"
#include "problem/objective.h"
#include "problem/solution.h"
#include "problem/solve_guard.h"

#include <string>

namespace zrv {

PyTypeObject ProblemType{};

namespace {

void Link(ProblemObject *p) {
  p->prev = nullptr;
  p->next = LiveProblems;
  if (LiveProblems) LiveProblems->prev = p;
  LiveProblems = p;
}

void Unlink(ProblemObject *p) {
  if (p->prev) p->prev->next = p->next;
  else if (LiveProblems == p) LiveProblems = p->next;
  if (p->next) p->next->prev = p->prev;
  p->prev = p->next = nullptr;
}

PyObject *ProblemNew(PyTypeObject *type, PyObject *, PyObject *) {
  return NewProblemObject(type);
}

int ProblemInit(PyObject *self, PyObject *args, PyObject *kwds) {
  return InitializeProblem(reinterpret_cast<ProblemObject *>(self), args, kwds);
}

int ProblemTraverse(PyObject *self, visitproc visit, void *arg) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  Py_VISIT(p->varlist);
  Py_VISIT(p->conlist);
  Py_VISIT(p->soslist);
  Py_VISIT(p->controls);
  Py_VISIT(p->attributes);
  Py_VISIT(p->objattribs);
  for (PyObject *slot : p->callbacks) Py_VISIT(slot);
  Py_VISIT(p->callback_error);
  return 0;
}

int ProblemClear(PyObject *self) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  ReleaseProblem(p);
  Py_CLEAR(p->controls);
  Py_CLEAR(p->attributes);
  Py_CLEAR(p->objattribs);
  return 0;
}

void ProblemDealloc(PyObject *self) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  PyObject_GC_UnTrack(self);
  // Off the live list first, so that nothing reaches a dying problem.
  Unlink(p);
  ReleaseProblem(p);
  Py_CLEAR(p->controls);
  Py_CLEAR(p->attributes);
  Py_CLEAR(p->objattribs);
  PyObject *module = p->module;
  p->module = nullptr;
  Py_TYPE(self)->tp_free(self);
  Py_XDECREF(module);
}

PyObject *ProblemName(PyObject *self, PyObject *) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  int length = 0;
  if (ReadIntAttrib(p, ZRVS_PROBNAMELENGTH, &length) < 0) return nullptr;
  if (length < 0) return ReportError(self, nullptr);
  std::string buffer(static_cast<size_t>(length) + 1, '\0');
  if (CallEngine(self, ZRVSgetprobname, p->prob, &buffer[0]) < 0) return nullptr;
  return ReportError(self, TextFromEngine(buffer.c_str()));
}

PyObject *ProblemStr(PyObject *self) { return ProblemName(self, nullptr); }

PyObject *ProblemReset(PyObject *self, PyObject *) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "reset")) return nullptr;
  if (ResetProblem(p) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *ProblemCopy(PyObject *self, PyObject *) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  return CopyProblem(p);
}

PyObject *ProblemEnter(PyObject *self, PyObject *) {
  if (!Checked(self)) return nullptr;
  return Py_NewRef(self);
}

PyObject *ProblemExit(PyObject *self, PyObject *) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (p->prob && CannotChange(p, "the end of a with-block")) return nullptr;
  ReleaseProblem(p);
  Py_RETURN_NONE;
}

PyObject *ProblemGetOutputEnabled(PyObject *self, PyObject *) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  return PyBool_FromLong(p->output_enabled != 0);
}

PyObject *ProblemSetOutputEnabled(PyObject *self, PyObject *arg) {
  ProblemObject *p = Checked(self);
  if (!p) return nullptr;
  if (!PyLong_Check(arg)) {
    PyErr_SetString(ModelError, "Incorrect argument in setOutputEnabled: should be True or False");
    return nullptr;
  }
  int truth = PyObject_IsTrue(arg);
  if (truth < 0) return nullptr;
  __atomic_store_n(&p->output_enabled, truth, __ATOMIC_RELAXED);  // read by engine threads
  Py_RETURN_NONE;
}

PyMethodDef ProblemMethods[] = {
    {"name", ProblemName, METH_NOARGS,
     ZRV_HELP("Return the name of the problem.", "p.name()", "None.",
              "p = zorvan.problem(name='diet'); p.name()  # 'diet'",
              "A problem created without a name is called 'noname'. str(p) gives the same.",
              "problem")},
    {"reset", ProblemReset, METH_NOARGS,
     ZRV_HELP("Empty the problem and start it afresh.", "p.reset()", "None.",
              "p = zorvan.problem('a'); p.reset(); p.name()  # 'noname'",
              "The problem gets the default name and sense, and the user defaults of the "
              "controls are applied again.",
              "problem, problem.copy, zorvan.setdefaultcontrol")},
    {"copy", ProblemCopy, METH_NOARGS,
     ZRV_HELP("Return a new problem holding a copy of this one.", "q = p.copy()", "None.",
              "q = p.copy(); q.name() == p.name()  # True",
              "The model, the controls and the bookkeeping of model objects are copied; the "
              "variable, constraint and SOS objects themselves are shared.",
              "problem, problem.reset")},
    {"__enter__", ProblemEnter, METH_NOARGS,
     ZRV_HELP("Enter a with-block: return the problem itself.", "with zorvan.problem() as p: ...",
              "None.", "with zorvan.problem(name='x') as p: print(p.name())",
              "At the end of the block the engine's problem is released.",
              "problem.__exit__")},
    {"__exit__", ProblemExit, METH_VARARGS,
     ZRV_HELP("Leave a with-block: release the engine's problem.", "p.__exit__(*args)",
              "args: the exception information of the with-statement (ignored).",
              "with zorvan.problem() as p: pass  # p is released here",
              "Afterwards every method of the problem raises ModelError "
              "'Problem is not initialized'.",
              "problem.__enter__")},
    {"getOutputEnabled", ProblemGetOutputEnabled, METH_NOARGS,
     ZRV_HELP("Tell whether this problem's messages are printed.", "p.getOutputEnabled()",
              "None.", "p.getOutputEnabled()  # True",
              "Messages are printed only when both this switch and the module-wide one "
              "(zorvan.getOutputEnabled) are on.",
              "problem.setOutputEnabled, zorvan.setOutputEnabled")},
    {"setOutputEnabled", ProblemSetOutputEnabled, METH_O,
     ZRV_HELP("Switch the printing of this problem's messages on or off.",
              "p.setOutputEnabled(enabled)", "enabled: True or False (or an integer).",
              "p.setOutputEnabled(False)",
              "The messages go to sys.stdout; the module-wide switch must be on too.",
              "problem.getOutputEnabled, zorvan.setOutputEnabled")},
    {"getControl", WithKeywords(ProblemGetControl),
     METH_VARARGS | METH_KEYWORDS, GetControlDoc},
    {"setControl", WithKeywords(ProblemSetControl),
     METH_VARARGS | METH_KEYWORDS, SetControlDoc},
    {"getAttrib", WithKeywords(ProblemGetAttrib),
     METH_VARARGS | METH_KEYWORDS, GetAttribDoc},
    {"addVariable", ProblemAddVariable, METH_VARARGS, AddVariableDoc},
    {"addConstraint", ProblemAddConstraint, METH_VARARGS, AddConstraintDoc},
    {"addSOS", ProblemAddSos, METH_VARARGS, AddSosDoc},
    {"addIndicator", ProblemAddIndicator, METH_VARARGS, AddIndicatorDoc},
    {"delVariable", WithKeywords(ProblemDelVariable), METH_VARARGS | METH_KEYWORDS,
     DelVariableDoc},
    {"delConstraint", WithKeywords(ProblemDelConstraint), METH_VARARGS | METH_KEYWORDS,
     DelConstraintDoc},
    {"delSOS", WithKeywords(ProblemDelSos), METH_VARARGS | METH_KEYWORDS, DelSosDoc},
    {"getVariable", WithKeywords(ProblemGetVariable), METH_VARARGS | METH_KEYWORDS,
     GetVariableDoc},
    {"getConstraint", WithKeywords(ProblemGetConstraint), METH_VARARGS | METH_KEYWORDS,
     GetConstraintDoc},
    {"getSOS", WithKeywords(ProblemGetSos), METH_VARARGS | METH_KEYWORDS, GetSosDoc},
    {"getIndex", ProblemGetIndex, METH_O, GetIndexDoc},
    {"setObjective", WithKeywords(ProblemSetObjective), METH_VARARGS | METH_KEYWORDS,
     SetObjectiveDoc},
    {"addObjective", WithKeywords(ProblemAddObjective), METH_VARARGS | METH_KEYWORDS,
     AddObjectiveDoc},
    {"optimize", WithKeywords(ProblemOptimize), METH_VARARGS | METH_KEYWORDS, OptimizeDoc},
    {"solve", WithKeywords(ProblemOptimize), METH_VARARGS | METH_KEYWORDS, SolveDoc},
    {"lpoptimize", WithKeywords(ProblemLpOptimize), METH_VARARGS | METH_KEYWORDS, LpOptimizeDoc},
    {"mipoptimize", WithKeywords(ProblemMipOptimize), METH_VARARGS | METH_KEYWORDS,
     MipOptimizeDoc},
    {"getObjVal", ProblemGetObjVal, METH_NOARGS, GetObjValDoc},
    {"getProbStatus", ProblemGetProbStatus, METH_NOARGS, GetProbStatusDoc},
    {"getProbStatusString", ProblemGetProbStatusString, METH_NOARGS, GetProbStatusStringDoc},
    {"getSolution", WithKeywords(ProblemGetSolution), METH_VARARGS | METH_KEYWORDS,
     GetSolutionDoc},
    {"getSlack", ProblemGetSlack, METH_VARARGS, GetSlackDoc},
    {"getDual", ProblemGetDual, METH_VARARGS, GetDualDoc},
    {"getRCost", ProblemGetRCost, METH_VARARGS, GetRCostDoc},
    {"read", WithKeywords(ProblemRead), METH_VARARGS | METH_KEYWORDS, ReadDoc},
    {"write", WithKeywords(ProblemWrite), METH_VARARGS | METH_KEYWORDS, WriteDoc},
    {nullptr, nullptr, 0, nullptr},
};

// The error a failed engine call left on the problem: the main problem's
// text, else its nonlinear companion's, else the global one (when the
// problem could not be created).
void RaiseProblemError(PyObject *self) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  char msg[ZRVS_MAXMESSAGELENGTH] = {0};
  int code = 0;
  ZRVSprob prob = p->prob;
  ZSLPprob slp = p->slpprob;
  if (prob) {
    CallUnlocked([&] {
      if (ZRVSgetlasterror(prob, msg) != 0) msg[0] = '\0';
    });
    msg[sizeof msg - 1] = '\0';
    if (!msg[0] && slp && GetSlpStarted() != 0) {
      CallUnlocked([&] {
        if (ZSLPgetlasterror(slp, &code, msg) != 0) code = 0, msg[0] = '\0';
      });
      msg[sizeof msg - 1] = '\0';
    }
  }
  std::string text = msg;
  if (!prob) text = GlobalLastError(&code);
  if (code == 0 && text.empty()) text = "Unidentified error associated with optimization problem";
  SetErrorFromEngine(SolverError, text.c_str());
}

// The views, read-only. Once the problem is released (the fields hold None)
// reading one raises "Problem is not initialized", so that p.controls.x says
// what is wrong.
template <PyObject *ProblemObject::*View>
PyObject *GetView(PyObject *self, void *) {
  PyObject *v = reinterpret_cast<ProblemObject *>(self)->*View;
  if (v && v != Py_None) return Py_NewRef(v);
  PyErr_SetString(ModelError, "Problem is not initialized");
  return nullptr;
}

PyGetSetDef ProblemGetSet[] = {
    {"controls", GetView<&ProblemObject::controls>, nullptr,
     "The controls of the problem by name (see help(type(p.controls))).", nullptr},
    {"attributes", GetView<&ProblemObject::attributes>, nullptr,
     "The attributes of the problem by name (see help(type(p.attributes))).", nullptr},
    {"objattribs", GetView<&ProblemObject::objattribs>, nullptr,
     "The attributes of each objective (see help(type(p.objattribs))).", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

}  // namespace

PyObject *NewProblemObject(PyTypeObject *type) {
  PyObject *self = type->tp_alloc(type, 0);
  if (!self) return nullptr;
  auto *p = reinterpret_cast<ProblemObject *>(self);
  p->output_enabled = 1;
  p->module = Py_XNewRef(Module);
  Link(p);
  return self;
}

void SetupProblemType() {
  PyTypeObject &t = ProblemType;
  InitType(t, "zorvan.problem", sizeof(ProblemObject));
  t.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC;
  t.tp_new = ProblemNew;
  t.tp_init = ProblemInit;
  t.tp_dealloc = ProblemDealloc;
  t.tp_traverse = ProblemTraverse;
  t.tp_clear = ProblemClear;
  t.tp_str = ProblemStr;
  AddProblemMethods(ProblemMethods);
  RegisterErrorSource(&t, RaiseProblemError);
  t.tp_getset = ProblemGetSet;
  t.tp_doc = ZRV_HELP(
      "An optimization problem: variables, constraints, objective and solver controls.",
      "p = zorvan.problem(*args, name=None, sense=zorvan.minimize)",
      "args: an optional problem name (a string); name: the problem name (keyword only); "
      "sense: zorvan.minimize or zorvan.maximize (keyword only).",
      "p = zorvan.problem(name='diet')\n    print(p.name(), p.attributes.cols)",
      "A problem owns one engine problem; it is released when the object is destroyed, "
      "at the end of a with-block, or when the engine is stopped with zorvan.free().",
      "problem.controls, problem.attributes, problem.copy, problem.reset");
}

}  // namespace zrv
