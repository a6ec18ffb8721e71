// Solver callbacks through real solves: registration rules, when each kind
// fires on HiGHS's algorithms, what it reads and what its result changes.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "model_support.h"

namespace {

// A two-constraint knapsack (maximise) small enough to enumerate.
class Knapsack : public ModelTest {
 protected:
  static constexpr int n = 16;
  std::vector<double> value, w1, w2;
  double cap1 = 0, cap2 = 0;

  void SetUp() override {
    ModelTest::SetUp();
    unsigned seed = 12345;
    auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 16 & 0x7fff; };
    for (int j = 0; j < n; ++j) {
      value.push_back(20 + next() % 80);
      w1.push_back(10 + next() % 60);
      w2.push_back(10 + next() % 60);
    }
    for (int j = 0; j < n; ++j) cap1 += w1[j], cap2 += w2[j];
    cap1 = std::floor(cap1 / 3), cap2 = std::floor(cap2 / 3);
    add_cols(value, std::vector<double>(n, 0), std::vector<double>(n, 1));
    set_types(0, std::string(n, 'B'));
    add_row(w1, 'L', cap1);
    add_row(w2, 'L', cap2);
    ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
    // Let the search (not presolve) find the solutions.
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_THREADS, 1), 0);
  }
  // The best value over assignments that `allowed` accepts, and its mask.
  template <class Allowed>
  double best(Allowed allowed, int *best_mask = nullptr) const {
    double top = -1;
    for (int mask = 0; mask < (1 << n); ++mask) {
      double v = 0, a = 0, b = 0;
      for (int j = 0; j < n; ++j)
        if (mask >> j & 1) v += value[j], a += w1[j], b += w2[j];
      if (a <= cap1 && b <= cap2 && allowed(mask) && v > top) {
        top = v;
        if (best_mask) *best_mask = mask;
      }
    }
    return top;
  }
  static int mask_of(const std::vector<double> &x) {
    int mask = 0;
    for (int j = 0; j < n; ++j)
      if (x[j] > 0.5) mask |= 1 << j;
    return mask;
  }
};

// What the intsol callbacks saw.
struct Incumbents {
  std::vector<double> reported;  // mipobjval at each call
  std::vector<double> computed;  // objective of the solution ZRVSgetmipsol gives
  const std::vector<double> *value = nullptr;
  std::vector<std::string> order;
};

void record_incumbent(ZRVSprob prob, void *data) {
  auto *seen = static_cast<Incumbents *>(data);
  double obj = 0;
  int cols = 0;
  ZRVSgetdblattrib(prob, ZRVS_MIPOBJVAL, &obj);
  ZRVSgetintattrib(prob, ZRVS_COLS, &cols);
  std::vector<double> x(cols);
  if (ZRVSgetmipsol(prob, x.data(), nullptr) != 0) return;
  double v = 0;
  for (int j = 0; j < cols; ++j) v += (*seen->value)[j] * x[j];
  seen->reported.push_back(obj);
  seen->computed.push_back(v);
  seen->order.push_back("low");
}
void first_in_order(ZRVSprob, void *data) {
  static_cast<Incumbents *>(data)->order.push_back("high");
}

TEST_F(Knapsack, IntsolSeesEachImprovingIncumbentInPriorityOrder) {
  Incumbents seen;
  seen.value = &value;
  ASSERT_EQ(ZRVSaddcbintsol(prob, record_incumbent, &seen, 0), 0);
  ASSERT_EQ(ZRVSaddcbintsol(prob, first_in_order, &seen, 5), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  const double optimum = best([](int) { return true; });
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), optimum, 1e-6);
  ASSERT_FALSE(seen.reported.empty());
  for (size_t k = 0; k < seen.reported.size(); ++k) {
    EXPECT_NEAR(seen.reported[k], seen.computed[k], 1e-6) << "incumbent " << k;
    if (k > 0) {
      EXPECT_GT(seen.reported[k], seen.reported[k - 1]) << "each one improves";
    }
  }
  EXPECT_NEAR(seen.reported.back(), optimum, 1e-6);
  ASSERT_EQ(seen.order.size(), 2 * seen.reported.size());
  for (size_t k = 0; k < seen.order.size(); k += 2) {
    EXPECT_EQ(seen.order[k], "high");
    EXPECT_EQ(seen.order[k + 1], "low");
  }
  // Removed by data: the next solve calls nothing.
  ASSERT_EQ(ZRVSremovecbintsol(prob, nullptr, &seen), 0);
  seen.reported.clear(), seen.order.clear();
  optimize();
  EXPECT_TRUE(seen.order.empty());
}

TEST_F(Knapsack, RegistrationRefusesNullCallbacksAndForeignHandles) {
  expect_failure(ZRVSaddcbpreintsol(prob, nullptr, nullptr, 0), "ZRVSaddcbpreintsol");
  EXPECT_NE(ZRVSaddcbintsol(nullptr, record_incumbent, nullptr, 0), 0);
  // Removing what is not there is no error.
  EXPECT_EQ(ZRVSremovecboptnode(prob, nullptr, nullptr), 0);
}

// preintsol: rejects every candidate with a banned column at 1.
struct Rejections {
  int banned = -1;
  int calls = 0, rejected = 0, soltype = 0;
};

void reject_banned(ZRVSprob prob, void *data, int soltype, int *reject, double *) {
  auto *r = static_cast<Rejections *>(data);
  ++r->calls;
  r->soltype = soltype;
  int cols = 0;
  ZRVSgetintattrib(prob, ZRVS_COLS, &cols);
  std::vector<double> x(cols);
  ASSERT_EQ(ZRVSgetmipsol(prob, x.data(), nullptr), 0) << "the candidate is readable";
  if (x[r->banned] > 0.5) *reject = 1, ++r->rejected;
}

TEST_F(Knapsack, RejectedCandidatesChangeTheOptimum) {
  int mask = 0;
  const double optimum = best([](int) { return true; }, &mask);
  // Ban a column the unique optimum uses.
  Rejections r;
  for (int j = 0; j < n; ++j)
    if (mask >> j & 1) r.banned = j;
  ASSERT_GE(r.banned, 0);
  const double without = best([&](int m) { return !(m >> r.banned & 1); });
  ASSERT_LT(without, optimum);
  ASSERT_EQ(ZRVSaddcbpreintsol(prob, reject_banned, &r, 0), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_GT(r.rejected, 0);
  EXPECT_EQ(r.soltype, -1);
  EXPECT_NEAR(dbl_attrib(ZRVS_MIPOBJVAL), without, 1e-6);
  EXPECT_LT(mip_x()[r.banned], 0.5);
}

void tighten_cutoff(ZRVSprob, void *data, int, int *, double *cutoff) {
  *cutoff = *static_cast<double *>(data);
}

TEST_F(Knapsack, TightenedCutoffLeavesNoSolution) {
  // Solutions must beat a value above the optimum: none can.
  double above = best([](int) { return true; }) + 1;
  ASSERT_EQ(ZRVSaddcbpreintsol(prob, tighten_cutoff, &above, 0), 0);
  int sol = -1;
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
}

TEST_F(Knapsack, ChecktimeStopsTheSearch) {
  int calls = 0;
  auto stop_at_third = [](ZRVSprob, void *data) -> int {
    return ++*static_cast<int *>(data) >= 3 ? 1 : 0;
  };
  ASSERT_EQ(ZRVSaddcbchecktime(prob, stop_at_third, &calls, 0), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_TIMELIMIT);
  EXPECT_EQ(calls, 3) << "no check after the stop";
}

}  // namespace
