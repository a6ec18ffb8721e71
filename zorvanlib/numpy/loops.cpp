// Element-wise loops for arrays of variables and expressions: arithmetic
// gives arrays of expressions, comparisons arrays of constraints. Each
// element is computed by the modelling objects' own operators, so an array
// operation means exactly what the same operation on its elements means.
#include "base/numpy_api.h"

#include <algorithm>
#include <cstring>

#include "model/constraint.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "base/arrays.h"
#include "numpy/bridge.h"
#include "numpy/product.h"
#include "numpy/reductions.h"
#include "numpy/strided.h"
#include "base/types.h"

namespace zrv {

namespace {

enum LoopOp : int {
  OpAdd, OpSubtract, OpMultiply, OpDivide, OpPower, OpBitAnd, OpBitOr,
  OpLessEqual, OpEqual, OpGreaterEqual, OpNegative, OpSquare, OpCount
};

// Loop data: a pointer to the operation code.
const int kOps[OpCount] = {OpAdd, OpSubtract, OpMultiply, OpDivide, OpPower, OpBitAnd,
                           OpBitOr, OpLessEqual, OpEqual, OpGreaterEqual, OpNegative,
                           OpSquare};

// A comparison straight through the modelling objects' comparison slot when
// one side is a modelling object; the interpreter's protocol otherwise.
PyObject *Compare(PyObject *a, PyObject *b, int op) {
  OperandKind k = KindOf(a);
  if (k >= KindVar && k <= KindNonlinear) return Py_TYPE(a)->tp_richcompare(a, b, op);
  return PyObject_RichCompare(a, b, op);
}

PyObject *Apply(int op, PyObject *a, PyObject *b) {
  switch (op) {
    case OpAdd: return PyNumber_Add(a, b);
    case OpSubtract: return PyNumber_Subtract(a, b);
    case OpMultiply: return PyNumber_Multiply(a, b);
    case OpDivide: return PyNumber_TrueDivide(a, b);
    case OpPower: return PyNumber_Power(a, b, Py_None);
    case OpBitAnd: return PyNumber_And(a, b);
    case OpBitOr: return PyNumber_Or(a, b);
    case OpLessEqual: return Compare(a, b, Py_LE);
    case OpEqual: return Compare(a, b, Py_EQ);
    case OpGreaterEqual: return Compare(a, b, Py_GE);
    default: break;
  }
  PyErr_SetString(PyExc_SystemError, "unknown array operation");
  return nullptr;
}

// An element as an object: a double element becomes a new float, an object
// element a new reference (an empty slot is None).
template <bool IsDouble>
PyObject *Element(const char *p) {
  if constexpr (IsDouble) {
    double v;
    std::memcpy(&v, p, sizeof v);
    return PyFloat_FromDouble(v);
  } else {
    PyObject *o;
    std::memcpy(&o, p, sizeof o);
    return Py_NewRef(o ? o : Py_None);
  }
}

// Stores r (a new reference or NULL) into the object slot at p.
inline void Store(char *p, PyObject *r) {
  PyObject *old;
  std::memcpy(&old, p, sizeof old);
  std::memcpy(p, &r, sizeof r);
  Py_XDECREF(old);
}

// The comparison code of a loop operation (0 for arithmetic).
int ComparisonOf(int op) {
  switch (op) {
    case OpLessEqual: return Py_LE;
    case OpEqual: return Py_EQ;
    case OpGreaterEqual: return Py_GE;
    default: return 0;
  }
}


// Expressions lie scattered in memory, and so do the blocks of entries
// that their copies share (each copy counts itself on the block): fetch
// the expression of a later row, and the block of a nearer one.
inline void PrefetchExpressions(char *base, npy_intp step, npy_intp i, npy_intp n) {
  if (i + 8 < n) {
    PyObject *e = ObjectAt(base + 8 * step);
    if (e) __builtin_prefetch(e);
  }
  if (i + 4 < n) {
    PyObject *e = ObjectAt(base + 4 * step);
    if (e && Py_TYPE(e) == &ExpressionType) {
      const void *block = AsExpression(e)->linear.Storage();
      if (block) __builtin_prefetch(block, 1, 3);
    }
  }
}

template <bool LeftDouble, bool RightDouble>
void BinaryLoop(char **args, npy_intp const *dims, npy_intp const *steps, void *data) {
  int op = *static_cast<const int *>(data);
  char *a = args[0], *b = args[1], *out = args[2];
  npy_intp n = dims[0];
  if constexpr (LeftDouble != RightDouble) {
    // Expressions compared with numbers (rows of A @ x <= b): each
    // constraint straight from the expression and the double, no float
    // object and no difference in between.
    int cmp = ComparisonOf(op);
    if (cmp) {
      if (LeftDouble) cmp = cmp == Py_LE ? Py_GE : cmp == Py_GE ? Py_LE : Py_EQ;
      const int obj = LeftDouble ? 1 : 0;
      const npy_intp step = steps[obj];
      // Rows are made in blocks and their bounds set after each block: the
      // bounds go to the module's maps at scattered places, and one tight
      // loop over a block lets the processor wait for many at once.
      constexpr npy_intp kBlock = 256;
      PyObject *made[kBlock];
      double rhs[kBlock];
      for (npy_intp i0 = 0; i0 < n; i0 += kBlock) {
        const npy_intp count = std::min(kBlock, n - i0);
        npy_intp k = 0;
        bool failed = false;
        for (; k < count; ++k, a += steps[0], b += steps[1], out += steps[2]) {
          PrefetchExpressions(obj ? b : a, step, i0 + k, n);
          PyObject *e = ObjectAt(obj ? b : a);
          PyObject *r;
          made[k] = nullptr;
          if (e && Py_TYPE(e) == &ExpressionType) {
            r = UnboundedComparison(e, DoubleAt(obj ? a : b), &rhs[k]);
            made[k] = r;
          } else {
            PyObject *x = Element<LeftDouble>(a);
            PyObject *y = x ? Element<RightDouble>(b) : nullptr;
            r = y ? Apply(op, x, y) : nullptr;
            Py_XDECREF(x);
            Py_XDECREF(y);
          }
          Store(out, r);
          if (!r) {
            failed = true;
            break;
          }
        }
        for (npy_intp j = 0; j < k; ++j)
          if (made[j]) BoundComparison(made[j], rhs[j], cmp);
        if (failed) return;  // NumPy reports the pending error
      }
      return;
    }
  }
  if constexpr (!LeftDouble && !RightDouble) {
    // out[i] = out[i] +/- b[i]: a reduction (NumPy passes the running value
    // as the first operand and as the output) or an in-place add. The
    // running expression grows in place while only its slot holds it.
    if ((op == OpAdd || op == OpSubtract) && a == out && steps[0] == steps[2]) {
      const double factor = op == OpAdd ? 1.0 : -1.0;
      for (npy_intp i = 0; i < n; ++i, a += steps[0], b += steps[1], out += steps[2]) {
        int done = AccumulateInPlace(ObjectAt(a), ObjectAt(b), factor);
        if (done < 0) return;
        if (done > 0) continue;
        PyObject *x = Element<false>(a);
        PyObject *y = Element<false>(b);
        PyObject *r = Apply(op, x, y);
        Py_DECREF(x);
        Py_DECREF(y);
        Store(out, r);
        if (!r) return;
      }
      return;
    }
  }
  if constexpr (LeftDouble != RightDouble) {
    // A variable times a number, the element of every weighted sum: the
    // term straight from the double, with the rules of the product (0 gives
    // 0.0, 1 the variable itself), no float object in between.
    if (op == OpMultiply) {
      for (npy_intp i = 0; i < n; ++i, a += steps[0], b += steps[1], out += steps[2]) {
        PyObject *e = ObjectAt(LeftDouble ? b : a);
        PyObject *r;
        if (e && Py_TYPE(e) == &VarType) {
          const double c = DoubleAt(LeftDouble ? a : b);
          r = c == 0.0 ? PyFloat_FromDouble(0.0) : c == 1.0 ? Py_NewRef(e) : MakeLinTerm(c, e);
        } else {
          PyObject *x = Element<LeftDouble>(a);
          PyObject *y = x ? Element<RightDouble>(b) : nullptr;
          r = y ? Apply(op, x, y) : nullptr;
          Py_XDECREF(x);
          Py_XDECREF(y);
        }
        Store(out, r);
        if (!r) return;
      }
      return;
    }
  }
  for (npy_intp i = 0; i < n; ++i, a += steps[0], b += steps[1], out += steps[2]) {
    PyObject *x = Element<LeftDouble>(a);
    PyObject *y = x ? Element<RightDouble>(b) : nullptr;
    PyObject *r = y ? Apply(op, x, y) : nullptr;
    Py_XDECREF(x);
    Py_XDECREF(y);
    Store(out, r);
    if (!r) return;  // NumPy reports the pending error
  }
}

void UnaryLoop(char **args, npy_intp const *dims, npy_intp const *steps, void *data) {
  int op = *static_cast<const int *>(data);
  char *a = args[0], *out = args[1];
  npy_intp n = dims[0];
  PyObject *two = op == OpSquare ? PyFloat_FromDouble(2.0) : nullptr;
  if (op == OpSquare && !two) return;
  for (npy_intp i = 0; i < n; ++i, a += steps[0], out += steps[1]) {
    PyObject *x = Element<false>(a);
    PyObject *r = op == OpNegative ? PyNumber_Negative(x) : PyNumber_Power(x, two, Py_None);
    Py_DECREF(x);
    Store(out, r);
    if (!r) break;
  }
  Py_XDECREF(two);
}

PyUFuncGenericFunction BinaryFor(bool leftDouble, bool rightDouble) {
  if (leftDouble) return BinaryLoop<true, false>;
  if (rightDouble) return BinaryLoop<false, true>;
  return BinaryLoop<false, false>;
}

struct UfuncRow {
  const char *name;
  int op;
};

const UfuncRow kComparisons[] = {
    {"less_equal", OpLessEqual}, {"equal", OpEqual}, {"greater_equal", OpGreaterEqual}};
const UfuncRow kArithmetic[] = {
    {"add", OpAdd},       {"subtract", OpSubtract},       {"multiply", OpMultiply},
    {"divide", OpDivide}, {"true_divide", OpDivide},      {"power", OpPower},
    {"bitwise_and", OpBitAnd}, {"bitwise_or", OpBitOr}};
const UfuncRow kUnary[] = {{"negative", OpNegative}, {"square", OpSquare}};

// Registers func for the argument types on the ufunc of that name, once per
// ufunc object (divide and true_divide are one object in recent NumPy).
int RegisterOn(PyObject *numpy, const char *name, int usertype, PyUFuncGenericFunction func,
               const int *types, const int *op, PyObject *seen) {
  PyObject *ufunc = PyObject_GetAttrString(numpy, name);
  if (!ufunc) return -1;
  // A key per ufunc object and signature.
  PyObject *key = Py_BuildValue("(Oiii)", ufunc, types[0], types[1], types[2]);
  int known = key ? PySet_Contains(seen, key) : -1;
  int rc = known;
  if (known == 0) {
    rc = PySet_Add(seen, key);
    if (rc == 0)
      rc = PyUFunc_RegisterLoopForType(reinterpret_cast<PyUFuncObject *>(ufunc), usertype, func,
                                       types, const_cast<int *>(op));
  }
  Py_XDECREF(key);
  Py_DECREF(ufunc);
  return rc < 0 ? -1 : 0;
}

}  // namespace

int RegisterNumpyLoops() {
  static bool registered = false;  // a second start-up in one process
  if (registered) return 0;
  PyObject *numpy = PyImport_ImportModule("numpy");
  if (!numpy) return -1;
  PyObject *seen = PySet_New(nullptr);
  if (!seen) {
    Py_DECREF(numpy);
    return -1;
  }
  const int model[2] = {NpVarTypeNum, NpExprTypeNum};
  int rc = 0;
  // Binary rows: (model, double), (double, model), (model, model).
  for (int form = 0; form < 3 && rc == 0; ++form) {
    for (int i = 0; i < (form == 1 ? 1 : 2) && rc == 0; ++i) {
      for (int j = 0; j < (form == 0 ? 1 : 2) && rc == 0; ++j) {
        int left = form == 1 ? NPY_DOUBLE : model[i];
        int right = form == 0 ? NPY_DOUBLE : model[j];
        int usertype = left == NPY_DOUBLE ? right : left;
        PyUFuncGenericFunction f = BinaryFor(left == NPY_DOUBLE, right == NPY_DOUBLE);
        for (const UfuncRow &row : kComparisons) {
          const int types[3] = {left, right, NpConstraintTypeNum};
          if (rc == 0) rc = RegisterOn(numpy, row.name, usertype, f, types, &kOps[row.op], seen);
        }
        for (const UfuncRow &row : kArithmetic) {
          const int types[3] = {left, right, NpExprTypeNum};
          if (rc == 0) rc = RegisterOn(numpy, row.name, usertype, f, types, &kOps[row.op], seen);
        }
      }
    }
  }
  for (int i = 0; i < 2 && rc == 0; ++i) {
    for (const UfuncRow &row : kUnary) {
      const int types[3] = {model[i], NpExprTypeNum, 0};
      if (rc == 0) rc = RegisterOn(numpy, row.name, model[i], UnaryLoop, types, &kOps[row.op], seen);
    }
  }
  if (rc == 0) rc = RegisterProductLoops(numpy);
  if (rc == 0) registered = true;
  Py_DECREF(seen);
  Py_DECREF(numpy);
  return rc;
}

}  // namespace zrv
