// The class of a problem as the driver sees it: which parts it has decides
// which backend can solve it.
#pragma once
#include "model/model.h"

namespace zorvan {

enum class ProblemClass { lp, qp, mip, miqp, qcqp, nlp, minlp };

// The class of m; with `relaxation` its discrete parts are left out. The
// model holds no nonlinear formulas yet, so nlp and minlp name classes of
// the nonlinear problem to come.
ProblemClass classify(const Model &m, bool relaxation);
// The class of m when whether its discrete parts count is already known.
ProblemClass classify_known(const Model &m, bool discrete);

// "LP", "QP", "MIP", ...
const char *class_name(ProblemClass c);

}  // namespace zorvan
