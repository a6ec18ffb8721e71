// The formulas of a row as the engine keeps them, for inspection.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// zorvanlib._rowformulas(problem, row): a list of (column, terms, factor,
// tokens), one per column that multiplies formulas of the row (-1 for
// none), in the engine's order: how many terms it has, and the factor and
// tokens (without the end token) of its one term or of their sum.
PyObject *RowFormulas(PyObject *, PyObject *args);
extern const char RowFormulasDoc[];

}  // namespace zrv
