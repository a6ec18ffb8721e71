// The one table of `problem` methods. Each file that defines methods hands
// its group (a null-terminated PyMethodDef array that lives as long as the
// module) over at start-up; the table is built once from all groups before
// the type is made ready, and a name given twice stops the import.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Adds a group of methods to the table to be built.
void AddProblemMethods(const PyMethodDef *group);

// Builds the table from the groups added so far and installs it as the
// problem type's methods. 0, or -1 with ImportError "problem.NAME is defined
// twice" for a repeated name.
int BuildProblemMethods();

}  // namespace zrv
