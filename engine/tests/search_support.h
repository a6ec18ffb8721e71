// Small MIP families for the tests of the engine's branch-and-cut: each
// builds its model into a problem through the C interface, from a seed.
#pragma once
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "model_support.h"

// A portable pseudo-random sequence (the same numbers on every platform).
class Lcg {
 public:
  explicit Lcg(uint64_t seed) : s_(seed * 6364136223846793005ULL + 1442695040888963407ULL) {}
  // An integer in [lo, hi].
  int next(int lo, int hi) {
    s_ = s_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return lo + static_cast<int>((s_ >> 33) % static_cast<uint64_t>(hi - lo + 1));
  }

 private:
  uint64_t s_;
};

class SearchTest : public ModelTest {
 protected:
  // Sparse row over given columns.
  void add_sparse_row(const std::vector<int> &cols, const std::vector<double> &coef, char type,
                      double rhs) {
    int64_t start = 0;
    double rng = 0.0;
    ASSERT_EQ(ZRVSaddrows64(prob, 1, static_cast<int64_t>(cols.size()), &type, &rhs, &rng,
                            &start, cols.data(), coef.data()),
              0)
        << last_error();
  }
  // Knapsack: maximise value within a capacity.
  void knapsack(int n, uint64_t seed) {
    Lcg r(seed);
    std::vector<double> value(n), weight(n);
    double total = 0;
    for (int j = 0; j < n; ++j) weight[j] = r.next(10, 60), value[j] = weight[j] + r.next(0, 15), total += weight[j];
    add_cols(value, std::vector<double>(n, 0), std::vector<double>(n, 1));
    set_types(0, std::string(n, 'B'));
    add_row(weight, 'L', std::floor(total / 2));
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  }
  // Set cover: every element in at least one chosen set, at least cost.
  void set_cover(int elements, int sets, uint64_t seed) {
    Lcg r(seed);
    std::vector<double> cost(sets);
    for (double &c : cost) c = r.next(1, 9);
    add_cols(cost, std::vector<double>(sets, 0), std::vector<double>(sets, 1));
    set_types(0, std::string(sets, 'B'));
    for (int e = 0; e < elements; ++e) {
      std::vector<int> cols;
      for (int s = 0; s < sets; ++s)
        if (r.next(0, 99) < 20 || s == (e * 7) % sets) cols.push_back(s);
      add_sparse_row(cols, std::vector<double>(cols.size(), 1.0), 'G', 1.0);
    }
  }
  // Capacitated facility location: open[f] (binary), then x[c][f] shares.
  // weak: aggregated linking rows (sum_c x[c][f] <= nc * open[f]).
  void facility(int nf, int nc, uint64_t seed, bool weak) {
    Lcg r(seed);
    std::vector<double> obj, lb, ub;
    for (int f = 0; f < nf; ++f) obj.push_back(r.next(30, 60)), lb.push_back(0), ub.push_back(1);
    for (int c = 0; c < nc; ++c)
      for (int f = 0; f < nf; ++f) obj.push_back(r.next(1, 20)), lb.push_back(0), ub.push_back(1);
    add_cols(obj, lb, ub);
    set_types(0, std::string(nf, 'B'));
    auto x = [&](int c, int f) { return nf + c * nf + f; };
    for (int c = 0; c < nc; ++c) {
      std::vector<int> cols;
      for (int f = 0; f < nf; ++f) cols.push_back(x(c, f));
      add_sparse_row(cols, std::vector<double>(nf, 1.0), 'E', 1.0);
    }
    for (int f = 0; f < nf; ++f) {
      std::vector<int> cols = {f};
      std::vector<double> coef = {-static_cast<double>(weak ? nc : (nc + 1) / 2)};
      for (int c = 0; c < nc; ++c) cols.push_back(x(c, f)), coef.push_back(1.0);
      add_sparse_row(cols, coef, 'L', 0.0);
    }
  }
  // Lot sizing: setup y[t] (binary), production p[t], stock s[t] over T
  // periods; p[t] <= M y[t], s[t-1] + p[t] - s[t] = demand[t].
  void lot_sizing(int periods, uint64_t seed) {
    Lcg r(seed);
    std::vector<double> obj, lb, ub;
    double total = 0;
    std::vector<double> demand(periods);
    for (double &d : demand) d = r.next(5, 30), total += d;
    for (int t = 0; t < periods; ++t) obj.push_back(r.next(40, 90)), lb.push_back(0), ub.push_back(1);
    for (int t = 0; t < periods; ++t) obj.push_back(r.next(1, 4)), lb.push_back(0), ub.push_back(total);
    for (int t = 0; t < periods; ++t) obj.push_back(1), lb.push_back(0), ub.push_back(total);
    add_cols(obj, lb, ub);
    set_types(0, std::string(periods, 'B'));
    for (int t = 0; t < periods; ++t) {
      add_sparse_row({periods + t, t}, {1.0, -total}, 'L', 0.0);
      std::vector<int> cols = {periods + t, 2 * periods + t};
      std::vector<double> coef = {1.0, -1.0};
      if (t > 0) cols.push_back(2 * periods + t - 1), coef.push_back(1.0);
      add_sparse_row(cols, coef, 'E', demand[t]);
    }
  }
  void tight_gaps() {
    ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPRELSTOP, 1e-9), 0);
    ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSSTOP, 1e-9), 0);
  }
  // Solves with HiGHS's MIP solver (0) or the engine's search (1); the
  // optimum, or NaN when not optimal.
  double solve_with(int search) {
    EXPECT_EQ(ZRVSsetintcontrol(prob, ZRVS_MIPSEARCH, search), 0);
    optimize();
    if (int_attrib(ZRVS_MIPSTATUS) != ZRVS_MIP_OPTIMAL) return std::nan("");
    return dbl_attrib(ZRVS_MIPOBJVAL);
  }
  // Every row holds at the MIP solution (slacks by row type).
  void expect_rows_hold() {
    int rows = int_attrib(ZRVS_ROWS);
    std::vector<double> slack(rows);
    std::vector<char> type(rows);
    ASSERT_EQ(ZRVSgetmipsol(prob, nullptr, slack.data()), 0) << last_error();
    if (rows == 0) return;
    ASSERT_EQ(ZRVSgetrowtype(prob, type.data(), 0, rows - 1), 0);
    for (int i = 0; i < rows; ++i) {
      const double lo = type[i] == 'L' ? -1e-6 : -1e30, up = type[i] == 'G' ? 1e-6 : 1e30;
      const double gap = type[i] == 'E' ? std::fabs(slack[i]) : 0.0;
      EXPECT_GE(slack[i], lo) << "row " << i;
      EXPECT_LE(slack[i], up) << "row " << i;
      EXPECT_LE(gap, 1e-6) << "row " << i;
    }
  }
};
