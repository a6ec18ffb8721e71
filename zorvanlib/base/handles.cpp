// The opaque handle types zrvsobject and generic: objects that carry an
// engine pointer to Python callbacks and back, with no behaviour of their own.
#include "base/handles.h"

#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject ZrvsObjectType{};
PyTypeObject GenericType{};

namespace {

int HandleInit(PyObject *, PyObject *args, PyObject *kwds) {
  if (PyTuple_GET_SIZE(args) > 0 || (kwds && PyDict_GET_SIZE(kwds) > 0)) {
    PyErr_SetString(PyExc_TypeError, "handle objects take no arguments");
    return -1;
  }
  return 0;
}

PyObject *ZrvsObjectRepr(PyObject *self) {
  return PyUnicode_FromFormat("<zorvan.zrvsobject %p>",
                              reinterpret_cast<ZrvsObjectObject *>(self)->handle);
}

PyObject *GenericRepr(PyObject *self) {
  return PyUnicode_FromFormat("<zorvan.generic %p>",
                              reinterpret_cast<GenericObject *>(self)->pointer);
}

}  // namespace

PyObject *NewZrvsObject(void *handle) {
  auto *o = PyObject_New(ZrvsObjectObject, &ZrvsObjectType);
  if (o) o->handle = handle;
  return reinterpret_cast<PyObject *>(o);
}

PyObject *NewGeneric(void *pointer) {
  auto *o = PyObject_New(GenericObject, &GenericType);
  if (o) o->pointer = pointer;
  return reinterpret_cast<PyObject *>(o);
}

void SetupZrvsObjectType() {
  PyTypeObject &t = ZrvsObjectType;
  InitType(t, "zorvan.zrvsobject", sizeof(ZrvsObjectObject));
  t.tp_init = HandleInit;
  t.tp_repr = ZrvsObjectRepr;
  t.tp_doc = ZRV_HELP(
      "An opaque handle of an engine object (a problem or the environment).",
      "passed to message handlers added with zorvan.addcbmsghandler",
      "None: made by the module only.",
      "def handler(obj, data, thread, msg, length, msgtype): print(obj, msg)",
      "The handle identifies the object that sent a message; it has no methods.",
      "zorvan.addcbmsghandler, generic");
}

void SetupGenericType() {
  PyTypeObject &t = GenericType;
  InitType(t, "zorvan.generic", sizeof(GenericObject));
  t.tp_init = HandleInit;
  t.tp_repr = GenericRepr;
  t.tp_doc = ZRV_HELP(
      "An opaque pointer handed to a callback, such as the engine thread of a message.",
      "passed to message handlers added with zorvan.addcbmsghandler",
      "None: made by the module only.",
      "def handler(obj, data, thread, msg, length, msgtype): print(thread)",
      "The pointer is only meaningful to the engine; it has no methods.",
      "zorvan.addcbmsghandler, zrvsobject");
}

}  // namespace zrv
