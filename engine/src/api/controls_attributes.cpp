// Entry points of the catalogue, the controls and the attributes.
#include "api/control_outputs.h"
#include "problem/attributes.h"
#include "problem/problem.h"

using namespace zorvan;

namespace {

int info(ZRVSprob prob, const char *who, bool control, const char *name, int *id, int *type) {
  return problem_call(prob, who, [&](zrvs_problem &) {
    require(name, "name", who);
    require(id, "id", who);
    require(type, "type", who);
    const CatalogueEntry *e = main_catalogue().find(name);
    bool found = e && e->control == control;
    *id = found ? e->id : 0;
    *type = found ? type_code(*e) : ZRVS_TYPE_NOTDEFINED;
  });
}

}  // namespace

extern "C" {

int ZRVSgetcalist_c(const int **ids, const char *const **names, const int **flags) {
  return global_call([&] {
    require(ids, "ids", "ZRVSgetcalist_c");
    require(names, "names", "ZRVSgetcalist_c");
    require(flags, "flags", "ZRVSgetcalist_c");
    *ids = main_catalogue_lists().ids.data();
    *names = main_catalogue_lists().names.data();
    *flags = main_catalogue_lists().flags.data();
  });
}

int ZRVSgetcalist_d(const int **ids, const int **flags) {
  return global_call([&] {
    require(ids, "ids", "ZRVSgetcalist_d");
    require(flags, "flags", "ZRVSgetcalist_d");
    *ids = main_catalogue_lists().ids.data();
    *flags = main_catalogue_lists().flags.data();
  });
}

int ZRVSgetcontrolinfo(ZRVSprob prob, const char *name, int *id, int *type) {
  return info(prob, "ZRVSgetcontrolinfo", true, name, id, type);
}

int ZRVSgetattribinfo(ZRVSprob prob, const char *name, int *id, int *type) {
  return info(prob, "ZRVSgetattribinfo", false, name, id, type);
}

int ZRVSgetintcontrol(ZRVSprob prob, int control, int *value) {
  return problem_call(prob, "ZRVSgetintcontrol", [&](zrvs_problem &p) {
    get_int_control(p.controls, control, value, "ZRVSgetintcontrol64", "ZRVSgetintcontrol");
  });
}

int ZRVSgetintcontrol64(ZRVSprob prob, int control, int64_t *value) {
  return problem_call(prob, "ZRVSgetintcontrol64", [&](zrvs_problem &p) {
    require(value, "value", "ZRVSgetintcontrol64");
    *value = p.controls.get_int(control, "ZRVSgetintcontrol64");
  });
}

int ZRVSgetdblcontrol(ZRVSprob prob, int control, double *value) {
  return problem_call(prob, "ZRVSgetdblcontrol", [&](zrvs_problem &p) {
    get_dbl_control(p.controls, control, value, "ZRVSgetdblcontrol");
  });
}

int ZRVSgetstrcontrol(ZRVSprob prob, int control, char *value) {
  return problem_call(prob, "ZRVSgetstrcontrol", [&](zrvs_problem &p) {
    get_str_control(p.controls, control, value, "ZRVSgetstrcontrol");
  });
}

int ZRVSgetstringcontrol(ZRVSprob prob, int control, char *value, int maxbytes, int *nbytes) {
  return problem_call(prob, "ZRVSgetstringcontrol", [&](zrvs_problem &p) {
    put_sized_text(p.controls.get_str(control, "ZRVSgetstringcontrol"), value, maxbytes, nbytes);
  });
}

int ZRVSsetintcontrol(ZRVSprob prob, int control, int value) {
  return problem_call(prob, "ZRVSsetintcontrol", [&](zrvs_problem &p) {
    p.controls.set_int(control, value, "ZRVSsetintcontrol");
  });
}

int ZRVSsetintcontrol64(ZRVSprob prob, int control, int64_t value) {
  return problem_call(prob, "ZRVSsetintcontrol64", [&](zrvs_problem &p) {
    p.controls.set_int(control, value, "ZRVSsetintcontrol64");
  });
}

int ZRVSsetdblcontrol(ZRVSprob prob, int control, double value) {
  return problem_call(prob, "ZRVSsetdblcontrol", [&](zrvs_problem &p) {
    p.controls.set_dbl(control, value, "ZRVSsetdblcontrol");
  });
}

int ZRVSsetstrcontrol(ZRVSprob prob, int control, const char *value) {
  return problem_call(prob, "ZRVSsetstrcontrol", [&](zrvs_problem &p) {
    p.controls.set_str(control, value, "ZRVSsetstrcontrol");
  });
}

int ZRVSsetdefaults(ZRVSprob prob) {
  return problem_call(prob, "ZRVSsetdefaults", [&](zrvs_problem &p) { p.controls.reset(); });
}

int ZRVSsetdefaultcontrol(ZRVSprob prob, int control) {
  return problem_call(prob, "ZRVSsetdefaultcontrol", [&](zrvs_problem &p) {
    p.controls.reset_control(control, "ZRVSsetdefaultcontrol");
  });
}

int ZRVScopycontrols(ZRVSprob dest, ZRVSprob src) {
  return problem_call(dest, "ZRVScopycontrols", [&](zrvs_problem &d) {
    check_problem_handle(src, "ZRVScopycontrols (source)");
    d.controls = src->controls;
  });
}

int ZRVSgetintattrib(ZRVSprob prob, int attrib, int *value) {
  return problem_call(prob, "ZRVSgetintattrib", [&](zrvs_problem &p) {
    require(value, "value", "ZRVSgetintattrib");
    *value = fit_in_32_bits(int_attribute(p, attrib, "ZRVSgetintattrib"), "attribute", attrib,
                            "ZRVSgetintattrib64", "ZRVSgetintattrib");
  });
}

int ZRVSgetintattrib64(ZRVSprob prob, int attrib, int64_t *value) {
  return problem_call(prob, "ZRVSgetintattrib64", [&](zrvs_problem &p) {
    require(value, "value", "ZRVSgetintattrib64");
    *value = int_attribute(p, attrib, "ZRVSgetintattrib64");
  });
}

int ZRVSgetdblattrib(ZRVSprob prob, int attrib, double *value) {
  return problem_call(prob, "ZRVSgetdblattrib", [&](zrvs_problem &p) {
    require(value, "value", "ZRVSgetdblattrib");
    *value = dbl_attribute(p, attrib, "ZRVSgetdblattrib");
  });
}

int ZRVSgetstrattrib(ZRVSprob prob, int attrib, char *value) {
  return problem_call(prob, "ZRVSgetstrattrib", [&](zrvs_problem &p) {
    require(value, "value", "ZRVSgetstrattrib");
    copy_text(str_attribute(p, attrib, "ZRVSgetstrattrib"), value, ZRVS_MAXSTRINGLENGTH);
  });
}

int ZRVSgetstringattrib(ZRVSprob prob, int attrib, char *value, int maxbytes, int *nbytes) {
  return problem_call(prob, "ZRVSgetstringattrib", [&](zrvs_problem &p) {
    put_sized_text(str_attribute(p, attrib, "ZRVSgetstringattrib"), value, maxbytes, nbytes);
  });
}

}  // extern "C"
