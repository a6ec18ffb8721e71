// Evaluation of numbers, modelling objects and containers of them at a point:
// a dictionary from variables to values, or one value per column of a
// problem (a list, an array, or the problem's current solution).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "base/index_map.h"

namespace zrv {

// Where the variables take their values: either a dictionary keyed by the
// variables, or `count` values indexed by the columns a problem's map gives.
struct EvalPoint {
  PyObject *dict = nullptr;        // borrowed
  const double *values = nullptr;  // borrowed, `count` entries
  Py_ssize_t count = 0;
  const IndexMap *columns = nullptr;  // variable id -> column, for `values`
};

// The value of a number or modelling object (var, linterm, quadterm,
// expression, nonlinear). 0, or -1 with an exception set.
int EvaluateValue(PyObject *o, const EvalPoint &point, double *out);

// The value of any evaluable object: a float for a number or modelling
// object, and for a tuple, list, dictionary or NumPy array a container of
// the same kind and shape holding the values. New reference or null.
PyObject *EvaluateObject(PyObject *o, const EvalPoint &point);

// The values of a tuple of arguments: the value of the only one, or a tuple
// of values. New reference or null.
PyObject *EvaluateArguments(PyObject *args, const EvalPoint &point);

}  // namespace zrv
