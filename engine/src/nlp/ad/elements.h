// Element tapes: a row's formula part is split at its sums, differences,
// negations and constant multiples into weighted elements; each distinct
// element gets a local tape (its nodes in order, arguments as local
// positions) over its own variables, and the pairs of its variables that
// its Hessian can couple, found once from the tape by following which
// variables reach each node and where they meet nonlinearly.
#pragma once
#include <cstdint>
#include <vector>

#include "nlp/formula/graph.h"

namespace zorvan::nlp {

// How a tape entry combines its arguments' derivatives.
enum class Step : uint8_t {
  variable,  // a variable leaf
  unary,     // argument a, with da and daa
  binary,    // arguments a and b (either may be -1: a constant), da .. dbb
  select,    // min and max: the argument chosen, list[a .. a+b-1]
  user,      // user function: list[a .. a+b-1] (-1: constant argument)
};

// Whether each node's value depends on a variable through derivatives that
// are not identically zero (sign and constants do not).
std::vector<char> variable_dependence(const Graph &g);

class ElementTapes {
 public:
  // Adds the element rooted at node `root` (which depends on variables);
  // returns its number. Throws when the element couples so many variables
  // that its Hessian pattern cannot be held.
  int add(const Graph &g, const std::vector<char> &depends, int root);

  int size() const { return static_cast<int>(node_start.size()) - 1; }
  int length(int e) const { return node_start[e + 1] - node_start[e]; }
  int variables(int e) const { return var_start[e + 1] - var_start[e]; }
  int longest() const { return longest_; }

  // Element e: tape entries node_start[e] .. node_start[e+1]-1 (the last is
  // the root); variables var_start[e] .. (columns ascending, with the local
  // position of their leaf); Hessian pairs pair_start[e] .. as local
  // variable numbers (i >= j), grouped by j.
  std::vector<int> node_start{0}, var_start{0}, pair_start{0};
  std::vector<int> gid;  // graph node of each entry
  std::vector<Step> step;
  std::vector<int> a, b;  // local positions (or list range for select, user)
  std::vector<int> list;  // local positions of select's and user's arguments
  std::vector<int> var_column, var_leaf;
  std::vector<int> pair_i, pair_j;

 private:
  void find_pairs(const Graph &g, int e);
  int longest_ = 0;
  std::vector<int> local_;  // graph node -> local position while building
  std::vector<int> stack_;
};

}  // namespace zorvan::nlp
