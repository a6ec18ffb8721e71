#include "model/expression.h"

#include "model/pending.h"
#include "module/help.h"
#include "module/types.h"

namespace zrv {

PyTypeObject ExpressionType{};

namespace {
constexpr char kRefusal[] = "Building expressions is not available yet";
}  // namespace

void SetupExpressionType() {
  PyTypeObject &t = ExpressionType;
  InitType(t, "zorvan.expression", sizeof(ExpressionObject));
  t.tp_init = RefuseInit<kRefusal>;
  t.tp_doc = ZRV_HELP("A polynomial of degree at most two in the variables: a constant, a linear and a quadratic part.", "e = 2 * x + 3 * y * y + 1", "Built by arithmetic on variables and numbers; the type is not called directly.", "e = x + 2 * y - 3", "Comparisons of expressions build constraints; an expression can be an objective.", "var, constraint, problem");
}

}  // namespace zrv
