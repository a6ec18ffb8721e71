// Infeasible subsystems: each one found is infeasible, and dropping any of
// its rows or bounds makes it feasible.
#include <vector>

#include "model_support.h"

namespace {

constexpr double kInf = ZRVS_PLUSINFINITY;

// x, y in [0, 1]; r0: x + y >= 5 and r1: x >= 3 each clash with the upper
// bounds; r2: x - y <= 3 takes no part.
const double kA[3][2] = {{1, 1}, {1, 0}, {1, -1}};
const char kType[3] = {'G', 'G', 'L'};
const double kRhs[3] = {5, 3, 3};

class IisTest : public ModelTest {
 protected:
  void build(ZRVSprob q, const std::vector<int> &rows, const std::vector<char> &ub_kept) {
    ZRVSprob keep = prob;
    prob = q;
    ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0);
    add_cols({0, 0}, {0, 0}, {ub_kept[0] ? 1 : kInf, ub_kept[1] ? 1 : kInf});
    for (int i : rows) add_row({kA[i][0], kA[i][1]}, kType[i], kRhs[i]);
    prob = keep;
  }
  // Whether the rows and kept upper bounds (lower bounds 0 always) are feasible.
  bool feasible(const std::vector<int> &rows, const std::vector<char> &ub_kept) {
    ZRVSprob q = nullptr;
    EXPECT_EQ(ZRVScreateprob(&q), 0);
    build(q, rows, ub_kept);
    int solve = 0, sol = 0;
    EXPECT_EQ(ZRVSoptimize(q, "", &solve, &sol), 0);
    ZRVSdestroyprob(q);
    return sol == ZRVS_SOLSTATUS_OPTIMAL;
  }
};

TEST_F(IisTest, EverySubsystemIsInfeasibleAndIrreducible) {
  build(prob, {0, 1, 2}, {1, 1});
  ASSERT_EQ(ZRVSiisall(prob), 0) << last_error();
  int n = 0;
  ASSERT_EQ(ZRVSiisstatus(prob, &n, nullptr, nullptr), 0);
  ASSERT_EQ(n, 2);
  std::vector<int> nrows(n), ncols(n);
  ASSERT_EQ(ZRVSiisstatus(prob, &n, nrows.data(), ncols.data()), 0);
  for (int k = 1; k <= n; ++k) {
    std::vector<int> rows(nrows[k - 1]), cols(ncols[k - 1]);
    std::vector<char> types(rows.size()), bounds(cols.size());
    int r = 0, c = 0;
    ASSERT_EQ(ZRVSgetiisdata(prob, k, &r, &c, rows.data(), cols.data(), types.data(),
                             bounds.data()),
              0);
    for (char b : bounds) EXPECT_EQ(b, 'U');  // lower bounds 0 are not needed
    for (int i : rows) EXPECT_NE(i, 2);
    std::vector<char> ub(2, 0);
    for (int j : cols) ub[j] = 1;
    EXPECT_FALSE(feasible(rows, ub));
    for (size_t drop = 0; drop < rows.size(); ++drop) {
      std::vector<int> fewer(rows);
      fewer.erase(fewer.begin() + drop);
      EXPECT_TRUE(feasible(fewer, ub));
    }
    for (int j : cols) {
      std::vector<char> looser(ub);
      looser[j] = 0;
      EXPECT_TRUE(feasible(rows, looser));
    }
  }
  ASSERT_EQ(ZRVSiisclear(prob), 0);
  ASSERT_EQ(ZRVSiisstatus(prob, &n, nullptr, nullptr), 0);
  EXPECT_EQ(n, 0);
}

TEST_F(IisTest, FeasibleModelsHaveNoSubsystemAndChangesForgetThem) {
  build(prob, {2}, {1, 1});
  int status = -1, n = -1;
  ASSERT_EQ(ZRVSiisfirst(prob, 1, &status), 0);
  EXPECT_EQ(status, 1);
  add_row({1, 0}, 'G', 3);
  ASSERT_EQ(ZRVSiisfirst(prob, 0, &status), 0);
  EXPECT_EQ(status, 0);
  ASSERT_EQ(ZRVSiisnext(prob, &status), 0);
  EXPECT_EQ(status, 1);
  int col = 0;
  char type = 'U';
  double bound = 5;
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &bound), 0);
  ASSERT_EQ(ZRVSiisstatus(prob, &n, nullptr, nullptr), 0);
  EXPECT_EQ(n, 0);
  expect_failure(ZRVSgetiisdata(prob, 1, &n, &n, nullptr, nullptr, nullptr, nullptr),
                 "no subsystem 1");
  expect_failure(ZRVSiisfirst(prob, 7, &status), "mode 7");
}

}  // namespace
