"""Ranging and basis solves: each range checked by re-solving just inside
and just outside it, ftran and btran against NumPy solves with the basis
matrix built from the pivot order."""
import numpy as np
import pytest

import zorvan as z

INF = z.infinity
A = np.array([[1.0, 2.0], [3.0, 1.0], [1.0, 0.0]])
B = np.array([4.0, 6.0, 10.0])
C = np.array([-1.0, -1.0])


def lp(c=C, b=B):
    """min c.x  s.t.  A x <= b,  x >= 0 (the third row is loose)."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["L"] * 3, list(b), [0, 0, 0], [], [])
    p.addcols(list(c), [0, 3], [0, 1, 2, 0, 1], [1, 3, 1, 2, 1], [0, 0], [INF, INF])
    p.lpoptimize()
    return p


def solution(p):
    x = []
    p.getlpsol(x)
    return np.array(x)


def basis(p):
    r, c = [], []
    p.getbasis(r, c)
    return r, c


def test_cost_ranges_hold_inside_and_break_outside():
    p = lp()
    lo, up = [], []
    p.objsa([0, 1], lo, up)
    base = basis(p)
    for j in range(2):
        for value, same in ((lo[j] + 1e-3, True), (up[j] - 1e-3, True),
                            (lo[j] - 1e-2, False), (up[j] + 1e-2, False)):
            c = C.copy()
            c[j] = value
            q = lp(c=c)
            assert (basis(q) == base) is same, (j, value)


def test_rhs_ranges_hold_inside_and_break_outside():
    p = lp()
    lo, up = [], []
    p.rhssa([0, 1], lower=lo, upper=up)
    base = basis(p)
    for i in range(2):
        for value, same in ((lo[i] + 1e-3, True), (up[i] - 1e-3, True),
                            (lo[i] - 1e-2, False), (up[i] + 1e-2, False)):
            b = B.copy()
            b[i] = value
            q = lp(b=b)
            assert (basis(q) == base) is same, (i, value)


def test_bound_ranges_of_basic_columns_end_at_their_values():
    p = lp()
    x = solution(p)
    out = [[], [], [], []]
    p.bndsa(mindex=[0, 1], lblower=out[0], lbupper=out[1], ublower=out[2], ubupper=out[3])
    assert out[1] == pytest.approx(x) and out[2] == pytest.approx(x)
    assert out[0] == [-INF, -INF] and out[3] == [INF, INF]
    with pytest.raises(z.InterfaceError, match="Must provide arguments lblower"):
        p.bndsa([0], None, None, None, None)


def test_ftran_and_btran_solve_with_the_basis_matrix():
    p = lp()
    order = []
    p.getpivotorder(order)
    assert len(order) == 3
    def position(objs, o):
        return next(i for i, x in enumerate(objs) if x is o)

    bmat = np.zeros((3, 3))
    variables, constraints = p.getVariable(), p.getConstraint()
    for k, v in enumerate(order):
        if isinstance(v, z.constraint):
            bmat[position(constraints, v), k] = 1.0
        else:
            bmat[:, k] = A[:, position(variables, v)]
    rhs = [1.0, -2.0, 0.5]
    f, t = list(rhs), list(rhs)
    p.ftran(f)
    p.btran(t)
    assert f == pytest.approx(np.linalg.solve(bmat, rhs))
    assert t == pytest.approx(np.linalg.solve(bmat.T, rhs))
    assert p.basisstability() == pytest.approx(np.linalg.cond(bmat, 1), rel=0.5)
    with pytest.raises(z.InterfaceError, match="Mismatched lengths"):
        p.ftran([1.0])
    with pytest.raises(z.ModelError, match="conv_arr2obj"):
        p.btran((1.0, 2.0, 3.0))


def test_analysis_refuses_without_an_optimal_lp_of_the_model_as_it_is():
    p = lp()
    p.chgobj([0], [-2])
    with pytest.raises(z.SolverError, match="solved as an LP first"):
        p.objsa([0], [], [])
    p.chgcoltype([0], ["I"])
    p.optimize()
    with pytest.raises(z.SolverError, match="MIP"):
        p.ftran([0.0, 0.0, 0.0])
