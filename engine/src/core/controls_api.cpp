// Catalogue lists and typed get/set of controls.
#include <vector>

#include "core/problem.h"

using namespace zorvan;

namespace {

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

// The catalogue as parallel arrays ending with identifier 0, built once.
struct CatalogueArrays {
  std::vector<int> ids, flags;
  std::vector<const char *> names;
  CatalogueArrays() {
    for (const CatalogueEntry &e : main_catalogue().entries()) {
      ids.push_back(e.id);
      flags.push_back(catalogue_flags(e));
      names.push_back(e.name);
    }
    ids.push_back(0);
    flags.push_back(0);
    names.push_back(nullptr);
  }
};

const CatalogueArrays &arrays() {
  static const CatalogueArrays *a = new CatalogueArrays();
  return *a;
}

int info(ZRVSprob prob, const char *who, bool control, const char *name, int *id, int *type) {
  return problem_call(prob, who, [&](zrvs_problem &) {
    if (!name || !id || !type) fail(ZRVS_ERR_ARGUMENT, "%s: NULL argument", who);
    const CatalogueEntry *e = main_catalogue().find(name);
    if (e && e->control == control) {
      *id = e->id;
      *type = type_code(*e);
    } else {
      *id = 0;
      *type = ZRVS_TYPE_NOTDEFINED;
    }
  });
}

template <class T>
void require_output(T *value, const char *who) {
  if (!value) fail(ZRVS_ERR_ARGUMENT, "%s: the output pointer is NULL", who);
}

}  // namespace

extern "C" {

int ZRVSgetcalist_c(const int **ids, const char *const **names, const int **flags) {
  return global_call([&] {
    if (!ids || !names || !flags) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetcalist_c: NULL argument");
    *ids = arrays().ids.data();
    *names = arrays().names.data();
    *flags = arrays().flags.data();
  });
}

int ZRVSgetcalist_d(const int **ids, const int **flags) {
  return global_call([&] {
    if (!ids || !flags) fail(ZRVS_ERR_ARGUMENT, "ZRVSgetcalist_d: NULL argument");
    *ids = arrays().ids.data();
    *flags = arrays().flags.data();
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
    require_output(value, "ZRVSgetintcontrol");
    int64_t v = p.controls.get_int(control, "ZRVSgetintcontrol");
    if (v > INT32_MAX || v < INT32_MIN)
      fail(ZRVS_ERR_ARGUMENT,
           "ZRVSgetintcontrol: the value of control %d does not fit in 32 bits; use "
           "ZRVSgetintcontrol64",
           control);
    *value = static_cast<int>(v);
  });
}

int ZRVSgetintcontrol64(ZRVSprob prob, int control, int64_t *value) {
  return problem_call(prob, "ZRVSgetintcontrol64", [&](zrvs_problem &p) {
    require_output(value, "ZRVSgetintcontrol64");
    *value = p.controls.get_int(control, "ZRVSgetintcontrol64");
  });
}

int ZRVSgetdblcontrol(ZRVSprob prob, int control, double *value) {
  return problem_call(prob, "ZRVSgetdblcontrol", [&](zrvs_problem &p) {
    require_output(value, "ZRVSgetdblcontrol");
    *value = p.controls.get_dbl(control, "ZRVSgetdblcontrol");
  });
}

int ZRVSgetstrcontrol(ZRVSprob prob, int control, char *value) {
  return problem_call(prob, "ZRVSgetstrcontrol", [&](zrvs_problem &p) {
    require_output(value, "ZRVSgetstrcontrol");
    copy_text(p.controls.get_str(control, "ZRVSgetstrcontrol"), value, ZRVS_MAXSTRINGLENGTH);
  });
}

int ZRVSgetstringcontrol(ZRVSprob prob, int control, char *value, int maxbytes, int *nbytes) {
  return problem_call(prob, "ZRVSgetstringcontrol", [&](zrvs_problem &p) {
    const std::string &text = p.controls.get_str(control, "ZRVSgetstringcontrol");
    if (nbytes) *nbytes = static_cast<int>(text.size()) + 1;
    if (value && maxbytes > 0) copy_text(text, value, static_cast<size_t>(maxbytes));
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
    int i = p.controls.catalogue().index_of(control);
    if (i < 0 || !p.controls.catalogue().entries()[i].control)
      fail(ZRVS_ERR_UNKNOWNID, "ZRVSsetdefaultcontrol: unknown control %d", control);
    p.controls.reset(i);
  });
}

int ZRVScopycontrols(ZRVSprob dest, ZRVSprob src) {
  return problem_call(dest, "ZRVScopycontrols", [&](zrvs_problem &d) {
    check_problem_handle(src, "ZRVScopycontrols (source)");
    d.controls = src->controls;
  });
}

}  // extern "C"
