// Products of arrays: the numpy.matmul loops for arrays of variables and
// expressions, and zorvan.Dot between arrays and sparse matrices. Every
// result element is one expression built in place, so a product costs time
// in proportion to the number of element products (for a sparse matrix, to
// its nonzeros).
#include "numpy/product.h"
#include "numpy/strided.h"

#include <cstring>

#include "model/expression.h"
#include "model/operand.h"
#include "base/globals.h"
#include "base/types.h"
#include "nonlinear/nonlinear.h"
#include "base/arrays.h"
#include "numpy/bridge.h"

namespace zrv {

namespace {

// Accumulates products: polynomial ones into one expression, nonlinear ones
// in a list joined with the expression in one sum node at the end.
class Accumulator {
 public:
  Accumulator() : acc_(NewExpression(0.0)) {}
  ~Accumulator() {
    Py_XDECREF(acc_);
    Py_XDECREF(nonlinear_);
  }
  bool ok() const { return acc_ != nullptr; }
  int Reserve(size_t n) { return ExpressionReserveLinear(acc_, n); }

  // Adds c * o, o a borrowed object reference.
  int AddScaled(PyObject *o, double c) {
    if (c == 0.0) return 0;
    if (Py_TYPE(o) == &VarType) return ExpressionAddLinear(acc_, o, c);
    OperandKind k = KindOf(o);
    if (k == KindNonlinear) {
      PyObject *f = PyFloat_FromDouble(c);
      if (!f) return -1;
      PyObject *p = PyNumber_Multiply(f, o);
      Py_DECREF(f);
      return AddOwned(p);
    }
    if (k == KindInvalid || k == KindVector) {
      InvalidOperand(o);
      return -1;
    }
    return ExpressionAddScaled(acc_, o, c);
  }

  // Adds the new reference p (NULL: a failure already set) and releases it.
  int AddOwned(PyObject *p) {
    if (!p) return -1;
    int rc;
    OperandKind k = KindOf(p);
    if (k == KindNonlinear) {
      if (!nonlinear_) nonlinear_ = PyList_New(0);
      rc = nonlinear_ ? PyList_Append(nonlinear_, p) : -1;
    } else if (k == KindInvalid || k == KindVector) {
      InvalidOperand(p);
      rc = -1;
    } else {
      rc = ExpressionAddScaled(acc_, p, 1.0);
    }
    Py_DECREF(p);
    return rc;
  }

  // The sum, a new reference.
  PyObject *Result() {
    // The sum leaves in its final form: sorted and merged once, here.
    ExpressionLinear(acc_);
    if (!nonlinear_ || PyList_GET_SIZE(nonlinear_) == 0) return Py_NewRef(acc_);
    bool empty = ExpressionIsConstant(acc_) && AsExpression(acc_)->constant == 0.0;
    if (!empty && PyList_Append(nonlinear_, acc_) < 0) return nullptr;
    PyObject *node = MakeNonlinear(OpSum, nonlinear_, true);
    Py_CLEAR(nonlinear_);
    return node;
  }

 private:
  PyObject *acc_;
  PyObject *nonlinear_ = nullptr;
};

// An element of an object array; empty elements read as None.
inline PyObject *ElementAt(const char *p) {
  PyObject *o = ObjectAt(p);
  return o ? o : Py_None;
}

inline void Store(char *p, PyObject *r) {
  PyObject *old;
  std::memcpy(&old, p, sizeof old);
  std::memcpy(p, &r, sizeof r);
  Py_XDECREF(old);
}

// numpy.matmul over (n?,k),(k,m?)->(n?,m?).
template <bool ADouble, bool BDouble>
void MatmulLoop(char **args, npy_intp const *dims, npy_intp const *steps, void *) {
  npy_intp outer = dims[0], n = dims[1], k = dims[2], m = dims[3];
  for (npy_intp o = 0; o < outer; ++o) {
    const char *a = args[0] + o * steps[0];
    const char *b = args[1] + o * steps[1];
    char *c = args[2] + o * steps[2];
    for (npy_intp i = 0; i < n; ++i) {
      for (npy_intp j = 0; j < m; ++j) {
        PyObject *r = DotElements(a + i * steps[3], steps[4], ADouble, b + j * steps[6], steps[5],
                                  BDouble, k);
        Store(c + i * steps[7] + j * steps[8], r);
        if (!r) return;
      }
    }
  }
}

int RegisterMatmul(PyObject *ufunc, int left, int right) {
  int usertype = left == NPY_DOUBLE ? right : left;
  PyUFuncGenericFunction f = left == NPY_DOUBLE    ? MatmulLoop<true, false>
                             : right == NPY_DOUBLE ? MatmulLoop<false, true>
                                                   : MatmulLoop<false, false>;
  const int types[3] = {left, right, NpExprTypeNum};
  return PyUFunc_RegisterLoopForType(reinterpret_cast<PyUFuncObject *>(ufunc), usertype, f,
                                     types, nullptr);
}

PyObject *ModelErrorOut(const char *text) {
  PyErr_SetString(ModelError, text);
  return nullptr;
}

const char kOnlyArrays[] = "Dot product can only occur between NumPy arrays";
const char kElementTypes[] = "Dot product must be between long, double, and expressions/variables";

// Element classes of an operand array.
enum class Elements { Numbers, Objects, Other };

Elements ElementsOf(PyArrayObject *a) {
  int t = PyArray_TYPE(a);
  if (PyArray_ISINTEGER(a) || PyArray_ISFLOAT(a)) return Elements::Numbers;
  if (t == NPY_OBJECT || t == NpVarTypeNum || t == NpExprTypeNum) return Elements::Objects;
  return Elements::Other;
}

// An operand as an aligned array: numbers as doubles, objects as they are.
// NULL with ModelError for other element types or objects that are not
// arrays, lists or tuples.
PyObject *Operand(PyObject *o, bool *numbers) {
  PyObject *a;
  if (IsNumpyArray(o)) {
    a = Py_NewRef(o);
  } else if (PyList_Check(o) || PyTuple_Check(o)) {
    a = PyArray_FROM_O(o);
    if (!a) return nullptr;
  } else {
    return ModelErrorOut(kOnlyArrays);
  }
  auto *arr = reinterpret_cast<PyArrayObject *>(a);
  switch (ElementsOf(arr)) {
    case Elements::Numbers: {
      *numbers = true;
      PyObject *d = PyArray_FROM_OTF(a, NPY_DOUBLE, NPY_ARRAY_ALIGNED);
      Py_DECREF(a);
      return d;
    }
    case Elements::Objects: {
      *numbers = false;
      if (PyArray_ISALIGNED(arr)) return a;
      PyObject *c = PyArray_NewCopy(arr, NPY_CORDER);
      Py_DECREF(a);
      return c;
    }
    case Elements::Other: break;
  }
  Py_DECREF(a);
  return ModelErrorOut(kElementTypes);
}

PyObject *ShapeMismatch(PyArrayObject *a, PyArrayObject *b) {
  PyObject *sa = PyObject_GetAttrString(reinterpret_cast<PyObject *>(a), "shape");
  PyObject *sb = sa ? PyObject_GetAttrString(reinterpret_cast<PyObject *>(b), "shape") : nullptr;
  if (sb)
    PyErr_Format(InterfaceError, "Dot product of arrays of shapes %S and %S: the dimensions "
                 "that are summed over differ", sa, sb);
  Py_XDECREF(sa);
  Py_XDECREF(sb);
  return nullptr;
}

// The product of arrays of at most two dimensions with matmul's rules.
PyObject *DenseDot(PyArrayObject *a, bool ad, PyArrayObject *b, bool bd) {
  int na = PyArray_NDIM(a), nb = PyArray_NDIM(b);
  if (na == 0 || nb == 0) {
    PyErr_SetString(InterfaceError, "Dot product of arrays needs arrays of one or two dimensions");
    return nullptr;
  }
  npy_intp n = na == 2 ? PyArray_DIM(a, 0) : 1;
  npy_intp k = PyArray_DIM(a, na - 1);
  npy_intp kb = PyArray_DIM(b, 0);
  npy_intp m = nb == 2 ? PyArray_DIM(b, 1) : 1;
  if (k != kb) return ShapeMismatch(a, b);
  npy_intp sak = PyArray_STRIDE(a, na - 1), san = na == 2 ? PyArray_STRIDE(a, 0) : 0;
  npy_intp sbk = PyArray_STRIDE(b, 0), sbm = nb == 2 ? PyArray_STRIDE(b, 1) : 0;
  const char *da = PyArray_BYTES(a), *db = PyArray_BYTES(b);
  if (na == 1 && nb == 1) return DotElements(da, sak, ad, db, sbk, bd, k);
  npy_intp dims[2];
  int nd = 0;
  if (na == 2) dims[nd++] = n;
  if (nb == 2) dims[nd++] = m;
  PyObject *out = PyArray_ZEROS(nd, dims, NpExprTypeNum, 0);
  if (!out) return nullptr;
  auto **items = static_cast<PyObject **>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(out)));
  for (npy_intp i = 0; i < n; ++i) {
    for (npy_intp j = 0; j < m; ++j) {
      PyObject *r = DotElements(da + i * san, sak, ad, db + j * sbm, sbk, bd, k);
      if (!r) {
        Py_DECREF(out);
        return nullptr;
      }
      Py_XSETREF(items[i * m + j], r);
    }
  }
  return out;
}

// An int array attribute of a compressed sparse matrix, as intp.
PyObject *IndexArray(PyObject *csr, const char *name) {
  PyObject *v = PyObject_GetAttrString(csr, name);
  if (!v) return nullptr;
  PyObject *a = PyArray_FROM_OTF(v, NPY_INTP, NPY_ARRAY_CARRAY);
  Py_DECREF(v);
  return a;
}

// How many nonzeros ahead a sparse product fetches the variables.
constexpr npy_intp kPrefetchAhead = 24;

// A sparse matrix times an array of one or two dimensions of objects.
PyObject *SparseDot(PyObject *sparse, PyObject *x) {
  bool numbers = false;
  PyObject *xa = Operand(x, &numbers);
  if (!xa) return nullptr;
  if (numbers) {  // numbers only: scipy's own product
    Py_DECREF(xa);
    return PyNumber_MatrixMultiply(sparse, x);
  }
  PyObject *csr = PyObject_CallMethod(sparse, "tocsr", nullptr);
  PyObject *shape = csr ? PyObject_GetAttrString(csr, "shape") : nullptr;
  PyObject *indptr = shape ? IndexArray(csr, "indptr") : nullptr;
  PyObject *indices = indptr ? IndexArray(csr, "indices") : nullptr;
  PyObject *data = nullptr;
  if (indices) {
    PyObject *v = PyObject_GetAttrString(csr, "data");
    if (v) {
      if (IsNumpyArray(v) &&
          ElementsOf(reinterpret_cast<PyArrayObject *>(v)) == Elements::Numbers)
        data = PyArray_FROM_OTF(v, NPY_DOUBLE, NPY_ARRAY_CARRAY);
      else
        ModelErrorOut(kElementTypes);
      Py_DECREF(v);
    }
  }
  PyObject *out = nullptr;
  Py_ssize_t rows = 0, cols = 0;
  if (data && (!PyTuple_Check(shape) || PyTuple_GET_SIZE(shape) != 2)) {
    PyErr_SetString(InterfaceError, "Dot product needs a sparse matrix of two dimensions");
  } else if (data) {
    rows = PyLong_AsSsize_t(PyTuple_GET_ITEM(shape, 0));
    cols = PyLong_AsSsize_t(PyTuple_GET_ITEM(shape, 1));
  }
  auto *xarr = reinterpret_cast<PyArrayObject *>(xa);
  int nd = PyArray_NDIM(xarr);
  if (data && !PyErr_Occurred()) {
    if ((nd != 1 && nd != 2) || PyArray_DIM(xarr, 0) != cols) {
      PyErr_Format(InterfaceError,
                   "Dot product of a sparse matrix with %zd columns needs an array of one or "
                   "two dimensions with %zd rows",
                   cols, cols);
    } else {
      npy_intp m = nd == 2 ? PyArray_DIM(xarr, 1) : 1;
      npy_intp dims[2] = {rows, m};
      out = PyArray_ZEROS(nd, dims, NpExprTypeNum, 0);
    }
  }
  if (out) {
    const auto *ptr = static_cast<const npy_intp *>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(indptr)));
    const auto *idx = static_cast<const npy_intp *>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(indices)));
    const auto *val = static_cast<const double *>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(data)));
    npy_intp nnz = PyArray_SIZE(reinterpret_cast<PyArrayObject *>(indices));
    npy_intp m = nd == 2 ? PyArray_DIM(xarr, 1) : 1;
    npy_intp sx0 = PyArray_STRIDE(xarr, 0), sx1 = nd == 2 ? PyArray_STRIDE(xarr, 1) : 0;
    const char *xd = PyArray_BYTES(xarr);
    auto **items = static_cast<PyObject **>(PyArray_DATA(reinterpret_cast<PyArrayObject *>(out)));
    bool ok = true;
    for (Py_ssize_t r = 0; r < rows && ok; ++r) {
      npy_intp begin = ptr[r], end = ptr[r + 1];
      if (begin < 0 || end < begin || end > nnz) {
        PyErr_SetString(InterfaceError, "Inconsistent sparse matrix in Dot product");
        ok = false;
        break;
      }
      for (npy_intp j = 0; j < m && ok; ++j) {
        Accumulator acc;
        ok = acc.ok() && acc.Reserve(static_cast<size_t>(end - begin)) == 0;
        for (npy_intp p = begin; p < end && ok; ++p) {
          // Adding a variable takes a reference to it; fetch the variables
          // of later nonzeros meanwhile, as they lie scattered in memory.
          if (p + kPrefetchAhead < nnz) {
            npy_intp ahead = idx[p + kPrefetchAhead];
            if (ahead >= 0 && ahead < cols)
              __builtin_prefetch(ElementAt(xd + ahead * sx0 + j * sx1), 1, 3);
          }
          npy_intp col = idx[p];
          if (col < 0 || col >= cols) {
            PyErr_SetString(InterfaceError, "Inconsistent sparse matrix in Dot product");
            ok = false;
          } else {
            ok = acc.AddScaled(ElementAt(xd + col * sx0 + j * sx1), val[p]) == 0;
          }
        }
        PyObject *e = ok ? acc.Result() : nullptr;
        ok = e != nullptr;
        if (ok) Py_XSETREF(items[r * m + j], e);
      }
    }
    if (!ok) Py_CLEAR(out);
  }
  Py_XDECREF(csr);
  Py_XDECREF(shape);
  Py_XDECREF(indptr);
  Py_XDECREF(indices);
  Py_XDECREF(data);
  Py_DECREF(xa);
  return out;
}

PyObject *Transposed(PyObject *o) {
  if (!o) return nullptr;
  PyObject *t = PyObject_GetAttrString(o, "T");
  Py_DECREF(o);
  return t;
}

}  // namespace

PyObject *DotElements(const char *a, npy_intp sa, bool aDouble, const char *b, npy_intp sb,
                      bool bDouble, npy_intp k) {
  Accumulator acc;
  if (!acc.ok()) return nullptr;
  double constant = 0.0;
  for (npy_intp i = 0; i < k; ++i, a += sa, b += sb) {
    int rc = 0;
    if (aDouble && bDouble) {
      constant += DoubleAt(a) * DoubleAt(b);
    } else if (aDouble) {
      rc = acc.AddScaled(ElementAt(b), DoubleAt(a));
    } else if (bDouble) {
      rc = acc.AddScaled(ElementAt(a), DoubleAt(b));
    } else {
      PyObject *x = ElementAt(a), *y = ElementAt(b);
      if (KindOf(x) == KindNumber) {
        double c = NumberValue(x);
        rc = c == -1.0 && PyErr_Occurred() ? -1 : acc.AddScaled(y, c);
      } else if (KindOf(y) == KindNumber) {
        double c = NumberValue(y);
        rc = c == -1.0 && PyErr_Occurred() ? -1 : acc.AddScaled(x, c);
      } else {
        rc = acc.AddOwned(PyNumber_Multiply(x, y));
      }
    }
    if (rc < 0) return nullptr;
  }
  if (constant != 0.0) {
    PyObject *c = PyFloat_FromDouble(constant);
    if (!c || acc.AddOwned(c) < 0) return nullptr;
  }
  return acc.Result();
}

int RegisterProductLoops(PyObject *numpy) {
  PyObject *matmul = PyObject_GetAttrString(numpy, "matmul");
  if (!matmul) return -1;
  const int model[2] = {NpVarTypeNum, NpExprTypeNum};
  int rc = 0;
  for (int i = 0; i < 2 && rc == 0; ++i) {
    rc = RegisterMatmul(matmul, model[i], NPY_DOUBLE);
    if (rc == 0) rc = RegisterMatmul(matmul, NPY_DOUBLE, model[i]);
    for (int j = 0; j < 2 && rc == 0; ++j) rc = RegisterMatmul(matmul, model[i], model[j]);
  }
  Py_DECREF(matmul);
  return rc;
}

bool IsArrayProduct(PyObject *a, PyObject *b) {
  bool arrA = IsNumpyArray(a), arrB = IsNumpyArray(b);
  if (arrA && arrB) return true;
  if ((arrA && PyArray_NDIM(reinterpret_cast<PyArrayObject *>(a)) >= 2) ||
      (arrB && PyArray_NDIM(reinterpret_cast<PyArrayObject *>(b)) >= 2))
    return true;
  return IsSparseMatrix(a) || IsSparseMatrix(b);
}

PyObject *ArrayDot(PyObject *a, PyObject *b) {
  if (IsSparseMatrix(a)) return SparseDot(a, b);
  if (IsSparseMatrix(b)) {
    // x A = (A' x')'
    bool numbers = false;
    PyObject *xa = Operand(a, &numbers);
    if (!xa) return nullptr;
    if (numbers) {
      Py_DECREF(xa);
      return PyNumber_MatrixMultiply(a, b);
    }
    PyObject *bt = PyObject_GetAttrString(b, "T");
    PyObject *xt = bt ? PyObject_GetAttrString(xa, "T") : nullptr;
    PyObject *r = xt ? SparseDot(bt, xt) : nullptr;
    Py_XDECREF(bt);
    Py_XDECREF(xt);
    Py_DECREF(xa);
    return Transposed(r);
  }
  bool an = false, bn = false;
  PyObject *aa = Operand(a, &an);
  if (!aa) return nullptr;
  PyObject *ba = Operand(b, &bn);
  if (!ba) {
    Py_DECREF(aa);
    return nullptr;
  }
  auto *x = reinterpret_cast<PyArrayObject *>(aa);
  auto *y = reinterpret_cast<PyArrayObject *>(ba);
  PyObject *r;
  if ((an && bn) || PyArray_NDIM(x) > 2 || PyArray_NDIM(y) > 2)
    r = PyNumber_MatrixMultiply(aa, ba);  // numbers, or stacks of matrices: numpy.matmul
  else
    r = DenseDot(x, an, y, bn);
  Py_DECREF(aa);
  Py_DECREF(ba);
  return r;
}

}  // namespace zrv
