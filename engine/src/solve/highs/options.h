// Controls of a problem turned into HiGHS options, and the HiGHS callback
// that carries interrupts and log lines back to the problem. HiGHS is used
// through its C interface, which does not depend on the C++ library ABI
// HiGHS was built with.
#pragma once
#include <mutex>
#include <string>

#include "core/problem.h"
#include "interfaces/highs_c_api.h"

namespace zorvan {

// Sets HiGHS's options from the problem's controls. algorithm is the
// flags' choice ('d', 'p', 'b') or 0 to take the defaultalg control;
// threads the count of the solve's scheduler lease.
void apply_controls(void *highs, const zrvs_problem &p, char algorithm, int threads);

// The thread count a solve uses: the threads control, or a fixed count
// under architecture consistency; 0 lets HiGHS choose.
int solve_threads(const zrvs_problem &p);

// Connects interrupts (ZRVSinterrupt) and, with outputlog >= 2, HiGHS's log
// lines to the problem, for the lifetime of this object.
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
