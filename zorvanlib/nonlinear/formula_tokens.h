// Nonlinear trees written as the engine's formulas: tokens (type, value) in
// reverse Polish order, one formula per term, each with the column that
// multiplies it and a factor. The problem's adders hand these arrays to the
// nonlinear companion in one call per batch.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstddef>
#include <new>
#include <vector>

#include "base/index_map.h"

namespace zrv {

// Token types of the engine's formula form.
enum TokenType : int {
  kTokEnd = 0,         // end of a formula, value 0
  kTokConstant = 1,    // value: the number
  kTokColumn = 10,     // value: the column index
  kTokUser = 11,       // value: index of a registered user function
  kTokFunction = 12,   // value: built-in function number
  kTokArgStart = 22,   // start of a function's argument list, value 0
  kTokOperator = 31,   // value: operator number
};

// Operator numbers (token type 31).
enum TokenOperator : int {
  kOpNegate = 1,
  kOpPower = 2,
  kOpTimes = 3,
  kOpDivide = 4,
  kOpPlus = 5,
  kOpMinus = 6,
};

// The column given to a formula that no column multiplies.
constexpr int kNoFormulaColumn = -1000;

// Formulas written so far: per formula its column, factor and first token;
// the tokens of all formulas, each formula ended by a kTokEnd token.
class FormulaTokens {
 public:
  static constexpr size_t kInitialCapacity = 256;

  FormulaTokens() { start_.push_back(0); }

  int count() const { return static_cast<int>(col_.size()); }
  size_t tokens() const { return type_.size(); }
  // Room for tokens: 256 at first, then doubled as often as needed.
  size_t capacity() const { return capacity_; }
  const int *col() const { return col_.data(); }
  const double *factor() const { return factor_.data(); }
  const int *start() const { return start_.data(); }
  const int *type() const { return type_.data(); }
  const double *value() const { return value_.data(); }

  // Makes room for `more` tokens beyond those written (growth rule above).
  void Reserve(size_t more);
  void Push(int type, double value) {
    type_.push_back(type);
    value_.push_back(value);
  }
  // Ends the formula begun after the last one ended.
  void Close(int col, double factor) {
    Push(kTokEnd, 0.0);
    col_.push_back(col);
    factor_.push_back(factor);
    start_.push_back(static_cast<int>(type_.size()));
  }
  // Forgets the tokens written after the last complete formula.
  void DropOpen() {
    type_.resize(static_cast<size_t>(start_.back()));
    value_.resize(static_cast<size_t>(start_.back()));
  }
  // Forgets everything from formula `from` on.
  void Truncate(int from);
  void Clear() { Truncate(0); }

 private:
  std::vector<int> col_;
  std::vector<double> factor_;
  std::vector<int> start_;
  std::vector<int> type_;
  std::vector<double> value_;
  size_t capacity_ = 0;
};

// Registers the callable of a user-function node (args: its operand tuple
// or list, callable first) and gives the index the engine knows it by.
// 0, or -1 with an exception set.
class UserFunctionIndex {
 public:
  virtual ~UserFunctionIndex() = default;
  virtual int IndexOf(PyObject *args, int op, int *index) = 0;
};

// What the writer needs to know of the problem.
struct FormulaContext {
  const IndexMap *columns = nullptr;  // variable id -> column
  int reserved_column = -1;           // the column of formulas without one, -1: none
  UserFunctionIndex *users = nullptr; // null: user functions are refused
};

// Writes the tree as one formula of factor `factor` (the root product's
// number factors multiply it; its first variable factor becomes the
// formula's column). 0, or -1 with ModelError; nothing is kept on failure.
int WriteFormula(PyObject *tree, double factor, const FormulaContext &ctx, FormulaTokens &out);

// An upper bound of the tokens a tree needs (its end token excluded).
// 0, or -1 with ModelError for a malformed node.
int EstimateTokens(PyObject *tree, size_t *n);

}  // namespace zrv
