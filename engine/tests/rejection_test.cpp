// Models the solver cannot take: the error names the column or row and says
// what is wrong with it.
#include "model_support.h"

namespace {

class Rejection : public ModelTest {
 protected:
  // x, y with the given bounds, row "cap": a x + y (type, rhs), objective x + y.
  void build(double ylb, double yub, double a, char type, double rhs) {
    add_cols({1, 1}, {0, ylb}, {10, yub});
    add_row({a, 1}, type, rhs);
    ASSERT_EQ(ZRVSaddnames(prob, 2, "x\0y", 0, 1), 0) << last_error();
    ASSERT_EQ(ZRVSaddnames(prob, 1, "cap", 0, 0), 0) << last_error();
  }
  void expect_refused(const std::string &part) {
    int solve = -1;
    expect_failure(ZRVSoptimize(prob, "", &solve, nullptr), part);
  }
};

TEST_F(Rejection, LowerBoundAtPlusInfinity) {
  build(1e20, 1e20, 1, 'L', 5);
  expect_refused("column 1 (y) has its lower bound at plus infinity");
}

TEST_F(Rejection, UpperBoundAtMinusInfinity) {
  build(-1e30, -1e25, 1, 'L', 5);
  expect_refused("column 1 (y) has its upper bound at minus infinity");
}

TEST_F(Rejection, RowSidesThatNoActivityMeets) {
  build(0, 10, 1, 'L', -1e20);
  expect_refused("row 0 (cap) has its upper side at minus infinity");
}

TEST_F(Rejection, GreaterThanPlusInfinity) {
  build(0, 10, 1, 'G', 1e21);
  expect_refused("row 0 (cap) has its lower side at plus infinity");
}

TEST_F(Rejection, HugeMatrixCoefficient) {
  build(0, 10, 1e300, 'L', 5);
  expect_refused("the coefficient of column 0 (x) in row 0 (cap) is 1e+300");
}

TEST_F(Rejection, HugeQuadraticCoefficient) {
  build(0, 10, 1, 'L', 5);
  int c1 = 1, c2 = 0;
  double v = -1e300;
  ASSERT_EQ(ZRVSchgmqobj64(prob, 1, &c1, &c2, &v), 0);
  expect_refused("the quadratic objective coefficient of column 0 (x) and column 1 (y)");
  // Sound numbers solve again.
  v = 0;
  ASSERT_EQ(ZRVSchgmqobj64(prob, 1, &c1, &c2, &v), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
}

}  // namespace
