// The controls of one objective (priority, weight, tolerances, constant).
#pragma once
#include "model/model.h"

namespace zorvan {

// Each throws for a control of another type or an unknown one, and for a
// value out of range.
void set_objective_int_control(Objective &o, int control, int value, const char *who);
void set_objective_dbl_control(Objective &o, int control, double value, const char *who);
int objective_int_control(const Objective &o, int control, const char *who);
double objective_dbl_control(const Objective &o, int control, const char *who);

}  // namespace zorvan
