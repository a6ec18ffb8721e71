// Printing of nonlinear trees and the extraction of their linear and
// quadratic parts; both walk the tree with the depth budget.
#include "model/operand.h"
#include "nonlinear/nonlinear.h"
#include "nonlinear/nonlinear_internal.h"

#include "model/var.h"
#include "base/globals.h"
#include "base/help.h"

#include <map>
#include <utility>

namespace zrv {

namespace {

// Appends text to a list of pieces (stealing text); -1 on failure.
int Put(PyObject *pieces, PyObject *text) {
  if (!text) return -1;
  int rc = PyList_Append(pieces, text);
  Py_DECREF(text);
  return rc;
}

int PutString(PyObject *pieces, const char *s) { return Put(pieces, PyUnicode_FromString(s)); }

int PrintOperand(PyObject *pieces, PyObject *o, int depth);

int PrintNode(PyObject *pieces, PyObject *o, int depth) {
  if (depth < 0) return PutString(pieces, "[MAX RECURS LEV]");
  int op = NodeOp(o);
  PyObject *args = NodeArgs(o);
  if (op < 0 || op >= OpCount) {
    PyErr_SetString(ModelError, "Invalid nonlinear expression: unknown operator");
    return -1;
  }
  const OperatorInfo &info = kOperators[op];
  if (info.arity == 1) {
    if (!args) {
      PyErr_SetString(ModelError, "Invalid unary nonlinear expression");
      return -1;
    }
    if (info.notation == -1) {
      if (Put(pieces, PyUnicode_FromFormat("%s (", info.name)) < 0 ||
          PrintOperand(pieces, args, depth - 1) < 0 || PutString(pieces, ")") < 0)
        return -1;
    } else {
      if (PutString(pieces, "(") < 0 || PrintOperand(pieces, args, depth - 1) < 0 ||
          Put(pieces, PyUnicode_FromFormat(") %s", info.name)) < 0)
        return -1;
    }
    return 0;
  }
  if (info.arity == 2) {
    if (!args || !PyTuple_Check(args) || PyTuple_GET_SIZE(args) != 2) {
      PyErr_SetString(ModelError, "Invalid binary nonlinear expression");
      return -1;
    }
    PyObject *l = PyTuple_GET_ITEM(args, 0), *r = PyTuple_GET_ITEM(args, 1);
    if (info.notation == 0) {
      return (PutString(pieces, "(") < 0 || PrintOperand(pieces, l, depth - 1) < 0 ||
              Put(pieces, PyUnicode_FromFormat(" %s ", info.name)) < 0 ||
              PrintOperand(pieces, r, depth - 1) < 0 || PutString(pieces, ")") < 0)
                 ? -1
                 : 0;
    }
    return (Put(pieces, PyUnicode_FromFormat("%s (", info.name)) < 0 ||
            PrintOperand(pieces, l, depth - 1) < 0 || PutString(pieces, ", ") < 0 ||
            PrintOperand(pieces, r, depth - 1) < 0 || PutString(pieces, ")") < 0)
               ? -1
               : 0;
  }
  if (!args || (!PyList_Check(args) && !PyTuple_Check(args))) {
    PyErr_SetString(ModelError, "Invalid n-ary nonlinear expression");
    return -1;
  }
  bool infix = info.notation == 0;
  if (Put(pieces, infix ? PyUnicode_FromString("(") : PyUnicode_FromFormat("%s (", info.name)) < 0)
    return -1;
  // Read the list afresh at each step: printing an operand runs its own code.
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(args); ++i) {
    PyObject *item = PySequence_Fast_ITEMS(args)[i];
    Py_INCREF(item);
    int rc = 0;
    if (i > 0)
      rc = Put(pieces, infix ? PyUnicode_FromFormat(" %s ", info.name) : PyUnicode_FromString(", "));
    if (rc == 0) rc = PrintOperand(pieces, item, depth - 1);
    Py_DECREF(item);
    if (rc < 0) return -1;
  }
  return PutString(pieces, ")");
}

int PrintOperand(PyObject *pieces, PyObject *o, int depth) {
  if (IsNonlinear(o)) return PrintNode(pieces, o, depth);
  if (PyObject_TypeCheck(o, &LinTermType) || PyObject_TypeCheck(o, &QuadTermType)) {
    // Terms print with their own rules; their text carries the same prefix.
    return Put(pieces, PyObject_Str(o));
  }
  if (IsModelNumber(o)) return Put(pieces, PyObject_Repr(o));
  if (PyObject_TypeCheck(o, &VarType) || PyObject_TypeCheck(o, &ExpressionType))
    return Put(pieces, PyObject_Str(o));
  if (PyCallable_Check(o)) return PutString(pieces, "user");
  return Put(pieces, PyObject_Str(o));
}

// --- extraction -----------------------------------------------------------

uint64_t Id(PyObject *v) { return VarId(reinterpret_cast<VarObject *>(v)->word); }

struct Linear {
  std::map<uint64_t, std::pair<PyObject *, double>> terms;  // borrowed variables
};
struct Quadratic {
  std::map<std::pair<uint64_t, uint64_t>, std::pair<std::pair<PyObject *, PyObject *>, double>> terms;
};

// Collects a leaf's part through its own extraction method: pairs
// (vars, coefs) or triples (vars1, vars2, coefs), scaled by coef. The
// objects stay alive in keep while the maps borrow them.
int CollectLeaf(PyObject *leaf, double coef, bool quadratic, PyObject *keep, Linear *lin,
                Quadratic *quad) {
  PyObject *parts = PyObject_CallMethod(leaf, quadratic ? "extractQuadratic" : "extractLinear", nullptr);
  if (!parts) return -1;
  Py_ssize_t want = quadratic ? 3 : 2;
  if (!PyTuple_Check(parts) || PyTuple_GET_SIZE(parts) != want || PyList_Append(keep, parts) < 0) {
    if (!PyErr_Occurred())
      PyErr_SetString(ModelError, "Invalid result of extracting the parts of an expression");
    Py_DECREF(parts);
    return -1;
  }
  Py_DECREF(parts);  // kept alive by keep
  PyObject *coefs = PyTuple_GET_ITEM(parts, want - 1);
  PyObject *v1 = PyTuple_GET_ITEM(parts, 0);
  PyObject *v2 = quadratic ? PyTuple_GET_ITEM(parts, 1) : nullptr;
  if (!PyList_Check(coefs) || !PyList_Check(v1) || (v2 && !PyList_Check(v2))) {
    PyErr_SetString(ModelError, "Invalid result of extracting the parts of an expression");
    return -1;
  }
  Py_ssize_t n = PyList_GET_SIZE(coefs);
  for (Py_ssize_t i = 0; i < n; ++i) {
    double c = PyFloat_AsDouble(PyList_GET_ITEM(coefs, i));
    if (c == -1.0 && PyErr_Occurred()) return -1;
    PyObject *a = PyList_GET_ITEM(v1, i);
    if (!PyObject_TypeCheck(a, &VarType)) continue;
    if (!quadratic) {
      auto &entry = lin->terms.try_emplace(Id(a), a, 0.0).first->second;
      entry.second += c * coef;
    } else {
      PyObject *b = PyList_GET_ITEM(v2, i);
      if (!PyObject_TypeCheck(b, &VarType)) continue;
      if (Id(b) < Id(a)) std::swap(a, b);
      auto &entry =
          quad->terms.try_emplace({Id(a), Id(b)}, std::make_pair(a, b), 0.0).first->second;
      entry.second += c * coef;
    }
  }
  return 0;
}

int Walk(PyObject *o, double coef, int depth, bool quadratic, PyObject *keep, Linear *lin,
         Quadratic *quad) {
  if (depth < 0) return 0;
  if (!IsNonlinear(o)) {
    if (IsModelNumber(o) || PyCallable_Check(o)) return 0;
    if (ScalarKind(o) < 0) return -1;
    return CollectLeaf(o, coef, quadratic, keep, lin, quad);
  }
  PyObject *args = NodeArgs(o);
  bool seq = args && (PyList_Check(args) || PyTuple_Check(args));
  Py_ssize_t n = seq ? PySequence_Fast_GET_SIZE(args) : 0;
  PyObject **items = seq ? PySequence_Fast_ITEMS(args) : nullptr;
  switch (NodeOp(o)) {
    case OpSum:
      for (Py_ssize_t i = 0; i < n; ++i)
        if (Walk(items[i], coef, depth - 1, quadratic, keep, lin, quad) < 0) return -1;
      return 0;
    case OpMinus:
      if (n != 2 || !PyTuple_Check(args)) return 0;
      if (Walk(items[0], coef, depth - 1, quadratic, keep, lin, quad) < 0) return -1;
      return Walk(items[1], -coef, depth - 1, quadratic, keep, lin, quad);
    case OpUminus:
      return args ? Walk(args, -coef, depth - 1, quadratic, keep, lin, quad) : 0;
    case OpProduct: {
      // A product of numbers and one other factor scales that factor.
      PyObject *factor = nullptr;
      double scale = coef;
      for (Py_ssize_t i = 0; i < n; ++i) {
        if (IsModelNumber(items[i])) {
          scale *= PyFloat_AsDouble(items[i]);
          if (PyErr_Occurred()) return -1;
        } else if (factor) {
          return 0;
        } else {
          factor = items[i];
        }
      }
      return factor ? Walk(factor, scale, depth - 1, quadratic, keep, lin, quad) : 0;
    }
    case OpDivide: {
      if (n != 2 || !PyTuple_Check(args) || !IsModelNumber(items[1])) return 0;
      double d = PyFloat_AsDouble(items[1]);
      if (d == -1.0 && PyErr_Occurred()) return -1;
      if (d == 0.0) return 0;
      return Walk(items[0], coef / d, depth - 1, quadratic, keep, lin, quad);
    }
    case OpPower:
      // Only a power with exponent 1 leaves its base's parts as they are.
      if (n != 2 || !PyTuple_Check(args) || !IsNumberEqual(items[1], 1.0)) return 0;
      return Walk(items[0], coef, depth - 1, quadratic, keep, lin, quad);
    default:
      return 0;
  }
}

PyObject *Extract(PyObject *self, bool quadratic) {
  PyObject *keep = PyList_New(0);
  if (!keep) return nullptr;
  Linear lin;
  Quadratic quad;
  if (Walk(self, 1.0, kTreeDepth, quadratic, keep, &lin, &quad) < 0) {
    Py_DECREF(keep);
    return nullptr;
  }
  PyObject *result = nullptr;
  Py_ssize_t n = quadratic ? static_cast<Py_ssize_t>(quad.terms.size())
                           : static_cast<Py_ssize_t>(lin.terms.size());
  PyObject *v1 = PyList_New(n), *v2 = quadratic ? PyList_New(n) : nullptr, *c = PyList_New(n);
  bool ok = v1 && c && (!quadratic || v2);
  Py_ssize_t i = 0;
  if (ok && !quadratic) {
    for (auto &[id, entry] : lin.terms) {
      PyObject *coef = PyFloat_FromDouble(entry.second);
      if (!coef) {
        ok = false;
        break;
      }
      Py_INCREF(entry.first);
      PyList_SET_ITEM(v1, i, entry.first);
      PyList_SET_ITEM(c, i, coef);
      ++i;
    }
  } else if (ok) {
    for (auto &[ids, entry] : quad.terms) {
      PyObject *coef = PyFloat_FromDouble(entry.second);
      if (!coef) {
        ok = false;
        break;
      }
      Py_INCREF(entry.first.first);
      Py_INCREF(entry.first.second);
      PyList_SET_ITEM(v1, i, entry.first.first);
      PyList_SET_ITEM(v2, i, entry.first.second);
      PyList_SET_ITEM(c, i, coef);
      ++i;
    }
  }
  if (ok) {
    result = quadratic ? PyTuple_Pack(3, v1, v2, c) : PyTuple_Pack(2, v1, c);
  } else {
    // Unfilled slots are null, which the list release skips.
  }
  Py_XDECREF(v1);
  Py_XDECREF(v2);
  Py_XDECREF(c);
  Py_DECREF(keep);
  return result;
}

PyObject *ExtractLinear(PyObject *self, PyObject *) { return Extract(self, false); }
PyObject *ExtractQuadratic(PyObject *self, PyObject *) { return Extract(self, true); }

}  // namespace

PyObject *NonlinearRepr(PyObject *self) {
  PyObject *pieces = PyList_New(0);
  if (!pieces) return nullptr;
  PyObject *text = nullptr;
  if (PrintNode(pieces, self, kTreeDepth) == 0) {
    PyObject *empty = PyUnicode_FromString("");
    if (empty) {
      text = PyUnicode_Join(empty, pieces);
      Py_DECREF(empty);
    }
  }
  Py_DECREF(pieces);
  return text;
}

PyMethodDef NonlinearMethods[] = {
    {"extractLinear", ExtractLinear, METH_NOARGS,
     ZRV_HELP("Return the linear part that can be taken out of a nonlinear expression.",
                 "vars, coefs = f.extractLinear()", "None.",
                 "f = 2 * x + zorvan.sin(y) - 3 * z\n    f.extractLinear()  # ([x, z], [2.0, -3.0])",
                 "The tree is walked through sums, differences, negations, products and "
                 "divisions by numbers, and powers with exponent 1; every other operator (a "
                 "function, a product of two non-constant factors, ...) contributes "
                 "nothing. Variables come in the order of their creation, each once. The "
                 "walk stops 64 levels deep.",
                 "extractQuadratic, expression.extractLinear")},
    {"extractQuadratic", ExtractQuadratic, METH_NOARGS,
     ZRV_HELP("Return the quadratic part that can be taken out of a nonlinear expression.",
                 "vars1, vars2, coefs = f.extractQuadratic()", "None.",
                 "f = x * y + zorvan.exp(z)\n    f.extractQuadratic()  # ([x], [y], [1.0])",
                 "The walk is that of extractLinear; each pair of variables comes once, the "
                 "variable created first in the first list.",
                 "extractLinear, expression.extractQuadratic")},
    {nullptr, nullptr, 0, nullptr}};

}  // namespace zrv
