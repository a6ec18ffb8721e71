// The operator tables of variables, linear and quadratic terms and
// expressions. Every binary slot first hands vector operands to NumPy (or the
// interpreter) with the operands exchanged, then dispatches on the kinds of
// both operands; results beyond degree two become nonlinear nodes.
#include "algebra/arith.h"

#include <cmath>
#include <new>

#include "algebra/compare.h"
#include "algebra/nonlinear_operands.h"
#include "base/types.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "base/globals.h"
#include "base/arrays.h"
#include "nonlinear/nonlinear.h"

namespace zrv {

namespace {

enum class Op { Add, Subtract, Multiply, Divide, Power };

inline bool IsModel(OperandKind k) { return k >= KindVar && k <= KindExpression; }
inline bool IsLinear(OperandKind k) { return k == KindVar || k == KindLinTerm; }

// The variable and coefficient of a var or linterm.
inline PyObject *TermVar(PyObject *o, OperandKind k) {
  return k == KindVar ? o : reinterpret_cast<LinTermObject *>(o)->var;
}
inline double TermCoef(PyObject *o, OperandKind k) {
  return k == KindVar ? 1.0 : reinterpret_cast<LinTermObject *>(o)->coef;
}
inline bool SameVar(PyObject *a, PyObject *b) { return VarIdOf(a) == VarIdOf(b); }

inline QuadTermObject *Quad(PyObject *o) { return reinterpret_cast<QuadTermObject *>(o); }

PyObject *NewRef(PyObject *o) {
  Py_INCREF(o);
  return o;
}
PyObject *Float(double v) { return PyFloat_FromDouble(v); }

// The error for an operand that no rule accepts, worded after the type whose
// operator was called.
PyObject *BadOperands(Op op, PyObject *a, OperandKind ka, PyObject *b, OperandKind kb) {
  OperandKind self = IsModel(ka) ? ka : kb;
  PyObject *bad = IsModel(ka) ? b : a;
  switch (self) {
    case KindVar: {
      static const char *const kText[] = {
          "Invalid operands in addition", "Invalid object in subtraction",
          "Invalid operands in multiplication", "Invalid operands in division",
          "Invalid operands in exponentiation"};
      return ModelErrorText(kText[static_cast<int>(op)]);
    }
    case KindLinTerm:
      if (op == Op::Multiply || op == Op::Divide)
        return ModelErrorText("Invalid operands in product of linear terms");
      break;
    case KindQuadTerm:
      if (op == Op::Add || op == Op::Subtract)
        return ModelErrorText("Invalid operands in sum with quadratic term");
      break;
    default:
      break;
  }
  return InvalidOperand(bad);
}

// A number divided by a number, for the rare internal calls on two numbers.
PyObject *NumberOp(Op op, PyObject *a, PyObject *b) {
  double x = NumberValue(a), y = NumberValue(b);
  if (PyErr_Occurred()) return nullptr;
  switch (op) {
    case Op::Add: return Float(x + y);
    case Op::Subtract: return Float(x - y);
    case Op::Multiply: return Float(x * y);
    case Op::Divide:
      if (y == 0.0) return ModelErrorText("Division by zero");
      return Float(x / y);
    case Op::Power: return Float(std::pow(x, y));
  }
  return nullptr;
}

// Polynomial degree of a number, var, term or expression.
int Degree(PyObject *o, OperandKind k) {
  switch (k) {
    case KindVar:
    case KindLinTerm: return 1;
    case KindQuadTerm: return 2;
    case KindExpression: {
      ExpressionObject *e = AsExpression(o);
      if (!e->quadratic.Empty()) return 2;
      if (!e->linear.Empty()) return 1;
      return 0;
    }
    default: return 0;
  }
}

// A read-only view of an operand as a polynomial.
struct PolyView {
  double constant = 0.0;
  const LinEntry *lin = nullptr;
  size_t nlin = 0;
  const QuadEntry *quad = nullptr;
  size_t nquad = 0;
  LinEntry one{};
  QuadEntry q1{};
};

int MakeView(PyObject *o, OperandKind k, PolyView &v) {
  switch (k) {
    case KindNumber:
      v.constant = NumberValue(o);
      return v.constant == -1.0 && PyErr_Occurred() ? -1 : 0;
    case KindVar:
    case KindLinTerm: {
      PyObject *x = TermVar(o, k);
      v.one = LinEntry{VarIdOf(x), x, TermCoef(o, k)};
      v.lin = &v.one;
      v.nlin = 1;
      return 0;
    }
    case KindQuadTerm: {
      QuadTermObject *q = Quad(o);
      v.q1 = QuadEntry{VarIdOf(q->var1), VarIdOf(q->var2), q->var1, q->var2, q->coef};
      v.quad = &v.q1;
      v.nquad = 1;
      return 0;
    }
    case KindExpression: {
      v.constant = AsExpression(o)->constant;
      const auto &lin = ExpressionLinear(o);
      const auto &quad = ExpressionQuadratic(o);
      v.lin = lin.data();
      v.nlin = lin.size();
      v.quad = quad.data();
      v.nquad = quad.size();
      return 0;
    }
    default:
      InvalidOperand(o);
      return -1;
  }
}

// The expanded product of two operands whose degrees add up to at most two.
PyObject *PolyProduct(PyObject *a, OperandKind ka, PyObject *b, OperandKind kb) {
  PolyView va, vb;
  if (MakeView(a, ka, va) < 0 || MakeView(b, kb, vb) < 0) return nullptr;
  PyObject *r = NewExpression(va.constant * vb.constant);
  if (!r) return nullptr;
  ExpressionObject *e = AsExpression(r);
  try {
    auto scaled = [&](const PolyView &src, double c) {
      if (c == 0.0) return;
      for (size_t i = 0; i < src.nlin; ++i) {
        LinEntry x = src.lin[i];
        x.coef *= c;
        x.Retain();
        e->linear.Push(x);
      }
      for (size_t i = 0; i < src.nquad; ++i) {
        QuadEntry q = src.quad[i];
        q.coef *= c;
        q.Retain();
        e->quadratic.Push(q);
      }
    };
    scaled(vb, va.constant);
    scaled(va, vb.constant);
    if (va.nlin && vb.nlin) {
      e->quadratic.Reserve(va.nlin * vb.nlin);
      for (size_t i = 0; i < va.nlin; ++i) {
        for (size_t j = 0; j < vb.nlin; ++j) {
          const LinEntry &x = va.lin[i];
          const LinEntry &y = vb.lin[j];
          QuadEntry q = x.id <= y.id ? QuadEntry{x.id, y.id, x.var, y.var, x.coef * y.coef}
                                     : QuadEntry{y.id, x.id, y.var, x.var, x.coef * y.coef};
          q.Retain();
          e->quadratic.Push(q);
        }
      }
    }
  } catch (const std::bad_alloc &) {
    Py_DECREF(r);
    PyErr_SetString(ModelError, "Error multiplying expressions");
    return nullptr;
  }
  return r;
}

// ---------------------------------------------------------------------------
// The operators on classified operands (neither is a vector or invalid).

PyObject *AddCore(PyObject *a, OperandKind ka, PyObject *b, OperandKind kb, double factor) {
  if (ka == KindNonlinear || kb == KindNonlinear) {
    if (factor < 0) return NonlinearBinary(NlBin::Subtract, a, b);
    // The tree's own sum, with the other operand added to it.
    return ka == KindNonlinear ? NonlinearBinary(NlBin::Add, a, b)
                               : NonlinearBinary(NlBin::Add, b, a);
  }
  if (ka == KindNumber && kb == KindNumber)
    return NumberOp(factor < 0 ? Op::Subtract : Op::Add, a, b);
  if (ka == KindVar) {
    if (kb == KindNumber) {
      double c = NumberValue(b);
      if (c == -1.0 && PyErr_Occurred()) return nullptr;
      if (c == 0.0) return NewRef(a);
    } else if (kb == KindVar && SameVar(a, b)) {
      return factor < 0 ? Float(0.0) : MakeLinTerm(2.0, a);
    }
  }
  PyObject *r = NewExpression(0.0);
  if (!r) return nullptr;
  if (ExpressionAddScaled(r, a, 1.0) < 0 || ExpressionAddScaled(r, b, factor) < 0) Py_CLEAR(r);
  return r;
}

PyObject *MultiplyCore(PyObject *a, OperandKind ka, PyObject *b, OperandKind kb) {
  if (ka == KindNonlinear || kb == KindNonlinear) {
    return ka == KindNonlinear ? NonlinearBinary(NlBin::Multiply, a, b)
                               : NonlinearBinary(NlBin::Multiply, b, a);
  }
  if (ka == KindNumber && kb == KindNumber) return NumberOp(Op::Multiply, a, b);
  if (ka == KindNumber || kb == KindNumber) {
    PyObject *n = ka == KindNumber ? a : b;
    PyObject *o = ka == KindNumber ? b : a;
    OperandKind k = ka == KindNumber ? kb : ka;
    double c = NumberValue(n);
    if (c == -1.0 && PyErr_Occurred()) return nullptr;
    switch (k) {
      case KindVar:
        if (c == 0.0) return Float(0.0);
        if (c == 1.0) return NewRef(o);
        return MakeLinTerm(c, o);
      case KindLinTerm:
        return MakeLinTerm(reinterpret_cast<LinTermObject *>(o)->coef * c,
                           reinterpret_cast<LinTermObject *>(o)->var);
      case KindQuadTerm:
        return MakeQuadTerm(Quad(o)->coef * c, Quad(o)->var1, Quad(o)->var2);
      default:
        return CopyScaled(o, c);
    }
  }
  if (IsLinear(ka) && IsLinear(kb))
    return MakeQuadTerm(TermCoef(a, ka) * TermCoef(b, kb), TermVar(a, ka), TermVar(b, kb));
  if (ka != KindExpression && kb != KindExpression) {
    // Products with a quadratic term: the quadratic term leads.
    return kb == KindQuadTerm && ka != KindQuadTerm ? NonlinearNode(OpProduct, b, a)
                                                    : NonlinearNode(OpProduct, a, b);
  }
  if (Degree(a, ka) + Degree(b, kb) <= 2) return PolyProduct(a, ka, b, kb);
  // Beyond degree two: a product node, the expression first.
  return kb == KindExpression && ka != KindExpression ? NonlinearNode(OpProduct, b, a)
                                                      : NonlinearNode(OpProduct, a, b);
}

PyObject *DivideByConstant(PyObject *a, OperandKind ka, PyObject *b, double d) {
  switch (ka) {
    case KindVar:
      if (d == 0.0) return ModelErrorText("Division of variable by zero");
      if (d == 1.0) return NewRef(a);
      return MakeLinTerm(1.0 / d, a);
    case KindLinTerm:
      if (d == 0.0) return ModelErrorText("Division by zero");
      return MakeLinTerm(reinterpret_cast<LinTermObject *>(a)->coef / d,
                         reinterpret_cast<LinTermObject *>(a)->var);
    case KindQuadTerm:
      if (d == 0.0) return ModelErrorText("Division by zero of a bilinear term");
      return MakeQuadTerm(Quad(a)->coef / d, Quad(a)->var1, Quad(a)->var2);
    case KindExpression:
      if (d == 0.0) return ModelErrorText("Division by zero");
      return CopyScaled(a, 1.0 / d);
    default:
      // A number divided by a constant expression.
      return NonlinearNode(OpDivide, a, b);
  }
}

// (coef * term) / var, as a node of the float and the variable.
PyObject *FloatOver(double coef, PyObject *var) {
  PyObject *f = Float(coef);
  if (!f) return nullptr;
  PyObject *r = NonlinearNode(OpDivide, f, var);
  Py_DECREF(f);
  return r;
}

// (coef * var) / divisor, the linear term made first.
PyObject *TermOver(double coef, PyObject *var, PyObject *divisor) {
  PyObject *t = MakeLinTerm(coef, var);
  if (!t) return nullptr;
  PyObject *r = NonlinearNode(OpDivide, t, divisor);
  Py_DECREF(t);
  return r;
}

PyObject *DivideCore(PyObject *a, OperandKind ka, PyObject *b, OperandKind kb) {
  if (ka == KindNonlinear || kb == KindNonlinear) return NonlinearBinary(NlBin::Divide, a, b);
  if (ka == KindNumber && kb == KindNumber) return NumberOp(Op::Divide, a, b);
  double d;
  int constant = ConstantOperand(b, kb, &d);
  if (constant < 0) return nullptr;
  if (constant) return DivideByConstant(a, ka, b, d);
  if (ka == KindNumber) {
    if (kb == KindVar) {
      double c = NumberValue(a);
      if (c == -1.0 && PyErr_Occurred()) return nullptr;
      if (c == 0.0) return Float(0.0);
    }
    return NonlinearNode(OpDivide, a, b);
  }
  if (IsLinear(ka) && IsLinear(kb)) {
    if (!SameVar(TermVar(a, ka), TermVar(b, kb))) return NonlinearNode(OpDivide, a, b);
    double cb = TermCoef(b, kb);
    if (cb == 0.0) return ModelErrorText("Division by zero");
    return Float(TermCoef(a, ka) / cb);
  }
  if (IsLinear(ka) && kb == KindQuadTerm) {
    QuadTermObject *q = Quad(b);
    if (q->coef == 0.0)
      return ModelErrorText(ka == KindVar ? "Division by zero of a variable"
                                          : "Division by zero of a linear term");
    PyObject *x = TermVar(a, ka);
    double r = TermCoef(a, ka) / q->coef;
    if (SameVar(x, q->var1)) return FloatOver(r, q->var2);
    if (SameVar(x, q->var2)) return FloatOver(r, q->var1);
    return NonlinearNode(OpDivide, a, b);
  }
  if (ka == KindQuadTerm && IsLinear(kb)) {
    QuadTermObject *q = Quad(a);
    PyObject *y = TermVar(b, kb);
    double cb = TermCoef(b, kb);
    if (cb == 0.0) return ModelErrorText("Division by zero");
    if (SameVar(y, q->var1)) return MakeLinTerm(q->coef / cb, q->var2);
    if (SameVar(y, q->var2)) return MakeLinTerm(q->coef / cb, q->var1);
    return NonlinearNode(OpDivide, a, b);
  }
  if (ka == KindQuadTerm && kb == KindQuadTerm) {
    QuadTermObject *q = Quad(a), *p = Quad(b);
    if (p->coef == 0.0) return ModelErrorText("Division by zero of a bilinear term");
    double r = q->coef / p->coef;
    bool up = SameVar(q->var1, p->var1), vq = SameVar(q->var2, p->var2);
    if (up && vq) return Float(r);
    if (up) return TermOver(r, q->var2, p->var2);
    if (vq) return TermOver(r, q->var1, p->var1);
    if (SameVar(q->var1, p->var2)) return TermOver(r, q->var2, p->var1);
    if (SameVar(q->var2, p->var1)) return TermOver(r, q->var1, p->var2);
    return NonlinearNode(OpDivide, a, b);
  }
  return NonlinearNode(OpDivide, a, b);
}

PyObject *PowerCore(PyObject *a, OperandKind ka, PyObject *b, OperandKind kb) {
  if (ka == KindNonlinear || kb == KindNonlinear) return NonlinearBinary(NlBin::Power, a, b);
  if (ka == KindNumber && kb == KindNumber) return NumberOp(Op::Power, a, b);
  if (kb == KindNumber) {
    double k = NumberValue(b);
    if (k == -1.0 && PyErr_Occurred()) return nullptr;
    if (k == 0.0) return Float(1.0);
    switch (ka) {
      case KindVar:
        if (k == 1.0) return NewRef(a);
        if (k == 2.0) return MakeQuadTerm(1.0, a, a);
        break;
      case KindLinTerm: {
        auto *t = reinterpret_cast<LinTermObject *>(a);
        if (k == 1.0) return NewRef(a);
        if (k == 2.0) return MakeQuadTerm(t->coef * t->coef, t->var, t->var);
        break;
      }
      case KindQuadTerm:
        if (k == 1.0) return MakeQuadTerm(Quad(a)->coef, Quad(a)->var1, Quad(a)->var2);
        break;
      default:
        if (k == 1.0) return CopyScaled(a, 1.0);
        if (k == 2.0) return MultiplyCore(a, ka, a, ka);
        break;
    }
    return NonlinearNode(OpPower, a, b);
  }
  if (ka == KindNumber) {
    double c = NumberValue(a);
    if (c == -1.0 && PyErr_Occurred()) return nullptr;
    if (c == 1.0) return Float(1.0);
  }
  return NonlinearNode(OpPower, a, b);
}

// ---------------------------------------------------------------------------
// Slots

// Vector operands go back to the interpreter with the operands exchanged.
PyObject *SwapVector(Op op, PyObject *self, PyObject *vec) {
  switch (op) {
    case Op::Add: return PyNumber_Add(vec, self);
    case Op::Subtract: {
      PyObject *neg = PyNumber_Negative(vec);
      if (!neg) return nullptr;
      PyObject *r = PyNumber_Add(neg, self);
      Py_DECREF(neg);
      return r;
    }
    case Op::Multiply: return PyNumber_Multiply(vec, self);
    case Op::Divide: return DivideByVector(self, vec);
    case Op::Power:
      return ModelErrorText("Cannot obtain a power with a vector as an exponent");
  }
  return nullptr;
}

// A NumPy scalar left of a modelling type hands the operation over to it
// (see DeferNumpyScalars); the scalar then counts as the Python number it
// holds, as in NumPy's object loops, which used to do this work.
inline bool NumpyScalarOnLeft(PyObject *a, OperandKind ka) {
  return (ka == KindNumber || ka == KindInvalid) && !PyFloat_CheckExact(a) &&
         !PyLong_CheckExact(a) && IsNumpyScalar(a);
}

PyObject *Binary(Op op, PyObject *a, PyObject *b) {
  OperandKind ka = KindOf(a), kb = KindOf(b);
  if (NumpyScalarOnLeft(a, ka)) {
    PyObject *item = NumpyScalarItem(a);
    if (item) {
      PyObject *r = Binary(op, item, b);
      Py_DECREF(item);
      return r;
    }
    if (PyErr_Occurred()) return nullptr;
  }
  if (ka == KindVector) Py_RETURN_NOTIMPLEMENTED;
  if (kb == KindVector) return SwapVector(op, a, b);
  if (ka == KindInvalid || kb == KindInvalid) return BadOperands(op, a, ka, b, kb);
  switch (op) {
    case Op::Add: return AddCore(a, ka, b, kb, 1.0);
    case Op::Subtract: return AddCore(a, ka, b, kb, -1.0);
    case Op::Multiply: return MultiplyCore(a, ka, b, kb);
    case Op::Divide: return DivideCore(a, ka, b, kb);
    case Op::Power: return PowerCore(a, ka, b, kb);
  }
  return nullptr;
}

PyObject *SlotPower(PyObject *a, PyObject *b, PyObject *mod) { return ModelPower(a, b, mod); }

PyObject *SlotPositive(PyObject *a) { return NewRef(a); }

// In-place forms of var, linterm and quadterm: the term never changes.
PyObject *TermInPlace(Op op, PyObject *a, PyObject *b) {
  OperandKind kb = KindOf(b);
  double v;
  int constant = ConstantOperand(b, kb, &v);
  if (constant < 0) return nullptr;
  if (constant) {
    bool identity = (op == Op::Add || op == Op::Subtract) ? (kb == KindNumber && v == 0.0)
                                                          : (kb == KindNumber && v == 1.0);
    if (identity) return NewRef(a);
    if (op == Op::Divide && v == 0.0) return ModelErrorText("Division by zero");
  }
  return Binary(op, a, b);
}

PyObject *TermIAdd(PyObject *a, PyObject *b) { return TermInPlace(Op::Add, a, b); }
PyObject *TermISub(PyObject *a, PyObject *b) { return TermInPlace(Op::Subtract, a, b); }
PyObject *TermIMul(PyObject *a, PyObject *b) { return TermInPlace(Op::Multiply, a, b); }
PyObject *TermIDiv(PyObject *a, PyObject *b) { return TermInPlace(Op::Divide, a, b); }
PyObject *TermIPow(PyObject *a, PyObject *b, PyObject *mod) {
  if (mod == Py_None) return TermInPlace(Op::Power, a, b);
  return ModelPower(a, b, mod);
}

// In-place forms of expression: accumulation and scaling change the object.
PyObject *ExprIAddSub(PyObject *a, PyObject *b, double factor) {
  OperandKind kb = KindOf(b);
  if (kb == KindVector) return SwapVector(factor < 0 ? Op::Subtract : Op::Add, a, b);
  if (kb == KindInvalid) return InvalidOperand(b);
  if (kb == KindNonlinear)
    return NonlinearBinary(factor < 0 ? NlBin::Subtract : NlBin::Add, a, b);
  if (ExpressionAddScaled(a, b, factor) < 0) return nullptr;
  return NewRef(a);
}

PyObject *ExprIAdd(PyObject *a, PyObject *b) { return ExprIAddSub(a, b, 1.0); }
PyObject *ExprISub(PyObject *a, PyObject *b) { return ExprIAddSub(a, b, -1.0); }

PyObject *ExprIScale(PyObject *a, PyObject *b, bool divide) {
  OperandKind kb = KindOf(b);
  double k;
  int constant = ConstantOperand(b, kb, &k);
  if (constant < 0) return nullptr;
  if (!constant) return Binary(divide ? Op::Divide : Op::Multiply, a, b);
  if (divide) {
    if (k == 0.0) return ModelErrorText("Division by zero");
    k = 1.0 / k;
  }
  if (k == 0.0) return Float(0.0);
  if (k != 1.0) ExpressionScaleInPlace(a, k);
  return NewRef(a);
}

PyObject *ExprIMul(PyObject *a, PyObject *b) { return ExprIScale(a, b, false); }
PyObject *ExprIDiv(PyObject *a, PyObject *b) { return ExprIScale(a, b, true); }

}  // namespace

PyObject *ModelAdd(PyObject *a, PyObject *b) { return Binary(Op::Add, a, b); }
PyObject *ModelSubtract(PyObject *a, PyObject *b) { return Binary(Op::Subtract, a, b); }
PyObject *ModelMultiply(PyObject *a, PyObject *b) { return Binary(Op::Multiply, a, b); }
PyObject *ModelDivide(PyObject *a, PyObject *b) { return Binary(Op::Divide, a, b); }

PyObject *ModelPower(PyObject *a, PyObject *b, PyObject *mod) {
  if (mod != Py_None) return ModelErrorText("Invalid operands in exponentiation");
  return Binary(Op::Power, a, b);
}

PyObject *ModelNegative(PyObject *a) {
  switch (KindOf(a)) {
    case KindVar: return MakeLinTerm(-1.0, a);
    case KindLinTerm:
      return MakeLinTerm(-reinterpret_cast<LinTermObject *>(a)->coef,
                         reinterpret_cast<LinTermObject *>(a)->var);
    case KindQuadTerm: return MakeQuadTerm(-Quad(a)->coef, Quad(a)->var1, Quad(a)->var2);
    case KindExpression: return CopyScaled(a, -1.0);
    default: return PyNumber_Negative(a);
  }
}

namespace {

// Operators the modelling types do not have: a NumPy scalar on the left
// tries them again as its Python number, so that the interpreter reports
// the same unsupported operands as before the scalar handed them over
// (NumPy has no floor division of complex numbers and names its own type).
template <binaryfunc Fn, bool ComplexToo = true>
PyObject *WithoutOperator(PyObject *a, PyObject *b) {
  if (!IsNumpyScalar(a) || (!ComplexToo && IsNumpyComplex(a))) Py_RETURN_NOTIMPLEMENTED;
  PyObject *item = NumpyScalarItem(a);
  if (!item) {
    if (PyErr_Occurred()) return nullptr;
    Py_RETURN_NOTIMPLEMENTED;
  }
  PyObject *r = Fn(item, b);
  Py_DECREF(item);
  return r;
}

void FillNumberMethods(PyNumberMethods &m, bool expression) {
  m = PyNumberMethods{};
  m.nb_add = ModelAdd;
  m.nb_subtract = ModelSubtract;
  m.nb_multiply = ModelMultiply;
  m.nb_true_divide = ModelDivide;
  m.nb_power = SlotPower;
  m.nb_negative = ModelNegative;
  m.nb_positive = SlotPositive;
  m.nb_absolute = ModelAbsolute;
  m.nb_and = ModelAnd;
  m.nb_or = ModelOr;
  m.nb_inplace_and = ModelAnd;
  m.nb_inplace_or = ModelOr;
  m.nb_inplace_power = TermIPow;
  m.nb_floor_divide = WithoutOperator<PyNumber_FloorDivide, false>;
  m.nb_remainder = WithoutOperator<PyNumber_Remainder, false>;
  m.nb_divmod = WithoutOperator<PyNumber_Divmod, false>;
  m.nb_lshift = WithoutOperator<PyNumber_Lshift>;
  m.nb_rshift = WithoutOperator<PyNumber_Rshift>;
  m.nb_xor = WithoutOperator<PyNumber_Xor>;
  if (expression) {
    m.nb_inplace_add = ExprIAdd;
    m.nb_inplace_subtract = ExprISub;
    m.nb_inplace_multiply = ExprIMul;
    m.nb_inplace_true_divide = ExprIDiv;
    m.nb_inplace_power = SlotPower;
  } else {
    m.nb_inplace_add = TermIAdd;
    m.nb_inplace_subtract = TermISub;
    m.nb_inplace_multiply = TermIMul;
    m.nb_inplace_true_divide = TermIDiv;
  }
}

}  // namespace

void InstallOperators() {
  static PyNumberMethods term_methods, expression_methods;
  FillNumberMethods(term_methods, false);
  FillNumberMethods(expression_methods, true);
  for (PyTypeObject *t : {&VarType, &LinTermType, &QuadTermType, &ExpressionType}) {
    t->tp_as_number = t == &ExpressionType ? &expression_methods : &term_methods;
    t->tp_richcompare = ModelRichCompare;
  }
  // Nonlinear nodes keep their own number slots; comparisons build
  // constraints as for every modelling type.
  NonlinearType.tp_richcompare = ModelRichCompare;
}

int DeferNumpyScalars() {
  // NumPy's scalars defer to an operand whose __array_priority__ is above
  // theirs (-1e6), its arrays only to one above theirs (0): between the two,
  // np.float64(2) * x comes straight here while arrays keep their loops.
  PyObject *priority = PyFloat_FromDouble(-1.0);
  if (!priority) return -1;
  int rc = 0;
  for (PyTypeObject *t : {&VarType, &LinTermType, &QuadTermType, &ExpressionType}) {
    if (rc == 0) rc = PyDict_SetItemString(t->tp_dict, "__array_priority__", priority);
    PyType_Modified(t);
  }
  Py_DECREF(priority);
  return rc;
}

}  // namespace zrv
