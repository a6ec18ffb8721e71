// Problem creation, loading, copying, names, errors and interrupts.
#include <cmath>
#include <functional>
#include <vector>

#include "test_support.h"

namespace {

// min x + 2y  s.t.  x + y >= 1 (row 0), x - y <= 3 (row 1), 0 <= x <= 4, y free.
int load_small_lp(ZRVSprob prob, const char *name) {
  const char rowtype[] = {'G', 'L'};
  const double rhs[] = {1, 3}, obj[] = {1, 2}, lb[] = {0, -1e20}, ub[] = {4, 1e20};
  const int start[] = {0, 2, 4}, rowind[] = {0, 1, 0, 1};
  const double coef[] = {1, 1, 1, -1};
  return ZRVSloadlp(prob, name, 2, 2, rowtype, rhs, nullptr, obj, start, nullptr, rowind, coef,
                    lb, ub);
}

using Problem = ProblemTest;

TEST_F(Problem, NewProblemIsEmptyAndNamedNoname) {
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 0);
  EXPECT_EQ(int_attrib(ZRVS_COLS), 0);
  EXPECT_EQ(int_attrib(ZRVS_PROBNAMELENGTH), 6);
  char name[16];
  ASSERT_EQ(ZRVSgetprobname(prob, name), 0);
  EXPECT_STREQ(name, "noname");
  EXPECT_EQ(last_error(), "");
  const char *type = nullptr;
  ASSERT_EQ(ZRVSgetobjecttypename(prob, &type), 0);
  EXPECT_STREQ(type, "ZRVSprob");
}

TEST_F(Problem, LoadLpStoresTheModel) {
  ASSERT_EQ(load_small_lp(prob, "small"), 0);
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 2);
  EXPECT_EQ(int_attrib(ZRVS_COLS), 2);
  EXPECT_EQ(int_attrib(ZRVS_MIPENTS), 0);
  int64_t elems = 0;
  ASSERT_EQ(ZRVSgetintattrib64(prob, ZRVS_ELEMS, &elems), 0);
  EXPECT_EQ(elems, 4);
  char name[16];
  ASSERT_EQ(ZRVSgetprobname(prob, name), 0);
  EXPECT_STREQ(name, "small");

  // An empty load keeps the name when none is given and empties the model.
  ASSERT_EQ(ZRVSloadlp(prob, nullptr, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 0);
  ASSERT_EQ(ZRVSgetprobname(prob, name), 0);
  EXPECT_STREQ(name, "small");
}

TEST_F(Problem, LoadLp64TakesLengthsWithStarts) {
  const char rowtype[] = {'E'};
  const double rhs[] = {5};
  const int64_t start[] = {0, 1};
  const int collen[] = {1, 0};
  const int rowind[] = {0};
  const double coef[] = {2};
  ASSERT_EQ(ZRVSloadlp64(prob, "p64", 2, 1, rowtype, rhs, nullptr, nullptr, start, collen,
                         rowind, coef, nullptr, nullptr),
            0);
  int64_t elems = 0;
  ASSERT_EQ(ZRVSgetintattrib64(prob, ZRVS_ELEMS, &elems), 0);
  EXPECT_EQ(elems, 1);
}

TEST_F(Problem, BadLoadLeavesTheProblemUnchanged) {
  ASSERT_EQ(load_small_lp(prob, "kept"), 0);
  const char badtype[] = {'X'};
  const double rhs[] = {1}, nanv[] = {NAN};
  const int start[] = {0, 1}, badrow[] = {3}, goodrow[] = {0}, duprow[] = {0, 0};
  const int dupstart[] = {0, 2};
  const double coef[] = {1}, coef2[] = {1, 1};
  const char goodtype[] = {'L'}, rangetype[] = {'R'};

  auto load = [&](int ncols, int nrows, const char *rt, const double *b, const int *st,
                  const int *ri, const double *cf, const double *l) {
    return ZRVSloadlp(prob, "x", ncols, nrows, rt, b, nullptr, nullptr, st, nullptr, ri, cf, l,
                      nullptr);
  };
  struct Case {
    std::function<int()> call;
    const char *expected;
  } cases[] = {
      {[&] { return load(-1, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); },
       "ncols is negative"},
      {[&] { return load(0, 1, badtype, rhs, nullptr, nullptr, nullptr, nullptr); },
       "rowtype[0]"},
      {[&] { return load(0, 1, goodtype, nullptr, nullptr, nullptr, nullptr, nullptr); },
       "rhs are required"},
      {[&] { return load(1, 1, goodtype, rhs, start, badrow, coef, nullptr); },
       "rowind[0] = 3"},
      {[&] { return load(1, 1, goodtype, rhs, start, goodrow, nanv, nullptr); },
       "rowcoef[0]"},
      {[&] { return load(1, 1, goodtype, rhs, dupstart, duprow, coef2, nullptr); },
       "two entries in row 0"},
      {[&] { return load(1, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nanv); },
       "bound of column 0 is NaN"},
      {[&] { return load(0, 1, rangetype, rhs, nullptr, nullptr, nullptr, nullptr); },
       "rng is NULL"},
  };
  for (const Case &c : cases) {
    EXPECT_NE(c.call(), 0) << c.expected;
    EXPECT_NE(last_error().find(c.expected), std::string::npos) << last_error();
  }
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 2);
  EXPECT_EQ(int_attrib(ZRVS_COLS), 2);
  char name[16];
  ASSERT_EQ(ZRVSgetprobname(prob, name), 0);
  EXPECT_STREQ(name, "kept");
}

TEST_F(Problem, ErrorTextsNameTheArgument) {
  const char badtype[] = {'Q'};
  const double rhs[] = {1};
  EXPECT_NE(ZRVSloadlp(prob, "x", 0, 1, badtype, rhs, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_NE(last_error().find("rowtype[0] is 'Q'"), std::string::npos) << last_error();
  EXPECT_NE(ZRVSsetprobname(prob, nullptr), 0);
  EXPECT_NE(last_error().find("ZRVSsetprobname"), std::string::npos) << last_error();
  std::string longname(ZRVS_MAXNAMELENGTH + 1, 'n');
  EXPECT_NE(ZRVSsetprobname(prob, longname.c_str()), 0);
  EXPECT_NE(last_error().find("longer than"), std::string::npos);
}

TEST_F(Problem, NamesRoundTrip) {
  ASSERT_EQ(ZRVSsetprobname(prob, "a longer name"), 0);
  EXPECT_EQ(int_attrib(ZRVS_PROBNAMELENGTH), 13);
  std::vector<char> buf(14);
  ASSERT_EQ(ZRVSgetprobname(prob, buf.data()), 0);
  EXPECT_STREQ(buf.data(), "a longer name");
  char attr[ZRVS_MAXSTRINGLENGTH];
  ASSERT_EQ(ZRVSgetstrattrib(prob, ZRVS_PROBNAME, attr), 0);
  EXPECT_STREQ(attr, "a longer name");
}

TEST_F(Problem, CopyTakesModelNameAndControlsButIsIndependent) {
  ASSERT_EQ(load_small_lp(prob, "source"), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ZRVSprob copy = nullptr;
  ASSERT_EQ(ZRVScreateprob(&copy), 0);
  ASSERT_EQ(ZRVScopyprob(copy, prob, ""), 0);
  int rows = 0, presolve = -1;
  char name[16];
  ASSERT_EQ(ZRVSgetintattrib(copy, ZRVS_ROWS, &rows), 0);
  ASSERT_EQ(ZRVSgetintcontrol(copy, ZRVS_PRESOLVE, &presolve), 0);
  ASSERT_EQ(ZRVSgetprobname(copy, name), 0);
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(presolve, 0);
  EXPECT_STREQ(name, "source");

  ASSERT_EQ(ZRVScopyprob(copy, prob, "renamed"), 0);
  ASSERT_EQ(ZRVSgetprobname(copy, name), 0);
  EXPECT_STREQ(name, "renamed");
  // Changing the copy leaves the source alone.
  ASSERT_EQ(ZRVSloadlp(copy, nullptr, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 2);
  EXPECT_EQ(ZRVSdestroyprob(copy), 0);
  EXPECT_NE(ZRVScopyprob(copy, prob, ""), 0) << "the destination was destroyed";
}

TEST_F(Problem, InterruptTakesOnlyStopReasons) {
  EXPECT_EQ(ZRVSinterrupt(prob, ZRVS_STOP_USER), 0);
  EXPECT_NE(ZRVSinterrupt(prob, 0), 0);
  EXPECT_NE(last_error().find("not a stop reason"), std::string::npos);
  EXPECT_NE(ZRVSinterrupt(prob, 99), 0);
}

TEST_F(Problem, DestroyedHandleIsRejectedEverywhere) {
  ASSERT_EQ(ZRVSdestroyprob(prob), 0);
  ZRVSprob dead = prob;
  prob = nullptr;
  char name[16];
  int value = 0;
  const char *type = nullptr;
  EXPECT_NE(ZRVSgetprobname(dead, name), 0);
  EXPECT_NE(ZRVSgetintattrib(dead, ZRVS_ROWS, &value), 0);
  EXPECT_NE(ZRVSsetintcontrol(dead, ZRVS_OUTPUTLOG, 0), 0);
  EXPECT_NE(ZRVSdestroyprob(dead), 0);
  EXPECT_NE(ZRVSgetobjecttypename(dead, &type), 0);
}

}  // namespace
