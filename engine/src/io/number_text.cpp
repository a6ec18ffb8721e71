// Number formatting and parsing for the file readers and writers.
#include "io/number_text.h"

#include <cctype>
#include <charconv>
#include <cmath>

#include "zorvan/zrvs.h"

namespace zorvan {

std::string format_number(double v) {
  if (v == 0.0) return "0";  // also turns -0 into 0
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, res.ptr);
}

namespace {
bool equals_nocase(std::string_view a, const char *b) {
  size_t n = 0;
  for (; b[n]; ++n)
    if (n >= a.size() || std::tolower(static_cast<unsigned char>(a[n])) != b[n]) return false;
  return n == a.size();
}
}  // namespace

bool parse_number(std::string_view text, double &value) {
  if (text.empty()) return false;
  bool negative = false;
  if (text[0] == '+' || text[0] == '-') {
    negative = text[0] == '-';
    text.remove_prefix(1);
    if (text.empty()) return false;
  }
  if (equals_nocase(text, "inf") || equals_nocase(text, "infinity")) {
    value = negative ? ZRVS_MINUSINFINITY : ZRVS_PLUSINFINITY;
    return true;
  }
  // Only plain decimal forms: from_chars would also take "nan" and hex.
  char c = text[0];
  if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.')) return false;
  double v = 0.0;
  auto res = std::from_chars(text.data(), text.data() + text.size(), v,
                             std::chars_format::general);
  if (res.ec == std::errc::result_out_of_range) {
    // Overflow reads as infinite, underflow as zero.
    v = 0.0;
    const char *e = text.data();
    while (e < text.data() + text.size() && *e != 'e' && *e != 'E') ++e;
    bool tiny = e + 1 < text.data() + text.size() && e[1] == '-';
    v = tiny ? 0.0 : ZRVS_PLUSINFINITY;
  } else if (res.ec != std::errc()) {
    return false;
  }
  if (res.ptr != text.data() + text.size()) return false;
  if (!std::isfinite(v)) return false;
  value = negative ? -v : v;
  return true;
}

}  // namespace zorvan
