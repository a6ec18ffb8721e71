// problem.read and problem.write. Reading replaces the engine's model and
// then builds the Python side anew from it: one `var` per column, one
// `constraint` per row (sides only, no body) and one `sos` per set, recorded
// in fresh maps so that lookups, solutions and further additions work on the
// read model as on one built in Python.
#include "problem/files.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "problem/arguments.h"
#include "model/constraint.h"
#include "model/sos.h"
#include "model/var.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/types.h"
#include "problem/add_objects.h"
#include "problem/problem.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// Names are fetched this many at a time to bound the buffer.
constexpr int kNameChunk = 256;

// A new reference that is released unless handed on.
struct Ref {
  PyObject *o = nullptr;
  Ref() = default;
  explicit Ref(PyObject *x) : o(x) {}
  ~Ref() { Py_XDECREF(o); }
  Ref(const Ref &) = delete;
  Ref &operator=(const Ref &) = delete;
  Ref(Ref &&other) noexcept : o(std::exchange(other.o, nullptr)) {}
  PyObject *release() { return std::exchange(o, nullptr); }
};

// The Python side of a read model, built before it replaces the old one.
struct Rebuilt {
  bool column_names = true, row_names = true;  // names read from the engine
  Ref vars, cons, sets;
  std::unique_ptr<IndexMap> colmap{new IndexMap}, rowmap{new IndexMap}, setmap{new IndexMap};
};

// The names of entries 0..count-1 of one kind (1 rows, 2 columns, 3 sets),
// fetched in chunks, as Python strings. 0 or -1.
int ReadNames(ProblemObject *p, int type, int count, std::vector<Ref> &out) {
  out.clear();
  out.resize(static_cast<size_t>(count));
  std::vector<char> buffer;
  for (int first = 0; first < count; first += kNameChunk) {
    const int last = std::min(first + kNameChunk, count) - 1;
    int nbytes = 0;
    int rc = CallUnlocked(ZRVSgetnamelist, p->prob, type, static_cast<char *>(nullptr), 0,
                          &nbytes, first, last);
    if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
    buffer.assign(static_cast<size_t>(nbytes) + 1, '\0');
    rc = CallUnlocked(ZRVSgetnamelist, p->prob, type, buffer.data(), nbytes + 1, &nbytes, first,
                      last);
    if (rc != 0) return ReportFailure(reinterpret_cast<PyObject *>(p));
    const char *s = buffer.data();
    const char *end = buffer.data() + buffer.size();
    for (int i = first; i <= last; ++i) {
      size_t len = strnlen(s, static_cast<size_t>(end - s));
      PyObject *name = PyUnicode_DecodeUTF8(s, static_cast<Py_ssize_t>(len), "replace");
      if (!name) return -1;
      out[static_cast<size_t>(i)].o = name;
      s += len + (s + len < end ? 1 : 0);
    }
  }
  return 0;
}

int SetModelError(const char *text) {
  // Keep a memory error as it is: it tells more.
  if (!PyErr_Occurred()) PyErr_SetString(ModelError, text);
  return -1;
}

int TypeOfLetter(char c) {
  switch (c) {
    case 'B': return 1;
    case 'I': return 2;
    case 'S': return 3;
    case 'R': return 4;
    case 'P': return 5;
    default: return 0;
  }
}

int BuildColumns(ProblemObject *p, int ncols, Rebuilt &out) {
  const char *const kFailed = "Could not read problem";
  out.vars.o = PyList_New(0);
  if (!out.vars.o) return -1;
  if (ncols == 0) return 0;
  const size_t n = static_cast<size_t>(ncols);
  std::vector<double> lb(n), ub(n), limit;
  std::vector<char> type(n);
  PyObject *self = reinterpret_cast<PyObject *>(p);
  if (CallUnlocked(ZRVSgetlb, p->prob, lb.data(), 0, ncols - 1) != 0 ||
      CallUnlocked(ZRVSgetub, p->prob, ub.data(), 0, ncols - 1) != 0 ||
      CallUnlocked(ZRVSgetcoltype, p->prob, type.data(), 0, ncols - 1) != 0)
    return ReportFailure(self);
  std::vector<Ref> names;
  if (out.column_names && ReadNames(p, 2, ncols, names) < 0) return -1;
  const uint64_t first_id = NextVarIds(n);
  // Room for a stored bound of each new variable, so the maps grow once.
  for (DoubleMap *m : {varLbMap, varUbMap})
    if (m) m->reserve(m->size() + n);
  for (int j = 0; j < ncols; ++j) {
    const size_t k = static_cast<size_t>(j);
    PyObject *o = VarType.tp_alloc(&VarType, 0);
    if (!o) return SetModelError(kFailed);
    Ref v(o);
    uint64_t &word = reinterpret_cast<VarObject *>(o)->word;
    word = (first_id + k) & kVarIdMask;
    const int t = TypeOfLetter(type[k]);
    if (lb[k] != 0.0) VarSetLb(word, lb[k]);
    if (ub[k] < kInfinity) VarSetUb(word, ub[k]);
    if (t != 0) VarSetType(word, t);
    if (t >= 3) {
      double threshold = 0.0;
      if (CallUnlocked(ZRVSgetglblimit, p->prob, &threshold, j, j) != 0)
        return ReportFailure(self);
      // The engine may keep the start of the nonzero range in the lower
      // bound (as files state it); the variable carries it as its threshold
      // so that it stays a valid semi-continuous variable.
      VarSetThreshold(word, std::max(threshold, lb[k]));
    }
    if (out.column_names) VarSetName(word, names[k].o);
    if (PyList_Append(out.vars.o, o) < 0) return SetModelError(kFailed);
    out.colmap->Set(VarId(word), j);
  }
  return 0;
}

int BuildRows(ProblemObject *p, int nrows, Rebuilt &out) {
  const char *const kFailed = "Cannot read constraint from problem";
  out.cons.o = PyList_New(0);
  if (!out.cons.o) return -1;
  if (nrows == 0) return 0;
  const size_t n = static_cast<size_t>(nrows);
  std::vector<double> rhs(n), range(n);
  std::vector<char> type(n);
  if (CallUnlocked(ZRVSgetrhs, p->prob, rhs.data(), 0, nrows - 1) != 0 ||
      CallUnlocked(ZRVSgetrhsrange, p->prob, range.data(), 0, nrows - 1) != 0 ||
      CallUnlocked(ZRVSgetrowtype, p->prob, type.data(), 0, nrows - 1) != 0)
    return ReportFailure(reinterpret_cast<PyObject *>(p));
  std::vector<Ref> names;
  if (out.row_names && ReadNames(p, 1, nrows, names) < 0) return -1;
  // Identifiers taken as one block (the allocation slot would take one
  // each, under a lock each time).
  const uint64_t first_id = NextConIds(n);
  for (DoubleMap *m : {conLbMap, conUbMap})
    if (m) m->reserve(m->size() + n);
  for (int i = 0; i < nrows; ++i) {
    const size_t k = static_cast<size_t>(i);
    PyObject *o = PyType_GenericAlloc(&ConstraintType, 0);
    if (!o) return SetModelError(kFailed);
    Ref c(o);
    uint64_t &word = reinterpret_cast<ConstraintObject *>(o)->word;
    word = (first_id + k) & kConstraintIdMask;
    double lo = -kInfinity, up = kInfinity;
    switch (type[k]) {
      case 'E': lo = up = rhs[k]; break;
      case 'G': lo = rhs[k]; break;
      case 'L': up = rhs[k]; break;
      case 'R':
        lo = rhs[k] - range[k];
        up = rhs[k];
        break;
      default: break;  // 'N': a free row
    }
    ConSetLb(word, lo);
    ConSetUb(word, up);
    if (out.row_names) ConSetName(word, names[k].o);
    if (PyList_Append(out.cons.o, o) < 0) return SetModelError(kFailed);
    out.rowmap->Set(ConId(word), i);
  }
  return 0;
}

int BuildSets(ProblemObject *p, int nsets, Rebuilt &out) {
  const char *const kFailed = "Cannot read SOS from problem";
  out.sets.o = PyList_New(0);
  if (!out.sets.o) return -1;
  if (nsets == 0) return 0;
  PyObject *self = reinterpret_cast<PyObject *>(p);
  int64_t nelems = 0;
  if (CallUnlocked(ZRVSgetsets64, p->prob, static_cast<char *>(nullptr),
                   static_cast<int64_t *>(nullptr), static_cast<int *>(nullptr),
                   static_cast<double *>(nullptr), int64_t{0}, &nelems, 0, nsets - 1) != 0)
    return ReportFailure(self);
  const size_t n = static_cast<size_t>(nsets);
  std::vector<char> type(n);
  std::vector<int64_t> start(n + 1);
  std::vector<int> cols(static_cast<size_t>(nelems) + 1);
  std::vector<double> refs(static_cast<size_t>(nelems) + 1);
  if (CallUnlocked(ZRVSgetsets64, p->prob, type.data(), start.data(), cols.data(), refs.data(),
                   nelems, &nelems, 0, nsets - 1) != 0)
    return ReportFailure(self);
  std::vector<Ref> names;
  if (ReadNames(p, 3, nsets, names) < 0) return -1;
  const Py_ssize_t nvars = PyList_GET_SIZE(out.vars.o);
  for (int s = 0; s < nsets; ++s) {
    const size_t k = static_cast<size_t>(s);
    PyObject *o = SosType.tp_alloc(&SosType, 0);
    if (!o) return SetModelError(kFailed);
    Ref set(o);
    auto *sos = reinterpret_cast<SosObject *>(o);
    sos->type = type[k] == '2' ? 2 : 1;
    sos->name = Py_NewRef(names[k].o);
    // The members as the read variables, with their reference values.
    const Py_ssize_t count = static_cast<Py_ssize_t>(start[k + 1] - start[k]);
    sos->indices = PyList_New(count);
    sos->weights = PyList_New(count);
    if (!sos->indices || !sos->weights) return SetModelError(kFailed);
    for (Py_ssize_t e = 0; e < count; ++e) {
      const size_t at = static_cast<size_t>(start[k] + e);
      if (cols[at] < 0 || cols[at] >= nvars) return SetModelError(kFailed);
      PyList_SET_ITEM(sos->indices, e, Py_NewRef(PyList_GET_ITEM(out.vars.o, cols[at])));
      PyObject *w = PyFloat_FromDouble(refs[at]);
      if (!w) return SetModelError(kFailed);
      PyList_SET_ITEM(sos->weights, e, w);
    }
    if (PyList_Append(out.sets.o, o) < 0) return SetModelError(kFailed);
    out.setmap->Set(sos->word, s);
  }
  return 0;
}

// Builds the Python objects of the engine's current model. 0 or -1.
int Rebuild(ProblemObject *p, Rebuilt &out) {
  int ncols = 0, nrows = 0, nents = 0, nsets = 0;
  // The count of discrete entities (MIP entities) is read with the others;
  // the column types already carry what it counts.
  if (ReadIntAttrib(p, ZRVS_ORIGINALCOLS, &ncols) < 0 ||
      ReadIntAttrib(p, ZRVS_ORIGINALROWS, &nrows) < 0 ||
      ReadIntAttrib(p, ZRVS_ORIGINALMIPENTS, &nents) < 0 ||
      ReadIntAttrib(p, ZRVS_ORIGINALSETS, &nsets) < 0)
    return -1;
  try {
    if (BuildColumns(p, ncols, out) < 0 || BuildRows(p, nrows, out) < 0 ||
        BuildSets(p, nsets, out) < 0)
      return -1;
  } catch (const std::bad_alloc &) {
    PyErr_NoMemory();
    return -1;
  }
  return 0;
}

// Puts the rebuilt lists and maps in place of the old ones (which are
// released) and clears the objective and nonlinear state of the old model.
void Install(ProblemObject *p, Rebuilt &rebuilt) {
  PyObject *old[3] = {p->varlist, p->conlist, p->soslist};
  p->varlist = rebuilt.vars.release();
  p->conlist = rebuilt.cons.release();
  p->soslist = rebuilt.sets.release();
  delete std::exchange(p->colmap, rebuilt.colmap.release());
  delete std::exchange(p->rowmap, rebuilt.rowmap.release());
  delete std::exchange(p->setmap, rebuilt.setmap.release());
  p->nl_constraints = 0;
  p->nl_objective = 0;
  p->formula_column = -1;
  p->objtransfer = -1;
  ForgetUserFunctions(p);
  // Released last: their destruction may run arbitrary code.
  for (PyObject *o : old) Py_XDECREF(o);
}

bool HasNonlinearParts(ProblemObject *p) { return p->nl_constraints > 0 || p->nl_objective; }

}  // namespace

int AdoptEngineModel(ProblemObject *p, bool column_names, bool row_names) {
  Rebuilt rebuilt;
  rebuilt.column_names = column_names;
  rebuilt.row_names = row_names;
  if (Rebuild(p, rebuilt) < 0) {
    // The engine holds the new model already: the old objects no longer
    // describe it, so the problem is left with none rather than wrong ones.
    Rebuilt empty;
    empty.vars.o = PyList_New(0);
    empty.cons.o = PyList_New(0);
    empty.sets.o = PyList_New(0);
    if (empty.vars.o && empty.cons.o && empty.sets.o) Install(p, empty);
    return -1;
  }
  Install(p, rebuilt);
  return 0;
}

PyObject *ProblemRead(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (CannotChange(p, "read")) return nullptr;
  static const char *keywords[] = {"filename", "options", nullptr};
  const char *filename = nullptr, *options = "";
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "s|s", const_cast<char **>(keywords), &filename,
                                   &options))
    return nullptr;
  // A failed read leaves the engine's model unchanged, so the Python side is
  // only replaced once the read has succeeded. The nonlinear library reads
  // no files, so a failed linear read is the answer.
  if (CallUnlocked(ZRVSreadprob, p->prob, filename, options) != 0)
    return ReportError(self, nullptr);
  if (AdoptEngineModel(p) < 0) {
    if (!PyErr_Occurred()) PyErr_SetString(ModelError, "Could not read problem");
    return nullptr;
  }
  Py_RETURN_NONE;
}

PyObject *ProblemWrite(PyObject *self, PyObject *args, PyObject *kwds) {
  auto *p = reinterpret_cast<ProblemObject *>(self);
  if (NotInitialized(p)) return nullptr;
  static const char *keywords[] = {"filename", "flags", nullptr};
  const char *filename = nullptr, *flags = "";
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "s|s", const_cast<char **>(keywords), &filename,
                                   &flags))
    return nullptr;
  // Nonlinear models go through the nonlinear library, which has no writer.
  if (std::strchr(flags, 'g') || HasNonlinearParts(p)) {
    PyErr_SetString(ModelError,
                    "Writing nonlinear problems is not available yet: the nonlinear library "
                    "cannot write problem files");
    return nullptr;
  }
  if (CallUnlocked(ZRVSwriteprob, p->prob, filename, flags) != 0)
    return ReportError(self, nullptr);
  Py_RETURN_NONE;
}

const char ReadDoc[] = ZRV_HELP(
    "Read a problem from an MPS or LP file, replacing the current model.",
    "p.read(filename, options='')",
    "filename: the file; the format comes from its extension (.mps, .lp, optionally "
    "followed by .gz) unless options say otherwise. options: 'l' LP, 'm' free MPS, 'f' fixed "
    "MPS.",
    "p = zorvan.problem()\n    p.read('model.mps')\n    x = p.getVariable()",
    "After reading, the problem holds new variable, constraint and SOS objects made from the "
    "file's columns, rows and sets, with their names, bounds, types and sides; the "
    "constraints have no body. Objects from before the read no longer belong to the "
    "problem. When reading fails the problem keeps its model and objects.",
    "problem.write, problem.getVariable, problem.getConstraint, problem.getSOS");

const char WriteDoc[] = ZRV_HELP(
    "Write the problem to an MPS or LP file.",
    "p.write(filename, flags='')",
    "filename: the file; the format comes from its extension (.mps, .lp, optionally "
    "followed by .gz for gzip) unless flags say otherwise. flags: 'l' LP, 'm' free MPS, 'f' "
    "fixed MPS; 'g' asks for the nonlinear writer.",
    "p.write('model.lp')",
    "Reading the file back gives the same model. Problems with nonlinear parts cannot be "
    "written yet.",
    "problem.read");

}  // namespace zrv
