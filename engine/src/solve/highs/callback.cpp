#include "solve/highs/callback.h"

namespace zorvan {

namespace {
constexpr int kLogWarning = 4, kLogError = 5;  // HiGHS's log types
}  // namespace

SolveCallback::SolveCallback(void *highs, zrvs_problem &p) : highs_(highs), p_(p) {
  Highs_setCallback(highs_, &SolveCallback::handle, this);
  Highs_startCallback(highs_, kHighsCallbackSimplexInterrupt);
  Highs_startCallback(highs_, kHighsCallbackIpmInterrupt);
  Highs_startCallback(highs_, kHighsCallbackMipInterrupt);
  if (p.controls.get_int(ZRVS_OUTPUTLOG, "optimize") >= 2)
    Highs_startCallback(highs_, kHighsCallbackLogging);
}

SolveCallback::~SolveCallback() {
  Highs_setCallback(highs_, nullptr, nullptr);
  if (!partial_line_.empty()) p_.message(ZRVS_MSG_INFO, partial_line_, ZRVS_MSGCODE_SOLVER_LOG);
}

void SolveCallback::handle(int type, const char *text, const HighsCallbackDataOut *out,
                           HighsCallbackDataIn *in, void *data) {
  auto *self = static_cast<SolveCallback *>(data);
  if (type == kHighsCallbackLogging) {
    int msgtype = ZRVS_MSG_INFO;
    if (out && out->log_type == kLogWarning) msgtype = ZRVS_MSG_WARNING;
    if (out && out->log_type == kLogError) msgtype = ZRVS_MSG_ERROR;
    std::lock_guard<std::mutex> lock(self->log_mutex_);
    self->partial_line_ += text ? text : "";
    size_t nl;
    while ((nl = self->partial_line_.find('\n')) != std::string::npos) {
      self->p_.message(msgtype, self->partial_line_.substr(0, nl), ZRVS_MSGCODE_SOLVER_LOG);
      self->partial_line_.erase(0, nl + 1);
    }
    return;
  }
  if (in && self->p_.interrupt_reason.load() != ZRVS_STOP_NONE) in->user_interrupt = 1;
}

}  // namespace zorvan
