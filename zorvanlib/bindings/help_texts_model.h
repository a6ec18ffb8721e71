// Help texts of the members of general and piecewise-linear constraints,
// single entries, model parts and messages, in the six sections of every
// method.
#pragma once

#include "base/help.h"

namespace zrv::help {

inline constexpr char kAddGenCons[] = ZRV_HELP(
    "Add general constraints: a column equal to the max, min, and, or, abs of others.",
    "p.addgencons(contype, resultant, colstart, colind, valstart=None, val=None)",
    "contype: one type each (zorvan.gencons_max, _min, _and, _or, _abs); resultant: the "
    "column each one defines; colind: the operand columns of all of them, those of constraint "
    "k starting at colstart[k]; val: constant operands of max and min, those of constraint k "
    "starting at valstart[k]. Legacy keywords: type, resultant, colstart, col, valstart, val.",
    "p.addgencons([zorvan.gencons_max], [y], [0], [x1, x2], [0], [1.5])",
    "and and or take binary columns; abs takes exactly one column. Solved through binaries "
    "whose big-M values come from the operands' bounds, which must be finite.",
    "problem.getgencons, problem.delgencons, problem.addpwlcons");
inline constexpr char kGetGenCons[] = ZRV_HELP(
    "Read general constraints first..last into lists.",
    "p.getgencons(contype, resultant, colstart, colind, maxcols, valstart, val, maxvals, "
    "first, last)",
    "contype, resultant, colstart, colind, valstart, val: lists filled in place (None: not "
    "read); maxcols, maxvals: at most that many operand columns and constants; first, last: "
    "constraint indices. Legacy keywords: type, resultant, colstart, col, colsize, valstart, "
    "val, valsize, first, last.",
    "t, r, cs, c, vs, v = [], [], [], [], [], []; p.getgencons(t, r, cs, c, 100, vs, v, 100, "
    "0, 0)",
    "colstart and valstart get last - first + 2 offsets.",
    "problem.addgencons, problem.delgencons");
inline constexpr char kDelGenCons[] = ZRV_HELP(
    "Delete general constraints.", "p.delgencons(conind)",
    "conind: constraint indices. Legacy keyword: mindex.", "p.delgencons([0, 2])",
    "The others move down to fill the gaps.", "problem.addgencons, problem.getgencons");
inline constexpr char kAddPwlCons[] = ZRV_HELP(
    "Add piecewise-linear constraints: resultant = f(column) through breakpoints.",
    "p.addpwlcons(colind, resultant, start, xval, yval)",
    "colind: the argument column of each; resultant: the column it defines; xval, yval: the "
    "breakpoints of all of them, those of constraint k starting at start[k]. Legacy keywords: "
    "col, resultant, start, xval, yval.",
    "p.addpwlcons([x], [y], [0], [0, 1, 2], [0, 5, 4])",
    "x values must not decrease; two equal x values make a jump. Where the column's bounds "
    "reach beyond the breakpoints the end segments extend to them (such a bound must be "
    "finite).",
    "problem.getpwlcons, problem.delpwlcons, zorvan.pwl");
inline constexpr char kGetPwlCons[] = ZRV_HELP(
    "Read piecewise-linear constraints first..last into lists.",
    "p.getpwlcons(colind, resultant, start, xval, yval, maxpoints, first, last)",
    "colind, resultant, start, xval, yval: lists filled in place (None: not read); maxpoints: "
    "at most that many breakpoints; first, last: constraint indices. Legacy keywords: col, "
    "resultant, start, xval, yval, size, first, last.",
    "c, r, s, x, y = [], [], [], [], []; p.getpwlcons(c, r, s, x, y, 100, 0, 0)",
    "start gets last - first + 2 offsets.", "problem.addpwlcons, problem.delpwlcons");
inline constexpr char kDelPwlCons[] = ZRV_HELP(
    "Delete piecewise-linear constraints.", "p.delpwlcons(pwlind)",
    "pwlind: constraint indices. Legacy keyword: mindex.", "p.delpwlcons([1])",
    "The others move down to fill the gaps.", "problem.addpwlcons, problem.getpwlcons");

inline constexpr char kChgCoef[] = ZRV_HELP(
    "Change one coefficient of the matrix.", "p.chgcoef(row, col, coef)",
    "row, col: an index, name or object; coef: the new value, 0 removes the entry. Legacy "
    "keywords: irow, icol, dval.",
    "p.chgcoef(c1, x, 2.5)", "", "problem.chgmcoef, problem.getcoef");
inline constexpr char kChgMCoef[] = ZRV_HELP(
    "Change several coefficients of the matrix in one call.",
    "p.chgmcoef(rowind, colind, rowcoef)",
    "rowind, colind: rows and columns; rowcoef: the new values (0 removes an entry). Legacy "
    "keywords: mrow, mcol, dval.",
    "p.chgmcoef([0, 1], [x, y], [1.0, -2.0])",
    "A pair given twice takes its last value; nothing changes when any entry is invalid.",
    "problem.chgcoef, problem.getrows, problem.getcols");
inline constexpr char kGetCoef[] = ZRV_HELP(
    "Read one coefficient of the matrix.", "p.getcoef(row, col)",
    "row, col: an index, name or object. Legacy keywords: irow, icol.",
    "a = p.getcoef(c1, x)", "Returns 0.0 where the matrix has no entry.",
    "problem.chgcoef, problem.getrows");
inline constexpr char kChgQObj[] = ZRV_HELP(
    "Change one entry of the quadratic objective matrix.",
    "p.chgqobj(objqcol1, objqcol2, objqcoef)",
    "objqcol1, objqcol2: columns; objqcoef: the value of Q[i][j] = Q[j][i] in the objective's "
    "0.5 x'Qx (0 removes it). Legacy keywords: icol, jcol, dval.",
    "p.chgqobj(x, x, 2.0)  # adds x**2", "", "problem.getqobj, problem.chgmqobj");
inline constexpr char kGetQObj[] = ZRV_HELP(
    "Read one entry of the quadratic objective matrix.", "p.getqobj(objqcol1, objqcol2)",
    "objqcol1, objqcol2: columns. Legacy keywords: icol, jcol.", "q = p.getqobj(x, y)",
    "Returns Q[i][j] of the objective's 0.5 x'Qx; 0.0 where there is none.",
    "problem.chgqobj, problem.getmqobj");
inline constexpr char kChgQRowCoeff[] = ZRV_HELP(
    "Change one entry of a row's quadratic matrix.",
    "p.chgqrowcoeff(row, rowqcol1, rowqcol2, rowqcoef)",
    "row: a row; rowqcol1, rowqcol2: columns; rowqcoef: Q[i][j] = Q[j][i] of the row's x'Qx "
    "(0 removes it). Legacy keywords: irow, icol, jcol, dval.",
    "p.chgqrowcoeff(c1, x, y, 0.5)", "", "problem.getqrowcoeff, problem.addqmatrix");
inline constexpr char kGetQRowCoeff[] = ZRV_HELP(
    "Read one entry of a row's quadratic matrix.", "p.getqrowcoeff(row, rowqcol1, rowqcol2)",
    "row: a row; rowqcol1, rowqcol2: columns. Legacy keywords: irow, icol, jcol.",
    "q = p.getqrowcoeff(c1, x, y)", "Returns 0.0 where there is none.",
    "problem.chgqrowcoeff, problem.getqrowqmatrix");
inline constexpr char kGetQRowQMatrix[] = ZRV_HELP(
    "Read a row's quadratic matrix over a range of columns into lists.",
    "p.getqrowqmatrix(row, start, colind, rowqcoef, maxcoefs, first, last)",
    "row: a row; start, colind, rowqcoef: lists filled in place (None: not read); maxcoefs: "
    "at most that many entries; first, last: columns. Legacy keywords: irow, mstart, mclind, "
    "dqe, size, first, last.",
    "s, c, v = [], [], []; p.getqrowqmatrix(c1, s, c, v, 100, 0, 2)",
    "Both triangles of the symmetric matrix are read, column by column.",
    "problem.getqrowqmatrixtriplets, problem.getqrows");
inline constexpr char kGetQRows[] = ZRV_HELP(
    "The rows that have a quadratic part.", "p.getqrows(rowind=None)",
    "rowind: a list filled in place with the rows (None: only count them). Legacy keyword: "
    "qcrows.",
    "rows = []; n = p.getqrows(rows)", "Returns their number.",
    "problem.getqrowqmatrix, problem.delqmatrix");
inline constexpr char kDelQMatrix[] = ZRV_HELP(
    "Remove the quadratic part of a row.", "p.delqmatrix(row)", "row: a row.",
    "p.delqmatrix(c1)", "The row keeps its linear part.",
    "problem.addqmatrix, problem.getqrows");

inline constexpr char kAddObj[] = ZRV_HELP(
    "Add an objective after the existing ones.", "p.addobj(colind, objcoef, priority, weight)",
    "colind, objcoef: its nonzero coefficients; priority: larger is solved first; weight: "
    "blends objectives of one priority.",
    "p.addobj([x, y], [1.0, 2.0], 1, 1.0)", "The primary objective must then be linear.",
    "problem.chgobjn, problem.delobj");
inline constexpr char kAddSetNames[] = ZRV_HELP(
    "Name special ordered sets first..last.", "p.addsetnames(names, first, last)",
    "names: one str per set; first, last: set indices or objects. Legacy keywords: names, "
    "start, end.",
    "p.addsetnames(['s1', 's2'], 0, 1)", "", "problem.addnames, problem.getnamelist");
inline constexpr char kDelIndicators[] = ZRV_HELP(
    "Make rows first..last ordinary rows again.", "p.delindicators(first, last)",
    "first, last: rows (indices, names or objects). Legacy keywords: start, end.",
    "p.delindicators(0, 3)", "The rows stay in the problem.",
    "problem.setindicators, problem.getindicators");
inline constexpr char kGetMipEntities[] = ZRV_HELP(
    "Read the non-continuous columns and the special ordered sets into lists.",
    "p.getmipentities(coltype, colind, limit, settype, start, setcols, refval)",
    "Every argument is a list filled in place, or None: coltype, colind, limit: type, column "
    "and threshold of each non-continuous column; settype, start, setcols, refval: the sets. "
    "Legacy keywords: qgtype, mgcols, dlim, qstype, msstart, mscols, dref.",
    "t, c = [], []; nent, nsets = p.getmipentities(t, c, None, None, None, None, None)",
    "Returns (number of such columns, number of sets).", "problem.getcoltype");

inline constexpr char kGetMessageStatus[] = ZRV_HELP(
    "Whether messages of a code are shown.", "p.getmessagestatus(msgcode)",
    "msgcode: a message code (101 to 106). Legacy keyword: errcode.",
    "p.getmessagestatus(103)", "Returns 1 when shown, 0 when suppressed.",
    "problem.setmessagestatus");
inline constexpr char kSetMessageStatus[] = ZRV_HELP(
    "Show or suppress the messages of a code.", "p.setmessagestatus(msgcode, status)",
    "msgcode: a message code: 101 problem loaded, 102 file warnings, 103 solve summary, 104 "
    "solver log, 105 model transfer, 106 checked results; status: 1 show, 0 suppress. Legacy "
    "keywords: errcode, status.",
    "p.setmessagestatus(104, 0)", "", "problem.getmessagestatus, problem.setlogfile");
inline constexpr char kSetLogFile[] = ZRV_HELP(
    "Copy the problem's messages into a file.", "p.setlogfile(filename)",
    "filename: the file, appended to; None or '' closes it.", "p.setlogfile('run.log')",
    "Only messages that the outputlog control lets through are written.",
    "problem.setmessagestatus");

}  // namespace zrv::help
