"""Convex QPs with positive semidefinite Hessians and columns without
curvature: the solver's 'optimal' and 'unbounded' must both be true, and no
solve may hang. Optima come from scipy's SLSQP (several starts); unbounded
cases from an LP over the directions of recession with Qd = 0."""
import subprocess
import sys
import textwrap

import numpy as np
import pytest

import zorvan as z

optimize = pytest.importorskip("scipy.optimize")

from test_random_qp import best_slsqp, solve_with_zorvan  # noqa: E402


def test_column_outside_the_hessian_in_a_row_does_not_hang():
    # min x^2 with y >= -2 only in y <= 10: once cycled forever.
    code = textwrap.dedent("""
        import zorvan as z
        x, y = z.var(lb=-2.0), z.var(lb=-2.0)
        p = z.problem()
        p.setOutputEnabled(False)
        p.addVariable(x, y)
        p.setObjective(x * x)
        p.addConstraint(y <= 10)
        for flags in ("", "d", "p", "b"):
            s = p.optimize(flags)
            print(s[1] == z.SolStatus.OPTIMAL, round(p.getObjVal(), 9), round(p.getSolution(x), 4),
                  -2 - 1e-7 <= p.getSolution(y) <= 10 + 1e-7)
    """)
    out = subprocess.run([sys.executable, "-c", code], timeout=60, capture_output=True, text=True)
    assert out.returncode == 0, out.stderr[-2000:]
    assert out.stdout.split("\n")[:4] == ["True 0.0 0.0 True"] * 4


def test_bounded_qp_with_a_free_column_outside_everything_is_optimal():
    x, y, w = z.var(lb=-z.infinity, ub=4.0), z.var(lb=-z.infinity, ub=4.0), z.var(lb=-5, ub=6)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x, y, w)
    p.addConstraint(w <= -1)
    p.setObjective(-3.0 * x + 4.5 * x * x)
    # d/dx (4.5 x^2 - 3x) = 0 at x = 1/3: -0.5.
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getObjVal() == pytest.approx(-0.5, abs=1e-8)
    assert p.getSolution(x) == pytest.approx(1 / 3, abs=1e-5)


def test_unbounded_qp_is_not_reported_optimal_at_a_huge_point():
    bounds = ((0, 3.0), (1.0, 10.0), (-2.0, z.infinity), (1.0, 6.0), (0, 6.0), (0, 6.0), (0, 10.0))
    x1, x2, x3, x4, x5, x6, x7 = (z.var(lb=lb, ub=ub) for lb, ub in bounds)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x1, x2, x3, x4, x5, x6, x7)
    p.addConstraint(x3 + 2 * x5 >= -4, -1.5 * x4 - 1.5 * x1 + 4 * x5 - 2 * x7 == 4,
                    -2 * x7 + x4 - 3 * x6 + x2 == 1)
    # x3 grows without limit, and with it only the first row: -2 x3 falls.
    p.setObjective(-2.0 * x3 + x6 + 4.0 * x5 + 3.0 + 1.5 * x1 * x1)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.UNBOUNDED)


def psd_qp(rng):
    """A feasible convex QP whose Hessian is B'B with B of rank below n (so
    only semidefinite), some columns outside it, bounds free or finite."""
    n = int(rng.integers(2, 7))
    b = np.round(rng.normal(size=(int(rng.integers(0, n)), n)), 1)
    b[:, rng.random(n) < 0.3] = 0.0  # columns without curvature
    q = b.T @ b
    c = np.round(rng.normal(size=n) * 2, 1)
    x0 = np.round(rng.uniform(-1, 1, n), 1)
    lb = np.where(rng.random(n) < 0.5, x0 - np.round(rng.uniform(0, 2, n), 1), -np.inf)
    ub = np.where(rng.random(n) < 0.5, x0 + np.round(rng.uniform(0, 2, n), 1), np.inf)
    rows = []
    for _ in range(int(rng.integers(0, 4))):
        a = np.where(rng.random(n) < 0.6, np.round(rng.normal(size=n), 1), 0.0)
        kind = rng.choice(["L", "G", "E"], p=[0.45, 0.45, 0.1])
        slack = round(float(rng.uniform(0, 2)), 1)
        rows.append((a, kind, a @ x0 + {"L": slack, "G": -slack, "E": 0.0}[kind]))
    return q, c, lb, ub, rows


def descent_direction(q, c, lb, ub, rows):
    """min c'd over Qd = 0 and the directions the bounds and rows allow,
    each entry within [-1, 1]: negative when the QP is unbounded."""
    a_ub, a_eq = [], [q]
    for a, kind, _ in rows:
        if kind == "L":
            a_ub.append(a)
        elif kind == "G":
            a_ub.append(-a)
        else:
            a_eq.append(a[None, :])
    a_eq = np.vstack(a_eq)
    bounds = [(0 if np.isfinite(lo) else -1, 0 if np.isfinite(up) else 1) for lo, up in zip(lb, ub)]
    r = optimize.linprog(c, A_ub=np.array(a_ub) if a_ub else None,
                         b_ub=np.zeros(len(a_ub)) if a_ub else None,
                         A_eq=a_eq, b_eq=np.zeros(len(a_eq)), bounds=bounds, method="highs")
    assert r.status == 0
    return r.fun


class Start:
    """Stands in for a random generator so that SLSQP starts from one point."""

    def __init__(self, x):
        self.x = x

    def uniform(self, low, high, size):
        return self.x.copy()


def test_random_semidefinite_qps_match_scipy():
    rng = np.random.default_rng(1125)
    seen = {"optimal": 0, "unbounded": 0}
    for case in range(80):
        q, c, lb, ub, rows = psd_qp(rng)
        p, status = solve_with_zorvan(q, c, lb, ub, rows)
        if descent_direction(q, c, lb, ub, rows) < -1e-7:
            assert status == (z.SolveStatus.COMPLETED, z.SolStatus.UNBOUNDED), case
            seen["unbounded"] += 1
            continue
        reference = best_slsqp(q, c, lb, ub, rows, rng)
        assert reference is not None, case
        assert status == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL), case
        x = np.array(p.getSolution())
        assert np.all(x >= lb - 1e-6) and np.all(x <= ub + 1e-6), case
        for a, kind, rhs in rows:
            act = a @ x
            assert {"L": act <= rhs + 1e-6, "G": act >= rhs - 1e-6,
                    "E": abs(act - rhs) <= 1e-6}[kind], case
        value = 0.5 * x @ q @ x + c @ x
        assert p.getObjVal() == pytest.approx(value, abs=1e-7), case
        # SLSQP can stall on flat (semidefinite) objectives: the result must
        # be no worse than any of its runs, and a run from it finds nothing better.
        tol = 1e-5 * (1 + abs(value))
        assert value <= reference + tol, case
        polished = best_slsqp(q, c, lb, ub, rows, Start(x), starts=1)
        assert polished is None or polished >= value - tol, case
        seen["optimal"] += 1
    # Both kinds are exercised in numbers.
    assert seen["optimal"] >= 20 and seen["unbounded"] >= 10, seen
