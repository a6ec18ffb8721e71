// LP verdicts that HiGHS's presolve got wrong, and prices of models without
// rows. The expected answers are worked out in the comments.
#include "model_support.h"

namespace {

class LpClaims : public ModelTest {
 protected:
  // x0 <= 0, x1 >= -0.4, x2 <= -0.5 with three rows; (0, -0.4, -0.5) is
  // feasible and d = (-1, 1/3, -1.5) is a direction of recession along
  // which 2.5 x0 - 1.7 x1 + 3.3 x2 falls by 8 per step: unbounded.
  void add_unbounded_lp() {
    add_cols({2.5, -1.7, 3.3}, {-1e20, -0.4, -1e20}, {0.0, 1e20, -0.5});
    add_row({-0.3, -0.9, 0.0}, 'G', -0.64);
    add_row({-0.6, 0.0, 0.4}, 'G', -0.62);
    add_row({-0.9, -0.1, 0.7}, 'L', 0.07);
  }
};

TEST_F(LpClaims, FeasibleUnboundedLpIsNotCalledInfeasible) {
  add_unbounded_lp();
  for (int presolve : {1, 0}) {
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, presolve), 0);
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED) << presolve;
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED) << presolve;
    EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNBOUNDED) << presolve;
  }
}

// With an unrelated binary the model is a feasible MIP: it must not be
// called infeasible either.
TEST_F(LpClaims, FeasibleMipIsNotCalledInfeasible) {
  add_unbounded_lp();
  add_cols({0.0}, {0.0}, {1.0});
  set_types(3, "B");
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_NE(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_NE(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_INFEAS);
}

// A truly infeasible LP stays infeasible after the check: x + y <= 1 and
// x + y >= 3 over free columns.
TEST_F(LpClaims, InfeasibleLpStaysInfeasible) {
  add_cols({1.0, 1.0}, {-1e20, -1e20}, {1e20, 1e20});
  add_row({1.0, 1.0}, 'L', 1.0);
  add_row({1.0, 1.0}, 'G', 3.0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
}

// min 4v + 2w with v >= 1, w in [-1, 3] and no rows: v = 1, w = -1, and
// each reduced cost is the column's cost.
TEST_F(LpClaims, ModelWithoutRowsReportsReducedCosts) {
  add_cols({4.0, 2.0}, {1.0, -1.0}, {1e20, 3.0});
  for (int presolve : {1, 0}) {
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, presolve), 0);
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
    std::vector<double> x(2), djs(2, -99.0);
    ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, nullptr, djs.data()), 0) << last_error();
    EXPECT_NEAR(x[0], 1.0, 1e-9);
    EXPECT_NEAR(x[1], -1.0, 1e-9);
    EXPECT_NEAR(djs[0], 4.0, 1e-9) << presolve;
    EXPECT_NEAR(djs[1], 2.0, 1e-9) << presolve;
  }
}

}  // namespace
