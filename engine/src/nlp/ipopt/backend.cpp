#include "nlp/ipopt/backend.h"

#include <cmath>
#include <mutex>
#include <sstream>

#include "coin/IpIpoptApplication.hpp"
#include "coin/IpSolveStatistics.hpp"
#include "nlp/ipopt/journal.h"
#include "nlp/ipopt/model_check.h"
#include "nlp/ipopt/options.h"
#include "nlp/ipopt/status.h"
#include "nlp/slp_problem.h"

namespace zorvan::nlp {

namespace {

constexpr const char *kWho = "optimize";

// Ipopt's linear solver (MUMPS, sequential) keeps global state: one Ipopt
// solve runs at a time in the process.
std::recursive_mutex &ipopt_mutex() {
  static std::recursive_mutex *m = new std::recursive_mutex();
  return *m;
}

bool given(double v) { return !std::isnan(v); }

}  // namespace

IpoptBackend::~IpoptBackend() = default;

void IpoptBackend::prepare(const SolveRequest &request) {
  request_ = request;
  if (request.mip)
    fail(ZRVS_ERR_UNSUPPORTED, "%s: Ipopt solves continuous models only", request.who);
  const std::string why = unusable_part(p_.model);
  if (!why.empty())
    fail(ZRVS_ERR_ARGUMENT, "%s: Ipopt rejected the model: %s", request.who, why.c_str());
}

void IpoptBackend::start(const std::vector<Stage> &stages) {
  if (stages.size() != 1)
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: several objectives with quadratic rows, a nonconvex quadratic objective or "
         "formulas are not supported",
         request_.who);
  if (!p_.model.qobj.empty() && p_.model.objectives.size() > 1)
    fail(ZRVS_ERR_UNSUPPORTED, "%s: several objectives with a quadratic objective",
         request_.who);
  functions_ = std::make_unique<NlpFunctions>(p_.model, stages[0], std::move(formulas_));
  if (p_.slp) p_.slp->interrupt_reason.store(ZRVS_STOP_NONE);
}

void IpoptBackend::set_objective(const Stage &) {
  fail(ZRVS_ERR_INTERNAL, "%s: Ipopt runs one objective level only", request_.who);
}

void IpoptBackend::hold_level(const Stage &, double, double) {
  fail(ZRVS_ERR_INTERNAL, "%s: Ipopt runs one objective level only", request_.who);
}

std::vector<double> IpoptBackend::starting_point(bool &with_multipliers) const {
  const Model &m = p_.model;
  const NlpStart &s = p_.nlp_start;
  const size_t n = static_cast<size_t>(m.cols());
  const bool warm = nonlinear_controls(p_).get_int(ZSLP_IPOPT_WARMSTART, kWho) != 0;
  std::vector<double> x(n, 0.0);
  bool any_initial = false;
  for (size_t j = 0; j < n; ++j) {
    if (j < s.initial.size() && given(s.initial[j]))
      x[j] = s.initial[j], any_initial = true;
    else if (warm && j < s.x.size())
      x[j] = s.x[j];
  }
  // The multipliers fit only the point they belong to, on a model of the
  // same shape.
  with_multipliers = warm && !any_initial && s.x.size() == n && s.zl.size() == n &&
                     s.lambda.size() == static_cast<size_t>(m.rows());
  return x;
}

void IpoptBackend::run(StageResult &out) {
  std::lock_guard<std::recursive_mutex> lock(ipopt_mutex());
  const double sense = p_.model.objsense;
  program_ = new IpoptProgram(p_, *functions_, sense);
  bool with_multipliers = false;
  std::vector<double> x0 = starting_point(with_multipliers);
  program_->set_start(std::move(x0), with_multipliers ? &p_.nlp_start : nullptr);

  Ipopt::SmartPtr<Ipopt::IpoptApplication> app = new Ipopt::IpoptApplication(false, false);
  Ipopt::SmartPtr<Ipopt::Journal> journal = new MessageJournal(p_);
  app->Jnlst()->AddJournal(journal);
  apply_ipopt_options(*app, p_, MessageJournal::kName);
  if (with_multipliers) {
    // Starting next to the last solution: keep the point and its
    // multipliers close to where they were, with a small barrier parameter.
    Ipopt::OptionsList &o = *app->Options();
    o.SetStringValue("warm_start_init_point", "yes");
    o.SetNumericValue("warm_start_bound_push", 1e-9);
    o.SetNumericValue("warm_start_bound_frac", 1e-9);
    o.SetNumericValue("warm_start_slack_bound_push", 1e-9);
    o.SetNumericValue("warm_start_slack_bound_frac", 1e-9);
    o.SetNumericValue("warm_start_mult_bound_push", 1e-9);
    o.SetNumericValue("mu_init", 1e-6);
  }
  // An empty option stream: no options file is read from the working folder.
  std::istringstream no_options;
  Ipopt::ApplicationReturnStatus status = app->Initialize(no_options);
  if (status == Ipopt::Solve_Succeeded)
    status = app->OptimizeTNLP(Ipopt::SmartPtr<Ipopt::TNLP>(GetRawPtr(program_)));

  Ipopt::SmartPtr<Ipopt::SolveStatistics> stats = app->Statistics();
  out.bariter = Ipopt::IsValid(stats) ? stats->IterationCount() : 0;
  out.evaltime = program_->evaluation_seconds();
  const FinalPoint &pt = program_->final_point();
  record_ipopt_status(status, program_->stop_reason(), pt.present && feasible(pt), out);
  out.objval = pt.present ? functions_->objective(pt.x.data()) : 0.0;
  out.bestbound = out.objval;
  failure_ = ipopt_status_text(status);
  if (!program_->user_failure().empty()) {
    // A user function that failed stops the solve, and the call fails.
    out.solvestatus = ZRVS_SOLVESTATUS_FAILED;
    failure_ = "a user function failed: " + program_->user_failure();
  } else if (status == Ipopt::Invalid_Number_Detected && !program_->last_domain_failure().empty()) {
    failure_ += ": " + program_->last_domain_failure();
  }
  if (out.nlpstatus == ZSLP_NLP_UNFINISHED && out.solvestatus != ZRVS_SOLVESTATUS_FAILED)
    p_.message(ZRVS_MSG_WARNING, std::string("Ipopt stopped: ") + failure_);
}

bool IpoptBackend::feasible(const FinalPoint &pt) const {
  const double tol = nonlinear_controls(p_).get_dbl(ZSLP_IPOPT_CONSTRVIOLTOL, kWho);
  const NlpFunctions &f = *functions_;
  for (int j = 0; j < f.cols(); ++j)
    if (pt.x[j] < f.col_lower()[j] - tol || pt.x[j] > f.col_upper()[j] + tol) return false;
  for (int r = 0; r < f.rows(); ++r)
    if (pt.g[r] < f.row_lower()[r] - tol || pt.g[r] > f.row_upper()[r] + tol) return false;
  return true;
}

bool IpoptBackend::solution(std::vector<double> &x, std::vector<double> &duals,
                            std::vector<double> &djs) {
  if (Ipopt::IsNull(program_) || !program_->final_point().present) return false;
  const FinalPoint &pt = program_->final_point();
  const double sense = p_.model.objsense;
  x = pt.x;
  // Ipopt's Lagrangian is sense*f + lambda'g, so the change of f per unit
  // increase of a row's bound is -sense * lambda.
  duals.resize(pt.lambda.size());
  for (size_t r = 0; r < duals.size(); ++r) duals[r] = -sense * pt.lambda[r];
  // Reduced costs: the objective's gradient less the rows' gradients
  // weighted by the duals (the bound multipliers of a fixed column are not
  // reported by Ipopt, so they are not used).
  NlpFunctions &f = *functions_;
  djs.assign(static_cast<size_t>(f.cols()), 0.0);
  f.objective_gradient(x.data(), djs.data());
  std::vector<double> jac(f.jacobian_pattern().size());
  if (f.jacobian(x.data(), jac.data()) == EvalFailure::none) {
    const Pattern &p = f.jacobian_pattern();
    for (size_t e = 0; e < jac.size(); ++e) djs[p.col[e]] -= duals[p.row[e]] * jac[e];
  } else {
    for (size_t j = 0; j < djs.size(); ++j) djs[j] = sense * (pt.zl[j] - pt.zu[j]);
  }
  return true;
}

bool IpoptBackend::row_activities(std::vector<double> &activity) {
  if (Ipopt::IsNull(program_) || !program_->final_point().present) return false;
  activity = program_->final_point().g;
  return true;
}

void IpoptBackend::finish() {
  if (Ipopt::IsNull(program_) || !program_->final_point().present) return;
  const StageResult &last = p_.results.stages.back();
  if (last.nlpstatus != ZSLP_NLP_LOCALLY_OPTIMAL && last.solstatus != ZRVS_SOLSTATUS_FEASIBLE)
    return;
  // The next solve may start from here.
  const FinalPoint &pt = program_->final_point();
  NlpStart &s = p_.nlp_start;
  s.x = pt.x, s.zl = pt.zl, s.zu = pt.zu, s.lambda = pt.lambda;
}

}  // namespace zorvan::nlp
