// The callbacks of one problem, by kind, each kind's list in priority order
// (highest first, then in the order added). A list is never changed in
// place: adding or removing installs a new one (copy on write), so a solver
// thread that fires an event reads the current list with one atomic load
// and no lock, while other threads add or remove callbacks.
#pragma once
#include <array>
#include <memory>
#include <mutex>
#include <vector>

namespace zorvan {

// The kinds of events a backend fires, one per callback kind of zrvs.h.
// New kinds are appended before count_.
enum class EventKind {
  message,
  bariteration,
  barlog,
  chgbranchobject,
  cutlog,
  destroymt,
  gapnotify,
  miplog,
  infnode,
  intsol,
  lplog,
  mipthread,
  newnode,
  nodecutoff,
  nodelpsolved,
  optnode,
  preintsol,
  prenode,
  usersolnotify,
  checktime,
  beforeobjective,
  afterobjective,
  count_
};

struct Registration {
  void (*function)();  // the callback, cast back to its kind's type when fired
  void *data;
  int priority;
};

class EventRegistry {
 public:
  using List = std::vector<Registration>;

  EventRegistry();
  // Adds after the callbacks of the same or higher priority.
  void add(EventKind kind, void (*function)(), void *data, int priority);
  // Removes those matching function (any if null) and data (any if null).
  void remove(EventKind kind, void (*function)(), void *data);
  // Whether any callback of the kind is registered (one atomic load).
  bool any(EventKind kind) const { return !snapshot(kind)->empty(); }
  // The list as it is now; stays valid while the caller holds it.
  std::shared_ptr<const List> snapshot(EventKind kind) const {
    return std::atomic_load(&lists_[static_cast<size_t>(kind)]);
  }

 private:
  std::array<std::shared_ptr<const List>, static_cast<size_t>(EventKind::count_)> lists_;
  std::mutex writers_;  // one writer at a time per problem
};

}  // namespace zorvan
