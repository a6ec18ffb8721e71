#include "solve/highs/scheduler.h"

#include "interfaces/highs_c_api.h"

namespace zorvan {

namespace {
std::shared_mutex g_scheduler_mutex;
int g_scheduler_threads = 0;  // 0: not started by a solve with a fixed count
thread_local int t_leases = 0;  // leases held by this thread
}  // namespace

SchedulerLease::SchedulerLease(int threads) : threads_(threads) {
  if (t_leases > 0) {
    // The outer lease of this thread covers this solve.
    threads_ = 0;
    ++t_leases;
    return;
  }
  for (;;) {
    std::shared_lock<std::shared_mutex> shared(g_scheduler_mutex);
    if (threads == 0 || g_scheduler_threads == threads) {
      lock_ = std::move(shared);
      break;
    }
    shared.unlock();
    std::unique_lock<std::shared_mutex> exclusive(g_scheduler_mutex);
    if (g_scheduler_threads != threads) {
      Highs_resetGlobalScheduler(1);
      g_scheduler_threads = threads;
    }
  }
  ++t_leases;
}

SchedulerLease::~SchedulerLease() { --t_leases; }

}  // namespace zorvan
