#include "nlp/ipopt/nlp_functions.h"

#include <algorithm>
#include <utility>

#include "zorvan/zrvs.h"

namespace zorvan::nlp {

namespace {

using Pair = std::pair<int, int>;

// Sorted distinct pairs as a pattern, with the offsets of each first index.
void make_pattern(std::vector<Pair> &pairs, int lines, Pattern &pattern,
                  std::vector<int64_t> &start) {
  std::sort(pairs.begin(), pairs.end());
  pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
  pattern.row.resize(pairs.size());
  pattern.col.resize(pairs.size());
  start.assign(static_cast<size_t>(lines) + 1, 0);
  for (size_t k = 0; k < pairs.size(); ++k) {
    pattern.row[k] = pairs[k].first, pattern.col[k] = pairs[k].second;
    ++start[pairs[k].first + 1];
  }
  for (int r = 0; r < lines; ++r) start[r + 1] += start[r];
}

int find_slot(const Pattern &p, const std::vector<int64_t> &start, int line, int other) {
  auto first = p.col.begin() + start[line], last = p.col.begin() + start[line + 1];
  return static_cast<int>(std::lower_bound(first, last, other) - p.col.begin());
}

}  // namespace

NlpFunctions::NlpFunctions(const Model &m, const Stage &objective,
                           std::unique_ptr<FormulaEvaluator> formulas)
    : n_(m.cols()),
      m_(m.rows()),
      xl_(m.lb),
      xu_(m.ub),
      cost_(objective.cost),
      constant_(objective.constant),
      formulas_(std::move(formulas)) {
  // Row sides from the row types.
  gl_.assign(m_, -ZRVS_PLUSINFINITY);
  gu_.assign(m_, ZRVS_PLUSINFINITY);
  for (int r = 0; r < m_; ++r) {
    const double rhs = m.rhs[r];
    switch (m.rowtype[r]) {
      case 'L': gu_[r] = rhs; break;
      case 'G': gl_[r] = rhs; break;
      case 'E': gl_[r] = gu_[r] = rhs; break;
      case 'R': gl_[r] = rhs - m.range[r], gu_[r] = rhs; break;
      default: break;  // 'N': free
    }
  }

  // Quadratic terms as c * x_i * x_j: the objective holds x'Qx/2 (an
  // off-diagonal key counts both Q[i][j] and Q[j][i]), rows hold x'Qx.
  for (const auto &e : m.qobj) {
    const int i = e.first.first, j = e.first.second;
    quad_.push_back({-1, i, j, i == j ? 0.5 * e.second : e.second, -1, -1, -1});
  }
  for (const auto &row : m.qrows)
    for (const auto &e : row.second) {
      const int i = e.first.first, j = e.first.second;
      quad_.push_back({row.first, i, j, i == j ? e.second : 2.0 * e.second, -1, -1, -1});
    }

  // The Jacobian: every (row, column) that any part of a row uses.
  const Compressed by_rows = m.by_rows();
  std::vector<Pair> pairs;
  pairs.reserve(by_rows.index.size() + 2 * quad_.size());
  for (int r = 0; r < m_; ++r)
    for (int64_t e = by_rows.start[r]; e < by_rows.start[r + 1]; ++e)
      pairs.emplace_back(r, by_rows.index[e]);
  for (const QuadTerm &t : quad_)
    if (t.row >= 0) pairs.emplace_back(t.row, t.i), pairs.emplace_back(t.row, t.j);
  if (formulas_) {
    const Pattern &fj = formulas_->jacobian_pattern();
    for (size_t p = 0; p < fj.size(); ++p)
      pairs.emplace_back(formulas_->rows()[fj.row[p]], fj.col[p]);
  }
  make_pattern(pairs, m_, jac_, jac_row_start_);

  lin_start_.assign(by_rows.start.begin(), by_rows.start.end());
  lin_col_.assign(by_rows.index.begin(), by_rows.index.end());
  lin_value_.assign(by_rows.value.begin(), by_rows.value.end());
  lin_slot_.resize(lin_col_.size());
  for (int r = 0; r < m_; ++r)
    for (int64_t e = lin_start_[r]; e < lin_start_[r + 1]; ++e)
      lin_slot_[e] = jacobian_slot(r, lin_col_[e]);

  // The Hessian's lower triangle.
  pairs.clear();
  for (const QuadTerm &t : quad_) pairs.emplace_back(std::max(t.i, t.j), std::min(t.i, t.j));
  if (formulas_) {
    const Pattern &fh = formulas_->hessian_pattern();
    for (size_t p = 0; p < fh.size(); ++p)
      pairs.emplace_back(std::max(fh.row[p], fh.col[p]), std::min(fh.row[p], fh.col[p]));
  }
  make_pattern(pairs, n_, hess_, hess_col_start_);

  for (QuadTerm &t : quad_) {
    if (t.row >= 0) t.jac_i = jacobian_slot(t.row, t.i), t.jac_j = jacobian_slot(t.row, t.j);
    t.hess = hessian_slot(t.i, t.j);
  }
  if (formulas_) {
    const Pattern &fj = formulas_->jacobian_pattern();
    formula_jac_slot_.resize(fj.size());
    for (size_t p = 0; p < fj.size(); ++p)
      formula_jac_slot_[p] = jacobian_slot(formulas_->rows()[fj.row[p]], fj.col[p]);
    const Pattern &fh = formulas_->hessian_pattern();
    formula_hess_slot_.resize(fh.size());
    for (size_t p = 0; p < fh.size(); ++p) formula_hess_slot_[p] = hessian_slot(fh.row[p], fh.col[p]);
    formula_g_.resize(formulas_->rows().size());
    formula_lambda_.resize(formulas_->rows().size());
    formula_jac_.resize(fj.size());
    formula_hess_.resize(fh.size());
  }
}

int NlpFunctions::jacobian_slot(int row, int col) const {
  return find_slot(jac_, jac_row_start_, row, col);
}

int NlpFunctions::hessian_slot(int i, int j) const {
  return find_slot(hess_, hess_col_start_, std::max(i, j), std::min(i, j));
}

double NlpFunctions::objective(const double *x) const {
  double v = constant_;
  for (int j = 0; j < n_; ++j) v += cost_[j] * x[j];
  for (const QuadTerm &t : quad_)
    if (t.row < 0) v += t.value * x[t.i] * x[t.j];
  return v;
}

void NlpFunctions::objective_gradient(const double *x, double *grad) const {
  std::copy(cost_.begin(), cost_.end(), grad);
  for (const QuadTerm &t : quad_) {
    if (t.row >= 0) continue;
    grad[t.i] += t.value * x[t.j];
    grad[t.j] += t.value * x[t.i];
  }
}

EvalFailure NlpFunctions::activities(const double *x, double *g) {
  for (int r = 0; r < m_; ++r) {
    double v = 0.0;
    for (int64_t e = lin_start_[r]; e < lin_start_[r + 1]; ++e) v += lin_value_[e] * x[lin_col_[e]];
    g[r] = v;
  }
  for (const QuadTerm &t : quad_)
    if (t.row >= 0) g[t.row] += t.value * x[t.i] * x[t.j];
  if (!formulas_) return EvalFailure::none;
  EvalFailure f = formulas_->values(x, formula_g_.data());
  if (f != EvalFailure::none) return f;
  const std::vector<int> &rows = formulas_->rows();
  for (size_t k = 0; k < rows.size(); ++k) g[rows[k]] += formula_g_[k];
  return EvalFailure::none;
}

EvalFailure NlpFunctions::jacobian(const double *x, double *values) {
  std::fill(values, values + jac_.size(), 0.0);
  for (size_t e = 0; e < lin_slot_.size(); ++e) values[lin_slot_[e]] += lin_value_[e];
  for (const QuadTerm &t : quad_) {
    if (t.row < 0) continue;
    values[t.jac_i] += t.value * x[t.j];
    values[t.jac_j] += t.value * x[t.i];
  }
  if (!formulas_) return EvalFailure::none;
  EvalFailure f = formulas_->jacobian(x, formula_jac_.data());
  if (f != EvalFailure::none) return f;
  for (size_t p = 0; p < formula_jac_.size(); ++p) values[formula_jac_slot_[p]] += formula_jac_[p];
  return EvalFailure::none;
}

EvalFailure NlpFunctions::hessian(const double *x, double objective_factor,
                                  const double *lambda, double *values) {
  std::fill(values, values + hess_.size(), 0.0);
  // The second derivative of c x_i x_j is c off the diagonal and 2c on it.
  for (const QuadTerm &t : quad_) {
    const double weight = t.row < 0 ? objective_factor : lambda[t.row];
    values[t.hess] += (t.i == t.j ? 2.0 : 1.0) * t.value * weight;
  }
  if (!formulas_ || formula_hess_.empty()) return EvalFailure::none;
  const std::vector<int> &rows = formulas_->rows();
  for (size_t k = 0; k < rows.size(); ++k) formula_lambda_[k] = lambda[rows[k]];
  EvalFailure f = formulas_->hessian(x, formula_lambda_.data(), formula_hess_.data());
  if (f != EvalFailure::none) return f;
  for (size_t p = 0; p < formula_hess_.size(); ++p) values[formula_hess_slot_[p]] += formula_hess_[p];
  return EvalFailure::none;
}

const std::string &NlpFunctions::failure_text() const {
  static const std::string none;
  return formulas_ ? formulas_->failure_text() : none;
}

}  // namespace zorvan::nlp
