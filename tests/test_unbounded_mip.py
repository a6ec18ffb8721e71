"""MIPs whose relaxation is unbounded: unbounded when an integer point
exists (with rational data the integer hull then has the ray too),
infeasible when none does; the same models with bounds are solved and
compared with enumeration."""
import itertools

import pytest

import zorvan


def solve(build, presolve):
    p = zorvan.problem("unbounded")
    p.setControl({"outputlog": 0, "presolve": presolve})
    xs = build(p)
    p.mipoptimize()
    return p, xs


def ray_in_two_rows(p, ub=None):
    # max -x0 + x1 + x2 with x1 >= 3, 3x0 - 2x1 + 3x2 >= -1, x2 >= -3x0 - 0.5:
    # integer ray (0, 3, 2) from the point (0, 3, 2).
    x0 = zorvan.var(ub=zorvan.infinity if ub is None else ub)
    x1 = zorvan.var(vartype=zorvan.integer, ub=zorvan.infinity if ub is None else ub)
    x2 = zorvan.var(vartype=zorvan.integer, lb=-zorvan.infinity if ub is None else -ub,
                    ub=zorvan.infinity if ub is None else ub)
    p.addVariable(x0, x1, x2)
    p.addConstraint(3 * x0 - 2 * x1 + 3 * x2 >= -1, -x1 <= -3, -3 * x0 - x2 <= 0.5)
    p.setObjective(-x0 + x1 + x2, sense=zorvan.maximize)
    return [x0, x1, x2]


def ray_in_three_rows(p, ub=None):
    # Four integers; max 3x0 + 3x1 + 3x2 + 2x3 with x1 free.
    top = zorvan.infinity if ub is None else ub
    x = [zorvan.var(vartype=zorvan.integer, ub=top) for _ in range(4)]
    x[1] = zorvan.var(vartype=zorvan.integer, lb=-top, ub=top)
    p.addVariable(x)
    p.addConstraint(-3 * x[0] - x[1] - x[2] - 2 * x[3] <= 2.5, -2 * x[0] + 3 * x[3] <= -1,
                    -x[0] - 3 * x[1] + x[2] + 3 * x[3] <= -1.5)
    p.setObjective(3 * x[0] + 3 * x[1] + 3 * x[2] + 2 * x[3], sense=zorvan.maximize)
    return x


def parity(p, ub=None):
    # 2x - 2y = 1 has no integer solution; the relaxation is unbounded along x = y.
    top = zorvan.infinity if ub is None else ub
    x, y = (zorvan.var(vartype=zorvan.integer, ub=top) for _ in range(2))
    p.addVariable(x, y)
    p.addConstraint(2 * x - 2 * y == 1)
    p.setObjective(x + y, sense=zorvan.maximize)
    return [x, y]


@pytest.mark.parametrize("presolve", [1, 0])
@pytest.mark.parametrize("build", [ray_in_two_rows, ray_in_three_rows])
def test_an_integer_ray_from_a_feasible_point_is_unbounded(build, presolve):
    p, _ = solve(build, presolve)
    assert p.attributes.mipstatus == zorvan.mip_unbounded
    assert p.attributes.solstatus == zorvan.SolStatus.UNBOUNDED


@pytest.mark.parametrize("presolve", [1, 0])
def test_an_unbounded_relaxation_without_integer_points_is_infeasible(presolve):
    p, _ = solve(parity, presolve)
    assert p.attributes.mipstatus == zorvan.mip_infeas
    assert p.attributes.solstatus == zorvan.SolStatus.INFEASIBLE


def enumerate_optimum(build, ub):
    """Best objective over the integer points of the box [-ub, ub]: for each
    assignment of the integer columns, the LP over the continuous ones."""
    best = None
    xs = build(zorvan.problem("types"), ub=ub)
    ints = [k for k, x in enumerate(xs) if x.vartype == zorvan.integer]
    for values in itertools.product(range(-ub, ub + 1), repeat=len(ints)):
        q = zorvan.problem("point")
        q.setControl({"outputlog": 0})
        ys = build(q, ub=ub)
        fixed = [ys[k] for k in ints]
        if any(v < y.lb for y, v in zip(fixed, values)):
            continue
        q.chgbounds(fixed * 2, ["L"] * len(fixed) + ["U"] * len(fixed), list(values) * 2)
        q.chgcoltype(fixed, ["C"] * len(fixed))
        q.lpoptimize()
        if q.attributes.lpstatus == zorvan.lp_optimal:
            best = q.getObjVal() if best is None else max(best, q.getObjVal())
    return best


@pytest.mark.parametrize("build", [ray_in_two_rows, ray_in_three_rows])
def test_with_bounds_the_same_models_reach_the_enumerated_optimum(build):
    p, _ = solve(lambda q: build(q, ub=4), 1)
    assert p.attributes.mipstatus == zorvan.mip_optimal
    assert p.getObjVal() == pytest.approx(enumerate_optimum(build, 4), abs=1e-6)
    p, _ = solve(lambda q: parity(q, ub=4), 1)
    assert p.attributes.mipstatus == zorvan.mip_infeas
