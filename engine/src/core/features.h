// The capabilities this build of the engine provides, by name.
#pragma once

namespace zorvan {

// True when the named feature (case-insensitive) is available.
bool feature_available(const char *name);
// The names of all features, packed NUL-separated, ending with an empty name.
const char *feature_list();

}  // namespace zorvan
