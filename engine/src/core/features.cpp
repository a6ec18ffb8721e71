// Feature queries: the capabilities this build of the engine provides.
#include "core/features.h"

#include <cctype>
#include <string>

namespace zorvan {

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

bool feature_available(const char *feature) {
  std::string name(feature);
  for (char &c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const Feature &f : k_features)
    if (name == f.name) return f.available;
  return false;
}

const char *feature_list() { return k_feature_list; }

}  // namespace zorvan
