"""The cut pool members and lazy constraints through real solves of the
engine's own branch-and-cut."""
import itertools

import numpy as np
import pytest

import zorvan as z

def knapsack(n=12, seed=3):
    rng = np.random.default_rng(seed)
    value = rng.integers(20, 100, n).astype(float)
    weight = rng.integers(10, 70, n).astype(float)
    cap = float(weight.sum() // 2)
    x = [z.var(vartype=z.binary) for _ in range(n)]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x)
    row = z.Dot(weight, x) <= cap
    p.addConstraint(row)
    p.setObjective(z.Dot(value, x), sense=z.maximize)
    p.setControl({"miprelstop": 1e-9, "mipabsstop": 1e-9})
    return p, x, row, (value, weight, cap)


def best(data, allowed=lambda b: True):
    value, weight, cap = data
    return max(float(np.array(b) @ value) for b in itertools.product((0, 1), repeat=len(value))
               if np.array(b) @ weight <= cap and allowed(b))


class TestCutPool:
    def test_stored_cuts_read_back_and_hold_at_the_optimum(self):
        p, x, _, data = knapsack()
        handles = []
        p.storecuts(0, [3, 4], ["L", "L"], [1, 0], [0, 2], handles, [x[0], x[1], x[2]],
                    [1, 1, 1])
        assert len(handles) == 2 and all(isinstance(h, z.poolcut) for h in handles)
        types, rowtypes, start, cols, coefs, rhs = [], [], [], [], [], []
        p.getcpcuts(handles, 10, types, rowtypes, start, cols, coefs, rhs)
        assert types == [3, 4] and rowtypes == ["L", "L"] and rhs == [1, 0]
        assert start == [0, 2, 3] and coefs == [1, 1, 1]
        assert all(c is v for c, v in zip(cols, x[:3]))
        p.optimize()
        expected = best(data, lambda b: b[0] + b[1] <= 1 and b[2] == 0)
        assert p.getObjVal() == pytest.approx(expected)
        sol = p.getSolution(x)
        assert p.getcutslack(handles[0]) == pytest.approx(1 - sol[0] - sol[1])
        listed, viol = [], []
        assert p.getcpcutlist(4, 1, -1e20, 5, listed, viol) == 1
        assert viol == [0.0]
        p.delcpcuts(3, 1)
        with pytest.raises(z.SolverError, match="not a cut of this problem's pool"):
            p.getcutslack(handles[0])

    def test_loaded_cuts_wait_for_the_root_and_can_be_unloaded(self):
        p, x, _, data = knapsack()
        p.addcuts([1], ["L"], [0], [0], [x[5]], [1])
        listed = []
        assert p.getcutlist(0, -1, 10, listed) == 1
        p.delcuts(0, 0, -1, 0.0)
        assert p.getcutlist(0, -1, 10, []) == 0
        p.optimize()  # the cut stays in the pool and still holds
        assert p.getSolution(x[5]) == pytest.approx(0)
        assert p.getObjVal() == pytest.approx(best(data, lambda b: b[5] == 0))

    def test_delayed_rows_and_model_cuts_keep_the_optimum(self):
        p, x, row, data = knapsack()
        p.loaddelayedrows([row])
        p.optimize()
        assert p.getObjVal() == pytest.approx(best(data))
        p.loadmodelcuts([row])
        p.optimize()
        assert p.getObjVal() == pytest.approx(best(data))

    def test_bad_arguments_are_refused(self):
        p, x, _, _ = knapsack()
        with pytest.raises(z.SolverError, match="row type 'R'"):
            p.addcuts([1], ["R"], [0], [0], [x[0]], [1])
        with pytest.raises(z.SolverError, match="interp 9"):
            p.loadcuts(0, 9)
        with pytest.raises(z.ModelError):
            p.getcutslack(3)
