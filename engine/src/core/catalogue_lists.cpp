// Catalogues as the parallel arrays that the C interface hands out, and the
// flags and type codes of main catalogue entries.
#include "core/catalogue.h"

#include "zorvan/zrvs.h"

namespace zorvan {

CatalogueLists::CatalogueLists(const Catalogue *catalogue,
                               int (*flags_of)(const CatalogueEntry &), const char *end_name) {
  if (catalogue)
    for (const CatalogueEntry &e : catalogue->entries()) {
      ids.push_back(e.id);
      flags.push_back(flags_of(e));
      names.push_back(e.name);
    }
  ids.push_back(0);
  flags.push_back(0);
  names.push_back(end_name);
}

int catalogue_flags(const CatalogueEntry &e) {
  int flags = e.control ? ZRVS_CAFLAG_CONTROL : 0;
  switch (e.type) {
    case ValueType::integer: flags |= ZRVS_CAFLAG_INT; break;
    case ValueType::integer64: flags |= ZRVS_CAFLAG_INT | ZRVS_CAFLAG_INT64; break;
    case ValueType::real: flags |= ZRVS_CAFLAG_DOUBLE; break;
    case ValueType::string: flags |= ZRVS_CAFLAG_STRING; break;
    case ValueType::pointer: break;
  }
  return flags;
}

int type_code(const CatalogueEntry &e) {
  switch (e.type) {
    case ValueType::integer: return ZRVS_TYPE_INT;
    case ValueType::integer64: return ZRVS_TYPE_INT64;
    case ValueType::real: return ZRVS_TYPE_DOUBLE;
    case ValueType::string: return ZRVS_TYPE_STRING;
    case ValueType::pointer: break;
  }
  return ZRVS_TYPE_NOTDEFINED;
}

const CatalogueLists &main_catalogue_lists() {
  static const CatalogueLists *lists =
      new CatalogueLists(&main_catalogue(), catalogue_flags, nullptr);
  return *lists;
}

}  // namespace zorvan
