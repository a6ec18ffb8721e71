"""Indicator constraints with rows of every kind (=, range, <=, >=) and both
condition values, compared with enumeration of all integer points."""
import itertools
import math
import random

import pytest

import zorvan as z


def quiet():
    p = z.problem()
    p.setOutputEnabled(False)
    return p


@pytest.mark.parametrize("value", [0, 1])
def test_equality_outside_the_bounds_is_switched_off(value):
    # x in [3, 5]; x == -8 can only hold with the row switched off, which
    # leaves x free to reach its lower bound.
    x = z.var(lb=3, ub=5)
    b = z.var(vartype=z.binary)
    p = quiet()
    p.addVariable(x, b)
    p.addIndicator(b == value, x == -8)
    p.setObjective(x)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getSolution(x, b) == pytest.approx([3.0, 1 - value])


def test_two_ranged_indicators_keep_the_problem_feasible():
    # Both ranges lie outside x's box, narrower than it, one on each side:
    # only b = c = 1 (both rows off) is feasible, and then x reaches 3.
    x = z.var(lb=3, ub=5)
    b, c = z.var(vartype=z.binary), z.var(vartype=z.binary)
    p = quiet()
    p.addVariable(x, b, c)
    p.addIndicator((b == 0, z.constraint(body=x, lb=-9, ub=-8.5)),
                   (c == 0, z.constraint(body=x, lb=30, ub=30.5)))
    p.setObjective(x + b + c)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getSolution(x, b, c) == pytest.approx([3.0, 1.0, 1.0])


def random_instance(rng, case):
    """Three integer variables in small boxes, two binaries, three indicator
    rows whose kinds cycle through =, range, <=, >=."""
    lbs = [rng.randint(-3, 1) for _ in range(3)]
    boxes = [(lo, lo + rng.randint(0, 4)) for lo in lbs] + [(0, 1), (0, 1)]
    cost = [rng.randint(-4, 4) for _ in range(5)]
    rows = []
    for r in range(3):
        coef = [rng.randint(-3, 3) for _ in range(3)] + [0, 0]
        kind = "ERLG"[(case + r) % 4]
        a, width = rng.randint(-14, 14), rng.randint(0, 6)
        lo = -math.inf if kind == "L" else a
        up = math.inf if kind == "G" else a + width if kind == "R" else a
        rows.append((coef, lo, up, 3 + rng.randint(0, 1), rng.randint(0, 1)))
    return boxes, cost, rows


def enumerate_best(boxes, cost, rows):
    best = None
    for point in itertools.product(*(range(lo, up + 1) for lo, up in boxes)):
        ok = all(lo <= sum(a * v for a, v in zip(coef, point)) <= up
                 for coef, lo, up, col, value in rows if point[col] == value)
        if ok:
            v = sum(c * v for c, v in zip(cost, point))
            best = v if best is None else min(best, v)
    return best


def test_random_indicator_mips_match_enumeration():
    rng = random.Random(1124)
    outcomes = {"optimal": 0, "infeasible": 0}
    for case in range(60):
        boxes, cost, rows = random_instance(rng, case)
        xs = [z.var(lb=lo, ub=up, vartype=z.integer) for lo, up in boxes[:3]]
        xs += [z.var(vartype=z.binary) for _ in range(2)]
        p = quiet()
        p.addVariable(xs)
        for coef, lo, up, col, value in rows:
            body = z.Sum(a * x for a, x in zip(coef, xs))
            con = z.constraint(body=body, lb=-z.infinity if lo == -math.inf else lo,
                               ub=z.infinity if up == math.inf else up)
            p.addIndicator(xs[col] == value, con)
        p.setObjective(z.Sum(c * x for c, x in zip(cost, xs)))
        solve, sol = p.optimize()
        best = enumerate_best(boxes, cost, rows)
        if best is None:
            assert sol == z.SolStatus.INFEASIBLE, case
            outcomes["infeasible"] += 1
        else:
            assert sol == z.SolStatus.OPTIMAL, case
            assert p.getObjVal() == pytest.approx(best, abs=1e-6), case
            outcomes["optimal"] += 1
    assert outcomes["optimal"] > 20 and outcomes["infeasible"] >= 2
