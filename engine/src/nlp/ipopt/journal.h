// Ipopt's log as the problem's messages: a journal that collects the text it
// is given and sends every complete line to the problem's message path.
#pragma once
#include <string>

#include "coin/IpJournalist.hpp"

struct zrvs_problem;

namespace zorvan::nlp {

class MessageJournal : public Ipopt::Journal {
 public:
  static constexpr const char *kName = "zorvan";
  explicit MessageJournal(zrvs_problem &p) : Ipopt::Journal(kName, Ipopt::J_NONE), p_(p) {}
  ~MessageJournal() override;

 protected:
  void PrintImpl(Ipopt::EJournalCategory, Ipopt::EJournalLevel, const char *str) override;
  void PrintfImpl(Ipopt::EJournalCategory, Ipopt::EJournalLevel, const char *pformat,
                  va_list ap) override;
  void FlushBufferImpl() override;

 private:
  void take(const char *text);
  zrvs_problem &p_;
  std::string pending_;
};

}  // namespace zorvan::nlp
