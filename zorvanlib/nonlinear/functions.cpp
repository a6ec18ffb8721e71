// The module's mathematical functions: on numbers they compute, on modelling
// objects they build nodes, on NumPy arrays they map element by element.
#include "model/operand.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"
#include "nonlinear/functions.h"
#include "nonlinear/evaluate.h"
#include "zorvan/zrvs.h"

#include "model/expression.h"
#include "model/var.h"
#include "base/globals.h"
#include "base/help.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace zrv {

namespace {

double Evaluate(int op, double x) {
  switch (op) {
    case OpExp: return std::exp(x);
    case OpLog: return std::log(x);
    case OpLog10: return std::log(x) * 0.4342944819032518;
    case OpSin: return std::sin(x);
    case OpCos: return std::cos(x);
    case OpTan: return std::tan(x);
    case OpAsin: return std::asin(x);
    case OpAcos: return std::acos(x);
    case OpAtan: return std::atan(x);
    case OpAbs: return std::fabs(x);
    case OpSign: return x < 0 ? -1.0 : (x > 0 ? 1.0 : 0.0);
    case OpErf: return std::erf(x);
    case OpErfc: return std::erfc(x);
    case OpSqrt: return std::sqrt(x);
    default: return 0.0;
  }
}

template <int Op>
PyObject *ApplyScalar(PyObject *arg) {
  if (IsModelNumber(arg)) {
    double x = PyFloat_AsDouble(arg);
    if (x == -1.0 && PyErr_Occurred()) return nullptr;
    return PyFloat_FromDouble(Evaluate(Op, x));
  }
  return MakeNonlinear(Op, arg, false);
}

template <int Op>
PyObject *Unary(PyObject *, PyObject *arg) {
  if (IsNumpyArray(arg)) return MapArray(arg, ApplyScalar<Op>);
  return ApplyScalar<Op>(arg);
}

// The elements max and min work on: a new list, or null with an error.
PyObject *UnpackArguments(PyObject *args, const char *fname) {
  if (PyTuple_GET_SIZE(args) != 1) return PySequence_List(args);
  PyObject *a = PyTuple_GET_ITEM(args, 0);
  if (PyList_Check(a) || PyTuple_Check(a)) return PySequence_List(a);
  if (IsNumpyArray(a)) {
    PyObject *ndim = PyObject_GetAttrString(a, "ndim");
    PyObject *size = ndim ? PyObject_GetAttrString(a, "size") : nullptr;
    long nd = ndim ? PyLong_AsLong(ndim) : -1;
    long n = size ? PyLong_AsLong(size) : -1;
    Py_XDECREF(ndim);
    Py_XDECREF(size);
    if (PyErr_Occurred()) return nullptr;
    if (nd > 64) {
      PyErr_SetString(ModelError,
                      "Array has far too many dimensions to be used in a nonlinear expression");
      return nullptr;
    }
    if (n > 1 && nd != 1) {
      PyErr_SetString(ModelError, "Only a 1-dimensional array can be used in a nonlinear expression");
      return nullptr;
    }
    // tolist gives Python numbers for numeric arrays and the objects themselves otherwise.
    PyObject *list = PyObject_CallMethod(a, "tolist", nullptr);
    if (!list) return nullptr;
    if (!PyList_Check(list)) {  // a zero-dimensional array gives its element
      PyObject *one = PyList_New(1);
      if (!one) {
        Py_DECREF(list);
        return nullptr;
      }
      PyList_SET_ITEM(one, 0, list);
      list = one;
    }
    return list;
  }
  if (IsVectorOperand(a)) {
    PyObject *list = PySequence_List(a);
    if (!list) {
      PyErr_Clear();
      PyErr_Format(ModelError, "Incorrect argument for zorvan.%s function", fname);
    }
    return list;
  }
  return PySequence_List(args);
}

PyObject *MaxMin(PyObject *args, int op) {
  const char *fname = op == OpMax ? "max" : "min";
  PyObject *list = UnpackArguments(args, fname);
  if (!list) {
    if (!PyErr_Occurred()) PyErr_Format(ModelError, "Incorrect argument for zorvan.%s function", fname);
    return nullptr;
  }
  Py_ssize_t n = PyList_GET_SIZE(list);
  if (n == 0) {
    Py_DECREF(list);
    PyErr_Format(ModelError, "The function zorvan.%s must have at least one argument", fname);
    return nullptr;
  }
  if (n == 1) {
    PyObject *only = PyList_GET_ITEM(list, 0);
    if (ScalarKind(only) < 0) {
      PyErr_Clear();
      PyErr_SetString(ModelError, "Incorrect argument for expression");
      Py_DECREF(list);
      return nullptr;
    }
    Py_INCREF(only);
    Py_DECREF(list);
    return only;
  }
  PyObject *node = MakeNonlinear(op, list, true);
  Py_DECREF(list);
  return node;
}

PyObject *Max(PyObject *, PyObject *args) { return MaxMin(args, OpMax); }
PyObject *Min(PyObject *, PyObject *args) { return MaxMin(args, OpMin); }

// --- pwl --------------------------------------------------------------------

struct Piece {
  double a, b, fa, fb;
  PyObject *key;  // borrowed from the dictionary
};

constexpr double kInf = ZRVS_PLUSINFINITY;
constexpr double kOpenWidth = 0.88;  // width given to a piece with an infinite end
constexpr double kJoinTolerance = 1e-6;

// Slope, intercept and variable (a new reference, or null) of a pwl value.
int PieceFunction(PyObject *value, double *s, double *c, PyObject **var) {
  *var = nullptr;
  if (IsModelNumber(value)) {
    *s = 0.0;
    *c = PyFloat_AsDouble(value);
    return (*c == -1.0 && PyErr_Occurred()) ? -1 : 0;
  }
  if (PyObject_TypeCheck(value, &VarType)) {
    *s = 1.0;
    *c = 0.0;
    *var = Py_NewRef(value);
    return 0;
  }
  if (PyObject_TypeCheck(value, &LinTermType) || PyObject_TypeCheck(value, &ExpressionType)) {
    PyObject *parts = PyObject_CallMethod(value, "extractLinear", nullptr);
    if (!parts) return -1;
    int rc = -1;
    if (PyTuple_Check(parts) && PyTuple_GET_SIZE(parts) == 2 &&
        PyList_Check(PyTuple_GET_ITEM(parts, 0)) && PyList_Check(PyTuple_GET_ITEM(parts, 1))) {
      PyObject *vars = PyTuple_GET_ITEM(parts, 0), *coefs = PyTuple_GET_ITEM(parts, 1);
      Py_ssize_t n = PyList_GET_SIZE(vars);
      bool quadratic = false;
      if (PyObject_TypeCheck(value, &ExpressionType)) {
        PyObject *q = PyObject_CallMethod(value, "extractQuadratic", nullptr);
        if (!q) {
          Py_DECREF(parts);
          return -1;
        }
        quadratic = !(PyTuple_Check(q) && PyTuple_GET_SIZE(q) == 3 &&
                      PyList_Check(PyTuple_GET_ITEM(q, 2)) &&
                      PyList_GET_SIZE(PyTuple_GET_ITEM(q, 2)) == 0);
        Py_DECREF(q);
      }
      if (quadratic) {
        PyErr_Format(ModelError,
                     "Expression %S not suitable for a piecewise linear function; it must be a "
                     "constant or a linear function",
                     value);
      } else if (n > 1) {
        PyErr_Format(ModelError,
                     "Expression %S not suitable for a piecewise linear function; it must "
                     "contain one variable only",
                     value);
      } else {
        *s = n == 1 ? PyFloat_AsDouble(PyList_GET_ITEM(coefs, 0)) : 0.0;
        *c = PyObject_TypeCheck(value, &ExpressionType)
                 ? reinterpret_cast<ExpressionObject *>(value)->constant
                 : 0.0;
        rc = PyErr_Occurred() ? -1 : 0;
        if (rc == 0 && n == 1) *var = Py_NewRef(PyList_GET_ITEM(vars, 0));
      }
    } else {
      PyErr_SetString(ModelError, "Invalid result of extracting the parts of an expression");
    }
    Py_DECREF(parts);
    return rc;
  }
  PyErr_Format(ModelError,
               "Expression %S not suitable for a piecewise linear function; it must be a "
               "constant or a linear function",
               value);
  return -1;
}

uint64_t IdOf(PyObject *v) { return VarId(reinterpret_cast<VarObject *>(v)->word); }

PyObject *Pwl(PyObject *, PyObject *arg) {
  if (!PyDict_Check(arg)) {
    PyErr_SetString(ModelError,
                    "Function zorvan.pwl only accepts a dictionary; a call must be for example "
                    "zorvan.pwl({(1,4): 2*x+1, (4,6): 4*x+5, ...})");
    return nullptr;
  }
  std::vector<Piece> pieces;
  pieces.reserve(static_cast<size_t>(PyDict_GET_SIZE(arg)));
  PyObject *var = nullptr;  // the function's variable, held
  PyObject *key, *value;
  Py_ssize_t pos = 0;
  auto fail = [&var]() -> PyObject * {
    Py_XDECREF(var);
    return nullptr;
  };
  while (PyDict_Next(arg, &pos, &key, &value)) {
    if (key == Py_None) {
      if (!PyObject_TypeCheck(value, &VarType)) {
        PyErr_Format(ModelError, "Tuple (None, Obj) must have an zorvan.var() object as Obj, found <%S>",
                     value);
        return fail();
      }
      if (var && IdOf(var) != IdOf(value)) {
        PyErr_Format(ModelError,
                     "Expression in [%S,%S] interval contains variable %S while another "
                     "variable has been used in the same function",
                     Py_None, Py_None, value);
        return fail();
      }
      if (!var) var = Py_NewRef(value);
      continue;
    }
    if (!PyTuple_Check(key) || PyTuple_GET_SIZE(key) != 2) {
      PyErr_Format(ModelError, "All keys in the dictionary argument of zorvan.pwl must be two-tuples; <%S> is not",
                   key);
      return fail();
    }
    PyObject *ka = PyTuple_GET_ITEM(key, 0), *kb = PyTuple_GET_ITEM(key, 1);
    double a = IsModelNumber(ka) ? PyFloat_AsDouble(ka) : NAN;
    double b = IsModelNumber(kb) ? PyFloat_AsDouble(kb) : NAN;
    if (PyErr_Occurred()) PyErr_Clear();
    if (!(a <= b)) {
      PyErr_Format(ModelError,
                   "All keys in the dictionary argument of zorvan.pwl must be two-tuples with "
                   "two constant numbers: [a,b] such that a<b; <%S> is not",
                   key);
      return fail();
    }
    double s, c;
    PyObject *v;
    if (PieceFunction(value, &s, &c, &v) < 0) return fail();
    if (v) {
      if (var && IdOf(var) != IdOf(v)) {
        PyErr_Format(ModelError,
                     "Expression in [%S,%S] interval contains variable %S while another "
                     "variable has been used in the same function",
                     ka, kb, v);
        Py_DECREF(v);
        return fail();
      }
      if (!var) {
        var = v;
      } else {
        Py_DECREF(v);
      }
    }
    double fa = s * a + c, fb = s * b + c;
    if ((std::fabs(fa) >= kInf || a <= -kInf) && std::fabs(fb) < kInf && b < kInf) {
      a = b - kOpenWidth;
      fa = s * a + c;
    }
    if ((std::fabs(fb) >= kInf || b >= kInf) && std::fabs(fa) < kInf && a > -kInf) {
      b = a + kOpenWidth;
      fb = s * b + c;
    }
    pieces.push_back({a, b, fa, fb, key});
  }
  if (!var) {
    PyErr_Format(ModelError,
                 "No variable specified for this piecewise linear function: %S; Are all values "
                 "constant? If so, add a key-value pair (None: x) to the dictionary with the "
                 "variable associated to the piecewise linear",
                 arg);
    return nullptr;
  }
  std::stable_sort(pieces.begin(), pieces.end(),
                   [](const Piece &p, const Piece &q) { return p.a < q.a; });
  for (size_t i = 0; i + 1 < pieces.size(); ++i) {
    if (pieces[i].b > pieces[i + 1].a) {
      PyObject *a1 = PyFloat_FromDouble(pieces[i].a), *b1 = PyFloat_FromDouble(pieces[i].b);
      PyObject *a2 = PyFloat_FromDouble(pieces[i + 1].a), *b2 = PyFloat_FromDouble(pieces[i + 1].b);
      if (a1 && b1 && a2 && b2)
        PyErr_Format(ModelError, "Interval [%S,%S] overlaps with [%S,%S] in piecewise linear function",
                     a1, b1, a2, b2);
      Py_XDECREF(a1);
      Py_XDECREF(b1);
      Py_XDECREF(a2);
      Py_XDECREF(b2);
      return fail();
    }
  }
  PyObject *list = PyList_New(0);
  if (!list) return fail();
  bool ok = PyList_Append(list, var) == 0;
  auto point = [&](double x, double y) {
    if (!ok) return;
    PyObject *px = PyFloat_FromDouble(x), *py = PyFloat_FromDouble(y);
    ok = px && py && PyList_Append(list, px) == 0 && PyList_Append(list, py) == 0;
    Py_XDECREF(px);
    Py_XDECREF(py);
  };
  for (size_t i = 0; i < pieces.size(); ++i) {
    const Piece &p = pieces[i];
    point(p.a, p.fa);
    if (i + 1 < pieces.size()) {
      const Piece &q = pieces[i + 1];
      if (q.a - kJoinTolerance > p.b || std::fabs(p.fb - q.fa) > kJoinTolerance) point(p.b, p.fb);
    } else {
      point(p.b, p.fb);
    }
  }
  Py_DECREF(var);
  if (!ok) {
    Py_DECREF(list);
    return nullptr;
  }
  return NewNode(OpPwl, list);
}

// --- user -------------------------------------------------------------------

PyObject *User(PyObject *, PyObject *args, PyObject *kwds) {
  int op = OpUserNoDerivatives;
  if (kwds) {
    PyObject *key, *value;
    Py_ssize_t pos = 0;
    while (PyDict_Next(kwds, &pos, &key, &value)) {
      if (!PyUnicode_Check(key) || PyUnicode_CompareWithASCIIString(key, "derivatives") != 0) {
        PyErr_Format(InterfaceError, "Unknown keyword argument for zorvan.user: %S", key);
        return nullptr;
      }
      if (value == Py_None) {
        op = OpUserNoDerivatives;
      } else if (PyUnicode_Check(value)) {
        const char *s = PyUnicode_AsUTF8(value);
        if (!s) return nullptr;
        if (std::strcmp(s, "ondemand") == 0) {
          op = OpUserDerivativesOnDemand;
        } else if (std::strcmp(s, "always") == 0) {
          op = OpUserDerivatives;
        } else if (std::strcmp(s, "never") == 0 || s[0] == '\0') {
          op = OpUserNoDerivatives;
        } else {
          PyErr_Format(InterfaceError, "Unknown value for argument derivatives: %s", s);
          return nullptr;
        }
      } else {
        int truth = PyObject_IsTrue(value);
        if (truth < 0) return nullptr;
        op = truth ? OpUserDerivatives : OpUserNoDerivatives;
      }
    }
  }
  if (!args || !PyTuple_Check(args) || PyTuple_GET_SIZE(args) == 0) {
    PyErr_SetString(ModelError, "Insufficient number of arguments declared for operator");
    return nullptr;
  }
  if (!PyCallable_Check(PyTuple_GET_ITEM(args, 0))) {
    PyErr_SetString(ModelError, "The first argument of zorvan.user must be a function");
    return nullptr;
  }
  return MakeNonlinear(op, args, true);
}

#define ZRV_UNARY_HELP(name, what, example)                                                  \
  ZRV_HELP("Return the " what " of a number, or a nonlinear expression for it.",             \
           "zorvan." name "(x)",                                                             \
           "x: a number, a variable, a term, an expression, a nonlinear expression or a "    \
           "NumPy array of these.",                                                          \
           example,                                                                          \
           "On a number the value is computed at once and returned as a float; on a "        \
           "NumPy array the function applies to each element and a new array of the same "   \
           "shape is returned (of floats for a numeric array).",                             \
           "zorvan.nonlinear, zorvan.max, zorvan.min, zorvan.pwl, zorvan.user")

}  // namespace

PyMethodDef NonlinearFunctions[] = {
    {"sin", Unary<OpSin>, METH_O, ZRV_UNARY_HELP("sin", "sine", "f = zorvan.sin(x)")},
    {"cos", Unary<OpCos>, METH_O, ZRV_UNARY_HELP("cos", "cosine", "f = zorvan.cos(2 * x)")},
    {"tan", Unary<OpTan>, METH_O, ZRV_UNARY_HELP("tan", "tangent", "f = zorvan.tan(x)")},
    {"asin", Unary<OpAsin>, METH_O, ZRV_UNARY_HELP("asin", "arc sine", "f = zorvan.asin(x)")},
    {"acos", Unary<OpAcos>, METH_O, ZRV_UNARY_HELP("acos", "arc cosine", "f = zorvan.acos(x)")},
    {"atan", Unary<OpAtan>, METH_O, ZRV_UNARY_HELP("atan", "arc tangent", "f = zorvan.atan(x)")},
    {"exp", Unary<OpExp>, METH_O, ZRV_UNARY_HELP("exp", "exponential", "f = zorvan.exp(x + y)")},
    {"log", Unary<OpLog>, METH_O, ZRV_UNARY_HELP("log", "natural logarithm", "f = zorvan.log(x)")},
    {"log10", Unary<OpLog10>, METH_O,
     ZRV_UNARY_HELP("log10", "base-10 logarithm", "f = zorvan.log10(x)")},
    {"abs", Unary<OpAbs>, METH_O, ZRV_UNARY_HELP("abs", "absolute value", "f = zorvan.abs(x - y)")},
    {"sqrt", Unary<OpSqrt>, METH_O, ZRV_UNARY_HELP("sqrt", "square root", "f = zorvan.sqrt(x)")},
    {"sign", Unary<OpSign>, METH_O,
     ZRV_UNARY_HELP("sign", "sign (-1, 0 or 1)", "f = zorvan.sign(x)")},
    {"erf", Unary<OpErf>, METH_O, ZRV_UNARY_HELP("erf", "error function", "f = zorvan.erf(x)")},
    {"erfc", Unary<OpErfc>, METH_O,
     ZRV_UNARY_HELP("erfc", "complementary error function", "f = zorvan.erfc(x)")},
    {"max", Max, METH_VARARGS,
     ZRV_HELP("The maximum of several expressions, as a nonlinear expression.",
              "zorvan.max(a, b, ...) or zorvan.max(sequence)",
              "Numbers, variables, terms, expressions or nonlinear expressions, given one by "
              "one or as one list, tuple, sequence or one-dimensional NumPy array.",
              "f = zorvan.max(x, y, 2)\n    g = zorvan.max([x, y])",
              "A single argument is returned as it is; no argument is an error.",
              "zorvan.min, zorvan.abs")},
    {"min", Min, METH_VARARGS,
     ZRV_HELP("The minimum of several expressions, as a nonlinear expression.",
              "zorvan.min(a, b, ...) or zorvan.min(sequence)",
              "Numbers, variables, terms, expressions or nonlinear expressions, given one by "
              "one or as one list, tuple, sequence or one-dimensional NumPy array.",
              "f = zorvan.min(x, y, 2)\n    g = zorvan.min([x, y])",
              "A single argument is returned as it is; no argument is an error.",
              "zorvan.max, zorvan.abs")},
    {"pwl", Pwl, METH_O,
     ZRV_HELP("A piecewise linear function of one variable.",
              "zorvan.pwl({(a1, b1): f1, (a2, b2): f2, ...})",
              "A dictionary from intervals (a, b), a <= b, to a number or a linear function "
              "of the variable (a variable, a linear term or an expression with one "
              "variable). The key None may name the variable: {None: x, (0, 1): 5, ...}.",
              "f = zorvan.pwl({(0, 1): x + 1, (1, 4): 3 * x - 1})",
              "Intervals must not overlap. Between two intervals with a gap or a jump both "
              "end points are kept. An end at or beyond 1e20 is replaced by a point 0.88 "
              "away from the other end, continuing the piece's line.",
              "zorvan.max, zorvan.min, zorvan.user")},
    {"user", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(User)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("A Python function used inside a nonlinear expression.",
              "zorvan.user(function, arg1, arg2, ..., derivatives=None)",
              "function: the callable; arg1, ...: numbers or modelling objects it is "
              "applied to; derivatives: \"never\" (also None, False or \"\"), \"always\" "
              "(also True) or \"ondemand\": whether the function returns derivatives.",
              "f = zorvan.user(lambda a, b: a * b + 1, x, y)",
              "The function is called by the solver with the values of its arguments.",
              "zorvan.nonlinear, zorvan.pwl")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace zrv
