// HiGHS runs its parallel work on one global scheduler whose thread count is
// fixed when it starts. A solve holds a lease on it while it runs: shared,
// so that solves with the same count run side by side; a solve that needs
// another count waits for the running ones to end and restarts it.
//
// A solve started on a thread that already holds a lease (a callback that
// solves another problem) runs on the scheduler as it is: restarting it
// under the running solve would wait for itself. HiGHS calls the log and
// interrupt callbacks on the thread that runs the solve.
#pragma once
#include <mutex>
#include <shared_mutex>

namespace zorvan {

class SchedulerLease {
 public:
  // threads: the count the solve asks for; 0 takes the scheduler as it is.
  explicit SchedulerLease(int threads);
  ~SchedulerLease();
  SchedulerLease(const SchedulerLease &) = delete;
  SchedulerLease &operator=(const SchedulerLease &) = delete;

  // The thread count to give HiGHS: the one asked for, or 0 (use the
  // running scheduler) for a solve inside another.
  int threads() const { return threads_; }

 private:
  std::shared_lock<std::shared_mutex> lock_;
  int threads_;
};

}  // namespace zorvan
