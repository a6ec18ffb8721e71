// problem.getControl, problem.setControl and problem.getAttrib: controls and
// attributes by name or identifier, one at a time or many at once, for the
// whole problem, one objective or one solve.
#include "controls/control_methods.h"

#include <string>
#include <vector>

#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "controls/control.h"

namespace zrv {

namespace {

// Reads the optional integer keyword (objidx or solveidx) of a request.
// index stays -1 when the keyword is absent or None; otherwise it is the
// value, clamped to [-2, INT32_MAX]. Returns 0 or -1.
int ParseIndexKeyword(PyObject *kwds, const char *keyword, const char *method,
                      PyObject *negative_error, const char *negative_text, long long &index) {
  index = -1;
  if (!kwds) return 0;
  const char *keywords[] = {keyword, nullptr};
  PyObject *value = nullptr;
  PyObject *empty = PyTuple_New(0);
  if (!empty) return -1;
  std::string format = std::string("|O:") + method;
  int ok = PyArg_ParseTupleAndKeywords(empty, kwds, format.c_str(),
                                       const_cast<char **>(keywords), &value);
  Py_DECREF(empty);
  if (!ok) return -1;
  if (!value || value == Py_None) return 0;
  if (!PyLong_Check(value)) {
    PyErr_Format(PyExc_TypeError, "%s() argument '%s' must be int or None, not %.200s", method,
                 keyword, Py_TYPE(value)->tp_name);
    return -1;
  }
  int overflow = 0;
  index = PyLong_AsLongLongAndOverflow(value, &overflow);
  if (index == -1 && PyErr_Occurred()) return -1;
  // Far beyond any objective or solve: the engine refuses it by its own rule.
  if (overflow > 0 || index > INT32_MAX) index = INT32_MAX;
  // Every negative value is refused alike.
  if (overflow < 0 || index < 0) {
    PyErr_SetString(negative_error, negative_text);
    return -1;
  }
  return 0;
}

// One requested value: the key it is returned under and where to read it.
struct Item {
  PyObject *key = nullptr;  // owned: lower-case name (str) or identifier (int)
  int id = 0, kind = 0, source = kMain;
  bool found = false;
};

struct Items {
  std::vector<Item> items;
  ~Items() {
    for (Item &i : items) Py_XDECREF(i.key);
  }
};

// The keys of a request: the arguments themselves, or the elements of a
// single argument that is neither a name nor an identifier. A single
// argument that cannot be iterated raises error with the text. Null on failure.
PyObject *RequestKeys(PyObject *args, PyObject *error, const char *bad_request) {
  if (PyTuple_GET_SIZE(args) != 1) return Py_NewRef(args);
  PyObject *only = PyTuple_GET_ITEM(args, 0);
  if (PyLong_Check(only) || PyUnicode_Check(only) || PyBytes_Check(only))
    return Py_NewRef(args);
  PyObject *list = PySequence_List(only);
  if (!list && PyErr_ExceptionMatches(PyExc_TypeError)) {
    PyErr_Clear();
    PyErr_SetString(error, bad_request);
  }
  return list;
}

// An engine identifier given as a Python integer; beyond 32 bits it cannot
// name anything.
int IdentifierOf(PyObject *key, int &id) {
  int overflow = 0;
  long v = PyLong_AsLongAndOverflow(key, &overflow);
  if (v == -1 && PyErr_Occurred()) return -1;
  if (overflow || v < INT32_MIN || v > INT32_MAX) {
    PyErr_Format(InterfaceError, "Unknown control ID %R", key);
    return -1;
  }
  id = static_cast<int>(v);
  return 0;
}

// Resolves every key of a request on the main engine or the nonlinear one:
// integers through the engine's catalogue, names through table. A name not
// in the table stays unresolved (found false). Returns 0 or -1.
int Resolve(PyObject *keys, PyObject *table, bool is_control, Items &out) {
  const char *bad = is_control ? "Bad control request" : "Bad attribute request";
  Py_ssize_t n = PySequence_Fast_GET_SIZE(keys);
  out.items.reserve(static_cast<size_t>(n));
  std::vector<std::string> names(static_cast<size_t>(n));
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *key = PySequence_Fast_GET_ITEM(keys, i);
    out.items.emplace_back();
    Item &item = out.items.back();
    if (PyLong_Check(key)) {
      if (IdentifierOf(key, item.id) < 0 || KindOfIdentifier(item.id, item.kind) < 0) return -1;
      item.found = true;
      if (!(item.key = PyLong_FromLong(item.id))) return -1;
      continue;
    }
    int rc = NormaliseName(key, names[static_cast<size_t>(i)]);
    if (rc == -2) PyErr_SetString(ModelError, bad);
    if (rc < 0) return -1;
    if (!(item.key = PyUnicode_FromString(names[static_cast<size_t>(i)].c_str()))) return -1;
  }
  // All name lookups under one hold of the lock.
  GilSafeLock lock(ControlNameLock);
  for (Py_ssize_t i = 0; i < n; ++i) {
    Item &item = out.items[static_cast<size_t>(i)];
    if (item.found) continue;
    PyObject *tuple = PyDict_GetItemWithError(table, item.key);
    if (!tuple) {
      if (PyErr_Occurred()) return -1;
      continue;
    }
    if (UnpackDescriptor(tuple, item.id, item.kind, item.source) < 0) return -1;
    item.found = true;
  }
  return 0;
}

// Reads one resolved item; null with an error on failure.
PyObject *ReadItem(ProblemHandles *p, const Item &item, bool is_control, int index) {
  const char *unknown = is_control ? "Requested value of an unknown control"
                                   : "Requested value of an unknown attribute";
  if (!item.found) {
    PyErr_SetString(InterfaceError, unknown);
    return nullptr;
  }
  if (!is_control && index >= 0 && item.source != kMain) {
    PyErr_SetString(InterfaceError, "Only ZRVS attributes are supported");
    return nullptr;
  }
  PyObject *value = ReadValue(p, item.id, item.kind, item.source, is_control, index);
  if (!value && !PyErr_Occurred()) PyErr_SetString(InterfaceError, unknown);
  return value;
}

// The forms shared by getControl and getAttrib on the main tables.
PyObject *GetValues(ProblemHandles *p, PyObject *args, PyObject *table, bool is_control,
                    int index) {
  const char *bad = is_control ? "Bad control request" : "Bad attribute request";
  if (PyTuple_GET_SIZE(args) == 0) return ReadAllValues(p, table, is_control, index);
  bool single = PyTuple_GET_SIZE(args) == 1 &&
                (PyLong_Check(PyTuple_GET_ITEM(args, 0)) ||
                 PyUnicode_Check(PyTuple_GET_ITEM(args, 0)) ||
                 PyBytes_Check(PyTuple_GET_ITEM(args, 0)));
  PyObject *keys = RequestKeys(args, ModelError, bad);
  if (!keys) return nullptr;
  Items items;
  int rc = Resolve(keys, table, is_control, items);
  Py_DECREF(keys);
  if (rc < 0) return nullptr;
  if (single) return ReadItem(p, items.items[0], is_control, index);
  PyObject *result = PyDict_New();
  if (!result) return nullptr;
  for (const Item &item : items.items) {
    PyObject *value = ReadItem(p, item, is_control, index);
    // One failed read abandons the whole request.
    if (!value || PyDict_SetItem(result, item.key, value) < 0) {
      Py_XDECREF(value);
      Py_DECREF(result);
      return nullptr;
    }
    Py_DECREF(value);
  }
  return result;
}

// getControl(..., objidx=k): the controls of objective k.
PyObject *GetObjValues(ProblemHandles *p, PyObject *args, int objidx) {
  if (PyTuple_GET_SIZE(args) == 1) {
    PyObject *only = PyTuple_GET_ITEM(args, 0);
    if (PyLong_Check(only) || PyUnicode_Check(only) || PyBytes_Check(only)) {
      int id;
      if (ObjControlId(only, id) < 0) return nullptr;
      return GetObjControl(p, objidx, id);
    }
  }
  PyObject *keys;
  if (PyTuple_GET_SIZE(args) == 0) {
    keys = Py_BuildValue("(iiiii)", ZRVS_OBJECTIVE_PRIORITY, ZRVS_OBJECTIVE_WEIGHT,
                         ZRVS_OBJECTIVE_ABSTOL, ZRVS_OBJECTIVE_RELTOL, ZRVS_OBJECTIVE_RHS);
  } else {
    keys = RequestKeys(args, InterfaceError, "Expected a string control name or integer id");
  }
  if (!keys) return nullptr;
  bool by_name = PyTuple_GET_SIZE(args) == 0;
  PyObject *result = PyDict_New();
  for (Py_ssize_t i = 0; result && i < PySequence_Fast_GET_SIZE(keys); ++i) {
    PyObject *key = PySequence_Fast_GET_ITEM(keys, i);
    int id;
    PyObject *value = nullptr, *out_key = nullptr;
    if (ObjControlId(key, id) == 0 && (value = GetObjControl(p, objidx, id))) {
      out_key = by_name || !PyLong_Check(key) ? PyUnicode_FromString(ObjControlName(id))
                                              : PyLong_FromLong(id);
    }
    if (!out_key || PyDict_SetItem(result, out_key, value) < 0) Py_CLEAR(result);
    Py_XDECREF(out_key);
    Py_XDECREF(value);
  }
  Py_DECREF(keys);
  return result;
}

// The key of a setting: an engine identifier or a control name.
int ResolveSetting(PyObject *key, int &id, int &kind, int &source) {
  source = kMain;
  if (PyLong_Check(key))
    return IdentifierOf(key, id) < 0 ? -1 : KindOfIdentifier(id, kind);
  std::string name;
  int rc = NormaliseName(key, name);
  if (rc == -2) PyErr_SetString(InterfaceError, "Control name cannot be interpreted as string");
  if (rc < 0) return -1;
  PyObject *tuple;
  {
    GilSafeLock lock(ControlNameLock);
    tuple = Py_XNewRef(PyDict_GetItemString(ControlDict, name.c_str()));
  }
  if (!tuple) {
    PyErr_SetString(InterfaceError, "Incorrect control name");
    return -1;
  }
  rc = UnpackDescriptor(tuple, id, kind, source);
  Py_DECREF(tuple);
  return rc;
}

int SetOne(ProblemHandles *p, PyObject *key, PyObject *value, long long objidx) {
  int id, kind, source;
  if (objidx >= 0) {
    if (ObjControlId(key, id) < 0) return -1;
    return SetObjControl(p, static_cast<int>(objidx), id, key, value);
  }
  if (ResolveSetting(key, id, kind, source) < 0) return -1;
  return SetControlValue(p, id, kind, source, value);
}

}  // namespace

PyObject *ProblemGetControl(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemHandles *>(self);
  if (NotInitialized(p)) return nullptr;
  long long objidx;
  if (ParseIndexKeyword(kwds, "objidx", "getControl", ModelError, "Invalid objective index",
                        objidx) < 0)
    return nullptr;
  if (objidx >= 0) return GetObjValues(p, args, static_cast<int>(objidx));
  return GetValues(p, args, ControlDict, true, -1);
}

PyObject *ProblemGetAttrib(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemHandles *>(self);
  if (NotInitialized(p)) return nullptr;
  long long solveidx;
  if (ParseIndexKeyword(kwds, "solveidx", "getAttrib", InterfaceError, "Invalid solve index",
                        solveidx) < 0)
    return nullptr;
  return GetValues(p, args, AttributeDict, false, static_cast<int>(solveidx));
}

PyObject *ProblemSetControl(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemHandles *>(self);
  if (NotInitialized(p)) return nullptr;
  long long objidx;
  if (ParseIndexKeyword(kwds, "objidx", "setControl", ModelError, "Invalid objective index",
                        objidx) < 0)
    return nullptr;
  Py_ssize_t n = PyTuple_GET_SIZE(args);
  if (n == 0) {
    PyErr_SetString(ModelError,
                    "setControl requires at least one argument of type dictionary or two "
                    "elements: parameter, value");
    return nullptr;
  }
  if (n > 2) {
    PyErr_SetString(ModelError, "setControl: arguments mismatch");
    return nullptr;
  }
  if (n == 2) {
    if (SetOne(p, PyTuple_GET_ITEM(args, 0), PyTuple_GET_ITEM(args, 1), objidx) < 0)
      return nullptr;
    Py_RETURN_NONE;
  }
  PyObject *settings = PyTuple_GET_ITEM(args, 0);
  if (!PyDict_Check(settings)) {
    PyErr_SetString(ModelError, "Single argument to setControl must be a dictionary");
    return nullptr;
  }
  // A snapshot in the dictionary's order: setting releases the interpreter
  // lock, and another thread may change the dictionary meanwhile.
  PyObject *items = PyDict_Items(settings);
  if (!items) return nullptr;
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items); ++i) {
    PyObject *pair = PyList_GET_ITEM(items, i);
    if (SetOne(p, PyTuple_GET_ITEM(pair, 0), PyTuple_GET_ITEM(pair, 1), objidx) < 0) {
      Py_DECREF(items);
      return nullptr;
    }
  }
  Py_DECREF(items);
  Py_RETURN_NONE;
}

const char GetControlDoc[] = ZRV_HELP(
    "Read controls of the problem, or of one of its objectives.",
    "p.getControl(*names, objidx=None)",
    "names: nothing (every control), one control name or integer identifier (its value), a "
    "list, tuple or other iterable of them, or several of them (a dict of their values). "
    "Names are all lower case or all upper case. objidx: an objective index; the controls "
    "of that objective are then read: priority, weight, abstol, reltol and rhs (any case) "
    "or their identifiers 20001 to 20005.",
    "p.getControl('presolve')  # 1\n"
    "    p.getControl('presolve', 'threads')  # {'presolve': 1, 'threads': -1}\n"
    "    p.getControl(objidx=0)  # {'priority': 0, 'weight': 1.0, ...}",
    "In a dict a value asked for by name is keyed by its lower-case name, one asked for by "
    "identifier by the integer. If any value cannot be read the whole request fails and "
    "nothing is returned. A negative objidx raises ModelError 'Invalid objective index'.",
    "problem.setControl, problem.getAttrib, problem.controls, zorvan._getcontrols");

const char SetControlDoc[] = ZRV_HELP(
    "Set controls of the problem, or of one of its objectives.",
    "p.setControl(name, value, objidx=None); p.setControl({name: value, ...}, objidx=None)",
    "name: a control name (all lower or all upper case) or integer identifier; value: an "
    "int, float or str according to the control's type (a float control takes an int too); "
    "a dict sets each of its pairs in order. objidx: an objective index; then name is one of "
    "priority (int), weight, abstol, reltol, rhs (floats) or 20001 to 20005.",
    "p.setControl('miprelstop', 0.01)\n"
    "    p.setControl({'presolve': 0, 'threads': 2})\n"
    "    p.setControl('weight', 2.0, objidx=0)",
    "The pairs of a dict are set one after the other; a failure stops there, leaving the "
    "earlier ones set. Defaults for all new problems are set through zorvan._getcontrols().",
    "problem.getControl, problem.controls, zorvan.setdefaultcontrol, zorvan.setdefaults");

const char GetAttribDoc[] = ZRV_HELP(
    "Read attributes (sizes, statuses, results) of the problem.",
    "p.getAttrib(*names, solveidx=None)",
    "names: nothing (every attribute), one attribute name or integer identifier (its value), "
    "a list, tuple or other iterable of them, or several of them (a dict of their values). "
    "solveidx: read the results of that solve of a multi-objective problem instead.",
    "p.getAttrib('cols')  # 0\n"
    "    p.getAttrib(['rows', 'cols'])  # {'rows': 0, 'cols': 0}\n"
    "    p.getAttrib('solstatus')  # zorvan.SolStatus.NOTFOUND",
    "solstatus and solvestatus are returned as members of zorvan.SolStatus and "
    "zorvan.SolveStatus. With solveidx, string and nonlinear attributes are left out of the "
    "full listing and refused by name; a negative solveidx raises InterfaceError "
    "'Invalid solve index'. If any value cannot be read nothing is returned.",
    "problem.attributes, problem.objattribs, problem.getControl");

}  // namespace zrv
