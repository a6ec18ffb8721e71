// Feature queries: the capabilities this build of the engine provides.
#include <cctype>
#include <string>

#include "core/api.h"

using namespace zorvan;

namespace {
struct Feature {
  const char *name;
  bool available;
};
// Grows as capabilities land; a feature is listed available only when the
// engine really provides it.
const Feature k_features[] = {
    {"highs", true},         // the HiGHS library is linked
    {"checkedmode", true},   // handle validation (ZRVSsetcheckedmode)
    {"archconsistency", true},
    {"remotecompute", false},
};
const char k_feature_list[] = "highs\0checkedmode\0archconsistency\0remotecompute\0";
}  // namespace

extern "C" {

int ZRVSfeaturequery(const char *feature, int *status) {
  return global_call([&] {
    if (!feature || !status) fail(ZRVS_ERR_ARGUMENT, "ZRVSfeaturequery: NULL argument");
    std::string name(feature);
    for (char &c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    *status = 0;
    for (const Feature &f : k_features)
      if (name == f.name) *status = f.available ? 1 : 0;
  });
}

const char *ZRVSgetfeaturelist(void) { return k_feature_list; }

}  // extern "C"
