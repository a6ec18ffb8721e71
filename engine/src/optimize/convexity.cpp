#include "optimize/convexity.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace zorvan {

namespace {

int root(std::vector<int> &parent, int i) {
  while (parent[i] != i) i = parent[i] = parent[parent[i]];
  return i;
}

// A symmetric block (dense, row-major, k x k) is positive semidefinite:
// Cholesky with the largest remaining diagonal as pivot; once every
// remaining diagonal is within the tolerance, the rest must vanish too.
bool semidefinite(std::vector<double> &a, int k) {
  double scale = 0.0;
  for (double v : a) scale = std::max(scale, std::fabs(v));
  const double tol = 1e-9 * std::max(scale, 1.0);
  std::vector<int> order(k);
  std::iota(order.begin(), order.end(), 0);
  auto at = [&](int i, int j) -> double & { return a[static_cast<size_t>(i) * k + j]; };
  for (int s = 0; s < k; ++s) {
    int best = s;
    for (int t = s + 1; t < k; ++t)
      if (at(order[t], order[t]) > at(order[best], order[best])) best = t;
    std::swap(order[s], order[best]);
    const int p = order[s];
    const double pivot = at(p, p);
    if (pivot <= tol) {
      for (int t = s; t < k; ++t)
        for (int u = s; u < k; ++u)
          if (std::fabs(at(order[t], order[u])) > tol * 10) return false;
      return true;
    }
    for (int t = s + 1; t < k; ++t) {
      const int i = order[t];
      const double f = at(i, p) / pivot;
      if (f == 0.0) continue;
      for (int u = s + 1; u < k; ++u) at(i, order[u]) -= f * at(p, order[u]);
    }
  }
  return true;
}

}  // namespace

bool quadratic_objective_convex(const Model &m) {
  if (m.qobj.empty()) return true;
  const double sense = m.objsense;
  // Blocks of columns coupled by off-diagonal entries.
  const int n = m.cols();
  std::vector<int> parent(n);
  std::iota(parent.begin(), parent.end(), 0);
  for (const auto &e : m.qobj) {
    const int i = e.first.first, j = e.first.second;
    if (i != j) parent[root(parent, i)] = root(parent, j);
    else if (sense * e.second < 0.0) return false;  // a concave square
  }
  // Each block's entries, and each column's place within its block.
  std::vector<std::vector<std::pair<QKey, double>>> entries(n);
  std::vector<int> size(n, 0), place(n, -1);
  for (const auto &e : m.qobj) {
    const int b = root(parent, e.first.first);
    entries[b].push_back(e);
    for (int c : {e.first.first, e.first.second})
      if (place[c] < 0) place[c] = size[b]++;
  }
  for (int b = 0; b < n; ++b) {
    const int k = size[b];
    if (k <= 1) continue;
    if (k > kConvexityBlockLimit) {
      std::vector<double> diag(k, 0.0), off(k, 0.0);
      for (const auto &e : entries[b]) {
        const int i = place[e.first.first], j = place[e.first.second];
        const double v = sense * e.second;
        if (i == j) diag[i] = v;
        else off[i] += std::fabs(v), off[j] += std::fabs(v);
      }
      for (int t = 0; t < k; ++t)
        if (diag[t] < off[t]) return false;
      continue;
    }
    // The block's Hessian in the objective's sense: x'Qx/2 has Hessian Q.
    std::vector<double> h(static_cast<size_t>(k) * k, 0.0);
    for (const auto &e : entries[b]) {
      const int i = place[e.first.first], j = place[e.first.second];
      h[static_cast<size_t>(i) * k + j] = h[static_cast<size_t>(j) * k + i] = sense * e.second;
    }
    if (!semidefinite(h, k)) return false;
  }
  return true;
}

}  // namespace zorvan
