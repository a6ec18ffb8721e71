// Entry points of the environment: start and stop, version, global switches,
// features, the global error and the global message handlers.
#include "core/arguments.h"
#include "core/entry.h"
#include "core/environment.h"
#include "core/features.h"
#include "core/messages.h"
#include "core/registry.h"
#include "interfaces/highs_c_api.h"

using namespace zorvan;

extern "C" {

int ZRVSinit(const char *path) {
  return global_call([&] { start_environment(path, "ZRVSinit"); });
}

int ZRVSfree(void) {
  return global_call([&] { stop_environment("ZRVSfree"); });
}

int ZRVSgetinitcount(void) { return start_count(); }

int ZRVSgetversion(char *version) {
  return global_call([&] {
    require(version, "the version buffer", "ZRVSgetversion");
    copy_text(version_text(), version, ZRVS_MAXVERSIONLENGTH);
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
    require(banner, "the banner buffer", "ZRVSgetbanner");
    std::string text =
        std::string("Zorvan Optimizer v") + version_text() + " (HiGHS " + Highs_version() + ")";
    copy_text(text, banner, ZRVS_MAXBANNERLENGTH);
  });
}

int ZRVSgetcheckedmode(int *checked) {
  return global_call([&] {
    require(checked, "checked", "ZRVSgetcheckedmode");
    *checked = checked_mode() ? 1 : 0;
  });
}

int ZRVSsetcheckedmode(int checked) {
  set_checked_mode(checked != 0);
  return 0;
}

int ZRVS_ge_setarchconsistency(int ifarchconsistent) {
  set_arch_consistency(ifarchconsistent != 0);
  return 0;
}

int ZRVS_ge_getarchconsistency(int *ifarchconsistent) {
  return global_call([&] {
    require(ifarchconsistent, "ifarchconsistent", "ZRVS_ge_getarchconsistency");
    *ifarchconsistent = arch_consistency() ? 1 : 0;
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
    require(allow, "allow", "ZRVS_ge_getcomputeallowed");
    *allow = 0;
  });
}

int ZRVSfeaturequery(const char *feature, int *status) {
  return global_call([&] {
    require(feature, "feature", "ZRVSfeaturequery");
    require(status, "status", "ZRVSfeaturequery");
    *status = feature_available(feature) ? 1 : 0;
  });
}

const char *ZRVSgetfeaturelist(void) { return feature_list(); }

int ZRVS_ge_getlasterror(int *msgcode, char *msg, int maxbytes, int *nbytes) {
  const std::string &text = global_error_text();
  if (msgcode) *msgcode = global_error_code();
  if (nbytes) *nbytes = static_cast<int>(text.size());
  if (msg && maxbytes > 0) copy_text(text, msg, static_cast<size_t>(maxbytes));
  return 0;
}

int ZRVS_ge_addcbmsghandler(ZRVS_msghandler f, void *data, int priority) {
  return global_call([&] {
    require_started("ZRVS_ge_addcbmsghandler");
    require(f, "the handler", "ZRVS_ge_addcbmsghandler");
    add_global_handler(f, data, priority);
  });
}

int ZRVS_ge_removecbmsghandler(ZRVS_msghandler f, void *data) {
  return global_call([&] { remove_global_handlers(f, data); });
}

int ZRVSgetobjecttypename(const void *object, const char **name) {
  return global_call([&] {
    require(name, "name", "ZRVSgetobjecttypename");
    const char *type = object ? object_type_name(object) : nullptr;
    if (!type)
      fail(ZRVS_ERR_ARGUMENT, "ZRVSgetobjecttypename: the object is not a live engine object");
    *name = type;
  });
}

}  // extern "C"
