// Exact MIP reformulations of general constraints (max, min, and, or, abs)
// and piecewise-linear constraints: binaries and rows whose big-M values
// come from the finite bounds of the columns involved.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/errors.h"
#include "solve/highs/builder.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

int add_binary(LpBuilder &lp) { return lp.add_column(0.0, 1.0, kHighsVarTypeInteger); }

// One operand of max or min: a column (col >= 0) or a constant, with the
// bounds it can take.
struct Operand {
  int col;
  double lower, upper;
};

std::vector<Operand> operands(const Model &m, int k, const std::string &need, const char *who) {
  std::vector<Operand> ops;
  for (int64_t e = m.gencolstart[k]; e < m.gencolstart[k + 1]; ++e) {
    int j = m.gencol[e];
    ops.push_back({j, finite_lower(m, j, need.c_str(), who),
                   finite_upper(m, j, need.c_str(), who)});
  }
  for (int64_t e = m.genvalstart[k]; e < m.genvalstart[k + 1]; ++e)
    ops.push_back({-1, m.genval[e], m.genval[e]});
  return ops;
}

// y = max (sign 1) or min (sign -1) of the operands: y is on the right side
// of every operand, and one chosen operand (binary z_i = 1) is within 0 of
// it; for the others the row is loosened by the spread of the bounds.
void extremum(const Model &m, LpBuilder &lp, int k, double sign, const std::string &need,
              const char *who) {
  const int y = m.genres[k];
  std::vector<Operand> ops = operands(m, k, need, who);
  // In the orientation of max: the largest upper bound among the operands.
  double top = -kHighsInf;
  for (const Operand &o : ops) top = std::max(top, sign > 0 ? o.upper : -o.lower);
  const int choose = lp.add_row(1.0, 1.0);
  for (const Operand &o : ops) {
    // sign*(y - x) >= 0
    int r = sign > 0 ? lp.add_row(0.0, kHighsInf) : lp.add_row(-kHighsInf, 0.0);
    lp.add_entry(r, y, 1.0);
    if (o.col >= 0) {
      lp.add_entry(r, o.col, -1.0);
    } else {
      lp.row_lower[r] += sign > 0 ? o.lower : 0.0;
      lp.row_upper[r] += sign > 0 ? 0.0 : o.lower;
    }
    // sign*(y - x) <= M (1 - z), M = top - (the operand's least value).
    const double least = sign > 0 ? o.lower : -o.upper;
    const double big = top - least;
    const int z = add_binary(lp);
    lp.add_entry(choose, z, 1.0);
    int c = sign > 0 ? lp.add_row(-kHighsInf, big) : lp.add_row(-big, kHighsInf);
    lp.add_entry(c, y, 1.0);
    lp.add_entry(c, z, sign * big);
    if (o.col >= 0) {
      lp.add_entry(c, o.col, -1.0);
    } else if (sign > 0) {
      lp.row_upper[c] += o.lower;
    } else {
      lp.row_lower[c] += o.lower;
    }
  }
}

void require_binary(const Model &m, int j, int k, const char *name, const char *who) {
  if (!m.is_binary(j))
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: general constraint %d (%s) needs binary columns; column %d is not binary", who, k,
         name, j);
}

// y = and / or of binaries: y <= x_i and y >= sum x - (n - 1) for and;
// y >= x_i and y <= sum x for or.
void logical(const Model &m, LpBuilder &lp, int k, bool conjunction, const char *who) {
  const char *name = conjunction ? "and" : "or";
  const int y = m.genres[k];
  require_binary(m, y, k, name, who);
  const int64_t b = m.gencolstart[k], e = m.gencolstart[k + 1];
  const double n = static_cast<double>(e - b);
  const int total = conjunction ? lp.add_row(-(n - 1), kHighsInf) : lp.add_row(-kHighsInf, 0.0);
  lp.add_entry(total, y, 1.0);
  for (int64_t i = b; i < e; ++i) {
    const int x = m.gencol[i];
    require_binary(m, x, k, name, who);
    int r = conjunction ? lp.add_row(-kHighsInf, 0.0) : lp.add_row(0.0, kHighsInf);
    lp.add_entry(r, y, 1.0);
    lp.add_entry(r, x, -1.0);
    lp.add_entry(total, x, -1.0);
  }
}

// y = |x|: y >= x, y >= -x, and one of y <= x, y <= -x chosen by a binary,
// the other loosened by M = 2 max(ub, -lb).
void absolute(const Model &m, LpBuilder &lp, int k, const std::string &need, const char *who) {
  const int y = m.genres[k], x = m.gencol[m.gencolstart[k]];
  const double lo = finite_lower(m, x, need.c_str(), who);
  const double up = finite_upper(m, x, need.c_str(), who);
  if (lo >= 0.0 || up <= 0.0) {  // one sign only: y = x or y = -x
    int r = lp.add_row(0.0, 0.0);
    lp.add_entry(r, y, 1.0);
    lp.add_entry(r, x, lo >= 0.0 ? -1.0 : 1.0);
    return;
  }
  const double big = 2.0 * std::max(up, -lo);
  int r1 = lp.add_row(0.0, kHighsInf);  // y - x >= 0
  lp.add_entry(r1, y, 1.0), lp.add_entry(r1, x, -1.0);
  int r2 = lp.add_row(0.0, kHighsInf);  // y + x >= 0
  lp.add_entry(r2, y, 1.0), lp.add_entry(r2, x, 1.0);
  const int z = add_binary(lp);  // 1: x >= 0
  int r3 = lp.add_row(-kHighsInf, big);  // y - x <= M (1 - z)
  lp.add_entry(r3, y, 1.0), lp.add_entry(r3, x, -1.0), lp.add_entry(r3, z, big);
  int r4 = lp.add_row(-kHighsInf, 0.0);  // y + x <= M z
  lp.add_entry(r4, y, 1.0), lp.add_entry(r4, x, 1.0), lp.add_entry(r4, z, -big);
}

}  // namespace

void reformulate_general_constraints(const Model &m, LpBuilder &lp, const char *who) {
  for (int k = 0; k < m.gencons(); ++k) {
    std::string need = "general constraint " + std::to_string(k);
    switch (m.gentype[k]) {
      case ZRVS_GENCONS_MAX: extremum(m, lp, k, 1.0, need, who); break;
      case ZRVS_GENCONS_MIN: extremum(m, lp, k, -1.0, need, who); break;
      case ZRVS_GENCONS_AND: logical(m, lp, k, true, who); break;
      case ZRVS_GENCONS_OR: logical(m, lp, k, false, who); break;
      default: absolute(m, lp, k, need, who); break;
    }
  }
}

void reformulate_piecewise_constraints(const Model &m, LpBuilder &lp, const char *who) {
  for (int k = 0; k < m.pwlcons(); ++k) {
    const int x = m.pwlcol[k], y = m.pwlres[k];
    std::vector<double> px(m.pwlx.begin() + m.pwlstart[k], m.pwlx.begin() + m.pwlstart[k + 1]);
    std::vector<double> py(m.pwly.begin() + m.pwlstart[k], m.pwly.begin() + m.pwlstart[k + 1]);
    std::string need = "piecewise-linear constraint " + std::to_string(k) +
                       ", whose end segments extend beyond its points";
    // Where x may lie beyond the points, the end segments are extended to
    // its bound by one more point (a jump at the end extends flat).
    auto slope = [&](size_t a, size_t b) {
      return px[b] > px[a] ? (py[b] - py[a]) / (px[b] - px[a]) : 0.0;
    };
    const double lo = m.lb[x], up = m.ub[x];
    if (lo < px.front()) {
      double l = finite_lower(m, x, need.c_str(), who);
      double s = slope(0, 1);
      px.insert(px.begin(), l);
      py.insert(py.begin(), py.front() + s * (l - px[1]));
    }
    if (up > px.back()) {
      double u = finite_upper(m, x, need.c_str(), who);
      double s = slope(px.size() - 2, px.size() - 1);
      py.push_back(py.back() + s * (u - px.back()));
      px.push_back(u);
    }
    // Convex weights of the points; the weights of one segment's two ends
    // only, chosen by one binary per segment of positive width (at a jump
    // the two points of it belong to different segments).
    const int one = lp.add_row(1.0, 1.0), xrow = lp.add_row(0.0, 0.0), yrow = lp.add_row(0.0, 0.0);
    lp.add_entry(xrow, x, 1.0), lp.add_entry(yrow, y, 1.0);
    const size_t points = px.size();
    std::vector<int> weight(points), segment(points, -1);
    for (size_t p = 0; p < points; ++p) {
      weight[p] = lp.add_column(0.0, 1.0, kHighsVarTypeContinuous);
      lp.add_entry(one, weight[p], 1.0);
      lp.add_entry(xrow, weight[p], -px[p]);
      lp.add_entry(yrow, weight[p], -py[p]);
    }
    const int choose = lp.add_row(1.0, 1.0);
    for (size_t s = 0; s + 1 < points; ++s) {
      if (px[s + 1] == px[s]) continue;
      segment[s] = add_binary(lp);
      lp.add_entry(choose, segment[s], 1.0);
    }
    for (size_t p = 0; p < points; ++p) {
      int r = lp.add_row(-kHighsInf, 0.0);  // weight <= the binaries of its segments
      lp.add_entry(r, weight[p], 1.0);
      if (p > 0 && segment[p - 1] >= 0) lp.add_entry(r, segment[p - 1], -1.0);
      if (segment[p] >= 0) lp.add_entry(r, segment[p], -1.0);
    }
  }
}

}  // namespace zorvan
