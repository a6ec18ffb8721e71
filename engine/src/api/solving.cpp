// Entry points that solve and read solutions and per-objective results.
#include <algorithm>

#include "model/checks.h"
#include "solve/highs/basis.h"
#include "optimize/driver.h"

using namespace zorvan;

namespace {

void copy_out(const std::vector<double> &v, double *out) {
  if (out) std::copy(v.begin(), v.end(), out);
}

const StageResult &stage_of(const SolveState &r, int objidx, const char *who) {
  if (objidx < 0 || objidx >= static_cast<int>(r.objstage.size()))
    fail(ZRVS_ERR_ARGUMENT, "%s: objidx %d is not an objective of the last solve", who, objidx);
  int s = r.objstage[objidx];
  if (s < 0)
    fail(ZRVS_ERR_ARGUMENT,
         "%s: objective %d was not reached by the last solve (an earlier level did not end "
         "optimal)",
         who, objidx);
  return r.stages[s];
}

}  // namespace

extern "C" {

int ZRVSoptimize(ZRVSprob prob, const char *flags, int *solvestatus, int *solstatus) {
  return problem_call(prob, "ZRVSoptimize", [&](zrvs_problem &p) {
    if (solvestatus) *solvestatus = ZRVS_SOLVESTATUS_UNSTARTED;
    if (solstatus) *solstatus = ZRVS_SOLSTATUS_NOTFOUND;
    try {
      optimize(p, SolveKind::automatic, flags, "ZRVSoptimize");
    } catch (...) {
      if (solvestatus) *solvestatus = p.results.solvestatus;
      if (solstatus) *solstatus = p.results.solstatus;
      throw;
    }
    if (solvestatus) *solvestatus = p.results.solvestatus;
    if (solstatus) *solstatus = p.results.solstatus;
  });
}

int ZRVSlpoptimize(ZRVSprob prob, const char *flags) {
  return problem_call(prob, "ZRVSlpoptimize", [&](zrvs_problem &p) {
    optimize(p, SolveKind::lp, flags, "ZRVSlpoptimize");
  });
}

int ZRVSmipoptimize(ZRVSprob prob, const char *flags) {
  return problem_call(prob, "ZRVSmipoptimize", [&](zrvs_problem &p) {
    optimize(p, SolveKind::mip, flags, "ZRVSmipoptimize");
  });
}

int ZRVSgetlpsol(ZRVSprob prob, double x[], double slack[], double duals[], double djs[]) {
  const char *who = "ZRVSgetlpsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const SolveState &r = p.results;
    if (!r.has_lp_solution)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no LP solution is available (not solved as an LP since the last change)", who);
    if ((duals || djs) && (r.duals.size() != static_cast<size_t>(p.model.rows()) ||
                           r.djs.size() != static_cast<size_t>(p.model.cols())))
      fail(ZRVS_ERR_ARGUMENT, "%s: the last solve produced no dual values", who);
    copy_out(r.x, x);
    copy_out(r.slack, slack);
    copy_out(r.duals, duals);
    copy_out(r.djs, djs);
  });
}

int ZRVSgetbasis(ZRVSprob prob, int rstatus[], int cstatus[]) {
  const char *who = "ZRVSgetbasis";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    if (m.basis_col.empty() && m.basis_row.empty())
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no basis is available (solve the problem as an LP or load a basis first; "
           "deleting rows or columns drops the basis)",
           who);
    if (m.basis_col.size() != static_cast<size_t>(m.cols()) ||
        m.basis_row.size() != static_cast<size_t>(m.rows()))
      fail(ZRVS_ERR_ARGUMENT,
           "%s: rows or columns were added since the basis was made; solve again first", who);
    if (rstatus) std::copy(m.basis_row.begin(), m.basis_row.end(), rstatus);
    if (cstatus) std::copy(m.basis_col.begin(), m.basis_col.end(), cstatus);
  });
}

int ZRVSloadbasis(ZRVSprob prob, const int rstatus[], const int cstatus[]) {
  return problem_call(prob, "ZRVSloadbasis", [&](zrvs_problem &p) {
    load_basis(p.model, rstatus, cstatus, "ZRVSloadbasis");
    p.changes.note_basis_loaded();
  });
}

int ZRVSgetmipsol(ZRVSprob prob, double x[], double slack[]) {
  const char *who = "ZRVSgetmipsol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    if (p.progress.active) {  // in a callback: the incumbent so far
      if (!p.progress.has_incumbent)
        fail(ZRVS_ERR_ARGUMENT, "%s: the running solve has found no integer solution yet", who);
      copy_out(p.progress.x, x);
      copy_out(p.progress.slack, slack);
      return;
    }
    if (!p.results.has_mip_solution)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: no integer solution is available (none found since the last change)", who);
    copy_out(p.results.x, x);
    copy_out(p.results.slack, slack);
  });
}

int ZRVSgetobjintattrib64(ZRVSprob prob, int objidx, int attrib, int64_t *value) {
  const char *who = "ZRVSgetobjintattrib64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(value, "value", who);
    const StageResult &s = stage_of(p.results, objidx, who);
    switch (attrib) {
      case ZRVS_LPSTATUS: *value = s.lpstatus; return;
      case ZRVS_MIPSTATUS: *value = s.mipstatus; return;
      case ZRVS_SOLVESTATUS: *value = s.solvestatus; return;
      case ZRVS_SOLSTATUS: *value = s.solstatus; return;
      case ZRVS_STOPSTATUS: *value = s.stopstatus; return;
      case ZRVS_SIMPLEXITER: *value = s.simplexiter; return;
      case ZRVS_BARITER: *value = s.bariter; return;
      case ZRVS_NODES: *value = s.nodes; return;
    }
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not a per-objective integer attribute", who, attrib);
  });
}

int ZRVSgetobjdblattrib(ZRVSprob prob, int objidx, int attrib, double *value) {
  const char *who = "ZRVSgetobjdblattrib";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(value, "value", who);
    const SolveState &r = p.results;
    const StageResult &s = stage_of(r, objidx, who);
    switch (attrib) {
      case ZRVS_LPOBJVAL:
      case ZRVS_MIPOBJVAL:
        if (r.objvals.empty())
          fail(ZRVS_ERR_ARGUMENT, "%s: the last solve found no solution", who);
        *value = r.objvals[objidx];
        return;
      case ZRVS_BESTBOUND: *value = s.bestbound; return;
      case ZRVS_SOLVETIME: *value = s.solvetime; return;
    }
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not a per-objective double attribute", who, attrib);
  });
}

}  // extern "C"
