// problem.addVariable: variables become columns, all of one call together.
#include <new>
#include <string>
#include <vector>

#include "problem/arguments.h"
#include "model/var.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/text.h"
#include "base/types.h"
#include "problem/add_objects.h"
#include "problem/objective_transfer.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

constexpr char kColumnTypes[] = {'C', 'B', 'I', 'S', 'R', 'P'};

// Everything the engine needs about the new columns.
struct ColumnBatch {
  std::vector<double> lb, ub;
  std::vector<int> type_cols;  // columns that are not continuous, and their types
  std::vector<char> types;
  std::string names;  // NUL-terminated names one after another
  std::vector<int> limit_cols;
  std::vector<double> limits;
  std::vector<int> bound_cols;  // binaries whose bounds are not [0, 1]
  std::vector<char> bound_types;
  std::vector<double> bound_values;
};

int AppendName(uint64_t word, std::string &names) {
  if (!(word & kVarNameStored)) {
    AppendDefaultName('C', VarId(word), names);
    return 0;
  }
  PyObject *name = VarGetName(word);
  if (!name) return -1;
  const char *text = nullptr;
  Py_ssize_t len = 0;
  if (PyUnicode_Check(name)) {
    text = PyUnicode_AsUTF8AndSize(name, &len);
  } else if (PyBytes_Check(name)) {
    text = PyBytes_AS_STRING(name);
    len = PyBytes_GET_SIZE(name);
  } else {
    Py_DECREF(name);
    PyErr_SetString(ModelError, "Invalid variable name (must be a string)");
    return -1;
  }
  if (!text || CheckNameText(text, len, "variable", name) < 0) {
    Py_DECREF(name);
    return -1;
  }
  names.append(text, static_cast<size_t>(len));
  names += '\0';
  Py_DECREF(name);
  return 0;
}

// The column's bounds, type, threshold and name into the batch.
int RecordColumn(ProblemObject *p, PyObject *o, uint64_t word, int type, int col,
                 ColumnBatch &batch) {
  double lb = VarGetLb(word), ub = VarGetUb(word);
  if (type >= 3) {
    double threshold = VarGetThreshold(word);
    if (!(threshold >= lb && threshold <= ub)) {
      PyErr_SetString(ModelError,
                      "Incorrect semi-continuous, semi-integer, or partially integer variable; "
                      "check that its threshold is between its lower and upper bounds");
      return -1;
    }
    batch.limit_cols.push_back(col);
    batch.limits.push_back(threshold);
  }
  if (AppendName(word, batch.names) < 0) return -1;
  if (type == 1 && (lb != 0.0 || ub != 1.0)) {
    // Making a column binary sets its bounds to [0, 1]: put these back after.
    batch.bound_cols.insert(batch.bound_cols.end(), {col, col});
    batch.bound_types.insert(batch.bound_types.end(), {'L', 'U'});
    batch.bound_values.insert(batch.bound_values.end(), {lb, ub});
  }
  if (type != 0) {  // new columns are continuous
    batch.type_cols.push_back(col);
    batch.types.push_back(kColumnTypes[type]);
  }
  batch.lb.push_back(lb);
  batch.ub.push_back(ub);
  return PyList_Append(p->varlist, o);
}

// Checks one variable and records it as column `col`.
int Record(ProblemObject *p, PyObject *o, int col, ColumnBatch &batch) {
  if (Py_TYPE(o) != &VarType) {
    PyErr_SetString(ModelError, "Incorrect objects added as variables to problem");
    return -1;
  }
  uint64_t word = VarWordOf(o);
  if (word == 0) {
    PyErr_SetString(ModelError, "Variable is not initialized");
    return -1;
  }
  int type = VarTypeCode(word);
  if (type < 0 || type > 5) {
    PyErr_SetString(ModelError,
                    "Invalid variable type: should be one of zorvan.binary, zorvan.continuous, "
                    "etc.");
    return -1;
  }
  // Recorded now; undone below if the column fails.
  if (RecordIndex(p->colmap, VarId(word), col, "Variable already added to problem") < 0)
    return -1;
  if (RecordColumn(p, o, word, type, col, batch) < 0) {
    p->colmap->Erase(VarId(word));
    return -1;
  }
  return 0;
}

int SendColumns(ProblemObject *p, int first, const ColumnBatch &batch, bool *added) {
  const int n = static_cast<int>(batch.lb.size());
  ZRVSprob prob = p->prob;
  // No objective coefficients and no matrix entries yet.
  int rc = CallUnlocked(ZRVSaddcols64, prob, n, int64_t{0}, static_cast<const double *>(nullptr),
                        static_cast<const int64_t *>(nullptr), static_cast<const int *>(nullptr),
                        static_cast<const double *>(nullptr), batch.lb.data(), batch.ub.data());
  if (rc != 0) return -1;
  *added = true;
  if (!batch.type_cols.empty())
    rc = CallUnlocked(ZRVSchgcoltype, prob, static_cast<int>(batch.type_cols.size()),
                      static_cast<const int *>(batch.type_cols.data()), batch.types.data());
  if (rc == 0)
    rc = CallUnlocked(ZRVSaddnames, prob, 2, batch.names.data(), first, first + n - 1);
  if (rc == 0 && !batch.limit_cols.empty())
    rc = CallUnlocked(ZRVSchgglblimit, prob, static_cast<int>(batch.limit_cols.size()),
                      batch.limit_cols.data(), batch.limits.data());
  if (rc == 0 && !batch.bound_cols.empty())
    rc = CallUnlocked(ZRVSchgbounds, prob, static_cast<int>(batch.bound_cols.size()),
                      batch.bound_cols.data(), batch.bound_types.data(),
                      batch.bound_values.data());
  return rc == 0 ? 0 : -1;
}

}  // namespace

namespace {

int AddColumns(ProblemObject *p, PyObject *const *items, Py_ssize_t n) {
  int first = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &first) < 0) return -1;
  if (n > INT32_MAX - first) {
    PyErr_SetString(ModelError, "Too many variables for one problem");
    return -1;
  }
  const Py_ssize_t listed = PyList_GET_SIZE(p->varlist);
  ColumnBatch batch;
  batch.lb.reserve(static_cast<size_t>(n));
  batch.ub.reserve(static_cast<size_t>(n));
  batch.names.reserve(static_cast<size_t>(n) * 8);
  for (Py_ssize_t i = 0; i < n; ++i) {
    if (Record(p, items[i], first + static_cast<int>(i), batch) < 0) {
      ForgetTail(p, ModelObjectKind::Variable, listed);
      return -1;
    }
  }
  bool added = false;
  if (SendColumns(p, first, batch, &added) < 0) {
    PyObject *self = reinterpret_cast<PyObject *>(p);
    ReportError(self, nullptr);
    if (added) {
      std::vector<int> cols(batch.lb.size());
      for (size_t j = 0; j < cols.size(); ++j) cols[j] = first + static_cast<int>(j);
      CallUnlocked(ZRVSdelcols, p->prob, static_cast<int>(cols.size()),
                   static_cast<const int *>(cols.data()));
    }
    ForgetTail(p, ModelObjectKind::Variable, listed);
    return -1;
  }
  return 0;
}

}  // namespace

int AddVariableBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n) {
  if (NotInitialized(p)) return -1;
  if (n <= 0) return 0;
  // New columns go before the transfer column of a nonlinear objective.
  DetachedTransfer transfer;
  if (DetachTransfer(p, transfer) < 0) return -1;
  int rc = AddColumns(p, items, n);
  return ReattachTransfer(p, transfer) < 0 ? -1 : rc;
}

PyObject *ProblemAddVariable(PyObject *self, PyObject *args) {
  return AddFlattened(self, args, "addVariable", AddVariableBatch);
}

const char AddVariableDoc[] = ZRV_HELP(
    "Add variables to the problem as new columns.",
    "p.addVariable(v1, v2, ...)",
    "Any number of variables, or lists, tuples, dictionaries (their values), generators or "
    "other iterables of them, nested to any depth up to 32 levels.",
    "x = zorvan.var(ub=10)\n    y = [zorvan.var(name=f'y{i}') for i in range(5)]\n"
    "    p.addVariable(x, y)",
    "All variables of one call are added together with their bounds, types, thresholds and "
    "names. A variable belongs to a problem only through the problem's records: it may be "
    "added to several problems, but only once to each. When a variable is refused, none of "
    "the call is added.",
    "problem.addConstraint, problem.delVariable, problem.getVariable, problem.getIndex, var");

}  // namespace zrv
