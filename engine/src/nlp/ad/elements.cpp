#include "nlp/ad/elements.h"

#include <algorithm>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan::nlp {

std::vector<char> variable_dependence(const Graph &g) {
  std::vector<char> dep(g.size(), 0);
  for (int i = 0; i < g.size(); ++i) {
    switch (g.op[i]) {
      case Op::constant:
      case Op::sign: break;
      case Op::variable: dep[i] = 1; break;
      case Op::min:
      case Op::max:
      case Op::user:
        for (int k = 0; k < g.b[i]; ++k) dep[i] |= dep[g.list[g.aux[i] + k]];
        break;
      default:
        dep[i] = dep[g.a[i]];
        if (g.b[i] >= 0 && g.op[i] != Op::pwl) dep[i] |= dep[g.b[i]];
    }
  }
  return dep;
}

namespace {
bool nary(Op o) { return o == Op::min || o == Op::max || o == Op::user; }
bool binary(Op o) {
  return o == Op::add || o == Op::sub || o == Op::mul || o == Op::div || o == Op::pow;
}
}  // namespace

int ElementTapes::add(const Graph &g, const std::vector<char> &depends, int root) {
  if (local_.size() < static_cast<size_t>(g.size())) local_.resize(g.size(), -1);
  // The nodes below root that depend on variables, in graph order.
  std::vector<int> nodes;
  stack_.assign(1, root);
  local_[root] = 0;
  while (!stack_.empty()) {
    int i = stack_.back();
    stack_.pop_back();
    nodes.push_back(i);
    auto visit = [&](int c) {
      if (c >= 0 && depends[c] && local_[c] < 0) local_[c] = 0, stack_.push_back(c);
    };
    if (nary(g.op[i])) {
      for (int k = 0; k < g.b[i]; ++k) visit(g.list[g.aux[i] + k]);
    } else if (g.op[i] != Op::variable) {
      visit(g.a[i]);
      if (binary(g.op[i])) visit(g.b[i]);
    }
  }
  std::sort(nodes.begin(), nodes.end());
  for (size_t p = 0; p < nodes.size(); ++p) local_[nodes[p]] = static_cast<int>(p);
  auto local = [&](int c) { return c >= 0 && depends[c] ? local_[c] : -1; };
  std::vector<std::pair<int, int>> vars;  // (column, leaf)
  for (size_t p = 0; p < nodes.size(); ++p) {
    int i = nodes[p];
    Op o = g.op[i];
    gid.push_back(i);
    if (o == Op::variable) {
      step.push_back(Step::variable), a.push_back(-1), b.push_back(-1);
      vars.emplace_back(g.aux[i], static_cast<int>(p));
    } else if (nary(o)) {
      step.push_back(o == Op::user ? Step::user : Step::select);
      a.push_back(static_cast<int>(list.size())), b.push_back(g.b[i]);
      for (int k = 0; k < g.b[i]; ++k) list.push_back(local(g.list[g.aux[i] + k]));
    } else if (binary(o)) {
      step.push_back(Step::binary), a.push_back(local(g.a[i])), b.push_back(local(g.b[i]));
    } else {
      step.push_back(Step::unary), a.push_back(local(g.a[i])), b.push_back(-1);
    }
  }
  for (int i : nodes) local_[i] = -1;
  std::sort(vars.begin(), vars.end());
  for (auto &v : vars) var_column.push_back(v.first), var_leaf.push_back(v.second);
  node_start.push_back(static_cast<int>(gid.size()));
  var_start.push_back(static_cast<int>(var_column.size()));
  longest_ = std::max(longest_, static_cast<int>(nodes.size()));
  int e = size() - 1;
  find_pairs(g, e);
  pair_start.push_back(static_cast<int>(pair_i.size()));
  return e;
}

// Structural Hessian pairs: each entry's set of variables as a bit set; a
// nonlinear step couples the sets of its arguments (f(u): u x u; u * w:
// u x w; u / w: u x w and w x w; u ** w: all of u and w; user functions:
// all of their arguments). Sums, differences, negation, abs, min, max and
// pwl couple nothing (their second derivatives are zero).
void ElementTapes::find_pairs(const Graph &g, int e) {
  int first = node_start[e], len = length(e), m = variables(e);
  int words = (m + 63) / 64;
  if (static_cast<double>(len + m) * words > 5e7)
    fail(ZRVS_ERR_UNSUPPORTED,
         "a formula couples %d variables through %d operations; its Hessian is too large to hold",
         m, len);
  std::vector<uint64_t> sets(static_cast<size_t>(len) * words, 0);
  std::vector<uint64_t> pairs(static_cast<size_t>(m) * words, 0);
  auto set_of = [&](int p) { return sets.data() + static_cast<size_t>(p) * words; };
  auto unite = [&](uint64_t *into, int p) {
    if (p < 0) return;
    const uint64_t *s = set_of(p);
    for (int w = 0; w < words; ++w) into[w] |= s[w];
  };
  auto couple = [&](const uint64_t *s, const uint64_t *t) {
    for (int w = 0; w < words; ++w)
      for (uint64_t bits = s[w]; bits; bits &= bits - 1) {
        uint64_t *row = pairs.data() + static_cast<size_t>(w * 64 + __builtin_ctzll(bits)) * words;
        for (int k = 0; k < words; ++k) row[k] |= t[k];
      }
    for (int w = 0; w < words; ++w)
      for (uint64_t bits = t[w]; bits; bits &= bits - 1) {
        uint64_t *row = pairs.data() + static_cast<size_t>(w * 64 + __builtin_ctzll(bits)) * words;
        for (int k = 0; k < words; ++k) row[k] |= s[k];
      }
  };
  std::vector<uint64_t> empty(words, 0), both(words);
  for (int v = 0; v < m; ++v) {
    int leaf = var_leaf[var_start[e] + v];
    set_of(leaf)[v / 64] |= uint64_t{1} << (v % 64);
  }
  for (int p = 0; p < len; ++p) {
    int t = first + p;
    Op o = g.op[gid[t]];
    uint64_t *s = set_of(p);
    switch (step[t]) {
      case Step::variable: break;
      case Step::unary:
        unite(s, a[t]);
        if (o != Op::neg && o != Op::abs && o != Op::pwl) couple(s, s);
        break;
      case Step::binary: {
        unite(s, a[t]), unite(s, b[t]);
        const uint64_t *sa = a[t] >= 0 ? set_of(a[t]) : empty.data();
        const uint64_t *sb = b[t] >= 0 ? set_of(b[t]) : empty.data();
        if (o == Op::mul) couple(sa, sb);
        if (o == Op::div) couple(sa, sb), couple(sb, sb);
        if (o == Op::pow) couple(s, s);
        break;
      }
      case Step::select:
      case Step::user:
        for (int k = 0; k < b[t]; ++k) unite(s, list[a[t] + k]);
        if (step[t] == Step::user) couple(s, s);
        break;
    }
  }
  for (int j = 0; j < m; ++j) {
    const uint64_t *row = pairs.data() + static_cast<size_t>(j) * words;
    for (int i = j; i < m; ++i)
      if (row[i / 64] >> (i % 64) & 1) pair_i.push_back(i), pair_j.push_back(j);
  }
}

}  // namespace zorvan::nlp
