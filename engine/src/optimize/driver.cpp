#include "optimize/driver.h"

#include <chrono>
#include <cmath>
#include <memory>

#include "events/fire.h"
#include "nlp/ipopt/backend.h"
#include "optimize/problem_class.h"
#include "optimize/solution.h"
#include "search/search_backend.h"
#include "solve/highs/backend.h"
#include "solve/qp_verify.h"

namespace zorvan {

namespace {

using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

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

// The backend for a class, or a clear refusal: the one place that says
// what cannot be solved yet.
std::unique_ptr<Backend> backend_for(ProblemClass c, zrvs_problem &p, const char *who) {
  const Model &m = p.model;
  switch (c) {
    case ProblemClass::lp:
    case ProblemClass::qp:
    case ProblemClass::mip: break;
    case ProblemClass::qcqp:
    case ProblemClass::nonconvex_qp: return std::make_unique<nlp::IpoptBackend>(p, nullptr);
    case ProblemClass::nlp:
      return std::make_unique<nlp::IpoptBackend>(p, nlp::compile_formulas(m));
    case ProblemClass::minlp:
      fail(ZRVS_ERR_UNSUPPORTED,
           "%s: the problem has integer columns, sets or indicators together with quadratic "
           "rows or formulas; mixed-integer nonlinear models are not solvable yet (solve the "
           "continuous relaxation with ZRVSlpoptimize)",
           who);
    case ProblemClass::miqp:
      fail(ZRVS_ERR_UNSUPPORTED,
           "%s: a quadratic objective with integer or other discrete parts (MIQP): "
           "mixed-integer nonlinear models are not solvable yet",
           who);
  }
  if (!m.qobj.empty() && m.objectives.size() > 1)
    fail(ZRVS_ERR_UNSUPPORTED, "%s: several objectives with a quadratic objective", who);
  return std::make_unique<HighsBackend>(p);
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

// True when the level ended with a proven optimum.
bool stage_optimal(const StageResult &r, bool mip) {
  return mip ? r.mipstatus == ZRVS_MIP_OPTIMAL : r.lpstatus == ZRVS_LP_OPTIMAL;
}

// Callbacks read the progress of the solve while it runs, and the results
// once it ends, whichever way it ends.
class ProgressScope {
 public:
  explicit ProgressScope(zrvs_problem &p) : p_(p) {
    p_.progress = SolveProgress();
    p_.progress.mipobjval = ZRVS_PLUSINFINITY * p_.model.objsense;
    p_.progress.active = true;
  }
  ~ProgressScope() { p_.progress = SolveProgress(); }
  ProgressScope(const ProgressScope &) = delete;
  ProgressScope &operator=(const ProgressScope &) = delete;

 private:
  zrvs_problem &p_;
};

}  // namespace

void optimize(zrvs_problem &p, SolveKind kind, const char *flags, const char *who) {
  SolveRequest request;
  request.who = who;
  request.algorithm = parse_flags(flags, who);
  const Model &m = p.model;
  // The model's class decides what is solved: a model without discrete parts
  // is an LP (or QP) whichever entry point runs; lpoptimize on a model with
  // discrete parts solves its continuous relaxation.
  // Whether it has discrete parts is worked out again only after changes
  // that can alter it (changes of bounds, sides and costs cannot).
  if (!p.changes.discrete_known()) p.changes.know_discrete(m.has_discrete());
  const bool discrete = p.changes.discrete();
  request.mip = discrete && kind != SolveKind::lp;
  request.relaxation = discrete && !request.mip;
  const ProblemClass problem_class = classify_known(m, request.mip);
  std::unique_ptr<Backend> backend = backend_for(problem_class, p, who);
  // HiGHS's MIP solver has no hooks inside its tree: a MIP with cut pool
  // entries, delayed rows, model cuts, branching objects or node callbacks
  // runs on the engine's own branch-and-cut.
  if (request.mip && problem_class == ProblemClass::mip && needs_own_search(p))
    backend.reset(new SearchBackend(p));
  backend->prepare(request);
  std::vector<Stage> stages = objective_stages(m);

  p.results = SolveState();
  p.interrupt_reason.store(ZRVS_STOP_NONE);  // requests made before the solve are dropped
  SolveState &res = p.results;
  res.objstage.assign(m.objectives.size(), -1);
  const auto start = Clock::now();
  const bool levels = stages.size() > 1;
  {
    ProgressScope progress(p);
    backend->start(stages);
    for (size_t s = 0; s < stages.size(); ++s) {
      const Stage &stage = stages[s];
      if (s > 0) backend->set_objective(stage);
      if (levels) fire_notice(p.events, EventKind::beforeobjective, &p);
      const auto stage_start = Clock::now();
      StageResult r;
      backend->run(r);
      if (request.relaxation)
        r.mipstatus = r.lpstatus == ZRVS_LP_OPTIMAL ? ZRVS_MIP_LP_OPTIMAL : ZRVS_MIP_LP_NOT_OPTIMAL;
      r.solvetime = seconds_since(stage_start);
      res.stages.push_back(r);
      for (int k : stage.objectives) res.objstage[k] = static_cast<int>(s);
      res.solvedobjs += static_cast<int>(stage.objectives.size());
      res.simplexiter += r.simplexiter, res.bariter += r.bariter, res.nodes += r.nodes;
      if (levels) {
        // afterobjective reads the level's objective value and bound.
        p.progress.lpobjval = p.progress.mipobjval = r.objval;
        p.progress.bestbound = r.bestbound;
        fire_notice(p.events, EventKind::afterobjective, &p);
        p.progress = SolveProgress();
        p.progress.mipobjval = ZRVS_PLUSINFINITY * m.objsense;
        p.progress.active = true;
      }
      if (!stage_optimal(r, request.mip) || s + 1 == stages.size()) break;
      // The next levels keep this one within its tolerance.
      const double best = r.objval - stage.constant;
      const double tol = std::max(stage.abstol, stage.reltol * std::fabs(r.objval));
      backend->hold_level(stage, m.objsense > 0 ? -ZRVS_PLUSINFINITY : best - tol,
                          m.objsense > 0 ? best + tol : ZRVS_PLUSINFINITY);
    }
  }

  const StageResult &last = res.stages.back();
  res.lpstatus = last.lpstatus;
  res.mipstatus = last.mipstatus;
  res.solvestatus = last.solvestatus;
  res.solstatus = last.solstatus;
  res.stopstatus = last.stopstatus;
  res.bestbound = last.bestbound;
  if (request.mip) res.mipgap = backend->mip_gap();
  record_solution(*backend, m, request, res);
  if (last.nlpstatus != ZSLP_NLP_UNSTARTED) {
    res.nlpstatus = last.nlpstatus;
    res.nlpsolverstatus = last.nlpsolverstatus;
    res.evaltime = last.evaltime;
    res.nlpobjval = res.has_lp_solution ? res.lpobjval : last.objval;
  }
  if (problem_class == ProblemClass::qp) verify_qp_result(p, backend->failure(), who);
  backend->finish();
  res.solvetime = seconds_since(start);
  p.message(ZRVS_MSG_INFO, std::string(class_name(problem_class)) + " solve " +
                               status_text(res, request.mip) + ", objective " +
                               std::to_string(request.mip ? res.mipobjval : res.lpobjval),
                                   ZRVS_MSGCODE_SOLVE_SUMMARY);
  if (last.solvestatus == ZRVS_SOLVESTATUS_FAILED)
    fail(ZRVS_ERR_INTERNAL, "%s: %s failed to solve the problem (%s)", who, backend->name(),
         backend->failure().c_str());
}

}  // namespace zorvan
