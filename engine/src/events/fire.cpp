#include "events/fire.h"

namespace zorvan {

namespace {

// Calls f(callback, data) for each registration of the kind, in order;
// stops early when f returns true.
template <class Callback, class Call>
bool each(const EventRegistry &r, EventKind kind, Call call) {
  const auto list = r.snapshot(kind);
  for (const Registration &reg : *list)
    if (call(reinterpret_cast<Callback>(reg.function), reg.data)) return true;
  return false;
}

}  // namespace

bool fire_stop_request(const EventRegistry &r, EventKind kind, ZRVSprob prob) {
  // The int-returning kinds share one signature.
  return each<ZRVS_cblplog>(r, kind, [&](ZRVS_cblplog f, void *data) {
    return f(prob, data) != 0;
  });
}

void fire_notice(const EventRegistry &r, EventKind kind, ZRVSprob prob) {
  each<ZRVS_cbintsol>(r, kind, [&](ZRVS_cbintsol f, void *data) {
    f(prob, data);
    return false;
  });
}

int fire_int_output(const EventRegistry &r, EventKind kind, ZRVSprob prob, int value) {
  each<ZRVS_cboptnode>(r, kind, [&](ZRVS_cboptnode f, void *data) {
    f(prob, data, &value);
    return false;
  });
  return value;
}

void fire_gapnotify(const EventRegistry &r, ZRVSprob prob, double targets[4]) {
  each<ZRVS_cbgapnotify>(r, EventKind::gapnotify, [&](ZRVS_cbgapnotify f, void *data) {
    f(prob, data, &targets[0], &targets[1], &targets[2], &targets[3]);
    return false;
  });
}

void fire_preintsol(const EventRegistry &r, ZRVSprob prob, int soltype, int *reject,
                    double *cutoff) {
  each<ZRVS_cbpreintsol>(r, EventKind::preintsol, [&](ZRVS_cbpreintsol f, void *data) {
    f(prob, data, soltype, reject, cutoff);
    return false;
  });
}

void fire_usersolnotify(const EventRegistry &r, ZRVSprob prob, const char *solname,
                        int status) {
  each<ZRVS_cbusersolnotify>(r, EventKind::usersolnotify,
                             [&](ZRVS_cbusersolnotify f, void *data) {
                               f(prob, data, solname, status);
                               return false;
                             });
}

void fire_mipthread(const EventRegistry &r, ZRVSprob prob, ZRVSprob threadprob) {
  each<ZRVS_cbmipthread>(r, EventKind::mipthread, [&](ZRVS_cbmipthread f, void *data) {
    f(prob, data, threadprob);
    return false;
  });
}

void fire_newnode(const EventRegistry &r, ZRVSprob prob, int parentnode, int node,
                  int branch) {
  each<ZRVS_cbnewnode>(r, EventKind::newnode, [&](ZRVS_cbnewnode f, void *data) {
    f(prob, data, parentnode, node, branch);
    return false;
  });
}

void fire_nodecutoff(const EventRegistry &r, ZRVSprob prob, int node) {
  each<ZRVS_cbnodecutoff>(r, EventKind::nodecutoff, [&](ZRVS_cbnodecutoff f, void *data) {
    f(prob, data, node);
    return false;
  });
}

ZRVSbranchobject fire_chgbranchobject(const EventRegistry &r, ZRVSprob prob,
                                      ZRVSbranchobject branch) {
  each<ZRVS_cbchgbranchobject>(r, EventKind::chgbranchobject,
                               [&](ZRVS_cbchgbranchobject f, void *data) {
                                 ZRVSbranchobject next = branch;
                                 f(prob, data, branch, &next);
                                 branch = next;
                                 return false;
                               });
  return branch;
}

}  // namespace zorvan
