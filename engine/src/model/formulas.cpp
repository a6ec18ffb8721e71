// The formula store: checks of token arrays, adding, replacing, removing and
// reading terms, and renumbering after rows or columns were deleted.
#include "model/formulas.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <unordered_set>

#include "core/errors.h"
#include "model/formula_tokens.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

// Entries of the checking stack: a value (with its number when it is a lone
// constant token, for pwl breakpoints) or the start of an argument list.
struct Slot {
  enum Kind : char { mark, value, constant } kind;
  double number;
};

[[noreturn]] void bad_token(const char *who, int term, int row, int pos, int type, double value,
                            const std::string &why) {
  fail(ZRVS_ERR_ARGUMENT, "%s: formula %d (row %d), token %d (type %d, value %g): %s", who, term,
       row, pos, type, value, why.c_str());
}

bool is_integer(double v) { return std::isfinite(v) && v == std::floor(v); }

// Pops a function's arguments down to its argument-list start; returns them
// first argument first.
std::vector<Slot> pop_arguments(std::vector<Slot> &stack, bool *found_mark) {
  std::vector<Slot> args;
  *found_mark = false;
  while (!stack.empty()) {
    Slot s = stack.back();
    stack.pop_back();
    if (s.kind == Slot::mark) {
      *found_mark = true;
      break;
    }
    args.push_back(s);
  }
  return args;
}

// Why a built-in function cannot take these arguments ("" when it can).
std::string check_function_arguments(int f, const std::vector<Slot> &args) {
  size_t n = args.size();
  if (f == tokens::min || f == tokens::max)
    return n >= 1 ? "" : std::string(tokens::function_name(f)) + " needs at least one argument";
  if (f == tokens::pwl) {
    if (n < 5 || n % 2 == 0)
      return "pwl needs its argument and at least two breakpoints (x, y), found " +
             std::to_string(n) + " arguments";
    for (size_t i = 1; i < n; ++i)
      if (args[i].kind != Slot::constant)
        return "pwl breakpoint coordinates must be constant tokens (type 1)";
    for (size_t i = 3; i < n; i += 2)
      if (args[i].number < args[i - 2].number)
        return "pwl breakpoints must be in increasing order of x";
    return "";
  }
  if (n != 1)
    return std::string(tokens::function_name(f)) + " takes one argument, found " +
           std::to_string(n);
  return "";
}

}  // namespace

std::vector<int> FormulaStore::check(const FormulaInput &in, int rows, int cols,
                                     const char *who) const {
  if (in.n < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncoefs is negative (%d)", who, in.n);
  std::vector<int> lengths(in.n);
  if (in.n == 0) return lengths;
  if (!in.row) fail(ZRVS_ERR_ARGUMENT, "%s: rowindex is NULL", who);
  if (!in.start) fail(ZRVS_ERR_ARGUMENT, "%s: fstart is NULL", who);
  if (!in.type || !in.value) fail(ZRVS_ERR_ARGUMENT, "%s: the token arrays are NULL", who);
  std::vector<Slot> stack;
  for (int k = 0; k < in.n; ++k) {
    int row = in.row[k];
    if (row < 0 || row >= rows)
      fail(ZRVS_ERR_ARGUMENT, "%s: rowindex[%d] = %d is not a row index (0..%d)", who, k, row,
           rows - 1);
    if (in.col && in.col[k] >= cols)
      fail(ZRVS_ERR_ARGUMENT, "%s: colindex[%d] = %d is not a column index (0..%d)", who, k,
           in.col[k], cols - 1);
    if (in.factor && !std::isfinite(in.factor[k]))
      fail(ZRVS_ERR_ARGUMENT, "%s: factor[%d] is not a finite number", who, k);
    int first = in.start[k];
    if (first < 0 || (k > 0 && first < in.start[k - 1]))
      fail(ZRVS_ERR_ARGUMENT, "%s: fstart[%d] = %d is negative or below fstart[%d]", who, k,
           first, k - 1);
    // Term k must end before the next one starts; the last one at its end token.
    int64_t limit = k + 1 < in.n ? in.start[k + 1] : INT64_MAX;
    stack.clear();
    int64_t pos = first;
    for (;; ++pos) {
      if (pos >= limit)
        fail(ZRVS_ERR_ARGUMENT,
             "%s: formula %d (row %d) has no end token (type 0) before fstart[%d] = %lld", who, k,
             row, k + 1, (long long)limit);
      int t = in.type[pos];
      double v = in.value[pos];
      int at = static_cast<int>(pos - first);
      if (t == tokens::end) break;
      switch (t) {
        case tokens::constant:
          if (!std::isfinite(v)) bad_token(who, k, row, at, t, v, "a constant must be finite");
          stack.push_back({Slot::constant, v});
          break;
        case tokens::column:
          if (!is_integer(v) || v < 0 || v >= cols)
            bad_token(who, k, row, at, t, v,
                      "not a column index (0.." + std::to_string(cols - 1) + ")");
          stack.push_back({Slot::value, 0});
          break;
        case tokens::arguments: stack.push_back({Slot::mark, 0}); break;
        case tokens::op: {
          const char *name = is_integer(v) ? tokens::operator_name(static_cast<int>(v)) : nullptr;
          if (!name) bad_token(who, k, row, at, t, v, "unknown operator number");
          size_t need = v == tokens::negate ? 1 : 2;
          for (size_t i = 0; i < need; ++i) {
            if (stack.empty() || stack.back().kind == Slot::mark)
              bad_token(who, k, row, at, t, v,
                        std::string("operator ") + name + " is missing an operand (unbalanced)");
            stack.pop_back();
          }
          stack.push_back({Slot::value, 0});
          break;
        }
        case tokens::function:
        case tokens::user: {
          std::string name;
          int nargs = -1;
          if (t == tokens::function) {
            const char *fn = is_integer(v) ? tokens::function_name(static_cast<int>(v)) : nullptr;
            if (!fn) bad_token(who, k, row, at, t, v, "unknown function number");
            name = fn;
          } else {
            if (!is_integer(v) || v < 1 || v > user_functions())
              bad_token(who, k, row, at, t, v,
                        "no user function has this index (" +
                            std::to_string(user_functions()) + " registered)");
            name = "user function " + user_function(static_cast<int>(v)).name;
            nargs = user_function(static_cast<int>(v)).nargs;
          }
          bool found = false;
          std::vector<Slot> args = pop_arguments(stack, &found);
          if (!found)
            bad_token(who, k, row, at, t, v,
                      name + " has no argument list start (type 22) before its arguments");
          std::string why;
          if (t == tokens::function)
            why = check_function_arguments(static_cast<int>(v), args);
          else if (static_cast<int>(args.size()) != nargs)
            why = name + " takes " + std::to_string(nargs) + " arguments, found " +
                  std::to_string(args.size());
          if (!why.empty()) bad_token(who, k, row, at, t, v, why);
          stack.push_back({Slot::value, 0});
          break;
        }
        default: bad_token(who, k, row, at, t, v, "unknown token type");
      }
    }
    // An empty formula stands for the constant 1 (a product whose factors
    // all went to the column and the factor).
    bool marks = std::any_of(stack.begin(), stack.end(),
                             [](const Slot &s) { return s.kind == Slot::mark; });
    if (stack.size() > 1 || marks)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: formula %d (row %d) is unbalanced: its end token leaves %d entries on the stack "
           "instead of one",
           who, k, row, static_cast<int>(stack.size()));
    if (pos - first > INT32_MAX) fail(ZRVS_ERR_ARGUMENT, "%s: formula %d is too long", who, k);
    lengths[k] = static_cast<int>(pos - first);
  }
  return lengths;
}

void FormulaStore::append(const FormulaInput &in, const std::vector<int> &lengths) {
  int64_t total = std::accumulate(lengths.begin(), lengths.end(), int64_t{0});
  // Room at least doubles when it grows, so that many small calls stay linear.
  auto grow = [](auto &v, size_t need) {
    if (need > v.capacity()) v.reserve(std::max(need, 2 * v.capacity()));
  };
  size_t n = row_.size() + in.n, pool = type_.size() + total;
  grow(row_, n), grow(col_, n), grow(length_, n), grow(factor_, n), grow(start_, n);
  grow(type_, pool), grow(value_, pool);
  for (int k = 0; k < in.n; ++k) {
    row_.push_back(in.row[k]);
    col_.push_back(in.col && in.col[k] >= 0 ? in.col[k] : -1);
    factor_.push_back(in.factor ? in.factor[k] : 1.0);
    start_.push_back(static_cast<int64_t>(type_.size()));
    length_.push_back(lengths[k]);
    type_.insert(type_.end(), in.type + in.start[k], in.type + in.start[k] + lengths[k]);
    value_.insert(value_.end(), in.value + in.start[k], in.value + in.start[k] + lengths[k]);
  }
  changed();
}

void FormulaStore::add(const FormulaInput &in, int rows, int cols, const char *who) {
  std::vector<int> lengths = check(in, rows, cols, who);
  if (in.n > 0) append(in, lengths);
}

namespace {
uint64_t pair_key(int row, int col) {
  return (static_cast<uint64_t>(static_cast<uint32_t>(row)) << 32) |
         static_cast<uint32_t>(col < 0 ? -1 : col);
}
}  // namespace

void FormulaStore::load(const FormulaInput &in, int rows, int cols, const char *who) {
  std::vector<int> lengths = check(in, rows, cols, who);
  if (in.n == 0) return;
  std::unordered_set<uint64_t> pairs;
  for (int k = 0; k < in.n; ++k) pairs.insert(pair_key(in.row[k], in.col ? in.col[k] : -1));
  std::vector<char> gone(row_.size(), 0);
  for (size_t t = 0; t < row_.size(); ++t) gone[t] = pairs.count(pair_key(row_[t], col_[t])) > 0;
  drop(gone);
  append(in, lengths);
}

void FormulaStore::remove(int n, const int *row, const int *col, int rows, const char *who) {
  if (n < 0) fail(ZRVS_ERR_ARGUMENT, "%s: ncoefs is negative (%d)", who, n);
  if (n == 0) return;
  if (!row) fail(ZRVS_ERR_ARGUMENT, "%s: rowindex is NULL", who);
  std::unordered_set<uint64_t> pairs, present;
  for (int k = 0; k < n; ++k) {
    if (row[k] < 0 || row[k] >= rows)
      fail(ZRVS_ERR_ARGUMENT, "%s: rowindex[%d] = %d is not a row index (0..%d)", who, k, row[k],
           rows - 1);
    pairs.insert(pair_key(row[k], col ? col[k] : -1));
  }
  std::vector<char> gone(row_.size(), 0);
  for (size_t t = 0; t < row_.size(); ++t) {
    uint64_t key = pair_key(row_[t], col_[t]);
    if (pairs.count(key)) gone[t] = 1, present.insert(key);
  }
  for (int k = 0; k < n; ++k) {
    int c = col ? col[k] : -1;
    if (!present.count(pair_key(row[k], c)))
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d has no formula term with %s%d", who, row[k],
           c < 0 ? "no column, colindex = " : "column ", c);
  }
  drop(gone);
}

bool FormulaStore::combined(int row, int col, double *factor, std::vector<int> *type,
                            std::vector<double> *value) const {
  std::vector<int> found;
  for (int k = 0; k < terms(); ++k)
    if (this->row(k) == row && this->col(k) == (col < 0 ? -1 : col)) found.push_back(k);
  type->clear(), value->clear();
  if (found.empty()) return false;
  if (found.size() == 1) {
    *factor = this->factor(found[0]);
    type->assign(types(found[0]), types(found[0]) + length(found[0]));
    value->assign(values(found[0]), values(found[0]) + length(found[0]));
    return true;
  }
  *factor = 1.0;
  for (size_t i = 0; i < found.size(); ++i) {
    int k = found[i];
    type->push_back(tokens::constant), value->push_back(this->factor(k));
    if (length(k) == 0) {
      type->push_back(tokens::constant), value->push_back(1.0);
    } else {
      type->insert(type->end(), types(k), types(k) + length(k));
      value->insert(value->end(), values(k), values(k) + length(k));
    }
    type->push_back(tokens::op), value->push_back(tokens::multiply);
    if (i > 0) type->push_back(tokens::op), value->push_back(tokens::plus);
  }
  return true;
}

void FormulaStore::drop(const std::vector<char> &gone) {
  size_t m = 0;
  for (size_t t = 0; t < row_.size(); ++t) {
    if (gone[t]) {
      unused_ += length_[t];
      continue;
    }
    row_[m] = row_[t], col_[m] = col_[t], length_[m] = length_[t];
    factor_[m] = factor_[t], start_[m] = start_[t];
    ++m;
  }
  row_.resize(m), col_.resize(m), length_.resize(m), factor_.resize(m), start_.resize(m);
  if (2 * unused_ > static_cast<int64_t>(type_.size())) compact();
  changed();
}

void FormulaStore::compact() {
  std::vector<int> type;
  std::vector<double> value;
  type.reserve(type_.size() - unused_), value.reserve(type_.size() - unused_);
  for (size_t t = 0; t < row_.size(); ++t) {
    int64_t s = start_[t];
    start_[t] = static_cast<int64_t>(type.size());
    type.insert(type.end(), type_.begin() + s, type_.begin() + s + length_[t]);
    value.insert(value.end(), value_.begin() + s, value_.begin() + s + length_[t]);
  }
  type_ = std::move(type), value_ = std::move(value);
  unused_ = 0;
}

const std::vector<int> &FormulaStore::order() const {
  if (!ordered_ || order_.size() != row_.size()) {
    order_.resize(row_.size());
    std::iota(order_.begin(), order_.end(), 0);
    std::stable_sort(order_.begin(), order_.end(),
                     [&](int a, int b) { return row_[a] < row_[b]; });
    ordered_ = true;
  }
  return order_;
}

namespace {
// New index of each entry after deleting the flagged ones (-1: deleted).
std::vector<int> renumbering(const std::vector<char> &del) {
  std::vector<int> map(del.size(), -1);
  int next = 0;
  for (size_t i = 0; i < del.size(); ++i)
    if (!del[i]) map[i] = next++;
  return map;
}
}  // namespace

void FormulaStore::delete_rows(const std::vector<char> &del) {
  std::vector<int> map = renumbering(del);
  std::vector<char> gone(row_.size(), 0);
  for (size_t t = 0; t < row_.size(); ++t) gone[t] = map[row_[t]] < 0;
  drop(gone);
  for (int &r : row_) r = map[r];
  changed();
}

void FormulaStore::check_columns_unused(const std::vector<char> &del, const char *who) const {
  for (int k = 0; k < terms(); ++k) {
    int c = col(k);
    if (c >= 0 && del[c])
      fail(ZRVS_ERR_ARGUMENT,
           "%s: column %d multiplies a formula of row %d; delete that formula first", who, c,
           row(k));
    for (int i = 0; i < length(k); ++i) {
      if (types(k)[i] != tokens::column) continue;
      c = static_cast<int>(values(k)[i]);
      if (del[c])
        fail(ZRVS_ERR_ARGUMENT,
             "%s: column %d is used in a formula of row %d; delete that formula first", who, c,
             row(k));
    }
  }
}

void FormulaStore::delete_columns(const std::vector<char> &del) {
  std::vector<int> map = renumbering(del);
  for (int &c : col_)
    if (c >= 0) c = map[c];
  for (size_t t = 0; t < row_.size(); ++t) {
    for (int64_t i = start_[t]; i < start_[t] + length_[t]; ++i)
      if (type_[i] == tokens::column) value_[i] = map[static_cast<int>(value_[i])];
  }
  changed();
}

int FormulaStore::add_user_function(UserFunction f, const char *who) {
  if (f.kind != 2 && f.kind != 5)
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: function type %d is not supported; use 2 (value only) or 5 (value and partial "
         "derivatives)",
         who, f.kind);
  if (f.nargs < 0) fail(ZRVS_ERR_ARGUMENT, "%s: nargs is negative (%d)", who, f.nargs);
  if (!f.function) fail(ZRVS_ERR_ARGUMENT, "%s: the function is NULL", who);
  users_.push_back(std::move(f));
  changed();
  return user_functions();
}

}  // namespace zorvan
