// A travelling salesman model with subtour elimination added lazily from an
// optnode callback, through ZRVSaddcuts64, against Held-Karp's optimum.
#include <algorithm>
#include <cmath>

#include "search_support.h"

namespace {

struct Tour {
  int n;
  std::vector<std::pair<int, int>> edges;  // column k joins edges[k]
  int cuts_added = 0, optnode_calls = 0;
};

// The cities reachable from city 0 along edges at 1 in x, when x is
// integral; empty when some edge is fractional.
std::vector<int> component_of_zero(const Tour &t, const std::vector<double> &x) {
  std::vector<std::vector<int>> adj(t.n);
  for (size_t k = 0; k < t.edges.size(); ++k) {
    if (x[k] > 1e-6 && x[k] < 1 - 1e-6) return {};
    if (x[k] > 0.5) {
      adj[t.edges[k].first].push_back(t.edges[k].second);
      adj[t.edges[k].second].push_back(t.edges[k].first);
    }
  }
  std::vector<int> seen(t.n, 0), stack = {0}, comp;
  seen[0] = 1;
  while (!stack.empty()) {
    int v = stack.back();
    stack.pop_back();
    comp.push_back(v);
    for (int w : adj[v])
      if (!seen[w]) seen[w] = 1, stack.push_back(w);
  }
  return comp;
}

void cut_subtours(ZRVSprob prob, void *data, int *infeasible) {
  Tour &t = *static_cast<Tour *>(data);
  ++t.optnode_calls;
  *infeasible = 0;
  std::vector<double> x(t.edges.size());
  if (ZRVSgetlpsol(prob, x.data(), nullptr, nullptr, nullptr) != 0) return;
  std::vector<int> comp = component_of_zero(t, x);
  if (comp.empty() || static_cast<int>(comp.size()) == t.n) return;
  std::vector<char> in(t.n, 0);
  for (int v : comp) in[v] = 1;
  std::vector<int> cols;
  for (size_t k = 0; k < t.edges.size(); ++k)
    if (in[t.edges[k].first] && in[t.edges[k].second]) cols.push_back(static_cast<int>(k));
  std::vector<double> coef(cols.size(), 1.0);
  int type = 1;
  char rowtype = 'L';
  double rhs = static_cast<double>(comp.size()) - 1;
  int64_t start[2] = {0, static_cast<int64_t>(cols.size())};
  if (ZRVSaddcuts64(prob, 1, &type, &rowtype, &rhs, start, cols.data(), coef.data()) == 0)
    ++t.cuts_added;
}

TEST_F(SearchTest, LazySubtourCutsFromOptnodeSolveATravellingSalesman) {
  const int n = 10;
  Lcg r(17);
  std::vector<double> px(n), py(n);
  for (int i = 0; i < n; ++i) px[i] = r.next(0, 100), py[i] = r.next(0, 100);
  auto dist = [&](int i, int j) { return std::hypot(px[i] - px[j], py[i] - py[j]); };
  Tour t{n, {}};
  std::vector<double> cost;
  for (int i = 0; i < n; ++i)
    for (int j = i + 1; j < n; ++j) t.edges.emplace_back(i, j), cost.push_back(dist(i, j));
  const int m = static_cast<int>(cost.size());
  add_cols(cost, std::vector<double>(m, 0), std::vector<double>(m, 1));
  set_types(0, std::string(m, 'B'));
  for (int v = 0; v < n; ++v) {
    std::vector<int> cols;
    for (int k = 0; k < m; ++k)
      if (t.edges[k].first == v || t.edges[k].second == v) cols.push_back(k);
    add_sparse_row(cols, std::vector<double>(cols.size(), 1.0), 'E', 2.0);
  }
  tight_gaps();
  ASSERT_EQ(ZRVSaddcboptnode(prob, cut_subtours, &t, 0), 0) << last_error();
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_GT(t.cuts_added, 0);
  EXPECT_GE(t.optnode_calls, t.cuts_added);
  // Held-Karp: the shortest tour from city 0 through every city.
  const int full = 1 << n;
  std::vector<double> best(static_cast<size_t>(full) * n, 1e30);
  best[1 * n + 0] = 0;
  for (int s = 1; s < full; s += 2)
    for (int v = 0; v < n; ++v) {
      const double here = best[static_cast<size_t>(s) * n + v];
      if (here >= 1e30) continue;
      for (int w = 1; w < n; ++w)
        if (!(s >> w & 1)) {
          double &next = best[static_cast<size_t>(s | 1 << w) * n + w];
          next = std::min(next, here + dist(v, w));
        }
    }
  double tour = 1e30;
  for (int v = 1; v < n; ++v) tour = std::min(tour, best[static_cast<size_t>(full - 1) * n + v] + dist(v, 0));
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), tour, 1e-6);
  std::vector<double> x = mip_x();
  EXPECT_EQ(static_cast<int>(component_of_zero(t, x).size()), n);  // one tour, no subtour
}

}  // namespace
