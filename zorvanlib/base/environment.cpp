// Counted starts and stops of the engine and its nonlinear companion.
#include "base/environment.h"

#include <algorithm>
#include <string>

#include "base/errors.h"
#include "base/globals.h"
#include "base/output.h"
#include "base/text.h"
#include "zorvan/zslp.h"

namespace zrv {

namespace {

EnvironmentHooks Hooks;

void LowerCount() {
  std::lock_guard<std::mutex> lock(EnvironmentLock);
  EnvCount = std::max(EnvCount - 1, 0);
}

}  // namespace

void SetEnvironmentHooks(const EnvironmentHooks &hooks) { Hooks = hooks; }

int StartEnvironment(const char *path, bool explicit_start) {
  if (!explicit_start && GetEnvCount() >= 1) return 0;
  int32_t old_count;
  {
    std::lock_guard<std::mutex> lock(EnvironmentLock);
    old_count = EnvCount;
    EnvCount = std::max(old_count + 1, 0);
  }
  if (ZRVSinit(path) != 0) {
    LowerCount();
    std::string msg = GlobalLastError(nullptr);
    SetErrorFromEngine(InterfaceError,
                       msg.empty() ? "Error initializing optimization environment" : msg.c_str());
    return -1;
  }
  bool slp_started_here = false;
  bool ok = true;
  if (GetSlpStarted() != 0) {
    if (ZSLPinit() == 0) {
      std::lock_guard<std::mutex> lock(EnvironmentLock);
      SlpStarted = 1;
      slp_started_here = true;
    } else {
      PyErr_SetString(InterfaceError, "Error initializing ZSLP environment");
      ok = false;
    }
  }
  if (ok && old_count == 0 && ZRVS_ge_addcbmsghandler(GlobalMessageCallback, nullptr, 1) != 0) {
    ReportError(nullptr, nullptr);
    ok = false;
  }
  if (ok && (!Hooks.after_start || Hooks.after_start() == 0)) return 0;
  // Undo this start.
  if (old_count == 0) ZRVS_ge_removecbmsghandler(GlobalMessageCallback, nullptr);
  if (slp_started_here) ZSLPfree();
  ZRVSfree();
  LowerCount();
  return -1;
}

int StopEnvironment(bool once) {
  for (;;) {
    int32_t count = GetEnvCount();
    if (count == 0) return 0;
    if (count == 1) {
      ZRVS_ge_removecbmsghandler(GlobalMessageCallback, nullptr);
      // Problems cannot outlive the engine: release them while it still runs.
      if (Hooks.before_last_stop) Hooks.before_last_stop();
    }
    if (GetSlpStarted() != 0) ZSLPfree();
    ZRVSfree();
    LowerCount();
    if (once || GetEnvCount() == 0) return 0;
  }
}

}  // namespace zrv
