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
      {ZSLP_NLPSTATUS, "zslp_nlpstatus", ValueType::integer, false},
      {ZSLP_OBJVAL, "zslp_objval", ValueType::real, false},
      {ZSLP_ZRVSPROB, "zslp_zrvsprob", ValueType::pointer, false},
  };
}

// Parallel arrays of identifiers and names ending with an empty name.
struct NameList {
  std::vector<int> ids;
  std::vector<const char *> names;
  explicit NameList(const Catalogue *catalogue) {
    if (catalogue)
      for (const CatalogueEntry &e : catalogue->entries()) {
        ids.push_back(e.id);
        names.push_back(e.name);
      }
    ids.push_back(0);
    names.push_back("");
  }
};
}  // namespace

const Catalogue &slp_catalogue() {
  static const Catalogue *catalogue = new Catalogue(build());
  return *catalogue;
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

using namespace zorvan;

extern "C" {

int ZSLPgetcalist(const int **ids, const char *const **names) {
  return global_call([&] {
    if (!ids || !names) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetcalist: NULL argument");
    static const NameList *list = new NameList(&slp_catalogue());
    *ids = list->ids.data();
    *names = list->names.data();
  });
}

// The local nonlinear solver's own options join this list when that solver
// is linked; until then the list is empty.
int ZSLPgetKTRcalist(const int **ids, const char *const **names) {
  return global_call([&] {
    if (!ids || !names) fail(ZRVS_ERR_ARGUMENT, "ZSLPgetKTRcalist: NULL argument");
    static const NameList *list = new NameList(nullptr);
    *ids = list->ids.data();
    *names = list->names.data();
  });
}

int ZSLPcontrolcode(const char *name, int *id, int *flags) {
  return global_call([&] {
    if (!name || !id || !flags) fail(ZRVS_ERR_ARGUMENT, "ZSLPcontrolcode: NULL argument");
    const CatalogueEntry *e = slp_catalogue().find(name);
    *id = e ? e->id : 0;
    *flags = e ? slp_flags(*e) : 0;
  });
}

}  // extern "C"
