// Entry points that read the model: bounds, types, thresholds, right-hand
// sides, ranges, row types and the matrix.
#include "problem/problem.h"
#include "model/reading.h"

using namespace zorvan;

extern "C" {

int ZRVSgetlb(ZRVSprob prob, double lb[], int first, int last) {
  return problem_call(prob, "ZRVSgetlb", [&](zrvs_problem &p) {
    read_range(p.model.lb, lb, "lb", first, last, "column", "ZRVSgetlb");
  });
}

int ZRVSgetub(ZRVSprob prob, double ub[], int first, int last) {
  return problem_call(prob, "ZRVSgetub", [&](zrvs_problem &p) {
    read_range(p.model.ub, ub, "ub", first, last, "column", "ZRVSgetub");
  });
}

int ZRVSgetcoltype(ZRVSprob prob, char coltype[], int first, int last) {
  return problem_call(prob, "ZRVSgetcoltype", [&](zrvs_problem &p) {
    read_range(p.model.coltype, coltype, "coltype", first, last, "column", "ZRVSgetcoltype");
  });
}

int ZRVSgetglblimit(ZRVSprob prob, double limit[], int first, int last) {
  return problem_call(prob, "ZRVSgetglblimit", [&](zrvs_problem &p) {
    read_range(p.model.limit, limit, "limit", first, last, "column", "ZRVSgetglblimit");
  });
}

int ZRVSgetrhs(ZRVSprob prob, double rhs[], int first, int last) {
  return problem_call(prob, "ZRVSgetrhs", [&](zrvs_problem &p) {
    read_range(p.model.rhs, rhs, "rhs", first, last, "row", "ZRVSgetrhs");
  });
}

int ZRVSgetrhsrange(ZRVSprob prob, double range[], int first, int last) {
  return problem_call(prob, "ZRVSgetrhsrange", [&](zrvs_problem &p) {
    read_row_ranges(p.model, range, first, last, "ZRVSgetrhsrange");
  });
}

int ZRVSgetrowtype(ZRVSprob prob, char rowtype[], int first, int last) {
  return problem_call(prob, "ZRVSgetrowtype", [&](zrvs_problem &p) {
    read_range(p.model.rowtype, rowtype, "rowtype", first, last, "row", "ZRVSgetrowtype");
  });
}

int ZRVSgetcols64(ZRVSprob prob, int64_t start[], int rowind[], double rowcoef[],
                  int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  const char *who = "ZRVSgetcols64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    // The range is checked before the matrix is compressed.
    check_range(first, last, p.model.cols(), "column", who);
    read_lines(p.model.by_columns(), p.model.cols(), start, rowind, rowcoef, maxcoefs, ncoefs,
               first, last, "column", who);
  });
}

int ZRVSgetrows64(ZRVSprob prob, int64_t start[], int colind[], double colcoef[],
                  int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  const char *who = "ZRVSgetrows64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    check_range(first, last, p.model.rows(), "row", who);
    read_lines(p.model.by_rows(), p.model.rows(), start, colind, colcoef, maxcoefs, ncoefs,
               first, last, "row", who);
  });
}

int ZRVSgetmipentities64(ZRVSprob prob, int *nentities, int *nsets, char coltype[],
                         int colind[], double limit[], char settype[], int64_t start[],
                         int setcols[], double refval[]) {
  return problem_call(prob, "ZRVSgetmipentities64", [&](zrvs_problem &p) {
    read_mip_entities(p.model, nentities, nsets, coltype, colind, limit, settype, start, setcols,
                      refval);
  });
}

}  // extern "C"
