// Solver callbacks through real solves: registration rules, when each kind
// fires on HiGHS's algorithms, what it reads and what its result changes.
#include <algorithm>
#include <cmath>
#include <cstdint>
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

// gapnotify: records the relative gap it was called at and sets the next
// target at half of it.
struct GapTargets {
  std::vector<double> gaps;
};

void halve_gap(ZRVSprob prob, void *data, double *relgap, double *absgap, double *, double *) {
  double gap = 0;
  ZRVSgetdblattrib(prob, ZRVS_MIPGAP, &gap);
  static_cast<GapTargets *>(data)->gaps.push_back(gap);
  EXPECT_LT(*absgap, 0) << "the absolute target stays unarmed";
  *relgap = gap / 2;
}

TEST_F(Knapsack, GapTargetsFireOnceAndRenewedTargetsTakeEffect) {
  GapTargets seen;
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPRELGAPNOTIFY, 0.5), 0);
  ASSERT_EQ(ZRVSaddcbgapnotify(prob, halve_gap, &seen, 0), 0);
  optimize();
  ASSERT_GE(seen.gaps.size(), 2u);
  EXPECT_LE(seen.gaps[0], 0.5);
  for (size_t k = 1; k < seen.gaps.size(); ++k) EXPECT_LE(seen.gaps[k], seen.gaps[k - 1] / 2);
  // The control itself is unchanged by the callback.
  double target = 0;
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_MIPRELGAPNOTIFY, &target), 0);
  EXPECT_EQ(target, 0.5);
}

void stop_solve(ZRVSprob prob, void *, double *, double *, double *, double *) {
  ZRVSinterrupt(prob, ZRVS_STOP_USER);
}

TEST_F(Knapsack, ObjectiveTargetLetsTheUserStopAtAGoodEnoughSolution) {
  // Stop at the first incumbent worth at least 90% of the optimum.
  const double optimum = best([](int) { return true; });
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPABSGAPNOTIFYOBJ, 0.9 * optimum), 0);
  ASSERT_EQ(ZRVSaddcbgapnotify(prob, stop_solve, nullptr, 0), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_USER);
  EXPECT_GE(dbl_attrib(ZRVS_MIPOBJVAL), 0.9 * optimum - 1e-9);
}

// Objective levels: the order of the events and what afterobjective reads.
std::vector<std::string> g_levels;
void before_level(ZRVSprob, void *) { g_levels.push_back("before"); }
void after_level(ZRVSprob prob, void *) {
  double v = 0;
  ZRVSgetdblattrib(prob, ZRVS_LPOBJVAL, &v);
  g_levels.push_back("after " + std::to_string(static_cast<int>(std::lround(v))));
}

TEST_F(ModelTest, ObjectiveLevelsAreBracketedByTheirEvents) {
  // max x, then max y, with x + y <= 5 and both at most 4: x = 4, y = 1.
  add_cols({1, 0}, {0, 0}, {4, 4});
  add_row({1, 1}, 'L', 5);
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  const int col = 1;
  const double one = 1;
  ASSERT_EQ(ZRVSchgobjn(prob, 1, 1, &col, &one), 0) << last_error();
  ASSERT_EQ(ZRVSsetobjintcontrol(prob, 1, ZRVS_OBJECTIVE_PRIORITY, -1), 0);
  ASSERT_EQ(ZRVSaddcbbeforeobjective(prob, before_level, nullptr, 0), 0);
  ASSERT_EQ(ZRVSaddcbafterobjective(prob, after_level, nullptr, 0), 0);
  g_levels.clear();
  optimize();
  EXPECT_EQ(g_levels, (std::vector<std::string>{"before", "after 4", "before", "after 1"}));
  // A single objective has no levels to bracket.
  ASSERT_EQ(ZRVSdelobj(prob, 1), 0);
  g_levels.clear();
  optimize();
  EXPECT_TRUE(g_levels.empty());
}

int count_and_stop(ZRVSprob prob, void *data) {
  auto *calls = static_cast<std::vector<int64_t> *>(data);
  int64_t iter = 0;
  ZRVSgetintattrib64(prob, ZRVS_SIMPLEXITER, &iter);
  calls->push_back(iter);
  return calls->size() >= 2 ? 1 : 0;
}

TEST_F(ModelTest, LpLogSeesIterationsAndStopsTheSimplex) {
  const int n = 8;
  add_cols(std::vector<double>(n, 1), std::vector<double>(n, 0), std::vector<double>(n, 10));
  for (int i = 0; i < n; ++i) {
    std::vector<double> row(n);
    for (int j = 0; j < n; ++j) row[j] = 1 + (i * 3 + j * 5) % 7;
    add_row(row, 'L', 20 + i);
  }
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  std::vector<int64_t> calls;
  ASSERT_EQ(ZRVSaddcblplog(prob, count_and_stop, &calls, 0), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol, "p"), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_USER);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNFINISHED);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_LT(calls[0], calls[1]) << "one call per new iteration";
  // Without the callback the same LP solves.
  ASSERT_EQ(ZRVSremovecblplog(prob, nullptr, nullptr), 0);
  EXPECT_EQ(optimize(&sol, "p"), ZRVS_SOLVESTATUS_COMPLETED);
}

}  // namespace
