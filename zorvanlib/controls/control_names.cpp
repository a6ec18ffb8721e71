// Normalising control and attribute names: all lower or all upper case.
#include <cstring>

#include "base/globals.h"
#include "controls/control.h"

namespace zrv {

int NameText(PyObject *name, const char **text, Py_ssize_t *size) {
  if (PyUnicode_Check(name)) {
    *text = PyUnicode_AsUTF8AndSize(name, size);
    return *text ? 1 : -1;
  }
  if (PyBytes_Check(name)) {
    *text = PyBytes_AS_STRING(name);
    *size = PyBytes_GET_SIZE(name);
    return 1;
  }
  return 0;
}

int NormaliseName(PyObject *name, std::string &out) {
  const char *text = nullptr;
  Py_ssize_t size = 0;
  int rc = NameText(name, &text, &size);
  if (rc <= 0) return rc == 0 ? -2 : -1;
  if (size > 1024) {
    PyErr_SetString(ModelError, "Control or attribute name is too long");
    return -1;
  }
  bool lower_ok = true, upper_ok = true;
  for (Py_ssize_t i = 0; i < size; ++i) {
    char c = text[i];
    bool shared = (c >= '0' && c <= '9') || c == '_';
    lower_ok = lower_ok && (shared || (c >= 'a' && c <= 'z'));
    upper_ok = upper_ok && (shared || (c >= 'A' && c <= 'Z'));
  }
  if (!lower_ok && !upper_ok) {
    PyErr_SetString(ModelError, "Control or attribute is neither all-lower nor all-upper case");
    return -1;
  }
  out.assign(text, static_cast<size_t>(size));
  if (!lower_ok)
    for (char &c : out)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return 0;
}

}  // namespace zrv
