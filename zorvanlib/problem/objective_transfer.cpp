// Adding, removing and moving the transfer row and column of a nonlinear
// objective.
#include "problem/objective_transfer.h"

#include <new>
#include <utility>
#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// Runs f with the pending error (if any) set aside.
template <class F>
void KeepingError(F f) {
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  f();
  PyErr_Restore(type, value, traceback);
}

// The formulas of row `row` read back from the engine, one per (row,
// column) pair, into `out`.
int ReadRowFormulas(ProblemObject *p, int row, FormulaBatch &out) {
  ZSLPprob slp = p->slpprob;
  int n = 0;
  std::vector<int> rows, cols;
  int rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, nullptr, nullptr); });
  if (rc == 0 && n > 0) {
    rows.resize(static_cast<size_t>(n));
    cols.resize(static_cast<size_t>(n));
    rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, rows.data(), cols.data()); });
  }
  if (rc != 0) return RaiseSlpError(p, "The objective's formulas could not be read");
  std::vector<int> type;
  std::vector<double> value;
  int previous = -2;
  for (int k = 0; k < n; ++k) {
    const int col = cols[static_cast<size_t>(k)];
    // A pair with several terms comes once per term; its formula is their sum.
    if (rows[static_cast<size_t>(k)] != row || col == previous) continue;
    previous = col;
    double factor = 1.0;
    rc = ReadPairFormula(slp, row, col, &factor, type, value);
    const int ntypes = static_cast<int>(type.size());
    if (rc != 0) return RaiseSlpError(p, "The objective's formulas could not be read");
    FormulaTokens &t = out.tokens();
    t.Reserve(static_cast<size_t>(ntypes));
    for (int i = 0; i + 1 < ntypes; ++i)
      t.Push(type[static_cast<size_t>(i)], value[static_cast<size_t>(i)]);
    t.Close(col >= 0 ? col : kNoFormulaColumn, factor);
  }
  return 0;
}

}  // namespace

// A nonlinear objective f(x) + (linear and quadratic part) is carried by a
// transfer column t, free, with objective coefficient 1, and a transfer row
// f(x) - t = 0: the solver's objective t + (linear and quadratic part) is
// then the whole expression at every feasible point.
int AddTransfer(ProblemObject *p, FormulaBatch &formulas) {
  int row = 0, col = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALROWS, &row) < 0 ||
      ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &col) < 0)
    return -1;
  ZRVSprob prob = p->prob;
  int added = 0;  // 1: the row is in, 2: the column too
  int rc = CallUnlocked([&] {
    const char type = 'E';
    const double rhs = 0.0, one = 1.0, minus_one = -1.0, lb = -ZRVS_PLUSINFINITY,
                 ub = ZRVS_PLUSINFINITY;
    const int64_t rstart[2] = {0, 0}, cstart[2] = {0, 1};
    int r = ZRVSaddrows64(prob, 1, 0, &type, &rhs, nullptr, rstart, nullptr, nullptr);
    if (r == 0) {
      added = 1;
      r = ZRVSaddcols64(prob, 1, 1, &one, cstart, &row, &minus_one, &lb, &ub);
    }
    if (r == 0) {
      added = 2;
      // The names are no news for the log.
      int log = 0;
      const bool quiet = ZRVSgetintcontrol(prob, ZRVS_OUTPUTLOG, &log) == 0 &&
                         ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0) == 0;
      r = ZRVSaddnames(prob, 1, kTransferRowName, row, row);
      if (r == 0) r = ZRVSaddnames(prob, 2, kTransferColName, col, col);
      if (quiet) ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, log);
    }
    return r;
  });
  if (rc != 0) ReportFailure(reinterpret_cast<PyObject *>(p));
  if (rc == 0) {
    formulas.AssignRow(row);
    rc = formulas.Send();
  }
  if (rc == 0) {
    p->nl_objective = 1;
    p->objtransfer = col;
    delete std::exchange(p->objtokens, nullptr);
    p->objtokens = new (std::nothrow) FormulaTokens(formulas.tokens());
    p->objtokens_cols = col + 1;
    return 0;
  }
  KeepingError([&] {
    CallUnlocked([&] {
      if (added == 2) ZRVSdelcols(prob, 1, &col);
      if (added >= 1) ZRVSdelrows(prob, 1, &row);
    });
  });
  return -1;
}

namespace {

int TakeOut(ProblemObject *p) {
  int row, col;
  if (FindTransfer(p, &row, &col) < 0) return -1;
  ZRVSprob prob = p->prob;
  int rc = CallUnlocked([&] {
    int r = col >= 0 ? ZRVSdelcols(prob, 1, &col) : 0;
    return r == 0 && row >= 0 ? ZRVSdelrows(prob, 1, &row) : r;
  });
  if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
  p->nl_objective = 0;
  p->objtransfer = -1;
  return 0;
}

}  // namespace

int RemoveTransfer(ProblemObject *p) {
  if (!p->nl_objective) return 0;
  delete std::exchange(p->objtokens, nullptr);
  if (TakeOut(p) < 0) return -1;
  return RecountNonlinearRows(p);
}

int DetachTransfer(ProblemObject *p, DetachedTransfer &saved) {
  if (!p->nl_objective) return 0;
  int row, col;
  if (FindTransfer(p, &row, &col) < 0) return -1;
  int ncols = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &ncols) < 0) return -1;
  saved.formulas = new FormulaBatch(p);
  // The copy kept when they were added serves while no column came or went.
  if (p->objtokens && p->objtokens_cols == ncols) {
    saved.formulas->tokens() = *p->objtokens;
  } else if (ReadRowFormulas(p, row, *saved.formulas) < 0) {
    return -1;
  }
  if (TakeOut(p) < 0) return -1;
  saved.active = true;
  return 0;
}

int ReattachTransfer(ProblemObject *p, DetachedTransfer &saved) {
  if (!saved.active) return PyErr_Occurred() ? -1 : 0;
  saved.active = false;
  if (!PyErr_Occurred()) return AddTransfer(p, *saved.formulas);
  // The add failed: put the objective back and report the add's error.
  KeepingError([&] {
    if (AddTransfer(p, *saved.formulas) < 0) PyErr_Clear();
  });
  return -1;
}

}  // namespace zrv
