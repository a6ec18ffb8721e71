// The nonlinear companion's controls and attributes.
#include "nlp/ipopt/options.h"
#include "nlp/slp_problem.h"

namespace zorvan {

namespace {
// The companion's own entries.
std::vector<CatalogueEntry> own_entries() {
  CatalogueEntry presolve{ZSLP_PRESOLVE, "zslp_presolve", ValueType::integer, true};
  presolve.int_default = 1, presolve.int_min = 0, presolve.int_max = 1;
  CatalogueEntry postsolve{ZSLP_POSTSOLVE, "zslp_postsolve", ValueType::integer, true};
  postsolve.int_default = 0, postsolve.int_min = 0, postsolve.int_max = 1;
  CatalogueEntry objsense{ZSLP_OBJSENSE, "zslp_objsense", ValueType::real, true};
  objsense.dbl_default = 1.0, objsense.dbl_min = -1.0, objsense.dbl_max = 1.0;
  return {
      presolve,
      postsolve,
      objsense,
      {ZSLP_ORIGINALROWS, "zslp_originalrows", ValueType::integer, false},
      {ZSLP_ORIGINALCOLS, "zslp_originalcols", ValueType::integer, false},
      {ZSLP_COEFFICIENTS, "zslp_coefficients", ValueType::integer, false},
      {ZSLP_NLPSTATUS, "zslp_nlpstatus", ValueType::integer, false},
      {ZSLP_OBJVAL, "zslp_objval", ValueType::real, false},
      {ZSLP_ZRVSPROB, "zslp_zrvsprob", ValueType::pointer, false},
      {ZSLP_NLPITER, "zslp_nlpiter", ValueType::integer, false},
      {ZSLP_NLPSOLVETIME, "zslp_nlpsolvetime", ValueType::real, false},
      {ZSLP_NLPEVALTIME, "zslp_nlpevaltime", ValueType::real, false},
      {ZSLP_NLPSOLVERSTATUS, "zslp_nlpsolverstatus", ValueType::integer, false},
  };
}

}  // namespace

// Both lists in one catalogue, so that a nonlinear problem keeps the values
// of both and ZSLPcontrolcode finds every name.
const Catalogue &slp_catalogue() {
  static const Catalogue *catalogue = [] {
    std::vector<CatalogueEntry> all = own_entries();
    const auto &local = nlp::ipopt_catalogue_entries();
    all.insert(all.end(), local.begin(), local.end());
    return new Catalogue(std::move(all));
  }();
  return *catalogue;
}

const CatalogueLists &slp_catalogue_lists() {
  static const Catalogue *own = new Catalogue(own_entries());
  static const CatalogueLists *lists = new CatalogueLists(own, slp_flags, "");
  return *lists;
}

// The interior-point solver's controls.
const CatalogueLists &local_solver_catalogue_lists() {
  static const Catalogue *local = new Catalogue(nlp::ipopt_catalogue_entries());
  static const CatalogueLists *lists = new CatalogueLists(local, slp_flags, "");
  return *lists;
}

int slp_flags(const CatalogueEntry &e) {
  int flags = e.control ? ZSLP_CAFLAG_CONTROL : 0;
  switch (e.type) {
    case ValueType::integer:
    case ValueType::integer64: return flags | ZSLP_CAFLAG_INT;
    case ValueType::real: return flags | ZSLP_CAFLAG_DOUBLE;
    case ValueType::string: return flags | ZSLP_CAFLAG_STRING;
    case ValueType::pointer: return flags | ZSLP_CAFLAG_POINTER;
  }
  return flags;
}

}  // namespace zorvan
