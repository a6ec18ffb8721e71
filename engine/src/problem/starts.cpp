#include "problem/starts.h"

namespace zorvan {

void SolverStarts::columns_deleted(const std::vector<char> &mask) {
  has_lp = false;
  std::vector<int> renumber(mask.size(), -1);
  int next = 0;
  for (size_t j = 0; j < mask.size(); ++j)
    if (!mask[j]) renumber[j] = next++;
  for (MipStart &s : mip) {
    size_t out = 0;
    for (size_t k = 0; k < s.cols.size(); ++k)
      if (renumber[s.cols[k]] >= 0)
        s.cols[out] = renumber[s.cols[k]], s.values[out++] = s.values[k];
    s.cols.resize(out), s.values.resize(out);
  }
  std::map<int, Directive> kept;
  for (const auto &d : dirs)
    if (renumber[d.first] >= 0) kept[renumber[d.first]] = d.second;
  dirs.swap(kept);
}

}  // namespace zorvan
