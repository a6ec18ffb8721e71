// Attribute values: each is computed from the problem's model and the
// results of its last solve.
#include "problem/attributes.h"

namespace zorvan {

namespace {

const CatalogueEntry &attribute_entry(int id, const char *who) {
  const CatalogueEntry *e = main_catalogue().find(id);
  if (!e) fail(ZRVS_ERR_UNKNOWNID, "%s: unknown attribute %d", who, id);
  if (e->control) fail(ZRVS_ERR_UNKNOWNID, "%s: %d (%s) is a control, not an attribute", who, id, e->name);
  return *e;
}

}  // namespace

int64_t int_attribute(const zrvs_problem &p, int id, const char *who) {
  const CatalogueEntry &e = attribute_entry(id, who);
  if (e.type != ValueType::integer && e.type != ValueType::integer64)
    fail(ZRVS_ERR_ARGUMENT, "%s: attribute %s is not an integer", who, e.name);
  const Model &m = p.model;
  if (p.progress.active) {
    switch (id) {
      case ZRVS_SIMPLEXITER: return p.progress.simplexiter;
      case ZRVS_BARITER: return p.progress.bariter;
      case ZRVS_NODES: return p.progress.nodes;
    }
  }
  switch (id) {
    case ZRVS_ROWS:
    case ZRVS_ORIGINALROWS: return m.rows();
    case ZRVS_COLS:
    case ZRVS_ORIGINALCOLS: return m.cols();
    case ZRVS_MIPENTS:
    case ZRVS_ORIGINALMIPENTS: return m.mipents();
    case ZRVS_ELEMS: return m.elems();
    case ZRVS_PROBNAMELENGTH: return static_cast<int64_t>(m.name.size());
    case ZRVS_LPSTATUS: return p.results.lpstatus;
    case ZRVS_MIPSTATUS: return p.results.mipstatus;
    case ZRVS_SOLSTATUS: return p.results.solstatus;
    case ZRVS_SOLVESTATUS: return p.results.solvestatus;
    case ZRVS_STOPSTATUS: return p.results.stopstatus;
    case ZRVS_SOLVEDOBJS: return p.results.solvedobjs;
    case ZRVS_OBJECTIVES: return static_cast<int64_t>(m.objectives.size());
    case ZRVS_SETS:
    case ZRVS_ORIGINALSETS: return m.sets();
    case ZRVS_QELEMS: return static_cast<int64_t>(m.qobj.size());
    case ZRVS_INDICATORS: return m.indicators();
    case ZRVS_QCONSTRAINTS: return static_cast<int64_t>(m.qrows.size());
    case ZRVS_QCELEMS: return m.qcelems();
    case ZRVS_SIMPLEXITER: return p.results.simplexiter;
    case ZRVS_BARITER: return p.results.bariter;
    case ZRVS_NODES: return p.results.nodes;
    // The engine keeps no spare rows; general constraints are not part of
    // the stored model yet.
    case ZRVS_SPAREROWS:
    case ZRVS_GENCONS: return 0;
  }
  fail(ZRVS_ERR_INTERNAL, "%s: attribute %s has no value", who, e.name);
}

double dbl_attribute(const zrvs_problem &p, int id, const char *who) {
  const CatalogueEntry &e = attribute_entry(id, who);
  if (e.type != ValueType::real)
    fail(ZRVS_ERR_ARGUMENT, "%s: attribute %s is not a double", who, e.name);
  if (p.progress.active) {
    switch (id) {
      case ZRVS_LPOBJVAL: return p.progress.lpobjval;
      case ZRVS_MIPOBJVAL: return p.progress.mipobjval;
      case ZRVS_BESTBOUND: return p.progress.bestbound;
      case ZRVS_MIPGAP: return p.progress.mipgap;
    }
  }
  switch (id) {
    case ZRVS_LPOBJVAL: return p.results.lpobjval;
    case ZRVS_MIPOBJVAL: return p.results.mipobjval;
    case ZRVS_OBJSENSE: return p.model.objsense;
    case ZRVS_BESTBOUND: return p.results.bestbound;
    case ZRVS_MIPGAP: return p.results.mipgap;
    case ZRVS_SOLVETIME: return p.results.solvetime;
  }
  fail(ZRVS_ERR_INTERNAL, "%s: attribute %s has no value", who, e.name);
}

std::string str_attribute(const zrvs_problem &p, int id, const char *who) {
  const CatalogueEntry &e = attribute_entry(id, who);
  if (e.type != ValueType::string)
    fail(ZRVS_ERR_ARGUMENT, "%s: attribute %s is not a string", who, e.name);
  switch (id) {
    case ZRVS_PROBNAME: return p.model.name;
  }
  fail(ZRVS_ERR_INTERNAL, "%s: attribute %s has no value", who, e.name);
}

}  // namespace zorvan
