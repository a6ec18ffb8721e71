// Exact MIP reformulations of what HiGHS does not take directly: special
// ordered sets, indicator constraints and partially integer columns. Each
// adds binaries and rows whose big-M values come from finite bounds.
#include <cmath>
#include <string>

#include "core/errors.h"
#include "solve/highs/builder.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

int add_binary(LpBuilder &lp) { return lp.add_column(0.0, 1.0, kHighsVarTypeInteger); }

// x_j within [l, u] * (sum of the switches): x_j - u*s <= 0, x_j - l*s >= 0.
void link_to_switches(const Model &m, LpBuilder &lp, int j, const std::vector<int> &switches,
                      const std::string &need, const char *who) {
  double l = m.lb[j], u = m.ub[j];
  if (m.coltype[j] == 'S' || m.coltype[j] == 'R') l = std::min(l, 0.0);
  if (u > 0.0) {
    u = finite_upper(m, j, need.c_str(), who);
    int r = lp.add_row(-kHighsInf, 0.0);
    lp.add_entry(r, j, 1.0);
    for (int s : switches) lp.add_entry(r, s, -u);
  }
  if (l < 0.0) {
    l = finite_lower(m, j, need.c_str(), who);
    int r = lp.add_row(0.0, kHighsInf);
    lp.add_entry(r, j, 1.0);
    for (int s : switches) lp.add_entry(r, s, -l);
  }
}

}  // namespace

void reformulate_sets(const Model &m, LpBuilder &lp, const char *who) {
  for (int s = 0; s < m.sets(); ++s) {
    int64_t b = m.setstart[s], e = m.setstart[s + 1];
    int n = static_cast<int>(e - b);
    std::string need = "set " + std::to_string(s);
    if (m.settype[s] == '1') {
      if (n < 2) continue;
      // One binary per member, at most one of them on.
      int sum = lp.add_row(-kHighsInf, 1.0);
      for (int64_t k = b; k < e; ++k) {
        int z = add_binary(lp);
        lp.add_entry(sum, z, 1.0);
        link_to_switches(m, lp, m.setcol[k], {z}, need, who);
      }
    } else {
      if (n < 3) continue;
      // One binary per pair of neighbours, at most one pair on; a member
      // may be non-zero only when a pair containing it is on.
      int sum = lp.add_row(-kHighsInf, 1.0);
      std::vector<int> pair(n - 1);
      for (int k = 0; k + 1 < n; ++k) {
        pair[k] = add_binary(lp);
        lp.add_entry(sum, pair[k], 1.0);
      }
      for (int k = 0; k < n; ++k) {
        std::vector<int> switches;
        if (k > 0) switches.push_back(pair[k - 1]);
        if (k + 1 < n) switches.push_back(pair[k]);
        link_to_switches(m, lp, m.setcol[b + k], switches, need, who);
      }
    }
  }
}

void reformulate_indicators(const Model &m, LpBuilder &lp, const char *who) {
  if (m.indicators() == 0) return;
  Compressed rows = m.by_rows();
  for (int i = 0; i < m.rows(); ++i) {
    int c = m.indcol[i];
    if (c < 0) continue;
    std::string need = "the indicator constraint of row " + std::to_string(i);
    double lo = lp.row_lower[i], up = lp.row_upper[i];
    // Activity bounds, needed only on the sides the row has.
    double minact = 0.0, maxact = 0.0;
    for (int64_t k = rows.start[i]; k < rows.start[i + 1]; ++k) {
      int j = rows.index[k];
      double a = rows.value[k];
      if (up < kHighsInf)
        maxact += a * (a > 0 ? finite_upper(m, j, need.c_str(), who)
                             : finite_lower(m, j, need.c_str(), who));
      if (lo > -kHighsInf)
        minact += a * (a > 0 ? finite_lower(m, j, need.c_str(), who)
                             : finite_upper(m, j, need.c_str(), who));
    }
    // delta = 1 switches the row off: delta = x_c when the row holds at
    // x_c = 0 (flag -1), delta = 1 - x_c when it holds at x_c = 1 (flag 1).
    bool at_one = m.indflag[i] == 1;
    double mup = up < kHighsInf ? maxact - up : 0.0;
    double mlo = lo > -kHighsInf ? lo - minact : 0.0;
    if (mup <= 0.0 && mlo <= 0.0) continue;  // the bounds imply the row
    // The switch's entry shifts both sides of its row, so a row relaxed on
    // one side must not keep the other: a side the bounds imply is dropped,
    // and when both need relaxing the lower side moves to a row of its own.
    int lower_row = i;
    if (mup > 0.0 && mlo > 0.0) {
      lower_row = lp.add_row(lo, kHighsInf);
      lp.row_lower[i] = -kHighsInf;
      for (int64_t k = rows.start[i]; k < rows.start[i + 1]; ++k)
        lp.add_entry(lower_row, rows.index[k], rows.value[k]);
    } else if (mup > 0.0) {
      lp.row_lower[i] = -kHighsInf;
    } else {
      lp.row_upper[i] = kHighsInf;
    }
    if (mup > 0.0) {
      lp.add_entry(i, c, at_one ? mup : -mup);
      if (at_one) lp.row_upper[i] += mup;
    }
    if (mlo > 0.0) {
      lp.add_entry(lower_row, c, at_one ? -mlo : mlo);
      if (at_one) lp.row_lower[lower_row] -= mlo;
    }
  }
}

void reformulate_partial_integers(const Model &m, LpBuilder &lp, const char *who) {
  for (int j = 0; j < m.cols(); ++j) {
    if (m.coltype[j] != 'P') continue;
    double limit = m.limit[j];
    if (limit >= m.ub[j]) {  // integer everywhere
      lp.integrality[j] = kHighsVarTypeInteger;
      continue;
    }
    if (limit <= m.lb[j]) continue;  // continuous everywhere
    if (std::floor(limit) < std::ceil(m.lb[j])) {  // no integer below the threshold
      lp.col_lower[j] = limit;
      continue;
    }
    const char *need = "its partially integer reformulation";
    double l = finite_lower(m, j, need, who), u = finite_upper(m, j, need, who);
    // x = y + w with y integer in [l, floor(limit)] and w continuous;
    // z = 0: w = 0 (x integer); z = 1: y = floor(limit), x in [limit, u].
    double fl = std::floor(limit);
    int y = lp.add_column(l, fl, kHighsVarTypeInteger);
    int w = lp.add_column(0.0, u - fl, kHighsVarTypeContinuous);
    int z = add_binary(lp);
    int sum = lp.add_row(0.0, 0.0);
    lp.add_entry(sum, j, 1.0), lp.add_entry(sum, y, -1.0), lp.add_entry(sum, w, -1.0);
    int wmax = lp.add_row(-kHighsInf, 0.0);
    lp.add_entry(wmax, w, 1.0), lp.add_entry(wmax, z, -(u - fl));
    int wmin = lp.add_row(0.0, kHighsInf);
    lp.add_entry(wmin, w, 1.0), lp.add_entry(wmin, z, -(limit - fl));
    int ymin = lp.add_row(l, kHighsInf);
    lp.add_entry(ymin, y, 1.0), lp.add_entry(ymin, z, -(fl - l));
  }
}

}  // namespace zorvan
