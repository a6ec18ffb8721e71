// Entry points of general and piecewise-linear constraints.
#include "problem/problem.h"
#include "model/reading.h"

using namespace zorvan;

extern "C" {

int ZRVSaddgencons64(ZRVSprob prob, int ncons, int64_t ncols, int64_t nvals, const int contype[],
                     const int resultant[], const int64_t colstart[], const int colind[],
                     const int64_t valstart[], const double val[]) {
  const char *who = "ZRVSaddgencons64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.add_general_constraints(ncons, ncols, nvals, contype, resultant, colstart, colind,
                                    valstart, val, who);
    if (ncons > 0) p.model_changed();
  });
}

int ZRVSgetgencons64(ZRVSprob prob, int contype[], int resultant[], int64_t colstart[],
                     int colind[], int64_t maxcols, int64_t *ncols, int64_t valstart[],
                     double val[], int64_t maxvals, int64_t *nvals, int first, int last) {
  const char *who = "ZRVSgetgencons64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    read_general_constraints(p.model, contype, resultant, colstart, colind, maxcols, ncols,
                             valstart, val, maxvals, nvals, first, last, who);
  });
}

int ZRVSdelgencons(ZRVSprob prob, int ncons, const int conind[]) {
  const char *who = "ZRVSdelgencons";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    auto del = listed(ncons, "ncons", conind, "conind", p.model.gencons(), "general constraint",
                      who);
    if (ncons == 0) return;
    p.model.delete_general_constraints(del);
    p.model_changed();
  });
}

int ZRVSaddpwlcons64(ZRVSprob prob, int npwls, int64_t npoints, const int colind[],
                     const int resultant[], const int64_t start[], const double xval[],
                     const double yval[]) {
  const char *who = "ZRVSaddpwlcons64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.add_piecewise_constraints(npwls, npoints, colind, resultant, start, xval, yval, who);
    if (npwls > 0) p.model_changed();
  });
}

int ZRVSgetpwlcons64(ZRVSprob prob, int colind[], int resultant[], int64_t start[],
                     double xval[], double yval[], int64_t maxpoints, int64_t *npoints,
                     int first, int last) {
  const char *who = "ZRVSgetpwlcons64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    read_piecewise_constraints(p.model, colind, resultant, start, xval, yval, maxpoints, npoints,
                               first, last, who);
  });
}

int ZRVSdelpwlcons(ZRVSprob prob, int npwls, const int pwlind[]) {
  const char *who = "ZRVSdelpwlcons";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    auto del = listed(npwls, "npwls", pwlind, "pwlind", p.model.pwlcons(),
                      "piecewise-linear constraint", who);
    if (npwls == 0) return;
    p.model.delete_piecewise_constraints(del);
    p.model_changed();
  });
}

}  // extern "C"
