// HiGHS as a backend: LPs, convex QPs and MIPs (with the discrete parts
// HiGHS lacks reformulated), on the HiGHS instance the problem keeps.
#pragma once
#include <memory>

#include "solve/backend.h"
#include "solve/highs/builder.h"
#include "solve/highs/callback.h"
#include "solve/highs/controls.h"
#include "solve/highs/scheduler.h"

namespace zorvan {

class HighsBackend : public Backend {
 public:
  explicit HighsBackend(zrvs_problem &p) : p_(p) {}
  const char *name() const override { return "HiGHS"; }
  void prepare(const SolveRequest &request) override;
  void start(const std::vector<Stage> &stages) override;
  void set_objective(const Stage &stage) override;
  void run(StageResult &out) override;
  void hold_level(const Stage &stage, double lower, double upper) override;
  bool solution(std::vector<double> &x, std::vector<double> &duals,
                std::vector<double> &djs) override;
  double mip_gap() override;
  void finish() override;
  std::string failure() override;

 private:
  // Runs HiGHS, again as long as callbacks ask for a restart.
  void run_until_settled();

  zrvs_problem &p_;
  SolveRequest request_;
  HighsBuild build_;
  void *h_ = nullptr;
  bool keeps_basis_ = false;
  // Declared in this order so that the callback is detached before the
  // scheduler is released.
  std::unique_ptr<SchedulerLease> scheduler_;
  std::unique_ptr<SolveCallback> callback_;
};

}  // namespace zorvan
