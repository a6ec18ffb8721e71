// Parts of the model copied into the caller's arrays, as the C interface
// reads them. Each throws zorvan::Error naming the entry point.
#pragma once
#include <algorithm>
#include <cstdint>
#include <vector>

#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

// Entries first..last of v (one per `what`) into out.
template <class T>
void read_range(const std::vector<T> &v, T *out, const char *arg, int first, int last,
                const char *what, const char *who) {
  require(out, arg, who);
  check_range(first, last, static_cast<int>(v.size()), what, who);
  std::copy(v.begin() + first, v.begin() + last + 1, out);
}

// Lines first..last of a compressed matrix with nlines lines: start gets
// last-first+2 offsets, ind and coef at most maxcoefs entries, *ncoefs the
// number of entries in the range. Any of start, ind, coef may be NULL.
void read_lines(const Compressed &c, int nlines, int64_t start[], int ind[], double coef[],
                int64_t maxcoefs, int64_t *ncoefs, int first, int last, const char *what,
                const char *who);

// Columns first..last of the symmetric objective matrix (both triangles,
// rows ascending), as read_lines.
void read_quadratic_objective(const Model &m, int64_t start[], int colind[], double coef[],
                              int64_t maxcoefs, int64_t *ncoefs, int first, int last,
                              const char *who);

// The same for any symmetric form over the columns (a row's quadratic part).
void read_quadratic_form(const Model &m, const QForm &q, int64_t start[], int colind[],
                         double coef[], int64_t maxcoefs, int64_t *ncoefs, int first, int last,
                         const char *who);

// General constraints first..last: types, resultants, operand columns and
// constants (each at most its max; *ncols and *nvals get the totals).
void read_general_constraints(const Model &m, int contype[], int resultant[],
                              int64_t colstart[], int colind[], int64_t maxcols, int64_t *ncols,
                              int64_t valstart[], double val[], int64_t maxvals, int64_t *nvals,
                              int first, int last, const char *who);
// Piecewise-linear constraints first..last; *npoints gets the total.
void read_piecewise_constraints(const Model &m, int colind[], int resultant[], int64_t start[],
                                double xval[], double yval[], int64_t maxpoints,
                                int64_t *npoints, int first, int last, const char *who);
// Non-continuous columns (type, index, threshold) and the sets whole.
void read_mip_entities(const Model &m, int *nentities, int *nsets, char coltype[], int colind[],
                       double limit[], char settype[], int64_t start[], int setcols[],
                       double refval[]);

// The quadratic entries of a row, one per pair i <= j; the entries are
// written only when all three arrays are given.
void read_row_quadratic(const Model &m, int row, int64_t *n, int col1[], int col2[],
                        double coef[], const char *who);

// Sets first..last: types, start offsets, members and reference values (at
// most maxelems); *nelems gets the number of members in the range.
void read_sets(const Model &m, char settype[], int64_t start[], int colind[], double refval[],
               int64_t maxelems, int64_t *nelems, int first, int last, const char *who);

// Indicator column (-1 none) and complement of rows first..last.
void read_indicators(const Model &m, int colind[], int complement[], int first, int last,
                     const char *who);

// Ranges of rows first..last; rows that are not range rows read +infinity.
void read_row_ranges(const Model &m, double range[], int first, int last, const char *who);

}  // namespace zorvan
