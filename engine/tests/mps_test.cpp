// MPS files: every section and bound type, exact round trips in free,
// fixed and compressed form, names the format cannot hold, and bad input.
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "file_support.h"
#include "model_support.h"

namespace {

class MpsTest : public ModelTest {
 protected:
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_TRUE(dir.ok());
  }
  std::vector<double> get(int (*f)(ZRVSprob, double *, int, int), int n) {
    std::vector<double> v(n);
    EXPECT_EQ(f(prob, v.data(), 0, n - 1), 0) << last_error();
    return v;
  }
  TempDir dir;
};

const char *const kAllSections =
    "* every section\n"
    "NAME          sample model\n"
    "OBJSENSE\n"
    "    MAX\n"
    "ROWS\n"
    " N  cost\n"
    " L  lim\n"
    " G  low\n"
    " E  eqp\n"
    " E  eqn\n"
    " N  spare\n"
    " L  ind\n"
    "COLUMNS\n"
    "    x  cost  1   lim  2\n"
    "    x  low  1  $ a comment\n"
    "    MARKER  'MARKER'  'INTORG'\n"
    "    y  cost  -3  eqp  1\n"
    "    y  eqn  1\n"
    "    MARKER  'MARKER'  'INTEND'\n"
    "    z  lim  1  spare  4\n"
    "    b  ind  0\n"
    "    s  ind  1\n"
    "    u  cost  0\n"
    "    v  cost  0\n"
    "    w  cost  0\n"
    "    t  cost  0\n"
    "RHS\n"
    "    RHS  cost  -2.5  lim  4\n"
    "    RHS  low  1  eqp  3\n"
    "    eqn  5\n"
    "    ind  7\n"
    "RANGES\n"
    "    RNG  lim  1.5  low  2\n"
    "    RNG  eqp  4  eqn  -4\n"
    "BOUNDS\n"
    " UP BND  x  8\n"
    " LI BND  z  -2\n"
    " UI BND  z  3\n"
    " BV BND  b\n"
    " SC BND  s  6\n"
    " LO BND  s  1\n"
    " FR BND  u\n"
    " MI BND  v\n"
    " UP BND  v  -1\n"
    " FX BND  w  2.5\n"
    " UP BND  t  -4\n"
    " PL BND  y\n"
    "QUADOBJ\n"
    "    x  x  2\n"
    "    x  y  0.5\n"
    "QCMATRIX  lim\n"
    "    x  z  1\n"
    "    z  x  1\n"
    "    z  z  3\n"
    "SOS\n"
    " S1 SOS  set1  1\n"
    "    x  1\n"
    "    z  2\n"
    " S2 SOS  set2\n"
    "    u:1\n"
    "    v:2\n"
    "    w:3\n"
    "INDICATORS\n"
    " IF  ind  b  1\n"
    "ENDATA\n";

TEST_F(MpsTest, ReadsEverySectionAndBoundType) {
  std::string warnings;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect_warnings, &warnings, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  write_text(dir.file("all.mps"), kAllSections);
  ASSERT_EQ(ZRVSreadprob(prob, dir.file("all.mps").c_str(), ""), 0) << last_error();
  ModelSnapshot s = snapshot(prob);
  EXPECT_EQ(s.name, "sample model");
  EXPECT_EQ(s.objsense, -1.0);
  EXPECT_EQ(s.objconstant, 2.5);  // minus the objective row's RHS
  ASSERT_EQ(s.rows, 6);
  ASSERT_EQ(s.cols, 9);
  // lim: L 4 with range 1.5; low: G 1 range 2 -> [1, 3]; eqp: E 3, R 4 -> [3, 7];
  // eqn: E 5, R -4 -> [1, 5]; spare stays a free row.
  EXPECT_EQ(s.rowtype, "RRRRNL");
  EXPECT_EQ(s.rhs, (std::vector<double>{4, 3, 7, 5, 0, 7}));
  EXPECT_EQ(s.range[0], 1.5);
  EXPECT_EQ(s.range[1], 2);
  EXPECT_EQ(s.range[2], 4);
  EXPECT_EQ(s.range[3], 4);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"x", "y", "z", "b", "s", "u", "v", "w", "t"}));
  EXPECT_EQ(s.rownames, (std::vector<std::string>{"lim", "low", "eqp", "eqn", "spare", "ind"}));
  EXPECT_EQ(s.coltype, "CIIBSCCCC");
  const double inf = ZRVS_PLUSINFINITY;
  EXPECT_EQ(s.lb, (std::vector<double>{0, 0, -2, 0, 1, -inf, -inf, 2.5, -inf}));
  EXPECT_EQ(s.ub, (std::vector<double>{8, inf, 3, 1, 6, inf, -1, 2.5, -4}));
  EXPECT_EQ(s.obj, (std::vector<double>{1, -3, 0, 0, 0, 0, 0, 0, 0}));
  // The negative upper bound on t (lower bound 0) freed its lower bound.
  EXPECT_NE(warnings.find("negative upper bound on column 't'"), std::string::npos) << warnings;
  // Q of 0.5 x'Qx: (x,x) 2 and (x,y) 0.5, column by column.
  EXPECT_EQ(s.qcol, (std::vector<int>{0, 1, 0}));
  EXPECT_EQ(s.qval, (std::vector<double>{2, 0.5, 0.5}));
  // QCMATRIX lists both triangles: x'Qx with Q[x][z] = Q[z][x] = 1.
  EXPECT_EQ(s.qrow1[0], (std::vector<int>{0, 2}));
  EXPECT_EQ(s.qrow2[0], (std::vector<int>{2, 2}));
  EXPECT_EQ(s.qrowval[0], (std::vector<double>{1, 3}));
  EXPECT_EQ(s.settype, "12");
  EXPECT_EQ(s.setnames, (std::vector<std::string>{"set1", "set2"}));
  EXPECT_EQ(s.setcol, (std::vector<int>{0, 2, 5, 6, 7}));
  EXPECT_EQ(s.indcol[5], 3);
  EXPECT_EQ(s.indflag[5], 1);
  // Matrix: x has lim 2 and low 1; the comment after low is ignored.
  EXPECT_EQ(s.colstart[1] - s.colstart[0], 2);
}

TEST_F(MpsTest, FixedFormatNamesWithBlanksAndContinuationLines) {
  // Fields at columns 2, 5, 15, 25, 40, 50.
  auto line = [](const char *f1, const char *f2, const char *f3, const char *f4,
                 const char *f5 = "", const char *f6 = "") {
    char buf[128];
    std::snprintf(buf, sizeof buf, " %-2s %-8s  %-8s  %-12s   %-8s  %s", f1, f2, f3, f4, f5, f6);
    std::string s = buf;
    while (!s.empty() && s.back() == ' ') s.pop_back();
    return s + "\n";
  };
  std::string text = "NAME          FIXED\nROWS\n N  obj\n L  row one\nCOLUMNS\n" +
                     line("", "col a", "obj", "1.5", "row one", "2") +
                     line("", "", "row one", "3") + line("", "col b", "obj", "-1") + "RHS\n" +
                     line("", "", "row one", "10") + "BOUNDS\n" + line("UP", "", "col b", "4") +
                     "ENDATA\n";
  write_text(dir.file("fixed.txt"), text);
  ASSERT_EQ(ZRVSreadprob(prob, dir.file("fixed.txt").c_str(), "f"), 0) << last_error();
  ModelSnapshot s = snapshot(prob);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"col a", "col b"}));
  EXPECT_EQ(s.rownames, (std::vector<std::string>{"row one"}));
  // A blank column name continues "col a": its two entries in one row add up.
  EXPECT_EQ(s.coef, (std::vector<double>{5}));
  EXPECT_EQ(s.obj, (std::vector<double>{1.5, -1}));
  EXPECT_EQ(s.rhs, (std::vector<double>{10}));
  EXPECT_EQ(s.ub[1], 4);
}

TEST_F(MpsTest, RoundTripsAreExactInEveryMpsForm) {
  build_feature_model(prob);
  ModelSnapshot original = snapshot(prob);
  ZRVSprob back = nullptr;
  ASSERT_EQ(ZRVScreateprob(&back), 0);
  for (const char *name : {"m.mps", "m.mps.gz", "m.fixed"}) {
    const char *flags = std::string(name) == "m.fixed" ? "f" : "";
    std::string file = dir.file(name);
    ASSERT_EQ(ZRVSwriteprob(prob, file.c_str(), flags), 0) << last_error();
    ASSERT_EQ(ZRVSreadprob(back, file.c_str(), flags), 0) << name;
    expect_same_model(original, snapshot(back), true, name);
  }
  // The .gz file really is compressed.
  std::string gz = read_text(dir.file("m.mps.gz"));
  ASSERT_GE(gz.size(), 2u);
  EXPECT_EQ(static_cast<unsigned char>(gz[0]), 0x1f);
  EXPECT_EQ(static_cast<unsigned char>(gz[1]), 0x8b);
  // Both models solve to the same optimum.
  EXPECT_EQ(ZRVSdestroyprob(back), 0);
}

TEST_F(MpsTest, NamesTheFormatCannotHoldAreReplacedWithAWarning) {
  std::string warnings;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect_warnings, &warnings, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  add_cols({1, 2, 3}, {0, 0, 0}, {1, 1, 1});
  add_row({1, 1, 1}, 'L', 2);
  ASSERT_EQ(ZRVSaddnames(prob, 2, "a b\0C0\0dup", 0, 2), 0);
  ASSERT_EQ(ZRVSaddnames(prob, 1, "a very long row name", 0, 0), 0);
  ZRVSprob back = nullptr;
  ASSERT_EQ(ZRVScreateprob(&back), 0);
  // Free MPS: the blank is the problem; the replacement avoids "C0", taken.
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("n.mps").c_str(), ""), 0) << last_error();
  EXPECT_NE(warnings.find("1 column names cannot be written in free MPS"), std::string::npos)
      << warnings;
  ASSERT_EQ(ZRVSreadprob(back, dir.file("n.mps").c_str(), ""), 0);
  ModelSnapshot s = snapshot(back);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"C0_1", "C0", "dup"}));
  EXPECT_EQ(s.rownames, (std::vector<std::string>{"R0"}));  // blanks again
  EXPECT_EQ(s.obj, (std::vector<double>{1, 2, 3}));
  // Fixed MPS: blanks are fine, more than 8 characters are not.
  warnings.clear();
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("n.fixed").c_str(), "f"), 0) << last_error();
  EXPECT_NE(warnings.find("1 row names cannot be written in fixed MPS"), std::string::npos)
      << warnings;
  ASSERT_EQ(ZRVSreadprob(back, dir.file("n.fixed").c_str(), "f"), 0);
  s = snapshot(back);
  EXPECT_EQ(s.colnames, (std::vector<std::string>{"a b", "C0", "dup"}));
  EXPECT_EQ(s.rownames, (std::vector<std::string>{"R0"}));
  EXPECT_EQ(ZRVSdestroyprob(back), 0);
}

// Each malformed file fails with the file, the line and the fault, and the
// problem keeps its model.
TEST_F(MpsTest, BadFilesFailWithFileAndLineAndLeaveTheProblemAsItWas) {
  build_feature_model(prob);
  ModelSnapshot before = snapshot(prob);
  const BadFile cases[] = {
      {"NAME x\nROWS\n N obj\n Q r\nENDATA\n", "line 4: row type 'Q'"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  nowhere  1\nENDATA\n", "line 5: unknown row 'nowhere'"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1.2.3\nENDATA\n", "line 5: coefficient '1.2.3' is not a number"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1\nBOUNDS\n XX BND x 1\nENDATA\n", "line 7: unknown bound type 'XX'"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1\nBOUNDS\n UP BND y 1\nENDATA\n", "line 7: unknown column 'y'"},
      {"NAME x\nROWS\n N obj\n L r\n L r\nENDATA\n", "line 5: row 'r' is defined twice"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1\n", "line 6: the file ends without ENDATA"},
      {"NAME x\nROWS\n L r\nCOLUMNS\n    x  r  1\nINDICATORS\n IF r x 1\nENDATA\n", "indicator column 'x' of row 'r' is not binary"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1\n    y  obj  1\n    x  obj  2\nENDATA\n", "line 7: the entries of column 'x' are not together"},
      {"NAME x\nROWS\n N obj\nCOLUMNS\n    x  obj  1\nSOS\n S1 SOS s\n    x  1\n    x  2\nENDATA\n", "line 9: column 'x' is twice in one set"},
      {"NAME x\nOBJSENSE\n    SIDEWAYS\nENDATA\n", "line 3: objective sense 'SIDEWAYS'"},
  };
  expect_bad_files_refused(prob, dir, "bad.mps", "", cases, before);
}

TEST_F(MpsTest, MissingFilesUnknownFormatsAndUnwritablePathsFailClearly) {
  add_cols({1}, {0}, {1});
  expect_failure(ZRVSreadprob(prob, dir.file("absent.mps").c_str(), ""), "cannot open");
  expect_failure(ZRVSreadprob(prob, dir.file("model.txt").c_str(), ""), "cannot tell the format");
  expect_failure(ZRVSwriteprob(prob, dir.file("model").c_str(), ""), "cannot tell the format");
  expect_failure(ZRVSwriteprob(prob, dir.file("m.mps").c_str(), "q"), "unknown flag 'q'");
  expect_failure(ZRVSwriteprob(prob, dir.file("m.mps").c_str(), "lf"), "two different formats");
  expect_failure(ZRVSwriteprob(prob, dir.file("no/such/dir/m.mps").c_str(), ""), "cannot create");
  expect_failure(ZRVSreadprob(prob, nullptr, ""), "filename is NULL");
  // A flag chooses the format whatever the extension says.
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("model").c_str(), "l"), 0) << last_error();
  EXPECT_EQ(read_text(dir.file("model")).find("Minimize"), read_text(dir.file("model")).find('\n') + 1);
  // A truncated compressed file is an error, not a short model.
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("t.mps.gz").c_str(), ""), 0);
  std::string gz = read_text(dir.file("t.mps.gz"));
  write_text(dir.file("cut.mps.gz"), gz.substr(0, gz.size() / 2));
  EXPECT_NE(ZRVSreadprob(prob, dir.file("cut.mps.gz").c_str(), ""), 0);
  EXPECT_EQ(int_attrib(ZRVS_COLS), 1);
}

TEST_F(MpsTest, WhatNoFileHoldsIsRefused) {
  add_cols({1, 1}, {0, 0}, {10, 10});
  set_types(0, "P");
  expect_failure(ZRVSwriteprob(prob, dir.file("p.mps").c_str(), ""), "partially integer");
  EXPECT_FALSE(std::filesystem::exists(dir.file("p.mps")));
  set_types(0, "C");
  int col = 1;
  double coef = 2;
  ASSERT_EQ(ZRVSchgobjn(prob, 1, 1, &col, &coef), 0);
  expect_failure(ZRVSwriteprob(prob, dir.file("two.lp").c_str(), ""), "2 objectives");
}

}  // namespace
