// General constraints (max, min, and, or, abs) and piecewise-linear
// constraints: stored, read back, deleted, kept through column deletion
// and copies, and solved to the optimum that enumeration gives.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "model_support.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

class GeneralConstraintTest : public ModelTest {
 protected:
  // One general constraint on `res` over cols and vals.
  int add_gencon(int type, int res, std::vector<int> cols, std::vector<double> vals) {
    int64_t cs = 0, vs = 0;
    return ZRVSaddgencons64(prob, 1, static_cast<int64_t>(cols.size()),
                            static_cast<int64_t>(vals.size()), &type, &res, &cs, cols.data(), &vs,
                            vals.data());
  }
  int add_pwl(int x, int y, std::vector<double> px, std::vector<double> py) {
    int64_t s = 0;
    return ZRVSaddpwlcons64(prob, 1, static_cast<int64_t>(px.size()), &x, &y, &s, px.data(),
                            py.data());
  }
  double mip_objective() {
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL) << last_error();
    return dbl_attrib(ZRVS_MIPOBJVAL);
  }
};

// Minimum over integer points x0, x1 in [lb, ub] with x0 + x1 >= need of
// cost(x0, x1), which returns +inf for excluded points.
double enumerate2(int lb0, int ub0, int lb1, int ub1,
                  const std::function<double(int, int)> &cost) {
  double best = kInf;
  for (int a = lb0; a <= ub0; ++a)
    for (int b = lb1; b <= ub1; ++b) best = std::min(best, cost(a, b));
  return best;
}

TEST_F(GeneralConstraintTest, MaxMinAbsMatchEnumeration) {
  std::mt19937 rng(7);
  auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  for (int trial = 0; trial < 18; ++trial) {
    ASSERT_EQ(ZRVSloadlp(prob, "g", 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
              0);
    const int type = trial % 3 == 0 ? ZRVS_GENCONS_MAX
                     : trial % 3 == 1 ? ZRVS_GENCONS_MIN
                                      : ZRVS_GENCONS_ABS;
    const int l0 = pick(-4, 0), u0 = l0 + pick(1, 6), l1 = pick(-4, 0), u1 = l1 + pick(1, 6);
    const double c0 = pick(-3, 3), c1 = pick(-3, 3), cy = pick(-3, 3) + 0.5;
    const double constant = pick(-2, 2) + 0.25;
    const int need = pick(-3, 3);
    // x0, x1 integer; y free: y = f(...) and cost cy*y + c0*x0 + c1*x1.
    add_cols({c0, c1, cy}, {double(l0), double(l1), -1e20}, {double(u0), double(u1), 1e20});
    set_types(0, "II");
    add_row({1, 1}, 'G', need);
    if (type == ZRVS_GENCONS_ABS) {
      // y = |x0 - x1| through a helper column d = x0 - x1 (bounded, as the
      // reformulation needs).
      add_cols({0}, {double(l0 - u1)}, {double(u0 - l1)});
      add_row({1, -1, 0, -1}, 'E', 0);
      ASSERT_EQ(add_gencon(type, 2, {3}, {}), 0) << last_error();
    } else {
      ASSERT_EQ(add_gencon(type, 2, {0, 1}, {constant}), 0) << last_error();
    }
    ASSERT_EQ(int_attrib(ZRVS_GENCONS), 1);
    double expect = enumerate2(l0, u0, l1, u1, [&](int a, int b) {
      if (a + b < need) return kInf;
      double y = type == ZRVS_GENCONS_MAX   ? std::max({double(a), double(b), constant})
                 : type == ZRVS_GENCONS_MIN ? std::min({double(a), double(b), constant})
                                            : std::fabs(double(a - b));
      return cy * y + c0 * a + c1 * b;
    });
    if (expect == kInf) continue;
    EXPECT_NEAR(mip_objective(), expect, 1e-6) << "trial " << trial << " type " << type;
  }
}

TEST_F(GeneralConstraintTest, AndOrMatchEnumeration) {
  std::mt19937 rng(11);
  auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  for (int trial = 0; trial < 12; ++trial) {
    ASSERT_EQ(ZRVSloadlp(prob, "g", 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
              0);
    const bool conj = trial % 2 == 0;
    std::vector<double> cost = {double(pick(-3, 3)), double(pick(-3, 3)), double(pick(-3, 3)),
                                double(pick(-4, 4))};
    add_cols(cost, {0, 0, 0, 0}, {1, 1, 1, 1});
    set_types(0, "BBBB");
    const int need = pick(0, 2);
    add_row({1, 1, 1}, 'G', need);
    ASSERT_EQ(add_gencon(conj ? ZRVS_GENCONS_AND : ZRVS_GENCONS_OR, 3, {0, 1, 2}, {}), 0)
        << last_error();
    double expect = kInf;
    for (int mask = 0; mask < 8; ++mask) {
      int b[3] = {mask & 1, (mask >> 1) & 1, (mask >> 2) & 1};
      if (b[0] + b[1] + b[2] < need) continue;
      int y = conj ? (b[0] & b[1] & b[2]) : (b[0] | b[1] | b[2]);
      expect = std::min(expect, cost[0] * b[0] + cost[1] * b[1] + cost[2] * b[2] + cost[3] * y);
    }
    EXPECT_NEAR(mip_objective(), expect, 1e-6) << "trial " << trial;
  }
}

TEST_F(GeneralConstraintTest, PiecewiseLinearMatchesItsBestPoint) {
  // A non-convex function on [0, 10]: the optimum of any direction lies at
  // a breakpoint.
  std::vector<double> px = {0, 2, 5, 7, 10}, py = {3, -1, 4, 0, 6};
  for (double sense : {1.0, -1.0}) {
    for (double tilt : {-0.8, 0.0, 0.9}) {
      ASSERT_EQ(ZRVSloadlp(prob, "p", 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           nullptr, nullptr, nullptr, nullptr),
                0);
      add_cols({tilt, 1.0}, {0, -1e20}, {10, 1e20});
      ASSERT_EQ(ZRVSchgobjsense(prob, sense > 0 ? ZRVS_OBJ_MINIMIZE : ZRVS_OBJ_MAXIMIZE), 0);
      ASSERT_EQ(add_pwl(0, 1, px, py), 0) << last_error();
      double expect = sense > 0 ? kInf : -kInf;
      for (size_t k = 0; k < px.size(); ++k) {
        double v = tilt * px[k] + py[k];
        expect = sense > 0 ? std::min(expect, v) : std::max(expect, v);
      }
      EXPECT_NEAR(mip_objective(), expect, 1e-6) << sense << " " << tilt;
      std::vector<double> x = mip_x();
      // The point found lies on the function.
      auto it = std::upper_bound(px.begin(), px.end(), x[0]);
      size_t s = std::min<size_t>(std::max<ptrdiff_t>(it - px.begin(), 1), px.size() - 1);
      double f = py[s - 1] + (py[s] - py[s - 1]) * (x[0] - px[s - 1]) / (px[s] - px[s - 1]);
      EXPECT_NEAR(x[1], f, 1e-6);
    }
  }
}

TEST_F(GeneralConstraintTest, PiecewiseLinearExtendsItsEndSegmentsToTheBounds) {
  add_cols({0.0, 1.0}, {-2, -1e20}, {12, 1e20});
  ASSERT_EQ(add_pwl(0, 1, {0, 10}, {0, 20}), 0);
  EXPECT_NEAR(mip_objective(), -4.0, 1e-6);  // x = -2 on the slope 2
  ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
  EXPECT_NEAR(mip_objective(), 24.0, 1e-6);  // x = 12
  // An infinite bound beyond the points cannot be extended to.
  double inf = 1e20;
  int col = 0;
  char u = 'U';
  ASSERT_EQ(ZRVSchgbounds(prob, 1, &col, &u, &inf), 0);
  expect_failure(ZRVSoptimize(prob, "", nullptr, nullptr), "finite upper bound");
}

TEST_F(GeneralConstraintTest, JumpTakesOneSideOnly) {
  // f jumps from 5 to 1 at x = 5; a = |f(x) - 3| at x = 5 is 2, never 0.
  add_cols({0, 0, 0, 1}, {5, -1e20, -10, -1e20}, {5, 1e20, 10, 1e20});
  ASSERT_EQ(add_pwl(0, 1, {0, 5, 5, 10}, {0, 5, 1, 6}), 0) << last_error();
  add_row({0, 1, -1}, 'E', 3);  // d = y - 3
  ASSERT_EQ(add_gencon(ZRVS_GENCONS_ABS, 3, {2}, {}), 0) << last_error();
  EXPECT_NEAR(mip_objective(), 2.0, 1e-6);
}

TEST_F(GeneralConstraintTest, InfiniteOperandBoundIsAClearError) {
  add_cols({1, 0, 0}, {-1e20, 0, 0}, {1e20, 5, 1e20});
  ASSERT_EQ(add_gencon(ZRVS_GENCONS_MAX, 0, {1, 2}, {}), 0);
  expect_failure(ZRVSoptimize(prob, "", nullptr, nullptr), "column 2 needs a finite upper bound");
  // And and or need binaries.
  ASSERT_EQ(ZRVSdelgencons(prob, 1, std::vector<int>{0}.data()), 0);
  ASSERT_EQ(add_gencon(ZRVS_GENCONS_OR, 1, {2}, {}), 0);
  expect_failure(ZRVSoptimize(prob, "", nullptr, nullptr), "needs binary columns");
}

TEST_F(GeneralConstraintTest, ReadBackDeleteAndFollowColumnDeletion) {
  add_cols({0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, {1, 1, 1, 1, 1});
  int types[3] = {ZRVS_GENCONS_MAX, ZRVS_GENCONS_ABS, ZRVS_GENCONS_OR};
  int res[3] = {0, 1, 2};
  int64_t cstart[3] = {0, 2, 3}, vstart[3] = {0, 2, 2};
  int cols[5] = {3, 4, 3, 3, 4};
  double vals[2] = {0.5, -1.5};
  ASSERT_EQ(ZRVSaddgencons64(prob, 3, 5, 2, types, res, cstart, cols, vstart, vals), 0)
      << last_error();
  int gt[3], gr[3], gc[5];
  int64_t gcs[4], gvs[4], nc = 0, nv = 0;
  double gv[2];
  ASSERT_EQ(ZRVSgetgencons64(prob, gt, gr, gcs, gc, 5, &nc, gvs, gv, 2, &nv, 0, 2), 0);
  EXPECT_EQ(nc, 5);
  EXPECT_EQ(nv, 2);
  EXPECT_EQ(std::vector<int>(gt, gt + 3), std::vector<int>(types, types + 3));
  EXPECT_EQ(std::vector<int>(gc, gc + 5), std::vector<int>(cols, cols + 5));
  EXPECT_EQ(std::vector<int64_t>(gcs, gcs + 4), (std::vector<int64_t>{0, 2, 3, 5}));
  EXPECT_EQ(std::vector<int64_t>(gvs, gvs + 4), (std::vector<int64_t>{0, 2, 2, 2}));
  EXPECT_EQ(gv[1], -1.5);
  // A slice, with less room than entries.
  ASSERT_EQ(ZRVSgetgencons64(prob, gt, gr, gcs, gc, 1, &nc, nullptr, nullptr, 0, &nv, 1, 2), 0);
  EXPECT_EQ(nc, 3);
  EXPECT_EQ(gr[0], 1);
  EXPECT_EQ(gc[0], 3);
  // Deleting column 3: it leaves max and or; abs loses its only operand and goes.
  int del = 3;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &del), 0);
  ASSERT_EQ(int_attrib(ZRVS_GENCONS), 2);
  ASSERT_EQ(ZRVSgetgencons64(prob, gt, gr, gcs, gc, 5, &nc, gvs, gv, 2, &nv, 0, 1), 0);
  EXPECT_EQ(gt[0], ZRVS_GENCONS_MAX);
  EXPECT_EQ(gt[1], ZRVS_GENCONS_OR);
  EXPECT_EQ(nc, 2);
  EXPECT_EQ(gc[0], 3);  // column 4 is now 3
  EXPECT_EQ(gc[1], 3);
  // Deleting the resultant of max removes it.
  del = 0;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &del), 0);
  ASSERT_EQ(int_attrib(ZRVS_GENCONS), 1);
  ASSERT_EQ(ZRVSgetgencons64(prob, gt, gr, nullptr, nullptr, 0, &nc, nullptr, nullptr, 0, &nv, 0,
                             0),
            0);
  EXPECT_EQ(gt[0], ZRVS_GENCONS_OR);
  EXPECT_EQ(gr[0], 1);
  // Copies carry them; deletion by index.
  ZRVSprob copy = nullptr;
  ASSERT_EQ(ZRVScreateprob(&copy), 0);
  ASSERT_EQ(ZRVScopyprob(copy, prob, ""), 0);
  int n = -1;
  ASSERT_EQ(ZRVSgetintattrib(copy, ZRVS_GENCONS, &n), 0);
  EXPECT_EQ(n, 1);
  ASSERT_EQ(ZRVSdestroyprob(copy), 0);
  int zero = 0;
  ASSERT_EQ(ZRVSdelgencons(prob, 1, &zero), 0);
  EXPECT_EQ(int_attrib(ZRVS_GENCONS), 0);
  expect_failure(ZRVSdelgencons(prob, 1, &zero), "general constraint index");
}

TEST_F(GeneralConstraintTest, PiecewiseReadBackAndDeletion) {
  add_cols({0, 0, 0}, {0, 0, 0}, {10, 10, 10});
  int x[2] = {0, 1}, y[2] = {1, 2};
  int64_t start[2] = {0, 2};
  double px[5] = {0, 10, 0, 4, 10}, py[5] = {1, 2, 3, 4, 5};
  ASSERT_EQ(ZRVSaddpwlcons64(prob, 2, 5, x, y, start, px, py), 0) << last_error();
  EXPECT_EQ(int_attrib(ZRVS_PWLCONS), 2);
  EXPECT_EQ(int_attrib(ZRVS_GENCONS), 2);  // counts both kinds
  int gx[2], gy[2];
  int64_t gs[3], n = 0;
  double gpx[5], gpy[5];
  ASSERT_EQ(ZRVSgetpwlcons64(prob, gx, gy, gs, gpx, gpy, 5, &n, 0, 1), 0);
  EXPECT_EQ(n, 5);
  EXPECT_EQ(std::vector<double>(gpx, gpx + 5), std::vector<double>(px, px + 5));
  EXPECT_EQ(std::vector<double>(gpy, gpy + 5), std::vector<double>(py, py + 5));
  EXPECT_EQ(std::vector<int64_t>(gs, gs + 3), (std::vector<int64_t>{0, 2, 5}));
  // Deleting column 2 (the second's resultant) removes that constraint.
  int del = 2;
  ASSERT_EQ(ZRVSdelcols(prob, 1, &del), 0);
  EXPECT_EQ(int_attrib(ZRVS_PWLCONS), 1);
  int zero = 0;
  ASSERT_EQ(ZRVSdelpwlcons(prob, 1, &zero), 0);
  EXPECT_EQ(int_attrib(ZRVS_PWLCONS), 0);
}

TEST_F(GeneralConstraintTest, BadBatchesChangeNothing) {
  add_cols({0, 0, 0}, {0, 0, 0}, {1, 1, 1});
  expect_failure(add_gencon(7, 0, {1}, {}), "not a general constraint type");
  expect_failure(add_gencon(ZRVS_GENCONS_ABS, 0, {1, 2}, {}), "exactly one column");
  expect_failure(add_gencon(ZRVS_GENCONS_AND, 0, {1}, {1.0}), "no values");
  expect_failure(add_gencon(ZRVS_GENCONS_MAX, 0, {0, 1}, {}), "resultant");
  expect_failure(add_gencon(ZRVS_GENCONS_MAX, 5, {1}, {}), "resultant[0] = 5");
  expect_failure(add_gencon(ZRVS_GENCONS_MIN, 0, {}, {}), "no operands");
  // A good constraint followed by a bad one in one batch adds neither.
  int types[2] = {ZRVS_GENCONS_MAX, ZRVS_GENCONS_ABS}, res[2] = {0, 1};
  int64_t cs[2] = {0, 1}, vs[2] = {0, 0};
  int cols[3] = {1, 0, 2};
  ASSERT_NE(ZRVSaddgencons64(prob, 2, 3, 0, types, res, cs, cols, vs, nullptr), 0);
  EXPECT_EQ(int_attrib(ZRVS_GENCONS), 0);
  expect_failure(add_pwl(0, 1, {0, 2, 1}, {0, 0, 0}), "decrease");
  expect_failure(add_pwl(0, 1, {1}, {0}), "at least two points");
  expect_failure(add_pwl(0, 1, {1, 1, 1}, {0, 1, 2}), "three points");
  expect_failure(add_pwl(0, 0, {0, 1}, {0, 1}), "both sides");
  EXPECT_EQ(int_attrib(ZRVS_PWLCONS), 0);
}

TEST_F(GeneralConstraintTest, FilesRefuseThem) {
  add_cols({0, 0}, {0, 0}, {1, 1});
  ASSERT_EQ(add_gencon(ZRVS_GENCONS_MAX, 0, {1}, {}), 0);
  std::string path = ::testing::TempDir() + "gencons.lp";
  expect_failure(ZRVSwriteprob(prob, path.c_str(), ""), "general and 0 piecewise-linear");
}

}  // namespace
