#include "nlp/ad/sweeps.h"

#include <algorithm>

namespace zorvan::nlp {

void Sweeps::reverse(int e) {
  const int first = t_.node_start[e], len = t_.length(e);
  const Step *step = t_.step.data() + first;
  const int *a = t_.a.data() + first, *b = t_.b.data() + first, *gid = t_.gid.data() + first;
  const double *da = f_.da.data(), *db = f_.db.data();
  double *adj = adj_.data();
  std::fill(adj, adj + len, 0.0);
  adj[len - 1] = 1;
  for (int p = len - 1; p >= 0; --p) {
    double ad = adj[p];
    if (ad == 0) continue;
    int gi = gid[p];
    switch (step[p]) {
      case Step::variable: break;
      case Step::unary:
        if (a[p] >= 0) adj[a[p]] += ad * da[gi];
        break;
      case Step::binary:
        if (a[p] >= 0) adj[a[p]] += ad * da[gi];
        if (b[p] >= 0) adj[b[p]] += ad * db[gi];
        break;
      case Step::select: {
        int c = t_.list[a[p] + f_.sel[gi]];
        if (c >= 0) adj[c] += ad;
        break;
      }
      case Step::user: {
        const double *grad = f_.ugrad.data() + f_.uat[gi];
        for (int k = 0; k < b[p]; ++k) {
          int c = t_.list[a[p] + k];
          if (c >= 0) adj[c] += ad * grad[k];
        }
        break;
      }
    }
  }
}

void Sweeps::gradient(int e, double *grad) {
  reverse(e);
  int m = t_.variables(e);
  const int *leaf = t_.var_leaf.data() + t_.var_start[e];
  for (int v = 0; v < m; ++v) grad[v] = adj_[leaf[v]];
}

void Sweeps::hessian(int e, double w, const int *pos, double *hess) {
  int from = t_.pair_start[e], to = t_.pair_start[e + 1];
  if (from == to || w == 0) return;
  reverse(e);
  const int first = t_.node_start[e], len = t_.length(e);
  const Step *step = t_.step.data() + first;
  const int *a = t_.a.data() + first, *b = t_.b.data() + first, *gid = t_.gid.data() + first;
  const double *da = f_.da.data(), *db = f_.db.data();
  const double *daa = f_.daa.data(), *dab = f_.dab.data(), *dbb = f_.dbb.data();
  const int *leaf = t_.var_leaf.data() + t_.var_start[e];
  const double *adj = adj_.data();
  double *dot = dot_.data(), *adjdot = adjdot_.data();
  for (int k = from; k < to;) {
    int j = t_.pair_j[k];
    // Tangent in direction of variable j: entries before its leaf are 0.
    int start = leaf[j];
    std::fill(dot, dot + len, 0.0);
    dot[start] = 1;
    for (int p = start + 1; p < len; ++p) {
      int gi = gid[p];
      switch (step[p]) {
        case Step::variable: break;
        case Step::unary: dot[p] = a[p] >= 0 ? da[gi] * dot[a[p]] : 0; break;
        case Step::binary:
          dot[p] = (a[p] >= 0 ? da[gi] * dot[a[p]] : 0) + (b[p] >= 0 ? db[gi] * dot[b[p]] : 0);
          break;
        case Step::select: {
          int c = t_.list[a[p] + f_.sel[gi]];
          dot[p] = c >= 0 ? dot[c] : 0;
          break;
        }
        case Step::user: {
          const double *grad = f_.ugrad.data() + f_.uat[gi];
          double s = 0;
          for (int q = 0; q < b[p]; ++q) {
            int c = t_.list[a[p] + q];
            if (c >= 0) s += grad[q] * dot[c];
          }
          dot[p] = s;
          break;
        }
      }
    }
    // Second-order adjoints: d(adj)/d(direction).
    std::fill(adjdot, adjdot + len, 0.0);
    for (int p = len - 1; p >= 0; --p) {
      double A = adj[p], D = adjdot[p];
      int gi = gid[p];
      switch (step[p]) {
        case Step::variable: break;
        case Step::unary:
          if (a[p] >= 0) adjdot[a[p]] += D * da[gi] + A * daa[gi] * dot[a[p]];
          break;
        case Step::binary: {
          double ta = a[p] >= 0 ? dot[a[p]] : 0, tb = b[p] >= 0 ? dot[b[p]] : 0;
          if (a[p] >= 0) adjdot[a[p]] += D * da[gi] + A * (daa[gi] * ta + dab[gi] * tb);
          if (b[p] >= 0) adjdot[b[p]] += D * db[gi] + A * (dab[gi] * ta + dbb[gi] * tb);
          break;
        }
        case Step::select: {
          int c = t_.list[a[p] + f_.sel[gi]];
          if (c >= 0) adjdot[c] += D;
          break;
        }
        case Step::user: {
          int n = b[p];
          const double *grad = f_.ugrad.data() + f_.uat[gi];
          const double *h = f_.uhess.data() + f_.hat[gi];
          for (int q = 0; q < n; ++q) {
            int c = t_.list[a[p] + q];
            if (c < 0) continue;
            double s = 0;
            for (int r = 0; r < n; ++r) {
              int cr = t_.list[a[p] + r];
              if (cr >= 0) s += h[q * n + r] * dot[cr];
            }
            adjdot[c] += D * grad[q] + A * s;
          }
          break;
        }
      }
    }
    for (; k < to && t_.pair_j[k] == j; ++k) hess[pos[k - from]] += w * adjdot[leaf[t_.pair_i[k]]];
  }
}

}  // namespace zorvan::nlp
