#include "module/environment.h"

#include <algorithm>
#include <string>

#include "module/errors.h"
#include "module/globals.h"
#include "module/output.h"
#include "module/text.h"
#include "problem/control.h"
#include "problem/problem.h"
#include "zorvan/zslp.h"

namespace zrv {

namespace {

void LowerCount() {
  std::lock_guard<std::mutex> lock(EnvironmentLock);
  EnvCount = std::max(EnvCount - 1, 0);
}

}  // namespace

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
    char msg[ZRVS_MAXMESSAGELENGTH] = {0};
    int code = 0, nbytes = 0;
    ZRVS_ge_getlasterror(&code, msg, sizeof msg, &nbytes);
    msg[sizeof msg - 1] = '\0';
    SetErrorFromEngine(InterfaceError, msg[0] ? msg : "Error initializing optimization environment");
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
  if (ok && EnsureCatalogue() == 0) return 0;
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
      ReleaseAllProblems();
    }
    if (GetSlpStarted() != 0) ZSLPfree();
    ZRVSfree();
    LowerCount();
    if (once || GetEnvCount() == 0) return 0;
  }
}

int EnsureCatalogue() {
  if (CatalogueDict && PyDict_GET_SIZE(CatalogueDict) > 0) return 0;
  if (LoadCatalogue(true) < 0) return -1;
  // Every new problem returns the solution of the original nonlinear problem
  // unless the user sets otherwise.
  if (PyDict_GetItemString(ControlDict, "zslp_postsolve")) {
    PyObject *one = PyLong_FromLong(1);
    if (!one) return -1;
    PyObject *table = reinterpret_cast<ControlObject *>(DefaultControls)->table;
    int rc = PyDict_SetItemString(table, "zslp_postsolve", one);
    if (rc == 0) {
      GilSafeLock lock(DefaultControlsLock);
      rc = PyDict_SetItemString(UserDefaults, "zslp_postsolve", one);
    }
    Py_DECREF(one);
    if (rc < 0) return -1;
  }
  return 0;
}

}  // namespace zrv
