// Entry points of single matrix coefficients and quadratic entries.
#include "problem/problem.h"
#include "model/reading.h"

using namespace zorvan;

namespace {

// Q[i][j] of a form, 0 when absent.
double entry(const Model &m, const QForm &q, int i, int j, const char *who) {
  check_index(i, m.cols(), "col1", 0, "column", who);
  check_index(j, m.cols(), "col2", 0, "column", who);
  auto it = q.find(qkey(i, j));
  return it == q.end() ? 0.0 : it->second;
}

}  // namespace

extern "C" {

int ZRVSchgcoef(ZRVSprob prob, int row, int col, double coef) {
  const char *who = "ZRVSchgcoef";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.change_coefficients(1, &row, &col, &coef, who);
    p.model_changed();
  });
}

int ZRVSchgmcoef64(ZRVSprob prob, int64_t ncoefs, const int rowind[], const int colind[],
                   const double rowcoef[]) {
  const char *who = "ZRVSchgmcoef64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.change_coefficients(ncoefs, rowind, colind, rowcoef, who);
    if (ncoefs > 0) p.model_changed();
  });
}

int ZRVSchgmcoef(ZRVSprob prob, int ncoefs, const int rowind[], const int colind[],
                 const double rowcoef[]) {
  const char *who = "ZRVSchgmcoef";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.change_coefficients(ncoefs, rowind, colind, rowcoef, who);
    if (ncoefs > 0) p.model_changed();
  });
}

int ZRVSgetcoef(ZRVSprob prob, int row, int col, double *coef) {
  const char *who = "ZRVSgetcoef";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(coef, "coef", who);
    *coef = p.model.coefficient(row, col, who);
  });
}

int ZRVSchgqobj(ZRVSprob prob, int objqcol1, int objqcol2, double objqcoef) {
  const char *who = "ZRVSchgqobj";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.change_quadratic_objective(1, &objqcol1, &objqcol2, &objqcoef, who);
    p.model_changed(Change::values);
  });
}

int ZRVSgetqobj(ZRVSprob prob, int objqcol1, int objqcol2, double *objqcoef) {
  const char *who = "ZRVSgetqobj";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(objqcoef, "objqcoef", who);
    *objqcoef = entry(p.model, p.model.qobj, objqcol1, objqcol2, who);
  });
}

int ZRVSchgqrowcoeff(ZRVSprob prob, int row, int rowqcol1, int rowqcol2, double rowqcoef) {
  const char *who = "ZRVSchgqrowcoeff";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_index(row, m.rows(), "row", 0, "row", who);
    if (rowqcoef != 0.0 && m.indcol[row] >= 0)
      fail(ZRVS_ERR_ARGUMENT, "%s: row %d is an indicator row and cannot have a quadratic part",
           who, row);
    QForm form = m.qrows.count(row) ? m.qrows[row] : QForm();
    m.change_quadratic_entry(form, rowqcol1, rowqcol2, rowqcoef, who);
    if (form.empty())
      m.qrows.erase(row);
    else
      m.qrows[row] = std::move(form);
    p.model_changed();
  });
}

int ZRVSgetqrowcoeff(ZRVSprob prob, int row, int rowqcol1, int rowqcol2, double *rowqcoef) {
  const char *who = "ZRVSgetqrowcoeff";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    check_index(row, m.rows(), "row", 0, "row", who);
    require(rowqcoef, "rowqcoef", who);
    auto it = m.qrows.find(row);
    static const QForm none;
    *rowqcoef = entry(m, it == m.qrows.end() ? none : it->second, rowqcol1, rowqcol2, who);
  });
}

int ZRVSgetqrowqmatrix(ZRVSprob prob, int row, int64_t start[], int colind[], double rowqcoef[],
                       int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  const char *who = "ZRVSgetqrowqmatrix";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    check_index(row, m.rows(), "row", 0, "row", who);
    auto it = m.qrows.find(row);
    static const QForm none;
    read_quadratic_form(m, it == m.qrows.end() ? none : it->second, start, colind, rowqcoef,
                        maxcoefs, ncoefs, first, last, who);
  });
}

int ZRVSgetqrows(ZRVSprob prob, int *nrows, int rowind[]) {
  const char *who = "ZRVSgetqrows";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(nrows, "nrows", who);
    *nrows = static_cast<int>(p.model.qrows.size());
    if (!rowind) return;
    int k = 0;
    for (const auto &e : p.model.qrows) rowind[k++] = e.first;
  });
}

int ZRVSdelqmatrix(ZRVSprob prob, int row) {
  const char *who = "ZRVSdelqmatrix";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.model.delete_row_quadratic(row, who);
    p.model_changed();
  });
}

}  // extern "C"
