// Names a file format cannot hold: writing replaces them by generated names,
// the warning reaching the problem's message callbacks says which, and the
// file reads back with the generated names and the same numbers.
#include <string>
#include <vector>

#include "file_support.h"
#include "model_support.h"

namespace {

void collect(ZRVSprob, void *data, const char *msg, int len, int msgtype) {
  if (msg && msgtype == ZRVS_MSG_WARNING)
    static_cast<std::vector<std::string> *>(data)->push_back(std::string(msg, len));
}

class NameWarnings : public ModelTest {
 protected:
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
    ASSERT_TRUE(dir.ok());
    add_cols({1, 2}, {0, 0}, {4, 4});
    add_row({1, 1}, 'L', 5);
    ASSERT_EQ(ZRVSaddnames(prob, 2, "my x\0y", 0, 1), 0) << last_error();
    ASSERT_EQ(ZRVSaddnames(prob, 1, "a row", 0, 0), 0) << last_error();
    ASSERT_EQ(ZRVSaddcbmessage(prob, collect, &warnings, 0), 0);
  }
  std::string joined() const {
    std::string all;
    for (const std::string &w : warnings) all += w + "\n";
    return all;
  }
  TempDir dir;
  std::vector<std::string> warnings;
};

TEST_F(NameWarnings, BlanksAreReplacedWithAWarningOrKeptWhereTheFormatAllows) {
  ModelSnapshot original = snapshot(prob);
  for (const char *name : {"m.lp", "m.mps", "m.fixed"}) {
    SCOPED_TRACE(name);
    // Fixed MPS fields may hold blanks: the names survive there.
    const bool fixed = std::string(name) == "m.fixed";
    warnings.clear();
    std::string file = dir.file(name);
    ASSERT_EQ(ZRVSwriteprob(prob, file.c_str(), fixed ? "f" : ""), 0) << last_error();
    std::string all = joined();
    if (fixed) {
      EXPECT_TRUE(warnings.empty()) << all;
    } else {
      EXPECT_NE(all.find("1 row names cannot be written"), std::string::npos) << all;
      EXPECT_NE(all.find("'a row' as R0"), std::string::npos) << all;
      EXPECT_NE(all.find("'my x' as C0"), std::string::npos) << all;
    }
    ZRVSprob back = nullptr;
    ASSERT_EQ(ZRVScreateprob(&back), 0);
    ASSERT_EQ(ZRVSreadprob(back, file.c_str(), fixed ? "f" : ""), 0) << name;
    ModelSnapshot read = snapshot(back);
    expect_same_model(original, read, fixed, name);
    if (!fixed) {
      EXPECT_EQ(read.colnames, (std::vector<std::string>{"C0", "y"}));
      EXPECT_EQ(read.rownames, (std::vector<std::string>{"R0"}));
    }
    EXPECT_EQ(ZRVSdestroyprob(back), 0);
  }
}

TEST_F(NameWarnings, LegalNamesWriteWithoutWarning) {
  ASSERT_EQ(ZRVSaddnames(prob, 2, "x_1\0y", 0, 1), 0);
  ASSERT_EQ(ZRVSaddnames(prob, 1, "cap", 0, 0), 0);
  ASSERT_EQ(ZRVSwriteprob(prob, dir.file("ok.lp").c_str(), ""), 0) << last_error();
  EXPECT_TRUE(warnings.empty()) << joined();
}

}  // namespace
