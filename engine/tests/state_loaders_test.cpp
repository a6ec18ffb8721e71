// Starting solutions and branching directives: a loaded basis or LP
// solution starts the next solve, MIP starts give the first incumbent, and
// directives follow column deletions.
#include <cmath>
#include <string>
#include <vector>

#include "model_support.h"

namespace {

constexpr double kInf = ZRVS_PLUSINFINITY;

class StateLoadersTest : public ModelTest {
 protected:
  // A transport-like LP with a few dozen columns, so that a cold solve
  // needs several simplex iterations.
  void transport(ZRVSprob q) {
    ZRVSprob keep = prob;
    prob = q;
    ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0);
    const int s = 5, d = 6;
    std::vector<double> cost;
    for (int i = 0; i < s; ++i)
      for (int j = 0; j < d; ++j) cost.push_back(1 + (i * 7 + j * 3) % 11);
    add_cols(cost, std::vector<double>(s * d, 0), std::vector<double>(s * d, kInf));
    for (int i = 0; i < s; ++i) {
      std::vector<double> row(s * d, 0);
      for (int j = 0; j < d; ++j) row[i * d + j] = 1;
      add_row(row, 'L', 30 + 5 * i);
    }
    for (int j = 0; j < d; ++j) {
      std::vector<double> row(s * d, 0);
      for (int i = 0; i < s; ++i) row[i * d + j] = 1;
      add_row(row, 'G', 20 + 3 * j);
    }
    prob = keep;
  }
  // max 5a + 4b + 3c + 7d  s.t.  2a + 3b + c + 4d <= 6, binaries: best 12 (a, d).
  void knapsack() {
    add_cols({5, 4, 3, 7}, {0, 0, 0, 0}, {1, 1, 1, 1});
    add_row({2, 3, 1, 4}, 'L', 6);
    set_types(0, "BBBB");
    ASSERT_EQ(ZRVSchgobjsense(prob, -1), 0);
  }
  // Solves with HiGHS's log on and returns the log.
  std::string solve_log() {
    std::string log;
    auto keep = [](ZRVSprob, void *data, const char *msg, int, int) {
      if (msg) *static_cast<std::string *>(data) += std::string(msg) + "\n";
    };
    EXPECT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 3), 0);
    EXPECT_EQ(ZRVSaddcbmessage(prob, keep, &log, 0), 0);
    optimize();
    EXPECT_EQ(ZRVSremovecbmessage(prob, nullptr, nullptr), 0);
    EXPECT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    return log;
  }
};

TEST_F(StateLoadersTest, LoadedOptimalBasisResolvesInZeroIterations) {
  transport(prob);
  optimize();
  ASSERT_GT(int64_attrib(ZRVS_SIMPLEXITER), 0);
  const double best = dbl_attrib(ZRVS_LPOBJVAL);
  const int rows = int_attrib(ZRVS_ROWS), cols = int_attrib(ZRVS_COLS);
  std::vector<int> rstat(rows), cstat(cols);
  ASSERT_EQ(ZRVSgetbasis(prob, rstat.data(), cstat.data()), 0);
  ZRVSprob fresh = nullptr;
  ASSERT_EQ(ZRVScreateprob(&fresh), 0);
  transport(fresh);
  ASSERT_EQ(ZRVSloadbasis(fresh, rstat.data(), cstat.data()), 0);
  int solve = 0, sol = 0;
  ASSERT_EQ(ZRVSoptimize(fresh, "", &solve, &sol), 0);
  int64_t iters = -1;
  double value = 0;
  ZRVSgetintattrib64(fresh, ZRVS_SIMPLEXITER, &iters);
  ZRVSgetdblattrib(fresh, ZRVS_LPOBJVAL, &value);
  EXPECT_EQ(iters, 0);
  EXPECT_NEAR(value, best, 1e-9);
  ZRVSdestroyprob(fresh);
}

TEST_F(StateLoadersTest, LoadedLpSolutionStartsTheNextSolve) {
  transport(prob);
  optimize();
  const double best = dbl_attrib(ZRVS_LPOBJVAL);
  std::vector<double> x = lp_x();
  ZRVSprob fresh = nullptr;
  ASSERT_EQ(ZRVScreateprob(&fresh), 0);
  transport(fresh);
  ASSERT_EQ(ZRVSloadlpsol(fresh, x.data(), nullptr, nullptr, nullptr), 0);
  int solve = 0, sol = 0;
  ASSERT_EQ(ZRVSoptimize(fresh, "", &solve, &sol), 0);
  double value = 0;
  ZRVSgetdblattrib(fresh, ZRVS_LPOBJVAL, &value);
  EXPECT_NEAR(value, best, 1e-9);
  ZRVSdestroyprob(fresh);
  std::vector<double> dual(1, 0.0);
  expect_failure(ZRVSloadlpsol(prob, x.data(), nullptr, dual.data(), nullptr), "both duals");
}

TEST_F(StateLoadersTest, MipStartReachesHighsOnceAsItsStartingIncumbent) {
  knapsack();
  // b and c: weight 4, value 7, feasible but not optimal.
  std::vector<double> start = {0, 1, 1, 0};
  ASSERT_EQ(ZRVSaddmipsol(prob, 4, start.data(), nullptr, "bc"), 0) << last_error();
  EXPECT_NE(solve_log().find("MIP start solution is feasible, objective value is 7"),
            std::string::npos);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), 12, 1e-9);
  // The starts were used once.
  EXPECT_EQ(solve_log().find("MIP start"), std::string::npos);
}

TEST_F(StateLoadersTest, MipStartsAreCheckedAndTheBestFullOneIsUsed) {
  knapsack();
  int status = -1;
  std::vector<double> heavy = {1, 1, 1, 1};
  ASSERT_EQ(ZRVSloadmipsol(prob, heavy.data(), &status), 0);
  EXPECT_EQ(status, 1);
  std::vector<double> fractional = {0.5, 0, 0, 0};
  ASSERT_EQ(ZRVSloadmipsol(prob, fractional.data(), &status), 0);
  EXPECT_EQ(status, 1);
  std::vector<double> weak = {1, 0, 0, 0}, better = {0, 0, 1, 1};  // 5 and 10
  ASSERT_EQ(ZRVSloadmipsol(prob, weak.data(), &status), 0);
  EXPECT_EQ(status, 0);
  ASSERT_EQ(ZRVSloadmipsol(prob, better.data(), &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_NE(solve_log().find("MIP start solution is feasible, objective value is 10"),
            std::string::npos);
  int cols[2] = {0, 0};
  double vals[2] = {1, 1};
  expect_failure(ZRVSaddmipsol(prob, 2, vals, cols, nullptr), "given twice");
  cols[1] = 9;
  expect_failure(ZRVSaddmipsol(prob, 2, vals, cols, nullptr), "colind[1] = 9");
}

TEST_F(StateLoadersTest, DirectivesAreStoredReadAndFollowDeletions) {
  knapsack();
  int cols[3] = {3, 1, 2}, prio[3] = {1, 2, 3};
  char dir[3] = {'U', 'D', 'N'};
  double up[3] = {1.5, 2.5, 3.5}, down[3] = {0.5, 0.25, 0.125};
  ASSERT_EQ(ZRVSloaddirs(prob, 3, cols, prio, dir, up, down), 0) << last_error();
  int bdir = -1, bcol = 2;
  ASSERT_EQ(ZRVSloadbranchdirs(prob, 1, &bcol, &bdir), 0);
  int n = 0;
  ASSERT_EQ(ZRVSgetdirs(prob, &n, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(n, 3);
  std::vector<int> c(3), pr(3);
  std::vector<char> d(3);
  std::vector<double> u(3), dn(3);
  ASSERT_EQ(ZRVSgetdirs(prob, &n, c.data(), pr.data(), d.data(), u.data(), dn.data()), 0);
  EXPECT_EQ(c, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(pr, (std::vector<int>{2, 3, 1}));
  EXPECT_EQ(d, (std::vector<char>{'D', 'D', 'U'}));  // column 2 turned down by loadbranchdirs
  EXPECT_EQ(u, (std::vector<double>{2.5, 3.5, 1.5}));
  int del = 1;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &del), 0);
  ASSERT_EQ(ZRVSgetdirs(prob, &n, c.data(), pr.data(), nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(n, 2);
  EXPECT_EQ(c[0], 1);  // old column 2
  EXPECT_EQ(pr[0], 3);
  char bad = 'X';
  expect_failure(ZRVSloaddirs(prob, 1, cols + 2, nullptr, &bad, nullptr, nullptr), "'X'");
}

TEST_F(StateLoadersTest, PresolvedSpaceLoadersSayWhyTheyCannotWork) {
  knapsack();
  int zero = 0;
  expect_failure(ZRVSloadpresolvebasis(prob, &zero, &zero), "keeps no presolved problem");
  expect_failure(ZRVSloadpresolvedirs(prob, 1, &zero, nullptr, nullptr, nullptr, nullptr),
                 "keeps no presolved problem");
  expect_failure(ZRVSloadsecurevecs(prob, 1, 0, &zero, nullptr), "cannot be told");
}

}  // namespace
