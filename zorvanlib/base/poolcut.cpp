// The `poolcut` type: the handle of a cut in the engine's cut pool.
#include "base/poolcut.h"

#include "base/help.h"
#include "base/types.h"

namespace zrv {

PyTypeObject PoolCutType{};

namespace {
// Cut handles are made by the module; the initialiser takes any arguments.
int PoolCutInit(PyObject *, PyObject *, PyObject *) { return 0; }
}  // namespace

void SetupPoolCutType() {
  PyTypeObject &t = PoolCutType;
  InitType(t, "zorvan.poolcut", sizeof(PoolCutObject));
  t.tp_init = PoolCutInit;
  t.tp_doc = ZRV_HELP(
      "The handle of a cut in the solver's cut pool.",
      "returned by the cut methods of problem",
      "None: cut handles are made by the module and passed back to it unchanged.",
      "cuts = p.getcpcuts(...)  # a list of poolcut objects",
      "A poolcut has no behaviour of its own; it identifies one cut.",
      "problem, branchobj");
}

}  // namespace zrv
