// The main optimiser's controls and attributes. Each control here is read by
// the engine where it takes effect; each attribute is answered by
// attributes.cpp.
#include <limits>

#include "core/catalogue.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
constexpr int64_t kIntMax = std::numeric_limits<int>::max();
constexpr int64_t kInt64Max = std::numeric_limits<int64_t>::max();
constexpr double kInf = ZRVS_PLUSINFINITY;

CatalogueEntry int_control(int id, const char *name, int64_t def, int64_t lo, int64_t hi) {
  CatalogueEntry e{id, name, ValueType::integer, true};
  e.int_default = def, e.int_min = lo, e.int_max = hi;
  return e;
}
CatalogueEntry int64_control(int id, const char *name, int64_t def, int64_t lo, int64_t hi) {
  CatalogueEntry e = int_control(id, name, def, lo, hi);
  e.type = ValueType::integer64;
  return e;
}
CatalogueEntry dbl_control(int id, const char *name, double def, double lo, double hi) {
  CatalogueEntry e{id, name, ValueType::real, true};
  e.dbl_default = def, e.dbl_min = lo, e.dbl_max = hi;
  return e;
}
CatalogueEntry str_control(int id, const char *name, const char *def) {
  CatalogueEntry e{id, name, ValueType::string, true};
  e.str_default = def;
  return e;
}
CatalogueEntry attribute(int id, const char *name, ValueType type) {
  return CatalogueEntry{id, name, type, false};
}

std::vector<CatalogueEntry> build() {
  using V = ValueType;
  return {
      // Controls.
      dbl_control(ZRVS_FEASTOL, "feastol", 1e-7, 1e-10, 1e-1),
      dbl_control(ZRVS_OPTIMALITYTOL, "optimalitytol", 1e-7, 1e-10, 1e-1),
      dbl_control(ZRVS_MIPABSSTOP, "mipabsstop", 1e-6, 0.0, kInf),
      dbl_control(ZRVS_MIPRELSTOP, "miprelstop", 1e-4, 0.0, 1.0),
      dbl_control(ZRVS_MIPTOL, "miptol", 1e-6, 1e-10, 0.5),
      dbl_control(ZRVS_TIMELIMIT, "timelimit", kInf, 0.0, kInf),
      int64_control(ZRVS_LPITERLIMIT, "lpiterlimit", kIntMax, 0, kInt64Max),
      int64_control(ZRVS_MAXNODE, "maxnode", kIntMax, 0, kInt64Max),
      int_control(ZRVS_DEFAULTALG, "defaultalg", 1, 1, 4),
      int_control(ZRVS_RANDOMSEED, "randomseed", 0, 0, kIntMax),
      int_control(ZRVS_PRESOLVE, "presolve", 1, 0, 1),
      int_control(ZRVS_OUTPUTLOG, "outputlog", 1, 0, 4),
      int_control(ZRVS_THREADS, "threads", -1, -1, 1024),
      str_control(ZRVS_OUTPUTPREFIX, "outputprefix", ""),
      dbl_control(ZRVS_MIPABSCUTOFF, "mipabscutoff", kInf, -kInf, kInf),
      dbl_control(ZRVS_BARGAPSTOP, "bargapstop", 1e-8, 1e-12, 1e-1),
      int_control(ZRVS_BARITERLIMIT, "bariterlimit", kIntMax, 0, kIntMax),
      int_control(ZRVS_MAXMIPSOL, "maxmipsol", 0, 0, kIntMax),
      int_control(ZRVS_CROSSOVER, "crossover", 1, 0, 1),
      dbl_control(ZRVS_HEUREMPHASIS, "heuremphasis", 0.05, 0.0, 1.0),
      int_control(ZRVS_SYMMETRY, "symmetry", 1, 0, 1),
      int_control(ZRVS_SCALING, "scaling", 1, 0, 1),
      int_control(ZRVS_MIPSEARCH, "mipsearch", 0, 0, 1),
      // Targets of the gapnotify callback; the defaults arm nothing.
      dbl_control(ZRVS_MIPRELGAPNOTIFY, "miprelgapnotify", -1.0, -1.0, kInf),
      dbl_control(ZRVS_MIPABSGAPNOTIFY, "mipabsgapnotify", -1.0, -1.0, kInf),
      dbl_control(ZRVS_MIPABSGAPNOTIFYOBJ, "mipabsgapnotifyobj", kInf, -kInf, kInf),
      dbl_control(ZRVS_MIPABSGAPNOTIFYBOUND, "mipabsgapnotifybound", kInf, -kInf, kInf),
      // Attributes.
      attribute(ZRVS_ROWS, "rows", V::integer),
      attribute(ZRVS_SETS, "sets", V::integer),
      attribute(ZRVS_LPSTATUS, "lpstatus", V::integer),
      attribute(ZRVS_MIPSTATUS, "mipstatus", V::integer),
      attribute(ZRVS_COLS, "cols", V::integer),
      attribute(ZRVS_SPAREROWS, "sparerows", V::integer),
      attribute(ZRVS_ORIGINALSETS, "originalsets", V::integer),
      attribute(ZRVS_QELEMS, "qelems", V::integer),
      attribute(ZRVS_MIPENTS, "mipents", V::integer),
      attribute(ZRVS_SOLSTATUS, "solstatus", V::integer),
      attribute(ZRVS_STOPSTATUS, "stopstatus", V::integer),
      attribute(ZRVS_ORIGINALROWS, "originalrows", V::integer),
      attribute(ZRVS_PROBNAMELENGTH, "probnamelength", V::integer),
      attribute(ZRVS_ORIGINALMIPENTS, "originalmipents", V::integer),
      attribute(ZRVS_ORIGINALCOLS, "originalcols", V::integer),
      attribute(ZRVS_INDICATORS, "indicators", V::integer),
      attribute(ZRVS_GENCONS, "gencons", V::integer),
      attribute(ZRVS_SOLVESTATUS, "solvestatus", V::integer),
      attribute(ZRVS_SOLVEDOBJS, "solvedobjs", V::integer),
      attribute(ZRVS_OBJECTIVES, "objectives", V::integer),
      attribute(ZRVS_SIMPLEXITER, "simplexiter", V::integer),
      attribute(ZRVS_BARITER, "bariter", V::integer),
      attribute(ZRVS_QCONSTRAINTS, "qconstraints", V::integer),
      attribute(ZRVS_QCELEMS, "qcelems", V::integer),
      attribute(ZRVS_PWLCONS, "pwlcons", V::integer),
      attribute(ZRVS_ELEMS, "elems", V::integer64),
      attribute(ZRVS_NODES, "nodes", V::integer64),
      attribute(ZRVS_BESTBOUND, "bestbound", V::real),
      attribute(ZRVS_MIPGAP, "mipgap", V::real),
      attribute(ZRVS_SOLVETIME, "solvetime", V::real),
      attribute(ZRVS_LPOBJVAL, "lpobjval", V::real),
      attribute(ZRVS_MIPOBJVAL, "mipobjval", V::real),
      attribute(ZRVS_OBJSENSE, "objsense", V::real),
      attribute(ZRVS_PROBNAME, "probname", V::string),
  };
}
}  // namespace

const Catalogue &main_catalogue() {
  static const Catalogue *catalogue = new Catalogue(build());
  return *catalogue;
}

}  // namespace zorvan
