#include "nlp/functions/user_function_error.h"

namespace zorvan::nlp {

namespace {
thread_local bool failed = false;
}

void note_user_function_error() { failed = true; }

bool take_user_function_error() {
  bool was = failed;
  failed = false;
  return was;
}

}  // namespace zorvan::nlp
