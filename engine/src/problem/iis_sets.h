// Irreducible infeasible subsystems found for the model as it is: a set of
// rows and column bounds that no point satisfies, while every proper
// subset can be satisfied.
#pragma once
#include <vector>

namespace zorvan {

struct Iis {
  std::vector<int> rows;
  std::vector<int> cols;     // columns whose bound takes part
  std::vector<char> bounds;  // 'L' or 'U', per entry of cols
};

}  // namespace zorvan
