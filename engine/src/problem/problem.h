// The engine's problem object behind the ZRVSprob handle.
#pragma once
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/entry.h"
#include "core/catalogue.h"
#include "core/environment.h"
#include "core/registry.h"
#include "events/registry.h"
#include "model/changes.h"
#include "model/model.h"
#include "problem/results.h"
#include "problem/iis_sets.h"
#include "problem/starts.h"
#include "problem/search_inputs.h"
#include "zorvan/zrvs.h"
#include "zorvan/zslp.h"

namespace zorvan {
class HighsInstance;
// Destroys a HiGHS instance (defined with it, so that this header needs
// only its name).
struct HighsInstanceDeleter {
  void operator()(HighsInstance *h) const;
};
}  // namespace zorvan

struct zrvs_problem {
  zrvs_problem() : controls(zorvan::main_catalogue()) {}

  zorvan::Model model;
  zorvan::ControlValues controls;
  SolveState results;
  SolveProgress progress;  // read by callbacks during a solve
  std::string last_error;
  zorvan::EventRegistry events;  // the problem's callbacks, messages among them
  std::atomic<int> interrupt_reason{ZRVS_STOP_NONE};
  zslp_problem *slp = nullptr;  // attached nonlinear problem, owned
  zorvan::SearchInputs search;  // cut pool, delayed rows, branchings
  NlpStart nlp_start;           // starting point of the next nonlinear solve

  // The solver state that stays with the problem between solves, and what
  // changed in the model since the solver last took it.
  std::unique_ptr<zorvan::HighsInstance, zorvan::HighsInstanceDeleter> highs;
  zorvan::ChangeLog changes;
  // Starting solutions and branching directives for the next solves.
  zorvan::SolverStarts starts;
  // Infeasible subsystems found since the last change.
  std::vector<zorvan::Iis> iis;

  // Called by every change of the model: results of earlier solves no
  // longer describe it. `what` tells the solver how much it must take
  // again; by default, everything.
  void model_changed(zorvan::Change what = zorvan::Change::anything) {
    results_outdated();
    changes.note(what);
  }
  // What every change makes stale: results and infeasible subsystems.
  void results_outdated() {
    results = SolveState();
    iis.clear();
  }
  // Called by changes of values on known lines (column bounds; sides,
  // ranges or types of rows; costs of the first objective; the sense), so
  // that a re-solve looks at those lines only.
  void column_bounds_changed(int n, const int *index) {
    results_outdated();
    changes.note_column_bounds(n, index, model.cols());
  }
  void rows_changed(int n, const int *index) {
    results_outdated();
    changes.note_rows(n, index, model.rows());
  }
  void costs_changed(int n, const int *index) {
    results_outdated();
    changes.note_costs(n, index, model.cols() + 1);
  }
  void sense_changed() {
    results_outdated();
    changes.note_sense();
  }
  // Called after deleting the columns (or rows) flagged in `mask`.
  void lines_deleted(bool columns, const std::vector<char> &mask) {
    results_outdated();
    if (columns)
      starts.columns_deleted(mask);
    else
      starts.rows_changed();
    nlp_start.lines_deleted(columns, mask);
    changes.note_deleted(columns, mask);
    search.lines_deleted(columns);
  }

  // Message codes (ZRVS_MSGCODE_...) whose messages are suppressed, and the
  // file that receives a copy of every message shown (none: null).
  std::vector<int> suppressed_codes;
  struct FileCloser {
    void operator()(std::FILE *f) const { std::fclose(f); }
  };
  std::unique_ptr<std::FILE, FileCloser> logfile;
  std::mutex logfile_mutex;

  // Sends a message to the problem's callbacks, the global handlers and the
  // log file, subject to the outputlog control and to the status of its
  // code (0: a message of no code, always shown); msgtype ZRVS_MSG_FLUSH
  // sends a flush.
  void message(int msgtype, const std::string &text, int code = 0);
};

namespace zorvan {

// Validates a handle; throws Error naming `who` when it is not usable.
void check_problem_handle(const zrvs_problem *prob, const char *who);

// Runs body(prob) for entry point `who`; failures are stored as the
// problem's last error (and the thread's global error) and returned.
template <class Body>
int problem_call(ZRVSprob prob, const char *who, Body &&body) {
  return handle_call(
      prob, who, check_problem_handle,
      [](zrvs_problem &p, int) { p.last_error = global_error_text(); }, body);
}

// A new empty problem, registered as a live handle; needs a started environment.
zrvs_problem *create_problem(const char *who);
// Unregisters and deletes a problem (its nonlinear part is destroyed first
// by the caller).
void destroy_problem(zrvs_problem *prob);
// Copies model and controls of src into dest, renamed when name is not empty.
void copy_problem(zrvs_problem &dest, const zrvs_problem &src, const char *name, const char *who);
// Replaces the model by a checked LP; the objective sense and, when no name is
// given, the name are kept.
void load_lp(zrvs_problem &p, const LpData &data, const char *who);

// Message callbacks in order of decreasing priority; removal matches f and
// data, NULL matching any.
void add_message_callback(zrvs_problem &p, ZRVS_cbmessage f, void *data, int priority);
void remove_message_callbacks(zrvs_problem &p, ZRVS_cbmessage f, void *data);

// Message codes: whether one is known, and the show (1) / suppress (0)
// status of messages of a code.
void check_message_code(int code, const char *who);
void set_message_status(zrvs_problem &p, int code, int status, const char *who);
int message_status(const zrvs_problem &p, int code, const char *who);
// Opens (appending) or, for an empty name, closes the problem's log file.
void set_log_file(zrvs_problem &p, const char *filename, const char *who);

// Throws unless reason is a stop reason a caller may ask for.
void check_stop_reason(int reason, const char *who);

}  // namespace zorvan
