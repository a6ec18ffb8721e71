// The problem as Ipopt's TNLP: bounds, starting point and evaluations from
// NlpFunctions (minimising sense * objective), the solve's stop checks at
// every iteration (interrupts, the wall-clock limit, a failed user
// function) and the final point kept for the results.
#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "coin/IpTNLP.hpp"
#include "nlp/ipopt/nlp_functions.h"
#include "problem/results.h"

struct zrvs_problem;

namespace zorvan::nlp {

// The point Ipopt ended at, with its multipliers in Ipopt's convention.
struct FinalPoint {
  bool present = false;
  std::vector<double> x, zl, zu, g, lambda;
};

class IpoptProgram : public Ipopt::TNLP {
 public:
  IpoptProgram(zrvs_problem &p, NlpFunctions &functions, double sense);

  // The starting point: the user's initial values, else the last solution;
  // with `multipliers` its multipliers too.
  void set_start(std::vector<double> x, const NlpStart *multipliers);

  bool get_nlp_info(Ipopt::Index &n, Ipopt::Index &m, Ipopt::Index &nnz_jac,
                    Ipopt::Index &nnz_h, IndexStyleEnum &style) override;
  bool get_bounds_info(Ipopt::Index n, Ipopt::Number *x_l, Ipopt::Number *x_u, Ipopt::Index m,
                       Ipopt::Number *g_l, Ipopt::Number *g_u) override;
  bool get_starting_point(Ipopt::Index n, bool init_x, Ipopt::Number *x, bool init_z,
                          Ipopt::Number *z_L, Ipopt::Number *z_U, Ipopt::Index m,
                          bool init_lambda, Ipopt::Number *lambda) override;
  bool eval_f(Ipopt::Index n, const Ipopt::Number *x, bool new_x,
              Ipopt::Number &obj_value) override;
  bool eval_grad_f(Ipopt::Index n, const Ipopt::Number *x, bool new_x,
                   Ipopt::Number *grad_f) override;
  bool eval_g(Ipopt::Index n, const Ipopt::Number *x, bool new_x, Ipopt::Index m,
              Ipopt::Number *g) override;
  bool eval_jac_g(Ipopt::Index n, const Ipopt::Number *x, bool new_x, Ipopt::Index m,
                  Ipopt::Index nele_jac, Ipopt::Index *iRow, Ipopt::Index *jCol,
                  Ipopt::Number *values) override;
  bool eval_h(Ipopt::Index n, const Ipopt::Number *x, bool new_x, Ipopt::Number obj_factor,
              Ipopt::Index m, const Ipopt::Number *lambda, bool new_lambda,
              Ipopt::Index nele_hess, Ipopt::Index *iRow, Ipopt::Index *jCol,
              Ipopt::Number *values) override;
  void finalize_solution(Ipopt::SolverReturn status, Ipopt::Index n, const Ipopt::Number *x,
                         const Ipopt::Number *z_L, const Ipopt::Number *z_U, Ipopt::Index m,
                         const Ipopt::Number *g, const Ipopt::Number *lambda,
                         Ipopt::Number obj_value, const Ipopt::IpoptData *ip_data,
                         Ipopt::IpoptCalculatedQuantities *ip_cq) override;
  bool intermediate_callback(Ipopt::AlgorithmMode mode, Ipopt::Index iter,
                             Ipopt::Number obj_value, Ipopt::Number inf_pr,
                             Ipopt::Number inf_du, Ipopt::Number mu, Ipopt::Number d_norm,
                             Ipopt::Number regularization_size, Ipopt::Number alpha_du,
                             Ipopt::Number alpha_pr, Ipopt::Index ls_trials,
                             const Ipopt::IpoptData *ip_data,
                             Ipopt::IpoptCalculatedQuantities *ip_cq) override;

  // Why the solve was stopped from here (ZRVS_STOP_...), or ZRVS_STOP_NONE.
  int stop_reason() const { return stop_reason_; }
  // The text of a failed user function that stopped the solve, or empty.
  const std::string &user_failure() const { return user_failure_; }
  // The text of the last evaluation that failed (the solver backed off).
  const std::string &last_domain_failure() const { return domain_failure_; }
  double evaluation_seconds() const { return eval_seconds_; }
  const FinalPoint &final_point() const { return final_; }

 private:
  // Moves free columns defined by one equality row to where that row holds.
  void satisfy_defining_rows(double *x);
  // Notes a failed evaluation; false tells Ipopt that it failed.
  bool evaluated(EvalFailure f);

  zrvs_problem &p_;
  NlpFunctions &f_;
  double sense_;
  std::vector<double> start_x_;
  const NlpStart *start_multipliers_ = nullptr;
  std::chrono::steady_clock::time_point started_;
  double time_limit_;
  int stop_reason_ = 0;
  std::string user_failure_, domain_failure_;
  double eval_seconds_ = 0.0;
  FinalPoint final_;
};

}  // namespace zorvan::nlp
