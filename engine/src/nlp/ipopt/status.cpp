#include "nlp/ipopt/status.h"

#include "coin/IpReturnCodes.hpp"

namespace zorvan::nlp {

void record_ipopt_status(int status, int stop_reason, bool feasible, StageResult &r) {
  r.nlpsolverstatus = status;
  r.stopstatus = ZRVS_STOP_NONE;
  r.solvestatus = ZRVS_SOLVESTATUS_COMPLETED;
  switch (status) {
    case Ipopt::Solve_Succeeded:
    case Ipopt::Solved_To_Acceptable_Level:
    case Ipopt::Feasible_Point_Found:
      // A point meeting the first-order conditions: a local optimum.
      r.nlpstatus = ZSLP_NLP_LOCALLY_OPTIMAL;
      r.lpstatus = ZRVS_LP_OPTIMAL;
      r.solstatus = ZRVS_SOLSTATUS_OPTIMAL;
      r.stopstatus = ZRVS_STOP_SOLVECOMPLETE;
      return;
    case Ipopt::Infeasible_Problem_Detected:
      // Converged to a point that minimises the violation locally.
      r.nlpstatus = ZSLP_NLP_LOCALLY_INFEASIBLE;
      r.lpstatus = ZRVS_LP_INFEAS;
      r.solstatus = ZRVS_SOLSTATUS_INFEASIBLE;
      return;
    case Ipopt::Diverging_Iterates:
      r.nlpstatus = ZSLP_NLP_UNBOUNDED;
      r.lpstatus = ZRVS_LP_UNBOUNDED;
      r.solstatus = ZRVS_SOLSTATUS_UNBOUNDED;
      return;
    case Ipopt::Maximum_Iterations_Exceeded:
    case Ipopt::Maximum_CpuTime_Exceeded:
    case Ipopt::User_Requested_Stop:
    case Ipopt::Restoration_Failed:
    case Ipopt::Search_Direction_Becomes_Too_Small:
    case Ipopt::Error_In_Step_Computation:
      // Stopped short of a verdict: by a limit, a request, or because no
      // further progress could be made from where it stands.
      r.nlpstatus = ZSLP_NLP_UNFINISHED;
      r.lpstatus = ZRVS_LP_UNFINISHED;
      r.solvestatus = ZRVS_SOLVESTATUS_STOPPED;
      r.solstatus = feasible ? ZRVS_SOLSTATUS_FEASIBLE : ZRVS_SOLSTATUS_NOTFOUND;
      if (status == Ipopt::Maximum_Iterations_Exceeded)
        r.stopstatus = ZRVS_STOP_ITERLIMIT;
      else if (status == Ipopt::Maximum_CpuTime_Exceeded)
        r.stopstatus = ZRVS_STOP_TIMELIMIT;
      else if (status == Ipopt::User_Requested_Stop)
        r.stopstatus = stop_reason != ZRVS_STOP_NONE ? stop_reason : ZRVS_STOP_USER;
      else
        r.stopstatus = ZRVS_STOP_NUMERICALERROR;
      return;
    default:
      // The problem could not be solved at all (bad numbers from an
      // evaluation, too few degrees of freedom, an internal error).
      r.nlpstatus = ZSLP_NLP_UNFINISHED;
      r.lpstatus = ZRVS_LP_UNSOLVED;
      r.solvestatus = ZRVS_SOLVESTATUS_FAILED;
      r.solstatus = ZRVS_SOLSTATUS_NOTFOUND;
      r.stopstatus = ZRVS_STOP_GENERICERROR;
      return;
  }
}

const char *ipopt_status_text(int status) {
  switch (status) {
    case Ipopt::Solve_Succeeded: return "optimal solution found";
    case Ipopt::Solved_To_Acceptable_Level: return "solved to the acceptable tolerance";
    case Ipopt::Infeasible_Problem_Detected: return "converged to a point of local infeasibility";
    case Ipopt::Search_Direction_Becomes_Too_Small: return "search direction became too small";
    case Ipopt::Diverging_Iterates: return "iterates diverging: the problem may be unbounded";
    case Ipopt::User_Requested_Stop: return "stopped on request";
    case Ipopt::Feasible_Point_Found: return "feasible point found";
    case Ipopt::Maximum_Iterations_Exceeded: return "maximum number of iterations exceeded";
    case Ipopt::Restoration_Failed: return "restoration phase failed";
    case Ipopt::Error_In_Step_Computation: return "error in step computation";
    case Ipopt::Maximum_CpuTime_Exceeded: return "maximum CPU time exceeded";
    case Ipopt::Not_Enough_Degrees_Of_Freedom:
      return "too few degrees of freedom (more equality rows than free columns)";
    case Ipopt::Invalid_Problem_Definition: return "invalid problem definition";
    case Ipopt::Invalid_Option: return "invalid option";
    case Ipopt::Invalid_Number_Detected:
      return "an evaluation gave an invalid number (NaN or infinity)";
    case Ipopt::Unrecoverable_Exception: return "unrecoverable exception";
    case Ipopt::NonIpopt_Exception_Thrown: return "exception thrown during an evaluation";
    case Ipopt::Insufficient_Memory: return "insufficient memory";
    case Ipopt::Internal_Error: return "internal error";
  }
  return "unknown return code";
}

}  // namespace zorvan::nlp
