// Convex QPs on which HiGHS's active-set solver returned "optimal" at points
// that are not, or failed: every result reported optimal must be the optimum
// (found by scipy's SLSQP from several starts) and satisfy the first-order
// conditions with the duals the engine reports.
#include <cmath>
#include <limits>

#include "model_support.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

struct QpCase {
  int n;
  std::vector<double> q;  // dense, symmetric; objective c'x + x'Qx/2
  std::vector<double> c, lb, ub;
  std::vector<double> a;  // dense rows
  std::string types;
  std::vector<double> rhs;
  double optimum;
};

const std::vector<QpCase> &cases() {
  static const std::vector<QpCase> all = {
      // HiGHS: "optimal", 42.43895.
      {5, {3.28, -0.98, -2.96, 2.05, -0.45, -0.98, 6.95, 4.51, -1.56, -4.78, -2.96, 4.51, 12.31,
           -7.81, -4.27, 2.05, -1.56, -7.81, 8.22, 0.11, -0.45, -4.78, -4.27, 0.11, 11.08},
       {-1.82, 0.83, -4.02, -2.44, -1.25},
       {-1.2, -3.9, -2.3, -1.0, -kInf},
       {kInf, 0.9, 1.2, 1.0, 3.2},
       {-1.1, 0.3, -0.6, 1.3, -1.7, -0.6, -2.3, 0.3, 1.4, 1.3},
       "LL",
       {-0.29, 3.8},
       -7.4478366997},
      // HiGHS: "solve error".
      {5, {2.36, -0.38, 0.95, -1.65, -0.24, -0.38, 2.18, 0.05, 0.64, -1.28, 0.95, 0.05, 2.59,
           -0.57, -0.88, -1.65, 0.64, -0.57, 4.29, -0.85, -0.24, -1.28, -0.88, -0.85, 2.96},
       {3.37, -3.37, 4.14, -1.47, 0.9},
       {0.2, -kInf, 0.8, 1.8, -kInf},
       {kInf, kInf, 2.9, 4.1, -0.8},
       {-1.0, -0.3, -1.1, -1.9, 0.2, -1.8, 1.1, -1.5, -0.4, 0.0, 0.5, -0.9, 1.5, -0.6, -0.2},
       "GLL",
       {-5.76, -4.25, 4.31},
       13.1543362705},
      // HiGHS: no model status at all ("not set").
      {5, {10.36, 4.61, -0.44, 2.42, -5.23, 4.61, 3.53, -0.59, 1.21, -1.07, -0.44, -0.59, 2.73,
           1.23, -0.87, 2.42, 1.21, 1.23, 4.24, 0.52, -5.23, -1.07, -0.87, 0.52, 10.32},
       {-0.56, -0.39, -1.65, 5.52, 1.64},
       {-0.9, -0.7, -0.8, -1.0, -3.4},
       {0.9, 1.9, kInf, kInf, -0.7},
       {-0.4, -0.1, -1.4, -1.3, -1.0, 0.3, 0.1, 0.5, -0.8, 1.0, -0.7, 0.5, 1.5, -1.8, -0.3},
       "GLG",
       {-4.05, -0.43, 0.38},
       -1.1320400598},
      // HiGHS: "optimal", 72.18308256.
      {5, {5.68, 0.12, -1.31, 3.97, 2.39, 0.12, 3.82, 0.34, 0.62, 1.64, -1.31, 0.34, 5.08, -1.39,
           -3.07, 3.97, 0.62, -1.39, 5.6, 1.68, 2.39, 1.64, -3.07, 1.68, 5.19},
       {3.35, 1.06, 2.53, 3.55, -5.38},
       {-kInf, 0.8, 1.1, -1.9, -1.8},
       {kInf, 2.2, 3.6, 2.2, 0.8},
       {-0.8, -1.9, -0.2, 1.7, -1.5, 0.4, -0.3, -0.3, -0.7, 1.0, -0.7, -0.1, 0.0, -1.8, 0.6},
       "LLG",
       {-3.22, -0.17, -1.89},
       5.3255737333},
      // Bounds only; HiGHS: "solve error".
      {4, {1.51, 1.9, 3.0, 1.81, 1.9, 6.12, 6.82, 0.0, 3.0, 6.82, 10.28, 1.41, 1.81, 0.0, 1.41,
           4.75},
       {-5.83, 0.34, -1.8, -2.63},
       {0.2, -kInf, -kInf, -1.4},
       {kInf, 2.6, kInf, -0.2},
       {},
       "",
       {},
       -34.9554203598},
  };
  return all;
}

class QpVerified : public ModelTest, public ::testing::WithParamInterface<std::tuple<int, int>> {
 protected:
  // Loads case k with the objective multiplied by sense (-1: maximise -f).
  void load(const QpCase &k, double sense) {
    std::vector<double> lb(k.lb), ub(k.ub), c(k.c);
    for (double &v : lb) v = std::isinf(v) ? -1e20 : v;
    for (double &v : ub) v = std::isinf(v) ? 1e20 : v;
    for (double &v : c) v *= sense;
    add_cols(c, lb, ub);
    for (size_t i = 0; i < k.types.size(); ++i)
      add_row(std::vector<double>(k.a.begin() + i * k.n, k.a.begin() + (i + 1) * k.n),
              k.types[i], k.rhs[i]);
    std::vector<int> c1, c2;
    std::vector<double> v;
    for (int i = 0; i < k.n; ++i)
      for (int j = 0; j <= i; ++j)
        if (k.q[i * k.n + j] != 0.0)
          c1.push_back(i), c2.push_back(j), v.push_back(sense * k.q[i * k.n + j]);
    ASSERT_EQ(ZRVSchgmqobj64(prob, static_cast<int>(v.size()), c1.data(), c2.data(), v.data()),
              0)
        << last_error();
    if (sense < 0) {
      ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
    }
  }
};

TEST_P(QpVerified, OptimumAndFirstOrderConditions) {
  const QpCase &k = cases()[std::get<0>(GetParam())];
  const double sense = std::get<1>(GetParam()) ? -1.0 : 1.0;
  load(k, sense);
  int sol = -1;
  ASSERT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), sense * k.optimum, 1e-6 * (1 + std::fabs(k.optimum)));
  const int m = static_cast<int>(k.types.size());
  std::vector<double> x(k.n), slack(m), y(m), dj(k.n);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), slack.data(), y.data(), dj.data()), 0) << last_error();
  // sense * (Qx + c) = A'y + dj, with the signs of a minimisation.
  for (int j = 0; j < k.n; ++j) {
    double g = k.c[j];
    for (int i = 0; i < k.n; ++i) g += k.q[j * k.n + i] * x[i];
    for (int i = 0; i < m; ++i) g -= sense * k.a[i * k.n + j] * y[i];
    EXPECT_NEAR(g, sense * dj[j], 1e-6) << "column " << j;
    EXPECT_GE(x[j], k.lb[j] - 1e-7);
    EXPECT_LE(x[j], k.ub[j] + 1e-7);
    double d = sense * dj[j];  // the reduced cost of minimising f
    if (x[j] > k.lb[j] + 1e-6) {
      EXPECT_LE(d, 1e-6) << "column " << j;
    }
    if (x[j] < k.ub[j] - 1e-6) {
      EXPECT_GE(d, -1e-6) << "column " << j;
    }
  }
  for (int i = 0; i < m; ++i) {
    double d = sense * y[i];
    if (k.types[i] == 'L') {
      EXPECT_GE(slack[i], -1e-7);
      EXPECT_LE(d, 1e-6);
    } else {
      EXPECT_LE(slack[i], 1e-7);
      EXPECT_GE(d, -1e-6);
    }
    if (std::fabs(slack[i]) > 1e-6) {
      EXPECT_NEAR(y[i], 0.0, 1e-6) << "row " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(FailedOnce, QpVerified,
                         ::testing::Combine(::testing::Range(0, 5), ::testing::Values(0, 1)));

}  // namespace
