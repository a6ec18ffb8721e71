// A callback of one solve may solve another problem, even one that asks for
// another thread count.
#include <chrono>
#include <future>
#include <thread>

#include "model_support.h"

namespace {

struct Inner {
  ZRVSprob prob = nullptr;
  int status = -1;  // of the inner ZRVSoptimize
  double objective = 0.0;
  bool started = false;
};

// On the outer solve's first message, solves the inner problem.
void solve_inner(ZRVSprob, void *data, const char *msg, int, int) {
  auto *inner = static_cast<Inner *>(data);
  if (!msg || inner->started) return;
  inner->started = true;
  int solve = -1;
  inner->status = ZRVSoptimize(inner->prob, "", &solve, nullptr);
  ZRVSgetdblattrib(inner->prob, ZRVS_LPOBJVAL, &inner->objective);
}

// min x + y, x + y >= 2 (outer, 1 thread) and max x, x <= 3 (inner, 2 threads).
TEST_F(ModelTest, MessageCallbackSolvesAProblemWithAnotherThreadCount) {
  add_cols({1, 1}, {0, 0}, {10, 10});
  add_row({1, 1}, 'G', 2);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_THREADS, 1), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 2), 0);
  Inner inner;
  ASSERT_EQ(ZRVScreateprob(&inner.prob), 0);
  ASSERT_EQ(ZRVSsetintcontrol(inner.prob, ZRVS_OUTPUTLOG, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(inner.prob, ZRVS_THREADS, 2), 0);
  double obj = 1, lb = 0, ub = 3;
  ASSERT_EQ(ZRVSaddcols64(inner.prob, 1, 0, &obj, nullptr, nullptr, nullptr, &lb, &ub), 0);
  ASSERT_EQ(ZRVSchgobjsense(inner.prob, ZRVS_OBJ_MAXIMIZE), 0);
  ASSERT_EQ(ZRVSaddcbmessage(prob, solve_inner, &inner, 0), 0);

  // A deadlock would never return: the solve runs on a thread of its own
  // and the test gives up after a minute (leaving that thread behind).
  std::packaged_task<int()> task([this] {
    int solve = -1;
    return ZRVSoptimize(prob, "", &solve, nullptr);
  });
  std::future<int> outer = task.get_future();
  std::thread(std::move(task)).detach();
  ASSERT_EQ(outer.wait_for(std::chrono::seconds(60)), std::future_status::ready)
      << "the outer solve did not finish";
  EXPECT_EQ(outer.get(), 0) << last_error();
  EXPECT_TRUE(inner.started);
  EXPECT_EQ(inner.status, 0);
  EXPECT_NEAR(inner.objective, 3.0, 1e-9);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 2.0, 1e-9);
  // Afterwards the inner problem gets its own thread count again.
  int solve = -1;
  EXPECT_EQ(ZRVSoptimize(inner.prob, "", &solve, nullptr), 0);
  EXPECT_EQ(ZRVSdestroyprob(inner.prob), 0);
}

}  // namespace
