// The `problem` methods of the callbacks: addcb<kind>, removecb<kind>,
// copycallbacks and interrupt, and the copying of registrations with
// problem.copy. The records live in the problem's slots (problem.h).
#pragma once

namespace zrv {

// Adds the methods to the problem method table and installs the copy hook.
// 0, or -1 with an error.
int RegisterCallbackMethods();

}  // namespace zrv
