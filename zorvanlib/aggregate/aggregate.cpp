// The aggregation functions Sum, Dot, Prod, And and Or: they fold
// collections of modelling objects with the operators of the modelling types.
#include "aggregate/aggregate.h"

#include "model/expression.h"
#include "model/var.h"
#include "base/limits.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "model/operand.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"
#include "numpy/bridge.h"

#include <string>
#include <vector>

namespace zrv {

namespace {

// Whether o is a collection whose elements are the operands: not a number,
// string or modelling object, but a list, tuple, dictionary (its values),
// NumPy array (its elements in order), generator or other iterable.
bool IsCollection(PyObject *o) {
  if (IsModelNumber(o) || PyUnicode_Check(o) || PyBytes_Check(o) || PyByteArray_Check(o))
    return false;
  if (PyObject_TypeCheck(o, &VarType) || PyObject_TypeCheck(o, &LinTermType) ||
      PyObject_TypeCheck(o, &QuadTermType) || PyObject_TypeCheck(o, &ExpressionType) ||
      IsNonlinear(o))
    return false;
  return PyList_Check(o) || PyTuple_Check(o) || PyDict_Check(o) || Py_TYPE(o)->tp_iter != nullptr;
}

// Calls visit on every operand of o, unpacking collections; visit returns
// -1 to stop with an error.
template <typename Visit>
int ForEach(PyObject *o, const char *fname, int depth, Visit &visit) {
  if (!IsCollection(o)) return visit(o);
  if (depth < 0) {
    PyErr_Format(ModelError, "Collections nested too deeply in zorvan.%s", fname);
    return -1;
  }
  if (PyList_Check(o) || PyTuple_Check(o)) {
    // Items are held while visited: the list may change under a visit.
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(o); ++i) {
      PyObject *item = Py_NewRef(PySequence_Fast_ITEMS(o)[i]);
      int rc = ForEach(item, fname, depth - 1, visit);
      Py_DECREF(item);
      if (rc < 0) return -1;
    }
    return 0;
  }
  PyObject *iter;
  if (PyDict_Check(o)) {
    PyObject *values = PyDict_Values(o);
    if (!values) return -1;
    int rc = ForEach(values, fname, depth, visit);
    Py_DECREF(values);
    return rc;
  }
  if (IsNumpyArray(o)) {
    PyObject *flat = PyObject_GetAttrString(o, "flat");
    if (!flat) return -1;
    iter = PyObject_GetIter(flat);
    Py_DECREF(flat);
  } else {
    iter = PyObject_GetIter(o);
  }
  if (!iter) return -1;
  PyObject *item;
  while ((item = PyIter_Next(iter))) {
    int rc = ForEach(item, fname, depth - 1, visit);
    Py_DECREF(item);
    if (rc < 0) {
      Py_DECREF(iter);
      return -1;
    }
  }
  Py_DECREF(iter);
  return PyErr_Occurred() ? -1 : 0;
}

template <typename Visit>
int ForEachArgument(PyObject *args, const char *fname, Visit &visit) {
  return ForEach(args, fname, kCollectionNesting, visit);
}

PyObject *NewEmptyExpression() { return ExpressionType.tp_alloc(&ExpressionType, 0); }

// Sums operands into one expression in place; nonlinear operands are kept
// apart and joined with the expression in one sum node at the end.
class Summer {
 public:
  Summer() : acc_(NewEmptyExpression()), nonlinear_(PyList_New(0)) {}
  ~Summer() {
    Py_XDECREF(acc_);
    Py_XDECREF(nonlinear_);
  }
  bool ok() const { return acc_ && nonlinear_; }

  // Adds o (a borrowed reference).
  int Add(PyObject *o) {
    if (IsModelNumber(o)) {
      double v = PyFloat_AsDouble(o);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      constant_ += v;
      return 0;
    }
    if (IsNonlinear(o)) {
      if (!IsNode(o, OpSum)) return PyList_Append(nonlinear_, o);
      // A sum's operands join this sum one by one.
      PyObject *args = NodeArgs(o);
      for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(args); ++i) {
        PyObject *item = Py_NewRef(PySequence_Fast_ITEMS(args)[i]);
        int rc = IsNonlinear(item) ? PyList_Append(nonlinear_, item) : Add(item);
        Py_DECREF(item);
        if (rc < 0) return -1;
      }
      return 0;
    }
    if (ScalarKind(o) < 0) return -1;
    PyObject *r = PyNumber_InPlaceAdd(acc_, o);
    if (!r) return -1;
    Py_SETREF(acc_, r);
    return 0;
  }

  // Adds the new reference o and releases it.
  int AddOwned(PyObject *o) {
    if (!o) return -1;
    int rc = Add(o);
    Py_DECREF(o);
    return rc;
  }

  // The sum: the expression, or a sum node when nonlinear operands came.
  PyObject *Result() {
    if (constant_ != 0.0) {
      if (PyObject_TypeCheck(acc_, &ExpressionType)) {
        reinterpret_cast<ExpressionObject *>(acc_)->constant += constant_;
      } else {
        PyObject *c = PyFloat_FromDouble(constant_);
        if (!c) return nullptr;
        PyObject *r = PyNumber_InPlaceAdd(acc_, c);
        Py_DECREF(c);
        if (!r) return nullptr;
        Py_SETREF(acc_, r);
      }
      constant_ = 0.0;
    }
    Py_ssize_t n = PyList_GET_SIZE(nonlinear_);
    if (n == 0) return Py_NewRef(acc_);
    double constant;
    bool onlyConstant = ConstantValue(acc_, &constant);
    if (n == 1 && onlyConstant && constant == 0.0) return CopyTree(PyList_GET_ITEM(nonlinear_, 0));
    // The polynomial part goes last: a plain number there becomes a
    // constraint's right-hand side.
    PyObject *last = onlyConstant ? PyFloat_FromDouble(constant) : Py_NewRef(acc_);
    if (!last) return nullptr;
    int rc = (onlyConstant && constant == 0.0) ? 0 : PyList_Append(nonlinear_, last);
    Py_DECREF(last);
    if (rc < 0) return nullptr;
    PyObject *node = MakeNonlinear(OpSum, nonlinear_, true);
    if (!node) return nullptr;
    // The node owns the list now; this object must not touch it again.
    Py_SETREF(nonlinear_, PyList_New(0));
    return node;
  }

 private:
  PyObject *acc_;
  PyObject *nonlinear_;
  double constant_ = 0.0;
};

PyObject *Sum(PyObject *, PyObject *args) {
  Summer summer;
  if (!summer.ok()) return nullptr;
  auto visit = [&summer](PyObject *o) { return summer.Add(o); };
  if (ForEachArgument(args, "Sum", visit) < 0) return nullptr;
  return summer.Result();
}

// The operands of each argument of Dot, in order (a new list).
PyObject *Operands(PyObject *o, const char *fname) {
  PyObject *list = PyList_New(0);
  if (!list) return nullptr;
  auto visit = [list](PyObject *item) { return PyList_Append(list, item); };
  if (ForEach(o, fname, kCollectionNesting, visit) < 0) {
    Py_DECREF(list);
    return nullptr;
  }
  return list;
}

PyObject *Dot(PyObject *, PyObject *args) {
  Py_ssize_t k = PyTuple_GET_SIZE(args);
  if (k < 2) {
    PyErr_SetString(InterfaceError, "zorvan.Dot needs at least two arguments");
    return nullptr;
  }
  // Matrices and pairs of arrays: the product of linear algebra.
  if (k == 2 && IsArrayProduct(PyTuple_GET_ITEM(args, 0), PyTuple_GET_ITEM(args, 1)))
    return ArrayDot(PyTuple_GET_ITEM(args, 0), PyTuple_GET_ITEM(args, 1));
  std::vector<PyObject *> lists;
  auto release = [&lists]() {
    for (PyObject *l : lists) Py_DECREF(l);
  };
  for (Py_ssize_t j = 0; j < k; ++j) {
    PyObject *l = Operands(PyTuple_GET_ITEM(args, j), "Dot");
    if (!l) {
      release();
      return nullptr;
    }
    lists.push_back(l);
    if (PyList_GET_SIZE(l) != PyList_GET_SIZE(lists[0])) {
      PyErr_Format(InterfaceError,
                   "The arguments of zorvan.Dot must have the same number of elements: %zd "
                   "and %zd",
                   PyList_GET_SIZE(lists[0]), PyList_GET_SIZE(l));
      release();
      return nullptr;
    }
  }
  Summer summer;
  if (!summer.ok()) {
    release();
    return nullptr;
  }
  Py_ssize_t n = PyList_GET_SIZE(lists[0]);
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *product = Py_NewRef(PyList_GET_ITEM(lists[0], i));
    for (Py_ssize_t j = 1; j < k && product; ++j)
      Py_SETREF(product, PyNumber_Multiply(product, PyList_GET_ITEM(lists[j], i)));
    if (summer.AddOwned(product) < 0) {
      release();
      return nullptr;
    }
  }
  release();
  return summer.Result();
}

PyObject *Prod(PyObject *, PyObject *args) {
  // Starting from 1.0, every product is a new object, so multiplying in
  // place never reaches an object of the caller.
  PyObject *product = PyFloat_FromDouble(1.0);
  if (!product) return nullptr;
  auto visit = [&product](PyObject *o) {
    if (ScalarKind(o) < 0) return -1;
    PyObject *r = PyNumber_InPlaceMultiply(product, o);
    if (!r) return -1;
    Py_SETREF(product, r);
    return 0;
  };
  if (ForEachArgument(args, "Prod", visit) < 0) {
    Py_DECREF(product);
    return nullptr;
  }
  return product;
}

PyObject *Logical(PyObject *args, int op, const char *fname) {
  PyObject *list = PyList_New(0);
  if (!list) return nullptr;
  bool constant = true;
  auto visit = [&](PyObject *o) {
    if (ScalarKind(o) < 0) return -1;
    if (!IsModelNumber(o)) constant = false;
    if (IsNode(o, op)) {  // and(a, and(b, c)) is and(a, b, c)
      PyObject *inner = NodeArgs(o);
      for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(inner); ++i)
        if (PyList_Append(list, PySequence_Fast_ITEMS(inner)[i]) < 0) return -1;
      return 0;
    }
    return PyList_Append(list, o);
  };
  if (ForEachArgument(args, fname, visit) < 0) {
    Py_DECREF(list);
    return nullptr;
  }
  Py_ssize_t n = PyList_GET_SIZE(list);
  PyObject *result;
  if (constant) {
    // Only numbers: the truth value itself; with no operand at all, True.
    bool value = op == OpAnd || n == 0;
    for (Py_ssize_t i = 0; i < n; ++i) {
      int t = PyObject_IsTrue(PyList_GET_ITEM(list, i));
      if (t < 0) {
        Py_DECREF(list);
        return nullptr;
      }
      if (op == OpAnd ? !t : t) {
        value = !value;
        break;
      }
    }
    result = PyBool_FromLong(value);
  } else if (n == 1) {
    result = Py_NewRef(PyList_GET_ITEM(list, 0));
  } else {
    result = MakeNonlinear(op, list, true);
  }
  Py_DECREF(list);
  return result;
}

PyObject *And(PyObject *, PyObject *args) { return Logical(args, OpAnd, "And"); }
PyObject *Or(PyObject *, PyObject *args) { return Logical(args, OpOr, "Or"); }

}  // namespace

PyMethodDef AggregateFunctions[] = {
    {"Sum", Sum, METH_VARARGS,
     ZRV_HELP("The sum of numbers, variables, terms, expressions and nonlinear expressions.",
              "zorvan.Sum(a, b, ...) or zorvan.Sum(collection)",
              "Any number of operands; each may also be a list, tuple, dictionary (its "
              "values are summed), generator, other iterable or NumPy array, unpacked "
              "(also when nested).",
              "s = zorvan.Sum(c[i] * x[i] for i in range(n))",
              "The operands are added into one new expression in place, so the time grows "
              "linearly with their number. An empty sum is an expression with constant 0. "
              "Nonlinear operands make the result one nonlinear sum of them and the "
              "polynomial part, which comes last. The operands are never changed.",
              "zorvan.Dot, zorvan.Prod, zorvan.expression")},
    {"Dot", Dot, METH_VARARGS,
     ZRV_HELP("The scalar product of two or more collections of equal length.",
              "zorvan.Dot(a, b, ...)",
              "Two or more lists, tuples, dictionaries (their values, in order), generators "
              "or NumPy arrays with the same number of elements; or two operands of which "
              "one is a NumPy array of two dimensions or a scipy.sparse matrix, or both are "
              "NumPy arrays, for the product of linear algebra.",
              "cost = zorvan.Dot(c, x)  # c[0]*x[0] + c[1]*x[1] + ...\n    "
              "rows = zorvan.Dot(A, x)  # A a matrix (dense or scipy.sparse), x an array of "
              "variables",
              "The products of the elements at each position are summed as zorvan.Sum does. "
              "A different number of elements raises InterfaceError. Products of arrays "
              "follow numpy.matmul (a matrix times a vector is a vector of expressions, a "
              "vector times a vector one expression); with a sparse matrix the time grows "
              "with its nonzeros. The operator @ does the same between NumPy arrays of "
              "numbers, variables and expressions.",
              "zorvan.Sum, zorvan.Prod")},
    {"Prod", Prod, METH_VARARGS,
     ZRV_HELP("The product of numbers, variables, terms, expressions and nonlinear "
              "expressions.",
              "zorvan.Prod(a, b, ...) or zorvan.Prod(collection)",
              "Operands and collections as for zorvan.Sum.",
              "p = zorvan.Prod(x[i] for i in range(3))",
              "The operands are multiplied from left to right with the usual operators, so "
              "two variables give a quadratic term and more a nonlinear expression. An "
              "empty product is 1.0. The operands are never changed.",
              "zorvan.Sum, zorvan.Dot")},
    {"And", And, METH_VARARGS,
     ZRV_HELP("The logical AND of variables and expressions, as a nonlinear expression.",
              "zorvan.And(a, b, ...) or zorvan.And(collection)",
              "Operands and collections as for zorvan.Sum, typically binary variables.",
              "both = zorvan.And(x, y)",
              "Operands that are themselves an AND are merged into one. One non-constant "
              "operand is returned as it is. With numbers only (or none) the result is "
              "their truth value: And() is True.",
              "zorvan.Or, zorvan.nonlinear")},
    {"Or", Or, METH_VARARGS,
     ZRV_HELP("The logical OR of variables and expressions, as a nonlinear expression.",
              "zorvan.Or(a, b, ...) or zorvan.Or(collection)",
              "Operands and collections as for zorvan.Sum, typically binary variables.",
              "either = zorvan.Or(x, y)",
              "Operands that are themselves an OR are merged into one. One non-constant "
              "operand is returned as it is. With numbers only the result is their truth "
              "value; Or() is True, as for And().",
              "zorvan.And, zorvan.nonlinear")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace zrv
