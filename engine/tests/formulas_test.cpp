// Formula terms of a nonlinear problem: adding, replacing, reading back and
// removing them, the checks of their tokens, user-function registration and
// the consistency of the store when rows or columns of the main problem go.
#include <string>
#include <vector>

#include "test_support.h"
#include "token_support.h"

namespace {

// Several terms in the arrays that ZSLPaddcoefs takes.
struct Batch {
  std::vector<int> row, col, start;
  std::vector<double> factor;
  Tokens tokens;
  Batch &term(int r, int c, double f, const Tokens &t) {
    row.push_back(r), col.push_back(c), factor.push_back(f);
    start.push_back(static_cast<int>(tokens.type.size()));
    tokens.type.insert(tokens.type.end(), t.type.begin(), t.type.end());
    tokens.value.insert(tokens.value.end(), t.value.begin(), t.value.end());
    return *this;
  }
  int add(ZSLPprob slp) const { return call(ZSLPaddcoefs, slp); }
  int load(ZSLPprob slp) const { return call(ZSLPloadcoefs, slp); }
  template <class F>
  int call(F f, ZSLPprob slp) const {
    return f(slp, static_cast<int>(row.size()), row.data(), col.data(), factor.data(),
             start.data(), 1, tokens.type.data(), tokens.value.data());
  }
};

class Formulas : public ProblemTest {
 protected:
  void SetUp() override {
    ProblemTest::SetUp();
    ASSERT_EQ(ZSLPinit(), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
    // Three columns and three rows.
    std::vector<double> lb(3, -10), ub(3, 10), obj(3, 0);
    std::vector<int64_t> start(4, 0);
    ASSERT_EQ(ZRVSaddcols64(prob, 3, 0, obj.data(), start.data(), nullptr, nullptr, lb.data(),
                            ub.data()),
              0);
    std::vector<double> rhs(3, 0);
    ASSERT_EQ(ZRVSaddrows64(prob, 3, 0, "LLL", rhs.data(), nullptr, start.data(), nullptr,
                            nullptr),
              0);
  }
  void TearDown() override {
    ProblemTest::TearDown();
    EXPECT_EQ(ZSLPfree(), 0);
  }
  std::string slp_error() {
    char text[ZRVS_MAXMESSAGELENGTH];
    EXPECT_EQ(ZSLPgetlasterror(slp, nullptr, text), 0);
    return text;
  }
  std::vector<std::pair<int, int>> pairs(ZSLPprob of = nullptr) {
    of = of ? of : slp;
    int n = -1;
    EXPECT_EQ(ZSLPgetcoefs(of, &n, nullptr, nullptr), 0);
    std::vector<int> r(n), c(n);
    EXPECT_EQ(ZSLPgetcoefs(of, &n, r.data(), c.data()), 0);
    std::vector<std::pair<int, int>> out;
    for (int k = 0; k < n; ++k) out.emplace_back(r[k], c[k]);
    return out;
  }
  // The formula of a pair, as tokens with the factor in front as a constant.
  Tokens formula(int row, int col, double *factor, ZSLPprob of = nullptr) {
    of = of ? of : slp;
    int n = 0;
    EXPECT_EQ(ZSLPgetcoefformula(of, row, col, factor, 1, 0, &n, nullptr, nullptr), 0);
    Tokens t;
    t.type.resize(n), t.value.resize(n);
    EXPECT_EQ(ZSLPgetcoefformula(of, row, col, factor, 1, n, &n, t.type.data(), t.value.data()),
              0);
    return t;
  }
  int attrib_terms(ZSLPprob of = nullptr) {
    int n = -1;
    EXPECT_EQ(ZSLPgetintattrib(of ? of : slp, ZSLP_COEFFICIENTS, &n), 0);
    return n;
  }
  ZSLPprob slp = nullptr;
};

Tokens sin_of(int c) { return Tokens().args().col(c).fn(ZSLP_FN_SIN).end(); }

TEST_F(Formulas, AddReadBackReplaceAndRemove) {
  Tokens product = Tokens().col(0).col(1).op(ZSLP_OP_MULTIPLY).end();
  Batch b;
  b.term(2, -1000, 1.0, sin_of(0)).term(0, 1, 2.5, product).term(2, -1, -1.0, sin_of(2));
  ASSERT_EQ(b.add(slp), 0) << slp_error();
  EXPECT_EQ(attrib_terms(), 3);
  // By row, in the order added within a row; "no column" reads as -1.
  std::vector<std::pair<int, int>> expect{{0, 1}, {2, -1}, {2, -1}};
  EXPECT_EQ(pairs(), expect);

  double factor = 0;
  Tokens t = formula(0, 1, &factor);
  EXPECT_EQ(factor, 2.5);
  EXPECT_EQ(t.type, product.type);
  EXPECT_EQ(t.value, product.value);
  // Two terms of one pair read back as one formula 1*sin(x0) + (-1)*sin(x2).
  t = formula(2, -5, &factor);
  EXPECT_EQ(factor, 1.0);
  Tokens both = Tokens()
                    .con(1.0).args().col(0).fn(ZSLP_FN_SIN).op(ZSLP_OP_MULTIPLY)
                    .con(-1.0).args().col(2).fn(ZSLP_FN_SIN).op(ZSLP_OP_MULTIPLY)
                    .op(ZSLP_OP_PLUS).end();
  EXPECT_EQ(t.type, both.type);
  EXPECT_EQ(t.value, both.value);
  int n = 0;
  int small[2];
  double smallv[2];
  EXPECT_NE(ZSLPgetcoefformula(slp, 2, -1, &factor, 1, 2, &n, small, smallv), 0);
  EXPECT_NE(slp_error().find("maxtypes"), std::string::npos) << slp_error();

  // Loading replaces both terms of pair (2, none), leaving (0, 1) alone.
  Batch repl;
  repl.term(2, -1, 3.0, Tokens().args().col(1).fn(ZSLP_FN_EXP).end());
  ASSERT_EQ(repl.load(slp), 0) << slp_error();
  expect = {{0, 1}, {2, -1}};
  EXPECT_EQ(pairs(), expect);
  formula(2, -1, &factor);
  EXPECT_EQ(factor, 3.0);

  int r = 0, c = 1;
  ASSERT_EQ(ZSLPdelcoefs(slp, 1, &r, &c), 0) << slp_error();
  expect = {{2, -1}};
  EXPECT_EQ(pairs(), expect);
  EXPECT_NE(ZSLPdelcoefs(slp, 1, &r, &c), 0) << "the pair has no term any more";
  EXPECT_NE(slp_error().find("row 0 has no formula term with column 1"), std::string::npos)
      << slp_error();
  EXPECT_NE(ZSLPgetcoefformula(slp, 0, 1, &factor, 1, 0, &n, nullptr, nullptr), 0);
}

TEST_F(Formulas, ManySmallAdditions) {
  for (int k = 0; k < 300; ++k)
    ASSERT_EQ(Batch().term(k % 3, k % 2 ? 1 : -1, k, sin_of(k % 3)).add(slp), 0) << k;
  EXPECT_EQ(attrib_terms(), 300);
  std::vector<std::pair<int, int>> p = pairs();
  ASSERT_EQ(p.size(), 300u);
  EXPECT_EQ(p.front(), std::make_pair(0, -1));
  EXPECT_EQ(p.back(), std::make_pair(2, 1));
  double factor = 0;
  int r = 2, c = 1, n = 0;
  ASSERT_EQ(ZSLPgetcoefformula(slp, r, c, &factor, 1, 0, &n, nullptr, nullptr), 0);
  // 50 terms, each factor * sin(x2) (5 tokens), joined by 49 plus signs, and the end.
  EXPECT_EQ(n, 50 * 5 + 49 + 1);
}

TEST_F(Formulas, EmptyFormulaAndFunctionsOfSeveralArguments) {
  // An empty formula (the constant 1), max of three arguments and a pwl.
  Tokens pwl = Tokens().args().con(3).con(2).con(1).con(1).con(0).con(0).col(1).fn(ZSLP_FN_PWL);
  Batch b;
  b.term(0, 2, 4.0, Tokens().end())
      .term(1, -1, 1.0, Tokens().args().col(0).col(1).con(2).fn(ZSLP_FN_MAX).end())
      .term(1, 0, 1.0, pwl.end());
  ASSERT_EQ(b.add(slp), 0) << slp_error();
  EXPECT_EQ(attrib_terms(), 3);
}

// Each bad formula is refused with a text naming what is wrong, and the
// problem keeps the terms it had.
TEST_F(Formulas, BadFormulasAreRefusedWithoutChange) {
  ASSERT_EQ(Batch().term(0, -1, 1.0, sin_of(0)).add(slp), 0);
  int index = 0;
  ASSERT_EQ(ZSLPadduserfunction(slp, "f2", ZSLP_USERFUNC_VALUE, 2, 1, 0,
                                reinterpret_cast<ZSLP_userfunc>(+[](const double *, void *) {
                                  return 0.0;
                                }),
                                nullptr, &index),
            0)
      << slp_error();
  EXPECT_EQ(index, 1);
  struct Case {
    const char *what;
    Tokens tokens;
    int row, col;
    const char *message;
  };
  std::vector<Case> cases = {
      {"two values left", Tokens().col(0).col(1).end(), 0, -1, "unbalanced"},
      {"operator without operands", Tokens().col(0).op(ZSLP_OP_PLUS).end(), 0, -1,
       "missing an operand"},
      {"operator taking a list start", Tokens().col(0).args().op(ZSLP_OP_NEGATE).end(), 0, -1,
       "missing an operand"},
      {"list start left open", Tokens().args().col(0).end(), 0, -1, "unbalanced"},
      {"unknown function", Tokens().args().col(0).fn(99).end(), 0, -1,
       "unknown function number"},
      {"unknown operator", Tokens().col(0).col(1).op(9).end(), 0, -1, "unknown operator"},
      {"unknown token type", Tokens().add(7, 0).end(), 0, -1, "unknown token type"},
      {"column out of range", Tokens().col(3).end(), 0, -1, "not a column index"},
      {"fractional column", Tokens().col(0).add(ZSLP_TOK_COL, 0.5).op(ZSLP_OP_PLUS).end(), 0, -1,
       "not a column index"},
      {"multiplying column out of range", sin_of(0), 0, 3, "colindex[1] = 3"},
      {"row out of range", sin_of(0), 3, -1, "rowindex[1] = 3"},
      {"negative row", sin_of(0), -1, -1, "rowindex[1] = -1"},
      {"user function not registered", Tokens().args().col(0).col(1).user(2).end(), 0, -1,
       "no user function has this index"},
      {"user function arity", Tokens().args().col(0).user(1).end(), 0, -1, "takes 2 arguments"},
      {"sin of two", Tokens().args().col(0).col(1).fn(ZSLP_FN_SIN).end(), 0, -1,
       "takes one argument"},
      {"function without list start", Tokens().col(0).fn(ZSLP_FN_EXP).end(), 0, -1,
       "no argument list start"},
      {"max of nothing", Tokens().args().fn(ZSLP_FN_MAX).end(), 0, -1, "at least one"},
      {"pwl with one point", Tokens().args().con(1).con(0).col(0).fn(ZSLP_FN_PWL).end(), 0, -1,
       "at least two breakpoints"},
      {"pwl with a variable breakpoint",
       Tokens().args().con(1).col(1).con(0).con(0).col(0).fn(ZSLP_FN_PWL).end(), 0, -1,
       "constant tokens"},
      {"pwl out of order",
       Tokens().args().con(1).con(0).con(0).con(1).col(0).fn(ZSLP_FN_PWL).end(), 0, -1,
       "increasing order"},
      {"infinite constant", Tokens().con(1.0 / 0.0).end(), 0, -1, "finite"},
  };
  for (const Case &c : cases) {
    Batch b;
    b.term(1, 0, 1.0, sin_of(1)).term(c.row, c.col, 1.0, c.tokens);
    EXPECT_NE(b.add(slp), 0) << c.what;
    EXPECT_NE(slp_error().find(c.message), std::string::npos) << c.what << ": " << slp_error();
    EXPECT_EQ(attrib_terms(), 1) << c.what << ": the good first term was not added either";
  }
  // A missing end token: the first term runs into the second one's start.
  Batch b;
  b.term(0, -1, 1.0, Tokens().col(0)).term(0, -1, 1.0, sin_of(1));
  EXPECT_NE(b.add(slp), 0);
  EXPECT_NE(slp_error().find("no end token"), std::string::npos) << slp_error();
  // Formulas in written order are not supported.
  Tokens t = sin_of(0);
  int row = 0, start = 0;
  EXPECT_EQ(ZSLPaddcoefs(slp, 1, &row, nullptr, nullptr, &start, 0, t.type.data(),
                         t.value.data()),
            ZRVS_ERR_UNSUPPORTED);
  EXPECT_NE(slp_error().find("reverse Polish"), std::string::npos) << slp_error();
  EXPECT_EQ(attrib_terms(), 1);
}

TEST_F(Formulas, UserFunctionRegistration) {
  auto f = reinterpret_cast<ZSLP_userfunc>(+[](const double *x, void *) { return x[0]; });
  int first = 0, second = 0;
  ASSERT_EQ(ZSLPadduserfunction(slp, "a", ZSLP_USERFUNC_VALUE, 1, 1, 0, f, nullptr, &first), 0);
  ASSERT_EQ(ZSLPadduserfunction(slp, "b", ZSLP_USERFUNC_DERIVS, 3, 1, 0, f, nullptr, &second), 0);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
  int index = 0;
  EXPECT_EQ(ZSLPadduserfunction(slp, "c", 3, 1, 1, 0, f, nullptr, &index), ZRVS_ERR_UNSUPPORTED);
  EXPECT_NE(slp_error().find("function type 3"), std::string::npos) << slp_error();
  EXPECT_NE(ZSLPadduserfunction(slp, "c", 2, 1, 2, 0, f, nullptr, &index), 0);
  EXPECT_NE(slp_error().find("nout = 2"), std::string::npos) << slp_error();
  EXPECT_NE(ZSLPadduserfunction(slp, "c", 2, 1, 1, 0, nullptr, nullptr, &index), 0);
  EXPECT_NE(ZSLPadduserfunction(slp, "c", 2, -1, 1, 0, f, nullptr, &index), 0);
  // Tokens calling the second function take its three arguments.
  Tokens call = Tokens().args().col(2).con(1).col(0).user(second).end();
  EXPECT_EQ(Batch().term(0, -1, 1.0, call).add(slp), 0) << slp_error();
}

// Loading a new model into the problem drops the formulas but keeps the user
// functions registered with it.
TEST_F(Formulas, NewModelKeepsUserFunctions) {
  auto f = reinterpret_cast<ZSLP_userfunc>(+[](const double *x, void *) { return x[0]; });
  int index = 0;
  ASSERT_EQ(ZSLPadduserfunction(slp, "a", ZSLP_USERFUNC_VALUE, 1, 1, 0, f, nullptr, &index), 0);
  ASSERT_EQ(Batch().term(0, -1, 1.0, sin_of(0)).add(slp), 0);
  double obj[2] = {0, 0}, lb[2] = {0, 0}, ub[2] = {1, 1}, rhs[1] = {1};
  int start[3] = {0, 0, 0};
  ASSERT_EQ(ZRVSloadlp(prob, "new", 2, 1, "L", rhs, nullptr, obj, start, nullptr, nullptr,
                       nullptr, lb, ub),
            0)
      << last_error();
  EXPECT_EQ(attrib_terms(), 0);
  Tokens call = Tokens().args().col(1).user(index).end();
  EXPECT_EQ(Batch().term(0, -1, 1.0, call).add(slp), 0) << slp_error();
}

TEST_F(Formulas, DeletingRowsRenumbersAndDropsTerms) {
  Batch b;
  b.term(0, -1, 1.0, sin_of(0)).term(1, 2, 1.0, sin_of(1)).term(2, -1, 1.0, sin_of(2));
  ASSERT_EQ(b.add(slp), 0) << slp_error();
  int del = 1;
  ASSERT_EQ(ZRVSdelrows(prob, 1, &del), 0) << last_error();
  std::vector<std::pair<int, int>> expect{{0, -1}, {1, -1}};
  EXPECT_EQ(pairs(), expect);
  double factor = 0;
  Tokens t = formula(1, -1, &factor);
  EXPECT_EQ(t.value, sin_of(2).value) << "the old row 2 is row 1 now";
}

TEST_F(Formulas, DeletingColumnsRenumbersOrIsRefused) {
  Batch b;
  b.term(0, 2, 1.0, sin_of(1)).term(1, -1, 1.0, sin_of(2));
  ASSERT_EQ(b.add(slp), 0) << slp_error();
  for (int used : {1, 2}) {
    EXPECT_NE(ZRVSdelcols(prob, 1, &used), 0) << used;
    EXPECT_NE(last_error().find("delete that formula first"), std::string::npos) << last_error();
    EXPECT_EQ(int_attrib(ZRVS_ORIGINALCOLS), 3) << "nothing deleted";
  }
  int unused = 0;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &unused), 0) << last_error();
  std::vector<std::pair<int, int>> expect{{0, 1}, {1, -1}};
  EXPECT_EQ(pairs(), expect);
  double factor = 0;
  EXPECT_EQ(formula(0, 1, &factor).value, sin_of(0).value);
  EXPECT_EQ(formula(1, -1, &factor).value, sin_of(1).value);
  // Once the formulas are gone the columns can go.
  int rows[2] = {0, 1}, cols[2] = {1, -1};
  ASSERT_EQ(ZSLPdelcoefs(slp, 2, rows, cols), 0) << slp_error();
  int both[2] = {0, 1};
  EXPECT_EQ(ZRVSdelcols(prob, 2, both), 0) << last_error();
}

TEST_F(Formulas, CopiesKeepFormulas) {
  ASSERT_EQ(Batch().term(1, 0, 2.0, sin_of(2)).add(slp), 0);
  ZRVSprob copy = nullptr;
  ZSLPprob slpcopy = nullptr;
  ASSERT_EQ(ZRVScreateprob(&copy), 0);
  ASSERT_EQ(ZSLPcreateprob(&slpcopy, &copy), 0);
  ASSERT_EQ(ZRVScopyprob(copy, prob, ""), 0);
  ASSERT_EQ(ZSLPcopyprob(slpcopy, slp, ""), 0);
  std::vector<std::pair<int, int>> expect{{1, 0}};
  EXPECT_EQ(pairs(slpcopy), expect);
  double factor = 0;
  EXPECT_EQ(formula(1, 0, &factor, slpcopy).value, sin_of(2).value);
  EXPECT_EQ(factor, 2.0);
  // The copy is independent.
  int r = 1, c = 0;
  ASSERT_EQ(ZSLPdelcoefs(slpcopy, 1, &r, &c), 0);
  EXPECT_EQ(attrib_terms(slpcopy), 0);
  EXPECT_EQ(attrib_terms(), 1);
  EXPECT_EQ(ZRVSdestroyprob(copy), 0);
}

}  // namespace
