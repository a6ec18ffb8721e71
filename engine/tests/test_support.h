// Shared fixtures for the engine tests.
#pragma once
#include <gtest/gtest.h>

#include <string>

#include "zorvan/zrvs.h"
#include "zorvan/zslp.h"

// Starts the environment for one test and creates a problem.
class ProblemTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ZRVSinit(nullptr), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
  }
  void TearDown() override {
    if (prob) {
      EXPECT_EQ(ZRVSdestroyprob(prob), 0);
    }
    EXPECT_EQ(ZRVSfree(), 0);
  }
  std::string last_error() const {
    char text[ZRVS_MAXMESSAGELENGTH];
    EXPECT_EQ(ZRVSgetlasterror(prob, text), 0);
    return text;
  }
  int int_attrib(int id) const {
    int value = -1;
    EXPECT_EQ(ZRVSgetintattrib(prob, id, &value), 0);
    return value;
  }
  ZRVSprob prob = nullptr;
};
