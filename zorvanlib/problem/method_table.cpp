// The table of problem methods, concatenated once from its groups.
#include "problem/method_table.h"

#include <cstring>
#include <new>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/types.h"

namespace zrv {

namespace {

std::vector<const PyMethodDef *> Groups;
std::vector<PyMethodDef> Table;  // what ProblemType.tp_methods points at

}  // namespace

void AddProblemMethods(const PyMethodDef *group) { Groups.push_back(group); }

int BuildProblemMethods() {
  try {
    Table.clear();
    std::unordered_set<std::string> names;
    for (const PyMethodDef *group : Groups) {
      for (const PyMethodDef *m = group; m->ml_name; ++m) {
        if (!names.insert(m->ml_name).second) {
          PyErr_Format(PyExc_ImportError, "problem.%s is defined twice", m->ml_name);
          Groups.clear();
          return -1;
        }
        Table.push_back(*m);
      }
    }
    Table.push_back({nullptr, nullptr, 0, nullptr});
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    Groups.clear();
    return -1;
  }
  // A later start-up of the module in this process adds its groups afresh.
  Groups.clear();
  ProblemType.tp_methods = Table.data();
  return 0;
}

}  // namespace zrv
