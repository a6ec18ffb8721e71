// The HiGHS callback of a solve: HiGHS's logging, iteration, interrupt and
// MIP events become the problem's events (events/fire.h), interrupts
// (ZRVSinterrupt) reach HiGHS, and the progress that callbacks read
// (zrvs_problem::progress) is kept up to date.
//
// HiGHS cannot be told to drop a solution it found. A candidate rejected by
// a preintsol callback, or a cutoff the callback tightens, therefore stops
// the run; the backend cuts the candidate off (or adds the cutoff row) and
// runs again (take_restart).
#pragma once
#include <mutex>
#include <string>
#include <vector>

#include "problem/problem.h"
#include "interfaces/highs_c_api.h"

namespace zorvan {

// Connected for the lifetime of this object.
class SolveCallback {
 public:
  SolveCallback(void *highs, zrvs_problem &p, bool mip);
  ~SolveCallback();
  SolveCallback(const SolveCallback &) = delete;
  SolveCallback &operator=(const SolveCallback &) = delete;

  // What a stopped run asks of the next one.
  struct Restart {
    std::vector<std::vector<double>> rejected;  // candidates to cut off, over the model's columns
    bool cutoff_changed = false;
    double cutoff = 0.0;
    // The last incumbent that was not rejected, over HiGHS's columns, to
    // start the next run from (empty: none).
    std::vector<double> start;
  };
  // True when the last run stopped for a restart; hands over its requests.
  bool take_restart(Restart &restart);
  // Set when a rejection cannot be honoured on HiGHS's search; the solve fails with it.
  const std::string &failure() const { return failure_; }

 private:
  static void handle(int type, const char *text, const HighsCallbackDataOut *out,
                     HighsCallbackDataIn *in, void *data);
  void log(const char *text, const HighsCallbackDataOut *out);
  void lp_iteration(const HighsCallbackDataOut *out);
  void barrier_iteration(const HighsCallbackDataOut *out);
  void mip_check(const HighsCallbackDataOut *out);
  void improving_solution(const HighsCallbackDataOut *out);
  void candidate(const HighsCallbackDataOut *out);
  void mip_progress(const HighsCallbackDataOut *out);
  void check_gap_targets();
  // Makes x (over HiGHS's columns) the point ZRVSgetmipsol gives.
  void set_point(const double *x);
  // Asks the solve to stop; the first reason given is kept.
  void stop(int reason);

  void *highs_;
  zrvs_problem &p_;
  ZRVSprob prob_;
  bool mip_;
  std::mutex log_mutex_;
  std::recursive_mutex event_mutex_;
  std::string partial_line_;
  double targets_[4];  // gapnotify: relative gap, absolute gap, objective, bound
  double cutoff_;  // the cutoff candidates must beat without an incumbent
  std::vector<double> accepted_;  // the last incumbent not rejected, over HiGHS's columns
  bool reported_ = false;         // intsol has fired for reported_value_
  double reported_value_ = 0.0;
  bool restart_ = false;
  Restart pending_;
  std::string failure_;
};

}  // namespace zorvan
