// The `expression` type: a constant, a linear part and a quadratic part,
// with in-place accumulation, scaled copies and printing.
#include "model/expression.h"

#include <cmath>
#include <new>
#include <string>

#include "model/constraint.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject ExpressionType{};

namespace {


QuadEntry QuadPair(PyObject *a, PyObject *b, double coef) {
  uint64_t ia = VarIdOf(a), ib = VarIdOf(b);
  return ia <= ib ? QuadEntry{ia, ib, a, b, coef} : QuadEntry{ib, ia, b, a, coef};
}

// Copies the entries of src times f into the empty part dst. An unscaled
// copy shares the ordered entries whole; a scaled one leaves out
// coefficients that become zero. May throw std::bad_alloc.
template <class Entry>
void CopyPart(Part<Entry> &src, Part<Entry> &dst, bool exact, double f) {
  if (src.Empty()) return;
  if (exact) {
    src.Normalise();
    dst.AppendScaled(src, 1.0);
    return;
  }
  const auto items = src.Items();
  dst.Reserve(items.size());
  for (Entry y : items) {
    y.coef *= f;
    if (y.coef == 0.0) continue;
    y.Retain();
    dst.Push(y);
  }
}

}  // namespace

bool ExpressionIsConstant(PyObject *o) {
  ExpressionObject *e = AsExpression(o);
  return e->linear.Empty() && e->quadratic.Empty();
}

PyObject *NewExpression(double constant) {
  PyObject *o = PyType_GenericAlloc(&ExpressionType, 0);
  if (o) AsExpression(o)->constant = constant;
  return o;
}

int ExpressionAddLinear(PyObject *e, PyObject *var, double coef) {
  try {
    Py_INCREF(var);
    AsExpression(e)->linear.Push(LinEntry{VarIdOf(var), var, coef});
  } catch (const std::bad_alloc &) {
    Py_DECREF(var);
    PyErr_SetString(ModelError, "Could not add linear part");
    return -1;
  }
  return 0;
}

int ExpressionReserveLinear(PyObject *e, size_t n) {
  try {
    LinearPart &part = AsExpression(e)->linear;
    part.Reserve(part.Raw().size() + n);
  } catch (const std::bad_alloc &) {
    PyErr_SetString(ModelError, "Could not add linear part");
    return -1;
  }
  return 0;
}

int ExpressionAddQuadratic(PyObject *e, PyObject *a, PyObject *b, double coef) {
  QuadEntry q = QuadPair(a, b, coef);
  try {
    q.Retain();
    AsExpression(e)->quadratic.Push(q);
  } catch (const std::bad_alloc &) {
    q.Release();
    PyErr_SetString(ModelError, "Error setting quadratic expression");
    return -1;
  }
  return 0;
}

void ExpressionScaleInPlace(PyObject *o, double factor) {
  ExpressionObject *e = AsExpression(o);
  e->constant *= factor;
  for (LinEntry &x : e->linear.MutableRaw()) x.coef *= factor;
  for (QuadEntry &q : e->quadratic.MutableRaw()) q.coef *= factor;
}

int ExpressionAddScaled(PyObject *o, PyObject *other, double factor) {
  ExpressionObject *e = AsExpression(o);
  switch (KindOf(other)) {
    case KindNumber: {
      double v = NumberValue(other);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      e->constant += factor * v;
      return 0;
    }
    case KindVar: return ExpressionAddLinear(o, other, factor);
    case KindLinTerm: {
      auto *t = reinterpret_cast<LinTermObject *>(other);
      return ExpressionAddLinear(o, t->var, t->coef * factor);
    }
    case KindQuadTerm: {
      auto *t = reinterpret_cast<QuadTermObject *>(other);
      return ExpressionAddQuadratic(o, t->var1, t->var2, t->coef * factor);
    }
    case KindExpression: {
      if (other == o) {
        ExpressionScaleInPlace(o, 1.0 + factor);
        return 0;
      }
      ExpressionObject *src = AsExpression(other);
      e->constant += factor * src->constant;
      try {
        e->linear.AppendScaled(src->linear, factor);
        e->quadratic.AppendScaled(src->quadratic, factor);
      } catch (const std::bad_alloc &) {
        PyErr_SetString(ModelError, "Error adding expressions");
        return -1;
      }
      return 0;
    }
    default:
      InvalidOperand(other);
      return -1;
  }
}

PyObject *CopyScaled(PyObject *o, double f) {
  switch (KindOf(o)) {
    case KindNumber: {
      double v = NumberValue(o);
      if (v == -1.0 && PyErr_Occurred()) return nullptr;
      return PyFloat_FromDouble(v * f);
    }
    case KindVar:
    case KindLinTerm:
    case KindQuadTerm: {
      PyObject *r = NewExpression(0.0);
      if (r && f != 0.0 && ExpressionAddScaled(r, o, f) < 0) Py_CLEAR(r);
      return r;
    }
    case KindExpression: {
      ExpressionObject *src = AsExpression(o);
      bool exact = std::fabs(f - 1.0) <= 1e-15;
      PyObject *r = NewExpression(exact ? src->constant : src->constant * f);
      if (!r) return nullptr;
      ExpressionObject *e = AsExpression(r);
      try {
        CopyPart(src->linear, e->linear, exact, f);
        CopyPart(src->quadratic, e->quadratic, exact, f);
      } catch (const std::bad_alloc &) {
        Py_DECREF(r);
        PyErr_SetString(ModelError, "Cannot copy expression");
        return nullptr;
      }
      return r;
    }
    case KindNonlinear: {
      PyObject *factor = PyFloat_FromDouble(f);
      if (!factor) return nullptr;
      // The node times the factor, as the nonlinear type's product builds it.
      PyObject *r = PyNumber_Multiply(factor, o);
      Py_DECREF(factor);
      return r;
    }
    default:
      PyErr_SetString(ModelError, "Cannot copy expression");
      return nullptr;
  }
}

LinearEntries ExpressionLinear(PyObject *o) {
  ExpressionObject *e = AsExpression(o);
  return e->linear.Items();
}

QuadraticEntries ExpressionQuadratic(PyObject *o) {
  ExpressionObject *e = AsExpression(o);
  return e->quadratic.Items();
}

namespace {

// Appends the UTF-8 text of a variable's name.
bool AppendName(std::string &out, PyObject *var) {
  PyObject *name = VarNameStr(VarWordOf(var));
  if (!name) return false;
  Py_ssize_t n;
  const char *s = PyUnicode_AsUTF8AndSize(name, &n);
  if (s) out.append(s, static_cast<size_t>(n));
  Py_DECREF(name);
  return s != nullptr;
}

// One printed entry: the coefficient rule, then the factor text.
template <class Factor>
bool AppendEntry(std::string &out, bool &first, double coef, Factor factor) {
  char buf[512];
  if (coef == 1.0) {
    out += first ? "  " : " + ";
  } else if (coef == -1.0) {
    out += " - ";
  } else {
    FormatDouble(buf, first ? " %g " : " %+g ", coef);
    out += buf;
  }
  first = false;
  return factor(out);
}

}  // namespace

PyObject *ExpressionRepr(PyObject *self) {
  ExpressionObject *e = AsExpression(self);
  const auto &lin = ExpressionLinear(self);
  const auto &quad = ExpressionQuadratic(self);
  std::string out;
  bool first = true;
  char buf[512];
  // A constant of 0 is left out whenever there are entries, even entries that
  // are all zero (they are skipped below, so such an expression prints empty).
  if (e->constant != 0.0 || (lin.empty() && quad.empty())) {
    FormatDouble(buf, "%g", e->constant);
    out += buf;
    first = false;
  }
  for (const LinEntry &x : lin) {
    if (x.coef == 0.0) continue;
    if (!AppendEntry(out, first, x.coef, [&](std::string &s) { return AppendName(s, x.var); }))
      return nullptr;
  }
  for (const QuadEntry &q : quad) {
    if (q.coef == 0.0) continue;
    bool ok = AppendEntry(out, first, q.coef, [&](std::string &s) {
      if (!AppendName(s, q.var1)) return false;
      if (q.id1 == q.id2) {
        s += "**2";
        return true;
      }
      s += "*";
      return AppendName(s, q.var2);
    });
    if (!ok) return nullptr;
  }
  return PyUnicode_DecodeUTF8(out.data(), static_cast<Py_ssize_t>(out.size()), nullptr);
}

namespace {

void ExpressionDealloc(PyObject *self) {
  ExpressionObject *e = AsExpression(self);
  e->linear.~LinearPart();  // releases the blocks; the memory goes with the object
  e->quadratic.~QuadraticPart();
  Py_TYPE(self)->tp_free(self);
}

PyObject *ExtractLinear(PyObject *self, PyObject *) {
  const auto &lin = ExpressionLinear(self);
  Py_ssize_t n = static_cast<Py_ssize_t>(lin.size());
  PyObject *vars = PyList_New(n);
  PyObject *coefs = PyList_New(n);
  PyObject *r = nullptr;
  if (vars && coefs) {
    bool ok = true;
    for (Py_ssize_t i = 0; i < n; ++i) {
      Py_INCREF(lin[i].var);
      PyList_SET_ITEM(vars, i, lin[i].var);
      PyObject *c = PyFloat_FromDouble(lin[i].coef);
      if (!c) {
        ok = false;
        break;
      }
      PyList_SET_ITEM(coefs, i, c);
    }
    if (ok) r = PyTuple_Pack(2, vars, coefs);
  }
  Py_XDECREF(vars);
  Py_XDECREF(coefs);
  return CheckResult(r);
}

PyObject *ExtractQuadratic(PyObject *self, PyObject *) {
  const auto &quad = ExpressionQuadratic(self);
  Py_ssize_t n = static_cast<Py_ssize_t>(quad.size());
  PyObject *v1 = PyList_New(n);
  PyObject *v2 = PyList_New(n);
  PyObject *coefs = PyList_New(n);
  PyObject *r = nullptr;
  if (v1 && v2 && coefs) {
    bool ok = true;
    for (Py_ssize_t i = 0; i < n; ++i) {
      Py_INCREF(quad[i].var1);
      PyList_SET_ITEM(v1, i, quad[i].var1);
      Py_INCREF(quad[i].var2);
      PyList_SET_ITEM(v2, i, quad[i].var2);
      PyObject *c = PyFloat_FromDouble(quad[i].coef);
      if (!c) {
        ok = false;
        break;
      }
      PyList_SET_ITEM(coefs, i, c);
    }
    if (ok) r = PyTuple_Pack(3, v1, v2, coefs);
  }
  Py_XDECREF(v1);
  Py_XDECREF(v2);
  Py_XDECREF(coefs);
  return CheckResult(r);
}

PyMethodDef ExpressionMethods[] = {
    {"extractLinear", ExtractLinear, METH_NOARGS,
     ZRV_HELP("The linear part of the expression.", "(vars, coefs) = e.extractLinear()",
              "None.",
              "x, y = zorvan.var(), zorvan.var()\n    vs, cs = (3 * x - y + 2).extractLinear()"
              "  # [x, y], [3.0, -1.0]",
              "The variables come as the var objects themselves, in the order of their "
              "identifiers (the order of creation); the coefficients as floats. The constant "
              "and the quadratic part are not included.",
              "extractQuadratic, var.extractLinear")},
    {"extractQuadratic", ExtractQuadratic, METH_NOARGS,
     ZRV_HELP("The quadratic part of the expression.",
              "(vars1, vars2, coefs) = e.extractQuadratic()", "None.",
              "x, y = zorvan.var(), zorvan.var()\n    e = x * y + y * x + x ** 2\n"
              "    v1, v2, cs = e.extractQuadratic()  # [x, x], [x, y], [1.0, 2.0]",
              "Each product appears once, the variable created first in vars1; x*y and y*x "
              "are the same entry.",
              "extractLinear, quadterm.extractQuadratic")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace

void SetupExpressionType() {
  PyTypeObject &t = ExpressionType;
  InitType(t, "zorvan.expression", sizeof(ExpressionObject));
  t.tp_dealloc = ExpressionDealloc;
  t.tp_repr = ExpressionRepr;
  t.tp_str = ExpressionRepr;
  t.tp_methods = ExpressionMethods;
  t.tp_doc = ZRV_HELP(
      "A linear or quadratic expression: a constant, a linear part and a quadratic part.",
      "e = 2 * x + 3 * y - 1\n    e = zorvan.expression()  # the empty expression, 0",
      "None: expressions are made by arithmetic on variables, terms and numbers, or start "
      "empty and grow with +=.",
      "e = zorvan.expression()\n    for i, x in enumerate(xs):\n        e += (i + 1) * x\n"
      "    c = e <= 10",
      "Plain operators (+, -, *, /, **) return new objects; +=, -= with numbers, "
      "variables, terms and expressions and *=, /= with numbers change the expression "
      "itself, so other references to it see the change. Products beyond degree two, "
      "divisions by non-constants and other powers become nonlinear expressions. Entries "
      "are kept in the order of the variables' identifiers.",
      "var, linterm, quadterm, nonlinear, constraint, Sum");
}

}  // namespace zrv
