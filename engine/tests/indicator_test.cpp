// Indicator constraints of every row type and both flag values against
// enumeration of all integer points of small seeded models.
#include <cmath>
#include <limits>
#include <random>

#include "model_support.h"

namespace {

struct IndicatorRow {
  std::vector<double> coef;  // over all columns
  char type;
  double lo, up;  // the row's sides; -inf / +inf when absent
  int col, flag;  // indicator column and flag (1: holds at 1, -1: holds at 0)
};

// Integer columns x0..x2 in small boxes, binaries b0, b1; every row is an
// indicator row switched by one of the binaries.
struct RandomIndicatorMip {
  std::vector<double> cost, lb, ub;
  std::vector<IndicatorRow> rows;
};

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kInts = 3, kBins = 2;

RandomIndicatorMip make_instance(std::mt19937 &rng, int case_index) {
  auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  RandomIndicatorMip mip;
  for (int j = 0; j < kInts; ++j) {
    mip.lb.push_back(pick(-3, 1));
    mip.ub.push_back(mip.lb.back() + pick(0, 5));
    mip.cost.push_back(pick(-4, 4));
  }
  for (int j = 0; j < kBins; ++j) mip.lb.push_back(0), mip.ub.push_back(1), mip.cost.push_back(pick(-3, 3));
  const char types[] = {'E', 'R', 'L', 'G'};
  for (int r = 0; r < 3; ++r) {
    IndicatorRow row;
    for (int j = 0; j < kInts; ++j) row.coef.push_back(pick(-3, 3));
    for (int j = 0; j < kBins; ++j) row.coef.push_back(pick(0, 3) == 0 ? pick(-2, 2) : 0);
    row.type = types[(case_index + r) % 4];
    double a = pick(-14, 14), width = pick(0, 6);
    row.lo = row.type == 'L' ? -kInf : a;
    row.up = row.type == 'G' ? kInf : row.type == 'R' ? a + width : a;
    row.col = kInts + pick(0, kBins - 1);
    row.flag = pick(0, 1) ? 1 : -1;
    mip.rows.push_back(row);
  }
  return mip;
}

// The best objective over all integer points, or +inf when none is feasible.
double enumerate(const RandomIndicatorMip &mip) {
  const int n = static_cast<int>(mip.cost.size());
  std::vector<double> x(mip.lb);
  double best = kInf;
  for (;;) {
    bool ok = true;
    for (const IndicatorRow &row : mip.rows) {
      if ((x[row.col] == 1.0) != (row.flag == 1)) continue;  // switched off
      double act = 0;
      for (int j = 0; j < n; ++j) act += row.coef[j] * x[j];
      ok = ok && act >= row.lo && act <= row.up;
    }
    if (ok) {
      double v = 0;
      for (int j = 0; j < n; ++j) v += mip.cost[j] * x[j];
      best = std::min(best, v);
    }
    int j = 0;
    while (j < n && x[j] == mip.ub[j]) x[j] = mip.lb[j], ++j;
    if (j == n) return best;
    x[j] += 1;
  }
}

class IndicatorEnumeration : public ModelTest {
 protected:
  void load(const RandomIndicatorMip &mip) {
    add_cols(mip.cost, mip.lb, mip.ub);
    set_types(0, std::string(kInts, 'I') + std::string(kBins, 'B'));
    for (const IndicatorRow &row : mip.rows) {
      double rhs = row.type == 'G' ? row.lo : row.up;
      int r = add_row(row.coef, row.type, rhs, row.type == 'R' ? row.up - row.lo : 0.0);
      ASSERT_EQ(ZRVSsetindicators(prob, 1, &r, &row.col, &row.flag), 0) << last_error();
    }
  }
};

TEST_F(IndicatorEnumeration, EveryRowTypeAndFlagMatchesEnumeration) {
  std::mt19937 rng(20261124);
  int feasible = 0, infeasible = 0;
  for (int c = 0; c < 120; ++c) {
    SCOPED_TRACE("case " + std::to_string(c));
    RandomIndicatorMip mip = make_instance(rng, c);
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    load(mip);
    double best = enumerate(mip);
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    if (std::isinf(best)) {
      ++infeasible;
      EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
    } else {
      ++feasible;
      ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
      EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), best, 1e-6);
    }
  }
  // The seed gives both outcomes often enough to matter.
  EXPECT_GT(feasible, 40);
  EXPECT_GT(infeasible, 5);
}

// x in [3, 5], minimise x with x = -8 enforced when b = 0: b = 1 switches the
// row off, so x = 3; the two sides of an equality must both be relaxed.
TEST_F(IndicatorEnumeration, EqualityOutsideTheBoundsIsSwitchedOff) {
  for (int flag : {-1, 1}) {
    SCOPED_TRACE("flag " + std::to_string(flag));
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    add_cols({1, 0}, {3, 0}, {5, 1});
    set_types(1, "B");
    int row = add_row({1, 0}, 'E', -8), col = 1;
    ASSERT_EQ(ZRVSsetindicators(prob, 1, &row, &col, &flag), 0);
    // Two such rows, switched by the same binary, must stay feasible.
    int row2 = add_row({1, 0}, 'R', 40, 10);
    ASSERT_EQ(ZRVSsetindicators(prob, 1, &row2, &col, &flag), 0);
    int sol = -1;
    optimize(&sol);
    ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
    std::vector<double> x = mip_x();
    EXPECT_NEAR(x[0], 3.0, 1e-9);
    EXPECT_NEAR(x[1], flag == -1 ? 1.0 : 0.0, 1e-9);
  }
}

}  // namespace
