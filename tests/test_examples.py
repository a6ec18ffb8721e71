"""The examples run as programs and print the known optima of their models."""
import os
import re
import subprocess
import sys

import numpy as np
import pytest

import zorvan as z

EXAMPLES = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "examples")


def run(name):
    return run_args(name)


def run_args(name, *args):
    done = subprocess.run([sys.executable, "-X", "dev", os.path.join(EXAMPLES, name), *args],
                          capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stderr
    return done.stdout


def number(text, label):
    m = re.search(re.escape(label) + r"\s*([-+0-9.e]+)", text)
    assert m, (label, text)
    return float(m.group(1))


def test_quickstart():
    out = run("quickstart.py")
    assert "status: COMPLETED OPTIMAL" in out
    # max x, 2x + 3 <= 7, x <= 10: x = 2, the row is tight, its dual 1/2.
    assert number(out, "x =") == pytest.approx(2.0)
    assert number(out, "dual of c =") == pytest.approx(0.5)
    # max 3x + 2y + 1 with x <= 2 and x + 4y <= 10: y = 2, value 11.
    assert number(out, "objective =") == pytest.approx(11.0)
    assert number(out, "3x + 2y + 1 at the solution =") == pytest.approx(11.0)
    assert "x, y = [2.0, 2.0]" in out


def test_knapsack_mip():
    out = run("knapsack_mip.py")
    # Best of all subsets of weight <= 14: items 0, 1 and 4 (23 + 3).
    assert number(out, "knapsack value:") == 26.0
    assert "taken: [0, 1, 4]" in out
    # Without both rivals the best is 24 (items 0, 2, 3, 4 or 1, 2, 3); the
    # bonus needs item 0: 24 + 6.
    assert number(out, "with rivals and bonus:") == 30.0
    assert "taken: [0, 2, 3, 4] bonus: 1" in out


def test_portfolio_qp():
    out = run("portfolio_qp.py")
    # Both constraints bind: solve the first-order conditions
    # 2 S w = a 1 + b r, 1'w = 1, r'w = 0.1 as one linear system.
    r = np.array([0.06, 0.10, 0.15])
    s = np.array([[0.010, 0.002, 0.001], [0.002, 0.040, 0.010], [0.001, 0.010, 0.090]])
    kkt = np.zeros((5, 5))
    kkt[:3, :3] = 2 * s
    kkt[:3, 3], kkt[:3, 4] = -1, -r
    kkt[3, :3], kkt[4, :3] = 1, r
    sol = np.linalg.solve(kkt, [0, 0, 0, 1, 0.1])
    w = sol[:3]
    weights = [float(v) for v in re.search(r"weights: \[(.*)\]", out).group(1).split(",")]
    assert weights == pytest.approx(w, abs=1e-4)
    assert number(out, "variance:") == pytest.approx(w @ s @ w, abs=1e-6)
    assert number(out, "return:") == pytest.approx(0.1, abs=1e-4)
    assert number(out, "price of return (dual of target):") == pytest.approx(sol[4], rel=1e-4)


def test_transport_built_with_vars():
    out = run("transport_vars.py")
    # The classic transportation problem: cost 153.675 (thousands of dollars).
    assert number(out, "cost:") == pytest.approx(153.675, abs=1e-4)
    assert "seattle -> chicago: 300" in out
    assert "san-diego -> new-york: 325" in out and "san-diego -> topeka: 275" in out


def test_hanging_chain_matches_scipy_on_the_same_grid():
    optimize = pytest.importorskip("scipy.optimize")
    n = 20
    out = run_args("hanging_chain.py", str(n))
    assert "nlp_solution" in out or "nlp_globally_optimal" in out
    h = 1.0 / n

    def pieces(v):
        full = np.concatenate(([1.0], v, [3.0]))
        return full, np.sqrt(1 + (np.diff(full) / h) ** 2)

    def energy(v):
        full, s = pieces(v)
        return h * np.sum((full[:-1] + full[1:]) / 2 * s)

    start = np.linspace(1, 3, n + 1)[1:-1] - 0.5
    ref = optimize.minimize(energy, start, method="SLSQP", options={"ftol": 1e-12, "maxiter": 500},
                            constraints=[{"type": "eq", "fun": lambda v: h * np.sum(pieces(v)[1]) - 4}])
    assert ref.success
    assert number(out, "length =") == pytest.approx(4.0, abs=1e-6)
    assert number(out, "energy =") == pytest.approx(ref.fun, rel=1e-6)
    assert number(out, "lowest point =") == pytest.approx(min(ref.x), abs=1e-4)
