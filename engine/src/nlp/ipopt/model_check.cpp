#include "nlp/ipopt/model_check.h"

#include <cmath>
#include <cstdio>

#include "zorvan/zrvs.h"

namespace zorvan::nlp {

namespace {

std::string column_text(const Model &m, int j) {
  return "column " + std::to_string(j) + " (" + m.colnames.get(j) + ")";
}

std::string row_text(const Model &m, int i) {
  return "row " + std::to_string(i) + " (" + m.rownames.get(i) + ")";
}

std::string number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

std::string sides(const std::string &what, double lower, double upper, const char *lower_name,
                  const char *upper_name) {
  if (std::isnan(lower) || std::isnan(upper)) return what + " has a " + lower_name + " that is NaN";
  if (lower >= ZRVS_PLUSINFINITY)
    return what + " has its " + lower_name + " at plus infinity (1e20 or more): no value meets it";
  if (upper <= -ZRVS_PLUSINFINITY)
    return what + " has its " + upper_name +
           " at minus infinity (-1e20 or less): no value meets it";
  return std::string();
}

std::string coefficient(const std::string &what, double v) {
  if (!std::isfinite(v)) return what + " is " + number(v);
  if (std::fabs(v) >= kLargeCoefficient)
    return what + " is " + number(v) + ", beyond the " + number(kLargeCoefficient) +
           " the solver accepts";
  return std::string();
}

std::string pair_text(const Model &m, const QKey &k) {
  return column_text(m, k.first) + " and " + column_text(m, k.second);
}

}  // namespace

std::string unusable_part(const Model &m) {
  std::string why;
  for (int j = 0; j < m.cols() && why.empty(); ++j)
    why = sides(column_text(m, j), m.lb[j], m.ub[j], "lower bound", "upper bound");
  for (int i = 0; i < m.rows() && why.empty(); ++i) {
    const char t = m.rowtype[i];
    const double rhs = m.rhs[i];
    const double lower = t == 'G' || t == 'E' ? rhs : t == 'R' ? rhs - m.range[i] : -ZRVS_PLUSINFINITY;
    const double upper = t == 'L' || t == 'E' || t == 'R' ? rhs : ZRVS_PLUSINFINITY;
    why = sides(row_text(m, i), lower, upper, "lower side", "upper side");
  }
  for (size_t e = 0; e < m.mval.size() && why.empty(); ++e)
    why = coefficient("the coefficient of " + column_text(m, m.mcol[e]) + " in " +
                          row_text(m, m.mrow[e]),
                      m.mval[e]);
  for (int j = 0; j < m.cols() && why.empty(); ++j)
    if (!std::isfinite(m.objectives[0].coef[j]))
      why = "the objective coefficient of " + column_text(m, j) + " is " +
            number(m.objectives[0].coef[j]);
  for (const auto &e : m.qobj) {
    if (!why.empty()) break;
    why = coefficient("the quadratic objective coefficient of " + pair_text(m, e.first), e.second);
  }
  for (const auto &row : m.qrows)
    for (const auto &e : row.second) {
      if (!why.empty()) return why;
      why = coefficient("the quadratic coefficient of " + pair_text(m, e.first) + " in " +
                            row_text(m, row.first),
                        e.second);
    }
  return why;
}

}  // namespace zorvan::nlp
