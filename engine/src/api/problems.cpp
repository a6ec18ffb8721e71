// Entry points of problems: creation, destruction, copy, loading an LP,
// names, the last error, message callbacks and interrupts.
#include "core/arguments.h"
#include "problem/problem.h"
#include "nlp/slp_problem.h"

using namespace zorvan;

extern "C" {

int ZRVScreateprob(ZRVSprob *prob) {
  return global_call([&] {
    require(prob, "the output pointer", "ZRVScreateprob");
    *prob = nullptr;
    *prob = create_problem("ZRVScreateprob");
  });
}

int ZRVSdestroyprob(ZRVSprob prob) {
  return problem_call(prob, "ZRVSdestroyprob", [&](zrvs_problem &p) {
    if (p.slp) destroy_nonlinear(p.slp);
    destroy_problem(&p);
  });
}

int ZRVScopyprob(ZRVSprob dest, ZRVSprob src, const char *name) {
  return problem_call(dest, "ZRVScopyprob", [&](zrvs_problem &d) {
    check_problem_handle(src, "ZRVScopyprob (source)");
    copy_problem(d, *src, name, "ZRVScopyprob");
  });
}

int ZRVSloadlp64(ZRVSprob prob, const char *probname, int ncols, int nrows,
                 const char rowtype[], const double rhs[], const double rng[],
                 const double obj[], const int64_t start[], const int collen[],
                 const int rowind[], const double rowcoef[], const double lb[],
                 const double ub[]) {
  return problem_call(prob, "ZRVSloadlp64", [&](zrvs_problem &p) {
    load_lp(p, LpData{probname, ncols, nrows, rowtype, rhs, rng, obj, start, nullptr, collen,
                      rowind, rowcoef, lb, ub}, "ZRVSloadlp64");
  });
}

int ZRVSloadlp(ZRVSprob prob, const char *probname, int ncols, int nrows,
               const char rowtype[], const double rhs[], const double rng[], const double obj[],
               const int start[], const int collen[], const int rowind[],
               const double rowcoef[], const double lb[], const double ub[]) {
  return problem_call(prob, "ZRVSloadlp", [&](zrvs_problem &p) {
    load_lp(p, LpData{probname, ncols, nrows, rowtype, rhs, rng, obj, nullptr, start, collen,
                      rowind, rowcoef, lb, ub}, "ZRVSloadlp");
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
    require(name, "the name buffer", "ZRVSgetprobname");
    copy_text(p.model.name, name, p.model.name.size() + 1);
  });
}

int ZRVSgetlasterror(ZRVSprob prob, char *errmsg) {
  return problem_call(prob, "ZRVSgetlasterror", [&](zrvs_problem &p) {
    require(errmsg, "the message buffer", "ZRVSgetlasterror");
    copy_text(p.last_error, errmsg, ZRVS_MAXMESSAGELENGTH);
  });
}

int ZRVSaddcbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data, int priority) {
  return problem_call(prob, "ZRVSaddcbmessage", [&](zrvs_problem &p) {
    require(f, "the callback", "ZRVSaddcbmessage");
    add_message_callback(p, f, data, priority);
  });
}

int ZRVSremovecbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data) {
  return problem_call(prob, "ZRVSremovecbmessage",
                      [&](zrvs_problem &p) { remove_message_callbacks(p, f, data); });
}

int ZRVSinterrupt(ZRVSprob prob, int reason) {
  return problem_call(prob, "ZRVSinterrupt", [&](zrvs_problem &p) {
    check_stop_reason(reason, "ZRVSinterrupt");
    p.interrupt_reason.store(reason);
  });
}

int ZRVSsetmessagestatus(ZRVSprob prob, int msgcode, int status) {
  return problem_call(prob, "ZRVSsetmessagestatus", [&](zrvs_problem &p) {
    set_message_status(p, msgcode, status, "ZRVSsetmessagestatus");
  });
}

int ZRVSgetmessagestatus(ZRVSprob prob, int msgcode, int *status) {
  const char *who = "ZRVSgetmessagestatus";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(status, "status", who);
    *status = message_status(p, msgcode, who);
  });
}

int ZRVSsetlogfile(ZRVSprob prob, const char *filename) {
  return problem_call(prob, "ZRVSsetlogfile",
                      [&](zrvs_problem &p) { set_log_file(p, filename, "ZRVSsetlogfile"); });
}

}  // extern "C"
