// The formula terms of a model and the user functions they call.
//
// A formula term of row r contributes (col >= 0 ? x[col] : 1) * factor * f(x)
// to the row's activity, where f is given by tokens (model/formula_tokens.h)
// in reverse Polish order. A row may hold several terms, also several with
// the same column. The tokens of all terms lie one after another in one pool;
// removing terms leaves their tokens behind until they fill half the pool.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace zorvan {

// A function registered by the user: called by the evaluator with its
// arguments' values. `kind` 2: value only (derivatives by differences); 5:
// value and, when asked, partial derivatives.
struct UserFunction {
  std::string name;
  int kind = 2;
  int nargs = 0;
  void (*function)() = nullptr;  // cast to the kind's type when called
  void *data = nullptr;
};

// The formulas given to an entry point in its arrays (parsed tokens).
struct FormulaInput {
  int n;
  const int *row;
  const int *col;  // NULL: no column for any term
  const double *factor;  // NULL: 1 for every term
  const int *start;
  const int *type;
  const double *value;
};

class FormulaStore {
 public:
  int terms() const { return static_cast<int>(row_.size()); }
  // Changes with every change of formulas or user functions and with every
  // renumbering of rows or columns: a compiled copy is stale when its
  // version differs.
  uint64_t version() const { return version_; }

  // Term k (in the order kept: by row, then in the order added).
  int row(int k) const { return row_[order()[k]]; }
  int col(int k) const { return col_[order()[k]]; }  // -1: no column
  double factor(int k) const { return factor_[order()[k]]; }
  // Tokens of term k, without the end token.
  int length(int k) const { return length_[order()[k]]; }
  const int *types(int k) const { return type_.data() + start_[order()[k]]; }
  const double *values(int k) const { return value_.data() + start_[order()[k]]; }

  // Appends the terms after checking all of them against a model of `rows`
  // rows and `cols` columns; a refused call changes nothing.
  void add(const FormulaInput &in, int rows, int cols, const char *who);
  // As add, after removing every existing term of the (row, column) pairs
  // given.
  void load(const FormulaInput &in, int rows, int cols, const char *who);
  // Removes every term of each (row, column) pair; a pair without terms is
  // refused. Negative columns mean "no column".
  void remove(int n, const int *row, const int *col, int rows, const char *who);
  // The terms of pair (row, col) as one formula: the term itself when there
  // is one, else the sum of factor * f over them with factor 1.
  bool combined(int row, int col, double *factor, std::vector<int> *type,
                std::vector<double> *value) const;

  // Renumbering after rows (or columns) flagged in del were deleted: terms of
  // deleted rows go. Deleting a column that a term uses is refused (call
  // check_columns_unused first; it throws naming the row).
  void delete_rows(const std::vector<char> &del);
  void check_columns_unused(const std::vector<char> &del, const char *who) const;
  void delete_columns(const std::vector<char> &del);

  // User functions, numbered from 1 in the order registered.
  int add_user_function(UserFunction f, const char *who);
  int user_functions() const { return static_cast<int>(users_.size()); }
  // A new model of the same problem keeps the functions registered with it.
  void keep_user_functions(const FormulaStore &old) {
    users_ = old.users_;
    changed();
  }
  const UserFunction &user_function(int index) const { return users_[index - 1]; }

 private:
  // Checks every term of `in`; returns the token count (without end tokens)
  // of each.
  std::vector<int> check(const FormulaInput &in, int rows, int cols, const char *who) const;
  void append(const FormulaInput &in, const std::vector<int> &lengths);
  // Removes the terms whose flag is set.
  void drop(const std::vector<char> &gone);
  void compact();
  const std::vector<int> &order() const;
  void changed() { ++version_, ordered_ = false; }

  std::vector<int> row_, col_, length_;
  std::vector<double> factor_;
  std::vector<int64_t> start_;
  std::vector<int> type_;
  std::vector<double> value_;
  int64_t unused_ = 0;  // pool tokens no term refers to
  std::vector<UserFunction> users_;
  uint64_t version_ = 0;
  mutable std::vector<int> order_;  // term positions by row, then by age
  mutable bool ordered_ = true;
};

}  // namespace zorvan
