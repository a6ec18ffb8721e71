#include "solve/highs/callback.h"

#include <cmath>

#include "events/fire.h"

namespace zorvan {

namespace {

constexpr int kLogWarning = 4, kLogError = 5;  // HiGHS's log types
constexpr double kNone = ZRVS_PLUSINFINITY;

double finite_or_none(double v) {
  return std::isfinite(v) && std::fabs(v) < kNone ? v : (v < 0 ? -kNone : kNone);
}

bool is_binary(const Model &m, int j) {
  char t = m.coltype[j];
  return t == 'B' || (t == 'I' && m.lb[j] >= 0.0 && m.ub[j] <= 1.0);
}

}  // namespace

SolveCallback::SolveCallback(void *highs, zrvs_problem &p, bool mip)
    : highs_(highs), p_(p), prob_(&p), mip_(mip) {
  const EventRegistry &e = p.events;
  targets_[0] = p.controls.get_dbl(ZRVS_MIPRELGAPNOTIFY, "optimize");
  targets_[1] = p.controls.get_dbl(ZRVS_MIPABSGAPNOTIFY, "optimize");
  targets_[2] = p.controls.get_dbl(ZRVS_MIPABSGAPNOTIFYOBJ, "optimize");
  targets_[3] = p.controls.get_dbl(ZRVS_MIPABSGAPNOTIFYBOUND, "optimize");
  cutoff_ = p.controls.get_dbl(ZRVS_MIPABSCUTOFF, "optimize");
  Highs_setCallback(highs_, &SolveCallback::handle, this);
  Highs_startCallback(highs_, kHighsCallbackSimplexInterrupt);
  Highs_startCallback(highs_, kHighsCallbackIpmInterrupt);
  Highs_startCallback(highs_, kHighsCallbackMipInterrupt);
  if (p.controls.get_int(ZRVS_OUTPUTLOG, "optimize") >= 2)
    Highs_startCallback(highs_, kHighsCallbackLogging);
  if (!mip) return;
  // The MIP events that copy solutions or cut pools are only asked for
  // when someone listens.
  if (e.any(EventKind::intsol) || e.any(EventKind::gapnotify) || e.any(EventKind::preintsol))
    Highs_startCallback(highs_, kHighsCallbackMipImprovingSolution);
  if (e.any(EventKind::preintsol)) Highs_startCallback(highs_, kHighsCallbackMipSolution);
  if (e.any(EventKind::miplog)) Highs_startCallback(highs_, kHighsCallbackMipLogging);
  if (e.any(EventKind::cutlog)) Highs_startCallback(highs_, kHighsCallbackMipGetCutPool);
}

SolveCallback::~SolveCallback() {
  Highs_setCallback(highs_, nullptr, nullptr);
  if (!partial_line_.empty()) p_.message(ZRVS_MSG_INFO, partial_line_);
}

bool SolveCallback::take_restart(Restart &restart) {
  if (!restart_) return false;
  restart_ = false;
  restart = std::move(pending_);
  pending_ = Restart();
  restart.start = accepted_;
  return true;
}

void SolveCallback::stop(int reason) {
  int none = ZRVS_STOP_NONE;
  p_.interrupt_reason.compare_exchange_strong(none, reason);
}

void SolveCallback::handle(int type, const char *text, const HighsCallbackDataOut *out,
                           HighsCallbackDataIn *in, void *data) {
  auto *self = static_cast<SolveCallback *>(data);
  if (type == kHighsCallbackLogging) {
    self->log(text, out);
    return;
  }
  // Events are handled one at a time, should HiGHS raise them from several
  // threads; recursive, as a callback may stop the solve from inside.
  std::lock_guard<std::recursive_mutex> lock(self->event_mutex_);
  switch (type) {
    case kHighsCallbackSimplexInterrupt: self->lp_iteration(out); break;
    case kHighsCallbackIpmInterrupt: self->barrier_iteration(out); break;
    case kHighsCallbackMipInterrupt: self->mip_check(out); break;
    case kHighsCallbackMipImprovingSolution: self->improving_solution(out); break;
    case kHighsCallbackMipSolution: self->candidate(out); break;
    case kHighsCallbackMipLogging:
      self->mip_progress(out);
      if (fire_stop_request(self->p_.events, EventKind::miplog, self->prob_))
        self->stop(ZRVS_STOP_USER);
      break;
    case kHighsCallbackMipGetCutPool:
      self->mip_progress(out);
      if (fire_stop_request(self->p_.events, EventKind::cutlog, self->prob_))
        self->stop(ZRVS_STOP_USER);
      break;
    default: break;
  }
  // HiGHS keeps the flag between calls (and runs): it is always written.
  if (in)
    in->user_interrupt =
        self->restart_ || self->p_.interrupt_reason.load() != ZRVS_STOP_NONE ? 1 : 0;
}

void SolveCallback::log(const char *text, const HighsCallbackDataOut *out) {
  int msgtype = ZRVS_MSG_INFO;
  if (out && out->log_type == kLogWarning) msgtype = ZRVS_MSG_WARNING;
  if (out && out->log_type == kLogError) msgtype = ZRVS_MSG_ERROR;
  std::lock_guard<std::mutex> lock(log_mutex_);
  partial_line_ += text ? text : "";
  size_t nl;
  while ((nl = partial_line_.find('\n')) != std::string::npos) {
    p_.message(msgtype, partial_line_.substr(0, nl));
    partial_line_.erase(0, nl + 1);
  }
}

void SolveCallback::lp_iteration(const HighsCallbackDataOut *out) {
  if (!out) return;
  // HiGHS checks more often than it iterates: one event per new iteration.
  if (out->simplex_iteration_count > p_.progress.simplexiter) {
    p_.progress.simplexiter = out->simplex_iteration_count;
    p_.progress.lpobjval = finite_or_none(out->objective_function_value);
    if (fire_stop_request(p_.events, EventKind::lplog, prob_)) stop(ZRVS_STOP_USER);
  }
  if (fire_stop_request(p_.events, EventKind::checktime, prob_)) stop(ZRVS_STOP_TIMELIMIT);
}

void SolveCallback::barrier_iteration(const HighsCallbackDataOut *out) {
  if (!out) return;
  // HiGHS also checks between its iterations, with the count at -1.
  if (out->ipm_iteration_count > p_.progress.bariter) {
    p_.progress.bariter = out->ipm_iteration_count;
    p_.progress.lpobjval = finite_or_none(out->objective_function_value);
    if (fire_int_output(p_.events, EventKind::bariteration, prob_, 0) != 0) stop(ZRVS_STOP_USER);
    if (fire_stop_request(p_.events, EventKind::barlog, prob_)) stop(ZRVS_STOP_USER);
  }
  if (fire_stop_request(p_.events, EventKind::checktime, prob_)) stop(ZRVS_STOP_TIMELIMIT);
}

void SolveCallback::mip_progress(const HighsCallbackDataOut *out) {
  if (!out || !mip_) return;
  SolveProgress &g = p_.progress;
  g.nodes = out->mip_node_count;
  g.bestbound = finite_or_none(out->mip_dual_bound);
  g.mipgap = finite_or_none(out->mip_gap);
  if (g.has_incumbent) g.mipobjval = finite_or_none(out->mip_primal_bound);
}

void SolveCallback::mip_check(const HighsCallbackDataOut *out) {
  mip_progress(out);
  if (fire_stop_request(p_.events, EventKind::checktime, prob_)) stop(ZRVS_STOP_TIMELIMIT);
  check_gap_targets();
}

void SolveCallback::check_gap_targets() {
  const SolveProgress &g = p_.progress;
  if (!g.has_incumbent && std::fabs(targets_[3]) >= kNone) return;
  const double sense = p_.model.objsense;
  bool reached = false;
  auto arm = [&](int k, bool hit, double none) {
    if (!hit) return;
    reached = true;
    targets_[k] = none;  // notified once unless renewed
  };
  arm(0, g.has_incumbent && targets_[0] >= 0.0 && g.mipgap <= targets_[0], -1.0);
  arm(1, g.has_incumbent && targets_[1] >= 0.0 &&
             std::fabs(g.mipobjval - g.bestbound) <= targets_[1], -1.0);
  arm(2, g.has_incumbent && std::fabs(targets_[2]) < kNone &&
             sense * g.mipobjval <= sense * targets_[2], kNone);
  arm(3, std::fabs(targets_[3]) < kNone && std::fabs(g.bestbound) < kNone &&
             sense * g.bestbound >= sense * targets_[3], kNone);
  if (reached) fire_gapnotify(p_.events, prob_, targets_);
}

void SolveCallback::set_point(const double *x) {
  const Model &m = p_.model;
  SolveProgress &g = p_.progress;
  g.x.assign(x, x + m.cols());
  g.slack.assign(m.rhs.begin(), m.rhs.end());
  for (size_t e = 0; e < m.mval.size(); ++e) g.slack[m.mrow[e]] -= m.mval[e] * g.x[m.mcol[e]];
}

void SolveCallback::improving_solution(const HighsCallbackDataOut *out) {
  // A run that is to restart keeps nothing: HiGHS has taken the rejected
  // candidate as its incumbent.
  if (!out || !out->mip_solution || restart_) return;
  SolveProgress &g = p_.progress;
  set_point(out->mip_solution);
  accepted_.assign(out->mip_solution, out->mip_solution + out->mip_solution_size);
  g.has_incumbent = true;
  const double value = finite_or_none(out->objective_function_value);
  g.mipobjval = value;
  mip_progress(out);
  // The incumbent a restarted run starts from is no news.
  const bool better = !reported_ || p_.model.objsense * value < p_.model.objsense * reported_value_;
  if (better) {
    reported_ = true, reported_value_ = value;
    fire_notice(p_.events, EventKind::intsol, prob_);
  }
  check_gap_targets();
}

void SolveCallback::candidate(const HighsCallbackDataOut *out) {
  if (!out || !out->mip_solution || restart_) return;
  const Model &m = p_.model;
  SolveProgress &g = p_.progress;
  mip_progress(out);
  // The cutoff a new solution must beat: the incumbent's value, else the
  // cutoff control.
  const double given = g.has_incumbent ? g.mipobjval : cutoff_;
  int reject = 0;
  double cutoff = given;
  // While preintsol runs, ZRVSgetmipsol gives the candidate.
  std::vector<double> incumbent = std::move(g.x), incumbent_slack = std::move(g.slack);
  const bool had_incumbent = g.has_incumbent;
  set_point(out->mip_solution);
  g.has_incumbent = true;
  // HiGHS does not tell where a solution comes from: soltype -1.
  fire_preintsol(p_.events, prob_, -1, &reject, &cutoff);
  g.x = std::move(incumbent), g.slack = std::move(incumbent_slack);
  g.has_incumbent = had_incumbent;
  const double sense = m.objsense;
  if (std::isfinite(cutoff) && std::fabs(cutoff) < kNone && sense * cutoff < sense * given) {
    pending_.cutoff_changed = true;
    pending_.cutoff = cutoff_ = cutoff;
    if (sense * out->objective_function_value >= sense * cutoff) restart_ = true;
  }
  if (!reject) return;
  for (int j = 0; j < m.cols(); ++j) {
    if (m.coltype[j] == 'C' || is_binary(m, j)) continue;
    failure_ =
        "a preintsol callback rejected a solution of a MIP with discrete columns that are not "
        "binary; HiGHS's search cannot drop a solution, and the engine cuts a rejected "
        "solution off only through its binary columns";
    stop(ZRVS_STOP_USER);
    return;
  }
  pending_.rejected.emplace_back(out->mip_solution, out->mip_solution + m.cols());
  restart_ = true;
}

}  // namespace zorvan
