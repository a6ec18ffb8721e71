// Readers of the last solution and basis, infeasibilities, rays and values
// computed from a point, checked against hand-worked LPs.
#include <cmath>
#include <vector>

#include "model_support.h"

namespace {

constexpr double kInf = ZRVS_PLUSINFINITY;

class SolutionReadersTest : public ModelTest {
 protected:
  // min -x - y  s.t.  x + 2y <= 4,  3x + y <= 6,  x, y >= 0: optimum (1.6, 1.2), -2.8.
  void small_lp() {
    add_cols({-1, -1}, {0, 0}, {kInf, kInf});
    add_row({1, 2}, 'L', 4);
    add_row({3, 1}, 'L', 6);
  }
  // The Farkas gap of y: min over bounds of (y'A)x - max over sides of y'r.
  double farkas_gap(const std::vector<std::vector<double>> &a, const std::vector<double> &lo,
                    const std::vector<double> &up, const std::vector<double> &rlo,
                    const std::vector<double> &rup, const std::vector<double> &y) {
    double gap = 0;
    for (size_t j = 0; j < lo.size(); ++j) {
      double w = 0;
      for (size_t i = 0; i < y.size(); ++i) w += y[i] * a[i][j];
      if (std::fabs(w) < 1e-12) continue;
      double b = w > 0 ? lo[j] : up[j];
      if (std::fabs(b) >= kInf) return -HUGE_VAL;
      gap += w * b;
    }
    for (size_t i = 0; i < y.size(); ++i) {
      if (std::fabs(y[i]) < 1e-12) continue;
      double s = y[i] > 0 ? rup[i] : rlo[i];
      if (std::fabs(s) >= kInf) return -HUGE_VAL;
      gap -= y[i] * s;
    }
    return gap;
  }
};

TEST_F(SolutionReadersTest, SingleEntriesAndComputedValuesAgreeWithTheSolution) {
  small_lp();
  optimize();
  std::vector<double> x(2), slack(2), duals(2), djs(2);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), slack.data(), duals.data(), djs.data()), 0);
  EXPECT_NEAR(x[0], 1.6, 1e-9);
  EXPECT_NEAR(x[1], 1.2, 1e-9);
  for (int k = 0; k < 2; ++k) {
    double v, s, d, r;
    ASSERT_EQ(ZRVSgetlpsolval(prob, k, k, &v, &s, &d, &r), 0) << last_error();
    EXPECT_EQ(v, x[k]);
    EXPECT_EQ(s, slack[k]);
    EXPECT_EQ(d, duals[k]);
    EXPECT_EQ(r, djs[k]);
  }
  double objval = 0;
  ASSERT_EQ(ZRVScalcobjective(prob, x.data(), &objval), 0);
  EXPECT_NEAR(objval, -2.8, 1e-9);
  ASSERT_EQ(ZRVScalcobjn(prob, 0, x.data(), &objval), 0);
  EXPECT_NEAR(objval, -2.8, 1e-9);
  expect_failure(ZRVScalcobjn(prob, 3, x.data(), &objval), "3");
  std::vector<double> slacks(2), rc(2);
  ASSERT_EQ(ZRVScalcslacks(prob, x.data(), slacks.data()), 0);
  ASSERT_EQ(ZRVScalcreducedcosts(prob, duals.data(), x.data(), rc.data()), 0);
  for (int k = 0; k < 2; ++k) {
    EXPECT_NEAR(slacks[k], slack[k], 1e-9);
    EXPECT_NEAR(rc[k], djs[k], 1e-9);
  }
  // The duals solve y'A = c for the two tight rows: y = (-0.4, -0.2).
  EXPECT_NEAR(duals[0], -0.4, 1e-9);
  EXPECT_NEAR(duals[1], -0.2, 1e-9);
  int rs = -1, cs = -1;
  std::vector<int> rstat(2), cstat(2);
  ASSERT_EQ(ZRVSgetbasis(prob, rstat.data(), cstat.data()), 0);
  ASSERT_EQ(ZRVSgetbasisval(prob, 1, 0, &rs, &cs), 0) << last_error();
  EXPECT_EQ(rs, rstat[1]);
  EXPECT_EQ(cs, cstat[0]);
  expect_failure(ZRVSgetlpsolval(prob, 2, -1, &objval, nullptr, nullptr, nullptr), "out of range");
}

TEST_F(SolutionReadersTest, SolutionPropertiesMeasureViolations) {
  small_lp();
  optimize();
  std::vector<double> x(2), duals(2);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, duals.data(), nullptr), 0);
  double v = -1;
  ASSERT_EQ(ZRVScalcsolinfo(prob, x.data(), duals.data(), ZRVS_SOLINFO_ABSPRIMALINFEAS, &v), 0);
  EXPECT_LT(v, 1e-9);
  ASSERT_EQ(ZRVScalcsolinfo(prob, x.data(), duals.data(), ZRVS_SOLINFO_ABSDUALINFEAS, &v), 0);
  EXPECT_LT(v, 1e-9);
  // (3, -0.5): row 2 exceeds 6 by 2.5, y is 0.5 below its bound.
  std::vector<double> bad = {3, -0.5};
  ASSERT_EQ(ZRVScalcsolinfo(prob, bad.data(), nullptr, ZRVS_SOLINFO_ABSPRIMALINFEAS, &v), 0);
  EXPECT_NEAR(v, 2.5, 1e-12);
  ASSERT_EQ(ZRVScalcsolinfo(prob, bad.data(), nullptr, ZRVS_SOLINFO_RELPRIMALINFEAS, &v), 0);
  EXPECT_NEAR(v, 2.5 / 7.0, 1e-12);  // 1 + max(|x|, |rhs|) = 7
  ASSERT_EQ(ZRVScalcsolinfo(prob, bad.data(), nullptr, ZRVS_SOLINFO_MAXMIPFRACTIONAL, &v), 0);
  EXPECT_EQ(v, 0.0);  // no integer columns
  // Duals of the wrong sign: y = (1, 0) prices row 1 as if raising it cost.
  std::vector<double> wrong = {1, 0};
  ASSERT_EQ(ZRVScalcsolinfo(prob, x.data(), wrong.data(), ZRVS_SOLINFO_ABSDUALINFEAS, &v), 0);
  EXPECT_GT(v, 0.5);
  expect_failure(ZRVScalcsolinfo(prob, x.data(), nullptr, 9, &v), "property 9");
  set_types(0, "I");
  std::vector<double> frac = {0.25, 0};
  ASSERT_EQ(ZRVScalcsolinfo(prob, frac.data(), nullptr, ZRVS_SOLINFO_MAXMIPFRACTIONAL, &v), 0);
  EXPECT_NEAR(v, 0.25, 1e-12);
}

TEST_F(SolutionReadersTest, InfeasibilitiesOfOptimalAndIntegerSolutions) {
  small_lp();
  optimize();
  int npv = -1, nps = -1, nds = -1, ndv = -1;
  ASSERT_EQ(ZRVSgetinfeas(prob, &npv, &nps, &nds, &ndv, nullptr, nullptr, nullptr, nullptr), 0)
      << last_error();
  EXPECT_EQ(npv + nps + nds + ndv, 0);
  ASSERT_EQ(ZRVSgetscaledinfeas(prob, &npv, &nps, &nds, &ndv, nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(npv + nps + nds + ndv, 0);
  set_types(0, "II");
  expect_failure(ZRVSgetinfeas(prob, &npv, &nps, &nds, &ndv, nullptr, nullptr, nullptr, nullptr),
                 "no solution");
  optimize();
  double x = -1, slack = -1;
  ASSERT_EQ(ZRVSgetmipsolval(prob, 0, 1, &x, &slack), 0) << last_error();
  EXPECT_NEAR(x, std::round(x), 1e-9);
  std::vector<double> mx = mip_x();
  EXPECT_NEAR(slack, 6 - 3 * mx[0] - mx[1], 1e-9);
  ASSERT_EQ(ZRVSgetinfeas(prob, &npv, &nps, &nds, &ndv, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(npv + nps + nds + ndv, 0);
}

TEST_F(SolutionReadersTest, PrimalRayOfAnUnboundedLpIsACertificate) {
  // min -x - y  s.t.  x - y <= 1,  x, y >= 0.
  add_cols({-1, -1}, {0, 0}, {kInf, kInf});
  add_row({1, -1}, 'L', 1);
  optimize(nullptr, "d");
  ASSERT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNBOUNDED);
  std::vector<double> d(2);
  int has = 0;
  ASSERT_EQ(ZRVSgetprimalray(prob, d.data(), &has), 0) << last_error();
  ASSERT_EQ(has, 1);
  EXPECT_GE(d[0], -1e-9);
  EXPECT_GE(d[1], -1e-9);
  EXPECT_LE(d[0] - d[1], 1e-9);
  EXPECT_LT(-d[0] - d[1], -1e-9);
  int seq = -2;
  ASSERT_EQ(ZRVSgetunbvec(prob, &seq), 0);
  EXPECT_GE(seq, 0);
  ASSERT_EQ(ZRVSgetdualray(prob, nullptr, &has), 0);
  EXPECT_EQ(has, 0);
}

TEST_F(SolutionReadersTest, DualRayOfAnInfeasibleLpIsAFarkasCertificate) {
  // x + y >= 5 with x, y in [0, 1]; x - y <= 3 is not part of the conflict.
  add_cols({1, 1}, {0, 0}, {1, 1});
  add_row({1, 1}, 'G', 5);
  add_row({1, -1}, 'L', 3);
  optimize();
  ASSERT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_INFEAS);
  std::vector<double> y(2);
  int has = 0;
  ASSERT_EQ(ZRVSgetdualray(prob, y.data(), &has), 0) << last_error();
  ASSERT_EQ(has, 1);
  double gap = farkas_gap({{1, 1}, {1, -1}}, {0, 0}, {1, 1}, {5, -kInf}, {kInf, 3}, y);
  EXPECT_GT(gap, 1e-9);
  ASSERT_EQ(ZRVSgetprimalray(prob, nullptr, &has), 0);
  EXPECT_EQ(has, 0);
  int seq = 0;
  ASSERT_EQ(ZRVSgetunbvec(prob, &seq), 0);
  EXPECT_EQ(seq, -1);
}

TEST_F(SolutionReadersTest, ReadersRefuseWhatTheLastSolveDidNotLeave) {
  small_lp();
  int has = 0;
  double v = 0;
  expect_failure(ZRVSgetprimalray(prob, nullptr, &has), "solved as an LP first");
  expect_failure(ZRVSgetlpsolval(prob, 0, 0, &v, nullptr, nullptr, nullptr), "no LP solution");
  optimize();
  expect_failure(ZRVSgetlastbarsol(prob, nullptr, nullptr, nullptr, nullptr), "barrier");
  optimize(nullptr, "b");
  std::vector<double> x(2), bx(2);
  ASSERT_EQ(ZRVSgetlastbarsol(prob, bx.data(), nullptr, nullptr, nullptr), 0) << last_error();
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(bx, x);
  // A change makes every reader refuse rather than show the older solution.
  int col = 0;
  char type = 'U';
  double bound = 1;
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &type, &bound), 0);
  expect_failure(ZRVSgetlpsolval(prob, 0, 0, &v, nullptr, nullptr, nullptr), "no LP solution");
  expect_failure(ZRVSgetdualray(prob, nullptr, &has), "solved as an LP first");
  set_types(0, "I");
  optimize();
  expect_failure(ZRVSgetprimalray(prob, nullptr, &has), "MIP");
}

}  // namespace
