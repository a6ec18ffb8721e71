// The HiGHS model of a problem: columns, rows, matrix and quadratic
// objective, with the discrete parts HiGHS lacks reformulated.
#include <cmath>

#include "core/errors.h"
#include "solve/highs/builder.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

double to_highs(double v) {
  if (v >= ZRVS_PLUSINFINITY) return kHighsInf;
  if (v <= -ZRVS_PLUSINFINITY) return -kHighsInf;
  return v;
}

void add_columns(const Model &m, SolveMode mode, LpBuilder &lp, const char *who) {
  for (int j = 0; j < m.cols(); ++j) {
    HighsColumn c = highs_column(m, j, mode, who);
    lp.add_column(c.lower, c.upper, c.type);
  }
}

void add_rows(const Model &m, SolveMode mode, LpBuilder &lp) {
  for (int i = 0; i < m.rows(); ++i) {
    HighsRow r = highs_row(m, i, mode);
    lp.add_row(r.lower, r.upper);
  }
}

// The lower triangle of Q by columns, as HiGHS takes it, weighted like the
// linear costs of the primary objective (the only one that may carry Q).
HighsCsc hessian(const Model &m) {
  HighsCsc h;
  if (m.qobj.empty()) return h;
  const double weight = m.objectives[0].weight;
  h.start.assign(m.cols() + 1, 0);
  for (const auto &e : m.qobj) ++h.start[e.first.first + 1];
  for (int j = 0; j < m.cols(); ++j) h.start[j + 1] += h.start[j];
  h.index.resize(m.qobj.size());
  h.value.resize(m.qobj.size());
  std::vector<HighsInt> next(h.start.begin(), h.start.end() - 1);
  for (const auto &e : m.qobj) {
    // qobj is ordered by (column, row), so rows come out ascending.
    HighsInt pos = next[e.first.first]++;
    h.index[pos] = e.first.second;
    h.value[pos] = weight * e.second;
  }
  return h;
}

}  // namespace

HighsColumn highs_column(const Model &m, int j, SolveMode mode, const char *who) {
  const bool mip = mode == SolveMode::mip;
  HighsColumn c{to_highs(m.lb[j]), to_highs(m.ub[j]), kHighsVarTypeContinuous};
  switch (m.coltype[j]) {
    case 'B':
    case 'I':
      if (mip) c.type = kHighsVarTypeInteger;
      break;
    case 'S':
    case 'R': {
      // 0, or between max(lb, threshold) and ub.
      double low = std::max(c.lower, m.limit[j]);
      if (low <= 0.0) {
        c.lower = low;
        if (mip && m.coltype[j] == 'R') c.type = kHighsVarTypeInteger;
        break;
      }
      if (!mip) {
        c.lower = 0.0;
        break;
      }
      if (std::isinf(c.upper))
        fail(ZRVS_ERR_UNSUPPORTED,
             "%s: column %d is semi-continuous or semi-integer with an infinite upper bound; "
             "give it a finite upper bound",
             who, j);
      c.lower = low;
      c.type = m.coltype[j] == 'S' ? kHighsVarTypeSemiContinuous : kHighsVarTypeSemiInteger;
      break;
    }
    default: break;  // 'C'; 'P' is reformulated by reformulate_partial_integers
  }
  return c;
}

HighsRow highs_row(const Model &m, int i, SolveMode mode) {
  double r = to_highs(m.rhs[i]);
  HighsRow row{-kHighsInf, kHighsInf};
  switch (m.rowtype[i]) {
    case 'L': row.upper = r; break;
    case 'G': row.lower = r; break;
    case 'E': row.lower = row.upper = r; break;
    case 'R': row.upper = r, row.lower = to_highs(m.rhs[i] - m.range[i]); break;
    default: break;
  }
  // The relaxation drops indicator rows; the MIP enforces them through
  // reformulate_indicators.
  if (mode == SolveMode::relaxation && m.indcol[i] >= 0) row.lower = -kHighsInf, row.upper = kHighsInf;
  return row;
}

double finite_lower(const Model &m, int j, const char *need, const char *who) {
  double l = m.lb[j];
  char t = m.coltype[j];
  if (t == 'S' || t == 'R') l = std::min(l, 0.0);
  if (is_infinite(l))
    fail(ZRVS_ERR_UNSUPPORTED, "%s: column %d needs a finite lower bound for %s", who, j, need);
  return l;
}

double finite_upper(const Model &m, int j, const char *need, const char *who) {
  double u = m.ub[j];
  char t = m.coltype[j];
  if (t == 'S' || t == 'R') u = std::max(u, 0.0);
  if (is_infinite(u))
    fail(ZRVS_ERR_UNSUPPORTED, "%s: column %d needs a finite upper bound for %s", who, j, need);
  return u;
}

HighsCsc highs_matrix(const Model &m, const LpBuilder &lp) {
  HighsCsc a;
  // Counting sort by column of the problem's entries and the extra ones,
  // merging repeated (row, column) pairs.
  const int cols = lp.cols();
  const size_t own = static_cast<size_t>(m.elems()), total = own + lp.eval.size();
  auto row_of = [&](size_t e) { return e < own ? m.mrow[e] : lp.erow[e - own]; };
  auto col_of = [&](size_t e) { return e < own ? m.mcol[e] : lp.ecol[e - own]; };
  auto value_of = [&](size_t e) { return e < own ? m.mval[e] : lp.eval[e - own]; };
  std::vector<HighsInt> start(cols + 1, 0);
  for (size_t e = 0; e < total; ++e) ++start[col_of(e) + 1];
  for (int j = 0; j < cols; ++j) start[j + 1] += start[j];
  std::vector<HighsInt> next(start.begin(), start.end() - 1);
  std::vector<HighsInt> index(total);
  std::vector<double> value(total);
  for (size_t e = 0; e < total; ++e) {
    HighsInt pos = next[col_of(e)]++;
    index[pos] = row_of(e);
    value[pos] = value_of(e);
  }
  a.start.reserve(cols + 1);
  a.index.reserve(total);
  a.value.reserve(total);
  std::vector<HighsInt> where(lp.rows(), -1);
  for (int j = 0; j < cols; ++j) {
    HighsInt first = static_cast<HighsInt>(a.index.size());
    for (HighsInt k = start[j]; k < start[j + 1]; ++k) {
      HighsInt r = index[k];
      if (where[r] >= first) {
        a.value[where[r]] += value[k];
      } else {
        where[r] = static_cast<HighsInt>(a.index.size());
        a.index.push_back(r);
        a.value.push_back(value[k]);
      }
    }
    a.start.push_back(static_cast<HighsInt>(a.index.size()));
  }
  return a;
}

HighsBuild build_for_highs(const Model &m, SolveMode mode, const char *who) {
  if (m.elems() > INT32_MAX - 1)
    fail(ZRVS_ERR_UNSUPPORTED, "%s: the matrix has more entries than HiGHS accepts", who);
  HighsBuild b;
  b.ncols = m.cols();
  b.nrows = m.rows();
  b.lp.reserve(m.cols(), m.rows());
  add_columns(m, mode, b.lp, who);
  add_rows(m, mode, b.lp);
  if (mode == SolveMode::mip) {
    reformulate_partial_integers(m, b.lp, who);
    reformulate_sets(m, b.lp, who);
    reformulate_indicators(m, b.lp, who);
    reformulate_general_constraints(m, b.lp, who);
    reformulate_piecewise_constraints(m, b.lp, who);
  }
  b.hessian = hessian(m);
  b.sense = m.objsense;
  return b;
}

}  // namespace zorvan
