// Model storage through the entry points: bulk adds read back, deletions that
// keep matrix, names, sets, indicators and quadratic parts consistent, and
// bad input that fails with a text naming the argument and changes nothing.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

#include "model_support.h"

namespace {

// Three columns and two rows given by columns:
//   row 0: 1 x0 + 2 x1        <= 4
//   row 1:        3 x1 + 4 x2 >= 1
class SmallModel : public ModelTest {
 protected:
  void build() {
    char types[2] = {'L', 'G'};
    double rhs[2] = {4, 1};
    ASSERT_EQ(ZRVSaddrows64(prob, 2, 0, types, rhs, nullptr, nullptr, nullptr, nullptr), 0);
    int64_t start[3] = {0, 1, 3};
    int rowind[4] = {0, 0, 1, 1};
    double coef[4] = {1, 2, 3, 4};
    double obj[3] = {1, 1, 1}, lb[3] = {0, -1, 0}, ub[3] = {5, 6, 7};
    ASSERT_EQ(ZRVSaddcols64(prob, 3, 4, obj, start, rowind, coef, lb, ub), 0) << last_error();
    ASSERT_EQ(ZRVSaddnames(prob, 2, "x0\0x1\0x2", 0, 2), 0);
    ASSERT_EQ(ZRVSaddnames(prob, 1, "cap\0need", 0, 1), 0);
  }
  // The index of a name (-1: none); fails the test if the call fails.
  int index_of(int type, const char *name) {
    int index = -2;
    EXPECT_EQ(ZRVSgetindex(prob, type, name, &index), 0) << last_error();
    return index;
  }
  std::string names(int type, int first, int last) {
    int n = 0;
    EXPECT_EQ(ZRVSgetnamelist(prob, type, nullptr, 0, &n, first, last), 0);
    std::string buf(n, '?');
    EXPECT_EQ(ZRVSgetnames(prob, type, &buf[0], first, last), 0);
    for (char &c : buf)
      if (c == '\0') c = ',';
    return buf;
  }
};

TEST_F(SmallModel, ReadsBackColumnsRowsAndNames) {
  build();
  EXPECT_EQ(int_attrib(ZRVS_COLS), 3);
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 2);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), 4);
  int64_t start[3], n = 0;
  int ind[4];
  double val[4];
  ASSERT_EQ(ZRVSgetrows64(prob, start, ind, val, 4, &n, 0, 1), 0);
  EXPECT_EQ(n, 4);
  EXPECT_EQ(start[1], 2);
  EXPECT_EQ(ind[1], 1);
  EXPECT_EQ(val[1], 2.0);
  EXPECT_EQ(ind[3], 2);
  EXPECT_EQ(val[3], 4.0);
  // maxcoefs smaller than the range: only that many entries, full count.
  int64_t cstart[3];
  ASSERT_EQ(ZRVSgetcols64(prob, cstart, ind, val, 1, &n, 1, 2), 0);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(ind[0], 0);
  EXPECT_EQ(cstart[2], 1);
  double lb[3], ub[3];
  ASSERT_EQ(ZRVSgetlb(prob, lb, 0, 2), 0);
  ASSERT_EQ(ZRVSgetub(prob, ub, 1, 2), 0);
  EXPECT_EQ(lb[1], -1.0);
  EXPECT_EQ(ub[1], 7.0);
  char rowtype[2];
  double rhs[2], rng[2];
  ASSERT_EQ(ZRVSgetrowtype(prob, rowtype, 0, 1), 0);
  ASSERT_EQ(ZRVSgetrhs(prob, rhs, 0, 1), 0);
  ASSERT_EQ(ZRVSgetrhsrange(prob, rng, 0, 1), 0);
  EXPECT_EQ(rowtype[1], 'G');
  EXPECT_EQ(rhs[1], 1.0);
  EXPECT_EQ(rng[0], ZRVS_PLUSINFINITY);
  EXPECT_EQ(names(2, 0, 2), "x0,x1,x2,");
  EXPECT_EQ(index_of(1, "need"), 1);
  EXPECT_EQ(index_of(2, "nothere"), -1);
}

TEST_F(SmallModel, TypesBoundsAndThresholds) {
  build();
  int cols[3] = {0, 1, 2};
  ASSERT_EQ(ZRVSchgcoltype(prob, 3, cols, "BIS"), 0);
  EXPECT_EQ(int_attrib(ZRVS_MIPENTS), 3);
  char types[3];
  double lb[3], ub[3];
  ASSERT_EQ(ZRVSgetcoltype(prob, types, 0, 2), 0);
  ASSERT_EQ(ZRVSgetlb(prob, lb, 0, 2), 0);
  ASSERT_EQ(ZRVSgetub(prob, ub, 0, 2), 0);
  EXPECT_EQ(std::string(types, 3), "BIS");
  EXPECT_EQ(lb[0], 0.0);  // binary columns get bounds [0, 1]
  EXPECT_EQ(ub[0], 1.0);
  EXPECT_EQ(ub[1], 6.0);  // integer columns keep theirs
  char bt[2] = {'B', 'U'};
  double bv[2] = {2, 3};
  int bc[2] = {1, 1};
  ASSERT_EQ(ZRVSchgbounds(prob, 2, bc, bt, bv), 0);
  ASSERT_EQ(ZRVSgetlb(prob, lb, 1, 1), 0);
  ASSERT_EQ(ZRVSgetub(prob, ub, 1, 1), 0);
  EXPECT_EQ(lb[0], 2.0);
  EXPECT_EQ(ub[0], 3.0);
  double limit = 2.5;
  ASSERT_EQ(ZRVSchgglblimit(prob, 1, &cols[2], &limit), 0);
  expect_failure(ZRVSchgglblimit(prob, 1, &cols[1], &limit), "only S, R and P columns");
}

TEST_F(SmallModel, DeletingColumnsKeepsEverythingConsistent) {
  build();
  int64_t sstart = 0;
  int members[3] = {0, 1, 2};
  double refs[3] = {1, 2, 3};
  ASSERT_EQ(ZRVSaddsets64(prob, 1, 3, "1", &sstart, members, refs), 0);
  ASSERT_EQ(ZRVSchgcoltype(prob, 1, &members[2], "B"), 0);
  int row = 0, flag = 1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &row, &members[2], &flag), 0);
  int qa[2] = {0, 1}, qb[2] = {2, 1};
  double qv[2] = {1, 1};
  ASSERT_EQ(ZRVSaddqmatrix64(prob, 1, 2, qa, qb, qv), 0);
  ASSERT_EQ(ZRVSchgmqobj64(prob, 2, qa, qb, qv), 0);

  int del = 1;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &del), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_COLS), 2);
  EXPECT_EQ(names(2, 0, 1), "x0,x2,");
  int64_t start[3], n = 0;
  int ind[4];
  double val[4];
  ASSERT_EQ(ZRVSgetrows64(prob, start, ind, val, 4, &n, 0, 1), 0);
  ASSERT_EQ(n, 2);  // row 0: x0; row 1: 4 x2 (now column 1)
  EXPECT_EQ(ind[1], 1);
  EXPECT_EQ(val[1], 4.0);
  // The set lost x1; the indicator moved with x2; quadratic terms with x1
  // are gone.
  char st;
  int setcols[3];
  double setrefs[3];
  ASSERT_EQ(ZRVSgetsets64(prob, &st, start, setcols, setrefs, 3, &n, 0, 0), 0);
  ASSERT_EQ(n, 2);
  EXPECT_EQ(setcols[1], 1);
  EXPECT_EQ(setrefs[1], 3.0);
  int icol = -5, icomp = 0;
  ASSERT_EQ(ZRVSgetindicators(prob, &icol, &icomp, 0, 0), 0);
  EXPECT_EQ(icol, 1);
  EXPECT_EQ(int_attrib(ZRVS_QCELEMS), 1);
  EXPECT_EQ(int_attrib(ZRVS_QELEMS), 1);
  int index = -2;
  ASSERT_EQ(ZRVSgetindex(prob, 2, "x2", &index), 0);
  EXPECT_EQ(index, 1);
  // Deleting the indicator's column drops the indicator.
  ASSERT_EQ(ZRVSdelcols(prob, 1, &index), 0);
  EXPECT_EQ(int_attrib(ZRVS_INDICATORS), 0);
}

TEST_F(SmallModel, DeletingRowsAndSets) {
  build();
  int row = 0;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &row), 0);
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 1);
  EXPECT_EQ(names(1, 0, 0), "need,");
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), 2);
  int64_t start[3] = {0, 1, 2};
  int members[2] = {0, 2};
  double refs[2] = {1, 2};
  ASSERT_EQ(ZRVSaddsets64(prob, 2, 2, "12", start, members, refs), 0);
  ASSERT_EQ(ZRVSaddnames(prob, 3, "first\0second", 0, 1), 0);
  int set = 0;
  ASSERT_EQ(ZRVSdelsets(prob, 1, &set), 0);
  EXPECT_EQ(names(3, 0, 0), "second,");
  char st;
  int64_t n = 0;
  ASSERT_EQ(ZRVSgetsets64(prob, &st, nullptr, members, nullptr, 2, &n, 0, 0), 0);
  EXPECT_EQ(st, '2');
  EXPECT_EQ(members[0], 2);
}

TEST_F(SmallModel, UnnamedEntriesHaveGeneratedNames) {
  build();
  char type = 'N';
  ASSERT_EQ(ZRVSaddrows64(prob, 1, 0, &type, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(names(1, 1, 2), "need,R2,");
  int index = -2;
  ASSERT_EQ(ZRVSgetindex(prob, 1, "R2", &index), 0);
  EXPECT_EQ(index, 2);
  ASSERT_EQ(ZRVSgetindex(prob, 1, "R1", &index), 0);
  EXPECT_EQ(index, -1);  // row 1 is called "need"
  char small[4];
  expect_failure(ZRVSgetnamelist(prob, 1, small, 4, nullptr, 0, 2), "maxbytes");
}

// Each bad call fails, names the argument, and leaves the model as it was.
// Renaming again and again and deleting named entries: every name reads
// back and is found, however often its storage has been tidied up.
TEST_F(SmallModel, NamesSurviveManyRenamesAndDeletions) {
  build();
  for (int k = 0; k < 3000; ++k) {
    std::string name = "renamed_column_" + std::to_string(k);
    ASSERT_EQ(ZRVSaddnames(prob, 2, name.c_str(), 1, 1), 0);
  }
  EXPECT_EQ(names(2, 0, 2), "x0,renamed_column_2999,x2,");
  EXPECT_EQ(index_of(2, "renamed_column_2999"), 1);
  EXPECT_EQ(index_of(2, "renamed_column_5"), -1);
  ASSERT_EQ(ZRVSaddnames(prob, 2, "\0", 2, 2), 0);  // back to unnamed
  int first = 0;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &first), 0);
  EXPECT_EQ(names(2, 0, 1), "renamed_column_2999,C1,");
  EXPECT_EQ(index_of(2, "renamed_column_2999"), 0);
  EXPECT_EQ(index_of(2, "C1"), 1);
  EXPECT_EQ(names(1, 0, 1), "cap,need,");
}

TEST_F(SmallModel, BadInputFailsAndChangesNothing) {
  build();
  auto snapshot = [&] {
    std::vector<double> lb(3), ub(3), obj(3);
    ZRVSgetlb(prob, lb.data(), 0, 2);
    ZRVSgetub(prob, ub.data(), 0, 2);
    ZRVSgetobj(prob, obj.data(), 0, 2);
    lb.insert(lb.end(), ub.begin(), ub.end());
    lb.insert(lb.end(), obj.begin(), obj.end());
    lb.push_back(int_attrib(ZRVS_ROWS));
    lb.push_back(int_attrib(ZRVS_COLS));
    lb.push_back(static_cast<double>(int64_attrib(ZRVS_ELEMS)));
    return lb;
  };
  std::vector<double> before = snapshot();
  double nan = std::nan(""), one = 1;
  int bad = 7, ok = 0, neg = -1;
  int64_t zero = 0;
  char L = 'L', X = 'X';
  expect_failure(ZRVSaddcols64(prob, -1, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
                 "ncols is negative");
  expect_failure(ZRVSreserve(prob, -1, 0, 0), "ZRVSreserve: nrows is negative");
  expect_failure(ZRVSreserve(prob, 0, -2, 0), "ncols is negative");
  expect_failure(ZRVSreserve(prob, 0, 0, -3), "ncoefs is negative");
  expect_failure(ZRVSaddcols64(prob, 1, 1, nullptr, &zero, &bad, &one, nullptr, nullptr),
                 "rowind[0] = 7");
  expect_failure(ZRVSaddcols64(prob, 1, 0, nullptr, nullptr, nullptr, nullptr, &nan, nullptr),
                 "lb[0] is NaN");
  int twice[2] = {0, 0};
  double two[2] = {1, 1};
  expect_failure(ZRVSaddcols64(prob, 1, 2, nullptr, &zero, twice, two, nullptr, nullptr),
                 "two coefficients");
  expect_failure(ZRVSaddrows64(prob, 1, 0, &X, &one, nullptr, nullptr, nullptr, nullptr),
                 "rowtype[0]");
  expect_failure(ZRVSaddrows64(prob, 1, 1, &L, &one, nullptr, &zero, nullptr, &one), "colind");
  expect_failure(ZRVSaddrows64(prob, 1, 0, &L, &nan, nullptr, nullptr, nullptr, nullptr),
                 "rhs[0] is NaN");
  char R = 'R';
  expect_failure(ZRVSaddrows64(prob, 1, 0, &R, &one, nullptr, nullptr, nullptr, nullptr), "rng");
  expect_failure(ZRVSchgbounds(prob, 1, &bad, &L, &one), "colind[0] = 7");
  expect_failure(ZRVSchgbounds(prob, 1, &ok, &X, &one), "bndtype[0]");
  expect_failure(ZRVSchgbounds(prob, 1, &ok, &L, &nan), "bndval[0] is NaN");
  expect_failure(ZRVSchgbounds(prob, 1, &ok, &L, nullptr), "bndval is NULL");
  expect_failure(ZRVSchgcoltype(prob, 1, &ok, "Q"), "coltype[0]");
  expect_failure(ZRVSchgobj(prob, 1, &bad, &one), "colind[0] = 7");
  expect_failure(ZRVSchgobj(prob, 1, &ok, &nan), "objcoef[0]");
  expect_failure(ZRVSchgobjn(prob, 3, 1, &ok, &one), "objidx 3");
  expect_failure(ZRVSchgobjsense(prob, 0), "sense");
  expect_failure(ZRVSdelcols(prob, 1, &bad), "colind[0] = 7");
  expect_failure(ZRVSdelrows(prob, 1, &neg), "rowind[0] = -1");
  expect_failure(ZRVSdelsets(prob, 1, &ok), "setind[0] = 0");
  expect_failure(ZRVSaddnames(prob, 4, "a", 0, 0), "type 4");
  expect_failure(ZRVSaddnames(prob, 2, "a", 2, 3), "first..last");
  expect_failure(ZRVSaddqmatrix64(prob, 5, 0, nullptr, nullptr, nullptr), "row[0] = 5");
  expect_failure(ZRVSaddqmatrix64(prob, 0, 1, &ok, &bad, &one), "rowqcol2[0] = 7");
  expect_failure(ZRVSaddsets64(prob, 1, 1, "3", &zero, &ok, &one), "settype[0]");
  int dup[2] = {0, 1};
  double same[2] = {1, 1};
  expect_failure(ZRVSaddsets64(prob, 1, 2, "1", &zero, dup, same), "reference value");
  expect_failure(ZRVSsetindicators(prob, 1, &ok, &ok, &bad), "complement[0]");
  double out[3];
  expect_failure(ZRVSgetlb(prob, out, 2, 1), "first..last");
  expect_failure(ZRVSgetub(prob, out, 0, 3), "first..last");
  expect_failure(ZRVSgetrhs(prob, nullptr, 0, 0), "rhs is NULL");
  int64_t n;
  expect_failure(ZRVSgetcols64(prob, nullptr, nullptr, nullptr, 0, nullptr, 0, 0), "ncoefs");
  expect_failure(ZRVSgetrows64(prob, nullptr, nullptr, nullptr, 0, &n, 0, 5), "first..last");
  expect_failure(ZRVSgetindex(prob, 2, nullptr, &ok), "name is NULL");
  EXPECT_EQ(snapshot(), before);
}

// Many batches of columns and rows: appends stay cheap and the model stays
// exact.
TEST_F(ModelTest, ManyBatchesOfColumnsAndRows) {
  const int batches = 200, per = 500;
  std::vector<double> obj(per, 1), lb(per, 0), ub(per, 1);
  std::vector<int64_t> start(per);
  std::vector<int> ind(per);
  std::vector<double> val(per, 1);
  std::vector<char> types(per, 'L');
  std::vector<double> rhs(per, 1);
  // Room made for the first half only: the second half grows the arrays.
  ASSERT_EQ(ZRVSreserve(prob, batches * per / 2, batches * per / 2, batches * per / 2), 0);
  EXPECT_EQ(int_attrib(ZRVS_ROWS) + int_attrib(ZRVS_COLS) + int64_attrib(ZRVS_ELEMS), 0);
  for (int b = 0; b < batches; ++b) {
    int first = b * per;
    ASSERT_EQ(ZRVSaddcols64(prob, per, 0, obj.data(), nullptr, nullptr, nullptr, lb.data(),
                            ub.data()),
              0);
    // Row k of the batch holds column first + k.
    for (int k = 0; k < per; ++k) start[k] = k, ind[k] = first + k;
    ASSERT_EQ(ZRVSaddrows64(prob, per, per, types.data(), rhs.data(), nullptr, start.data(),
                            ind.data(), val.data()),
              0);
  }
  EXPECT_EQ(int_attrib(ZRVS_COLS), batches * per);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), batches * per);
  int64_t s[2], n = 0;
  int col = -1;
  double v = 0;
  ASSERT_EQ(ZRVSgetrows64(prob, s, &col, &v, 1, &n, 77777, 77777), 0);
  EXPECT_EQ(col, 77777);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), batches * per, 1e-6);
}

// Rows whose columns come in any order: ascending ones, others that are
// checked for repeats after sorting, and a repeat that is refused.
TEST_F(ModelTest, RowsWithColumnsInAnyOrder) {
  double obj[4] = {0, 0, 0, 0};
  ASSERT_EQ(ZRVSaddcols64(prob, 4, 0, obj, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  char types[3] = {'L', 'L', 'L'};
  double rhs[3] = {1, 2, 3};
  int64_t start[3] = {0, 3, 6};
  int ind[8] = {0, 2, 3, 3, 1, 0, 2, 1};
  double val[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  ASSERT_EQ(ZRVSaddrows64(prob, 3, 8, types, rhs, nullptr, start, ind, val), 0) << last_error();
  int64_t s[4], n = 0;
  int col[8];
  double v[8];
  ASSERT_EQ(ZRVSgetrows64(prob, s, col, v, 8, &n, 0, 2), 0);
  ASSERT_EQ(n, 8);
  std::vector<std::pair<int, double>> row1;
  for (int64_t k = s[1]; k < s[2]; ++k) row1.emplace_back(col[k], v[k]);
  std::sort(row1.begin(), row1.end());
  EXPECT_EQ(row1, (std::vector<std::pair<int, double>>{{0, 6}, {1, 5}, {3, 4}}));
  int again[3] = {2, 0, 2};
  int64_t zero = 0;
  expect_failure(ZRVSaddrows64(prob, 1, 3, types, rhs, nullptr, &zero, again, val),
                 "entry 0 of the batch has two coefficients for column 2");
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 3);
}

// A matrix of millions of entries, grown batch by batch past the size where
// its arrays move to another kind of memory: zero coefficients are left
// out, deleting rows keeps the others exact, and it reads back entry for
// entry.
TEST_F(ModelTest, LargeMatrixGrownAndCut) {
  const int ncols = 1000, per_row = 40, batches = 12, rows_per_batch = 2500;
  std::vector<double> obj(ncols, 0);
  ASSERT_EQ(ZRVSaddcols64(prob, ncols, 0, obj.data(), nullptr, nullptr, nullptr, nullptr,
                          nullptr),
            0);
  std::vector<char> types(rows_per_batch, 'L');
  std::vector<double> rhs(rows_per_batch, 1);
  std::vector<int64_t> start(rows_per_batch);
  std::vector<int> ind(static_cast<size_t>(rows_per_batch) * per_row);
  std::vector<double> val(ind.size());
  // Row r holds columns (r + 25 k) % ncols with coefficient r + k, except
  // that every eighth coefficient is zero.
  auto coef = [](int r, int k) { return k % 8 == 7 ? 0.0 : r + k + 1.0; };
  for (int b = 0; b < batches; ++b) {
    for (int i = 0; i < rows_per_batch; ++i) {
      int r = b * rows_per_batch + i;
      start[i] = static_cast<int64_t>(i) * per_row;
      for (int k = 0; k < per_row; ++k) {
        ind[start[i] + k] = (r + 25 * k) % ncols;
        val[start[i] + k] = coef(r, k);
      }
    }
    ASSERT_EQ(ZRVSaddrows64(prob, rows_per_batch, static_cast<int64_t>(ind.size()), types.data(),
                            rhs.data(), nullptr, start.data(), ind.data(), val.data()),
              0)
        << last_error();
  }
  const int rows = batches * rows_per_batch;
  const int64_t kept_per_row = per_row - per_row / 8;
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), rows * kept_per_row);
  // Delete every other row.
  std::vector<int> gone;
  for (int r = 0; r < rows; r += 2) gone.push_back(r);
  ASSERT_EQ(ZRVSdelrows(prob, static_cast<int>(gone.size()), gone.data()), 0);
  ASSERT_EQ(int_attrib(ZRVS_ROWS), rows / 2);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), rows / 2 * kept_per_row);
  std::vector<int64_t> s(rows / 2 + 1);
  std::vector<int> col(static_cast<size_t>(rows / 2) * kept_per_row);
  std::vector<double> v(col.size());
  int64_t n = 0;
  ASSERT_EQ(ZRVSgetrows64(prob, s.data(), col.data(), v.data(), static_cast<int64_t>(col.size()),
                          &n, 0, rows / 2 - 1),
            0);
  ASSERT_EQ(n, static_cast<int64_t>(col.size()));
  for (int i = 0; i < rows / 2; i += 997) {
    int r = 2 * i + 1;  // the original row
    std::vector<std::pair<int, double>> got, want;
    for (int64_t e = s[i]; e < s[i + 1]; ++e) got.emplace_back(col[e], v[e]);
    for (int k = 0; k < per_row; ++k)
      if (coef(r, k) != 0.0) want.emplace_back((r + 25 * k) % ncols, coef(r, k));
    std::sort(got.begin(), got.end());
    std::sort(want.begin(), want.end());
    EXPECT_EQ(got, want) << "row " << i;
  }
}

}  // namespace

namespace {

// The matrix of a problem row by row as sorted (row, column, value) triplets.
std::vector<std::tuple<int, int, double>> triplets(ZRVSprob p) {
  int rows = 0;
  EXPECT_EQ(ZRVSgetintattrib(p, ZRVS_ROWS, &rows), 0);
  std::vector<std::tuple<int, int, double>> out;
  if (rows == 0) return out;
  int64_t n = 0;
  EXPECT_EQ(ZRVSgetrows64(p, nullptr, nullptr, nullptr, 0, &n, 0, rows - 1), 0);
  std::vector<int64_t> start(rows + 1);
  std::vector<int> col(n);
  std::vector<double> val(n);
  EXPECT_EQ(ZRVSgetrows64(p, start.data(), col.data(), val.data(), n, &n, 0, rows - 1), 0);
  for (int i = 0; i < rows; ++i)
    for (int64_t k = start[i]; k < start[i + 1]; ++k) out.emplace_back(i, col[k], val[k]);
  std::sort(out.begin(), out.end());
  return out;
}

}  // namespace

// The same matrix given to ZRVSloadlp (columns with gaps between them, by
// collen), ZRVSaddcols64 and ZRVSaddrows64, with explicit zeros:
//   row 0: 1 x0 + 0 x1 + 2 x2
//   row 1: 0 x0 + 3 x1 - 4 x2
// Every way stores the four non-zero entries and nothing else, and
// deleting a column keeps the others' entries in their rows.
TEST_F(ModelTest, EveryWayOfAddingEntriesStoresTheSameMatrix) {
  const std::vector<std::tuple<int, int, double>> expected = {
      {0, 0, 1}, {0, 2, 2}, {1, 1, 3}, {1, 2, -4}};
  const char types[2] = {'L', 'G'};
  const double rhs[2] = {4, 1};

  // By columns with gaps: column j's entries start at start[j] and run collen[j].
  const int start32[3] = {0, 3, 6}, collen[3] = {2, 2, 2};
  const int rowind32[8] = {0, 1, -7, 0, 1, -7, 0, 1};
  const double coef32[8] = {1, 0, 99, 0, 3, 99, 2, -4};
  ASSERT_EQ(ZRVSloadlp(prob, "loaded", 3, 2, types, rhs, nullptr, nullptr, start32, collen,
                       rowind32, coef32, nullptr, nullptr),
            0)
      << last_error();
  EXPECT_EQ(triplets(prob), expected);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), 4);

  ZRVSprob by_cols = nullptr, by_rows = nullptr;
  ASSERT_EQ(ZRVScreateprob(&by_cols), 0);
  ASSERT_EQ(ZRVScreateprob(&by_rows), 0);
  ASSERT_EQ(ZRVSaddrows64(by_cols, 2, 0, types, rhs, nullptr, nullptr, nullptr, nullptr), 0);
  const int64_t cstart[3] = {0, 2, 4};
  const int crow[6] = {1, 0, 0, 1, 1, 0};
  const double cval[6] = {0, 1, 0, 3, -4, 2};
  ASSERT_EQ(ZRVSaddcols64(by_cols, 3, 6, nullptr, cstart, crow, cval, nullptr, nullptr), 0);
  EXPECT_EQ(triplets(by_cols), expected);

  ASSERT_EQ(ZRVSaddcols64(by_rows, 3, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
  const int64_t rstart[2] = {0, 3};
  const int rcol[6] = {2, 1, 0, 0, 2, 1};
  const double rval[6] = {2, 0, 1, 0, -4, 3};
  ASSERT_EQ(ZRVSaddrows64(by_rows, 2, 6, types, rhs, nullptr, rstart, rcol, rval), 0);
  EXPECT_EQ(triplets(by_rows), expected);

  for (ZRVSprob p : {prob, by_cols, by_rows}) {
    const int middle = 1;
    ASSERT_EQ(ZRVSdelcols(p, 1, &middle), 0);
    EXPECT_EQ(triplets(p), (std::vector<std::tuple<int, int, double>>{
                               {0, 0, 1}, {0, 1, 2}, {1, 1, -4}}));
  }
  EXPECT_EQ(ZRVSdestroyprob(by_cols), 0);
  EXPECT_EQ(ZRVSdestroyprob(by_rows), 0);
}

TEST_F(SmallModel, RowChangesAreCheckedWholeThenApplied) {
  build();  // rows cap: L 4, need: G 1
  auto read = [&](char *types, double *rhs, double *range) {
    ASSERT_EQ(ZRVSgetrowtype(prob, types, 0, 1), 0);
    ASSERT_EQ(ZRVSgetrhs(prob, rhs, 0, 1), 0);
    ASSERT_EQ(ZRVSgetrhsrange(prob, range, 0, 1), 0);
  };
  int rows[2] = {0, 1};
  double nan_rhs[2] = {5, std::nan("")};
  expect_failure(ZRVSchgrhs(prob, 2, rows, nan_rhs), "rhs[1] is NaN");
  int bad[2] = {0, 2};
  double rhs2[2] = {5, 6};
  expect_failure(ZRVSchgrhs(prob, 2, bad, rhs2), "rowind[1] = 2 is not a row index");
  char types[2];
  double rhs[2], range[2];
  read(types, rhs, range);
  EXPECT_EQ(rhs[0], 4.0);  // nothing of a refused batch is applied
  ASSERT_EQ(ZRVSchgrhs(prob, 2, rows, rhs2), 0) << last_error();
  read(types, rhs, range);
  EXPECT_EQ(rhs[0], 5.0);
  EXPECT_EQ(rhs[1], 6.0);

  double rng[2] = {2, 3};
  double negative[2] = {2, -1};
  expect_failure(ZRVSchgrhsrange(prob, 2, rows, negative), "rng[1] must be a non-negative");
  ASSERT_EQ(ZRVSchgrhsrange(prob, 2, rows, rng), 0) << last_error();
  read(types, rhs, range);
  EXPECT_EQ(std::string(types, 2), "RR");
  EXPECT_EQ(rhs[0], 5.0);  // L: 3 <= a <= 5
  EXPECT_EQ(range[0], 2.0);
  EXPECT_EQ(rhs[1], 9.0);  // G: 6 <= a <= 9
  EXPECT_EQ(range[1], 3.0);

  char newtypes[2] = {'E', 'X'};
  expect_failure(ZRVSchgrowtype(prob, 2, rows, newtypes), "rowtype[1] is 'X'");
  newtypes[1] = 'N';
  ASSERT_EQ(ZRVSchgrowtype(prob, 2, rows, newtypes), 0) << last_error();
  read(types, rhs, range);
  EXPECT_EQ(std::string(types, 2), "EN");
  EXPECT_GE(range[0], ZRVS_PLUSINFINITY);  // no longer a range row
  expect_failure(ZRVSchgrhsrange(prob, 1, &rows[1], rng), "free ('N')");
}
