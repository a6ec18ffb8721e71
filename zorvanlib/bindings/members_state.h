// The one-to-one members about solver state (solutions, bases, analysis,
// MIP starts, state files), registered by RegisterMembers.
#pragma once

namespace zrv {

// Adds the members of members_state.cpp to the problem method table. 0 or -1.
int RegisterStateMembers();

}  // namespace zrv
