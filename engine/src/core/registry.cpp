#include "core/registry.h"

#include <mutex>
#include <unordered_map>

namespace zorvan {

namespace {
std::mutex g_mutex;
std::unordered_map<const void *, ObjectKind> &objects() {
  static auto *map = new std::unordered_map<const void *, ObjectKind>();
  return *map;
}
}  // namespace

void register_object(const void *object, ObjectKind kind) {
  std::lock_guard<std::mutex> lock(g_mutex);
  objects()[object] = kind;
}

void unregister_object(const void *object) {
  std::lock_guard<std::mutex> lock(g_mutex);
  objects().erase(object);
}

bool is_live(const void *object, ObjectKind kind) {
  std::lock_guard<std::mutex> lock(g_mutex);
  auto it = objects().find(object);
  return it != objects().end() && it->second == kind;
}

const char *object_type_name(const void *object) {
  std::lock_guard<std::mutex> lock(g_mutex);
  auto it = objects().find(object);
  if (it == objects().end()) return nullptr;
  return it->second == ObjectKind::problem ? "ZRVSprob" : "ZSLPprob";
}

}  // namespace zorvan
