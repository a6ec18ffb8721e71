// Comparisons of modelling objects: `left OP right` builds a constraint whose
// body is left minus right, with a constant moved into the bound.
#include "algebra/compare.h"

#include "algebra/arith.h"
#include "base/arrays.h"
#include "base/globals.h"
#include "model/constraint.h"
#include "model/expression.h"
#include "model/operand.h"
#include "model/var.h"
#include "nonlinear/nonlinear.h"

namespace zrv {

namespace {

// The operand priority of the subtraction that makes a constraint body.
PyObject *Difference(PyObject *a, PyObject *b) {
  OperandKind ka = KindOf(a), kb = KindOf(b);
  if (ka == KindNumber && kb == KindNumber) {
    double v = NumberValue(a);
    if (v == -1.0 && PyErr_Occurred()) return nullptr;
    PyObject *e = NewExpression(v);
    if (!e) return nullptr;
    PyObject *d = ModelSubtract(e, b);
    Py_DECREF(e);
    return d;
  }
  return ModelSubtract(a, b);
}

}  // namespace

PyObject *ModelRichCompare(PyObject *a, PyObject *b, int op) {
  if (KindOf(b) == KindInvalid && IsNumpyScalar(b)) {
    // A NumPy scalar that is no number here (unsigned, bool) handed the
    // comparison over: it counts as the Python number it holds, as in
    // NumPy's object loops, which used to do this work.
    PyObject *item = NumpyScalarItem(b);
    if (item) {
      PyObject *r = ModelRichCompare(a, item, op);
      Py_DECREF(item);
      return r;
    }
    if (PyErr_Occurred()) return nullptr;
  }
  if ((op == Py_LE || op == Py_EQ || op == Py_GE) && KindOf(a) == KindExpression &&
      KindOf(b) == KindNumber) {
    double v = NumberValue(b);
    if (v == -1.0 && PyErr_Occurred()) return nullptr;
    return CompareExpressionWithNumber(a, v, op);
  }
  if (IsNumpyArray(b)) {
    if (IsNumpyArray(a)) {
      PyErr_SetString(InterfaceError, "Ill-defined constraint array");
      return nullptr;
    }
    int swapped = op == Py_LE ? Py_GE : op == Py_GE ? Py_LE : Py_EQ;
    return PyObject_RichCompare(b, a, swapped);
  }
  PyObject *d = Difference(a, b);
  if (!d) return nullptr;
  double rhs = 0.0;
  switch (KindOf(d)) {
    case KindExpression: {
      if (Py_REFCNT(d) > 1) {
        PyObject *copy = CopyScaled(d, 1.0);
        Py_DECREF(d);
        if (!copy) return nullptr;
        d = copy;
      }
      rhs = -AsExpression(d)->constant;
      AsExpression(d)->constant = 0.0;
      break;
    }
    case KindNonlinear: {
      auto *node = reinterpret_cast<NonlinearObject *>(d);
      PyObject *args = node->args;
      if (node->op == OpSum && (PyList_Check(args) || PyTuple_Check(args))) {
        Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
        PyObject *last = n > 0 ? PySequence_Fast_ITEMS(args)[n - 1] : nullptr;
        if (last && KindOf(last) == KindNumber) {
          double v = NumberValue(last);
          PyObject *rest = v == -1.0 && PyErr_Occurred()
                               ? nullptr
                               : PySequence_GetSlice(args, 0, n - 1);
          PyObject *list = rest ? PySequence_List(rest) : nullptr;
          Py_XDECREF(rest);
          PyObject *body = list ? MakeNonlinear(OpSum, list, true) : nullptr;
          Py_XDECREF(list);
          Py_DECREF(d);
          if (!body) return nullptr;
          d = body;
          rhs = -v;
        }
      } else if (node->op == OpMinus && PyTuple_Check(args) && PyTuple_GET_SIZE(args) == 2) {
        PyObject *l = PyTuple_GET_ITEM(args, 0), *r = PyTuple_GET_ITEM(args, 1);
        PyObject *keep = nullptr;
        if (KindOf(l) == KindNumber) {
          rhs = NumberValue(l);
          keep = r;
          if (op == Py_LE)
            op = Py_GE;
          else if (op == Py_GE)
            op = Py_LE;
        } else if (KindOf(r) == KindNumber) {
          rhs = NumberValue(r);
          keep = l;
        }
        if (keep) {
          if (rhs == -1.0 && PyErr_Occurred()) {
            Py_DECREF(d);
            return nullptr;
          }
          Py_INCREF(keep);
          Py_DECREF(d);
          d = keep;
        }
      }
      break;
    }
    case KindNumber:
    case KindVar:
    case KindLinTerm:
    case KindQuadTerm:
      break;
    default:
      Py_DECREF(d);
      return ModelErrorText("Invalid constraint body");
  }
  double lb = -kInfinity, ub = kInfinity;
  switch (op) {
    case Py_LE: ub = rhs; break;
    case Py_EQ: lb = ub = rhs; break;
    case Py_GE: lb = rhs; break;
    case Py_LT:
    case Py_GT:
    case Py_NE:
      Py_DECREF(d);
      return ModelErrorText("Invalid constraint: cannot enforce f(x) != 0, f(x) > 0, or f(x) < 0");
    default:
      Py_DECREF(d);
      return ModelErrorText("Invalid constraint: unrecognized comparison operator");
  }
  PyObject *c = NewConstraint(d);
  if (!c) return nullptr;
  ConSetLb(reinterpret_cast<ConstraintObject *>(c)->word, lb);
  ConSetUb(reinterpret_cast<ConstraintObject *>(c)->word, ub);
  return c;
}

}  // namespace zrv
