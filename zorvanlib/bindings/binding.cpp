// The entry of every member and the registration of member tables.
#include "bindings/binding.h"

#include <deque>
#include <new>
#include <vector>

#include "base/types.h"
#include "problem/method_table.h"
#include "problem/solve_guard.h"

namespace zrv {

namespace {

// Method definitions made from the tables; a deque keeps each group where
// the method table points at it.
std::deque<std::vector<PyMethodDef>> Groups;

}  // namespace

PyObject *RunBinding(const Binding &b, PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (b.changes_model ? CannotChange(p, b.name) : !Checked(self)) return nullptr;
  return b.worker(p, b, args, kwds);
}

int RegisterBindings(const Binding *table, PyCFunctionWithKeywords const *entries,
                     size_t count) {
  try {
    std::vector<PyMethodDef> defs;
    defs.reserve(count + 1);
    for (size_t i = 0; i < count; ++i)
      defs.push_back({table[i].name, WithKeywords(entries[i]), METH_VARARGS | METH_KEYWORDS,
                      table[i].help});
    defs.push_back({nullptr, nullptr, 0, nullptr});
    Groups.push_back(std::move(defs));
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  AddProblemMethods(Groups.back().data());
  return 0;
}

}  // namespace zrv
