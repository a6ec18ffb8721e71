// Mixed-integer programs: knapsack and facility location against brute
// force, special ordered sets, indicators, semi-continuous, semi-integer and
// partially integer columns, and the errors of what cannot be reformulated.
#include <algorithm>
#include <cmath>
#include <limits>

#include "model_support.h"

namespace {

TEST_F(ModelTest, KnapsackMatchesEnumeration) {
  const std::vector<double> value = {10, 13, 7, 8, 11, 4, 9, 6}, weight = {5, 7, 3, 4, 6, 2, 5, 3};
  const double capacity = 17;
  int n = static_cast<int>(value.size());
  add_cols(value, std::vector<double>(n, 0), std::vector<double>(n, 1));
  set_types(0, std::string(n, 'B'));
  add_row(weight, 'L', capacity);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  double best = 0;
  for (int mask = 0; mask < (1 << n); ++mask) {
    double v = 0, w = 0;
    for (int j = 0; j < n; ++j)
      if (mask >> j & 1) v += value[j], w += weight[j];
    if (w <= capacity) best = std::max(best, v);
  }
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), best, 1e-9);
  EXPECT_NEAR(dbl_attrib(ZRVS_BESTBOUND), best, 1e-6);
  EXPECT_LE(dbl_attrib(ZRVS_MIPGAP), 1e-4);
  std::vector<double> x = mip_x(), slack(1);
  ASSERT_EQ(ZRVSgetmipsol(prob, nullptr, slack.data()), 0);
  double used = 0;
  for (int j = 0; j < n; ++j) {
    EXPECT_NEAR(x[j], std::round(x[j]), 1e-9);
    used += weight[j] * x[j];
  }
  EXPECT_NEAR(slack[0], capacity - used, 1e-9);
  // A MIP has no LP solution to read; its relaxation does.
  expect_failure(ZRVSgetlpsol(prob, x.data(), nullptr, nullptr, nullptr), "no LP solution");
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0);
  EXPECT_GE(dbl_attrib(ZRVS_LPOBJVAL), best - 1e-9);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
}

// Uncapacitated facility location: open facilities (fixed cost) and assign
// every customer to an open one. Brute force: for each set of open
// facilities each customer takes its cheapest open one.
TEST_F(ModelTest, FacilityLocationMatchesEnumeration) {
  const std::vector<double> fixed = {12, 9, 14};
  const double assign[4][3] = {{2, 6, 9}, {7, 3, 4}, {8, 5, 2}, {4, 9, 3}};
  int nf = 3, nc = 4;
  // Columns: open[f], then x[c][f].
  std::vector<double> obj(fixed);
  for (auto &row : assign)
    for (double v : row) obj.push_back(v);
  int ncols = nf + nf * nc;
  add_cols(obj, std::vector<double>(ncols, 0), std::vector<double>(ncols, 1));
  set_types(0, std::string(nf, 'B'));
  for (int c = 0; c < nc; ++c) {
    std::vector<double> r(ncols, 0);
    for (int f = 0; f < nf; ++f) r[nf + c * nf + f] = 1;
    add_row(r, 'E', 1);
    for (int f = 0; f < nf; ++f) {
      std::vector<double> link(ncols, 0);
      link[nf + c * nf + f] = 1, link[f] = -1;
      add_row(link, 'L', 0);
    }
  }
  double best = std::numeric_limits<double>::infinity();
  for (int mask = 1; mask < (1 << nf); ++mask) {
    double cost = 0;
    for (int f = 0; f < nf; ++f)
      if (mask >> f & 1) cost += fixed[f];
    for (int c = 0; c < nc; ++c) {
      double cheapest = std::numeric_limits<double>::infinity();
      for (int f = 0; f < nf; ++f)
        if (mask >> f & 1) cheapest = std::min(cheapest, assign[c][f]);
      cost += cheapest;
    }
    best = std::min(best, cost);
  }
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), best, 1e-9);
}

// Three columns in [0, 1]: maximise x + 2y + 3z + w (w in [0, 1] too).
class SetModel : public ModelTest {
 protected:
  void build(char type, double ub = 1) {
    add_cols({1, 2, 3, 1}, {0, 0, 0, 0}, {ub, ub, ub, ub});
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
    int64_t start = 0;
    int cols[4] = {0, 1, 2, 3};
    double ref[4] = {1, 2, 3, 4};
    ASSERT_EQ(ZRVSaddsets64(prob, 1, 4, &type, &start, cols, ref), 0) << last_error();
  }
};

TEST_F(SetModel, Sos1AllowsOneNonZero) {
  build('1');
  EXPECT_EQ(int_attrib(ZRVS_SETS), 1);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 3.0, 1e-9);
  std::vector<double> x = mip_x();
  EXPECT_EQ(std::count_if(x.begin(), x.end(), [](double v) { return std::fabs(v) > 1e-9; }), 1);
}

TEST_F(SetModel, Sos2AllowsTwoAdjacentNonZeros) {
  build('2');
  optimize();
  // Best adjacent pair: y and z (2 + 3).
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 5.0, 1e-9);
  std::vector<double> x = mip_x();
  EXPECT_NEAR(x[0], 0.0, 1e-9);
  EXPECT_NEAR(x[3], 0.0, 1e-9);
  // Without the set, every column is at its bound.
  int set = 0;
  ASSERT_EQ(ZRVSdelsets(prob, 1, &set), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 7.0, 1e-9);
}

TEST_F(SetModel, InfiniteBoundOfSetMemberIsNamed) {
  build('1', 1e20);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr), "column 0 needs a finite upper bound");
  EXPECT_NE(last_error().find("set 0"), std::string::npos) << last_error();
}

// min 3 b + x with x >= 5 enforced only when b = 0 (x in [0, 10]).
class IndicatorModel : public ModelTest {
 protected:
  void build(double bcost, int flag, double xub = 10) {
    add_cols({bcost, 1}, {0, 0}, {1, xub});
    set_types(0, "B");
    int row = add_row({0, 1}, 'G', 5), col = 0;
    ASSERT_EQ(ZRVSsetindicators(prob, 1, &row, &col, &flag), 0) << last_error();
  }
};

TEST_F(IndicatorModel, RowHoldsOnlyWhenIndicatorSaysSo) {
  build(3, -1);
  EXPECT_EQ(int_attrib(ZRVS_INDICATORS), 1);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 3.0, 1e-9);  // b = 1 switches the row off
  double c = 6;
  int col = 0;
  ASSERT_EQ(ZRVSchgobj(prob, 1, &col, &c), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 5.0, 1e-9);  // cheaper to keep x >= 5
  std::vector<double> x = mip_x();
  EXPECT_NEAR(x[0], 0.0, 1e-9);
  EXPECT_NEAR(x[1], 5.0, 1e-9);
}

TEST_F(IndicatorModel, ComplementOneAndEqualityRows) {
  build(-10, 1);  // row enforced when b = 1; b is worth taking
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), -5.0, 1e-9);  // b = 1, x = 5
  // An equality indicator row x + 0 = 7 when b = 1: both sides relaxed.
  int row = add_row({0, 1}, 'E', 7), col = 0, flag = 1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &row, &col, &flag), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), -3.0, 1e-9);  // b = 1, x = 7
  int cols[2];
  int comps[2];
  ASSERT_EQ(ZRVSgetindicators(prob, cols, comps, 0, 1), 0);
  EXPECT_EQ(cols[1], 0);
  EXPECT_EQ(comps[1], 1);
  // Removing the indicators leaves ordinary rows: x = 7 and x >= 5.
  int rows[2] = {0, 1}, zeros[2] = {0, 0};
  ASSERT_EQ(ZRVSsetindicators(prob, 2, rows, cols, zeros), 0);
  EXPECT_EQ(int_attrib(ZRVS_INDICATORS), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), -3.0, 1e-9);
}

TEST_F(IndicatorModel, InfiniteActivityIsNamed) {
  // x <= 5 relaxed needs x's upper bound, which is infinite.
  add_cols({1, -1}, {0, 0}, {1, 1e20});
  set_types(0, "B");
  int row = add_row({0, 1}, 'L', 5), col = 0, flag = 1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &row, &col, &flag), 0);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr),
                 "column 1 needs a finite upper bound for the indicator constraint of row 0");
  int cont = 1;
  expect_failure(ZRVSsetindicators(prob, 1, &row, &cont, &flag), "not a binary column");
}

// min x + 5 y with x + y >= need; x has threshold 3 and bounds [0, 10].
class ThresholdModel : public ModelTest {
 protected:
  void build(char type, double need) {
    add_cols({1, 5}, {0, 0}, {10, 1e20});
    set_types(0, std::string(1, type));
    int col = 0;
    double limit = 3;
    ASSERT_EQ(ZRVSchgglblimit(prob, 1, &col, &limit), 0) << last_error();
    add_row({1, 1}, 'G', need);
  }
};

TEST_F(ThresholdModel, SemiContinuous) {
  build('S', 2);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 3.0, 1e-9);  // x = 3 rather than 2
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 2.0, 1e-9);  // the relaxation allows 2
}

TEST_F(ThresholdModel, SemiInteger) {
  build('R', 3.5);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 4.0, 1e-9);  // x = 4
}

TEST_F(ThresholdModel, PartiallyInteger) {
  build('P', 2.5);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 3.0, 1e-9);  // integer below 3
  EXPECT_EQ(int_attrib(ZRVS_COLS), 2);  // the reformulation stays inside the solve
  double rhs = 6.5;
  int row = 0;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &row), 0);
  add_row({1, 1}, 'G', rhs);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 6.5, 1e-9);  // continuous above 3
}

TEST_F(ThresholdModel, SemiContinuousNeedsFiniteUpperBound) {
  build('S', 2);
  int col = 0;
  char type = 'U';
  double inf = 1e20;
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &inf), 0);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr), "column 0");
}

TEST_F(ModelTest, InfeasibleMip) {
  add_cols({1}, {0}, {10});
  set_types(0, "I");
  add_row({2}, 'E', 3);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_INFEAS);
  double x;
  expect_failure(ZRVSgetmipsol(prob, &x, nullptr), "no integer solution");
}

}  // namespace
