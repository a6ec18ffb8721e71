// The `linterm` type: a coefficient times a variable.
#include "model/linterm.h"

#include "model/constraint.h"
#include "model/operand.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject LinTermType{};

namespace {


inline LinTermObject *Term(PyObject *o) { return reinterpret_cast<LinTermObject *>(o); }

int LinTermInit(PyObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError,
                  "Linear terms are made by multiplying a variable by a number, not by calling "
                  "zorvan.linterm");
  return -1;
}

void LinTermDealloc(PyObject *self) {
  Py_XDECREF(Term(self)->var);
  Py_TYPE(self)->tp_free(self);
}

PyObject *LinTermRepr(PyObject *self) {
  LinTermObject *t = Term(self);
  if (!t->var) return PyUnicode_FromString("0");
  if (t->coef == 1.0) return PyObject_Str(t->var);
  char buf[512];
  FormatDouble(buf, "%g*", t->coef);
  return PyUnicode_FromFormat("%s%S", buf, t->var);
}

PyObject *ExtractLinear(PyObject *self, PyObject *) {
  LinTermObject *t = Term(self);
  if (!t->var) return CheckResult(Py_BuildValue("([],[])"));
  return CheckResult(Py_BuildValue("([O],[d])", t->var, t->coef));
}

PyMethodDef LinTermMethods[] = {
    {"extractLinear", ExtractLinear, METH_NOARGS,
     ZRV_HELP("The linear part of the term: its variable and coefficient.",
              "(vars, coefs) = t.extractLinear()", "None.",
              "t = 3 * x\n    t.extractLinear()  # ([x], [3.0])",
              "The lists have one element each.", "extractQuadratic, expression.extractLinear")},
    {"extractQuadratic", EmptyQuadratic, METH_NOARGS,
     ZRV_HELP("The quadratic part of the term, which is always empty.",
              "(vars1, vars2, coefs) = t.extractQuadratic()", "None.",
              "(3 * x).extractQuadratic()  # ([], [], [])", "Returns three empty lists.",
              "extractLinear, quadterm.extractQuadratic")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace

PyObject *MakeLinTerm(double coef, PyObject *var) {
  if (coef == 0.0) return PyFloat_FromDouble(0.0);
  LinTermObject *t = PyObject_New(LinTermObject, &LinTermType);
  if (!t) return nullptr;
  t->coef = coef;
  Py_INCREF(var);
  t->var = var;
  return reinterpret_cast<PyObject *>(t);
}

void SetupLinTermType() {
  PyTypeObject &t = LinTermType;
  InitType(t, "zorvan.linterm", sizeof(LinTermObject));
  t.tp_init = LinTermInit;
  t.tp_dealloc = LinTermDealloc;
  t.tp_repr = LinTermRepr;
  t.tp_str = LinTermRepr;
  t.tp_methods = LinTermMethods;
  t.tp_doc = ZRV_HELP(
      "A linear term: a coefficient times one variable.", "t = 3 * x",
      "None: made by multiplying or dividing a variable by a number (or negating it); the "
      "type is not called directly.",
      "t = 3 * x\n    e = t + 2 * y  # an expression\n    q = t * y  # a quadratic term",
      "Terms never change: their in-place operators return new objects. A product that is "
      "exactly 0 is the float 0.0, not a term. Terms print as 3*x, or as the variable's name "
      "when the coefficient is 1.",
      "var, quadterm, expression, nonlinear");
}

}  // namespace zrv
