"""The members that read the last solution, basis, infeasibilities and rays,
and that compute values from a point: results compared with scipy's optimum,
rays checked as certificates, and readers that refuse stale or missing data."""
import numpy as np
import pytest
from scipy.optimize import linprog

import zorvan as z

INF = z.infinity

A = np.array([[1.0, 2.0], [3.0, 1.0]])
B = np.array([4.0, 6.0])
C = np.array([-1.0, -1.0])


def build(types, rhs, a, c, lb, ub):
    """A problem with rows of the given types over the dense matrix a."""
    p = z.problem()
    p.setOutputEnabled(False)
    a = np.asarray(a, dtype=float)
    p.addrows(list(types), list(rhs), [0] * len(types), [], [],
              names=[f"r{i}" for i in range(len(types))])
    start, rows, vals = [], [], []
    for j in range(a.shape[1]):
        start.append(len(rows))
        for i in range(a.shape[0]):
            if a[i, j]:
                rows.append(i)
                vals.append(a[i, j])
    p.addcols(list(c), start, rows, vals, list(lb), list(ub),
              names=["x", "y", "z", "w"][:a.shape[1]])
    return p


def lp():
    """min c.x  s.t.  A x <= b,  x >= 0."""
    return build("LL", B, A, C, [0, 0], [INF, INF])


def test_solution_lists_match_scipy_and_each_other():
    p = lp()
    p.optimize()
    ref = linprog(C, A_ub=A, b_ub=B, bounds=[(0, None)] * 2, method="highs")
    x, slack, duals, djs = [], [], [], [9, 9, 9, 9, 9]
    p.getlpsol(x, slack, duals, djs)
    assert x == pytest.approx(ref.x)
    assert slack == pytest.approx(B - A @ ref.x, abs=1e-9)
    assert duals == pytest.approx(ref.ineqlin.marginals)
    assert len(djs) == 2  # a longer list is cut to the column count
    assert djs == pytest.approx(C - A.T @ np.array(duals), abs=1e-9)
    x2, dual_old = [], []
    p.getlpsol(x=x2, dual=dual_old)  # legacy keyword
    assert x2 == x and dual_old == duals
    xv, sv, dv, djv = p.getlpsolval("y", "r1")
    assert (xv, sv, dv, djv) == (x[1], slack[1], duals[1], djs[1])
    vars_ = p.getVariable()
    assert p.getlpsolval(col=vars_[0]) == (x[0], None, None, djs[0])
    assert p.getlpsolval(column=1, row=0)[1] == slack[0]
    with pytest.raises(z.InterfaceError, match="Must provide at least one of arguments x, slack"):
        p.getlpsol()


def test_computed_values_agree_with_the_solve_at_the_solution_and_elsewhere():
    p = lp()
    p.optimize()
    x, duals, djs, slack = [], [], [], []
    p.getlpsol(x, slack, duals, djs)
    assert p.calcobjective(x) == pytest.approx(p.attributes.lpobjval)
    assert p.calcobjn(0, solution=x) == pytest.approx(C @ x)
    s, d = [], []
    p.calcslacks(x, s)
    p.calcreducedcosts(duals, x, d)
    assert s == pytest.approx(slack) and d == pytest.approx(djs)
    point = [3.0, -0.5]  # row r1 is 2.5 over, y 0.5 under its bound
    p.calcslacks(point, calculatedslacks=s)
    assert s == pytest.approx(B - A @ point)
    assert p.calcsolinfo(point, None, 0) == pytest.approx(2.5)
    assert p.calcsolinfo(x, duals, 2) < 1e-9
    assert p.calcsolinfo(x, [1.0, 0.0], 2) > 0.5  # a dual of the wrong sign
    with pytest.raises(z.InterfaceError, match="Mismatched lengths in arguments: expected 2, found 3"):
        p.calcobjective([1, 2, 3])
    with pytest.raises(z.InterfaceError, match="Must provide argument slacks"):
        p.calcslacks(x, None)
    with pytest.raises(z.SolverError, match="property 7"):
        p.calcsolinfo(x, None, 7)


def test_basis_and_integer_solution_readers():
    p = lp()
    p.optimize()
    rstat, cstat = [], []
    p.getbasis(rstat, cstat)
    assert sorted(rstat + cstat).count(1) == 2  # as many basic entries as rows
    assert p.getbasisval("r0", "x") == (rstat[0], cstat[0])
    assert p.getbasisval(col=1) == (None, cstat[1])
    p.chgcoltype([0, 1], ["I", "I"])
    with pytest.raises(z.SolverError, match="no integer solution"):
        p.getmipsol([])
    p.optimize()
    # Enumeration of the integer points: the best value is -2.
    best = min(-a - b for a in range(3) for b in range(3) if a + 2 * b <= 4 and 3 * a + b <= 6)
    x, slack = [], []
    p.getmipsol(x, slack)
    assert C @ x == pytest.approx(best)
    assert p.getmipsolval(0, "r1") == (x[0], slack[1])


def test_infeasibility_lists_are_empty_for_an_optimum_and_need_a_solution():
    p = lp()
    with pytest.raises(z.SolverError, match="no solution"):
        p.getinfeas([])
    p.optimize()
    lists = [[0], [0], [0], [0]]
    p.getinfeas(*lists)
    assert lists == [[], [], [], []]
    p.getscaledinfeas(mx=lists[0])
    assert lists[0] == []


def test_primal_ray_certifies_unboundedness():
    # min -x - y  s.t.  x - y <= 1,  x, y >= 0.
    p = build("L", [1], [[1, -1]], [-1, -1], [0, 0], [INF, INF])
    p.lpoptimize("d")
    assert p.attributes.lpstatus == z.lp_unbounded
    assert p.hasprimalray() is True and p.hasdualray() is False
    d = np.array(p.getprimalray())
    assert (d >= -1e-9).all() and d[0] - d[1] <= 1e-9 and -d.sum() < -1e-9
    entering = p.getunbvec()
    assert isinstance(entering, (z.var, z.constraint))
    assert p.getdualray() is None


def test_dual_ray_certifies_infeasibility():
    # x + y >= 5 with 0 <= x, y <= 1; x - y <= 3 takes no part.
    p = build("GL", [5, 3], [[1, 1], [1, -1]], [1, 1], [0, 0], [1, 1])
    p.lpoptimize()
    assert p.hasdualray()
    y = np.array(p.getdualray())
    a = np.array([[1.0, 1.0], [1.0, -1.0]])
    w = y @ a
    least = sum(wj * (0 if wj > 0 else 1) for wj in w)  # min of y'Ax over the box
    sides = [(5, INF), (-INF, 3)]
    most = sum(yi * (hi if yi > 0 else lo) for yi, (lo, hi) in zip(y, sides) if abs(yi) > 1e-12)
    assert least - most > 1e-9
    assert p.getunbvec() == -1


def test_readers_refuse_stale_data_after_a_change():
    p = lp()
    p.optimize()
    p.chgbounds([0], ["U"], [1])
    with pytest.raises(z.SolverError, match="no LP solution"):
        p.getlpsolval(0, 0)
    with pytest.raises(z.SolverError, match="solved as an LP first"):
        p.getprimalray()
    p.optimize()
    with pytest.raises(z.SolverError, match="barrier"):
        p.getlastbarsol([])
    p.lpoptimize("b")
    bx, x = [], []
    p.getlastbarsol(bx)
    p.getlpsol(x)
    assert bx == x and x[0] == pytest.approx(1)
