// The nonlinear companion's controls and attributes.
#include "nlp/slp_problem.h"

namespace zorvan {

namespace {
std::vector<CatalogueEntry> build() {
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
  };
}

}  // namespace

const Catalogue &slp_catalogue() {
  static const Catalogue *catalogue = new Catalogue(build());
  return *catalogue;
}

const CatalogueLists &slp_catalogue_lists() {
  static const CatalogueLists *lists = new CatalogueLists(&slp_catalogue(), slp_flags, "");
  return *lists;
}

// The local nonlinear solver's own options join this list when that solver
// is linked; until then the list is empty.
const CatalogueLists &local_solver_catalogue_lists() {
  static const CatalogueLists *lists = new CatalogueLists(nullptr, slp_flags, "");
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
