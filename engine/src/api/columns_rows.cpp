// Entry points that add, change and delete columns and rows.
#include "problem/problem.h"
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

int ZRVSaddcols64(ZRVSprob prob, int ncols, int64_t ncoefs, const double objcoef[],
                  const int64_t start[], const int rowind[], const double rowcoef[],
                  const double lb[], const double ub[]) {
  return problem_call(prob, "ZRVSaddcols64", [&](zrvs_problem &p) {
    p.model.add_columns(ncols, ncoefs, objcoef, start, rowind, rowcoef, lb, ub, "ZRVSaddcols64");
    if (ncols > 0) p.model_changed(Change::appended);
  });
}

int ZRVSaddrows64(ZRVSprob prob, int nrows, int64_t ncoefs, const char rowtype[],
                  const double rhs[], const double rng[], const int64_t start[],
                  const int colind[], const double rowcoef[]) {
  return problem_call(prob, "ZRVSaddrows64", [&](zrvs_problem &p) {
    p.model.add_rows(nrows, ncoefs, rowtype, rhs, rng, start, colind, rowcoef, "ZRVSaddrows64");
    if (nrows > 0) p.model_changed(Change::appended);
  });
}

int ZRVSdelrows(ZRVSprob prob, int nrows, const int rowind[]) {
  return problem_call(prob, "ZRVSdelrows", [&](zrvs_problem &p) {
    auto del = listed(nrows, "nrows", rowind, "rowind", p.model.rows(), "row", "ZRVSdelrows");
    if (nrows == 0) return;
    p.model.delete_rows(del);
    p.lines_deleted(false, del);
  });
}

int ZRVSdelcols(ZRVSprob prob, int ncols, const int colind[]) {
  return problem_call(prob, "ZRVSdelcols", [&](zrvs_problem &p) {
    auto del = listed(ncols, "ncols", colind, "colind", p.model.cols(), "column", "ZRVSdelcols");
    if (ncols == 0) return;
    p.model.delete_columns(del);
    p.lines_deleted(true, del);
  });
}

int ZRVSchgbounds(ZRVSprob prob, int nbounds, const int colind[], const char bndtype[],
                  const double bndval[]) {
  return problem_call(prob, "ZRVSchgbounds", [&](zrvs_problem &p) {
    p.model.change_bounds(nbounds, colind, bndtype, bndval, "ZRVSchgbounds");
    if (nbounds > 0) p.column_bounds_changed(nbounds, colind);
  });
}

int ZRVSchgrhs(ZRVSprob prob, int nrows, const int rowind[], const double rhs[]) {
  return problem_call(prob, "ZRVSchgrhs", [&](zrvs_problem &p) {
    p.model.change_rhs(nrows, rowind, rhs, "ZRVSchgrhs");
    if (nrows > 0) p.rows_changed(nrows, rowind);
  });
}

int ZRVSchgrhsrange(ZRVSprob prob, int nrows, const int rowind[], const double rng[]) {
  return problem_call(prob, "ZRVSchgrhsrange", [&](zrvs_problem &p) {
    p.model.change_ranges(nrows, rowind, rng, "ZRVSchgrhsrange");
    if (nrows > 0) p.rows_changed(nrows, rowind);
  });
}

int ZRVSchgrowtype(ZRVSprob prob, int nrows, const int rowind[], const char rowtype[]) {
  return problem_call(prob, "ZRVSchgrowtype", [&](zrvs_problem &p) {
    p.model.change_row_types(nrows, rowind, rowtype, "ZRVSchgrowtype");
    if (nrows > 0) p.rows_changed(nrows, rowind);
  });
}

int ZRVSchgcoltype(ZRVSprob prob, int ncols, const int colind[], const char coltype[]) {
  return problem_call(prob, "ZRVSchgcoltype", [&](zrvs_problem &p) {
    p.model.change_column_types(ncols, colind, coltype, "ZRVSchgcoltype");
    if (ncols > 0) p.model_changed(Change::values);
  });
}

int ZRVSchgglblimit(ZRVSprob prob, int ncols, const int colind[], const double limit[]) {
  return problem_call(prob, "ZRVSchgglblimit", [&](zrvs_problem &p) {
    p.model.change_limits(ncols, colind, limit, "ZRVSchgglblimit");
    if (ncols > 0) p.model_changed(Change::values);
  });
}

}  // extern "C"
