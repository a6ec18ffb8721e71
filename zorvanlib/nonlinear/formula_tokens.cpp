// Writing nonlinear trees as formula tokens, and the bound on their size
// that is reserved before writing.
#include "nonlinear/formula_tokens.h"

#include "base/globals.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "nonlinear/nonlinear_internal.h"

namespace zrv {

namespace {

// Levels of a formula below its root that are written; deeper trees are
// refused (the engine's own recursion is bounded the same way).
constexpr int kFormulaDepth = 64;

const char kTooDeep[] =
    "The expression tree depth reached the maximum limit, please reformulate or simplify the "
    "expression";

int Fail(const char *text) {
  PyErr_SetString(ModelError, text);
  return -1;
}

// Built-in function numbers (token type 12) by operator code; 0 for the
// operators that are not functions.
int FunctionNumber(int op) {
  switch (op) {
    case OpExp: return 16;
    case OpLog: return 15;
    case OpLog10: return 14;
    case OpSin: return 27;
    case OpCos: return 28;
    case OpTan: return 29;
    case OpAsin: return 30;
    case OpAcos: return 31;
    case OpAtan: return 32;
    case OpMax: return 34;
    case OpMin: return 33;
    case OpAbs: return 17;
    case OpSign: return 46;
    case OpErf: return 49;
    case OpErfc: return 50;
    case OpSqrt: return 18;
    // On binary values "and" is the minimum and "or" the maximum.
    case OpAnd: return 33;
    case OpOr: return 34;
    case OpPwl: return 35;
    default: return 0;
  }
}

bool IsUserOp(int op) {
  return op == OpUserNoDerivatives || op == OpUserDerivatives || op == OpUserDerivativesOnDemand;
}

// The operands of a node, borrowed. Unary: the one operand; binary: the
// pair; n-ary: the list or tuple's items.
int Operands(PyObject *node, std::vector<PyObject *> &items) {
  PyObject *args = NodeArgs(node);
  const int op = NodeOp(node);
  if (op < 0 || op >= OpCount) return Fail("Unrecognized member of a nonlinear expression");
  items.clear();
  switch (kOperators[op].arity) {
    case 1:
      if (!args) return Fail("Unrecognized member of a nonlinear expression");
      items.push_back(args);
      return 0;
    case 2:
      if (!args || !PyTuple_Check(args) || PyTuple_GET_SIZE(args) != 2)
        return Fail("Binary operator should have tuple for arguments");
      items.push_back(PyTuple_GET_ITEM(args, 0));
      items.push_back(PyTuple_GET_ITEM(args, 1));
      return 0;
    default: {
      if (!args || !(PyList_Check(args) || PyTuple_Check(args)))
        return Fail("N-ary operator should have list or tuple of arguments");
      const Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
      PyObject **raw = PySequence_Fast_ITEMS(args);
      items.assign(raw, raw + n);
      return 0;
    }
  }
}

int Estimate(PyObject *o, int budget, size_t *n) {
  if (budget < 1) return Fail(kTooDeep);
  switch (KindOf(o)) {
    case KindNumber:
    case KindVar: *n += 1; return 0;
    case KindLinTerm: *n += 3; return 0;
    case KindQuadTerm: *n += 5; return 0;
    case KindExpression: {
      size_t k = AsExpression(o)->constant != 0.0 ? 2 : 0;
      k += 4 * ExpressionLinear(o).size() + 6 * ExpressionQuadratic(o).size();
      *n += k > 1 ? k - 1 : 1;
      return 0;
    }
    case KindNonlinear: break;
    default:
      if (PyCallable_Check(o)) {
        *n += 1;
        return 0;
      }
      return Fail("Unrecognized member of a nonlinear expression");
  }
  std::vector<PyObject *> items;
  if (Operands(o, items) < 0) return -1;
  const int op = NodeOp(o);
  for (PyObject *item : items)
    if (Estimate(item, budget - 1, n) < 0) return -1;
  switch (kOperators[op].arity) {
    case 1: *n += PyCallable_Check(items[0]) && !IsNonlinear(items[0]) ? 3 : 2; break;
    case 2: *n += 1; break;
    default:
      if (op == OpSum || op == OpProduct) *n += items.size() + 1;
      else if (FunctionNumber(op) != 0) *n += 2 * items.size() + 2;
      else *n += 2;
  }
  return 0;
}

class Writer {
 public:
  Writer(const FormulaContext &ctx, FormulaTokens &out) : ctx_(ctx), out_(out) {}

  int Any(PyObject *o, int budget) {
    if (budget < 1) return Fail(kTooDeep);
    return IsNonlinear(o) ? Node(o, budget) : Leaf(o);
  }

  // Operands joined by an associative operator as a balanced binary tree:
  // after operand i (from 1), one operator per trailing zero bit of i; the
  // rest after the last, n - 1 in all. a b c d gives a b + c d + +.
  template <class Write>
  int Balanced(size_t n, int op, double empty, Write write) {
    if (n == 0) {
      out_.Push(kTokConstant, empty);
      return 0;
    }
    size_t written = 0;
    for (size_t i = 1; i <= n; ++i) {
      if (write(i - 1) < 0) return -1;
      for (size_t k = i; (k & 1) == 0; k >>= 1, ++written) out_.Push(kTokOperator, op);
    }
    for (; written + 1 < n; ++written) out_.Push(kTokOperator, op);
    return 0;
  }

  int Node(PyObject *node, int budget) {
    std::vector<PyObject *> items;
    if (Operands(node, items) < 0) return -1;
    const int op = NodeOp(node);
    const int below = budget - 1;
    auto each = [&](size_t i) { return Any(items[i], below); };
    switch (op) {
      case OpSum: return Balanced(items.size(), kOpPlus, 0.0, each);
      case OpProduct: return Balanced(items.size(), kOpTimes, 1.0, each);
      case OpUminus:
        if (Any(items[0], below) < 0) return -1;
        out_.Push(kTokOperator, kOpNegate);
        return 0;
      default: break;
    }
    const bool arithmetic = op == OpMinus || op == OpDivide || op == OpPower;
    if (!(arithmetic && items.size() == 2)) out_.Push(kTokArgStart, 0.0);
    int index = 0;
    if (op == OpPwl) {
      for (size_t i = items.size(); i-- > 0;)
        if (Any(items[i], below) < 0) return -1;
    } else if (IsUserOp(op)) {
      if (items.empty() || !PyCallable_Check(items[0]) || IsNonlinear(items[0]))
        return Fail("First argument of a user() operator must be the function itself");
      if (!ctx_.users)
        return Fail("User functions need the nonlinear library, which is not started");
      if (ctx_.users->IndexOf(NodeArgs(node), op, &index) < 0) return -1;
      for (size_t i = items.size(); i-- > 1;)
        if (Any(items[i], below) < 0) return -1;
    } else {
      for (PyObject *item : items)
        if (Any(item, below) < 0) return -1;
    }
    switch (op) {
      case OpMinus: out_.Push(kTokOperator, kOpMinus); break;
      case OpDivide: out_.Push(kTokOperator, kOpDivide); break;
      case OpPower: out_.Push(kTokOperator, kOpPower); break;
      default:
        if (IsUserOp(op)) out_.Push(kTokUser, index);
        else out_.Push(kTokFunction, FunctionNumber(op));
    }
    return 0;
  }

  int Column(PyObject *var, const char *missing, int *col) {
    int32_t found = ctx_.columns ? ctx_.columns->Find(VarIdOf(var)) : IndexMap::kAbsent;
    if (found == IndexMap::kAbsent) return Fail(missing);
    *col = found;
    return 0;
  }

  // c * x (y null) or c * x * y.
  int Term(double c, PyObject *x, PyObject *y) {
    static const char kMissing[] = "Variable in nonlinear expression has not been added to problem yet";
    int cx = 0, cy = 0;
    if (Column(x, kMissing, &cx) < 0 || (y && Column(y, kMissing, &cy) < 0)) return -1;
    const bool scaled = c != 1.0 && c != -1.0;
    if (scaled) out_.Push(kTokConstant, c);
    out_.Push(kTokColumn, cx);
    if (y) {
      out_.Push(kTokColumn, cy);
      out_.Push(kTokOperator, kOpTimes);
    }
    if (c == -1.0) out_.Push(kTokOperator, kOpNegate);
    else if (scaled) out_.Push(kTokOperator, kOpTimes);
    return 0;
  }

  int Leaf(PyObject *o) {
    switch (KindOf(o)) {
      case KindNumber: {
        double v = NumberValue(o);
        if (v == -1.0 && PyErr_Occurred()) return -1;
        out_.Push(kTokConstant, v);
        return 0;
      }
      case KindVar: {
        int col = 0;
        if (Column(o, "Variable in nonlinear part of constraint has not been added to problem yet",
                   &col) < 0)
          return -1;
        out_.Push(kTokColumn, col);
        return 0;
      }
      case KindLinTerm: {
        auto *t = reinterpret_cast<LinTermObject *>(o);
        return Term(t->coef, t->var, nullptr);
      }
      case KindQuadTerm: {
        auto *t = reinterpret_cast<QuadTermObject *>(o);
        return Term(t->coef, t->var1, t->var2);
      }
      case KindExpression: {
        const double constant = AsExpression(o)->constant;
        const LinearEntries &lin = ExpressionLinear(o);
        const QuadraticEntries &quad = ExpressionQuadratic(o);
        const size_t first = constant != 0.0 ? 1 : 0;
        const size_t n = first + lin.size() + quad.size();
        return Balanced(n, kOpPlus, 0.0, [&](size_t i) {
          if (i < first) {
            out_.Push(kTokConstant, constant);
            return 0;
          }
          i -= first;
          if (i < lin.size()) return Term(lin[i].coef, lin[i].var, nullptr);
          const QuadEntry &q = quad[i - lin.size()];
          return Term(q.coef, q.var1, q.var2);
        });
      }
      default: return Fail("Incorrect argument of nonlinear function");
    }
  }

  // The root: a product gives its first variable factor as the formula's
  // column and its number factors to the factor; the other factors are
  // the formula.
  int Root(PyObject *tree, double *factor, int *col) {
    *col = ctx_.reserved_column >= 0 ? ctx_.reserved_column : kNoFormulaColumn;
    if (!IsNode(tree, OpProduct)) return Any(tree, kFormulaDepth);
    std::vector<PyObject *> items;
    if (Operands(tree, items) < 0) return -1;
    std::vector<PyObject *> rest;
    bool have_column = false;
    for (PyObject *item : items) {
      const OperandKind kind = KindOf(item);
      if (kind == KindVar && !have_column) {
        if (Column(item, "Variable in nonlinear term not added to problem yet", col) < 0) return -1;
        have_column = true;
      } else if (kind == KindNumber) {
        double v = NumberValue(item);
        if (v == -1.0 && PyErr_Occurred()) return -1;
        *factor *= v;
      } else {
        rest.push_back(item);
      }
    }
    if (!have_column) *col = ctx_.reserved_column >= 0 ? ctx_.reserved_column : kNoFormulaColumn;
    return Balanced(rest.size(), kOpTimes, 1.0,
                    [&](size_t i) { return Any(rest[i], kFormulaDepth - 1); });
  }

 private:
  const FormulaContext &ctx_;
  FormulaTokens &out_;
};

}  // namespace

void FormulaTokens::Reserve(size_t more) {
  const size_t needed = type_.size() + more;
  if (capacity_ == 0) capacity_ = kInitialCapacity;
  while (capacity_ < needed) capacity_ *= 2;
  type_.reserve(capacity_);
  value_.reserve(capacity_);
}

void FormulaTokens::Truncate(int from) {
  if (from < 0 || from >= count()) {
    DropOpen();
    return;
  }
  const size_t f = static_cast<size_t>(from);
  type_.resize(static_cast<size_t>(start_[f]));
  value_.resize(static_cast<size_t>(start_[f]));
  col_.resize(f);
  factor_.resize(f);
  start_.resize(f + 1);
}

int EstimateTokens(PyObject *tree, size_t *n) {
  *n = 0;
  return Estimate(tree, kFormulaDepth, n);
}

int WriteFormula(PyObject *tree, double factor, const FormulaContext &ctx, FormulaTokens &out) {
  size_t estimate = 0;
  if (EstimateTokens(tree, &estimate) < 0) return -1;
  try {
    out.Reserve(estimate + 1);
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  Writer writer(ctx, out);
  int col = kNoFormulaColumn;
  if (writer.Root(tree, &factor, &col) < 0) {
    out.DropOpen();
    return -1;
  }
  out.Close(col, factor);
  return 0;
}

}  // namespace zrv
