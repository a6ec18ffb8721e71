// Help texts of the one-to-one members, in the six sections of every method.
#pragma once

#include "base/help.h"

namespace zrv::help {

#define ZRV_SLICE_HELP(what, out, fn, example, legacy)                                     \
  ZRV_HELP("Read the " what " of a range of the problem into a list.",                     \
           "p." fn "(" out ", first=None, last=None)",                                     \
           out ": a list, filled in place with one item per index; first, last: the "     \
           "inclusive range as indices, names or objects (by default all)." legacy,        \
           example,                                                                       \
           "The list is cut or extended to exactly as many items as the range holds.",     \
           "problem.getVariable, problem.getConstraint, problem.getnamelist")

inline constexpr char kGetLb[] = ZRV_SLICE_HELP(
    "lower bounds of columns", "lb", "getlb", "lb = []; p.getlb(lb, 0, 2)",
    " Arguments are positional.");
inline constexpr char kGetUb[] = ZRV_SLICE_HELP(
    "upper bounds of columns", "ub", "getub", "ub = []; p.getub(ub, x, y)",
    " Arguments are positional.");
inline constexpr char kGetColType[] = ZRV_SLICE_HELP(
    "column types ('C', 'B', 'I', 'S', 'R', 'P')", "coltype", "getcoltype",
    "t = []; p.getcoltype(t)", "");
inline constexpr char kGetGlbLimit[] = ZRV_SLICE_HELP(
    "thresholds of semi-continuous, semi-integer and partially integer columns", "limit",
    "getglblimit", "t = []; p.getglblimit(t, 'x', 'x')", "");
inline constexpr char kGetRhs[] = ZRV_SLICE_HELP(
    "right-hand sides of rows", "rhs", "getrhs", "rhs = []; p.getrhs(rhs)",
    " Arguments are positional.");
inline constexpr char kGetRhsRange[] = ZRV_SLICE_HELP(
    "ranges of rows (infinite for rows that are not ranges)", "range", "getrhsrange",
    "r = []; p.getrhsrange(r, c, c)", " Arguments are positional.");
inline constexpr char kGetRowType[] = ZRV_SLICE_HELP(
    "row types ('L', 'G', 'E', 'R', 'N')", "rowtype", "getrowtype",
    "t = []; p.getrowtype(t, 0, 1)", " Legacy keyword: qrtype.");
inline constexpr char kGetObj[] = ZRV_SLICE_HELP(
    "objective coefficients of columns", "objcoef", "getobj", "c = []; p.getobj(c, 0, 3)",
    " Legacy keyword: obj.");

#undef ZRV_SLICE_HELP

inline constexpr char kGetObjN[] = ZRV_HELP(
    "Read the coefficients of one objective over a range of columns.",
    "p.getobjn(objidx, objcoef, first, last)",
    "objidx: the objective (0 is the first); objcoef: a list filled in place; first, last: "
    "column indices (integers), inclusive.",
    "c = []; p.getobjn(1, c, 0, 2)",
    "Objectives beyond the first are added with chgobjn.",
    "problem.chgobjn, problem.getobj");
inline constexpr char kGetCols[] = ZRV_HELP(
    "Read the matrix coefficients of a range of columns.",
    "p.getcols(start, rowind, rowcoef, maxcoefs, first, last)",
    "start: a list for the offsets of each column's entries (one more than the columns); "
    "rowind: a list for the constraints of the entries; rowcoef: a list for the "
    "coefficients; maxcoefs: at most this many entries; first, last: the range. Any of the "
    "lists may be None, but not all. Legacy keywords: mstart, mrwind, dmatval, size.",
    "s, r, v = [], [], []; p.getcols(s, r, v, 100, 0, 1)",
    "Rows beyond the problem's constraint list come back as plain indices.",
    "problem.getrows, problem.addcols");
inline constexpr char kGetRows[] = ZRV_HELP(
    "Read the matrix coefficients of a range of rows.",
    "p.getrows(start, colind, colcoef, maxcoefs, first, last)",
    "start: a list for the offsets of each row's entries (one more than the rows); colind: a "
    "list for the variables of the entries; colcoef: a list for the coefficients; maxcoefs: "
    "at most this many entries; first, last: the range. Any of the lists may be None, but "
    "not all. Legacy keywords: mstart, mclind, dmatval, size.",
    "s, c, v = [], [], []; p.getrows(s, c, v, 100, 0, 0)",
    "Entries come back as the problem's var objects.",
    "problem.getcols, problem.addrows");
inline constexpr char kGetMQObj[] = ZRV_HELP(
    "Read the quadratic objective matrix over a range of columns.",
    "p.getmqobj(start, colind, objqcoef, maxcoefs, first, last)",
    "start: a list for the offsets of each column's entries; colind: a list for the "
    "variables; objqcoef: a list for the entries of Q; maxcoefs: at most this many entries; "
    "first, last: the range. Any of the lists may be None, but not all. Legacy keywords: "
    "mstart, mclind, dobjval, size.",
    "s, c, q = [], [], []; p.getmqobj(s, c, q, 100, 0, 2)",
    "The objective holds 0.5 x'Qx; both triangles of Q are returned.",
    "problem.chgmqobj, problem.setObjective");
inline constexpr char kGetNames[] = ZRV_HELP(
    "Read the names of rows, columns or sets into a list.",
    "p.getnames(type, names, first=None, last=None)",
    "type: 1 rows, 2 columns, 3 sets; names: a list filled in place; first, last: the "
    "inclusive range (by default all).",
    "names = []; p.getnames(2, names)",
    "Unnamed entries read as R<i>, C<j> or S<k> by their current index.",
    "problem.getnamelist, problem.addnames");
inline constexpr char kGetNameList[] = ZRV_HELP(
    "Return the names of a range of rows, columns or sets.",
    "names = p.getnamelist(type, first=None, last=None)",
    "type: 1 rows, 2 columns, 3 sets; first, last: the inclusive range (by default all). "
    "Legacy keywords: start, end.",
    "p.getnamelist(1, 0, 4)",
    "Unnamed entries read as R<i>, C<j> or S<k> by their current index.",
    "problem.addnames, problem.getIndexFromName");
inline constexpr char kGetIndexFromName[] = ZRV_HELP(
    "Return the index of a row, column or set by its name.",
    "i = p.getIndexFromName(type, name)",
    "type: 1 rows, 2 columns, 3 sets; name: a str.",
    "j = p.getIndexFromName(2, 'x')",
    "-1 when no entry has the name; the lowest index when several do.",
    "problem.getnamelist, problem.getIndex");
inline constexpr char kGetIndicators[] = ZRV_HELP(
    "Read the indicator variables and their values of a range of rows.",
    "p.getindicators(colind, complement, first=None, last=None)",
    "colind: a list for the indicator variable of each row (-1 for none); complement: a "
    "list for 1 (active at 1), -1 (active at 0) or 0 (not an indicator row); one of the two "
    "may be None. Legacy keywords: inds, comps.",
    "v, k = [], []; p.getindicators(v, k)",
    "Indicator rows are made with setindicators or addIndicator.",
    "problem.setindicators, problem.addIndicator");
inline constexpr char kGetQRowTriplets[] = ZRV_HELP(
    "Read the quadratic part of a row as triplets.",
    "n = p.getqrowqmatrixtriplets(row, rowqcol1, rowqcol2, rowqcoef)",
    "row: a constraint, index or name; rowqcol1, rowqcol2, rowqcoef: lists (or None) for the "
    "two variables and the coefficient of each entry, one per pair i <= j. Legacy keywords: "
    "irow, mqcol1, mqcol2, dqe.",
    "a, b, v = [], [], []; p.getqrowqmatrixtriplets(c, a, b, v)",
    "The row's activity is its linear part plus x'Qx for the symmetric Q whose entries are "
    "returned: an entry v for i != j stands for 2 v x_i x_j. Returns the number of entries.",
    "problem.addqmatrix, problem.addConstraint");
inline constexpr char kGetAttribInfo[] = ZRV_HELP(
    "Return the identifier and type of an attribute by name.",
    "(id, type) = p.getattribinfo(name)",
    "name: the attribute's name (any case).",
    "p.getattribinfo('cols')",
    "An unknown name gives (0, 0); types: 1 integer, 2 double, 3 string, 4 64-bit integer.",
    "problem.getcontrolinfo, problem.getAttrib");
inline constexpr char kGetControlInfo[] = ZRV_HELP(
    "Return the identifier and type of a control by name.",
    "(id, type) = p.getcontrolinfo(name)",
    "name: the control's name (any case).",
    "p.getcontrolinfo('outputlog')",
    "An unknown name gives (0, 0); types: 1 integer, 2 double, 3 string, 4 64-bit integer.",
    "problem.getattribinfo, problem.getControl");
inline constexpr char kGetLastError[] = ZRV_HELP(
    "Return the text of the problem's last error.",
    "text = p.getlasterror()",
    "None.",
    "p.getlasterror()",
    "An empty string when no call on the problem has failed.",
    "zorvan.getlasterror");

inline constexpr char kChgBounds[] = ZRV_HELP(
    "Change bounds of columns.",
    "p.chgbounds(colind, bndtype, bndval)",
    "colind: columns as indices, names or var objects; bndtype: 'L' lower, 'U' upper, 'B' "
    "both, one per entry; bndval: the new bounds. The three have one length. Legacy "
    "keywords: mindex, qbtype, bnd.",
    "p.chgbounds([x, 'y'], ['U', 'B'], [4, 0])",
    "The whole batch is checked before any bound changes.",
    "problem.getlb, problem.getub");
inline constexpr char kChgColType[] = ZRV_HELP(
    "Change the types of columns.",
    "p.chgcoltype(colind, coltype)",
    "colind: columns; coltype: one letter each, 'C', 'B', 'I', 'S', 'R' or 'P'. Legacy "
    "keywords: mindex, qctype.",
    "p.chgcoltype([0, 1], ['I', 'B'])",
    "Making a column binary sets its bounds to [0, 1].",
    "problem.getcoltype, problem.chgglblimit");
inline constexpr char kChgGlbLimit[] = ZRV_HELP(
    "Change the thresholds of semi-continuous, semi-integer and partially integer columns.",
    "p.chgglblimit(colind, limit)",
    "colind: columns of type 'S', 'R' or 'P'; limit: the new thresholds. Legacy keywords: "
    "mindex, dlimit.",
    "p.chgglblimit([x], [2.5])",
    "Columns of other types are refused.",
    "problem.getglblimit, problem.chgcoltype");
inline constexpr char kChgMQObj[] = ZRV_HELP(
    "Set entries of the quadratic objective matrix.",
    "p.chgmqobj(objqcol1, objqcol2, objqcoef)",
    "objqcol1, objqcol2: the two columns of each entry; objqcoef: the value of Q there. "
    "Legacy keywords: mqcol1, mqcol2, dval.",
    "p.chgmqobj([x, x], [x, y], [2, 1])  # x^2 + x y",
    "The objective holds 0.5 x'Qx: (i, j, v) sets Q[i][j] = Q[j][i] = v, so a term a x_i^2 "
    "is given as 2a and b x_i x_j as b; 0 removes the entry.",
    "problem.getmqobj, problem.chgobj");
inline constexpr char kChgObj[] = ZRV_HELP(
    "Change objective coefficients of columns.",
    "p.chgobj(colind, objcoef)",
    "colind: columns (-1 stands for the objective's constant); objcoef: the new "
    "coefficients. Legacy keywords: mindex, obj.",
    "p.chgobj([x, y], [1, -2])",
    "Changes the first objective; chgobjn changes any objective.",
    "problem.getobj, problem.chgobjn, problem.setObjective");
inline constexpr char kChgObjN[] = ZRV_HELP(
    "Change coefficients of one objective.",
    "p.chgobjn(objidx, colind, objcoef)",
    "objidx: the objective; the number of objectives adds a new one. colind: columns (-1 "
    "for the constant); objcoef: the new coefficients.",
    "p.chgobjn(1, [x], [3])",
    "Objectives beyond the first must be linear.",
    "problem.getobjn, problem.delobj");
inline constexpr char kChgObjSense[] = ZRV_HELP(
    "Change the direction of optimisation.",
    "p.chgobjsense(objsense)",
    "objsense: zorvan.minimize (1) or zorvan.maximize (-1). Legacy keyword: sense.",
    "p.chgobjsense(zorvan.maximize)",
    "The sense holds for every objective.",
    "problem.setObjective");
inline constexpr char kChgRhs[] = ZRV_HELP(
    "Change right-hand sides of rows.",
    "p.chgrhs(rowind, rhs)",
    "rowind: rows as indices, names or constraint objects; rhs: the new right-hand sides. "
    "Legacy keyword: mindex.",
    "p.chgrhs([c1, 'c2'], [10, 0])",
    "A range row keeps its range, so both of its sides move.",
    "problem.getrhs, problem.chgrhsrange");
inline constexpr char kChgRhsRange[] = ZRV_HELP(
    "Give rows a range, making them range rows.",
    "p.chgrhsrange(rowind, rng)",
    "rowind: rows; rng: the ranges (>= 0). Legacy keyword: mindex.",
    "p.chgrhsrange([c], [2])",
    "An 'L', 'E' or 'R' row keeps its right-hand side as upper side (rhs - rng <= row <= "
    "rhs); a 'G' row keeps it as lower side (rhs <= row <= rhs + rng). Free rows are "
    "refused.",
    "problem.getrhsrange, problem.chgrowtype");
inline constexpr char kChgRowType[] = ZRV_HELP(
    "Change the types of rows.",
    "p.chgrowtype(rowind, rowtype)",
    "rowind: rows; rowtype: one letter each, 'L', 'G', 'E', 'R' or 'N'. Legacy keywords: "
    "mindex, qrtype.",
    "p.chgrowtype([c], ['E'])",
    "A row made 'R' starts with range 0; a row that stops being 'R' loses its range.",
    "problem.getrowtype, problem.chgrhsrange");
inline constexpr char kDelObj[] = ZRV_HELP(
    "Delete an objective.",
    "p.delobj(objidx)",
    "objidx: an objective other than the first.",
    "p.delobj(1)",
    "Later objectives move down one index.",
    "problem.chgobjn");

inline constexpr char kAddCols[] = ZRV_HELP(
    "Add columns with their objective coefficients, matrix entries and bounds.",
    "p.addcols(objcoef, start, rowind, rowcoef, lb, ub, names=None, types=None)",
    "objcoef, lb, ub: one value per new column (any may be None: 0, 0, infinity); start: "
    "where each column's entries begin in rowind and rowcoef; rowind: rows as indices, names "
    "or constraints; rowcoef: the coefficients; names: a list of one name per column; types: "
    "a list of one letter per column ('C', 'B', 'I', 'S', 'R', 'P'). Legacy keywords: objx, "
    "mstart, mrwind, dmatval, bdl, bdu.",
    "p.addcols([1, 2], [0, 1], [0, 0], [1, 1], [0, 0], [10, 10], names=['a', 'b'])",
    "One var object per new column joins the problem (see getVariable).",
    "problem.addrows, problem.getcols, problem.addVariable");
inline constexpr char kAddRows[] = ZRV_HELP(
    "Add rows with their types, right-hand sides and matrix entries.",
    "p.addrows(rowtype, rhs, start, colind, rowcoef, range=None, names=None)",
    "rowtype: one letter per row ('L', 'G', 'E', 'R', 'N'); rhs: right-hand sides; start: "
    "where each row's entries begin in colind and rowcoef; colind: columns as indices, names "
    "or var objects; rowcoef: the coefficients; range: the ranges of 'R' rows; names: a list "
    "of one name per row. Legacy keywords: qrtype, mstart, mclind, dmatval.",
    "p.addrows(['L'], [4], [0], [x, y], [1, 1], names=['cap'])",
    "One constraint object per new row joins the problem (see getConstraint).",
    "problem.addcols, problem.getrows, problem.addConstraint");
inline constexpr char kAddNames[] = ZRV_HELP(
    "Name a range of rows, columns or sets.",
    "p.addnames(type, names, first, last)",
    "type: 1 rows, 2 columns, 3 sets; names: at least last - first + 1 strings; first, "
    "last: the inclusive range as indices, names or objects.",
    "p.addnames(2, ['x', 'y'], 0, 1)",
    "Names need not be unique; getIndexFromName finds the lowest index.",
    "problem.getnamelist, problem.getIndexFromName");
inline constexpr char kAddQMatrix[] = ZRV_HELP(
    "Add quadratic entries to a row.",
    "p.addqmatrix(row, rowqcol1, rowqcol2, rowqcoef)",
    "row: a constraint, index or name; rowqcol1, rowqcol2: the columns of each entry; "
    "rowqcoef: its coefficient. Legacy keywords: irow, mqc1, mqc2, dqe.",
    "p.addqmatrix(c, [x, x], [x, y], [1, 0.5])  # x^2 + x y",
    "The row's activity becomes a.x + x'Qx with Q symmetric: (i, j, v) adds v to Q[i][j] "
    "and Q[j][i].",
    "problem.getqrowqmatrixtriplets");

inline constexpr char kLoadProblem[] = ZRV_HELP(
    "Replace the model by one given as arrays.",
    "p.loadproblem(probname, rowtype, rhs, rng, objcoef, start, collen, rowind, rowcoef, lb, "
    "ub, objqcol1=None, objqcol2=None, objqcoef=None, qrowind=None, nrowqcoefs=None, "
    "rowqcol1=None, rowqcol2=None, rowqcoef=None, coltype=None, entind=None, limit=None, "
    "settype=None, setstart=None, setind=None, refval=None, colnames=None, rownames=None)",
    "probname: the name; rowtype, rhs, rng: one per row (rng for 'R' rows, may be None); "
    "objcoef, lb, ub: one per column (None: 0, 0, infinity); start, collen, rowind, rowcoef: "
    "the matrix by columns (collen may be None; start may hold the closing offset); "
    "objqcol1, objqcol2, objqcoef: the quadratic objective 0.5 x'Qx, one triangle; "
    "qrowind, nrowqcoefs, rowqcol1, rowqcol2, rowqcoef: quadratic parts of rows, "
    "nrowqcoefs[k] entries for row qrowind[k]; coltype, entind, limit: types of the columns "
    "entind (others are 'C') and thresholds; settype, setstart, setind, refval: special "
    "ordered sets; colnames, rownames: lists of names. Indices are integers. Legacy "
    "keywords: qrtypes, range, obj, mstart, mnel, mrwind, dmatval, dlb, dub, mqcol1, mqcol2, "
    "dqe, qcrows, qcnquads, qcmqcol1, qcmqcol2, qcdqval, qgtype, mgcols, dlim, qstype, "
    "msstart, mscols, dref.",
    "p.loadproblem('lp', ['L'], [4], None, [-1, -1], [0, 1], None, [0, 0], [1, 2], None, "
    "None)",
    "The problem's var, constraint and sos objects are made anew for the loaded model. A "
    "load that fails leaves the problem as it was.",
    "problem.addcols, problem.addrows, problem.read");
inline constexpr char kSetIndicators[] = ZRV_HELP(
    "Make rows indicator constraints.",
    "p.setindicators(rowind, colind, complement)",
    "rowind: rows; colind: a binary column for each; complement: 1 (the row holds when the "
    "column is 1), -1 (when it is 0) or 0 (an ordinary row again). Legacy keywords: mrows, "
    "inds, comps.",
    "p.setindicators([c], [b], [1])",
    "Solved with big-M values from the bounds of the row's columns, which must be finite.",
    "problem.getindicators, problem.addIndicator");
inline constexpr char kSetProbName[] = ZRV_HELP(
    "Change the problem's name.",
    "p.setprobname(probname)",
    "probname: a str.",
    "p.setprobname('diet')",
    "The name is written into problem files.",
    "problem.name, problem.write");
inline constexpr char kSetDefaultControl[] = ZRV_HELP(
    "Set one control of the problem back to its default.",
    "p.setdefaultcontrol(control)",
    "control: the control's identifier. Legacy keyword: ipar.",
    "p.setdefaultcontrol(p.getcontrolinfo('outputlog')[0])",
    "The default is the engine's, not a user default of zorvan.setdefaultcontrol.",
    "problem.setdefaults, problem.getcontrolinfo");
inline constexpr char kSetDefaults[] = ZRV_HELP(
    "Set every control of the problem back to its default.",
    "p.setdefaults()",
    "None.",
    "p.setdefaults()",
    "The defaults are the engine's.",
    "problem.setdefaultcontrol");

}  // namespace zrv::help
