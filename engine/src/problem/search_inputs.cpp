#include "problem/search_inputs.h"

#include <algorithm>

namespace zorvan {

bool SearchInputs::needs_search() const {
  auto marked = [](const std::vector<char> &v) {
    return std::find(v.begin(), v.end(), 1) != v.end();
  };
  return !pool.empty() || !root_cuts.empty() || !root_branchings.empty() ||
         !root_bounds.empty() || marked(delayed) || marked(model_cut);
}

void SearchInputs::lines_deleted(bool columns) {
  delayed.clear(), model_cut.clear();
  if (!columns) return;
  pool.clear();
  root_cuts.clear(), root_branchings.clear(), root_bounds.clear();
}

}  // namespace zorvan
