// The list of global message handlers.
#include "core/messages.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace zorvan {

namespace {
struct Handler {
  ZRVS_msghandler f;
  void *data;
  int priority;
};
std::mutex g_mutex;
std::vector<Handler> g_handlers;  // by decreasing priority, then registration
}  // namespace

void send_to_global_handlers(const void *object, const char *msg, int len, int msgtype) {
  std::vector<Handler> handlers;
  {
    std::lock_guard<std::mutex> lock(g_mutex);
    handlers = g_handlers;
  }
  // Called without the lock held, so a handler may add or remove handlers.
  for (const Handler &h : handlers) h.f(const_cast<void *>(object), h.data, nullptr, msg, len, msgtype);
}

void add_global_handler(ZRVS_msghandler f, void *data, int priority) {
  std::lock_guard<std::mutex> lock(g_mutex);
  auto pos = std::find_if(g_handlers.begin(), g_handlers.end(),
                          [&](const Handler &h) { return h.priority < priority; });
  g_handlers.insert(pos, Handler{f, data, priority});
}

void remove_global_handlers(ZRVS_msghandler f, void *data) {
  std::lock_guard<std::mutex> lock(g_mutex);
  g_handlers.erase(std::remove_if(g_handlers.begin(), g_handlers.end(),
                                  [&](const Handler &h) {
                                    return (!f || h.f == f) && (!data || h.data == data);
                                  }),
                   g_handlers.end());
}

}  // namespace zorvan
