// In-place accumulation for the reductions of arrays of variables and
// expressions (numpy.add.reduce and sum through the add loops, numpy.dot
// through the element kernel below).
#include "numpy/reductions.h"

#include <cstring>

#include "model/expression.h"
#include "model/operand.h"
#include "base/types.h"
#include "numpy/strided.h"

namespace zrv {

int AccumulateInPlace(PyObject *acc, PyObject *y, double factor) {
  // One reference: the slot of the caller. Anything else holding acc (a
  // name, a list, another array, NumPy's own buffers) sends the sum down
  // the general path, which leaves acc untouched.
  if (!acc || !y || Py_TYPE(acc) != &ExpressionType || Py_REFCNT(acc) != 1) return 0;
  OperandKind k = KindOf(y);
  if (k < KindNumber || k > KindExpression) return 0;
  return ExpressionAddScaled(acc, y, factor) < 0 ? -1 : 1;
}

void ModelDot(void *left, npy_intp is1, void *right, npy_intp is2, void *op, npy_intp n,
              void *) {
  const char *ip1 = static_cast<const char *>(left), *ip2 = static_cast<const char *>(right);
  // As NumPy's object kernel: the first product starts the sum, each later
  // one is added to it; an empty element counts as False.
  PyObject *sum = nullptr;
  for (npy_intp i = 0; i < n; ++i, ip1 += is1, ip2 += is2) {
    PyObject *a = ObjectAt(ip1), *b = ObjectAt(ip2);
    PyObject *term = a && b ? PyNumber_Multiply(a, b) : Py_NewRef(Py_False);
    if (!term) {
      Py_XDECREF(sum);
      return;
    }
    if (!sum) {
      sum = term;
      continue;
    }
    int done = AccumulateInPlace(sum, term, 1.0);
    PyObject *next = done == 0 ? PyNumber_Add(sum, term) : done > 0 ? Py_NewRef(sum) : nullptr;
    Py_DECREF(term);
    Py_DECREF(sum);
    sum = next;
    if (!sum) return;
  }
  PyObject *old = ObjectAt(static_cast<const char *>(op));
  std::memcpy(op, &sum, sizeof sum);
  Py_XDECREF(old);
}

}  // namespace zrv
