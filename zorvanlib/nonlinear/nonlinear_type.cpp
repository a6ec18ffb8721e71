// The `nonlinear` type: its slots and help text.
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"

#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

#include <vector>

namespace zrv {

PyTypeObject NonlinearType{};

namespace {

PyObject *NonlinearNew(PyTypeObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError,
                  "Nonlinear expressions are made by operators and functions on variables and "
                  "expressions, not by calling zorvan.nonlinear");
  return nullptr;
}

// Releasing a deep tree must not recurse once per level: while one release is
// running, nodes freed inside it hand their arguments to this list, and the
// outermost release drains it.
thread_local std::vector<PyObject *> *pendingRelease = nullptr;

void NonlinearDealloc(PyObject *self) {
  PyObject *args = reinterpret_cast<NonlinearObject *>(self)->args;
  Py_TYPE(self)->tp_free(self);
  if (!args) return;
  if (pendingRelease) {
    pendingRelease->push_back(args);
    return;
  }
  std::vector<PyObject *> pending{args};
  pendingRelease = &pending;
  while (!pending.empty()) {
    PyObject *o = pending.back();
    pending.pop_back();
    Py_DECREF(o);
  }
  pendingRelease = nullptr;
}

}  // namespace

void SetupNonlinearType() {
  PyTypeObject &t = NonlinearType;
  InitType(t, "zorvan.nonlinear", sizeof(NonlinearObject));
  t.tp_new = NonlinearNew;
  t.tp_dealloc = NonlinearDealloc;
  t.tp_repr = NonlinearRepr;
  t.tp_str = NonlinearRepr;
  t.tp_as_number = &NonlinearNumberMethods;
  t.tp_methods = NonlinearMethods;
  // Nodes are hashed by identity (comparisons build constraints instead of
  // deciding equality).
  t.tp_hash = PyBaseObject_Type.tp_hash;
  t.tp_doc = ZRV_HELP(
      "A nonlinear expression: a tree of operators and functions over numbers, variables, "
      "terms and expressions.",
      "f = zorvan.sin(x) * y ** 3",
      "Made by operations beyond degree two (division by a non-constant, powers, products "
      "of more than two variables) and by the functions zorvan.sin, cos, tan, asin, acos, "
      "atan, exp, log, log10, abs, sqrt, sign, erf, erfc, max, min, pwl and user; never "
      "called directly.",
      "f = x * y * z\n    g = zorvan.exp(f) / (1 + x)",
      "Nonlinear expressions may appear in constraints and objectives. extractLinear() and "
      "extractQuadratic() return the linear and quadratic parts that can be taken out of "
      "the tree.",
      "var, expression, constraint, sin, max, pwl, user");
}

}  // namespace zrv
