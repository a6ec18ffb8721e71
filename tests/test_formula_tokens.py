"""Nonlinear bodies as the solver stores them: how a body is split into
linear, quadratic and formula parts, and the token streams of the formulas,
read back from the solver after addConstraint and setObjective."""
import math

import pytest

import zorvan as z
from zorvan import zorvanlib

END, CON, COL, USER, FUNC, ARGS, OP = 0, 1, 10, 11, 12, 22, 31
NEG, POW, TIMES, DIV, PLUS, MINUS = 1, 2, 3, 4, 5, 6
SIN, COS, EXP, PWL = 27, 28, 16, 35


@pytest.fixture
def model():
    p = z.problem()
    x, y, w = z.var(name="x", lb=-10), z.var(name="y", lb=-10), z.var(name="w", lb=-10)
    p.addVariable(x, y, w)
    return p, x, y, w


def formulas(p, row):
    """(column, factor, tokens) per column of the row's formulas, each the
    only term of its column."""
    got = zorvanlib._rowformulas(p, row)
    assert all(terms == 1 for _, terms, _, _ in got)
    return [(c, f, t) for c, _, f, t in got]


def fixed_activity(p, lo_hi, row):
    """The row's activity with the variables fixed: rhs minus slack."""
    p.chgbounds([v for v, _ in lo_hi], ["B"] * len(lo_hi), [value for _, value in lo_hi])
    p.setObjective(lo_hi[0][0])
    p.optimize()
    assert p.getProbStatusString() in ("nlp_solution", "nlp_globally_optimal")
    return p.getSlack(row)


def column(p, v):
    return float(p.getIndex(v))


def sin_of(tokens):
    return [(ARGS, 0)] + tokens + [(FUNC, SIN)]


# --- splitting a body ---------------------------------------------------------

def test_root_product_gives_the_column_and_factor_of_the_formula(model):
    p, x, y, _ = model
    body = x * z.sin(y)
    body *= 2  # in place: one product [x, sin(y), 2]
    p.addConstraint(body <= 5)
    [(col, factor, tokens)] = formulas(p, 0)
    assert (col, factor) == (p.getIndex(x), 2.0)
    assert tokens == sin_of([(COL, column(p, y))])


def test_top_level_sum_gives_one_formula_per_tree_and_a_linear_rest(model):
    p, x, y, _ = model
    p.addConstraint(z.sin(x) + z.cos(x) + 3 * y <= 1)
    [(col, terms, _, tokens)] = zorvanlib._rowformulas(p, 0)
    assert (col, terms) == (-1, 2)
    assert tokens.count((FUNC, SIN)) == 1 and tokens.count((FUNC, COS)) == 1
    assert (COL, column(p, y)) not in tokens
    # The linear rest is an ordinary row entry.
    slack = fixed_activity(p, [(y, -1.0), (x, 0.5)], 0)
    assert slack == pytest.approx(1 - (math.sin(0.5) + math.cos(0.5) - 3), abs=1e-6)


def test_difference_negates_the_factor_of_its_right_side(model):
    p, x, y, w = model
    p.addConstraint(z.exp(x) - z.sin(y) <= 2, z.exp(x) - z.sin(y) >= w)
    [(col, terms, _, _)] = zorvanlib._rowformulas(p, 0)
    assert (col, terms) == (-1, 2)
    # A difference inside a difference is one formula of its own.
    assert formulas(p, 1) == [(-1, 1.0, [(ARGS, 0), (COL, column(p, x)), (FUNC, EXP),
                                         (ARGS, 0), (COL, column(p, y)), (FUNC, SIN),
                                         (OP, MINUS)])]
    slack = fixed_activity(p, [(w, 0.25), (x, 0.3), (y, 0.7)], 0)
    assert slack == pytest.approx(2 - (math.exp(0.3) - math.sin(0.7)), abs=1e-6)
    assert p.getSlack(1) == pytest.approx(-(math.exp(0.3) - math.sin(0.7) - 0.25), abs=1e-6)


# --- token streams ------------------------------------------------------------

def test_terms_inside_formulas_follow_the_term_rule(model):
    p, x, y, w = model
    p.addConstraint(z.sin(-1 * y) <= 1, z.sin(3 * y) <= 1, z.sin(2 * x * y) <= 1)
    cy, cx = column(p, y), column(p, x)
    assert formulas(p, 0)[0][2] == sin_of([(COL, cy), (OP, NEG)])
    assert formulas(p, 1)[0][2] == sin_of([(CON, 3.0), (COL, cy), (OP, TIMES)])
    [(_, _, t)] = formulas(p, 2)
    inner = t[1:-1]
    assert inner[0] == (CON, 2.0) and inner[-1] == (OP, TIMES)
    assert sorted(inner[1:3]) == sorted([(COL, cx), (COL, cy)]) and inner[3] == (OP, TIMES)


def test_sums_are_written_as_balanced_trees(model):
    p, x, y, w = model
    parts = [z.exp(x), z.exp(y), z.exp(w), z.exp(x), z.exp(y)]
    inner = parts[0]
    for e in parts[1:]:
        inner = inner + e
    p.addConstraint(z.sin(inner) <= 1)
    [(_, _, t)] = formulas(p, 0)
    ops = [i for i, tok in enumerate(t) if tok == (OP, PLUS)]
    exps = [i for i, tok in enumerate(t) if tok == (FUNC, EXP)]
    # a b + c d + + e +: a plus after the 2nd and two after the 4th operand.
    assert len(ops) == 4 and len(exps) == 5
    assert ops[0] > exps[1] and ops[0] < exps[2]
    assert ops[1] > exps[3] and ops[2] == ops[1] + 1 and ops[2] < exps[4]
    assert ops[3] == len(t) - 2


def test_expression_leaf_writes_constant_linear_and_quadratic_terms(model):
    p, x, y, _ = model
    p.addConstraint(z.sin(1 + 2 * x + x * y) <= 1)
    [(_, _, t)] = formulas(p, 0)
    inner = t[1:-1]
    assert inner[0] == (CON, 1.0)
    assert (CON, 2.0) in inner and inner.count((OP, PLUS)) == 2
    assert inner[-1] == (OP, PLUS)


def test_pwl_breakpoints_reach_the_solver_last_first(model):
    p, x, _, _ = model
    f = z.pwl({(0, 1): x, (1, 2): 2 * x - 1})
    p.addConstraint(f <= 10)
    [(_, _, t)] = formulas(p, 0)
    assert t[0] == (ARGS, 0) and t[-1] == (FUNC, PWL) and t[-2] == (COL, column(p, x))
    values = [v for _, v in t[1:-2]]
    # Breakpoints (0,0), (1,1), (2,3) as x1 y1 x2 y2 ... read backwards.
    assert values == [3.0, 2.0, 1.0, 1.0, 0.0, 0.0]


def test_user_functions_are_registered_once_per_problem(model):
    p, x, y, _ = model

    def f(a, b):
        return a * b

    p.addConstraint(z.user(f, x, y) <= 1, z.user(f, y, x) >= -1)
    [(_, _, t0)], [(_, _, t1)] = formulas(p, 0), formulas(p, 1)
    assert t0[0] == (ARGS, 0) and t0[-1][0] == USER and t0[-1][1] >= 1
    # Arguments last first.
    assert t0[1:3] == [(COL, column(p, y)), (COL, column(p, x))]
    assert t1[-1] == t0[-1]


def test_depth_64_is_accepted_and_65_refused(model):
    p, x, _, _ = model

    def chain(levels):  # levels counts the variable at the bottom
        e = x
        for _ in range(levels - 1):
            e = z.sin(e)
        return e

    p.addConstraint(chain(64) <= 1)
    [(_, _, t)] = formulas(p, 0)
    assert t.count((FUNC, SIN)) == 63
    with pytest.raises(z.ModelError, match="expression tree depth reached the maximum limit"):
        p.addConstraint(chain(65) <= 1)
    assert p.attributes.rows == 1


def test_large_formulas_are_written_whole(model):
    p, x, y, _ = model
    e = z.exp(x)
    for k in range(1, 3001):
        e = e + z.sin(k * y)
    p.addConstraint(z.cos(e) <= 1)
    [(_, _, t)] = formulas(p, 0)
    assert t.count((FUNC, SIN)) == 3000 and t.count((OP, PLUS)) == 3000


# --- bad input ------------------------------------------------------------------

@pytest.mark.parametrize("build, message", [
    (lambda x, o: z.sin(x + o), "Variable o not in problem|has not been added to problem yet"),
    (lambda x, o: z.sin(o) + x, "Variable in nonlinear part of constraint has not been added"),
    (lambda x, o: z.sin(3 * o), "Variable in nonlinear expression has not been added"),
    (lambda x, o: z.sin(x) - 2 * o, "Variable o not in problem"),
])
def test_variables_outside_the_problem_are_refused(model, build, message):
    p, x, _, _ = model
    o = z.var(name="o")
    with pytest.raises(z.ModelError, match=message):
        p.addConstraint(build(x, o) <= 1)
    assert p.attributes.rows == 0


def test_root_product_variable_outside_the_problem(model):
    p, x, _, _ = model
    o = z.var(name="o")
    body = o * z.sin(x)
    body *= 2
    with pytest.raises(z.ModelError, match="Variable in nonlinear term not added to problem yet"):
        p.addConstraint(body <= 1)
