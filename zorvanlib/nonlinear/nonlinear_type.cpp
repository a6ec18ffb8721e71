#include "nonlinear/nonlinear.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject NonlinearType{};

namespace {
constexpr char kRefusal[] = "Nonlinear expressions are made by arithmetic on variables and are not available yet";
}  // namespace

void SetupNonlinearType() {
  PyTypeObject &t = NonlinearType;
  InitType(t, "zorvan.nonlinear", sizeof(NonlinearObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A nonlinear expression: a tree of operators and functions over variables.", "f = zorvan.sin(x) * y ** 3", "Made by operations beyond degree two and by mathematical functions; not called directly.", "f = x * y * z", "Nonlinear expressions may appear in constraints and objectives.", "var, expression, constraint");
}

}  // namespace zrv
