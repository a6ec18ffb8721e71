// The live engine objects.
#include "core/registry.h"

#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "core/environment.h"
#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
// Readers (the handle check of every entry point, from any thread) share
// the lock; only creating and destroying objects takes it alone.
std::shared_mutex g_mutex;
std::unordered_map<const void *, ObjectKind> &objects() {
  static auto *map = new std::unordered_map<const void *, ObjectKind>();
  return *map;
}
}  // namespace

void register_object(const void *object, ObjectKind kind) {
  std::unique_lock<std::shared_mutex> lock(g_mutex);
  objects()[object] = kind;
}

void unregister_object(const void *object) {
  std::unique_lock<std::shared_mutex> lock(g_mutex);
  objects().erase(object);
}

bool is_live(const void *object, ObjectKind kind) {
  std::shared_lock<std::shared_mutex> lock(g_mutex);
  auto it = objects().find(object);
  return it != objects().end() && it->second == kind;
}

const char *object_type_name(const void *object) {
  std::shared_lock<std::shared_mutex> lock(g_mutex);
  auto it = objects().find(object);
  if (it == objects().end()) return nullptr;
  return it->second == ObjectKind::problem ? "ZRVSprob" : "ZSLPprob";
}

void check_handle(const void *object, ObjectKind kind, const char *noun, const char *who) {
  if (!object) fail(ZRVS_ERR_ARGUMENT, "%s: the %s is NULL", who, noun);
  if (checked_mode() && !is_live(object, kind))
    fail(ZRVS_ERR_ARGUMENT, "%s: the handle is not a live %s (destroyed or never created)", who,
         noun);
}

}  // namespace zorvan
