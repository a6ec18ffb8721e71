// Linear programs: classic models with known optima, duals and reduced costs
// checked against the change of the optimum, statuses of infeasible and
// unbounded problems, algorithms.
#include <cmath>

#include "model_support.h"

namespace {

// Diet: two foods, two nutrient minimums, solved by hand:
// min 2 b + 3 m s.t. b + 2 m >= 8,
// 3 b + m >= 9, b, m >= 0. Vertices: (0, 9): 27; (2, 3): 13; (8, 0): 16.
// Optimum at b = 2, m = 3 with cost 13; duals y solve
// [1 3; 2 1] y = [2; 3]: y1 = 1.4, y2 = 0.2.
class DietLp : public ModelTest {
 protected:
  void build() {
    add_cols({2, 3}, {0, 0}, {1e20, 1e20});
    add_row({1, 2}, 'G', 8);
    add_row({3, 1}, 'G', 9);
  }
};

TEST_F(DietLp, OptimumDualsAndReducedCosts) {
  build();
  int solstatus = -1;
  EXPECT_EQ(optimize(&solstatus), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(solstatus, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 13.0, 1e-9);
  double x[2], slack[2], duals[2], djs[2];
  ASSERT_EQ(ZRVSgetlpsol(prob, x, slack, duals, djs), 0) << last_error();
  EXPECT_NEAR(x[0], 2.0, 1e-9);
  EXPECT_NEAR(x[1], 3.0, 1e-9);
  EXPECT_NEAR(slack[0], 0.0, 1e-9);
  EXPECT_NEAR(slack[1], 0.0, 1e-9);
  EXPECT_NEAR(duals[0], 1.4, 1e-9);
  EXPECT_NEAR(duals[1], 0.2, 1e-9);
  EXPECT_NEAR(djs[0], 0.0, 1e-9);
  EXPECT_NEAR(djs[1], 0.0, 1e-9);
  EXPECT_GE(int64_attrib(ZRVS_SIMPLEXITER), 1);
}

// Dual of a row = change of the optimum per unit increase of its rhs, for
// both senses; checked by re-solving with a shifted rhs.
TEST_F(DietLp, DualsMatchRhsPerturbationInBothSenses) {
  build();
  for (int sense : {ZRVS_OBJ_MINIMIZE, ZRVS_OBJ_MAXIMIZE}) {
    // Bound the problem so that maximising is finite too.
    if (sense == ZRVS_OBJ_MAXIMIZE) add_row({1, 1}, 'L', 10);
    ASSERT_EQ(ZRVSchgobjsense(prob, sense), 0);
    optimize();
    double base = dbl_attrib(ZRVS_LPOBJVAL);
    int rows = int_attrib(ZRVS_ROWS);
    std::vector<double> duals(rows), djs(2);
    ASSERT_EQ(ZRVSgetlpsol(prob, nullptr, nullptr, duals.data(), djs.data()), 0);
    for (int i = 0; i < rows; ++i) {
      double rhs = 0;
      ASSERT_EQ(ZRVSgetrhs(prob, &rhs, i, i), 0);
      // Shift the row: delete and re-add it with rhs + 0.01.
      int64_t start[2], n = 0;
      int ind[2];
      double val[2];
      char type;
      ASSERT_EQ(ZRVSgetrows64(prob, start, ind, val, 2, &n, i, i), 0);
      ASSERT_EQ(ZRVSgetrowtype(prob, &type, i, i), 0);
      double shifted = rhs + 0.01;
      ZRVSprob copy = nullptr;
      ASSERT_EQ(ZRVScreateprob(&copy), 0);
      ASSERT_EQ(ZRVScopyprob(copy, prob, ""), 0);
      ASSERT_EQ(ZRVSdelrows(copy, 1, &i), 0);
      int64_t zero = 0;
      ASSERT_EQ(ZRVSaddrows64(copy, 1, n, &type, &shifted, nullptr, &zero, ind, val), 0);
      int solve = -1;
      ASSERT_EQ(ZRVSoptimize(copy, "", &solve, nullptr), 0);
      double moved = 0;
      ASSERT_EQ(ZRVSgetdblattrib(copy, ZRVS_LPOBJVAL, &moved), 0);
      EXPECT_NEAR((moved - base) / 0.01, duals[i], 1e-6) << "row " << i << " sense " << sense;
      ZRVSdestroyprob(copy);
    }
  }
}

// Transportation: 2 plants (supply 30, 40), 3 markets (demand 20, 25, 25),
// costs [[8, 6, 10], [9, 12, 7]]. By hand: plant 1 serves market 2 (25 at
// 6) and 5 of market 1 (at 8), plant 2 serves market 3 (25 at 7) and 15 of
// market 1 (at 9): 150 + 40 + 175 + 135 = 500; optimality is confirmed by
// the reduced costs (all non-negative).
TEST_F(ModelTest, TransportationOptimumWithNonNegativeReducedCosts) {
  const double cost[2][3] = {{8, 6, 10}, {9, 12, 7}};
  const double supply[2] = {30, 40}, demand[3] = {20, 25, 25};
  std::vector<double> obj;
  for (auto &row : cost)
    for (double c : row) obj.push_back(c);
  add_cols(obj, std::vector<double>(6, 0), std::vector<double>(6, 1e20));
  for (int i = 0; i < 2; ++i) {
    std::vector<double> r(6, 0);
    for (int j = 0; j < 3; ++j) r[3 * i + j] = 1;
    add_row(r, 'L', supply[i]);
  }
  for (int j = 0; j < 3; ++j) {
    std::vector<double> r(6, 0);
    for (int i = 0; i < 2; ++i) r[3 * i + j] = 1;
    add_row(r, 'E', demand[j]);
  }
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
  // x11 = 5, x12 = 25, x21 = 15, x23 = 25: 40 + 150 + 135 + 175 = 500.
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 500.0, 1e-7);
  std::vector<double> x(6), djs(6), duals(5);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, duals.data(), djs.data()), 0);
  for (int k = 0; k < 6; ++k) {
    EXPECT_GE(djs[k], -1e-9);
    // Complementary slackness: a used route has reduced cost 0, and its
    // cost equals the sum of the duals of its rows.
    if (x[k] > 1e-9) {
      EXPECT_NEAR(djs[k], 0.0, 1e-9);
      EXPECT_NEAR(obj[k], duals[k / 3] + duals[2 + k % 3], 1e-9);
    }
  }
}

TEST_F(ModelTest, InfeasibleLp) {
  add_cols({1, 1}, {0, 0}, {10, 10});
  add_row({1, 1}, 'G', 30);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_INFEAS);
}

// Without columns every row's activity is 0: a row whose sides exclude 0 is
// infeasible (HiGHS calls such a model empty and optimal), one that admits 0
// is not; deleting the last column keeps its rows.
TEST_F(ModelTest, RowsWithoutColumns) {
  add_row({}, 'L', 5);
  add_row({}, 'R', 1, 3);  // -2 <= 0 <= 1
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  // The one point there is: slacks are the right-hand sides, prices 0.
  double slack[2] = {-1, -1}, duals[2] = {-1, -1};
  ASSERT_EQ(ZRVSgetlpsol(prob, nullptr, slack, duals, nullptr), 0) << last_error();
  EXPECT_EQ(slack[0], 5.0);
  EXPECT_EQ(slack[1], 1.0);
  EXPECT_EQ(duals[0], 0.0);
  add_row({}, 'G', 5);
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_INFEAS);
  int last = 2;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &last), 0);
  add_cols({1}, {0}, {3});
  add_row({1}, 'E', 4);  // x = 4 > 3: infeasible with the column and without it
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  int col = 0;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &col), 0);
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
}

TEST_F(ModelTest, UnboundedLp) {
  add_cols({-1, -1}, {0, 0}, {1e20, 1e20});
  add_row({1, -1}, 'L', 4);
  for (int presolve : {1, 0}) {
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, presolve), 0);
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED);
    EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNBOUNDED);
  }
}

// Range rows, free rows, objective constant and the maximisation sense.
TEST_F(ModelTest, RangeRowConstantAndMaximise) {
  add_cols({1, 2}, {0, 0}, {1e20, 1e20});
  add_row({1, 1}, 'R', 10, 4);  // 6 <= x + y <= 10
  add_row({1, -1}, 'N', 0);
  int minus1 = -1;
  double constant = 5;
  ASSERT_EQ(ZRVSchgobj(prob, 1, &minus1, &constant), 0);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 25.0, 1e-9);  // y = 10
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MINIMIZE), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 11.0, 1e-9);  // x = 6
  double slack[2];
  ASSERT_EQ(ZRVSgetlpsol(prob, nullptr, slack, nullptr, nullptr), 0);
  EXPECT_NEAR(slack[0], 4.0, 1e-9);   // rhs 10 - activity 6
  EXPECT_NEAR(slack[1], -6.0, 1e-9);  // free row: 0 - (6 - 0)
}

// Every algorithm reaches the same optimum; barrier counts barrier
// iterations, simplex simplex iterations.
TEST_F(DietLp, AlgorithmsByFlagAndControl) {
  build();
  for (const char *flags : {"d", "p", "b"}) {
    optimize(nullptr, flags);
    EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 13.0, 1e-7) << flags;
    if (flags[0] == 'b') {
      EXPECT_GE(int_attrib(ZRVS_BARITER), 1);
    }
  }
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_DEFAULTALG, 4), 0);
  optimize();
  EXPECT_GE(int_attrib(ZRVS_BARITER), 1);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_DEFAULTALG, 2), 0);
  optimize();
  EXPECT_EQ(int_attrib(ZRVS_BARITER), 0);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "x", &solve, nullptr), "flag 'x'");
}

TEST_F(DietLp, SolutionGoneAfterChange) {
  build();
  optimize();
  double lb = 1;
  int col = 0;
  char type = 'L';
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &lb), 0);
  double x[2];
  expect_failure(ZRVSgetlpsol(prob, x, nullptr, nullptr, nullptr), "no LP solution");
  EXPECT_EQ(int_attrib(ZRVS_SOLVESTATUS), ZRVS_SOLVESTATUS_UNSTARTED);
}

}  // namespace
