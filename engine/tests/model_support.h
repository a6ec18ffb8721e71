// Helpers for tests that build and solve models through the C interface.
#pragma once
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "test_support.h"

// A problem with output silenced, plus helpers that add columns and dense rows.
class ModelTest : public ProblemTest {
 protected:
  void SetUp() override {
    ProblemTest::SetUp();
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  }
  // Columns with objective, bounds and no matrix entries; returns the first.
  int add_cols(const std::vector<double> &obj, const std::vector<double> &lb,
               const std::vector<double> &ub) {
    int first = int_attrib(ZRVS_COLS);
    EXPECT_EQ(ZRVSaddcols64(prob, static_cast<int>(obj.size()), 0, obj.data(), nullptr, nullptr,
                            nullptr, lb.data(), ub.data()),
              0)
        << last_error();
    return first;
  }
  // One row from a dense coefficient vector over the first columns.
  int add_row(const std::vector<double> &coef, char type, double rhs, double rng = 0.0) {
    std::vector<int> ind;
    std::vector<double> val;
    for (size_t j = 0; j < coef.size(); ++j)
      if (coef[j] != 0.0) ind.push_back(static_cast<int>(j)), val.push_back(coef[j]);
    int64_t start = 0;
    int row = int_attrib(ZRVS_ROWS);
    EXPECT_EQ(ZRVSaddrows64(prob, 1, static_cast<int64_t>(val.size()), &type, &rhs, &rng, &start,
                            ind.data(), val.data()),
              0)
        << last_error();
    return row;
  }
  void set_types(int first, const std::string &types) {
    std::vector<int> ind;
    for (size_t k = 0; k < types.size(); ++k) ind.push_back(first + static_cast<int>(k));
    ASSERT_EQ(ZRVSchgcoltype(prob, static_cast<int>(ind.size()), ind.data(), types.data()), 0)
        << last_error();
  }
  // Solves; returns the solve status and checks that the call succeeded.
  int optimize(int *solstatus = nullptr, const char *flags = "") {
    int solve = -1, sol = -1;
    EXPECT_EQ(ZRVSoptimize(prob, flags, &solve, &sol), 0) << last_error();
    if (solstatus) *solstatus = sol;
    return solve;
  }
  double dbl_attrib(int id) const {
    double v = 0;
    EXPECT_EQ(ZRVSgetdblattrib(prob, id, &v), 0);
    return v;
  }
  int64_t int64_attrib(int id) const {
    int64_t v = 0;
    EXPECT_EQ(ZRVSgetintattrib64(prob, id, &v), 0);
    return v;
  }
  std::vector<double> lp_x() {
    std::vector<double> x(int_attrib(ZRVS_COLS));
    EXPECT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, nullptr, nullptr), 0) << last_error();
    return x;
  }
  std::vector<double> mip_x() {
    std::vector<double> x(int_attrib(ZRVS_COLS));
    EXPECT_EQ(ZRVSgetmipsol(prob, x.data(), nullptr), 0) << last_error();
    return x;
  }
  // Asserts that call failed and that the error text contains `part`.
  void expect_failure(int status, const std::string &part) {
    EXPECT_NE(status, 0);
    EXPECT_NE(last_error().find(part), std::string::npos) << last_error();
  }
};
