#include "core/errors.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

namespace zorvan {

namespace {
thread_local int t_code = 0;
thread_local std::string t_text;
}  // namespace

void fail(int code, const char *format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int n = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::vector<char> buf(n > 0 ? n + 1 : 1, '\0');
  if (n > 0) std::vsnprintf(buf.data(), buf.size(), format, args);
  va_end(args);
  throw Error(code, buf.data());
}

void set_global_error(int code, const std::string &text) {
  t_code = code;
  t_text = text;
}

int global_error_code() { return t_code; }
const std::string &global_error_text() { return t_text; }

void copy_text(const std::string &text, char *buf, size_t capacity) {
  if (!buf || capacity == 0) return;
  size_t n = text.size() < capacity - 1 ? text.size() : capacity - 1;
  std::memcpy(buf, text.data(), n);
  buf[n] = '\0';
}

}  // namespace zorvan
