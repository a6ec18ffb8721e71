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

  // Whether HiGHS holds the problem so that load_listed can bring it up to
  // date: it mirrors the problem's lines in the same mode, without a
  // quadratic objective, and `log` lists every change since.
  bool can_take_listed(const Model &m, bool mip, const ChangeLog &log) const;
  // Hands HiGHS the lines `log` lists (column bounds, rows, costs, taken
  // from `cost`), the sense and `constant`, each only when it differs from
  // what HiGHS holds. Clears `log`.
  Loaded load_listed(const Model &m, const std::vector<double> &cost, double constant,
                     ChangeLog &log, const char *who);

  // Whether HiGHS's options were set from controls of this version with
  // this algorithm and thread count since the last whole transfer.
  bool options_current(uint64_t version, char algorithm, int threads) const {
    return options_set_ && version == options_version_ && algorithm == options_algorithm_ &&
           threads == options_threads_;
  }
  void options_set(uint64_t version, char algorithm, int threads) {
    options_set_ = true, options_version_ = version;
    options_algorithm_ = algorithm, options_threads_ = threads;
  }
  // An option was set apart from the controls: the next solve sets all again.
  void options_stale() { options_set_ = false; }

  // The row bounds HiGHS was last given.
  const std::vector<double> &row_lower() const { return row_lower_; }
  const std::vector<double> &row_upper() const { return row_upper_; }

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
  bool options_set_ = false;
  uint64_t options_version_ = 0;
  char options_algorithm_ = 0;
  int options_threads_ = 0;
  HighsCsc hessian_;
};

}  // namespace zorvan
