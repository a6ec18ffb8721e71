// The `quadterm` type: a coefficient times the product of two variables.
#include "model/quadterm.h"

#include <utility>

#include "model/constraint.h"
#include "model/operand.h"
#include "model/var.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject QuadTermType{};

namespace {


inline QuadTermObject *Term(PyObject *o) { return reinterpret_cast<QuadTermObject *>(o); }

int QuadTermInit(PyObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError,
                  "Quadratic terms are made by multiplying two variables, not by calling "
                  "zorvan.quadterm");
  return -1;
}

void QuadTermDealloc(PyObject *self) {
  Py_XDECREF(Term(self)->var1);
  Py_XDECREF(Term(self)->var2);
  Py_TYPE(self)->tp_free(self);
}

PyObject *QuadTermRepr(PyObject *self) {
  QuadTermObject *t = Term(self);
  if (!t->var1 || !t->var2) return PyUnicode_FromString("0");
  char prefix[512] = "";
  if (t->coef != 1.0) FormatDouble(prefix, "%g*", t->coef);
  if (VarIdOf(t->var1) != VarIdOf(t->var2))
    return PyUnicode_FromFormat("%s%S*%S", prefix, t->var1, t->var2);
  return PyUnicode_FromFormat("%s%S**2", prefix, t->var1);
}

PyObject *ExtractLinear(PyObject *, PyObject *) {
  return CheckResult(Py_BuildValue("([],[])"));
}

PyObject *ExtractQuadratic(PyObject *self, PyObject *) {
  QuadTermObject *t = Term(self);
  if (!t->var1 || !t->var2) return EmptyQuadratic(self, nullptr);
  return CheckResult(Py_BuildValue("([O],[O],[d])", t->var1, t->var2, t->coef));
}

PyMethodDef QuadTermMethods[] = {
    {"extractLinear", ExtractLinear, METH_NOARGS,
     ZRV_HELP("The linear part of the term, which is always empty.",
              "(vars, coefs) = q.extractLinear()", "None.",
              "(x * y).extractLinear()  # ([], [])", "Returns two empty lists.",
              "extractQuadratic, expression.extractLinear")},
    {"extractQuadratic", ExtractQuadratic, METH_NOARGS,
     ZRV_HELP("The quadratic part of the term: its two variables and coefficient.",
              "(vars1, vars2, coefs) = q.extractQuadratic()", "None.",
              "(2 * x * y).extractQuadratic()  # ([x], [y], [2.0])",
              "The variable created first comes in vars1.",
              "extractLinear, expression.extractQuadratic")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace

PyObject *MakeQuadTerm(double coef, PyObject *a, PyObject *b) {
  QuadTermObject *t = PyObject_New(QuadTermObject, &QuadTermType);
  if (!t) return nullptr;
  if (VarIdOf(a) > VarIdOf(b)) std::swap(a, b);
  t->coef = coef;
  Py_INCREF(a);
  Py_INCREF(b);
  t->var1 = a;
  t->var2 = b;
  return reinterpret_cast<PyObject *>(t);
}

void SetupQuadTermType() {
  PyTypeObject &t = QuadTermType;
  InitType(t, "zorvan.quadterm", sizeof(QuadTermObject));
  t.tp_init = QuadTermInit;
  t.tp_dealloc = QuadTermDealloc;
  t.tp_repr = QuadTermRepr;
  t.tp_str = QuadTermRepr;
  t.tp_methods = QuadTermMethods;
  t.tp_doc = ZRV_HELP(
      "A quadratic term: a coefficient times the product of two variables.",
      "q = 2 * x * y\n    s = x ** 2",
      "None: made by multiplying two variables or linear terms, or by squaring one; the "
      "type is not called directly.",
      "q = 2 * x * y\n    e = q + x ** 2 + 3  # an expression",
      "The variable created first is stored first, so 2*x*y and 2*y*x are equal terms. "
      "Terms never change: their in-place operators return new objects. A product of a "
      "quadratic term with another variable or term is a nonlinear expression.",
      "var, linterm, expression, nonlinear");
}

}  // namespace zrv
