// Parts of the model copied into the caller's arrays.
#include "model/reading.h"

namespace zorvan {

namespace {

// Lines first..last of a compressed structure (line l holds entries
// starts[l] .. starts[l+1]-1 of index and value): start_out gets
// last-first+2 offsets, ind_out and val_out at most maxcoefs entries (a
// negative room counts as none). Any output may be NULL. Returns the number
// of entries in the range.
int64_t copy_lines(const int64_t *starts, const int *index, const double *value, int first,
                   int last, int64_t maxcoefs, int64_t start_out[], int ind_out[],
                   double val_out[]) {
  int64_t base = starts[first], total = starts[last + 1] - base;
  int64_t room = std::min(std::max<int64_t>(maxcoefs, 0), total);
  if (start_out)
    for (int j = first; j <= last + 1; ++j) start_out[j - first] = std::min(starts[j] - base, room);
  for (int64_t k = 0; k < room; ++k) {
    if (ind_out) ind_out[k] = index[base + k];
    if (val_out) val_out[k] = value[base + k];
  }
  return total;
}

}  // namespace

void read_lines(const Compressed &c, int nlines, int64_t start[], int ind[], double coef[],
                int64_t maxcoefs, int64_t *ncoefs, int first, int last, const char *what,
                const char *who) {
  require(ncoefs, "ncoefs", who);
  check_range(first, last, nlines, what, who);
  if ((ind || coef) && maxcoefs < 0) check_count(maxcoefs, "maxcoefs", who);
  *ncoefs = copy_lines(c.start.data(), c.index.data(), c.value.data(), first, last, maxcoefs,
                       start, ind, coef);
}

void read_quadratic_objective(const Model &m, int64_t start[], int colind[], double coef[],
                              int64_t maxcoefs, int64_t *ncoefs, int first, int last,
                              const char *who) {
  read_quadratic_form(m, m.qobj, start, colind, coef, maxcoefs, ncoefs, first, last, who);
}

void read_quadratic_form(const Model &m, const QForm &q, int64_t start[], int colind[],
                         double coef[], int64_t maxcoefs, int64_t *ncoefs, int first, int last,
                         const char *who) {
  require(ncoefs, "ncoefs", who);
  check_range(first, last, m.cols(), "column", who);
  // Column j of the symmetric matrix: entries (i, j) from both triangles.
  std::vector<std::vector<std::pair<int, double>>> column(last - first + 1);
  for (const auto &e : q) {
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
  for (int s = first; s <= last; ++s)
    if (settype) settype[s - first] = m.settype[s];
  *nelems = copy_lines(m.setstart.data(), m.setcol.data(), m.setref.data(), first, last,
                       maxelems, start, colind, refval);
}

void read_indicators(const Model &m, int colind[], int complement[], int first, int last,
                     const char *who) {
  check_range(first, last, m.rows(), "row", who);
  for (int r = first; r <= last; ++r) {
    if (colind) colind[r - first] = m.indcol[r];
    if (complement) complement[r - first] = m.indflag[r];
  }
}

void read_general_constraints(const Model &m, int contype[], int resultant[],
                              int64_t colstart[], int colind[], int64_t maxcols, int64_t *ncols,
                              int64_t valstart[], double val[], int64_t maxvals, int64_t *nvals,
                              int first, int last, const char *who) {
  require(ncols, "ncols", who);
  require(nvals, "nvals", who);
  check_range(first, last, m.gencons(), "general constraint", who);
  for (int k = first; k <= last; ++k) {
    if (contype) contype[k - first] = m.gentype[k];
    if (resultant) resultant[k - first] = m.genres[k];
  }
  *ncols = copy_lines(m.gencolstart.data(), m.gencol.data(), nullptr, first, last, maxcols,
                      colstart, colind, nullptr);
  *nvals = copy_lines(m.genvalstart.data(), nullptr, m.genval.data(), first, last, maxvals,
                      valstart, nullptr, val);
}

void read_piecewise_constraints(const Model &m, int colind[], int resultant[], int64_t start[],
                                double xval[], double yval[], int64_t maxpoints,
                                int64_t *npoints, int first, int last, const char *who) {
  require(npoints, "npoints", who);
  check_range(first, last, m.pwlcons(), "piecewise-linear constraint", who);
  for (int k = first; k <= last; ++k) {
    if (colind) colind[k - first] = m.pwlcol[k];
    if (resultant) resultant[k - first] = m.pwlres[k];
  }
  *npoints = copy_lines(m.pwlstart.data(), nullptr, m.pwlx.data(), first, last, maxpoints, start,
                        nullptr, xval);
  copy_lines(m.pwlstart.data(), nullptr, m.pwly.data(), first, last, maxpoints, nullptr, nullptr,
             yval);
}

void read_mip_entities(const Model &m, int *nentities, int *nsets, char coltype[], int colind[],
                       double limit[], char settype[], int64_t start[], int setcols[],
                       double refval[]) {
  int n = 0;
  for (int j = 0; j < m.cols(); ++j) {
    if (m.coltype[j] == 'C') continue;
    if (coltype) coltype[n] = m.coltype[j];
    if (colind) colind[n] = j;
    if (limit) limit[n] = m.limit[j];
    ++n;
  }
  if (nentities) *nentities = n;
  if (nsets) *nsets = m.sets();
  for (int s = 0; s < m.sets(); ++s)
    if (settype) settype[s] = m.settype[s];
  if (start) std::copy(m.setstart.begin(), m.setstart.end(), start);
  if (setcols) std::copy(m.setcol.begin(), m.setcol.end(), setcols);
  if (refval) std::copy(m.setref.begin(), m.setref.end(), refval);
}

void read_row_ranges(const Model &m, double range[], int first, int last, const char *who) {
  require(range, "range", who);
  check_range(first, last, m.rows(), "row", who);
  for (int i = first; i <= last; ++i)
    range[i - first] = m.rowtype[i] == 'R' ? m.range[i] : ZRVS_PLUSINFINITY;
}

}  // namespace zorvan
