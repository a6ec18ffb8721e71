#include "nlp/ipopt/program.h"

#include <algorithm>

#include "nlp/slp_problem.h"

namespace zorvan::nlp {

namespace {

using Clock = std::chrono::steady_clock;

// Adds the time since its creation to a counter.
class Timer {
 public:
  explicit Timer(double &total) : total_(total), start_(Clock::now()) {}
  ~Timer() { total_ += std::chrono::duration<double>(Clock::now() - start_).count(); }

 private:
  double &total_;
  Clock::time_point start_;
};

}  // namespace

IpoptProgram::IpoptProgram(zrvs_problem &p, NlpFunctions &functions, double sense)
    : p_(p),
      f_(functions),
      sense_(sense),
      started_(Clock::now()),
      time_limit_(p.controls.get_dbl(ZRVS_TIMELIMIT, "optimize")) {}

void IpoptProgram::set_start(std::vector<double> x, const NlpStart *multipliers) {
  start_x_ = std::move(x);
  start_multipliers_ = multipliers;
}

bool IpoptProgram::evaluated(EvalFailure f) {
  if (f == EvalFailure::none) return true;
  if (f == EvalFailure::user_function) {
    if (user_failure_.empty()) user_failure_ = f_.failure_text();
    if (user_failure_.empty()) user_failure_ = "a user function failed";
  } else {
    domain_failure_ = f_.failure_text();
  }
  return false;
}

bool IpoptProgram::get_nlp_info(Ipopt::Index &n, Ipopt::Index &m, Ipopt::Index &nnz_jac,
                                Ipopt::Index &nnz_h, IndexStyleEnum &style) {
  n = f_.cols(), m = f_.rows();
  nnz_jac = static_cast<Ipopt::Index>(f_.jacobian_pattern().size());
  nnz_h = static_cast<Ipopt::Index>(f_.hessian_pattern().size());
  style = C_STYLE;
  return true;
}

bool IpoptProgram::get_bounds_info(Ipopt::Index n, Ipopt::Number *x_l, Ipopt::Number *x_u,
                                   Ipopt::Index m, Ipopt::Number *g_l, Ipopt::Number *g_u) {
  std::copy(f_.col_lower().begin(), f_.col_lower().end(), x_l);
  std::copy(f_.col_upper().begin(), f_.col_upper().end(), x_u);
  std::copy(f_.row_lower().begin(), f_.row_lower().end(), g_l);
  std::copy(f_.row_upper().begin(), f_.row_upper().end(), g_u);
  return true;
}

bool IpoptProgram::get_starting_point(Ipopt::Index n, bool init_x, Ipopt::Number *x,
                                      bool init_z, Ipopt::Number *z_L, Ipopt::Number *z_U,
                                      Ipopt::Index m, bool init_lambda,
                                      Ipopt::Number *lambda) {
  if (init_x) {
    for (int j = 0; j < n; ++j)
      x[j] = std::min(std::max(start_x_[j], f_.col_lower()[j]), f_.col_upper()[j]);
    satisfy_defining_rows(x);
  }
  if (init_z || init_lambda) {
    if (!start_multipliers_) return false;
    if (init_z) {
      std::copy(start_multipliers_->zl.begin(), start_multipliers_->zl.end(), z_L);
      std::copy(start_multipliers_->zu.begin(), start_multipliers_->zu.end(), z_U);
    }
    if (init_lambda)
      std::copy(start_multipliers_->lambda.begin(), start_multipliers_->lambda.end(), lambda);
  }
  return true;
}

void IpoptProgram::satisfy_defining_rows(double *x) {
  // A free column that enters one equality row, linearly, and nothing else
  // but the objective (the column that carries a nonlinear objective) is
  // defined by that row: it starts where the row holds, so that the first
  // iterate does not start far from feasible for no reason.
  const int n = f_.cols(), m = f_.rows();
  const Pattern &jac = f_.jacobian_pattern();
  const Pattern &hess = f_.hessian_pattern();
  std::vector<int> uses(n, 0), row_of(n, -1);
  for (size_t k = 0; k < jac.size(); ++k) ++uses[jac.col[k]], row_of[jac.col[k]] = jac.row[k];
  for (size_t k = 0; k < hess.size(); ++k) uses[hess.row[k]] = uses[hess.col[k]] = -1;
  std::vector<char> defined(n, 0);
  bool any = false;
  for (int j = 0; j < n; ++j)
    if (uses[j] == 1 && f_.col_lower()[j] <= -ZRVS_PLUSINFINITY &&
        f_.col_upper()[j] >= ZRVS_PLUSINFINITY &&
        f_.row_lower()[row_of[j]] == f_.row_upper()[row_of[j]])
      defined[j] = 1, any = true;
  if (!any) return;
  std::vector<double> g(m), jv(jac.size());
  if (f_.activities(x, g.data()) != EvalFailure::none ||
      f_.jacobian(x, jv.data()) != EvalFailure::none)
    return;
  std::vector<char> moved(m, 0);
  for (size_t k = 0; k < jac.size(); ++k) {
    const int j = jac.col[k], r = jac.row[k];
    if (!defined[j] || jv[k] == 0.0 || moved[r]) continue;
    // One column per row, so that each row's shift is exact.
    moved[r] = 1;
    x[j] += (f_.row_lower()[r] - g[r]) / jv[k];
  }
}

bool IpoptProgram::eval_f(Ipopt::Index, const Ipopt::Number *x, bool, Ipopt::Number &obj) {
  Timer t(eval_seconds_);
  obj = sense_ * f_.objective(x);
  return true;
}

bool IpoptProgram::eval_grad_f(Ipopt::Index n, const Ipopt::Number *x, bool,
                               Ipopt::Number *grad) {
  Timer t(eval_seconds_);
  f_.objective_gradient(x, grad);
  if (sense_ != 1.0)
    for (int j = 0; j < n; ++j) grad[j] *= sense_;
  return true;
}

bool IpoptProgram::eval_g(Ipopt::Index, const Ipopt::Number *x, bool, Ipopt::Index,
                          Ipopt::Number *g) {
  if (!user_failure_.empty()) return false;
  Timer t(eval_seconds_);
  return evaluated(f_.activities(x, g));
}

bool IpoptProgram::eval_jac_g(Ipopt::Index, const Ipopt::Number *x, bool, Ipopt::Index,
                              Ipopt::Index, Ipopt::Index *iRow, Ipopt::Index *jCol,
                              Ipopt::Number *values) {
  if (!values) {
    const Pattern &p = f_.jacobian_pattern();
    std::copy(p.row.begin(), p.row.end(), iRow);
    std::copy(p.col.begin(), p.col.end(), jCol);
    return true;
  }
  if (!user_failure_.empty()) return false;
  Timer t(eval_seconds_);
  return evaluated(f_.jacobian(x, values));
}

bool IpoptProgram::eval_h(Ipopt::Index, const Ipopt::Number *x, bool, Ipopt::Number obj_factor,
                          Ipopt::Index, const Ipopt::Number *lambda, bool, Ipopt::Index,
                          Ipopt::Index *iRow, Ipopt::Index *jCol, Ipopt::Number *values) {
  if (!values) {
    const Pattern &p = f_.hessian_pattern();
    std::copy(p.row.begin(), p.row.end(), iRow);
    std::copy(p.col.begin(), p.col.end(), jCol);
    return true;
  }
  if (!user_failure_.empty()) return false;
  Timer t(eval_seconds_);
  return evaluated(f_.hessian(x, sense_ * obj_factor, lambda, values));
}

void IpoptProgram::finalize_solution(Ipopt::SolverReturn, Ipopt::Index n,
                                     const Ipopt::Number *x, const Ipopt::Number *z_L,
                                     const Ipopt::Number *z_U, Ipopt::Index m,
                                     const Ipopt::Number *g, const Ipopt::Number *lambda,
                                     Ipopt::Number, const Ipopt::IpoptData *,
                                     Ipopt::IpoptCalculatedQuantities *) {
  if (!x) return;
  final_.present = true;
  final_.x.assign(x, x + n);
  final_.zl.assign(z_L, z_L + n);
  final_.zu.assign(z_U, z_U + n);
  final_.g.assign(g, g + m);
  final_.lambda.assign(lambda, lambda + m);
}

bool IpoptProgram::intermediate_callback(Ipopt::AlgorithmMode, Ipopt::Index, Ipopt::Number,
                                         Ipopt::Number, Ipopt::Number, Ipopt::Number,
                                         Ipopt::Number, Ipopt::Number, Ipopt::Number,
                                         Ipopt::Number, Ipopt::Index, const Ipopt::IpoptData *,
                                         Ipopt::IpoptCalculatedQuantities *) {
  if (!user_failure_.empty()) {
    stop_reason_ = ZRVS_STOP_USER;
    return false;
  }
  int reason = p_.interrupt_reason.load();
  if (reason == ZRVS_STOP_NONE && p_.slp) reason = p_.slp->interrupt_reason.load();
  if (reason != ZRVS_STOP_NONE) {
    stop_reason_ = reason;
    return false;
  }
  if (time_limit_ < ZRVS_PLUSINFINITY &&
      std::chrono::duration<double>(Clock::now() - started_).count() > time_limit_) {
    stop_reason_ = ZRVS_STOP_TIMELIMIT;
    return false;
  }
  return true;
}

}  // namespace zorvan::nlp
