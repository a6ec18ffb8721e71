// Bases: reading the basis of an LP solve, loading one, and LP re-solves
// starting from the basis of the solve before them.
#include <cmath>
#include <vector>

#include "model_support.h"

namespace {

constexpr int L = ZRVS_BASIS_NONBASIC_LOWER, B = ZRVS_BASIS_BASIC,
              U = ZRVS_BASIS_NONBASIC_UPPER;

class BasisTest : public ModelTest {
 protected:
  // max 3x + 4y (as min -3x - 4y): x + 2y <= 14, 3x - y >= 0, x - y <= 2.
  // Optimum x = 6, y = 4 with the first and third rows active.
  void build_small_lp(ZRVSprob target) {
    std::swap(prob, target);
    add_cols({-3, -4}, {0, 0}, {1e20, 1e20});
    add_row({1, 2}, 'L', 14);
    add_row({3, -1}, 'G', 0);
    add_row({1, -1}, 'L', 2);
    std::swap(prob, target);
  }
  // A dense LP that takes the simplex method a few dozen iterations.
  void build_dense_lp(ZRVSprob target, int n) {
    std::swap(prob, target);
    std::vector<double> cost(n), zero(n, 0.0), inf(n, 1e20);
    for (int j = 0; j < n; ++j) cost[j] = -1.0 - (j * 7 % 11);
    add_cols(cost, zero, inf);
    for (int i = 0; i < n; ++i) {
      std::vector<double> row(n);
      for (int j = 0; j < n; ++j) row[j] = (i * j * 13 + i * 3 + j * 5) % 17;
      add_row(row, 'L', 100 + (i * 37) % 50);
    }
    std::swap(prob, target);
  }
  void basis(std::vector<int> &rows, std::vector<int> &cols) {
    rows.assign(int_attrib(ZRVS_ROWS), -1);
    cols.assign(int_attrib(ZRVS_COLS), -1);
    ASSERT_EQ(ZRVSgetbasis(prob, rows.data(), cols.data()), 0) << last_error();
  }
  ZRVSprob fresh() {
    ZRVSprob other = nullptr;
    EXPECT_EQ(ZRVScreateprob(&other), 0);
    EXPECT_EQ(ZRVSsetintcontrol(other, ZRVS_OUTPUTLOG, 0), 0);
    return other;
  }
};

TEST_F(BasisTest, AnLpSolveLeavesItsOptimalBasis) {
  std::vector<int> rows, cols;
  expect_failure(ZRVSgetbasis(prob, nullptr, nullptr), "no basis is available");
  build_small_lp(prob);
  optimize();
  EXPECT_EQ(lp_x(), (std::vector<double>{6, 4}));
  basis(rows, cols);
  EXPECT_EQ(rows, (std::vector<int>{L, B, L}));
  EXPECT_EQ(cols, (std::vector<int>{B, B}));
  EXPECT_GT(int64_attrib(ZRVS_SIMPLEXITER), 0);
  // The re-solve starts at the optimum.
  optimize();
  EXPECT_EQ(int64_attrib(ZRVS_SIMPLEXITER), 0);
  EXPECT_DOUBLE_EQ(dbl_attrib(ZRVS_LPOBJVAL), -34.0);
  // Either output may be left out.
  EXPECT_EQ(ZRVSgetbasis(prob, nullptr, cols.data()), 0);
}

TEST_F(BasisTest, RangedRowsAndBoundsTellWhichSideIsActive) {
  // x in [0, 8]; 6 <= x + y <= 10 (rhs 10, range 4); y in [0, 1].
  add_cols({1, 0}, {0, 0}, {8, 1});
  add_row({1, 1}, 'R', 10, 4);
  optimize();  // min x: x = 5, y = 1, the row at its lower side rhs - range
  std::vector<int> rows, cols;
  basis(rows, cols);
  EXPECT_EQ(rows, (std::vector<int>{U}));
  EXPECT_EQ(cols, (std::vector<int>{B, U}));
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  optimize();  // max x: x = 8 at its bound, the row between its sides
  basis(rows, cols);
  EXPECT_EQ(lp_x()[0], 8.0);
  EXPECT_EQ(cols[0], U);
  EXPECT_EQ(rows[0] == B || cols[1] == B, true);
}

TEST_F(BasisTest, ReSolvesAfterChangesStartWarmAndAgreeWithColdSolves) {
  const int n = 40;
  build_dense_lp(prob, n);
  optimize();
  int64_t cold = int64_attrib(ZRVS_SIMPLEXITER);
  ASSERT_GT(cold, 5) << cold;
  // A new cost for one column, a new row and a new column: each re-solve
  // starts from the basis before it.
  int col = 3;
  double cost = -9;
  ASSERT_EQ(ZRVSchgobj(prob, 1, &col, &cost), 0);
  optimize();
  EXPECT_LT(int64_attrib(ZRVS_SIMPLEXITER), cold);
  add_row(std::vector<double>(n, 1.0), 'L', 20);
  add_cols({-20}, {0}, {5});
  std::vector<int> rows, cols;
  expect_failure(ZRVSgetbasis(prob, rows.data(), cols.data()), "rows or columns were added");
  optimize();
  EXPECT_LT(int64_attrib(ZRVS_SIMPLEXITER), cold);
  basis(rows, cols);
  EXPECT_EQ(rows.size(), static_cast<size_t>(n + 1));
  double warm = dbl_attrib(ZRVS_LPOBJVAL);

  // The same model built afresh and solved from scratch.
  ZRVSprob other = fresh();
  build_dense_lp(other, n);
  ASSERT_EQ(ZRVSchgobj(other, 1, &col, &cost), 0);
  std::swap(prob, other);
  add_row(std::vector<double>(n, 1.0), 'L', 20);
  add_cols({-20}, {0}, {5});
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), warm, 1e-9 * std::fabs(warm));
  std::swap(prob, other);
  EXPECT_EQ(ZRVSdestroyprob(other), 0);
}

TEST_F(BasisTest, DeletingRowsOrColumnsAndIntegerSolvesLeaveNoBasis) {
  build_small_lp(prob);
  optimize();
  int last = 2;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &last), 0);
  expect_failure(ZRVSgetbasis(prob, nullptr, nullptr), "no basis is available");
  optimize();  // max 3x + 4y with x + 2y <= 14, 3x >= y: x = 14, y = 0
  EXPECT_DOUBLE_EQ(dbl_attrib(ZRVS_LPOBJVAL), -42.0);
  ASSERT_EQ(ZRVSgetbasis(prob, nullptr, nullptr), 0);
  int first = 0;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &first), 0);
  expect_failure(ZRVSgetbasis(prob, nullptr, nullptr), "no basis is available");

  ZRVSprob other = fresh();
  std::swap(prob, other);
  add_cols({-1, -1}, {0, 0}, {3.5, 3.5});
  set_types(0, "II");
  add_row({1, 1}, 'L', 5.5);
  optimize();
  expect_failure(ZRVSgetbasis(prob, nullptr, nullptr), "no basis is available");
  std::swap(prob, other);
  EXPECT_EQ(ZRVSdestroyprob(other), 0);
}

TEST_F(BasisTest, ALoadedBasisIsWhereTheSolveStarts) {
  build_small_lp(prob);
  optimize();
  std::vector<int> rows, cols;
  basis(rows, cols);

  ZRVSprob other = fresh();
  build_small_lp(other);
  std::swap(prob, other);
  ASSERT_EQ(ZRVSloadbasis(prob, rows.data(), cols.data()), 0) << last_error();
  optimize();
  EXPECT_EQ(int64_attrib(ZRVS_SIMPLEXITER), 0);
  EXPECT_EQ(lp_x(), (std::vector<double>{6, 4}));

  // Refused bases leave the stored one as it was.
  struct Bad {
    std::vector<int> rows, cols;
    const char *expected;
  } bad[] = {
      {{L, B, 7}, {B, B}, "status 7 of row 2 is not a basis status"},
      {{L, B, L}, {B, -1}, "status -1 of column 1"},
      {{L, B, L}, {B, U}, "column 1 is nonbasic at its upper bound, which is infinite"},
      {{U, B, B}, {B, L}, "row 0 is nonbasic at its upper bound, which only ranged rows have"},
      {{L, L, L}, {B, B}, "the basis has 2 basic entries; it needs one per row (3)"},
  };
  for (const Bad &b : bad) {
    SCOPED_TRACE(b.expected);
    expect_failure(ZRVSloadbasis(prob, b.rows.data(), b.cols.data()), b.expected);
  }
  expect_failure(ZRVSloadbasis(prob, nullptr, cols.data()), "both status arrays are needed");
  std::vector<int> rows_after, cols_after;
  basis(rows_after, cols_after);
  EXPECT_EQ(rows_after, rows);
  EXPECT_EQ(cols_after, cols);

  // A poor but valid basis (all slacks basic) still solves to the optimum.
  std::vector<int> slack_rows{B, B, B}, slack_cols{L, L};
  ASSERT_EQ(ZRVSloadbasis(prob, slack_rows.data(), slack_cols.data()), 0);
  optimize();
  EXPECT_GT(int64_attrib(ZRVS_SIMPLEXITER), 0);
  EXPECT_EQ(lp_x(), (std::vector<double>{6, 4}));
  std::swap(prob, other);
  EXPECT_EQ(ZRVSdestroyprob(other), 0);
}

}  // namespace
