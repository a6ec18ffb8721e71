// The one body decomposer: a body (number, var, linterm, quadterm or
// expression) turned into the engine's terms by column, for rows and for
// objectives alike. Nonlinear bodies are refused here until formulas exist.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstdint>

#include "base/globals.h"
#include "base/index_map.h"
#include "model/expression.h"
#include "model/linterm.h"
#include "model/operand.h"
#include "model/quadterm.h"
#include "model/var.h"

namespace zrv {

// The column of a variable in a problem's column map (which may be null).
// 0, or -1 with ModelError "Variable ... not in problem".
inline int ColumnOf(const IndexMap *columns, PyObject *var, uint64_t id, int *col) {
  int32_t found = columns ? columns->Find(id) : IndexMap::kAbsent;
  if (found == IndexMap::kAbsent) {
    PyErr_Format(ModelError, "Variable %S not in problem", var);
    return -1;
  }
  *col = found;
  return 0;
}

// What a body may be besides linear and quadratic, and the ModelError texts
// for what it may not be.
struct BodyRules {
  bool number;            // a plain number is a constant body
  const char *nonlinear;  // for a nonlinear node
  const char *invalid;    // for anything else
};

// Splits body into its constant (*constant) and its entries, handed to the
// sink as sink.Linear(col, coef) and sink.Quadratic(col1, col2, coef) for
// the product coef * x[col1] * x[col2], once per product as written; each
// returns 0 or -1. 0, or -1 with an error set.
template <class Sink>
int DecomposeBody(const IndexMap *columns, PyObject *body, const BodyRules &rules, Sink &sink,
                  double *constant) {
  *constant = 0.0;
  auto linear = [&](PyObject *var, uint64_t id, double coef) {
    int col;
    return ColumnOf(columns, var, id, &col) < 0 ? -1 : sink.Linear(col, coef);
  };
  auto quadratic = [&](PyObject *v1, PyObject *v2, double coef) {
    int c1, c2;
    if (ColumnOf(columns, v1, VarIdOf(v1), &c1) < 0 ||
        ColumnOf(columns, v2, VarIdOf(v2), &c2) < 0)
      return -1;
    return sink.Quadratic(c1, c2, coef);
  };
  switch (KindOf(body)) {
    case KindNumber: {
      if (!rules.number) break;
      double v = NumberValue(body);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      *constant = v;
      return 0;
    }
    case KindVar: return linear(body, VarIdOf(body), 1.0);
    case KindLinTerm: {
      auto *t = reinterpret_cast<LinTermObject *>(body);
      return linear(t->var, VarIdOf(t->var), t->coef);
    }
    case KindQuadTerm: {
      auto *t = reinterpret_cast<QuadTermObject *>(body);
      return quadratic(t->var1, t->var2, t->coef);
    }
    case KindExpression: {
      *constant = AsExpression(body)->constant;
      // Straight from the expression's ordered entries, by their identifiers.
      for (const LinEntry &e : ExpressionLinear(body))
        if (linear(e.var, e.id, e.coef) < 0) return -1;
      for (const QuadEntry &e : ExpressionQuadratic(body))
        if (quadratic(e.var1, e.var2, e.coef) < 0) return -1;
      return 0;
    }
    case KindNonlinear: PyErr_SetString(ModelError, rules.nonlinear); return -1;
    default: break;
  }
  PyErr_SetString(ModelError, rules.invalid);
  return -1;
}

}  // namespace zrv
