// zorvan.evaluate: the value of modelling objects at a point given by a
// dictionary, by column values of a problem, or by its current solution.
#include "module/evaluate.h"

#include <vector>

#include "base/arrays.h"
#include "base/globals.h"
#include "base/help.h"
#include "nonlinear/evaluate.h"
#include "problem/arguments.h"
#include "problem/problem.h"
#include "problem/solution.h"

namespace zrv {

namespace {

bool OneDimensional(PyObject *array) {
  PyObject *ndim = PyObject_GetAttrString(array, "ndim");
  long n = ndim ? PyLong_AsLong(ndim) : -1;
  Py_XDECREF(ndim);
  PyErr_Clear();
  return n == 1;
}

}  // namespace

PyObject *ModuleEvaluate(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"problem", "solution", nullptr};
  PyObject *problem = Py_None, *solution = Py_None;
  PyObject *empty = PyTuple_New(0);
  if (!empty) return nullptr;
  int ok = PyArg_ParseTupleAndKeywords(empty, kwds, "|OO", const_cast<char **>(keywords),
                                       &problem, &solution);
  Py_DECREF(empty);
  if (!ok) return nullptr;
  ProblemObject *p = nullptr;
  if (problem != Py_None) {
    if (!IsProblem(problem)) {
      PyErr_SetString(InterfaceError, "Argument \"problem\" must be an zorvan.problem object");
      return nullptr;
    }
    p = reinterpret_cast<ProblemObject *>(problem);
    if (NotInitialized(p)) return nullptr;
  }
  EvalPoint point;
  std::vector<double> current;
  NativeArray given;
  if (solution == Py_None) {
    if (!p) {
      PyErr_SetString(InterfaceError,
                      "zorvan.evaluate() requires at least one of the two arguments \"solution\" "
                      "and \"problem\".\nSee the documentation of zorvan.evaluate for details.");
      return nullptr;
    }
    if (FetchPrimal(p, current) < 0) return nullptr;
    point.values = current.data();
    point.count = static_cast<Py_ssize_t>(current.size());
    point.columns = p->colmap;
  } else if (PyDict_Check(solution)) {
    point.dict = solution;
  } else if (PyList_Check(solution) || IsNumpyArray(solution)) {
    if (!p) {
      PyErr_SetString(InterfaceError,
                      "Argument \"problem\" is necessary when passing a list or NumPy array of "
                      "variable values");
      return nullptr;
    }
    if (IsNumpyArray(solution) && !OneDimensional(solution)) {
      PyErr_SetString(InterfaceError,
                      "Argument \"solution\" must be a dictionary, a list, or a one-dimensional "
                      "NumPy array.\nSee the documentation for zorvan.evaluate");
      return nullptr;
    }
    Py_ssize_t length = -1;
    if (SequenceToArray(p, &length, solution, given.slot(), ElemDouble) < 0) return nullptr;
    point.values = given.as<double>();
    point.count = length;
    point.columns = p->colmap;
  } else {
    PyErr_SetString(InterfaceError,
                    "Argument \"solution\" must be a dictionary, a list, or a one-dimensional "
                    "NumPy array.\nSee the documentation for zorvan.evaluate");
    return nullptr;
  }
  return EvaluateArguments(args, point);
}


const char EvaluateDoc[] =
     ZRV_HELP("Compute the value of modelling objects at a point.",
              "zorvan.evaluate(*objects, problem=None, solution=None)",
              "objects: numbers, variables, terms, expressions, nonlinear expressions, or "
              "tuples, lists, dictionaries and NumPy arrays of them; problem: a problem whose "
              "columns index a list or array of values, or whose current solution is used; "
              "solution: a dictionary from variables to values, or a list or one-dimensional "
              "NumPy array of column values.",
              "x, y = zorvan.var(), zorvan.var()\n"
              "    zorvan.evaluate(2*x + y**2, solution={x: 1, y: 3})  # 11.0",
              "With one object its value is returned, with several a tuple of their values. "
              "Containers give containers of the same kind and shape. Without a solution the "
              "problem's current solution is used. A division by exactly zero raises "
              "ZeroDivisionError.",
              "problem.getSolution, zorvan.var, zorvan.expression, zorvan.nonlinear");

}  // namespace zrv
