// The formula terms of a model compiled for evaluation: values, first and
// second derivatives at a point x over all the model's columns. The formula
// store (model/) holds the tokens; compile_formulas() turns them into a tape
// once per model version; the nonlinear backends (Ipopt, SLP) call it at
// every iterate. Linear and quadratic parts of the rows are not included:
// the backends add those themselves.
//
// A formula term of row r contributes (col >= 0 ? x[col] : 1) * factor * f(x)
// to the row's activity, where f is the formula and col its column.
//
// The evaluator keeps the last point's values and derivatives: values,
// jacobian and hessian at the same x share one pass over the formulas. It is
// stale once model.formulas.version() or the model's column count changes.
// At kinks: abs'(0) = 1, sign' = 0, min and max follow the first argument
// that attains them, pwl takes the piece to the right of a breakpoint. User
// functions without derivatives are differentiated by central differences.
#pragma once
#include <memory>
#include <string>
#include <vector>

namespace zorvan {
struct Model;
}

namespace zorvan::nlp {

// A fixed sparsity pattern as (row, column) pairs, in the order in which the
// value arrays are filled.
struct Pattern {
  std::vector<int> row;
  std::vector<int> col;
  size_t size() const { return row.size(); }
};

// Why an evaluation failed: a point outside a function's domain (log of a
// negative number, division by zero) is a soft failure the solver can back
// off from; a user function that raised stops the solve.
enum class EvalFailure { none, domain, user_function };

class FormulaEvaluator {
 public:
  virtual ~FormulaEvaluator() = default;

  // Model rows that carry formula terms, ascending. Entry k of every output
  // below refers to rows()[k].
  virtual const std::vector<int> &rows() const = 0;
  // Jacobian of the formula parts: pairs (k, column).
  virtual const Pattern &jacobian_pattern() const = 0;
  // Hessian of sum_k lambda[k] * g_k over columns, lower triangle
  // (row >= col), found once from the tape.
  virtual const Pattern &hessian_pattern() const = 0;

  // g[k] = formula part of rows()[k] at x.
  virtual EvalFailure values(const double *x, double *g) = 0;
  // Jacobian values in jacobian_pattern() order.
  virtual EvalFailure jacobian(const double *x, double *values) = 0;
  // Hessian of the Lagrangian's formula part, in hessian_pattern() order.
  virtual EvalFailure hessian(const double *x, const double *lambda, double *values) = 0;
  // Text of the last failure (which function, at what argument).
  virtual const std::string &failure_text() const = 0;
  // Memory held by the compiled formulas and their work arrays, in bytes.
  virtual size_t tape_bytes() const = 0;
};

// Compiles every formula of the model; throws zorvan::Error on formulas that
// cannot be compiled.
std::unique_ptr<FormulaEvaluator> compile_formulas(const Model &model);

}  // namespace zorvan::nlp
