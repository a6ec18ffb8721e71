// Problem creation, destruction, copy, names, errors, message callbacks and
// interrupts.
#include "core/problem.h"

#include <algorithm>

#include "core/messages.h"

using namespace zorvan;

void zrvs_problem::message(int msgtype, const std::string &text) {
  if (controls.get_int(ZRVS_OUTPUTLOG, "message") < 1) return;
  std::vector<MessageCallback> callbacks = message_callbacks;
  if (msgtype == ZRVS_MSG_FLUSH) {
    for (const auto &cb : callbacks) cb.f(this, cb.data, nullptr, 0, ZRVS_MSG_FLUSH);
    send_to_global_handlers(this, nullptr, 0, ZRVS_MSG_FLUSH);
    return;
  }
  std::string line = controls.get_str(ZRVS_OUTPUTPREFIX, "message") + text;
  int len = static_cast<int>(line.size());
  for (const auto &cb : callbacks) cb.f(this, cb.data, line.c_str(), len, msgtype);
  send_to_global_handlers(this, line.c_str(), len, msgtype);
}

namespace zorvan {

void check_problem_handle(const zrvs_problem *prob, const char *who) {
  if (!prob) fail(ZRVS_ERR_ARGUMENT, "%s: the problem is NULL", who);
  if (checked_mode() && !is_live(prob, ObjectKind::problem))
    fail(ZRVS_ERR_ARGUMENT, "%s: the handle is not a live problem (destroyed or never created)",
         who);
}

namespace {
// Replaces the model of p by the checked LP; the objective sense and, when no
// name is given, the name are kept.
void load_lp(zrvs_problem &p, const LpData &data) {
  zorvan::Model model = build_lp_model(data, "ZRVSloadlp");
  if (!data.name) model.name = p.model.name;
  model.objsense = p.model.objsense;
  p.model = std::move(model);
  p.model_changed();
  p.message(ZRVS_MSG_INFO, "Problem " + p.model.name + " loaded: " +
                               std::to_string(p.model.rows()) + " rows, " +
                               std::to_string(p.model.cols()) + " columns, " +
                               std::to_string(p.model.elems()) + " nonzeros");
}
}  // namespace

}  // namespace zorvan

extern "C" {

int ZRVScreateprob(ZRVSprob *prob) {
  return global_call([&] {
    if (!prob) fail(ZRVS_ERR_ARGUMENT, "ZRVScreateprob: the output pointer is NULL");
    *prob = nullptr;
    require_started("ZRVScreateprob");
    auto *p = new zrvs_problem();
    register_object(p, ObjectKind::problem);
    *prob = p;
  });
}

int ZRVSdestroyprob(ZRVSprob prob) {
  return problem_call(prob, "ZRVSdestroyprob", [&](zrvs_problem &p) {
    if (p.slp) destroy_nonlinear(p.slp);
    unregister_object(&p);
    delete &p;
  });
}

int ZRVScopyprob(ZRVSprob dest, ZRVSprob src, const char *name) {
  return problem_call(dest, "ZRVScopyprob", [&](zrvs_problem &d) {
    check_problem_handle(src, "ZRVScopyprob (source)");
    if (name && *name) check_problem_name(name, "ZRVScopyprob");
    if (&d == src) return;
    zorvan::Model model = src->model;
    if (name && *name) model.name = name;
    d.controls = src->controls;
    d.model = std::move(model);
    d.model_changed();
  });
}

int ZRVSloadlp64(ZRVSprob prob, const char *probname, int ncols, int nrows,
                 const char rowtype[], const double rhs[], const double rng[],
                 const double obj[], const int64_t start[], const int collen[],
                 const int rowind[], const double rowcoef[], const double lb[],
                 const double ub[]) {
  return problem_call(prob, "ZRVSloadlp64", [&](zrvs_problem &p) {
    load_lp(p, LpData{probname, ncols, nrows, rowtype, rhs, rng, obj, start, nullptr, collen,
                      rowind, rowcoef, lb, ub});
  });
}

int ZRVSloadlp(ZRVSprob prob, const char *probname, int ncols, int nrows,
               const char rowtype[], const double rhs[], const double rng[], const double obj[],
               const int start[], const int collen[], const int rowind[],
               const double rowcoef[], const double lb[], const double ub[]) {
  return problem_call(prob, "ZRVSloadlp", [&](zrvs_problem &p) {
    load_lp(p, LpData{probname, ncols, nrows, rowtype, rhs, rng, obj, nullptr, start, collen,
                      rowind, rowcoef, lb, ub});
  });
}

int ZRVSsetprobname(ZRVSprob prob, const char *probname) {
  return problem_call(prob, "ZRVSsetprobname", [&](zrvs_problem &p) {
    check_problem_name(probname, "ZRVSsetprobname");
    p.model.name = probname;
  });
}

int ZRVSgetprobname(ZRVSprob prob, char *name) {
  return problem_call(prob, "ZRVSgetprobname", [&](zrvs_problem &p) {
    if (!name) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetprobname: the name buffer is NULL");
    copy_text(p.model.name, name, p.model.name.size() + 1);
  });
}

int ZRVSgetlasterror(ZRVSprob prob, char *errmsg) {
  return problem_call(prob, "ZRVSgetlasterror", [&](zrvs_problem &p) {
    if (!errmsg) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetlasterror: the message buffer is NULL");
    copy_text(p.last_error, errmsg, ZRVS_MAXMESSAGELENGTH);
  });
}

int ZRVSaddcbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data, int priority) {
  return problem_call(prob, "ZRVSaddcbmessage", [&](zrvs_problem &p) {
    if (!f) fail(ZRVS_ERR_ARGUMENT, "ZRVSaddcbmessage: the callback is NULL");
    auto &cbs = p.message_callbacks;
    auto pos = std::find_if(cbs.begin(), cbs.end(),
                            [&](const auto &cb) { return cb.priority < priority; });
    cbs.insert(pos, zrvs_problem::MessageCallback{f, data, priority});
  });
}

int ZRVSremovecbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data) {
  return problem_call(prob, "ZRVSremovecbmessage", [&](zrvs_problem &p) {
    auto &cbs = p.message_callbacks;
    cbs.erase(std::remove_if(cbs.begin(), cbs.end(),
                             [&](const auto &cb) {
                               return (!f || cb.f == f) && (!data || cb.data == data);
                             }),
              cbs.end());
  });
}

int ZRVSinterrupt(ZRVSprob prob, int reason) {
  return problem_call(prob, "ZRVSinterrupt", [&](zrvs_problem &p) {
    if (reason <= ZRVS_STOP_NONE || reason > ZRVS_STOP_NUMERICALERROR)
      fail(ZRVS_ERR_ARGUMENT, "ZRVSinterrupt: %d is not a stop reason (1..13)", reason);
    p.interrupt_reason.store(reason);
  });
}

int ZRVSgetobjecttypename(const void *object, const char **name) {
  return global_call([&] {
    if (!name) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetobjecttypename: the output pointer is NULL");
    const char *type = object ? object_type_name(object) : nullptr;
    if (!type)
      fail(ZRVS_ERR_ARGUMENT, "ZRVSgetobjecttypename: the object is not a live engine object");
    *name = type;
  });
}

}  // extern "C"
