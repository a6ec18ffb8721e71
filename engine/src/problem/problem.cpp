// The problem object: its messages, lifecycle and message callbacks.
#include "problem/problem.h"

#include <algorithm>
#include <memory>

#include "core/messages.h"
#include "core/registry.h"

using namespace zorvan;

void zrvs_problem::message(int msgtype, const std::string &text) {
  if (controls.get_int(ZRVS_OUTPUTLOG, "message") < 1) return;
  const auto callbacks = events.snapshot(EventKind::message);
  auto call = [&](const Registration &r, const char *msg, int len, int type) {
    reinterpret_cast<ZRVS_cbmessage>(r.function)(this, r.data, msg, len, type);
  };
  if (msgtype == ZRVS_MSG_FLUSH) {
    for (const auto &r : *callbacks) call(r, nullptr, 0, ZRVS_MSG_FLUSH);
    send_to_global_handlers(this, nullptr, 0, ZRVS_MSG_FLUSH);
    return;
  }
  std::string line = controls.get_str(ZRVS_OUTPUTPREFIX, "message") + text;
  int len = static_cast<int>(line.size());
  for (const auto &r : *callbacks) call(r, line.c_str(), len, msgtype);
  send_to_global_handlers(this, line.c_str(), len, msgtype);
}

namespace zorvan {

void check_problem_handle(const zrvs_problem *prob, const char *who) {
  check_handle(prob, ObjectKind::problem, "problem", who);
}

zrvs_problem *create_problem(const char *who) {
  require_started(who);
  auto p = std::make_unique<zrvs_problem>();
  register_object(p.get(), ObjectKind::problem);
  return p.release();
}

void destroy_problem(zrvs_problem *prob) {
  unregister_object(prob);
  delete prob;
}

void copy_problem(zrvs_problem &dest, const zrvs_problem &src, const char *name,
                  const char *who) {
  if (name && *name) check_problem_name(name, who);
  if (&dest == &src) return;
  Model model = src.model;
  if (name && *name) model.name = name;
  dest.controls = src.controls;
  dest.model = std::move(model);
  dest.model_changed();
}

void load_lp(zrvs_problem &p, const LpData &data, const char *who) {
  Model model = build_lp_model(data, who);
  if (!data.name) model.name = p.model.name;
  model.objsense = p.model.objsense;
  model.formulas.keep_user_functions(p.model.formulas);
  p.model = std::move(model);
  p.nlp_start = NlpStart();
  p.model_changed();
  p.message(ZRVS_MSG_INFO, "Problem " + p.model.name + " loaded: " + size_text(p.model));
}

void add_message_callback(zrvs_problem &p, ZRVS_cbmessage f, void *data, int priority) {
  p.events.add(EventKind::message, reinterpret_cast<void (*)()>(f), data, priority);
}

void remove_message_callbacks(zrvs_problem &p, ZRVS_cbmessage f, void *data) {
  p.events.remove(EventKind::message, reinterpret_cast<void (*)()>(f), data);
}

void check_stop_reason(int reason, const char *who) {
  if (reason <= ZRVS_STOP_NONE || reason > ZRVS_STOP_NUMERICALERROR)
    fail(ZRVS_ERR_ARGUMENT, "%s: %d is not a stop reason (1..13)", who, reason);
}

}  // namespace zorvan
