#include "solve/highs/controls.h"

#include <algorithm>
#include <climits>

#include "core/environment.h"
#include "solve/highs/builder.h"

namespace zorvan {

namespace {

constexpr int kConsistentThreads = 4;
constexpr const char *kWho = "optimize";

void check(HighsInt status, const char *option) {
  if (status == kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "HiGHS refused the value of option %s", option);
}
void set_bool(void *h, const char *option, bool v) {
  check(Highs_setBoolOptionValue(h, option, v), option);
}
void set_int(void *h, const char *option, int64_t v) {
  check(Highs_setIntOptionValue(h, option, static_cast<HighsInt>(std::min<int64_t>(v, INT_MAX))),
        option);
}
void set_dbl(void *h, const char *option, double v) {
  check(Highs_setDoubleOptionValue(h, option, v), option);
}
void set_str(void *h, const char *option, const char *v) {
  check(Highs_setStringOptionValue(h, option, v), option);
}

// Converters: how the value of `control` becomes the value of `option`.
using Convert = void (*)(void *h, const char *option, int control, const ControlValues &c);

void real(void *h, const char *option, int control, const ControlValues &c) {
  set_dbl(h, option, c.get_dbl(control, kWho));
}
void real_or_infinite(void *h, const char *option, int control, const ControlValues &c) {
  double v = c.get_dbl(control, kWho);
  set_dbl(h, option, v >= ZRVS_PLUSINFINITY ? kHighsInf : v);
}
void integer(void *h, const char *option, int control, const ControlValues &c) {
  set_int(h, option, c.get_int(control, kWho));
}
void nonzero(void *h, const char *option, int control, const ControlValues &c) {
  set_bool(h, option, c.get_int(control, kWho) != 0);
}
void on_off(void *h, const char *option, int control, const ControlValues &c) {
  set_str(h, option, c.get_int(control, kWho) ? "on" : "off");
}
// HiGHS's log is produced from outputlog 2 on.
void log_level(void *h, const char *option, int control, const ControlValues &c) {
  set_bool(h, option, c.get_int(control, kWho) >= 2);
}
// The barrier obeys both iteration limits.
void barrier_iterations(void *h, const char *option, int control, const ControlValues &c) {
  set_int(h, option, std::min(c.get_int(control, kWho), c.get_int(ZRVS_LPITERLIMIT, kWho)));
}
// 0 means no limit.
void count_or_unlimited(void *h, const char *option, int control, const ControlValues &c) {
  int64_t v = c.get_int(control, kWho);
  set_int(h, option, v > 0 ? v : INT_MAX);
}
// HiGHS's default scaling (2: equilibration) or none (0).
void scaling(void *h, const char *option, int control, const ControlValues &c) {
  set_int(h, option, c.get_int(control, kWho) ? 2 : 0);
}

struct HighsControl {
  int control;
  const char *option;
  Convert convert;
};

const HighsControl kHighsControls[] = {
    {ZRVS_OUTPUTLOG, "output_flag", log_level},
    {ZRVS_FEASTOL, "primal_feasibility_tolerance", real},
    {ZRVS_OPTIMALITYTOL, "dual_feasibility_tolerance", real},
    {ZRVS_MIPABSSTOP, "mip_abs_gap", real},
    {ZRVS_MIPRELSTOP, "mip_rel_gap", real},
    {ZRVS_MIPTOL, "mip_feasibility_tolerance", real},
    {ZRVS_TIMELIMIT, "time_limit", real_or_infinite},
    {ZRVS_LPITERLIMIT, "simplex_iteration_limit", integer},
    {ZRVS_BARITERLIMIT, "ipm_iteration_limit", barrier_iterations},
    {ZRVS_BARGAPSTOP, "ipm_optimality_tolerance", real},
    {ZRVS_CROSSOVER, "run_crossover", on_off},
    {ZRVS_MAXNODE, "mip_max_nodes", integer},
    {ZRVS_MAXMIPSOL, "mip_max_improving_sols", count_or_unlimited},
    {ZRVS_HEUREMPHASIS, "mip_heuristic_effort", real},
    {ZRVS_SYMMETRY, "mip_detect_symmetry", nonzero},
    {ZRVS_RANDOMSEED, "random_seed", integer},
    {ZRVS_PRESOLVE, "presolve", on_off},
    {ZRVS_SCALING, "simplex_scale_strategy", scaling},
};

// The algorithm: the flags' choice, else the defaultalg control.
void set_algorithm(void *h, const ControlValues &c, char algorithm) {
  if (!algorithm) {
    switch (c.get_int(ZRVS_DEFAULTALG, kWho)) {
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
}

}  // namespace

int solve_threads(const zrvs_problem &p) {
  int threads = static_cast<int>(p.controls.get_int(ZRVS_THREADS, kWho));
  if (threads > 0) return threads;
  return arch_consistency() ? kConsistentThreads : 0;
}

int64_t qp_iteration_cap(const zrvs_problem &p) {
  // Far beyond what the solver needs on the problems it does solve (a few
  // iterations per column and row), and well under a second when it cycles.
  constexpr int64_t kBase = 2000, kPerColumnOrRow = 50;
  const int64_t cap = kBase + kPerColumnOrRow * (p.model.cols() + p.model.rows());
  return std::min(cap, p.controls.get_int(ZRVS_LPITERLIMIT, kWho));
}

void apply_controls(void *h, const zrvs_problem &p, char algorithm, int threads) {
  // The log reaches the problem's message callbacks only, never stdout.
  set_bool(h, "log_to_console", false);
  for (const HighsControl &row : kHighsControls) row.convert(h, row.option, row.control, p.controls);
  set_int(h, "threads", threads);
  set_int(h, "qp_iteration_limit", qp_iteration_cap(p));
  set_algorithm(h, p.controls, algorithm);
}

}  // namespace zorvan
