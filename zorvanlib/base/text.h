// Text crossing between Python and the engine.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Engine text as a str. The engine hands back bytes as given (names may be
// any bytes) and may cut a message inside a multi-byte character: invalid
// UTF-8 becomes U+FFFD instead of an error.
PyObject *TextFromEngine(const char *text);
PyObject *TextFromEngine(const char *text, Py_ssize_t length);

// Raises the exception type `error` with the engine text as its message,
// decoded as by TextFromEngine.
void SetErrorFromEngine(PyObject *error, const char *text);

// Refuses a name that holds a NUL character: the engine takes names as
// NUL-separated buffers, where it would split the name and shift every later
// one. `what` says whose name it is ("variable", "constraint", ...); `name`
// is shown in the message. Returns 0, or -1 with ModelError set.
int CheckNameText(const char *text, Py_ssize_t length, const char *what, PyObject *name);

}  // namespace zrv
