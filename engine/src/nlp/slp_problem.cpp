// Start and stop of the nonlinear companion, its problems, controls,
// attributes, errors and messages.
#include "nlp/slp_problem.h"

#include <mutex>

using namespace zorvan;

namespace {
std::mutex g_slp_mutex;
int g_slp_start_count = 0;
}  // namespace

namespace zorvan {

void require_slp_started(const char *who) {
  std::lock_guard<std::mutex> lock(g_slp_mutex);
  if (g_slp_start_count == 0)
    fail(ZRVS_ERR_NOTSTARTED, "%s: the nonlinear companion is not started (call ZSLPinit)",
         who);
}

void check_slp_handle(const zslp_problem *slp, const char *who) {
  if (!slp) fail(ZRVS_ERR_ARGUMENT, "%s: the nonlinear problem is NULL", who);
  if (checked_mode() && !is_live(slp, ObjectKind::nonlinear_problem))
    fail(ZRVS_ERR_ARGUMENT,
         "%s: the handle is not a live nonlinear problem (destroyed or never created)", who);
}

void destroy_nonlinear(zslp_problem *slp) {
  if (slp->prob && slp->prob->slp == slp) slp->prob->slp = nullptr;
  unregister_object(slp);
  delete slp;
}

}  // namespace zorvan

extern "C" {

int ZSLPinit(void) {
  return global_call([&] {
    require_started("ZSLPinit");
    std::lock_guard<std::mutex> lock(g_slp_mutex);
    ++g_slp_start_count;
  });
}

int ZSLPfree(void) {
  return global_call([&] {
    std::lock_guard<std::mutex> lock(g_slp_mutex);
    if (g_slp_start_count == 0)
      fail(ZRVS_ERR_NOTSTARTED, "ZSLPfree: the nonlinear companion is not started");
    --g_slp_start_count;
  });
}

int ZSLPcreateprob(ZSLPprob *slp, ZRVSprob *prob) {
  return global_call([&] {
    if (!slp || !prob) fail(ZRVS_ERR_ARGUMENT, "ZSLPcreateprob: NULL argument");
    *slp = nullptr;
    require_slp_started("ZSLPcreateprob");
    check_problem_handle(*prob, "ZSLPcreateprob");
    if ((*prob)->slp)
      fail(ZRVS_ERR_ARGUMENT, "ZSLPcreateprob: the problem already has a nonlinear problem");
    auto *s = new zslp_problem(*prob);
    register_object(s, ObjectKind::nonlinear_problem);
    (*prob)->slp = s;
    *slp = s;
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

int ZSLPgetintcontrol(ZSLPprob slp, int control, int *value) {
  return slp_call(slp, "ZSLPgetintcontrol", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetintcontrol: the output pointer is NULL");
    *value = static_cast<int>(s.controls.get_int(control, "ZSLPgetintcontrol"));
  });
}

int ZSLPsetintcontrol(ZSLPprob slp, int control, int value) {
  return slp_call(slp, "ZSLPsetintcontrol", [&](zslp_problem &s) {
    s.controls.set_int(control, value, "ZSLPsetintcontrol");
  });
}

int ZSLPgetdblcontrol(ZSLPprob slp, int control, double *value) {
  return slp_call(slp, "ZSLPgetdblcontrol", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetdblcontrol: the output pointer is NULL");
    *value = s.controls.get_dbl(control, "ZSLPgetdblcontrol");
  });
}

int ZSLPsetdblcontrol(ZSLPprob slp, int control, double value) {
  return slp_call(slp, "ZSLPsetdblcontrol", [&](zslp_problem &s) {
    s.controls.set_dbl(control, value, "ZSLPsetdblcontrol");
  });
}

int ZSLPgetstrcontrol(ZSLPprob slp, int control, char *value) {
  return slp_call(slp, "ZSLPgetstrcontrol", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetstrcontrol: the output pointer is NULL");
    copy_text(s.controls.get_str(control, "ZSLPgetstrcontrol"), value, ZRVS_MAXSTRINGLENGTH);
  });
}

int ZSLPsetstrcontrol(ZSLPprob slp, int control, const char *value) {
  return slp_call(slp, "ZSLPsetstrcontrol", [&](zslp_problem &s) {
    s.controls.set_str(control, value, "ZSLPsetstrcontrol");
  });
}

int ZSLPsetdefaults(ZSLPprob slp) {
  return slp_call(slp, "ZSLPsetdefaults", [&](zslp_problem &s) { s.controls.reset(); });
}

int ZSLPgetintattrib(ZSLPprob slp, int attrib, int *value) {
  return slp_call(slp, "ZSLPgetintattrib", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetintattrib: the output pointer is NULL");
    switch (attrib) {
      case ZSLP_ORIGINALROWS: *value = s.prob->model.rows(); return;
      case ZSLP_ORIGINALCOLS: *value = s.prob->model.cols(); return;
      case ZSLP_NLPSTATUS: *value = s.nlpstatus; return;
    }
    fail(ZRVS_ERR_UNKNOWNID, "ZSLPgetintattrib: unknown integer attribute %d", attrib);
  });
}

int ZSLPgetdblattrib(ZSLPprob slp, int attrib, double *value) {
  return slp_call(slp, "ZSLPgetdblattrib", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetdblattrib: the output pointer is NULL");
    if (attrib != ZSLP_OBJVAL)
      fail(ZRVS_ERR_UNKNOWNID, "ZSLPgetdblattrib: unknown double attribute %d", attrib);
    *value = s.objval;
  });
}

int ZSLPgetstrattrib(ZSLPprob slp, int attrib, char *value) {
  return slp_call(slp, "ZSLPgetstrattrib", [&](zslp_problem &) {
    fail(ZRVS_ERR_UNKNOWNID, "ZSLPgetstrattrib: unknown string attribute %d", attrib);
  });
}

int ZSLPgetptrattrib(ZSLPprob slp, int attrib, void **value) {
  return slp_call(slp, "ZSLPgetptrattrib", [&](zslp_problem &s) {
    if (!value) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetptrattrib: the output pointer is NULL");
    if (attrib != ZSLP_ZRVSPROB)
      fail(ZRVS_ERR_UNKNOWNID, "ZSLPgetptrattrib: unknown pointer attribute %d", attrib);
    *value = s.prob;
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
    if (reason <= ZRVS_STOP_NONE || reason > ZRVS_STOP_NUMERICALERROR)
      fail(ZRVS_ERR_ARGUMENT, "ZSLPinterrupt: %d is not a stop reason (1..13)", reason);
    s.interrupt_reason.store(reason);
  });
}

}  // extern "C"
