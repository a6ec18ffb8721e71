// The compiled formulas: values against the mathematical library, gradients
// against central differences of the values, Hessians against central
// differences of the gradients, at random points; the Hessian pattern
// against the structure of known formulas; failures outside the domains.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "model/model.h"
#include "nlp/ad/formula_evaluator.h"
#include "nlp/functions/user_function_error.h"
#include "token_support.h"

namespace {

using zorvan::Model;
using zorvan::nlp::EvalFailure;
using zorvan::nlp::FormulaEvaluator;

// A model of n columns and some rows with formula terms.
class Formulas {
 public:
  explicit Formulas(int cols, int rows = 1) {
    model.append_columns(cols);
    model.append_rows(rows);
  }
  // Adds a term row: (col >= 0 ? x[col] : 1) * factor * f.
  Formulas &term(int row, const Tokens &f, int col = -1, double factor = 1.0) {
    Tokens t = f;
    if (t.type.empty() || t.type.back() != ZSLP_TOK_END) t.end();
    int start = 0;
    zorvan::FormulaInput in{1, &row, &col, &factor, &start, t.type.data(), t.value.data()};
    model.formulas.add(in, model.rows(), model.cols(), "test");
    return *this;
  }
  std::unique_ptr<FormulaEvaluator> compile() const { return zorvan::nlp::compile_formulas(model); }
  Model model;
};

Tokens x(int c) { return Tokens().col(c); }
Tokens c(double v) { return Tokens().con(v); }

// Dense views of an evaluator's outputs.
struct Dense {
  explicit Dense(FormulaEvaluator &ev, int n) : ev(ev), n(n) {}
  std::vector<double> values(const std::vector<double> &x) {
    std::vector<double> g(ev.rows().size());
    EXPECT_EQ(ev.values(x.data(), g.data()), EvalFailure::none) << ev.failure_text();
    return g;
  }
  // jac[k][j]
  std::vector<std::vector<double>> jacobian(const std::vector<double> &x) {
    const auto &p = ev.jacobian_pattern();
    std::vector<double> v(p.size());
    EXPECT_EQ(ev.jacobian(x.data(), v.data()), EvalFailure::none) << ev.failure_text();
    std::vector<std::vector<double>> J(ev.rows().size(), std::vector<double>(n, 0.0));
    for (size_t k = 0; k < p.size(); ++k) J[p.row[k]][p.col[k]] += v[k];
    return J;
  }
  // Full symmetric Hessian of sum_k lambda_k g_k.
  std::vector<std::vector<double>> hessian(const std::vector<double> &x,
                                           const std::vector<double> &lambda) {
    const auto &p = ev.hessian_pattern();
    std::vector<double> v(p.size());
    EXPECT_EQ(ev.hessian(x.data(), lambda.data(), v.data()), EvalFailure::none)
        << ev.failure_text();
    std::vector<std::vector<double>> H(n, std::vector<double>(n, 0.0));
    for (size_t k = 0; k < p.size(); ++k) {
      EXPECT_GE(p.row[k], p.col[k]) << "lower triangle";
      H[p.row[k]][p.col[k]] += v[k];
      if (p.row[k] != p.col[k]) H[p.col[k]][p.row[k]] += v[k];
    }
    return H;
  }
  FormulaEvaluator &ev;
  int n;
};

double step(double v) { return 1e-6 * std::max(1.0, std::fabs(v)); }

bool close(double a, double b, double tol) { return std::fabs(a - b) <= tol * (1 + std::fabs(b)); }

// Gradient and Hessian of every row at x against central differences:
// gradients from values, the Lagrangian's Hessian from gradients.
void check_derivatives(FormulaEvaluator &ev, int n, std::vector<double> x,
                       const std::vector<double> &lambda, const std::string &what) {
  Dense d(ev, n);
  auto J = d.jacobian(x);
  auto H = d.hessian(x, lambda);
  size_t m = ev.rows().size();
  for (int j = 0; j < n; ++j) {
    double h = step(x[j]), keep = x[j];
    x[j] = keep + h;
    auto gp = d.values(x);
    auto Jp = d.jacobian(x);
    x[j] = keep - h;
    auto gm = d.values(x);
    auto Jm = d.jacobian(x);
    x[j] = keep;
    for (size_t k = 0; k < m; ++k)
      EXPECT_TRUE(close(J[k][j], (gp[k] - gm[k]) / (2 * h), 1e-6))
          << what << ": dg" << k << "/dx" << j << " = " << J[k][j] << ", differences give "
          << (gp[k] - gm[k]) / (2 * h);
    for (int i = 0; i < n; ++i) {
      double fd = 0;
      for (size_t k = 0; k < m; ++k) fd += lambda[k] * (Jp[k][i] - Jm[k][i]) / (2 * h);
      EXPECT_TRUE(close(H[i][j], fd, 2e-5))
          << what << ": H[" << i << "][" << j << "] = " << H[i][j] << ", differences give " << fd;
    }
  }
}

struct Unary {
  const char *name;
  int fn;
  std::function<double(double)> f;
  double lo, hi;  // random arguments in [lo, hi]
};

const std::vector<Unary> &unaries() {
  static const std::vector<Unary> all = {
      {"exp", ZSLP_FN_EXP, [](double v) { return std::exp(v); }, -2, 2},
      {"log", ZSLP_FN_LOG, [](double v) { return std::log(v); }, 0.1, 5},
      {"log10", ZSLP_FN_LOG10, [](double v) { return std::log10(v); }, 0.1, 5},
      {"sin", ZSLP_FN_SIN, [](double v) { return std::sin(v); }, -3, 3},
      {"cos", ZSLP_FN_COS, [](double v) { return std::cos(v); }, -3, 3},
      {"tan", ZSLP_FN_TAN, [](double v) { return std::tan(v); }, -1.2, 1.2},
      {"asin", ZSLP_FN_ASIN, [](double v) { return std::asin(v); }, -0.9, 0.9},
      {"acos", ZSLP_FN_ACOS, [](double v) { return std::acos(v); }, -0.9, 0.9},
      {"atan", ZSLP_FN_ATAN, [](double v) { return std::atan(v); }, -3, 3},
      {"abs", ZSLP_FN_ABS, [](double v) { return std::fabs(v); }, -3, 3},
      {"sign", ZSLP_FN_SIGN, [](double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); }, -3, 3},
      {"erf", ZSLP_FN_ERF, [](double v) { return std::erf(v); }, -2, 2},
      {"erfc", ZSLP_FN_ERFC, [](double v) { return std::erfc(v); }, -2, 2},
      {"sqrt", ZSLP_FN_SQRT, [](double v) { return std::sqrt(v); }, 0.1, 5},
  };
  return all;
}

// Every one-argument function of x0 alone, and of the product x0 * x1 so that
// the chain rule and a coupling of two variables are exercised.
TEST(Evaluator, EveryFunctionAgainstDifferences) {
  std::mt19937 rng(7);
  for (const Unary &u : unaries()) {
    Formulas f(2, 2);
    f.term(0, apply(u.fn, x(0)));
    f.term(1, apply(u.fn, binop(x(0), ZSLP_OP_MULTIPLY, x(1))));
    auto ev = f.compile();
    std::uniform_real_distribution<double> arg(u.lo, u.hi), other(0.5, 1.0);
    for (int trial = 0; trial < 5; ++trial) {
      std::vector<double> pt{arg(rng), other(rng)};
      if (std::fabs(pt[0]) < 1e-3) pt[0] = 0.5;  // away from the kinks of abs and sign
      // Keep x0 * x1 inside the domain too: x1 in [0.5, 1] scales towards 0.
      if (u.lo > 0) pt[0] = std::max(pt[0], u.lo / 0.5);
      if (pt[0] * pt[1] < u.lo || pt[0] * pt[1] > u.hi) pt[1] = 1.0;
      Dense d(*ev, 2);
      auto g = d.values(pt);
      EXPECT_NEAR(g[0], u.f(pt[0]), 1e-14 * (1 + std::fabs(g[0]))) << u.name;
      EXPECT_NEAR(g[1], u.f(pt[0] * pt[1]), 1e-14 * (1 + std::fabs(g[1]))) << u.name;
      check_derivatives(*ev, 2, pt, {0.7, -1.3}, u.name);
    }
  }
}

TEST(Evaluator, OperatorsAgainstDifferences) {
  struct Case {
    const char *name;
    Tokens tokens;
    std::function<double(const std::vector<double> &)> f;
  };
  std::vector<Case> cases = {
      {"a + b", binop(x(0), ZSLP_OP_PLUS, x(1)), [](auto &v) { return v[0] + v[1]; }},
      {"a - b", binop(x(0), ZSLP_OP_MINUS, x(1)), [](auto &v) { return v[0] - v[1]; }},
      {"a * b", binop(x(0), ZSLP_OP_MULTIPLY, x(1)), [](auto &v) { return v[0] * v[1]; }},
      {"a / b", binop(x(0), ZSLP_OP_DIVIDE, x(1)), [](auto &v) { return v[0] / v[1]; }},
      {"-a", Tokens().then(x(0)).op(ZSLP_OP_NEGATE), [](auto &v) { return -v[0]; }},
      {"a ** 3", binop(x(0), ZSLP_OP_POWER, c(3)), [](auto &v) { return std::pow(v[0], 3); }},
      {"a ** 2", binop(x(0), ZSLP_OP_POWER, c(2)), [](auto &v) { return v[0] * v[0]; }},
      {"b ** 2.5", binop(x(1), ZSLP_OP_POWER, c(2.5)), [](auto &v) { return std::pow(v[1], 2.5); }},
      {"b ** -1.5", binop(x(1), ZSLP_OP_POWER, c(-1.5)),
       [](auto &v) { return std::pow(v[1], -1.5); }},
      {"b ** a", binop(x(1), ZSLP_OP_POWER, x(0)), [](auto &v) { return std::pow(v[1], v[0]); }},
      {"2 ** a", binop(c(2), ZSLP_OP_POWER, x(0)), [](auto &v) { return std::pow(2, v[0]); }},
      {"a * a * b / (1 + b * b)",
       binop(binop(binop(x(0), ZSLP_OP_MULTIPLY, x(0)), ZSLP_OP_MULTIPLY, x(1)), ZSLP_OP_DIVIDE,
             binop(c(1), ZSLP_OP_PLUS, binop(x(1), ZSLP_OP_MULTIPLY, x(1)))),
       [](auto &v) { return v[0] * v[0] * v[1] / (1 + v[1] * v[1]); }},
  };
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> a(-2, 2), b(0.3, 3);
  for (auto &cs : cases) {
    Formulas f(2);
    f.term(0, cs.tokens);
    auto ev = f.compile();
    for (int trial = 0; trial < 5; ++trial) {
      std::vector<double> pt{a(rng), b(rng)};
      Dense d(*ev, 2);
      EXPECT_NEAR(d.values(pt)[0], cs.f(pt), 1e-13 * (1 + std::fabs(cs.f(pt)))) << cs.name;
      check_derivatives(*ev, 2, pt, {1.7}, cs.name);
    }
  }
}

// min, max and pwl away from their kinks, and the one-sided choices at them.
TEST(Evaluator, NonSmoothFunctions) {
  Formulas f(3, 4);
  f.term(0, Tokens().args().then(x(0)).then(binop(x(1), ZSLP_OP_MULTIPLY, x(2))).con(0.5).fn(ZSLP_FN_MAX));
  f.term(1, Tokens().args().then(x(0)).then(binop(x(1), ZSLP_OP_MULTIPLY, x(2))).fn(ZSLP_FN_MIN));
  // pwl through (0, 0), (1, 2), (3, 3), written last breakpoint first.
  f.term(2, Tokens().args().con(3).con(3).con(2).con(1).con(0).con(0).then(x(0)).fn(ZSLP_FN_PWL));
  f.term(3, apply(ZSLP_FN_ABS, x(1)));
  auto ev = f.compile();
  Dense d(*ev, 3);
  auto g = d.values({0.25, 2.0, 0.5});
  EXPECT_DOUBLE_EQ(g[0], 1.0);
  EXPECT_DOUBLE_EQ(g[1], 0.25);
  EXPECT_DOUBLE_EQ(g[2], 0.5);
  EXPECT_DOUBLE_EQ(d.values({2.0, 1, 1})[2], 2.5);
  EXPECT_DOUBLE_EQ(d.values({-1.0, 1, 1})[2], -2.0) << "extends the first piece";
  EXPECT_DOUBLE_EQ(d.values({5.0, 1, 1})[2], 4.0) << "extends the last piece";
  check_derivatives(*ev, 3, {0.25, 2.0, 0.5}, {1, -2, 0.5, 3}, "away from kinks");
  check_derivatives(*ev, 3, {2.2, -0.3, 1.5}, {1, -2, 0.5, 3}, "away from kinks");

  // At the kinks: max and min follow their first argument among equals, pwl
  // the piece to the right of a breakpoint, abs the right derivative.
  auto J = d.jacobian({1.0, 1.0, 1.0});
  EXPECT_EQ(J[0][0], 1.0);
  EXPECT_EQ(J[0][1], 0.0);
  EXPECT_EQ(J[1][0], 1.0);
  EXPECT_EQ(J[2][0], 0.5) << "slope of the piece from (1, 2) to (3, 3)";
  J = d.jacobian({0.0, 0.0, 1.0});
  EXPECT_EQ(J[2][0], 2.0);
  EXPECT_EQ(J[3][1], 1.0) << "abs'(0)";
}

TEST(Evaluator, SignHasNoDerivativeAndAddsNothingToThePatterns) {
  Formulas f(2);
  f.term(0, binop(apply(ZSLP_FN_SIGN, x(0)), ZSLP_OP_MULTIPLY, x(1)));
  auto ev = f.compile();
  Dense d(*ev, 2);
  EXPECT_EQ(d.values({-3, 2})[0], -2.0);
  EXPECT_EQ(d.values({0, 2})[0], 0.0);
  const auto &jp = ev->jacobian_pattern();
  ASSERT_EQ(jp.size(), 1u);
  EXPECT_EQ(jp.col[0], 1);
  EXPECT_EQ(ev->hessian_pattern().size(), 0u);
  EXPECT_EQ(d.jacobian({4, 2})[0][1], 1.0);
}

std::set<std::pair<int, int>> pattern_of(const zorvan::nlp::Pattern &p) {
  std::set<std::pair<int, int>> s;
  for (size_t k = 0; k < p.size(); ++k) s.emplace(p.row[k], p.col[k]);
  return s;
}

// The Hessian pattern is the structural one: exactly the pairs a formula's
// second derivatives can couple.
TEST(Evaluator, HessianPatternIsStructural) {
  using P = std::set<std::pair<int, int>>;
  struct Case {
    const char *name;
    Tokens tokens;
    int col;
    P expect;
  };
  Tokens xy = binop(x(0), ZSLP_OP_MULTIPLY, x(1));
  std::vector<Case> cases = {
      {"x0 * x1 + exp(x2)", binop(xy, ZSLP_OP_PLUS, apply(ZSLP_FN_EXP, x(2))), -1,
       {{1, 0}, {2, 2}}},
      {"x0 / x1", binop(x(0), ZSLP_OP_DIVIDE, x(1)), -1, {{1, 0}, {1, 1}}},
      {"x0 + 2 x1 - x2", binop(binop(x(0), ZSLP_OP_PLUS, binop(c(2), ZSLP_OP_MULTIPLY, x(1))),
                               ZSLP_OP_MINUS, x(2)),
       -1, {}},
      {"x1 ** x0", binop(x(1), ZSLP_OP_POWER, x(0)), -1, {{0, 0}, {1, 0}, {1, 1}}},
      {"x2 * sin(x0)", apply(ZSLP_FN_SIN, x(0)), 2, {{0, 0}, {2, 0}}},
      {"exp(x0) * (x1 + x2)",
       binop(apply(ZSLP_FN_EXP, x(0)), ZSLP_OP_MULTIPLY, binop(x(1), ZSLP_OP_PLUS, x(2))), -1,
       {{0, 0}, {1, 0}, {2, 0}}},
      {"abs(x0) + max(x1, x2)",
       binop(apply(ZSLP_FN_ABS, x(0)), ZSLP_OP_PLUS,
             Tokens().args().then(x(2)).then(x(1)).fn(ZSLP_FN_MAX)),
       -1, {}},
      {"(x0 + x1) ** 2", binop(binop(x(0), ZSLP_OP_PLUS, x(1)), ZSLP_OP_POWER, c(2)), -1,
       {{0, 0}, {1, 0}, {1, 1}}},
      {"x0 * x0", binop(x(0), ZSLP_OP_MULTIPLY, x(0)), -1, {{0, 0}}},
  };
  for (auto &cs : cases) {
    Formulas f(3);
    f.term(0, cs.tokens, cs.col);
    auto ev = f.compile();
    EXPECT_EQ(pattern_of(ev->hessian_pattern()), cs.expect) << cs.name;
    check_derivatives(*ev, 3, {0.7, 1.3, -0.4}, {1.0}, cs.name);
  }
}

// Several rows and terms: factors, multiplying columns, constants inside
// formulas, a term split at its sums, terms that cancel, and a row whose
// formula is the empty one (the constant 1).
TEST(Evaluator, RowsOfSeveralTerms) {
  Formulas f(4, 4);
  Tokens inner = binop(apply(ZSLP_FN_SIN, binop(x(0), ZSLP_OP_MULTIPLY, x(1))), ZSLP_OP_PLUS,
                       binop(c(3), ZSLP_OP_MULTIPLY, apply(ZSLP_FN_EXP, x(2))));
  f.term(0, inner, -1, 2.0).term(0, apply(ZSLP_FN_COS, x(3)), 1, -0.5);
  f.term(1, Tokens(), 2, 4.0);  // 4 x2
  f.term(2, apply(ZSLP_FN_LOG, x(3)), -1, 1.0).term(2, apply(ZSLP_FN_LOG, x(3)), -1, -1.0);
  f.term(3, binop(apply(ZSLP_FN_SQRT, x(3)), ZSLP_OP_PLUS, c(5)), 0, 1.5);
  auto ev = f.compile();
  ASSERT_EQ(ev->rows(), (std::vector<int>{0, 1, 2, 3}));
  std::vector<double> pt{0.4, -1.1, 0.3, 2.5};
  auto g = Dense(*ev, 4).values(pt);
  EXPECT_NEAR(g[0], 2 * (std::sin(0.4 * -1.1) + 3 * std::exp(0.3)) - 0.5 * -1.1 * std::cos(2.5),
              1e-13);
  EXPECT_NEAR(g[1], 4 * 0.3, 1e-15);
  EXPECT_NEAR(g[2], 0.0, 1e-15);
  EXPECT_NEAR(g[3], 1.5 * 0.4 * (std::sqrt(2.5) + 5), 1e-13);
  check_derivatives(*ev, 4, pt, {1.3, -0.7, 2.0, 0.9}, "rows");
  check_derivatives(*ev, 4, pt, {0.0, 1.0, 0.0, 0.0}, "one row");
}

// A user function called in two rows and twice within one: shared, so one
// pass calls it once.
int calls = 0;
double counted(const double *x, void *) {
  ++calls;
  return x[0] * x[0] * x[1];
}

TEST(Evaluator, SharedSubexpressionsAreEvaluatedOnce) {
  Formulas f(2, 2);
  auto fn = reinterpret_cast<ZSLP_userfunc>(&counted);
  int u = f.model.formulas.add_user_function({"counted", ZSLP_USERFUNC_VALUE, 2, fn, nullptr}, "test");
  Tokens call = Tokens().args().then(x(1)).then(x(0)).user(u);
  Tokens e = apply(ZSLP_FN_EXP, call);
  f.term(0, binop(e, ZSLP_OP_PLUS, binop(e, ZSLP_OP_MULTIPLY, x(1)))).term(1, apply(ZSLP_FN_SIN, e));
  auto ev = f.compile();
  calls = 0;
  auto g = Dense(*ev, 2).values({0.5, 0.8});
  EXPECT_EQ(calls, 1);
  double v = std::exp(0.5 * 0.5 * 0.8);
  EXPECT_NEAR(g[0], v + v * 0.8, 1e-14);
  EXPECT_NEAR(g[1], std::sin(v), 1e-14);
  // The same point again costs no call.
  Dense(*ev, 2).values({0.5, 0.8});
  EXPECT_EQ(calls, 1);
}

// User functions with and without derivatives: value, gradient and Hessian
// against the closed form of f(a, b) = a^2 b + sin(b).
double plain(const double *x, void *) { return x[0] * x[0] * x[1] + std::sin(x[1]); }
int with_derivatives(const double *x, const double *request, double *value, double *partials,
                     void *data) {
  *value = plain(x, data);
  if (request) {
    partials[0] = 2 * x[0] * x[1];
    partials[1] = x[0] * x[0] + std::cos(x[1]);
  }
  return 0;
}

TEST(Evaluator, UserFunctionsInBothModes) {
  for (int kind : {ZSLP_USERFUNC_VALUE, ZSLP_USERFUNC_DERIVS}) {
    Formulas f(2);
    auto fn = kind == ZSLP_USERFUNC_VALUE ? reinterpret_cast<ZSLP_userfunc>(&plain)
                                          : reinterpret_cast<ZSLP_userfunc>(&with_derivatives);
    int u = f.model.formulas.add_user_function({"f", kind, 2, fn, nullptr}, "test");
    // 3 * f(x1 + 1, x0): arguments written last first.
    f.term(0, Tokens().args().then(x(0)).then(binop(x(1), ZSLP_OP_PLUS, c(1))).user(u), -1, 3);
    auto ev = f.compile();
    Dense d(*ev, 2);
    std::vector<double> pt{0.6, 1.2};
    double a = pt[1] + 1, b = pt[0];
    EXPECT_NEAR(d.values(pt)[0], 3 * (a * a * b + std::sin(b)), 1e-14);
    auto J = d.jacobian(pt);
    EXPECT_NEAR(J[0][1], 3 * 2 * a * b, 1e-7) << kind;
    EXPECT_NEAR(J[0][0], 3 * (a * a + std::cos(b)), 1e-7) << kind;
    auto H = d.hessian(pt, {1.0});
    EXPECT_NEAR(H[1][1], 3 * 2 * b, 1e-4) << kind;
    EXPECT_NEAR(H[1][0], 3 * 2 * a, 1e-4) << kind;
    EXPECT_NEAR(H[0][0], 3 * -std::sin(b), 1e-4) << kind;
  }
}

double refuses(const double *x, void *) {
  zorvan::nlp::note_user_function_error();  // what ZSLPsetfunctionerror does
  return x[0];
}
int refuses_too(const double *, const double *, double *, double *, void *) { return 1; }

TEST(Evaluator, FailuresOutsideTheDomain) {
  struct Case {
    const char *name;
    Tokens tokens;
    std::vector<double> at;
    const char *text;
  };
  std::vector<Case> cases = {
      {"log", apply(ZSLP_FN_LOG, x(0)), {-1}, "log of -1"},
      {"log10 of 0", apply(ZSLP_FN_LOG10, x(0)), {0}, "log10 of 0"},
      {"division", binop(c(1), ZSLP_OP_DIVIDE, x(0)), {0}, "division by zero"},
      {"sqrt", apply(ZSLP_FN_SQRT, x(0)), {-2}, "sqrt of -2"},
      {"asin", apply(ZSLP_FN_ASIN, x(0)), {1.5}, "asin of 1.5"},
      {"acos", apply(ZSLP_FN_ACOS, x(0)), {-1.5}, "acos of -1.5"},
      {"power", binop(x(0), ZSLP_OP_POWER, c(0.5)), {-2}, "negative base"},
      {"negative power of 0", binop(x(0), ZSLP_OP_POWER, c(-1)), {0}, "division by zero"},
      {"exp overflow", apply(ZSLP_FN_EXP, x(0)), {800}, "not a finite number"},
  };
  for (auto &cs : cases) {
    Formulas f(1);
    f.term(0, cs.tokens);
    auto ev = f.compile();
    double g = 0, jv[1] = {0}, hv[1] = {0}, lambda = 1;
    EXPECT_EQ(ev->values(cs.at.data(), &g), EvalFailure::domain) << cs.name;
    EXPECT_NE(ev->failure_text().find(cs.text), std::string::npos)
        << cs.name << ": " << ev->failure_text();
    EXPECT_EQ(ev->jacobian(cs.at.data(), jv), EvalFailure::domain) << cs.name;
    EXPECT_EQ(ev->hessian(cs.at.data(), &lambda, hv), EvalFailure::domain) << cs.name;
  }
  // Values exist but derivatives do not: sqrt and x ** 0.5 at 0, asin at 1.
  for (auto t : {apply(ZSLP_FN_SQRT, x(0)), binop(x(0), ZSLP_OP_POWER, c(0.5))}) {
    Formulas f(1);
    f.term(0, t);
    auto ev = f.compile();
    double zero = 0, g = -1, jv[1];
    EXPECT_EQ(ev->values(&zero, &g), EvalFailure::none);
    EXPECT_EQ(g, 0.0);
    EXPECT_EQ(ev->jacobian(&zero, jv), EvalFailure::domain);
    EXPECT_NE(ev->failure_text().find("no derivative"), std::string::npos) << ev->failure_text();
  }
  // A user function that says it failed stops the evaluation.
  for (int kind : {ZSLP_USERFUNC_VALUE, ZSLP_USERFUNC_DERIVS}) {
    Formulas f(1);
    auto fn = kind == ZSLP_USERFUNC_VALUE ? reinterpret_cast<ZSLP_userfunc>(&refuses)
                                          : reinterpret_cast<ZSLP_userfunc>(&refuses_too);
    int u = f.model.formulas.add_user_function({"bad", kind, 1, fn, nullptr}, "test");
    f.term(0, Tokens().args().then(x(0)).user(u));
    auto ev = f.compile();
    double pt = 1, g, jv[1];
    EXPECT_EQ(ev->values(&pt, &g), EvalFailure::user_function) << kind;
    EXPECT_NE(ev->failure_text().find("user function bad failed at (1)"), std::string::npos)
        << ev->failure_text();
    EXPECT_EQ(ev->jacobian(&pt, jv), EvalFailure::user_function) << kind;
  }
}

// Random compositions of every function and operator, several rows sharing
// subtrees, against differences: over four variables (elements of few
// variables, carried forward) and over nine (larger elements, swept in
// reverse).
class RandomCompositions : public ::testing::TestWithParam<int> {};

TEST_P(RandomCompositions, AgainstDifferences) {
  const int n = GetParam();
  std::mt19937 rng(2024 + n);
  // Functions that stay defined on any finite argument after the squashing
  // below (atan keeps arguments of log, sqrt, asin and acos in range).
  auto squash = [](const Tokens &t) { return apply(ZSLP_FN_ATAN, t); };
  std::function<Tokens(int)> grow = [&](int depth) -> Tokens {
    std::uniform_int_distribution<int> pick(0, depth <= 0 ? 1 : 12);
    switch (pick(rng)) {
      case 0: return x(std::uniform_int_distribution<int>(0, n - 1)(rng));
      case 1: return c(std::uniform_real_distribution<double>(-2, 2)(rng));
      case 2: return binop(grow(depth - 1), ZSLP_OP_PLUS, grow(depth - 1));
      case 3: return binop(grow(depth - 1), ZSLP_OP_MINUS, grow(depth - 1));
      case 4: return binop(grow(depth - 1), ZSLP_OP_MULTIPLY, grow(depth - 1));
      case 5:
        return binop(grow(depth - 1), ZSLP_OP_DIVIDE,
                     binop(c(2), ZSLP_OP_PLUS, apply(ZSLP_FN_SIN, grow(depth - 1))));
      case 6: return apply(ZSLP_FN_EXP, squash(grow(depth - 1)));
      case 7: return apply(ZSLP_FN_LOG, binop(c(2), ZSLP_OP_PLUS, squash(grow(depth - 1))));
      case 8: return apply(ZSLP_FN_SQRT, binop(c(1.7), ZSLP_OP_PLUS, squash(grow(depth - 1))));
      case 9:
        return apply(ZSLP_FN_ASIN, binop(squash(grow(depth - 1)), ZSLP_OP_DIVIDE, c(2)));
      case 10: return binop(binop(c(2), ZSLP_OP_PLUS, squash(grow(depth - 1))), ZSLP_OP_POWER, grow(depth - 1));
      case 11: return apply(ZSLP_FN_COS, grow(depth - 1));
      default: return binop(grow(depth - 1), ZSLP_OP_POWER, c(3));
    }
  };
  int large = 0;
  for (int model = 0; model < 20; ++model) {
    Formulas f(n, 3);
    Tokens shared = grow(3);
    for (int r = 0; r < 3; ++r) {
      f.term(r, binop(grow(n > 4 ? 4 : 3), ZSLP_OP_MULTIPLY, shared), -1, 1.0 + r);
      f.term(r, grow(2), r, -0.5);
    }
    auto ev = f.compile();
    std::uniform_real_distribution<double> pt(-1, 1);
    std::vector<double> at(n);
    for (double &v : at) v = pt(rng);
    check_derivatives(*ev, n, at, {0.5, -1.0, 2.0}, "model " + std::to_string(model));
    std::set<int> cols(ev->jacobian_pattern().col.begin(), ev->jacobian_pattern().col.end());
    large += cols.size() > 4;
  }
  if (n > 4) {
    EXPECT_GT(large, 5) << "too few rows of more than four variables";
  }
}

INSTANTIATE_TEST_SUITE_P(Evaluator, RandomCompositions, ::testing::Values(4, 9));

}  // namespace

namespace {

// The store's version tells a compiled copy that it is stale: it changes
// with every change of formulas, user functions and renumbering, and not
// when nothing changed.
TEST(FormulaStore, VersionChangesWithEveryChange) {
  Formulas f(3, 3);
  const zorvan::FormulaStore &s = f.model.formulas;
  uint64_t v = s.version();
  auto changed = [&] {
    bool c = s.version() != v;
    v = s.version();
    return c;
  };
  f.term(1, apply(ZSLP_FN_SIN, x(2)));
  EXPECT_TRUE(changed());
  int none = 0, start = 0;
  zorvan::FormulaInput empty{0, &none, &none, nullptr, &start, &none, nullptr};
  f.model.formulas.add(empty, 3, 3, "test");
  EXPECT_FALSE(changed()) << "adding nothing";
  f.model.formulas.add_user_function({"u", ZSLP_USERFUNC_VALUE, 1,
                                      reinterpret_cast<ZSLP_userfunc>(&plain), nullptr},
                                     "test");
  EXPECT_TRUE(changed());
  f.model.delete_rows({1, 0, 0});
  EXPECT_TRUE(changed());
  EXPECT_EQ(s.row(0), 0) << "row 1 is row 0 now";
  f.model.delete_columns({1, 0, 0});
  EXPECT_TRUE(changed());
  // The compiled copy reads the renumbered column: sin(x1) at x = (0, 0.5).
  auto ev = f.compile();
  std::vector<double> pt{0, 0.5};
  EXPECT_NEAR(Dense(*ev, 2).values(pt)[0], std::sin(0.5), 1e-15);
  int row = 0, col = -1;
  f.model.formulas.remove(1, &row, &col, 2, "test");
  EXPECT_TRUE(changed());
  EXPECT_EQ(s.terms(), 0);
}

}  // namespace
