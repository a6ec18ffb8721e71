// Entry points that add, delete and read rows, and the quadratic parts of rows.
#include <algorithm>

#include "core/problem.h"
#include "model/batch.h"
#include "model/checks.h"

using namespace zorvan;

extern "C" {

int ZRVSreserve(ZRVSprob prob, int nrows, int ncols, int64_t ncoefs) {
  const char *who = "ZRVSreserve";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_count(nrows, "nrows", who);
    check_count(ncols, "ncols", who);
    check_count(ncoefs, "ncoefs", who);
    p.model.reserve(static_cast<size_t>(nrows), static_cast<size_t>(ncols),
                    static_cast<size_t>(ncoefs));
  });
}

int ZRVSaddrows64(ZRVSprob prob, int nrows, int64_t ncoefs, const char rowtype[],
                  const double rhs[], const double rng[], const int64_t start[],
                  const int colind[], const double rowcoef[]) {
  const char *who = "ZRVSaddrows64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nrows, "nrows", who);
    check_batch(nrows, ncoefs, start, colind, rowcoef, m.cols(), "colind", "column", who);
    if (nrows == 0) return;
    require(rowtype, "rowtype", who);
    for (int i = 0; i < nrows; ++i) {
      char t = rowtype[i];
      if (t != 'L' && t != 'G' && t != 'E' && t != 'R' && t != 'N')
        fail(ZRVS_ERR_ARGUMENT, "%s: rowtype[%d] is '%c', not one of L, G, E, R, N", who, i,
             t ? t : '?');
      if (t != 'N') {
        require(rhs, "rhs", who);
        check_not_nan(rhs[i], "rhs", i, who);
      }
      if (t == 'R') {
        require(rng, "rng", who);
        if (std::isnan(rng[i]) || rng[i] < 0)
          fail(ZRVS_ERR_ARGUMENT, "%s: rng[%d] must be a non-negative number", who, i);
      }
    }
    int first = m.rows();
    // The triplets are written in place and the vectors cut to what was
    // written: zero coefficients are left out.
    size_t used = m.mval.size();
    reserve_more(m.mrow, ncoefs);
    reserve_more(m.mcol, ncoefs);
    reserve_more(m.mval, ncoefs);
    m.append_rows(nrows);
    m.mrow.resize(used + ncoefs);  // within the reserved room: cannot throw
    m.mcol.resize(used + ncoefs);
    m.mval.resize(used + ncoefs);
    int *mrow = m.mrow.data(), *mcol = m.mcol.data();
    double *mval = m.mval.data();
    for (int i = 0; i < nrows; ++i) {
      int r = first + i;
      m.rowtype[r] = rowtype[i];
      m.rhs[r] = rhs ? rhs[i] : 0.0;
      if (std::isnan(m.rhs[r])) m.rhs[r] = 0.0;  // free rows may pass anything
      m.range[r] = rowtype[i] == 'R' ? rng[i] : 0.0;
      if (ncoefs == 0) continue;
      int64_t e = i + 1 < nrows ? start[i + 1] : ncoefs;
      for (int64_t k = start[i]; k < e; ++k) {
        if (rowcoef[k] == 0.0) continue;
        mrow[used] = r;
        mcol[used] = colind[k];
        mval[used++] = rowcoef[k];
      }
    }
    m.mrow.resize(used);
    m.mcol.resize(used);
    m.mval.resize(used);
    p.model_changed(Change::appended);
  });
}

int ZRVSdelrows(ZRVSprob prob, int nrows, const int rowind[]) {
  const char *who = "ZRVSdelrows";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nrows, "nrows", who);
    if (nrows == 0) return;
    require(rowind, "rowind", who);
    std::vector<char> del(m.rows(), 0);
    for (int k = 0; k < nrows; ++k) {
      check_index(rowind[k], m.rows(), "rowind", k, "row", who);
      del[rowind[k]] = 1;
    }
    m.delete_rows(del);
    p.lines_deleted(false, del);
  });
}

int ZRVSgetrhs(ZRVSprob prob, double rhs[], int first, int last) {
  return problem_call(prob, "ZRVSgetrhs", [&](zrvs_problem &p) {
    require(rhs, "rhs", "ZRVSgetrhs");
    check_range(first, last, p.model.rows(), "row", "ZRVSgetrhs");
    std::copy(p.model.rhs.begin() + first, p.model.rhs.begin() + last + 1, rhs);
  });
}

int ZRVSgetrhsrange(ZRVSprob prob, double range[], int first, int last) {
  return problem_call(prob, "ZRVSgetrhsrange", [&](zrvs_problem &p) {
    require(range, "range", "ZRVSgetrhsrange");
    check_range(first, last, p.model.rows(), "row", "ZRVSgetrhsrange");
    // Ranges of rows that are not range rows read as infinite.
    for (int i = first; i <= last; ++i)
      range[i - first] = p.model.rowtype[i] == 'R' ? p.model.range[i] : ZRVS_PLUSINFINITY;
  });
}

int ZRVSgetrowtype(ZRVSprob prob, char rowtype[], int first, int last) {
  return problem_call(prob, "ZRVSgetrowtype", [&](zrvs_problem &p) {
    require(rowtype, "rowtype", "ZRVSgetrowtype");
    check_range(first, last, p.model.rows(), "row", "ZRVSgetrowtype");
    std::copy(p.model.rowtype.begin() + first, p.model.rowtype.begin() + last + 1, rowtype);
  });
}

int ZRVSaddqmatrix64(ZRVSprob prob, int row, int64_t ncoefs, const int rowqcol1[],
                     const int rowqcol2[], const double rowqcoef[]) {
  const char *who = "ZRVSaddqmatrix64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_index(row, m.rows(), "row", 0, "row", who);
    check_count(ncoefs, "ncoefs", who);
    if (ncoefs == 0) return;
    require(rowqcol1, "rowqcol1", who);
    require(rowqcol2, "rowqcol2", who);
    require(rowqcoef, "rowqcoef", who);
    for (int64_t k = 0; k < ncoefs; ++k) {
      check_index(rowqcol1[k], m.cols(), "rowqcol1", k, "column", who);
      check_index(rowqcol2[k], m.cols(), "rowqcol2", k, "column", who);
      check_finite(rowqcoef[k], "rowqcoef", k, who);
    }
    QForm form = m.qrows.count(row) ? m.qrows[row] : QForm();
    for (int64_t k = 0; k < ncoefs; ++k) {
      double &v = form[qkey(rowqcol1[k], rowqcol2[k])];
      v += rowqcoef[k];
      if (v == 0.0) form.erase(qkey(rowqcol1[k], rowqcol2[k]));
    }
    if (form.empty())
      m.qrows.erase(row);
    else
      m.qrows[row] = std::move(form);
    p.model_changed();
  });
}

int ZRVSgetqrowqmatrixtriplets(ZRVSprob prob, int row, int64_t *nqelems, int rowqcol1[],
                               int rowqcol2[], double rowqcoef[]) {
  const char *who = "ZRVSgetqrowqmatrixtriplets";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_index(row, p.model.rows(), "row", 0, "row", who);
    require(nqelems, "nqelems", who);
    auto it = p.model.qrows.find(row);
    *nqelems = it == p.model.qrows.end() ? 0 : static_cast<int64_t>(it->second.size());
    if (!rowqcol1 || !rowqcol2 || !rowqcoef || *nqelems == 0) return;
    int64_t k = 0;
    for (const auto &e : it->second) {
      rowqcol1[k] = e.first.first, rowqcol2[k] = e.first.second, rowqcoef[k] = e.second;
      ++k;
    }
  });
}

}  // extern "C"
