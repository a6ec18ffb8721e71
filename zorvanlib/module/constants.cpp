// The named constants published as module attributes; values the engine's
// header defines are taken from it.
#include "module/constants.h"

#include <cmath>

#include "base/globals.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

struct Constant {
  const char *name;
  bool is_float;
  double value;
};

// Published in this order; the table ends at a row without a name.
const Constant kConstants[] = {
    // Variable types.
    {"continuous", false, 0}, {"binary", false, 1}, {"integer", false, 2},
    {"semicontinuous", false, 3}, {"semiinteger", false, 4}, {"partiallyinteger", false, 5},
    // Objective senses.
    {"minimize", false, ZRVS_OBJ_MINIMIZE}, {"maximize", false, ZRVS_OBJ_MAXIMIZE},
    // Constraint types.
    {"leq", false, 1}, {"geq", false, 2}, {"eq", false, 3}, {"rng", false, 4},
    // Bounds at or beyond this value are unbounded.
    {"infinity", true, ZRVS_PLUSINFINITY},
    // Solution information.
    {"solinfo_absprimalinfeas", false, 0}, {"solinfo_relprimalinfeas", false, 1},
    {"solinfo_absdualinfeas", false, 2}, {"solinfo_reldualinfeas", false, 3},
    {"solinfo_maxmipfractional", false, 4},
    // Basis status.
    {"basis_nonbasic_lower", false, ZRVS_BASIS_NONBASIC_LOWER},
    {"basis_basic", false, ZRVS_BASIS_BASIC},
    {"basis_nonbasic_upper", false, ZRVS_BASIS_NONBASIC_UPPER},
    {"basis_superbasic", false, ZRVS_BASIS_SUPERBASIC},
    // LP status.
    {"lp_unstarted", false, ZRVS_LP_UNSTARTED}, {"lp_optimal", false, ZRVS_LP_OPTIMAL},
    {"lp_infeas", false, ZRVS_LP_INFEAS},
    {"lp_cutoff", false, ZRVS_LP_CUTOFF}, {"lp_unfinished", false, ZRVS_LP_UNFINISHED},
    {"lp_unbounded", false, ZRVS_LP_UNBOUNDED},
    {"lp_cutoff_in_dual", false, ZRVS_LP_CUTOFF_IN_DUAL}, {"lp_unsolved", false, ZRVS_LP_UNSOLVED},
    {"lp_nonconvex", false, ZRVS_LP_NONCONVEX},
    // MIP status.
    {"mip_not_loaded", false, ZRVS_MIP_NOT_LOADED},
    {"mip_lp_not_optimal", false, ZRVS_MIP_LP_NOT_OPTIMAL},
    {"mip_lp_optimal", false, ZRVS_MIP_LP_OPTIMAL},
    {"mip_no_sol_found", false, ZRVS_MIP_NO_SOL_FOUND},
    {"mip_solution", false, ZRVS_MIP_SOLUTION}, {"mip_infeas", false, ZRVS_MIP_INFEAS},
    {"mip_optimal", false, ZRVS_MIP_OPTIMAL},
    {"mip_unbounded", false, ZRVS_MIP_UNBOUNDED},
    // Nonlinear status; older and newer names share values on purpose.
    {"nlp_unstarted", false, 0}, {"nlp_solution", false, 1},
    {"nlp_locally_optimal", false, 1}, {"nlp_optimal", false, 2},
    {"nlp_globally_optimal", false, 2}, {"nlp_locally_infeasible", false, 3},
    {"nlp_infeasible", false, 4}, {"nlp_unbounded", false, 5}, {"nlp_unfinished", false, 6},
    // Stop reasons (11 and 12 are not published).
    {"stop_timelimit", false, ZRVS_STOP_TIMELIMIT}, {"stop_ctrlc", false, ZRVS_STOP_CTRLC},
    {"stop_nodelimit", false, ZRVS_STOP_NODELIMIT},
    {"stop_iterlimit", false, ZRVS_STOP_ITERLIMIT}, {"stop_mipgap", false, ZRVS_STOP_MIPGAP},
    {"stop_sollimit", false, ZRVS_STOP_SOLLIMIT},
    {"stop_genericerror", false, ZRVS_STOP_GENERICERROR},
    {"stop_memoryerror", false, ZRVS_STOP_MEMORYERROR},
    {"stop_user", false, ZRVS_STOP_USER}, {"stop_solvecomplete", false, ZRVS_STOP_SOLVECOMPLETE},
    {"stop_numericalerror", false, ZRVS_STOP_NUMERICALERROR},
    // Control and attribute types.
    {"type_notdefined", false, 0}, {"type_int", false, 1}, {"type_int64", false, 2},
    {"type_double", false, 3}, {"type_string", false, 4},
    // Column information.
    {"colinfo_value", false, 1}, {"colinfo_rdj", false, 2}, {"colinfo_deltaindex", false, 3},
    {"colinfo_delta", false, 4}, {"colinfo_deltadj", false, 5},
    {"colinfo_updaterow", false, 6}, {"colinfo_sb", false, 7}, {"colinfo_sbdual", false, 8},
    // Row information.
    {"rowinfo_slack", false, 1}, {"rowinfo_dual", false, 2},
    {"rowinfo_numpenaltyerrors", false, 3}, {"rowinfo_maxpenaltyerror", false, 4},
    {"rowinfo_totalpenaltyerror", false, 5}, {"rowinfo_currentpenaltyerror", false, 6},
    {"rowinfo_currentpenaltyfactor", false, 7}, {"rowinfo_penaltycolumnplus", false, 8},
    {"rowinfo_penaltycolumnplusvalue", false, 9}, {"rowinfo_penaltycolumnplusdj", false, 10},
    {"rowinfo_penaltycolumnminus", false, 11},
    {"rowinfo_penaltycolumnminusvalue", false, 12},
    {"rowinfo_penaltycolumnminusdj", false, 13},
    // Multistart sets.
    {"msset_initialvalues", false, 0}, {"msset_initialfiltered", false, 6},
    {"msset_solvers", false, 1}, {"msset_slp_basic", false, 2},
    {"msset_slp_extended", false, 3}, {"msset_knitro_basic", false, 4},
    {"msset_knitro_extended", false, 5},
    // General constraint types.
    {"gencons_max", false, 0}, {"gencons_min", false, 1}, {"gencons_and", false, 2},
    {"gencons_or", false, 3}, {"gencons_abs", false, 4},
    // Formula tokens.
    {"tok_eof", false, 0}, {"tok_con", false, 1}, {"tok_col", false, 10},
    {"tok_fun", false, 11}, {"tok_ifun", false, 12}, {"tok_lb", false, 21},
    {"tok_rb", false, 22}, {"tok_del", false, 24}, {"tok_op", false, 31},
    // Operators and delimiters.
    {"op_uminus", false, 1}, {"op_exponent", false, 2}, {"op_multiply", false, 3},
    {"op_divide", false, 4}, {"op_plus", false, 5}, {"op_minus", false, 6},
    {"op_comma", false, 1}, {"op_colon", false, 2},
    // Internal functions.
    {"ifun_log", false, 13}, {"ifun_log10", false, 14}, {"ifun_ln", false, 15},
    {"ifun_exp", false, 16}, {"ifun_abs", false, 17}, {"ifun_sqrt", false, 18},
    {"ifun_sin", false, 27}, {"ifun_cos", false, 28}, {"ifun_tan", false, 29},
    {"ifun_arcsin", false, 30}, {"ifun_arccos", false, 31}, {"ifun_arctan", false, 32},
    {"ifun_min", false, 33}, {"ifun_max", false, 34}, {"ifun_pwl", false, 35},
    {"ifun_sign", false, 46}, {"ifun_erf", false, 49}, {"ifun_erfc", false, 50},
    // Solve status.
    {"solvestatus_unstarted", false, ZRVS_SOLVESTATUS_UNSTARTED},
    {"solvestatus_stopped", false, ZRVS_SOLVESTATUS_STOPPED},
    {"solvestatus_failed", false, ZRVS_SOLVESTATUS_FAILED},
    {"solvestatus_completed", false, ZRVS_SOLVESTATUS_COMPLETED},
    // Solution status.
    {"solstatus_notfound", false, ZRVS_SOLSTATUS_NOTFOUND},
    {"solstatus_optimal", false, ZRVS_SOLSTATUS_OPTIMAL},
    {"solstatus_feasible", false, ZRVS_SOLSTATUS_FEASIBLE},
    {"solstatus_infeasible", false, ZRVS_SOLSTATUS_INFEASIBLE},
    {"solstatus_unbounded", false, ZRVS_SOLSTATUS_UNBOUNDED},
    // Name kinds.
    {"names_row", false, 1}, {"names_column", false, 2}, {"names_set", false, 3},
    {"names_pwlcons", false, 4}, {"names_gencons", false, 5},
    {"names_objective", false, 6}, {"names_userfunc", false, 7},
    {"names_internalfunc", false, 8},
    {nullptr, false, 0},
};

}  // namespace

int PublishConstants(PyObject *module) {
  for (const Constant *c = kConstants; c->name; ++c) {
    PyObject *value = c->is_float ? PyFloat_FromDouble(c->value)
                                  : PyLong_FromDouble(std::floor(c->value));
    if (!value) return -1;
    int rc = PyModule_AddObjectRef(module, c->name, value);
    Py_DECREF(value);
    if (rc < 0) return -1;
  }
  return 0;
}

}  // namespace zrv
