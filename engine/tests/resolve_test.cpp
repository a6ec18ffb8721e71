// Re-solves: the solver keeps its model between solves and takes changes as
// changes. Every re-solve is checked against a copy of the problem solved
// from scratch.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "model_support.h"

namespace {

// Counts the engine's log lines that say how HiGHS took the model.
void count_transfers(ZRVSprob, void *data, const char *msg, int, int) {
  if (!msg) return;
  auto *counts = static_cast<int *>(data);
  if (std::string(msg).find("HiGHS takes the whole model") != std::string::npos) ++counts[0];
  if (std::string(msg).find("HiGHS takes the changes") != std::string::npos) ++counts[1];
}

// A random sparse LP: maximise c.x, A x <= b, 0 <= x <= 10, n columns and
// rows with 4 entries per column (fixed seed).
class Resolve : public ModelTest {
 protected:
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 2), 0);
    ASSERT_EQ(ZRVSaddcbmessage(prob, count_transfers, counts, 0), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_THREADS, 1), 0);
  }
  double uniform(double lo, double hi) {
    seed = seed * 6364136223846793005ULL + 1442695040888963407ULL;
    return lo + (hi - lo) * static_cast<double>(seed >> 11) / 9007199254740992.0;
  }
  void build(int n) {
    std::vector<double> obj(n), lb(n, 0.0), ub(n, 10.0);
    std::vector<int64_t> start(n + 1, 0);
    std::vector<int> rowind;
    std::vector<double> coef;
    for (int j = 0; j < n; ++j) {
      obj[j] = uniform(1, 20);
      std::vector<int> used;
      for (int k = 0; k < 4; ++k) {
        int i = static_cast<int>(uniform(0, n));
        if (std::find(used.begin(), used.end(), i) != used.end()) continue;
        used.push_back(i);
        rowind.push_back(i), coef.push_back(uniform(1, 10));
      }
      start[j + 1] = static_cast<int64_t>(rowind.size());
    }
    std::vector<char> type(n, 'L');
    std::vector<double> rhs(n), rng(n, 0.0);
    for (double &b : rhs) b = uniform(50, 100);
    std::vector<int64_t> none(n + 1, 0);
    ASSERT_EQ(ZRVSaddrows64(prob, n, 0, type.data(), rhs.data(), rng.data(), none.data(),
                            nullptr, nullptr),
              0);
    ASSERT_EQ(ZRVSaddcols64(prob, n, start[n], obj.data(), start.data(), rowind.data(),
                            coef.data(), lb.data(), ub.data()),
              0)
        << last_error();
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  }
  // Solves; returns the objective (LP or MIP by the model's class).
  double solve() {
    EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED) << last_error();
    return dbl_attrib(int_attrib(ZRVS_MIPENTS) > 0 ? ZRVS_MIPOBJVAL : ZRVS_LPOBJVAL);
  }
  // The optimum of a copy solved from scratch.
  double fresh_optimum() {
    ZRVSprob copy = nullptr;
    EXPECT_EQ(ZRVScreateprob(&copy), 0);
    EXPECT_EQ(ZRVScopyprob(copy, prob, ""), 0);
    EXPECT_EQ(ZRVSsetintcontrol(copy, ZRVS_OUTPUTLOG, 0), 0);
    int solve = -1;
    EXPECT_EQ(ZRVSoptimize(copy, "", &solve, nullptr), 0);
    int mipents = 0;
    EXPECT_EQ(ZRVSgetintattrib(copy, ZRVS_MIPENTS, &mipents), 0);
    double v = 0;
    EXPECT_EQ(ZRVSgetdblattrib(copy, mipents > 0 ? ZRVS_MIPOBJVAL : ZRVS_LPOBJVAL, &v), 0);
    EXPECT_EQ(ZRVSdestroyprob(copy), 0);
    return v;
  }
  void expect_fresh_optimum(double v) {
    double fresh = fresh_optimum();
    EXPECT_NEAR(v, fresh, 1e-7 * std::max(1.0, std::fabs(fresh)));
  }
  int counts[2] = {0, 0};  // whole transfers, change transfers
  uint64_t seed = 7;
};

TEST_F(Resolve, ABoundChangeIsTakenAsAChangeAndStartsFromTheLastBasis) {
  build(300);
  solve();
  int64_t first_iters = int64_attrib(ZRVS_SIMPLEXITER);
  EXPECT_EQ(counts[0], 1);
  EXPECT_EQ(counts[1], 0);
  // Tighten the upper bound of the column with the largest value.
  std::vector<double> x = lp_x();
  int j = static_cast<int>(std::max_element(x.begin(), x.end()) - x.begin());
  double ub = 0.5 * x[j];
  char type = 'U';
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &j, &type, &ub), 0);
  double v = solve();
  EXPECT_EQ(counts[0], 1);  // no second transfer of the model
  EXPECT_EQ(counts[1], 1);
  EXPECT_NEAR(lp_x()[j], ub, 1e-9);
  // From the last basis a few pivots suffice; from scratch it took many.
  int64_t iters = int64_attrib(ZRVS_SIMPLEXITER);
  EXPECT_GT(first_iters, 100);
  EXPECT_LT(iters, first_iters / 5) << first_iters;
  expect_fresh_optimum(v);
}

TEST_F(Resolve, ChangesOfEveryKindGiveTheOptimumOfAFreshSolve) {
  build(120);
  solve();
  // Costs.
  std::vector<int> cols = {3, 17, 40};
  std::vector<double> costs = {25, 0.5, 30};
  ASSERT_EQ(ZRVSchgobj(prob, 3, cols.data(), costs.data()), 0);
  expect_fresh_optimum(solve());
  // Both bounds of a column, and a fixed column.
  std::vector<int> bcols = {5, 5, 9};
  std::vector<char> btype = {'L', 'U', 'B'};
  std::vector<double> bval = {1, 2, 3};
  ASSERT_EQ(ZRVSchgbounds(prob, 3, bcols.data(), btype.data(), bval.data()), 0);
  expect_fresh_optimum(solve());
  // An appended row over existing columns, then an appended column in
  // existing and new rows.
  int first_new_row = add_row(std::vector<double>(20, 1.0), 'L', 35);
  std::vector<double> obj = {50}, lb = {0}, ub = {4}, val = {1, 2};
  std::vector<int64_t> start = {0, 2};
  std::vector<int> rows = {0, first_new_row};
  ASSERT_EQ(ZRVSaddcols64(prob, 1, 2, obj.data(), start.data(), rows.data(), val.data(),
                          lb.data(), ub.data()),
            0);
  expect_fresh_optimum(solve());
  // Deleted rows and columns.
  std::vector<int> del_rows = {1, 7, first_new_row}, del_cols = {0, 11};
  ASSERT_EQ(ZRVSdelrows(prob, 3, del_rows.data()), 0);
  ASSERT_EQ(ZRVSdelcols(prob, 2, del_cols.data()), 0);
  expect_fresh_optimum(solve());
  // The objective sense.
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MINIMIZE), 0);
  expect_fresh_optimum(solve());
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  // None of these needed the whole model again.
  EXPECT_EQ(counts[0], 1);
  EXPECT_EQ(counts[1], 5);
  // Integer columns make a MIP: HiGHS takes the whole model once, then
  // bound changes as changes.
  set_types(0, "IIII");
  expect_fresh_optimum(solve());
  EXPECT_EQ(counts[0], 2);
  int col = 2;
  char type = 'U';
  double bound = 1;
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &bound), 0);
  expect_fresh_optimum(solve());
  EXPECT_EQ(counts[0], 2);
}

TEST_F(Resolve, AppendsBeforeADeletionAreNotReplayedOutOfOrder) {
  build(40);
  solve();
  add_row(std::vector<double>(10, 1.0), 'L', 12);
  std::vector<int> del = {2, 40};  // an old row and the appended one
  ASSERT_EQ(ZRVSdelrows(prob, 2, del.data()), 0);
  expect_fresh_optimum(solve());
  EXPECT_EQ(counts[0], 2);  // the log could not be replayed: whole model
}

TEST_F(Resolve, SeveralObjectiveLevelsHandTheWholeModelAgainNextTime) {
  build(30);
  solve();
  std::vector<int> cols = {0, 1};
  std::vector<double> coef = {1, 1};
  ASSERT_EQ(ZRVSchgobjn(prob, 1, 2, cols.data(), coef.data()), 0);
  ASSERT_EQ(ZRVSsetobjintcontrol(prob, 1, ZRVS_OBJECTIVE_PRIORITY, -1), 0);
  solve();
  ASSERT_EQ(ZRVSdelobj(prob, 1), 0);
  double v = solve();
  expect_fresh_optimum(v);
  EXPECT_EQ(counts[0], 2);  // the level rows of the two-level solve are gone
}

TEST_F(Resolve, RoundsOfCostSideRangeAndSenseChangesAreTakenAsChanges) {
  build(150);
  solve();
  uint64_t pick = 3;
  auto index = [&](int n) {
    pick = pick * 2862933555777941757ULL + 3037000493ULL;
    return static_cast<int>((pick >> 33) % static_cast<uint64_t>(n));
  };
  for (int round = 0; round < 12; ++round) {
    // Costs of the objective (and its constant), sides and ranges of rows,
    // a row's type, bounds of columns; some lines listed twice.
    std::vector<int> cols = {index(150), index(150), -1};
    cols.push_back(cols[0]);
    std::vector<double> costs = {uniform(0, 25), uniform(0, 25), uniform(-5, 5), uniform(0, 25)};
    ASSERT_EQ(ZRVSchgobj(prob, 4, cols.data(), costs.data()), 0) << last_error();
    std::vector<int> rows = {index(150), index(150)};
    std::vector<double> rhs = {uniform(20, 100), uniform(20, 100)};
    ASSERT_EQ(ZRVSchgrhs(prob, 2, rows.data(), rhs.data()), 0);
    if (round % 3 == 1) {
      char type = 'R';
      double range = uniform(5, 15);
      ASSERT_EQ(ZRVSchgrowtype(prob, 1, rows.data(), &type), 0);
      ASSERT_EQ(ZRVSchgrhsrange(prob, 1, rows.data(), &range), 0);
    }
    if (round % 3 == 2) {
      char type = 'L';
      ASSERT_EQ(ZRVSchgrowtype(prob, 1, rows.data() + 1, &type), 0);
    }
    int col = index(150);
    char btype = round % 2 ? 'U' : 'B';
    double bound = uniform(0, 8);
    ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &btype, &bound), 0);
    if (round == 6 || round == 8) {
      ASSERT_EQ(ZRVSchgobjsense(prob, round == 6 ? ZRVS_OBJ_MINIMIZE : ZRVS_OBJ_MAXIMIZE), 0);
    }
    expect_fresh_optimum(solve());
  }
  EXPECT_EQ(counts[0], 1);
  EXPECT_EQ(counts[1], 12);
}

TEST_F(Resolve, AControlChangedBetweenReSolvesReachesHiGHS) {
  build(200);
  solve();
  int j = 0;
  double ub = 0.0;
  char type = 'U';
  std::vector<double> x = lp_x();
  j = static_cast<int>(std::max_element(x.begin(), x.end()) - x.begin());
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &j, &type, &ub), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_LPITERLIMIT, 0), 0);
  int solstatus = -1;
  EXPECT_EQ(optimize(&solstatus), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_ITERLIMIT);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_LPITERLIMIT, 1000000), 0);
  expect_fresh_optimum(solve());
  EXPECT_EQ(counts[0], 1);
}

// A semi-continuous column is one for HiGHS only while its lower end is
// above zero: bounds alone change what HiGHS must be told.
TEST_F(Resolve, ABoundThatMakesAColumnSemiContinuousChangesItsTypeInAMipReSolve) {
  // minimise 2x + 3y, x + y >= 1, x semi-continuous in [0, 10], y in [0, 1].
  add_cols({2, 3}, {0, 0}, {10, 1});
  add_row({1, 1}, 'G', 1);
  set_types(0, "S");
  EXPECT_NEAR(solve(), 2.0, 1e-9);  // x = 1
  int col = 0;
  char type = 'L';
  double lb = 2.0;  // x = 0 or x in [2, 10]: y = 1 costs 3, x = 2 costs 4
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &lb), 0);
  EXPECT_NEAR(solve(), 3.0, 1e-9);
  EXPECT_NEAR(mip_x()[0], 0.0, 1e-9);
  lb = 0.5;  // x = 1 again
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &lb), 0);
  EXPECT_NEAR(solve(), 2.0, 1e-9);
  EXPECT_EQ(counts[0], 1);
}

TEST_F(Resolve, MipReSolvesAfterCostAndSideChangesMatchAFreshSolve) {
  build(40);
  set_types(0, std::string(40, 'I'));
  solve();
  for (int round = 0; round < 4; ++round) {
    int col = 3 * round, row = 5 * round + 1;
    double cost = uniform(1, 30), rhs = uniform(30, 90);
    ASSERT_EQ(ZRVSchgobj(prob, 1, &col, &cost), 0);
    ASSERT_EQ(ZRVSchgrhs(prob, 1, &row, &rhs), 0);
    expect_fresh_optimum(solve());
  }
  EXPECT_EQ(counts[0], 1);
}

}  // namespace
