"""The model fuzzer of tools/: a short seeded run over LP and MIP operations
finds nothing, its shadow model solves small models to their known optima,
and its checks flag answers that are wrong."""
import os
import re
import subprocess
import sys

import pytest

import zorvan as z

TOOLS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "tools")
sys.path.insert(0, TOOLS)

from fuzz.runner import Finding, check_solve, run_ops  # noqa: E402
from fuzz.shadow import INF, Shadow  # noqa: E402


def test_seeded_lp_and_mip_run_is_clean(tmp_path):
    out = subprocess.run(
        [sys.executable, os.path.join(TOOLS, "fuzz_model.py"), "--cases", "30", "--seed", "7",
         "--profiles", "lp,mip", "--no-known", "--out", str(tmp_path), "--timeout", "30"],
        capture_output=True, text=True, timeout=120)
    assert out.returncode == 0, out.stderr
    summary = out.stdout.strip().splitlines()[-1]
    m = re.match(r"cases 30, crashes (\d+), hangs (\d+), wrong answers (\d+) .*errors (\d+) .*harness (\d+)",
                 summary)
    assert m, summary
    assert m.groups() == ("0", "0", "0", "0", "0"), out.stdout


def shadow_of(cols, rows=(), sense=1, lin=None, sets=(), obj_quad=None):
    sh = Shadow()
    for vid, kind, lb, ub, thr in cols:
        sh.add_col(vid, {"kind": kind, "lb": lb, "ub": ub, "thr": thr})
    for cid, coefs, lb, ub, ind in rows:
        sh.add_row(cid, coefs, lb, ub, ind)
    for sid, stype, vids, weights in sets:
        sh.add_set(sid, stype, vids, weights)
    sh.set_objective(lin or {}, obj_quad or {}, 0.0, sense)
    return sh


class TestShadowOptima:
    def test_knapsack_matches_enumeration(self):
        # max 5a + 4b + 3c, 2a + 3b + c <= 5, binary: a = b = 1, value 9.
        sh = shadow_of([(v, "B", 0.0, 1.0, -INF) for v in "abc"],
                       [("cap", {"a": 2, "b": 3, "c": 1}, -INF, 5.0, None)],
                       sense=-1, lin={"a": 5, "b": 4, "c": 3})
        best = max(5 * a + 4 * b + 3 * c for a in (0, 1) for b in (0, 1) for c in (0, 1)
                   if 2 * a + 3 * b + c <= 5)
        res = sh.solve()
        assert res["status"] == "optimal" and res["obj"] == pytest.approx(best)
        assert sh.solve(relaxed=True)["obj"] == pytest.approx(8 + 8 / 3)

    def test_sets_indicators_and_thresholds(self):
        xs = [(f"x{i}", "C", 0.0, 1.0, -INF) for i in range(3)]
        row = [("r", {"x0": 1, "x1": 1, "x2": 1}, -INF, 2.0, None)]
        lin = {"x0": 1, "x1": 2, "x2": 3}
        for stype, best in ((1, 3.0), (2, 5.0)):
            sh = shadow_of(xs, row, -1, lin, [("s", stype, ["x0", "x1", "x2"], [1.0, 2.0, 3.0])])
            assert sh.solve()["obj"] == pytest.approx(best)
        # b = 0 -> x == -8 cannot hold for x in [3, 5]: b = 1 and x = 3.
        sh = shadow_of([("x", "C", 3.0, 5.0, -INF), ("b", "B", 0.0, 1.0, -INF)],
                       [("c", {"x": 1}, -8.0, -8.0, ["b", 0])], lin={"x": 1})
        assert sh.solve()["obj"] == pytest.approx(3.0)
        # min x + 5y, x + y >= 2, x = 0 or 3 <= x <= 10: x = 3.
        sh = shadow_of([("x", "S", 0.0, 10.0, 3.0), ("y", "C", 0.0, INF, -INF)],
                       [("r", {"x": 1, "y": 1}, 2.0, INF, None)], lin={"x": 1, "y": 5})
        assert sh.solve()["obj"] == pytest.approx(3.0)
        assert sh.solve(relaxed=True)["obj"] == pytest.approx(2.0)

    def test_statuses_and_convex_qp(self):
        sh = shadow_of([("x", "C", 0.0, 3.0, -INF)], [("r", {"x": 1}, 5.0, INF, None)])
        assert sh.solve()["status"] == "infeasible"
        sh = shadow_of([("x", "I", 0.0, INF, -INF)], sense=-1, lin={"x": 1})
        assert sh.solve()["status"] == "unbounded"
        # min x^2 + y^2 + w^2 - xy with x + y + w >= 3: 1.8 at (1.2, 1.2, 0.6).
        cols = [(v, "C", -5.0, INF, -INF) for v in "xyw"]
        sh = shadow_of(cols, [("s", {"x": 1, "y": 1, "w": 1}, 3.0, INF, None)],
                       obj_quad={("x", "x"): 1, ("y", "y"): 1, ("w", "w"): 1, ("x", "y"): -1})
        assert sh.solve()["obj"] == pytest.approx(1.8, abs=1e-6)
        # A column outside the objective that can run off makes the QP unbounded.
        sh = shadow_of(cols[:2], lin={"y": -1}, obj_quad={("x", "x"): 1})
        assert sh.solve()["status"] == "unbounded"


class FakeProblem:
    """Answers of a solver that is wrong in a chosen way."""

    def __init__(self, x, obj, duals=None, rcost=None, expr_value=None):
        self.x, self.obj, self.duals, self.rcost = x, obj, duals, rcost
        self.expr_value = obj if expr_value is None else expr_value

    def getProbStatusString(self):
        return "lp_optimal"

    def getObjVal(self):
        return self.obj

    def getSolution(self, *args):
        if not args:
            return list(self.x)
        if isinstance(args[0], list):
            return [self.x[0], self.x[1]]
        return self.expr_value        # the objective expression

    def getSlack(self, *args):
        # Row r: x + y <= 4.
        return [4 - self.x[0] - self.x[1]]

    def getDual(self):
        return self.duals

    def getRCost(self):
        return self.rcost


class TestChecksFlagWrongAnswers:
    # max x + 2y, x + y <= 4, x, y in [0, 3]: y = 3, x = 1, value 7;
    # dual of the row 1, reduced costs (0, 1).
    def check(self, fake):
        sh = shadow_of([("x", "C", 0.0, 3.0, -INF), ("y", "C", 0.0, 3.0, -INF)],
                       [("r", {"x": 1, "y": 1}, -INF, 4.0, None)], sense=-1, lin={"x": 1, "y": 2})
        ns = {"z": z, "p": fake, "R": (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL),
              "V": {"x": z.var(name="x"), "y": z.var(name="y")}, "C": {"r": "r"}}
        check_solve(ns, sh, ["solve", "optimize", ""])

    def test_right_answer_passes(self):
        self.check(FakeProblem([1.0, 3.0], 7.0, [1.0], [0.0, 1.0]))

    @pytest.mark.parametrize("fake, category", [
        (FakeProblem([0.0, 3.0], 6.0, [1.0], [0.0, 1.0]), "objective"),
        (FakeProblem([2.0, 3.0], 7.0, [1.0], [0.0, 1.0]), "infeasible_point"),
        (FakeProblem([1.0, 2.5], 7.0, [1.0], [0.0, 1.0]), "objval_mismatch"),
        (FakeProblem([1.0, 3.0], 7.0, [1.0], [0.0, 1.0], expr_value=6.0), "evaluation"),
        (FakeProblem([1.0, 3.0], 7.0, [-1.0], [2.0, 3.0]), "dual"),
        (FakeProblem([1.0, 3.0], 7.0, [1.0], [0.5, 1.0]), "dual"),
    ])
    def test_wrong_answers_are_flagged(self, fake, category):
        with pytest.raises(Finding) as e:
            self.check(fake)
        assert e.value.kind == "wrong" and e.value.category == category


def test_operation_lists_run_against_the_module():
    # Add, delete by index, solve: the shadow follows the index shift.
    ops = [["addvars", [["a", "C", 0.0, 4.0, -INF], ["b", "I", 0.0, 9.0, -INF],
                        ["c", "C", 0.0, 2.0, -INF]]],
           ["addcons", [["r1", "le", [["a", 1.0], ["b", 2.0], ["c", 1.0]], 0.0, 7.0, 7.0]], False],
           ["setobj", [["a", 1.0], ["b", 1.5], ["c", 3.0]], [], 1.0, -1],
           ["solve", "optimize", ""],
           ["delvar", ["a"], "index"],
           ["solve", "optimize", ""]]
    assert run_ops(ops) == {"ok": True}
    ops.append(["addvars", [["d", "C", 1e20, 1e20, -INF]]])
    ops.append(["solve", "optimize", ""])
    res = run_ops(ops)
    # lb = +inf: refused at the add, infeasible, or a known unclear error.
    assert res["ok"] or res["category"] == "bad_bounds_unclear"
