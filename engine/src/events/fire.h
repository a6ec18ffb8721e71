// Firing events: each helper calls the callbacks of one kind in priority
// order, with the problem being solved (or a thread's problem) and each
// callback's data, and combines their results as the kind's type says.
// Callbacks registered or removed meanwhile take effect at the next firing.
#pragma once

#include "events/registry.h"
#include "zorvan/zrvs.h"

namespace zorvan {

// Kinds whose callback returns int, non-zero asking to stop (lplog, barlog,
// miplog, cutlog, checktime): true when one asks; those after it are not
// called.
bool fire_stop_request(const EventRegistry &r, EventKind kind, ZRVSprob prob);

// Kinds with no result (intsol, infnode, nodelpsolved, destroymt,
// beforeobjective, afterobjective).
void fire_notice(const EventRegistry &r, EventKind kind, ZRVSprob prob);

// Kinds with one int output (bariteration: action; optnode: feas; prenode:
// nodinfeas): the value passes through every callback in turn, starting at
// `value`; the last one written is returned.
int fire_int_output(const EventRegistry &r, EventKind kind, ZRVSprob prob, int value);

// targets: relative gap, absolute gap, objective and bound targets, updated
// in place by the callbacks.
void fire_gapnotify(const EventRegistry &r, ZRVSprob prob, double targets[4]);

// A candidate solution: *reject and *cutoff pass through every callback.
void fire_preintsol(const EventRegistry &r, ZRVSprob prob, int soltype, int *reject,
                    double *cutoff);

void fire_usersolnotify(const EventRegistry &r, ZRVSprob prob, const char *solname,
                        int status);
void fire_mipthread(const EventRegistry &r, ZRVSprob prob, ZRVSprob threadprob);
void fire_newnode(const EventRegistry &r, ZRVSprob prob, int parentnode, int node, int branch);
void fire_nodecutoff(const EventRegistry &r, ZRVSprob prob, int node);

// The branching object passes through every callback; each may replace it.
ZRVSbranchobject fire_chgbranchobject(const EventRegistry &r, ZRVSprob prob,
                                      ZRVSbranchobject branch);

}  // namespace zorvan
