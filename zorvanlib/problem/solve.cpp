// problem.optimize (solve), lpoptimize, mipoptimize, getObjVal,
// getProbStatus and getProbStatusString.
#include "problem/solution.h"

#include "base/engine_call.h"
#include "base/enums.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "problem/solve_guard.h"
#include "problem/solve_interrupt.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

enum class Solver { kAutomatic, kLp, kMip };

PyObject *Run(PyObject *self, PyObject *args, PyObject *kwds, Solver solver) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "a second solve")) return nullptr;
  static const char *keywords[] = {"flags", nullptr};
  const char *flags = "";
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|s", const_cast<char **>(keywords), &flags))
    return nullptr;
  ZRVSprob prob = p->prob;
  int solvestatus = 0, solstatus = 0, rc;
  Py_CLEAR(p->callback_error);
  {
    SolveScope solving(p);
    SigintDuringSolve sigint(prob);
    // Callbacks take the interpreter lock back for themselves.
    CallUnlocked([&] {
      switch (solver) {
        case Solver::kAutomatic: rc = ZRVSoptimize(prob, flags, &solvestatus, &solstatus); break;
        case Solver::kLp: rc = ZRVSlpoptimize(prob, flags); break;
        default: rc = ZRVSmipoptimize(prob, flags); break;
      }
    });
    if (sigint.Deliver() < 0) {
      Py_CLEAR(p->callback_error);
      return nullptr;
    }
  }
  // An exception raised in a callback fails the call.
  if (RaiseCallbackError(p) || PyErr_Occurred()) return nullptr;
  if (rc != 0) return ReportError(self, nullptr);
  if (solver != Solver::kAutomatic) Py_RETURN_NONE;
  PyObject *first = EnumMember(StatusEnum::kSolveStatus, solvestatus);
  PyObject *second = first ? EnumMember(StatusEnum::kSolStatus, solstatus) : nullptr;
  PyObject *result = second ? PyTuple_Pack(2, first, second) : nullptr;
  Py_XDECREF(first);
  Py_XDECREF(second);
  return result;
}

bool NonlinearProblem(ProblemObject *p) {
  return GetSlpStarted() == 1 && p->slpprob && (p->nl_constraints > 0 || p->nl_objective);
}

// The status of the last solve: nonlinear, MIP or LP. 0 or -1.
int Status(ProblemObject *p, int *status, bool *nonlinear, bool *mip) {
  *nonlinear = NonlinearProblem(p);
  *mip = false;
  if (*nonlinear)
    return CallEngine(reinterpret_cast<PyObject *>(p), ZSLPgetintattrib, p->slpprob,
                      ZSLP_NLPSTATUS, status);
  if (ProblemIsMip(p, mip) < 0) return -1;
  return ReadIntAttrib(p, *mip ? ZRVS_MIPSTATUS : ZRVS_LPSTATUS, status);
}

const char *StatusName(int status, bool nonlinear, bool mip) {
  static const char *const kNonlinear[] = {
      "nlp_unstarted",          "nlp_solution",  "nlp_globally_optimal", "nlp_locally_infeasible",
      "nlp_infeasible",         "nlp_unbounded", "nlp_unfinished"};
  static const char *const kMip[] = {"mip_not_loaded",   "mip_lp_not_optimal", "mip_lp_optimal",
                                     "mip_no_sol_found", "mip_solution",       "mip_infeas",
                                     "mip_optimal",      "mip_unbounded"};
  static const char *const kLp[] = {"lp_unstarted", "lp_optimal",         "lp_infeas",
                                    "lp_cutoff",    "lp_unfinished",      "lp_unbounded",
                                    "lp_cutoff_in_dual", "lp_unsolved", "lp_nonconvex"};
  if (nonlinear) return status >= 0 && status <= 6 ? kNonlinear[status] : "nlp_unknown";
  if (mip) return status >= 0 && status <= 7 ? kMip[status] : "mip_unknown";
  return status >= 0 && status <= 8 ? kLp[status] : "lp_unknown";
}

}  // namespace

PyObject *ProblemOptimize(PyObject *self, PyObject *args, PyObject *kwds) {
  return Run(self, args, kwds, Solver::kAutomatic);
}

PyObject *ProblemLpOptimize(PyObject *self, PyObject *args, PyObject *kwds) {
  return Run(self, args, kwds, Solver::kLp);
}

PyObject *ProblemMipOptimize(PyObject *self, PyObject *args, PyObject *kwds) {
  return Run(self, args, kwds, Solver::kMip);
}

PyObject *ProblemGetObjVal(PyObject *self, PyObject *) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  double value = 0.0;
  int rc;
  if (NonlinearProblem(p)) {
    ZSLPprob slp = p->slpprob;
    rc = CallUnlocked(ZSLPgetdblattrib, slp, ZSLP_OBJVAL, &value);
  } else {
    bool mip;
    if (ProblemIsMip(p, &mip) < 0) return nullptr;
    ZRVSprob prob = p->prob;
    const int id = mip ? ZRVS_MIPOBJVAL : ZRVS_LPOBJVAL;
    rc = CallUnlocked(ZRVSgetdblattrib, prob, id, &value);
  }
  if (rc != 0) return ReportError(self, nullptr);
  return PyFloat_FromDouble(value);
}

PyObject *ProblemGetProbStatus(PyObject *self, PyObject *) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  int status = 0;
  bool nonlinear, mip;
  if (Status(p, &status, &nonlinear, &mip) < 0) return nullptr;
  return PyLong_FromLong(status);
}

PyObject *ProblemGetProbStatusString(PyObject *self, PyObject *) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  int status = 0;
  bool nonlinear, mip;
  if (Status(p, &status, &nonlinear, &mip) < 0) return nullptr;
  return PyUnicode_FromString(StatusName(status, nonlinear, mip));
}

#define ZRV_SOLVE_FLAGS                                                                   \
  "flags: a string; empty (the default) lets the engine choose, or one algorithm letter " \
  "for continuous solves: 'd' dual simplex, 'p' primal simplex, 'b' barrier."

const char OptimizeDoc[] = ZRV_HELP(
    "Solve the problem: an LP or convex QP, or a MIP when it has discrete parts.",
    "solvestatus, solstatus = p.optimize(flags='')", ZRV_SOLVE_FLAGS,
    "s, t = p.optimize()\n    if t == zorvan.SolStatus.OPTIMAL: print(p.getObjVal())",
    "Returns a member of zorvan.SolveStatus (how the solve ended) and one of "
    "zorvan.SolStatus (what it found). A solve that ends without a solution is not an error: "
    "the statuses tell. Several objectives are solved by priority. Other Python threads run "
    "while the engine solves.",
    "problem.solve, problem.lpoptimize, problem.mipoptimize, problem.getSolution, "
    "problem.getObjVal");
const char SolveDoc[] = ZRV_HELP(
    "Solve the problem (the same as problem.optimize).",
    "solvestatus, solstatus = p.solve(flags='')", ZRV_SOLVE_FLAGS,
    "p.solve()  # (SolveStatus.COMPLETED, SolStatus.OPTIMAL)",
    "See problem.optimize.", "problem.optimize");
const char LpOptimizeDoc[] = ZRV_HELP(
    "Solve the continuous relaxation of the problem.", "p.lpoptimize(flags='')",
    ZRV_SOLVE_FLAGS, "p.lpoptimize()\n    print(p.getProbStatusString())",
    "Integrality, sets and indicators are dropped for this solve; semi-continuous variables "
    "may take 0 or any value up to their upper bound. Returns None; read the status with "
    "getProbStatus or the attributes.",
    "problem.optimize, problem.mipoptimize");
const char MipOptimizeDoc[] = ZRV_HELP(
    "Solve the problem as a MIP.", "p.mipoptimize(flags='')", ZRV_SOLVE_FLAGS,
    "p.mipoptimize()\n    print(p.getProbStatusString())  # 'mip_optimal'",
    "Returns None; read the status with getProbStatus or the attributes.",
    "problem.optimize, problem.lpoptimize");
const char GetObjValDoc[] = ZRV_HELP(
    "Return the objective value of the last solve.", "p.getObjVal()", "None.",
    "p.optimize()\n    print(p.getObjVal())",
    "For a MIP the value of the best integer solution, else that of the continuous "
    "solution. The objective constant is included.",
    "problem.optimize, problem.getSolution, problem.getProbStatus");
const char GetProbStatusDoc[] = ZRV_HELP(
    "Return the status of the last solve as an integer.", "p.getProbStatus()", "None.",
    "p.optimize()\n    p.getProbStatus() == zorvan.lp_optimal  # True",
    "For a MIP the MIP status (zorvan.mip_...), else the LP status (zorvan.lp_...).",
    "problem.getProbStatusString, problem.optimize");
const char GetProbStatusStringDoc[] = ZRV_HELP(
    "Return the status of the last solve as a name.", "p.getProbStatusString()", "None.",
    "zorvan.problem().getProbStatusString()  # 'lp_unstarted'",
    "The names are those of the module's status constants, such as 'lp_optimal', "
    "'lp_infeas', 'mip_optimal' or 'mip_infeas'.",
    "problem.getProbStatus, problem.optimize");

}  // namespace zrv
