/*
 * zrvs.h - C interface of the Zorvan Optimizer (main optimiser).
 *
 * Conventions
 *  - Every function returns an int status: 0 on success, non-zero on failure.
 *    A failure leaves the problem unchanged and sets an error text, readable per
 *    problem with ZRVSgetlasterror and globally with ZRVS_ge_getlasterror.
 *  - Index ranges are first..last, inclusive. 1e20 is infinity.
 *  - Names are passed as NUL-separated packed buffers.
 *  - Distinct problems may be used from distinct threads at the same time; one
 *    problem is used by one thread at a time. Callbacks may run on engine threads.
 *
 * After the constants, the functions come in sections; the engine keeps the
 * entry points of each section in one file of its src/api/ folder.
 */
#ifndef ZORVAN_ZRVS_H
#define ZORVAN_ZRVS_H

#include <stdint.h>

#if defined(_WIN32)
#define ZRVS_API __declspec(dllimport)
#else
#define ZRVS_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct zrvs_problem *ZRVSprob;

/* ---- Limits and special values ---------------------------------------- */
#define ZRVS_PLUSINFINITY 1.0e20
#define ZRVS_MINUSINFINITY (-1.0e20)
#define ZRVS_MAXVERSIONLENGTH 32   /* buffer size for ZRVSgetversion */
#define ZRVS_MAXBANNERLENGTH 512   /* buffer size for ZRVSgetbanner */
#define ZRVS_MAXMESSAGELENGTH 512  /* buffer size for ZRVSgetlasterror */
#define ZRVS_MAXSTRINGLENGTH 2048  /* longest string control or attribute */
#define ZRVS_MAXNAMELENGTH 1024    /* longest problem name */

/* ---- Error codes (ZRVS_ge_getlasterror and ZRVSgetintattrib(ZRVS_ERRORCODE)) */
#define ZRVS_ERR_NONE 0
#define ZRVS_ERR_NOTSTARTED 1  /* the environment is not started */
#define ZRVS_ERR_ARGUMENT 2    /* an argument is invalid */
#define ZRVS_ERR_MEMORY 3      /* out of memory */
#define ZRVS_ERR_UNSUPPORTED 4 /* the engine cannot do what was asked */
#define ZRVS_ERR_FILE 5        /* a file could not be read or written */
#define ZRVS_ERR_UNKNOWNID 6   /* unknown control or attribute */
#define ZRVS_ERR_INTERNAL 7    /* an engine fault */

/* ---- Message types passed to message callbacks ------------------------- */
#define ZRVS_MSG_FLUSH 0   /* no text: flush buffered output */
#define ZRVS_MSG_INFO 1
#define ZRVS_MSG_WARNING 3
#define ZRVS_MSG_ERROR 4

/* ---- Control and attribute types (ZRVSgetcontrolinfo, ZRVSgetattribinfo) */
#define ZRVS_TYPE_NOTDEFINED 0
#define ZRVS_TYPE_INT 1
#define ZRVS_TYPE_INT64 2
#define ZRVS_TYPE_DOUBLE 3
#define ZRVS_TYPE_STRING 4

/* ---- Flags of catalogue entries (ZRVSgetcalist_c, ZRVSgetcalist_d) ----- */
#define ZRVS_CAFLAG_INT 0x01     /* integer value (32 or 64 bit) */
#define ZRVS_CAFLAG_DOUBLE 0x02  /* double value */
#define ZRVS_CAFLAG_STRING 0x04  /* string value */
#define ZRVS_CAFLAG_INT64 0x08   /* with ZRVS_CAFLAG_INT: a 64-bit integer */
#define ZRVS_CAFLAG_CONTROL 0x20 /* a control; clear: an attribute */

/* ---- Integer attributes ------------------------------------------------ */
#define ZRVS_ROWS 1001
#define ZRVS_SETS 1004
#define ZRVS_LPSTATUS 1010
#define ZRVS_MIPSTATUS 1011
#define ZRVS_COLS 1018
#define ZRVS_SPAREROWS 1019
#define ZRVS_ORIGINALSETS 1028
#define ZRVS_QELEMS 1030
#define ZRVS_MIPENTS 1032
#define ZRVS_SOLSTATUS 1053
#define ZRVS_STOPSTATUS 1054
#define ZRVS_ORIGINALROWS 1124
#define ZRVS_PROBNAMELENGTH 1158
#define ZRVS_ORIGINALMIPENTS 1194
#define ZRVS_ORIGINALCOLS 1214
#define ZRVS_INDICATORS 1325
#define ZRVS_GENCONS 1327 /* general and piecewise-linear constraints */
#define ZRVS_SOLVESTATUS 1394
#define ZRVS_SOLVEDOBJS 1397
#define ZRVS_OBJECTIVES 1399
#define ZRVS_SIMPLEXITER 1402  /* simplex iterations of the last solve */
#define ZRVS_BARITER 1403      /* barrier iterations of the last solve */
#define ZRVS_QCONSTRAINTS 1404 /* rows with a quadratic part */
#define ZRVS_QCELEMS 1405      /* quadratic entries over all rows */
#define ZRVS_PWLCONS 1406      /* piecewise-linear constraints (ZRVS_GENCONS counts them too) */
/* 64-bit integer attributes */
#define ZRVS_ELEMS 1501
#define ZRVS_NODES 1502 /* branch-and-bound nodes of the last solve */
/* Double attributes */
#define ZRVS_LPOBJVAL 2001
#define ZRVS_MIPOBJVAL 2003
#define ZRVS_BESTBOUND 2004 /* best bound of the last MIP solve */
#define ZRVS_OBJSENSE 2008
#define ZRVS_MIPGAP 2010    /* relative gap |mipobjval - bestbound| / |mipobjval| */
#define ZRVS_SOLVETIME 2011 /* seconds spent in the last solve */
/* String attributes */
#define ZRVS_PROBNAME 3001

/* ---- Controls ----------------------------------------------------------- */
/* Double controls */
#define ZRVS_FEASTOL 7000       /* primal feasibility tolerance */
#define ZRVS_OPTIMALITYTOL 7001 /* dual feasibility (optimality) tolerance */
#define ZRVS_MIPABSSTOP 7002    /* stop the MIP search at this absolute gap */
#define ZRVS_MIPRELSTOP 7003    /* stop the MIP search at this relative gap */
#define ZRVS_MIPTOL 7004        /* integrality tolerance */
#define ZRVS_TIMELIMIT 7005     /* seconds; 1e20 or more: none */
/* Integer controls */
#define ZRVS_LPITERLIMIT 8000 /* simplex and barrier iteration limit */
#define ZRVS_MAXNODE 8003     /* branch-and-bound node limit */
#define ZRVS_DEFAULTALG 8004  /* 1 automatic, 2 dual simplex, 3 primal simplex, 4 barrier */
#define ZRVS_RANDOMSEED 8005
#define ZRVS_PRESOLVE 8011    /* 1 presolve, 0 none */
#define ZRVS_OUTPUTLOG 8035   /* 0 silent, 1 summary messages, 2 and up: solver log */
#define ZRVS_THREADS 8278     /* -1 automatic, else the number of threads */
/* More MIP and barrier controls */
#define ZRVS_MIPABSCUTOFF 7006 /* integer solutions no worse than this; |v| >= 1e20: none */
#define ZRVS_BARGAPSTOP 7007   /* barrier convergence tolerance (relative duality gap) */
#define ZRVS_BARITERLIMIT 8006 /* barrier iteration limit (lpiterlimit applies too) */
#define ZRVS_MAXMIPSOL 8007    /* stop after this many improving integer solutions; 0: no limit */
#define ZRVS_CROSSOVER 8008    /* 1: a barrier solution is crossed over to a vertex; 0: not */
#define ZRVS_HEUREMPHASIS 7008 /* share of MIP effort spent in primal heuristics, 0 to 1 */
#define ZRVS_SYMMETRY 8009     /* 1: MIP symmetry detection and handling; 0: none */
#define ZRVS_SCALING 8010      /* 1: the simplex method scales the matrix; 0: it does not */
/* Targets that arm the gapnotify callback (|value| >= 1e20 or a negative
 * gap: none). A target reached fires gapnotify once; the callback may set
 * new ones. */
#define ZRVS_MIPRELGAPNOTIFY 7401      /* relative gap at or below this */
#define ZRVS_MIPABSGAPNOTIFY 7402      /* absolute gap at or below this */
#define ZRVS_MIPABSGAPNOTIFYOBJ 7403   /* incumbent objective at least this good */
#define ZRVS_MIPABSGAPNOTIFYBOUND 7404 /* best bound at least this good */
/* String controls */
#define ZRVS_OUTPUTPREFIX 8901 /* text put before every message line */

/* Objective controls (ZRVSsetobjintcontrol, ZRVSsetobjdblcontrol). Several
 * objectives are solved by decreasing priority; objectives of one priority
 * are blended by weight. After each priority level, its blended value may
 * worsen by at most max(abstol, reltol * |optimum|) of that level (the
 * largest tolerances among its objectives). rhs is the objective's constant. */
#define ZRVS_OBJECTIVE_PRIORITY 20001 /* int, default 0 */
#define ZRVS_OBJECTIVE_WEIGHT 20002   /* double, default 1 */
#define ZRVS_OBJECTIVE_ABSTOL 20003   /* double, default 1e-6 */
#define ZRVS_OBJECTIVE_RELTOL 20004   /* double, default 1e-6 */
#define ZRVS_OBJECTIVE_RHS 20005      /* double, default 0: the constant */

/* Objective senses (ZRVSchgobjsense) */
#define ZRVS_OBJ_MINIMIZE 1
#define ZRVS_OBJ_MAXIMIZE (-1)

/* General constraint types (ZRVSaddgencons64) */
#define ZRVS_GENCONS_MAX 0
#define ZRVS_GENCONS_MIN 1
#define ZRVS_GENCONS_AND 2
#define ZRVS_GENCONS_OR 3
#define ZRVS_GENCONS_ABS 4

/* Message codes (ZRVSsetmessagestatus): every message of the engine
 * belongs to one of these kinds. */
#define ZRVS_MSGCODE_PROBLEM_LOADED 101 /* a problem was loaded or read */
#define ZRVS_MSGCODE_FILE_WARNING 102   /* a file was read or written with a warning */
#define ZRVS_MSGCODE_SOLVE_SUMMARY 103  /* class, size and outcome of a solve */
#define ZRVS_MSGCODE_SOLVER_LOG 104     /* lines of the underlying solver's log */
#define ZRVS_MSGCODE_MODEL_TRANSFER 105 /* how the solver took the model */
#define ZRVS_MSGCODE_SOLVE_WARNING 106  /* a solver result checked and corrected */

/* Values of ZRVS_LPSTATUS */
#define ZRVS_LP_UNSTARTED 0
#define ZRVS_LP_OPTIMAL 1
#define ZRVS_LP_INFEAS 2
#define ZRVS_LP_CUTOFF 3
#define ZRVS_LP_UNFINISHED 4
#define ZRVS_LP_UNBOUNDED 5
#define ZRVS_LP_CUTOFF_IN_DUAL 6
#define ZRVS_LP_UNSOLVED 7
#define ZRVS_LP_NONCONVEX 8
/* Basis statuses (ZRVSgetbasis, ZRVSloadbasis). A column is nonbasic at its
 * lower or upper bound, basic, or superbasic (nonbasic between its bounds,
 * for free columns at zero). A row is described by its slack: nonbasic at
 * lower means the row is at its right-hand side (for 'R' rows at rhs, and
 * nonbasic at upper at rhs - range); 'N' rows are basic. */
#define ZRVS_BASIS_NONBASIC_LOWER 0
#define ZRVS_BASIS_BASIC 1
#define ZRVS_BASIS_NONBASIC_UPPER 2
#define ZRVS_BASIS_SUPERBASIC 3
/* Values of ZRVS_MIPSTATUS */
#define ZRVS_MIP_NOT_LOADED 0
#define ZRVS_MIP_LP_NOT_OPTIMAL 1
#define ZRVS_MIP_LP_OPTIMAL 2
#define ZRVS_MIP_NO_SOL_FOUND 3
#define ZRVS_MIP_SOLUTION 4
#define ZRVS_MIP_INFEAS 5
#define ZRVS_MIP_OPTIMAL 6
#define ZRVS_MIP_UNBOUNDED 7
/* Values of ZRVS_SOLVESTATUS */
#define ZRVS_SOLVESTATUS_UNSTARTED 0
#define ZRVS_SOLVESTATUS_STOPPED 1
#define ZRVS_SOLVESTATUS_FAILED 2
#define ZRVS_SOLVESTATUS_COMPLETED 3
/* Values of ZRVS_SOLSTATUS */
#define ZRVS_SOLSTATUS_NOTFOUND 0
#define ZRVS_SOLSTATUS_OPTIMAL 1
#define ZRVS_SOLSTATUS_FEASIBLE 2
#define ZRVS_SOLSTATUS_INFEASIBLE 3
#define ZRVS_SOLSTATUS_UNBOUNDED 4
/* Stop reasons (ZRVSinterrupt, ZRVS_STOPSTATUS) */
#define ZRVS_STOP_NONE 0
#define ZRVS_STOP_TIMELIMIT 1
#define ZRVS_STOP_CTRLC 2
#define ZRVS_STOP_NODELIMIT 3
#define ZRVS_STOP_ITERLIMIT 4
#define ZRVS_STOP_MIPGAP 5
#define ZRVS_STOP_SOLLIMIT 6
#define ZRVS_STOP_GENERICERROR 7 /* also: a callback failed */
#define ZRVS_STOP_MEMORYERROR 8
#define ZRVS_STOP_USER 9
#define ZRVS_STOP_SOLVECOMPLETE 10
#define ZRVS_STOP_NUMERICALERROR 13

/* ======================================================================== */
/* Environment                                                               */
/* ======================================================================== */

/* Starts the environment. Starts nest: each successful ZRVSinit needs one
 * ZRVSfree. path names the installation directory; NULL or "" takes the
 * directory named by the environment variable ZORVANDIR, or none. A directory
 * that is given must exist. */
ZRVS_API int ZRVSinit(const char *path);
/* Stops the environment once. Fails when it is not started. */
ZRVS_API int ZRVSfree(void);
/* How many starts are not yet matched by a stop. Never fails. */
ZRVS_API int ZRVSgetinitcount(void);

/* Version text "major.minor.build" into a buffer of ZRVS_MAXVERSIONLENGTH. */
ZRVS_API int ZRVSgetversion(char *version);
/* Version numbers; any pointer may be NULL. */
ZRVS_API int ZRVSgetversionnumbers(int *major, int *minor, int *build);
/* One-line banner (engine and solver versions) into ZRVS_MAXBANNERLENGTH bytes. */
ZRVS_API int ZRVSgetbanner(char *banner);

/* Checked mode (on by default): every call validates its problem handle
 * against the live problems, so a destroyed or foreign handle is reported as
 * an error instead of being used. Off: only NULL handles are caught. */
ZRVS_API int ZRVSgetcheckedmode(int *checked);
ZRVS_API int ZRVSsetcheckedmode(int checked);

/* Architecture consistency (off by default): solves run with a fixed number
 * of threads, so results do not depend on the machine's core count. */
ZRVS_API int ZRVS_ge_setarchconsistency(int ifarchconsistent);
ZRVS_API int ZRVS_ge_getarchconsistency(int *ifarchconsistent);

/* Remote computation: this engine solves in-process only. The value is 0;
 * setting 0 succeeds, setting any other value fails with ZRVS_ERR_UNSUPPORTED. */
ZRVS_API int ZRVS_ge_setcomputeallowed(int allow);
ZRVS_API int ZRVS_ge_getcomputeallowed(int *allow);

/* *status = 1 when the engine provides the named feature (case-insensitive),
 * 0 otherwise. ZRVSgetfeaturelist gives the NUL-separated list of the names
 * known to the engine, ending with an empty name. */
ZRVS_API int ZRVSfeaturequery(const char *feature, int *status);
ZRVS_API const char *ZRVSgetfeaturelist(void);

/* The last error of a call that failed without a problem (environment and
 * global calls, ZRVScreateprob), per thread. msg may be NULL; *nbytes (if not
 * NULL) receives the full length of the text. */
ZRVS_API int ZRVS_ge_getlasterror(int *msgcode, char *msg, int maxbytes, int *nbytes);

/* Global message handlers receive every message of the engine: messages of
 * problems (object is the ZRVSprob) and of the environment (object NULL).
 * Handlers run in order of decreasing priority, then of registration.
 * Return 0; a non-zero return is ignored. Needs a started environment. */
typedef int (*ZRVS_msghandler)(void *object, void *data, void *thread,
                               const char *msg, int len, int msgtype);
ZRVS_API int ZRVS_ge_addcbmsghandler(ZRVS_msghandler f, void *data, int priority);
/* Removes the handlers equal to f (all handlers if f is NULL) whose data is
 * data (any data if data is NULL). */
ZRVS_API int ZRVS_ge_removecbmsghandler(ZRVS_msghandler f, void *data);

/* The type name of an engine object: "ZRVSprob" for a live problem,
 * "ZSLPprob" for a live nonlinear problem. Fails for anything else. */
ZRVS_API int ZRVSgetobjecttypename(const void *object, const char **name);

/* ======================================================================== */
/* Problems                                                                  */
/* ======================================================================== */

/* Creates an empty problem named "noname". Needs a started environment. */
ZRVS_API int ZRVScreateprob(ZRVSprob *prob);
/* Destroys a problem (and a nonlinear problem attached to it). */
ZRVS_API int ZRVSdestroyprob(ZRVSprob prob);
/* Copies model, name and controls of src into dest. name NULL or "" keeps
 * src's name. Callbacks are not copied. */
ZRVS_API int ZRVScopyprob(ZRVSprob dest, ZRVSprob src, const char *name);

/* Replaces the model by an LP. rowtype 'L','G','E','R','N'; rng only for 'R'
 * rows (NULL: none); obj, lb, ub NULL: 0, 0, infinity. The matrix is given
 * by columns: start[ncols] offsets (start[ncols] optional when collen is
 * given), collen[ncols] lengths (NULL: start[j+1]-start[j]), rowind, rowcoef. */
ZRVS_API int ZRVSloadlp(ZRVSprob prob, const char *probname, int ncols, int nrows,
                        const char rowtype[], const double rhs[], const double rng[],
                        const double obj[], const int start[], const int collen[],
                        const int rowind[], const double rowcoef[],
                        const double lb[], const double ub[]);
ZRVS_API int ZRVSloadlp64(ZRVSprob prob, const char *probname, int ncols, int nrows,
                          const char rowtype[], const double rhs[], const double rng[],
                          const double obj[], const int64_t start[], const int collen[],
                          const int rowind[], const double rowcoef[],
                          const double lb[], const double ub[]);

ZRVS_API int ZRVSsetprobname(ZRVSprob prob, const char *probname);
/* Name into a buffer of at least ZRVS_PROBNAMELENGTH + 1 bytes. */
ZRVS_API int ZRVSgetprobname(ZRVSprob prob, char *name);

/* The text of the problem's last error into ZRVS_MAXMESSAGELENGTH bytes
 * ("" when none). */
ZRVS_API int ZRVSgetlasterror(ZRVSprob prob, char *errmsg);

/* Message callbacks of one problem, called in order of decreasing priority.
 * msg is NULL and msgtype ZRVS_MSG_FLUSH for a flush request. */
typedef void (*ZRVS_cbmessage)(ZRVSprob prob, void *data, const char *msg,
                               int len, int msgtype);
ZRVS_API int ZRVSaddcbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data, int priority);
/* Removes the callbacks equal to f (all if NULL) with data data (any if NULL). */
ZRVS_API int ZRVSremovecbmessage(ZRVSprob prob, ZRVS_cbmessage f, void *data);

/* Whether messages of a code (ZRVS_MSGCODE_...) are shown: status 1
 * (the default), or 0 when they are suppressed. */
ZRVS_API int ZRVSsetmessagestatus(ZRVSprob prob, int msgcode, int status);
ZRVS_API int ZRVSgetmessagestatus(ZRVSprob prob, int msgcode, int *status);
/* Writes the problem's messages (those the outputlog control lets through)
 * also to a file, one line each, appending; NULL or "" closes it. */
ZRVS_API int ZRVSsetlogfile(ZRVSprob prob, const char *filename);

/* Asks a running solve to stop at its next check, with a stop reason
 * (ZRVS_STOP_...). Safe to call from any thread while the problem solves.
 * A request made while no solve runs is discarded when the next solve starts. */
ZRVS_API int ZRVSinterrupt(ZRVSprob prob, int reason);

/* ======================================================================== */
/* Controls and attributes                                                   */
/* ======================================================================== */

/* The catalogue of controls and attributes: parallel arrays that end with an
 * entry whose identifier is 0 (and whose name is NULL). The arrays belong to
 * the engine and stay valid while the library is loaded. */
ZRVS_API int ZRVSgetcalist_c(const int **ids, const char *const **names, const int **flags);
/* The same without names, for lookups by identifier. */
ZRVS_API int ZRVSgetcalist_d(const int **ids, const int **flags);

/* Identifier and type (ZRVS_TYPE_...) of a control or attribute by name
 * (case-insensitive). An unknown name gives id 0 and ZRVS_TYPE_NOTDEFINED. */
ZRVS_API int ZRVSgetcontrolinfo(ZRVSprob prob, const char *name, int *id, int *type);
ZRVS_API int ZRVSgetattribinfo(ZRVSprob prob, const char *name, int *id, int *type);

ZRVS_API int ZRVSgetintcontrol(ZRVSprob prob, int control, int *value);
ZRVS_API int ZRVSgetintcontrol64(ZRVSprob prob, int control, int64_t *value);
ZRVS_API int ZRVSgetdblcontrol(ZRVSprob prob, int control, double *value);
/* String controls: ZRVSgetstrcontrol needs ZRVS_MAXSTRINGLENGTH bytes;
 * ZRVSgetstringcontrol writes at most maxbytes (NUL included) and gives the
 * full length in *nbytes. */
ZRVS_API int ZRVSgetstrcontrol(ZRVSprob prob, int control, char *value);
ZRVS_API int ZRVSgetstringcontrol(ZRVSprob prob, int control, char *value, int maxbytes,
                                  int *nbytes);
ZRVS_API int ZRVSsetintcontrol(ZRVSprob prob, int control, int value);
ZRVS_API int ZRVSsetintcontrol64(ZRVSprob prob, int control, int64_t value);
ZRVS_API int ZRVSsetdblcontrol(ZRVSprob prob, int control, double value);
ZRVS_API int ZRVSsetstrcontrol(ZRVSprob prob, int control, const char *value);
/* Every control back to its default. */
ZRVS_API int ZRVSsetdefaults(ZRVSprob prob);
/* One control back to its default. */
ZRVS_API int ZRVSsetdefaultcontrol(ZRVSprob prob, int control);
/* Copies every control of src into dest. */
ZRVS_API int ZRVScopycontrols(ZRVSprob dest, ZRVSprob src);

ZRVS_API int ZRVSgetintattrib(ZRVSprob prob, int attrib, int *value);
ZRVS_API int ZRVSgetintattrib64(ZRVSprob prob, int attrib, int64_t *value);
ZRVS_API int ZRVSgetdblattrib(ZRVSprob prob, int attrib, double *value);
ZRVS_API int ZRVSgetstrattrib(ZRVSprob prob, int attrib, char *value);
ZRVS_API int ZRVSgetstringattrib(ZRVSprob prob, int attrib, char *value, int maxbytes,
                                 int *nbytes);


/* ======================================================================== */
/* Columns and rows                                                          */
/* ======================================================================== */

/* Model storage conventions. Column types: 'C' continuous, 'B' binary, 'I'
 * integer, 'S' semi-continuous (0 or between max(lb, threshold) and ub), 'R'
 * semi-integer (as 'S', integer), 'P' partially integer (integer up to the
 * threshold, continuous above it). Row types: 'L' activity <= rhs, 'G' >=,
 * 'E' =, 'R' rhs - rng <= activity <= rhs, 'N' free. Bounds at or beyond
 * +-1e20 are infinite. Every batch gives the entries of line j (column or
 * row) as start[j] .. start[j+1]-1, the last line ending at ncoefs; a line
 * must not name one row or column twice. Zero coefficients are not stored. */

/* Makes room for nrows more rows, ncols more columns and ncoefs more
 * matrix coefficients, so that adding them over several calls grows no
 * array of the model again. Changes nothing else. */
ZRVS_API int ZRVSreserve(ZRVSprob prob, int nrows, int ncols, int64_t ncoefs);
/* Appends ncols columns. objcoef, lb, ub may be NULL (0, 0, +infinity);
 * start, rowind, rowcoef may be NULL when ncoefs is 0. New columns are 'C'. */
ZRVS_API int ZRVSaddcols64(ZRVSprob prob, int ncols, int64_t ncoefs, const double objcoef[],
                           const int64_t start[], const int rowind[], const double rowcoef[],
                           const double lb[], const double ub[]);
/* Appends nrows rows. rhs may be NULL only when all rows are 'N'; rng is
 * read for 'R' rows only (and may be NULL without them). */
ZRVS_API int ZRVSaddrows64(ZRVSprob prob, int nrows, int64_t ncoefs, const char rowtype[],
                           const double rhs[], const double rng[], const int64_t start[],
                           const int colind[], const double rowcoef[]);
/* Deletes rows or columns (indices may repeat); the rest are
 * renumbered in order. Names, matrix, quadratic parts, sets and indicators
 * follow: a deleted column leaves the sets it was in, quadratic entries and
 * indicators that use it are removed. */
ZRVS_API int ZRVSdelrows(ZRVSprob prob, int nrows, const int rowind[]);
ZRVS_API int ZRVSdelcols(ZRVSprob prob, int ncols, const int colind[]);

/* Bound changes: bndtype 'L' lower, 'U' upper, 'B' both. NaN is refused. */
ZRVS_API int ZRVSchgbounds(ZRVSprob prob, int nbounds, const int colind[],
                           const char bndtype[], const double bndval[]);
/* Right-hand sides of rows. For 'R' rows the range is kept, so both sides
 * move. NaN is refused. */
ZRVS_API int ZRVSchgrhs(ZRVSprob prob, int nrows, const int rowind[], const double rhs[]);
/* Ranges of rows (>= 0), which become 'R' rows: an 'L', 'E' or 'R' row
 * keeps rhs as its upper side (rhs - rng <= activity <= rhs); a 'G' row
 * keeps rhs as its lower side (rhs <= activity <= rhs + rng, so its rhs
 * becomes rhs + rng). 'N' rows are refused. */
ZRVS_API int ZRVSchgrhsrange(ZRVSprob prob, int nrows, const int rowind[], const double rng[]);
/* Row types 'L', 'G', 'E', 'R', 'N'; a row made 'R' starts with range 0
 * and a row no longer 'R' loses its range. */
ZRVS_API int ZRVSchgrowtype(ZRVSprob prob, int nrows, const int rowind[], const char rowtype[]);
/* Column types; making a column 'B' sets its bounds to [0, 1]. */
ZRVS_API int ZRVSchgcoltype(ZRVSprob prob, int ncols, const int colind[],
                            const char coltype[]);
/* Thresholds of 'S', 'R' and 'P' columns (other types are refused). */
ZRVS_API int ZRVSchgglblimit(ZRVSprob prob, int ncols, const int colind[],
                             const double limit[]);

/* ======================================================================== */
/* Names                                                                     */
/* ======================================================================== */

/* Names: type 1 rows, 2 columns, 3 sets. names holds last-first+1
 * NUL-terminated names one after another. Names need not be unique;
 * ZRVSgetindex finds the lowest index. Unnamed entries read as "R<i>",
 * "C<j>", "S<k>" (their current index), and those names find them. */
ZRVS_API int ZRVSaddnames(ZRVSprob prob, int type, const char names[], int first, int last);
/* Packed names of first..last into names, which must be large enough (see
 * ZRVSgetnamelist for the size). */
ZRVS_API int ZRVSgetnames(ZRVSprob prob, int type, char names[], int first, int last);
/* As ZRVSgetnames with a buffer size: *nbytes (if not NULL) receives the
 * bytes needed; names NULL only asks for the size; a buffer that is too
 * small is an error. */
ZRVS_API int ZRVSgetnamelist(ZRVSprob prob, int type, char names[], int maxbytes, int *nbytes,
                             int first, int last);
/* Names of sets first..last (as ZRVSaddnames with type 3). */
ZRVS_API int ZRVSaddsetnames(ZRVSprob prob, const char names[], int first, int last);
/* Index of a name, -1 when no entry has it. */
ZRVS_API int ZRVSgetindex(ZRVSprob prob, int type, const char *name, int *index);

/* ======================================================================== */
/* Quadratic rows                                                            */
/* ======================================================================== */

/* Adds ncoefs quadratic entries to row `row`: the row's activity becomes
 * a.x + x'Qx with Q symmetric; entry (i, j, v) adds v to Q[i][j] and
 * Q[j][i] (so it contributes 2 v x_i x_j for i != j, v x_i^2 for i == j).
 * Rows with quadratic parts need the nonlinear solver. */
ZRVS_API int ZRVSaddqmatrix64(ZRVSprob prob, int row, int64_t ncoefs, const int rowqcol1[],
                              const int rowqcol2[], const double rowqcoef[]);
/* The quadratic entries of a row, one per pair i <= j: *nqelems receives
 * their number; the arrays (all three or none) receive them. */
ZRVS_API int ZRVSgetqrowqmatrixtriplets(ZRVSprob prob, int row, int64_t *nqelems,
                                        int rowqcol1[], int rowqcol2[], double rowqcoef[]);

/* ======================================================================== */
/* Sets and indicators                                                       */
/* ======================================================================== */

/* Special ordered sets: settype '1' or '2'; members of set k are
 * colind[start[k] .. start[k+1]-1], ordered by their distinct, finite
 * reference values refval. SOS1: at most one member non-zero; SOS2: at most
 * two, adjacent in reference order. Solved through binaries with big-M
 * values from the members' bounds, which must then be finite. */
ZRVS_API int ZRVSaddsets64(ZRVSprob prob, int nsets, int64_t nelems, const char settype[],
                           const int64_t start[], const int colind[], const double refval[]);
/* Deletes sets (indices may repeat); the rest are renumbered in order. */
ZRVS_API int ZRVSdelsets(ZRVSprob prob, int nsets, const int setind[]);
/* Sets first..last: types, start offsets (last-first+2), members and
 * reference values (at most maxelems); *nelems receives the member count.
 * Any output but nelems may be NULL. */
ZRVS_API int ZRVSgetsets64(ZRVSprob prob, char settype[], int64_t start[], int colind[],
                           double refval[], int64_t maxelems, int64_t *nelems, int first,
                           int last);

/* Indicator constraints: row rowind[k] must hold when binary column
 * colind[k] is 1 (complement 1) or 0 (complement -1); complement 0 makes
 * the row an ordinary row again. Solved with big-M values from the bounds
 * of the row's columns, which must then be finite. */
ZRVS_API int ZRVSsetindicators(ZRVSprob prob, int nrows, const int rowind[], const int colind[],
                               const int complement[]);
/* Rows first..last become ordinary rows. */
ZRVS_API int ZRVSdelindicators(ZRVSprob prob, int first, int last);
/* Indicator column (-1 none) and complement (1, -1, 0) of rows first..last;
 * either output may be NULL. */
ZRVS_API int ZRVSgetindicators(ZRVSprob prob, int colind[], int complement[], int first,
                               int last);

/* ======================================================================== */
/* General and piecewise-linear constraints                                  */
/* ======================================================================== */

/* General constraints: resultant[k] = f(operands) with f by contype[k]:
 * ZRVS_GENCONS_MAX / _MIN: the largest / smallest of the columns
 *   colind[colstart[k] ..] and the constants val[valstart[k] ..];
 * ZRVS_GENCONS_AND / _OR: of binary columns (no constants), the resultant
 *   binary too; ZRVS_GENCONS_ABS: |x| of exactly one column.
 * The operand parts end where the next constraint's begins, the last at
 * ncols (nvals). Solved through binaries and big-M rows whose values come
 * from the operands' bounds, which must then be finite. */
ZRVS_API int ZRVSaddgencons64(ZRVSprob prob, int ncons, int64_t ncols, int64_t nvals,
                              const int contype[], const int resultant[],
                              const int64_t colstart[], const int colind[],
                              const int64_t valstart[], const double val[]);
/* General constraints first..last: types, resultants, operand columns (at
 * most maxcols; colstart gets last-first+2 offsets, *ncols the total) and
 * constants (at most maxvals, likewise). Any output but ncols and nvals may
 * be NULL. */
ZRVS_API int ZRVSgetgencons64(ZRVSprob prob, int contype[], int resultant[], int64_t colstart[],
                              int colind[], int64_t maxcols, int64_t *ncols, int64_t valstart[],
                              double val[], int64_t maxvals, int64_t *nvals, int first,
                              int last);
/* Deletes general constraints (indices may repeat); the rest move down. */
ZRVS_API int ZRVSdelgencons(ZRVSprob prob, int ncons, const int conind[]);

/* Piecewise-linear constraints: resultant[k] = f(colind[k]), f through
 * the points (xval, yval)[start[k] ..] (at least two, x non-decreasing,
 * two equal x make a jump) and extended by its end segments where the
 * column's bounds reach beyond the points (such a bound must be finite).
 * Solved through one binary per segment. */
ZRVS_API int ZRVSaddpwlcons64(ZRVSprob prob, int npwls, int64_t npoints, const int colind[],
                              const int resultant[], const int64_t start[], const double xval[],
                              const double yval[]);
/* Piecewise-linear constraints first..last, as ZRVSgetgencons64. */
ZRVS_API int ZRVSgetpwlcons64(ZRVSprob prob, int colind[], int resultant[], int64_t start[],
                              double xval[], double yval[], int64_t maxpoints,
                              int64_t *npoints, int first, int last);
ZRVS_API int ZRVSdelpwlcons(ZRVSprob prob, int npwls, const int pwlind[]);

/* ======================================================================== */
/* Single coefficients and quadratic entries                                 */
/* ======================================================================== */

/* Matrix coefficients: (row, col) becomes coef; 0 removes the entry. In a
 * batch a pair given twice takes its last value. */
ZRVS_API int ZRVSchgcoef(ZRVSprob prob, int row, int col, double coef);
ZRVS_API int ZRVSchgmcoef(ZRVSprob prob, int ncoefs, const int rowind[], const int colind[],
                          const double rowcoef[]);
ZRVS_API int ZRVSchgmcoef64(ZRVSprob prob, int64_t ncoefs, const int rowind[],
                            const int colind[], const double rowcoef[]);
/* The coefficient (row, col) of the matrix, 0 when there is none. */
ZRVS_API int ZRVSgetcoef(ZRVSprob prob, int row, int col, double *coef);
/* One entry of the objective's Q as ZRVSchgmqobj64 sets them. */
ZRVS_API int ZRVSchgqobj(ZRVSprob prob, int objqcol1, int objqcol2, double objqcoef);
ZRVS_API int ZRVSgetqobj(ZRVSprob prob, int objqcol1, int objqcol2, double *objqcoef);
/* One entry of a row's Q (see ZRVSaddqmatrix64): Q[i][j] = Q[j][i] = v,
 * 0 removes it. */
ZRVS_API int ZRVSchgqrowcoeff(ZRVSprob prob, int row, int rowqcol1, int rowqcol2,
                              double rowqcoef);
ZRVS_API int ZRVSgetqrowcoeff(ZRVSprob prob, int row, int rowqcol1, int rowqcol2,
                              double *rowqcoef);
/* Columns first..last of a row's symmetric Q (both triangles), as
 * ZRVSgetmqobj64 reads the objective's. */
ZRVS_API int ZRVSgetqrowqmatrix(ZRVSprob prob, int row, int64_t start[], int colind[],
                                double rowqcoef[], int64_t maxcoefs, int64_t *ncoefs, int first,
                                int last);
/* The rows with a quadratic part: *nrows their number, rowind (may be
 * NULL) the rows in ascending order. */
ZRVS_API int ZRVSgetqrows(ZRVSprob prob, int *nrows, int rowind[]);
/* Removes the quadratic part of a row. */
ZRVS_API int ZRVSdelqmatrix(ZRVSprob prob, int row);

/* ======================================================================== */
/* Objectives                                                                */
/* ======================================================================== */

/* The value of objective k is coef.x + constant, plus 0.5 x'Qx for the
 * primary objective 0. Column index -1 addresses the constant. */
ZRVS_API int ZRVSchgobj(ZRVSprob prob, int ncols, const int colind[], const double objcoef[]);
/* As ZRVSchgobj for objective objidx; objidx equal to the number of
 * objectives (ZRVS_OBJECTIVES) adds a new objective, all zero before the
 * change. Further objectives must be linear. */
ZRVS_API int ZRVSchgobjn(ZRVSprob prob, int objidx, int ncols, const int colind[],
                         const double objcoef[]);
/* Adds an objective after the last one, with these coefficients (others
 * 0), priority and weight. */
ZRVS_API int ZRVSaddobj(ZRVSprob prob, int ncols, const int colind[], const double objcoef[],
                        int priority, double weight);
/* Removes objective objidx >= 1; later objectives move down one index. */
ZRVS_API int ZRVSdelobj(ZRVSprob prob, int objidx);
/* ZRVS_OBJ_MINIMIZE (1) or ZRVS_OBJ_MAXIMIZE (-1), for every objective. */
ZRVS_API int ZRVSchgobjsense(ZRVSprob prob, int sense);
ZRVS_API int ZRVSgetobj(ZRVSprob prob, double obj[], int first, int last);
ZRVS_API int ZRVSgetobjn(ZRVSprob prob, int objidx, double obj[], int first, int last);
/* Sets entries of the symmetric matrix Q of the objective's 0.5 x'Qx:
 * (i, j, v) sets Q[i][j] = Q[j][i] = v; 0 removes the entry. So a term
 * a x_i^2 is given as (i, i, 2a) and a term b x_i x_j as (i, j, b). */
ZRVS_API int ZRVSchgmqobj64(ZRVSprob prob, int64_t ncoefs, const int objqcol1[],
                            const int objqcol2[], const double objqcoef[]);
/* Columns first..last of Q (both triangles, rows ascending): start gets
 * last-first+2 offsets, colind/objqcoef at most maxcoefs entries, *ncoefs
 * the number of entries in the range. start, colind, objqcoef may be NULL. */
ZRVS_API int ZRVSgetmqobj64(ZRVSprob prob, int64_t start[], int colind[], double objqcoef[],
                            int64_t maxcoefs, int64_t *ncoefs, int first, int last);
/* Objective controls ZRVS_OBJECTIVE_... of objective objidx. */
ZRVS_API int ZRVSsetobjintcontrol(ZRVSprob prob, int objidx, int control, int value);
ZRVS_API int ZRVSsetobjdblcontrol(ZRVSprob prob, int objidx, int control, double value);
ZRVS_API int ZRVSgetobjintcontrol(ZRVSprob prob, int objidx, int control, int *value);
ZRVS_API int ZRVSgetobjdblcontrol(ZRVSprob prob, int objidx, int control, double *value);

/* ======================================================================== */
/* Reading the model                                                         */
/* ======================================================================== */

ZRVS_API int ZRVSgetlb(ZRVSprob prob, double lb[], int first, int last);
ZRVS_API int ZRVSgetub(ZRVSprob prob, double ub[], int first, int last);
ZRVS_API int ZRVSgetcoltype(ZRVSprob prob, char coltype[], int first, int last);
ZRVS_API int ZRVSgetglblimit(ZRVSprob prob, double limit[], int first, int last);
ZRVS_API int ZRVSgetrhs(ZRVSprob prob, double rhs[], int first, int last);
/* Ranges of 'R' rows; other rows read +infinity. */
ZRVS_API int ZRVSgetrhsrange(ZRVSprob prob, double range[], int first, int last);
ZRVS_API int ZRVSgetrowtype(ZRVSprob prob, char rowtype[], int first, int last);
/* The matrix over columns (rows) first..last: start gets last-first+2
 * offsets, the index and coefficient arrays at most maxcoefs entries,
 * *ncoefs the number of entries in the range. Arrays may be NULL (call once
 * with NULL arrays to learn the size). */
ZRVS_API int ZRVSgetcols64(ZRVSprob prob, int64_t start[], int rowind[], double rowcoef[],
                           int64_t maxcoefs, int64_t *ncoefs, int first, int last);
ZRVS_API int ZRVSgetrows64(ZRVSprob prob, int64_t start[], int colind[], double colcoef[],
                           int64_t maxcoefs, int64_t *ncoefs, int first, int last);

/* The non-continuous columns and the sets: *nentities and *nsets (either
 * may be NULL) get their numbers; coltype, colind and limit get the type,
 * index and threshold of each such column; settype, start (nsets+1
 * offsets), setcols and refval describe the sets. Any array may be NULL. */
ZRVS_API int ZRVSgetmipentities64(ZRVSprob prob, int *nentities, int *nsets, char coltype[],
                                  int colind[], double limit[], char settype[], int64_t start[],
                                  int setcols[], double refval[]);

/* ======================================================================== */
/* Problem files                                                             */
/* ======================================================================== */

/* Reads a problem from an MPS or LP file, replacing the model (name, sense,
 * objective, rows, columns, names, quadratic parts, sets, indicators). On
 * failure the problem keeps the model it had, and the error text names the
 * file, the line and what was wrong.
 *
 * The format comes from flags or, without a format flag, from the name:
 *   'l'  LP format             (name ending in .lp)
 *   'm'  free MPS              (name ending in .mps)
 *   'f'  fixed MPS (fields by column position, names may hold blanks)
 * A further ".gz" in the name means gzip; reading uncompresses any gzip file
 * whatever its name. A name that tells no format and no flag is an error.
 *
 * MPS sections: NAME, OBJSENSE, OBJNAME, ROWS, COLUMNS (with integer
 * markers), RHS (an entry of the objective row is minus the objective
 * constant), RANGES, BOUNDS (UP LO FX FR MI PL BV LI UI SC SI; a negative UP
 * on a column with lower bound 0 frees the lower bound, with a warning),
 * QUADOBJ and QMATRIX (0.5 x'Qx of the objective), QCMATRIX <row>, SOS,
 * INDICATORS, ENDATA. The first N row is the objective; further N rows stay
 * as free rows. LP sections: Minimize/Maximize, Subject To, Bounds,
 * Generals, Binaries, Semi-continuous, SOS, End; quadratic terms in
 * brackets ("[ ... ] / 2" in the objective), indicators "b = 1 -> row".
 * A problem without a name in the file is named after the file.
 * Nonlinear formulas are not part of these files. */
ZRVS_API int ZRVSreadprob(ZRVSprob prob, const char *filename, const char *flags);

/* Writes the problem to a file; format and compression are chosen as for
 * ZRVSreadprob. Numbers are written so that they read back to the same
 * double, so reading the file gives the same model. Names the format cannot
 * hold (blanks in free MPS, more than 8 characters in fixed MPS, characters
 * or reserved words that LP files do not allow, repeated column names) are
 * replaced by generated names such as "C12", with a warning message.
 * Semi-continuous columns are written with lower bound max(lb, threshold).
 * Fails with ZRVS_ERR_UNSUPPORTED for what no file here can hold: several
 * objectives and partially integer columns. The file is removed when
 * writing fails part way. */
ZRVS_API int ZRVSwriteprob(ZRVSprob prob, const char *filename, const char *flags);

/* ======================================================================== */
/* Solving and solutions                                                     */
/* ======================================================================== */

/* Solves the problem as it is: an LP or convex QP without discrete parts,
 * else a MIP (integer, semi-continuous, semi-integer, partially integer
 * columns, sets, indicators, general and piecewise-linear constraints).
 * Several objectives are solved by priority.
 * flags: "" automatic, or one algorithm letter for continuous solves: 'd'
 * dual simplex, 'p' primal simplex, 'b' barrier. Quadratic rows and
 * quadratic objectives with discrete parts need the nonlinear solver and
 * fail. solvestatus and solstatus (may be NULL) receive ZRVS_SOLVESTATUS_...
 * and ZRVS_SOLSTATUS_... A solve that runs and ends without a solution
 * (infeasible, stopped) is a success: the statuses say what happened. */
ZRVS_API int ZRVSoptimize(ZRVSprob prob, const char *flags, int *solvestatus, int *solstatus);
/* Solves the continuous relaxation (integrality, sets, indicator rows,
 * general and piecewise-linear constraints dropped; semi-continuous columns
 * relaxed to include 0). */
ZRVS_API int ZRVSlpoptimize(ZRVSprob prob, const char *flags);
/* Solves as a MIP, also when the problem has no discrete parts. */
ZRVS_API int ZRVSmipoptimize(ZRVSprob prob, const char *flags);

/* The solution of the last continuous solve: values, slacks (rhs -
 * activity), duals (change of the objective per unit increase of a row's
 * rhs) and reduced costs. Any output may be NULL. Fails when the last solve
 * left no such solution or the model changed since. */
ZRVS_API int ZRVSgetlpsol(ZRVSprob prob, double x[], double slack[], double duals[],
                          double djs[]);
/* The best integer solution of the last MIP solve: values and slacks. */
ZRVS_API int ZRVSgetmipsol(ZRVSprob prob, double x[], double slack[]);

/* The basis that the next LP solve starts from: the optimal basis of the
 * last LP solve, or one loaded with ZRVSloadbasis (rstatus: one entry per
 * row, cstatus: one per column, ZRVS_BASIS_* values; either may be NULL).
 * Fails when there is none, or rows or columns were added since. Deleting
 * rows or columns drops the basis. */
ZRVS_API int ZRVSgetbasis(ZRVSprob prob, int rstatus[], int cstatus[]);
/* Makes the next LP solve start from the given basis: as many basic
 * entries as rows, bounds consistent with the statuses. Later LP solves
 * start from the basis of the solve before them (a warm start). */
ZRVS_API int ZRVSloadbasis(ZRVSprob prob, const int rstatus[], const int cstatus[]);

/* Per-objective results of the last solve. objidx is the objective index;
 * ZRVS_LPOBJVAL and ZRVS_MIPOBJVAL give that objective's value at the
 * solution; ZRVS_LPSTATUS, ZRVS_MIPSTATUS, ZRVS_SOLVESTATUS, ZRVS_SOLSTATUS,
 * ZRVS_SIMPLEXITER, ZRVS_BARITER, ZRVS_NODES, ZRVS_BESTBOUND and
 * ZRVS_SOLVETIME describe the stage (priority level) that solved it. */
ZRVS_API int ZRVSgetobjintattrib64(ZRVSprob prob, int objidx, int attrib, int64_t *value);
ZRVS_API int ZRVSgetobjdblattrib(ZRVSprob prob, int objidx, int attrib, double *value);

/* ======================================================================== */
/* Branch and cut: cut pool, delayed rows, branching objects                 */
/* ======================================================================== */

/* A problem that has cuts in its pool, delayed rows, model cuts, stored
 * branching objects or branch bounds is solved as a MIP by the engine's own
 * branch-and-cut on HiGHS's simplex (HiGHS's MIP solver otherwise). Inside
 * the search, the node callbacks act on the node being solved: "the current
 * node" below. Outside a search the same calls act on the root of the next
 * search. The search works on the problem's own columns and rows (it does
 * not presolve), so original and presolved indices are the same. */

/* Integer control: 0 (default) HiGHS's MIP solver unless the problem needs
 * the engine's branch-and-cut; 1 the engine's branch-and-cut for every MIP. */
#define ZRVS_MIPSEARCH 8290

/* A cut of the pool; valid until deleted with ZRVSdelcpcuts. */
typedef struct zrvs_cut *ZRVScut;

/* Cut types are user tags. Where a call selects cuts by type, interp says
 * how: -1 every cut, 1 type equal to cuttype, 2 type sharing a bit with
 * cuttype, 3 type holding every bit of cuttype. ncuts -1 takes every cut so
 * selected; otherwise the ncuts handles given (and selected). */

/* Stores cuts in the pool: cut k is sum of cutcoef[e] x[colind[e]] for e in
 * start[k] .. start[k+1]-1 (the last ending at start[ncuts]), type
 * cuttype[k], row type 'L', 'G' or 'E' and right-hand side rhs[k]. nodups 0
 * stores every cut; 1 gives an equal stored cut's handle instead of storing
 * it again; 2 as 1 whatever the type. cutind (may be NULL) receives the
 * handles. Pool cuts must hold for every integer solution: the search adds
 * those its node solutions violate. */
ZRVS_API int ZRVSstorecuts64(ZRVSprob prob, int ncuts, int nodups, const int cuttype[],
                             const char rowtype[], const double rhs[], const int64_t start[],
                             ZRVScut cutind[], const int colind[], const double cutcoef[]);
/* Stores cuts as ZRVSstorecuts64 and loads them into the current node. */
ZRVS_API int ZRVSaddcuts64(ZRVSprob prob, int ncuts, const int cuttype[], const char rowtype[],
                           const double rhs[], const int64_t start[], const int colind[],
                           const double cutcoef[]);
/* Loads pool cuts into the current node (and the nodes below it). */
ZRVS_API int ZRVSloadcuts(ZRVSprob prob, int cuttype, int interp, int ncuts,
                          const ZRVScut cutind[]);
/* Removes cuts loaded at the current node from its LP (they stay in the
 * pool). basis 1 keeps cuts that are tight at the node's LP solution; delta
 * removes only cuts whose slack exceeds it (outside a search both are
 * ignored). */
ZRVS_API int ZRVSdelcuts(ZRVSprob prob, int basis, int cuttype, int interp, double delta,
                         int ncuts, const ZRVScut cutind[]);
/* Deletes cuts from the pool; their handles become invalid. */
ZRVS_API int ZRVSdelcpcuts(ZRVSprob prob, int cuttype, int interp, int ncuts,
                           const ZRVScut cutind[]);
/* Cuts loaded at the current node: *ncuts receives their number, cutind
 * (may be NULL) at most maxcuts handles. */
ZRVS_API int ZRVSgetcutlist(ZRVSprob prob, int cuttype, int interp, int *ncuts, int maxcuts,
                            ZRVScut cutind[]);
/* Pool cuts violated by at least delta at the current node's LP solution
 * (outside a search: at the last solution; without one, violation 0):
 * *ncuts receives their number, cutind and viol (may be NULL) at most
 * maxcuts handles and violations. */
ZRVS_API int ZRVSgetcpcutlist(ZRVSprob prob, int cuttype, int interp, double delta, int *ncuts,
                              int maxcuts, ZRVScut cutind[], double viol[]);
/* The cuts of ncuts handles: types, row types, right-hand sides, start
 * offsets (ncuts+1) and at most maxcoefs coefficients; *ncoefs (may be
 * NULL) receives their total. Any array may be NULL. */
ZRVS_API int ZRVSgetcpcuts64(ZRVSprob prob, const ZRVScut cutind[], int ncuts, int64_t maxcoefs,
                             int64_t *ncoefs, int cuttype[], char rowtype[], int64_t start[],
                             int colind[], double cutcoef[], double rhs[]);
/* The row of each cut in the current node's LP (-1: not in it). */
ZRVS_API int ZRVSgetcutmap(ZRVSprob prob, int ncuts, const ZRVScut cutind[], int cutmap[]);
/* rhs - activity of a cut at the current node's LP solution (outside a
 * search: at the last solution). */
ZRVS_API int ZRVSgetcutslack(ZRVSprob prob, ZRVScut cut, double *slack);

/* Delayed rows are left out of the LPs and checked at every integer
 * solution; a violated one joins the LPs from then on. Model cuts are left
 * out as well and join the LPs when a node's solution violates them. A row
 * marked both ways is a model cut. Deleting rows clears both marks. */
ZRVS_API int ZRVSloaddelayedrows(ZRVSprob prob, int nrows, const int rowind[]);
ZRVS_API int ZRVSloadmodelcuts(ZRVSprob prob, int nrows, const int rowind[]);

/* A stored set of bound changes ('L', 'U', 'B'), for ZRVSsetbranchbounds;
 * freed with its problem. */
ZRVS_API int ZRVSstorebounds(ZRVSprob prob, int nbounds, const int colind[],
                             const char bndtype[], const double bndval[], void **bounds);
/* Tightens the current node (and the nodes below it) by stored bounds. */
ZRVS_API int ZRVSsetbranchbounds(ZRVSprob prob, void *bounds);
/* Loads pool cuts into the current node, as ZRVSloadcuts with the handles. */
ZRVS_API int ZRVSsetbranchcuts(ZRVSprob prob, int ncuts, const ZRVScut cutind[]);

/* Branching objects: a branching of a node into branches, each with bound
 * changes, rows and pool cuts that hold in that branch. Stored at a node
 * (ZRVS_bo_store in a node callback), the search branches the node by it
 * instead of by a column; stored outside a search, it branches the root of
 * the next search. */
typedef struct zrvs_branchobject *ZRVSbranchobject;
/* isoriginal 1: indices of the problem's columns; 0: of the presolved
 * problem, which for this search is the same. */
ZRVS_API int ZRVS_bo_create(ZRVSbranchobject *bo, ZRVSprob prob, int isoriginal);
ZRVS_API int ZRVS_bo_destroy(ZRVSbranchobject bo);
/* Hands a copy to the search (the object stays the caller's). Fails when
 * the object is not valid (see ZRVS_bo_validate). */
ZRVS_API int ZRVS_bo_store(ZRVSbranchobject bo);
/* Appends nbranches empty branches. */
ZRVS_API int ZRVS_bo_addbranches(ZRVSbranchobject bo, int nbranches);
ZRVS_API int ZRVS_bo_getbranches(ZRVSbranchobject bo, int *nbranches);
/* Bounds of a branch: bndtype 'L', 'U' or 'B' on column colind[k]. */
ZRVS_API int ZRVS_bo_addbounds(ZRVSbranchobject bo, int branch, int nbounds,
                               const char bndtype[], const int colind[], const double bndval[]);
/* *nbounds receives the count; arrays (may be NULL) at most maxbounds. */
ZRVS_API int ZRVS_bo_getbounds(ZRVSbranchobject bo, int branch, int *nbounds, int maxbounds,
                               char bndtype[], int colind[], double bndval[]);
/* Rows of a branch ('L', 'G', 'E'), by start offsets as ZRVSaddrows64. */
ZRVS_API int ZRVS_bo_addrows(ZRVSbranchobject bo, int branch, int nrows, int ncoefs,
                             const char rowtype[], const double rhs[], const int start[],
                             const int colind[], const double rowcoef[]);
/* *nrows and *ncoefs receive the counts; arrays (may be NULL) at most
 * maxrows rows and maxcoefs coefficients; start gets rows+1 offsets. */
ZRVS_API int ZRVS_bo_getrows(ZRVSbranchobject bo, int branch, int *nrows, int maxrows,
                             int *ncoefs, int maxcoefs, char rowtype[], double rhs[],
                             int start[], int colind[], double rowcoef[]);
/* Pool cuts loaded in a branch. */
ZRVS_API int ZRVS_bo_addcuts(ZRVSbranchobject bo, int branch, int ncuts, const ZRVScut cutind[]);
/* Among objects stored at one node the one of lowest priority value is
 * used (default 0). */
ZRVS_API int ZRVS_bo_setpriority(ZRVSbranchobject bo, int priority);
/* The branch the search explores first (default: branch 0). */
ZRVS_API int ZRVS_bo_setpreferredbranch(ZRVSbranchobject bo, int branch);
/* A number that identifies the object (1, 2, ... in order of creation). */
ZRVS_API int ZRVS_bo_getid(ZRVSbranchobject bo, int *id);
/* Checks that the object has a branch and that every column, row and cut
 * it names exists; the error text says what does not. */
ZRVS_API int ZRVS_bo_validate(ZRVSbranchobject bo);
/* The object's last error, as ZRVS_ge_getlasterror. */
ZRVS_API int ZRVS_bo_getlasterror(ZRVSbranchobject bo, int *msgcode, char *msg, int maxbytes,
                                  int *nbytes);

/* ======================================================================== */
/* Solver callbacks                                                          */
/* ======================================================================== */

/* Callbacks of one problem, one list per kind, called in order of decreasing
 * priority (then of registration) on the thread that runs the solver. Every
 * add function takes (prob, f, data, priority) and fails on a NULL f; every
 * remove function removes the callbacks equal to f (all if NULL) whose data
 * is data (any if NULL). The prob passed to a callback is the problem being
 * solved, or a per-thread problem for mipthread. During a solve, callbacks
 * read the progress so far through the usual attributes (lpobjval,
 * mipobjval, bestbound, mipgap, simplexiter, bariter, nodes) and
 * ZRVSgetmipsol (the incumbent); changing the model is refused until the
 * solve ends. ZRVSinterrupt stops the solve from any callback.
 *
 * Where the callbacks fire depends on the search that runs:
 *  - lplog: after each simplex iteration of an LP solve (HiGHS's MIP search
 *    does not report its LPs); non-zero stops the solve.
 *  - barlog, bariteration: after each barrier iteration; barlog's non-zero
 *    result stops; bariteration's *action non-zero stops the barrier.
 *  - miplog: at each progress line of the MIP search; non-zero stops.
 *  - cutlog: after the cut rounds of the root node; non-zero stops.
 *  - checktime: at the solver's regular checks during LP and MIP solves;
 *    non-zero stops the solve with stop reason ZRVS_STOP_TIMELIMIT.
 *  - intsol: a new incumbent was accepted; ZRVSgetmipsol gives it.
 *  - preintsol: a candidate integer solution before it is accepted, which
 *    ZRVSgetmipsol gives meanwhile; soltype 0 from a node's LP, 1 from a
 *    heuristic, 2 a user solution, -1 not known (HiGHS does not tell).
 *    Setting *reject non-zero rejects it; *cutoff (the objective value a new
 *    solution must beat) may be tightened. HiGHS's search cannot drop a
 *    solution: there, a rejected candidate is cut off through its binary
 *    columns (every solution with the same binary values is excluded) and
 *    the search starts again, as it does after a tightened cutoff; a
 *    rejection in a MIP with other integer columns fails the solve.
 *  - gapnotify: when the MIP search reaches one of the targets held by the
 *    controls ZRVS_MIPRELGAPNOTIFY, ZRVS_MIPABSGAPNOTIFY,
 *    ZRVS_MIPABSGAPNOTIFYOBJ, ZRVS_MIPABSGAPNOTIFYBOUND; the callback may set
 *    new targets (which take effect in the running solve); a target reached
 *    and not renewed is not notified again.
 *  - usersolnotify: a solution given by the user (a MIP start) was checked;
 *    status 0 rejected as infeasible, 1 accepted.
 *  - beforeobjective, afterobjective: around each level of a solve with
 *    several objectives (not for a single objective).
 *  - optnode, prenode, nodelpsolved, infnode, nodecutoff, newnode,
 *    chgbranchobject, mipthread, destroymt: events of a branch-and-bound
 *    tree; HiGHS's search offers no such events, so they fire only when the
 *    engine's own branch-and-cut runs the search. */

typedef void (*ZRVS_cbbariteration)(ZRVSprob prob, void *data, int *action);
typedef int (*ZRVS_cbbarlog)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbchgbranchobject)(ZRVSprob prob, void *data, ZRVSbranchobject branch,
                                       ZRVSbranchobject *newbranch);
typedef int (*ZRVS_cbcutlog)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbdestroymt)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbgapnotify)(ZRVSprob prob, void *data, double *relgapnotifytarget,
                                 double *absgapnotifytarget, double *absobjnotifytarget,
                                 double *absboundnotifytarget);
typedef int (*ZRVS_cbmiplog)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbinfnode)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbintsol)(ZRVSprob prob, void *data);
typedef int (*ZRVS_cblplog)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbmipthread)(ZRVSprob prob, void *data, ZRVSprob threadprob);
typedef void (*ZRVS_cbnewnode)(ZRVSprob prob, void *data, int parentnode, int node,
                               int branch);
typedef void (*ZRVS_cbnodecutoff)(ZRVSprob prob, void *data, int node);
typedef void (*ZRVS_cbnodelpsolved)(ZRVSprob prob, void *data);
/* *feas: set non-zero to declare the node infeasible. */
typedef void (*ZRVS_cboptnode)(ZRVSprob prob, void *data, int *feas);
typedef void (*ZRVS_cbpreintsol)(ZRVSprob prob, void *data, int soltype, int *reject,
                                 double *cutoff);
/* *nodinfeas: set non-zero to drop the node before its LP is solved. */
typedef void (*ZRVS_cbprenode)(ZRVSprob prob, void *data, int *nodinfeas);
typedef void (*ZRVS_cbusersolnotify)(ZRVSprob prob, void *data, const char *solname,
                                     int status);
typedef int (*ZRVS_cbchecktime)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbbeforeobjective)(ZRVSprob prob, void *data);
typedef void (*ZRVS_cbafterobjective)(ZRVSprob prob, void *data);

#define ZRVS_CALLBACK_PAIR(kind)                                                      \
  ZRVS_API int ZRVSaddcb##kind(ZRVSprob prob, ZRVS_cb##kind f, void *data, int priority); \
  ZRVS_API int ZRVSremovecb##kind(ZRVSprob prob, ZRVS_cb##kind f, void *data);
ZRVS_CALLBACK_PAIR(bariteration)
ZRVS_CALLBACK_PAIR(barlog)
ZRVS_CALLBACK_PAIR(chgbranchobject)
ZRVS_CALLBACK_PAIR(cutlog)
ZRVS_CALLBACK_PAIR(destroymt)
ZRVS_CALLBACK_PAIR(gapnotify)
ZRVS_CALLBACK_PAIR(miplog)
ZRVS_CALLBACK_PAIR(infnode)
ZRVS_CALLBACK_PAIR(intsol)
ZRVS_CALLBACK_PAIR(lplog)
ZRVS_CALLBACK_PAIR(mipthread)
ZRVS_CALLBACK_PAIR(newnode)
ZRVS_CALLBACK_PAIR(nodecutoff)
ZRVS_CALLBACK_PAIR(nodelpsolved)
ZRVS_CALLBACK_PAIR(optnode)
ZRVS_CALLBACK_PAIR(preintsol)
ZRVS_CALLBACK_PAIR(prenode)
ZRVS_CALLBACK_PAIR(usersolnotify)
ZRVS_CALLBACK_PAIR(checktime)
ZRVS_CALLBACK_PAIR(beforeobjective)
ZRVS_CALLBACK_PAIR(afterobjective)
#undef ZRVS_CALLBACK_PAIR
/* Solutions, bases and analysis                                             */
/* ======================================================================== */

/* One entry of the last LP solution: value and reduced cost of column col
 * (skipped when col < 0), slack and dual of row row (skipped when row < 0).
 * Outputs may be NULL. */
ZRVS_API int ZRVSgetlpsolval(ZRVSprob prob, int col, int row, double *x, double *slack,
                             double *dual, double *dj);
/* One entry of the last integer solution: value of col, slack of row. */
ZRVS_API int ZRVSgetmipsolval(ZRVSprob prob, int col, int row, double *x, double *slack);
/* The solution that the barrier left in the last LP solve (after its
 * crossover when crossover ran). Fails when the last LP solve did not run
 * the barrier. Outputs may be NULL. */
ZRVS_API int ZRVSgetlastbarsol(ZRVSprob prob, double x[], double slack[], double duals[],
                               double djs[]);
/* The basis status of one row and one column (an index < 0 is skipped). */
ZRVS_API int ZRVSgetbasisval(ZRVSprob prob, int row, int col, int *rowstat, int *colstat);

/* Infeasibilities of the last solution (the LP solution, else the integer
 * one, which has no prices): the counts of columns outside their bounds
 * (npv), rows outside their sides (nps), rows whose dual has the wrong
 * sign (nds) and columns whose reduced cost has the wrong sign (ndv), and
 * their indices in the arrays that are not NULL (each as long as its
 * count; call with NULL arrays first to learn the counts). Tolerances:
 * feastol and optimalitytol. ZRVSgetscaledinfeas measures the violations in
 * the problem scaled as ZRVSscale scales it. */
ZRVS_API int ZRVSgetinfeas(ZRVSprob prob, int *npv, int *nps, int *nds, int *ndv, int mx[],
                           int mslack[], int mdual[], int mdj[]);
ZRVS_API int ZRVSgetscaledinfeas(ZRVSprob prob, int *npv, int *nps, int *nds, int *ndv,
                                 int mx[], int mslack[], int mdual[], int mdj[]);

/* Rays of the last LP solve (a single-objective continuous LP, unchanged
 * since). A primal ray (one entry per column) of an unbounded LP: a
 * direction that keeps rows and bounds satisfied and improves the
 * objective. A dual ray (one entry per row) of an infeasible LP: weights y
 * with min over the column bounds of y'Ax > max over the row sides of y'r.
 * *hasray is 0, and ray untouched, when the solve left none; ray may be
 * NULL to ask only whether there is one. */
ZRVS_API int ZRVSgetprimalray(ZRVSprob prob, double ray[], int *hasray);
ZRVS_API int ZRVSgetdualray(ZRVSprob prob, double ray[], int *hasray);
/* The nonbasic row or column that the primal ray follows, in the unified
 * numbering (rows 0..rows-1, then columns from rows + sparerows); -1 when
 * the last LP solve left no ray. */
ZRVS_API int ZRVSgetunbvec(ZRVSprob prob, int *seq);

/* Values computed from a given point (one value per column) on the model as
 * it is: objective 0 (with its quadratic part), objective objidx, reduced
 * costs c - A'y (+ Qx) from the duals, slacks rhs - activity. */
ZRVS_API int ZRVScalcobjective(ZRVSprob prob, const double solution[], double *objval);
ZRVS_API int ZRVScalcobjn(ZRVSprob prob, int objidx, const double solution[], double *objval);
ZRVS_API int ZRVScalcreducedcosts(ZRVSprob prob, const double duals[], const double solution[],
                                  double djs[]);
ZRVS_API int ZRVScalcslacks(ZRVSprob prob, const double solution[], double slacks[]);
/* One property of a point (and duals, for the dual properties):
 * ZRVS_SOLINFO_ABSPRIMALINFEAS the largest bound or row violation,
 * ZRVS_SOLINFO_RELPRIMALINFEAS the same divided by 1 + the largest |x| or
 * |rhs|, ZRVS_SOLINFO_ABSDUALINFEAS the largest price of a wrong sign (the
 * reduced costs are computed from the duals), ZRVS_SOLINFO_RELDUALINFEAS
 * the same divided by 1 + the largest |cost|, ZRVS_SOLINFO_MAXMIPFRACTIONAL
 * the largest distance of an integer column's value from an integer. */
#define ZRVS_SOLINFO_ABSPRIMALINFEAS 0
#define ZRVS_SOLINFO_RELPRIMALINFEAS 1
#define ZRVS_SOLINFO_ABSDUALINFEAS 2
#define ZRVS_SOLINFO_RELDUALINFEAS 3
#define ZRVS_SOLINFO_MAXMIPFRACTIONAL 4
ZRVS_API int ZRVScalcsolinfo(ZRVSprob prob, const double solution[], const double duals[],
                             int property, double *value);

/* ---- Starting solutions and branching directives ---------------------- */

/* A starting point for the next LP solve: x one value per column (needed),
 * slack one per row (NULL: computed from x), duals and djs (both or
 * neither). Used once, by the next LP solve of the problem as it is. */
ZRVS_API int ZRVSloadlpsol(ZRVSprob prob, const double x[], const double slack[],
                           const double duals[], const double djs[]);
/* A full integer solution (one value per column) as a start for the next
 * MIP solve. *status: 0 feasible and stored, 1 infeasible (not stored). */
ZRVS_API int ZRVSloadmipsol(ZRVSprob prob, const double x[], int *status);
/* Stores a full or partial integer solution (ncols values of the columns
 * colind, or of the first ncols columns when colind is NULL) under a name
 * (NULL: none). Several may be stored; the next MIP solve starts from the
 * best feasible full one, else from the first partial one (HiGHS completes
 * it), and then drops them all. */
ZRVS_API int ZRVSaddmipsol(ZRVSprob prob, int ncols, const double solval[], const int colind[],
                           const char *name);
/* Branching directives: priority (lower first; NULL keeps 500), direction
 * 'U' up branch first, 'D' down first, 'N' free (NULL: 'N'), pseudo costs
 * up and down (NULL: none). Replaces the directives of those columns. Read by
 * the engine's own branch and cut; HiGHS's search does not take them. */
ZRVS_API int ZRVSloaddirs(ZRVSprob prob, int ndirs, const int colind[], const int priority[],
                          const char dir[], const double uppseudo[], const double downpseudo[]);
/* Directions only: dir > 0 up first, < 0 down first, 0 free. */
ZRVS_API int ZRVSloadbranchdirs(ZRVSprob prob, int ncols, const int colind[], const int dir[]);
/* The stored directives, by increasing column: their number in *ndirs and
 * the arrays that are not NULL (each with room for *ndirs entries; call
 * with NULL arrays first). */
ZRVS_API int ZRVSgetdirs(ZRVSprob prob, int *ndirs, int colind[], int priority[], char dir[],
                         double uppseudo[], double downpseudo[]);
/* Presolved-space loaders and presolve marks. HiGHS presolves inside each
 * solve and keeps no presolved problem between calls, so these fail with
 * ZRVS_ERR_UNSUPPORTED and say so. */
ZRVS_API int ZRVSloadpresolvebasis(ZRVSprob prob, const int rstatus[], const int cstatus[]);
ZRVS_API int ZRVSloadpresolvedirs(ZRVSprob prob, int ndirs, const int colind[],
                                  const int priority[], const char dir[],
                                  const double uppseudo[], const double downpseudo[]);
ZRVS_API int ZRVSloadsecurevecs(ZRVSprob prob, int nrows, int ncols, const int rowind[],
                                const int colind[]);

/* ---- Sensitivity and the basis ----------------------------------------- */

/* Ranging of the optimal basis of the last LP solve (a single-objective
 * continuous LP, unchanged since). objsa: the interval of each listed
 * column's cost over which the basis stays optimal. rhssa: the interval of
 * each listed row's activity bound over which it stays optimal. bndsa: the
 * intervals of each listed column's lower and upper bound (the inactive
 * bound may move anywhere that keeps the column's value inside). Infinite
 * ends are +-ZRVS_PLUSINFINITY. */
ZRVS_API int ZRVSobjsa(ZRVSprob prob, int ncols, const int colind[], double lower[],
                       double upper[]);
ZRVS_API int ZRVSrhssa(ZRVSprob prob, int nrows, const int rowind[], double lower[],
                       double upper[]);
ZRVS_API int ZRVSbndsa(ZRVSprob prob, int ncols, const int colind[], double lblower[],
                       double lbupper[], double ublower[], double ubupper[]);
/* The basic rows and columns of the optimal basis of the last LP solve, in
 * the order of the basis matrix B (rows as 0..rows-1, column j as rows +
 * j). B holds the matrix column of a basic column and the unit column e_i of
 * a basic row. */
ZRVS_API int ZRVSgetpivotorder(ZRVSprob prob, int pivotorder[]);
/* vec (one entry per row) replaced by B^-T vec (btran) or B^-1 vec (ftran). */
ZRVS_API int ZRVSbtran(ZRVSprob prob, double vec[]);
ZRVS_API int ZRVSftran(ZRVSprob prob, double vec[]);
/* An estimate of the condition number of B: type 0, norm 1 (the 1-norm),
 * scaled 0 (the unscaled basis); other values are refused. */
ZRVS_API int ZRVSbasisstability(ZRVSprob prob, int type, int norm, int scaled, double *value);

/* ---- Infeasible subsystems ---------------------------------------------- */

/* Irreducible infeasible subsystems (IIS) of the continuous relaxation:
 * rows and column bounds that no point satisfies while every proper subset
 * can be satisfied (a deletion filter on HiGHS LPs started from a dual
 * ray). iisfirst forgets earlier ones and finds one (mode 0 or 1, both the
 * deletion filter); iisnext finds one that avoids a row of each found so
 * far; iisall repeats iisnext until none is left (at most 100). *status: 0
 * found, 1 none (the model, or what is left of it, is feasible). */
ZRVS_API int ZRVSiisfirst(ZRVSprob prob, int mode, int *status);
ZRVS_API int ZRVSiisnext(ZRVSprob prob, int *status);
ZRVS_API int ZRVSiisall(ZRVSprob prob);
/* Forgets the subsystems found. */
ZRVS_API int ZRVSiisclear(ZRVSprob prob);
/* The number of subsystems found, and for each the number of rows and of
 * column bounds (arrays may be NULL). */
ZRVS_API int ZRVSiisstatus(ZRVSprob prob, int *niis, int nrows[], int ncols[]);
/* Subsystem num (1-based): its rows and columns, each row's type (its
 * model row type) and each column's bound ('L' or 'U'); arrays may be NULL,
 * sized by ZRVSiisstatus. */
ZRVS_API int ZRVSgetiisdata(ZRVSprob prob, int num, int *nrows, int *ncols, int rowind[],
                            int colind[], char contype[], char bndtype[]);

#ifdef __cplusplus
}
#endif

#endif /* ZORVAN_ZRVS_H */
