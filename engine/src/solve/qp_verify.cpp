#include "solve/qp_verify.h"

#include <algorithm>

#include "core/errors.h"
#include "solve/qp_interior.h"
#include "solve/qp_model.h"
#include "solve/qp_recession.h"
#include "solve/highs/controls.h"
#include "solve/stages.h"

namespace zorvan {

namespace {

// The check's tolerances are looser than the solver's own, so that a point
// the solver found within its tolerances passes.
constexpr double kToleranceFactor = 10.0;

void keep_point(const Model &m, const QpPoint &pt, int iterations,
                SolveState &res) {
  StageResult &last = res.stages.back();
  res.x = pt.x;
  res.x.resize(static_cast<size_t>(m.cols()));
  res.slack.assign(m.rhs.begin(), m.rhs.end());
  for (size_t e = 0; e < m.mval.size(); ++e) res.slack[m.mrow[e]] -= m.mval[e] * res.x[m.mcol[e]];
  res.duals.assign(pt.y.begin(), pt.y.begin() + m.rows());
  res.djs.assign(pt.z.begin(), pt.z.begin() + m.cols());
  res.has_lp_solution = true;
  // The objective's value as the problem states it (the solver's costs and
  // Hessian carry the objective's weight).
  const Objective &o = m.objectives[0];
  double value = o.constant;
  for (int j = 0; j < m.cols(); ++j) value += o.coef[j] * res.x[j];
  for (const auto &e : m.qobj) {
    int i = e.first.first, j = e.first.second;
    value += (i == j ? 0.5 : 1.0) * e.second * res.x[i] * res.x[j];
  }
  res.objvals.assign(m.objectives.size(), value);
  res.lpobjval = res.bestbound = value;
  last.objval = last.bestbound = value;
  last.bariter += iterations, res.bariter += iterations;
  last.lpstatus = ZRVS_LP_OPTIMAL;
  last.solvestatus = ZRVS_SOLVESTATUS_COMPLETED;
  last.solstatus = ZRVS_SOLSTATUS_OPTIMAL;
  last.stopstatus = ZRVS_STOP_SOLVECOMPLETE;
  res.lpstatus = last.lpstatus, res.solvestatus = last.solvestatus;
  res.solstatus = last.solstatus, res.stopstatus = last.stopstatus;
}

void mark_failed(SolveState &res) {
  StageResult &last = res.stages.back();
  last.lpstatus = res.lpstatus = ZRVS_LP_UNSOLVED;
  last.solvestatus = res.solvestatus = ZRVS_SOLVESTATUS_FAILED;
  last.solstatus = res.solstatus = ZRVS_SOLSTATUS_NOTFOUND;
  last.stopstatus = res.stopstatus = ZRVS_STOP_GENERICERROR;
  res.has_lp_solution = false;
  res.x.clear(), res.slack.clear(), res.duals.clear(), res.djs.clear();
}

// A proven outcome that is not an optimum: unbounded (the point, when
// feasible, is kept without duals) or infeasible (no point).
void mark_proven(SolveState &res, int lpstatus, int solstatus) {
  StageResult &last = res.stages.back();
  last.lpstatus = res.lpstatus = lpstatus;
  last.solvestatus = res.solvestatus = ZRVS_SOLVESTATUS_COMPLETED;
  last.solstatus = res.solstatus = solstatus;
  last.stopstatus = res.stopstatus = ZRVS_STOP_NONE;
  res.duals.clear(), res.djs.clear();
  if (solstatus == ZRVS_SOLSTATUS_INFEASIBLE) {
    res.has_lp_solution = false;
    res.x.clear(), res.slack.clear();
  }
}

// Settles the outcome by the recession LP when it is proven (unbounded or
// infeasible); true when it did. `why` says what it found otherwise.
bool settle_by_recession(zrvs_problem &p, const QpModel &qp, double primal_tol,
                         std::string &why) {
  SolveState &res = p.results;
  std::vector<double> direction;
  std::string undecided;
  switch (qp_recession(qp, res.x, primal_tol, direction, undecided)) {
    case QpRecession::unbounded:
      mark_proven(res, ZRVS_LP_UNBOUNDED, ZRVS_SOLSTATUS_UNBOUNDED);
      return true;
    case QpRecession::infeasible:
      mark_proven(res, ZRVS_LP_INFEAS, ZRVS_SOLSTATUS_INFEASIBLE);
      return true;
    case QpRecession::bounded:
      why = "no direction improves the objective without limit";
      return false;
    case QpRecession::undecided: why = undecided; return false;
  }
  return false;
}

}  // namespace

void verify_qp_result(zrvs_problem &p, const std::string &solver_status, const char *who) {
  SolveState &res = p.results;
  if (res.stages.empty()) return;
  const StageResult &last = res.stages.back();
  // HiGHS's QP solver can cycle; its iterations are capped below the
  // user's limit, and a run that reached the cap counts as failed.
  const bool capped = last.stopstatus == ZRVS_STOP_ITERLIMIT &&
                      last.simplexiter < p.controls.get_int(ZRVS_LPITERLIMIT, who);
  const bool failed = last.solvestatus == ZRVS_SOLVESTATUS_FAILED || capped;
  const bool unbounded = !failed && last.solstatus == ZRVS_SOLSTATUS_UNBOUNDED;
  if (!failed && !unbounded && last.solstatus != ZRVS_SOLSTATUS_OPTIMAL)
    return;  // infeasible, stopped by the user's limits, ...
  const Model &m = p.model;
  // The continuous model with the first level's costs, as the solver had it.
  HighsBuild build = build_for_highs(m, SolveMode::relaxation, who);
  const std::vector<Stage> stages = objective_stages(m);
  std::copy(stages[0].cost.begin(), stages[0].cost.end(), build.lp.cost.begin());
  const QpModel qp(m, build);
  const double primal_tol = kToleranceFactor * p.controls.get_dbl(ZRVS_FEASTOL, who);
  const double dual_tol = kToleranceFactor * p.controls.get_dbl(ZRVS_OPTIMALITYTOL, who);
  std::string first, recession;
  if (unbounded) {
    // Only a direction of unbounded descent, found by an LP, proves it.
    if (settle_by_recession(p, qp, primal_tol, recession) &&
        res.solstatus == ZRVS_SOLSTATUS_UNBOUNDED)
      return;
    if (res.solstatus == ZRVS_SOLSTATUS_INFEASIBLE) {
      p.message(ZRVS_MSG_WARNING, "HiGHS reported the QP unbounded; it has no feasible point",
          ZRVS_MSGCODE_SOLVE_WARNING);
      return;
    }
    first = "HiGHS reported it unbounded, but " + recession;
  } else if (failed) {
    first = capped ? "HiGHS's QP solver reached its iteration cap of " +
                         std::to_string(qp_iteration_cap(p)) + " without an optimum"
                   : "HiGHS failed to solve it (" + solver_status + ")";
  } else {
    QpPoint highs{res.x, res.duals, res.djs};
    // Columns and rows beyond the problem's own (none for a continuous QP)
    // would make the sizes differ; the check then refuses the point.
    std::string why = kkt_failure(qp, highs, primal_tol, dual_tol);
    if (why.empty()) return;
    first = "HiGHS's optimum fails the optimality check: " + why;
  }
  // An optimum that fails the check, or a failed run: the QP may have no
  // optimum at all.
  if (!unbounded && settle_by_recession(p, qp, primal_tol, recession)) {
    p.message(ZRVS_MSG_WARNING, first + "; the QP is " +
                                    (res.solstatus == ZRVS_SOLSTATUS_UNBOUNDED ? "unbounded"
                                                                               : "infeasible"),
              ZRVS_MSGCODE_SOLVE_WARNING);
    return;
  }
  p.message(ZRVS_MSG_WARNING, first + "; solving the QP again by the interior point method",
      ZRVS_MSGCODE_SOLVE_WARNING);
  QpPoint pt;
  int iterations = 0;
  std::string second;
  if (solve_qp_interior(qp, pt, iterations, second)) {
    second = kkt_failure(qp, pt, primal_tol, dual_tol);
    if (second.empty()) {
      keep_point(m, pt, iterations, res);
      return;
    }
    second = "the interior point result fails the optimality check: " + second;
  }
  mark_failed(res);
  fail(ZRVS_ERR_INTERNAL, "%s: the QP could not be solved to a verified optimum: %s; %s", who,
       first.c_str(), second.c_str());
}

}  // namespace zorvan
