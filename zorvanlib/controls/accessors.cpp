// The 2 x 3 table of control accessors: one row per source, one column per
// kind; the nonlinear companion's integers are 32-bit.
#include "controls/accessors.h"

#include "base/text.h"
#include "controls/control.h"

namespace zrv {

namespace {

struct Accessors {
  int (*get_int)(ZRVSprob, ZSLPprob, int, ControlValue &);
  int (*get_dbl)(ZRVSprob, ZSLPprob, int, ControlValue &);
  int (*get_str)(ZRVSprob, ZSLPprob, int, ControlValue &);
  int (*set_int)(ZRVSprob, ZSLPprob, int, const ControlValue &);
  int (*set_dbl)(ZRVSprob, ZSLPprob, int, const ControlValue &);
  int (*set_str)(ZRVSprob, ZSLPprob, int, const ControlValue &);
};

const Accessors kMainAccess = {
    [](ZRVSprob p, ZSLPprob, int id, ControlValue &v) { return ZRVSgetintcontrol64(p, id, &v.i); },
    [](ZRVSprob p, ZSLPprob, int id, ControlValue &v) { return ZRVSgetdblcontrol(p, id, &v.d); },
    [](ZRVSprob p, ZSLPprob, int id, ControlValue &v) {
      int nbytes = 0;
      return ZRVSgetstringcontrol(p, id, v.buf, sizeof v.buf, &nbytes);
    },
    [](ZRVSprob p, ZSLPprob, int id, const ControlValue &v) {
      return ZRVSsetintcontrol64(p, id, v.i);
    },
    [](ZRVSprob p, ZSLPprob, int id, const ControlValue &v) {
      return ZRVSsetdblcontrol(p, id, v.d);
    },
    [](ZRVSprob p, ZSLPprob, int id, const ControlValue &v) {
      return ZRVSsetstrcontrol(p, id, v.text);
    },
};

const Accessors kSlpAccess = {
    [](ZRVSprob, ZSLPprob s, int id, ControlValue &v) {
      int v32 = 0;
      int rc = ZSLPgetintcontrol(s, id, &v32);
      v.i = v32;
      return rc;
    },
    [](ZRVSprob, ZSLPprob s, int id, ControlValue &v) { return ZSLPgetdblcontrol(s, id, &v.d); },
    [](ZRVSprob, ZSLPprob s, int id, ControlValue &v) { return ZSLPgetstrcontrol(s, id, v.buf); },
    [](ZRVSprob, ZSLPprob s, int id, const ControlValue &v) {
      return ZSLPsetintcontrol(s, id, static_cast<int>(v.i));
    },
    [](ZRVSprob, ZSLPprob s, int id, const ControlValue &v) {
      return ZSLPsetdblcontrol(s, id, v.d);
    },
    [](ZRVSprob, ZSLPprob s, int id, const ControlValue &v) {
      return ZSLPsetstrcontrol(s, id, v.text);
    },
};

const Accessors &AccessOf(int source) { return source == kMain ? kMainAccess : kSlpAccess; }

}  // namespace

int GetControl(ZRVSprob prob, ZSLPprob slp, int source, int kind, int id, ControlValue &v) {
  const Accessors &a = AccessOf(source);
  if (kind == kInt) return a.get_int(prob, slp, id, v);
  if (kind == kReal) return a.get_dbl(prob, slp, id, v);
  int rc = a.get_str(prob, slp, id, v);
  v.buf[sizeof v.buf - 1] = '\0';
  v.text = v.buf;
  return rc;
}

int SetControl(ZRVSprob prob, ZSLPprob slp, int source, int kind, int id, const ControlValue &v) {
  const Accessors &a = AccessOf(source);
  if (kind == kInt) return a.set_int(prob, slp, id, v);
  if (kind == kReal) return a.set_dbl(prob, slp, id, v);
  return a.set_str(prob, slp, id, v);
}

PyObject *ControlValueObject(int kind, const ControlValue &v) {
  if (kind == kInt) return PyLong_FromLongLong(v.i);
  if (kind == kReal) return PyFloat_FromDouble(v.d);
  return TextFromEngine(v.text ? v.text : "");
}

}  // namespace zrv
