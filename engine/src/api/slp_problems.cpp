// Entry points of the nonlinear companion's environment and problems: start
// and stop, creation, copies, the last error, messages and interrupts.
#include "core/arguments.h"
#include "nlp/slp_problem.h"

using namespace zorvan;

extern "C" {

int ZSLPinit(void) {
  return global_call([&] { start_slp("ZSLPinit"); });
}

int ZSLPfree(void) {
  return global_call([&] { stop_slp("ZSLPfree"); });
}

int ZSLPcreateprob(ZSLPprob *slp, ZRVSprob *prob) {
  return global_call([&] {
    require(slp, "slp", "ZSLPcreateprob");
    require(prob, "prob", "ZSLPcreateprob");
    *slp = nullptr;
    *slp = create_nonlinear(*prob, "ZSLPcreateprob");
  });
}

int ZSLPdestroyprob(ZSLPprob slp) {
  return slp_call(slp, "ZSLPdestroyprob", [&](zslp_problem &s) { destroy_nonlinear(&s); });
}

int ZSLPcopyprob(ZSLPprob dest, ZSLPprob src, const char *name) {
  return slp_call(dest, "ZSLPcopyprob", [&](zslp_problem &d) {
    check_slp_handle(src, "ZSLPcopyprob (source)");
    if (name && *name) check_problem_name(name, "ZSLPcopyprob");
    d.controls = src->controls;
    if (name && *name) d.prob->model.name = name;
  });
}

int ZSLPcopycontrols(ZSLPprob dest, ZSLPprob src) {
  return slp_call(dest, "ZSLPcopycontrols", [&](zslp_problem &d) {
    check_slp_handle(src, "ZSLPcopycontrols (source)");
    d.controls = src->controls;
  });
}

int ZSLPgetlasterror(ZSLPprob slp, int *code, char *errmsg) {
  return slp_call(slp, "ZSLPgetlasterror", [&](zslp_problem &s) {
    if (code) *code = s.last_error_code;
    if (errmsg) copy_text(s.last_error, errmsg, ZRVS_MAXMESSAGELENGTH);
  });
}

int ZSLPsetcbmessage(ZSLPprob slp, ZSLP_cbmessage f, void *data) {
  return slp_call(slp, "ZSLPsetcbmessage", [&](zslp_problem &s) {
    s.message_callback = f;
    s.message_data = f ? data : nullptr;
  });
}

int ZSLPinterrupt(ZSLPprob slp, int reason) {
  return slp_call(slp, "ZSLPinterrupt", [&](zslp_problem &s) {
    check_stop_reason(reason, "ZSLPinterrupt");
    s.interrupt_reason.store(reason);
  });
}

}  // extern "C"
