#include "base/text.h"

#include <cstring>

#include "base/globals.h"

namespace zrv {

PyObject *TextFromEngine(const char *text, Py_ssize_t length) {
  return PyUnicode_DecodeUTF8(text, length, "replace");
}

PyObject *TextFromEngine(const char *text) {
  return TextFromEngine(text, static_cast<Py_ssize_t>(std::strlen(text)));
}

void SetErrorFromEngine(PyObject *error, const char *text) {
  PyObject *message = TextFromEngine(text);
  if (!message) return;
  PyErr_SetObject(error, message);
  Py_DECREF(message);
}

int CheckNameText(const char *text, Py_ssize_t length, const char *what, PyObject *name) {
  if (!std::memchr(text, '\0', static_cast<size_t>(length))) return 0;
  PyErr_Format(ModelError, "Invalid %s name %R: names cannot contain NUL characters", what,
               name);
  return -1;
}

}  // namespace zrv
