// Ranging and basis solves on a hand-worked LP.
#include <cmath>
#include <vector>

#include "model_support.h"

namespace {

constexpr double kInf = ZRVS_PLUSINFINITY;

class SensitivityTest : public ModelTest {
 protected:
  // min -x - y  s.t.  x + 2y <= 4,  3x + y <= 6,  x, y >= 0: optimum (1.6, 1.2).
  void small_lp() {
    add_cols({-1, -1}, {0, 0}, {kInf, kInf});
    add_row({1, 2}, 'L', 4);
    add_row({3, 1}, 'L', 6);
  }
};

TEST_F(SensitivityTest, CostAndRightHandSideRangesMatchTheHandWorkedValues) {
  small_lp();
  optimize();
  int cols[2] = {0, 1};
  double lo[2], up[2];
  ASSERT_EQ(ZRVSobjsa(prob, 2, cols, lo, up), 0) << last_error();
  // The vertex stays optimal while -c lies in the cone of (1, 2) and (3, 1).
  EXPECT_NEAR(lo[0], -3, 1e-9);
  EXPECT_NEAR(up[0], -0.5, 1e-9);
  EXPECT_NEAR(lo[1], -2, 1e-9);
  EXPECT_NEAR(up[1], -1.0 / 3, 1e-9);
  ASSERT_EQ(ZRVSrhssa(prob, 2, cols, lo, up), 0) << last_error();
  // Both rows tight: x = (12 - b0) / 5 and y = (3 b0 - 6) / 5 stay >= 0.
  EXPECT_NEAR(lo[0], 2, 1e-9);
  EXPECT_NEAR(up[0], 12, 1e-9);
  EXPECT_NEAR(lo[1], 2, 1e-9);
  EXPECT_NEAR(up[1], 12, 1e-9);
  double lbl[2], lbu[2], ubl[2], ubu[2];
  ASSERT_EQ(ZRVSbndsa(prob, 2, cols, lbl, lbu, ubl, ubu), 0) << last_error();
  // Both columns basic: their bounds may move up to their values.
  EXPECT_NEAR(lbu[0], 1.6, 1e-9);
  EXPECT_NEAR(ubl[1], 1.2, 1e-9);
  EXPECT_EQ(ubu[0], kInf);
  int bad = 5;
  expect_failure(ZRVSobjsa(prob, 1, &bad, lo, up), "colind[0] = 5");
}

TEST_F(SensitivityTest, BasisSolvesInvertTheBasisMatrix) {
  small_lp();
  add_row({1, 0}, 'L', 10);  // loose: its row is basic
  optimize();
  const int rows = 3;
  std::vector<int> order(rows);
  ASSERT_EQ(ZRVSgetpivotorder(prob, order.data()), 0) << last_error();
  const double a[3][2] = {{1, 2}, {3, 1}, {1, 0}};
  // B by the pivot order: matrix columns and unit columns.
  double b[3][3] = {};
  for (int k = 0; k < rows; ++k)
    for (int i = 0; i < rows; ++i)
      b[i][k] = order[k] < rows ? (i == order[k] ? 1.0 : 0.0) : a[i][order[k] - rows];
  const std::vector<double> v = {1, -2, 0.5};
  std::vector<double> f(v), t(v);
  ASSERT_EQ(ZRVSftran(prob, f.data()), 0) << last_error();
  ASSERT_EQ(ZRVSbtran(prob, t.data()), 0) << last_error();
  for (int i = 0; i < rows; ++i) {
    double bf = 0, btt = 0;
    for (int k = 0; k < rows; ++k) bf += b[i][k] * f[k], btt += b[k][i] * t[k];
    EXPECT_NEAR(bf, v[i], 1e-9);
    EXPECT_NEAR(btt, v[i], 1e-9);
  }
  double cond = 0;
  ASSERT_EQ(ZRVSbasisstability(prob, 0, 1, 0, &cond), 0) << last_error();
  EXPECT_GE(cond, 1.0);
  expect_failure(ZRVSbasisstability(prob, 0, 2, 0, &cond), "only the condition estimate");
}

TEST_F(SensitivityTest, AnalysisNeedsAnOptimalLpOfTheModelAsItIs) {
  small_lp();
  int col = 0;
  double lo, up;
  expect_failure(ZRVSobjsa(prob, 1, &col, &lo, &up), "solved as an LP first");
  add_row({1, 1}, 'G', 100);  // infeasible
  optimize();
  expect_failure(ZRVSobjsa(prob, 1, &col, &lo, &up), "optimal");
  double v[3] = {1, 1, 1};
  expect_failure(ZRVSftran(prob, v), "optimal");
}

}  // namespace
