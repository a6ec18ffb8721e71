// Keyword parsing with legacy names, and the messages for missing
// arguments and empty ranges.
#include "problem/arguments.h"

#include <cstdarg>
#include <string>

#include "base/errors.h"

namespace zrv {

int ParseWithLegacy(PyObject *args, PyObject *kwargs, const char *format,
                    const char *const *keywords, const char *const *legacy, ...) {
  va_list outputs;
  va_start(outputs, legacy);
  va_list again;
  va_copy(again, outputs);
  int ok = PyArg_VaParseTupleAndKeywords(args, kwargs, format, const_cast<char **>(keywords),
                                         outputs);
  va_end(outputs);
  if (!ok && legacy) {
    PyObject *type, *value, *trace;
    PyErr_Fetch(&type, &value, &trace);
    ok = PyArg_VaParseTupleAndKeywords(args, kwargs, format, const_cast<char **>(legacy),
                                       again);
    if (ok) {
      Py_XDECREF(type);
      Py_XDECREF(value);
      Py_XDECREF(trace);
    } else {
      PyErr_Clear();
      PyErr_Restore(type, value, trace);
    }
  }
  va_end(again);
  return ok;
}

void MissingArguments(const char *const *names, int count) {
  std::string text = count == 1 ? "Must provide argument " : "Must provide arguments ";
  for (int i = 0; i < count; ++i) {
    if (i) text += ", ";
    text += names[i];
  }
  if (text.size() > 255) text.resize(255);
  PyErr_SetString(InterfaceError, text.c_str());
}

void MissingKeywords(const char *const *keywords, int first, int last) {
  std::string text = last - first == 1 ? "Must provide argument" : "Must provide arguments";
  text += ' ';
  for (int i = first; i < last; ++i) {
    if (i > first) text += ", ";
    text += keywords[i];
  }
  if (text.size() > 255) text.resize(255);
  PyErr_SetString(InterfaceError, text.c_str());
}

int CheckRange(int first, int last, bool columns) {
  if (last - first + 1 > 0) return 0;
  PyErr_SetString(InterfaceError, columns ? "Empty range of columns requested"
                                          : "Empty range of rows requested");
  return -1;
}

}  // namespace zrv
