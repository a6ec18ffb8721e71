// problem.addSOS: special ordered sets become engine sets, all of one call
// together.
#include <string>
#include <vector>

#include "problem/arguments.h"
#include "model/sos.h"
#include "model/var.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/text.h"
#include "base/types.h"
#include "problem/add_objects.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

struct SetBatch {
  std::vector<char> type;
  std::vector<int64_t> start{0};
  std::vector<int> cols;
  std::vector<double> weights;
  std::string names;
};

int Record(ProblemObject *p, PyObject *o, int index, SetBatch &b) {
  if (Py_TYPE(o) != &SosType) {
    PyErr_SetString(ModelError, "Object added is not a SOS");
    return -1;
  }
  auto *s = reinterpret_cast<SosObject *>(o);
  if (p->setmap->Contains(s->word)) {
    PyErr_SetString(ModelError, "SOS already added to problem");
    return -1;
  }
  if (!s->indices || !PyList_Check(s->indices)) {
    PyErr_SetString(ModelError, "SOS indices must be passed as a list");
    return -1;
  }
  if (!s->weights || !PyList_Check(s->weights)) {
    PyErr_SetString(ModelError, "SOS weights must be passed as a list");
    return -1;
  }
  Py_ssize_t n = PyList_GET_SIZE(s->indices);
  for (Py_ssize_t i = 0; i < n; ++i) {
    PyObject *v = PyList_GET_ITEM(s->indices, i);
    if (Py_TYPE(v) != &VarType) {
      PyErr_Format(ModelError, "Invalid variable object %S", v);
      return -1;
    }
    int32_t col = p->colmap->Find(VarIdOf(v));
    if (col == IndexMap::kAbsent) {
      PyErr_SetString(ModelError, "SOS contains variable that was not added to the problem");
      return -1;
    }
    b.cols.push_back(col);
  }
  // The weights must match the members one to one.
  Py_ssize_t length = n;
  NativeArray weights;
  if (SequenceToArray(p, &length, s->weights, weights.slot(), ElemDouble) < 0) return -1;
  b.weights.insert(b.weights.end(), weights.as<double>(), weights.as<double>() + n);
  b.type.push_back(s->type == 2 ? '2' : '1');
  b.start.push_back(static_cast<int64_t>(b.cols.size()));
  PyObject *name = s->name ? PyObject_Str(s->name) : PyUnicode_FromFormat("sos%d", index);
  if (!name) return -1;
  Py_ssize_t len;
  const char *text = PyUnicode_AsUTF8AndSize(name, &len);
  if (text && CheckNameText(text, len, "SOS", name) < 0) text = nullptr;
  if (text) {
    b.names.append(text, static_cast<size_t>(len));
    b.names += '\0';
  }
  Py_DECREF(name);
  if (!text) return -1;
  if (PyList_Append(p->soslist, o) < 0) return -1;
  p->setmap->Set(s->word, index);
  return 0;
}

}  // namespace

int AddSosBatch(ProblemObject *p, PyObject *const *items, Py_ssize_t n) {
  if (NotInitialized(p)) return -1;
  if (n <= 0) return 0;
  int first = 0;
  if (ReadIntAttrib(p, ZRVS_ORIGINALSETS, &first) < 0) return -1;
  const Py_ssize_t listed = PyList_GET_SIZE(p->soslist);
  SetBatch b;
  for (Py_ssize_t i = 0; i < n; ++i) {
    if (Record(p, items[i], first + static_cast<int>(i), b) < 0) {
      ForgetTail(p, ModelObjectKind::Sos, listed);
      return -1;
    }
  }
  const int count = static_cast<int>(n);
  ZRVSprob prob = p->prob;
  int rc = CallUnlocked(ZRVSaddsets64, prob, count, static_cast<int64_t>(b.cols.size()),
                        b.type.data(), b.start.data(), b.cols.data(), b.weights.data());
  bool added = rc == 0;
  if (rc == 0) rc = CallUnlocked(ZRVSaddnames, prob, 3, b.names.data(), first, first + count - 1);
  if (rc != 0) {
    ReportError(reinterpret_cast<PyObject *>(p), nullptr);
    if (added) {
      std::vector<int> sets(static_cast<size_t>(count));
      for (int k = 0; k < count; ++k) sets[static_cast<size_t>(k)] = first + k;
      CallUnlocked(ZRVSdelsets, prob, count, static_cast<const int *>(sets.data()));
    }
    ForgetTail(p, ModelObjectKind::Sos, listed);
    return -1;
  }
  return 0;
}

PyObject *ProblemAddSos(PyObject *self, PyObject *args) {
  return AddFlattened(self, args, "addSOS", AddSosBatch);
}

const char AddSosDoc[] = ZRV_HELP(
    "Add special ordered sets to the problem.",
    "p.addSOS(s1, s2, ...)",
    "Any number of sos objects, or lists, tuples, generators or other iterables of them.",
    "p.addVariable(x, y, z)\n    p.addSOS(zorvan.sos([x, y, z], [1, 2, 3], type=1))",
    "Every variable of a set must already be in the problem, and there must be one weight "
    "per variable. A set of type 1 lets at most one of its variables be non-zero; type 2 at "
    "most two, adjacent in the order of the weights. The solver needs finite bounds on the "
    "members. When a set is refused, none of the call is added.",
    "sos, problem.delSOS, problem.getSOS, problem.addVariable");

}  // namespace zrv
