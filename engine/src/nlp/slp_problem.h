// The nonlinear companion's problem object behind the ZSLPprob handle.
#pragma once
#include <atomic>
#include <string>

#include "core/problem.h"

namespace zorvan {
const Catalogue &slp_catalogue();
// Catalogue flags (ZSLP_CAFLAG_...) of an entry.
int slp_flags(const CatalogueEntry &e);
}  // namespace zorvan

struct zslp_problem {
  explicit zslp_problem(zrvs_problem *main) : prob(main), controls(zorvan::slp_catalogue()) {}

  zrvs_problem *prob;  // the main problem this one extends
  zorvan::ControlValues controls;
  std::string last_error;
  int last_error_code = 0;
  ZSLP_cbmessage message_callback = nullptr;
  void *message_data = nullptr;
  int nlpstatus = ZSLP_NLP_UNSTARTED;
  double objval = 0.0;
  std::atomic<int> interrupt_reason{ZRVS_STOP_NONE};
};

namespace zorvan {

void check_slp_handle(const zslp_problem *slp, const char *who);

// Runs body(slp) for entry point `who`, storing failures as slp's last error.
template <class Body>
int slp_call(ZSLPprob slp, const char *who, Body &&body) {
  try {
    check_slp_handle(slp, who);
  } catch (const Error &e) {
    set_global_error(e.code(), e.what());
    return e.code();
  }
  int status = global_call([&] { body(*slp); });
  if (status != 0) {
    slp->last_error = global_error_text();
    slp->last_error_code = status;
  }
  return status;
}

// Throws unless ZSLPinit has been called more often than ZSLPfree.
void require_slp_started(const char *who);

}  // namespace zorvan
