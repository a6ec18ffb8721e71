// The interior-point solver's controls: their catalogue rows (the local
// solver's list) and how every control that concerns it, its own and the
// main problem's, becomes an Ipopt option.
#pragma once
#include <vector>

#include "core/catalogue.h"

namespace Ipopt {
class IpoptApplication;
}

struct zrvs_problem;

namespace zorvan::nlp {

// Catalogue rows of the solver's own controls (ZSLP_IPOPT_...).
const std::vector<CatalogueEntry> &ipopt_catalogue_entries();

// The nonlinear controls of p: its companion's, or the defaults when it has
// none.
const ControlValues &nonlinear_controls(const zrvs_problem &p);

// Sets every option of app from the controls of p; the journal named
// `journal` gets the log level. Throws zorvan::Error when Ipopt refuses a
// value.
void apply_ipopt_options(Ipopt::IpoptApplication &app, const zrvs_problem &p,
                         const char *journal);

}  // namespace zorvan::nlp
