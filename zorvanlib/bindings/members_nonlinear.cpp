// The one-to-one members of the nonlinear solver that the nonlinear models
// need: initial values of columns for its first iterate.
#include <cstdint>
#include <iterator>

#include "base/engine_call.h"
#include "base/errors.h"
#include "bindings/binding.h"
#include "bindings/help_nonlinear.h"
#include "bindings/members.h"
#include "problem/arguments.h"
#include "zorvan/zslp.h"

namespace zrv {

namespace {

using KW = const char *const[];
constexpr KW kInitVal = {"colind", "initial", nullptr};

PyObject *NlpSetInitVal(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds) {
  PyObject *objs[2] = {nullptr, nullptr};
  if (!ParseArgs(b, args, kwds, &objs[0], &objs[1])) return nullptr;
  const int codes[2] = {ElemColumn, ElemDouble};
  NativeArray arrays[2];
  Py_ssize_t n = -1;
  for (int k = 0; k < 2; ++k) {
    if (!objs[k] || objs[k] == Py_None) return MissingArgument(b, k);
    if (SequenceToArray(p, &n, objs[k], arrays[k].slot(), codes[k]) < 0) return nullptr;
  }
  if (n > INT32_MAX) {
    PyErr_SetString(InterfaceError, "Too many elements in one call");
    return nullptr;
  }
  if (CallUnlocked(ZRVSnlpsetinitval, p->prob, static_cast<int>(n), arrays[0].as<const int>(),
                   arrays[1].as<const double>()) != 0)
    return ReportError(reinterpret_cast<PyObject *>(p), nullptr);
  Py_RETURN_NONE;
}

constexpr bool kChanges = true;

}  // namespace

struct NonlinearMemberTable {
  static const Binding rows[];
};

// name, worker, format, keywords, legacy keywords, changes the model, help
const Binding NonlinearMemberTable::rows[] = {
    {"nlpsetinitval", NlpSetInitVal, "OO", kInitVal, nullptr, kChanges, help::kNlpSetInitVal},
};

int RegisterNonlinearMembers() {
  return RegisterTable<NonlinearMemberTable>(
      std::make_index_sequence<std::size(NonlinearMemberTable::rows)>());
}

}  // namespace zrv
