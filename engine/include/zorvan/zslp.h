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
#define ZSLP_COEFFICIENTS 12750 /* int: formula terms (ZSLPaddcoefs) in the problem */
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

/* ======================================================================== */
/* Formulas and user functions                                               */
/* ======================================================================== */

/* A formula term of row r contributes (col >= 0 ? x[col] : 1) * factor * f(x)
 * to the row's activity. f is given as tokens (type, value) in reverse Polish
 * order, ended by a ZSLP_TOK_END token. Function arguments follow a
 * ZSLP_TOK_ARGS token and are written last argument first (the first
 * argument is the one just before the function token); operators take their
 * operands without it. min and max take their arguments in the order
 * written (among equal values the one written first gives the derivative,
 * abs'(0) = 1, sign' = 0). pwl takes its argument and then the breakpoints
 * x1, y1, x2, y2, ... (constant tokens, x non-decreasing); between
 * breakpoints it interpolates, outside them it extends the first or last
 * piece. A formula with no token before its end token is the constant 1. */
#define ZSLP_TOK_END 0      /* end of a formula */
#define ZSLP_TOK_CON 1      /* constant: value is the number */
#define ZSLP_TOK_COL 10     /* column: value is its index */
#define ZSLP_TOK_USERFUNC 11 /* user function: value is its index (from 1) */
#define ZSLP_TOK_FUNC 12    /* built-in function: value is a ZSLP_FN_ number */
#define ZSLP_TOK_ARGS 22    /* start of a function's argument list */
#define ZSLP_TOK_OP 31      /* operator: value is a ZSLP_OP_ number */

#define ZSLP_OP_NEGATE 1   /* unary minus */
#define ZSLP_OP_POWER 2    /* a ** b */
#define ZSLP_OP_MULTIPLY 3 /* a * b */
#define ZSLP_OP_DIVIDE 4   /* a / b */
#define ZSLP_OP_PLUS 5     /* a + b */
#define ZSLP_OP_MINUS 6    /* a - b */

#define ZSLP_FN_LOG10 14
#define ZSLP_FN_LOG 15
#define ZSLP_FN_EXP 16
#define ZSLP_FN_ABS 17
#define ZSLP_FN_SQRT 18
#define ZSLP_FN_SIN 27
#define ZSLP_FN_COS 28
#define ZSLP_FN_TAN 29
#define ZSLP_FN_ASIN 30
#define ZSLP_FN_ACOS 31
#define ZSLP_FN_ATAN 32
#define ZSLP_FN_MIN 33 /* one or more arguments */
#define ZSLP_FN_MAX 34 /* one or more arguments */
#define ZSLP_FN_PWL 35
#define ZSLP_FN_SIGN 46
#define ZSLP_FN_ERF 49
#define ZSLP_FN_ERFC 50

/* Adds ncoefs formula terms: term k belongs to row rowindex[k], is multiplied
 * by column colindex[k] (a negative value, such as -1000, or a NULL array:
 * no column) and by factor[k] (NULL: 1), and its tokens start at
 * type[fstart[k]], value[fstart[k]] and run through its end token, which
 * must come before fstart[k+1] (a further entry fstart[ncoefs] is not read).
 * parsed must be 1 (reverse Polish order). Every term is checked before any
 * is added: rows, columns, operators, functions and their argument counts,
 * user-function indices, the balance of each formula and its end token; the
 * error text names the term and the token. */
ZRVS_API int ZSLPaddcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[],
                          const double factor[], const int fstart[], int parsed,
                          const int type[], const double value[]);
/* As ZSLPaddcoefs, after removing every term of the (row, column) pairs
 * given: the terms given replace them. */
ZRVS_API int ZSLPloadcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[],
                           const double factor[], const int fstart[], int parsed,
                           const int type[], const double value[]);
/* The (row, column) pairs of all terms, by row and in the order added within
 * a row (column -1: none); a pair appears once per term. *ncoefs gets their
 * number; rowindex and colindex (NULL to count only) need that many. */
ZRVS_API int ZSLPgetcoefs(ZSLPprob slp, int *ncoefs, int rowindex[], int colindex[]);
/* Removes every term of each (row, column) pair (a negative column: the
 * terms without column); a pair without terms is refused. */
ZRVS_API int ZSLPdelcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[]);
/* The formula of pair (row, col) as tokens into type[], value[] (room for
 * maxtypes tokens, end token included; NULL arrays to learn the size only):
 * the term's own tokens and factor when the pair has one term, else the sum
 * of factor * formula over its terms with *factor = 1. *ntypes gets the token
 * count with the end token. parsed must be 1. */
ZRVS_API int ZSLPgetcoefformula(ZSLPprob slp, int row, int col, double *factor, int parsed,
                                int maxtypes, int *ntypes, int type[], double value[]);

/* User functions. A function of type ZSLP_USERFUNC_VALUE returns f(x) for
 * x[0..nargs-1]; it reports a failure by calling ZSLPsetfunctionerror on the
 * problem before returning, and the engine takes its derivatives by central
 * differences (step scaled by |x|). A function of type ZSLP_USERFUNC_DERIVS
 * writes f(x) to *value and returns 0, or returns non-zero on failure; when
 * request is not NULL it also writes df/dx[i] to partials[i] for every i with
 * request[i] != 0 (the engine asks for all arguments, with request[i] = 1). */
#define ZSLP_USERFUNC_VALUE 2
#define ZSLP_USERFUNC_DERIVS 5
typedef double (*ZSLP_userfunc_value)(const double *x, void *data);
typedef int (*ZSLP_userfunc_derivs)(const double *x, const double *request, double *value,
                                    double *partials, void *data);
/* Any function pointer, cast to the type's signature when called. */
typedef void (*ZSLP_userfunc)(void);

/* Registers a user function: name (for messages), functype
 * (ZSLP_USERFUNC_VALUE or _DERIVS), nargs arguments, nout must be 1 (one
 * result), flags must be 0, the function and its data. *index gets the
 * index that ZSLP_TOK_USERFUNC tokens give (from 1). Copies of the problem
 * keep the function with the same data. */
ZRVS_API int ZSLPadduserfunction(ZSLPprob slp, const char *name, int functype, int nargs,
                                 int nout, int flags, ZSLP_userfunc function, void *data,
                                 int *index);
/* Called by a ZSLP_USERFUNC_VALUE function while it runs: its value is not
 * usable and the evaluation fails (a solve stops). */
ZRVS_API int ZSLPsetfunctionerror(ZSLPprob slp);

#ifdef __cplusplus
}
#endif

#endif /* ZORVAN_ZSLP_H */
