// The engine's branch-and-cut against HiGHS's MIP solver on small instances
// of four families, the discrete parts it takes from the reformulations,
// its statuses and limits.
#include <cmath>
#include <functional>

#include "search_support.h"

namespace {

class SearchFamilies : public SearchTest {
 protected:
  // Builds a fresh model, solves it with both searches and checks that the
  // engine's proves the same optimum with a solution that holds.
  void compare(const std::function<void()> &build) {
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    build();
    tight_gaps();
    const double highs = solve_with(0);
    ASSERT_FALSE(std::isnan(highs)) << "HiGHS did not prove an optimum";
    const double own = solve_with(1);
    EXPECT_NEAR(own, highs, 1e-6 * std::max(1.0, std::fabs(highs)));
    EXPECT_EQ(int_attrib(ZRVS_SOLSTATUS), ZRVS_SOLSTATUS_OPTIMAL);
    EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_SOLVECOMPLETE);
    EXPECT_GE(int64_attrib(ZRVS_NODES), 1);
    EXPECT_LE(dbl_attrib(ZRVS_MIPGAP), 1e-6);
    std::vector<double> x = mip_x();
    std::vector<char> type(x.size());
    ASSERT_EQ(ZRVSgetcoltype(prob, type.data(), 0, static_cast<int>(x.size()) - 1), 0);
    for (size_t j = 0; j < x.size(); ++j) {
      const bool integer = type[j] == 'B' || type[j] == 'I';
      EXPECT_NEAR(x[j], integer ? std::round(x[j]) : x[j], 1e-6) << "column " << j;
    }
    expect_rows_hold();
  }
};

TEST_F(SearchFamilies, OptimaMatchHighsOnFourFamilies) {
  for (uint64_t seed : {1, 2, 3}) {
    SCOPED_TRACE(seed);
    compare([&] { knapsack(30, seed); });
    compare([&] { set_cover(30, 20, seed); });
    compare([&] { facility(4, 10, seed, false); });
    compare([&] { lot_sizing(8, seed); });
  }
}

TEST_F(SearchFamilies, SetsSemiContinuousAndPartialIntegersMatchHighs) {
  // max sum of values with an SOS1 over three columns, a semi-continuous
  // column (0 or in [2, 5]) and a partially integer column.
  compare([&] {
    add_cols({3, 2, 4, 1.5, 1.2}, {0, 0, 0, 0, 0}, {4, 4, 4, 5, 6.5});
    add_row({1, 1, 1, 1, 1}, 'L', 9.7);
    add_row({0, 0, 0, 1, 0}, 'G', 0.5);  // pushes the semi-continuous column on
    int64_t start[2] = {0, 3};
    int cols[3] = {0, 1, 2};
    double ref[3] = {1, 2, 3};
    char type = '1';
    ASSERT_EQ(ZRVSaddsets64(prob, 1, 3, &type, start, cols, ref), 0) << last_error();
    int sc[2] = {3, 4};
    char t[2] = {'S', 'P'};
    ASSERT_EQ(ZRVSchgcoltype(prob, 2, sc, t), 0);
    double limit[2] = {2, 3};
    ASSERT_EQ(ZRVSchgglblimit(prob, 2, sc, limit), 0);
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  });
  std::vector<double> x = mip_x();
  EXPECT_GE(x[3], 2 - 1e-6);  // semi-continuous: on, so at least its threshold
  int nonzero = (x[0] > 1e-6) + (x[1] > 1e-6) + (x[2] > 1e-6);
  EXPECT_LE(nonzero, 1);
}

TEST_F(SearchTest, InfeasibleAndStoppedSearchesSayWhy) {
  knapsack(12, 7);
  std::vector<double> ones(12, 1.0);
  add_row(ones, 'G', 11.5);  // needs all twelve items, which do not fit
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_MIPSEARCH, 1), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_INFEAS);

  int last = int_attrib(ZRVS_ROWS) - 1;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &last), 0);
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, 1), 0);
  tight_gaps();
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_NODELIMIT);
  EXPECT_EQ(int64_attrib(ZRVS_NODES), 1);
  EXPECT_NE(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_OPTIMAL);
}

TEST_F(SearchTest, CutoffAndMaximisationBoundsAreOnTheUsersSide) {
  knapsack(20, 11);
  tight_gaps();
  const double best = solve_with(0);
  const double own = solve_with(1);
  ASSERT_NEAR(own, best, 1e-6);
  EXPECT_GE(dbl_attrib(ZRVS_BESTBOUND), own - 1e-6);  // a bound from above when maximising
  // A cutoff above the optimum leaves nothing to find.
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSCUTOFF, best + 1), 0);
  int sol = -1;
  optimize(&sol);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_INFEAS);
  // A cutoff just below it keeps the optimum.
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSCUTOFF, best - 1), 0);
  optimize(&sol);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), best, 1e-6);
}

TEST_F(SearchTest, SeveralObjectivesAreSolvedLevelByLevel) {
  // Level 1: maximise the knapsack's value; level 2 (lower priority):
  // among the optima, fewest items.
  knapsack(10, 5);
  tight_gaps();
  std::vector<int> cols(10);
  std::vector<double> coef(10, -1.0);
  for (int j = 0; j < 10; ++j) cols[j] = j;
  ASSERT_EQ(ZRVSchgobjn(prob, 1, 10, cols.data(), coef.data()), 0) << last_error();
  ASSERT_EQ(ZRVSsetobjintcontrol(prob, 0, ZRVS_OBJECTIVE_PRIORITY, 2), 0);
  ASSERT_EQ(ZRVSsetobjintcontrol(prob, 1, ZRVS_OBJECTIVE_PRIORITY, 1), 0);
  solve_with(0);
  double highs0 = 0, highs1 = 0, own0 = 0, own1 = 0;
  ASSERT_EQ(ZRVSgetobjdblattrib(prob, 0, ZRVS_MIPOBJVAL, &highs0), 0);
  ASSERT_EQ(ZRVSgetobjdblattrib(prob, 1, ZRVS_MIPOBJVAL, &highs1), 0);
  solve_with(1);
  ASSERT_EQ(ZRVSgetobjdblattrib(prob, 0, ZRVS_MIPOBJVAL, &own0), 0) << last_error();
  ASSERT_EQ(ZRVSgetobjdblattrib(prob, 1, ZRVS_MIPOBJVAL, &own1), 0);
  EXPECT_NEAR(own0, highs0, 1e-6);
  EXPECT_NEAR(own1, highs1, 1e-6);
}

}  // namespace
