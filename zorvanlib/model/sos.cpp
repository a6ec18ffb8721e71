#include "model/sos.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject SosType{};

namespace {
constexpr char kRefusal[] = "Creating SOS objects is not available yet";
}  // namespace

void SetupSosType() {
  PyTypeObject &t = SosType;
  InitType(t, "zorvan.sos", sizeof(SosObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A special ordered set (SOS) of type 1 or 2 over some variables.", "s = zorvan.sos(indices, weights, type=1, name=None)", "indices: the variables of the set; weights: their ordering weights; type: 1 or 2; name: optional name.", "s = zorvan.sos([x, y, z], [1, 2, 3], type=1)", "At most one (type 1) or two adjacent (type 2) variables of the set may be non-zero.", "var, constraint, problem");
}

}  // namespace zrv
