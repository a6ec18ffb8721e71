// What a solve leaves behind: statuses, counters and the solution vectors.
#pragma once
#include <cstdint>
#include <cstddef>
#include <limits>
#include <vector>

#include "zorvan/zslp.h"

// Results of one stage of a solve (one priority level of the objectives).
struct StageResult {
  int lpstatus = ZRVS_LP_UNSTARTED;
  int mipstatus = ZRVS_MIP_NOT_LOADED;
  int solvestatus = ZRVS_SOLVESTATUS_UNSTARTED;
  int solstatus = ZRVS_SOLSTATUS_NOTFOUND;
  int stopstatus = ZRVS_STOP_NONE;
  int64_t simplexiter = 0, bariter = 0, nodes = 0;
  double objval = 0.0;     // the stage's (blended) objective value
  double bestbound = 0.0;  // MIP dual bound of the stage
  double solvetime = 0.0;
  // Runs of the nonlinear solver: its status (ZSLP_NLP_...), its own return
  // code and the seconds spent evaluating functions and derivatives.
  int nlpstatus = ZSLP_NLP_UNSTARTED;
  int nlpsolverstatus = 0;
  double evaltime = 0.0;
};

// Results of the last solve; statuses use the ZRVS_* values.
struct SolveState {
  int lpstatus = ZRVS_LP_UNSTARTED;
  int mipstatus = ZRVS_MIP_NOT_LOADED;
  int solvestatus = ZRVS_SOLVESTATUS_UNSTARTED;
  int solstatus = ZRVS_SOLSTATUS_NOTFOUND;
  int stopstatus = ZRVS_STOP_NONE;
  int solvedobjs = 0;
  double lpobjval = 0.0;
  double mipobjval = 0.0;
  double bestbound = 0.0;
  double mipgap = 0.0;
  double solvetime = 0.0;
  int64_t simplexiter = 0, bariter = 0, nodes = 0;
  // The nonlinear solver's verdict (ZSLP_NLP_UNSTARTED when it did not run),
  // its own return code, its objective value and evaluation time.
  int nlpstatus = ZSLP_NLP_UNSTARTED;
  int nlpsolverstatus = 0;
  double nlpobjval = 0.0;
  double evaltime = 0.0;

  // Solution vectors of the problem as it was solved.
  bool has_lp_solution = false;   // x, slack, duals, djs of a continuous solve
  bool has_mip_solution = false;  // x, slack of an integer solution
  std::vector<double> x, slack, duals, djs;

  // Per objective: its value at the solution and the stage that handled it.
  std::vector<double> objvals;
  std::vector<int> objstage;
  std::vector<StageResult> stages;
};

// What callbacks read while a solve runs: the progress of the running
// level, kept apart from the results of the last completed solve.
struct SolveProgress {
  bool active = false;  // a solve runs: attributes answer from here
  int64_t simplexiter = 0, bariter = 0, nodes = 0;
  double lpobjval = 0.0;    // objective of the current LP iterate
  double mipobjval = 1e20;  // incumbent objective (in the problem's sense)
  double bestbound = 0.0;
  double mipgap = 1e20;
  bool has_incumbent = false;
  std::vector<double> x, slack;  // the incumbent over the problem's columns and rows
};

// Where the next nonlinear solve starts: initial values given by the user
// (NaN: none given) and the last nonlinear solution with its multipliers.
struct NlpStart {
  std::vector<double> initial;
  std::vector<double> x, zl, zu, lambda;
  static double initial_none() { return std::numeric_limits<double>::quiet_NaN(); }

  // Keeps the entries of the lines that remain after deleting those flagged
  // in `deleted` (columns or rows); the last solution no longer fits.
  void lines_deleted(bool columns, const std::vector<char> &deleted) {
    x.clear(), zl.clear(), zu.clear(), lambda.clear();
    if (!columns || initial.empty()) return;
    initial.resize(deleted.size(), initial_none());
    size_t kept = 0;
    for (size_t j = 0; j < initial.size(); ++j)
      if (!deleted[j]) initial[kept++] = initial[j];
    initial.resize(kept);
  }
};
