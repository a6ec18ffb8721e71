#include "events/registry.h"

#include <algorithm>

namespace zorvan {

EventRegistry::EventRegistry() {
  for (auto &list : lists_) list = std::make_shared<const List>();
}

void EventRegistry::add(EventKind kind, void (*function)(), void *data, int priority) {
  std::lock_guard<std::mutex> lock(writers_);
  auto &slot = lists_[static_cast<size_t>(kind)];
  auto list = std::make_shared<List>(*std::atomic_load(&slot));
  auto pos = std::find_if(list->begin(), list->end(),
                          [&](const Registration &r) { return r.priority < priority; });
  list->insert(pos, Registration{function, data, priority});
  std::atomic_store(&slot, std::shared_ptr<const List>(std::move(list)));
}

void EventRegistry::remove(EventKind kind, void (*function)(), void *data) {
  std::lock_guard<std::mutex> lock(writers_);
  auto &slot = lists_[static_cast<size_t>(kind)];
  auto list = std::make_shared<List>(*std::atomic_load(&slot));
  list->erase(std::remove_if(list->begin(), list->end(),
                             [&](const Registration &r) {
                               return (!function || r.function == function) &&
                                      (!data || r.data == data);
                             }),
              list->end());
  std::atomic_store(&slot, std::shared_ptr<const List>(std::move(list)));
}

}  // namespace zorvan
