// LP files: the syntax the reader takes, exact round trips, names that LP
// files cannot hold, and located errors.
#include <string>
#include <vector>

#include "file_support.h"
#include "model_support.h"

namespace {

class LpFormatTest : public ModelTest {
 protected:
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_TRUE(dir.ok());
  }
  TempDir dir;
};

TEST_F(LpFormatTest, ReadsObjectiveRowsBoundsTypesSetsAndIndicators) {
  const char *text =
      "\\Problem name: small\n"
      "\\ a comment line\n"
      "Maximize\n"
      " profit: 3 x + 2 y - z + [ 4 x ^ 2 + 2 x * y ] / 2 + 7\n"
      "Subject To\n"
      " c1: x + y <= 4\n"
      " c2: -2 <= x - y <= 8\n"
      " c3: 2 x + 3 z\n"
      "     + 1 y >= 1\n"  // a row continues on the next line
      " c4: b = 0 -> x + z <= 3\n"
      " q1: x + [ x ^ 2 + 2 x * y ] =< 5\n"
      " 3 <= y\n"  // an unnamed row, constant first
      " c6: x + y >= -inf\n"
      "Bounds\n"
      " x <= 10\n"
      " -inf <= z <= 5\n"
      " y free\n"
      " s = 2\n"
      " 1 <= t <= 9\n"
      "Generals\n"
      " z\n"
      "Binaries\n"
      " b\n"
      "Semi-continuous\n"
      " t\n"
      "SOS\n"
      " set1: S1:: x:1 y:2\n"
      " S2:: x:1 z:2 s:3\n"
      "End\n";
  write_text(dir.file("a.lp"), text);
  ASSERT_EQ(ZRVSreadprob(prob, dir.file("a.lp").c_str(), ""), 0) << last_error();
  ModelSnapshot s = snapshot(prob);
  EXPECT_EQ(s.name, "small");
  EXPECT_EQ(s.objsense, -1.0);
  EXPECT_EQ(s.objconstant, 7.0);
  ASSERT_EQ(s.cols, 6);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"x", "y", "z", "b", "s", "t"}));
  EXPECT_EQ(s.obj, (std::vector<double>{3, 2, -1, 0, 0, 0}));
  // [4 x^2 + 2 x y] / 2 = 0.5 x'Qx: Q[x][x] = 4, Q[x][y] = 1.
  EXPECT_EQ(s.qcol, (std::vector<int>{0, 1, 0}));
  EXPECT_EQ(s.qval, (std::vector<double>{4, 1, 1}));
  ASSERT_EQ(s.rows, 7);
  EXPECT_EQ(s.rownames, (std::vector<std::string>{"c1", "c2", "c3", "c4", "q1", "R5", "c6"}));
  EXPECT_EQ(s.rowtype, "LRGLLGN");
  EXPECT_EQ(s.rhs[1], 8);
  EXPECT_EQ(s.range[1], 10);
  EXPECT_EQ(s.rhs[5], 3);
  // c3 holds 2 x + 3 z + y.
  std::vector<double> c3(s.cols, 0.0);
  for (int j = 0; j < s.cols; ++j)
    for (int64_t k = s.colstart[j]; k < s.colstart[j + 1]; ++k)
      if (s.rowind[k] == 2) c3[j] = s.coef[k];
  EXPECT_EQ(c3, (std::vector<double>{2, 1, 3, 0, 0, 0}));
  EXPECT_EQ(s.indcol[3], 3);
  EXPECT_EQ(s.indflag[3], -1);
  // Row bracket x^2 + 2 x y is x'Qx: Q[x][x] = 1, Q[x][y] = 1.
  EXPECT_EQ(s.qrowval[4], (std::vector<double>{1, 1}));
  const double inf = ZRVS_PLUSINFINITY;
  EXPECT_EQ(s.lb, (std::vector<double>{0, -inf, -inf, 0, 2, 1}));
  EXPECT_EQ(s.ub, (std::vector<double>{10, inf, 5, 1, 2, 9}));
  EXPECT_EQ(s.coltype, "CCIBCS");
  EXPECT_EQ(s.settype, "12");
  EXPECT_EQ(s.setnames[0], "set1");
  EXPECT_EQ(s.setcol, (std::vector<int>{0, 1, 0, 2, 4}));
}

TEST_F(LpFormatTest, RoundTripIsExactPlainAndCompressed) {
  build_feature_model(prob);
  // LP files reserve words such as "free": that row name is replaced.
  ASSERT_EQ(ZRVSaddnames(prob, 1, "spare", 4, 4), 0);
  ModelSnapshot original = snapshot(prob);
  ZRVSprob back = nullptr;
  ASSERT_EQ(ZRVScreateprob(&back), 0);
  for (const char *name : {"m.lp", "m.lp.gz"}) {
    std::string file = dir.file(name);
    ASSERT_EQ(ZRVSwriteprob(prob, file.c_str(), ""), 0) << last_error();
    ASSERT_EQ(ZRVSreadprob(back, file.c_str(), ""), 0) << name;
    expect_same_model(original, snapshot(back), true, name);
  }
  EXPECT_EQ(ZRVSdestroyprob(back), 0);
}

TEST_F(LpFormatTest, RangesComeBackExactlyEvenWhenTheLowerSideRounds) {
  add_cols({1}, {0}, {100});
  // rhs - range is not exact in binary: the writer picks a lower side that
  // gives the range back.
  double rhs = 0.3, range = 0.1;
  add_row({1}, 'R', rhs, range);
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("r.lp").c_str(), ""), 0);
  ASSERT_EQ(ZRVSreadprob(prob, dir.file("r.lp").c_str(), ""), 0) << last_error();
  double r = 0, g = 0;
  ASSERT_EQ(ZRVSgetrhs(prob, &r, 0, 0), 0);
  ASSERT_EQ(ZRVSgetrhsrange(prob, &g, 0, 0), 0);
  EXPECT_EQ(r, rhs);
  EXPECT_EQ(g, range);
}

TEST_F(LpFormatTest, IllegalNamesAreReplacedWithAWarning) {
  std::string warnings;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect_warnings, &warnings, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  add_cols({1, 2, 3, 4}, {0, 0, 0, 0}, {1, 1, 1, 1});
  add_row({1, 1, 1, 1}, 'L', 3);
  ASSERT_EQ(ZRVSaddnames(prob, 2, "x[1]\0" "2x\0bounds\0ok(1,2)", 0, 3), 0);
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("n.lp").c_str(), ""), 0);
  EXPECT_NE(warnings.find("3 column names cannot be written in LP format"), std::string::npos)
      << warnings;
  ASSERT_EQ(ZRVSreadprob(prob, dir.file("n.lp").c_str(), ""), 0) << last_error();
  ModelSnapshot s = snapshot(prob);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"C0", "C1", "C2", "ok(1,2)"}));
  EXPECT_EQ(s.obj, (std::vector<double>{1, 2, 3, 4}));
}

TEST_F(LpFormatTest, BadFilesFailWithFileAndLineAndLeaveTheProblemAsItWas) {
  build_feature_model(prob);
  ModelSnapshot before = snapshot(prob);
  const BadFile cases[] = {
      {"Subject To\n c: x <= 1\nEnd\n", "line 1: the file must start with Minimize or Maximize"},
      {"Minimize\n obj: x\nSubject To\n c: x + y\nEnd\n", "line 5: a comparison expected"},
      {"Minimize\n obj: x\nSubject To\n c: x <= y\nEnd\n", "line 4: a right-hand side expected"},
      {"Minimize\n obj: x + [ x ^ 3 ] / 2\nEnd\n", "line 2: only squares"},
      {"Minimize\n obj: x\nBounds\n x <=\nEnd\n", "line 5: a bound expected"},
      {"Minimize\n obj: x\nSubject To\n c: 5 <= x <= 1\nEnd\n", "line 4: the range of row 'c' is empty"},
      {"Minimize\n obj: x\nSubject To\n c: x = 1 -> x <= 1\nEnd\n", "not binary"},
      {"Minimize\n obj: x\nSubject To\n c: x = 2 -> x <= 1\nEnd\n", "line 4: an indicator value must be 0 or 1"},
      {"Minimize\n obj: x\nSubject To\n c: b = 1 -> x + [ x ^ 2 ] <= 1\nBinary\n b\nEnd\n",
       "line 4: an indicator constraint cannot be quadratic"},
      {"Minimize\n obj: x\nSubject To\n c: x <= 1\n", "the file ends without 'End'"},
      {"Minimize\n obj: x # y\nEnd\n", "line 2: unexpected"},
      {"Minimize\n obj: x\nSOS\n s: S3:: x:1\nEnd\n", "line 4: a set starts with 'S1::' or 'S2::'"},
  };
  expect_bad_files_refused(prob, dir, "bad.lp", "", cases, before);
}

}  // namespace
