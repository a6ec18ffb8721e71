// Entry points of the objectives: coefficients, constants, the quadratic
// part, the sense and the objective controls.
#include "problem/problem.h"
#include "model/objective_controls.h"
#include "model/reading.h"

using namespace zorvan;

extern "C" {

int ZRVSchgobj(ZRVSprob prob, int ncols, const int colind[], const double objcoef[]) {
  return problem_call(prob, "ZRVSchgobj", [&](zrvs_problem &p) {
    p.model.change_objective(0, ncols, colind, objcoef, "ZRVSchgobj");
    p.costs_changed(ncols, colind);
  });
}

int ZRVSchgobjn(ZRVSprob prob, int objidx, int ncols, const int colind[],
                const double objcoef[]) {
  return problem_call(prob, "ZRVSchgobjn", [&](zrvs_problem &p) {
    p.model.change_objective(objidx, ncols, colind, objcoef, "ZRVSchgobjn");
    if (objidx == 0)
      p.costs_changed(ncols, colind);
    else
      p.model_changed(Change::values);
  });
}

int ZRVSaddobj(ZRVSprob prob, int ncols, const int colind[], const double objcoef[],
              int priority, double weight) {
  const char *who = "ZRVSaddobj";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    Model &m = p.model;
    const int objidx = static_cast<int>(m.objectives.size());
    // Checked on a copy of the new objective first, so a refused call adds
    // nothing.
    Objective o;
    o.coef.assign(m.cols(), 0.0);
    set_objective_int_control(o, ZRVS_OBJECTIVE_PRIORITY, priority, who);
    set_objective_dbl_control(o, ZRVS_OBJECTIVE_WEIGHT, weight, who);
    m.change_objective(objidx, ncols, colind, objcoef, who);
    m.objectives[objidx].priority = o.priority;
    m.objectives[objidx].weight = o.weight;
    p.model_changed(Change::values);
  });
}

int ZRVSdelobj(ZRVSprob prob, int objidx) {
  return problem_call(prob, "ZRVSdelobj", [&](zrvs_problem &p) {
    p.model.delete_objective(objidx, "ZRVSdelobj");
    p.model_changed(Change::values);
  });
}

int ZRVSchgobjsense(ZRVSprob prob, int sense) {
  return problem_call(prob, "ZRVSchgobjsense", [&](zrvs_problem &p) {
    p.model.set_sense(sense, "ZRVSchgobjsense");
    p.sense_changed();
  });
}

int ZRVSgetobj(ZRVSprob prob, double obj[], int first, int last) {
  return problem_call(prob, "ZRVSgetobj", [&](zrvs_problem &p) {
    read_range(p.model.objectives[0].coef, obj, "obj", first, last, "column", "ZRVSgetobj");
  });
}

int ZRVSgetobjn(ZRVSprob prob, int objidx, double obj[], int first, int last) {
  const char *who = "ZRVSgetobjn";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(obj, "obj", who);
    read_range(p.model.objective(objidx, who).coef, obj, "obj", first, last, "column", who);
  });
}

int ZRVSchgmqobj64(ZRVSprob prob, int64_t ncoefs, const int objqcol1[], const int objqcol2[],
                   const double objqcoef[]) {
  return problem_call(prob, "ZRVSchgmqobj64", [&](zrvs_problem &p) {
    p.model.change_quadratic_objective(ncoefs, objqcol1, objqcol2, objqcoef, "ZRVSchgmqobj64");
    if (ncoefs > 0) p.model_changed(Change::values);
  });
}

int ZRVSgetmqobj64(ZRVSprob prob, int64_t start[], int colind[], double objqcoef[],
                   int64_t maxcoefs, int64_t *ncoefs, int first, int last) {
  return problem_call(prob, "ZRVSgetmqobj64", [&](zrvs_problem &p) {
    read_quadratic_objective(p.model, start, colind, objqcoef, maxcoefs, ncoefs, first, last,
                             "ZRVSgetmqobj64");
  });
}

int ZRVSsetobjintcontrol(ZRVSprob prob, int objidx, int control, int value) {
  const char *who = "ZRVSsetobjintcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    set_objective_int_control(p.model.objective(objidx, who), control, value, who);
    p.model_changed(Change::values);
  });
}

int ZRVSsetobjdblcontrol(ZRVSprob prob, int objidx, int control, double value) {
  const char *who = "ZRVSsetobjdblcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    set_objective_dbl_control(p.model.objective(objidx, who), control, value, who);
    p.model_changed(Change::values);
  });
}

int ZRVSgetobjintcontrol(ZRVSprob prob, int objidx, int control, int *value) {
  const char *who = "ZRVSgetobjintcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Objective &o = p.model.objective(objidx, who);
    require(value, "value", who);
    *value = objective_int_control(o, control, who);
  });
}

int ZRVSgetobjdblcontrol(ZRVSprob prob, int objidx, int control, double *value) {
  const char *who = "ZRVSgetobjdblcontrol";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    const Objective &o = p.model.objective(objidx, who);
    require(value, "value", who);
    *value = objective_dbl_control(o, control, who);
  });
}

}  // extern "C"
