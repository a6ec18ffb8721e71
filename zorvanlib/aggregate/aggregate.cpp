// The aggregation functions Sum, Dot, Prod, And and Or, and the variable
// factory vars: they fold collections of modelling objects with the
// operators of the modelling types.
#include "aggregate/aggregate.h"

#include "model/expression.h"
#include "model/var.h"
#include "module/globals.h"
#include "module/help.h"
#include "module/types.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"

#include <string>
#include <vector>

namespace zrv {

namespace {

// Nested collections are unpacked at most this deep.
constexpr int kNestingBudget = 64;

// Whether o is a collection whose elements are the operands: not a number,
// string or modelling object, but a list, tuple, dictionary (its values),
// NumPy array (its elements in order), generator or other iterable.
bool IsCollection(PyObject *o) {
  if (IsNumber(o) || PyUnicode_Check(o) || PyBytes_Check(o) || PyByteArray_Check(o)) return false;
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
  return ForEach(args, fname, kNestingBudget, visit);
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
    if (IsNumber(o)) {
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
    if (ClassifyOperand(o) < 0) return -1;
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
  if (ForEach(o, fname, kNestingBudget, visit) < 0) {
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
    if (ClassifyOperand(o) < 0) return -1;
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
    if (ClassifyOperand(o) < 0) return -1;
    if (!IsNumber(o)) constant = false;
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

// --- vars -------------------------------------------------------------------

// The elements of an index set: range(n) for an integer n, else its items.
// The size of an integer index set, or -1 with an error set.
Py_ssize_t IndexCount(PyObject *s) {
  Py_ssize_t n = PyNumber_AsSsize_t(s, PyExc_OverflowError);
  if (n == -1 && PyErr_Occurred()) return -1;
  if (n < 0) {
    PyErr_Format(InterfaceError, "An index set of zorvan.vars cannot have %zd elements", n);
    return -1;
  }
  return n;
}

PyObject *IndexSet(PyObject *s) {
  if (PyLong_Check(s) || IsNumpyNumber(s)) {
    Py_ssize_t n = IndexCount(s);
    if (n < 0) return nullptr;
    PyObject *list = PyList_New(n);
    if (!list) return nullptr;
    for (Py_ssize_t i = 0; i < n; ++i) {
      PyObject *v = PyLong_FromSsize_t(i);
      if (!v) {
        Py_DECREF(list);
        return nullptr;
      }
      PyList_SET_ITEM(list, i, v);
    }
    return list;
  }
  if (PyUnicode_Check(s) || PyBytes_Check(s) || !Py_TYPE(s)->tp_iter) {
    PyErr_Format(InterfaceError,
                 "An index set of zorvan.vars must be an integer or an iterable, not <%S>", s);
    return nullptr;
  }
  return PySequence_List(s);
}

// "name(i)" or "name(i,j,...)" with the str of each index element.
PyObject *IndexedName(PyObject *prefix, PyObject *index, bool tuple) {
  PyObject *inner;
  if (tuple) {
    PyObject *comma = PyUnicode_FromString(",");
    if (!comma) return nullptr;
    Py_ssize_t n = PyTuple_GET_SIZE(index);
    PyObject *parts = PyList_New(n);
    if (!parts) {
      Py_DECREF(comma);
      return nullptr;
    }
    for (Py_ssize_t i = 0; i < n; ++i) {
      PyObject *s = PyObject_Str(PyTuple_GET_ITEM(index, i));
      if (!s) {
        Py_DECREF(parts);
        Py_DECREF(comma);
        return nullptr;
      }
      PyList_SET_ITEM(parts, i, s);
    }
    inner = PyUnicode_Join(comma, parts);
    Py_DECREF(parts);
    Py_DECREF(comma);
  } else {
    inner = PyObject_Str(index);
  }
  if (!inner) return nullptr;
  PyObject *name = PyUnicode_FromFormat("%U(%U)", prefix, inner);
  Py_DECREF(inner);
  return name;
}

PyObject *Vars(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *const kKeywords[] = {"name", "lb", "ub", "threshold", "vartype"};
  PyObject *given[5] = {nullptr, nullptr, nullptr, nullptr, nullptr};
  bool asArray = false;
  if (kwds) {
    PyObject *key, *value;
    Py_ssize_t pos = 0;
    while (PyDict_Next(kwds, &pos, &key, &value)) {
      int k = -1;
      for (int i = 0; i < 5; ++i)
        if (PyUnicode_Check(key) && PyUnicode_CompareWithASCIIString(key, kKeywords[i]) == 0) k = i;
      if (k < 0 && PyUnicode_Check(key) && PyUnicode_CompareWithASCIIString(key, "array") == 0) {
        int t = PyObject_IsTrue(value);
        if (t < 0) return nullptr;
        asArray = t == 1;
        continue;
      }
      if (k < 0) {
        PyErr_Format(InterfaceError, "Unknown keyword argument for zorvan.vars: %S", key);
        return nullptr;
      }
      if (value != Py_None) given[k] = value;
    }
  }
  PyObject *prefix = given[0];
  if (prefix && !PyUnicode_Check(prefix)) {
    PyErr_SetString(ModelError, "Invalid variable name (must be a string)");
    return nullptr;
  }
  if (prefix && PyUnicode_GET_LENGTH(prefix) == 0) prefix = nullptr;
  Py_ssize_t k = PyTuple_GET_SIZE(args);
  if (k == 0) {
    PyErr_SetString(InterfaceError, "zorvan.vars needs at least one index set");
    return nullptr;
  }
  // The index sets and the number of variables. An array without names
  // needs only the sizes of its integer dimensions, not their elements.
  const bool sizesOnly = asArray && !prefix;
  std::vector<PyObject *> sets;
  std::vector<Py_ssize_t> sizes;
  auto releaseSets = [&sets]() {
    for (PyObject *s : sets) Py_DECREF(s);
  };
  size_t count = 1;
  for (Py_ssize_t j = 0; j < k; ++j) {
    PyObject *set = PyTuple_GET_ITEM(args, j);
    if (asArray && !(PyLong_Check(set) || IsNumpyNumber(set))) {
      PyErr_Format(InterfaceError,
                   "zorvan.vars with array=True needs integer dimensions, not <%S>", set);
      releaseSets();
      return nullptr;
    }
    Py_ssize_t size;
    if (sizesOnly) {
      size = IndexCount(set);
    } else {
      PyObject *s = IndexSet(set);
      if (s) sets.push_back(s);
      size = s ? PyList_GET_SIZE(s) : -1;
    }
    if (size < 0) {
      releaseSets();
      return nullptr;
    }
    sizes.push_back(size);
    count *= static_cast<size_t>(size);
  }
  // A dictionary by index, or an array of the shape of the dimensions.
  PyObject **elements = nullptr;
  PyObject *result;
  if (asArray) {
    result = NewVarArray(static_cast<int>(k), sizes.data(), &elements);
  } else {
    result = PyDict_New();
  }
  if (!result) {
    releaseSets();
    return nullptr;
  }
  // All identifiers at once.
  uint64_t first;
  {
    GilSafeLock lock(VarCounterLock);
    first = varCounter;
    varCounter += count;
  }
  // Attributes other than the name follow the rules of zorvan.var's own
  // arguments, so that vars(..., **kw) and var(**kw) make the same variables.
  double lb = 0.0, ub = kInfinity, threshold = -kInfinity;
  long vartype = 0;
  if ((given[1] && (lb = PyFloat_AsDouble(given[1])) == -1.0 && PyErr_Occurred()) ||
      (given[2] && (ub = PyFloat_AsDouble(given[2])) == -1.0 && PyErr_Occurred()) ||
      (given[3] && (threshold = PyFloat_AsDouble(given[3])) == -1.0 && PyErr_Occurred()) ||
      (given[4] && (vartype = PyLong_AsLong(given[4])) == -1 && PyErr_Occurred())) {
    releaseSets();
    Py_DECREF(result);
    return nullptr;
  }
  if (vartype < 0 || vartype > 5) {
    PyErr_SetString(ModelError, kBadVarType);
    releaseSets();
    Py_DECREF(result);
    return nullptr;
  }
  std::vector<Py_ssize_t> position(static_cast<size_t>(k), 0);
  bool ok = true;
  for (size_t n = 0; n < count && ok; ++n) {
    PyObject *index = nullptr;  // the element's index, for names and dictionaries
    if (!sizesOnly && k == 1) {
      index = Py_NewRef(PyList_GET_ITEM(sets[0], position[0]));
    } else if (!sizesOnly) {
      index = PyTuple_New(k);
      if (!index) break;
      for (Py_ssize_t j = 0; j < k; ++j)
        PyTuple_SET_ITEM(index, j, Py_NewRef(PyList_GET_ITEM(sets[j], position[j])));
    }
    auto *v = reinterpret_cast<VarObject *>(VarType.tp_alloc(&VarType, 0));
    ok = v != nullptr;
    if (ok) {
      v->word = (first + n) & kVarIdMask;
      VarSetInitial(v->word, lb, ub, threshold, static_cast<int>(vartype));
      if (ok && prefix) {
        PyObject *name = IndexedName(prefix, index, k > 1);
        ok = name && PyObject_SetAttrString(reinterpret_cast<PyObject *>(v), "name", name) == 0;
        Py_XDECREF(name);
      }
      if (ok && elements)
        elements[n] = Py_NewRef(reinterpret_cast<PyObject *>(v));
      else if (ok)
        ok = PyDict_SetItem(result, index, reinterpret_cast<PyObject *>(v)) == 0;
      Py_DECREF(v);
    }
    Py_XDECREF(index);
    // Next index, the last set running fastest.
    for (Py_ssize_t j = k - 1; j >= 0; --j) {
      if (++position[j] < sizes[static_cast<size_t>(j)]) break;
      position[j] = 0;
    }
  }
  releaseSets();
  if (!ok) {
    Py_DECREF(result);
    return nullptr;
  }
  return result;
}

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
    {"vars", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(Vars)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Create many variables at once, indexed by one or more index sets.",
              "x = zorvan.vars(*indexsets, name=None, lb=0, ub=zorvan.infinity, "
              "threshold=-zorvan.infinity, vartype=zorvan.continuous, array=False)",
              "indexsets: one or more index sets, each an integer n (for 0, ..., n-1) or an "
              "iterable of indices (a list, range, tuple, set, string list, ...). name: a "
              "string the names start with; None or '' keeps the default names (C1, C2, "
              "...). lb, ub, threshold, vartype: as for zorvan.var, the same for every "
              "variable. array: with integer index sets only, return a NumPy array of "
              "data type zorvan.npvar of that shape instead of a dictionary.",
              "x = zorvan.vars(3, ['a', 'b'], name='x', vartype=zorvan.binary)\n    "
              "x[2, 'a'].name  # 'x(2,a)'\n    "
              "y = zorvan.vars(3, 4, name='y', array=True)  # y.shape == (3, 4)\n    "
              "y[2, 1].name  # 'y(2,1)'",
              "Returns a dictionary from each index to a new variable: the index is the "
              "element itself for one set and the tuple of elements for several, in the "
              "order of the sets with the last one running fastest. The variable of index "
              "i is named name(i), of index (i, j) name(i,j). The identifiers are taken in "
              "one block, in the order of the indices. With array=True the element "
              "[i, j] is the variable of index (i, j); arrays of variables combine "
              "element-wise with numbers and arrays (x + 1, A @ x, x <= b).",
              "zorvan.var, zorvan.Sum")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace zrv
