// Formula tokens for tests, written with a small builder:
// Tokens().args().col(0).fn(ZSLP_FN_SIN).end() is sin(x0).
#pragma once
#include <vector>

#include "zorvan/zslp.h"

struct Tokens {
  std::vector<int> type;
  std::vector<double> value;
  Tokens &con(double v) { return add(ZSLP_TOK_CON, v); }
  Tokens &col(int c) { return add(ZSLP_TOK_COL, c); }
  Tokens &args() { return add(ZSLP_TOK_ARGS, 0); }
  Tokens &fn(int f) { return add(ZSLP_TOK_FUNC, f); }
  Tokens &op(int o) { return add(ZSLP_TOK_OP, o); }
  Tokens &user(int i) { return add(ZSLP_TOK_USERFUNC, i); }
  Tokens &end() { return add(ZSLP_TOK_END, 0); }
  // Appends another formula's tokens (without its end token).
  Tokens &then(const Tokens &t) {
    for (size_t i = 0; i < t.type.size(); ++i)
      if (t.type[i] != ZSLP_TOK_END) add(t.type[i], t.value[i]);
    return *this;
  }
  Tokens &add(int t, double v) {
    type.push_back(t), value.push_back(v);
    return *this;
  }
};

// One-argument built-in f applied to the formula t.
inline Tokens apply(int f, const Tokens &t) { return Tokens().args().then(t).fn(f); }
inline Tokens binop(const Tokens &x, int o, const Tokens &y) {
  return Tokens().then(x).then(y).op(o);
}
