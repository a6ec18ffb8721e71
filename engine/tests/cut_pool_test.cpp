// The cut pool, delayed rows, model cuts and branch bounds: what they store
// and read back, and how they change the engine's search.
#include <functional>

#include "search_support.h"

namespace {

class CutPoolTest : public SearchTest {
 protected:
  static constexpr int kItems = 12;
  void SetUp() override {
    SearchTest::SetUp();
    knapsack(kItems, 21);
    tight_gaps();
  }
  // The best knapsack value over the subsets that `allowed` accepts.
  double best_subset(const std::function<bool(int)> &allowed) {
    std::vector<double> value(kItems), weight(kItems), rhs(1);
    EXPECT_EQ(ZRVSgetobj(prob, value.data(), 0, kItems - 1), 0);
    std::vector<int64_t> start(2);
    std::vector<int> col(kItems);
    int64_t n = 0;
    EXPECT_EQ(ZRVSgetrows64(prob, start.data(), col.data(), weight.data(), kItems, &n, 0, 0), 0);
    EXPECT_EQ(ZRVSgetrhs(prob, rhs.data(), 0, 0), 0);
    std::vector<double> w(kItems, 0.0);
    for (int64_t k = 0; k < n; ++k) w[col[k]] = weight[k];
    double best = -1;
    for (int mask = 0; mask < (1 << kItems); ++mask) {
      if (!allowed(mask)) continue;
      double v = 0, used = 0;
      for (int j = 0; j < kItems; ++j)
        if (mask >> j & 1) v += value[j], used += w[j];
      if (used <= rhs[0] && v > best) best = v;
    }
    return best;
  }
  ZRVScut store(int type, std::vector<int> cols, std::vector<double> coef, char rowtype,
                double rhs, int nodups = 0) {
    int64_t start[2] = {0, static_cast<int64_t>(cols.size())};
    ZRVScut handle = nullptr;
    EXPECT_EQ(ZRVSstorecuts64(prob, 1, nodups, &type, &rowtype, &rhs, start, &handle,
                              cols.data(), coef.data()),
              0)
        << last_error();
    return handle;
  }
};

TEST_F(CutPoolTest, StoredCutsHoldAtTheSolutionAndReadBack) {
  // A "cut" that removes the items 0 and 1 together: the search must keep it.
  ZRVScut pair = store(1, {0, 1}, {1, 1}, 'L', 1);
  ZRVScut loose = store(2, {2}, {1}, 'L', 1);
  const double expected = best_subset([](int mask) { return (mask & 3) != 3; });
  const double own = solve_with(0);  // the pool calls for the engine's search
  EXPECT_NEAR(own, expected, 1e-6);
  std::vector<double> x = mip_x();
  EXPECT_LE(x[0] + x[1], 1 + 1e-6);
  double slack = 0;
  ASSERT_EQ(ZRVSgetcutslack(prob, pair, &slack), 0) << last_error();
  EXPECT_NEAR(slack, 1 - x[0] - x[1], 1e-9);

  ZRVScut handles[2] = {pair, loose};
  int types[2], n = 0;
  char rowtype[2];
  int64_t start[3], ncoefs = 0;
  int cols[3];
  double coef[3], rhs[2];
  ASSERT_EQ(ZRVSgetcpcuts64(prob, handles, 2, 3, &ncoefs, types, rowtype, start, cols, coef, rhs),
            0);
  EXPECT_EQ(ncoefs, 3);
  EXPECT_EQ(types[0], 1);
  EXPECT_EQ(types[1], 2);
  EXPECT_EQ(start[1], 2);
  EXPECT_EQ(start[2], 3);
  EXPECT_EQ(cols[2], 2);
  EXPECT_EQ(rhs[0], 1);
  // By type: equal, some bit, all bits.
  ZRVScut found[2];
  ASSERT_EQ(ZRVSgetcpcutlist(prob, 2, 1, -1e20, &n, 2, found, nullptr), 0);
  EXPECT_EQ(n, 1);
  EXPECT_EQ(found[0], loose);
  ASSERT_EQ(ZRVSgetcpcutlist(prob, 3, 2, -1e20, &n, 2, found, nullptr), 0);
  EXPECT_EQ(n, 2);
  ASSERT_EQ(ZRVSgetcpcutlist(prob, 3, 3, -1e20, &n, 2, found, nullptr), 0);
  EXPECT_EQ(n, 0);
  expect_failure(ZRVSgetcpcutlist(prob, 0, 7, 0, &n, 0, nullptr, nullptr), "interp 7");
}

TEST_F(CutPoolTest, DuplicatesAndDeletionFollowTheirRules) {
  ZRVScut a = store(1, {0, 1}, {1, 1}, 'L', 1);
  EXPECT_EQ(store(1, {0, 1}, {1, 1}, 'L', 1, 1), a);  // equal cut: its handle again
  EXPECT_NE(store(5, {0, 1}, {1, 1}, 'L', 1, 1), a);  // another type is another cut
  EXPECT_EQ(store(5, {0, 1}, {1, 1}, 'L', 1, 2), a);  // unless types do not count
  EXPECT_NE(store(1, {0, 1}, {1, 1}, 'L', 1, 0), a);  // nodups 0 stores again
  int n = 0;
  ASSERT_EQ(ZRVSgetcpcutlist(prob, 0, -1, -1e20, &n, 0, nullptr, nullptr), 0);
  EXPECT_EQ(n, 3);
  ASSERT_EQ(ZRVSdelcpcuts(prob, 5, 1, -1, nullptr), 0);
  ASSERT_EQ(ZRVSgetcpcutlist(prob, 0, -1, -1e20, &n, 0, nullptr, nullptr), 0);
  EXPECT_EQ(n, 2);
  ASSERT_EQ(ZRVSdelcpcuts(prob, 0, -1, 1, &a), 0);
  double slack;
  expect_failure(ZRVSgetcutslack(prob, a, &slack), "not a cut of this problem's pool");
  // Bad cuts are refused whole.
  int type = 0;
  char bad = 'R';
  double rhs = 1;
  int64_t start[2] = {0, 1};
  int col = 99;
  double coef = 1;
  expect_failure(ZRVSstorecuts64(prob, 1, 0, &type, &bad, &rhs, start, nullptr, &col, &coef),
                 "row type 'R'");
  char l = 'L';
  expect_failure(ZRVSstorecuts64(prob, 1, 0, &type, &l, &rhs, start, nullptr, &col, &coef),
                 "names column 99");
}

TEST_F(CutPoolTest, CutsLoadedOutsideASearchWaitForItsRoot) {
  ZRVScut c[2] = {store(1, {0}, {1}, 'L', 0), store(2, {1}, {1}, 'L', 0)};
  int n = -1;
  ASSERT_EQ(ZRVSgetcutlist(prob, 0, -1, &n, 0, nullptr), 0);
  EXPECT_EQ(n, 0);
  ASSERT_EQ(ZRVSloadcuts(prob, 0, -1, 2, c), 0) << last_error();
  ZRVScut listed[2];
  ASSERT_EQ(ZRVSgetcutlist(prob, 2, 1, &n, 2, listed), 0);
  ASSERT_EQ(n, 1);
  EXPECT_EQ(listed[0], c[1]);
  int map[2] = {7, 7};
  ASSERT_EQ(ZRVSgetcutmap(prob, 2, c, map), 0);
  EXPECT_EQ(map[0], -1);  // no node LP outside a search
  ASSERT_EQ(ZRVSdelcuts(prob, 0, 1, 1, 0.0, -1, nullptr), 0);
  ASSERT_EQ(ZRVSgetcutlist(prob, 0, -1, &n, 0, nullptr), 0);
  EXPECT_EQ(n, 1);
  // Both cuts stay in the pool, and both hold at the solution.
  solve_with(0);
  std::vector<double> x = mip_x();
  EXPECT_NEAR(x[0], 0.0, 1e-9);
  EXPECT_NEAR(x[1], 0.0, 1e-9);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), best_subset([](int m) { return (m & 3) == 0; }), 1e-6);
}

TEST_F(CutPoolTest, BranchBoundsSetBeforeTheSearchRestrictItsRoot) {
  int col = 3;
  char type = 'L';
  double value = 1;
  void *bounds = nullptr;
  ASSERT_EQ(ZRVSstorebounds(prob, 1, &col, &type, &value, &bounds), 0) << last_error();
  ASSERT_EQ(ZRVSsetbranchbounds(prob, bounds), 0) << last_error();
  EXPECT_NEAR(solve_with(0), best_subset([](int m) { return (m >> 3 & 1) == 1; }), 1e-6);
  EXPECT_NEAR(mip_x()[3], 1.0, 1e-9);
  int other = 0;
  expect_failure(ZRVSsetbranchbounds(prob, &other), "not stored on this problem");
  col = 100;
  expect_failure(ZRVSstorebounds(prob, 1, &col, &type, &value, &bounds), "column 100");
}

TEST_F(CutPoolTest, DelayedRowsAndModelCutsStillHoldAtTheOptimum) {
  const double expected = best_subset([](int) { return true; });
  int row = 0;
  ASSERT_EQ(ZRVSloaddelayedrows(prob, 1, &row), 0) << last_error();
  EXPECT_NEAR(solve_with(0), expected, 1e-6);
  expect_rows_hold();
  ASSERT_EQ(ZRVSloadmodelcuts(prob, 1, &row), 0);
  EXPECT_NEAR(solve_with(0), expected, 1e-6);
  expect_rows_hold();
  row = 5;
  expect_failure(ZRVSloaddelayedrows(prob, 1, &row), "row 5 does not exist");
}

TEST_F(SearchTest, PoolCutsTightenTheSearchOfAWeakFormulation) {
  // Facility location with aggregated linking rows; the pool holds the
  // disaggregated ones (x[c][f] <= open[f]). Same optimum, fewer nodes.
  const int nf = 5, nc = 14;
  facility(nf, nc, 3, true);
  tight_gaps();
  const double plain = solve_with(1);
  const int64_t plain_nodes = int64_attrib(ZRVS_NODES);
  std::vector<int> type, cols;
  std::vector<char> rowtype;
  std::vector<double> rhs, coef;
  std::vector<int64_t> start = {0};
  for (int c = 0; c < nc; ++c)
    for (int f = 0; f < nf; ++f) {
      type.push_back(1), rowtype.push_back('L'), rhs.push_back(0);
      cols.push_back(nf + c * nf + f), coef.push_back(1);
      cols.push_back(f), coef.push_back(-1);
      start.push_back(static_cast<int64_t>(cols.size()));
    }
  ASSERT_EQ(ZRVSstorecuts64(prob, nf * nc, 0, type.data(), rowtype.data(), rhs.data(),
                            start.data(), nullptr, cols.data(), coef.data()),
            0);
  const double with_cuts = solve_with(1);
  EXPECT_NEAR(with_cuts, plain, 1e-6 * std::fabs(plain));
  EXPECT_LT(int64_attrib(ZRVS_NODES), plain_nodes);
  expect_rows_hold();
}

}  // namespace
