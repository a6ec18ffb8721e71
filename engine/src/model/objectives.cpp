// Objectives: linear coefficients and constants of every objective, the
// quadratic part of the primary one, and the sense.
#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

Objective &Model::objective(int objidx, const char *who) {
  if (objidx < 0 || objidx >= static_cast<int>(objectives.size()))
    fail(ZRVS_ERR_ARGUMENT, "%s: objidx %d is not an objective index (0..%d)", who, objidx,
         static_cast<int>(objectives.size()) - 1);
  return objectives[objidx];
}

void Model::change_objective(int objidx, int n, const int *colind, const double *coef,
                             const char *who) {
  int nobj = static_cast<int>(objectives.size());
  if (objidx < 0 || objidx > nobj)
    fail(ZRVS_ERR_ARGUMENT, "%s: objidx %d is not an objective index (0..%d, %d adds one)", who,
         objidx, nobj - 1, nobj);
  check_count(n, "ncols", who);
  if (n > 0) {
    require(colind, "colind", who);
    require(coef, "objcoef", who);
  }
  for (int k = 0; k < n; ++k) {
    if (colind[k] != -1) check_index(colind[k], cols(), "colind", k, "column", who);
    check_finite(coef[k], "objcoef", k, who);
  }
  if (objidx == nobj) {
    if (!qobj.empty())
      fail(ZRVS_ERR_ARGUMENT,
           "%s: the primary objective is quadratic; further objectives need a linear one", who);
    Objective o;
    o.coef.assign(cols(), 0.0);
    objectives.push_back(std::move(o));
  }
  Objective &o = objectives[objidx];
  for (int k = 0; k < n; ++k) {
    if (colind[k] == -1)
      o.constant = coef[k];
    else
      o.coef[colind[k]] = coef[k];
  }
}

void Model::change_quadratic_objective(int64_t n, const int *col1, const int *col2,
                                       const double *coef, const char *who) {
  check_count(n, "ncoefs", who);
  if (n == 0) return;
  require(col1, "objqcol1", who);
  require(col2, "objqcol2", who);
  require(coef, "objqcoef", who);
  bool adds = false;
  for (int64_t k = 0; k < n; ++k) {
    check_index(col1[k], cols(), "objqcol1", k, "column", who);
    check_index(col2[k], cols(), "objqcol2", k, "column", who);
    check_finite(coef[k], "objqcoef", k, who);
    adds = adds || coef[k] != 0.0;
  }
  if (adds && objectives.size() > 1)
    fail(ZRVS_ERR_ARGUMENT,
         "%s: the problem has several objectives; only a single objective may be quadratic",
         who);
  for (int64_t k = 0; k < n; ++k) {
    QKey key = qkey(col1[k], col2[k]);
    if (coef[k] == 0.0)
      qobj.erase(key);
    else
      qobj[key] = coef[k];
  }
}

void Model::delete_objective(int objidx, const char *who) {
  objective(objidx, who);
  if (objidx == 0) fail(ZRVS_ERR_ARGUMENT, "%s: the primary objective (0) cannot be deleted", who);
  objectives.erase(objectives.begin() + objidx);
}

void Model::set_sense(int sense, const char *who) {
  if (sense != ZRVS_OBJ_MINIMIZE && sense != ZRVS_OBJ_MAXIMIZE)
    fail(ZRVS_ERR_ARGUMENT, "%s: sense is %d, not 1 (minimise) or -1 (maximise)", who, sense);
  objsense = sense;
}

}  // namespace zorvan
