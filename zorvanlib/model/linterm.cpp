#include "model/linterm.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject LinTermType{};

namespace {
constexpr char kRefusal[] = "Linear terms are made by arithmetic on variables and are not available yet";
}  // namespace

void SetupLinTermType() {
  PyTypeObject &t = LinTermType;
  InitType(t, "zorvan.linterm", sizeof(LinTermObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A linear term: a coefficient times one variable.", "t = 3 * x", "Made by multiplying a variable by a number; the type is not called directly.", "t = 3 * x", "Terms combine into expressions under addition.", "var, quadterm, expression");
}

}  // namespace zrv
