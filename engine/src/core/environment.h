// Library-wide state: the start count and the global switches.
#pragma once
#include <string>

namespace zorvan {

// Throws unless ZRVSinit has been called more often than ZRVSfree.
void require_started(const char *function);
bool environment_started();
bool checked_mode();
bool arch_consistency();

}  // namespace zorvan
