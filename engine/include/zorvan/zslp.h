/*
 * zslp.h - C interface of the Zorvan Optimizer's nonlinear companion.
 *
 * A nonlinear problem (ZSLPprob) is attached to one main problem (ZRVSprob)
 * and extends it with nonlinear formulas. It follows the conventions of
 * zrvs.h: int status results, per-problem error texts, and sections whose
 * entry points live in one file each of the engine's src/api/ folder.
 */
#ifndef ZORVAN_ZSLP_H
#define ZORVAN_ZSLP_H

#include "zrvs.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct zslp_problem *ZSLPprob;

/* ---- Flags given by ZSLPcontrolcode ----------------------------------- */
#define ZSLP_CAFLAG_INT 0x01
#define ZSLP_CAFLAG_DOUBLE 0x02
#define ZSLP_CAFLAG_STRING 0x04
#define ZSLP_CAFLAG_POINTER 0x08
#define ZSLP_CAFLAG_CONTROL 0x10
#define ZSLP_CAFLAG_HIDDEN 0x200 /* internal entry, not for users */

/* ---- Attributes --------------------------------------------------------- */
#define ZSLP_ORIGINALROWS 11999 /* int: rows of the problem as given */
#define ZSLP_ORIGINALCOLS 12000 /* int: columns of the problem as given */
#define ZSLP_NLPSTATUS 12044    /* int: status of the last nonlinear solve */
#define ZSLP_OBJVAL 12179       /* double: objective of the last nonlinear solve */
#define ZSLP_ZRVSPROB 12601     /* pointer: the main problem (ZRVSprob) */
/* Interior-point runs of the last nonlinear solve */
#define ZSLP_NLPITER 12050         /* int: iterations */
#define ZSLP_NLPSOLVETIME 12051    /* double: seconds of the nonlinear solve */
#define ZSLP_NLPEVALTIME 12052     /* double: seconds in function and derivative evaluations */
#define ZSLP_NLPSOLVERSTATUS 12053 /* int: the interior-point solver's own return code */
/* ---- Controls ----------------------------------------------------------- */
#define ZSLP_PRESOLVE 12415  /* int: 1 runs the nonlinear presolve, 0 not */
#define ZSLP_OBJSENSE 12146  /* double: 1.0 minimise, -1.0 maximise */
#define ZSLP_POSTSOLVE 12700 /* int: 1 returns the solution of the original problem */

/* Controls of the interior-point solver (listed by ZSLPgetKTRcalist). The
 * main problem's timelimit, bariterlimit and outputlog apply to it too:
 * outputlog 2 and up sends its log, at ZSLP_IPOPT_PRINTLEVEL, to the
 * problem's messages. */
#define ZSLP_IPOPT_TOL 12801            /* double: relative convergence tolerance */
#define ZSLP_IPOPT_ACCEPTABLETOL 12802  /* double: the looser tolerance accepted after
                                           several iterations that cannot reach it */
#define ZSLP_IPOPT_MAXITER 12803        /* int: iteration limit */
#define ZSLP_IPOPT_PRINTLEVEL 12804     /* int 0..12: detail of the log */
#define ZSLP_IPOPT_MUSTRATEGY 12805     /* int: 0 monotone barrier parameter, 1 adaptive */
#define ZSLP_IPOPT_CONSTRVIOLTOL 12806  /* double: absolute tolerance on row violation */
#define ZSLP_IPOPT_WARMSTART 12807      /* int: 1 starts from the last solution and its
                                           multipliers when the shape still fits, 0 never */

/* Values of ZSLP_NLPSTATUS */
#define ZSLP_NLP_UNSTARTED 0
#define ZSLP_NLP_LOCALLY_OPTIMAL 1
#define ZSLP_NLP_GLOBALLY_OPTIMAL 2
#define ZSLP_NLP_LOCALLY_INFEASIBLE 3
#define ZSLP_NLP_INFEASIBLE 4
#define ZSLP_NLP_UNBOUNDED 5
#define ZSLP_NLP_UNFINISHED 6

/* ======================================================================== */
/* Nonlinear problems                                                        */
/* ======================================================================== */

/* Starts and stops the nonlinear companion; starts nest like ZRVSinit, and
 * each needs the main environment started. */
ZRVS_API int ZSLPinit(void);
ZRVS_API int ZSLPfree(void);

/* Creates a nonlinear problem attached to *prob. The main problem keeps it:
 * destroying the main problem destroys it too. */
ZRVS_API int ZSLPcreateprob(ZSLPprob *slp, ZRVSprob *prob);
ZRVS_API int ZSLPdestroyprob(ZSLPprob slp);
/* Copies the nonlinear part and controls of src into dest (whose main
 * problem is copied separately with ZRVScopyprob). */
ZRVS_API int ZSLPcopyprob(ZSLPprob dest, ZSLPprob src, const char *name);
ZRVS_API int ZSLPcopycontrols(ZSLPprob dest, ZSLPprob src);

/* The text of the last error of slp into ZRVS_MAXMESSAGELENGTH bytes, with
 * its code; either pointer may be NULL. */
ZRVS_API int ZSLPgetlasterror(ZSLPprob slp, int *code, char *errmsg);

/* The message callback of a nonlinear problem (one per problem; NULL
 * removes it). Messages of the companion go here, and to the global handlers
 * with the ZSLPprob as object. */
typedef void (*ZSLP_cbmessage)(ZSLPprob slp, void *data, const char *msg, int len,
                               int msgtype);
ZRVS_API int ZSLPsetcbmessage(ZSLPprob slp, ZSLP_cbmessage f, void *data);

/* Asks a running nonlinear solve to stop, as ZRVSinterrupt. */
ZRVS_API int ZSLPinterrupt(ZSLPprob slp, int reason);

/* ======================================================================== */
/* Nonlinear controls and attributes                                         */
/* ======================================================================== */

/* Catalogues: parallel arrays of identifiers and names ending with an empty
 * name. ZSLPgetcalist lists the companion's own controls and attributes,
 * ZSLPgetKTRcalist those of the local nonlinear solver underneath it. The
 * flags of an entry come from ZSLPcontrolcode. */
ZRVS_API int ZSLPgetcalist(const int **ids, const char *const **names);
ZRVS_API int ZSLPgetKTRcalist(const int **ids, const char *const **names);
/* Identifier and flags (ZSLP_CAFLAG_...) of a name (case-insensitive). An
 * unknown name gives id 0 and flags 0. */
ZRVS_API int ZSLPcontrolcode(const char *name, int *id, int *flags);

ZRVS_API int ZSLPgetintcontrol(ZSLPprob slp, int control, int *value);
ZRVS_API int ZSLPsetintcontrol(ZSLPprob slp, int control, int value);
ZRVS_API int ZSLPgetdblcontrol(ZSLPprob slp, int control, double *value);
ZRVS_API int ZSLPsetdblcontrol(ZSLPprob slp, int control, double value);
/* String values use buffers of ZRVS_MAXSTRINGLENGTH bytes. */
ZRVS_API int ZSLPgetstrcontrol(ZSLPprob slp, int control, char *value);
ZRVS_API int ZSLPsetstrcontrol(ZSLPprob slp, int control, const char *value);
ZRVS_API int ZSLPsetdefaults(ZSLPprob slp);
ZRVS_API int ZSLPgetintattrib(ZSLPprob slp, int attrib, int *value);
ZRVS_API int ZSLPgetdblattrib(ZSLPprob slp, int attrib, double *value);
ZRVS_API int ZSLPgetstrattrib(ZSLPprob slp, int attrib, char *value);
ZRVS_API int ZSLPgetptrattrib(ZSLPprob slp, int attrib, void **value);

/* ======================================================================== */
/* Nonlinear solutions                                                       */
/* ======================================================================== */

/* The solution of the last nonlinear solve (ZSLP_NLPSTATUS between 1 and 6):
 * values, slacks (rhs - activity, the quadratic and formula parts of a row
 * included), duals (change of the objective per unit increase of a row's
 * rhs, as the LP duals) and reduced costs (gradient of the objective minus
 * the rows' gradients weighted by the duals). Any pointer may be NULL. */
ZRVS_API int ZSLPgetslpsol(ZSLPprob slp, double x[], double slack[], double duals[],
                           double djs[]);

/* Initial values for the nonlinear solver: column colind[k] starts at
 * initial[k]. A value of magnitude ZRVS_PLUSINFINITY or more removes the
 * column's initial value. Columns without one start from the last nonlinear
 * solution when it fits, else from 0 moved into their bounds. */
ZRVS_API int ZRVSnlpsetinitval(ZRVSprob prob, int nvars, const int colind[],
                               const double initial[]);

#ifdef __cplusplus
}
#endif

#endif /* ZORVAN_ZSLP_H */
