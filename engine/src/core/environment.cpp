// Environment start and stop, version and banner, global switches.
#include "core/environment.h"

#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "core/entry.h"
#include "core/errors.h"
#include "core/messages.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
std::mutex g_env_mutex;
int g_start_count = 0;
std::string g_install_dir;
std::atomic<bool> g_checked_mode{true};
std::atomic<bool> g_arch_consistency{false};

const char *const k_version = ZORVAN_STRINGIFY(ZORVAN_VERSION_MAJOR) "." ZORVAN_STRINGIFY(
    ZORVAN_VERSION_MINOR) "." ZORVAN_STRINGIFY(ZORVAN_VERSION_PATCH);
}  // namespace

void start_environment(const char *path, const char *who) {
  std::string dir = path ? path : "";
  if (dir.empty()) {
    const char *env = std::getenv("ZORVANDIR");
    if (env) dir = env;
  }
  if (!dir.empty()) {
    struct stat info;
    if (stat(dir.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
      fail(ZRVS_ERR_FILE, "%s: the installation directory '%s' does not exist", who,
           dir.c_str());
  }
  std::lock_guard<std::mutex> lock(g_env_mutex);
  if (g_start_count == 0) g_install_dir = dir;
  ++g_start_count;
}

void stop_environment(const char *who) {
  bool last = false;
  {
    std::lock_guard<std::mutex> lock(g_env_mutex);
    if (g_start_count == 0) fail(ZRVS_ERR_NOTSTARTED, "%s: the environment is not started", who);
    last = --g_start_count == 0;
  }
  // Handlers belong to a started environment: the last stop drops them.
  if (last) remove_global_handlers(nullptr, nullptr);
}

int start_count() {
  std::lock_guard<std::mutex> lock(g_env_mutex);
  return g_start_count;
}

void require_started(const char *function) {
  if (!environment_started())
    fail(ZRVS_ERR_NOTSTARTED, "%s: the environment is not started (call ZRVSinit first)",
         function);
}

bool environment_started() { return start_count() > 0; }

bool checked_mode() { return g_checked_mode.load(); }
void set_checked_mode(bool on) { g_checked_mode = on; }
bool arch_consistency() { return g_arch_consistency.load(); }
void set_arch_consistency(bool on) { g_arch_consistency = on; }

const char *version_text() { return k_version; }

}  // namespace zorvan
