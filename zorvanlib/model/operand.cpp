#include "model/operand.h"

#include <cstdio>

#include "model/expression.h"
#include "module/errors.h"
#include "module/globals.h"
#include "module/types.h"
#include "nonlinear/nonlinear.h"
#include "numpy/bridge.h"

namespace zrv {

bool IsNdarray(PyObject *o) { return IsNumpyArray(o); }

bool IsNumpySignedOrFloat(PyObject *o) { return IsNumpyNumber(o); }

OperandKind KindOf(PyObject *o) {
  PyTypeObject *t = Py_TYPE(o);
  if (t == &VarType) return KindVar;
  if (t == &ExpressionType) return KindExpression;
  if (t == &LinTermType) return KindLinTerm;
  if (t == &QuadTermType) return KindQuadTerm;
  if (t == &NonlinearType) return KindNonlinear;
  if (PyFloat_Check(o) || PyLong_Check(o)) return KindNumber;
  if (PyUnicode_Check(o) || PyBytes_Check(o)) return KindInvalid;
  if (IsNdarray(o)) return KindVector;
  if (IsNumpySignedOrFloat(o)) return KindNumber;
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

PyObject *InvalidOperand(PyObject *o) {
  PyErr_Format(ModelError, "Invalid object in operation: <%S>", o);
  return nullptr;
}

PyObject *ModelErrorText(const char *text) {
  PyErr_SetString(ModelError, text);
  return nullptr;
}

namespace {

// Numbers other than Python ints and floats (NumPy scalars) are converted
// so that the nonlinear classifier accepts them. Returns new references.
bool PlainOperands(PyObject *&a, PyObject *&b) {
  PyObject *pa = KindOf(a) == KindNumber ? PlainNumber(a) : (Py_INCREF(a), a);
  if (!pa) return false;
  PyObject *pb = KindOf(b) == KindNumber ? PlainNumber(b) : (Py_INCREF(b), b);
  if (!pb) {
    Py_DECREF(pa);
    return false;
  }
  a = pa;
  b = pb;
  return true;
}

}  // namespace

PyObject *NonlinearNode(int op, PyObject *a, PyObject *b) {
  if (!PlainOperands(a, b)) return nullptr;
  PyObject *r = MakeNonlinearBinary(op, a, b);
  Py_DECREF(a);
  Py_DECREF(b);
  return r;
}

PyObject *NonlinearBinary(NlBin which, PyObject *a, PyObject *b) {
  if (!PlainOperands(a, b)) return nullptr;
  PyNumberMethods *m = NonlinearType.tp_as_number;
  PyObject *r = nullptr;
  bool done = false;
  if (m) {
    binaryfunc f = nullptr;
    switch (which) {
      case NlBin::Add: f = m->nb_add; break;
      case NlBin::Subtract: f = m->nb_subtract; break;
      case NlBin::Multiply: f = m->nb_multiply; break;
      case NlBin::Divide: f = m->nb_true_divide; break;
      case NlBin::Power: break;
    }
    if (which == NlBin::Power && m->nb_power) {
      r = m->nb_power(a, b, Py_None);
      done = true;
    } else if (f) {
      r = f(a, b);
      done = true;
    }
    if (r == Py_NotImplemented) {
      Py_DECREF(r);
      r = nullptr;
      done = false;
    }
  }
  if (!done) {
    switch (which) {
      case NlBin::Add: r = MakeNonlinearFlat(OpSum, a, b); break;
      case NlBin::Subtract: r = MakeNonlinearBinary(OpMinus, a, b); break;
      case NlBin::Multiply: r = MakeNonlinearFlat(OpProduct, a, b); break;
      case NlBin::Divide: r = MakeNonlinearBinary(OpDivide, a, b); break;
      case NlBin::Power: r = MakeNonlinearBinary(OpPower, a, b); break;
    }
  }
  Py_DECREF(a);
  Py_DECREF(b);
  return r;
}

PyObject *ModelAbsolute(PyObject *self) { return MakeNonlinear(OpAbs, self, false); }

namespace {

PyObject *Logical(int op, PyObject *a, PyObject *b) {
  OperandKind ka = KindOf(a), kb = KindOf(b);
  if (kb == KindVector && ka != KindVector)
    return op == OpAnd ? PyNumber_And(b, a) : PyNumber_Or(b, a);
  if (ka == KindVector) Py_RETURN_NOTIMPLEMENTED;
  if (ka == KindInvalid) return InvalidOperand(a);
  if (kb == KindInvalid) return InvalidOperand(b);
  return NonlinearNode(op, a, b);
}

}  // namespace

PyObject *ModelAnd(PyObject *a, PyObject *b) { return Logical(OpAnd, a, b); }
PyObject *ModelOr(PyObject *a, PyObject *b) { return Logical(OpOr, a, b); }

void FormatDouble(char *out, const char *fmt, double v) { std::snprintf(out, 512, fmt, v); }

PyObject *CheckResult(PyObject *result) { return ReportError(nullptr, result); }

}  // namespace zrv
