// The HiGHS callback of a solve: interrupts (ZRVSinterrupt) reach HiGHS,
// and with outputlog >= 2 HiGHS's log lines reach the problem's messages.
#pragma once
#include <mutex>
#include <string>

#include "problem/problem.h"
#include "interfaces/highs_c_api.h"

namespace zorvan {

// Connected for the lifetime of this object.
class SolveCallback {
 public:
  SolveCallback(void *highs, zrvs_problem &p);
  ~SolveCallback();
  SolveCallback(const SolveCallback &) = delete;
  SolveCallback &operator=(const SolveCallback &) = delete;

 private:
  static void handle(int type, const char *text, const HighsCallbackDataOut *out,
                     HighsCallbackDataIn *in, void *data);
  void *highs_;
  zrvs_problem &p_;
  std::mutex log_mutex_;
  std::string partial_line_;
};

}  // namespace zorvan
