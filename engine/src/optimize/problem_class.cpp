#include "optimize/problem_class.h"

#include "optimize/convexity.h"

namespace zorvan {

ProblemClass classify(const Model &m, bool relaxation) {
  const bool discrete = !relaxation && m.has_discrete();
  if (m.formulas.terms() > 0) return discrete ? ProblemClass::minlp : ProblemClass::nlp;
  if (!m.qrows.empty()) return discrete ? ProblemClass::minlp : ProblemClass::qcqp;
  if (!m.qobj.empty()) {
    if (discrete) return ProblemClass::miqp;
    return quadratic_objective_convex(m) ? ProblemClass::qp : ProblemClass::nonconvex_qp;
  }
  return discrete ? ProblemClass::mip : ProblemClass::lp;
}

const char *class_name(ProblemClass c) {
  switch (c) {
    case ProblemClass::lp: return "LP";
    case ProblemClass::qp: return "QP";
    case ProblemClass::nonconvex_qp: return "nonconvex QP";
    case ProblemClass::mip: return "MIP";
    case ProblemClass::miqp: return "MIQP";
    case ProblemClass::qcqp: return "QCQP";
    case ProblemClass::nlp: return "NLP";
    case ProblemClass::minlp: return "MINLP";
  }
  return "unknown";
}

}  // namespace zorvan
