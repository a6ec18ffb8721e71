// The nonlinear companion: start-up, problems attached to main problems,
// its catalogue and controls.
#include <set>
#include <string>

#include "test_support.h"

namespace {

class Nonlinear : public ProblemTest {
 protected:
  void SetUp() override {
    ProblemTest::SetUp();
    ASSERT_EQ(ZSLPinit(), 0);
    ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  }
  void TearDown() override {
    ProblemTest::TearDown();  // destroys the main problem and with it slp
    EXPECT_EQ(ZSLPfree(), 0);
  }
  std::string slp_error(int *code = nullptr) {
    char text[ZRVS_MAXMESSAGELENGTH];
    EXPECT_EQ(ZSLPgetlasterror(slp, code, text), 0);
    return text;
  }
  ZSLPprob slp = nullptr;
};

TEST(NonlinearStart, NeedsTheMainEnvironment) {
  EXPECT_NE(ZSLPinit(), 0);
  EXPECT_NE(ZSLPfree(), 0);
  ASSERT_EQ(ZRVSinit(nullptr), 0);
  ZRVSprob prob = nullptr;
  ZSLPprob slp = nullptr;
  ASSERT_EQ(ZRVScreateprob(&prob), 0);
  EXPECT_NE(ZSLPcreateprob(&slp, &prob), 0) << "the companion is not started";
  ASSERT_EQ(ZSLPinit(), 0);
  ASSERT_EQ(ZSLPcreateprob(&slp, &prob), 0);
  ZSLPprob second = nullptr;
  EXPECT_NE(ZSLPcreateprob(&second, &prob), 0) << "one nonlinear problem per problem";
  EXPECT_EQ(ZSLPdestroyprob(slp), 0);
  EXPECT_EQ(ZSLPcreateprob(&slp, &prob), 0) << "a new one after the first is gone";
  EXPECT_EQ(ZRVSdestroyprob(prob), 0);
  const char *type = nullptr;
  EXPECT_NE(ZRVSgetobjecttypename(slp, &type), 0) << "destroyed with its main problem";
  EXPECT_EQ(ZSLPfree(), 0);
  EXPECT_EQ(ZRVSfree(), 0);
}

TEST_F(Nonlinear, KnowsItsMainProblem) {
  void *main = nullptr;
  ASSERT_EQ(ZSLPgetptrattrib(slp, ZSLP_ZRVSPROB, &main), 0);
  EXPECT_EQ(main, static_cast<void *>(prob));
  const char *type = nullptr;
  ASSERT_EQ(ZRVSgetobjecttypename(slp, &type), 0);
  EXPECT_STREQ(type, "ZSLPprob");
  int rows = -1, status = -1;
  ASSERT_EQ(ZSLPgetintattrib(slp, ZSLP_ORIGINALROWS, &rows), 0);
  ASSERT_EQ(ZSLPgetintattrib(slp, ZSLP_NLPSTATUS, &status), 0);
  EXPECT_EQ(rows, 0);
  EXPECT_EQ(status, ZSLP_NLP_UNSTARTED);
  double objval = -1;
  ASSERT_EQ(ZSLPgetdblattrib(slp, ZSLP_OBJVAL, &objval), 0);
}

TEST_F(Nonlinear, CatalogueAndControlCodes) {
  const int *ids = nullptr;
  const char *const *names = nullptr;
  ASSERT_EQ(ZSLPgetcalist(&ids, &names), 0);
  std::set<std::string> seen;
  for (int i = 0; names[i][0] != '\0'; ++i) {
    int id = 0, flags = 0;
    ASSERT_EQ(ZSLPcontrolcode(names[i], &id, &flags), 0);
    EXPECT_EQ(id, ids[i]);
    EXPECT_NE(flags, 0) << names[i];
    EXPECT_EQ(std::string(names[i]).rfind("zslp_", 0), 0u) << names[i];
    seen.insert(names[i]);
  }
  EXPECT_TRUE(seen.count("zslp_postsolve"));
  int id = 0, flags = 0;
  ASSERT_EQ(ZSLPcontrolcode("ZSLP_OBJSENSE", &id, &flags), 0);
  EXPECT_EQ(id, ZSLP_OBJSENSE);
  EXPECT_EQ(flags, ZSLP_CAFLAG_DOUBLE | ZSLP_CAFLAG_CONTROL);
  ASSERT_EQ(ZSLPcontrolcode("zslp_nlpstatus", &id, &flags), 0);
  EXPECT_EQ(flags, ZSLP_CAFLAG_INT) << "attributes have no control flag";
  ASSERT_EQ(ZSLPcontrolcode("nothing", &id, &flags), 0);
  EXPECT_EQ(id, 0);
  EXPECT_EQ(flags, 0);
  // The interior-point solver's controls: their own list, found by name,
  // kept per problem.
  ASSERT_EQ(ZSLPgetKTRcalist(&ids, &names), 0);
  std::set<std::string> local;
  for (int i = 0; names[i][0] != '\0'; ++i) {
    ASSERT_EQ(ZSLPcontrolcode(names[i], &id, &flags), 0);
    EXPECT_EQ(id, ids[i]);
    EXPECT_TRUE(flags & ZSLP_CAFLAG_CONTROL) << names[i];
    EXPECT_FALSE(seen.count(names[i])) << names[i] << " is in one list only";
    local.insert(names[i]);
  }
  EXPECT_TRUE(local.count("ipopt_maxiter") && local.count("ipopt_tol"));
  int maxiter = 0;
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_IPOPT_MAXITER, 25), 0);
  ASSERT_EQ(ZSLPgetintcontrol(slp, ZSLP_IPOPT_MAXITER, &maxiter), 0);
  EXPECT_EQ(maxiter, 25);
  EXPECT_NE(ZSLPsetintcontrol(slp, ZSLP_IPOPT_MUSTRATEGY, 2), 0) << "0 or 1 only";
}

TEST_F(Nonlinear, ControlsCopiesAndErrors) {
  ASSERT_EQ(ZSLPsetintcontrol(slp, ZSLP_PRESOLVE, 0), 0);
  ASSERT_EQ(ZSLPsetdblcontrol(slp, ZSLP_OBJSENSE, -1.0), 0);
  int value = -1;
  double sense = 0;
  ASSERT_EQ(ZSLPgetintcontrol(slp, ZSLP_PRESOLVE, &value), 0);
  ASSERT_EQ(ZSLPgetdblcontrol(slp, ZSLP_OBJSENSE, &sense), 0);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(sense, -1.0);

  int code = 0;
  EXPECT_NE(ZSLPsetdblcontrol(slp, ZSLP_OBJSENSE, 2.0), 0);
  EXPECT_NE(slp_error(&code).find("zslp_objsense"), std::string::npos);
  EXPECT_EQ(code, ZRVS_ERR_ARGUMENT);
  EXPECT_NE(ZSLPsetintcontrol(slp, ZSLP_OBJSENSE, 1), 0);
  EXPECT_NE(ZSLPgetintattrib(slp, 4711, &value), 0);
  EXPECT_NE(slp_error().find("4711"), std::string::npos);

  // A copy onto another main problem's nonlinear problem takes the controls.
  ZRVSprob other = nullptr;
  ZSLPprob other_slp = nullptr;
  ASSERT_EQ(ZRVScreateprob(&other), 0);
  ASSERT_EQ(ZSLPcreateprob(&other_slp, &other), 0);
  ASSERT_EQ(ZSLPcopyprob(other_slp, slp, ""), 0);
  ASSERT_EQ(ZSLPgetintcontrol(other_slp, ZSLP_PRESOLVE, &value), 0);
  EXPECT_EQ(value, 0);
  ASSERT_EQ(ZSLPsetdefaults(other_slp), 0);
  ASSERT_EQ(ZSLPgetintcontrol(other_slp, ZSLP_PRESOLVE, &value), 0);
  EXPECT_EQ(value, 1);
  ASSERT_EQ(ZSLPcopycontrols(other_slp, slp), 0);
  ASSERT_EQ(ZSLPgetintcontrol(other_slp, ZSLP_PRESOLVE, &value), 0);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(ZRVSdestroyprob(other), 0);
  EXPECT_NE(ZSLPgetintcontrol(other_slp, ZSLP_PRESOLVE, &value), 0);
}

TEST_F(Nonlinear, MessageCallbackAndInterrupt) {
  auto cb = [](ZSLPprob, void *, const char *, int, int) {};
  EXPECT_EQ(ZSLPsetcbmessage(slp, cb, nullptr), 0);
  EXPECT_EQ(ZSLPsetcbmessage(slp, nullptr, nullptr), 0);
  EXPECT_EQ(ZSLPinterrupt(slp, ZRVS_STOP_USER), 0);
  EXPECT_NE(ZSLPinterrupt(slp, -3), 0);
}

}  // namespace
