// Engine errors: internal code throws zorvan::Error; the C entry points catch
// it and store the text where the caller can read it.
#pragma once
#include <stdexcept>
#include <string>

namespace zorvan {

class Error : public std::runtime_error {
 public:
  Error(int code, const std::string &text) : std::runtime_error(text), code_(code) {}
  int code() const { return code_; }

 private:
  int code_;
};

// Throws Error(code, printf-formatted text).
[[noreturn]] void fail(int code, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

// The per-thread error of calls made without a problem.
void set_global_error(int code, const std::string &text);
int global_error_code();
const std::string &global_error_text();

// Copies text into buf (capacity bytes, NUL included), truncating.
void copy_text(const std::string &text, char *buf, size_t capacity);

}  // namespace zorvan
