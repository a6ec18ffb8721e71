// The `var` type: a variable in one 64-bit word (identifier, bound codes,
// type), with bounds, threshold and name beyond the codes in global maps.
#include "model/var.h"

#include <cmath>
#include <cstring>

#include "model/constraint.h"
#include "model/operand.h"
#include "model/word_store.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject VarType{};

// ---------------------------------------------------------------------------
// The attribute store

double VarGetLb(uint64_t word) {
  switch ((word & kVarLbCode) >> kVarLbShift) {
    case 0: return 0.0;
    case 1: return -kInfinity;
    case 2: return 1.0;
    default: return StoredBound(varLbMap, VarId(word), 0.0);
  }
}

void VarSetLb(uint64_t &word, double v) {
  uint64_t code = v == 0.0 ? 0 : v <= -kInfinity ? 1 : v == 1.0 ? 2 : 3;
  StoreBound(word, VarId(word), kVarLbShift, kVarLbStored, varLbMap, code, v);
}

double VarGetUb(uint64_t word) {
  switch ((word & kVarUbCode) >> kVarUbShift) {
    case 0: return kInfinity;
    case 1: return 0.0;
    case 2: return 1.0;
    default: return StoredBound(varUbMap, VarId(word), kInfinity);
  }
}

void VarSetUb(uint64_t &word, double v) {
  uint64_t code = v >= kInfinity ? 0 : v == 0.0 ? 1 : v == 1.0 ? 2 : 3;
  StoreBound(word, VarId(word), kVarUbShift, kVarUbStored, varUbMap, code, v);
}

double VarGetThreshold(uint64_t word) {
  if (!(word & kVarThresholdStored)) return -kInfinity;
  return StoredBound(varThresholdMap, VarId(word), -kInfinity);
}

void VarSetThreshold(uint64_t &word, double v) {
  // Assigning minus infinity keeps a threshold stored earlier.
  if (v == -kInfinity || !varThresholdMap) return;
  (*varThresholdMap)[VarId(word)] = v;
  word |= kVarThresholdStored;
}

PyObject *VarGetName(uint64_t word) {
  PyObject *name = (word & kVarNameStored) ? StoredName(varNameMap, VarId(word)) : nullptr;
  if (name) return name;
  return PyUnicode_FromFormat("C%d", static_cast<int>(VarId(word)));
}

PyObject *VarNameStr(uint64_t word) {
  PyObject *name = VarGetName(word);
  if (!name || PyUnicode_CheckExact(name)) return name;
  PyObject *s = PyObject_Str(name);
  Py_DECREF(name);
  return s;
}

void VarSetName(uint64_t &word, PyObject *name) {
  if (StoreName(varNameMap, VarId(word), name)) word |= kVarNameStored;
}

void VarReleaseStore(uint64_t &word) {
  uint64_t id = VarId(word);
  if ((word & kVarLbStored) && varLbMap) varLbMap->erase(id);
  if ((word & kVarUbStored) && varUbMap) varUbMap->erase(id);
  if ((word & kVarThresholdStored) && varThresholdMap) varThresholdMap->erase(id);
  if (word & kVarNameStored) EraseName(varNameMap, id);
  word &= ~(kVarLbStored | kVarUbStored | kVarThresholdStored | kVarNameStored | kVarLbCode |
            kVarUbCode);
}

// ---------------------------------------------------------------------------
// The type

namespace {

inline uint64_t &Word(PyObject *self) { return reinterpret_cast<VarObject *>(self)->word; }

PyObject *VarNew(PyTypeObject *type, PyObject *, PyObject *) {
  // Allocation alone leaves the word 0: an uninitialized variable.
  return type->tp_alloc(type, 0);
}

const char *const kVarKeywords[] = {"name", "lb", "ub", "threshold", "vartype", nullptr};

// The arguments of var() by position and keyword, the same as the format
// "|Odddl" accepts, without the generic parser's cost (creating variables with
// keywords is the hot path of model building). Returns 1 when done, 0 when the
// arguments need the generic parser (which then also words any error).
int ParseVarFast(PyObject *args, PyObject *kwds, PyObject **name, double *lb, double *ub,
                 double *threshold, long *vartype) {
  PyObject *slot[5] = {nullptr, nullptr, nullptr, nullptr, nullptr};
  Py_ssize_t npos = PyTuple_GET_SIZE(args);
  if (npos > 5) return 0;
  for (Py_ssize_t i = 0; i < npos; ++i) slot[i] = PyTuple_GET_ITEM(args, i);
  if (kwds) {
    PyObject *key, *value;
    Py_ssize_t pos = 0;
    while (PyDict_Next(kwds, &pos, &key, &value)) {
      if (!PyUnicode_Check(key)) return 0;
      int k = 0;
      while (kVarKeywords[k] && PyUnicode_CompareWithASCIIString(key, kVarKeywords[k]) != 0) ++k;
      if (!kVarKeywords[k] || slot[k]) return 0;
      slot[k] = value;
    }
  }
  double *reals[3] = {lb, ub, threshold};
  for (int k = 1; k <= 3; ++k) {
    if (!slot[k]) continue;
    double v = PyFloat_AsDouble(slot[k]);
    if (v == -1.0 && PyErr_Occurred()) {
      PyErr_Clear();
      return 0;
    }
    *reals[k - 1] = v;
  }
  if (slot[4]) {
    if (PyFloat_Check(slot[4])) return 0;
    long v = PyLong_AsLong(slot[4]);
    if (v == -1 && PyErr_Occurred()) {
      PyErr_Clear();
      return 0;
    }
    *vartype = v;
  }
  *name = slot[0];
  return 1;
}

}  // namespace

void VarSetInitial(uint64_t &word, double lb, double ub, double threshold, int vartype) {
  if (vartype == 1 && ub == kInfinity) ub = 1.0;
  if ((vartype == 1 || vartype == 2) && ub >= lb) {
    lb = std::ceil(lb);
    ub = std::floor(ub);
  }
  if (lb != 0.0) VarSetLb(word, lb);
  if (ub != kInfinity) VarSetUb(word, ub);
  if (threshold != -kInfinity) VarSetThreshold(word, threshold);
  if (vartype != 0) VarSetType(word, vartype);
}

namespace {

int VarInit(PyObject *self, PyObject *args, PyObject *kwds) {
  PyObject *name = nullptr;
  double lb = 0.0, ub = kInfinity, threshold = -kInfinity;
  long vartype = 0;
  if (!ParseVarFast(args, kwds, &name, &lb, &ub, &threshold, &vartype) &&
      !PyArg_ParseTupleAndKeywords(args, kwds, "|Odddl", const_cast<char **>(kVarKeywords),
                                   &name, &lb, &ub, &threshold, &vartype))
    return -1;
  if (static_cast<unsigned long>(vartype) >= 6) {
    PyErr_SetString(ModelError, kBadVarType);
    return -1;
  }
  uint64_t &word = Word(self);
  // A second initialisation starts from a clean store.
  if (word) VarReleaseStore(word);
  word = NextVarId() & kVarIdMask;
  VarSetInitial(word, lb, ub, threshold, static_cast<int>(vartype));
  if (name && name != Py_None) {
    if (!PyUnicode_Check(name) && !PyBytes_Check(name)) {
      PyErr_SetString(ModelError, "Invalid variable name (must be a string)");
      return -1;
    }
    VarSetName(word, name);
  }
  return 0;
}

void VarDealloc(PyObject *self) {
  VarReleaseStore(Word(self));
  Py_TYPE(self)->tp_free(self);
}

PyObject *VarRepr(PyObject *self) { return VarGetName(Word(self)); }

PyObject *VarStr(PyObject *self) { return VarNameStr(Word(self)); }

Py_hash_t VarHash(PyObject *self) {
  return static_cast<Py_hash_t>(Word(self) & 0xffffffffu);
}

// The attribute name as UTF-8 (a str or bytes name), or null.
const char *AttrName(PyObject *name) {
  if (PyUnicode_Check(name)) return PyUnicode_AsUTF8(name);
  if (PyBytes_Check(name)) return PyBytes_AS_STRING(name);
  return nullptr;
}

PyObject *VarGetAttr(PyObject *self, PyObject *name) {
  const char *n = AttrName(name);
  if (!n) {
    PyErr_Clear();
    return PyObject_GenericGetAttr(self, name);
  }
  uint64_t word = Word(self);
  switch (n[0]) {
    case 'l':
      if (!std::strcmp(n, "lb")) return PyFloat_FromDouble(VarGetLb(word));
      break;
    case 'u':
      if (!std::strcmp(n, "ub")) return PyFloat_FromDouble(VarGetUb(word));
      break;
    case 't':
      if (!std::strcmp(n, "threshold")) return PyFloat_FromDouble(VarGetThreshold(word));
      break;
    case 'v':
      if (!std::strcmp(n, "vartype")) return PyLong_FromLong(VarTypeCode(word));
      break;
    case 'n':
      if (!std::strcmp(n, "name")) {
        PyObject *r = VarGetName(word);
        if (!r) {
          PyErr_Clear();
          PyErr_SetString(InterfaceError, "Internal error in variable name");
        }
        return r;
      }
      break;
    case '_':
      if (!std::strcmp(n, "__class__")) {
        Py_INCREF(&VarType);
        return reinterpret_cast<PyObject *>(&VarType);
      }
      if (!std::strcmp(n, "__dict__")) {
        PyObject *d = PyDict_New();
        for (const char *key : {"lb", "ub", "threshold", "vartype", "name"}) {
          if (d && PyDict_SetItemString(d, key, Py_None) < 0) Py_CLEAR(d);
        }
        return d;
      }
      break;
  }
  return PyObject_GenericGetAttr(self, name);
}

int VarSetAttr(PyObject *self, PyObject *name, PyObject *value) {
  const char *n = AttrName(name);
  if (!n) {
    if (!PyErr_Occurred()) PyErr_SetString(InterfaceError, "Incorrect member name of type zorvan.var");
    return -1;
  }
  if (!value) {
    PyErr_SetString(InterfaceError, "Attributes of zorvan.var cannot be deleted");
    return -1;
  }
  uint64_t &word = Word(self);
  bool lb = !std::strcmp(n, "lb");
  if (lb || !std::strcmp(n, "ub")) {
    double v = PyFloat_AsDouble(value);
    if (v == -1.0 && PyErr_Occurred()) return -1;
    int type = VarTypeCode(word);
    // A binary variable with a bound outside [0, 1] becomes integer.
    if (type == 1 && (v < 0.0 || v > 1.0)) {
      type = 2;
      VarSetType(word, 2);
    }
    if (type == 1 || type == 2) v = lb ? std::ceil(v) : std::floor(v);
    if (lb)
      VarSetLb(word, v);
    else
      VarSetUb(word, v);
    return 0;
  }
  if (!std::strcmp(n, "threshold")) {
    double v = PyFloat_AsDouble(value);
    if (v == -1.0 && PyErr_Occurred()) return -1;
    VarSetThreshold(word, v);
    return 0;
  }
  if (!std::strcmp(n, "vartype")) {
    long t = PyLong_AsLong(value);
    if (t == -1 && PyErr_Occurred()) return -1;
    if (t < 0 || t > 5) {
      PyErr_SetString(ModelError, kBadVarType);
      return -1;
    }
    int old = VarTypeCode(word);
    if (t == 1 && old != 1) {
      VarSetLb(word, 0.0);
      VarSetUb(word, 1.0);
    } else if (t == 2 && old != 2) {
      VarSetLb(word, std::ceil(VarGetLb(word)));
      VarSetUb(word, std::floor(VarGetUb(word)));
    }
    VarSetType(word, static_cast<int>(t));
    return 0;
  }
  if (!std::strcmp(n, "name")) {
    VarSetName(word, value);
    return 0;
  }
  PyErr_SetString(InterfaceError, "Incorrect member name of type zorvan.var");
  return -1;
}

PyObject *VarExtractLinear(PyObject *self, PyObject *) {
  return CheckResult(Py_BuildValue("([O],[d])", self, 1.0));
}

PyMethodDef VarMethods[] = {
    {"extractLinear", VarExtractLinear, METH_NOARGS,
     ZRV_HELP("The linear part of the variable: the variable itself with coefficient 1.",
              "(vars, coefs) = x.extractLinear()", "None.",
              "x = zorvan.var()\n    vs, cs = x.extractLinear()  # [x], [1.0]",
              "Every modelling object has this method; for a variable the result is always "
              "one variable with coefficient 1.0.",
              "extractQuadratic, expression.extractLinear")},
    {"extractQuadratic", EmptyQuadratic, METH_NOARGS,
     ZRV_HELP("The quadratic part of the variable, which is always empty.",
              "(vars1, vars2, coefs) = x.extractQuadratic()", "None.",
              "x = zorvan.var()\n    x.extractQuadratic()  # ([], [], [])",
              "Returns three empty lists.", "extractLinear, expression.extractQuadratic")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace

void SetupVarType() {
  PyTypeObject &t = VarType;
  InitType(t, "zorvan.var", sizeof(VarObject));
  t.tp_new = VarNew;
  t.tp_init = VarInit;
  t.tp_dealloc = VarDealloc;
  t.tp_repr = VarRepr;
  t.tp_str = VarStr;
  t.tp_hash = VarHash;
  t.tp_getattro = VarGetAttr;
  t.tp_setattro = VarSetAttr;
  t.tp_methods = VarMethods;
  t.tp_doc = ZRV_HELP(
      "A decision variable of an optimization problem.",
      "x = zorvan.var(name=None, lb=0, ub=zorvan.infinity, threshold=-zorvan.infinity, "
      "vartype=zorvan.continuous)",
      "name: a str or bytes name (default C<identifier>); lb, ub: lower and upper bound, "
      "where -zorvan.infinity and zorvan.infinity (1e20) mean no bound; threshold: the "
      "threshold of a semi-continuous or semi-integer variable; vartype: zorvan.continuous, "
      "binary, integer, semicontinuous, semiinteger or partiallyinteger. A binary variable "
      "gets the upper bound 1; integer and binary bounds are rounded inwards.",
      "x = zorvan.var(lb=-1, ub=10, name='x')\n    y = zorvan.var(vartype=zorvan.binary)\n"
      "    e = 2 * x + 3 * y - 4",
      "Each variable gets a serial identifier, starting at 1, that names it by default (C1, "
      "C2, ...). The attributes lb, ub, threshold, vartype and name may be read and "
      "assigned; assignments change only the variable, not a problem it was added to. "
      "Arithmetic builds linear terms (3 * x), quadratic terms (x * y), expressions "
      "(x + y + 1) and nonlinear expressions (x / y, zorvan.sin(x)); comparisons build "
      "constraints (x + y <= 1).",
      "problem.addVariable, linterm, quadterm, expression, constraint, nonlinear");
}

}  // namespace zrv
