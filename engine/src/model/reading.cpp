// Parts of the model copied into the caller's arrays.
#include "model/reading.h"

namespace zorvan {

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

void read_quadratic_objective(const Model &m, int64_t start[], int colind[], double coef[],
                              int64_t maxcoefs, int64_t *ncoefs, int first, int last,
                              const char *who) {
  require(ncoefs, "ncoefs", who);
  check_range(first, last, m.cols(), "column", who);
  // Column j of the symmetric matrix: entries (i, j) from both triangles.
  std::vector<std::vector<std::pair<int, double>>> column(last - first + 1);
  for (const auto &e : m.qobj) {
    int i = e.first.first, j = e.first.second;
    if (j >= first && j <= last) column[j - first].push_back({i, e.second});
    if (i != j && i >= first && i <= last) column[i - first].push_back({j, e.second});
  }
  int64_t total = 0, room = std::max<int64_t>(maxcoefs, 0);
  for (int j = first; j <= last; ++j) {
    auto &col = column[j - first];
    std::sort(col.begin(), col.end());
    if (start) start[j - first] = std::min(total, room);
    for (const auto &e : col) {
      if (total < room) {
        if (colind) colind[total] = e.first;
        if (coef) coef[total] = e.second;
      }
      ++total;
    }
  }
  if (start) start[last - first + 1] = std::min(total, room);
  *ncoefs = total;
}

void read_row_quadratic(const Model &m, int row, int64_t *n, int col1[], int col2[],
                        double coef[], const char *who) {
  check_index(row, m.rows(), "row", 0, "row", who);
  require(n, "nqelems", who);
  auto it = m.qrows.find(row);
  *n = it == m.qrows.end() ? 0 : static_cast<int64_t>(it->second.size());
  if (!col1 || !col2 || !coef || *n == 0) return;
  int64_t k = 0;
  for (const auto &e : it->second) {
    col1[k] = e.first.first, col2[k] = e.first.second, coef[k] = e.second;
    ++k;
  }
}

void read_sets(const Model &m, char settype[], int64_t start[], int colind[], double refval[],
               int64_t maxelems, int64_t *nelems, int first, int last, const char *who) {
  require(nelems, "nelems", who);
  check_range(first, last, m.sets(), "set", who);
  int64_t base = m.setstart[first], total = m.setstart[last + 1] - base;
  int64_t room = std::min(std::max<int64_t>(maxelems, 0), total);
  for (int s = first; s <= last; ++s)
    if (settype) settype[s - first] = m.settype[s];
  if (start)
    for (int s = first; s <= last + 1; ++s) start[s - first] = std::min(m.setstart[s] - base, room);
  for (int64_t k = 0; k < room; ++k) {
    if (colind) colind[k] = m.setcol[base + k];
    if (refval) refval[k] = m.setref[base + k];
  }
  *nelems = total;
}

void read_indicators(const Model &m, int colind[], int complement[], int first, int last,
                     const char *who) {
  check_range(first, last, m.rows(), "row", who);
  for (int r = first; r <= last; ++r) {
    if (colind) colind[r - first] = m.indcol[r];
    if (complement) complement[r - first] = m.indflag[r];
  }
}

void read_row_ranges(const Model &m, double range[], int first, int last, const char *who) {
  require(range, "range", who);
  check_range(first, last, m.rows(), "row", who);
  for (int i = first; i <= last; ++i)
    range[i - first] = m.rowtype[i] == 'R' ? m.range[i] : ZRVS_PLUSINFINITY;
}

}  // namespace zorvan
