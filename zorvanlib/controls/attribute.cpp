// The `attribute` type: p.attributes, reading problem attributes by name.
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "controls/control.h"

namespace zrv {

PyTypeObject AttributeType{};

namespace {

PyObject *AttributeGetAttr(PyObject *self, PyObject *attr) {
  auto *a = reinterpret_cast<AttributeObject *>(self);
  std::string name;
  int rc = NormaliseName(attr, name);
  if (rc == -2) {
    PyErr_SetString(ModelError, "Bad attribute request");
    return nullptr;
  }
  if (rc < 0) {
    const char *s = PyUnicode_Check(attr) ? PyUnicode_AsUTF8(attr) : nullptr;
    if (s && s[0] == '_' && s[1] == '_') {
      PyErr_Clear();
      return PyObject_GenericGetAttr(self, attr);
    }
    return nullptr;
  }
  if (name == "__dict__") return Py_NewRef(a->table);
  if (name.compare(0, 2, "__") == 0) return PyObject_GenericGetAttr(self, attr);
  ProblemHandles *p = a->problem;
  if (!p || NotInitialized(p)) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Problem is not initialized");
    return nullptr;
  }
  PyObject *tuple;
  {
    GilSafeLock lock(ControlNameLock);
    tuple = Py_XNewRef(PyDict_GetItemString(a->table, name.c_str()));
  }
  if (!tuple) {
    PyErr_SetString(InterfaceError, "Incorrect attribute name");
    return nullptr;
  }
  int id, kind, source;
  PyObject *result = nullptr;
  if (UnpackDescriptor(tuple, id, kind, source) == 0) {
    if (a->solve_index >= 0 && source != kMain)
      PyErr_SetString(InterfaceError, "Only ZRVS attributes are supported");
    else
      result = ReadValue(p, id, kind, source, false, a->solve_index);
  }
  Py_DECREF(tuple);
  return result;
}

int AttributeSetAttr(PyObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError, "A problem's attribute cannot be set");
  return -1;
}

PyObject *AttributeRepr(PyObject *self) {
  auto *a = reinterpret_cast<AttributeObject *>(self);
  ProblemHandles *p = a->problem;
  if (!p || !p->prob) return PyUnicode_FromString("<attributes of an uninitialized problem>");
  PyObject *all = ReadAllValues(p, a->table, false, a->solve_index, true);
  if (!all) return nullptr;
  PyObject *text = PyUnicode_FromFormat("%S", all);
  Py_DECREF(all);
  return text;
}

void AttributeDealloc(PyObject *self) {
  Py_CLEAR(reinterpret_cast<AttributeObject *>(self)->table);
  Py_TYPE(self)->tp_free(self);
}

}  // namespace

PyObject *NewAttributeView(ProblemHandles *p, int32_t solve_index) {
  auto *a = PyObject_New(AttributeObject, &AttributeType);
  if (!a) return nullptr;
  a->problem = p;
  a->table = Py_NewRef(AttributeDict);
  a->solve_index = solve_index;
  return reinterpret_cast<PyObject *>(a);
}

void SetupAttributeType() {
  PyTypeObject &t = AttributeType;
  InitType(t, "zorvan.attribute", sizeof(AttributeObject));
  t.tp_dealloc = AttributeDealloc;
  t.tp_getattro = AttributeGetAttr;
  t.tp_setattro = AttributeSetAttr;
  t.tp_repr = AttributeRepr;
  t.tp_doc = ZRV_HELP(
      "Read the attributes (sizes, statuses and results) of a problem by name.",
      "p.attributes.<name>",
      "name: the attribute's name, all lower case or all upper case.",
      "p = zorvan.problem(); print(p.attributes.cols, p.attributes.probname)",
      "Attributes are read-only: assigning one raises ModelError. repr() lists every "
      "attribute with its value.",
      "problem, problem.controls, problem.objattribs");
}

}  // namespace zrv
