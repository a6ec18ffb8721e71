// The `constraint` type: a body between bounds, its identifier and bound
// codes in one word, with bounds and name beyond the codes in global maps.
#include "model/constraint.h"

#include <cstddef>
#include <cstring>

#include "model/expression.h"
#include "model/operand.h"
#include "model/var.h"
#include "model/word_store.h"
#include "base/arrays.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

#include <structmember.h>

namespace zrv {

PyTypeObject ConstraintType{};

// ---------------------------------------------------------------------------
// The store

namespace {

constexpr int kLbShift = 57;
constexpr uint64_t kLbCode = uint64_t{3} << kLbShift;
constexpr uint64_t kLbStored = uint64_t{1} << 59;
constexpr int kUbShift = 60;
constexpr uint64_t kUbCode = uint64_t{3} << kUbShift;
constexpr uint64_t kUbStored = uint64_t{1} << 62;
constexpr uint64_t kNameStored = uint64_t{1} << 63;

// Sentinels of bounds and right-hand side not given to the constructor.
constexpr double kLbUnset = -2e20;
constexpr double kUbUnset = 2e20;
constexpr double kRhsUnset = -2e20;

// Erases the constraint's map entries and clears its flags and codes.
void ReleaseStore(uint64_t &word) {
  uint64_t id = ConId(word);
  if ((word & kLbStored) && conLbMap) conLbMap->erase(id);
  if ((word & kUbStored) && conUbMap) conUbMap->erase(id);
  if (word & kNameStored) EraseName(conNameMap, id);
  word = id;
}

}  // namespace

double ConGetLb(uint64_t word) {
  switch ((word & kLbCode) >> kLbShift) {
    case 0: return -kInfinity;
    case 1: return 0.0;
    case 2: return 1.0;
    default: return StoredBound(conLbMap, ConId(word), -kInfinity);
  }
}

void ConSetLb(uint64_t &word, double v) {
  uint64_t code = v <= -kInfinity ? 0 : v == 0.0 ? 1 : v == 1.0 ? 2 : 3;
  StoreBound(word, ConId(word), kLbShift, kLbStored, conLbMap, code, v);
}

double ConGetUb(uint64_t word) {
  switch ((word & kUbCode) >> kUbShift) {
    case 0: return kInfinity;
    case 1: return 0.0;
    case 2: return 1.0;
    default: return StoredBound(conUbMap, ConId(word), kInfinity);
  }
}

void ConSetUb(uint64_t &word, double v) {
  uint64_t code = v >= kInfinity ? 0 : v == 0.0 ? 1 : v == 1.0 ? 2 : 3;
  StoreBound(word, ConId(word), kUbShift, kUbStored, conUbMap, code, v);
}

PyObject *ConGetName(uint64_t word) {
  PyObject *name = (word & kNameStored) ? StoredName(conNameMap, ConId(word)) : nullptr;
  if (name) return name;
  return PyUnicode_FromFormat("R%d", static_cast<int>(ConId(word)));
}

void ConSetName(uint64_t &word, PyObject *name) {
  if (StoreName(conNameMap, ConId(word), name)) word |= kNameStored;
}

// ---------------------------------------------------------------------------
// The type

namespace {

inline ConstraintObject *Con(PyObject *o) { return reinterpret_cast<ConstraintObject *>(o); }


// The allocation slot takes an identifier, which initialisation replaces.
PyObject *ConstraintAlloc(PyTypeObject *type, Py_ssize_t n) {
  PyObject *o = PyType_GenericAlloc(type, n);
  if (o) Con(o)->word = NextConId() & kConstraintIdMask;
  return o;
}

bool IsBodyKind(OperandKind k) { return k >= KindNumber && k <= KindNonlinear; }

int ConstraintInit(PyObject *self, PyObject *args, PyObject *kwds) {
  static const char *kwlist[] = {"constraint", "body", "lb", "ub", "sense", "rhs", "name", nullptr};
  ConstraintObject *c = Con(self);
  ReleaseStore(c->word);
  c->word = NextConId() & kConstraintIdMask;
  PyObject *source = nullptr, *body = nullptr, *name = nullptr;
  double lb = kLbUnset, ub = kUbUnset, rhs = kRhsUnset;
  long sense = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|OOddldO", const_cast<char **>(kwlist), &source,
                                   &body, &lb, &ub, &sense, &rhs, &name))
    return -1;
  if (source == Py_None) source = nullptr;
  if (name && name != Py_None) ConSetName(c->word, name);
  if (lb > ub + 1e-6) {
    PyErr_SetString(ModelError, "Constraint defined infeasible: lower bound > upper bound");
    return -1;
  }
  if (lb != kLbUnset) ConSetLb(c->word, lb);
  if (ub != kUbUnset) ConSetUb(c->word, ub);
  PyObject *element = nullptr;  // owned first element of an array body
  if (body && IsNumpyArray(body)) {
    element = PyObject_CallMethod(body, "item", "i", 0);
    if (!element) return -1;
    body = element;
  }
  if (body && !IsBodyKind(KindOf(body))) {
    Py_XDECREF(element);
    PyErr_SetString(ModelError, "Invalid expression passed as body of constraint");
    return -1;
  }
  if (!source) {
    bool noBounds = lb == kLbUnset && ub == kUbUnset;
    if (!body || (sense == 0 && noBounds)) {
      Py_XDECREF(element);
      PyErr_SetString(ModelError,
                      "Arguments required for zorvan.constraint(): constraint OR {body, lb "
                      "and/or ub} OR {body,sense,rhs}.");
      return -1;
    }
    if (rhs != kRhsUnset && !noBounds) {
      Py_XDECREF(element);
      PyErr_SetString(ModelError, "Cannot create constraint by specifying both rhs AND lb/ub.");
      return -1;
    }
    Py_INCREF(body);
    Py_XSETREF(c->body, body);
    if (rhs != kRhsUnset) {
      switch (sense) {
        case 1: ub = rhs; ConSetUb(c->word, rhs); break;
        case 2: lb = rhs; ConSetLb(c->word, rhs); break;
        case 3:
          lb = ub = rhs;
          ConSetLb(c->word, rhs);
          ConSetUb(c->word, rhs);
          break;
        default: break;
      }
    }
  } else {
    if (Py_TYPE(source) != &ConstraintType) {
      Py_XDECREF(element);
      PyErr_SetString(ModelError,
                      "Attempt to generate an empty constraint failed. Consider using "
                      "zorvan.constraint(body=..., sense=..., rhs=...) instead.");
      return -1;
    }
    ConstraintObject *s = Con(source);
    Py_XINCREF(s->body);
    Py_XSETREF(c->body, s->body);
    lb = ConGetLb(s->word);
    ub = ConGetUb(s->word);
    ConSetLb(c->word, lb);
    ConSetUb(c->word, ub);
  }
  Py_XDECREF(element);
  if (lb == kLbUnset) ConSetLb(c->word, -kInfinity);
  if (ub == kUbUnset) ConSetUb(c->word, kInfinity);
  return 0;
}

void ConstraintDealloc(PyObject *self) {
  ReleaseStore(Con(self)->word);
  Py_CLEAR(Con(self)->body);
  Py_TYPE(self)->tp_free(self);
}

PyObject *ConstraintStr(PyObject *self) {
  PyObject *name = ConGetName(Con(self)->word);
  if (!name || PyUnicode_CheckExact(name)) return name;
  PyObject *s = PyObject_Str(name);
  Py_DECREF(name);
  return s;
}

PyObject *ConstraintGetAttr(PyObject *self, PyObject *name) {
  const char *n = PyUnicode_Check(name) ? PyUnicode_AsUTF8(name) : nullptr;
  if (n) {
    uint64_t word = Con(self)->word;
    if (!std::strcmp(n, "lb")) return PyFloat_FromDouble(ConGetLb(word));
    if (!std::strcmp(n, "ub")) return PyFloat_FromDouble(ConGetUb(word));
    if (!std::strcmp(n, "name")) return ConGetName(word);
    if (!std::strcmp(n, "body")) {
      PyObject *b = Con(self)->body ? Con(self)->body : Py_None;
      Py_INCREF(b);
      return b;
    }
    if (!std::strcmp(n, "__class__")) {
      Py_INCREF(&ConstraintType);
      return reinterpret_cast<PyObject *>(&ConstraintType);
    }
    if (!std::strcmp(n, "__dict__")) {
      PyObject *d = PyDict_New();
      for (const char *key : {"lb", "ub", "name", "body", "copy"}) {
        if (d && PyDict_SetItemString(d, key, Py_None) < 0) Py_CLEAR(d);
      }
      return d;
    }
  } else {
    PyErr_Clear();
  }
  return PyObject_GenericGetAttr(self, name);
}

int ConstraintSetAttr(PyObject *self, PyObject *name, PyObject *value) {
  const char *n = PyUnicode_Check(name) ? PyUnicode_AsUTF8(name) : nullptr;
  if (n && value) {
    uint64_t &word = Con(self)->word;
    bool lb = !std::strcmp(n, "lb");
    if (lb || !std::strcmp(n, "ub")) {
      double v = PyFloat_AsDouble(value);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      if (lb)
        ConSetLb(word, v);
      else
        ConSetUb(word, v);
      return 0;
    }
    if (!std::strcmp(n, "name")) {
      ConSetName(word, value);
      return 0;
    }
  }
  if (!n) PyErr_Clear();
  return PyObject_GenericSetAttr(self, name, value);
}

PyObject *ConstraintCopy(PyObject *self, PyObject *) {
  ConstraintObject *s = Con(self);
  PyObject *body = nullptr;
  if (s->body) {
    body = CopyScaled(s->body, 1.0);
    if (!body) return nullptr;
  }
  PyObject *r = NewConstraint(body);
  if (!r) return nullptr;
  ConSetLb(Con(r)->word, ConGetLb(s->word));
  ConSetUb(Con(r)->word, ConGetUb(s->word));
  PyObject *old = ConGetName(s->word);
  PyObject *name = old ? PyUnicode_FromFormat("R%d_copy_%S", static_cast<int>(ConId(s->word)), old)
                       : nullptr;
  Py_XDECREF(old);
  if (!name) {
    Py_DECREF(r);
    return nullptr;
  }
  ConSetName(Con(r)->word, name);
  Py_DECREF(name);
  return r;
}

PyMethodDef ConstraintMethods[] = {
    {"copy", ConstraintCopy, METH_NOARGS,
     ZRV_HELP("A copy of the constraint with a copy of its body.", "c2 = c.copy()", "None.",
              "c = zorvan.constraint(body=x + y, ub=4, name='cap')\n    d = c.copy()  # named "
              "R<id>_copy_cap",
              "The copy has a new identifier, the same bounds and a body that is a new "
              "object, so changing one body in place (+=) leaves the other as it was.",
              "constraint, expression")},
    {nullptr, nullptr, 0, nullptr}};

PyMemberDef ConstraintMembers[] = {
    {"body", T_OBJECT, offsetof(ConstraintObject, body), 0, "Constraint body"},
    {nullptr, 0, 0, 0, nullptr}};

}  // namespace

PyObject *NewConstraint(PyObject *body) {
  PyObject *o = PyType_GenericAlloc(&ConstraintType, 0);
  if (!o) {
    Py_XDECREF(body);
    return nullptr;
  }
  Con(o)->word = NextConId() & kConstraintIdMask;
  Con(o)->body = body;
  return o;
}

PyObject *UnboundedComparison(PyObject *e, double v, double *rhs) {
  PyObject *body = CopyScaled(e, 1.0);
  if (!body) return nullptr;
  *rhs = v - AsExpression(body)->constant;
  AsExpression(body)->constant = 0.0;
  return NewConstraint(body);
}

void BoundComparison(PyObject *c, double rhs, int op) {
  if (op != Py_GE) ConSetUb(Con(c)->word, rhs);
  if (op != Py_LE) ConSetLb(Con(c)->word, rhs);
}

PyObject *CompareExpressionWithNumber(PyObject *e, double v, int op) {
  double rhs;
  PyObject *c = UnboundedComparison(e, v, &rhs);
  if (c) BoundComparison(c, rhs, op);
  return c;
}

namespace {

// A constraint has no truth value: `if x <= 1`, `x in [y, z]` (which compares
// with ==) or NumPy turning comparisons into booleans would otherwise use
// True silently.
int ConstraintBool(PyObject *) {
  PyErr_SetString(ModelError,
                  "A constraint has no truth value: add it to a problem with "
                  "problem.addConstraint instead of testing it (if, and, or, not, or an "
                  "'in' test comparing modelling objects with ==)");
  return -1;
}

PyNumberMethods ConstraintNumberMethods{};

}  // namespace

void SetupConstraintType() {
  PyTypeObject &t = ConstraintType;
  InitType(t, "zorvan.constraint", sizeof(ConstraintObject));
  ConstraintNumberMethods.nb_bool = ConstraintBool;
  t.tp_as_number = &ConstraintNumberMethods;
  t.tp_alloc = ConstraintAlloc;
  t.tp_init = ConstraintInit;
  t.tp_dealloc = ConstraintDealloc;
  t.tp_repr = ConstraintStr;
  t.tp_str = ConstraintStr;
  t.tp_getattro = ConstraintGetAttr;
  t.tp_setattro = ConstraintSetAttr;
  t.tp_methods = ConstraintMethods;
  t.tp_members = ConstraintMembers;
  t.tp_doc = ZRV_HELP(
      "A constraint: a body (a number, variable, term, expression or nonlinear "
      "expression) between a lower and an upper bound.",
      "c = zorvan.constraint(body=..., lb=-zorvan.infinity, ub=zorvan.infinity, name=None)\n"
      "    c = zorvan.constraint(body=..., sense=zorvan.leq, rhs=..., name=None)\n"
      "    c = zorvan.constraint(constraint=other)\n    c = x + 2 * y <= 10",
      "constraint: a constraint whose body and bounds are taken over; body: the constrained "
      "object; lb, ub: bounds (beyond -1e20 and 1e20 meaning none); sense: zorvan.leq, geq, "
      "eq or rng; rhs: the right-hand side for the sense (not together with lb or ub); "
      "name: any object, by default R<identifier>.",
      "c1 = x + y <= 4\n    c2 = zorvan.constraint(body=x - y, sense=zorvan.eq, rhs=0, "
      "name='balance')\n    c3 = zorvan.constraint(body=x * y, lb=1)",
      "A comparison (<=, >= or ==) of modelling objects builds a constraint whose body is "
      "left minus right with the constant moved into the bound. <, > and != are refused. "
      "The attributes lb, ub, name and body may be read and assigned; copy() gives an "
      "independent copy.",
      "var, expression, problem.addConstraint, sos");
}

}  // namespace zrv
