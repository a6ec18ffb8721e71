// Convex QP solved by HiGHS; mixed-integer quadratic models are refused with
// a text that says so.
#include <cmath>

#include "model_support.h"

namespace {

// min x^2 + y^2 - 2x - 4y s.t. x + y <= 2: the projection of (1, 2) onto the
// half-plane, (0.5, 1.5), objective -4.5; the row's dual is -1 (the
// gradient 2x - 2 at the optimum).
class ConvexQp : public ModelTest {
 protected:
  void build() {
    add_cols({-2, -4}, {-1e20, -1e20}, {1e20, 1e20});
    add_row({1, 1}, 'L', 2);
    int c1[2] = {0, 1}, c2[2] = {0, 1};
    double q[2] = {2, 2};
    ASSERT_EQ(ZRVSchgmqobj64(prob, 2, c1, c2, q), 0) << last_error();
  }
};

TEST_F(ConvexQp, OptimumAndDual) {
  build();
  EXPECT_EQ(int_attrib(ZRVS_QELEMS), 2);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -4.5, 1e-6);
  double x[2], duals[1];
  ASSERT_EQ(ZRVSgetlpsol(prob, x, nullptr, duals, nullptr), 0);
  EXPECT_NEAR(x[0], 0.5, 1e-6);
  EXPECT_NEAR(x[1], 1.5, 1e-6);
  EXPECT_NEAR(duals[0], -1.0, 1e-6);
}

// An off-diagonal entry (0, 1, b) is the term b x y, read back in both
// triangles; zero removes it.
TEST_F(ConvexQp, OffDiagonalTermAndReadBack) {
  build();
  int i = 1, j = 0;
  double b = 1;
  ASSERT_EQ(ZRVSchgmqobj64(prob, 1, &i, &j, &b), 0);
  // min x^2 + y^2 + xy - 2x - 4y, unconstrained optimum: 2x + y = 2,
  // x + 2y = 4 -> (0, 2), which meets x + y <= 2; objective 4 - 8 = -4.
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -4.0, 1e-6);
  int64_t start[3], n = 0;
  int ind[4];
  double val[4];
  ASSERT_EQ(ZRVSgetmqobj64(prob, start, ind, val, 4, &n, 0, 1), 0);
  ASSERT_EQ(n, 4);
  EXPECT_EQ(start[1], 2);
  EXPECT_EQ(ind[1], 1);
  EXPECT_DOUBLE_EQ(val[1], 1.0);
  EXPECT_EQ(ind[2], 0);
  EXPECT_DOUBLE_EQ(val[2], 1.0);
  b = 0;
  ASSERT_EQ(ZRVSchgmqobj64(prob, 1, &i, &j, &b), 0);
  ASSERT_EQ(ZRVSgetmqobj64(prob, nullptr, nullptr, nullptr, 0, &n, 0, 1), 0);
  EXPECT_EQ(n, 2);
}

TEST_F(ConvexQp, IntegerQpIsRefused) {
  build();
  set_types(0, "I");
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr),
                 "mixed-integer nonlinear models are not solvable yet");
  // The continuous relaxation is still a convex QP.
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0) << last_error();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -4.5, 1e-6);
}

// With x^2 added to the row, x^2 + x + y <= 2 binds at the optimum of the
// objective (x - 1)^2 + (y - 2)^2 - 5 instead of x + y <= 2.
TEST_F(ConvexQp, QuadraticRowsAddUpAndVanish) {
  build();
  int c = 0;
  double v = 1;
  ASSERT_EQ(ZRVSaddqmatrix64(prob, 0, 1, &c, &c, &v), 0);
  EXPECT_EQ(int_attrib(ZRVS_QCONSTRAINTS), 1);
  int integer = 1;
  ASSERT_EQ(ZRVSchgcoltype(prob, 1, &integer, "I"), 0);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr),
                 "mixed-integer nonlinear models are not solvable yet");
  ASSERT_EQ(ZRVSchgcoltype(prob, 1, &integer, "C"), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
  std::vector<double> x = lp_x();
  EXPECT_NEAR(x[0] * x[0] + x[0] + x[1], 2.0, 1e-6) << "the row binds";
  // Entries add up; a sum of zero removes the entry.
  v = -1;
  ASSERT_EQ(ZRVSaddqmatrix64(prob, 0, 1, &c, &c, &v), 0);
  EXPECT_EQ(int_attrib(ZRVS_QCONSTRAINTS), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
}

}  // namespace
