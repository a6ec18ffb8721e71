// The nonlinear formulas of one call of an adder (rows) or of setObjective
// (the transfer row): written while the bodies are split, then handed to
// the nonlinear companion in one call.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <vector>

#include "nonlinear/formula_tokens.h"
#include "problem/problem.h"
#include "problem/terms.h"

namespace zrv {

// Names of the row and column that carry a nonlinear objective.
constexpr char kTransferRowName[] = "objtransferrow";
constexpr char kTransferColName[] = "objtransfercol";

class FormulaBatch : public UserFunctionIndex {
 public:
  explicit FormulaBatch(ProblemObject *p);

  // Where DecomposeBody writes formulas; refuses them (null tokens) when the
  // problem has no nonlinear companion.
  const BodyFormulas &Body() const { return body_; }
  int count() const { return tokens_.count(); }
  FormulaTokens &tokens() { return tokens_; }
  // The formulas written since the last call belong to row `row`.
  void AssignRow(int row);
  // Forgets the formulas from `from` on (a body that failed).
  void Truncate(int from);
  // Adds the formulas to the engine in one call. 0, or -1 with SolverError.
  int Send();

  int IndexOf(PyObject *args, int op, int *index) override;

 private:
  ProblemObject *p_;
  FormulaTokens tokens_;
  std::vector<int> rows_;
  BodyFormulas body_;
};

// SolverError with the nonlinear companion's last error text. Returns -1.
int RaiseSlpError(ProblemObject *p, const char *fallback);

// Rows and columns of the transfer row and column (-1 when absent).
int FindTransfer(ProblemObject *p, int *row, int *col);

// After rows were deleted: whether rows other than the transfer row still
// carry formulas (nl_constraints is set to 0 when none does). 0 or -1.
int RecountNonlinearRows(ProblemObject *p);

// Reads the formula of one (row, column) pair of the engine (the sum of its
// terms) into factor, type and value; the engine's status (0: read).
int ReadPairFormula(ZSLPprob slp, int row, int col, double *factor, std::vector<int> &type,
                    std::vector<double> &value);

}  // namespace zrv
