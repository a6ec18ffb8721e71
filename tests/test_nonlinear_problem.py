"""Nonlinear constraints and objectives in a problem: adding, deleting and
replacing them, the transfer row and column of a nonlinear objective, every
built-in function against the same model written another way, pwl, user
functions in their three modes and their failures."""
import math

import pytest

import zorvan as z
from zorvan import zorvanlib


def quiet(p):
    p.controls.outputlog = 0
    return p


def solved(p):
    quiet(p).optimize()
    status = p.getProbStatusString()
    assert status in ("nlp_solution", "nlp_globally_optimal"), status
    return p


def bisect(f, lo, hi, target):
    """x in [lo, hi] with f(x) = target, f monotone there."""
    up = f(hi) > f(lo)
    for _ in range(200):
        mid = 0.5 * (lo + hi)
        if (f(mid) < target) == up:
            lo = mid
        else:
            hi = mid
    return 0.5 * (lo + hi)


# --- built-in functions, each against another way of writing it -------------------
# (g(x), another form of g(x), g on floats, bounds of x, target t): the model
# g(x) == t, min (x - x0)^2 has its solution at the inverse of g in the bounds.

HALF_PI = math.pi / 2
FUNCTIONS = {
    "exp": (z.exp, lambda x: math.e ** x, math.exp, (-2, 2), 2.0),
    "log": (z.log, lambda x: z.log10(x) * math.log(10), math.log, (0.1, 5), 0.5),
    "log10": (z.log10, lambda x: z.log(x) / math.log(10), math.log10, (0.1, 5), 0.3),
    "sin": (z.sin, lambda x: z.cos(HALF_PI - x), math.sin, (0, 1.5), 0.5),
    "cos": (z.cos, lambda x: z.sin(HALF_PI - x), math.cos, (0, 3), 0.5),
    "tan": (z.tan, lambda x: z.sin(x) / z.cos(x), math.tan, (0, 1.5), 2.0),
    "asin": (z.asin, lambda x: z.atan(x / z.sqrt(1 - x ** 2)), math.asin, (-0.9, 0.9), 0.4),
    "acos": (z.acos, lambda x: HALF_PI - z.asin(x), math.acos, (-0.9, 0.9), 1.0),
    "atan": (z.atan, lambda x: z.asin(x / z.sqrt(1 + x ** 2)), math.atan, (-3, 3), 0.7),
    "abs": (z.abs, lambda x: z.sqrt(x * x), abs, (-3, -0.5), 1.5),
    "sqrt": (z.sqrt, lambda x: x ** 0.5, math.sqrt, (0.1, 5), 1.3),
    "erf": (z.erf, lambda x: 1 - z.erfc(x), math.erf, (-2, 2), 0.5),
    "erfc": (z.erfc, lambda x: 1 - z.erf(x), math.erfc, (-2, 2), 0.3),
    "max": (lambda x: z.max(x, 2 - x), lambda x: (2 + z.abs(2 * x - 2)) / 2,
            lambda v: max(v, 2 - v), (1.1, 5), 1.5),
    "min": (lambda x: z.min(x, 4 - x), lambda x: (4 - z.abs(2 * x - 4)) / 2,
            lambda v: min(v, 4 - v), (-5, 1.9), 1.5),
    "pwl": (lambda x: z.pwl({(0, 1): x, (1, 3): 2 * x - 1}), lambda x: z.max(x, 2 * x - 1),
            lambda v: v if v <= 1 else 2 * v - 1, (0, 3), 3.0),
    "and": (lambda x: z.And(x, 0.8), lambda x: z.min(x, 0.8), lambda v: min(v, 0.8),
            (0, 0.7), 0.4),
    "or": (lambda x: z.Or(x, 0.2), lambda x: z.max(x, 0.2), lambda v: max(v, 0.2),
           (0.3, 1), 0.6),
}


def solve_inverse(g, bounds, target):
    p = z.problem()
    x = z.var(name="x", lb=bounds[0], ub=bounds[1])
    p.addVariable(x)
    p.addConstraint(g(x) == target)
    x0 = 0.5 * (bounds[0] + bounds[1])
    p.setObjective((x - x0) ** 2)
    solved(p)
    return p.getSolution(x)


@pytest.mark.parametrize("name", list(FUNCTIONS))
def test_every_function_agrees_with_another_form_and_its_inverse(name):
    g, other, numeric, bounds, target = FUNCTIONS[name]
    expected = bisect(numeric, bounds[0], bounds[1], target)
    assert solve_inverse(g, bounds, target) == pytest.approx(expected, abs=1e-5)
    assert solve_inverse(other, bounds, target) == pytest.approx(expected, abs=1e-5)


def test_sign_selects_the_side_of_its_argument():
    for lo, hi, best in ((1, 2, 3.0), (-2, -1, 1.0)):
        for form in (z.sign, lambda v: v / z.abs(v)):
            p = z.problem()
            x, y = z.var(name="x", lb=lo, ub=hi), z.var(name="y", lb=-10, ub=10)
            p.addVariable(x, y)
            p.addConstraint(y <= 2 + form(x))
            p.setObjective(-y)
            solved(p)
            assert p.getSolution(y) == pytest.approx(best, abs=1e-6)


# --- nonlinear objectives ---------------------------------------------------------

def names(p, kind):
    n = p.attributes.rows if kind == 1 else p.attributes.cols
    return p.getnamelist(kind, 0, n - 1) if n else []


def test_nonlinear_objective_through_one_transfer_row_and_column():
    p = z.problem()
    x, y = z.var(name="x", lb=-5), z.var(name="y", lb=-5)
    p.addVariable(x, y)
    p.setObjective(z.exp(x) - 2 * x + (y - 1) ** 2 + 3)
    solved(p)
    # exp(x) - 2x is least at x = ln 2.
    assert p.getSolution() == pytest.approx([math.log(2), 1.0], abs=1e-6)
    assert p.getObjVal() == pytest.approx(2 - 2 * math.log(2) + 3, abs=1e-7)
    assert len(p.getRCost()) == 2 and len(p.getSlack()) == 0
    # Replaced twice: still one transfer row and column.
    p.setObjective(z.cos(x) + y ** 2)
    p.setObjective(z.sin(x) + z.cos(y) + x * y / 10, sense=z.maximize)
    assert names(p, 1).count("objtransferrow") == 1
    assert names(p, 2).count("objtransfercol") == 1
    p.chgbounds([x, x, y, y], ["L", "U", "L", "U"], [-1, 1, -1, 1])
    solved(p)
    sx, sy = p.getSolution(x, y)
    assert p.getObjVal() == pytest.approx(math.sin(sx) + math.cos(sy) + sx * sy / 10, abs=1e-7)
    assert p.getObjVal() >= math.sin(1) + 1 - 1e-6
    # A linear objective takes both out again; the LP solver answers.
    p.setObjective(x + y, sense=z.minimize)
    assert "objtransferrow" not in names(p, 1) and "objtransfercol" not in names(p, 2)
    quiet(p).optimize()
    assert p.getProbStatusString() == "lp_optimal"
    assert p.getObjVal() == pytest.approx(-2.0)


def test_rows_and_columns_added_later_go_before_the_transfer_ones():
    p = z.problem()
    x = z.var(name="x", lb=-3, ub=3)
    p.addVariable(x)
    p.setObjective(z.exp(x) + z.exp(-x))
    y = z.var(name="y", lb=-3, ub=3)
    p.addVariable(y)
    p.addConstraint(z.sin(y) + x >= 0.5)
    assert p.getIndex(y) == 1 and p.attributes.cols == 3
    assert names(p, 2)[-1] == "objtransfercol" and names(p, 1)[-1] == "objtransferrow"
    p.setObjective(z.exp(x) + z.exp(-x) + (y - 1) ** 2)
    solved(p)
    values = p.getSolution()
    assert len(values) == 2 and values == pytest.approx(p.getSolution([x, y]))
    assert math.sin(values[1]) + values[0] >= 0.5 - 1e-6
    assert len(p.getDual()) == 1 and len(p.getSlack()) == 1
    # A variable of a formula stays; an unused one goes, the transfer column
    # moving down with the others.
    v = z.var(name="v")
    p.addVariable(v)
    with pytest.raises(z.SolverError, match="used in a formula"):
        p.delVariable(x)
    with pytest.raises(z.ModelError, match="carries the nonlinear objective"):
        p.delVariable(index=3)
    with pytest.raises(z.ModelError, match="carries the nonlinear objective"):
        p.delConstraint(index=1)
    assert names(p, 2) == ["x", "y", "v", "objtransfercol"]
    p.delVariable(v)
    assert names(p, 2) == ["x", "y", "objtransfercol"]
    p.addVariable(v)
    assert names(p, 2) == ["x", "y", "v", "objtransfercol"]
    solved(p)
    assert p.getSolution([x, y]) == pytest.approx(values, abs=1e-6)


def test_objective_with_nonlinear_part_refused_beyond_the_first():
    p = z.problem()
    x = z.var(name="x")
    p.addVariable(x)
    p.setObjective(x)
    with pytest.raises(z.ModelError, match="not supported in multi-objective"):
        p.addObjective(z.exp(x))
    p.setObjective(z.exp(x))
    with pytest.raises(z.ModelError, match="not supported in multi-objective"):
        p.addObjective(x)


# --- adding and deleting nonlinear constraints ----------------------------------------

def circle_problem():
    p = z.problem()
    x, y = z.var(name="x", lb=-5), z.var(name="y", lb=-5)
    p.addVariable(x, y)
    p.setObjective(x + y)
    return p, x, y


def test_a_failed_add_leaves_the_problem_as_it_was():
    p, x, y = circle_problem()
    p.addConstraint(z.exp(x) <= 4)
    outside = z.var(name="outside")
    good = z.sqrt(x ** 2 + y ** 2 + 1e-12) <= 1
    for bad in (z.sin(outside) <= 1, z.exp(x) + 3 * outside <= 1, 7):
        with pytest.raises(z.ModelError):
            p.addConstraint([good, bad])
        assert p.attributes.rows == 1 and len(p.getConstraint()) == 1
        assert zorvanlib._rowformulas(p, 1) == []
    p.addConstraint(good)
    solved(p)
    assert p.getSolution() == pytest.approx([-math.sqrt(0.5)] * 2, abs=1e-5)


def test_nonlinear_constraints_are_deleted_like_others():
    p, x, y = circle_problem()
    c1 = x + z.exp(y) >= 2
    c2 = z.sqrt(x ** 2 + y ** 2 + 1e-12) <= 3
    c3 = x >= -1
    p.addConstraint(c1, c2, c3)
    p.delConstraint(c1)
    assert p.getIndex(c2) == 0 and p.getIndex(c3) == 1
    assert zorvanlib._rowformulas(p, 0)[0][3][-1] == (12, 18)
    solved(p)
    sx, sy = p.getSolution(x, y)
    assert sx == pytest.approx(-1, abs=1e-6) and sy == pytest.approx(-math.sqrt(8), abs=1e-5)
    p.delConstraint(c2)
    quiet(p).optimize()
    # Without formulas the problem is linear again.
    assert p.getProbStatusString() == "lp_optimal"
    assert p.getObjVal() == pytest.approx(-6.0)


def test_copy_keeps_formulas_and_user_functions():
    p, x, y = circle_problem()
    p.addConstraint(z.user(lambda a, b: a * a + b * b, x, y) <= 2)
    q = p.copy()
    for r in (p, q):
        solved(r)
        assert r.getSolution() == pytest.approx([-1.0, -1.0], abs=1e-4)


# --- user functions ----------------------------------------------------------------

def test_user_functions_in_each_mode_agree_with_the_formula():
    requests = []

    def never(a, b):
        return a * a + b * b

    def always(a, b):
        return a * a + b * b, 2 * a, 2 * b

    def ondemand(*args):
        a, b = args[:2]
        if len(args) == 4:
            requests.append(args[2:])
            return a * a + b * b, 2 * a, 2 * b
        return a * a + b * b

    results = []
    for f, mode in ((never, "never"), (always, "always"), (ondemand, "ondemand")):
        p, x, y = circle_problem()
        p.addConstraint(z.user(f, x, y, derivatives=mode) <= 2)
        solved(p)
        results.append(p.getSolution())
        # (1, 1) = y * (2x, 2y) at (-1, -1)
        assert p.getDual(0) == pytest.approx(-0.5, rel=1e-3)
    for r in results:
        assert r == pytest.approx([-1.0, -1.0], abs=1e-4)
    assert requests and all(len(r) == 2 for r in requests)


def test_user_function_in_the_objective():
    p = z.problem()
    x = z.var(name="x", lb=-3, ub=3)
    p.addVariable(x)
    p.setObjective(z.user(lambda v: (v - 1.25) ** 2 + 1, x) + x / 100)
    solved(p)
    assert p.getSolution(x) == pytest.approx(1.245, abs=1e-4)


@pytest.mark.parametrize("mode", ["never", "always", "ondemand"])
def test_a_raising_user_function_stops_the_solve_and_reaches_the_caller(mode):
    p, x, y = circle_problem()

    def broken(*args):
        raise ValueError("the user function broke")

    p.addConstraint(z.user(broken, x, y, derivatives=mode) <= 2)
    with pytest.raises(ValueError, match="the user function broke"):
        quiet(p).optimize()


def test_user_function_without_derivatives_when_they_are_needed():
    p, x, y = circle_problem()
    p.addConstraint(z.user(lambda a, b: a * a + b * b, x, y, derivatives="always") <= 2)
    with pytest.raises(z.ModelError, match="must return a tuple containing result and all derivatives"):
        quiet(p).optimize()
