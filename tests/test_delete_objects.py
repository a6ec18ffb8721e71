"""Deleting variables, constraints and sets, and looking objects up by index:
the engine, the problem's lists and the index of every object that is left
must agree afterwards."""
import numpy as np
import pytest

import zorvan as z


def model(n=6):
    xs = [z.var(name=f"x{k}", ub=1) for k in range(n)]
    cs = [z.constraint(xs[k] + xs[(k + 1) % n] <= 1, name=f"c{k}") for k in range(n)]
    ss = [z.sos(xs[k:k + 2], [1, 2], name=f"s{k}") for k in range(0, n, 2)]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(xs)
    p.addConstraint(cs)
    p.addSOS(ss)
    return p, xs, cs, ss


def names(p, kind):
    out = []
    p.getnames(kind, out)
    return out


class TestDeletion:
    @pytest.mark.parametrize("select", [
        lambda xs: {"index": [xs[1], "x3", 4]},
        lambda xs: {"index": (k for k in (4, 1, 3, 3))},      # any order, repeats
        lambda xs: {"index": (1, 3, 4)},
    ])
    def test_variables_by_object_name_index_and_sequence(self, select):
        p, xs, cs, ss = model()
        p.delVariable(**select(xs))
        kept = [xs[0], xs[2], xs[5]]
        assert p.getVariable() == kept
        assert [p.getIndex(v) for v in kept] == [0, 1, 2]
        assert names(p, 2) == ["x0", "x2", "x5"]
        with pytest.raises(z.ModelError, match="Variable x1 not in problem"):
            p.getIndex(xs[1])
        # Rows lose the deleted columns' coefficients, nothing else.
        start, cols, coefs = [], [], []
        p.getrows(start, cols, coefs, 100, "c5", "c5")
        assert cols == [xs[0], xs[5]]
        p.addVariable(xs[1])                 # a deleted variable may come back
        assert p.getIndex(xs[1]) == 3

    def test_constraints_and_sets_by_range_and_object(self):
        p, xs, cs, ss = model()
        p.delConstraint(first=1, last=3)
        assert p.getConstraint() == [cs[0], cs[4], cs[5]]
        assert [p.getIndex(c) for c in (cs[0], cs[4], cs[5])] == [0, 1, 2]
        assert names(p, 1) == ["c0", "c4", "c5"]
        p.delConstraint(cs[4])
        assert p.getIndex(cs[5]) == 1 and p.attributes.rows == 2
        p.delSOS(ss[0])
        assert p.getSOS() == ss[1:] and p.getIndex(ss[2]) == 1
        assert names(p, 3) == ["s2", "s4"]
        p.delSOS(index=[0, 1])
        assert p.getSOS() == [] and p.attributes.sets == 0

    def test_a_generator_of_300_indices(self):
        xs = [z.var() for _ in range(700)]
        p = z.problem()
        p.addVariable(xs)
        p.delVariable(index=(k for k in range(0, 600, 2)))
        assert p.getVariable() == xs[1:600:2] + xs[600:]
        assert p.getIndex(xs[599]) == 299 and p.getIndex(xs[699]) == 399

    def test_deleted_model_solves(self):
        x, y, w = z.var(name="x", ub=5), z.var(name="y", ub=5), z.var(name="w", ub=5)
        p = z.problem()
        p.setOutputEnabled(False)
        p.addVariable(x, y, w)
        cap, tight = x + y + w <= 8, x <= 1
        p.addConstraint(cap, tight)
        p.delConstraint(tight)
        p.delVariable(y)
        p.setObjective(2 * x + w, sense=z.maximize)
        p.optimize()
        assert p.getObjVal() == pytest.approx(13.0)
        assert p.getSolution(x) == pytest.approx(5.0)
        assert p.getSlack(cap) == pytest.approx(0.0, abs=1e-9)

    @pytest.mark.parametrize("kwargs, message", [
        ({"index": 0, "first": 1}, "Parameters 'first' and 'last' cannot be specified if "
                                   "'index' is also specified"),
        ({"first": 1}, "Parameters 'first' and 'last' must be both nonnegative when specified"),
        ({}, "At least one parameter must be specified"),
        ({"first": 2, "last": 1}, "Parameter 'first' must be less than, or equal to, 'last'"),
        ({"first": 2, "last": 6}, "Parameters 'first' or 'last' are out of range"),
        ({"index": 1.5}, "Cannot delete object: must be variable, constraint, or SOS"),
        ({"index": z.constraint(body=z.var(), lb=1)},
         "Cannot delete object: must be variable, constraint, or SOS"),
    ])
    def test_refused_deletions_change_nothing(self, kwargs, message):
        p, xs, cs, ss = model()
        with pytest.raises(z.ModelError, match=message):
            p.delVariable(**kwargs)
        assert p.getVariable() == xs and p.attributes.cols == len(xs)

    def test_the_engine_refuses_an_index_out_of_range(self):
        p, xs, cs, ss = model()
        with pytest.raises(z.SolverError):
            p.delVariable(index=[0, 99])
        with pytest.raises(z.ModelError, match="Variable .* not in problem"):
            p.delVariable(index=[0, z.var()])
        assert p.getVariable() == xs and p.getIndex(xs[5]) == 5


class TestLookup:
    def test_getters(self):
        p, xs, cs, ss = model()
        assert p.getVariable() == xs and p.getVariable() is not p.getVariable()
        assert p.getVariable(2) is xs[2] and p.getVariable(-1) is xs[-1]
        assert p.getVariable([0, (5, [1])]) == [xs[0], xs[5], xs[1]]
        assert p.getConstraint(first=2, last=3) == cs[2:4]
        assert p.getSOS(index=range(2)) == ss[:2]
        assert [p.getIndex(o) for o in (xs[4], cs[3], ss[2])] == [4, 3, 2]

    def test_getter_errors(self):
        p, xs, cs, ss = model()
        with pytest.raises(IndexError):
            p.getVariable(6)
        with pytest.raises(z.ModelError, match=r"Error in index list\(s\): must contain only "
                                               "integers"):
            p.getConstraint([0, "c1"])
        with pytest.raises(z.ModelError, match="Parameters 'first' and 'last' are out of range"):
            p.getSOS(first=0, last=3)
        with pytest.raises(z.ModelError, match="Parameters 'first' and 'last' cannot be "
                                               "specified"):
            p.getVariable(0, 1, 2)
        with pytest.raises(z.ModelError, match="must be both nonnegative"):
            p.getVariable(last=2)
        with pytest.raises(z.ModelError, match=r"Incorrect object\(s\) passed: need variable, "
                                               "constraint, or SOS"):
            p.getIndex(2 * xs[0])
        with pytest.raises(z.ModelError, match="Constraint .* not in problem"):
            p.getIndex(xs[0] <= 3)
        with pytest.raises(z.ModelError, match="SOS .* not in problem"):
            p.getIndex(z.sos([xs[0]], [1]))


class TestObjectsCreatedFarApart:
    """Problems whose objects were created at widely different times (other
    objects created in between) and added in any order."""

    @staticmethod
    def scattered(size=300, gaps=(3_000, 12_000, 500, 3_000, 20_000, 0)):
        out = []
        for gap in gaps:
            out += [z.var(ub=1) for _ in range(size)]
            _ = [z.var() for _ in range(gap)]      # created in between, never added
        return out

    @pytest.mark.parametrize("order", ["shuffled", "reversed", "one at a time"])
    def test_indices_rows_deletions_and_copies(self, order):
        xs = self.scattered()
        added = list(xs)
        if order == "shuffled":
            np.random.default_rng(1).shuffle(added)
        elif order == "reversed":
            added.reverse()
        p = z.problem()
        p.setOutputEnabled(False)
        if order == "one at a time":
            for v in added:
                p.addVariable(v)
        else:
            p.addVariable(added)
        assert [p.getIndex(v) for v in added] == list(range(len(added)))
        with pytest.raises(z.ModelError, match="Variable already added to problem"):
            p.addVariable(xs[len(xs) // 2])
        with pytest.raises(z.ModelError, match="not in problem"):
            p.getIndex(z.var())
        # One row over all of them, each with its own coefficient.
        coef = {v: 1.0 + (k % 7) for k, v in enumerate(xs)}
        p.addConstraint(z.Sum(c * v for v, c in coef.items()) <= 10)
        start, cols, coefs = [], [], []
        p.getrows(start, cols, coefs, len(xs), 0, 0)
        assert dict(zip(cols, coefs)) == coef
        p.delVariable(index=list(range(0, len(added), 3)))
        kept = [v for k, v in enumerate(added) if k % 3]
        assert p.getVariable() == kept
        assert [p.getIndex(v) for v in kept] == list(range(len(kept)))
        q = p.copy()
        assert [q.getIndex(v) for v in kept[::50]] == list(range(0, len(kept), 50))
        p.addVariable(added[0])                 # a deleted variable comes back at the end
        assert p.getIndex(added[0]) == len(kept)
        with pytest.raises(z.ModelError, match="not in problem"):
            q.getIndex(added[0])
