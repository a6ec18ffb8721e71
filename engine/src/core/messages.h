// Global message handlers: every engine message reaches them.
#pragma once
#include <string>

#include "zorvan/zrvs.h"

namespace zorvan {

// Adds a handler after those of the same or higher priority.
void add_global_handler(ZRVS_msghandler f, void *data, int priority);
// Sends one message (msg may be null for a flush) to every global handler.
void send_to_global_handlers(const void *object, const char *msg, int len, int msgtype);
// Removes handlers matching f (any if null) and data (any if null).
void remove_global_handlers(ZRVS_msghandler f, void *data);

}  // namespace zorvan
