#include "solve/highs/rejection.h"

#include <cmath>
#include <cstdio>

namespace zorvan {

namespace {

std::string column_text(const Model &m, int j) {
  if (j >= m.cols()) return "column " + std::to_string(j) + " (added by a reformulation)";
  return "column " + std::to_string(j) + " (" + m.colnames.get(j) + ")";
}

std::string row_text(const Model &m, int i) {
  if (i >= m.rows()) return "row " + std::to_string(i) + " (added by a reformulation)";
  return "row " + std::to_string(i) + " (" + m.rownames.get(i) + ")";
}

std::string number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

// Bounds or sides: lower at +inf or upper at -inf can never hold.
std::string sides(const std::string &what, double lower, double upper, const char *lower_name,
                  const char *upper_name) {
  if (std::isnan(lower) || std::isnan(upper)) return what + " has a " + lower_name + " that is NaN";
  if (lower == kHighsInf)
    return what + " has its " + lower_name + " at plus infinity (1e20 or more): no value meets it";
  if (upper == -kHighsInf)
    return what + " has its " + upper_name +
           " at minus infinity (-1e20 or less): no value meets it";
  return std::string();
}

std::string coefficient(const std::string &what, double v, double large) {
  if (!std::isfinite(v)) return what + " is " + number(v);
  if (std::fabs(v) >= large)
    return what + " is " + number(v) + ", beyond the " + number(large) + " the solver accepts";
  return std::string();
}

}  // namespace

std::string rejected_part(const Model &m, const HighsBuild &build, double large) {
  const LpBuilder &lp = build.lp;
  std::string why;
  for (int j = 0; j < lp.cols() && why.empty(); ++j)
    why = sides(column_text(m, j), lp.col_lower[j], lp.col_upper[j], "lower bound", "upper bound");
  for (int i = 0; i < lp.rows() && why.empty(); ++i) {
    why = sides(row_text(m, i), lp.row_lower[i], lp.row_upper[i], "lower side",
                "upper side");
    if (!why.empty()) why += " (right-hand side " + number(i < m.rows() ? m.rhs[i] : 0.0) + ")";
  }
  // The problem's own entries, then those reformulations added.
  const size_t own = static_cast<size_t>(m.elems());
  for (size_t e = 0; e < own + lp.eval.size() && why.empty(); ++e) {
    const bool mine = e < own;
    const int i = mine ? m.mrow[e] : lp.erow[e - own], j = mine ? m.mcol[e] : lp.ecol[e - own];
    why = coefficient("the coefficient of " + column_text(m, j) + " in " + row_text(m, i),
                      mine ? m.mval[e] : lp.eval[e - own], large);
  }
  for (int j = 0; j < lp.cols() && why.empty(); ++j)
    if (!std::isfinite(lp.cost[j]))
      why = "the objective coefficient of " + column_text(m, j) + " is " + number(lp.cost[j]);
  const HighsCsc &q = build.hessian;
  for (int j = 0; j + 1 < static_cast<int>(q.start.size()) && why.empty(); ++j)
    for (HighsInt k = q.start[j]; k < q.start[j + 1] && why.empty(); ++k)
      why = coefficient("the quadratic objective coefficient of " + column_text(m, j) +
                            " and " + column_text(m, q.index[k]),
                        q.value[k], large);
  return why;
}

}  // namespace zorvan
