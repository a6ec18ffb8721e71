"""Convex QPs against scipy's SLSQP: small positive definite QPs with boxes
and a few rows (seeded), and QPs on which the solver once returned
"optimal" at a point that is not, or failed."""
import numpy as np
import pytest

import zorvan as z

optimize = pytest.importorskip("scipy.optimize")


def random_qp(rng):
    """A feasible positive definite QP: objective c'x + x'Qx/2, some bounds
    infinite, rows of kinds <=, >=, = that hold at a point x0."""
    n = int(rng.integers(2, 7))
    m = rng.normal(size=(n, n))
    q = np.round(m @ m.T + rng.uniform(0.05, 1) * np.eye(n), 2)
    c = np.round(rng.normal(size=n) * 3, 2)
    x0 = np.round(rng.uniform(-2, 2, size=n), 1)
    lb = np.where(rng.random(n) < 0.7, x0 - np.round(rng.uniform(0, 3, n), 1), -np.inf)
    ub = np.where(rng.random(n) < 0.7, x0 + np.round(rng.uniform(0, 3, n), 1), np.inf)
    rows = []
    for _ in range(int(rng.integers(0, 4))):
        a = np.round(rng.normal(size=n), 1)
        kind = rng.choice(["L", "G", "E"], p=[0.45, 0.45, 0.1])
        slack = round(float(rng.uniform(0, 2)), 1)
        rhs = a @ x0 + {"L": slack, "G": -slack, "E": 0.0}[kind]
        rows.append((a, kind, rhs))
    return q, c, lb, ub, rows


def solve_with_zorvan(q, c, lb, ub, rows, sense=z.minimize):
    n = len(c)
    xs = [z.var(lb=-z.infinity if np.isinf(lb[j]) else lb[j],
                ub=z.infinity if np.isinf(ub[j]) else ub[j]) for j in range(n)]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(xs)
    for a, kind, rhs in rows:
        body = z.Sum(a[j] * xs[j] for j in range(n) if a[j] != 0)
        p.addConstraint({"L": body <= rhs, "G": body >= rhs, "E": body == rhs}[kind])
    f = (z.Sum(0.5 * q[i, j] * xs[i] * xs[j] for i in range(n) for j in range(n))
         + z.Sum(c[j] * xs[j] for j in range(n)))
    p.setObjective(f if sense == z.minimize else -f, sense=sense)
    return p, p.optimize()


def best_slsqp(q, c, lb, ub, rows, rng, starts=4):
    """The best feasible SLSQP result from several random starts."""
    constraints = []
    for a, kind, rhs in rows:
        if kind == "L":
            constraints.append({"type": "ineq", "fun": lambda x, a=a, r=rhs: r - a @ x,
                                "jac": lambda x, a=a: -a})
        else:
            constraints.append({"type": "ineq" if kind == "G" else "eq",
                                "fun": lambda x, a=a, r=rhs: a @ x - r, "jac": lambda x, a=a: a})
    bounds = [(None if np.isinf(lo) else lo, None if np.isinf(up) else up) for lo, up in zip(lb, ub)]
    best = None
    for _ in range(starts):
        r = optimize.minimize(lambda x: 0.5 * x @ q @ x + c @ x, rng.uniform(-3, 3, len(c)),
                              jac=lambda x: q @ x + c, bounds=bounds, constraints=constraints,
                              method="SLSQP", options={"ftol": 1e-12, "maxiter": 500})
        x = r.x
        feasible = np.all(x >= lb - 1e-7) and np.all(x <= ub + 1e-7) and all(
            (con["fun"](x) >= -1e-7) if con["type"] == "ineq" else abs(con["fun"](x)) <= 1e-7
            for con in constraints)
        value = 0.5 * x @ q @ x + c @ x
        if feasible and (best is None or value < best):
            best = value
    return best


def test_random_convex_qps_match_slsqp():
    rng = np.random.default_rng(20261125)
    compared = 0
    for case in range(60):
        q, c, lb, ub, rows = random_qp(rng)
        reference = best_slsqp(q, c, lb, ub, rows, rng)
        assert reference is not None, case  # every instance has a feasible point
        p, status = solve_with_zorvan(q, c, lb, ub, rows)
        assert status == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL), case
        assert p.getObjVal() == pytest.approx(reference, rel=1e-6, abs=1e-6), case
        x = np.array(p.getSolution())
        assert np.all(x >= lb - 1e-7) and np.all(x <= ub + 1e-7), case
        compared += 1
    assert compared == 60


# Instances on which HiGHS's QP solver claimed an optimum that is not one
# (42.43895) or failed ("solve error"), with their optima from SLSQP.
FAILED_ONCE = [
    (np.array([[3.28, -0.98, -2.96, 2.05, -0.45], [-0.98, 6.95, 4.51, -1.56, -4.78],
               [-2.96, 4.51, 12.31, -7.81, -4.27], [2.05, -1.56, -7.81, 8.22, 0.11],
               [-0.45, -4.78, -4.27, 0.11, 11.08]]),
     np.array([-1.82, 0.83, -4.02, -2.44, -1.25]),
     np.array([-1.2, -3.9, -2.3, -1.0, -np.inf]), np.array([np.inf, 0.9, 1.2, 1.0, 3.2]),
     [(np.array([-1.1, 0.3, -0.6, 1.3, -1.7]), "L", -0.29),
      (np.array([-0.6, -2.3, 0.3, 1.4, 1.3]), "L", 3.8)],
     -7.4478366997),
    (np.array([[1.51, 1.9, 3.0, 1.81], [1.9, 6.12, 6.82, 0.0], [3.0, 6.82, 10.28, 1.41],
               [1.81, 0.0, 1.41, 4.75]]),
     np.array([-5.83, 0.34, -1.8, -2.63]),
     np.array([0.2, -np.inf, -np.inf, -1.4]), np.array([np.inf, 2.6, np.inf, -0.2]),
     [], -34.9554203598),
]


@pytest.mark.parametrize("sense", [z.minimize, z.maximize])
@pytest.mark.parametrize("case", range(len(FAILED_ONCE)))
def test_qps_the_solver_once_got_wrong(case, sense):
    q, c, lb, ub, rows, optimum = FAILED_ONCE[case]
    p, status = solve_with_zorvan(q, c, lb, ub, rows, sense)
    assert status == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    sign = 1 if sense == z.minimize else -1
    assert p.getObjVal() == pytest.approx(sign * optimum, abs=1e-6)
    # The reduced costs and duals reported satisfy Qx + c = A'y + d (of f,
    # whose sign the maximisation turns).
    x = np.array(p.getSolution())
    y = np.array(p.getDual()) if rows else np.zeros(0)
    d = np.array(p.getRCost())
    a = np.array([r[0] for r in rows]).reshape(len(rows), len(c))
    assert sign * (q @ x + c) == pytest.approx(a.T @ y + d, abs=1e-6)
