// Help texts of the members about solver state, in the six sections of
// every method.
#pragma once

#include "base/help.h"

namespace zrv::help {

#define ZRV_SOLUTION_HELP(what, fn, legacy)                                                 \
  ZRV_HELP("Read " what " into the lists given.",                                          \
           "p." fn "(x=None, slack=None, duals=None, djs=None)",                            \
           "x: values by column; slack: rhs minus activity by row; duals: by row; djs: "   \
           "reduced costs by column. Lists filled in place; at least one is needed."       \
           legacy,                                                                          \
           "x = []; d = []; p." fn "(x, duals=d)",                                         \
           "Fails when the last solve left no such solution or the model changed since.", \
           "problem.getlpsolval, problem.getmipsol, problem.getSolution")

inline constexpr char kGetLpSol[] =
    ZRV_SOLUTION_HELP("the solution of the last LP solve", "getlpsol",
                      " Legacy keywords: x, slack, dual, dj.");
inline constexpr char kGetLastBarSol[] =
    ZRV_SOLUTION_HELP("the solution that the barrier left in the last LP solve (after its "
                      "crossover when crossover ran)",
                      "getlastbarsol", " Legacy keywords: x, slack, dual, dj.");
inline constexpr char kGetMipSol[] = ZRV_HELP(
    "Read the best integer solution of the last MIP solve into the lists given.",
    "p.getmipsol(x=None, slack=None)",
    "x: values by column; slack: rhs minus activity by row; at least one is needed.",
    "x = []; p.getmipsol(x)", "Fails when no integer solution was found since the last change.",
    "problem.getmipsolval, problem.getlpsol");
inline constexpr char kGetLpSolVal[] = ZRV_HELP(
    "Read one column's value and reduced cost and one row's slack and dual of the last LP "
    "solution.",
    "(x, slack, dual, dj) = p.getlpsolval(col=None, row=None)",
    "col: a column as index, name or var; row: a row as index, name or constraint. Legacy "
    "keywords: column, row.",
    "x, s, d, dj = p.getlpsolval(x1, c1)",
    "The entries of an index not given are None.", "problem.getlpsol");
inline constexpr char kGetMipSolVal[] = ZRV_HELP(
    "Read one column's value and one row's slack of the last integer solution.",
    "(x, slack) = p.getmipsolval(col=None, row=None)",
    "col, row: as index, name or object. Legacy keywords: column, row.",
    "x, s = p.getmipsolval('x', 'c1')", "The entries of an index not given are None.",
    "problem.getmipsol");
inline constexpr char kGetBasis[] = ZRV_HELP(
    "Read the basis that the next LP solve starts from.", "p.getbasis(rowstat=None, colstat=None)",
    "rowstat: one status per row; colstat: one per column (0 nonbasic at lower bound, 1 "
    "basic, 2 nonbasic at upper bound, 3 superbasic). Legacy keywords: rstatus, cstatus.",
    "r = []; c = []; p.getbasis(r, c)",
    "The basis of the last LP solve, or one loaded with loadbasis; none after rows or columns "
    "were deleted.",
    "problem.loadbasis, problem.getbasisval, problem.writebasis");
inline constexpr char kGetBasisVal[] = ZRV_HELP(
    "Read the basis status of one row and one column.",
    "(rowstat, colstat) = p.getbasisval(row=None, col=None)",
    "row, col: as index, name or object. Legacy keywords: row, column.",
    "r, c = p.getbasisval(c1, x)", "The status of an index not given is None.",
    "problem.getbasis");

#define ZRV_INFEAS_HELP(fn, scaled)                                                         \
  ZRV_HELP("List the parts of the last solution that break its conditions" scaled ".",       \
           "p." fn "(x=None, slack=None, duals=None, djs=None)",                            \
           "x: columns outside their bounds; slack: rows outside their sides; duals: rows "  \
           "whose dual has the wrong sign; djs: columns whose reduced cost has the wrong "   \
           "sign. Lists of var and constraint objects, filled in place; at least one is "    \
           "needed. Legacy keywords: mx, mslack, mdual, mdj.",                               \
           "bad = []; p." fn "(x=bad)",                                                      \
           "Tolerances: feastol and optimalitytol. An integer solution has no prices.",     \
           "problem.calcsolinfo, problem.getinfeas, problem.getscaledinfeas")

inline constexpr char kGetInfeas[] = ZRV_INFEAS_HELP("getinfeas", "");
inline constexpr char kGetScaledInfeas[] =
    ZRV_INFEAS_HELP("getscaledinfeas", ", with violations measured in the scaled problem");

inline constexpr char kGetPrimalRay[] = ZRV_HELP(
    "Return a primal ray of the last LP solve, an unbounded LP.", "ray = p.getprimalray()",
    "None.", "d = p.getprimalray()",
    "One value per column: a direction that keeps rows and bounds satisfied and improves the "
    "objective without end. None when the last solve left no ray.",
    "problem.hasprimalray, problem.getdualray, problem.getunbvec");
inline constexpr char kGetDualRay[] = ZRV_HELP(
    "Return a dual ray of the last LP solve, an infeasible LP.", "ray = p.getdualray()",
    "None.", "y = p.getdualray()",
    "One value per row: weights y with min over the column bounds of y'Ax larger than max "
    "over the row sides of y'r, a proof that no point satisfies them. None when the last "
    "solve left no ray.",
    "problem.hasdualray, problem.getprimalray, problem.iisfirst");
inline constexpr char kHasPrimalRay[] = ZRV_HELP(
    "Tell whether the last LP solve left a primal ray.", "b = p.hasprimalray()", "None.",
    "if p.hasprimalray(): d = p.getprimalray()", "True or False.", "problem.getprimalray");
inline constexpr char kHasDualRay[] = ZRV_HELP(
    "Tell whether the last LP solve left a dual ray.", "b = p.hasdualray()", "None.",
    "if p.hasdualray(): y = p.getdualray()", "True or False.", "problem.getdualray");
inline constexpr char kGetUnbVec[] = ZRV_HELP(
    "Return the column or row whose move the primal ray follows.", "v = p.getunbvec()", "None.",
    "v = p.getunbvec()",
    "A var or constraint object; -1 when the last LP solve left no ray.",
    "problem.getprimalray");
inline constexpr char kCalcObjective[] = ZRV_HELP(
    "Compute the objective at a given point.", "v = p.calcobjective(solution)",
    "solution: one value per column.", "v = p.calcobjective([1, 0, 2])",
    "Includes the constant and the quadratic part.", "problem.calcobjn, problem.calcslacks");
inline constexpr char kCalcObjN[] = ZRV_HELP(
    "Compute objective objidx at a given point.", "v = p.calcobjn(objidx, solution)",
    "objidx: objective index; solution: one value per column.", "v = p.calcobjn(1, x)",
    "Objective 0 includes its quadratic part.", "problem.calcobjective");
inline constexpr char kCalcReducedCosts[] = ZRV_HELP(
    "Compute reduced costs from duals.", "p.calcreducedcosts(duals, solution, djs)",
    "duals: one value per row; solution: one value per column (needed for a quadratic "
    "objective, else may be None); djs: list filled with c - A'y (+ Qx). Legacy keyword: "
    "calculateddjs.",
    "dj = []; p.calcreducedcosts(y, x, dj)", "Uses the model as it is now.",
    "problem.calcslacks, problem.getlpsol");
inline constexpr char kCalcSlacks[] = ZRV_HELP(
    "Compute row slacks at a given point.", "p.calcslacks(solution, slacks)",
    "solution: one value per column; slacks: list filled with rhs minus activity. Legacy "
    "keyword: calculatedslacks.",
    "s = []; p.calcslacks(x, s)", "Quadratic parts of rows are included.",
    "problem.calcreducedcosts");
inline constexpr char kCalcSolInfo[] = ZRV_HELP(
    "Compute one property of a point.", "v = p.calcsolinfo(solution, duals, property)",
    "solution: one value per column; duals: one per row (None unless a dual property is "
    "asked); property: 0 largest bound or row violation, 1 the same relative to 1 + the "
    "largest |x| or |rhs|, 2 largest price of a wrong sign, 3 the same relative to 1 + the "
    "largest |cost|, 4 largest fractionality of an integer column. Legacy keyword: dual.",
    "v = p.calcsolinfo(x, None, 0)", "Reduced costs are computed from the duals.",
    "problem.getinfeas");

inline constexpr char kLoadBasis[] = ZRV_HELP(
    "Make the next LP solve start from a basis.", "p.loadbasis(rowstat, colstat)",
    "rowstat: one status per row; colstat: one per column (0 nonbasic at lower bound, 1 "
    "basic, 2 nonbasic at upper bound, 3 superbasic). Legacy keywords: rstatus, cstatus.",
    "p.loadbasis(r, c); p.lpoptimize()",
    "As many basic entries as rows; statuses must fit the bounds. An optimal basis "
    "re-solves without iterations.",
    "problem.getbasis, problem.readbasis");
inline constexpr char kLoadPresolveBasis[] = ZRV_HELP(
    "Load a basis of the presolved problem.", "p.loadpresolvebasis(rowstat, colstat)",
    "rowstat, colstat: statuses by presolved row and column. Legacy keywords: rstatus, "
    "cstatus.",
    "p.loadbasis(r, c)",
    "Refused: HiGHS presolves inside each solve and the engine keeps no presolved problem; "
    "load a basis of the original problem with loadbasis.",
    "problem.loadbasis");
inline constexpr char kLoadLpSol[] = ZRV_HELP(
    "Give the next LP solve a starting point.", "p.loadlpsol(x, slack=None, duals=None, djs=None)",
    "x: one value per column; slack: one per row (None: computed from x); duals and djs: "
    "prices, both or neither. Legacy keywords: x, slack, dual, dj.",
    "p.loadlpsol(x0); p.lpoptimize()", "Used once, by the next LP solve.",
    "problem.loadbasis, problem.loadmipsol");
inline constexpr char kLoadMipSol[] = ZRV_HELP(
    "Give the next MIP solve a full starting solution.", "status = p.loadmipsol(x)",
    "x: one value per column. Legacy keyword: dsol.",
    "if p.loadmipsol(x0) == 0: p.mipoptimize()",
    "Returns 0 when the solution is feasible and stored, 1 when it is infeasible (not "
    "stored).",
    "problem.addmipsol");
inline constexpr char kAddMipSol[] = ZRV_HELP(
    "Store a full or partial integer solution as a start for the next MIP solve.",
    "p.addmipsol(solval, colind=None, name=None)",
    "solval: values; colind: their columns (None: the first columns in order); name: a "
    "label. Legacy keywords: mipsolval, mipsolcol, solname.",
    "p.addmipsol([1, 1], [x, y], 'guess')",
    "Several may be stored: the next MIP solve starts from the best feasible full one, else "
    "from the first partial one (HiGHS completes it), and then drops them all.",
    "problem.loadmipsol");
inline constexpr char kLoadDirs[] = ZRV_HELP(
    "Set branching directives of columns.",
    "p.loaddirs(colind, priority=None, dir=None, uppseudo=None, downpseudo=None)",
    "colind: columns; priority: lower branches first; dir: 'U' up first, 'D' down first, "
    "'N' free; uppseudo, downpseudo: pseudo costs. Legacy keywords: mcols, mpri, qbr, dupc, "
    "ddpc.",
    "p.loaddirs([x], [1], ['U'])",
    "Kept with the problem and written by writedirs; the engine's own branch and cut reads "
    "them, HiGHS's search does not.",
    "problem.getdirs, problem.loadbranchdirs, problem.readdirs");
inline constexpr char kLoadPresolveDirs[] = ZRV_HELP(
    "Set branching directives in the presolved problem.",
    "p.loadpresolvedirs(colind, priority=None, dir=None, uppseudo=None, downpseudo=None)",
    "As loaddirs, by presolved column.", "p.loaddirs([x], [1])",
    "Refused: the engine keeps no presolved problem; use loaddirs.", "problem.loaddirs");
inline constexpr char kLoadBranchDirs[] = ZRV_HELP(
    "Set the branching direction of columns.", "p.loadbranchdirs(colind, dir)",
    "colind: columns; dir: > 0 up first, < 0 down first, 0 free. Legacy keywords: mcols, "
    "mbranch.",
    "p.loadbranchdirs([x, y], [1, -1])", "Priorities and pseudo costs are kept.",
    "problem.loaddirs");
inline constexpr char kGetDirs[] = ZRV_HELP(
    "Read the branching directives.",
    "n = p.getdirs(indices=None, prios=None, branchdirs=None, uppseudo=None, downpseudo=None)",
    "Lists filled in place by increasing column. Legacy keywords: mcols, mpri, qbr, dupc, "
    "ddpc.",
    "cols = []; n = p.getdirs(cols)", "Returns the number of directives.", "problem.loaddirs");
inline constexpr char kLoadSecureVecs[] = ZRV_HELP(
    "Mark rows and columns that presolve must keep.", "p.loadsecurevecs(rowind, colind)",
    "rowind, colind: rows and columns. Legacy keywords: mrow, mcol.",
    "p.loadsecurevecs([c1], None)",
    "Refused: HiGHS's presolve cannot be told to keep given rows or columns.",
    "problem.loadpresolvebasis");

#define ZRV_RANGE_HELP(what, fn, lines, legacy)                                           \
  ZRV_HELP("Read the intervals of " what " over which the optimal basis of the last LP "    \
           "solve stays optimal.",                                                          \
           "p." fn "(" lines ", lower, upper)",                                            \
           lines ": indices, names or objects; lower, upper: lists filled in place." legacy, \
           "lo = []; up = []; p." fn "([0, 1], lo, up)",                                   \
           "Needs an optimal single-objective LP solve of the model as it is. Infinite "    \
           "ends are 1e20 or -1e20.",                                                       \
           "problem.objsa, problem.rhssa, problem.bndsa")

inline constexpr char kObjSa[] =
    ZRV_RANGE_HELP("cost coefficients", "objsa", "colind", " Legacy keyword: mindex.");
inline constexpr char kRhsSa[] =
    ZRV_RANGE_HELP("right-hand sides", "rhssa", "rowind", " Legacy keyword: mindex.");
inline constexpr char kBndSa[] = ZRV_HELP(
    "Read the intervals of lower and upper bounds over which the optimal basis stays "
    "optimal.",
    "p.bndsa(colind, lblower, lbupper, ublower, ubupper)",
    "colind: columns; the four lists are filled in place. Legacy keyword: mindex.",
    "a = []; b = []; c = []; d = []; p.bndsa([x], a, b, c, d)",
    "The bound a column sits at is ranged by HiGHS; the other may move anywhere that keeps "
    "the column's value inside its bounds.",
    "problem.objsa, problem.rhssa");
inline constexpr char kBTran[] = ZRV_HELP(
    "Solve with the transposed basis matrix.", "p.btran(vec)",
    "vec: a list with one value per row, replaced by the solution of B'y = vec.",
    "v = [1, 0, 0]; p.btran(v)",
    "B has, in the pivot order, the matrix column of each basic column and the unit column "
    "of each basic row.",
    "problem.ftran, problem.getpivotorder");
inline constexpr char kFTran[] = ZRV_HELP(
    "Solve with the basis matrix.", "p.ftran(vec)",
    "vec: a list with one value per row, replaced by the solution of Bx = vec.",
    "v = [1, 0, 0]; p.ftran(v)", "B as for btran.", "problem.btran, problem.getpivotorder");
inline constexpr char kGetPivotOrder[] = ZRV_HELP(
    "Read the basic rows and columns in the order of the basis matrix.",
    "p.getpivotorder(pivotorder)",
    "pivotorder: a list filled with constraint and var objects. Legacy keyword: mpiv.",
    "order = []; p.getpivotorder(order)", "Needs an optimal LP solve.",
    "problem.btran, problem.ftran");
inline constexpr char kBasisStability[] = ZRV_HELP(
    "Estimate the condition number of the optimal basis matrix.",
    "v = p.basisstability(type=0, norm=1, scaled=0)",
    "type 0: the condition number; norm 1: the 1-norm; scaled 0: the unscaled basis. Legacy "
    "keyword: ifscaled.",
    "v = p.basisstability()", "Other choices are refused. Hager's estimate of |B^-1|_1.",
    "problem.ftran");

inline constexpr char kIisFirst[] = ZRV_HELP(
    "Find an irreducible infeasible subsystem of the continuous relaxation.",
    "status = p.iisfirst(mode=1)",
    "mode: 0 or 1 (both run the deletion filter). Legacy keyword: iismode.",
    "if p.iisfirst() == 0: p.getiisdata(1, rows, cols)",
    "Returns 0 when one was found, 1 when the model is feasible. Forgets earlier ones. Every "
    "proper subset of a subsystem is feasible.",
    "problem.iisnext, problem.iisall, problem.getiisdata");
inline constexpr char kIisNext[] = ZRV_HELP(
    "Find another infeasible subsystem.", "status = p.iisnext()", "None.",
    "while p.iisnext() == 0: pass",
    "It avoids one row of each found so far; 1 when there is none left.", "problem.iisfirst");
inline constexpr char kIisAll[] = ZRV_HELP(
    "Find infeasible subsystems until none is left (at most 100).", "p.iisall()", "None.",
    "p.iisall(); n = p.iisstatus()", "Forgets earlier ones first.", "problem.iisstatus");
inline constexpr char kIisClear[] = ZRV_HELP(
    "Forget the infeasible subsystems found.", "p.iisclear()", "None.", "p.iisclear()",
    "A change of the model forgets them too.", "problem.iisfirst");
inline constexpr char kIisStatus[] = ZRV_HELP(
    "Count the infeasible subsystems found and their sizes.",
    "n = p.iisstatus(nrows=None, ncols=None, suminfeas=None, numinfeas=None)",
    "nrows, ncols: lists filled with the rows and column bounds of each subsystem. "
    "suminfeas and numinfeas are not computed and must be None. Legacy keywords: rowsizes, "
    "colsizes.",
    "r = []; n = p.iisstatus(r)", "Returns the number of subsystems.", "problem.getiisdata");
inline constexpr char kGetIisData[] = ZRV_HELP(
    "Read one infeasible subsystem.",
    "(nrows, ncols) = p.getiisdata(iis, rowind=None, colind=None, contype=None, "
    "bndtype=None)",
    "iis: its number from 1; rowind: its rows; colind: columns whose bound takes part; "
    "contype: the rows' types; bndtype: 'L' or 'U' per column. duals, djs, isolationrows "
    "and isolationcols are not computed and must be None. Legacy keywords: num, miisrow, "
    "miiscol, constrainttype, colbndtype.",
    "rows = []; cols = []; p.getiisdata(1, rows, cols)",
    "Returns the numbers of rows and column bounds.", "problem.iisfirst");

#undef ZRV_RANGE_HELP
#undef ZRV_SOLUTION_HELP
#undef ZRV_INFEAS_HELP

}  // namespace zrv::help
