// Entry points that add, change, delete and read columns.
#include <algorithm>

#include "core/problem.h"
#include "model/batch.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

bool valid_coltype(char t) {
  return t == 'C' || t == 'B' || t == 'I' || t == 'S' || t == 'R' || t == 'P';
}

}  // namespace

extern "C" {

int ZRVSaddcols64(ZRVSprob prob, int ncols, int64_t ncoefs, const double objcoef[],
                  const int64_t start[], const int rowind[], const double rowcoef[],
                  const double lb[], const double ub[]) {
  const char *who = "ZRVSaddcols64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(ncols, "ncols", who);
    check_batch(ncols, ncoefs, start, rowind, rowcoef, m.rows(), "rowind", "row", who);
    for (int j = 0; j < ncols; ++j) {
      if (objcoef) check_finite(objcoef[j], "objcoef", j, who);
      if (lb) check_not_nan(lb[j], "lb", j, who);
      if (ub) check_not_nan(ub[j], "ub", j, who);
    }
    if (ncols == 0) return;
    int first = m.cols();
    reserve_more(m.mrow, ncoefs);
    reserve_more(m.mcol, ncoefs);
    reserve_more(m.mval, ncoefs);
    m.append_columns(ncols);
    for (int j = 0; j < ncols; ++j) {
      int c = first + j;
      if (objcoef) m.objectives[0].coef[c] = objcoef[j];
      if (lb) m.lb[c] = lb[j];
      if (ub) m.ub[c] = ub[j];
      if (ncoefs == 0) continue;
      int64_t e = j + 1 < ncols ? start[j + 1] : ncoefs;
      for (int64_t k = start[j]; k < e; ++k) {
        if (rowcoef[k] == 0.0) continue;
        m.mrow.push_back(rowind[k]);
        m.mcol.push_back(c);
        m.mval.push_back(rowcoef[k]);
      }
    }
    p.model_changed(Change::appended);
  });
}

int ZRVSchgbounds(ZRVSprob prob, int nbounds, const int colind[], const char bndtype[],
                  const double bndval[]) {
  const char *who = "ZRVSchgbounds";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(nbounds, "nbounds", who);
    if (nbounds == 0) return;
    require(colind, "colind", who);
    require(bndtype, "bndtype", who);
    require(bndval, "bndval", who);
    for (int k = 0; k < nbounds; ++k) {
      check_index(colind[k], m.cols(), "colind", k, "column", who);
      char t = bndtype[k];
      if (t != 'L' && t != 'U' && t != 'B')
        fail(ZRVS_ERR_ARGUMENT, "%s: bndtype[%d] is '%c', not one of L, U, B", who, k,
             t ? t : '?');
      check_not_nan(bndval[k], "bndval", k, who);
    }
    for (int k = 0; k < nbounds; ++k) {
      int c = colind[k];
      if (bndtype[k] != 'U') m.lb[c] = bndval[k];
      if (bndtype[k] != 'L') m.ub[c] = bndval[k];
    }
    p.model_changed(Change::values);
  });
}

int ZRVSchgcoltype(ZRVSprob prob, int ncols, const int colind[], const char coltype[]) {
  const char *who = "ZRVSchgcoltype";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(ncols, "ncols", who);
    if (ncols == 0) return;
    require(colind, "colind", who);
    require(coltype, "coltype", who);
    for (int k = 0; k < ncols; ++k) {
      check_index(colind[k], m.cols(), "colind", k, "column", who);
      if (!valid_coltype(coltype[k]))
        fail(ZRVS_ERR_ARGUMENT, "%s: coltype[%d] is '%c', not one of C, B, I, S, R, P", who, k,
             coltype[k] ? coltype[k] : '?');
    }
    for (int k = 0; k < ncols; ++k) {
      int c = colind[k];
      m.coltype[c] = coltype[k];
      if (coltype[k] == 'B') m.lb[c] = 0.0, m.ub[c] = 1.0;
    }
    p.model_changed(Change::values);
  });
}

int ZRVSchgglblimit(ZRVSprob prob, int ncols, const int colind[], const double limit[]) {
  const char *who = "ZRVSchgglblimit";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(ncols, "ncols", who);
    if (ncols == 0) return;
    require(colind, "colind", who);
    require(limit, "limit", who);
    for (int k = 0; k < ncols; ++k) {
      int c = colind[k];
      check_index(c, m.cols(), "colind", k, "column", who);
      char t = m.coltype[c];
      if (t != 'S' && t != 'R' && t != 'P')
        fail(ZRVS_ERR_ARGUMENT,
             "%s: column %d has type '%c'; only S, R and P columns have a threshold", who, c, t);
      check_finite(limit[k], "limit", k, who);
    }
    for (int k = 0; k < ncols; ++k) m.limit[colind[k]] = limit[k];
    p.model_changed(Change::values);
  });
}

int ZRVSdelcols(ZRVSprob prob, int ncols, const int colind[]) {
  const char *who = "ZRVSdelcols";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(ncols, "ncols", who);
    if (ncols == 0) return;
    require(colind, "colind", who);
    std::vector<char> del(m.cols(), 0);
    for (int k = 0; k < ncols; ++k) {
      check_index(colind[k], m.cols(), "colind", k, "column", who);
      del[colind[k]] = 1;
    }
    m.delete_columns(del);
    p.lines_deleted(true, del);
  });
}

int ZRVSgetlb(ZRVSprob prob, double lb[], int first, int last) {
  return problem_call(prob, "ZRVSgetlb", [&](zrvs_problem &p) {
    require(lb, "lb", "ZRVSgetlb");
    check_range(first, last, p.model.cols(), "column", "ZRVSgetlb");
    std::copy(p.model.lb.begin() + first, p.model.lb.begin() + last + 1, lb);
  });
}

int ZRVSgetub(ZRVSprob prob, double ub[], int first, int last) {
  return problem_call(prob, "ZRVSgetub", [&](zrvs_problem &p) {
    require(ub, "ub", "ZRVSgetub");
    check_range(first, last, p.model.cols(), "column", "ZRVSgetub");
    std::copy(p.model.ub.begin() + first, p.model.ub.begin() + last + 1, ub);
  });
}

int ZRVSgetcoltype(ZRVSprob prob, char coltype[], int first, int last) {
  return problem_call(prob, "ZRVSgetcoltype", [&](zrvs_problem &p) {
    require(coltype, "coltype", "ZRVSgetcoltype");
    check_range(first, last, p.model.cols(), "column", "ZRVSgetcoltype");
    std::copy(p.model.coltype.begin() + first, p.model.coltype.begin() + last + 1, coltype);
  });
}

int ZRVSgetglblimit(ZRVSprob prob, double limit[], int first, int last) {
  return problem_call(prob, "ZRVSgetglblimit", [&](zrvs_problem &p) {
    require(limit, "limit", "ZRVSgetglblimit");
    check_range(first, last, p.model.cols(), "column", "ZRVSgetglblimit");
    std::copy(p.model.limit.begin() + first, p.model.limit.begin() + last + 1, limit);
  });
}

}  // extern "C"
