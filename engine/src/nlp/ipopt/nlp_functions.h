// The model as a smooth nonlinear program: bounds, the objective (linear and
// quadratic), the rows (linear, quadratic and formula parts) and their exact
// first and second derivatives with sparsity patterns fixed once. Used by
// the interior-point solver; nothing here depends on it.
#pragma once
#include <memory>
#include <vector>

#include "model/model.h"
#include "nlp/ad/formula_evaluator.h"
#include "solve/stages.h"

namespace zorvan::nlp {

class NlpFunctions {
 public:
  // `formulas` may be null (a model without formula terms); it is kept.
  NlpFunctions(const Model &m, const Stage &objective,
               std::unique_ptr<FormulaEvaluator> formulas);

  int cols() const { return n_; }
  int rows() const { return m_; }
  // Column and row bounds; infinite sides are +-ZRVS_PLUSINFINITY.
  const std::vector<double> &col_lower() const { return xl_; }
  const std::vector<double> &col_upper() const { return xu_; }
  const std::vector<double> &row_lower() const { return gl_; }
  const std::vector<double> &row_upper() const { return gu_; }

  // The objective as the user states it (not multiplied by the sense).
  double objective(const double *x) const;
  void objective_gradient(const double *x, double *grad) const;

  // Row activities, Jacobian values (in jacobian_pattern() order) and the
  // Hessian of objective_factor * objective + sum_r lambda[r] * row_r (lower
  // triangle, hessian_pattern() order).
  EvalFailure activities(const double *x, double *g);
  EvalFailure jacobian(const double *x, double *values);
  EvalFailure hessian(const double *x, double objective_factor, const double *lambda,
                      double *values);
  const Pattern &jacobian_pattern() const { return jac_; }
  const Pattern &hessian_pattern() const { return hess_; }
  // What the last failed evaluation was.
  const std::string &failure_text() const;

 private:
  // A quadratic entry: value * x_i * x_j, with the slots its derivatives go to.
  struct QuadTerm {
    int row;  // -1: the objective
    int i, j;
    double value;
    int jac_i, jac_j, hess;
  };
  int jacobian_slot(int row, int col) const;
  int hessian_slot(int i, int j) const;

  int n_, m_;
  std::vector<double> xl_, xu_, gl_, gu_;
  std::vector<double> cost_;
  double constant_;
  // Linear part of the rows by rows, each entry with its Jacobian slot.
  std::vector<int64_t> lin_start_;
  std::vector<int> lin_col_, lin_slot_;
  std::vector<double> lin_value_;
  std::vector<QuadTerm> quad_;  // objective and rows
  Pattern jac_, hess_;
  std::vector<int64_t> jac_row_start_;
  std::vector<int64_t> hess_col_start_;  // hessian entries sorted by (row, col)
  // Formula parts: the evaluator, where its outputs go, and buffers.
  std::unique_ptr<FormulaEvaluator> formulas_;
  std::vector<int> formula_jac_slot_, formula_hess_slot_;
  std::vector<double> formula_g_, formula_jac_, formula_hess_, formula_lambda_;
};

}  // namespace zorvan::nlp
