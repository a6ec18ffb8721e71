#include "model/constraint.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject ConstraintType{};

namespace {
constexpr char kRefusal[] = "Creating constraints is not available yet";
}  // namespace

void SetupConstraintType() {
  PyTypeObject &t = ConstraintType;
  InitType(t, "zorvan.constraint", sizeof(ConstraintObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A constraint: an expression with a lower and an upper bound.", "c = zorvan.constraint(body=None, lb=-zorvan.infinity, ub=zorvan.infinity, name=None)", "body: an expression; lb, ub: its bounds; name: optional name.", "c = x + 2 * y <= 10", "Usually built with the comparison operators <=, >= and == on expressions.", "var, expression, problem");
}

}  // namespace zrv
