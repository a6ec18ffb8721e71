// The formulas of a row as the engine keeps them, for inspection.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// zorvanlib._rowformulas(problem, row): a list of (column, factor, tokens)
// for the formula terms of the row in the order the engine keeps them; the
// column is -1 for none; tokens is a list of (type, value) pairs without
// the end token.
PyObject *RowFormulas(PyObject *, PyObject *args);
extern const char RowFormulasDoc[];

}  // namespace zrv
