// Convex QPs with columns that have no curvature, on which HiGHS's QP solver
// (which adds a small regularisation to such columns) cycled forever,
// reported a bounded QP unbounded, or an unbounded one optimal at a huge
// point. Each must end with the right status; the optima are worked out by
// hand in the comments.
#include <cmath>

#include "model_support.h"

namespace {

class QpClaims : public ModelTest {
 protected:
  // The quadratic objective sum q x_i x_j over i >= j (a diagonal entry q
  // stands for q x_i^2 / 2, as in the C interface).
  void set_q(const std::vector<int> &i, const std::vector<int> &j,
             const std::vector<double> &q) {
    ASSERT_EQ(ZRVSchgmqobj64(prob, static_cast<int>(q.size()), i.data(), j.data(), q.data()), 0)
        << last_error();
  }
};

// min x^2 with x >= -2 and y >= -2, y in a row y <= 10 only: x = 0, any y.
TEST_F(QpClaims, ColumnOutsideTheHessianInARowEndsOptimal) {
  add_cols({0.0, 0.0}, {-2.0, -2.0}, {1e20, 1e20});
  add_row({0.0, 1.0}, 'L', 10.0);
  set_q({0}, {0}, {2.0});
  for (const char *flags : {"", "d", "p", "b"}) {
    int sol = -1;
    ASSERT_EQ(optimize(&sol, flags), ZRVS_SOLVESTATUS_COMPLETED) << flags;
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL) << flags;
    EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 0.0, 1e-7) << flags;
    const std::vector<double> x = lp_x();
    EXPECT_NEAR(x[0], 0.0, 1e-4);
    EXPECT_GE(x[1], -2.0 - 1e-7);
    EXPECT_LE(x[1], 10.0 + 1e-7);
  }
}

// The user's iteration limit still stops the QP solver as a stop, not as a
// failure handed to another path.
TEST_F(QpClaims, UsersIterationLimitStops) {
  add_cols({1.0, 1.0, 0.0}, {-1e20, -1e20, -1e20}, {1e20, 1e20, 1e20});
  add_row({1.0, 1.0, 1.0}, 'G', 3.0);
  add_row({1.0, -1.0, 0.0}, 'L', -1.0);
  set_q({0, 1, 2}, {0, 1, 2}, {2.0, 2.0, 2.0});
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_LPITERLIMIT, 1), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_ITERLIMIT);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_LPITERLIMIT, 1000000), 0);
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
}

// min 4.5 x^2 - 3x, x <= 4, y <= 4 free below and nowhere else, w in
// [-5, 6] with w <= -1: x = 1/3, objective -1/2.
TEST_F(QpClaims, BoundedQpIsNotReportedUnbounded) {
  add_cols({-3.0, 0.0, 0.0}, {-1e20, -1e20, -5.0}, {4.0, 4.0, 6.0});
  add_row({0.0, 0.0, 1.0}, 'L', -1.0);
  set_q({0}, {0}, {9.0});
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -0.5, 1e-7);
  EXPECT_NEAR(lp_x()[0], 1.0 / 3.0, 1e-5);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
}

// -2 x3 falls without limit: x3 >= -2 has no upper bound and its one row
// x3 + 2 x5 >= -4 only grows with it; the rest is feasible (x = (0, 10,
// 0, 6, 3.25, 5, 0) plus any x3 >= 0 meets the rows).
TEST_F(QpClaims, UnboundedQpIsNotReportedOptimal) {
  add_cols({0.0, 0.0, -2.0, 0.0, 4.0, 1.0, 0.0}, {0.0, 1.0, -2.0, 1.0, 0.0, 0.0, 0.0},
           {3.0, 10.0, 1e20, 6.0, 6.0, 6.0, 10.0});
  add_row({0, 0, 1, 0, 2, 0, 0}, 'G', -4.0);
  add_row({-1.5, 0, 0, -1.5, 4, 0, -2}, 'E', 4.0);
  add_row({0, 1, 0, 1, 0, -3, -2}, 'E', 1.0);
  set_q({0}, {0}, {3.0});
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNBOUNDED);
  // Maximising the negated objective is unbounded too.
  const std::vector<int> cols = {0, 1, 2, 3, 4, 5, 6};
  const std::vector<double> neg = {0.0, 0.0, 2.0, 0.0, -4.0, -1.0, 0.0};
  ASSERT_EQ(ZRVSchgobj(prob, 7, cols.data(), neg.data()), 0) << last_error();
  set_q({0}, {0}, {-3.0});
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED);
}

// A semidefinite QP over a box open on three sides that HiGHS called
// unbounded (at x = 0): no direction improves it without limit, so it is
// solved again; scipy's SLSQP: -10.504023780 (x'Qx/2 + c'x).
TEST_F(QpClaims, RefutedUnboundedClaimIsSolvedAgain) {
  add_cols({-0.8, 2.0, -2.0}, {-1e20, -1e20, -2.6}, {2.5, 0.3, 1e20});
  set_q({0, 1, 2, 1, 2, 2}, {0, 1, 2, 0, 0, 1}, {2.69, 3.14, 0.82, -1.05, -1.27, -0.28});
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -10.504023780, 1e-6);
}

// A QP with a descent direction along a free column but no feasible point:
// infeasible, never unbounded.
TEST_F(QpClaims, InfeasibleQpWithDescentDirectionIsInfeasible) {
  add_cols({0.0, -1.0}, {0.0, -1e20}, {1.0, 1e20});
  add_row({1.0, 0.0}, 'G', 2.0);
  set_q({0}, {0}, {2.0});
  int sol = -1;
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
}

}  // namespace

namespace {

// Columns in neither the Hessian nor a row, with x in a row and x^2 - 2x:
// each goes to the bound its cost points to (for either sense), the one
// without cost to its value nearest 0; x = 1.
class LooseColumns : public QpClaims, public ::testing::WithParamInterface<double> {};

TEST_P(LooseColumns, GoToTheirBestBound) {
  const double sense = GetParam();  // 1 minimise, -1 maximise the negation
  add_cols({-2.0 * sense, 3.0 * sense, -1.0 * sense, 0.0, 0.0},
           {-1e20, -4.0, -1e20, 2.0, -1e20}, {1e20, 1e20, 7.0, 5.0, 1e20});
  add_row({1.0, 0.0, 0.0, 0.0, 0.0}, 'L', 10.0);
  set_q({0}, {0}, {2.0 * sense});
  if (sense < 0) {
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  }
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  const std::vector<double> x = lp_x();
  EXPECT_NEAR(x[0], 1.0, 1e-6);
  EXPECT_NEAR(x[1], -4.0, 1e-9);
  EXPECT_NEAR(x[2], 7.0, 1e-9);
  EXPECT_NEAR(x[3], 2.0, 1e-9);
  EXPECT_NEAR(x[4], 0.0, 1e-9);
  // 1 - 2 - 12 - 7
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), sense * -20.0, 1e-6);
  // The reduced costs of the fixed columns are their costs (within the
  // solver's regularisation): the optimum's conditions hold for the bounds the user gave.
  std::vector<double> dj(5);
  ASSERT_EQ(ZRVSgetlpsol(prob, nullptr, nullptr, nullptr, dj.data()), 0) << last_error();
  EXPECT_NEAR(dj[1], 3.0 * sense, 1e-6);
  EXPECT_NEAR(dj[2], -1.0 * sense, 1e-6);
  EXPECT_NEAR(dj[4], 0.0, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(BothSenses, LooseColumns, ::testing::Values(1.0, -1.0));

// A column outside everything whose cost points to an infinite bound makes
// the QP unbounded.
TEST_F(QpClaims, LooseColumnTowardsAnInfiniteBoundIsUnbounded) {
  add_cols({-2.0, -1.0}, {-1e20, 0.0}, {1e20, 1e20});
  add_row({1.0, 0.0}, 'L', 10.0);
  set_q({0}, {0}, {2.0});
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED);
}

}  // namespace
