// Initialisers of modelling types whose construction comes with the
// modelling layer: they refuse clearly instead of making empty objects.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "module/globals.h"

namespace zrv {

template <const char *Message>
int RefuseInit(PyObject *, PyObject *, PyObject *) {
  PyErr_SetString(ModelError, Message);
  return -1;
}

}  // namespace zrv
