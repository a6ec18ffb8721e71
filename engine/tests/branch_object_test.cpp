// Branching objects: building, reading back and checking them, and their
// effect on the engine's search when stored for its root.
#include <cstring>
#include <functional>

#include "search_support.h"

namespace {

class BranchObjectTest : public SearchTest {
 protected:
  void SetUp() override {
    SearchTest::SetUp();
    knapsack(10, 31);
    tight_gaps();
    ASSERT_EQ(ZRVS_bo_create(&bo, prob, 1), 0);
  }
  void TearDown() override {
    if (bo) {
      EXPECT_EQ(ZRVS_bo_destroy(bo), 0);
    }
    SearchTest::TearDown();
  }
  std::string bo_error() {
    char text[512];
    int code = 0, bytes = 0;
    EXPECT_EQ(ZRVS_bo_getlasterror(bo, &code, text, sizeof text, &bytes), 0);
    EXPECT_NE(code, 0);
    EXPECT_EQ(bytes, static_cast<int>(std::strlen(text)));
    return text;
  }
  void add_bound(int branch, char type, int col, double value) {
    ASSERT_EQ(ZRVS_bo_addbounds(bo, branch, 1, &type, &col, &value), 0) << bo_error();
  }
  // The knapsack's optimum with `extra` (a predicate on the chosen items).
  double knapsack_best(const std::function<bool(const std::vector<int> &)> &extra) {
    const int n = 10;
    std::vector<double> value(n), w(n), rhs(1);
    std::vector<int64_t> start(2);
    std::vector<int> col(n);
    int64_t nz = 0;
    EXPECT_EQ(ZRVSgetobj(prob, value.data(), 0, n - 1), 0);
    std::vector<double> coef(n);
    EXPECT_EQ(ZRVSgetrows64(prob, start.data(), col.data(), coef.data(), n, &nz, 0, 0), 0);
    for (int64_t k = 0; k < nz; ++k) w[col[k]] = coef[k];
    EXPECT_EQ(ZRVSgetrhs(prob, rhs.data(), 0, 0), 0);
    double best = -1;
    for (int mask = 0; mask < (1 << n); ++mask) {
      std::vector<int> x(n);
      double v = 0, used = 0;
      for (int j = 0; j < n; ++j) x[j] = mask >> j & 1, v += x[j] * value[j], used += x[j] * w[j];
      if (used <= rhs[0] && extra(x) && v > best) best = v;
    }
    return best;
  }
  ZRVSbranchobject bo = nullptr;
};

TEST_F(BranchObjectTest, BranchesHoldBoundsRowsAndCutsThatReadBack) {
  ASSERT_EQ(ZRVS_bo_addbranches(bo, 2), 0);
  int n = 0;
  ASSERT_EQ(ZRVS_bo_getbranches(bo, &n), 0);
  EXPECT_EQ(n, 2);
  add_bound(0, 'U', 2, 0.0);
  add_bound(0, 'L', 3, 1.0);
  char rtype[2] = {'G', 'L'};
  double rhs[2] = {1, 5};
  int start[2] = {0, 2}, cols[3] = {0, 1, 4};
  double coef[3] = {1, 1, 2};
  ASSERT_EQ(ZRVS_bo_addrows(bo, 1, 2, 3, rtype, rhs, start, cols, coef), 0) << bo_error();
  int nb = 0;
  char bt[4];
  int bc[4];
  double bv[4];
  ASSERT_EQ(ZRVS_bo_getbounds(bo, 0, &nb, 4, bt, bc, bv), 0);
  ASSERT_EQ(nb, 2);
  EXPECT_EQ(bt[1], 'L');
  EXPECT_EQ(bc[1], 3);
  EXPECT_EQ(bv[1], 1.0);
  int nr = 0, nz = 0, rs[3];
  char rt[2];
  double rr[2], rv[3];
  int rc[3];
  ASSERT_EQ(ZRVS_bo_getrows(bo, 1, &nr, 2, &nz, 3, rt, rr, rs, rc, rv), 0);
  EXPECT_EQ(nr, 2);
  EXPECT_EQ(nz, 3);
  EXPECT_EQ(rt[1], 'L');
  EXPECT_EQ(rr[1], 5.0);
  EXPECT_EQ(rs[1], 2);
  EXPECT_EQ(rs[2], 3);
  EXPECT_EQ(rc[2], 4);
  EXPECT_EQ(rv[2], 2.0);
  ASSERT_EQ(ZRVS_bo_getbounds(bo, 1, &nb, 0, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(nb, 0);
  ASSERT_EQ(ZRVS_bo_validate(bo), 0);
  int id1 = 0, id2 = 0;
  ZRVSbranchobject other = nullptr;
  ASSERT_EQ(ZRVS_bo_create(&other, prob, 0), 0);
  ASSERT_EQ(ZRVS_bo_getid(bo, &id1), 0);
  ASSERT_EQ(ZRVS_bo_getid(other, &id2), 0);
  EXPECT_NE(id1, id2);
  ASSERT_EQ(ZRVS_bo_destroy(other), 0);
  EXPECT_NE(ZRVS_bo_getid(other, &id2), 0);  // a destroyed object is refused
}

TEST_F(BranchObjectTest, MistakesAreRefusedWithTheirReason) {
  EXPECT_NE(ZRVS_bo_validate(bo), 0);
  EXPECT_NE(bo_error().find("no branches"), std::string::npos);
  ASSERT_EQ(ZRVS_bo_addbranches(bo, 1), 0);
  char t = 'L';
  int col = 10;
  double v = 1;
  EXPECT_NE(ZRVS_bo_addbounds(bo, 1, 1, &t, &col, &v), 0);
  EXPECT_NE(bo_error().find("branch 1 does not exist"), std::string::npos);
  EXPECT_NE(ZRVS_bo_addbounds(bo, 0, 1, &t, &col, &v), 0);
  EXPECT_NE(bo_error().find("column 10 does not exist"), std::string::npos);
  t = 'X', col = 0;
  EXPECT_NE(ZRVS_bo_addbounds(bo, 0, 1, &t, &col, &v), 0);
  EXPECT_NE(bo_error().find("'X'"), std::string::npos);
  char rt = 'N';
  int start = 0;
  EXPECT_NE(ZRVS_bo_addrows(bo, 0, 1, 1, &rt, &v, &start, &col, &v), 0);
  EXPECT_NE(bo_error().find("'N'"), std::string::npos);
  EXPECT_NE(ZRVS_bo_setpreferredbranch(bo, 3), 0);
  EXPECT_NE(ZRVS_bo_addbranches(bo, -1), 0);
  ZRVSbranchobject none = nullptr;
  EXPECT_NE(ZRVS_bo_create(&none, nullptr, 1), 0);
  EXPECT_EQ(none, nullptr);
}

TEST_F(BranchObjectTest, AStoredObjectBranchesTheRoot) {
  // One branch only: items 0 and 1 both taken. The search must stay in it.
  ASSERT_EQ(ZRVS_bo_addbranches(bo, 1), 0);
  add_bound(0, 'L', 0, 1.0);
  add_bound(0, 'B', 1, 1.0);
  ASSERT_EQ(ZRVS_bo_store(bo), 0) << bo_error();
  EXPECT_NEAR(solve_with(0),
              knapsack_best([](const std::vector<int> &x) { return x[0] == 1 && x[1] == 1; }),
              1e-6);
  EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_OPTIMAL);
}

TEST_F(BranchObjectTest, RowsAndPriorityDecideWhichBranchingIsUsed) {
  // Object A (priority 5): one branch, at most two items. Object B
  // (priority 1): one branch, item 2 left out. B wins.
  ASSERT_EQ(ZRVS_bo_addbranches(bo, 1), 0);
  char rt = 'L';
  double rhs = 2;
  int start = 0, cols[10];
  double coef[10];
  for (int j = 0; j < 10; ++j) cols[j] = j, coef[j] = 1;
  ASSERT_EQ(ZRVS_bo_addrows(bo, 0, 1, 10, &rt, &rhs, &start, cols, coef), 0) << bo_error();
  ASSERT_EQ(ZRVS_bo_setpriority(bo, 5), 0);
  ASSERT_EQ(ZRVS_bo_store(bo), 0);
  ZRVSbranchobject b = nullptr;
  ASSERT_EQ(ZRVS_bo_create(&b, prob, 1), 0);
  ASSERT_EQ(ZRVS_bo_addbranches(b, 1), 0);
  char t = 'U';
  int col = 2;
  double zero = 0;
  ASSERT_EQ(ZRVS_bo_addbounds(b, 0, 1, &t, &col, &zero), 0);
  ASSERT_EQ(ZRVS_bo_setpriority(b, 1), 0);
  ASSERT_EQ(ZRVS_bo_store(b), 0);
  ASSERT_EQ(ZRVS_bo_destroy(b), 0);  // the search keeps its own copy
  const double only_b = knapsack_best([](const std::vector<int> &x) { return x[2] == 0; });
  EXPECT_NEAR(solve_with(0), only_b, 1e-6);
}

TEST_F(BranchObjectTest, ACompleteBranchingKeepsTheOptimumWhicheverBranchIsPreferred) {
  const double best = knapsack_best([](const std::vector<int> &) { return true; });
  // Branches: at most three items, or at least four.
  ASSERT_EQ(ZRVS_bo_addbranches(bo, 2), 0);
  int start = 0, cols[10];
  double coef[10];
  for (int j = 0; j < 10; ++j) cols[j] = j, coef[j] = 1;
  char le = 'L', ge = 'G';
  double three = 3, four = 4;
  ASSERT_EQ(ZRVS_bo_addrows(bo, 0, 1, 10, &le, &three, &start, cols, coef), 0);
  ASSERT_EQ(ZRVS_bo_addrows(bo, 1, 1, 10, &ge, &four, &start, cols, coef), 0);
  for (int preferred : {0, 1}) {
    ASSERT_EQ(ZRVS_bo_setpreferredbranch(bo, preferred), 0);
    ASSERT_EQ(ZRVS_bo_store(bo), 0);
    EXPECT_NEAR(solve_with(0), best, 1e-6) << "preferred " << preferred;
    EXPECT_GE(int64_attrib(ZRVS_NODES), 3);  // the root and both branches
  }
}

}  // namespace
