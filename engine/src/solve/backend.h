// The interface every solver backend implements (HiGHS now; Ipopt, SLP and
// branch-and-bound later). The driver (optimize/) decides what is solved,
// runs the objective levels and records the results; a backend takes the
// model, runs one level at a time and hands back statuses and vectors.
#pragma once
#include <string>
#include <vector>

#include "problem/problem.h"
#include "problem/results.h"
#include "solve/stages.h"

namespace zorvan {

// What the driver asks of a backend for one solve.
struct SolveRequest {
  bool mip = false;         // every discrete part enforced
  bool relaxation = false;  // a model with discrete parts solved as continuous
  char algorithm = 0;       // 'd', 'p', 'b' from the flags, or 0
  const char *who = "";
};

class Backend {
 public:
  virtual ~Backend() = default;
  // Names the backend in messages ("HiGHS failed to solve the problem").
  virtual const char *name() const = 0;
  // Builds what the backend needs from the model; throws zorvan::Error for
  // what it cannot take. Called before the problem's results are cleared.
  virtual void prepare(const SolveRequest &request) = 0;
  // Takes the model, the controls and the first level's objective.
  virtual void start(const std::vector<Stage> &stages) = 0;
  // Makes `stage` the objective of the next run.
  virtual void set_objective(const Stage &stage) = 0;
  // Runs the current objective; fills the statuses and counters of `out`.
  virtual void run(StageResult &out) = 0;
  // Keeps the objective of `stage` within [lower, upper] in later runs.
  virtual void hold_level(const Stage &stage, double lower, double upper) = 0;
  // The last run's values over the problem's own columns and rows: false
  // when it has none (or none that is feasible, for a MIP). Duals and
  // reduced costs stay empty when the run has none.
  virtual bool solution(std::vector<double> &x, std::vector<double> &duals,
                        std::vector<double> &djs) = 0;
  // Row activities at the last run's solution when the backend computes
  // them itself (rows with nonlinear parts); false: the driver computes them
  // from the linear part.
  virtual bool row_activities(std::vector<double> &activity) { return false; }
  // The relative MIP gap of the last run.
  virtual double mip_gap() = 0;
  // Keeps what the problem holds after a solve (a simplex basis).
  virtual void finish() = 0;
  // Why the last run failed, in the backend's words.
  virtual std::string failure() = 0;
};

}  // namespace zorvan
