// Checks of a batch of matrix lines.
#include "model/batch.h"

#include <algorithm>
#include <vector>

#include "model/checks.h"

namespace zorvan {

void check_batch(int n, int64_t ncoefs, const int64_t *start, const int *ind,
                   const double *val, int nother, const char *indname, const char *what,
                   const char *who) {
  check_count(ncoefs, "ncoefs", who);
  check_starts(start, n, ncoefs, who);
  if (ncoefs == 0) return;
  require(ind, indname, who);
  require(val, "the coefficient array", who);
  std::vector<int> line;
  for (int j = 0; j < n; ++j) {
    int64_t b = start[j], e = j + 1 < n ? start[j + 1] : ncoefs;
    // Lines usually come with ascending indices: then they cannot repeat
    // one and need no sorted copy.
    bool ascending = true;
    for (int64_t k = b; k < e; ++k) {
      check_index(ind[k], nother, indname, k, what, who);
      check_finite(val[k], "the coefficient array", k, who);
      if (k > b && ind[k] <= ind[k - 1]) ascending = false;
    }
    if (ascending) continue;
    line.assign(ind + b, ind + e);
    std::sort(line.begin(), line.end());
    auto dup = std::adjacent_find(line.begin(), line.end());
    if (dup != line.end())
      fail(ZRVS_ERR_ARGUMENT, "%s: entry %d of the batch has two coefficients for %s %d", who,
           j, what, *dup);
  }
}

}  // namespace zorvan
