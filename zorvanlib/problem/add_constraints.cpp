// problem.addConstraint and problem.addIndicator: constraints become rows,
// all rows of one call in one engine call.
#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "problem/arguments.h"
#include "model/constraint.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/text.h"
#include "base/types.h"
#include "problem/add_objects.h"
#include "problem/formula_batch.h"
#include "problem/objective_transfer.h"
#include "problem/solve_guard.h"
#include "problem/terms.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

constexpr uint64_t kConNameStored = uint64_t{1} << 63;

// A chunk of the rows of one call, laid out as the engine takes them.
// Large calls go to the engine in chunks of bounded size: the chunk's
// arrays are reused, so they stay in cache instead of growing into a copy
// of the whole matrix beside the engine's own.
struct RowBatch {
  static constexpr size_t kChunkEntries = size_t{1} << 16;
  static constexpr size_t kChunkRows = size_t{1} << 14;

  std::vector<char> type;
  std::vector<double> rhs, range;
  std::vector<int64_t> start{0};
  std::vector<int> cols;
  std::vector<double> coefs;
  std::string names;
  // Quadratic parts: the row (offset in the chunk) and its entries.
  std::vector<int> qrows;
  std::vector<size_t> qstart;  // offsets into q1/q2/qv, one past each row's last
  std::vector<int> q1, q2;
  std::vector<double> qv;

  int rows() const { return static_cast<int>(type.size()); }
  bool Full() const { return cols.size() >= kChunkEntries || type.size() >= kChunkRows; }
  void Clear() {
    type.clear(), rhs.clear(), range.clear(), cols.clear(), coefs.clear(), names.clear();
    start.assign(1, 0);
    qrows.clear(), qstart.clear(), q1.clear(), q2.clear(), qv.clear();
  }
};

// Row entries into the batch. The engine adds v to Q[i][j] and Q[j][i]: a
// product c x_i x_j (i != j) is the entry c/2, a square c x_i^2 the entry c.
struct RowTerms {
  RowBatch &b;
  int Linear(int col, double coef) {
    b.cols.push_back(col);
    b.coefs.push_back(coef);
    return 0;
  }
  int Quadratic(int i, int j, double coef) {
    b.q1.push_back(i);
    b.q2.push_back(j);
    b.qv.push_back(i == j ? coef : 0.5 * coef);
    return 0;
  }
};

const BodyRules kRowRules = {
    true,
    "Nonlinear constraints need the nonlinear library, which could not be started",
    "Invalid constraint body"};

int AppendName(uint64_t word, std::string &names) {
  if (!(word & kConNameStored)) {
    AppendDefaultName('R', ConId(word), names);
    return 0;
  }
  PyObject *name = ConGetName(word);
  if (!name) return -1;
  PyObject *text = PyBytes_Check(name) ? (Py_INCREF(name), name) : PyObject_Str(name);
  Py_DECREF(name);
  if (!text) return -1;
  Py_ssize_t len = 0;
  const char *s = PyBytes_Check(text) ? PyBytes_AS_STRING(text)
                                      : PyUnicode_AsUTF8AndSize(text, &len);
  if (PyBytes_Check(text)) len = PyBytes_GET_SIZE(text);
  if (s && CheckNameText(s, len, "constraint", text) < 0) s = nullptr;
  if (s) {
    names.append(s, static_cast<size_t>(len));
    names += '\0';
  }
  Py_DECREF(text);
  return s ? 0 : -1;
}

// The bounds of constraints items[0..n-1] into bounds[2k], bounds[2k+1]
// (anything else gets no bounds; Record refuses it). The bounds of most
// rows sit in the module's maps at scattered places: one tight loop over
// many rows lets the processor wait for many of them at once.
void FetchBounds(PyObject *const *items, size_t n, double *bounds) {
  for (size_t k = 0; k < n; ++k) {
    double lb = -kInfinity, ub = kInfinity;
    if (Py_TYPE(items[k]) == &ConstraintType) {
      uint64_t word = reinterpret_cast<ConstraintObject *>(items[k])->word;
      lb = ConGetLb(word);
      ub = ConGetUb(word);
    }
    bounds[2 * k] = lb;
    bounds[2 * k + 1] = ub;
  }
}

// Checks one constraint with bounds lb..ub and adds it to the batch as row
// `row` of the problem.
int Record(ProblemObject *p, PyObject *o, double lb, double ub, int row, RowBatch &b,
           FormulaBatch &f) {
  if (Py_TYPE(o) != &ConstraintType) {
    PyErr_SetString(ModelError, "Invalid constraint");
    return -1;
  }
  auto *c = reinterpret_cast<ConstraintObject *>(o);
  if (!c->body || c->body == Py_None) {
    PyErr_SetString(ModelError, "Stale expression link, cannot add constraint");
    return -1;
  }
  // Recorded now; undone below if the row fails.
  uint64_t id = ConId(c->word);
  if (RecordIndex(p->rowmap, id, row, "Constraint already added to problem") < 0) return -1;
  const size_t qbefore = b.qv.size(), lbefore = b.cols.size();
  const int fbefore = f.count();
  double constant;
  RowTerms terms{b};
  if (DecomposeBody(p->colmap, c->body, kRowRules, terms, &constant, f.Body()) < 0 ||
      AppendName(c->word, b.names) < 0 ||
      PyList_Append(p->conlist, o) < 0) {
    p->rowmap->Erase(id);
    // The failed row's entries must not reach the engine with the next row.
    b.cols.resize(lbefore), b.coefs.resize(lbefore);
    b.q1.resize(qbefore), b.q2.resize(qbefore), b.qv.resize(qbefore);
    f.Truncate(fbefore);
    return -1;
  }
  f.AssignRow(row);
  if (b.qv.size() > qbefore) {
    b.qrows.push_back(b.rows());
    b.qstart.push_back(b.qv.size());
  }
  char type = 'N';
  double rhs = 0.0, range = 0.0;
  if (lb > -kInfinity) {
    if (ub >= kInfinity) {
      type = 'G';
      rhs = lb - constant;
    } else if (lb == ub) {
      type = 'E';
      rhs = lb - constant;
    } else {
      type = 'R';
      rhs = ub - constant;
      range = ub - lb;
    }
  } else if (ub < kInfinity) {
    type = 'L';
    rhs = ub - constant;
  }
  b.type.push_back(type);
  b.rhs.push_back(rhs);
  b.range.push_back(range);
  b.start.push_back(static_cast<int64_t>(b.cols.size()));
  return 0;
}

// Rows lie scattered in memory (constraint, body, the body's entries):
// ask for the pieces of later rows in stages, each stage reading only what
// an earlier one has brought in.
void PrefetchRow(PyObject *const *items, Py_ssize_t n, Py_ssize_t i) {
  if (i + 12 < n) __builtin_prefetch(items[i + 12]);
  if (i + 8 < n && Py_TYPE(items[i + 8]) == &ConstraintType) {
    PyObject *body = reinterpret_cast<ConstraintObject *>(items[i + 8])->body;
    if (body) __builtin_prefetch(body);
  }
  if (i + 4 < n && Py_TYPE(items[i + 4]) == &ConstraintType) {
    PyObject *body = reinterpret_cast<ConstraintObject *>(items[i + 4])->body;
    if (body && Py_TYPE(body) == &ExpressionType) {
      const void *entries = AsExpression(body)->linear.Storage();
      if (entries) __builtin_prefetch(entries);
    }
  }
}

// Sends the chunk as rows first.. of the problem; *sent counts the rows
// that reached the engine (to be taken back if anything fails).
int SendRows(ProblemObject *p, int first, const RowBatch &b, int *sent) {
  ZRVSprob prob = p->prob;
  const int n = b.rows();
  if (n == 0) return 0;
  int rc = CallUnlocked(ZRVSaddrows64, prob, n, static_cast<int64_t>(b.cols.size()),
                        b.type.data(), b.rhs.data(), b.range.data(), b.start.data(),
                        b.cols.data(), b.coefs.data());
  if (rc != 0) return -1;
  *sent += n;
  rc = CallUnlocked(ZRVSaddnames, prob, 1, b.names.data(), first, first + n - 1);
  size_t from = 0;
  for (size_t k = 0; rc == 0 && k < b.qrows.size(); ++k) {
    size_t to = b.qstart[k];
    rc = CallUnlocked(ZRVSaddqmatrix64, prob, first + b.qrows[k], static_cast<int64_t>(to - from),
                      b.q1.data() + from, b.q2.data() + from, b.qv.data() + from);
    from = to;
  }
  return rc == 0 ? 0 : -1;
}

// Takes the first `sent` rows of the call back out of the engine, keeping
// the error already raised.
void TakeBack(ProblemObject *p, int first, int sent) {
  if (sent <= 0) return;
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  std::vector<int> rows(static_cast<size_t>(sent));
  for (size_t k = 0; k < rows.size(); ++k) rows[k] = first + static_cast<int>(k);
  CallUnlocked(ZRVSdelrows, p->prob, sent, static_cast<const int *>(rows.data()));
  PyErr_Restore(type, value, traceback);
}

}  // namespace

namespace {

int AddRows(ProblemObject *p, PyObject *const *items, Py_ssize_t n, int *first_row) {
  int first = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALROWS, &first) < 0) return -1;
  if (first_row) *first_row = first;
  if (n <= 0) return 0;
  if (n > INT32_MAX - first) {
    PyErr_SetString(ModelError, "Too many constraints for one problem");
    return -1;
  }
  const Py_ssize_t listed = PyList_GET_SIZE(p->conlist);
  // The engine makes room for all rows and linear entries at once, so that
  // the chunks do not regrow its arrays.
  int64_t entries = 0;
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *body = Py_TYPE(items[i]) == &ConstraintType
                         ? reinterpret_cast<ConstraintObject *>(items[i])->body
                         : nullptr;
    if (body && Py_TYPE(body) == &ExpressionType)
      entries += static_cast<int64_t>(AsExpression(body)->linear.Raw().size());
  }
  if (CallUnlocked(ZRVSreserve, p->prob, static_cast<int>(n), 0, entries) != 0) {
    ReportError(reinterpret_cast<PyObject *>(p), nullptr);
    return -1;
  }
  RowBatch b;
  const size_t chunk_rows = std::min(static_cast<size_t>(n), RowBatch::kChunkRows);
  const size_t chunk_entries = std::min(static_cast<size_t>(entries), RowBatch::kChunkEntries);
  try {
    b.type.reserve(chunk_rows);
    b.rhs.reserve(chunk_rows);
    b.range.reserve(chunk_rows);
    b.start.reserve(chunk_rows + 1);
    b.names.reserve(chunk_rows * 8);
    // A chunk ends after the row that fills it: room for one long row more.
    b.cols.reserve(chunk_entries + 256);
    b.coefs.reserve(chunk_entries + 256);
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  constexpr size_t kBoundsAhead = 512;
  double bounds[2 * kBoundsAhead];
  int sent = 0;  // rows already in the engine
  FormulaBatch formulas(p);
  for (Py_ssize_t i = 0; i < n; ++i) {
    const size_t k = static_cast<size_t>(i) % kBoundsAhead;
    if (k == 0)
      FetchBounds(items + i, std::min(kBoundsAhead, static_cast<size_t>(n - i)), bounds);
    PrefetchRow(items, n, i);
    int rc =
        Record(p, items[i], bounds[2 * k], bounds[2 * k + 1], first + static_cast<int>(i), b,
               formulas);
    if (rc == 0 && (b.Full() || i + 1 == n)) {
      rc = SendRows(p, first + sent, b, &sent);
      if (rc < 0) ReportError(reinterpret_cast<PyObject *>(p), nullptr);
      b.Clear();
    }
    // All formulas of the call go to the engine in one call, after the rows.
    if (rc == 0 && i + 1 == n && formulas.count() > 0) {
      rc = formulas.Send();
      if (rc == 0) ++p->nl_constraints;
    }
    if (rc < 0) {
      TakeBack(p, first, sent);
      ForgetTail(p, ModelObjectKind::Constraint, listed);
      return -1;
    }
  }
  return 0;
}

}  // namespace

int AddConstraintBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n, int *first_row) {
  if (NotInitialized(p)) return -1;
  // New rows go before the transfer row of a nonlinear objective.
  DetachedTransfer transfer;
  if (n > 0 && DetachTransfer(p, transfer) < 0) return -1;
  int rc = AddRows(p, items, n, first_row);
  return ReattachTransfer(p, transfer) < 0 ? -1 : rc;
}

PyObject *ProblemAddConstraint(PyObject *self, PyObject *args) {
  return AddFlattened(self, args, "addConstraint",
                      [](ProblemObject *p, PyObject *const *items, Py_ssize_t n) {
                        return AddConstraintBatch(p, items, n);
                      });
}

// ---------------------------------------------------------------------------
// Indicators

namespace {

constexpr char kIndicatorUsage[] =
    "Invalid declaration of indicator constraints. Use p.addIndicator(b == 1, x + y <= 4) for "
    "one, or p.addIndicator((b == 1, x + y <= 4), (c == 0, x >= 2)) for several, where b and "
    "c are binary variables of the problem.";

// The indicator column and flag (1: b == 1, -1: b == 0) of a condition.
int Condition(ProblemObject *p, PyObject *cond, int *col, int *flag) {
  if (Py_TYPE(cond) != &ConstraintType) {
    PyErr_SetString(ModelError, "Invalid declaration of indicator constraints.");
    return -1;
  }
  auto *c = reinterpret_cast<ConstraintObject *>(cond);
  PyObject *body = c->body;
  PyObject *var = nullptr;
  double coef = 1.0, constant = 0.0;
  switch (body ? KindOf(body) : KindInvalid) {
    case KindVar: var = body; break;
    case KindLinTerm:
      var = reinterpret_cast<LinTermObject *>(body)->var;
      coef = reinterpret_cast<LinTermObject *>(body)->coef;
      break;
    case KindQuadTerm:
      PyErr_SetString(ModelError,
                      "Invalid condition for indicator constraints: it cannot contain a "
                      "quadratic expression");
      return -1;
    case KindExpression: {
      if (!ExpressionQuadratic(body).empty()) {
        PyErr_SetString(ModelError,
                        "Invalid condition for indicator constraints: it cannot contain a "
                        "quadratic expression");
        return -1;
      }
      const LinearEntries &lin = ExpressionLinear(body);
      if (lin.size() != 1) {
        PyErr_SetString(ModelError,
                        "Invalid condition for indicator constraints: there must be exactly "
                        "one variable");
        return -1;
      }
      var = lin[0].var;
      coef = lin[0].coef;
      constant = AsExpression(body)->constant;
      break;
    }
    default:
      PyErr_SetString(ModelError, "Invalid condition for indicator constraints: must be a variable");
      return -1;
  }
  double lb = ConGetLb(c->word) - constant, ub = ConGetUb(c->word) - constant;
  if (lb != ub || (lb != 0.0 && lb != 1.0)) {
    PyErr_SetString(ModelError,
                    "Invalid condition for indicator constraints: must be <variable_name> == 0 "
                    "or <variable_name> == 1");
    return -1;
  }
  int32_t indcol = p->colmap->Find(VarIdOf(var));
  if (indcol == IndexMap::kAbsent) {
    PyErr_SetString(ModelError, "Indicator variable has not been added to problem yet");
    return -1;
  }
  if (coef != 1.0) {
    PyErr_SetString(ModelError, "Indicator variable must have coefficient 1");
    return -1;
  }
  if (VarTypeCode(VarWordOf(var)) != 1) {
    PyErr_SetString(ModelError,
                    "Invalid indicator expression. Must be var==0 or var==1, where var is a "
                    "binary variable");
    return -1;
  }
  *col = indcol;
  *flag = lb == 1.0 ? 1 : -1;
  return 0;
}

int CheckIndicated(PyObject *con) {
  if (Py_TYPE(con) != &ConstraintType) {
    PyErr_SetString(ModelError, "Invalid constraint assigned to indicator");
    return -1;
  }
  PyObject *body = reinterpret_cast<ConstraintObject *>(con)->body;
  if (body && KindOf(body) == KindNonlinear) {
    PyErr_SetString(ModelError, "Nonlinear indicator constraints are not allowed");
    return -1;
  }
  return 0;
}

}  // namespace

PyObject *ProblemAddIndicator(PyObject *self, PyObject *args) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "addIndicator")) return nullptr;
  // Pairs (condition, constraint): either the two arguments themselves or
  // one tuple of two per indicator.
  std::vector<PyObject *> conditions, constraints;  // borrowed from args
  Py_ssize_t nargs = PyTuple_GET_SIZE(args);
  bool tuples = nargs > 0;
  for (Py_ssize_t i = 0; i < nargs && tuples; ++i)
    tuples = PyTuple_Check(PyTuple_GET_ITEM(args, i));
  if (tuples) {
    for (Py_ssize_t i = 0; i < nargs; ++i) {
      PyObject *pair = PyTuple_GET_ITEM(args, i);
      if (PyTuple_GET_SIZE(pair) != 2) {
        PyErr_SetString(ModelError, "Invalid declaration of indicator constraints.");
        return nullptr;
      }
      conditions.push_back(PyTuple_GET_ITEM(pair, 0));
      constraints.push_back(PyTuple_GET_ITEM(pair, 1));
    }
  } else if (nargs == 2) {
    conditions.push_back(PyTuple_GET_ITEM(args, 0));
    constraints.push_back(PyTuple_GET_ITEM(args, 1));
  } else {
    PyErr_SetString(ModelError, kIndicatorUsage);
    return nullptr;
  }
  const size_t n = conditions.size();
  std::vector<int> cols(n), flags(n), rows(n);
  for (size_t k = 0; k < n; ++k) {
    if (Condition(p, conditions[k], &cols[k], &flags[k]) < 0) return nullptr;
    if (CheckIndicated(constraints[k]) < 0) return nullptr;
  }
  int first = 0;
  if (AddConstraintBatch(p, constraints.data(), static_cast<Py_ssize_t>(n), &first) < 0)
    return nullptr;
  for (size_t k = 0; k < n; ++k) rows[k] = first + static_cast<int>(k);
  if (CallUnlocked(ZRVSsetindicators, p->prob, static_cast<int>(n),
                   static_cast<const int *>(rows.data()), static_cast<const int *>(cols.data()),
                   static_cast<const int *>(flags.data())) != 0) {
    ReportError(self, nullptr);
    DeleteIndices(p, ModelObjectKind::Constraint, rows);
    return nullptr;
  }
  Py_RETURN_NONE;
}

const char AddConstraintDoc[] = ZRV_HELP(
    "Add constraints to the problem as new rows.",
    "p.addConstraint(c1, c2, ...)",
    "Any number of constraints, or lists, tuples, dictionaries (their values), generators or "
    "other iterables of them, nested to any depth up to 32 levels.",
    "p.addConstraint(x + 2 * y <= 6, (x - z >= i for i in range(3)))",
    "All constraints of one call are handed to the solver together. A constraint's constant "
    "moves to the right-hand side: a lower bound only gives a row of type G, an upper bound "
    "only L, equal bounds E, two different bounds a range R, no bound a free row N. Its name "
    "(its own or R<identifier>) becomes the row name. Every variable of the body must be in "
    "the problem. Quadratic bodies are passed as they are; a nonlinear body is split into "
    "its linear and quadratic parts and formulas (one per nonlinear term of a sum). When a constraint is refused, none of the call is added.",
    "problem.addVariable, problem.addIndicator, problem.delConstraint, "
    "problem.getConstraint, constraint");

const char AddIndicatorDoc[] = ZRV_HELP(
    "Add constraints that must hold only when a binary variable takes a given value.",
    "p.addIndicator(condition, constraint)\n    p.addIndicator((cond1, con1), (cond2, con2), "
    "...)",
    "condition: b == 1 or b == 0 for a binary variable b of the problem; constraint: a linear "
    "or quadratic constraint not yet in the problem.",
    "b = zorvan.var(vartype=zorvan.binary)\n    p.addVariable(b, x)\n"
    "    p.addIndicator(b == 1, x <= 10)",
    "The constraint is added as a new row, as with addConstraint, and marked as indicated by "
    "b: it must hold when b is 1 (for b == 1) or 0 (for b == 0). The solver needs finite "
    "bounds on the row's variables.",
    "problem.addConstraint, problem.addVariable");

}  // namespace zrv
