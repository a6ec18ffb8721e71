// The controls of one objective.
#include "model/objective_controls.h"

#include <cmath>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
void check_int_control(int control, const char *who) {
  if (control != ZRVS_OBJECTIVE_PRIORITY)
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not an integer objective control (20001 priority)", who,
         control);
}

// The field of a double control, or NULL.
template <class O>
auto dbl_field(O &o, int control) -> decltype(&o.weight) {
  switch (control) {
    case ZRVS_OBJECTIVE_WEIGHT: return &o.weight;
    case ZRVS_OBJECTIVE_ABSTOL: return &o.abstol;
    case ZRVS_OBJECTIVE_RELTOL: return &o.reltol;
    case ZRVS_OBJECTIVE_RHS: return &o.constant;
  }
  return nullptr;
}

template <class O>
auto checked_dbl_field(O &o, int control, const char *who) {
  auto field = dbl_field(o, control);
  if (!field)
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not a double objective control (20002..20005)", who,
         control);
  return field;
}
}  // namespace

void set_objective_int_control(Objective &o, int control, int value, const char *who) {
  check_int_control(control, who);
  o.priority = value;
}

void set_objective_dbl_control(Objective &o, int control, double value, const char *who) {
  double *field = checked_dbl_field(o, control, who);
  if (!std::isfinite(value)) fail(ZRVS_ERR_ARGUMENT, "%s: value is not a finite number", who);
  if ((control == ZRVS_OBJECTIVE_ABSTOL || control == ZRVS_OBJECTIVE_RELTOL) && value < 0)
    fail(ZRVS_ERR_ARGUMENT, "%s: a tolerance must not be negative (%g)", who, value);
  *field = value;
}

int objective_int_control(const Objective &o, int control, const char *who) {
  check_int_control(control, who);
  return o.priority;
}

double objective_dbl_control(const Objective &o, int control, const char *who) {
  return *checked_dbl_field(o, control, who);
}

}  // namespace zorvan
