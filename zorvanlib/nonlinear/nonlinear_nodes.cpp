// The operator table, operand classification and the internal constructors
// of nonlinear nodes.
#include "model/operand.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"

#include "base/globals.h"
#include "base/types.h"

#include <utility>
#include <vector>

namespace zrv {

const OperatorInfo kOperators[OpCount] = {
    {"+", -1, 0},        {"-", 2, 0},        {"-", 1, -1},     {"*", -1, 0},
    {"/", 2, 0},         {"**", 2, 0},       {"exp", 1, -1},   {"log", 1, -1},
    {"log10", 1, -1},    {"sin", 1, -1},     {"cos", 1, -1},   {"tan", 1, -1},
    {"asin", 1, -1},     {"acos", 1, -1},    {"atan", 1, -1},  {"max", -1, -1},
    {"min", -1, -1},     {"abs", 1, -1},     {"sign", 1, -1},  {"erf", 1, -1},
    {"erfc", 1, -1},     {"sqrt", 1, -1},    {"and", -1, -1},  {"or", -1, -1},
    {"pwl", -1, -1},     {"user", -1, -1},   {"user", -1, -1}, {"user", -1, -1},
};

PyObject *NewNode(int op, PyObject *args) {
  auto *node = PyObject_New(NonlinearObject, &NonlinearType);
  if (!node) {
    Py_DECREF(args);
    return nullptr;
  }
  node->args = args;
  node->op = op;
  return reinterpret_cast<PyObject *>(node);
}

namespace {

bool IsUserOp(int op) {
  return op == OpUserNoDerivatives || op == OpUserDerivatives ||
         op == OpUserDerivativesOnDemand;
}

// Whether o may be an element of an n-ary node's list at position i.
bool ValidElement(int op, PyObject *o, Py_ssize_t i) {
  if (i == 0 && IsUserOp(op) && PyCallable_Check(o)) return true;
  if (ScalarKind(o) >= 0) return true;
  PyErr_Clear();
  return false;
}

// Adds o to list: its elements when it is a node of op, else o itself.
int ExtendFlat(PyObject *list, int op, PyObject *o) {
  if (IsNode(o, op)) {
    PyObject *args = NodeArgs(o);
    if (PyList_Check(args) || PyTuple_Check(args)) {
      // Copied first: args may be list itself when a node is spliced into
      // itself, and appending may move its items.
      std::vector<PyObject *> items(PySequence_Fast_ITEMS(args),
                                    PySequence_Fast_ITEMS(args) + PySequence_Fast_GET_SIZE(args));
      for (PyObject *item : items) Py_INCREF(item);
      int rc = 0;
      for (PyObject *item : items) {
        if (rc == 0 && PyList_Append(list, item) < 0) rc = -1;
      }
      for (PyObject *item : items) Py_DECREF(item);
      return rc;
    }
  }
  return PyList_Append(list, o);
}

}  // namespace

PyObject *MakeNonlinear(int op, PyObject *args, bool nary) {
  if (nary) {
    if (!PyList_Check(args) && !PyTuple_Check(args)) {
      PyErr_SetString(ModelError,
                      "Could not create an n-ary nonlinear expression: the arguments must be "
                      "in a list or tuple");
      return nullptr;
    }
    Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
    PyObject **items = PySequence_Fast_ITEMS(args);
    for (Py_ssize_t i = 0; i < n; ++i) {
      if (!ValidElement(op, items[i], i)) {
        PyErr_SetString(ModelError, "Invalid object in n-ary operation");
        return nullptr;
      }
    }
  } else {
    if (PyList_Check(args) || PyTuple_Check(args)) {
      PyErr_SetString(ModelError,
                      "Could not create a unary nonlinear expression: the argument must be a "
                      "single expression");
      return nullptr;
    }
    if (!(IsUserOp(op) && PyCallable_Check(args)) && ScalarKind(args) < 0) {
      PyErr_Clear();
      PyErr_SetString(ModelError, "Invalid object in unary operation");
      return nullptr;
    }
  }
  Py_INCREF(args);
  return NewNode(op, args);
}

PyObject *MakeNonlinearBinary(int op, PyObject *left, PyObject *right) {
  if (ScalarKind(left) < 0 || ScalarKind(right) < 0) return nullptr;
  PyObject *args;
  if (op == OpSum || op == OpProduct || kOperators[op].arity < 0) {
    if ((op == OpSum || op == OpProduct) && IsModelNumber(left)) std::swap(left, right);
    args = PyList_New(2);
    if (!args) return nullptr;
    Py_INCREF(left);
    Py_INCREF(right);
    PyList_SET_ITEM(args, 0, left);
    PyList_SET_ITEM(args, 1, right);
  } else {
    args = PyTuple_Pack(2, left, right);
    if (!args) return nullptr;
  }
  return NewNode(op, args);
}

PyObject *MakeNonlinearFlat(int op, PyObject *left, PyObject *right) {
  if (ScalarKind(left) < 0 || ScalarKind(right) < 0) return nullptr;
  PyObject *list = PyList_New(0);
  if (!list) return nullptr;
  if (ExtendFlat(list, op, left) < 0 || ExtendFlat(list, op, right) < 0) {
    Py_DECREF(list);
    return nullptr;
  }
  return NewNode(op, list);
}

PyObject *NonlinearAppend(int op, PyObject *left, PyObject *right) {
  if (!IsNode(left, op)) return MakeNonlinearFlat(op, left, right);
  if (ScalarKind(right) < 0) return nullptr;
  auto *node = reinterpret_cast<NonlinearObject *>(left);
  if (!PyList_Check(node->args)) {
    // A node made over a caller's tuple gets its own list before it grows.
    PyObject *list = PySequence_List(node->args);
    if (!list) return nullptr;
    Py_SETREF(node->args, list);
  }
  if (ExtendFlat(node->args, op, right) < 0) return nullptr;
  Py_INCREF(left);
  return left;
}

}  // namespace zrv
