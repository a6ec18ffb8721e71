// The one operand classifier and the number handling of the modelling
// types' arithmetic.
#include "model/operand.h"

#include <cstdio>

#include "model/expression.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/types.h"
#include "base/arrays.h"

namespace zrv {

OperandKind KindOf(PyObject *o) {
  PyTypeObject *t = Py_TYPE(o);
  if (t == &VarType) return KindVar;
  if (t == &ExpressionType) return KindExpression;
  if (t == &LinTermType) return KindLinTerm;
  if (t == &QuadTermType) return KindQuadTerm;
  if (t == &NonlinearType) return KindNonlinear;
  if (PyFloat_Check(o) || PyLong_Check(o)) return KindNumber;
  if (PyUnicode_Check(o) || PyBytes_Check(o)) return KindInvalid;
  if (IsNumpyArray(o)) return KindVector;
  if (IsNumpyNumber(o)) return KindNumber;
  if (PySequence_Check(o)) return KindVector;
  return KindInvalid;
}

double NumberValue(PyObject *o) {
  if (PyFloat_CheckExact(o)) return PyFloat_AS_DOUBLE(o);
  if (PyLong_Check(o)) return PyLong_AsDouble(o);
  return PyFloat_AsDouble(o);
}

int ConstantOperand(PyObject *o, OperandKind kind, double *value) {
  if (kind == KindNumber) {
    *value = NumberValue(o);
    if (*value == -1.0 && PyErr_Occurred()) return -1;
    return 1;
  }
  if (kind == KindExpression && ExpressionIsConstant(o)) {
    *value = reinterpret_cast<ExpressionObject *>(o)->constant;
    return 1;
  }
  return 0;
}

PyObject *PlainNumber(PyObject *o) {
  if (PyFloat_Check(o) || PyLong_Check(o)) {
    Py_INCREF(o);
    return o;
  }
  double v = PyFloat_AsDouble(o);
  if (v == -1.0 && PyErr_Occurred()) return nullptr;
  return PyFloat_FromDouble(v);
}

OperandKind ScalarKind(PyObject *o) {
  OperandKind k = KindOf(o);
  if (k >= KindNumber && k <= KindNonlinear) return k;
  InvalidOperand(o);
  return KindInvalid;
}

PyObject *InvalidOperand(PyObject *o) {
  PyErr_Format(ModelError, "Invalid object in operation: <%S>", o);
  return nullptr;
}

PyObject *ModelErrorText(const char *text) {
  PyErr_SetString(ModelError, text);
  return nullptr;
}

PyObject *DivideByVector(PyObject *x, PyObject *divisor) {
  PyObject *one = PyFloat_FromDouble(1.0);
  if (!one) return nullptr;
  PyObject *inv = PyNumber_TrueDivide(one, divisor);
  Py_DECREF(one);
  if (!inv) return nullptr;
  PyObject *r = PyNumber_Multiply(inv, x);
  Py_DECREF(inv);
  return r;
}

void FormatDouble(char *out, const char *fmt, double v) { std::snprintf(out, 512, fmt, v); }

PyObject *CheckResult(PyObject *result) { return ReportError(nullptr, result); }

PyObject *EmptyQuadratic(PyObject *, PyObject *) {
  return CheckResult(Py_BuildValue("([],[],[])"));
}

}  // namespace zrv
