#include "solve/highs/backend.h"

#include <cmath>

#include "solve/highs/callback.h"

#include "solve/highs/basis.h"
#include "solve/highs/instance.h"
#include "solve/highs/loose_columns.h"
#include "solve/highs/status.h"

namespace zorvan {

namespace {

// The nonzero entries of a dense vector, as HiGHS takes a row.
void sparse(const std::vector<double> &dense, std::vector<HighsInt> &index,
            std::vector<double> &value) {
  for (size_t j = 0; j < dense.size(); ++j)
    if (dense[j] != 0.0) index.push_back(static_cast<HighsInt>(j)), value.push_back(dense[j]);
}

// The MIP cutoff as a row: objective 0 (coefficients over the model's
// columns, plus constant) no worse than the cutoff. HiGHS's own objective
// bound is not used, as without presolve it is not always honoured. True
// when the row was added.
bool add_cutoff_row(void *h, const zrvs_problem &p, bool mip, double cutoff) {
  if (!mip || std::fabs(cutoff) >= ZRVS_PLUSINFINITY) return false;
  std::vector<HighsInt> index;
  std::vector<double> value;
  sparse(p.model.objectives[0].coef, index, value);
  double bound = cutoff - p.model.objectives[0].constant;
  bool minimise = p.model.objsense > 0;
  if (Highs_addRow(h, minimise ? -kHighsInf : bound, minimise ? bound : kHighsInf,
                   static_cast<HighsInt>(index.size()), index.data(), value.data()) ==
      kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "optimize: HiGHS refused the row of the cutoff (mipabscutoff)");
  return true;
}

}  // namespace

void HighsBackend::prepare(const SolveRequest &request) {
  request_ = request;
  build_ = build_for_highs(p_.model, request.mip ? SolveMode::mip : SolveMode::relaxation,
                           request.who);
}

void HighsBackend::start(const std::vector<Stage> &stages) {
  const Model &m = p_.model;
  const char *who = request_.who;
  const bool mip = request_.mip;
  scheduler_.reset(new SchedulerLease(solve_threads(p_)));
  if (!p_.highs) p_.highs.reset(new HighsInstance());
  HighsInstance &instance = *p_.highs;
  h_ = instance.handle();
  // The callback first, so that HiGHS's banner goes through it too.
  callback_.reset(new SolveCallback(h_, p_, mip));
  apply_controls(h_, p_, request_.algorithm, scheduler_->threads());
  // HiGHS reports its MIP progress lines only while it logs; the lines
  // themselves reach messages only with outputlog >= 2.
  if (mip && p_.events.any(EventKind::miplog)) Highs_setBoolOptionValue(h_, "output_flag", 1);
  std::copy(stages[0].cost.begin(), stages[0].cost.end(), build_.lp.cost.begin());
  if (!mip && !build_.hessian.value.empty()) pin_loose_columns(m, build_);
  const bool basis_loaded = p_.changes.basis_loaded();
  const bool repeated = !p_.changes.noted();
  const HighsInstance::Loaded loaded =
      instance.load(m, build_, stages[0].constant, mip, p_.changes, who);
  const bool whole = loaded == HighsInstance::Loaded::whole;
  if (p_.controls.get_int(ZRVS_OUTPUTLOG, who) >= 2)
    p_.message(ZRVS_MSG_INFO, whole ? "HiGHS takes the whole model"
                              : loaded == HighsInstance::Loaded::changes ? "HiGHS takes the changes"
                                                                         : "HiGHS keeps its model");
  // A MIP solve repeated without any change to the problem starts afresh,
  // so that it repeats its path; after a change HiGHS starts from what it
  // kept (its last incumbent).
  if (mip && repeated && !whole) Highs_clearSolver(h_);
  if (add_cutoff_row(h_, p_, mip, p_.controls.get_dbl(ZRVS_MIPABSCUTOFF, who)) ||
      stages.size() > 1)
    instance.forget();
  // A continuous LP starts from the basis HiGHS kept from the last solve;
  // after a whole transfer or a basis loaded by the user, from the basis
  // the problem keeps. The barrier does not use one.
  keeps_basis_ = stages.size() == 1 && basis_applies(m, build_, mip);
  const bool barrier = request_.algorithm == 'b' ||
                       (!request_.algorithm && p_.controls.get_int(ZRVS_DEFAULTALG, who) == 4);
  std::vector<HighsInt> col_status, row_status;
  if (keeps_basis_ && !barrier && (whole || basis_loaded) &&
      start_basis(m, build_.lp, col_status, row_status) &&
      Highs_setBasis(h_, col_status.data(), row_status.data()) == kHighsStatusError)
    p_.message(ZRVS_MSG_INFO, "The stored basis does not fit the problem; solving from scratch");
}

void HighsBackend::set_objective(const Stage &stage) {
  Highs_changeColsCostByRange(h_, 0, p_.model.cols() - 1, stage.cost.data());
  Highs_changeObjectiveOffset(h_, stage.constant);
}

namespace {

// A candidate rejected by a preintsol callback is cut off through its
// binary columns: at least one of them must change.
bool add_rejection_row(void *h, const Model &m, const std::vector<double> &x) {
  std::vector<HighsInt> index;
  std::vector<double> value;
  double lower = 1.0;
  for (int j = 0; j < m.cols(); ++j) {
    const char t = m.coltype[j];
    if (t != 'B' && !(t == 'I' && m.lb[j] >= 0.0 && m.ub[j] <= 1.0)) continue;
    const bool one = x[j] > 0.5;
    index.push_back(j);
    value.push_back(one ? -1.0 : 1.0);
    if (one) lower -= 1.0;
  }
  if (index.empty()) return false;
  return Highs_addRow(h, lower, kHighsInf, static_cast<HighsInt>(index.size()), index.data(),
                      value.data()) != kHighsStatusError;
}

}  // namespace

void HighsBackend::run_until_settled() {
  Highs_run(h_);
  // A preintsol callback that rejects a candidate or tightens the cutoff
  // stops the run; the next run starts with the candidate cut off.
  SolveCallback::Restart restart;
  while (callback_->take_restart(restart)) {
    for (const auto &x : restart.rejected)
      if (!add_rejection_row(h_, p_.model, x))
        fail(ZRVS_ERR_UNSUPPORTED,
             "%s: a preintsol callback rejected a solution of a MIP without binary columns; "
             "HiGHS's search cannot drop a solution, and the engine cuts a rejected solution "
             "off only through its binary columns",
             request_.who);
    if (restart.cutoff_changed) {
      add_cutoff_row(h_, p_, true, restart.cutoff);
      p_.progress.has_incumbent = false;
      p_.progress.mipobjval = ZRVS_PLUSINFINITY * p_.model.objsense;
    }
    p_.highs->forget();
    Highs_clearSolver(h_);
    // The run starts from the last incumbent that was kept (HiGHS refuses
    // it if the new rows cut it off).
    if (!restart.start.empty())
      Highs_setSolution(h_, restart.start.data(), nullptr, nullptr, nullptr);
    Highs_run(h_);
  }
  if (!callback_->failure().empty())
    fail(ZRVS_ERR_UNSUPPORTED, "%s: %s", request_.who, callback_->failure().c_str());
}

void HighsBackend::run(StageResult &out) {
  run_until_settled();
  // A run that starts from what HiGHS kept of the last solve (basis,
  // factorisation) can end without a verdict where a fresh start finds one:
  // such a run is repeated once from scratch.
  const HighsInt first = Highs_getModelStatus(h_);
  if (first == kHighsModelStatusUnknown || first == kHighsModelStatusSolveError) {
    Highs_clearSolver(h_);
    Highs_run(h_);
  }
  // HiGHS's presolve can call a feasible (unbounded) model infeasible, or
  // leave the verdict open: such answers are checked by a run without it.
  // Only these verdicts pay for the second run.
  const bool said_infeasible = Highs_getModelStatus(h_) == kHighsModelStatusInfeasible;
  bool disputed = false;
  if ((said_infeasible || presolve_hid_the_answer(h_, request_.mip)) &&
      p_.controls.get_int(ZRVS_PRESOLVE, request_.who)) {
    Highs_setStringOptionValue(h_, "presolve", "off");
    Highs_run(h_);
    Highs_setStringOptionValue(h_, "presolve", "on");
    disputed = said_infeasible && Highs_getModelStatus(h_) != kHighsModelStatusInfeasible;
  }
  record_stage(h_, request_.mip, p_.interrupt_reason.load(), out);
  if (disputed && request_.mip && out.mipstatus == ZRVS_MIP_OPTIMAL) {
    // The two runs disagree: the point found is feasible, but its
    // optimality is not proven (the relaxation may be unbounded).
    out.mipstatus = ZRVS_MIP_SOLUTION;
    out.solstatus = ZRVS_SOLSTATUS_FEASIBLE;
    p_.message(ZRVS_MSG_WARNING,
               "HiGHS called the MIP infeasible with presolve and found a solution without "
               "it; the solution is reported feasible, not optimal");
  }
  if (Highs_getModelStatus(h_) == kHighsModelStatusModelEmpty)
    check_rows_without_columns(build_.lp.row_lower, build_.lp.row_upper,
                               p_.controls.get_dbl(ZRVS_FEASTOL, request_.who), request_.mip,
                               out);
  refine_stop_reason(p_, out);
}

void HighsBackend::hold_level(const Stage &stage, double lower, double upper) {
  std::vector<HighsInt> index;
  std::vector<double> value;
  sparse(stage.cost, index, value);
  Highs_addRow(h_, lower, upper, static_cast<HighsInt>(index.size()), index.data(),
               value.data());
}

bool HighsBackend::solution(std::vector<double> &x, std::vector<double> &duals,
                            std::vector<double> &djs) {
  const Model &m = p_.model;
  if (Highs_getModelStatus(h_) == kHighsModelStatusModelEmpty && Highs_getNumCol(h_) == 0) {
    // Without columns HiGHS keeps no solution, but there is exactly one
    // point: no values, every row at activity 0, no prices to pay.
    x.clear(), djs.clear();
    duals.assign(static_cast<size_t>(m.rows()), 0.0);
    return true;
  }
  HighsInt primal_status = 0, dual_status = 0;
  Highs_getIntInfoValue(h_, "primal_solution_status", &primal_status);
  Highs_getIntInfoValue(h_, "dual_solution_status", &dual_status);
  // An infeasible verdict leaves no solution, whatever point the simplex
  // stopped at.
  if (primal_status == kHighsSolutionStatusNone ||
      Highs_getModelStatus(h_) == kHighsModelStatusInfeasible)
    return false;
  if (request_.mip && primal_status != kHighsSolutionStatusFeasible) return false;
  HighsInt ncols = Highs_getNumCol(h_), nrows = Highs_getNumRow(h_);
  std::vector<double> col_value(ncols), col_dual(ncols), row_value(nrows), row_dual(nrows);
  Highs_getSolution(h_, col_value.data(), col_dual.data(), row_value.data(), row_dual.data());
  x.assign(col_value.begin(), col_value.begin() + m.cols());
  duals.clear(), djs.clear();
  if (!request_.mip && dual_status != kHighsSolutionStatusNone) {
    duals.assign(row_dual.begin(), row_dual.begin() + m.rows());
    djs.assign(col_dual.begin(), col_dual.begin() + m.cols());
  }
  return true;
}

double HighsBackend::mip_gap() {
  double gap = 0.0;
  Highs_getDoubleInfoValue(h_, "mip_gap", &gap);
  return gap;
}

void HighsBackend::finish() {
  HighsInt basis_validity = 0;
  Highs_getIntInfoValue(h_, "basis_validity", &basis_validity);
  if (!keeps_basis_ || basis_validity != kHighsBasisValidityValid) return;
  std::vector<HighsInt> col_status(static_cast<size_t>(p_.model.cols()));
  std::vector<HighsInt> row_status(static_cast<size_t>(p_.model.rows()));
  if (Highs_getBasis(h_, col_status.data(), row_status.data()) != kHighsStatusError)
    store_basis(p_.model, col_status, row_status);
}

std::string HighsBackend::failure() { return model_status_text(Highs_getModelStatus(h_)); }

}  // namespace zorvan
