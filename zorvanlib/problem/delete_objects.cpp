// problem.delVariable, delConstraint and delSOS, and the deletion shared
// with the adders' rollback.
#include <algorithm>
#include <vector>

#include "problem/arguments.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "base/arrays.h"
#include "problem/add_objects.h"
#include "problem/formula_batch.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

int DeleteIndices(ProblemObject *p, ModelObjectKind kind, std::vector<int> indices) {
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  if (indices.empty()) return 0;
  if (kind != ModelObjectKind::Sos && p->nl_objective) {
    int row, col;
    if (FindTransfer(p, &row, &col) < 0) return -1;
    const int transfer = kind == ModelObjectKind::Variable ? col : row;
    if (std::binary_search(indices.begin(), indices.end(), transfer)) {
      PyErr_SetString(ModelError,
                      kind == ModelObjectKind::Variable
                          ? "The column that carries the nonlinear objective cannot be deleted; "
                            "set another objective instead"
                          : "The row that carries the nonlinear objective cannot be deleted; set "
                            "another objective instead");
      return -1;
    }
  }
  const int n = static_cast<int>(indices.size());
  const int *data = indices.data();
  int rc = kind == ModelObjectKind::Variable     ? CallUnlocked(ZRVSdelcols, p->prob, n, data)
           : kind == ModelObjectKind::Constraint ? CallUnlocked(ZRVSdelrows, p->prob, n, data)
                                            : CallUnlocked(ZRVSdelsets, p->prob, n, data);
  if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));

  // The engine has renumbered; the list and map follow.
  PyObject *list = ListOf(p, kind);
  IndexMap *map = MapOf(p, kind);
  const Py_ssize_t size = PyList_GET_SIZE(list);
  PyObject *kept = PyList_New(0);
  if (!kept) return -1;
  size_t d = 0;
  for (Py_ssize_t i = 0; i < size; ++i) {
    PyObject *o = PyList_GET_ITEM(list, i);
    while (d < indices.size() && indices[d] < i) ++d;
    if (d < indices.size() && indices[d] == i) {
      map->Erase(MapKey(o, kind));
    } else if (PyList_Append(kept, o) < 0) {
      Py_DECREF(kept);
      return -1;
    }
  }
  int set = PyList_SetSlice(list, 0, size, kept);
  Py_DECREF(kept);
  if (set < 0) return -1;
  map->ForEach([&](uint64_t, int32_t &pos) {
    auto below = std::lower_bound(indices.begin(), indices.end(), pos);
    pos -= static_cast<int32_t>(below - indices.begin());
  });
  // The formulas of deleted rows went with them: the problem may be linear.
  return kind == ModelObjectKind::Constraint ? RecountNonlinearRows(p) : 0;
}

namespace {

const char *const kDeleteKeywords[] = {"index", "first", "last", nullptr};

constexpr int kCountAttrib[] = {ZRVS_ORIGINALROWS, ZRVS_ORIGINALCOLS, ZRVS_ORIGINALSETS};

bool IsKindObject(PyObject *o, ModelObjectKind kind) {
  PyTypeObject *t = Py_TYPE(o);
  switch (kind) {
    case ModelObjectKind::Variable: return t == &VarType;
    case ModelObjectKind::Constraint: return t == &ConstraintType;
    case ModelObjectKind::Sos: return t == &SosType;
  }
  return false;
}

// The index arguments shared by deletion and the getters. -1 on error,
// else 0 with *mode 0 (nothing given), 1 (index) or 2 (first and last).
int CheckSelection(PyObject *index, int first, int last, int *mode) {
  bool has_index = index && index != Py_None;
  if (has_index && (first >= 0 || last >= 0)) {
    PyErr_SetString(ModelError,
                    "Parameters 'first' and 'last' cannot be specified if 'index' is also "
                    "specified");
    return -1;
  }
  if ((first >= 0) != (last >= 0)) {
    PyErr_SetString(ModelError, "Parameters 'first' and 'last' must be both nonnegative when "
                                "specified");
    return -1;
  }
  *mode = has_index ? 1 : first >= 0 ? 2 : 0;
  if (*mode == 2 && first > last) {
    PyErr_SetString(ModelError, "Parameter 'first' must be less than, or equal to, 'last'");
    return -1;
  }
  return 0;
}

// The indices of an array of objects (objects, indices or names), any shape
// or layout, read in one pass over its elements. 1 when index is not such an
// array (left to the other forms), 0 when read, -1 on error.
int ObjectArrayIndices(ProblemObject *p, PyObject *index, int code, std::vector<int> &indices) {
  return ForEachArrayObject(index, [&](PyObject *item) {
    int32_t k;
    if (ObjectToIndex(item, p, &k, code) < 0) return -1;
    indices.push_back(k);
    return 0;
  });
}

PyObject *Delete(PyObject *self, PyObject *args, PyObject *kwds, ModelObjectKind kind) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  const char *what = kind == ModelObjectKind::Variable     ? "delVariable"
                     : kind == ModelObjectKind::Constraint ? "delConstraint"
                                                      : "delSOS";
  if (CannotChange(p, what)) return nullptr;
  PyObject *index = nullptr;
  int first = -1, last = -1;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "|Oii", const_cast<char **>(kDeleteKeywords),
                                   &index, &first, &last))
    return nullptr;
  int mode;
  if (CheckSelection(index, first, last, &mode) < 0) return nullptr;
  if (mode == 0) {
    PyErr_SetString(ModelError, "At least one parameter must be specified");
    return nullptr;
  }
  const int code = static_cast<int>(kind);
  std::vector<int> indices;
  if (mode == 2) {
    int count = 0;
    if (ReadIntAttrib(p, kCountAttrib[code], &count) < 0) return nullptr;
    if (last >= count) {
      PyErr_SetString(ModelError, "Parameters 'first' or 'last' are out of range");
      return nullptr;
    }
    for (int i = first; i <= last; ++i) indices.push_back(i);
  } else if (int rc = ObjectArrayIndices(p, index, code, indices); rc <= 0) {
    if (rc < 0) return nullptr;
  } else if (IsIntegerObject(index) || PyUnicode_Check(index) || PyBytes_Check(index) ||
             IsKindObject(index, kind)) {
    int32_t i;
    if (ObjectToIndex(index, p, &i, code) < 0) return nullptr;
    indices.push_back(i);
  } else if (PyList_Check(index) || PyTuple_Check(index) || PyIter_Check(index) ||
             (PySequence_Check(index) && !PyDict_Check(index))) {
    Py_ssize_t n = -1;
    NativeArray array;
    if (SequenceToArray(p, &n, index, array.slot(), code) < 0) return nullptr;
    indices.assign(array.as<int32_t>(), array.as<int32_t>() + n);
  } else {
    PyErr_SetString(ModelError, "Cannot delete object: must be variable, constraint, or SOS");
    return nullptr;
  }
  if (DeleteIndices(p, kind, std::move(indices)) < 0) return nullptr;
  Py_RETURN_NONE;
}

}  // namespace

PyObject *ProblemDelVariable(PyObject *self, PyObject *args, PyObject *kwds) {
  return Delete(self, args, kwds, ModelObjectKind::Variable);
}
PyObject *ProblemDelConstraint(PyObject *self, PyObject *args, PyObject *kwds) {
  return Delete(self, args, kwds, ModelObjectKind::Constraint);
}
PyObject *ProblemDelSos(PyObject *self, PyObject *args, PyObject *kwds) {
  return Delete(self, args, kwds, ModelObjectKind::Sos);
}

#define ZRV_DELETE_ARGS(what)                                                                \
  "index: one " what " (object, index or name) or a sequence of them; first, last: "      \
  "an inclusive range of indices, instead of index."
#define ZRV_DELETE_FURTHER(what)                                                             \
  "The remaining " what " move down to fill the gaps, keeping their order; their indices " \
  "change accordingly."

const char DelVariableDoc[] = ZRV_HELP(
    "Remove variables (columns) from the problem.",
    "p.delVariable(index=None, first=-1, last=-1)", ZRV_DELETE_ARGS("variable"),
    "p.delVariable(x)\n    p.delVariable([0, 'y', z])\n    p.delVariable(first=2, last=5)",
    ZRV_DELETE_FURTHER("variables")
    " Their coefficients leave every row and the objective; sets lose them as members.",
    "problem.addVariable, problem.getVariable, problem.getIndex");

const char DelConstraintDoc[] = ZRV_HELP(
    "Remove constraints (rows) from the problem.",
    "p.delConstraint(index=None, first=-1, last=-1)", ZRV_DELETE_ARGS("constraint"),
    "p.delConstraint(c)\n    p.delConstraint(first=0, last=9)", ZRV_DELETE_FURTHER("constraints"),
    "problem.addConstraint, problem.getConstraint, problem.getIndex");

const char DelSosDoc[] = ZRV_HELP(
    "Remove special ordered sets from the problem.",
    "p.delSOS(index=None, first=-1, last=-1)", ZRV_DELETE_ARGS("SOS"),
    "p.delSOS(s)\n    p.delSOS(index=[0, 1])", ZRV_DELETE_FURTHER("sets"),
    "problem.addSOS, problem.getSOS, problem.getIndex");

}  // namespace zrv
