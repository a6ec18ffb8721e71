// The one-to-one members of `problem`, registered by the module at start-up.
#pragma once

namespace zrv {

// Adds every member to the problem method table. 0, or -1 with an error.
int RegisterMembers();
// The members of the nonlinear solver (members_nonlinear.cpp).
int RegisterNonlinearMembers();

// The cut pool members (members_cuts.cpp). 0, or -1 with an error.
int RegisterCutMembers();

}  // namespace zrv
