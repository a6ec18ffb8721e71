// Derivatives of one element from its tape and the forward pass at the
// point. Elements of a few variables (most of them: sin(t), (x - y^2)^2)
// carry their gradient and Hessian forward through the tape in one pass.
// Larger ones take the gradient by one reverse sweep and the Hessian by one
// forward (tangent) and one reverse (second-order adjoint) sweep per
// variable that starts a column of its pattern.
#pragma once
#include <vector>

#include "nlp/ad/elements.h"
#include "nlp/ad/forward_pass.h"

namespace zorvan::nlp {

class Sweeps {
 public:
  Sweeps(const Graph &g, const ElementTapes &t, const ForwardPass &f) : g_(g), t_(t), f_(f) {}
  void reserve(int longest) {
    adj_.resize(longest), dot_.resize(longest), adjdot_.resize(longest);
    fg_.resize(static_cast<size_t>(longest) * kSmall);
    fh_.resize(static_cast<size_t>(longest) * kSmall * kSmall);
  }

  // grad[v] = d element / d variable v (local numbering).
  void gradient(int e, double *grad);
  // hess[pos[k]] += w * d2 element / d vi d vj for every pair k of e.
  void hessian(int e, double w, const int *pos, double *hess);

 private:
  void reverse(int e);
  // Gradient and (when hess is not NULL) Hessian, m x m, of an element of
  // m <= kSmall variables by forward propagation.
  void forward(int e, double *grad, double *hess);
  static constexpr int kSmall = 4;
  std::vector<double> fg_, fh_;
  double small_hess_[kSmall * kSmall];
  const Graph &g_;
  const ElementTapes &t_;
  const ForwardPass &f_;
  std::vector<double> adj_, dot_, adjdot_;
};

}  // namespace zorvan::nlp
