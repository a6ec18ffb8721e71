// The engine's branch-and-cut as a backend: MIPs whose solve needs hooks
// inside the tree (node callbacks, cut pool, delayed rows, branching
// objects) run here instead of in HiGHS's MIP solver.
#pragma once
#include <memory>

#include "search/search.h"
#include "solve/backend.h"
#include "solve/highs/scheduler.h"

namespace zorvan {

// True when a MIP solve of p needs the engine's search (cut pool, delayed
// rows, branchings, node callbacks), or the mipsearch control asks for it.
bool needs_own_search(const zrvs_problem &p);

class SearchBackend : public Backend {
 public:
  // Node events go to the problem's callbacks.
  explicit SearchBackend(zrvs_problem &p);
  ~SearchBackend() override;
  const char *name() const override { return "branch-and-cut"; }
  void prepare(const SolveRequest &request) override;
  void start(const std::vector<Stage> &stages) override;
  void set_objective(const Stage &stage) override;
  void run(StageResult &out) override;
  void hold_level(const Stage &stage, double lower, double upper) override;
  bool solution(std::vector<double> &x, std::vector<double> &duals,
                std::vector<double> &djs) override;
  double mip_gap() override;
  // Branchings and bounds given for the root are used by one solve.
  void finish() override;
  std::string failure() override;

 private:
  zrvs_problem &p_;
  SolveRequest request_;
  HighsBuild build_;
  std::unique_ptr<SearchEvents> hub_;
  bool worker_started_ = false;
  std::unique_ptr<SchedulerLease> scheduler_;
  std::unique_ptr<BranchAndCut> search_;
  StageResult last_;
};

}  // namespace zorvan
