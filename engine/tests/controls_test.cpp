// The catalogue of controls and attributes and typed access to them.
#include <cmath>
#include <cstring>
#include <set>

#include "test_support.h"

namespace {

using Controls = ProblemTest;

TEST(Catalogue, ListsAreTerminatedAndConsistent) {
  const int *ids = nullptr, *flags = nullptr, *dids = nullptr, *dflags = nullptr;
  const char *const *names = nullptr;
  ASSERT_EQ(ZRVSgetcalist_c(&ids, &names, &flags), 0);
  ASSERT_EQ(ZRVSgetcalist_d(&dids, &dflags), 0);
  std::set<int> seen_ids;
  std::set<std::string> seen_names;
  int n = 0;
  for (; ids[n] != 0; ++n) {
    ASSERT_NE(names[n], nullptr);
    EXPECT_TRUE(seen_ids.insert(ids[n]).second) << "duplicate id " << ids[n];
    EXPECT_TRUE(seen_names.insert(names[n]).second) << "duplicate name " << names[n];
    for (const char *c = names[n]; *c; ++c) EXPECT_FALSE(*c >= 'A' && *c <= 'Z') << names[n];
    int kinds = (flags[n] & ZRVS_CAFLAG_INT ? 1 : 0) + (flags[n] & ZRVS_CAFLAG_DOUBLE ? 1 : 0) +
                (flags[n] & ZRVS_CAFLAG_STRING ? 1 : 0);
    EXPECT_EQ(kinds, 1) << names[n];
    EXPECT_EQ(dids[n], ids[n]);
    EXPECT_EQ(dflags[n], flags[n]);
  }
  EXPECT_EQ(dids[n], 0);
  // The identifiers the Python module relies on are present with their kinds.
  struct Fixed {
    int id;
    const char *name;
    int flags;
  } fixed[] = {{1001, "rows", ZRVS_CAFLAG_INT},       {1018, "cols", ZRVS_CAFLAG_INT},
               {1053, "solstatus", ZRVS_CAFLAG_INT},  {1158, "probnamelength", ZRVS_CAFLAG_INT},
               {1394, "solvestatus", ZRVS_CAFLAG_INT}, {2001, "lpobjval", ZRVS_CAFLAG_DOUBLE},
               {2003, "mipobjval", ZRVS_CAFLAG_DOUBLE},
               {8035, "outputlog", ZRVS_CAFLAG_INT | ZRVS_CAFLAG_CONTROL}};
  for (const Fixed &f : fixed) {
    int i = 0;
    while (ids[i] != 0 && ids[i] != f.id) ++i;
    ASSERT_NE(ids[i], 0) << f.name;
    EXPECT_STREQ(names[i], f.name);
    EXPECT_EQ(flags[i] & (ZRVS_CAFLAG_INT | ZRVS_CAFLAG_DOUBLE | ZRVS_CAFLAG_STRING |
                          ZRVS_CAFLAG_CONTROL),
              f.flags)
        << f.name;
  }
}

TEST_F(Controls, InfoByNameIgnoresCase) {
  int id = 0, type = -1;
  ASSERT_EQ(ZRVSgetcontrolinfo(prob, "OUTPUTLOG", &id, &type), 0);
  EXPECT_EQ(id, ZRVS_OUTPUTLOG);
  EXPECT_EQ(type, ZRVS_TYPE_INT);
  ASSERT_EQ(ZRVSgetcontrolinfo(prob, "timelimit", &id, &type), 0);
  EXPECT_EQ(type, ZRVS_TYPE_DOUBLE);
  ASSERT_EQ(ZRVSgetcontrolinfo(prob, "maxnode", &id, &type), 0);
  EXPECT_EQ(type, ZRVS_TYPE_INT64);
  // Attributes are not controls and the other way round.
  ASSERT_EQ(ZRVSgetcontrolinfo(prob, "rows", &id, &type), 0);
  EXPECT_EQ(id, 0);
  EXPECT_EQ(type, ZRVS_TYPE_NOTDEFINED);
  ASSERT_EQ(ZRVSgetattribinfo(prob, "Rows", &id, &type), 0);
  EXPECT_EQ(id, ZRVS_ROWS);
  ASSERT_EQ(ZRVSgetattribinfo(prob, "probname", &id, &type), 0);
  EXPECT_EQ(type, ZRVS_TYPE_STRING);
  ASSERT_EQ(ZRVSgetattribinfo(prob, "outputlog", &id, &type), 0);
  EXPECT_EQ(id, 0);
}

TEST_F(Controls, TypedGetAndSetCheckTypeAndRange) {
  int value = -1;
  ASSERT_EQ(ZRVSgetintcontrol(prob, ZRVS_OUTPUTLOG, &value), 0);
  EXPECT_EQ(value, 1);
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
  int64_t value64 = -1;
  ASSERT_EQ(ZRVSgetintcontrol64(prob, ZRVS_OUTPUTLOG, &value64), 0);
  EXPECT_EQ(value64, 0);

  EXPECT_NE(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 99), 0);
  EXPECT_NE(last_error().find("outside"), std::string::npos) << last_error();
  EXPECT_NE(ZRVSsetintcontrol(prob, ZRVS_TIMELIMIT, 5), 0);
  EXPECT_NE(last_error().find("of type double"), std::string::npos) << last_error();
  EXPECT_NE(ZRVSsetintcontrol(prob, 4242, 1), 0);
  EXPECT_NE(last_error().find("unknown control 4242"), std::string::npos);
  EXPECT_NE(ZRVSsetintcontrol(prob, ZRVS_ROWS, 1), 0) << "attributes cannot be set";

  double d = 0;
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 2.5), 0);
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_TIMELIMIT, &d), 0);
  EXPECT_EQ(d, 2.5);
  EXPECT_NE(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, -1.0), 0);
  EXPECT_NE(ZRVSsetdblcontrol(prob, ZRVS_MIPRELSTOP, std::nan("")), 0);

  // 64-bit values beyond 32 bits need the 64-bit getter.
  ASSERT_EQ(ZRVSsetintcontrol64(prob, ZRVS_MAXNODE, int64_t(1) << 40), 0);
  ASSERT_EQ(ZRVSgetintcontrol64(prob, ZRVS_MAXNODE, &value64), 0);
  EXPECT_EQ(value64, int64_t(1) << 40);
  EXPECT_NE(ZRVSgetintcontrol(prob, ZRVS_MAXNODE, &value), 0);
  EXPECT_NE(last_error().find("ZRVSgetintcontrol64"), std::string::npos);
}

TEST_F(Controls, StringControls) {
  char buf[ZRVS_MAXSTRINGLENGTH];
  ASSERT_EQ(ZRVSgetstrcontrol(prob, ZRVS_OUTPUTPREFIX, buf), 0);
  EXPECT_STREQ(buf, "");
  ASSERT_EQ(ZRVSsetstrcontrol(prob, ZRVS_OUTPUTPREFIX, "[zorvan] "), 0);
  int nbytes = 0;
  char small[4];
  ASSERT_EQ(ZRVSgetstringcontrol(prob, ZRVS_OUTPUTPREFIX, small, sizeof small, &nbytes), 0);
  EXPECT_STREQ(small, "[zo");
  EXPECT_EQ(nbytes, 10);
  EXPECT_NE(ZRVSsetstrcontrol(prob, ZRVS_OUTPUTPREFIX, nullptr), 0);
  std::string too_long(ZRVS_MAXSTRINGLENGTH, 'x');
  EXPECT_NE(ZRVSsetstrcontrol(prob, ZRVS_OUTPUTPREFIX, too_long.c_str()), 0);
  EXPECT_NE(ZRVSgetstrcontrol(prob, ZRVS_OUTPUTLOG, buf), 0);
}

TEST_F(Controls, DefaultsAndCopies) {
  ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_PRESOLVE, 0), 0);
  ASSERT_EQ(ZRVSsetdblcontrol(prob, ZRVS_MIPRELSTOP, 0.5), 0);
  ASSERT_EQ(ZRVSsetdefaultcontrol(prob, ZRVS_PRESOLVE), 0);
  int presolve = -1;
  double gap = 0;
  ASSERT_EQ(ZRVSgetintcontrol(prob, ZRVS_PRESOLVE, &presolve), 0);
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_MIPRELSTOP, &gap), 0);
  EXPECT_EQ(presolve, 1);
  EXPECT_EQ(gap, 0.5) << "only the named control was reset";
  EXPECT_NE(ZRVSsetdefaultcontrol(prob, ZRVS_ROWS), 0);

  ZRVSprob other = nullptr;
  ASSERT_EQ(ZRVScreateprob(&other), 0);
  ASSERT_EQ(ZRVScopycontrols(other, prob), 0);
  ASSERT_EQ(ZRVSgetdblcontrol(other, ZRVS_MIPRELSTOP, &gap), 0);
  EXPECT_EQ(gap, 0.5);
  ASSERT_EQ(ZRVSsetdefaults(other), 0);
  ASSERT_EQ(ZRVSgetdblcontrol(other, ZRVS_MIPRELSTOP, &gap), 0);
  EXPECT_NE(gap, 0.5);
  ASSERT_EQ(ZRVSgetdblcontrol(prob, ZRVS_MIPRELSTOP, &gap), 0);
  EXPECT_EQ(gap, 0.5) << "the source keeps its values";
  EXPECT_EQ(ZRVSdestroyprob(other), 0);
}

TEST_F(Controls, AttributesCheckTheirType) {
  double d = 0;
  int i = 0;
  char s[ZRVS_MAXSTRINGLENGTH];
  ASSERT_EQ(ZRVSgetdblattrib(prob, ZRVS_LPOBJVAL, &d), 0);
  ASSERT_EQ(ZRVSgetdblattrib(prob, ZRVS_OBJSENSE, &d), 0);
  EXPECT_EQ(d, 1.0);
  EXPECT_EQ(int_attrib(ZRVS_SOLVESTATUS), ZRVS_SOLVESTATUS_UNSTARTED);
  EXPECT_EQ(int_attrib(ZRVS_LPSTATUS), ZRVS_LP_UNSTARTED);
  EXPECT_NE(ZRVSgetintattrib(prob, ZRVS_LPOBJVAL, &i), 0);
  EXPECT_NE(ZRVSgetdblattrib(prob, ZRVS_ROWS, &d), 0);
  EXPECT_NE(ZRVSgetstrattrib(prob, ZRVS_ROWS, s), 0);
  EXPECT_NE(ZRVSgetintattrib(prob, ZRVS_OUTPUTLOG, &i), 0);
  EXPECT_NE(last_error().find("is a control"), std::string::npos) << last_error();
  EXPECT_NE(ZRVSgetintattrib(prob, 999999, &i), 0);
  EXPECT_NE(ZRVSgetintattrib(prob, ZRVS_ROWS, nullptr), 0);
}

}  // namespace
