// What variables and constraints keep beyond their 64-bit word: a bound is a
// two-bit code in the word, and only code 3 (any other value) keeps the value
// in a global map, flagged in the word; a name given by the user is kept in a
// global map the same way. Shared by var and constraint.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "base/globals.h"

namespace zrv {

// Writes code (at shift) into the word and, for code 3, the value into the
// map under id; any other code erases an entry stored before.
inline void StoreBound(uint64_t &word, uint64_t id, int shift, uint64_t stored, DoubleMap *map,
                       uint64_t code, double v) {
  word = (word & ~(uint64_t{3} << shift)) | (code << shift);
  if (code == 3) {
    if (map) {
      (*map)[id] = v;
      word |= stored;
    }
  } else if (word & stored) {
    word &= ~stored;
    if (map) map->erase(id);
  }
}

// The value kept for id, or fallback.
inline double StoredBound(const DoubleMap *map, uint64_t id, double fallback) {
  if (!map) return fallback;
  auto it = map->find(id);
  return it == map->end() ? fallback : it->second;
}

// The name kept for id (a new reference), or null when there is none.
inline PyObject *StoredName(const NameMap *map, uint64_t id) {
  if (!map) return nullptr;
  auto it = map->find(id);
  return it == map->end() ? nullptr : Py_NewRef(it->second);
}

// Keeps name for id (taking a new reference), releasing a name kept before.
// False when the maps are gone (the module is being freed).
inline bool StoreName(NameMap *map, uint64_t id, PyObject *name) {
  if (!map) return false;
  PyObject *old = nullptr;
  auto it = map->find(id);
  if (it != map->end()) {
    old = it->second;
    it->second = Py_NewRef(name);
  } else {
    map->emplace(id, Py_NewRef(name));
  }
  Py_XDECREF(old);
  return true;
}

// Drops and releases the name kept for id.
inline void EraseName(NameMap *map, uint64_t id) {
  if (!map) return;
  auto it = map->find(id);
  if (it == map->end()) return;
  PyObject *old = it->second;
  map->erase(it);
  Py_DECREF(old);
}

}  // namespace zrv
