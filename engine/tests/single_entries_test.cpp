// Single coefficients and quadratic entries, indicator removal, objectives
// added whole, set names, the list of MIP entities, message codes and the
// log file.
#include <cstdio>
#include <fstream>
#include <sstream>

#include "model_support.h"

namespace {

class EntryTest : public ModelTest {
 protected:
  double coef(int r, int c) {
    double v = -99;
    EXPECT_EQ(ZRVSgetcoef(prob, r, c, &v), 0) << last_error();
    return v;
  }
};

TEST_F(EntryTest, CoefficientsChangeReadAndSolve) {
  // max x + y  s.t.  x + y <= 4, x <= 3 (row 1), bounds 0..10.
  add_cols({1, 1}, {0, 0}, {10, 10});
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  add_row({1, 1}, 'L', 4);
  add_row({1, 0}, 'L', 3);
  EXPECT_EQ(coef(0, 1), 1.0);
  EXPECT_EQ(coef(1, 1), 0.0);
  // Row 0 becomes x + 2y <= 4: optimum x = 3, y = 0.5.
  ASSERT_EQ(ZRVSchgcoef(prob, 0, 1, 2.0), 0);
  EXPECT_EQ(coef(0, 1), 2.0);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), 3);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 3.5, 1e-9);
  // A batch: a new entry, a removal, and a pair given twice (last wins).
  int rows[3] = {1, 0, 1}, cols[3] = {1, 0, 1};
  double vals[3] = {5.0, 0.0, 1.0};
  ASSERT_EQ(ZRVSchgmcoef64(prob, 3, rows, cols, vals), 0) << last_error();
  EXPECT_EQ(coef(1, 1), 1.0);
  EXPECT_EQ(coef(0, 0), 0.0);
  EXPECT_EQ(int64_attrib(ZRVS_ELEMS), 3);
  // 2y <= 4, x + y <= 3: optimum 3.
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 3.0, 1e-9);
  // A bad index anywhere in the batch changes nothing.
  int bad_rows[2] = {0, 7};
  double bad_vals[2] = {9.0, 1.0};
  expect_failure(ZRVSchgmcoef(prob, 2, bad_rows, cols, bad_vals), "rowind[1] = 7");
  EXPECT_EQ(coef(0, 1), 2.0);
  expect_failure(ZRVSgetcoef(prob, 0, 5, nullptr), "coef is NULL");
}

TEST_F(EntryTest, QuadraticEntriesOfObjectiveAndRows) {
  add_cols({-2, 0, 0}, {0, 0, 0}, {10, 10, 10});
  // 0.5 * Q with Q[0][0] = 2: min x^2 - 2x at x = 1.
  ASSERT_EQ(ZRVSchgqobj(prob, 0, 0, 2.0), 0);
  double v = 0;
  ASSERT_EQ(ZRVSgetqobj(prob, 0, 0, &v), 0);
  EXPECT_EQ(v, 2.0);
  ASSERT_EQ(ZRVSgetqobj(prob, 1, 0, &v), 0);
  EXPECT_EQ(v, 0.0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -1.0, 1e-6);
  // Rows: row 0 gets Q entries (0,1) and (2,2), set then read back.
  add_row({1, 1, 1}, 'L', 10);
  add_row({1, 0, 0}, 'L', 10);
  ASSERT_EQ(ZRVSchgqrowcoeff(prob, 0, 1, 0, 1.5), 0) << last_error();
  ASSERT_EQ(ZRVSchgqrowcoeff(prob, 0, 2, 2, -0.5), 0);
  ASSERT_EQ(ZRVSgetqrowcoeff(prob, 0, 0, 1, &v), 0);
  EXPECT_EQ(v, 1.5);
  int nq = -1, qrow[2] = {-1, -1};
  ASSERT_EQ(ZRVSgetqrows(prob, &nq, qrow), 0);
  EXPECT_EQ(nq, 1);
  EXPECT_EQ(qrow[0], 0);
  // Columns 0..2 of the symmetric matrix: (1 in col 0), (0 in col 1), (2 in col 2).
  int64_t start[4], n = 0;
  int ind[4];
  double val[4];
  ASSERT_EQ(ZRVSgetqrowqmatrix(prob, 0, start, ind, val, 4, &n, 0, 2), 0) << last_error();
  ASSERT_EQ(n, 3);
  EXPECT_EQ(std::vector<int64_t>(start, start + 4), (std::vector<int64_t>{0, 1, 2, 3}));
  EXPECT_EQ(std::vector<int>(ind, ind + 3), (std::vector<int>{1, 0, 2}));
  EXPECT_EQ(val[2], -0.5);
  // Setting an entry to 0 removes it; deleting the row's part empties it.
  ASSERT_EQ(ZRVSchgqrowcoeff(prob, 0, 2, 2, 0.0), 0);
  EXPECT_EQ(int_attrib(ZRVS_QCELEMS), 1);
  ASSERT_EQ(ZRVSdelqmatrix(prob, 0), 0);
  ASSERT_EQ(ZRVSgetqrows(prob, &nq, nullptr), 0);
  EXPECT_EQ(nq, 0);
  expect_failure(ZRVSdelqmatrix(prob, 4), "row");
  // Indicator rows take no quadratic part.
  set_types(1, "B");
  int r = 1, c = 1, f = 1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &r, &c, &f), 0);
  expect_failure(ZRVSchgqrowcoeff(prob, 1, 0, 0, 1.0), "indicator row");
}

TEST_F(EntryTest, IndicatorsRemovedByRange) {
  // min -x  s.t. x <= 2 when b = 1; b fixed to 1 by its lower bound.
  add_cols({-1, 0}, {0, 0}, {5, 1});
  set_types(1, "B");
  int b = 1;
  double one = 1;
  char lower = 'L';
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &b, &lower, &one), 0);
  add_row({1, 0}, 'L', 2);
  int r = 0, c = 1, f = 1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &r, &c, &f), 0);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), -2.0, 1e-9);
  ASSERT_EQ(ZRVSdelindicators(prob, 0, 0), 0);
  EXPECT_EQ(int_attrib(ZRVS_INDICATORS), 0);
  // The row stays, now an ordinary row.
  EXPECT_EQ(int_attrib(ZRVS_ROWS), 1);
  optimize();
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), -2.0, 1e-9);
  expect_failure(ZRVSdelindicators(prob, 0, 3), "range of rows");
}

TEST_F(EntryTest, AddedObjectiveHasItsControls) {
  add_cols({1, 0}, {0, 0}, {4, 4});
  int cols[1] = {1};
  double c[1] = {-1.0};
  ASSERT_EQ(ZRVSaddobj(prob, 1, cols, c, 3, 2.5), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_OBJECTIVES), 2);
  int pri = 0;
  double w = 0, read[2];
  ASSERT_EQ(ZRVSgetobjintcontrol(prob, 1, ZRVS_OBJECTIVE_PRIORITY, &pri), 0);
  ASSERT_EQ(ZRVSgetobjdblcontrol(prob, 1, ZRVS_OBJECTIVE_WEIGHT, &w), 0);
  EXPECT_EQ(pri, 3);
  EXPECT_EQ(w, 2.5);
  ASSERT_EQ(ZRVSgetobjn(prob, 1, read, 0, 1), 0);
  EXPECT_EQ(read[0], 0.0);
  EXPECT_EQ(read[1], -1.0);
  // A bad column adds nothing.
  int bad = 9;
  expect_failure(ZRVSaddobj(prob, 1, &bad, c, 0, 1.0), "colind[0] = 9");
  EXPECT_EQ(int_attrib(ZRVS_OBJECTIVES), 2);
}

TEST_F(EntryTest, SetNamesAndMipEntities) {
  add_cols({0, 0, 0, 0}, {0, 0, 0, 0}, {1, 5, 5, 5});
  set_types(0, "BISC");
  double lim = 2.0;
  int two = 2;
  ASSERT_EQ(ZRVSchgglblimit(prob, 1, &two, &lim), 0);
  char type = '1';
  int64_t start = 0;
  int members[2] = {1, 3};
  double ref[2] = {1, 2};
  ASSERT_EQ(ZRVSaddsets64(prob, 1, 2, &type, &start, members, ref), 0);
  ASSERT_EQ(ZRVSaddsetnames(prob, "pick", 0, 0), 0) << last_error();
  int index = -1;
  ASSERT_EQ(ZRVSgetindex(prob, 3, "pick", &index), 0);
  EXPECT_EQ(index, 0);
  expect_failure(ZRVSaddsetnames(prob, "a\0b", 0, 1), "range of sets");
  int nent = 0, nsets = 0;
  ASSERT_EQ(ZRVSgetmipentities64(prob, &nent, &nsets, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr),
            0);
  ASSERT_EQ(nent, 3);
  ASSERT_EQ(nsets, 1);
  char ct[3], st[1];
  int ci[3], sc[2];
  double li[3], rv[2];
  int64_t ss[2];
  ASSERT_EQ(ZRVSgetmipentities64(prob, &nent, &nsets, ct, ci, li, st, ss, sc, rv), 0);
  EXPECT_EQ(std::string(ct, 3), "BIS");
  EXPECT_EQ(std::vector<int>(ci, ci + 3), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(li[2], 2.0);
  EXPECT_EQ(st[0], '1');
  EXPECT_EQ(ss[1], 2);
  EXPECT_EQ(sc[1], 3);
  EXPECT_EQ(rv[1], 2.0);
}

// Collects the messages of a problem.
void collect(ZRVSprob, void *data, const char *msg, int len, int) {
  if (msg) static_cast<std::vector<std::string> *>(data)->emplace_back(msg, len);
}

TEST_F(EntryTest, MessageCodesAndLogFile) {
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  std::vector<std::string> seen;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect, &seen, 0), 0);
  std::string path = ::testing::TempDir() + "zrvs_entries.log";
  std::remove(path.c_str());
  ASSERT_EQ(ZRVSsetlogfile(prob, path.c_str()), 0) << last_error();
  int status = -1;
  ASSERT_EQ(ZRVSgetmessagestatus(prob, ZRVS_MSGCODE_SOLVE_SUMMARY, &status), 0);
  EXPECT_EQ(status, 1);
  add_cols({1}, {1}, {2});
  optimize();
  auto summaries = [&] {
    int n = 0;
    for (const std::string &s : seen) n += s.find(" solve ") != std::string::npos;
    return n;
  };
  ASSERT_EQ(summaries(), 1);
  ASSERT_EQ(ZRVSsetmessagestatus(prob, ZRVS_MSGCODE_SOLVE_SUMMARY, 0), 0);
  ASSERT_EQ(ZRVSgetmessagestatus(prob, ZRVS_MSGCODE_SOLVE_SUMMARY, &status), 0);
  EXPECT_EQ(status, 0);
  optimize();
  EXPECT_EQ(summaries(), 1);
  ASSERT_EQ(ZRVSsetmessagestatus(prob, ZRVS_MSGCODE_SOLVE_SUMMARY, 1), 0);
  optimize();
  EXPECT_EQ(summaries(), 2);
  ASSERT_EQ(ZRVSsetlogfile(prob, nullptr), 0);
  // The file holds what the callback got while it was open.
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  for (const std::string &s : seen) EXPECT_NE(text.str().find(s), std::string::npos) << s;
  std::remove(path.c_str());
  expect_failure(ZRVSsetmessagestatus(prob, 42, 0), "not a message code");
  expect_failure(ZRVSsetmessagestatus(prob, ZRVS_MSGCODE_SOLVER_LOG, 2), "status is 2");
  expect_failure(ZRVSsetlogfile(prob, "/nonexistent-dir/x.log"), "cannot open log file");
}

}  // namespace
