// Environment start and stop, version and banner, global switches.
#include "core/environment.h"

#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "core/api.h"
#include "core/errors.h"
#include "core/messages.h"
#include "interfaces/highs_c_api.h"
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

void require_started(const char *function) {
  if (!environment_started())
    fail(ZRVS_ERR_NOTSTARTED, "%s: the environment is not started (call ZRVSinit first)",
         function);
}

bool environment_started() {
  std::lock_guard<std::mutex> lock(g_env_mutex);
  return g_start_count > 0;
}

bool checked_mode() { return g_checked_mode.load(); }
bool arch_consistency() { return g_arch_consistency.load(); }

}  // namespace zorvan

using namespace zorvan;

extern "C" {

int ZRVSinit(const char *path) {
  return global_call([&] {
    std::string dir = path ? path : "";
    if (dir.empty()) {
      const char *env = std::getenv("ZORVANDIR");
      if (env) dir = env;
    }
    if (!dir.empty()) {
      struct stat info;
      if (stat(dir.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        fail(ZRVS_ERR_FILE, "ZRVSinit: the installation directory '%s' does not exist",
             dir.c_str());
    }
    std::lock_guard<std::mutex> lock(g_env_mutex);
    if (g_start_count == 0) g_install_dir = dir;
    ++g_start_count;
  });
}

int ZRVSfree(void) {
  return global_call([&] {
    bool last = false;
    {
      std::lock_guard<std::mutex> lock(g_env_mutex);
      if (g_start_count == 0)
        fail(ZRVS_ERR_NOTSTARTED, "ZRVSfree: the environment is not started");
      last = --g_start_count == 0;
    }
    // Handlers belong to a started environment: the last stop drops them.
    if (last) remove_global_handlers(nullptr, nullptr);
  });
}

int ZRVSgetinitcount(void) {
  std::lock_guard<std::mutex> lock(g_env_mutex);
  return g_start_count;
}

int ZRVSgetversion(char *version) {
  return global_call([&] {
    if (!version) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetversion: version buffer is NULL");
    copy_text(k_version, version, ZRVS_MAXVERSIONLENGTH);
  });
}

int ZRVSgetversionnumbers(int *major, int *minor, int *build) {
  if (major) *major = ZORVAN_VERSION_MAJOR;
  if (minor) *minor = ZORVAN_VERSION_MINOR;
  if (build) *build = ZORVAN_VERSION_PATCH;
  return 0;
}

int ZRVSgetbanner(char *banner) {
  return global_call([&] {
    if (!banner) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetbanner: banner buffer is NULL");
    std::string text = std::string("Zorvan Optimizer v") + k_version + " (HiGHS " +
                       Highs_version() + ")";
    copy_text(text, banner, ZRVS_MAXBANNERLENGTH);
  });
}

int ZRVSgetcheckedmode(int *checked) {
  return global_call([&] {
    if (!checked) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetcheckedmode: output pointer is NULL");
    *checked = g_checked_mode.load() ? 1 : 0;
  });
}

int ZRVSsetcheckedmode(int checked) {
  g_checked_mode = checked != 0;
  return 0;
}

int ZRVS_ge_setarchconsistency(int ifarchconsistent) {
  g_arch_consistency = ifarchconsistent != 0;
  return 0;
}

int ZRVS_ge_getarchconsistency(int *ifarchconsistent) {
  return global_call([&] {
    if (!ifarchconsistent)
      fail(ZRVS_ERR_ARGUMENT, "ZRVS_ge_getarchconsistency: output pointer is NULL");
    *ifarchconsistent = g_arch_consistency.load() ? 1 : 0;
  });
}

int ZRVS_ge_setcomputeallowed(int allow) {
  return global_call([&] {
    if (allow != 0)
      fail(ZRVS_ERR_UNSUPPORTED,
           "ZRVS_ge_setcomputeallowed: remote computation is not available; this engine "
           "solves in-process only");
  });
}

int ZRVS_ge_getcomputeallowed(int *allow) {
  return global_call([&] {
    if (!allow) fail(ZRVS_ERR_ARGUMENT, "ZRVS_ge_getcomputeallowed: output pointer is NULL");
    *allow = 0;
  });
}

int ZRVS_ge_getlasterror(int *msgcode, char *msg, int maxbytes, int *nbytes) {
  const std::string &text = global_error_text();
  if (msgcode) *msgcode = global_error_code();
  if (nbytes) *nbytes = static_cast<int>(text.size());
  if (msg && maxbytes > 0) copy_text(text, msg, static_cast<size_t>(maxbytes));
  return 0;
}

}  // extern "C"
