// The nonlinear companion's problem object behind the ZSLPprob handle.
#pragma once
#include <atomic>
#include <string>

#include "problem/problem.h"

namespace zorvan {
const Catalogue &slp_catalogue();
// Catalogue flags (ZSLP_CAFLAG_...) of an entry.
int slp_flags(const CatalogueEntry &e);

// The companion's own controls and attributes, and those of the local
// nonlinear solver underneath it, as lists whose names end with "".
const CatalogueLists &slp_catalogue_lists();
const CatalogueLists &local_solver_catalogue_lists();
}  // namespace zorvan

struct zslp_problem {
  explicit zslp_problem(zrvs_problem *main) : prob(main), controls(zorvan::slp_catalogue()) {}

  zrvs_problem *prob;  // the main problem this one extends
  zorvan::ControlValues controls;
  std::string last_error;
  int last_error_code = 0;
  ZSLP_cbmessage message_callback = nullptr;
  void *message_data = nullptr;
  std::atomic<int> interrupt_reason{ZRVS_STOP_NONE};
};

namespace zorvan {

void check_slp_handle(const zslp_problem *slp, const char *who);

// Runs body(slp) for entry point `who`, storing failures as slp's last error.
template <class Body>
int slp_call(ZSLPprob slp, const char *who, Body &&body) {
  return handle_call(
      slp, who, check_slp_handle,
      [](zslp_problem &s, int status) {
        s.last_error = global_error_text();
        s.last_error_code = status;
      },
      body);
}

// Starts and stops the nonlinear companion (starts nest).
void start_slp(const char *who);
void stop_slp(const char *who);
// Throws unless ZSLPinit has been called more often than ZSLPfree.
void require_slp_started(const char *who);

// A nonlinear problem attached to prob, which keeps it.
zslp_problem *create_nonlinear(zrvs_problem *prob, const char *who);
// Destroys a nonlinear problem and detaches it from its main problem.
void destroy_nonlinear(zslp_problem *slp);

// Attribute values of a nonlinear problem.
int slp_int_attribute(const zslp_problem &s, int id, const char *who);
double slp_dbl_attribute(const zslp_problem &s, int id, const char *who);
void *slp_ptr_attribute(const zslp_problem &s, int id, const char *who);

}  // namespace zorvan
