// Several objectives: lexicographic by priority with tolerances, blended by
// weight within a priority, per-objective controls and results.
#include "model_support.h"

namespace {

// x, y in [0, 10] with x + y >= 4. Objective 0: x + 2y; objective 1: 3x + y.
class TwoObjectives : public ModelTest {
 protected:
  void build() {
    add_cols({1, 2}, {0, 0}, {10, 10});
    add_row({1, 1}, 'G', 4);
    int cols[2] = {0, 1};
    double coef[2] = {3, 1};
    ASSERT_EQ(ZRVSchgobjn(prob, 1, 2, cols, coef), 0) << last_error();
    EXPECT_EQ(int_attrib(ZRVS_OBJECTIVES), 2);
  }
  void priority(int obj, int value) {
    ASSERT_EQ(ZRVSsetobjintcontrol(prob, obj, ZRVS_OBJECTIVE_PRIORITY, value), 0);
  }
  double objval(int obj) {
    double v = 0;
    EXPECT_EQ(ZRVSgetobjdblattrib(prob, obj, ZRVS_LPOBJVAL, &v), 0) << last_error();
    return v;
  }
};

TEST_F(TwoObjectives, LexicographicByPriority) {
  build();
  priority(0, 2);
  priority(1, 1);
  optimize();
  // Within the default tolerances (abstol, reltol 1e-6) of the first level.
  // Objective 0 first: x = 4, y = 0 (value 4); objective 1 then has 12.
  EXPECT_NEAR(objval(0), 4.0, 1e-5);
  EXPECT_NEAR(objval(1), 12.0, 1e-5);
  EXPECT_EQ(int_attrib(ZRVS_SOLVEDOBJS), 2);
  priority(1, 3);
  optimize();
  // Objective 1 first: y = 4 (value 4), objective 0 then 8.
  EXPECT_NEAR(objval(1), 4.0, 1e-5);
  EXPECT_NEAR(objval(0), 8.0, 1e-5);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 8.0, 1e-5);
  int64_t status = -1;
  ASSERT_EQ(ZRVSgetobjintattrib64(prob, 0, ZRVS_LPSTATUS, &status), 0);
  EXPECT_EQ(status, ZRVS_LP_OPTIMAL);
}

TEST_F(TwoObjectives, ToleranceLetsTheFirstLevelDegrade) {
  build();
  priority(1, 3);
  // Objective 1 may be worse by 2: y + 3x <= 6 leaves room to lower
  // objective 0 = x + 2y on x + y >= 4: x = 1, y = 3 gives 7.
  ASSERT_EQ(ZRVSsetobjdblcontrol(prob, 1, ZRVS_OBJECTIVE_ABSTOL, 2.0), 0);
  optimize();
  EXPECT_NEAR(objval(1), 6.0, 1e-6);
  EXPECT_NEAR(objval(0), 7.0, 1e-6);
}

TEST_F(TwoObjectives, BlendedByWeightWithinAPriority) {
  build();
  // Same priority: minimise 1*(x + 2y) + 1*(3x + y) + constant 5 = 4x + 3y + 5.
  ASSERT_EQ(ZRVSsetobjdblcontrol(prob, 1, ZRVS_OBJECTIVE_RHS, 5.0), 0);
  optimize();
  EXPECT_NEAR(objval(0), 8.0, 1e-6);  // y = 4
  EXPECT_NEAR(objval(1), 9.0, 1e-6);  // 4 + 5
  // Weight 3 on objective 0: 3x + 6y + 3x + y = 6x + 7y: x = 4.
  ASSERT_EQ(ZRVSsetobjdblcontrol(prob, 0, ZRVS_OBJECTIVE_WEIGHT, 3.0), 0);
  optimize();
  EXPECT_NEAR(objval(0), 4.0, 1e-6);
  double w = 0;
  ASSERT_EQ(ZRVSgetobjdblcontrol(prob, 0, ZRVS_OBJECTIVE_WEIGHT, &w), 0);
  EXPECT_EQ(w, 3.0);
}

TEST_F(TwoObjectives, ControlsAndIndicesAreChecked) {
  build();
  expect_failure(ZRVSsetobjintcontrol(prob, 2, ZRVS_OBJECTIVE_PRIORITY, 1), "objidx 2");
  expect_failure(ZRVSsetobjdblcontrol(prob, 0, ZRVS_OBJECTIVE_PRIORITY, 1.0), "20001");
  expect_failure(ZRVSsetobjdblcontrol(prob, 0, ZRVS_OBJECTIVE_RELTOL, -1.0), "negative");
  double obj[2];
  ASSERT_EQ(ZRVSgetobjn(prob, 1, obj, 0, 1), 0);
  EXPECT_EQ(obj[0], 3.0);
  // A quadratic objective and several objectives do not mix.
  int c = 0;
  double q = 2;
  expect_failure(ZRVSchgmqobj64(prob, 1, &c, &c, &q), "several objectives");
  ASSERT_EQ(ZRVSdelobj(prob, 1), 0);
  EXPECT_EQ(int_attrib(ZRVS_OBJECTIVES), 1);
  ASSERT_EQ(ZRVSchgmqobj64(prob, 1, &c, &c, &q), 0);
  int cols[1] = {0};
  expect_failure(ZRVSchgobjn(prob, 1, 1, cols, &q), "quadratic");
}

// Before a solve no objective has results, but which attributes are kept
// per objective is known: an unknown identifier is named as such whatever
// the index, a known one is refused for want of a solve.
TEST_F(TwoObjectives, PerObjectiveAttributesAreKnownBeforeASolve) {
  build();
  int64_t i = 0;
  double d = 0;
  EXPECT_EQ(ZRVSgetobjintattrib64(prob, 0, ZRVS_COLS, &i), ZRVS_ERR_UNKNOWNID);
  EXPECT_EQ(ZRVSgetobjintattrib64(prob, 7, ZRVS_COLS, &i), ZRVS_ERR_UNKNOWNID);
  EXPECT_EQ(ZRVSgetobjdblattrib(prob, 0, ZRVS_OBJSENSE, &d), ZRVS_ERR_UNKNOWNID);
  EXPECT_EQ(ZRVSgetobjintattrib64(prob, 0, ZRVS_LPSTATUS, &i), ZRVS_ERR_ARGUMENT);
  expect_failure(ZRVSgetobjdblattrib(prob, 1, ZRVS_LPOBJVAL, &d),
                 "not an objective of the last solve");
  optimize();
  EXPECT_EQ(ZRVSgetobjintattrib64(prob, 1, ZRVS_LPSTATUS, &i), 0);
  EXPECT_EQ(i, ZRVS_LP_OPTIMAL);
  EXPECT_EQ(ZRVSgetobjintattrib64(prob, 1, ZRVS_COLS, &i), ZRVS_ERR_UNKNOWNID);
}

}  // namespace
