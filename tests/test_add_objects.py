"""Adding variables, constraints, sets and indicators to a problem: what the
engine holds afterwards (read back with the one-to-one getters), the
nesting of arguments, and that a refused call changes nothing."""
import sys

import numpy as np
import pytest

import zorvan as z

INF = z.infinity


def quiet(*args):
    p = z.problem(*args)
    p.setOutputEnabled(False)
    return p


def columns(p):
    lb, ub, types, names = [], [], [], []
    p.getlb(lb)
    p.getub(ub)
    p.getcoltype(types)
    p.getnames(2, names)
    return list(zip(names, lb, ub, types))


def rows(p):
    types, rhs, rng, names = [], [], [], []
    p.getrowtype(types)
    p.getrhs(rhs)
    p.getrhsrange(rng)
    p.getnames(1, names)
    return list(zip(names, types, rhs, rng))


def row_entries(p, row):
    start, cols, coefs = [], [], []
    p.getrows(start, cols, coefs, 1000, row, row)
    return dict(zip((v.name for v in cols), coefs))


def snapshot(p):
    """Everything a refused call must leave as it was."""
    return (p.attributes.cols, p.attributes.rows, p.attributes.sets, p.getVariable(),
            p.getConstraint(), p.getSOS())


class TestVariables:
    def test_bounds_types_names_and_thresholds_reach_the_engine(self):
        p = quiet()
        x = z.var(name="x", lb=-2, ub=7.5)
        b = z.var(name="b", vartype=z.binary)
        b0 = z.var(name="b0", vartype=z.binary, ub=0)      # the type change must not undo it
        i = z.var(name=b"i", vartype=z.integer, lb=-INF)
        s = z.var(name="s", vartype=z.semicontinuous, lb=0, ub=9, threshold=3)
        r = z.var(name="r", vartype=z.semiinteger, ub=8, threshold=2)
        q = z.var(name="q", vartype=z.partiallyinteger, ub=20, threshold=5)
        d = z.var()
        p.addVariable(x, b, b0, i, s, r, q, d)
        assert columns(p) == [("x", -2, 7.5, "C"), ("b", 0, 1, "B"), ("b0", 0, 0, "B"),
                              ("i", -INF, INF, "I"), ("s", 0, 9, "S"), ("r", 0, 8, "R"),
                              ("q", 0, 20, "P"), (d.name, 0, INF, "C")]
        limits = []
        p.getglblimit(limits, s, q)
        assert limits == [3, 2, 5]
        assert p.getVariable() == [x, b, b0, i, s, r, q, d]
        assert [p.getIndex(v) for v in (x, q, d)] == [0, 6, 7]

    def test_nested_arguments_in_order(self):
        v = [z.var(name=f"v{k}") for k in range(9)]
        p = quiet()
        p.addVariable(v[0], [v[1], (v[2], [v[3]])], {"a": v[4], "b": v[5]},
                      (u for u in v[6:8]), np.array([v[8]], dtype=object))
        assert p.getVariable() == v
        names = []
        p.getnames(2, names)
        assert names == [f"v{k}" for k in range(9)]
        p.addVariable()
        p.addVariable([], ())
        assert p.attributes.cols == 9

    def test_a_variable_may_join_several_problems_once_each(self):
        x = z.var(name="x")
        p, q = quiet(), quiet()
        p.addVariable(x)
        q.addVariable(z.var(), x)
        assert (p.getIndex(x), q.getIndex(x)) == (0, 1)
        with pytest.raises(z.ModelError, match="Variable already added to problem"):
            p.addVariable(x)

    @pytest.mark.parametrize("bad, message", [
        (lambda v: [v[0], 3.5], "Incorrect objects added as variables to problem"),
        (lambda v: [v[0], v[1], v[0]], "Variable already added to problem"),
        (lambda v: [v[0], z.var(name=7)], r"Invalid variable name \(must be a string\)"),
        (lambda v: [v[0], z.var(vartype=z.semicontinuous, ub=5)],
         "check that its threshold is between its lower and upper bounds"),
        (lambda v: [v[0], z.var(vartype=z.partiallyinteger, ub=5, threshold=6)],
         "check that its threshold is between its lower and upper bounds"),
    ])
    def test_a_refused_call_adds_nothing(self, bad, message):
        p = quiet()
        first = z.var(name="first")
        p.addVariable(first)
        v = [z.var(), z.var()]
        before = snapshot(p)
        counts = [sys.getrefcount(o) for o in v]
        with pytest.raises(z.ModelError, match=message):
            p.addVariable(bad(v))
        assert snapshot(p) == before
        assert [sys.getrefcount(o) for o in v] == counts
        p.addVariable(v)                      # nothing of the refused call stuck
        assert p.getVariable() == [first] + v and p.getIndex(v[1]) == 2

    def test_uninitialised_variable_and_released_problem(self):
        p = quiet()
        with pytest.raises(z.ModelError, match="Variable is not initialized"):
            p.addVariable(z.var.__new__(z.var))
        with z.problem() as gone:
            pass
        for call in (gone.addVariable, gone.addConstraint, gone.addSOS, gone.addIndicator):
            with pytest.raises(z.ModelError, match="Problem is not initialized"):
                call()


class TestConstraints:
    def test_row_types_and_right_hand_sides(self):
        x, y = z.var(name="x", lb=-INF), z.var(name="y")
        p = quiet()
        p.addVariable(x, y)
        p.addConstraint(
            z.constraint(x + 2 * y >= 1, name="g"),
            z.constraint(3 * x == 4, name="e"),
            z.constraint(body=x - y + 2, lb=-1, ub=5, name="r"),
            z.constraint(body=x + 2, ub=5, name="l"),       # the constant moves: rhs 3
            z.constraint(body=x + y, lb=-INF, ub=INF, name="n"),
            z.constraint(body=2, lb=1, name="k"),           # a constant body: 0 >= -1
        )
        assert rows(p) == [("g", "G", 1, INF), ("e", "E", 4, INF), ("r", "R", 3, 6),
                           ("l", "L", 3, INF), ("n", "N", 0, INF), ("k", "G", -1, INF)]
        assert row_entries(p, "g") == {"x": 1, "y": 2}
        assert row_entries(p, 2) == {"x": 1, "y": -1}
        assert row_entries(p, "k") == {}

    def test_default_names_and_names_that_are_not_strings(self):
        x = z.var()
        p = quiet()
        p.addVariable(x)
        c, d = x <= 1, z.constraint(x >= 0, name=42)
        p.addConstraint(c, d)
        names = []
        p.getnames(1, names)
        assert names == [c.name, "42"] and c.name.startswith("R")

    def test_nested_generators_and_a_large_batch(self):
        n = 20000
        xs = [z.var() for _ in range(n)]
        p = quiet()
        p.addVariable(xs)
        p.addConstraint((xs[k] + xs[k + 1] <= k for k in range(n - 1)), [[xs[0] >= -1]])
        assert p.attributes.rows == n
        rhs = []
        p.getrhs(rhs, n - 3)
        assert rhs == [n - 3, n - 2, -1]
        assert row_entries(p, n - 2) == {xs[n - 2].name: 1, xs[n - 1].name: 1}

    def test_quadratic_rows_reach_the_engine(self):
        x, y = z.var(name="x"), z.var(name="y")
        p = quiet()
        p.addVariable(x, y)
        c = 3 * x * y + 2 * x ** 2 + y <= 4
        p.addConstraint(x <= 1, c)
        assert p.attributes.qconstraints == 1
        a, b, v = [], [], []
        assert p.getqrowqmatrixtriplets(c, a, b, v) == 2
        # The row's quadratic part is x'Qx: 3xy is the pair entry 1.5, 2x^2 the entry 2.
        got = sorted(zip((u.name for u in a), (u.name for u in b), v))
        assert got == [("x", "x", 2.0), ("x", "y", 1.5)]
        assert row_entries(p, c) == {"y": 1}
        assert p.getqrowqmatrixtriplets(0, None, None, None) == 0

    @pytest.mark.parametrize("make, message", [
        (lambda x, y, s: [x <= 1, "x"], "Invalid constraint"),
        (lambda x, y, s: [x <= 1, s + x >= 2], "Variable .* not in problem"),
        (lambda x, y, s: [x <= 1, z.sin(s) <= 0.5],
         "Variable in nonlinear part of constraint has not been added to problem yet"),
        (lambda x, y, s: [x * y * x <= 2, z.exp(x) + s >= 1], "Variable stranger not in problem"),
    ])
    def test_a_refused_call_adds_nothing(self, make, message):
        x, y, stranger = z.var(), z.var(), z.var(name="stranger")
        p = quiet()
        p.addVariable(x, y)
        p.addConstraint(y <= 3)
        before = snapshot(p)
        with pytest.raises(z.ModelError, match=message):
            p.addConstraint(x + y <= 2, make(x, y, stranger))
        assert snapshot(p) == before
        p.addConstraint(x + y <= 2)
        assert p.attributes.rows == 2

    def test_duplicates_and_stale_bodies(self):
        x = z.var()
        p = quiet()
        p.addVariable(x)
        c = x <= 1
        with pytest.raises(z.ModelError, match="Constraint already added to problem"):
            p.addConstraint(c, c)
        p.addConstraint(c)
        with pytest.raises(z.ModelError, match="Constraint already added to problem"):
            p.addConstraint(c)
        stale = x >= 0
        stale.body = None
        with pytest.raises(z.ModelError, match="Stale expression link, cannot add constraint"):
            p.addConstraint(stale)
        assert p.getConstraint() == [c]

    def test_solved_through_the_engine(self):
        x, y = z.var(name="x", ub=4), z.var(name="y", ub=4)
        p = quiet()
        p.addVariable(x, y)
        p.addConstraint(z.constraint(body=x + 2 * y + 1, ub=7), 3 * x + y <= 8)
        p.setObjective(x + y, sense=z.maximize)
        p.optimize()
        assert p.getSolution() == pytest.approx([2.0, 2.0])


class TestSets:
    def test_sets_are_stored_named_and_solved(self):
        x, y, w = (z.var(name=n, ub=1) for n in "xyw")
        p = quiet()
        p.addVariable(x, y, w)
        s1 = z.sos([x, y, w], [1, 2, 3], type=1, name="one")
        p.addSOS([s1])
        assert p.getSOS() == [s1] and p.getIndex(s1) == 0
        names = []
        p.getnames(3, names)
        assert names == ["one"]
        p.setObjective(x + 2 * y + 3 * w, sense=z.maximize)
        p.optimize()
        assert p.getObjVal() == pytest.approx(3.0)
        assert p.getSolution() == pytest.approx([0.0, 0.0, 1.0])

    def test_refused_sets(self):
        x, y = z.var(ub=1), z.var(ub=1)
        p = quiet()
        p.addVariable(x)
        good = z.sos([x], [1])
        cases = [
            ([good, 5], "Object added is not a SOS"),
            ([good, z.sos([x, y], [1, 2])],
             "SOS contains variable that was not added to the problem"),
            ([good, z.sos([x], [1, 2])], "Mismatched lengths in arguments: expected 1, found 2"),
            ([good, good], "SOS already added to problem"),
        ]
        for args, message in cases:
            with pytest.raises((z.ModelError, z.InterfaceError), match=message):
                p.addSOS(args)
            assert p.getSOS() == [] and p.attributes.sets == 0


class TestIndicators:
    def test_indicator_rows_are_marked_and_solved(self):
        b = z.var(name="b", vartype=z.binary)
        x = z.var(name="x", ub=10)
        p = quiet()
        p.addVariable(b, x)
        limit = x <= 2
        p.addIndicator(b == 0, limit)
        cols, comps = [], []
        p.getindicators(cols, comps)
        assert (cols, comps) == ([b], [-1])
        assert p.getConstraint() == [limit]
        # b = 0 allows only x <= 2 but earns 9: 2 + 9 beats 10.
        p.setObjective(x + 9 - 9 * b, sense=z.maximize)
        p.optimize()
        assert p.getSolution() == pytest.approx([0.0, 2.0])
        c1, c2 = x >= 1, x <= 8
        p.addIndicator((b == 1, c1), (1 * b == 0, c2))
        p.getindicators(cols, comps, 1, 2)
        assert (cols, comps) == ([b, b], [1, -1])

    def test_refused_indicators(self):
        b = z.var(name="b", vartype=z.binary)
        c = z.var(name="c", vartype=z.binary)
        x = z.var(name="x", ub=10)
        y = z.var(name="y")
        p = quiet()
        p.addVariable(b, x, y)
        cases = [
            ((b == 1,), "Invalid declaration of indicator constraints. Use"),
            ((b == 1, x <= 1, x <= 2), "Invalid declaration of indicator constraints"),
            (((b == 1, x <= 1, x),), "Invalid declaration of indicator constraints"),
            ((z.constraint(body=3, lb=1), x <= 1), "must be a variable"),
            ((b + x == 1, x <= 1), "there must be exactly one variable"),
            ((b * b == 1, x <= 1), "it cannot contain a quadratic expression"),
            ((b == 2, x <= 1), "must be <variable_name> == 0 or <variable_name> == 1"),
            ((b <= 1, x <= 1), "must be <variable_name> == 0 or <variable_name> == 1"),
            ((c == 1, x <= 1), "Indicator variable has not been added to problem yet"),
            ((2 * b == 0, x <= 1), "Indicator variable must have coefficient 1"),
            ((y == 1, x <= 1), "Must be var==0 or var==1, where var is a binary variable"),
            ((b == 1, z.exp(x) <= 1), "Nonlinear indicator constraints are not allowed"),
            ((b == 1, x), "Invalid constraint assigned to indicator"),
        ]
        before = snapshot(p)
        for args, message in cases:
            with pytest.raises(z.ModelError, match=message):
                p.addIndicator(*args)
            assert snapshot(p) == before


class TestConversions:
    """The argument toolkit as the read-back methods use it."""

    @pytest.fixture
    def model(self):
        x, y, w = (z.var(name=n) for n in "xyw")
        p = quiet()
        p.addVariable(x, y, w)
        c1 = z.constraint(x + 2 * y <= 4, name="c1")
        c2 = z.constraint(3 * y + 4 * w >= 1, name="c2")
        p.addConstraint(c1, c2)
        return p, (x, y, w), (c1, c2)

    def test_indices_by_integer_name_object_and_numpy_integer(self, model):
        p, (x, y, w), _ = model
        for first, last in ((1, 2), ("y", "w"), (y, w), (np.int32(1), np.int64(2))):
            ub = []
            p.getub(ub, first, last)
            assert ub == [INF, INF]
        with pytest.raises(z.ModelError, match="Invalid variable object 1"):
            p.getub([], np.uint32(1), 2)
        with pytest.raises(z.ModelError, match="Variable stranger not in problem"):
            p.getub([], z.var(name="stranger"), 2)
        with pytest.raises(z.SolverError):
            p.getub([], "no such column", 2)
        with pytest.raises(z.InterfaceError, match="Empty range of columns requested"):
            p.getub([], 2, 1)
        with pytest.raises(z.InterfaceError, match="Empty range of rows requested"):
            p.getrhs([], "c2", "c1")

    def test_output_lists(self, model):
        p, (x, y, w), (c1, c2) = model
        out = list(range(10))
        p.getlb(out)
        assert out == [0, 0, 0]
        start, index, coef = ["keep"], None, [9] * 10
        p.getcols(start, index, coef, 10, 1, 2)
        assert (start, coef) == ([0, 2, 3], [2, 3, 4])
        index = []
        p.getcols(rowind=index, rowcoef=None, start=None, maxcoefs=2, first=y, last=w)
        assert index == [c1, c2]                       # only maxcoefs of the three
        legacy = []
        p.getcols(mstart=None, mrwind=legacy, dmatval=None, size=5, first=0, last=0)
        assert legacy == [c1]
        with pytest.raises(z.ModelError, match="Unexpected argument to conv_arr2obj"):
            p.getlb((), 0, 1)
        with pytest.raises(z.InterfaceError, match="Must provide argument lb"):
            p.getlb(None)
        with pytest.raises(z.InterfaceError, match="Must provide at least one of arguments "
                                                    "start, rowind, rowcoef"):
            p.getcols(None, None, None, 10, 0, 2)
        with pytest.raises(TypeError, match="rowind"):
            p.getcols(start=[], mrwind=[], rowcoef=None, maxcoefs=1, first=0, last=0)
        with pytest.raises(z.InterfaceError, match=r"Argument type must be 1 \(rows\)"):
            p.getnames(4, [])

    def test_integers_beyond_32_bits_do_not_wrap_around(self, model):
        p, xs, _ = model
        with pytest.raises(OverflowError):
            p.delVariable(index=[2**32])          # would have deleted column 0
        with pytest.raises(OverflowError):
            p.getub([], 0, 2**32 + 1)
        assert p.getVariable() == list(xs)

    def test_a_weight_list_changed_while_it_is_read(self):
        x, y = z.var(ub=1), z.var(ub=1)
        weights = []

        class Shrinking:
            def __float__(self):
                weights.clear()
                return 1.0

        weights.extend([Shrinking(), 2.0])
        p = quiet()
        p.addVariable(x, y)
        with pytest.raises(z.InterfaceError, match="Sequence changed size during conversion"):
            p.addSOS(z.sos([x, y], weights))
        assert p.getSOS() == [] and p.attributes.sets == 0
