// Moving model objects into and out of a problem: variables become columns,
// constraints rows, SOS sets; indicator pairs mark rows. Each call adds its
// objects in one batch of engine calls and leaves the problem as it was when
// it fails.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/limits.h"
#include "problem/problem.h"
#include "problem/solve_guard.h"

namespace zrv {

// Owned references collected by a walk, released with the holder.
class OwnedObjects {
 public:
  OwnedObjects() = default;
  ~OwnedObjects() { Clear(); }
  OwnedObjects(const OwnedObjects &) = delete;
  OwnedObjects &operator=(const OwnedObjects &) = delete;
  // Takes over a new reference.
  void Push(PyObject *o) { items_.push_back(o); }
  void Clear() {
    for (PyObject *o : items_) Py_DECREF(o);
    items_.clear();
  }
  PyObject *const *data() const { return items_.data(); }
  Py_ssize_t size() const { return static_cast<Py_ssize_t>(items_.size()); }
  PyObject *operator[](Py_ssize_t i) const { return items_[static_cast<size_t>(i)]; }

 private:
  std::vector<PyObject *> items_;
};

// Which kind of object a deletion or lookup concerns (element codes).
enum class ModelObjectKind : int { Constraint = 0, Variable = 1, Sos = 2 };

// Appends the leaves of obj to out: lists, tuples, dictionaries (their
// values), sets, iterators and other iterables are walked, to a depth of 32;
// model objects, strings and everything else are leaves. Deeper nesting
// raises ModelError with `too_deep` (or a message of its own). 0 or -1.
int FlattenObjects(PyObject *obj, OwnedObjects &out, int depth = 0,
                   const char *too_deep = nullptr);

// Appends the default name <prefix><id> and its NUL to a names buffer,
// without the formatting machinery (it runs once per new row or column).
inline void AppendDefaultName(char prefix, uint64_t id, std::string &names) {
  char digits[24];
  int k = 0;
  do {
    digits[k++] = static_cast<char>('0' + id % 10);
    id /= 10;
  } while (id);
  names += prefix;
  while (k) names += digits[--k];
  names += '\0';
}

// Undoes the recording of objects: drops list[from:] and their map entries.
void ForgetTail(ProblemObject *p, ModelObjectKind kind, Py_ssize_t from);

// Records an object's position in a map; raises ModelError `already` when
// the identifier is there, or MemoryError. 0 or -1.
int RecordIndex(IndexMap *map, uint64_t id, int32_t pos, const char *already);

// The key of an object in the problem's map of its kind.
uint64_t MapKey(PyObject *o, ModelObjectKind kind);
IndexMap *MapOf(ProblemObject *p, ModelObjectKind kind);
PyObject *ListOf(ProblemObject *p, ModelObjectKind kind);

// Adds the n variables items[0..n-1] as new columns in one batch (one engine
// call for all columns, one for their names, one for their types). Any item
// that is not a variable new to the problem fails the whole batch, which
// then leaves the problem, its lists and maps as they were. 0 or -1.
int AddVariableBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n);

// Adds the n constraints items[0..n-1] as new rows in one batch (one engine
// call for all rows and one for their names, plus one per row with a
// quadratic part); all or nothing as for variables. When `first_row` is not
// null it receives the index of the first new row. 0 or -1.
int AddConstraintBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n,
                       int *first_row = nullptr);

// Adds the n SOS items[0..n-1] as new sets in one engine call. 0 or -1.
int AddSosBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n);

// The body of addVariable, addConstraint and addSOS (`what`): the arguments
// (objects, and lists, tuples and dictionaries of them) flattened and handed
// to one batch adder. None, or null with an error.
template <class Batch>
PyObject *AddFlattened(PyObject *self, PyObject *args, const char *what, Batch batch) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, what)) return nullptr;
  OwnedObjects items;
  if (FlattenObjects(args, items) < 0) return nullptr;
  if (batch(p, items.data(), items.size()) < 0) return nullptr;
  Py_RETURN_NONE;
}

// Deletes the given indices (any order, repeats allowed) of one kind from
// the engine, then from the problem's list and map, renumbering the rest.
// Nothing changes when the engine refuses. 0 or -1.
int DeleteIndices(ProblemObject *p, ModelObjectKind kind, std::vector<int> indices);

// The methods.
PyObject *ProblemAddVariable(PyObject *self, PyObject *args);
PyObject *ProblemAddConstraint(PyObject *self, PyObject *args);
PyObject *ProblemAddSos(PyObject *self, PyObject *args);
PyObject *ProblemAddIndicator(PyObject *self, PyObject *args);
PyObject *ProblemDelVariable(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemDelConstraint(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemDelSos(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetVariable(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetConstraint(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetSos(PyObject *self, PyObject *args, PyObject *kwds);
PyObject *ProblemGetIndex(PyObject *self, PyObject *obj);

extern const char AddVariableDoc[];
extern const char AddConstraintDoc[];
extern const char AddSosDoc[];
extern const char AddIndicatorDoc[];
extern const char DelVariableDoc[];
extern const char DelConstraintDoc[];
extern const char DelSosDoc[];
extern const char GetVariableDoc[];
extern const char GetConstraintDoc[];
extern const char GetSosDoc[];
extern const char GetIndexDoc[];

}  // namespace zrv
