// Formulas as one expression graph: every node once (identical subtrees are
// shared), children before parents, so a pass in index order evaluates
// every node after its arguments. Stored as parallel arrays.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace zorvan {
class FormulaStore;
}

namespace zorvan::nlp {

enum class Op : uint8_t {
  constant,  // num
  variable,  // aux: column
  add, sub, mul, div, pow,  // a, b
  neg, exp, log, log10, sin, cos, tan, asin, acos, atan, abs, sign, erf, erfc, sqrt,  // a
  min, max,  // list[aux .. aux+b-1] in the order written (ties: the first)
  pwl,       // a: argument; points[aux .. aux+2b-1]: b breakpoints (x, y)
  user,      // list[aux .. aux+b-1]: arguments; num: user function index
};

const char *op_name(Op op);

class Graph {
 public:
  int size() const { return static_cast<int>(op.size()); }
  int constant(double v);
  int variable(int column);
  // A node of a unary or binary operation, folded to a constant when every
  // argument is one (and the result is finite).
  int unary(Op o, int x);
  int binary(Op o, int x, int y);
  int nary(Op o, const std::vector<int> &args, double num = 0);
  int pwl(int x, const std::vector<double> &points);

  // The formula given by tokens (without end token); an empty one is 1.
  // Throws zorvan::Error for tokens it cannot read.
  int parse(const int *type, const double *value, int n);

  bool is_constant(int i) const { return op[i] == Op::constant; }

  std::vector<Op> op;
  std::vector<int> a, b, aux;
  std::vector<double> num;
  std::vector<int> list;
  std::vector<double> points;

 private:
  int make(Op o, int x, int y, int z, double v);
  // Open-addressing table of node ids (-1: empty) by their fields.
  uint64_t hash(Op o, int x, int y, int z, double v) const;
  void grow();
  std::vector<int> table_;
  size_t used_ = 0;
  // Nodes with argument or breakpoint lists, by op, number and list.
  static std::string list_key(Op o, double v, const void *items, size_t bytes);
  std::unordered_map<std::string, int> list_index_;
  std::vector<int> stack_;
};

}  // namespace zorvan::nlp
