// The one body decomposer: a body (number, var, linterm, quadterm,
// expression or nonlinear tree) turned into the engine's terms by column,
// for rows and for objectives alike: a constant, linear and quadratic
// entries, and nonlinear formulas written as tokens.
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
#include "nonlinear/formula_tokens.h"
#include "nonlinear/nonlinear.h"

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

// Where the formulas of a body go: null `tokens` refuses nonlinear bodies
// with the rules' `nonlinear` text.
struct BodyFormulas {
  FormulaTokens *tokens = nullptr;
  FormulaContext context;
};

namespace terms_detail {

// The linear and quadratic part of a non-tree operand times `scale`, its
// constant added to *constant.
template <class Sink>
int AddScaled(const IndexMap *columns, PyObject *body, OperandKind kind, double scale,
              Sink &sink, double *constant) {
  auto linear = [&](PyObject *var, uint64_t id, double coef) {
    int col;
    return ColumnOf(columns, var, id, &col) < 0 ? -1 : sink.Linear(col, scale * coef);
  };
  auto quadratic = [&](PyObject *v1, PyObject *v2, double coef) {
    int c1, c2;
    if (ColumnOf(columns, v1, VarIdOf(v1), &c1) < 0 ||
        ColumnOf(columns, v2, VarIdOf(v2), &c2) < 0)
      return -1;
    return sink.Quadratic(c1, c2, scale * coef);
  };
  switch (kind) {
    case KindNumber: {
      double v = NumberValue(body);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      *constant += scale * v;
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
      *constant += scale * AsExpression(body)->constant;
      // Straight from the expression's ordered entries, by their identifiers.
      for (const LinEntry &e : ExpressionLinear(body))
        if (linear(e.var, e.id, e.coef) < 0) return -1;
      for (const QuadEntry &e : ExpressionQuadratic(body))
        if (quadratic(e.var1, e.var2, e.coef) < 0) return -1;
      return 0;
    }
    default: return 0;
  }
}

// One operand of a top-level sum or difference: a tree becomes a formula of
// factor `scale`, anything else goes to the linear and quadratic entries.
template <class Sink>
int AddSummand(const IndexMap *columns, PyObject *o, double scale, Sink &sink,
               const BodyFormulas &f, double *constant, const char *invalid) {
  const OperandKind kind = KindOf(o);
  if (kind == KindNonlinear) return WriteFormula(o, scale, f.context, *f.tokens);
  if (kind < KindNumber || kind > KindExpression) {
    PyErr_SetString(ModelError, invalid);
    return -1;
  }
  return AddScaled(columns, o, kind, scale, sink, constant);
}

}  // namespace terms_detail

// Splits body into its constant (*constant) and its entries, handed to the
// sink as sink.Linear(col, coef) and sink.Quadratic(col1, col2, coef) for
// the product coef * x[col1] * x[col2], once per product as written; each
// returns 0 or -1. A nonlinear tree gives formulas: each tree operand of a
// top-level sum one of its own (the other operands linear or quadratic), a
// difference its left and its negated right side likewise, any other tree
// one formula. 0, or -1 with an error set.
template <class Sink>
int DecomposeBody(const IndexMap *columns, PyObject *body, const BodyRules &rules, Sink &sink,
                  double *constant, const BodyFormulas &formulas = BodyFormulas()) {
  *constant = 0.0;
  const OperandKind kind = KindOf(body);
  if (kind == KindNumber && !rules.number) {
    PyErr_SetString(ModelError, rules.invalid);
    return -1;
  }
  if (kind >= KindNumber && kind <= KindExpression)
    return terms_detail::AddScaled(columns, body, kind, 1.0, sink, constant);
  if (kind != KindNonlinear) {
    PyErr_SetString(ModelError, rules.invalid);
    return -1;
  }
  if (!formulas.tokens) {
    PyErr_SetString(ModelError, rules.nonlinear);
    return -1;
  }
  const int op = reinterpret_cast<NonlinearObject *>(body)->op;
  PyObject *args = reinterpret_cast<NonlinearObject *>(body)->args;
  if (op == OpSum && args && (PyList_Check(args) || PyTuple_Check(args))) {
    const Py_ssize_t n = PySequence_Fast_GET_SIZE(args);
    for (Py_ssize_t i = 0; i < n; ++i)
      if (terms_detail::AddSummand(columns, PySequence_Fast_GET_ITEM(args, i), 1.0, sink,
                                   formulas, constant, "Invalid expression in nonlinear sum") < 0)
        return -1;
    return 0;
  }
  if (op == OpMinus && args && PyTuple_Check(args) && PyTuple_GET_SIZE(args) == 2) {
    if (terms_detail::AddSummand(columns, PyTuple_GET_ITEM(args, 0), 1.0, sink, formulas,
                                 constant, "Invalid expression") < 0)
      return -1;
    return terms_detail::AddSummand(columns, PyTuple_GET_ITEM(args, 1), -1.0, sink, formulas,
                                    constant, "Invalid expression");
  }
  return WriteFormula(body, 1.0, formulas.context, *formulas.tokens);
}

}  // namespace zrv
