// Models with formula terms solved by the interior-point backend:
// Hock-Schittkowski problems against their published optima (Hock and
// Schittkowski, "Test Examples for Nonlinear Programming Codes", 1981),
// evaluation failures that the solver backs off from, and user functions.
#include <cmath>
#include <string>
#include <vector>

#include "model_support.h"

namespace {

// A formula as tokens in reverse Polish order, built with operators.
struct F {
  std::vector<int> type;
  std::vector<double> value;
  F &push(int t, double v) {
    type.push_back(t), value.push_back(v);
    return *this;
  }
  F &append(const F &f) {
    type.insert(type.end(), f.type.begin(), f.type.end());
    value.insert(value.end(), f.value.begin(), f.value.end());
    return *this;
  }
};
F x(int j) { return F().push(ZSLP_TOK_COL, j); }
F c(double v) { return F().push(ZSLP_TOK_CON, v); }
F op(const F &a, const F &b, int code) { return F(a).append(b).push(ZSLP_TOK_OP, code); }
F operator+(const F &a, const F &b) { return op(a, b, ZSLP_OP_PLUS); }
F operator-(const F &a, const F &b) { return op(a, b, ZSLP_OP_MINUS); }
F operator*(const F &a, const F &b) { return op(a, b, ZSLP_OP_MULTIPLY); }
F operator/(const F &a, const F &b) { return op(a, b, ZSLP_OP_DIVIDE); }
F pow(const F &a, double e) { return op(a, c(e), ZSLP_OP_POWER); }
F operator*(double k, const F &a) { return c(k) * a; }
// A function of one argument (the argument list starts with its token).
F fn(int code, const F &a) {
  return F().push(ZSLP_TOK_ARGS, 0).append(a).push(ZSLP_TOK_FUNC, code);
}
F user(int index, const std::vector<F> &args) {
  F f;
  f.push(ZSLP_TOK_ARGS, 0);
  for (auto it = args.rbegin(); it != args.rend(); ++it) f.append(*it);
  return f.push(ZSLP_TOK_USERFUNC, index);
}

class FormulaSolve : public ModelTest {
 public:  // the builders of MoreHockSchittkowskiProblems call the helpers
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_EQ(ZSLPinit(), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  }
  void TearDown() override {
    EXPECT_EQ(ZSLPfree(), 0);
    ModelTest::TearDown();
  }
  // n columns with bounds and starting values.
  void columns(const std::vector<double> &lb, const std::vector<double> &ub,
               const std::vector<double> &start) {
    add_cols(std::vector<double>(lb.size(), 0.0), lb, ub);
    std::vector<int> idx(start.size());
    for (size_t j = 0; j < idx.size(); ++j) idx[j] = static_cast<int>(j);
    ASSERT_EQ(ZRVSnlpsetinitval(prob, static_cast<int>(idx.size()), idx.data(), start.data()), 0)
        << last_error();
  }
  void term(int row, const F &f) {
    F t = f;
    t.push(ZSLP_TOK_END, 0);
    int start = 0, none = -1;
    ASSERT_EQ(ZSLPaddcoefs(slp, 1, &row, &none, nullptr, &start, 1, t.type.data(), t.value.data()),
              0)
        << slp_error();
  }
  // A row `type` rhs holding the formula alone.
  int row(const F &f, char type, double rhs) {
    int r = add_row({}, type, rhs);
    term(r, f);
    return r;
  }
  // The objective f through a free column t and the row f - t = 0.
  void objective(const F &f) {
    int t = add_cols({1.0}, {-1e20}, {1e20});
    std::vector<double> coef(t + 1, 0.0);
    coef[t] = -1.0;
    term(add_row(coef, 'E', 0.0), f);
  }
  std::string slp_error() {
    char text[ZRVS_MAXMESSAGELENGTH] = "";
    ZSLPgetlasterror(slp, nullptr, text);
    return text;
  }
  int nlpstatus() {
    int v = -1;
    EXPECT_EQ(ZSLPgetintattrib(slp, ZSLP_NLPSTATUS, &v), 0);
    return v;
  }
  double objval() {
    double v = 0;
    EXPECT_EQ(ZSLPgetdblattrib(slp, ZSLP_OBJVAL, &v), 0);
    return v;
  }
  std::vector<double> solution() {
    std::vector<double> v(int_attrib(ZRVS_COLS));
    EXPECT_EQ(ZSLPgetslpsol(slp, v.data(), nullptr, nullptr, nullptr), 0);
    return v;
  }
  void expect_optimum(double f, double tol = 1e-6) {
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
    EXPECT_EQ(nlpstatus(), ZSLP_NLP_LOCALLY_OPTIMAL);
    EXPECT_NEAR(objval(), f, tol * std::max(1.0, std::fabs(f)));
  }
  ZSLPprob slp = nullptr;
};

TEST_F(FormulaSolve, Hs071) {
  columns({1, 1, 1, 1}, {5, 5, 5, 5}, {1, 5, 5, 1});
  objective(x(0) * x(3) * (x(0) + x(1) + x(2)) + x(2));
  row(x(0) * x(1) * x(2) * x(3), 'G', 25);
  row(pow(x(0), 2) + pow(x(1), 2) + pow(x(2), 2) + pow(x(3), 2), 'E', 40);
  expect_optimum(17.0140173);
  std::vector<double> v = solution();
  const double published[4] = {1.0, 4.7429994, 3.8211503, 1.3794082};
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(v[j], published[j], 1e-6);
  // The duals meet the first-order conditions of the objective's row and
  // the two constraints: with t = f(x) the objective, the duals of the
  // rows of t and of g, h give grad f * y0 + y1 grad g + y2 grad h = dj.
  std::vector<double> duals(3), djs(5);
  ASSERT_EQ(ZSLPgetslpsol(slp, nullptr, nullptr, duals.data(), djs.data()), 0);
  EXPECT_NEAR(duals[0], -1.0, 1e-7) << "the transfer row passes the objective through";
  const double *p = v.data();
  const double grad_f[4] = {p[3] * (2 * p[0] + p[1] + p[2]), p[0] * p[3], p[0] * p[3] + 1,
                            p[0] * (p[0] + p[1] + p[2])};
  const double grad_g[4] = {p[1] * p[2] * p[3], p[0] * p[2] * p[3], p[0] * p[1] * p[3],
                            p[0] * p[1] * p[2]};
  for (int j = 0; j < 4; ++j) {
    double stationarity = -duals[0] * grad_f[j] - duals[1] * grad_g[j] - duals[2] * 2 * p[j];
    EXPECT_NEAR(stationarity - djs[j], 0.0, 1e-6) << j;
  }
  EXPECT_GT(djs[0], 1.0) << "x1 rests on its lower bound";
}

TEST_F(FormulaSolve, Hs035) {
  columns({0, 0, 0}, {1e20, 1e20, 1e20}, {0.5, 0.5, 0.5});
  objective(c(9) - 8.0 * x(0) - 6.0 * x(1) - 4.0 * x(2) + 2.0 * pow(x(0), 2) +
            2.0 * pow(x(1), 2) + pow(x(2), 2) + 2.0 * x(0) * x(1) + 2.0 * x(0) * x(2));
  add_row({1, 1, 2}, 'L', 3);
  expect_optimum(1.0 / 9.0);
  std::vector<double> v = solution();
  EXPECT_NEAR(v[0], 4.0 / 3.0, 1e-6);
  EXPECT_NEAR(v[1], 7.0 / 9.0, 1e-6);
  EXPECT_NEAR(v[2], 4.0 / 9.0, 1e-6);
}

TEST_F(FormulaSolve, Hs038) {
  columns({-10, -10, -10, -10}, {10, 10, 10, 10}, {-3, -1, -3, -1});
  objective(100.0 * pow(x(1) - pow(x(0), 2), 2) + pow(c(1) - x(0), 2) +
            90.0 * pow(x(3) - pow(x(2), 2), 2) + pow(c(1) - x(2), 2) +
            10.1 * (pow(x(1) - c(1), 2) + pow(x(3) - c(1), 2)) +
            19.8 * (x(1) - c(1)) * (x(3) - c(1)));
  expect_optimum(0.0);
  for (double v : {solution()[0], solution()[1], solution()[2], solution()[3]})
    EXPECT_NEAR(v, 1.0, 1e-5);
}

TEST_F(FormulaSolve, Hs100) {
  columns(std::vector<double>(7, -1e20), std::vector<double>(7, 1e20), {1, 2, 0, 4, 0, 1, 1});
  objective(pow(x(0) - c(10), 2) + 5.0 * pow(x(1) - c(12), 2) + pow(x(2), 4) +
            3.0 * pow(x(3) - c(11), 2) + 10.0 * pow(x(4), 6) + 7.0 * pow(x(5), 2) +
            pow(x(6), 4) - 4.0 * x(5) * x(6) - 10.0 * x(5) - 8.0 * x(6));
  row(c(127) - 2.0 * pow(x(0), 2) - 3.0 * pow(x(1), 4) - x(2) - 4.0 * pow(x(3), 2) -
          5.0 * x(4),
      'G', 0);
  row(c(282) - 7.0 * x(0) - 3.0 * x(1) - 10.0 * pow(x(2), 2) - x(3) + x(4), 'G', 0);
  row(c(196) - 23.0 * x(0) - pow(x(1), 2) - 6.0 * pow(x(5), 2) + 8.0 * x(6), 'G', 0);
  row(c(0) - 4.0 * pow(x(0), 2) - pow(x(1), 2) + 3.0 * x(0) * x(1) - 2.0 * pow(x(2), 2) -
          5.0 * x(5) + 11.0 * x(6),
      'G', 0);
  expect_optimum(680.6300573);
}

// Five more, each with equality rows or bounds that bind.
TEST_F(FormulaSolve, MoreHockSchittkowskiProblems) {
  struct Case {
    const char *name;
    double optimum;
    void (*build)(FormulaSolve &);
  };
  const Case cases[] = {
      {"hs006", 0.0,
       [](FormulaSolve &t) {
         t.columns({-1e20, -1e20}, {1e20, 1e20}, {-1.2, 1});
         t.objective(pow(c(1) - x(0), 2));
         t.row(10.0 * (x(1) - pow(x(0), 2)), 'E', 0);
       }},
      {"hs039", -1.0,
       [](FormulaSolve &t) {
         t.columns(std::vector<double>(4, -1e20), std::vector<double>(4, 1e20), {2, 2, 2, 2});
         t.objective(c(0) - x(0));
         t.row(x(1) - pow(x(0), 3) - pow(x(2), 2), 'E', 0);
         t.row(pow(x(0), 2) - x(1) - pow(x(3), 2), 'E', 0);
       }},
      {"hs040", -0.25,
       [](FormulaSolve &t) {
         t.columns(std::vector<double>(4, -1e20), std::vector<double>(4, 1e20),
                   {0.8, 0.8, 0.8, 0.8});
         t.objective(c(0) - x(0) * x(1) * x(2) * x(3));
         t.row(pow(x(0), 3) + pow(x(1), 2), 'E', 1);
         t.row(pow(x(0), 2) * x(3) - x(2), 'E', 0);
         t.row(pow(x(3), 2) - x(1), 'E', 0);
       }},
      {"hs060", 0.0325682003,
       [](FormulaSolve &t) {
         t.columns({-10, -10, -10}, {10, 10, 10}, {2, 2, 2});
         t.objective(pow(x(0) - c(1), 2) + pow(x(0) - x(1), 2) + pow(x(1) - x(2), 4));
         t.row(x(0) * (c(1) + pow(x(1), 2)) + pow(x(2), 4), 'E', 4 + 3 * std::sqrt(2.0));
       }},
      {"hs065", 0.9535288567,
       [](FormulaSolve &t) {
         t.columns({-4.5, -4.5, -5}, {4.5, 4.5, 5}, {-5, 5, 0});
         t.objective(pow(x(0) - x(1), 2) + pow(x(0) + x(1) - c(10), 2) / c(9) +
                     pow(x(2) - c(5), 2));
         t.row(c(48) - pow(x(0), 2) - pow(x(1), 2) - pow(x(2), 2), 'G', 0);
       }},
  };
  for (const Case &k : cases) {
    SCOPED_TRACE(k.name);
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
    k.build(*this);
    expect_optimum(k.optimum, 1e-6);
  }
}

// min x - log(x) from x = 3 with x free: the full Newton step lands at
// x = -3, where log fails; the solver backs off and reaches x = 1, f = 1.
TEST_F(FormulaSolve, DomainFailuresAreBackedOffFrom) {
  columns({-1e20}, {1e20}, {3});
  objective(x(0) - fn(ZSLP_FN_LOG, x(0)));
  expect_optimum(1.0);
  EXPECT_NEAR(solution()[0], 1.0, 1e-6);
}

struct Calls {
  int count = 0;
  ZSLPprob slp = nullptr;
  double fail_above = 1e300;
};

// (x - 1)^2 with its derivative.
int square_with_derivative(const double *x, const double *request, double *value,
                           double *partials, void *data) {
  ++static_cast<Calls *>(data)->count;
  *value = (x[0] - 1) * (x[0] - 1);
  if (request && request[0]) partials[0] = 2 * (x[0] - 1);
  return 0;
}

// x * y, value only; fails above a threshold of x.
double product(const double *x, void *data) {
  auto *calls = static_cast<Calls *>(data);
  ++calls->count;
  if (x[0] > calls->fail_above) ZSLPsetfunctionerror(calls->slp);
  return x[0] * x[1];
}

// User functions in both modes agree with the same model written with
// built-in operators; a failing one stops the solve with an error.
TEST_F(FormulaSolve, UserFunctionsAndTheirFailure) {
  Calls square_calls, product_calls;
  product_calls.slp = slp;
  int square = 0, prod = 0;
  ASSERT_EQ(ZSLPadduserfunction(slp, "square", ZSLP_USERFUNC_DERIVS, 1, 1, 0,
                                reinterpret_cast<ZSLP_userfunc>(square_with_derivative),
                                &square_calls, &square),
            0)
      << slp_error();
  ASSERT_EQ(ZSLPadduserfunction(slp, "product", ZSLP_USERFUNC_VALUE, 2, 1, 0,
                                reinterpret_cast<ZSLP_userfunc>(product), &product_calls, &prod),
            0)
      << slp_error();
  // min (x - 1)^2 + (y - 2)^2 s.t. xy >= 3: the same with operators first.
  auto build = [&](bool with_user_functions) {
    columns({0, 0}, {10, 10}, {1, 1});
    objective((with_user_functions ? user(square, {x(0)}) : pow(x(0) - c(1), 2)) +
              pow(x(1) - c(2), 2));
    row(with_user_functions ? user(prod, {x(0), x(1)}) : x(0) * x(1), 'G', 3);
  };
  build(false);
  expect_optimum(0.0, 1.0);  // the value is compared below
  const double reference = objval();
  const std::vector<double> at = solution();
  EXPECT_GT(reference, 0.01) << "the row binds";

  ASSERT_EQ(ZRVSdestroyprob(prob), 0);
  ASSERT_EQ(ZRVScreateprob(&prob), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  product_calls.slp = slp;
  ASSERT_EQ(ZSLPadduserfunction(slp, "square", ZSLP_USERFUNC_DERIVS, 1, 1, 0,
                                reinterpret_cast<ZSLP_userfunc>(square_with_derivative),
                                &square_calls, &square),
            0);
  ASSERT_EQ(ZSLPadduserfunction(slp, "product", ZSLP_USERFUNC_VALUE, 2, 1, 0,
                                reinterpret_cast<ZSLP_userfunc>(product), &product_calls, &prod),
            0);
  build(true);
  expect_optimum(reference, 1e-6);
  EXPECT_NEAR(solution()[0], at[0], 1e-5);
  EXPECT_NEAR(solution()[1], at[1], 1e-5);
  EXPECT_GT(square_calls.count, 0);
  EXPECT_GT(product_calls.count, 0);

  // A failure stops the solve: the call fails and says why.
  product_calls.fail_above = 1.05;
  int cols[2] = {0, 1};
  double start[2] = {1, 1};
  ASSERT_EQ(ZRVSnlpsetinitval(prob, 2, cols, start), 0);
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_WARMSTART, 0), 0);
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr), "user function");
  EXPECT_EQ(solve, ZRVS_SOLVESTATUS_FAILED);
}

}  // namespace
