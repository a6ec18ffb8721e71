// The module's entry functions that the engine calls, one per kind: each
// runs the registration's callable through CallbackCall and converts its
// result as the kind requires.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "zorvan/zrvs.h"

namespace zrv {

void OnBarIteration(ZRVSprob prob, void *record, int *action);
int OnBarLog(ZRVSprob prob, void *record);
void OnChgBranchObject(ZRVSprob prob, void *record, ZRVSbranchobject branch,
                       ZRVSbranchobject *newbranch);
int OnCutLog(ZRVSprob prob, void *record);
void OnDestroyMt(ZRVSprob prob, void *record);
void OnGapNotify(ZRVSprob prob, void *record, double *relgap, double *absgap, double *absobj,
                 double *absbound);
int OnMipLog(ZRVSprob prob, void *record);
void OnInfNode(ZRVSprob prob, void *record);
void OnIntSol(ZRVSprob prob, void *record);
int OnLpLog(ZRVSprob prob, void *record);
void OnMessage(ZRVSprob prob, void *record, const char *msg, int len, int msgtype);
void OnMipThread(ZRVSprob prob, void *record, ZRVSprob threadprob);
void OnNewNode(ZRVSprob prob, void *record, int parentnode, int node, int branch);
void OnNodeCutoff(ZRVSprob prob, void *record, int node);
void OnNodeLpSolved(ZRVSprob prob, void *record);
void OnOptNode(ZRVSprob prob, void *record, int *feas);
void OnPreIntSol(ZRVSprob prob, void *record, int soltype, int *reject, double *cutoff);
void OnPreNode(ZRVSprob prob, void *record, int *nodinfeas);
void OnUserSolNotify(ZRVSprob prob, void *record, const char *solname, int status);
int OnCheckTime(ZRVSprob prob, void *record);
void OnBeforeObjective(ZRVSprob prob, void *record);
void OnAfterObjective(ZRVSprob prob, void *record);

// How chgbranchobject hands branching objects to Python and back, installed
// by the floor that defines `branchobj`: wrap makes a `branchobj` for the
// solver's object (new reference), take detaches a returned one and gives
// its engine handle (null with an error when it is not a branching object).
struct BranchObjectBridge {
  PyObject *(*wrap)(PyObject *problem, ZRVSbranchobject branch);
  ZRVSbranchobject (*take)(PyObject *object);
};
extern BranchObjectBridge BranchObjects;

}  // namespace zrv
