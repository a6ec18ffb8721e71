// Environment start and stop, version, banner and global switches.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "zorvan/zrvs.h"

namespace {

std::string global_error(int *code = nullptr) {
  char text[ZRVS_MAXMESSAGELENGTH];
  ZRVS_ge_getlasterror(code, text, sizeof text, nullptr);
  return text;
}

TEST(Environment, StartsNestAndStopsAsOftenAsStarted) {
  ASSERT_EQ(ZRVSgetinitcount(), 0);
  ASSERT_EQ(ZRVSinit(nullptr), 0);
  ASSERT_EQ(ZRVSinit(""), 0);
  EXPECT_EQ(ZRVSgetinitcount(), 2);
  EXPECT_EQ(ZRVSfree(), 0);
  EXPECT_EQ(ZRVSgetinitcount(), 1);
  ZRVSprob prob = nullptr;
  EXPECT_EQ(ZRVScreateprob(&prob), 0) << "one start is still active";
  EXPECT_EQ(ZRVSdestroyprob(prob), 0);
  EXPECT_EQ(ZRVSfree(), 0);
  EXPECT_EQ(ZRVSgetinitcount(), 0);

  int code = 0;
  EXPECT_NE(ZRVSfree(), 0) << "stopping a stopped environment fails";
  EXPECT_NE(global_error(&code).find("not started"), std::string::npos);
  EXPECT_EQ(code, ZRVS_ERR_NOTSTARTED);
  EXPECT_NE(ZRVScreateprob(&prob), 0);
  EXPECT_EQ(prob, nullptr);
}

TEST(Environment, InstallationDirectoryMustExist) {
  EXPECT_NE(ZRVSinit("/no/such/zorvan/dir"), 0);
  EXPECT_NE(global_error().find("/no/such/zorvan/dir"), std::string::npos);
  EXPECT_EQ(ZRVSgetinitcount(), 0);
  setenv("ZORVANDIR", "/no/such/env/dir", 1);
  EXPECT_NE(ZRVSinit(nullptr), 0);
  EXPECT_NE(global_error().find("/no/such/env/dir"), std::string::npos);
  setenv("ZORVANDIR", "/tmp", 1);
  EXPECT_EQ(ZRVSinit(nullptr), 0);
  unsetenv("ZORVANDIR");
  EXPECT_EQ(ZRVSfree(), 0);
}

TEST(Environment, VersionAndBanner) {
  char version[ZRVS_MAXVERSIONLENGTH];
  ASSERT_EQ(ZRVSgetversion(version), 0);
  int major = -1, minor = -1, build = -1;
  ASSERT_EQ(ZRVSgetversionnumbers(&major, &minor, &build), 0);
  EXPECT_EQ(std::string(version), std::to_string(major) + "." + std::to_string(minor) + "." +
                                      std::to_string(build));
  EXPECT_EQ(ZRVSgetversionnumbers(nullptr, nullptr, nullptr), 0);

  char banner[ZRVS_MAXBANNERLENGTH];
  ASSERT_EQ(ZRVSgetbanner(banner), 0);
  std::string text(banner);
  EXPECT_NE(text.find("Zorvan Optimizer"), std::string::npos);
  EXPECT_NE(text.find(version), std::string::npos);
  EXPECT_NE(text.find("HiGHS 1."), std::string::npos) << text;
  EXPECT_NE(ZRVSgetbanner(nullptr), 0);
}

TEST(Environment, CheckedModeCatchesDestroyedHandles) {
  ASSERT_EQ(ZRVSinit(nullptr), 0);
  int checked = -1;
  ASSERT_EQ(ZRVSgetcheckedmode(&checked), 0);
  EXPECT_EQ(checked, 1);
  ZRVSprob prob = nullptr;
  ASSERT_EQ(ZRVScreateprob(&prob), 0);
  ASSERT_EQ(ZRVSdestroyprob(prob), 0);
  // The handle is dangling: checked mode reports it without touching it.
  EXPECT_NE(ZRVSsetprobname(prob, "x"), 0);
  EXPECT_NE(global_error().find("not a live problem"), std::string::npos);
  EXPECT_NE(ZRVSdestroyprob(reinterpret_cast<ZRVSprob>(&checked)), 0);

  ASSERT_EQ(ZRVSsetcheckedmode(0), 0);
  ASSERT_EQ(ZRVSgetcheckedmode(&checked), 0);
  EXPECT_EQ(checked, 0);
  EXPECT_NE(ZRVSsetprobname(nullptr, "x"), 0) << "NULL is caught in every mode";
  EXPECT_EQ(ZRVSsetcheckedmode(1), 0);
  EXPECT_EQ(ZRVSfree(), 0);
}

TEST(Environment, GlobalSwitches) {
  int value = -1;
  EXPECT_EQ(ZRVS_ge_setarchconsistency(1), 0);
  EXPECT_EQ(ZRVS_ge_getarchconsistency(&value), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(ZRVS_ge_setarchconsistency(0), 0);
  EXPECT_EQ(ZRVS_ge_getarchconsistency(&value), 0);
  EXPECT_EQ(value, 0);

  EXPECT_EQ(ZRVS_ge_getcomputeallowed(&value), 0);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(ZRVS_ge_setcomputeallowed(0), 0);
  int code = 0;
  EXPECT_NE(ZRVS_ge_setcomputeallowed(1), 0);
  EXPECT_NE(global_error(&code).find("remote computation"), std::string::npos);
  EXPECT_EQ(code, ZRVS_ERR_UNSUPPORTED);
}

TEST(Environment, FeatureQuery) {
  int status = -1;
  ASSERT_EQ(ZRVSfeaturequery("HiGHS", &status), 0);
  EXPECT_EQ(status, 1);
  ASSERT_EQ(ZRVSfeaturequery("remotecompute", &status), 0);
  EXPECT_EQ(status, 0);
  ASSERT_EQ(ZRVSfeaturequery("no such feature", &status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_NE(ZRVSfeaturequery(nullptr, &status), 0);
  // Every listed feature is known to the query.
  int listed = 0;
  for (const char *f = ZRVSgetfeaturelist(); *f; f += std::string(f).size() + 1) {
    status = -1;
    EXPECT_EQ(ZRVSfeaturequery(f, &status), 0);
    EXPECT_TRUE(status == 0 || status == 1);
    ++listed;
  }
  EXPECT_GE(listed, 2);
}

TEST(Environment, LastErrorTruncatesAndReportsLength) {
  EXPECT_NE(ZRVSinit("/definitely/missing"), 0);
  char small[8];
  int nbytes = 0, code = 0;
  ASSERT_EQ(ZRVS_ge_getlasterror(&code, small, sizeof small, &nbytes), 0);
  EXPECT_EQ(std::string(small).size(), 7u);
  EXPECT_GT(nbytes, 7);
  EXPECT_EQ(code, ZRVS_ERR_FILE);
}

}  // namespace
