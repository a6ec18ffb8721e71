// Building the expression graph from tokens, with shared subtrees and
// constants folded.
#include "nlp/formula/graph.h"

#include <cmath>
#include <algorithm>
#include <cstring>

#include "core/errors.h"
#include "model/formula_tokens.h"
#include "nlp/functions/builtins.h"
#include "zorvan/zrvs.h"

namespace zorvan::nlp {

const char *op_name(Op op) {
  static const char *names[] = {"constant", "variable", "+",    "-",     "*",    "/",    "**",
                                "unary -",  "exp",      "log",  "log10", "sin",  "cos",  "tan",
                                "asin",     "acos",     "atan", "abs",   "sign", "erf",  "erfc",
                                "sqrt",     "min",      "max",  "pwl",   "user function"};
  return names[static_cast<int>(op)];
}

uint64_t Graph::hash(Op o, int x, int y, int z, double v) const {
  uint64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  uint64_t h = static_cast<uint64_t>(o) + 0x9E3779B97F4A7C15ull;
  for (uint64_t part : {static_cast<uint64_t>(static_cast<uint32_t>(x)),
                        static_cast<uint64_t>(static_cast<uint32_t>(y)),
                        static_cast<uint64_t>(static_cast<uint32_t>(z)), bits}) {
    h ^= part + 0x9E3779B97F4A7C15ull + (h << 6) + (h >> 2);
    h *= 0xBF58476D1CE4E5B9ull;
  }
  return h ^ (h >> 31);
}

void Graph::grow() {
  std::vector<int> table(std::max<size_t>(1024, 2 * table_.size()), -1);
  size_t mask = table.size() - 1;
  for (int id : table_) {
    if (id < 0) continue;
    size_t at = hash(op[id], a[id], b[id], aux[id], num[id]) & mask;
    while (table[at] >= 0) at = (at + 1) & mask;
    table[at] = id;
  }
  table_ = std::move(table);
}

int Graph::make(Op o, int x, int y, int z, double v) {
  if (2 * (used_ + 1) > table_.size()) grow();
  size_t mask = table_.size() - 1;
  size_t at = hash(o, x, y, z, v) & mask;
  for (; table_[at] >= 0; at = (at + 1) & mask) {
    int id = table_[at];
    if (op[id] == o && a[id] == x && b[id] == y && aux[id] == z &&
        std::memcmp(&num[id], &v, sizeof v) == 0)
      return id;
  }
  int id = size();
  op.push_back(o), a.push_back(x), b.push_back(y), aux.push_back(z), num.push_back(v);
  table_[at] = id;
  ++used_;
  return id;
}

int Graph::constant(double v) { return make(Op::constant, -1, -1, 0, v == 0 ? 0.0 : v); }

int Graph::variable(int column) { return make(Op::variable, -1, -1, column, 0); }

int Graph::unary(Op o, int x) {
  double v;
  if (is_constant(x) && unary_value(o, num[x], &v)) return constant(v);
  return make(o, x, -1, 0, 0);
}

namespace {
// a o b for constants; false when the result is not a finite number.
bool fold(Op o, double x, double y, double *v) {
  switch (o) {
    case Op::add: *v = x + y; break;
    case Op::sub: *v = x - y; break;
    case Op::mul: *v = x * y; break;
    case Op::div:
      if (y == 0) return false;
      *v = x / y;
      break;
    case Op::pow: *v = std::pow(x, y); break;
    default: return false;
  }
  return std::isfinite(*v);
}
}  // namespace

int Graph::binary(Op o, int x, int y) {
  double v;
  if (is_constant(x) && is_constant(y) && fold(o, num[x], num[y], &v)) return constant(v);
  // Neutral elements; a + b and a * b keep one order so that b + a is shared.
  if ((o == Op::add || o == Op::sub) && is_constant(y) && num[y] == 0) return x;
  if (o == Op::add && is_constant(x) && num[x] == 0) return y;
  if ((o == Op::mul || o == Op::div || o == Op::pow) && is_constant(y) && num[y] == 1) return x;
  if (o == Op::mul && is_constant(x) && num[x] == 1) return y;
  if ((o == Op::add || o == Op::mul) && x > y) std::swap(x, y);
  return make(o, x, y, 0, 0);
}

std::string Graph::list_key(Op o, double v, const void *items, size_t bytes) {
  std::string key(1, static_cast<char>(o));
  key.append(reinterpret_cast<const char *>(&v), sizeof v);
  key.append(static_cast<const char *>(items), bytes);
  return key;
}

int Graph::nary(Op o, const std::vector<int> &args, double v) {
  // min and max of one argument are the argument.
  if ((o == Op::min || o == Op::max) && args.size() == 1) return args[0];
  std::string key = list_key(o, v, args.data(), args.size() * sizeof(int));
  auto found = list_index_.find(key);
  if (found != list_index_.end()) return found->second;
  list_index_.emplace(std::move(key), size());
  int id = size();
  op.push_back(o), a.push_back(-1), b.push_back(static_cast<int>(args.size()));
  aux.push_back(static_cast<int>(list.size())), num.push_back(v);
  list.insert(list.end(), args.begin(), args.end());
  return id;
}

int Graph::pwl(int x, const std::vector<double> &pts) {
  std::string key = list_key(Op::pwl, x, pts.data(), pts.size() * sizeof(double));
  auto found = list_index_.find(key);
  if (found != list_index_.end()) return found->second;
  list_index_.emplace(std::move(key), size());
  int id = size();
  op.push_back(Op::pwl), a.push_back(x), b.push_back(static_cast<int>(pts.size() / 2));
  aux.push_back(static_cast<int>(points.size())), num.push_back(0);
  points.insert(points.end(), pts.begin(), pts.end());
  return id;
}

namespace {
Op function_op(int f) {
  switch (f) {
    case tokens::log10: return Op::log10;
    case tokens::log: return Op::log;
    case tokens::exp: return Op::exp;
    case tokens::abs: return Op::abs;
    case tokens::sqrt: return Op::sqrt;
    case tokens::sin: return Op::sin;
    case tokens::cos: return Op::cos;
    case tokens::tan: return Op::tan;
    case tokens::asin: return Op::asin;
    case tokens::acos: return Op::acos;
    case tokens::atan: return Op::atan;
    case tokens::min: return Op::min;
    case tokens::max: return Op::max;
    case tokens::pwl: return Op::pwl;
    case tokens::sign: return Op::sign;
    case tokens::erf: return Op::erf;
    case tokens::erfc: return Op::erfc;
  }
  fail(ZRVS_ERR_INTERNAL, "unknown function number %d in a formula", f);
}

Op operator_op(int o) {
  switch (o) {
    case tokens::power: return Op::pow;
    case tokens::multiply: return Op::mul;
    case tokens::divide: return Op::div;
    case tokens::plus: return Op::add;
    case tokens::minus: return Op::sub;
  }
  fail(ZRVS_ERR_INTERNAL, "unknown operator number %d in a formula", o);
}

constexpr int kMark = -1;
}  // namespace

int Graph::parse(const int *type, const double *value, int n) {
  // The store checked the tokens; failures here are internal.
  auto pop = [&]() {
    if (stack_.empty() || stack_.back() == kMark)
      fail(ZRVS_ERR_INTERNAL, "an unbalanced formula reached the evaluator");
    int x = stack_.back();
    stack_.pop_back();
    return x;
  };
  auto pop_arguments = [&]() {
    std::vector<int> args;  // first argument first
    while (!stack_.empty() && stack_.back() != kMark) args.push_back(pop());
    if (stack_.empty()) fail(ZRVS_ERR_INTERNAL, "a function without argument list start");
    stack_.pop_back();
    return args;
  };
  stack_.clear();
  for (int i = 0; i < n; ++i) {
    double v = value[i];
    switch (type[i]) {
      case tokens::constant: stack_.push_back(constant(v)); break;
      case tokens::column: stack_.push_back(variable(static_cast<int>(v))); break;
      case tokens::arguments: stack_.push_back(kMark); break;
      case tokens::op: {
        if (v == tokens::negate) {
          stack_.push_back(unary(Op::neg, pop()));
          break;
        }
        int y = pop(), x = pop();
        stack_.push_back(binary(operator_op(static_cast<int>(v)), x, y));
        break;
      }
      case tokens::function: {
        Op o = function_op(static_cast<int>(v));
        std::vector<int> args = pop_arguments();
        if (o == Op::min || o == Op::max) {
          // In the order written, which decides ties.
          std::reverse(args.begin(), args.end());
          stack_.push_back(nary(o, args));
        } else if (o == Op::pwl) {
          std::vector<double> pts;
          for (size_t k = 1; k < args.size(); ++k) pts.push_back(num[args[k]]);
          stack_.push_back(pwl(args[0], pts));
        } else {
          stack_.push_back(unary(o, args.at(0)));
        }
        break;
      }
      case tokens::user: stack_.push_back(nary(Op::user, pop_arguments(), v)); break;
      default: fail(ZRVS_ERR_INTERNAL, "token type %d reached the evaluator", type[i]);
    }
  }
  if (stack_.empty()) return constant(1.0);
  if (stack_.size() != 1) fail(ZRVS_ERR_INTERNAL, "an unbalanced formula reached the evaluator");
  return stack_.back();
}

}  // namespace zorvan::nlp
