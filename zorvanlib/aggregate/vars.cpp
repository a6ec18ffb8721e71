// zorvan.vars: many variables at once, indexed by one or more index sets,
// as a dictionary or as a NumPy array of npvar.
#include "aggregate/aggregate.h"

#include <string>
#include <vector>

#include "base/arrays.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "model/var.h"

namespace zrv {

namespace {

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

PyMethodDef VarsFunctions[] = {
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
