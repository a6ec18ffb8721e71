// Derivatives of one element from its tape and the forward pass at the
// point: the gradient by one reverse sweep, the Hessian by one forward
// (tangent) and one reverse (second-order adjoint) sweep per variable that
// starts a column of its pattern.
#pragma once
#include <vector>

#include "nlp/ad/elements.h"
#include "nlp/ad/forward_pass.h"

namespace zorvan::nlp {

class Sweeps {
 public:
  Sweeps(const Graph &g, const ElementTapes &t, const ForwardPass &f) : g_(g), t_(t), f_(f) {}
  void reserve(int longest) { adj_.resize(longest), dot_.resize(longest), adjdot_.resize(longest); }

  // grad[v] = d element / d variable v (local numbering).
  void gradient(int e, double *grad);
  // hess[pos[k]] += w * d2 element / d vi d vj for every pair k of e.
  void hessian(int e, double w, const int *pos, double *hess);

 private:
  void reverse(int e);
  const Graph &g_;
  const ElementTapes &t_;
  const ForwardPass &f_;
  std::vector<double> adj_, dot_, adjdot_;
};

}  // namespace zorvan::nlp
