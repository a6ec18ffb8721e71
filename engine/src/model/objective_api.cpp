// Objectives: linear coefficients and constants of every objective, the
// quadratic part of the primary one, the sense, and the objective controls.
#include <algorithm>

#include "core/problem.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

Objective &objective(Model &m, int objidx, const char *who) {
  if (objidx < 0 || objidx >= static_cast<int>(m.objectives.size()))
    fail(ZRVS_ERR_ARGUMENT, "%s: objidx %d is not an objective index (0..%d)", who, objidx,
         static_cast<int>(m.objectives.size()) - 1);
  return m.objectives[objidx];
}

// Sets coefficients of objective objidx; column index -1 is the constant.
// objidx equal to the number of objectives adds a new objective.
void change_objective(zrvs_problem &p, int objidx, int ncols, const int colind[],
                      const double objcoef[], const char *who) {
  Model &m = p.model;
  int nobj = static_cast<int>(m.objectives.size());
  if (objidx < 0 || objidx > nobj)
    fail(ZRVS_ERR_ARGUMENT, "%s: objidx %d is not an objective index (0..%d, %d adds one)", who,
         objidx, nobj - 1, nobj);
  check_count(ncols, "ncols", who);
  if (ncols > 0) {
    require(colind, "colind", who);
    require(objcoef, "objcoef", who);
  }
  for (int k = 0; k < ncols; ++k) {
    if (colind[k] != -1) check_index(colind[k], m.cols(), "colind", k, "column", who);
    check_finite(objcoef[k], "objcoef", k, who);
  }
  if (objidx == nobj) {
    if (!m.qobj.empty())
      fail(ZRVS_ERR_ARGUMENT,
           "%s: the primary objective is quadratic; further objectives need a linear one", who);
    Objective o;
    o.coef.assign(m.cols(), 0.0);
    m.objectives.push_back(std::move(o));
  }
  Objective &o = m.objectives[objidx];
  for (int k = 0; k < ncols; ++k) {
    if (colind[k] == -1)
      o.constant = objcoef[k];
    else
      o.coef[colind[k]] = objcoef[k];
  }
  p.model_changed(Change::values);
}

void read_objective(zrvs_problem &p, int objidx, double obj[], int first, int last,
                    const char *who) {
  require(obj, "obj", who);
  const Objective &o = objective(p.model, objidx, who);
  check_range(first, last, p.model.cols(), "column", who);
  std::copy(o.coef.begin() + first, o.coef.begin() + last + 1, obj);
}

bool is_dbl_objcontrol(int control) {
  return control >= ZRVS_OBJECTIVE_WEIGHT && control <= ZRVS_OBJECTIVE_RHS;
}

}  // namespace

extern "C" {

int ZRVSchgobj(ZRVSprob prob, int ncols, const int colind[], const double objcoef[]) {
  return problem_call(prob, "ZRVSchgobj", [&](zrvs_problem &p) {
    change_objective(p, 0, ncols, colind, objcoef, "ZRVSchgobj");
  });
}

int ZRVSchgobjn(ZRVSprob prob, int objidx, int ncols, const int colind[],
                const double objcoef[]) {
  return problem_call(prob, "ZRVSchgobjn", [&](zrvs_problem &p) {
    change_objective(p, objidx, ncols, colind, objcoef, "ZRVSchgobjn");
  });
}

int ZRVSdelobj(ZRVSprob prob, int objidx) {
  return problem_call(prob, "ZRVSdelobj", [&](zrvs_problem &p) {
    objective(p.model, objidx, "ZRVSdelobj");
    if (objidx == 0)
      fail(ZRVS_ERR_ARGUMENT, "ZRVSdelobj: the primary objective (0) cannot be deleted");
    p.model.objectives.erase(p.model.objectives.begin() + objidx);
    p.model_changed(Change::values);
  });
}

int ZRVSchgobjsense(ZRVSprob prob, int sense) {
  return problem_call(prob, "ZRVSchgobjsense", [&](zrvs_problem &p) {
    if (sense != ZRVS_OBJ_MINIMIZE && sense != ZRVS_OBJ_MAXIMIZE)
      fail(ZRVS_ERR_ARGUMENT, "ZRVSchgobjsense: sense is %d, not 1 (minimise) or -1 (maximise)",
           sense);
    p.model.objsense = sense;
    p.model_changed(Change::values);
  });
}

int ZRVSgetobj(ZRVSprob prob, double obj[], int first, int last) {
  return problem_call(prob, "ZRVSgetobj", [&](zrvs_problem &p) {
    read_objective(p, 0, obj, first, last, "ZRVSgetobj");
  });
}

int ZRVSgetobjn(ZRVSprob prob, int objidx, double obj[], int first, int last) {
  return problem_call(prob, "ZRVSgetobjn", [&](zrvs_problem &p) {
    read_objective(p, objidx, obj, first, last, "ZRVSgetobjn");
  });
}

int ZRVSchgmqobj64(ZRVSprob prob, int64_t ncoefs, const int objqcol1[], const int objqcol2[],
                   const double objqcoef[]) {
  const char *who = "ZRVSchgmqobj64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    check_count(ncoefs, "ncoefs", who);
    if (ncoefs == 0) return;
    require(objqcol1, "objqcol1", who);
    require(objqcol2, "objqcol2", who);
    require(objqcoef, "objqcoef", who);
    bool adds = false;
    for (int64_t k = 0; k < ncoefs; ++k) {
      check_index(objqcol1[k], m.cols(), "objqcol1", k, "column", who);
      check_index(objqcol2[k], m.cols(), "objqcol2", k, "column", who);
      check_finite(objqcoef[k], "objqcoef", k, who);
      adds = adds || objqcoef[k] != 0.0;
    }
    if (adds && m.objectives.size() > 1)
      fail(ZRVS_ERR_ARGUMENT,
           "%s: the problem has several objectives; only a single objective may be quadratic",
           who);
    for (int64_t k = 0; k < ncoefs; ++k) {
      QKey key = qkey(objqcol1[k], objqcol2[k]);
      if (objqcoef[k] == 0.0)
        m.qobj.erase(key);
      else
        m.qobj[key] = objqcoef[k];
    }
    p.model_changed(Change::values);
  });
}

int ZRVSgetmqobj64(ZRVSprob prob, int64_t start[], int colind[], double objqcoef[],
                   int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  const char *who = "ZRVSgetmqobj64";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Model &m = p.model;
    require(ncoefs, "ncoefs", who);
    check_range(first, last, m.cols(), "column", who);
    // Column j of the symmetric matrix: entries (i, j) from both triangles.
    std::vector<std::vector<std::pair<int, double>>> column(last - first + 1);
    for (const auto &e : m.qobj) {
      int i = e.first.first, j = e.first.second;
      if (j >= first && j <= last) column[j - first].push_back({i, e.second});
      if (i != j && i >= first && i <= last) column[i - first].push_back({j, e.second});
    }
    int64_t total = 0, room = std::max<int64_t>(maxcoefs, 0);
    for (int j = first; j <= last; ++j) {
      auto &col = column[j - first];
      std::sort(col.begin(), col.end());
      if (start) start[j - first] = std::min(total, room);
      for (const auto &e : col) {
        if (total < room) {
          if (colind) colind[total] = e.first;
          if (objqcoef) objqcoef[total] = e.second;
        }
        ++total;
      }
    }
    if (start) start[last - first + 1] = std::min(total, room);
    *ncoefs = total;
  });
}

int ZRVSsetobjintcontrol(ZRVSprob prob, int objidx, int control, int value) {
  const char *who = "ZRVSsetobjintcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Objective &o = objective(p.model, objidx, who);
    if (control != ZRVS_OBJECTIVE_PRIORITY)
      fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not an integer objective control (20001 priority)",
           who, control);
    o.priority = value;
    p.model_changed(Change::values);
  });
}

int ZRVSsetobjdblcontrol(ZRVSprob prob, int objidx, int control, double value) {
  const char *who = "ZRVSsetobjdblcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Objective &o = objective(p.model, objidx, who);
    if (!is_dbl_objcontrol(control))
      fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not a double objective control (20002..20005)", who,
           control);
    if (!std::isfinite(value)) fail(ZRVS_ERR_ARGUMENT, "%s: value is not a finite number", who);
    if ((control == ZRVS_OBJECTIVE_ABSTOL || control == ZRVS_OBJECTIVE_RELTOL) && value < 0)
      fail(ZRVS_ERR_ARGUMENT, "%s: a tolerance must not be negative (%g)", who, value);
    switch (control) {
      case ZRVS_OBJECTIVE_WEIGHT: o.weight = value; break;
      case ZRVS_OBJECTIVE_ABSTOL: o.abstol = value; break;
      case ZRVS_OBJECTIVE_RELTOL: o.reltol = value; break;
      case ZRVS_OBJECTIVE_RHS: o.constant = value; break;
    }
    p.model_changed(Change::values);
  });
}

int ZRVSgetobjintcontrol(ZRVSprob prob, int objidx, int control, int *value) {
  const char *who = "ZRVSgetobjintcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Objective &o = objective(p.model, objidx, who);
    require(value, "value", who);
    if (control != ZRVS_OBJECTIVE_PRIORITY)
      fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not an integer objective control (20001 priority)",
           who, control);
    *value = o.priority;
  });
}

int ZRVSgetobjdblcontrol(ZRVSprob prob, int objidx, int control, double *value) {
  const char *who = "ZRVSgetobjdblcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Objective &o = objective(p.model, objidx, who);
    require(value, "value", who);
    switch (control) {
      case ZRVS_OBJECTIVE_WEIGHT: *value = o.weight; return;
      case ZRVS_OBJECTIVE_ABSTOL: *value = o.abstol; return;
      case ZRVS_OBJECTIVE_RELTOL: *value = o.reltol; return;
      case ZRVS_OBJECTIVE_RHS: *value = o.constant; return;
    }
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d is not a double objective control (20002..20005)", who,
         control);
  });
}

}  // extern "C"
