// Entry points of the quadratic parts of rows.
#include "problem/problem.h"
#include "model/reading.h"

using namespace zorvan;

extern "C" {

int ZRVSaddqmatrix64(ZRVSprob prob, int row, int64_t ncoefs, const int rowqcol1[],
                     const int rowqcol2[], const double rowqcoef[]) {
  return problem_call(prob, "ZRVSaddqmatrix64", [&](zrvs_problem &p) {
    p.model.add_row_quadratic(row, ncoefs, rowqcol1, rowqcol2, rowqcoef, "ZRVSaddqmatrix64");
    if (ncoefs > 0) p.model_changed();
  });
}

int ZRVSgetqrowqmatrixtriplets(ZRVSprob prob, int row, int64_t *nqelems, int rowqcol1[],
                               int rowqcol2[], double rowqcoef[]) {
  return problem_call(prob, "ZRVSgetqrowqmatrixtriplets", [&](zrvs_problem &p) {
    read_row_quadratic(p.model, row, nqelems, rowqcol1, rowqcol2, rowqcoef,
                       "ZRVSgetqrowqmatrixtriplets");
  });
}

}  // extern "C"
