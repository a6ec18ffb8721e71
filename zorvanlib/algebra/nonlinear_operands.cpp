// Binary operations of modelling objects whose result is a nonlinear node.
#include "algebra/nonlinear_operands.h"

#include "base/arrays.h"

#include "base/types.h"
#include "model/operand.h"
#include "nonlinear/nonlinear.h"

namespace zrv {

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
  if ((ka == KindNumber || ka == KindInvalid) && !PyFloat_CheckExact(a) &&
      !PyLong_CheckExact(a) && IsNumpyScalar(a)) {
    // A NumPy scalar handed the operator over: it counts as its number.
    PyObject *item = NumpyScalarItem(a);
    if (item) {
      PyObject *r = Logical(op, item, b);
      Py_DECREF(item);
      return r;
    }
    if (PyErr_Occurred()) return nullptr;
  }
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

}  // namespace zrv
