// Library-wide state: the start count, the installation directory and the
// global switches.
#pragma once
#include <string>

namespace zorvan {

// Starts the environment once more; path (or $ZORVANDIR when path is empty)
// must name an existing directory when given.
void start_environment(const char *path, const char *who);
// Stops it once; the last stop drops the global message handlers.
void stop_environment(const char *who);
int start_count();

// Throws unless ZRVSinit has been called more often than ZRVSfree.
void require_started(const char *function);
bool environment_started();

bool checked_mode();
void set_checked_mode(bool on);
bool arch_consistency();
void set_arch_consistency(bool on);

// "major.minor.patch" of this build.
const char *version_text();

}  // namespace zorvan
