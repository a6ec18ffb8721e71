#include "optimize/problem_class.h"

namespace zorvan {

ProblemClass classify(const Model &m, bool relaxation) {
  return classify_known(m, !relaxation && m.has_discrete());
}

ProblemClass classify_known(const Model &m, bool discrete) {
  if (!m.qrows.empty()) return discrete ? ProblemClass::minlp : ProblemClass::qcqp;
  if (!m.qobj.empty()) return discrete ? ProblemClass::miqp : ProblemClass::qp;
  return discrete ? ProblemClass::mip : ProblemClass::lp;
}

const char *class_name(ProblemClass c) {
  switch (c) {
    case ProblemClass::lp: return "LP";
    case ProblemClass::qp: return "QP";
    case ProblemClass::mip: return "MIP";
    case ProblemClass::miqp: return "MIQP";
    case ProblemClass::qcqp: return "QCQP";
    case ProblemClass::nlp: return "NLP";
    case ProblemClass::minlp: return "MINLP";
  }
  return "unknown";
}

}  // namespace zorvan
