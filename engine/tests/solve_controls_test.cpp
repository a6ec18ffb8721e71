// Controls that reach HiGHS, each observed through a solve whose behaviour
// it changes; log forwarding; interrupting a running solve from another
// thread.
#include <chrono>
#include <cmath>
#include <thread>

#include "model_support.h"

namespace {

// Collects the messages sent to a problem's message callback.
void collect(ZRVSprob, void *data, const char *msg, int, int) {
  if (msg) static_cast<std::vector<std::string> *>(data)->push_back(msg);
}

class SolveControls : public ModelTest {
 protected:
  // A market-split instance (4 rows, 36 binaries): minimise the deviation
  // from the splits. Such instances take branch-and-bound a long time.
  void build_hard_mip() {
    const int m = 4, n = 36;
    unsigned seed = 12345;
    auto next = [&] { return (seed = seed * 1103515245u + 12345u) >> 16 & 0x7fff; };
    std::vector<double> obj(n, 0.0), lb(n, 0.0), ub(n, 1.0);
    add_cols(obj, lb, ub);
    set_types(0, std::string(n, 'B'));
    // Deviation columns d+ and d- per row, cost 1.
    add_cols(std::vector<double>(2 * m, 1.0), std::vector<double>(2 * m, 0.0),
             std::vector<double>(2 * m, 1e20));
    for (int i = 0; i < m; ++i) {
      std::vector<double> row(n + 2 * m, 0.0);
      double sum = 0;
      for (int j = 0; j < n; ++j) sum += row[j] = next() % 100;
      row[n + 2 * i] = 1, row[n + 2 * i + 1] = -1;
      add_row(row, 'E', std::floor(sum / 2));
    }
  }
  int stopstatus() { return int_attrib(ZRVS_STOPSTATUS); }
};

TEST_F(SolveControls, TimeLimitStopsAMip) {
  build_hard_mip();
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 0.3), 0);
  auto t0 = std::chrono::steady_clock::now();
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count(), 5.0);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_TIMELIMIT);
  // Stopped with or without an integer solution; the statuses agree.
  if (sol == ZRVS_SOLSTATUS_FEASIBLE) {
    EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_SOLUTION);
    mip_x();
  } else {
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_NOTFOUND);
    EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_NO_SOL_FOUND);
  }
  EXPECT_GT(dbl_attrib(ZRVS_SOLVETIME), 0.2);
}

TEST_F(SolveControls, NodeLimitStopsAMip) {
  build_hard_mip();
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, 20), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_NODELIMIT);
  EXPECT_LE(int64_attrib(ZRVS_NODES), 25);
}

// Accepting any gap ends the search at the first solution whose bound gap
// is within it; the hard instance does not finish otherwise.
TEST_F(SolveControls, GapControlsEndTheSearch) {
  for (int id : {ZRVS_MIPRELSTOP, ZRVS_MIPABSSTOP}) {
    build_hard_mip();
    ASSERT_EQ(ZRVSsetdblcontrol(prob, id, id == ZRVS_MIPRELSTOP ? 1.0 : 1e6), 0);
    ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 20), 0);
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED) << id;
    EXPECT_EQ(int_attrib(ZRVS_MIPSTATUS), ZRVS_MIP_OPTIMAL) << id;
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  }
}

TEST_F(SolveControls, IterationLimitStopsAnLp) {
  const int n = 40;
  add_cols(std::vector<double>(n, -1), std::vector<double>(n, 0), std::vector<double>(n, 1e20));
  for (int i = 0; i < n; ++i) {
    std::vector<double> row(n);
    for (int j = 0; j < n; ++j) row[j] = 1 + (i * j) % 7;
    add_row(row, 'L', 100 + i);
  }
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_LPITERLIMIT, 1), 0);
  EXPECT_EQ(optimize(nullptr, "d"), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNFINISHED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_ITERLIMIT);
  ASSERT_EQ(ZRVSsetdefaultcontrol(prob, ZRVS_LPITERLIMIT), 0);
  EXPECT_EQ(optimize(nullptr, "d"), ZRVS_SOLVESTATUS_COMPLETED);
}

// x >= 1 as a bound, x <= 1 - 1e-5 as a row: feasible within a loose
// feasibility tolerance only.
TEST_F(SolveControls, FeasibilityTolerance) {
  add_cols({1}, {1}, {1e20});
  add_row({1}, 'L', 1 - 1e-5);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  int sol = -1;
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_FEASTOL, 1e-4), 0);
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
}

// An integer column at 0.4: integral only within an integrality tolerance
// of 0.45.
TEST_F(SolveControls, IntegralityTolerance) {
  add_cols({1}, {0}, {10});
  set_types(0, "I");
  add_row({1}, 'E', 0.4);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  int sol = -1;
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPTOL, 0.45), 0);
  optimize(&sol);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
}

// outputlog >= 2 forwards HiGHS's log with the prefix; presolve and the
// thread count show in it; outputlog 0 silences everything.
TEST_F(SolveControls, LogForwardingPresolveAndThreads) {
  build_hard_mip();
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, 5), 0);
  std::vector<std::string> lines;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect, &lines, 0), 0);
  optimize();
  EXPECT_TRUE(lines.empty());
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 2), 0);
  ASSERT_EQ(ZRVSsetstrcontrol(prob, ZRVS_OUTPUTPREFIX, "[z] "), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_THREADS, 2), 0);
  auto contains = [&](const std::string &part) {
    for (const auto &l : lines)
      if (l.find(part) != std::string::npos) return true;
    return false;
  };
  optimize();
  ASSERT_FALSE(lines.empty());
  for (const auto &l : lines) EXPECT_EQ(l.rfind("[z] ", 0), 0u) << l;
  EXPECT_TRUE(contains("Presolv")) << "presolve on";
  EXPECT_TRUE(contains("2 threads") || contains("threads 2") || contains("2 thread"));
  lines.clear();
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  optimize();
  EXPECT_FALSE(contains("Presolving model"));
  ASSERT_EQ(ZRVSremovecbmessage(prob, collect, &lines), 0);
}

// The random seed steers HiGHS's search: the same seed repeats a stopped
// search exactly, and some other seed takes another path.
TEST_F(SolveControls, RandomSeedChangesTheSearch) {
  build_hard_mip();
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, 200), 0);
  auto path = [&](int seed) {
    EXPECT_EQ(ZRVSsetintcontrol(prob, ZRVS_RANDOMSEED, seed), 0);
    optimize();
    return std::vector<double>{static_cast<double>(int_attrib(ZRVS_SIMPLEXITER)),
                               static_cast<double>(int64_attrib(ZRVS_NODES)),
                               dbl_attrib(ZRVS_BESTBOUND)};
  };
  std::vector<double> first = path(0);
  EXPECT_EQ(path(0), first);
  bool differs = false;
  for (int seed = 1; seed <= 4 && !differs; ++seed) differs = path(seed) != first;
  EXPECT_TRUE(differs);
}

TEST_F(SolveControls, InterruptFromAnotherThread) {
  build_hard_mip();
  // A request made before the solve is dropped when it starts.
  ASSERT_EQ(ZRVSinterrupt(prob, ZRVS_STOP_USER), 0);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 30), 0);
  std::thread stopper([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    ZRVSinterrupt(prob, ZRVS_STOP_CTRLC);
  });
  auto t0 = std::chrono::steady_clock::now();
  int solve = optimize();
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  stopper.join();
  EXPECT_EQ(solve, ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(stopstatus(), ZRVS_STOP_CTRLC);
  EXPECT_GE(seconds, 0.25);
  EXPECT_LT(seconds, 10.0);
}

}  // namespace
