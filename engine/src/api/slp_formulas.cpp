// Entry points of formulas and user functions on a nonlinear problem.
#include <vector>

#include "core/arguments.h"
#include "nlp/functions/user_function_error.h"
#include "nlp/slp_problem.h"

using namespace zorvan;

namespace {

void require_parsed(int parsed, const char *who) {
  if (parsed != 1)
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: parsed = %d is not supported; give formulas as tokens in reverse Polish order "
         "with parsed = 1",
         who, parsed);
}

void set_coefs(ZSLPprob slp, bool replace, int ncoefs, const int rowindex[],
               const int colindex[], const double factor[], const int fstart[], int parsed,
               const int type[], const double value[], const char *who) {
  require_parsed(parsed, who);
  Model &m = slp->prob->model;
  FormulaInput in{ncoefs, rowindex, colindex, factor, fstart, type, value};
  if (replace)
    m.formulas.load(in, m.rows(), m.cols(), who);
  else
    m.formulas.add(in, m.rows(), m.cols(), who);
  if (ncoefs > 0) slp->prob->model_changed(Change::values);
}

}  // namespace

extern "C" {

int ZSLPaddcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[],
                 const double factor[], const int fstart[], int parsed, const int type[],
                 const double value[]) {
  const char *who = "ZSLPaddcoefs";
  return slp_call(slp, who, [&](zslp_problem &s) {
    set_coefs(&s, false, ncoefs, rowindex, colindex, factor, fstart, parsed, type, value, who);
  });
}

int ZSLPloadcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[],
                  const double factor[], const int fstart[], int parsed, const int type[],
                  const double value[]) {
  const char *who = "ZSLPloadcoefs";
  return slp_call(slp, who, [&](zslp_problem &s) {
    set_coefs(&s, true, ncoefs, rowindex, colindex, factor, fstart, parsed, type, value, who);
  });
}

int ZSLPgetcoefs(ZSLPprob slp, int *ncoefs, int rowindex[], int colindex[]) {
  return slp_call(slp, "ZSLPgetcoefs", [&](zslp_problem &s) {
    require(ncoefs, "ncoefs", "ZSLPgetcoefs");
    const FormulaStore &f = s.prob->model.formulas;
    *ncoefs = f.terms();
    for (int k = 0; k < f.terms(); ++k) {
      if (rowindex) rowindex[k] = f.row(k);
      if (colindex) colindex[k] = f.col(k);
    }
  });
}

int ZSLPdelcoefs(ZSLPprob slp, int ncoefs, const int rowindex[], const int colindex[]) {
  return slp_call(slp, "ZSLPdelcoefs", [&](zslp_problem &s) {
    Model &m = s.prob->model;
    m.formulas.remove(ncoefs, rowindex, colindex, m.rows(), "ZSLPdelcoefs");
    if (ncoefs > 0) s.prob->model_changed(Change::values);
  });
}

int ZSLPgetcoefformula(ZSLPprob slp, int row, int col, double *factor, int parsed, int maxtypes,
                       int *ntypes, int type[], double value[]) {
  const char *who = "ZSLPgetcoefformula";
  return slp_call(slp, who, [&](zslp_problem &s) {
    require_parsed(parsed, who);
    require(ntypes, "ntypes", who);
    std::vector<int> t;
    std::vector<double> v;
    double f = 1.0;
    if (!s.prob->model.formulas.combined(row, col, &f, &t, &v))
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d has no formula term with %s%d", who, row,
           col < 0 ? "no column, col = " : "column ", col);
    t.push_back(ZSLP_TOK_END), v.push_back(0.0);
    *ntypes = static_cast<int>(t.size());
    if (factor) *factor = f;
    if (!type && !value) return;
    require(type, "type", who);
    require(value, "value", who);
    if (maxtypes < *ntypes)
      fail(ZRVS_ERR_ARGUMENT, "%s: the formula has %d tokens, more than maxtypes = %d", who,
           *ntypes, maxtypes);
    std::copy(t.begin(), t.end(), type);
    std::copy(v.begin(), v.end(), value);
  });
}

int ZSLPadduserfunction(ZSLPprob slp, const char *name, int functype, int nargs, int nout,
                        int flags, ZSLP_userfunc function, void *data, int *index) {
  const char *who = "ZSLPadduserfunction";
  return slp_call(slp, who, [&](zslp_problem &s) {
    require(index, "index", who);
    if (nout != 1)
      fail(ZRVS_ERR_UNSUPPORTED, "%s: nout = %d; only functions of one result are supported",
           who, nout);
    if (flags != 0) fail(ZRVS_ERR_UNSUPPORTED, "%s: flags = %d; no flags are defined", who, flags);
    UserFunction f;
    f.name = name && *name ? name : "userfunction";
    f.kind = functype, f.nargs = nargs, f.function = function, f.data = data;
    *index = s.prob->model.formulas.add_user_function(std::move(f), who);
  });
}

int ZSLPsetfunctionerror(ZSLPprob slp) {
  return slp_call(slp, "ZSLPsetfunctionerror",
                  [&](zslp_problem &) { nlp::note_user_function_error(); });
}

}  // extern "C"
