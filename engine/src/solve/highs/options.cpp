#include "solve/highs/options.h"

#include <algorithm>
#include <climits>

#include "core/environment.h"
#include "solve/highs/more_options.h"

namespace zorvan {

namespace {
constexpr int kConsistentThreads = 4;
constexpr int kLogWarning = 4, kLogError = 5;  // HiGHS's log types
constexpr double kInf = 1e300;  // HiGHS reads any value >= its infinity as infinite

HighsInt clamp_int(int64_t v) { return static_cast<HighsInt>(std::min<int64_t>(v, INT_MAX)); }

void check(HighsInt status, const char *name) {
  if (status == kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "HiGHS refused the value of option %s", name);
}
void set_bool(void *h, const char *name, bool v) {
  check(Highs_setBoolOptionValue(h, name, v), name);
}
void set_int(void *h, const char *name, HighsInt v) {
  check(Highs_setIntOptionValue(h, name, v), name);
}
void set_dbl(void *h, const char *name, double v) {
  check(Highs_setDoubleOptionValue(h, name, v), name);
}
void set_str(void *h, const char *name, const char *v) {
  check(Highs_setStringOptionValue(h, name, v), name);
}
}  // namespace

int solve_threads(const zrvs_problem &p) {
  int threads = static_cast<int>(p.controls.get_int(ZRVS_THREADS, "optimize"));
  if (threads > 0) return threads;
  return arch_consistency() ? kConsistentThreads : 0;
}

void apply_controls(void *h, const zrvs_problem &p, char algorithm, int threads) {
  const ControlValues &c = p.controls;
  const char *who = "optimize";
  // The log reaches the problem's message callbacks only, never stdout.
  set_bool(h, "log_to_console", false);
  set_bool(h, "output_flag", c.get_int(ZRVS_OUTPUTLOG, who) >= 2);
  set_dbl(h, "primal_feasibility_tolerance", c.get_dbl(ZRVS_FEASTOL, who));
  set_dbl(h, "dual_feasibility_tolerance", c.get_dbl(ZRVS_OPTIMALITYTOL, who));
  set_dbl(h, "mip_abs_gap", c.get_dbl(ZRVS_MIPABSSTOP, who));
  set_dbl(h, "mip_rel_gap", c.get_dbl(ZRVS_MIPRELSTOP, who));
  set_dbl(h, "mip_feasibility_tolerance", c.get_dbl(ZRVS_MIPTOL, who));
  double timelimit = c.get_dbl(ZRVS_TIMELIMIT, who);
  set_dbl(h, "time_limit", timelimit >= 1e20 ? kInf : timelimit);
  HighsInt iterlimit = clamp_int(c.get_int(ZRVS_LPITERLIMIT, who));
  set_int(h, "simplex_iteration_limit", iterlimit);
  set_int(h, "ipm_iteration_limit", iterlimit);
  set_int(h, "mip_max_nodes", clamp_int(c.get_int(ZRVS_MAXNODE, who)));
  set_int(h, "random_seed", clamp_int(c.get_int(ZRVS_RANDOMSEED, who)));
  set_str(h, "presolve", c.get_int(ZRVS_PRESOLVE, who) ? "on" : "off");
  set_int(h, "threads", threads);
  if (!algorithm) {
    switch (c.get_int(ZRVS_DEFAULTALG, who)) {
      case 2: algorithm = 'd'; break;
      case 3: algorithm = 'p'; break;
      case 4: algorithm = 'b'; break;
      default: break;
    }
  }
  switch (algorithm) {
    case 'd':
      set_str(h, "solver", "simplex");
      set_int(h, "simplex_strategy", 1);
      break;
    case 'p':
      set_str(h, "solver", "simplex");
      set_int(h, "simplex_strategy", 4);
      break;
    case 'b': set_str(h, "solver", "ipm"); break;
    default: set_str(h, "solver", "choose"); break;
  }
  apply_more_controls(h, p);
}

SolveCallback::SolveCallback(void *highs, zrvs_problem &p) : highs_(highs), p_(p) {
  Highs_setCallback(highs_, &SolveCallback::handle, this);
  Highs_startCallback(highs_, kHighsCallbackSimplexInterrupt);
  Highs_startCallback(highs_, kHighsCallbackIpmInterrupt);
  Highs_startCallback(highs_, kHighsCallbackMipInterrupt);
  if (p.controls.get_int(ZRVS_OUTPUTLOG, "optimize") >= 2)
    Highs_startCallback(highs_, kHighsCallbackLogging);
}

SolveCallback::~SolveCallback() {
  Highs_setCallback(highs_, nullptr, nullptr);
  if (!partial_line_.empty()) p_.message(ZRVS_MSG_INFO, partial_line_);
}

void SolveCallback::handle(int type, const char *text, const HighsCallbackDataOut *out,
                           HighsCallbackDataIn *in, void *data) {
  auto *self = static_cast<SolveCallback *>(data);
  if (type == kHighsCallbackLogging) {
    int msgtype = ZRVS_MSG_INFO;
    if (out && out->log_type == kLogWarning) msgtype = ZRVS_MSG_WARNING;
    if (out && out->log_type == kLogError) msgtype = ZRVS_MSG_ERROR;
    std::lock_guard<std::mutex> lock(self->log_mutex_);
    self->partial_line_ += text ? text : "";
    size_t nl;
    while ((nl = self->partial_line_.find('\n')) != std::string::npos) {
      self->p_.message(msgtype, self->partial_line_.substr(0, nl));
      self->partial_line_.erase(0, nl + 1);
    }
    return;
  }
  if (in && self->p_.interrupt_reason.load() != ZRVS_STOP_NONE) in->user_interrupt = 1;
}

}  // namespace zorvan
