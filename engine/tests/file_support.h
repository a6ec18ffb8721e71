// Helpers for the problem file tests: a whole model read back through the
// C interface, compared field by field, and temporary directories.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "zorvan/zrvs.h"

// Everything a problem file holds, read through the public interface.
struct ModelSnapshot {
  std::string name;
  double objsense = 0, objconstant = 0;
  int rows = 0, cols = 0, sets = 0;
  std::string rowtype, coltype, settype;
  std::vector<double> rhs, range, lb, ub, obj, limit;
  std::vector<int64_t> colstart, setstart;
  std::vector<int> rowind, setcol, indcol, indflag;
  std::vector<double> coef, setref;
  std::vector<int64_t> qstart;
  std::vector<int> qcol;
  std::vector<double> qval;
  std::vector<std::vector<int>> qrow1, qrow2;
  std::vector<std::vector<double>> qrowval;
  std::vector<std::string> rownames, colnames, setnames;
};

inline std::vector<std::string> read_names(ZRVSprob prob, int type, int count) {
  std::vector<std::string> out;
  if (count == 0) return out;
  int nbytes = 0;
  EXPECT_EQ(ZRVSgetnamelist(prob, type, nullptr, 0, &nbytes, 0, count - 1), 0);
  std::vector<char> buf(nbytes + 1);
  EXPECT_EQ(ZRVSgetnamelist(prob, type, buf.data(), nbytes, &nbytes, 0, count - 1), 0);
  for (size_t k = 0; k < static_cast<size_t>(nbytes);) {
    out.emplace_back(buf.data() + k);
    k += out.back().size() + 1;
  }
  return out;
}

inline ModelSnapshot snapshot(ZRVSprob prob) {
  ModelSnapshot s;
  char name[ZRVS_MAXNAMELENGTH + 1];
  EXPECT_EQ(ZRVSgetprobname(prob, name), 0);
  s.name = name;
  EXPECT_EQ(ZRVSgetdblattrib(prob, ZRVS_OBJSENSE, &s.objsense), 0);
  EXPECT_EQ(ZRVSgetobjdblcontrol(prob, 0, ZRVS_OBJECTIVE_RHS, &s.objconstant), 0);
  EXPECT_EQ(ZRVSgetintattrib(prob, ZRVS_ROWS, &s.rows), 0);
  EXPECT_EQ(ZRVSgetintattrib(prob, ZRVS_COLS, &s.cols), 0);
  EXPECT_EQ(ZRVSgetintattrib(prob, ZRVS_SETS, &s.sets), 0);
  int m = s.rows, n = s.cols;
  if (m > 0) {
    s.rowtype.resize(m), s.rhs.resize(m), s.range.resize(m), s.indcol.resize(m),
        s.indflag.resize(m);
    EXPECT_EQ(ZRVSgetrowtype(prob, &s.rowtype[0], 0, m - 1), 0);
    EXPECT_EQ(ZRVSgetrhs(prob, s.rhs.data(), 0, m - 1), 0);
    EXPECT_EQ(ZRVSgetrhsrange(prob, s.range.data(), 0, m - 1), 0);
    EXPECT_EQ(ZRVSgetindicators(prob, s.indcol.data(), s.indflag.data(), 0, m - 1), 0);
    s.qrow1.resize(m), s.qrow2.resize(m), s.qrowval.resize(m);
    for (int i = 0; i < m; ++i) {
      int64_t nq = 0;
      EXPECT_EQ(ZRVSgetqrowqmatrixtriplets(prob, i, &nq, nullptr, nullptr, nullptr), 0);
      if (nq == 0) continue;
      s.qrow1[i].resize(nq), s.qrow2[i].resize(nq), s.qrowval[i].resize(nq);
      EXPECT_EQ(ZRVSgetqrowqmatrixtriplets(prob, i, &nq, s.qrow1[i].data(), s.qrow2[i].data(),
                                           s.qrowval[i].data()),
                0);
    }
    s.rownames = read_names(prob, 1, m);
  }
  if (n > 0) {
    s.coltype.resize(n), s.lb.resize(n), s.ub.resize(n), s.obj.resize(n), s.limit.resize(n);
    EXPECT_EQ(ZRVSgetcoltype(prob, &s.coltype[0], 0, n - 1), 0);
    EXPECT_EQ(ZRVSgetlb(prob, s.lb.data(), 0, n - 1), 0);
    EXPECT_EQ(ZRVSgetub(prob, s.ub.data(), 0, n - 1), 0);
    EXPECT_EQ(ZRVSgetobj(prob, s.obj.data(), 0, n - 1), 0);
    EXPECT_EQ(ZRVSgetglblimit(prob, s.limit.data(), 0, n - 1), 0);
    int64_t nz = 0;
    s.colstart.resize(n + 1);
    EXPECT_EQ(ZRVSgetcols64(prob, nullptr, nullptr, nullptr, 0, &nz, 0, n - 1), 0);
    s.rowind.resize(nz), s.coef.resize(nz);
    EXPECT_EQ(ZRVSgetcols64(prob, s.colstart.data(), s.rowind.data(), s.coef.data(), nz, &nz, 0,
                            n - 1),
              0);
    // The order of a column's entries is not part of the model.
    for (int j = 0; j < n; ++j) {
      std::vector<std::pair<int, double>> col;
      for (int64_t k = s.colstart[j]; k < s.colstart[j + 1]; ++k)
        col.push_back({s.rowind[k], s.coef[k]});
      std::sort(col.begin(), col.end());
      for (size_t k = 0; k < col.size(); ++k)
        s.rowind[s.colstart[j] + k] = col[k].first, s.coef[s.colstart[j] + k] = col[k].second;
    }
    int64_t nq = 0;
    s.qstart.resize(n + 1);
    EXPECT_EQ(ZRVSgetmqobj64(prob, nullptr, nullptr, nullptr, 0, &nq, 0, n - 1), 0);
    s.qcol.resize(nq), s.qval.resize(nq);
    EXPECT_EQ(ZRVSgetmqobj64(prob, s.qstart.data(), s.qcol.data(), s.qval.data(), nq, &nq, 0,
                             n - 1),
              0);
    s.colnames = read_names(prob, 2, n);
  }
  if (s.sets > 0) {
    int64_t ne = 0;
    EXPECT_EQ(ZRVSgetsets64(prob, nullptr, nullptr, nullptr, nullptr, 0, &ne, 0, s.sets - 1), 0);
    s.settype.resize(s.sets), s.setstart.resize(s.sets + 1), s.setcol.resize(ne),
        s.setref.resize(ne);
    EXPECT_EQ(ZRVSgetsets64(prob, &s.settype[0], s.setstart.data(), s.setcol.data(),
                            s.setref.data(), ne, &ne, 0, s.sets - 1),
              0);
    s.setnames = read_names(prob, 3, s.sets);
  }
  return s;
}

// Compares two snapshots exactly (doubles bit for bit through ==).
inline void expect_same_model(const ModelSnapshot &a, const ModelSnapshot &b, bool names,
                              const std::string &what) {
  SCOPED_TRACE(what);
  EXPECT_EQ(a.objsense, b.objsense);
  EXPECT_EQ(a.objconstant, b.objconstant);
  ASSERT_EQ(a.rows, b.rows);
  ASSERT_EQ(a.cols, b.cols);
  ASSERT_EQ(a.sets, b.sets);
  EXPECT_EQ(a.rowtype, b.rowtype);
  EXPECT_EQ(a.coltype, b.coltype);
  EXPECT_EQ(a.rhs, b.rhs);
  EXPECT_EQ(a.range, b.range);
  EXPECT_EQ(a.lb, b.lb);
  EXPECT_EQ(a.ub, b.ub);
  EXPECT_EQ(a.obj, b.obj);
  EXPECT_EQ(a.colstart, b.colstart);
  EXPECT_EQ(a.rowind, b.rowind);
  EXPECT_EQ(a.coef, b.coef);
  EXPECT_EQ(a.qstart, b.qstart);
  EXPECT_EQ(a.qcol, b.qcol);
  EXPECT_EQ(a.qval, b.qval);
  EXPECT_EQ(a.qrow1, b.qrow1);
  EXPECT_EQ(a.qrow2, b.qrow2);
  EXPECT_EQ(a.qrowval, b.qrowval);
  EXPECT_EQ(a.indcol, b.indcol);
  EXPECT_EQ(a.indflag, b.indflag);
  EXPECT_EQ(a.settype, b.settype);
  EXPECT_EQ(a.setstart, b.setstart);
  EXPECT_EQ(a.setcol, b.setcol);
  EXPECT_EQ(a.setref, b.setref);
  if (names) {
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.rownames, b.rownames);
    EXPECT_EQ(a.colnames, b.colnames);
    EXPECT_EQ(a.setnames, b.setnames);
  }
}

// A temporary directory removed with its contents at the end of the scope.
class TempDir {
 public:
  TempDir() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "zorvan-files-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    char *made = mkdtemp(buf.data());
    if (made) path_ = made;
  }
  ~TempDir() {
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;
  bool ok() const { return !path_.empty(); }
  std::string file(const std::string &name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// Writes text to a file.
inline void write_text(const std::string &path, const std::string &text) {
  FILE *f = std::fopen(path.c_str(), "wb");
  ASSERT_NE(f, nullptr) << path;
  ASSERT_EQ(std::fwrite(text.data(), 1, text.size(), f), text.size());
  std::fclose(f);
}

inline std::string read_text(const std::string &path) {
  std::string out;
  FILE *f = std::fopen(path.c_str(), "rb");
  if (!f) return out;
  char buf[4096];
  size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) out.append(buf, n);
  std::fclose(f);
  return out;
}

// A model with every part a file holds: sense, objective constant, all row
// types with a range, all column types, bounds of every kind, a quadratic
// objective, a quadratic row, two sets, an indicator, names, and numbers
// that have no short decimal form.
inline void build_feature_model(ZRVSprob prob) {
  const double inf = ZRVS_PLUSINFINITY;
  ASSERT_EQ(ZRVSsetprobname(prob, "features"), 0);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  // Columns: x0 C free, x1 C [-5, 1/3], x2 I [0, 7], x3 B, x4 S [2, 9],
  // x5 R [1, 6], x6 C fixed, x7 C [0, inf) unused, x8 C lb -inf ub -2.
  std::vector<double> obj = {1.0 / 3, -2.5, 0.1, 1e-300, 4, 3, 0, 0, -1};
  std::vector<double> lb = {-inf, -5, 0, 0, 2, 1, 3.25, 0, -inf};
  std::vector<double> ub = {inf, 1.0 / 3, 7, 1, 9, 6, 3.25, inf, -2};
  ASSERT_EQ(ZRVSaddcols64(prob, 9, 0, obj.data(), nullptr, nullptr, nullptr, lb.data(), ub.data()),
            0);
  std::vector<int> ind = {2, 3, 4, 5};
  ASSERT_EQ(ZRVSchgcoltype(prob, 4, ind.data(), "IBSR"), 0);
  // Rows: L, G, E, R, N, and an indicator row.
  std::vector<char> type = {'L', 'G', 'E', 'R', 'N', 'L'};
  std::vector<double> rhs = {10, -3.141592653589793, 2, 8, 0, 5};
  std::vector<double> rng = {0, 0, 0, 6.02214076e23 * 0 + 12.5, 0, 0};
  std::vector<int64_t> start = {0, 3, 5, 7, 9, 11};
  std::vector<int> col = {0, 1, 2, 1, 3, 4, 5, 0, 8, 6, 7, 2, 3};
  std::vector<double> val = {1, 2, 3, -1, 1e-7, 1, 1, 0.7, -1.5, 2, 1, 1, 1};
  ASSERT_EQ(ZRVSaddrows64(prob, 6, 13, type.data(), rhs.data(), rng.data(), start.data(),
                          col.data(), val.data()),
            0);
  // Quadratic objective and a quadratic row.
  std::vector<int> q1 = {0, 0, 1}, q2 = {0, 1, 1};
  std::vector<double> qv = {2, 0.5, 1.0 / 7};
  ASSERT_EQ(ZRVSchgmqobj64(prob, 3, q1.data(), q2.data(), qv.data()), 0);
  std::vector<int> r1 = {0, 1}, r2 = {1, 0};
  std::vector<double> rv = {1.5, 0.25};
  ASSERT_EQ(ZRVSaddqmatrix64(prob, 0, 2, r1.data(), r2.data(), rv.data()), 0);
  // Sets and an indicator on row 5 by x3 = 0.
  int64_t sstart[] = {0, 2};
  int scol[] = {0, 1, 6, 7, 8};
  double sref[] = {1, 2, 1.5, 2.5, 3.5};
  ASSERT_EQ(ZRVSaddsets64(prob, 2, 5, "12", sstart, scol, sref), 0);
  int irow = 5, icol = 3, iflag = -1;
  ASSERT_EQ(ZRVSsetindicators(prob, 1, &irow, &icol, &iflag), 0);
  int constant_col = -1;
  double constant = -17.75;
  ASSERT_EQ(ZRVSchgobj(prob, 1, &constant_col, &constant), 0);
  const char cols[] = "x0\0x1\0x2\0x3\0x4\0x5\0x6\0x7\0x8";
  ASSERT_EQ(ZRVSaddnames(prob, 2, cols, 0, 8), 0);
  const char rows[] = "lim\0low\0bal\0band\0free\0ind";
  ASSERT_EQ(ZRVSaddnames(prob, 1, rows, 0, 5), 0);
  ASSERT_EQ(ZRVSaddnames(prob, 3, "first\0second", 0, 1), 0);
}

// Collects the warnings a problem sends to its message callbacks.
inline void collect_warnings(ZRVSprob, void *data, const char *msg, int, int msgtype) {
  if (msg && msgtype == ZRVS_MSG_WARNING) static_cast<std::string *>(data)->append(msg).append("\n");
}

// A malformed file for a read test and what its error must say.
struct BadFile {
  const char *text, *expected;
};

// Reads each bad file into prob: every read fails with an error naming the
// file and the fault, and prob keeps the model it had (snapshot before).
template <size_t N>
void expect_bad_files_refused(ZRVSprob prob, const TempDir &dir, const char *filename,
                              const char *options, const BadFile (&cases)[N],
                              const ModelSnapshot &before) {
  for (const BadFile &c : cases) {
    SCOPED_TRACE(c.text);
    std::string file = dir.file(filename);
    write_text(file, c.text);
    EXPECT_NE(ZRVSreadprob(prob, file.c_str(), options), 0);
    char error[ZRVS_MAXMESSAGELENGTH];
    EXPECT_EQ(ZRVSgetlasterror(prob, error), 0);
    EXPECT_NE(std::string(error).find("file '" + file + "'"), std::string::npos) << error;
    EXPECT_NE(std::string(error).find(c.expected), std::string::npos) << error;
    expect_same_model(before, snapshot(prob), true, c.expected);
  }
}
