// Models with quadratic rows or a nonconvex quadratic objective, solved to a
// local optimum by the interior-point backend: optima against closed forms,
// duals and reduced costs against the first-order conditions and against
// perturbed re-solves, statuses, controls, messages and starting points.
#include <cmath>
#include <string>
#include <vector>

#include "model_support.h"

namespace {

// A problem with a nonlinear companion, so that the nonlinear attributes
// and ZSLPgetslpsol can be read.
class NonlinearSolve : public ModelTest {
 protected:
  void SetUp() override {
    ModelTest::SetUp();
    ASSERT_EQ(ZSLPinit(), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  }
  void TearDown() override {
    EXPECT_EQ(ZSLPfree(), 0);
    ModelTest::TearDown();
  }
  // Adds quadratic entries (i, j, v) to a row: x'Qx with v counted in both
  // triangles.
  void add_q(int row, const std::vector<int> &i, const std::vector<int> &j,
             const std::vector<double> &v) {
    ASSERT_EQ(ZRVSaddqmatrix64(prob, row, static_cast<int64_t>(v.size()), i.data(), j.data(),
                               v.data()),
              0)
        << last_error();
  }
  void set_qobj(const std::vector<int> &i, const std::vector<int> &j,
                const std::vector<double> &v) {
    ASSERT_EQ(ZRVSchgmqobj64(prob, static_cast<int>(v.size()), i.data(), j.data(), v.data()), 0)
        << last_error();
  }
  int nlp_int(int id) {
    int v = -1;
    EXPECT_EQ(ZSLPgetintattrib(slp, id, &v), 0);
    return v;
  }
  double nlp_dbl(int id) {
    double v = 0;
    EXPECT_EQ(ZSLPgetdblattrib(slp, id, &v), 0);
    return v;
  }
  struct Sol {
    std::vector<double> x, slack, duals, djs;
  };
  Sol nlp_sol() {
    Sol s{std::vector<double>(int_attrib(ZRVS_COLS)), std::vector<double>(int_attrib(ZRVS_ROWS)),
          std::vector<double>(int_attrib(ZRVS_ROWS)), std::vector<double>(int_attrib(ZRVS_COLS))};
    EXPECT_EQ(ZSLPgetslpsol(slp, s.x.data(), s.slack.data(), s.duals.data(), s.djs.data()), 0);
    return s;
  }
  // min -x - y s.t. x^2 + y^2 <= rhs: x = y = sqrt(rhs/2), objective
  // -sqrt(2 rhs), dual d(objective)/d(rhs) = -1/sqrt(2 rhs).
  void disc(double sense = 1.0, double rhs = 1.0) {
    add_cols({-sense, -sense}, {-1e20, -1e20}, {1e20, 1e20});
    int row = add_row({0, 0}, 'L', rhs);
    add_q(row, {0, 1}, {0, 1}, {1, 1});
    if (sense < 0) {
      ASSERT_EQ(ZRVSchgobjsense(prob, ZRVS_OBJ_MAXIMIZE), 0);
    }
  }
  ZSLPprob slp = nullptr;
};

TEST_F(NonlinearSolve, QuadraticRowOptimumDualAndSlack) {
  disc();
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_LOCALLY_OPTIMAL);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_OPTIMAL);
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), -std::sqrt(2.0), 1e-7);
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), -std::sqrt(2.0), 1e-7);
  Sol s = nlp_sol();
  EXPECT_NEAR(s.x[0], std::sqrt(0.5), 1e-7);
  EXPECT_NEAR(s.x[1], std::sqrt(0.5), 1e-7);
  EXPECT_NEAR(s.slack[0], 0.0, 1e-7) << "the slack includes the quadratic part";
  EXPECT_NEAR(s.duals[0], -1.0 / std::sqrt(2.0), 1e-6);
  EXPECT_NEAR(s.djs[0], 0.0, 1e-6);
  EXPECT_NEAR(s.djs[1], 0.0, 1e-6);
  // Without the companion's reader, the LP reader gives the same solution.
  std::vector<double> x(2), duals(1);
  ASSERT_EQ(ZRVSgetlpsol(prob, x.data(), nullptr, duals.data(), nullptr), 0) << last_error();
  EXPECT_EQ(x, s.x);
  EXPECT_EQ(duals, s.duals);
  // Any output may be left out.
  EXPECT_EQ(ZSLPgetslpsol(slp, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_GT(nlp_int(ZSLP_NLPITER), 0);
  EXPECT_EQ(nlp_int(ZSLP_NLPITER), int_attrib(ZRVS_BARITER));
  EXPECT_GT(nlp_dbl(ZSLP_NLPSOLVETIME), 0.0);
  EXPECT_GE(nlp_dbl(ZSLP_NLPSOLVETIME), nlp_dbl(ZSLP_NLPEVALTIME));
}

// The duals are the objective's rate of change in the rhs, for either
// sense: compared with a re-solve after moving the rhs.
TEST_F(NonlinearSolve, DualsMatchPerturbedResolvesInBothSenses) {
  for (double sense : {1.0, -1.0}) {
    ASSERT_EQ(ZRVSdestroyprob(prob), 0);
    ASSERT_EQ(ZRVScreateprob(&prob), 0);
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
    disc(sense);
    optimize();
    const double dual = nlp_sol().duals[0], before = nlp_dbl(ZSLP_OBJVAL);
    EXPECT_NEAR(before, -sense * std::sqrt(2.0), 1e-7);
    const double h = 1e-4, rhs = 1.0 + h;
    int row = 0;
    ASSERT_EQ(ZRVSchgrhs(prob, 1, &row, &rhs), 0);
    optimize();
    EXPECT_NEAR(dual, (nlp_dbl(ZSLP_OBJVAL) - before) / h, 1e-4) << "sense " << sense;
    EXPECT_NEAR(dual, -sense / std::sqrt(2.0), 1e-6);
  }
}

// min x^2 + y^2 s.t. xy >= 1, x <= 0.5: x at its bound, y = 2, objective
// 4.25. Closed forms: with y = 2r the objective is 0.25 + 4r^2, so the
// dual is 8; reduced cost of x = d/du (u^2 + 1/u^2) at u = 0.5 = -15.
TEST_F(NonlinearSolve, ReducedCostOfABoundColumn) {
  add_cols({0, 0}, {0, 0}, {0.5, 1e20});
  set_qobj({0, 1}, {0, 1}, {2, 2});
  int row = add_row({0, 0}, 'G', 1.0);
  add_q(row, {0}, {1}, {0.5});
  int sol = -1;
  optimize(&sol);
  ASSERT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
  Sol s = nlp_sol();
  EXPECT_NEAR(s.x[0], 0.5, 1e-7);
  EXPECT_NEAR(s.x[1], 2.0, 1e-6);
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), 4.25, 1e-6);
  EXPECT_NEAR(s.duals[0], 8.0, 1e-5);
  EXPECT_NEAR(s.djs[0], -15.0, 1e-5);
  EXPECT_NEAR(s.djs[1], 0.0, 1e-5);
  // First-order conditions: gradient - dual * row gradient - dj = 0.
  EXPECT_NEAR(2 * s.x[0] - s.duals[0] * s.x[1] - s.djs[0], 0.0, 1e-6);
  EXPECT_NEAR(2 * s.x[1] - s.duals[0] * s.x[0] - s.djs[1], 0.0, 1e-6);
}

// A convex QP stays with HiGHS; a nonconvex one goes to the interior-point
// solver, which finds the local optimum near its starting point: min xy
// over [-1, 2]^2 (with x + y <= 3, never binding) has local optima (2, -1)
// and (-1, 2), both with objective -2, and a saddle point at the origin.
TEST_F(NonlinearSolve, NonconvexQpLocalOptimaFromInitialValues) {
  add_cols({0, 0}, {-1, -1}, {2, 2});
  add_row({1, 1}, 'L', 3.0);
  set_qobj({0, 1}, {0, 1}, {2, 2});
  optimize();
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_UNSTARTED) << "convex: solved by HiGHS";
  EXPECT_NEAR(dbl_attrib(ZRVS_LPOBJVAL), 0.0, 1e-6);

  set_qobj({0, 1, 0}, {0, 1, 1}, {0, 0, 1});  // the objective becomes xy
  const struct {
    double x0, y0, x, y;
  } cases[] = {{1.5, -0.5, 2.0, -1.0}, {-0.5, 1.5, -1.0, 2.0}};
  for (const auto &c : cases) {
    int cols[2] = {0, 1};
    double start[2] = {c.x0, c.y0};
    ASSERT_EQ(ZRVSnlpsetinitval(prob, 2, cols, start), 0) << last_error();
    int sol = -1;
    EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
    EXPECT_EQ(sol, ZRVS_SOLSTATUS_OPTIMAL);
    EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_LOCALLY_OPTIMAL);
    Sol s = nlp_sol();
    EXPECT_NEAR(s.x[0], c.x, 1e-6) << "start " << c.x0 << ", " << c.y0;
    EXPECT_NEAR(s.x[1], c.y, 1e-6);
    EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), -2.0, 1e-6);
    EXPECT_NEAR(s.duals[0], 0.0, 1e-6);
    // The gradient (y, x) is carried by the bounds alone.
    EXPECT_NEAR(s.djs[0], c.y, 1e-6);
    EXPECT_NEAR(s.djs[1], c.x, 1e-6);
  }
  // Bad initial values are refused.
  int bad = 5;
  double v = 0;
  expect_failure(ZRVSnlpsetinitval(prob, 1, &bad, &v), "colind");
}

TEST_F(NonlinearSolve, InfeasibleAndUnboundedEndWithTheirStatus) {
  disc();
  add_row({1, 1}, 'G', 3.0);  // beyond the disc's reach of sqrt(2)
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_INFEASIBLE);
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_LOCALLY_INFEASIBLE);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_INFEAS);

  // min -x s.t. y - x^2 >= 0: x and y grow without limit.
  ASSERT_EQ(ZRVSdestroyprob(prob), 0);
  ASSERT_EQ(ZRVScreateprob(&prob), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  add_cols({-1, 0}, {-1e20, -1e20}, {1e20, 1e20});
  int row = add_row({0, 1}, 'G', 0.0);
  add_q(row, {0}, {0}, {-1});
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_COMPLETED);
  EXPECT_EQ(sol, ZRVS_SOLSTATUS_UNBOUNDED);
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_UNBOUNDED);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNBOUNDED);
}

// The iteration limit, the wall-clock limit and the log reach Ipopt through
// the controls; a stopped solve keeps its last point with an unfinished
// status.
TEST_F(NonlinearSolve, ControlsReachTheSolver) {
  disc();
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_MAXITER, 2), 0);
  int sol = -1;
  EXPECT_EQ(optimize(&sol), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_UNFINISHED);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNFINISHED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_ITERLIMIT);
  EXPECT_EQ(nlp_int(ZSLP_NLPITER), 2);
  EXPECT_EQ(ZSLPgetslpsol(slp, nullptr, nullptr, nullptr, nullptr), 0)
      << "the last point is kept";
  // The main problem's barrier limit applies as well.
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_MAXITER, 3000), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_BARITERLIMIT, 1), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(nlp_int(ZSLP_NLPITER), 1);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_BARITERLIMIT, 1000000), 0);

  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 0.0), 0);
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_TIMELIMIT);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 1e20), 0);
}

struct Log {
  std::vector<std::string> lines;
  ZRVSprob stop_on_iteration = nullptr;  // interrupts when set
  ZSLPprob stop_companion = nullptr;      // interrupts through the companion when set
};

void collect(ZRVSprob, void *data, const char *msg, int, int) {
  auto *log = static_cast<Log *>(data);
  if (!msg) return;
  log->lines.emplace_back(msg);
  if (std::string(msg).find("iter") != 0) return;
  if (log->stop_on_iteration) ZRVSinterrupt(log->stop_on_iteration, ZRVS_STOP_CTRLC);
  if (log->stop_companion) ZSLPinterrupt(log->stop_companion, ZRVS_STOP_USER);
}

bool any_line(const Log &log, const std::string &part) {
  for (const std::string &l : log.lines)
    if (l.find(part) != std::string::npos) return true;
  return false;
}

// The solver's log arrives line by line through the message callbacks from
// outputlog 2 on, without a banner; the print level sets its detail; a
// callback that interrupts stops the solve.
TEST_F(NonlinearSolve, LogThroughMessagesAndInterrupt) {
  disc();
  Log log;
  ASSERT_EQ(ZRVSaddcbmessage(prob, collect, &log, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  optimize();
  EXPECT_FALSE(any_line(log, "Number of Iterations")) << "outputlog 1: summary only";
  EXPECT_TRUE(any_line(log, "QCQP solve optimal"));

  log.lines.clear();
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 2), 0);
  optimize();
  EXPECT_TRUE(any_line(log, "Number of Iterations"));
  EXPECT_FALSE(any_line(log, "Ipopt is released as open source")) << "no banner";
  for (const std::string &l : log.lines) EXPECT_EQ(l.find('\n'), std::string::npos) << l;

  log.lines.clear();
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_PRINTLEVEL, 0), 0);
  optimize();
  EXPECT_FALSE(any_line(log, "Number of Iterations"));

  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_PRINTLEVEL, 5), 0);
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_WARMSTART, 0), 0);
  log.stop_on_iteration = prob;
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_CTRLC);
  EXPECT_EQ(nlp_int(ZSLP_NLPSTATUS), ZSLP_NLP_UNFINISHED);
  EXPECT_LE(nlp_int(ZSLP_NLPITER), 1);

  log.stop_on_iteration = nullptr;
  log.stop_companion = slp;
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_STOPPED);
  EXPECT_EQ(int_attrib(ZRVS_STOPSTATUS), ZRVS_STOP_USER);
  // A request left over from an earlier solve does not stop the next one.
  log.stop_companion = nullptr;
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
}

// A re-solve after a small change starts from the last solution and its
// multipliers and needs fewer iterations than a start from scratch, and
// reaches the same optimum.
TEST_F(NonlinearSolve, WarmStartNeedsFewerIterations) {
  // min sum c_j x_j s.t. sum x_j^2 <= 1: x = -c / |c|, objective -|c|.
  const int n = 30;
  std::vector<double> c(n), zero(n, 0.0), lb(n, -1e20), ub(n, 1e20);
  double norm = 0;
  for (int j = 0; j < n; ++j) c[j] = std::sin(j + 1.0), norm += c[j] * c[j];
  add_cols(c, lb, ub);
  int row = add_row(zero, 'L', 1.0);
  std::vector<int> idx(n);
  for (int j = 0; j < n; ++j) idx[j] = j;
  add_q(row, idx, idx, std::vector<double>(n, 1.0));
  optimize();
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), -std::sqrt(norm), 1e-7);

  const double rhs = 1.05;
  ASSERT_EQ(ZRVSchgrhs(prob, 1, &row, &rhs), 0);
  optimize();
  const int warm = nlp_int(ZSLP_NLPITER);
  const double warm_objective = nlp_dbl(ZSLP_OBJVAL);
  EXPECT_NEAR(warm_objective, -std::sqrt(norm * rhs), 1e-7);

  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_WARMSTART, 0), 0);
  optimize();
  const int cold = nlp_int(ZSLP_NLPITER);
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), warm_objective, 1e-7);
  EXPECT_LT(warm, cold);
}

// What the solver cannot take is refused before it runs, naming the part.
TEST_F(NonlinearSolve, RefusalsNameWhatIsWrong) {
  EXPECT_NE(ZSLPgetslpsol(slp, nullptr, nullptr, nullptr, nullptr), 0) << "nothing solved yet";
  disc();
  ASSERT_EQ(ZRVSaddnames(prob, 2, "x\0y", 0, 1), 0);
  ASSERT_EQ(ZRVSaddnames(prob, 1, "disc", 0, 0), 0);
  add_q(0, {0}, {1}, {1e300});
  int solve = -1;
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr),
                 "the quadratic coefficient of column 0 (x) and column 1 (y) in row 0 (disc)");
  add_q(0, {0}, {1}, {-1e300});

  // Several objectives: blended on one level they are one linear
  // objective; levels of their own are refused.
  int col = 0;
  double one = 1;
  ASSERT_EQ(ZRVSchgobjn(prob, 1, 1, &col, &one), 0) << last_error();
  EXPECT_EQ(optimize(), ZRVS_SOLVESTATUS_COMPLETED);
  // min -y on the disc: (0, 1), where objective 0 (-x - y) is -1.
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), -1.0, 1e-7) << "objective 0 at the blend's optimum";
  ASSERT_EQ(ZRVSsetobjintcontrol(prob, 1, ZRVS_OBJECTIVE_PRIORITY, 1), 0) << last_error();
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr), "several objectives");
  ASSERT_EQ(ZRVSdelobj(prob, 1), 0);

  // Integer columns; the continuous relaxation is still solved.
  set_types(0, "I");
  expect_failure(ZRVSoptimize(prob, "", &solve, nullptr),
                 "mixed-integer nonlinear models are not solvable yet");
  ASSERT_EQ(ZRVSlpoptimize(prob, ""), 0) << last_error();
  EXPECT_NEAR(nlp_dbl(ZSLP_OBJVAL), -std::sqrt(2.0), 1e-7);
}

}  // namespace
