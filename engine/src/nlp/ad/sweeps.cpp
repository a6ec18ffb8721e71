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

void Sweeps::forward(int e, double *grad, double *hess) {
  const int first = t_.node_start[e], len = t_.length(e), m = t_.variables(e), mm = m * m;
  const Step *step = t_.step.data() + first;
  const int *a = t_.a.data() + first, *b = t_.b.data() + first, *gid = t_.gid.data() + first;
  const double *da = f_.da.data(), *db = f_.db.data();
  const double *daa = f_.daa.data(), *dab = f_.dab.data(), *dbb = f_.dbb.data();
  const int *leaf = t_.var_leaf.data() + t_.var_start[e];
  double *G = fg_.data(), *H = fh_.data();
  const bool second = hess != nullptr;
  int next_var = 0;
  for (int p = 0; p < len; ++p) {
    double *g = G + p * m, *h = H + p * mm;
    int gi = gid[p];
    switch (step[p]) {
      case Step::variable:
        for (int i = 0; i < m; ++i) g[i] = 0;
        // Leaves come in tape order; find which variable this one is.
        while (leaf[next_var] != p) next_var = (next_var + 1) % m;
        g[next_var] = 1;
        if (second)
          for (int i = 0; i < mm; ++i) h[i] = 0;
        break;
      case Step::unary: {
        double d1 = da[gi], d2 = daa[gi];
        if (a[p] < 0) {
          for (int i = 0; i < m; ++i) g[i] = 0;
          if (second)
            for (int i = 0; i < mm; ++i) h[i] = 0;
          break;
        }
        const double *gc = G + a[p] * m, *hc = H + a[p] * mm;
        for (int i = 0; i < m; ++i) g[i] = d1 * gc[i];
        if (second)
          for (int i = 0; i < m; ++i)
            for (int j = 0; j < m; ++j) h[i * m + j] = d1 * hc[i * m + j] + d2 * gc[i] * gc[j];
        break;
      }
      case Step::binary: {
        static const double zero[kSmall * kSmall] = {};
        bool ha = a[p] >= 0, hb = b[p] >= 0;
        const double *ga = ha ? G + a[p] * m : zero, *gb = hb ? G + b[p] * m : zero;
        const double *ka = ha ? H + a[p] * mm : zero, *kb = hb ? H + b[p] * mm : zero;
        double d1a = da[gi], d1b = db[gi];
        for (int i = 0; i < m; ++i) g[i] = d1a * ga[i] + d1b * gb[i];
        if (second) {
          double d2aa = daa[gi], d2ab = dab[gi], d2bb = dbb[gi];
          for (int i = 0; i < m; ++i)
            for (int j = 0; j < m; ++j)
              h[i * m + j] = d1a * ka[i * m + j] + d1b * kb[i * m + j] +
                             d2aa * ga[i] * ga[j] + d2ab * (ga[i] * gb[j] + gb[i] * ga[j]) +
                             d2bb * gb[i] * gb[j];
        }
        break;
      }
      case Step::select: {
        int c = t_.list[a[p] + f_.sel[gi]];
        for (int i = 0; i < m; ++i) g[i] = c >= 0 ? G[c * m + i] : 0;
        if (second)
          for (int i = 0; i < mm; ++i) h[i] = c >= 0 ? H[c * mm + i] : 0;
        break;
      }
      case Step::user: {
        int n = b[p];
        const double *ug = f_.ugrad.data() + f_.uat[gi];
        const double *uh = f_.uhess.data() + f_.hat[gi];
        for (int i = 0; i < m; ++i) g[i] = 0;
        if (second)
          for (int i = 0; i < mm; ++i) h[i] = 0;
        for (int q = 0; q < n; ++q) {
          int c = t_.list[a[p] + q];
          if (c < 0) continue;
          for (int i = 0; i < m; ++i) g[i] += ug[q] * G[c * m + i];
          if (!second) continue;
          for (int i = 0; i < mm; ++i) h[i] += ug[q] * H[c * mm + i];
          for (int r = 0; r < n; ++r) {
            int cr = t_.list[a[p] + r];
            if (cr < 0) continue;
            double w = uh[q * n + r];
            for (int i = 0; i < m; ++i)
              for (int j = 0; j < m; ++j) h[i * m + j] += w * G[c * m + i] * G[cr * m + j];
          }
        }
        break;
      }
    }
  }
  const double *root = G + (len - 1) * m;
  for (int i = 0; i < m; ++i) grad[i] = root[i];
  if (second)
    for (int i = 0; i < mm; ++i) hess[i] = H[(len - 1) * mm + i];
}

void Sweeps::gradient(int e, double *grad) {
  if (t_.variables(e) <= kSmall) {
    forward(e, grad, nullptr);
    return;
  }
  reverse(e);
  int m = t_.variables(e);
  const int *leaf = t_.var_leaf.data() + t_.var_start[e];
  for (int v = 0; v < m; ++v) grad[v] = adj_[leaf[v]];
}

void Sweeps::hessian(int e, double w, const int *pos, double *hess) {
  int from = t_.pair_start[e], to = t_.pair_start[e + 1];
  if (from == to || w == 0) return;
  int m = t_.variables(e);
  if (m <= kSmall) {
    double grad[kSmall];
    forward(e, grad, small_hess_);
    for (int k = from; k < to; ++k)
      hess[pos[k - from]] += w * small_hess_[t_.pair_i[k] * m + t_.pair_j[k]];
    return;
  }
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
