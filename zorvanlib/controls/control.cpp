// The `control` type: p.controls and the module-level object of user defaults.
#include "controls/control.h"

#include "controls/catalogue.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"

namespace zrv {

namespace {

bool IsDunder(const std::string &name) {
  return name.size() > 4 && name.compare(0, 2, "__") == 0 &&
         name.compare(name.size() - 2, 2, "__") == 0;
}

// Looks a control up by normalised name; new reference to its descriptor or
// null (with InterfaceError "Incorrect control name").
PyObject *FindControl(const std::string &name) {
  PyObject *tuple;
  {
    GilSafeLock lock(ControlNameLock);
    tuple = PyDict_GetItemString(ControlDict, name.c_str());
    Py_XINCREF(tuple);
  }
  if (!tuple) PyErr_SetString(InterfaceError, "Incorrect control name");
  return tuple;
}

// Sets the control on a new problem of its own (zorvan.problem(), which has
// the current user defaults), so that a value a problem would refuse is
// refused here, with the same message.
int TrySetOnScratchProblem(int id, int kind, int source, PyObject *value) {
  PyObject *scratch = Module ? PyObject_CallMethod(Module, "problem", nullptr) : nullptr;
  if (!scratch) {
    if (!PyErr_Occurred()) PyErr_SetString(InterfaceError, "The module is not initialized");
    return -1;
  }
  int rc = SetControlValue(reinterpret_cast<ProblemHandles *>(scratch), id, kind, source, value);
  PyObject *type, *error, *traceback;
  PyErr_Fetch(&type, &error, &traceback);
  Py_DECREF(scratch);
  PyErr_Restore(type, error, traceback);
  return rc;
}

PyObject *ControlGetAttr(PyObject *self, PyObject *attr) {
  auto *c = reinterpret_cast<ControlObject *>(self);
  std::string name;
  int rc = NormaliseName(attr, name);
  if (rc == -2) {
    PyErr_SetString(ModelError, "Bad control request");
    return nullptr;
  }
  if (rc < 0) {
    // Python's own special names (__class__, __doc__, ...) are not controls.
    if (PyUnicode_Check(attr)) {
      const char *s = PyUnicode_AsUTF8(attr);
      if (s && IsDunder(s)) {
        PyErr_Clear();
        return PyObject_GenericGetAttr(self, attr);
      }
    }
    return nullptr;
  }
  if (name == "__dict__") return Py_NewRef(c->table ? c->table : Py_None);
  if (IsDunder(name)) return PyObject_GenericGetAttr(self, attr);
  if (c->is_default && c->table) {
    PyObject *value;
    {
      GilSafeLock lock(DefaultControlsLock);
      value = PyDict_GetItemString(UserDefaults, name.c_str());
      Py_XINCREF(value);
    }
    if (!value) value = Py_XNewRef(PyDict_GetItemString(c->table, name.c_str()));
    if (value && value != Py_None) return value;
    Py_XDECREF(value);
    PyErr_SetString(InterfaceError, "Incorrect control name");
    return nullptr;
  }
  ProblemHandles *p = c->problem;
  if (!p || NotInitialized(p)) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Problem is not initialized");
    return nullptr;
  }
  PyObject *tuple = FindControl(name);
  if (!tuple) return nullptr;
  int id, kind, source;
  PyObject *result = nullptr;
  if (UnpackDescriptor(tuple, id, kind, source) == 0)
    result = ReadValue(p, id, kind, source, true);
  Py_DECREF(tuple);
  return result;
}

int ControlSetAttr(PyObject *self, PyObject *attr, PyObject *value) {
  auto *c = reinterpret_cast<ControlObject *>(self);
  std::string name;
  int rc = NormaliseName(attr, name);
  if (rc == -2) PyErr_SetString(InterfaceError, "Control name cannot be interpreted as string");
  if (rc < 0) return -1;
  if (!value) {
    PyErr_SetString(ModelError, "Controls cannot be deleted; use setdefaultcontrol");
    return -1;
  }
  PyObject *tuple;
  {
    GilSafeLock lock(ControlNameLock);
    if (c->is_default && PyDict_GET_SIZE(ControlDict) == 0) {
      tuple = nullptr;
    } else {
      tuple = Py_XNewRef(PyDict_GetItemString(ControlDict, name.c_str()));
    }
  }
  if (!tuple && c->is_default) {
    // The defaults object may be used before any problem: read the catalogue.
    if (EnsureCatalogue() < 0) return -1;
    GilSafeLock lock(ControlNameLock);
    tuple = Py_XNewRef(PyDict_GetItemString(ControlDict, name.c_str()));
  }
  if (!tuple) {
    PyErr_SetString(InterfaceError, "Incorrect control name");
    return -1;
  }
  int id, kind, source;
  rc = UnpackDescriptor(tuple, id, kind, source);
  Py_DECREF(tuple);
  if (rc < 0) return -1;
  if (c->is_default) {
    if (CheckControlValue(kind, value) < 0) return -1;
    // Refused now, with a problem's own message, rather than by every new
    // problem later.
    if (TrySetOnScratchProblem(id, kind, source, value) < 0) return -1;
    GilSafeLock lock(DefaultControlsLock);
    return PyDict_SetItemString(UserDefaults, name.c_str(), value);
  }
  ProblemHandles *p = c->problem;
  if (!p || NotInitialized(p)) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Problem is not initialized");
    return -1;
  }
  return SetControlValue(p, id, kind, source, value);
}

PyObject *ControlRepr(PyObject *self) {
  auto *c = reinterpret_cast<ControlObject *>(self);
  if (c->is_default && c->table) return PyUnicode_FromFormat("%S", c->table);
  ProblemHandles *p = c->problem;
  if (!p || !p->prob) return PyUnicode_FromString("<controls of an uninitialized problem>");
  PyObject *all = ReadAllValues(p, ControlDict, true);
  if (!all) return nullptr;
  PyObject *text = PyUnicode_FromFormat("%S", all);
  Py_DECREF(all);
  return text;
}

int ControlInit(PyObject *self, PyObject *args, PyObject *kwds) {
  // Created by the module only; from Python it is an object bound to nothing.
  PyErr_SetString(ModelError,
                  "control objects are made by the module: use problem.controls or "
                  "zorvan._getcontrols()");
  return -1;
}

void ControlDealloc(PyObject *self) {
  auto *c = reinterpret_cast<ControlObject *>(self);
  Py_CLEAR(c->table);
  Py_TYPE(self)->tp_free(self);
}

}  // namespace

PyTypeObject ControlType{};

PyObject *NewControlView(ProblemHandles *p, PyObject *table) {
  auto *c = PyObject_New(ControlObject, &ControlType);
  if (!c) return nullptr;
  c->problem = p;
  c->table = Py_NewRef(table);
  c->is_default = p ? 0 : 1;
  return reinterpret_cast<PyObject *>(c);
}

void DetachView(PyObject *view) {
  if (!view) return;
  if (PyObject_TypeCheck(view, &ControlType))
    reinterpret_cast<ControlObject *>(view)->problem = nullptr;
  else if (PyObject_TypeCheck(view, &AttributeType))
    reinterpret_cast<AttributeObject *>(view)->problem = nullptr;
  else if (PyObject_TypeCheck(view, &ObjAttribType)) {
    auto *o = reinterpret_cast<ObjAttribObject *>(view);
    o->problem = nullptr;
    if (o->cache)
      for (Py_ssize_t i = 0; i < PyList_GET_SIZE(o->cache); ++i)
        DetachView(PyList_GET_ITEM(o->cache, i));
  }
}

void SetupControlType() {
  PyTypeObject &t = ControlType;
  InitType(t, "zorvan.control", sizeof(ControlObject));
  t.tp_dealloc = ControlDealloc;
  t.tp_getattro = ControlGetAttr;
  t.tp_setattro = ControlSetAttr;
  t.tp_repr = ControlRepr;
  t.tp_init = ControlInit;
  t.tp_doc = ZRV_HELP(
      "Read and set the controls (solver parameters) of a problem by name.",
      "p.controls.<name>; p.controls.<name> = value",
      "name: the control's name, all lower case or all upper case; value: an int, "
      "float or str according to the control's type.",
      "p = zorvan.problem(); p.controls.presolve = 0; print(p.controls.miprelstop)",
      "The object returned by zorvan._getcontrols() is bound to no problem: setting one of "
      "its controls records a default for every problem created afterwards.",
      "problem, zorvan._getcontrols, zorvan.setdefaultcontrol, zorvan.setdefaults");
}

}  // namespace zrv
