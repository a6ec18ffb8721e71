"""Nonlinear problems solved from Python: Hock-Schittkowski problems against
their published optima, a QCQP and a nonconvex QP with their KKT conditions,
and the solution readers on nonlinear problems."""
import math

import pytest

import zorvan as z
from kkt import assert_kkt


def new_vars(p, n, lb=-1e20, ub=1e20):
    xs = [z.var(name=f"x{i + 1}", lb=lb, ub=ub) for i in range(n)]
    p.addVariable(xs)
    return xs


def solve(p):
    p.controls.outputlog = 0
    p.optimize()
    return p.getProbStatusString()


def optimal(status):
    return status in ("nlp_solution", "nlp_globally_optimal", "lp_optimal")


# --- Hock-Schittkowski problems ---------------------------------------------------
# Each builder returns (problem, objective, constraints, variables); the
# published optimal objective value and starting point are in HS_OPTIMA.

def hs071():
    p = z.problem()
    x = new_vars(p, 4, lb=1, ub=5)
    cons = [x[0] * x[1] * x[2] * x[3] >= 25,
            x[0] ** 2 + x[1] ** 2 + x[2] ** 2 + x[3] ** 2 == 40]
    obj = x[0] * x[3] * (x[0] + x[1] + x[2]) + x[2]
    return p, obj, cons, x


def hs035():
    p = z.problem()
    x = new_vars(p, 3, lb=0)
    obj = (9 - 8 * x[0] - 6 * x[1] - 4 * x[2] + 2 * x[0] ** 2 + 2 * x[1] ** 2 + x[2] ** 2
           + 2 * x[0] * x[1] + 2 * x[0] * x[2])
    return p, obj, [x[0] + x[1] + 2 * x[2] <= 3], x


def hs035_nonlinear():
    # The same problem with its objective as a formula: exp(log(.)) of it.
    p, obj, cons, x = hs035()
    return p, z.exp(z.log(obj + 1)) - 1, cons, x


def hs038():
    p = z.problem()
    x = new_vars(p, 4, lb=-10, ub=10)
    obj = (100 * (x[1] - x[0] ** 2) ** 2 + (1 - x[0]) ** 2 + 90 * (x[3] - x[2] ** 2) ** 2
           + (1 - x[2]) ** 2 + 10.1 * ((x[1] - 1) ** 2 + (x[3] - 1) ** 2)
           + 19.8 * (x[1] - 1) * (x[3] - 1))
    return p, obj, [], x


def hs100():
    p = z.problem()
    x = new_vars(p, 7)
    x1, x2, x3, x4, x5, x6, x7 = x
    obj = ((x1 - 10) ** 2 + 5 * (x2 - 12) ** 2 + x3 ** 4 + 3 * (x4 - 11) ** 2 + 10 * x5 ** 6
           + 7 * x6 ** 2 + x7 ** 4 - 4 * x6 * x7 - 10 * x6 - 8 * x7)
    cons = [2 * x1 ** 2 + 3 * x2 ** 4 + x3 + 4 * x4 ** 2 + 5 * x5 <= 127,
            7 * x1 + 3 * x2 + 10 * x3 ** 2 + x4 - x5 <= 282,
            23 * x1 + x2 ** 2 + 6 * x6 ** 2 - 8 * x7 <= 196,
            4 * x1 ** 2 + x2 ** 2 - 3 * x1 * x2 + 2 * x3 ** 2 + 5 * x6 - 11 * x7 <= 0]
    return p, obj, cons, x


def hs006():
    p = z.problem()
    x = new_vars(p, 2)
    return p, (1 - x[0]) ** 2, [10 * (x[1] - x[0] ** 2) == 0], x


def hs010():
    p = z.problem()
    x = new_vars(p, 2)
    return p, x[0] - x[1], [-3 * x[0] ** 2 + 2 * x[0] * x[1] - x[1] ** 2 + 1 >= 0], x


def hs039():
    p = z.problem()
    x = new_vars(p, 4)
    cons = [x[1] - x[0] ** 3 - x[2] ** 2 == 0, x[0] ** 2 - x[1] - x[3] ** 2 == 0]
    return p, -x[0], cons, x


def hs040():
    p = z.problem()
    x = new_vars(p, 4)
    cons = [x[0] ** 3 + x[1] ** 2 == 1, x[0] ** 2 * x[3] - x[2] == 0, x[3] ** 2 - x[1] == 0]
    return p, -x[0] * x[1] * x[2] * x[3], cons, x


def hs041():
    p = z.problem()
    x = [z.var(name=f"x{i + 1}", lb=0, ub=2 if i == 3 else 1) for i in range(4)]
    p.addVariable(x)
    return p, 2 - x[0] * x[1] * x[2], [x[0] + 2 * x[1] + 2 * x[2] - x[3] == 0], x


def hs078():
    p = z.problem()
    x = new_vars(p, 5)
    cons = [sum(v ** 2 for v in x) == 10, x[1] * x[2] - 5 * x[3] * x[4] == 0,
            x[0] ** 3 + x[1] ** 3 == -1]
    return p, x[0] * x[1] * x[2] * x[3] * x[4], cons, x


HS_OPTIMA = {
    hs071: (17.0140173, (1, 5, 5, 1)),
    hs035: (1.0 / 9.0, (0.5, 0.5, 0.5)),
    hs035_nonlinear: (1.0 / 9.0, (0.5, 0.5, 0.5)),
    hs038: (0.0, (-3, -1, -3, -1)),
    hs100: (680.6300573, (1, 2, 0, 4, 0, 1, 1)),
    hs006: (0.0, (-1.2, 1)),
    hs010: (-1.0, (-10, 10)),
    hs039: (-1.0, (2, 2, 2, 2)),
    hs040: (-0.25, (0.8, 0.8, 0.8, 0.8)),
    hs041: (52.0 / 27.0, (2, 2, 2, 2)),
    hs078: (-2.91970041, (-2, 1.5, 2, -1, -1)),
}


@pytest.mark.parametrize("build", list(HS_OPTIMA), ids=lambda f: f.__name__)
def test_hock_schittkowski_problems_reach_their_published_optima(build):
    p, obj, cons, x = build()
    p.addConstraint(cons)
    p.setObjective(obj)
    f_star, start = HS_OPTIMA[build]
    p.nlpsetinitval(x, list(start))
    status = solve(p)
    assert optimal(status), status
    assert p.getObjVal() == pytest.approx(f_star, rel=1e-5, abs=1e-6)
    # The reported objective is the objective's value at the solution.
    assert p.getSolution(obj) == pytest.approx(p.getObjVal(), rel=1e-6, abs=1e-6)
    assert_kkt(p, obj, cons, x)


# --- QCQP and nonconvex QP -------------------------------------------------------

def test_qcqp_rosen_suzuki():
    p = z.problem()
    x = new_vars(p, 4)
    x1, x2, x3, x4 = x
    cons = [x1 ** 2 + x2 ** 2 + x3 ** 2 + x4 ** 2 + x1 - x2 + x3 - x4 <= 8,
            x1 ** 2 + 2 * x2 ** 2 + x3 ** 2 + 2 * x4 ** 2 - x1 - x4 <= 10,
            2 * x1 ** 2 + x2 ** 2 + x3 ** 2 + 2 * x1 - x2 - x4 <= 5]
    obj = x1 ** 2 + x2 ** 2 + 2 * x3 ** 2 + x4 ** 2 - 5 * x1 - 5 * x2 - 21 * x3 + 7 * x4
    p.addConstraint(cons)
    p.setObjective(obj)
    p.controls.outputlog = 0
    p.optimize()
    assert p.getObjVal() == pytest.approx(-44.0, abs=1e-5)
    assert p.getSolution(x) == pytest.approx([0, 1, 2, -1], abs=1e-4)
    assert_kkt(p, obj, cons, x)


def test_nonconvex_qp_ends_at_a_kkt_point():
    # min -(x - 0.3)^2 - (y - 0.6)^2 + x*y over a polytope: indefinite.
    p = z.problem()
    x, y = z.var(name="x", lb=0, ub=2), z.var(name="y", lb=0, ub=2)
    p.addVariable(x, y)
    obj = -(x - 0.3) ** 2 - (y - 0.6) ** 2 + x * y
    cons = [x + y <= 2.5, x - y <= 1]
    p.addConstraint(cons)
    p.setObjective(obj)
    p.controls.outputlog = 0
    p.optimize()
    assert_kkt(p, obj, cons, [x, y])
    # Local, not necessarily global: no better point nearby along the box.
    value = p.getObjVal()
    sx, sy = p.getSolution(x, y)
    for dx, dy in [(1e-3, 0), (-1e-3, 0), (0, 1e-3), (0, -1e-3)]:
        px, py = sx + dx, sy + dy
        if 0 <= px <= 2 and 0 <= py <= 2 and px + py <= 2.5 and px - py <= 1:
            assert z.evaluate(obj, solution={x: px, y: py}) >= value - 1e-6


# --- reading results ------------------------------------------------------------

def test_duals_slacks_and_objective_of_a_nonlinear_problem():
    # min x + y  s.t.  x^2 + y^2 <= 2 written with a formula (sqrt):
    # optimum (-1, -1), objective -2; the dual follows from KKT.
    p = z.problem()
    x, y = z.var(name="x", lb=-5), z.var(name="y", lb=-5)
    p.addVariable(x, y)
    c = z.sqrt(x ** 2 + y ** 2 + 1e-12) <= math.sqrt(2)
    p.addConstraint(c)
    p.setObjective(x + y)
    p.controls.outputlog = 0
    p.optimize()
    assert p.getProbStatusString() in ("nlp_solution", "nlp_globally_optimal")
    assert p.getObjVal() == pytest.approx(-2.0, abs=1e-6)
    assert p.getSolution() == pytest.approx([-1.0, -1.0], abs=1e-5)
    assert p.getSlack(c) == pytest.approx(0.0, abs=1e-6)
    # grad f = y * grad g: (1, 1) = y * (x, y) / sqrt(2) at (-1, -1).
    assert p.getDual(c) == pytest.approx(-math.sqrt(2), rel=1e-4)
    assert p.getRCost() == pytest.approx([0.0, 0.0], abs=1e-6)
    assert p.getProbStatus() == z.nlp_solution or p.getProbStatus() == 2
    # evaluate with the problem's solution
    assert z.evaluate(x * y + z.sin(x), problem=p) == pytest.approx(1 + math.sin(-1), abs=1e-5)
    assert z.evaluate([x, y], problem=p) == pytest.approx([-1.0, -1.0], abs=1e-5)


def test_infeasible_nonlinear_problem_ends_with_an_infeasible_status():
    p = z.problem()
    x, y = z.var(name="x", lb=-5), z.var(name="y", lb=-5)
    p.addVariable(x, y)
    p.addConstraint(z.exp(x) + y ** 2 <= 1, x + y >= 3)
    p.setObjective(x)
    p.controls.outputlog = 0
    p.optimize()
    assert p.getProbStatusString() in ("nlp_infeasible", "nlp_locally_infeasible")


def test_mixed_integer_nonlinear_models_are_refused_clearly():
    p = z.problem()
    x, b = z.var(name="x", lb=-5), z.var(name="b", vartype=z.binary)
    p.addVariable(x, b)
    p.addConstraint(z.exp(x) + b <= 3)
    p.setObjective(-x)
    p.controls.outputlog = 0
    with pytest.raises(z.SolverError, match="(?i)integer"):
        p.optimize()
