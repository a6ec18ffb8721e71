// The failure flag of value-only user functions: the function calls
// ZSLPsetfunctionerror while it runs, on the thread that called it, and the
// evaluator reads the flag after the call.
#pragma once

namespace zorvan::nlp {

void note_user_function_error();
// Whether a failure was noted since the last call; clears the flag.
bool take_user_function_error();

}  // namespace zorvan::nlp
