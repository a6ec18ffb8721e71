#include "model/quadterm.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject QuadTermType{};

namespace {
constexpr char kRefusal[] = "Quadratic terms are made by arithmetic on variables and are not available yet";
}  // namespace

void SetupQuadTermType() {
  PyTypeObject &t = QuadTermType;
  InitType(t, "zorvan.quadterm", sizeof(QuadTermObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A quadratic term: a coefficient times the product of two variables.", "t = 2 * x * y", "Made by multiplying variables and terms; the type is not called directly.", "t = 2 * x * y", "Terms combine into expressions under addition.", "var, linterm, expression");
}

}  // namespace zrv
