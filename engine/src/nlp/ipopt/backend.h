// Ipopt as a backend: continuous models with quadratic rows, nonconvex
// quadratic objectives or formulas, solved to a local optimum with exact
// first and second derivatives.
#pragma once
#include <memory>

#include "nlp/ipopt/nlp_functions.h"
#include "nlp/ipopt/program.h"
#include "solve/backend.h"

namespace zorvan::nlp {

class IpoptBackend : public Backend {
 public:
  // `formulas` holds the model's compiled formulas, or null when it has none.
  IpoptBackend(zrvs_problem &p, std::unique_ptr<FormulaEvaluator> formulas)
      : p_(p), formulas_(std::move(formulas)) {}
  ~IpoptBackend() override;
  const char *name() const override { return "Ipopt"; }
  void prepare(const SolveRequest &request) override;
  void start(const std::vector<Stage> &stages) override;
  void set_objective(const Stage &stage) override;
  void run(StageResult &out) override;
  void hold_level(const Stage &stage, double lower, double upper) override;
  bool solution(std::vector<double> &x, std::vector<double> &duals,
                std::vector<double> &djs) override;
  bool row_activities(std::vector<double> &activity) override;
  double mip_gap() override { return 0.0; }
  void finish() override;
  std::string failure() override { return failure_; }

 private:
  // The starting point of the run, and whether the last solution's
  // multipliers come with it.
  std::vector<double> starting_point(bool &with_multipliers) const;
  bool feasible(const FinalPoint &pt) const;

  zrvs_problem &p_;
  SolveRequest request_;
  std::unique_ptr<FormulaEvaluator> formulas_;
  std::unique_ptr<NlpFunctions> functions_;
  Ipopt::SmartPtr<IpoptProgram> program_;
  std::string failure_;
};

}  // namespace zorvan::nlp
