// Formulas of a batch of rows, and what the problem knows of its transfer
// row and column.
#include "problem/formula_batch.h"

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "nonlinear/nonlinear.h"

namespace zrv {

FormulaBatch::FormulaBatch(ProblemObject *p) : p_(p) {
  if (p->slpprob && GetSlpStarted() == 1) {
    body_.tokens = &tokens_;
    body_.context.columns = p->colmap;
    body_.context.reserved_column = p->formula_column;
    body_.context.users = this;
  }
}

void FormulaBatch::AssignRow(int row) { rows_.resize(static_cast<size_t>(tokens_.count()), row); }

void FormulaBatch::Truncate(int from) {
  tokens_.Truncate(from);
  if (rows_.size() > static_cast<size_t>(tokens_.count()))
    rows_.resize(static_cast<size_t>(tokens_.count()));
}

int FormulaBatch::Send() {
  const int n = tokens_.count();
  if (n == 0) return 0;
  ZSLPprob slp = p_->slpprob;
  const FormulaTokens &t = tokens_;
  const int *rows = rows_.data();
  int rc = CallUnlocked([&] {
    return ZSLPaddcoefs(slp, n, rows, t.col(), t.factor(), t.start(), 1, t.type(), t.value());
  });
  return rc == 0 ? 0 : RaiseSlpError(p_, "The nonlinear formulas could not be added");
}

int FormulaBatch::IndexOf(PyObject *args, int op, int *index) {
  const bool sequence = args && (PyTuple_Check(args) || PyList_Check(args));
  if (!sequence || PySequence_Fast_GET_SIZE(args) < 1 ||
      !PyCallable_Check(PySequence_Fast_GET_ITEM(args, 0))) {
    PyErr_SetString(ModelError,
                    "Invalid user function, must specify at least one argument (the user "
                    "function itself)");
    return -1;
  }
  if (!p_->userfuncs) p_->userfuncs = UserFunctions::New();
  const int nargs = static_cast<int>(PySequence_Fast_GET_SIZE(args)) - 1;
  return p_->userfuncs->IndexOf(p_->slpprob, PySequence_Fast_GET_ITEM(args, 0), nargs, op, index);
}

int RaiseSlpError(ProblemObject *p, const char *fallback) {
  if (PyErr_Occurred()) return -1;
  char text[ZRVS_MAXMESSAGELENGTH] = "";
  ZSLPprob slp = p->slpprob;
  if (slp) CallUnlocked([&] { return ZSLPgetlasterror(slp, nullptr, text); });
  text[sizeof text - 1] = '\0';
  PyErr_SetString(SolverError, text[0] ? text : fallback);
  return -1;
}

int FindTransfer(ProblemObject *p, int *row, int *col) {
  *row = *col = -1;
  if (!p->nl_objective) return 0;
  ZRVSprob prob = p->prob;
  int rc = CallUnlocked([&] {
    int r = ZRVSgetindex(prob, 1, kTransferRowName, row);
    return r != 0 ? r : ZRVSgetindex(prob, 2, kTransferColName, col);
  });
  return rc == 0 ? 0 : ReportFailure(reinterpret_cast<PyObject *>(p));
}

int RecountNonlinearRows(ProblemObject *p) {
  if (p->nl_constraints <= 0 || !p->slpprob) return 0;
  int transfer_row, transfer_col;
  if (FindTransfer(p, &transfer_row, &transfer_col) < 0) return -1;
  ZSLPprob slp = p->slpprob;
  std::vector<int> rows, cols;
  int n = 0;
  int rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, nullptr, nullptr); });
  if (rc == 0 && n > 0) {
    rows.resize(static_cast<size_t>(n));
    cols.resize(static_cast<size_t>(n));
    rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, rows.data(), cols.data()); });
  }
  if (rc != 0) return RaiseSlpError(p, "The nonlinear formulas could not be read");
  for (int k = 0; k < n; ++k)
    if (rows[static_cast<size_t>(k)] != transfer_row) return 0;
  p->nl_constraints = 0;
  return 0;
}

int ReadPairFormula(ZSLPprob slp, int row, int col, double *factor, std::vector<int> &type,
                    std::vector<double> &value) {
  int ntypes = 0;
  int rc = CallUnlocked(
      [&] { return ZSLPgetcoefformula(slp, row, col, factor, 1, 0, &ntypes, nullptr, nullptr); });
  if (rc != 0) return rc;
  type.resize(static_cast<size_t>(ntypes));
  value.resize(static_cast<size_t>(ntypes));
  return CallUnlocked([&] {
    return ZSLPgetcoefformula(slp, row, col, factor, 1, ntypes, &ntypes, type.data(),
                              value.data());
  });
}

}  // namespace zrv
