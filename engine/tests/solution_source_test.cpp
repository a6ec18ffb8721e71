// Which solution a solve leaves follows the model's class, not the entry
// point: mipoptimize on an LP is an LP solve; lpoptimize on a MIP solves the
// relaxation and leaves it as the MIP's solution.
#include <vector>

#include "model_support.h"

namespace {

// max 3x + 2y  s.t.  x + y <= 4.5,  x + 3y <= 9,  0 <= x, y <= 3.
// LP optimum: x = 3, y = 1.5, objective 12 (duals 2 and 0: row 1 binds at
// x + y, x is at its upper bound with reduced cost 1). With x, y integer:
// x = 3, y = 1, objective 11.
class SolutionSource : public ModelTest {
 protected:
  void build(bool integer) {
    add_cols({3, 2}, {0, 0}, {3, 3});
    add_row({1, 1}, 'L', 4.5);
    add_row({1, 3}, 'L', 9);
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
    if (integer) set_types(0, "II");
  }
};

TEST_F(SolutionSource, MipOptimizeOnAnLpLeavesTheLpSolution) {
  build(false);
  ASSERT_EQ(ZRVSmipoptimize(prob, ""), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 12.0, 1e-9);
  std::vector<double> x(2), slack(2), duals(2), djs(2);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), slack.data(), duals.data(), djs.data()), 0)
      << last_error();
  EXPECT_NEAR(x[0], 3.0, 1e-9);
  EXPECT_NEAR(x[1], 1.5, 1e-9);
  EXPECT_NEAR(slack[0], 0.0, 1e-9);
  EXPECT_NEAR(slack[1], 1.5, 1e-9);  // 9 - (3 + 4.5)
  EXPECT_NEAR(duals[0], 2.0, 1e-9);
  EXPECT_NEAR(duals[1], 0.0, 1e-9);
  EXPECT_NEAR(djs[0], 1.0, 1e-9);
  // No integer solution was made: the MIP's side stays empty.
  expect_failure(ZRVSgetmipsol(prob, x.data(), nullptr), "no integer solution");
}

TEST_F(SolutionSource, LpOptimizeOnAMipLeavesTheRelaxationAsTheMipSolution) {
  build(true);
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_LP_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 12.0, 1e-9);
  std::vector<double> x = mip_x();
  EXPECT_NEAR(x[0], 3.0, 1e-9);
  EXPECT_NEAR(x[1], 1.5, 1e-9);  // fractional: the relaxation, not an integer point
  // The relaxation is an LP solution too, duals included.
  std::vector<double> duals(2);
  ASSERT_EQ(ZRVSgetlpsol(prob, nullptr, nullptr, duals.data(), nullptr), 0) << last_error();
  EXPECT_NEAR(duals[0], 2.0, 1e-9);
  // The MIP solve that follows replaces it by the integer optimum.
  ASSERT_EQ(ZRVSmipoptimize(prob, ""), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_OPTIMAL);
  x = mip_x();
  EXPECT_NEAR(x[0], 3.0, 1e-9);
  EXPECT_NEAR(x[1], 1.0, 1e-9);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 11.0, 1e-9);
}

TEST_F(SolutionSource, AnInfeasibleRelaxationIsNotOptimal) {
  build(true);
  add_row({1, 1}, 'G', 7);  // x + y >= 7 contradicts x + y <= 4.5
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_LP_NOT_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_INFEAS);
  std::vector<double> x(2);
  expect_failure(ZRVSgetmipsol(prob, x.data(), nullptr), "no integer solution");
}

}  // namespace
