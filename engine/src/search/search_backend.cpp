#include "search/search_backend.h"

#include <cmath>

#include "search/hub_events.h"
#include "solve/highs/controls.h"

namespace zorvan {

bool needs_own_search(const zrvs_problem &p) {
  return p.search.needs_search() || has_node_callbacks(p) ||
         p.controls.get_int(ZRVS_MIPSEARCH, "optimize") == 1;
}

SearchBackend::SearchBackend(zrvs_problem &p)
    : p_(p), hub_(new HubEvents(p)) {}

SearchBackend::~SearchBackend() = default;

void SearchBackend::prepare(const SolveRequest &request) {
  request_ = request;
  build_ = build_for_highs(p_.model, SolveMode::mip, request.who);
  if (!build_.hessian.value.empty())
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: the branch-and-cut used for cut pools, delayed rows, branching objects and node "
         "callbacks solves linear models only; this problem has a quadratic objective",
         request.who);
}

void SearchBackend::start(const std::vector<Stage> &stages) {
  const char *who = request_.who;
  const ControlValues &c = p_.controls;
  SearchLimits limits;
  limits.feastol = c.get_dbl(ZRVS_FEASTOL, who);
  limits.inttol = c.get_dbl(ZRVS_MIPTOL, who);
  limits.absgap = c.get_dbl(ZRVS_MIPABSSTOP, who);
  limits.relgap = c.get_dbl(ZRVS_MIPRELSTOP, who);
  const double time = c.get_dbl(ZRVS_TIMELIMIT, who);
  limits.time_limit = time >= ZRVS_PLUSINFINITY ? 1e30 : time;
  const double cutoff = c.get_dbl(ZRVS_MIPABSCUTOFF, who);
  // The cutoff is an objective value; the search minimises sense * objective.
  limits.cutoff = std::fabs(cutoff) >= ZRVS_PLUSINFINITY ? 1e30 : build_.sense * cutoff;
  limits.node_limit = c.get_int(ZRVS_MAXNODE, who);
  limits.solution_limit = static_cast<int>(c.get_int(ZRVS_MAXMIPSOL, who));
  scheduler_.reset(new SchedulerLease(solve_threads(p_)));
  search_.reset(new BranchAndCut(p_, build_, *hub_, limits));
  // One worker: the problem itself is its problem.
  hub_->mipthread(&p_);
  worker_started_ = true;
  set_objective(stages[0]);
}

void SearchBackend::set_objective(const Stage &stage) {
  search_->set_objective(stage.cost, stage.constant);
}

void SearchBackend::run(StageResult &out) {
  search_->run(out);
  last_ = out;
}

void SearchBackend::hold_level(const Stage &stage, double lower, double upper) {
  search_->hold(stage.cost, lower, upper);
}

bool SearchBackend::solution(std::vector<double> &x, std::vector<double> &duals,
                             std::vector<double> &djs) {
  x = search_->solution();
  duals.clear(), djs.clear();
  return !x.empty();
}

void SearchBackend::finish() {
  if (worker_started_) hub_->destroymt();
  worker_started_ = false;
  p_.search.root_branchings.clear();
  p_.search.root_bounds.clear();
}

double SearchBackend::mip_gap() { return search_->gap(); }

std::string SearchBackend::failure() {
  return last_.solvestatus == ZRVS_SOLVESTATUS_FAILED ? "a node's LP failed" : "";
}

}  // namespace zorvan
