// Entry points of the solver callbacks: one add and one remove per kind,
// each handing the callback to the problem's event registry.
#include "core/arguments.h"
#include "problem/problem.h"

using namespace zorvan;

namespace {

using AnyFunction = void (*)();

int add_callback(ZRVSprob prob, EventKind kind, AnyFunction f, void *data, int priority,
                 const char *who) {
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(f, "the callback", who);
    p.events.add(kind, f, data, priority);
  });
}

int remove_callbacks(ZRVSprob prob, EventKind kind, AnyFunction f, void *data,
                     const char *who) {
  return problem_call(prob, who, [&](zrvs_problem &p) { p.events.remove(kind, f, data); });
}

}  // namespace

#define ZORVAN_CALLBACK_ENTRY_POINTS(kind)                                                \
  int ZRVSaddcb##kind(ZRVSprob prob, ZRVS_cb##kind f, void *data, int priority) {        \
    return add_callback(prob, EventKind::kind, reinterpret_cast<AnyFunction>(f), data,   \
                        priority, "ZRVSaddcb" #kind);                                     \
  }                                                                                       \
  int ZRVSremovecb##kind(ZRVSprob prob, ZRVS_cb##kind f, void *data) {                   \
    return remove_callbacks(prob, EventKind::kind, reinterpret_cast<AnyFunction>(f), data, \
                            "ZRVSremovecb" #kind);                                        \
  }

extern "C" {

ZORVAN_CALLBACK_ENTRY_POINTS(bariteration)
ZORVAN_CALLBACK_ENTRY_POINTS(barlog)
ZORVAN_CALLBACK_ENTRY_POINTS(chgbranchobject)
ZORVAN_CALLBACK_ENTRY_POINTS(cutlog)
ZORVAN_CALLBACK_ENTRY_POINTS(destroymt)
ZORVAN_CALLBACK_ENTRY_POINTS(gapnotify)
ZORVAN_CALLBACK_ENTRY_POINTS(miplog)
ZORVAN_CALLBACK_ENTRY_POINTS(infnode)
ZORVAN_CALLBACK_ENTRY_POINTS(intsol)
ZORVAN_CALLBACK_ENTRY_POINTS(lplog)
ZORVAN_CALLBACK_ENTRY_POINTS(mipthread)
ZORVAN_CALLBACK_ENTRY_POINTS(newnode)
ZORVAN_CALLBACK_ENTRY_POINTS(nodecutoff)
ZORVAN_CALLBACK_ENTRY_POINTS(nodelpsolved)
ZORVAN_CALLBACK_ENTRY_POINTS(optnode)
ZORVAN_CALLBACK_ENTRY_POINTS(preintsol)
ZORVAN_CALLBACK_ENTRY_POINTS(prenode)
ZORVAN_CALLBACK_ENTRY_POINTS(usersolnotify)
ZORVAN_CALLBACK_ENTRY_POINTS(checktime)
ZORVAN_CALLBACK_ENTRY_POINTS(beforeobjective)
ZORVAN_CALLBACK_ENTRY_POINTS(afterobjective)

}  // extern "C"
