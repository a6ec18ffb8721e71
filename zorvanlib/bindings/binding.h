// The one-to-one members of `problem`: each is one row of a table (name,
// worker, argument format, keywords, legacy keywords, help text) from which
// the method definitions are made. A worker receives its own row, so the
// format and keyword lists are written once, in the table.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstddef>
#include <utility>

#include "problem/arguments.h"
#include "problem/problem.h"

namespace zrv {

struct Binding;

// Does the member's work once the problem is known to hold an engine problem.
using BindingWorker = PyObject *(*)(ProblemObject *p, const Binding &b, PyObject *args,
                                    PyObject *kwds);

struct Binding {
  const char *name;             // the Python name, the engine function's in lower case
  BindingWorker worker;
  const char *format;           // PyArg_ParseTupleAndKeywords format
  const char *const *keywords;  // current names (null: positional arguments only)
  const char *const *legacy;    // legacy names, or null
  bool changes_model;           // refused while the problem is being solved
  const char *help;
};

// Parses a member's arguments by its row: current keywords first, then the
// legacy ones. A row without keywords takes positional arguments only.
template <class... Outputs>
bool ParseArgs(const Binding &b, PyObject *args, PyObject *kwds, Outputs *...outputs) {
  if (!b.keywords) {
    if (kwds && PyDict_GET_SIZE(kwds) > 0) {
      PyErr_Format(PyExc_TypeError, "%s() takes no keyword arguments", b.name);
      return false;
    }
    return PyArg_ParseTuple(args, b.format, outputs...) != 0;
  }
  return ParseWithLegacy(args, kwds, b.format, b.keywords, b.legacy, outputs...) != 0;
}

// InterfaceError "Must provide argument <keyword>" for position k of the row.
inline PyObject *MissingArgument(const Binding &b, int k) {
  MissingKeywords(b.keywords, k, k + 1);
  return nullptr;
}

// The initialisation (and solving) check, then the worker of the row.
PyObject *RunBinding(const Binding &b, PyObject *self, PyObject *args, PyObject *kwds);

// The entry of row I of Table::rows: one function per member, so that the
// method knows its row.
template <class Table, size_t I>
PyObject *BindingEntry(PyObject *self, PyObject *args, PyObject *kwds) {
  return RunBinding(Table::rows[I], self, args, kwds);
}

// Adds the members of a table (count rows) to the problem method table.
// The table and the method definitions made from it live as long as the
// module. 0, or -1 with MemoryError.
int RegisterBindings(const Binding *table, PyCFunctionWithKeywords const *entries, size_t count);

// Registers every row of Table::rows (a static array of Binding).
template <class Table, size_t... I>
int RegisterTable(std::index_sequence<I...>) {
  static const PyCFunctionWithKeywords entries[] = {&BindingEntry<Table, I>...};
  return RegisterBindings(Table::rows, entries, sizeof...(I));
}

}  // namespace zrv
