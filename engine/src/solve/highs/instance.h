// The HiGHS instance of one problem. It lives as long as the problem, so
// that its basis, factorisation and solution stay readable after a solve,
// and a re-solve hands HiGHS only what changed since the last one.
#pragma once
#include <cstdint>
#include <vector>

#include "model/changes.h"
#include "solve/highs/builder.h"

namespace zorvan {

class HighsInstance {
 public:
  HighsInstance() = default;
  ~HighsInstance();
  HighsInstance(const HighsInstance &) = delete;
  HighsInstance &operator=(const HighsInstance &) = delete;

  // The HiGHS object, created on first use.
  void *handle();

  // Makes HiGHS hold `build` (its costs set to the first objective level)
  // with `constant` as objective offset. When HiGHS holds the problem as `log` describes it (same
  // mode, no lines added by reformulations, nothing the log cannot replay)
  // only the changes are handed over: deletions, appended lines, and
  // values that differ from what HiGHS was given. Otherwise the whole
  // model is. Clears `log`.
  enum class Loaded { whole, changes, unchanged };
  Loaded load(const Model &m, const HighsBuild &build, double constant, bool mip, ChangeLog &log,
            const char *who);

  // The solve changed HiGHS's model beyond the problem's own (rows that
  // hold objective levels or the cutoff): the next load hands over all.
  void forget() { mirrors_ = false; }

  // HiGHS holds the problem's continuous LP as it is, line for line (what
  // the analysis of a solved LP needs).
  bool holds_lp() const { return mirrors_ && !mip_ && h_; }

  // Whole transfers so far.
  int64_t transfers() const { return transfers_; }

 private:
  void transfer(const Model &m, const HighsBuild &build, bool mip, const char *who);
  void replay_deletions(const ChangeLog &log, const char *who);
  void append_lines(const Model &m, const HighsBuild &build, const char *who);
  void send_values(const HighsBuild &build, const char *who);

  void *h_ = nullptr;
  bool mirrors_ = false;  // HiGHS holds exactly the problem's lines, as below
  bool mip_ = false;
  bool changed_ = false;  // the last load handed over a change
  int64_t transfers_ = 0;
  // What HiGHS was last given.
  std::vector<double> cost_, col_lower_, col_upper_, row_lower_, row_upper_;
  std::vector<HighsInt> integrality_;  // empty for a relaxation
  double offset_ = 0.0, sense_ = 1.0;
  HighsCsc hessian_;
};

}  // namespace zorvan
