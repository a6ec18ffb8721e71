// Entry points of the nonlinear companion's catalogue, controls and attributes.
#include "api/control_outputs.h"
#include "nlp/slp_problem.h"

using namespace zorvan;

extern "C" {

int ZSLPgetcalist(const int **ids, const char *const **names) {
  return global_call([&] {
    require(ids, "ids", "ZSLPgetcalist");
    require(names, "names", "ZSLPgetcalist");
    *ids = slp_catalogue_lists().ids.data();
    *names = slp_catalogue_lists().names.data();
  });
}

int ZSLPgetKTRcalist(const int **ids, const char *const **names) {
  return global_call([&] {
    require(ids, "ids", "ZSLPgetKTRcalist");
    require(names, "names", "ZSLPgetKTRcalist");
    *ids = local_solver_catalogue_lists().ids.data();
    *names = local_solver_catalogue_lists().names.data();
  });
}

int ZSLPcontrolcode(const char *name, int *id, int *flags) {
  return global_call([&] {
    require(name, "name", "ZSLPcontrolcode");
    require(id, "id", "ZSLPcontrolcode");
    require(flags, "flags", "ZSLPcontrolcode");
    const CatalogueEntry *e = slp_catalogue().find(name);
    *id = e ? e->id : 0;
    *flags = e ? slp_flags(*e) : 0;
  });
}

int ZSLPgetintcontrol(ZSLPprob slp, int control, int *value) {
  return slp_call(slp, "ZSLPgetintcontrol", [&](zslp_problem &s) {
    get_int_control(s.controls, control, value, nullptr, "ZSLPgetintcontrol");
  });
}

int ZSLPsetintcontrol(ZSLPprob slp, int control, int value) {
  return slp_call(slp, "ZSLPsetintcontrol", [&](zslp_problem &s) {
    s.controls.set_int(control, value, "ZSLPsetintcontrol");
  });
}

int ZSLPgetdblcontrol(ZSLPprob slp, int control, double *value) {
  return slp_call(slp, "ZSLPgetdblcontrol", [&](zslp_problem &s) {
    get_dbl_control(s.controls, control, value, "ZSLPgetdblcontrol");
  });
}

int ZSLPsetdblcontrol(ZSLPprob slp, int control, double value) {
  return slp_call(slp, "ZSLPsetdblcontrol", [&](zslp_problem &s) {
    s.controls.set_dbl(control, value, "ZSLPsetdblcontrol");
  });
}

int ZSLPgetstrcontrol(ZSLPprob slp, int control, char *value) {
  return slp_call(slp, "ZSLPgetstrcontrol", [&](zslp_problem &s) {
    get_str_control(s.controls, control, value, "ZSLPgetstrcontrol");
  });
}

int ZSLPsetstrcontrol(ZSLPprob slp, int control, const char *value) {
  return slp_call(slp, "ZSLPsetstrcontrol", [&](zslp_problem &s) {
    s.controls.set_str(control, value, "ZSLPsetstrcontrol");
  });
}

int ZSLPsetdefaults(ZSLPprob slp) {
  return slp_call(slp, "ZSLPsetdefaults", [&](zslp_problem &s) { s.controls.reset(); });
}

int ZSLPgetintattrib(ZSLPprob slp, int attrib, int *value) {
  return slp_call(slp, "ZSLPgetintattrib", [&](zslp_problem &s) {
    require(value, "value", "ZSLPgetintattrib");
    *value = slp_int_attribute(s, attrib, "ZSLPgetintattrib");
  });
}

int ZSLPgetdblattrib(ZSLPprob slp, int attrib, double *value) {
  return slp_call(slp, "ZSLPgetdblattrib", [&](zslp_problem &s) {
    require(value, "value", "ZSLPgetdblattrib");
    *value = slp_dbl_attribute(s, attrib, "ZSLPgetdblattrib");
  });
}

int ZSLPgetstrattrib(ZSLPprob slp, int attrib, char *value) {
  return slp_call(slp, "ZSLPgetstrattrib", [&](zslp_problem &) {
    fail(ZRVS_ERR_UNKNOWNID, "ZSLPgetstrattrib: unknown string attribute %d", attrib);
  });
}

int ZSLPgetptrattrib(ZSLPprob slp, int attrib, void **value) {
  return slp_call(slp, "ZSLPgetptrattrib", [&](zslp_problem &s) {
    require(value, "value", "ZSLPgetptrattrib");
    *value = slp_ptr_attribute(s, attrib, "ZSLPgetptrattrib");
  });
}

}  // extern "C"
