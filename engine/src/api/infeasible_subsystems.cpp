// Entry points of irreducible infeasible subsystems.
#include <algorithm>

#include "core/arguments.h"
#include "problem/problem.h"
#include "solve/analysis/iis.h"

using namespace zorvan;

namespace {

constexpr int kMostSubsystems = 100;

// One more subsystem avoiding the first row of each found so far.
int next_iis(zrvs_problem &p, const char *who) {
  std::vector<int> banned;
  for (const Iis &s : p.iis)
    if (!s.rows.empty()) banned.push_back(s.rows.front());
  // A subsystem of bounds alone cannot be avoided by dropping rows.
  for (const Iis &s : p.iis)
    if (s.rows.empty()) return 1;
  Iis found;
  if (!find_iis(p.model, banned, found, who)) return 1;
  p.iis.push_back(std::move(found));
  return 0;
}

}  // namespace

extern "C" {

int ZRVSiisfirst(ZRVSprob prob, int mode, int *status) {
  const char *who = "ZRVSiisfirst";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(status, "status", who);
    if (mode != 0 && mode != 1) fail(ZRVS_ERR_ARGUMENT, "%s: mode %d is not 0 or 1", who, mode);
    p.iis.clear();
    *status = next_iis(p, who);
  });
}

int ZRVSiisnext(ZRVSprob prob, int *status) {
  const char *who = "ZRVSiisnext";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(status, "status", who);
    if (p.iis.empty()) fail(ZRVS_ERR_ARGUMENT, "%s: call ZRVSiisfirst first", who);
    *status = next_iis(p, who);
  });
}

int ZRVSiisall(ZRVSprob prob) {
  const char *who = "ZRVSiisall";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    p.iis.clear();
    while (static_cast<int>(p.iis.size()) < kMostSubsystems && next_iis(p, who) == 0) {
    }
  });
}

int ZRVSiisclear(ZRVSprob prob) {
  return problem_call(prob, "ZRVSiisclear", [&](zrvs_problem &p) { p.iis.clear(); });
}

int ZRVSiisstatus(ZRVSprob prob, int *niis, int nrows[], int ncols[]) {
  const char *who = "ZRVSiisstatus";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(niis, "niis", who);
    *niis = static_cast<int>(p.iis.size());
    for (size_t k = 0; k < p.iis.size(); ++k) {
      if (nrows) nrows[k] = static_cast<int>(p.iis[k].rows.size());
      if (ncols) ncols[k] = static_cast<int>(p.iis[k].cols.size());
    }
  });
}

int ZRVSgetiisdata(ZRVSprob prob, int num, int *nrows, int *ncols, int rowind[], int colind[],
                   char contype[], char bndtype[]) {
  const char *who = "ZRVSgetiisdata";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (num < 1 || num > static_cast<int>(p.iis.size()))
      fail(ZRVS_ERR_ARGUMENT, "%s: no subsystem %d (%d found)", who, num,
           static_cast<int>(p.iis.size()));
    const Iis &s = p.iis[num - 1];
    if (nrows) *nrows = static_cast<int>(s.rows.size());
    if (ncols) *ncols = static_cast<int>(s.cols.size());
    for (size_t k = 0; k < s.rows.size(); ++k) {
      if (rowind) rowind[k] = s.rows[k];
      if (contype) contype[k] = p.model.rowtype[s.rows[k]];
    }
    if (colind) std::copy(s.cols.begin(), s.cols.end(), colind);
    if (bndtype) std::copy(s.bounds.begin(), s.bounds.end(), bndtype);
  });
}

}  // extern "C"
