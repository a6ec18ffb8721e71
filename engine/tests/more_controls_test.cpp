// The MIP cutoff, the integer solution limit, the barrier iteration limit,
// the barrier convergence tolerance and crossover: each observed through a
// solve whose outcome it changes. (Heuristic emphasis, symmetry handling and
// scaling are observed through solves in the Python tests.)
#include <algorithm>
#include <cmath>
#include <cstring>

#include "model_support.h"

namespace {

class MoreControls : public ModelTest {
 protected:
  // A market-split instance: binaries whose weighted sums should hit given
  // targets, deviations cost 1. Branch-and-bound needs a long time on it.
  void build_market_split(unsigned seed) {
    const int m = 4, n = 36;
    auto next = [&] { return (seed = seed * 1103515245u + 12345u) >> 16 & 0x7fff; };
    add_cols(std::vector<double>(n, 0.0), std::vector<double>(n, 0.0),
             std::vector<double>(n, 1.0));
    set_types(0, std::string(n, 'B'));
    add_cols(std::vector<double>(2 * m, 1.0), std::vector<double>(2 * m, 0.0),
             std::vector<double>(2 * m, 1e20));
    for (int i = 0; i < m; ++i) {
      std::vector<double> row(n + 2 * m, 0.0);
      double sum = 0;
      for (int j = 0; j < n; ++j) sum += row[j] = next() % 100;
      row[n + 2 * i] = 1, row[n + 2 * i + 1] = -1;
      add_row(row, 'E', std::floor(sum / 2));
    }
  }
  // A dense LP of n columns and rows, bounded by its rows.
  void build_dense_lp(int n) {
    add_cols(std::vector<double>(n, -1), std::vector<double>(n, 0),
             std::vector<double>(n, 1e20));
    for (int i = 0; i < n; ++i) {
      std::vector<double> row(n);
      for (int j = 0; j < n; ++j) row[j] = 1 + (i * j) % 7;
      add_row(row, 'L', 100 + i);
    }
  }
  int stopstatus() { return int_attrib(ZRVS_STOPSTATUS); }
};

TEST_F(MoreControls, CatalogueEntries) {
  struct Expected {
    const char *name;
    int id, type;
  } expected[] = {{"mipabscutoff", ZRVS_MIPABSCUTOFF, ZRVS_TYPE_DOUBLE},
                  {"bargapstop", ZRVS_BARGAPSTOP, ZRVS_TYPE_DOUBLE},
                  {"bariterlimit", ZRVS_BARITERLIMIT, ZRVS_TYPE_INT},
                  {"maxmipsol", ZRVS_MAXMIPSOL, ZRVS_TYPE_INT},
                  {"crossover", ZRVS_CROSSOVER, ZRVS_TYPE_INT},
                  {"heuremphasis", ZRVS_HEUREMPHASIS, ZRVS_TYPE_DOUBLE},
                  {"symmetry", ZRVS_SYMMETRY, ZRVS_TYPE_INT},
                  {"scaling", ZRVS_SCALING, ZRVS_TYPE_INT}};
  const int *ids = nullptr, *flags = nullptr;
  ASSERT_EQ(ZRVSgetcalist_d(&ids, &flags), 0);
  for (const Expected &e : expected) {
    int id = 0, type = 0;
    ASSERT_EQ(ZRVSgetcontrolinfo(prob, e.name, &id, &type), 0);
    EXPECT_EQ(id, e.id) << e.name;
    EXPECT_EQ(type, e.type) << e.name;
    int i = 0;
    while (ids[i] != 0 && ids[i] != e.id) ++i;
    ASSERT_EQ(ids[i], e.id) << e.name;
    EXPECT_TRUE(flags[i] & ZRVS_CAFLAG_CONTROL) << e.name;
  }
  int64_t v = -1;
  double d = 0;
  ASSERT_EQ(ZRVSgetintcontrol64(prob, ZRVS_MAXMIPSOL, &v), 0);
  EXPECT_EQ(v, 0);
  ASSERT_EQ(ZRVSgetintcontrol64(prob, ZRVS_CROSSOVER, &v), 0);
  EXPECT_EQ(v, 1);
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_MIPABSCUTOFF, &d), 0);
  EXPECT_EQ(d, 1e20);
  // Values out of range are refused and leave the control as it was.
  expect_failure(ZRVSsetintcontrol(prob, ZRVS_CROSSOVER, 2), "crossover");
  expect_failure(ZRVSsetintcontrol(prob, ZRVS_MAXMIPSOL, -1), "maxmipsol");
  expect_failure(ZRVSsetdblcontrol(prob, ZRVS_BARGAPSTOP, 0.0), "bargapstop");
  expect_failure(ZRVSsetdblcontrol(prob, ZRVS_HEUREMPHASIS, 1.5), "heuremphasis");
  expect_failure(ZRVSsetintcontrol(prob, ZRVS_SYMMETRY, -1), "symmetry");
  expect_failure(ZRVSsetintcontrol(prob, ZRVS_SCALING, 3), "scaling");
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_BARGAPSTOP, &d), 0);
  EXPECT_EQ(d, 1e-8);
}

// Stopping at the first improving solution leaves a feasible, unproven
// solution; allowing more solutions can only improve it.
TEST_F(MoreControls, SolutionLimitStopsTheSearch) {
  build_market_split(12345);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 30), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_MAXMIPSOL, 1), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_FEASIBLE);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_SOLLIMIT);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_SOLUTION);
  double first = dbl_attrib(ZRVS_MIPOBJVAL);
  EXPECT_GT(first, dbl_attrib(ZRVS_BESTBOUND));
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_MAXMIPSOL, 4), 0);
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_SOLLIMIT);
  EXPECT_LT(dbl_attrib(ZRVS_MIPOBJVAL), first);
  // The node limit is still told apart from the solution limit.
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, 1), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_MAXMIPSOL, 1000), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_NODELIMIT);
}

// A knapsack: max 10a + 13b + 7c + 8d, 4a + 6b + 3c + 5d <= 10, binaries;
// the optimum is a + b = 23. As a minimisation: min -10a - 13b - 7c - 8d.
TEST_F(MoreControls, CutoffDiscardsWorseSolutions) {
  for (int presolve : {1, 0}) {
    for (double sense : {ZRVS_OBJ_MINIMIZE, ZRVS_OBJ_MAXIMIZE}) {
      SCOPED_TRACE(testing::Message() << "presolve " << presolve << " sense " << sense);
      ASSERT_EQ(ZRVSdestroyprob(prob), 0);
      ASSERT_EQ(ZRVScreateprob(&prob), 0);
      ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
      ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, presolve), 0);
      std::vector<double> profit = {10, 13, 7, 8};
      for (double &c : profit) c *= -sense;
      add_cols(profit, {0, 0, 0, 0}, {1, 1, 1, 1});
      set_types(0, "BBBB");
      add_row({4, 6, 3, 5}, 'L', 10);
      ASSERT_EQ(ZRVSchgobjsense(prob, static_cast<int>(sense)), 0);
      int sol = -1;
      EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
      ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
      double best = dbl_attrib(ZRVS_MIPOBJVAL);
      EXPECT_EQ(best, -sense * 23.0);
      // A cutoff just short of the optimum keeps it.
      ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSCUTOFF, best + sense * 0.5), 0);
      EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
      EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
      EXPECT_EQ(dbl_attrib(ZRVS_MIPOBJVAL), best);
      // A cutoff beyond the optimum leaves no acceptable solution.
      ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSCUTOFF, best - sense * 1.0), 0);
      optimize(&sol);
      EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
      std::vector<double> x(4);
      EXPECT_NE(ZRVSgetmipsol(prob, x.data(), nullptr), 0);
      // The cutoff is for integer solutions: the LP relaxation (a + c + b/2,
      // 23.5) ignores it.
      EXPECT_EQ(ZRVSlpoptimize(prob, ""), 0) << last_error();
      EXPECT_EQ(int_attrib(ZRVS_SOLSTATUS), ZRVS_SOLSTATUS_OPTIMAL);
      EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -sense * 23.5, 1e-9);
    }
  }
}

TEST_F(MoreControls, BarrierIterationLimit) {
  build_dense_lp(40);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_BARITERLIMIT, 1), 0);
  EXPECT_EQ(optimize(nullptr, "b"), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_ITERLIMIT);
  EXPECT_LE(int_attrib(ZRVS_BARITER), 1);
  // The simplex methods do not heed it.
  EXPECT_EQ(optimize(nullptr, "d"), ZRVS_SOLVESTATUS_COMPLETED);
  ASSERT_EQ(ZRVSsetdefaultcontrol(prob, ZRVS_BARITERLIMIT), 0);
  EXPECT_EQ(optimize(nullptr, "b"), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_GT(int_attrib(ZRVS_BARITER), 1);
}

// A looser convergence tolerance ends the barrier sooner.
TEST_F(MoreControls, BarrierGapStop) {
  build_dense_lp(60);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_CROSSOVER, 0), 0);
  EXPECT_EQ(optimize(nullptr, "b"), ZRVS_SOLVESTATUS_COMPLETED);
  int tight = int_attrib(ZRVS_BARITER);
  double tight_obj = dbl_attrib(ZRVS_LPOBJVAL);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_BARGAPSTOP, 1e-6), 0);
  EXPECT_EQ(optimize(nullptr, "b"), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_LT(int_attrib(ZRVS_BARITER), tight);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), tight_obj, 1e-4 * std::fabs(tight_obj));
}

// min x + y with x + y >= 1 and 0 <= x, y <= 1: every point of the segment
// is optimal. The barrier ends inside the segment; crossover moves to an end.
TEST_F(MoreControls, CrossoverGivesAVertex) {
  add_cols({1, 1}, {0, 0}, {1, 1});
  add_row({1, 1}, 'G', 1);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  EXPECT_EQ(optimize(nullptr, "b"), ZRVS_SOLVESTATUS_COMPLETED);
  std::vector<double> x = lp_x();
  EXPECT_LT(std::min(x[0], x[1]), 1e-9);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_CROSSOVER, 0), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol, "b"), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  x = lp_x();
  EXPECT_GT(std::min(x[0], x[1]), 0.1);
  EXPECT_NEAR(x[0] + x[1], 1.0, 1e-6);
}

}  // namespace

// max x + 2y with x <= 4, y <= 3 and x + y <= 10: presolve removes the whole
// problem. The barrier without crossover still reports the optimum 10 with
// its reduced costs 1 and 2 and the slack row's dual 0.
TEST_F(MoreControls, BarrierWithoutCrossoverOnAProblemPresolveRemoves) {
  add_cols({1, 2}, {0, 0}, {4, 3});
  add_row({1, 1}, 'L', 10);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_CROSSOVER, 0), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol, "b"), ZRVS_SOLVESTATUS_COMPLETED) << last_error();
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 10.0, 1e-6);
  double x[2], dual[1], dj[2];
  ASSERT_EQ(ZRVSgetlpsol(prob, x, nullptr, dual, dj), 0) << last_error();
  EXPECT_NEAR(x[0], 4.0, 1e-6);
  EXPECT_NEAR(x[1], 3.0, 1e-6);
  EXPECT_NEAR(dual[0], 0.0, 1e-6);
  EXPECT_NEAR(dj[0], 1.0, 1e-6);
  EXPECT_NEAR(dj[1], 2.0, 1e-6);
}
