// Whether a convex QP is unbounded: it is when it has a feasible point and a
// direction d that the bounds and rows allow without limit, along which the
// objective has no curvature (Qd = 0) and decreases (c'd < 0, for a
// minimisation). Both are found by LPs, so that an "unbounded" from the QP
// solver is only reported when it is true.
#pragma once
#include <string>
#include <vector>

#include "solve/qp_model.h"

namespace zorvan {

enum class QpRecession {
  unbounded,   // a feasible point and a direction of unbounded descent exist
  bounded,     // no such direction: the objective is bounded below
  infeasible,  // the rows and bounds admit no point
  undecided    // an LP did not end; `why` says how
};

// Decides by LPs whether `qp` is unbounded. `point`, when not empty, is a
// point believed feasible; it spares the LP that looks for one when it is
// within `feastol` of the bounds and rows. On `unbounded`, `direction`
// holds d (scaled to at most 1 in each entry).
QpRecession qp_recession(const QpModel &qp, const std::vector<double> &point, double feastol,
                         std::vector<double> &direction, std::string &why);

// True when x lies within tol of the bounds and rows of qp.
bool qp_point_feasible(const QpModel &qp, const std::vector<double> &x, double tol);

}  // namespace zorvan
