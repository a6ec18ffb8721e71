// Start and stop of the nonlinear companion, its problems and their attributes.
#include "nlp/slp_problem.h"

#include <memory>
#include <mutex>

using namespace zorvan;

namespace {
std::mutex g_slp_mutex;
int g_slp_start_count = 0;
}  // namespace

namespace zorvan {

void require_slp_started(const char *who) {
  std::lock_guard<std::mutex> lock(g_slp_mutex);
  if (g_slp_start_count == 0)
    fail(ZRVS_ERR_NOTSTARTED, "%s: the nonlinear companion is not started (call ZSLPinit)",
         who);
}

void check_slp_handle(const zslp_problem *slp, const char *who) {
  check_handle(slp, ObjectKind::nonlinear_problem, "nonlinear problem", who);
}

void start_slp(const char *who) {
  require_started(who);
  std::lock_guard<std::mutex> lock(g_slp_mutex);
  ++g_slp_start_count;
}

void stop_slp(const char *who) {
  std::lock_guard<std::mutex> lock(g_slp_mutex);
  if (g_slp_start_count == 0)
    fail(ZRVS_ERR_NOTSTARTED, "%s: the nonlinear companion is not started", who);
  --g_slp_start_count;
}

zslp_problem *create_nonlinear(zrvs_problem *prob, const char *who) {
  require_slp_started(who);
  check_problem_handle(prob, who);
  if (prob->slp) fail(ZRVS_ERR_ARGUMENT, "%s: the problem already has a nonlinear problem", who);
  auto s = std::make_unique<zslp_problem>(prob);
  register_object(s.get(), ObjectKind::nonlinear_problem);
  prob->slp = s.get();
  return s.release();
}

void destroy_nonlinear(zslp_problem *slp) {
  if (slp->prob && slp->prob->slp == slp) slp->prob->slp = nullptr;
  unregister_object(slp);
  delete slp;
}

int slp_int_attribute(const zslp_problem &s, int id, const char *who) {
  switch (id) {
    case ZSLP_ORIGINALROWS: return s.prob->model.rows();
    case ZSLP_ORIGINALCOLS: return s.prob->model.cols();
    case ZSLP_NLPSTATUS: return s.prob->results.nlpstatus;
    case ZSLP_NLPITER:
      return s.prob->results.nlpstatus == ZSLP_NLP_UNSTARTED
                 ? 0
                 : static_cast<int>(s.prob->results.bariter);
    case ZSLP_NLPSOLVERSTATUS: return s.prob->results.nlpsolverstatus;
    case ZSLP_COEFFICIENTS: return s.prob->model.formulas.terms();
  }
  fail(ZRVS_ERR_UNKNOWNID, "%s: unknown integer attribute %d", who, id);
}

double slp_dbl_attribute(const zslp_problem &s, int id, const char *who) {
  const SolveState &r = s.prob->results;
  switch (id) {
    case ZSLP_OBJVAL: return r.nlpobjval;
    case ZSLP_NLPSOLVETIME: return r.nlpstatus == ZSLP_NLP_UNSTARTED ? 0.0 : r.solvetime;
    case ZSLP_NLPEVALTIME: return r.evaltime;
  }
  fail(ZRVS_ERR_UNKNOWNID, "%s: unknown double attribute %d", who, id);
}

void *slp_ptr_attribute(const zslp_problem &s, int id, const char *who) {
  if (id != ZSLP_ZRVSPROB) fail(ZRVS_ERR_UNKNOWNID, "%s: unknown pointer attribute %d", who, id);
  return s.prob;
}

}  // namespace zorvan
