// Values and local derivatives of every graph node at a point: one pass in
// node order, each shared node once. For a node v with arguments a and b,
// da = dv/da, db = dv/db and daa, dab, dbb the second derivatives (pwl's
// slope in da; min and max record the argument they chose).
#pragma once
#include <string>
#include <vector>

#include "model/formulas.h"
#include "nlp/ad/formula_evaluator.h"
#include "nlp/formula/graph.h"

namespace zorvan::nlp {

class ForwardPass {
 public:
  // Sizes the arrays for the graph and sets the derivatives that do not
  // depend on the point (sums, differences, negation, products' dab).
  void prepare(const Graph &g, const FormulaStore &store);

  // Values at x (with the derivatives that come with them: sin, cos, exp,
  // pwl, the choice of min and max).
  EvalFailure values(const double *x);
  // Derivatives at the point of the last values: level 1 first, 2 also
  // second derivatives; `held` is the level already computed there (0 or 1).
  EvalFailure derivatives(int level, int held);
  const std::string &failure_text() const { return failure_; }

  std::vector<double> val, da, db, daa, dab, dbb;
  std::vector<int> sel;  // min, max: position of the chosen argument
  // User-function nodes: their gradient at ugrad[uat[i]..] and Hessian
  // (by rows) at uhess[uat[i] * ... ] = uhess[hat[i]..].
  std::vector<int> uat, hat;
  std::vector<double> ugrad, uhess;

 private:
  EvalFailure domain(int i, const std::string &what);
  EvalFailure user_node(int i, int level, bool gradient_held);

  const Graph *g_ = nullptr;
  const FormulaStore *store_ = nullptr;
  std::vector<double> args_;
  std::string failure_;
};

}  // namespace zorvan::nlp
