#include "nlp/ipopt/options.h"

#include <algorithm>
#include <limits>

#include "coin/IpIpoptApplication.hpp"
#include "core/errors.h"
#include "nlp/slp_problem.h"

namespace zorvan::nlp {

namespace {

constexpr const char *kWho = "optimize";
constexpr int64_t kIntMax = std::numeric_limits<int>::max();

CatalogueEntry dbl_control(int id, const char *name, double def, double lo, double hi) {
  CatalogueEntry e{id, name, ValueType::real, true};
  e.dbl_default = def, e.dbl_min = lo, e.dbl_max = hi;
  return e;
}
CatalogueEntry int_control(int id, const char *name, int64_t def, int64_t lo, int64_t hi) {
  CatalogueEntry e{id, name, ValueType::integer, true};
  e.int_default = def, e.int_min = lo, e.int_max = hi;
  return e;
}

// What a converter reads: the main problem's controls and the nonlinear ones.
struct Controls {
  const ControlValues &main, &nonlinear;
};

void check(bool accepted, const char *option) {
  if (!accepted) fail(ZRVS_ERR_INTERNAL, "%s: Ipopt refused the value of option %s", kWho, option);
}

using Convert = void (*)(Ipopt::IpoptApplication &app, const char *option, int control,
                         const Controls &c, const char *journal);

void real(Ipopt::IpoptApplication &app, const char *option, int control, const Controls &c,
          const char *) {
  check(app.Options()->SetNumericValue(option, c.nonlinear.get_dbl(control, kWho)), option);
}
// The solver's own limit, and the main problem's barrier iteration limit.
void iterations(Ipopt::IpoptApplication &app, const char *option, int control,
                const Controls &c, const char *) {
  int64_t v = std::min(c.nonlinear.get_int(control, kWho), c.main.get_int(ZRVS_BARITERLIMIT, kWho));
  check(app.Options()->SetIntegerValue(option, static_cast<int>(std::min(v, kIntMax))), option);
}
void mu_strategy(Ipopt::IpoptApplication &app, const char *option, int control,
                 const Controls &c, const char *) {
  check(app.Options()->SetStringValue(option,
                                      c.nonlinear.get_int(control, kWho) ? "adaptive" : "monotone"),
        option);
}
// Seconds of CPU time; the wall-clock limit is kept by the solve's own
// check at every iteration.
void time_limit(Ipopt::IpoptApplication &app, const char *option, int control,
                const Controls &c, const char *) {
  double v = c.main.get_dbl(control, kWho);
  check(app.Options()->SetNumericValue(option, std::max(v, 1e-6)), option);
}
// The log reaches the problem's messages from outputlog 2 on, at the
// solver's print level.
void log_level(Ipopt::IpoptApplication &app, const char *, int control, const Controls &c,
               const char *journal) {
  int level = c.main.get_int(control, kWho) >= 2
                  ? static_cast<int>(c.nonlinear.get_int(ZSLP_IPOPT_PRINTLEVEL, kWho))
                  : 0;
  Ipopt::SmartPtr<Ipopt::Journal> j = app.Jnlst()->GetJournal(journal);
  if (Ipopt::IsValid(j)) j->SetAllPrintLevels(static_cast<Ipopt::EJournalLevel>(level));
}
// Read by the solve itself (starting point), not by Ipopt.
void by_the_solve(Ipopt::IpoptApplication &, const char *, int, const Controls &,
                  const char *) {}

struct IpoptControl {
  int control;
  const char *option;  // the Ipopt option it sets, or what it governs
  Convert convert;
};

const IpoptControl kIpoptControls[] = {
    {ZSLP_IPOPT_TOL, "tol", real},
    {ZSLP_IPOPT_ACCEPTABLETOL, "acceptable_tol", real},
    {ZSLP_IPOPT_MAXITER, "max_iter", iterations},
    {ZSLP_IPOPT_MUSTRATEGY, "mu_strategy", mu_strategy},
    {ZSLP_IPOPT_CONSTRVIOLTOL, "constr_viol_tol", real},
    {ZSLP_IPOPT_PRINTLEVEL, "print level of the log", by_the_solve},
    {ZSLP_IPOPT_WARMSTART, "starting point and multipliers", by_the_solve},
    {ZRVS_TIMELIMIT, "max_cpu_time", time_limit},
    {ZRVS_OUTPUTLOG, "log journal", log_level},
};

}  // namespace

const std::vector<CatalogueEntry> &ipopt_catalogue_entries() {
  static const std::vector<CatalogueEntry> *entries = new std::vector<CatalogueEntry>{
      dbl_control(ZSLP_IPOPT_TOL, "ipopt_tol", 1e-8, 1e-14, 1.0),
      dbl_control(ZSLP_IPOPT_ACCEPTABLETOL, "ipopt_acceptabletol", 1e-6, 1e-14, 1.0),
      int_control(ZSLP_IPOPT_MAXITER, "ipopt_maxiter", 3000, 0, kIntMax),
      int_control(ZSLP_IPOPT_PRINTLEVEL, "ipopt_printlevel", 5, 0, 12),
      int_control(ZSLP_IPOPT_MUSTRATEGY, "ipopt_mustrategy", 0, 0, 1),
      dbl_control(ZSLP_IPOPT_CONSTRVIOLTOL, "ipopt_constrviol", 1e-4, 1e-14, 1e10),
      int_control(ZSLP_IPOPT_WARMSTART, "ipopt_warmstart", 1, 0, 1),
  };
  return *entries;
}

const ControlValues &nonlinear_controls(const zrvs_problem &p) {
  static const ControlValues *defaults = new ControlValues(slp_catalogue());
  return p.slp ? p.slp->controls : *defaults;
}

void apply_ipopt_options(Ipopt::IpoptApplication &app, const zrvs_problem &p,
                         const char *journal) {
  Ipopt::OptionsList &o = *app.Options();
  // The engine's infinity is 1e20; the banner stays off; the Hessian is exact.
  check(o.SetNumericValue("nlp_lower_bound_inf", -ZRVS_PLUSINFINITY), "nlp_lower_bound_inf");
  check(o.SetNumericValue("nlp_upper_bound_inf", ZRVS_PLUSINFINITY), "nlp_upper_bound_inf");
  check(o.SetStringValue("sb", "yes"), "sb");
  check(o.SetStringValue("hessian_approximation", "exact"), "hessian_approximation");
  check(o.SetIntegerValue("print_level", 0), "print_level");
  const Controls c{p.controls, nonlinear_controls(p)};
  for (const IpoptControl &row : kIpoptControls) row.convert(app, row.option, row.control, c, journal);
}

}  // namespace zorvan::nlp
