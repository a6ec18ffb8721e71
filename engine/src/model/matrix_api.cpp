// Readers of the matrix by columns and by rows.
#include "core/problem.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

// Copies lines first..last of c: start gets last-first+2 offsets, ind and
// coef at most maxcoefs entries; *ncoefs the number of entries in the range.
// Any of start, ind, coef may be NULL to skip it.
void read_lines(const Compressed &c, int nlines, int64_t start[], int ind[], double coef[],
                int64_t maxcoefs, int64_t *ncoefs, int first, int last, const char *what,
                const char *who) {
  require(ncoefs, "ncoefs", who);
  check_range(first, last, nlines, what, who);
  int64_t base = c.start[first];
  int64_t total = c.start[last + 1] - base;
  if ((ind || coef) && maxcoefs < 0) check_count(maxcoefs, "maxcoefs", who);
  int64_t room = maxcoefs < total ? std::max<int64_t>(maxcoefs, 0) : total;
  if (start)
    for (int j = first; j <= last + 1; ++j)
      start[j - first] = std::min(c.start[j] - base, room);
  for (int64_t k = 0; k < room; ++k) {
    if (ind) ind[k] = c.index[base + k];
    if (coef) coef[k] = c.value[base + k];
  }
  *ncoefs = total;
}

}  // namespace

extern "C" {

int ZRVSgetcols64(ZRVSprob prob, int64_t start[], int rowind[], double rowcoef[],
                  int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  return problem_call(prob, "ZRVSgetcols64", [&](zrvs_problem &p) {
    check_range(first, last, p.model.cols(), "column", "ZRVSgetcols64");
    read_lines(p.model.by_columns(), p.model.cols(), start, rowind, rowcoef, maxcoefs, ncoefs,
               first, last, "column", "ZRVSgetcols64");
  });
}

int ZRVSgetrows64(ZRVSprob prob, int64_t start[], int colind[], double colcoef[],
                  int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  return problem_call(prob, "ZRVSgetrows64", [&](zrvs_problem &p) {
    check_range(first, last, p.model.rows(), "row", "ZRVSgetrows64");
    read_lines(p.model.by_rows(), p.model.rows(), start, colind, colcoef, maxcoefs, ncoefs,
               first, last, "row", "ZRVSgetrows64");
  });
}

}  // extern "C"
