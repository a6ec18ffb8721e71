// The evaluation routine behind zorvan.evaluate and problem.getSolution: the
// value of any modelling object at a point.
#include "nonlinear/evaluate.h"

#include <cmath>
#include <vector>

#include "model/expression.h"
#include "model/linterm.h"
#include "model/quadterm.h"
#include "model/var.h"
#include "base/containers.h"
#include "base/index_map.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "nonlinear/nonlinear_internal.h"

namespace zrv {

namespace {

constexpr double kDefaultLogicTolerance = 5e-6;

void DepthExceeded() {
  PyErr_SetString(ModelError, "Evaluation of expression exceeded recursion depth limit");
}

// The tolerance of And and Or: "miptol" of a fresh problem, from the table of
// default control values held by the module's default-controls object (filled
// when the control catalogue is loaded), else 5e-6.
double LogicTolerance() {
  if (!DefaultControls) return kDefaultLogicTolerance;
  // The object's __dict__ is that table (the user's defaults are apart).
  PyObject *table = PyObject_GetAttrString(DefaultControls, "__dict__");
  PyObject *v = table && PyDict_Check(table) ? PyDict_GetItemString(table, "miptol") : nullptr;
  double t = v ? PyFloat_AsDouble(v) : kDefaultLogicTolerance;
  Py_XDECREF(table);
  if (PyErr_Occurred()) {
    PyErr_Clear();
    return kDefaultLogicTolerance;
  }
  return t;
}

int VarValue(PyObject *var, const EvalPoint &pt, double *out) {
  if (pt.dict) {
    PyObject *v = PyDict_GetItemWithError(pt.dict, var);  // borrowed
    if (!v) {
      if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Variable has no value");
      return -1;
    }
    double d = PyFloat_AsDouble(v);
    if (d == -1.0 && PyErr_Occurred()) return -1;
    *out = d;
    return 0;
  }
  if (pt.columns) {
    int32_t col = pt.columns->Find(VarIdOf(var));
    if (col >= 0 && col < pt.count) {
      *out = pt.values[col];
      return 0;
    }
  }
  PyErr_SetString(ModelError,
                  "Object does not belong to problem or cannot be identified within expression");
  return -1;
}

int NodeValue(PyObject *node, const EvalPoint &pt, int depth, double *out);

// The value of a number, modelling object or nonlinear node.
int Value(PyObject *o, const EvalPoint &pt, int depth, double *out) {
  if (IsModelNumber(o)) {
    double v = PyFloat_AsDouble(o);
    if (v == -1.0 && PyErr_Occurred()) return -1;
    *out = v;
    return 0;
  }
  PyTypeObject *type = Py_TYPE(o);
  if (type == &VarType) return VarValue(o, pt, out);
  if (type == &LinTermType) {
    auto *t = reinterpret_cast<LinTermObject *>(o);
    double v;
    if (VarValue(t->var, pt, &v) < 0) return -1;
    *out = t->coef * v;
    return 0;
  }
  if (type == &QuadTermType) {
    auto *t = reinterpret_cast<QuadTermObject *>(o);
    double a, b;
    if (VarValue(t->var1, pt, &a) < 0 || VarValue(t->var2, pt, &b) < 0) return -1;
    *out = t->coef * a * b;
    return 0;
  }
  if (PyObject_TypeCheck(o, &ExpressionType)) {
    double sum = AsExpression(o)->constant;
    for (const LinEntry &e : ExpressionLinear(o)) {
      double v;
      if (VarValue(e.var, pt, &v) < 0) return -1;
      sum += e.coef * v;
    }
    for (const QuadEntry &e : ExpressionQuadratic(o)) {
      double a, b;
      if (VarValue(e.var1, pt, &a) < 0 || VarValue(e.var2, pt, &b) < 0) return -1;
      sum += e.coef * a * b;
    }
    *out = sum;
    return 0;
  }
  if (IsNonlinear(o)) return NodeValue(o, pt, depth, out);
  PyErr_SetString(ModelError, "Cannot evaluate object");
  return -1;
}

// The operands of a node: the items of its list or tuple, or the one operand.
void Operands(PyObject *node, std::vector<PyObject *> &items) {
  PyObject *args = NodeArgs(node);
  if (PyList_Check(args) || PyTuple_Check(args)) {
    Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
    PyObject **data = PySequence_Fast_ITEMS(args);
    items.assign(data, data + n);
  } else {
    items.assign(1, args);
  }
}

int OperandValues(const std::vector<PyObject *> &items, size_t first, const EvalPoint &pt,
                  int depth, std::vector<double> &values) {
  values.clear();
  values.reserve(items.size() - first);
  for (size_t i = first; i < items.size(); ++i) {
    double v;
    if (Value(items[i], pt, depth, &v) < 0) return -1;
    values.push_back(v);
  }
  return 0;
}

PyObject *FloatObject(double v) { return PyFloat_FromDouble(v); }

// Piecewise linear over [argument, x1, y1, x2, y2, ...].
int PwlValue(const std::vector<PyObject *> &items, const EvalPoint &pt, int depth, double *out) {
  if (items.size() < 3 || items.size() % 2 == 0) {
    PyErr_SetString(ModelError, "Invalid piecewise linear function");
    return -1;
  }
  std::vector<double> values;
  if (OperandValues(items, 0, pt, depth, values) < 0) return -1;
  const double x = values[0];
  const size_t n = (values.size() - 1) / 2;
  auto bx = [&](size_t i) { return values[1 + 2 * i]; };
  auto by = [&](size_t i) { return values[2 + 2 * i]; };
  auto line = [&](size_t i, size_t j) {
    return by(i) + (by(j) - by(i)) * (x - bx(i)) / (bx(j) - bx(i));
  };
  size_t k = 0;
  while (k < n && !(bx(k) > x)) ++k;
  if (k == 0) {
    if (n < 2) {
      PyObject *xv = FloatObject(x);
      if (xv)
        PyErr_Format(InterfaceError,
                     "Not enough points to extrapolate value of piecewise linear containing "
                     "fraction for %S = %S",
                     items[0], xv);
      Py_XDECREF(xv);
      return -1;
    }
    if (bx(0) == bx(1)) {
      PyObject *x0 = FloatObject(bx(0)), *xv = FloatObject(x);
      if (x0 && xv)
        PyErr_Format(InterfaceError,
                     "Piecewise linear function has discontinuity at first breakpoint %S = %S "
                     "and can't be evaluated at %S",
                     items[0], x0, xv);
      Py_XDECREF(x0);
      Py_XDECREF(xv);
      return -1;
    }
    *out = line(0, 1);
    return 0;
  }
  if (k < n) {
    *out = line(k - 1, k);
    return 0;
  }
  // At or beyond the last breakpoint: its value there, and beyond it the
  // line through the last two breakpoints (flat after a final jump).
  if (x == bx(n - 1) || n < 2 || bx(n - 2) == bx(n - 1)) {
    *out = by(n - 1);
    return 0;
  }
  *out = line(n - 2, n - 1);
  return 0;
}

// A user function: called with the operands' values; a tuple result gives
// its first item.
int UserValue(const std::vector<PyObject *> &items, const EvalPoint &pt, int depth, double *out) {
  if (items.empty() || !PyCallable_Check(items[0])) {
    PyErr_SetString(ModelError,
                    "Invalid user function, must specify at least one argument (the user "
                    "function itself)");
    return -1;
  }
  std::vector<double> values;
  if (OperandValues(items, 1, pt, depth, values) < 0) return -1;
  PyObject *args = PyTuple_New(static_cast<Py_ssize_t>(values.size()));
  if (!args) return -1;
  for (size_t i = 0; i < values.size(); ++i) {
    PyObject *v = PyFloat_FromDouble(values[i]);
    if (!v) {
      Py_DECREF(args);
      return -1;
    }
    PyTuple_SET_ITEM(args, static_cast<Py_ssize_t>(i), v);
  }
  PyObject *result = PyObject_Call(items[0], args, nullptr);
  Py_DECREF(args);
  if (!result) return -1;
  PyObject *value = result;
  if (PyTuple_Check(result)) {
    if (PyTuple_GET_SIZE(result) == 0) {
      Py_DECREF(result);
      PyErr_SetString(ModelError, "User function returned an empty tuple");
      return -1;
    }
    value = PyTuple_GET_ITEM(result, 0);
  }
  double d = PyFloat_AsDouble(value);
  Py_DECREF(result);
  if (d == -1.0 && PyErr_Occurred()) return -1;
  *out = d;
  return 0;
}

int NodeValue(PyObject *node, const EvalPoint &pt, int depth, double *out) {
  if (depth <= 0) {
    DepthExceeded();
    return -1;
  }
  --depth;
  const int op = NodeOp(node);
  std::vector<PyObject *> items;
  Operands(node, items);
  if (op == OpPwl) return PwlValue(items, pt, depth, out);
  if (op == OpUserNoDerivatives || op == OpUserDerivatives || op == OpUserDerivativesOnDemand)
    return UserValue(items, pt, depth, out);
  std::vector<double> v;
  if (op < 0 || op >= OpCount) {
    PyErr_SetString(ModelError, "Unknown nonlinear type");
    return -1;
  }
  if (OperandValues(items, 0, pt, depth, v) < 0) return -1;
  const int arity = kOperators[op].arity;
  if ((arity == 1 && v.size() != 1) || (arity == 2 && v.size() != 2)) {
    PyErr_SetString(ModelError, "Invalid number of operands in nonlinear expression");
    return -1;
  }
  double r = 0.0;
  switch (op) {
    case OpSum:
      for (double x : v) r += x;
      break;
    case OpProduct:
      r = 1.0;
      for (double x : v) r *= x;
      break;
    case OpMinus: r = v[0] - v[1]; break;
    case OpDivide:
      if (v[1] == 0.0) {
        PyErr_SetString(PyExc_ZeroDivisionError,
                        "Division by zero in evaluation of expression containing fraction");
        return -1;
      }
      r = v[0] / v[1];
      break;
    case OpPower: r = std::pow(v[0], v[1]); break;
    case OpUminus: r = -v[0]; break;
    case OpExp: r = std::exp(v[0]); break;
    case OpLog: r = std::log(v[0]); break;
    case OpLog10: r = std::log(v[0]) / std::log(10.0); break;
    case OpSin: r = std::sin(v[0]); break;
    case OpCos: r = std::cos(v[0]); break;
    case OpTan: r = std::tan(v[0]); break;
    case OpAsin: r = std::asin(v[0]); break;
    case OpAcos: r = std::acos(v[0]); break;
    case OpAtan: r = std::atan(v[0]); break;
    case OpAbs: r = std::fabs(v[0]); break;
    case OpErf: r = std::erf(v[0]); break;
    case OpErfc: r = std::erfc(v[0]); break;
    case OpSqrt: r = std::sqrt(v[0]); break;
    case OpSign: r = v[0] < 0 ? -1.0 : (v[0] > 0 ? 1.0 : 0.0); break;
    case OpMax:
    case OpMin:
      if (v.empty()) {
        PyErr_SetString(ModelError, "Invalid number of operands in nonlinear expression");
        return -1;
      }
      r = v[0];
      for (double x : v) r = op == OpMax ? (x > r ? x : r) : (x < r ? x : r);
      break;
    case OpAnd: {
      const double tol = LogicTolerance();
      r = 1.0;
      for (double x : v)
        if (x <= tol) r = 0.0;
      break;
    }
    case OpOr: {
      const double tol = LogicTolerance();
      r = 0.0;
      for (double x : v)
        if (x > 1.0 - tol) r = 1.0;
      break;
    }
    default:
      PyErr_SetString(ModelError, "Unknown nonlinear type");
      return -1;
  }
  *out = r;
  return 0;
}

bool IsModelObject(PyObject *o) {
  PyTypeObject *t = Py_TYPE(o);
  return IsModelNumber(o) || t == &VarType || t == &LinTermType || t == &QuadTermType ||
         PyObject_TypeCheck(o, &ExpressionType) || IsNonlinear(o);
}

PyObject *Evaluate(PyObject *o, const EvalPoint &pt, int depth);

// An array of the values, of the same shape: numpy.array(values).reshape(shape).
PyObject *EvaluateArray(PyObject *o, const EvalPoint &pt) {
  PyObject *flat = PyObject_CallMethod(o, "ravel", nullptr);
  PyObject *items = flat ? PySequence_List(flat) : nullptr;
  Py_XDECREF(flat);
  if (!items) return nullptr;
  const Py_ssize_t n = PyList_GET_SIZE(items);
  for (Py_ssize_t i = 0; i < n; ++i) {
    double v;
    PyObject *f = nullptr;
    if (Value(PyList_GET_ITEM(items, i), pt, kTreeDepth, &v) < 0 ||
        !(f = PyFloat_FromDouble(v))) {
      Py_DECREF(items);
      return nullptr;
    }
    PyList_SetItem(items, i, f);  // steals f, drops the element
  }
  PyObject *numpy = PyImport_ImportModule("numpy");
  PyObject *shape = numpy ? PyObject_GetAttrString(o, "shape") : nullptr;
  PyObject *array = shape ? PyObject_CallMethod(numpy, "array", "(Os)", items, "float64") : nullptr;
  PyObject *result = array ? PyObject_CallMethod(array, "reshape", "(O)", shape) : nullptr;
  Py_XDECREF(array);
  Py_XDECREF(shape);
  Py_XDECREF(numpy);
  Py_DECREF(items);
  return result;
}

PyObject *Evaluate(PyObject *o, const EvalPoint &pt, int depth) {
  if (depth <= 0) {
    DepthExceeded();
    return nullptr;
  }
  if (IsModelObject(o)) {
    double v;
    if (Value(o, pt, kTreeDepth, &v) < 0) return nullptr;
    return PyFloat_FromDouble(v);
  }
  if (PyTuple_Check(o) || PyList_Check(o)) {
    const bool tuple = PyTuple_Check(o);
    Py_ssize_t n = tuple ? PyTuple_GET_SIZE(o) : PyList_GET_SIZE(o);
    PyObject *result = tuple ? PyTuple_New(n) : PyList_New(n);
    if (!result) return nullptr;
    for (Py_ssize_t i = 0; i < n; ++i) {
      // A list may change while Python code (a user function) runs.
      if (!tuple && i >= PyList_GET_SIZE(o)) {
        Py_DECREF(result);
        PyErr_SetString(ModelError, "List changed size during evaluation");
        return nullptr;
      }
      PyObject *item = tuple ? PyTuple_GET_ITEM(o, i) : PyList_GET_ITEM(o, i);
      Py_INCREF(item);
      PyObject *v = Evaluate(item, pt, depth - 1);
      Py_DECREF(item);
      if (!v) {
        Py_DECREF(result);
        return nullptr;
      }
      if (tuple) PyTuple_SET_ITEM(result, i, v);
      else PyList_SET_ITEM(result, i, v);
    }
    return result;
  }
  if (PyDict_Check(o))
    return MapDictValues(o, [&](PyObject *item) { return Evaluate(item, pt, depth - 1); });
  if (IsNumpyArray(o)) return EvaluateArray(o, pt);
  if (PySequence_Check(o)) {
    PyErr_SetString(ModelError, "Cannot evaluate type of sequence");
    return nullptr;
  }
  PyErr_SetString(ModelError, "Cannot evaluate object");
  return nullptr;
}

}  // namespace

int EvaluateValue(PyObject *o, const EvalPoint &point, double *out) {
  return Value(o, point, kTreeDepth, out);
}

PyObject *EvaluateObject(PyObject *o, const EvalPoint &point) {
  return Evaluate(o, point, kTreeDepth);
}

PyObject *EvaluateArguments(PyObject *args, const EvalPoint &point) {
  Py_ssize_t n = PyTuple_GET_SIZE(args);
  if (n == 1) return Evaluate(PyTuple_GET_ITEM(args, 0), point, kTreeDepth);
  return Evaluate(args, point, kTreeDepth + 1);  // the argument tuple is no nesting level
}

}  // namespace zrv
