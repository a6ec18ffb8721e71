// Problem message callbacks and global message handlers.
#include <string>
#include <vector>

#include "test_support.h"

namespace {

struct Received {
  std::vector<std::string> texts;
  std::vector<int> types;
  std::vector<const void *> objects;
};

void on_problem_message(ZRVSprob, void *data, const char *msg, int len, int msgtype) {
  auto *r = static_cast<Received *>(data);
  r->texts.push_back(msg ? std::string(msg, len) : "<flush>");
  r->types.push_back(msgtype);
}

int on_global_message(void *object, void *data, void *, const char *msg, int len, int msgtype) {
  auto *r = static_cast<Received *>(data);
  r->texts.push_back(msg ? std::string(msg, len) : "<flush>");
  r->types.push_back(msgtype);
  r->objects.push_back(object);
  return 0;
}

std::vector<std::string> g_order;
void first(ZRVSprob, void *, const char *, int, int) { g_order.push_back("high"); }
void second(ZRVSprob, void *, const char *, int, int) { g_order.push_back("low"); }

int load_empty(ZRVSprob prob) {
  return ZRVSloadlp(prob, "m", 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                    nullptr, nullptr, nullptr, nullptr);
}

using Messages = ProblemTest;

TEST_F(Messages, LoadingReportsToProblemAndGlobalHandlers) {
  Received local, global;
  ASSERT_EQ(ZRVSaddcbmessage(prob, on_problem_message, &local, 0), 0);
  ASSERT_EQ(ZRVS_ge_addcbmsghandler(on_global_message, &global, 0), 0);
  ASSERT_EQ(load_empty(prob), 0);
  ASSERT_EQ(local.texts.size(), 1u);
  EXPECT_NE(local.texts[0].find("Problem m loaded: 0 rows, 0 columns"), std::string::npos);
  EXPECT_EQ(local.types[0], ZRVS_MSG_INFO);
  ASSERT_EQ(global.texts.size(), 1u);
  EXPECT_EQ(global.texts[0], local.texts[0]);
  EXPECT_EQ(global.objects[0], static_cast<const void *>(prob)) << "the object is the problem";
  EXPECT_EQ(ZRVS_ge_removecbmsghandler(on_global_message, nullptr), 0);
}

TEST_F(Messages, OutputLogZeroSilencesAndPrefixIsApplied) {
  Received local;
  ASSERT_EQ(ZRVSaddcbmessage(prob, on_problem_message, &local, 0), 0);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_TRUE(local.texts.empty());
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 1), 0);
  ASSERT_EQ(ZRVSsetstrcontrol(prob, ZRVS_OUTPUTPREFIX, "[p] "), 0);
  ASSERT_EQ(load_empty(prob), 0);
  ASSERT_EQ(local.texts.size(), 1u);
  EXPECT_EQ(local.texts[0].rfind("[p] Problem m", 0), 0u) << local.texts[0];
}

TEST_F(Messages, CallbacksRunByPriorityAndCanBeRemoved) {
  g_order.clear();
  ASSERT_EQ(ZRVSaddcbmessage(prob, second, nullptr, 1), 0);
  ASSERT_EQ(ZRVSaddcbmessage(prob, first, nullptr, 5), 0);
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_EQ(g_order, (std::vector<std::string>{"high", "low"}));
  ASSERT_EQ(ZRVSremovecbmessage(prob, first, nullptr), 0);
  g_order.clear();
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_EQ(g_order, (std::vector<std::string>{"low"}));
  ASSERT_EQ(ZRVSremovecbmessage(prob, nullptr, nullptr), 0);
  g_order.clear();
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_TRUE(g_order.empty());
  EXPECT_NE(ZRVSaddcbmessage(prob, nullptr, nullptr, 0), 0);
}

TEST_F(Messages, GlobalHandlersMatchOnFunctionAndData) {
  Received a, b;
  ASSERT_EQ(ZRVS_ge_addcbmsghandler(on_global_message, &a, 0), 0);
  ASSERT_EQ(ZRVS_ge_addcbmsghandler(on_global_message, &b, 0), 0);
  ASSERT_EQ(ZRVS_ge_removecbmsghandler(on_global_message, &a), 0);
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_TRUE(a.texts.empty());
  EXPECT_EQ(b.texts.size(), 1u);
  EXPECT_NE(ZRVS_ge_addcbmsghandler(nullptr, nullptr, 0), 0);
}

TEST(GlobalHandlers, NeedAStartedEnvironmentAndGoWithTheLastStop) {
  Received r;
  EXPECT_NE(ZRVS_ge_addcbmsghandler(on_global_message, &r, 0), 0);
  ASSERT_EQ(ZRVSinit(nullptr), 0);
  ASSERT_EQ(ZRVS_ge_addcbmsghandler(on_global_message, &r, 0), 0);
  ASSERT_EQ(ZRVSfree(), 0);
  ASSERT_EQ(ZRVSinit(nullptr), 0);
  ZRVSprob prob = nullptr;
  ASSERT_EQ(ZRVScreateprob(&prob), 0);
  ASSERT_EQ(load_empty(prob), 0);
  EXPECT_TRUE(r.texts.empty()) << "the handler went with the last stop";
  EXPECT_EQ(ZRVSdestroyprob(prob), 0);
  EXPECT_EQ(ZRVSfree(), 0);
}

}  // namespace
