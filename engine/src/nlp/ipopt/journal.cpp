#include "nlp/ipopt/journal.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "problem/problem.h"

namespace zorvan::nlp {

MessageJournal::~MessageJournal() {
  if (!pending_.empty()) p_.message(ZRVS_MSG_INFO, pending_);
}

void MessageJournal::take(const char *text) {
  pending_ += text;
  size_t start = 0, end;
  while ((end = pending_.find('\n', start)) != std::string::npos) {
    p_.message(ZRVS_MSG_INFO, pending_.substr(start, end - start));
    start = end + 1;
  }
  pending_.erase(0, start);
}

void MessageJournal::PrintImpl(Ipopt::EJournalCategory, Ipopt::EJournalLevel, const char *str) {
  take(str);
}

void MessageJournal::PrintfImpl(Ipopt::EJournalCategory, Ipopt::EJournalLevel,
                                const char *pformat, va_list ap) {
  char small[512];
  va_list copy;
  va_copy(copy, ap);
  int len = std::vsnprintf(small, sizeof small, pformat, copy);
  va_end(copy);
  if (len < 0) return;
  if (static_cast<size_t>(len) < sizeof small) return take(small);
  std::vector<char> large(static_cast<size_t>(len) + 1);
  std::vsnprintf(large.data(), large.size(), pformat, ap);
  take(large.data());
}

void MessageJournal::FlushBufferImpl() { p_.message(ZRVS_MSG_FLUSH, std::string()); }

}  // namespace zorvan::nlp
