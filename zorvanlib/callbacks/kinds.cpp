#include "callbacks/kinds.h"

#include "callbacks/trampolines.h"

namespace zrv {

// One row per kind: number, name, display name, engine add and remove with
// the kind's trampoline, and when the kind fires.
#define ZRV_CALLBACK_KIND(number, kind, trampoline, display, help)                        \
  {number, #kind, display,                                                                \
   [](ZRVSprob prob, void *record, int priority) {                                        \
     return ZRVSaddcb##kind(prob, trampoline, record, priority);                          \
   },                                                                                     \
   [](ZRVSprob prob, void *record) { return ZRVSremovecb##kind(prob, trampoline, record); }, \
   help}

// Events of the tree search, which HiGHS's MIP search does not offer.
#define ZRV_NODE_EVENT                                                                     \
  " It is an event of the branch-and-bound tree: HiGHS's own MIP search offers no such " \
  "event, so it fires only when the engine's own branch-and-cut runs the search."

const CallbackKind kCallbackKinds[kSolverCallbackKinds] = {
    ZRV_CALLBACK_KIND(0, bariteration, OnBarIteration, "",
                      "After each barrier iteration: callback(problem, data) returns an int "
                      "action, non-zero to stop the barrier (None: 0)."),
    ZRV_CALLBACK_KIND(1, barlog, OnBarLog, "",
                      "After each barrier iteration: callback(problem, data) returns non-zero "
                      "to stop the solve."),
    ZRV_CALLBACK_KIND(2, chgbranchobject, OnChgBranchObject, "chgbranchobject()",
                      "When the search has chosen a branching: callback(problem, data, "
                      "branchobj) returns the branching object to use." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(3, cutlog, OnCutLog, "",
                      "After the cut rounds of the root node of a MIP: callback(problem, data) "
                      "returns non-zero to stop the solve."),
    ZRV_CALLBACK_KIND(4, destroymt, OnDestroyMt, "",
                      "When a worker thread of the tree search ends: callback(problem, data)."
                      ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(5, gapnotify, OnGapNotify, "gapnotify()",
                      "When the MIP search reaches a target of the controls miprelgapnotify, "
                      "mipabsgapnotify, mipabsgapnotifyobj or mipabsgapnotifybound: "
                      "callback(problem, data) returns None or a tuple of four new targets "
                      "(relative gap, absolute gap, objective, bound; None keeps one)."),
    ZRV_CALLBACK_KIND(6, miplog, OnMipLog, "",
                      "At each progress line of the MIP search: callback(problem, data) returns "
                      "non-zero to stop the solve."),
    ZRV_CALLBACK_KIND(7, infnode, OnInfNode, "",
                      "When a node of the search is found infeasible: callback(problem, data)."
                      ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(8, intsol, OnIntSol, "",
                      "When the MIP search accepts a new incumbent: callback(problem, data); "
                      "problem.getSolution and the attributes give it."),
    ZRV_CALLBACK_KIND(9, lplog, OnLpLog, "",
                      "After each simplex iteration of an LP solve: callback(problem, data) "
                      "returns non-zero to stop the solve."),
    ZRV_CALLBACK_KIND(10, message, OnMessage, "message()",
                      "For each message line of the problem: callback(problem, data, text, "
                      "type) with type 1 information, 3 warning, 4 error (text None and type 0: "
                      "flush)."),
    ZRV_CALLBACK_KIND(11, mipthread, OnMipThread, "mipthread()",
                      "When a worker thread of the tree search starts: callback(problem, data, "
                      "thread problem)." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(12, newnode, OnNewNode, "newnode()",
                      "When the search creates a node: callback(problem, data, parent, node, "
                      "branch)." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(13, nodecutoff, OnNodeCutoff, "nodecutoff()",
                      "When a node is cut off by the bound: callback(problem, data, node)."
                      ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(14, nodelpsolved, OnNodeLpSolved, "",
                      "After the LP of a node is solved: callback(problem, data)." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(15, optnode, OnOptNode, "",
                      "When a node's LP is optimal, before branching: callback(problem, data) "
                      "returns non-zero to declare the node infeasible." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(16, preintsol, OnPreIntSol, "preintsol()",
                      "Before a candidate integer solution is accepted: callback(problem, data, "
                      "soltype, cutoff) returns (reject, cutoff), each a number or None; "
                      "problem.getSolution gives the candidate. On HiGHS's search soltype is -1 "
                      "and a rejected candidate is cut off through its binary columns."),
    ZRV_CALLBACK_KIND(17, prenode, OnPreNode, "",
                      "Before a node's LP is solved: callback(problem, data) returns non-zero "
                      "to drop the node." ZRV_NODE_EVENT),
    ZRV_CALLBACK_KIND(18, usersolnotify, OnUserSolNotify, "usersolnotify()",
                      "When a solution given by the user has been checked: callback(problem, "
                      "data, name, status)."),
    ZRV_CALLBACK_KIND(19, checktime, OnCheckTime, "",
                      "At the solver's regular checks during LP and MIP solves: callback(problem, "
                      "data) returns non-zero to stop as at the time limit."),
    ZRV_CALLBACK_KIND(20, beforeobjective, OnBeforeObjective, "",
                      "Before each level of a solve with several objectives: callback(problem, "
                      "data)."),
    ZRV_CALLBACK_KIND(21, afterobjective, OnAfterObjective, "",
                      "After each level of a solve with several objectives: callback(problem, "
                      "data); the attributes give the level's objective value."),
};

#undef ZRV_CALLBACK_KIND
#undef ZRV_NODE_EVENT

const CallbackKind *FindCallbackKind(int number) {
  return number >= 0 && number < kSolverCallbackKinds ? &kCallbackKinds[number] : nullptr;
}

}  // namespace zrv
