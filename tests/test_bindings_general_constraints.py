"""General constraints (addgencons, getgencons, delgencons) and
piecewise-linear constraints (addpwlcons, getpwlcons, delpwlcons) through
the problem's members: solved to optima found by enumeration, read back as
loaded, deleted, and refused when malformed with the model unchanged."""
import itertools
import random

import pytest

import zorvan as z

INF = z.infinity


def problem_with(obj, lb, ub, types=None, names=None):
    p = z.problem()
    p.setOutputEnabled(False)
    n = len(obj)
    p.addcols(obj, [0] * n, [], [], lb, ub, names=names, types=types)
    return p


def solved(p):
    p.optimize()
    return p.getObjVal()


@pytest.mark.parametrize("kind", [z.gencons_max, z.gencons_min, z.gencons_abs])
def test_max_min_abs_reach_the_enumerated_optimum(kind):
    rng = random.Random(kind)
    for _ in range(6):
        l0, l1 = rng.randint(-4, 0), rng.randint(-4, 0)
        u0, u1 = l0 + rng.randint(1, 5), l1 + rng.randint(1, 5)
        c0, c1, cy = rng.randint(-3, 3), rng.randint(-3, 3), rng.randint(-3, 3) + 0.5
        const = rng.randint(-2, 2) + 0.25
        # x0, x1 integer, y = f(x0, x1[, const]) free, d = x0 - x1 bounded.
        p = problem_with([c0, c1, cy, 0], [l0, l1, -INF, l0 - u1], [u0, u1, INF, u0 - l1],
                         types=["I", "I", "C", "C"], names=["x0", "x1", "y", "d"])
        p.addrows(["E"], [0], [0], ["x0", "x1", "d"], [1, -1, -1])
        if kind == z.gencons_abs:
            p.addgencons([kind], ["y"], [0], ["d"])
        else:
            p.addgencons([kind], ["y"], [0], ["x0", "x1"], [0], [const])
        best = INF
        for a in range(l0, u0 + 1):
            for b in range(l1, u1 + 1):
                y = (max(a, b, const) if kind == z.gencons_max
                     else min(a, b, const) if kind == z.gencons_min else abs(a - b))
                best = min(best, c0 * a + c1 * b + cy * y)
        assert solved(p) == pytest.approx(best)


@pytest.mark.parametrize("kind", [z.gencons_and, z.gencons_or])
def test_and_or_reach_the_enumerated_optimum(kind):
    rng = random.Random(kind)
    for _ in range(5):
        cost = [rng.randint(-3, 3) for _ in range(4)]
        need = rng.randint(0, 2)
        p = problem_with(cost, [0] * 4, [1] * 4, types=["B"] * 4)
        p.addrows(["G"], [need], [0], [0, 1, 2], [1, 1, 1])
        p.addgencons(contype=[kind], resultant=[3], colstart=[0], colind=[0, 1, 2])
        best = INF
        for b in itertools.product([0, 1], repeat=3):
            if sum(b) < need:
                continue
            y = min(b) if kind == z.gencons_and else max(b)
            best = min(best, sum(c * v for c, v in zip(cost, b)) + cost[3] * y)
        assert solved(p) == pytest.approx(best)


def test_pwl_optimum_lies_at_a_breakpoint_and_extends_to_the_bounds():
    xs, ys = [0, 2, 5, 7, 10], [3, -1, 4, 0, 6]
    for sense, tilt in itertools.product([z.minimize, z.maximize], [-0.8, 0.0, 0.9]):
        p = problem_with([tilt, 1], [0, -INF], [10, INF])
        p.chgobjsense(sense)
        p.addpwlcons([0], [1], [0], xs, ys)
        values = [tilt * x + y for x, y in zip(xs, ys)]
        assert solved(p) == pytest.approx(min(values) if sense == z.minimize else max(values))
    # Beyond the points the end segments go on: slope 2 to x = 12.
    p = problem_with([0, 1], [-2, -INF], [12, INF])
    p.chgobjsense(z.maximize)
    p.addpwlcons(colind=[0], resultant=[1], start=[0], xval=[0, 10], yval=[0, 20])
    assert solved(p) == pytest.approx(24)
    p.chgbounds([0], ["U"], [INF])
    with pytest.raises(z.SolverError, match="finite upper bound"):
        p.optimize()


def test_legacy_keywords_and_read_back_by_group():
    p = problem_with([0] * 5, [0] * 5, [1] * 5, names=["a", "b", "c", "d", "e"])
    p.addgencons(type=[z.gencons_max, z.gencons_or], resultant=["a", "b"], colstart=[0, 2],
                 col=["d", "e", "d"], valstart=[0, 1], val=[0.5])
    p.addpwlcons(col=["c"], resultant=["e"], start=[0], xval=[0, 1], yval=[1, 0])
    assert p.attributes.gencons == 3  # both kinds
    assert p.attributes.pwlcons == 1
    vs = p.getVariable()
    t, r, cs, c, vst, v = [], [], [], [], [], []
    p.getgencons(t, r, cs, c, 10, vst, v, 10, 0, 1)
    assert t == [z.gencons_max, z.gencons_or]
    assert r == [vs[0], vs[1]]
    assert cs == [0, 2, 3]
    assert c == [vs[3], vs[4], vs[3]]
    assert vst == [0, 1, 1] and v == [0.5]
    # The legacy names, a slice and less room than entries; None skips a list.
    t, c = [9, 9, 9], []
    p.getgencons(type=t, resultant=None, colstart=None, col=c, colsize=1, valstart=None,
                 val=None, valsize=0, first=1, last=1)
    assert t == [z.gencons_or] and c == [vs[3]]
    cols, res, st, xv, yv = [], [], [], [], []
    p.getpwlcons(col=cols, resultant=res, start=st, xval=xv, yval=yv, size=5, first=0, last=0)
    assert (cols, res, st, xv, yv) == ([vs[2]], [vs[4]], [0, 2], [0, 1], [1, 0])


def test_delete_by_index_and_through_deleted_columns():
    p = problem_with([0] * 4, [0] * 4, [1] * 4, types=["B"] * 4)
    p.addgencons([z.gencons_and, z.gencons_or, z.gencons_abs], [0, 1, 2], [0, 2, 3],
                 [2, 3, 3, 3])
    p.addpwlcons([2, 3], [0, 1], [0, 2], [0, 1, 0, 1], [0, 1, 1, 0])
    p.delgencons(mindex=[0])
    t = []
    p.getgencons(t, None, None, None, 0, None, None, 0, 0, 1)
    assert t == [z.gencons_or, z.gencons_abs]
    # Deleting column 3 removes or and abs (their only operand) and the pwl
    # on it; the pwl on column 2 is left.
    p.delVariable(p.getVariable(3))
    assert p.attributes.gencons == 1
    assert p.attributes.pwlcons == 1
    p.delpwlcons([0])
    assert p.attributes.pwlcons == 0
    with pytest.raises(z.SolverError, match="general constraint index"):
        p.delgencons([4])


def test_bad_batches_leave_the_model_as_it_was():
    p = problem_with([0] * 3, [0] * 3, [1] * 3)
    with pytest.raises(z.SolverError, match="exactly one column"):
        p.addgencons([z.gencons_max, z.gencons_abs], [0, 1], [0, 1], [1, 0, 2])
    with pytest.raises(z.SolverError, match="not a general constraint type"):
        p.addgencons([9], [0], [0], [1])
    with pytest.raises(z.InterfaceError, match="Mismatched lengths"):
        p.addgencons([z.gencons_max], [0, 1], [0], [1])
    with pytest.raises(z.InterfaceError, match="Must provide argument colstart"):
        p.addgencons([z.gencons_max], [0], None, [1])
    with pytest.raises(z.ModelError, match="Variable .* not in problem"):
        p.addgencons([z.gencons_max], [z.var()], [0], [1])
    with pytest.raises(z.SolverError, match="decrease"):
        p.addpwlcons([0], [1], [0], [0, 2, 1], [0, 0, 0])
    with pytest.raises(z.InterfaceError, match="Must provide argument yval"):
        p.addpwlcons([0], [1], [0], [0, 1], None)
    assert p.attributes.gencons == 0 and p.attributes.pwlcons == 0
    with pytest.raises(z.InterfaceError, match="Empty or invalid range"):
        p.getgencons([], [], [], [], 0, [], [], 0, 0, 0)


def test_files_refuse_general_constraints(tmp_path):
    p = problem_with([0, 0], [0, 0], [1, 1])
    p.addgencons([z.gencons_max], [0], [0], [1])
    with pytest.raises(z.SolverError, match="piecewise-linear constraints, which MPS and LP"):
        p.write(str(tmp_path / "g.lp"))
