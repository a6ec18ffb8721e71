// The class of a problem as the driver sees it: which parts it has decides
// which backend can solve it.
#pragma once
#include "model/model.h"

namespace zorvan {

// nonconvex_qp: a quadratic objective that is not convex in the objective's
// sense (HiGHS's QP solver takes convex ones only).
enum class ProblemClass { lp, qp, nonconvex_qp, mip, miqp, qcqp, nlp, minlp };

// The class of m; with `relaxation` its discrete parts are left out.
ProblemClass classify(const Model &m, bool relaxation);

// "LP", "QP", "MIP", ...
const char *class_name(ProblemClass c);

}  // namespace zorvan
