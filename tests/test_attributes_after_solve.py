"""What getAttrib and the attribute view report after real solves, and
controls set from Python changing how a solve goes."""
import random

import pytest

import zorvan

SOLVE_COMPLETE, STOP_TIMELIMIT, STOP_NODELIMIT = 10, 1, 3
MIP_SOLUTION, MIP_OPTIMAL, LP_OPTIMAL = 4, 6, 1


def knapsack_optimum(values, weights, capacity):
    best = [0] * (capacity + 1)
    for v, w in zip(values, weights):
        for c in range(capacity, w - 1, -1):
            best[c] = max(best[c], best[c - w] + v)
    return best[capacity]


@pytest.fixture
def knapsack():
    rng = random.Random(11)
    values = [rng.randint(5, 60) for _ in range(30)]
    weights = [rng.randint(5, 40) for _ in range(30)]
    p = zorvan.problem("knapsack")
    x = [zorvan.var(vartype=zorvan.binary, name=f"x{i}") for i in range(30)]
    p.addVariable(x)
    p.addConstraint(zorvan.Dot(weights, x) <= 200, x[0] + x[1] <= 1)
    p.setObjective(zorvan.Dot(values, x), sense=zorvan.maximize)
    p.controls.outputlog = 0
    return p, x, values, weights


def market_split(seed=7, m=3, n=24):
    """A small market-split instance: easy to state, thousands of nodes to
    prove optimal, so limits on the search really bite."""
    rng = random.Random(seed)
    a = [[rng.randint(0, 99) for _ in range(n)] for _ in range(m)]
    p = zorvan.problem("split")
    x = [zorvan.var(vartype=zorvan.binary) for _ in range(n)]
    over = [zorvan.var() for _ in range(m)]
    under = [zorvan.var() for _ in range(m)]
    p.addVariable(x, over, under)
    for i in range(m):
        p.addConstraint(zorvan.Dot(a[i], x) + over[i] - under[i] == sum(a[i]) // 2)
    p.setObjective(zorvan.Sum(over) + zorvan.Sum(under))
    p.controls.outputlog = 0
    return p


class TestAfterMipSolve:
    def test_every_attribute_describes_the_solve(self, knapsack):
        p, x, values, weights = knapsack
        # The pair (0, 1) may not both be packed: the optimum is the better
        # of leaving out item 0 or item 1.
        best = max(knapsack_optimum(values[1:], weights[1:], 200),
                   knapsack_optimum(values[:1] + values[2:], weights[:1] + weights[2:], 200))
        assert p.optimize() == (zorvan.SolveStatus.COMPLETED, zorvan.SolStatus.OPTIMAL)
        attrs = p.getAttrib()
        assert attrs == {name: getattr(p.attributes, name) for name in attrs}
        assert attrs["mipobjval"] == pytest.approx(best, abs=1e-6)
        assert p.getObjVal() == pytest.approx(best, abs=1e-6)
        assert attrs["bestbound"] >= attrs["mipobjval"] - 1e-6
        assert 0 <= attrs["mipgap"] <= p.controls.miprelstop
        assert attrs["solvestatus"] is zorvan.SolveStatus.COMPLETED
        assert attrs["solstatus"] is zorvan.SolStatus.OPTIMAL
        assert (attrs["mipstatus"], attrs["stopstatus"]) == (MIP_OPTIMAL, SOLVE_COMPLETE)
        assert (attrs["cols"], attrs["rows"], attrs["elems"], attrs["mipents"]) == (30, 2, 32, 30)
        assert attrs["nodes"] >= 1 and attrs["solvetime"] > 0
        assert attrs["simplexiter"] > 0
        assert attrs["objsense"] == -1.0 and attrs["solvedobjs"] == 1
        assert sum(weights[i] * p.getSolution(x[i]) for i in range(30)) <= 200 + 1e-6

    def test_counts_follow_changes_after_a_solve(self, knapsack):
        p, x, values, _ = knapsack
        p.optimize()
        y = zorvan.var(vartype=zorvan.integer, ub=3)
        p.addVariable(y)
        p.addConstraint(y + x[2] <= 2)
        assert p.getAttrib("cols", "rows", "mipents", "elems") == {
            "cols": 31, "rows": 3, "mipents": 31, "elems": 34}
        p.addObjective(100 * y, weight=1.0, priority=0)
        p.optimize()
        # A unit of y is worth more than any item: y takes 2 and x2 is left out.
        assert p.getSolution(y) == pytest.approx(2) and p.getSolution(x[2]) == pytest.approx(0)
        # The objective value reported is the primary objective's.
        assert p.attributes.mipobjval == pytest.approx(
            sum(v * s for v, s in zip(values, p.getSolution(x))))


class TestControlsChangeTheSolve:
    def test_node_limit_stops_the_search(self):
        p = market_split()
        p.controls.maxnode = 5
        status, sol = p.optimize()
        assert status is zorvan.SolveStatus.STOPPED
        assert sol in (zorvan.SolStatus.FEASIBLE, zorvan.SolStatus.NOTFOUND)
        assert p.attributes.stopstatus == STOP_NODELIMIT
        assert p.attributes.nodes <= 5 + 1
        assert p.attributes.mipgap > 0 or sol is zorvan.SolStatus.NOTFOUND

    def test_time_limit_stops_the_search(self):
        p = market_split(seed=3, m=4, n=32)
        p.controls.timelimit = 0.2
        status, _ = p.optimize()
        assert status is zorvan.SolveStatus.STOPPED
        assert p.attributes.stopstatus == STOP_TIMELIMIT
        assert p.attributes.solvetime < 5

    def test_loose_gap_accepts_an_early_solution(self):
        p = market_split()
        p.setControl({"miprelstop": 1.0, "mipabsstop": 1e9})
        p.optimize()
        assert p.attributes.mipstatus in (MIP_SOLUTION, MIP_OPTIMAL)
        assert p.attributes.nodes < 200

    def test_symmetry_handling_prunes_identical_bins(self):
        # Six identical bins: without symmetry handling the search visits
        # the same packings in every order of the bins.
        items = [40, 40, 40, 35, 35, 35, 30, 30]
        nodes = {}
        for symmetry in (1, 0):
            p = zorvan.problem("bins")
            p.setControl({"outputlog": 0, "threads": 1, "symmetry": symmetry})
            used = [zorvan.var(vartype=zorvan.binary) for _ in range(6)]
            put = [[zorvan.var(vartype=zorvan.binary) for _ in range(6)] for _ in items]
            p.addVariable(used, put)
            p.addConstraint(zorvan.Sum(row) == 1 for row in put)
            p.addConstraint(zorvan.Dot(items, [row[b] for row in put]) <= 100 * used[b]
                            for b in range(6))
            p.setObjective(zorvan.Sum(used))
            p.optimize()
            assert p.getObjVal() == pytest.approx(4)
            nodes[symmetry] = p.attributes.nodes
        assert nodes[1] < nodes[0]

    def test_heuristic_emphasis_changes_the_search(self):
        paths = set()
        for emphasis in (0.0, 1.0):
            p = market_split(seed=2, m=2, n=18)
            p.setControl({"threads": 1, "heuremphasis": emphasis})
            p.optimize()
            assert p.getObjVal() == pytest.approx(0, abs=1e-6)
            paths.add((p.attributes.nodes, p.attributes.simplexiter))
        assert len(paths) == 2

    def test_scaling_changes_the_simplex_path(self):
        rng = random.Random(1)
        rows = []
        for _ in range(60):
            scale = 10.0 ** rng.randint(-4, 4)
            rows.append((scale, [(j, scale * rng.randint(1, 9)) for j in range(60)
                                 if rng.random() < 0.3]))
        cost = [10.0 ** rng.randint(-3, 3) for _ in range(60)]
        results = {}
        for scaling in (1, 0):
            p = zorvan.problem("scaled")
            p.setControl({"outputlog": 0, "presolve": 0, "scaling": scaling})
            x = [zorvan.var() for _ in range(60)]
            p.addVariable(x)
            p.addConstraint(zorvan.Sum(a * x[j] for j, a in terms) <= 100 * scale
                            for scale, terms in rows)
            p.setObjective(zorvan.Dot(cost, x), sense=zorvan.maximize)
            p.optimize()
            results[scaling] = (p.getObjVal(), p.attributes.simplexiter)
        assert results[1][0] == pytest.approx(results[0][0], rel=1e-9)
        assert results[1][1] != results[0][1]

    def test_output_log_switches_the_log(self, knapsack, capfd):
        p = knapsack[0]
        p.controls.outputlog = 1
        p.optimize()
        assert capfd.readouterr().out.strip()
        p.controls.outputlog = 0
        p.optimize()
        assert capfd.readouterr().out == ""


def test_lp_attributes():
    p = zorvan.problem("lp")
    x, y = zorvan.var(name="x"), zorvan.var(name="y")
    p.addVariable(x, y)
    p.addConstraint(x + 2 * y <= 14, 3 * x - y >= 0, x - y <= 2)
    p.setObjective(3 * x + 4 * y, sense=zorvan.maximize)
    p.controls.outputlog = 0
    p.optimize()
    attrs = p.getAttrib("lpobjval", "lpstatus", "simplexiter", "mipents", "solvedobjs")
    assert attrs["lpobjval"] == pytest.approx(34.0)
    assert attrs["lpstatus"] == LP_OPTIMAL and attrs["mipents"] == 0
    assert attrs["simplexiter"] >= 1 and attrs["solvedobjs"] == 1
