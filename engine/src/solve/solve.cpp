// The solve: checks what HiGHS can solve, builds its model, runs one stage
// per objective priority level and records the results.
#include "solve/solve.h"

#include <chrono>
#include <cmath>
#include <new>

#include "solve/basis.h"
#include "solve/builder.h"
#include "solve/more_options.h"
#include "solve/options.h"
#include "solve/qp_verify.h"
#include "solve/rejection.h"
#include "solve/stages.h"
#include "solve/status.h"

namespace zorvan {

namespace {

char parse_flags(const char *flags, const char *who) {
  char algorithm = 0;
  for (const char *f = flags ? flags : ""; *f; ++f) {
    if (*f == ' ') continue;
    if (*f != 'd' && *f != 'p' && *f != 'b')
      fail(ZRVS_ERR_ARGUMENT,
           "%s: flag '%c' is not known (d dual simplex, p primal simplex, b barrier)", who, *f);
    if (algorithm && algorithm != *f)
      fail(ZRVS_ERR_ARGUMENT, "%s: flags name two algorithms", who);
    algorithm = *f;
  }
  return algorithm;
}

void check_solvable(const Model &m, bool mip, const char *who) {
  if (!m.qrows.empty())
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: the problem has quadratic constraints (%d rows); this problem class needs the "
         "nonlinear solver, which is not available yet",
         who, static_cast<int>(m.qrows.size()));
  if (!m.qobj.empty() && mip && m.has_discrete())
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: a quadratic objective with integer or other discrete parts (MIQP) needs the "
         "nonlinear solver, which is not available yet",
         who);
  if (!m.qobj.empty() && m.objectives.size() > 1)
    fail(ZRVS_ERR_UNSUPPORTED, "%s: several objectives with a quadratic objective", who);
}

double objective_value(const Model &m, int k, const std::vector<double> &x) {
  const Objective &o = m.objectives[k];
  double v = o.constant;
  for (int j = 0; j < m.cols(); ++j) v += o.coef[j] * x[j];
  if (k == 0)
    for (const auto &e : m.qobj) {
      int i = e.first.first, j = e.first.second;
      v += (i == j ? 0.5 : 1.0) * e.second * x[i] * x[j];
    }
  return v;
}

// Owns a HiGHS instance.
struct HighsHandle {
  void *h = Highs_create();
  ~HighsHandle() { Highs_destroy(h); }
};

// Fills the solution vectors and objective values of the final stage.
void record_solution(void *h, const Model &m, bool mip, SolveState &res) {
  HighsInt value_valid = 0, dual_valid = 0, primal_status = 0;
  Highs_getIntInfoValue(h, "primal_solution_status", &primal_status);
  Highs_getIntInfoValue(h, "dual_solution_status", &dual_valid);
  value_valid = primal_status != 0;  // kHighsSolutionStatusNone
  if (!value_valid) return;
  if (mip && primal_status != kHighsSolutionStatusFeasible) return;
  HighsInt ncols = Highs_getNumCol(h), nrows = Highs_getNumRow(h);
  std::vector<double> col_value(ncols), col_dual(ncols), row_value(nrows), row_dual(nrows);
  Highs_getSolution(h, col_value.data(), col_dual.data(), row_value.data(), row_dual.data());
  res.x.assign(col_value.begin(), col_value.begin() + m.cols());
  // Slacks from the problem's own rows (reformulations may change rows).
  res.slack.assign(m.rhs.begin(), m.rhs.end());
  for (size_t e = 0; e < m.mval.size(); ++e) res.slack[m.mrow[e]] -= m.mval[e] * res.x[m.mcol[e]];
  if (!mip && dual_valid != 0) {
    res.duals.assign(row_dual.begin(), row_dual.begin() + m.rows());
    res.djs.assign(col_dual.begin(), col_dual.begin() + m.cols());
  }
  (mip ? res.has_mip_solution : res.has_lp_solution) = true;
  res.objvals.resize(m.objectives.size());
  for (size_t k = 0; k < m.objectives.size(); ++k)
    res.objvals[k] = objective_value(m, static_cast<int>(k), res.x);
  (mip ? res.mipobjval : res.lpobjval) = res.objvals[0];
}

const char *status_text(const SolveState &r, bool mip) {
  if (r.solvestatus == ZRVS_SOLVESTATUS_FAILED) return "failed";
  if (r.solvestatus == ZRVS_SOLVESTATUS_STOPPED) return "stopped";
  switch (r.solstatus) {
    case ZRVS_SOLSTATUS_OPTIMAL: return "optimal";
    case ZRVS_SOLSTATUS_INFEASIBLE: return "infeasible";
    case ZRVS_SOLSTATUS_UNBOUNDED: return "unbounded";
  }
  return mip ? "no integer solution" : "not solved";
}

}  // namespace

void solve(zrvs_problem &p, SolveKind kind, const char *flags, const char *who) {
  char algorithm = parse_flags(flags, who);
  const Model &m = p.model;
  bool mip = kind == SolveKind::mip || (kind == SolveKind::automatic && m.has_discrete());
  check_solvable(m, mip, who);
  HighsBuild build = build_for_highs(m, mip ? SolveMode::mip : SolveMode::relaxation, who);
  std::vector<Stage> stages = objective_stages(m);

  p.results = SolveState();
  p.interrupt_reason.store(ZRVS_STOP_NONE);  // requests made before the solve are dropped
  SolveState &res = p.results;
  res.objstage.assign(m.objectives.size(), -1);
  auto start = std::chrono::steady_clock::now();

  std::shared_lock<std::shared_mutex> scheduler = lock_scheduler(solve_threads(p));
  HighsHandle highs;
  void *h = highs.h;
  if (!h) throw std::bad_alloc();
  // The callback first, so that HiGHS's banner goes through it too.
  SolveCallback callback(h, p);
  apply_controls(h, p, algorithm);
  {
    LpBuilder &lp = build.lp;
    std::copy(stages[0].cost.begin(), stages[0].cost.end(), lp.cost.begin());
    HighsCsc a = lp.matrix();
    const HighsCsc &q = build.hessian;
    HighsInt qnz = static_cast<HighsInt>(q.value.size());
    HighsInt status = Highs_passModel(
        h, lp.cols(), lp.rows(), static_cast<HighsInt>(a.value.size()), qnz,
        kHighsMatrixFormatColwise, kHighsHessianFormatTriangular,
        m.objsense > 0 ? kHighsObjSenseMinimize : kHighsObjSenseMaximize, stages[0].constant,
        lp.cost.data(), lp.col_lower.data(), lp.col_upper.data(), lp.row_lower.data(),
        lp.row_upper.data(), a.start.data(), a.index.data(), a.value.data(),
        qnz ? q.start.data() : nullptr, qnz ? q.index.data() : nullptr,
        qnz ? q.value.data() : nullptr, mip ? lp.integrality.data() : nullptr);
    if (status == kHighsStatusError) {
      double large = 1e15;
      Highs_getDoubleOptionValue(h, "large_matrix_value", &large);
      std::string why = rejected_part(m, build, large);
      fail(why.empty() ? ZRVS_ERR_INTERNAL : ZRVS_ERR_ARGUMENT, "%s: HiGHS rejected the model%s%s",
           who, why.empty() ? "" : ": ", why.c_str());
    }
  }
  add_cutoff_row(h, p, m.objectives[0].coef, m.objectives[0].constant, mip);
  // A continuous LP starts from the basis the problem keeps (the last LP
  // solve's, or the user's); the barrier does not use one.
  const bool keeps_basis = stages.size() == 1 && basis_applies(m, build, mip);
  const bool barrier = algorithm == 'b' ||
                       (!algorithm && p.controls.get_int(ZRVS_DEFAULTALG, who) == 4);
  std::vector<HighsInt> col_status, row_status;
  if (keeps_basis && !barrier && start_basis(m, build.lp, col_status, row_status) &&
      Highs_setBasis(h, col_status.data(), row_status.data()) == kHighsStatusError)
    p.message(ZRVS_MSG_INFO, "The stored basis does not fit the problem; solving from scratch");

  for (size_t s = 0; s < stages.size(); ++s) {
    const Stage &stage = stages[s];
    if (s > 0) {
      Highs_changeColsCostByRange(h, 0, m.cols() - 1, stage.cost.data());
      Highs_changeObjectiveOffset(h, stage.constant);
    }
    auto stage_start = std::chrono::steady_clock::now();
    Highs_run(h);
    if (presolve_hid_the_answer(h, mip) && p.controls.get_int(ZRVS_PRESOLVE, who)) {
      Highs_setStringOptionValue(h, "presolve", "off");
      Highs_run(h);
      Highs_setStringOptionValue(h, "presolve", "on");
    }
    StageResult r;
    record_stage(h, mip, p.interrupt_reason.load(), r);
    refine_stop_reason(p, r);
    r.solvetime = std::chrono::duration<double>(std::chrono::steady_clock::now() - stage_start)
                      .count();
    res.stages.push_back(r);
    for (int k : stage.objectives) res.objstage[k] = static_cast<int>(s);
    res.solvedobjs += static_cast<int>(stage.objectives.size());
    res.simplexiter += r.simplexiter, res.bariter += r.bariter, res.nodes += r.nodes;
    if (!stage_optimal(r, mip) || s + 1 == stages.size()) break;
    // The next levels keep this one within its tolerance.
    double best = r.objval - stage.constant;
    double tol = std::max(stage.abstol, stage.reltol * std::fabs(r.objval));
    std::vector<HighsInt> index;
    std::vector<double> value;
    for (int j = 0; j < m.cols(); ++j)
      if (stage.cost[j] != 0.0) index.push_back(j), value.push_back(stage.cost[j]);
    double lo = m.objsense > 0 ? -kHighsInf : best - tol;
    double up = m.objsense > 0 ? best + tol : kHighsInf;
    Highs_addRow(h, lo, up, static_cast<HighsInt>(index.size()), index.data(), value.data());
  }

  const StageResult &last = res.stages.back();
  res.lpstatus = last.lpstatus;
  res.mipstatus = last.mipstatus;
  res.solvestatus = last.solvestatus;
  res.solstatus = last.solstatus;
  res.stopstatus = last.stopstatus;
  res.bestbound = last.bestbound;
  if (mip) Highs_getDoubleInfoValue(h, "mip_gap", &res.mipgap);
  record_solution(h, m, mip, res);
  if (!mip && !m.qobj.empty())
    verify_qp_result(p, build, model_status_text(Highs_getModelStatus(h)), who);
  HighsInt basis_validity = 0;
  Highs_getIntInfoValue(h, "basis_validity", &basis_validity);
  if (keeps_basis && basis_validity == kHighsBasisValidityValid) {
    col_status.resize(static_cast<size_t>(m.cols()));
    row_status.resize(static_cast<size_t>(m.rows()));
    if (Highs_getBasis(h, col_status.data(), row_status.data()) != kHighsStatusError)
      store_basis(p.model, col_status, row_status);
  }
  res.solvetime = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  p.message(ZRVS_MSG_INFO, std::string(mip ? "MIP" : m.qobj.empty() ? "LP" : "QP") +
                               " solve " + status_text(res, mip) + ", objective " +
                               std::to_string(mip ? res.mipobjval : res.lpobjval));
  if (last.solvestatus == ZRVS_SOLVESTATUS_FAILED)
    fail(ZRVS_ERR_INTERNAL, "%s: HiGHS failed to solve the problem (%s)", who,
         model_status_text(Highs_getModelStatus(h)));
}

}  // namespace zorvan
