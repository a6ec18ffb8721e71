// Entry points of special ordered sets and indicator constraints.
#include "problem/problem.h"
#include "model/reading.h"

using namespace zorvan;

extern "C" {

int ZRVSaddsets64(ZRVSprob prob, int nsets, int64_t nelems, const char settype[],
                  const int64_t start[], const int colind[], const double refval[]) {
  return problem_call(prob, "ZRVSaddsets64", [&](zrvs_problem &p) {
    p.model.add_sets(nsets, nelems, settype, start, colind, refval, "ZRVSaddsets64");
    if (nsets > 0) p.model_changed();
  });
}

int ZRVSdelsets(ZRVSprob prob, int nsets, const int setind[]) {
  return problem_call(prob, "ZRVSdelsets", [&](zrvs_problem &p) {
    auto del = listed(nsets, "nsets", setind, "setind", p.model.sets(), "set", "ZRVSdelsets");
    if (nsets == 0) return;
    p.model.delete_sets(del);
    p.model_changed();
  });
}

int ZRVSgetsets64(ZRVSprob prob, char settype[], int64_t start[], int colind[],
                  double refval[], int64_t maxelems, int64_t *nelems, int first, int last) {
  return problem_call(prob, "ZRVSgetsets64", [&](zrvs_problem &p) {
    read_sets(p.model, settype, start, colind, refval, maxelems, nelems, first, last,
              "ZRVSgetsets64");
  });
}

int ZRVSsetindicators(ZRVSprob prob, int nrows, const int rowind[], const int colind[],
                      const int complement[]) {
  return problem_call(prob, "ZRVSsetindicators", [&](zrvs_problem &p) {
    p.model.set_indicators(nrows, rowind, colind, complement, "ZRVSsetindicators");
    if (nrows > 0) p.model_changed();
  });
}

int ZRVSdelindicators(ZRVSprob prob, int first, int last) {
  return problem_call(prob, "ZRVSdelindicators", [&](zrvs_problem &p) {
    p.model.delete_indicators(first, last, "ZRVSdelindicators");
    p.model_changed();
  });
}

int ZRVSgetindicators(ZRVSprob prob, int colind[], int complement[], int first, int last) {
  return problem_call(prob, "ZRVSgetindicators", [&](zrvs_problem &p) {
    read_indicators(p.model, colind, complement, first, last, "ZRVSgetindicators");
  });
}

}  // extern "C"
