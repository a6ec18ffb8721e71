// Ipopt's return codes as the engine's statuses: the nonlinear status
// (ZSLP_NLP_...), the LP status through which a problem without a nonlinear
// companion is read, and the solve and solution statuses.
#pragma once
#include "problem/results.h"

namespace zorvan::nlp {

// Fills the statuses of r from Ipopt's return code `status`; stop_reason
// is why the solve stopped itself (ZRVS_STOP_...), `feasible` whether the
// final point satisfies the rows and bounds.
void record_ipopt_status(int status, int stop_reason, bool feasible, StageResult &r);

// Ipopt's return code in words ("maximum number of iterations exceeded").
const char *ipopt_status_text(int status);

}  // namespace zorvan::nlp
