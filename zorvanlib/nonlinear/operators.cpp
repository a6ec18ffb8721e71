// Arithmetic on nonlinear nodes: the number slots of the type, tree copies
// and the simplifications that keep trees small (0, 1 and -1 operands).
#include "model/operand.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"

#include "model/expression.h"
#include "base/globals.h"

#include <cmath>

namespace zrv {

bool IsNumberEqual(PyObject *o, double v) {
  if (!IsModelNumber(o)) return false;
  double d = PyFloat_AsDouble(o);
  if (d == -1.0 && PyErr_Occurred()) {
    PyErr_Clear();
    return false;
  }
  return d == v;
}

namespace {

// Whether a list of lists (the result of extractLinear or extractQuadratic)
// has only empty lists.
bool AllEmpty(PyObject *lists) {
  if (!PyTuple_Check(lists)) return false;
  for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(lists); ++i) {
    PyObject *l = PyTuple_GET_ITEM(lists, i);
    if (!PyList_Check(l) || PyList_GET_SIZE(l) != 0) return false;
  }
  return true;
}

bool HasNoTerms(PyObject *e, const char *method) {
  PyObject *parts = PyObject_CallMethod(e, method, nullptr);
  if (!parts) {
    PyErr_Clear();
    return false;
  }
  bool empty = AllEmpty(parts);
  Py_DECREF(parts);
  return empty;
}

}  // namespace

bool ConstantValue(PyObject *o, double *value) {
  if (IsModelNumber(o)) {
    double d = PyFloat_AsDouble(o);
    if (d == -1.0 && PyErr_Occurred()) {
      PyErr_Clear();
      return false;
    }
    *value = d;
    return true;
  }
  if (PyObject_TypeCheck(o, &ExpressionType) && HasNoTerms(o, "extractLinear") &&
      HasNoTerms(o, "extractQuadratic")) {
    *value = reinterpret_cast<ExpressionObject *>(o)->constant;
    return true;
  }
  return false;
}

namespace {

PyObject *CopyNode(PyObject *o, int depth);

// A copy of an operand of a node: trees are rebuilt, other objects shared.
PyObject *CopyOperand(PyObject *o, int depth) {
  if (IsNonlinear(o) && depth >= 0) return CopyNode(o, depth);
  Py_INCREF(o);
  return o;
}

PyObject *CopyNode(PyObject *o, int depth) {
  int op = NodeOp(o);
  PyObject *args = NodeArgs(o);
  if (op < 0 || op >= OpCount) {
    PyErr_SetString(ModelError, "Invalid nonlinear expression: unknown operator");
    return nullptr;
  }
  int arity = kOperators[op].arity;
  PyObject *copy;
  if (arity == 1) {
    if (!args || PyList_Check(args) || PyTuple_Check(args)) {
      PyErr_SetString(ModelError,
                      "Invalid object being copied from single argument in a nonlinear "
                      "expression");
      return nullptr;
    }
    copy = CopyOperand(args, depth - 1);
  } else if (arity == 2) {
    if (!args || !PyTuple_Check(args) || PyTuple_GET_SIZE(args) != 2) {
      PyErr_SetString(ModelError,
                      "Accessing first argument list of an object that is not a nonlinear "
                      "binary expression");
      return nullptr;
    }
    PyObject *l = CopyOperand(PyTuple_GET_ITEM(args, 0), depth - 1);
    if (!l) return nullptr;
    PyObject *r = CopyOperand(PyTuple_GET_ITEM(args, 1), depth - 1);
    if (!r) {
      Py_DECREF(l);
      return nullptr;
    }
    copy = PyTuple_Pack(2, l, r);
    Py_DECREF(l);
    Py_DECREF(r);
  } else {
    if (!args || (!PyList_Check(args) && !PyTuple_Check(args))) {
      PyErr_SetString(ModelError,
                      "Accessing next argument list of an object that is not a nonlinear "
                      "n-ary expression");
      return nullptr;
    }
    Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
    copy = PyList_New(n);
    if (!copy) return nullptr;
    for (Py_ssize_t i = 0; i < n; ++i) {
      // The list may change while copying (a user callable's operands are
      // shared objects), so read it afresh at each step.
      if (i >= PySequence_Fast_GET_SIZE(args)) {
        PyErr_SetString(ModelError, "Nonlinear expression changed while being copied");
        Py_DECREF(copy);
        return nullptr;
      }
      PyObject *item = CopyOperand(PySequence_Fast_ITEMS(args)[i], depth - 1);
      if (!item) {
        Py_DECREF(copy);
        return nullptr;
      }
      PyList_SET_ITEM(copy, i, item);
    }
    if (PyTuple_Check(args)) Py_SETREF(copy, PyList_AsTuple(copy));
  }
  if (!copy) return nullptr;
  return NewNode(op, copy);
}

}  // namespace

PyObject *CopyTree(PyObject *o) { return CopyOperand(o, kTreeDepth); }

PyObject *Negate(PyObject *o) {
  if (IsNonlinear(o)) return MakeNonlinear(OpUminus, o, false);
  return PyNumber_Negative(o);
}

namespace {

PyObject *NotImplemented() { Py_RETURN_NOTIMPLEMENTED; }

bool Classified(PyObject *a, PyObject *b) {
  return ScalarKind(a) >= 0 && ScalarKind(b) >= 0;
}

// Adds b to a (a copy of the left operand, owned) as sum nodes do: a sum
// node grows by b, anything else becomes a sum of the two; numbers last.
PyObject *AppendToSum(PyObject *a, PyObject *b) {
  PyObject *r;
  if (IsNonlinear(a) || !IsNonlinear(b)) {
    r = NonlinearAppend(OpSum, a, b);
  } else {
    // A number or a modelling object plus a tree: the tree's copy leads.
    PyObject *c = CopyTree(b);
    if (!c) {
      Py_DECREF(a);
      return nullptr;
    }
    r = NonlinearAppend(OpSum, c, a);
    Py_DECREF(c);
  }
  Py_DECREF(a);
  return r;
}

PyObject *Add(PyObject *a, PyObject *b, bool inplace) {
  if (IsVectorOperand(b) && !IsVectorOperand(a)) return PyNumber_Add(b, a);
  if (IsVectorOperand(a)) return NotImplemented();
  if (!Classified(a, b)) return nullptr;
  if (IsNumberEqual(b, 0.0)) {
    if (inplace) {
      Py_INCREF(a);
      return a;
    }
    return CopyTree(a);
  }
  if (IsNumberEqual(a, 0.0)) return CopyTree(b);
  if (inplace) return NonlinearAppend(OpSum, a, b);
  PyObject *c = IsNonlinear(a) ? CopyTree(a) : (Py_INCREF(a), a);
  if (!c) return nullptr;
  return AppendToSum(c, b);
}

PyObject *Subtract(PyObject *a, PyObject *b, bool inplace) {
  if (IsVectorOperand(b) && !IsVectorOperand(a)) {
    PyObject *neg = PyNumber_Negative(b);
    if (!neg) return nullptr;
    PyObject *r = PyNumber_Add(neg, a);
    Py_DECREF(neg);
    return r;
  }
  if (IsVectorOperand(a)) return NotImplemented();
  if (!Classified(a, b)) return nullptr;
  if (IsNumberEqual(a, 0.0)) return Negate(b);
  if (IsNumberEqual(b, 0.0)) {
    if (inplace) {
      Py_INCREF(a);
      return a;
    }
    return CopyTree(a);
  }
  if (IsNode(a, OpSum)) {
    PyObject *neg = Negate(b);
    if (!neg) return nullptr;
    PyObject *r;
    if (inplace) {
      r = NonlinearAppend(OpSum, a, neg);
    } else {
      PyObject *c = CopyTree(a);
      r = c ? NonlinearAppend(OpSum, c, neg) : nullptr;
      Py_XDECREF(c);
    }
    Py_DECREF(neg);
    return r;
  }
  return MakeNonlinearBinary(OpMinus, a, b);
}

PyObject *Multiply(PyObject *a, PyObject *b, bool inplace) {
  if (IsVectorOperand(b) && !IsVectorOperand(a)) return PyNumber_Multiply(b, a);
  if (IsVectorOperand(a)) return NotImplemented();
  if (!Classified(a, b)) return nullptr;
  if (IsNumberEqual(a, 0.0) || IsNumberEqual(b, 0.0)) return PyFloat_FromDouble(0.0);
  if (IsNumberEqual(a, 1.0)) return CopyTree(b);
  if (IsNumberEqual(b, 1.0)) {
    if (inplace) {
      Py_INCREF(a);
      return a;
    }
    return CopyTree(a);
  }
  if (IsNumberEqual(a, -1.0)) return Negate(b);
  if (IsNumberEqual(b, -1.0)) return Negate(a);
  if (inplace) return NonlinearAppend(OpProduct, a, b);
  return MakeNonlinearBinary(OpProduct, a, b);
}

PyObject *Divide(PyObject *a, PyObject *b, bool inplace) {
  if (IsVectorOperand(b) && !IsVectorOperand(a)) return DivideByVector(a, b);
  if (IsVectorOperand(a)) return NotImplemented();
  if (!Classified(a, b)) return nullptr;
  double v;
  if (ConstantValue(a, &v) && v == 0.0) return PyFloat_FromDouble(0.0);
  if (ConstantValue(b, &v)) {
    if (v == 0.0) {
      PyErr_SetString(ModelError, "Division by zero");
      return nullptr;
    }
    if (v == 1.0) {
      if (inplace) {
        Py_INCREF(a);
        return a;
      }
      return CopyTree(a);
    }
  }
  return MakeNonlinearBinary(OpDivide, a, b);
}

PyObject *Power(PyObject *a, PyObject *b, PyObject *mod) {
  if (mod != Py_None) {
    PyErr_SetString(ModelError, "Invalid operands in exponentiation");
    return nullptr;
  }
  if (IsVectorOperand(a) && !IsNonlinear(a)) return NotImplemented();
  if (IsVectorOperand(b)) {
    PyErr_SetString(ModelError, "Cannot obtain a power with a vector as an exponent");
    return nullptr;
  }
  if (!Classified(a, b)) return nullptr;
  if (IsNumberEqual(a, 1.0) || IsNumberEqual(b, 0.0)) return PyFloat_FromDouble(1.0);
  if (IsNumberEqual(b, 1.0)) return CopyTree(a);
  return MakeNonlinearBinary(OpPower, a, b);
}

// NumPy scalars become Python floats before they enter a tree, so that
// trees print and convert the same whichever kind of number was used.
PyObject *Plain(PyObject *o) {
  if (PyFloat_CheckExact(o) || PyLong_Check(o) || !IsModelNumber(o)) return Py_NewRef(o);
  double v = PyFloat_AsDouble(o);
  if (v == -1.0 && PyErr_Occurred()) return nullptr;
  return PyFloat_FromDouble(v);
}

template <PyObject *(*Op)(PyObject *, PyObject *, bool), bool InPlace>
PyObject *WithPlainNumbers(PyObject *a, PyObject *b) {
  PyObject *pa = Plain(a);
  if (!pa) return nullptr;
  PyObject *pb = Plain(b);
  if (!pb) {
    Py_DECREF(pa);
    return nullptr;
  }
  PyObject *r = Op(pa, pb, InPlace);
  // In place on a number never happens: the left operand is then a node.
  Py_DECREF(pa);
  Py_DECREF(pb);
  return r;
}

constexpr auto NlAdd = WithPlainNumbers<Add, false>;
constexpr auto NlSubtract = WithPlainNumbers<Subtract, false>;
constexpr auto NlMultiply = WithPlainNumbers<Multiply, false>;
constexpr auto NlDivide = WithPlainNumbers<Divide, false>;
constexpr auto NlInPlaceAdd = WithPlainNumbers<Add, true>;
constexpr auto NlInPlaceSubtract = WithPlainNumbers<Subtract, true>;
constexpr auto NlInPlaceMultiply = WithPlainNumbers<Multiply, true>;
constexpr auto NlInPlaceDivide = WithPlainNumbers<Divide, true>;

PyObject *PowerPlain(PyObject *a, PyObject *b, PyObject *mod) {
  PyObject *pa = Plain(a);
  if (!pa) return nullptr;
  PyObject *pb = Plain(b);
  PyObject *r = pb ? Power(pa, pb, mod) : nullptr;
  Py_DECREF(pa);
  Py_XDECREF(pb);
  return r;
}

PyObject *InPlacePower(PyObject *a, PyObject *b, PyObject *mod);

PyObject *NlInPlacePower(PyObject *a, PyObject *b, PyObject *mod) {
  PyObject *pb = Plain(b);
  if (!pb) return nullptr;
  PyObject *r = InPlacePower(a, pb, mod);
  Py_DECREF(pb);
  return r;
}

PyObject *InPlacePower(PyObject *a, PyObject *b, PyObject *mod) {
  if (mod == Py_None && !IsVectorOperand(b)) {
    if (IsNumberEqual(b, 0.0)) return PyFloat_FromDouble(1.0);
    if (IsNumberEqual(b, 1.0)) {
      Py_INCREF(a);
      return a;
    }
  }
  if (!IsNode(a, OpPower) || mod != Py_None || IsVectorOperand(b))
    return Power(a, b, mod);
  if (ScalarKind(b) < 0) return nullptr;
  // (base ** e) ** f becomes base ** (e * f), changing this node.
  auto *node = reinterpret_cast<NonlinearObject *>(a);
  if (!PyTuple_Check(node->args) || PyTuple_GET_SIZE(node->args) != 2) {
    PyErr_SetString(ModelError, "Invalid binary nonlinear expression");
    return nullptr;
  }
  PyObject *base = PyTuple_GET_ITEM(node->args, 0);
  PyObject *exponent = PyTuple_GET_ITEM(node->args, 1);
  if (IsNode(exponent, OpProduct)) {
    auto *e = reinterpret_cast<NonlinearObject *>(exponent);
    if (!PyList_Check(e->args)) {
      PyObject *list = PySequence_List(e->args);
      if (!list) return nullptr;
      Py_SETREF(e->args, list);
    }
    Py_ssize_t n = PyList_GET_SIZE(e->args);
    if (PyList_Insert(e->args, n > 0 ? n - 1 : 0, b) < 0) return nullptr;
  } else {
    PyObject *product = PyNumber_Multiply(exponent, b);
    if (!product) return nullptr;
    PyObject *args = PyTuple_Pack(2, base, product);
    Py_DECREF(product);
    if (!args) return nullptr;
    Py_SETREF(node->args, args);
  }
  Py_INCREF(a);
  return a;
}

PyObject *NlNegative(PyObject *a) { return MakeNonlinear(OpUminus, a, false); }

PyObject *NlPositive(PyObject *a) {
  Py_INCREF(a);
  return a;
}

PyObject *NlAbsolute(PyObject *a) { return MakeNonlinear(OpAbs, a, false); }

PyObject *Logical(int op, PyObject *a, PyObject *b, bool inplace) {
  if (IsVectorOperand(b) && !IsVectorOperand(a))
    return op == OpAnd ? PyNumber_And(b, a) : PyNumber_Or(b, a);
  if (IsVectorOperand(a)) return NotImplemented();
  if (inplace) return NonlinearAppend(op, a, b);
  return MakeNonlinearFlat(op, a, b);
}

PyObject *NlAnd(PyObject *a, PyObject *b) { return Logical(OpAnd, a, b, false); }
PyObject *NlOr(PyObject *a, PyObject *b) { return Logical(OpOr, a, b, false); }
PyObject *NlInPlaceAnd(PyObject *a, PyObject *b) { return Logical(OpAnd, a, b, true); }
PyObject *NlInPlaceOr(PyObject *a, PyObject *b) { return Logical(OpOr, a, b, true); }

}  // namespace

PyNumberMethods NonlinearNumberMethods = [] {
  PyNumberMethods m{};
  m.nb_add = NlAdd;
  m.nb_subtract = NlSubtract;
  m.nb_multiply = NlMultiply;
  m.nb_true_divide = NlDivide;
  m.nb_power = PowerPlain;
  m.nb_negative = NlNegative;
  m.nb_positive = NlPositive;
  m.nb_absolute = NlAbsolute;
  m.nb_and = NlAnd;
  m.nb_or = NlOr;
  m.nb_inplace_add = NlInPlaceAdd;
  m.nb_inplace_subtract = NlInPlaceSubtract;
  m.nb_inplace_multiply = NlInPlaceMultiply;
  m.nb_inplace_true_divide = NlInPlaceDivide;
  m.nb_inplace_power = NlInPlacePower;
  m.nb_inplace_and = NlInPlaceAnd;
  m.nb_inplace_or = NlInPlaceOr;
  return m;
}();

}  // namespace zrv
