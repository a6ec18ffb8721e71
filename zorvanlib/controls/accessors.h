// One control of an engine problem read or written by source (the main
// engine, or the nonlinear companion for both nonlinear sources) and kind
// (integer, double, string): a table of 2 x 3 accessors behind the
// catalogue's defaults and the reading and setting of control values.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "zorvan/zslp.h"

namespace zrv {

// A control value of any kind. Set: i, d or text by kind. Get: i, d, or
// buf (text then points at it).
struct ControlValue {
  int64_t i = 0;
  double d = 0.0;
  const char *text = nullptr;
  char buf[ZRVS_MAXSTRINGLENGTH] = {0};
};

// The engine's status of the call; neither touches Python, so both may run
// with the interpreter lock released. Nonlinear sources need slp.
int GetControl(ZRVSprob prob, ZSLPprob slp, int source, int kind, int id, ControlValue &v);
int SetControl(ZRVSprob prob, ZSLPprob slp, int source, int kind, int id, const ControlValue &v);

// A value read by GetControl as int, float or str (new reference or null).
PyObject *ControlValueObject(int kind, const ControlValue &v);

}  // namespace zrv
