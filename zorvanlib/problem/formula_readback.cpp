// Reading a row's formulas back from the engine.
#include "problem/formula_readback.h"

#include <vector>

#include "base/engine_call.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "problem/formula_batch.h"
#include "problem/problem.h"

namespace zrv {

namespace {

PyObject *TokenList(const std::vector<int> &type, const std::vector<double> &value, int n) {
  PyObject *list = PyList_New(0);
  for (int i = 0; list && i + 1 < n; ++i) {
    PyObject *pair = Py_BuildValue("(id)", type[static_cast<size_t>(i)], value[static_cast<size_t>(i)]);
    if (!pair || PyList_Append(list, pair) < 0) Py_CLEAR(list);
    Py_XDECREF(pair);
  }
  return list;
}

}  // namespace

PyObject *RowFormulas(PyObject *, PyObject *args) {
  PyObject *problem;
  int row;
  if (!PyArg_ParseTuple(args, "O!i", &ProblemType, &problem, &row)) return nullptr;
  auto *p = reinterpret_cast<ProblemObject *>(problem);
  if (NotInitialized(p)) return nullptr;
  ZSLPprob slp = p->slpprob;
  if (!slp) {
    PyErr_SetString(ModelError, "The problem has no nonlinear part");
    return nullptr;
  }
  int n = 0;
  std::vector<int> rows, cols;
  int rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, nullptr, nullptr); });
  if (rc == 0 && n > 0) {
    rows.resize(static_cast<size_t>(n));
    cols.resize(static_cast<size_t>(n));
    rc = CallUnlocked([&] { return ZSLPgetcoefs(slp, &n, rows.data(), cols.data()); });
  }
  if (rc != 0) return RaiseSlpError(p, "The formulas could not be read"), nullptr;
  PyObject *result = PyList_New(0);
  std::vector<int> type;
  std::vector<double> value;
  for (int k = 0; result && k < n; ++k) {
    if (rows[static_cast<size_t>(k)] != row) continue;
    const int col = cols[static_cast<size_t>(k)];
    // A pair comes once per term, its terms one after another.
    int terms = 1;
    while (k + 1 < n && rows[static_cast<size_t>(k) + 1] == row &&
           cols[static_cast<size_t>(k) + 1] == col)
      ++terms, ++k;
    double factor = 1.0;
    rc = ReadPairFormula(slp, row, col, &factor, type, value);
    const int ntypes = static_cast<int>(type.size());
    if (rc != 0) {
      Py_DECREF(result);
      return RaiseSlpError(p, "The formulas could not be read"), nullptr;
    }
    PyObject *tokens = TokenList(type, value, ntypes);
    PyObject *item =
        tokens ? Py_BuildValue("(iidN)", col < 0 ? -1 : col, terms, factor, tokens) : nullptr;
    if (!item || PyList_Append(result, item) < 0) Py_CLEAR(result);
    Py_XDECREF(item);
  }
  return result;
}

const char RowFormulasDoc[] = ZRV_HELP(
    "Read the nonlinear formulas of a row back from the solver.",
    "zorvan._rowformulas(problem, row)",
    "problem: a problem; row: a row index.",
    "zorvan.zorvanlib._rowformulas(p, 0)  # [(column, terms, factor, [(type, value), ...])]",
    "A list of (column, terms, factor, tokens): one entry per column that multiplies "
    "formulas of the row (-1 for none), in the solver's order, with the number of its terms "
    "and the factor and tokens (reverse Polish, without the end token) of its one term, or "
    "of the sum of its terms with factor 1. Meant for inspecting how expressions were "
    "converted.",
    "problem.addConstraint, problem.setObjective");

}  // namespace zrv
