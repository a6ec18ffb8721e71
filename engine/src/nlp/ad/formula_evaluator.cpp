// The compiled formulas of a model: one expression graph for all rows, the
// rows split into weighted elements, element tapes, and the Jacobian and
// Hessian patterns with the place of every element derivative in them.
#include "nlp/ad/formula_evaluator.h"

#include <algorithm>
#include <cstring>

#include "model/model.h"
#include "nlp/ad/elements.h"
#include "nlp/ad/forward_pass.h"
#include "nlp/ad/sweeps.h"
#include "nlp/formula/graph.h"

namespace zorvan::nlp {

namespace {

template <class V>
size_t bytes(const V &v) {
  return v.capacity() * sizeof(typename V::value_type);
}

class TapeEvaluator final : public FormulaEvaluator {
 public:
  explicit TapeEvaluator(const Model &model);

  const std::vector<int> &rows() const override { return rows_; }
  const Pattern &jacobian_pattern() const override { return jac_; }
  const Pattern &hessian_pattern() const override { return hess_; }
  EvalFailure values(const double *x, double *g) override;
  EvalFailure jacobian(const double *x, double *values) override;
  EvalFailure hessian(const double *x, const double *lambda, double *values) override;
  const std::string &failure_text() const override { return pass_.failure_text(); }
  size_t tape_bytes() const override;

 private:
  // One weighted piece of a row: w * node.
  struct Piece {
    int root;
    double w;
  };
  void split(int root, double w, std::vector<Piece> *pieces, double *constant);
  void build_jacobian();
  void build_hessian();
  EvalFailure at(const double *x, int level);

  Graph graph_;
  ForwardPass pass_;
  ElementTapes tapes_;
  Sweeps sweeps_{graph_, tapes_, pass_};
  int ncols_;

  std::vector<int> rows_;
  std::vector<double> row_constant_;
  // Pieces of row k: occ_start[k] .. occ_start[k+1]-1, each a graph node,
  // its element (-1: no variable reaches it) and weight; the Jacobian
  // positions of the element's variables from occ_jac[piece].
  std::vector<int> occ_start_{0}, occ_root_, occ_elem_, occ_jac_;
  std::vector<double> occ_w_;
  std::vector<int> jac_pos_;
  std::vector<int> hess_pos_;  // per element pair
  Pattern jac_, hess_;

  std::vector<double> element_grad_, element_weight_;
  std::vector<double> x_;
  int level_ = -1;  // derivatives held for x_ (-1: nothing)
};

TapeEvaluator::TapeEvaluator(const Model &model) : ncols_(model.cols()) {
  const FormulaStore &store = model.formulas;
  std::vector<Piece> pieces;
  std::vector<int> element_of;
  std::vector<int> piece_row;
  std::vector<Piece> all;
  double constant = 0;
  for (int k = 0; k < store.terms(); ++k) {
    int row = store.row(k);
    if (rows_.empty() || rows_.back() != row) {
      rows_.push_back(row), row_constant_.push_back(0);
    }
    int root = graph_.parse(store.types(k), store.values(k), store.length(k));
    if (store.col(k) >= 0) root = graph_.binary(Op::mul, graph_.variable(store.col(k)), root);
    pieces.clear();
    constant = 0;
    split(root, store.factor(k), &pieces, &constant);
    row_constant_.back() += constant;
    for (const Piece &p : pieces) all.push_back(p), piece_row.push_back(int(rows_.size()) - 1);
  }
  pass_.prepare(graph_, store);
  std::vector<char> depends = variable_dependence(graph_);
  element_of.assign(graph_.size(), -1);
  // Pieces of a row with the same node are one piece.
  size_t next = 0;
  for (size_t k = 0; k < rows_.size(); ++k) {
    size_t end = next;
    while (end < all.size() && piece_row[end] == static_cast<int>(k)) ++end;
    std::sort(all.begin() + next, all.begin() + end,
              [](const Piece &p, const Piece &q) { return p.root < q.root; });
    for (size_t i = next; i < end;) {
      Piece p = all[i++];
      while (i < end && all[i].root == p.root) p.w += all[i++].w;
      if (p.w == 0) continue;
      int e = -1;
      if (depends[p.root]) {
        if (element_of[p.root] < 0) element_of[p.root] = tapes_.add(graph_, depends, p.root);
        e = element_of[p.root];
      }
      occ_root_.push_back(p.root), occ_elem_.push_back(e), occ_w_.push_back(p.w);
    }
    occ_start_.push_back(static_cast<int>(occ_root_.size()));
    next = end;
  }
  sweeps_.reserve(tapes_.longest());
  element_grad_.assign(tapes_.var_column.size(), 0);
  element_weight_.assign(tapes_.size(), 0);
  x_.assign(ncols_, 0);
  build_jacobian();
  build_hessian();
}

void TapeEvaluator::split(int root, double w, std::vector<Piece> *pieces, double *constant) {
  std::vector<Piece> stack{{root, w}};
  const Graph &g = graph_;
  while (!stack.empty()) {
    Piece p = stack.back();
    stack.pop_back();
    int i = p.root;
    switch (g.op[i]) {
      case Op::constant: *constant += p.w * g.num[i]; break;
      case Op::add: stack.push_back({g.a[i], p.w}), stack.push_back({g.b[i], p.w}); break;
      case Op::sub: stack.push_back({g.a[i], p.w}), stack.push_back({g.b[i], -p.w}); break;
      case Op::neg: stack.push_back({g.a[i], -p.w}); break;
      case Op::mul:
        if (g.is_constant(g.a[i]))
          stack.push_back({g.b[i], p.w * g.num[g.a[i]]});
        else if (g.is_constant(g.b[i]))
          stack.push_back({g.a[i], p.w * g.num[g.b[i]]});
        else
          pieces->push_back(p);
        break;
      case Op::div:
        if (g.is_constant(g.b[i]) && g.num[g.b[i]] != 0)
          stack.push_back({g.a[i], p.w / g.num[g.b[i]]});
        else
          pieces->push_back(p);
        break;
      default: pieces->push_back(p);
    }
  }
}

void TapeEvaluator::build_jacobian() {
  std::vector<int> place(ncols_, -1), cols;
  occ_jac_.assign(occ_root_.size(), 0);
  for (size_t k = 0; k < rows_.size(); ++k) {
    cols.clear();
    for (int o = occ_start_[k]; o < occ_start_[k + 1]; ++o) {
      int e = occ_elem_[o];
      if (e < 0) continue;
      for (int v = tapes_.var_start[e]; v < tapes_.var_start[e + 1]; ++v) {
        int c = tapes_.var_column[v];
        if (place[c] < 0) place[c] = 0, cols.push_back(c);
      }
    }
    std::sort(cols.begin(), cols.end());
    int base = static_cast<int>(jac_.size());
    for (size_t i = 0; i < cols.size(); ++i) {
      place[cols[i]] = base + static_cast<int>(i);
      jac_.row.push_back(static_cast<int>(k)), jac_.col.push_back(cols[i]);
    }
    for (int o = occ_start_[k]; o < occ_start_[k + 1]; ++o) {
      int e = occ_elem_[o];
      occ_jac_[o] = static_cast<int>(jac_pos_.size());
      if (e < 0) continue;
      for (int v = tapes_.var_start[e]; v < tapes_.var_start[e + 1]; ++v)
        jac_pos_.push_back(place[tapes_.var_column[v]]);
    }
    for (int c : cols) place[c] = -1;
  }
}

void TapeEvaluator::build_hessian() {
  auto key = [](int r, int c) { return static_cast<uint64_t>(r) << 32 | static_cast<uint32_t>(c); };
  std::vector<uint64_t> keys;
  keys.reserve(tapes_.pair_i.size());
  for (int e = 0; e < tapes_.size(); ++e) {
    const int *col = tapes_.var_column.data() + tapes_.var_start[e];
    for (int k = tapes_.pair_start[e]; k < tapes_.pair_start[e + 1]; ++k)
      keys.push_back(key(col[tapes_.pair_i[k]], col[tapes_.pair_j[k]]));
  }
  std::vector<uint64_t> pattern = keys;
  std::sort(pattern.begin(), pattern.end());
  pattern.erase(std::unique(pattern.begin(), pattern.end()), pattern.end());
  hess_.row.reserve(pattern.size()), hess_.col.reserve(pattern.size());
  for (uint64_t k : pattern)
    hess_.row.push_back(static_cast<int>(k >> 32)), hess_.col.push_back(static_cast<int>(k & 0xffffffffu));
  hess_pos_.resize(keys.size());
  for (size_t k = 0; k < keys.size(); ++k)
    hess_pos_[k] = static_cast<int>(std::lower_bound(pattern.begin(), pattern.end(), keys[k]) -
                                    pattern.begin());
}

EvalFailure TapeEvaluator::at(const double *x, int level) {
  if (level_ < 0 || std::memcmp(x, x_.data(), sizeof(double) * ncols_) != 0) {
    level_ = -1;
    EvalFailure f = pass_.values(x);
    if (f != EvalFailure::none) return f;
    std::memcpy(x_.data(), x, sizeof(double) * ncols_);
    level_ = 0;
  }
  if (level_ >= level) return EvalFailure::none;
  EvalFailure f = pass_.derivatives(level, level_);
  if (f != EvalFailure::none) return f;  // the values stay valid
  level_ = level;
  return EvalFailure::none;
}

EvalFailure TapeEvaluator::values(const double *x, double *g) {
  EvalFailure f = at(x, 0);
  if (f != EvalFailure::none) return f;
  const double *val = pass_.val.data();
  for (size_t k = 0; k < rows_.size(); ++k) {
    double s = row_constant_[k];
    for (int o = occ_start_[k]; o < occ_start_[k + 1]; ++o) s += occ_w_[o] * val[occ_root_[o]];
    g[k] = s;
  }
  return EvalFailure::none;
}

EvalFailure TapeEvaluator::jacobian(const double *x, double *values) {
  EvalFailure f = at(x, 1);
  if (f != EvalFailure::none) return f;
  for (int e = 0; e < tapes_.size(); ++e)
    sweeps_.gradient(e, element_grad_.data() + tapes_.var_start[e]);
  std::fill(values, values + jac_.size(), 0.0);
  for (size_t o = 0; o < occ_root_.size(); ++o) {
    int e = occ_elem_[o];
    if (e < 0) continue;
    const double *grad = element_grad_.data() + tapes_.var_start[e];
    const int *pos = jac_pos_.data() + occ_jac_[o];
    double w = occ_w_[o];
    for (int v = 0, m = tapes_.variables(e); v < m; ++v) values[pos[v]] += w * grad[v];
  }
  return EvalFailure::none;
}

EvalFailure TapeEvaluator::hessian(const double *x, const double *lambda, double *values) {
  EvalFailure f = at(x, 2);
  if (f != EvalFailure::none) return f;
  std::fill(element_weight_.begin(), element_weight_.end(), 0.0);
  for (size_t k = 0; k < rows_.size(); ++k) {
    if (lambda[k] == 0) continue;
    for (int o = occ_start_[k]; o < occ_start_[k + 1]; ++o)
      if (occ_elem_[o] >= 0) element_weight_[occ_elem_[o]] += lambda[k] * occ_w_[o];
  }
  std::fill(values, values + hess_.size(), 0.0);
  for (int e = 0; e < tapes_.size(); ++e)
    sweeps_.hessian(e, element_weight_[e], hess_pos_.data() + tapes_.pair_start[e], values);
  return EvalFailure::none;
}

size_t TapeEvaluator::tape_bytes() const {
  const Graph &g = graph_;
  const ElementTapes &t = tapes_;
  size_t graph = bytes(g.op) + bytes(g.a) + bytes(g.b) + bytes(g.aux) + bytes(g.num) +
                 bytes(g.list) + bytes(g.points);
  size_t pass = bytes(pass_.val) * 6 + bytes(pass_.sel) + bytes(pass_.ugrad) + bytes(pass_.uhess);
  size_t tapes = bytes(t.gid) + bytes(t.step) + bytes(t.a) + bytes(t.b) + bytes(t.list) +
                 bytes(t.var_column) + bytes(t.var_leaf) + bytes(t.pair_i) + bytes(t.pair_j);
  size_t rows = bytes(occ_root_) * 3 + bytes(occ_w_) + bytes(jac_pos_) + bytes(hess_pos_) +
                bytes(element_grad_) + bytes(element_weight_);
  return graph + pass + tapes + rows;
}

}  // namespace

std::unique_ptr<FormulaEvaluator> compile_formulas(const Model &model) {
  return std::make_unique<TapeEvaluator>(model);
}

}  // namespace zorvan::nlp
