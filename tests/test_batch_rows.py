"""Rows built from expressions compared with numbers, and large batches of
such rows handed to the engine: what the engine holds afterwards, read back
row by row, and refused batches that leave the problem as it was."""
import numpy as np
import pytest

import zorvan as z

sparse = pytest.importorskip("scipy.sparse")

INF = z.infinity


def quiet():
    p = z.problem()
    p.setOutputEnabled(False)
    return p


def linear(e):
    vs, cs = e.extractLinear()
    return {str(v): c for v, c in zip(vs, cs)}


def engine_rows(p):
    """The rows as (type, rhs, {column index: coefficient}), and the names."""
    n = p.attributes.rows
    types, rhs, names, start, cols, coefs = [], [], [], [], [], []
    p.getrowtype(types)
    p.getrhs(rhs)
    p.getnames(1, names)
    p.getrows(start, cols, coefs, 10 * n + 10, 0, n - 1)
    index = {id(v): j for j, v in enumerate(p.getVariable())}
    out = []
    for i in range(n):
        entries = {index[id(cols[k])]: coefs[k] for k in range(start[i], start[i + 1])}
        out.append((types[i], rhs[i], entries))
    return out, names


class TestExpressionAgainstNumber:
    @pytest.fixture
    def e(self):
        x, y = z.var(name="x"), z.var(name="y")
        return 2 * x - y + 5

    @pytest.mark.parametrize("build, lb, ub", [
        (lambda e: e <= 3, -INF, -2.0),
        (lambda e: e >= 3, -2.0, INF),
        (lambda e: e == 3, -2.0, -2.0),
        (lambda e: 3 <= e, -2.0, INF),
        (lambda e: 3 >= e, -INF, -2.0),
        (lambda e: e <= np.float64(3), -INF, -2.0),
        (lambda e: e <= np.int32(3), -INF, -2.0),
    ])
    def test_constant_moves_into_the_bound(self, e, build, lb, ub):
        c = build(e)
        assert (c.lb, c.ub) == (lb, ub)
        assert linear(c.body) == {"x": 2.0, "y": -1.0}
        assert c.body is not e and e.extractLinear()[1] == [2.0, -1.0]
        e += z.var(name="w")               # the expression changes, the row does not
        assert linear(c.body) == {"x": 2.0, "y": -1.0}

    def test_strict_comparisons_are_refused(self, e):
        for build in (lambda: e < 3, lambda: e > 3, lambda: e != 3):
            with pytest.raises(z.ModelError, match="cannot enforce"):
                build()

    def test_arrays_either_side_match_the_elements(self):
        x = z.vars(4, array=True)
        rows = 3 * x + np.arange(4)         # expressions with constants 0..3
        b = np.array([10.0, 11.0, 12.0, 13.0])
        k = np.arange(4)
        for cons, lbs, ubs in ((rows <= b, [-INF] * 4, b - k),
                               (b >= rows, [-INF] * 4, b - k),
                               (b <= rows, b - k, [INF] * 4),
                               (rows == b[::-1], b[::-1] - k, b[::-1] - k)):
            assert cons.dtype == z.npconstraint
            assert [c.lb for c in cons] == list(lbs) and [c.ub for c in cons] == list(ubs)
            for i, (c, r) in enumerate(zip(cons, rows)):
                assert linear(c.body) == {str(x[i]): 3.0} and c.body is not r

    def test_expression_arrays_holding_other_kinds(self):
        # Elements that are not expressions go through the general comparison.
        x = z.vars(3, array=True)
        mixed = np.array([x[0], 2 * x[1], x[2] + 1.0], dtype=object).astype(z.npexpr)
        cons = mixed <= np.array([1.0, 2.0, 3.0])
        assert [c.ub for c in cons] == [1.0, 2.0, 2.0]
        assert [linear(c.body) for c in cons] == [{str(x[0]): 1.0}, {str(x[1]): 2.0},
                                                   {str(x[2]): 1.0}]
        bad = np.array([x[0] + 1, "text"], dtype=object).astype(z.npexpr)
        with pytest.raises(TypeError):
            bad <= np.array([1.0, 2.0])


class TestLargeBatches:
    def build(self, m, n, seed=3):
        rng = np.random.default_rng(seed)
        a = sparse.random(m, n, density=4.0 / n, random_state=rng, format="csr")
        a.data[:] = rng.integers(1, 9, size=a.nnz)
        b = rng.uniform(10, 20, size=m)
        return a, b

    def test_every_row_reaches_the_engine(self):
        # Enough rows and nonzeros that the batch reaches the engine in
        # several parts and the columns are read from a table by identifier;
        # the variables come from two calls with other variables made between
        # them, so identifiers have gaps; the problem has rows already.
        m, n = 40000, 30000
        a, b = self.build(m, n)
        p = quiet()
        x1 = z.vars(n // 2, array=True)
        unused = [z.var() for _ in range(50)]
        x2 = z.vars(n - n // 2, array=True)
        p.addVariable(x1)
        p.addVariable(x2)
        x = np.concatenate([x1, x2])
        p.addConstraint(x1[0] + x2[0] <= 7, x1[1] == 2)
        cons = z.Dot(a, x) + 1.0 >= b
        p.addConstraint(cons)
        assert p.attributes.rows == m + 2 and p.getConstraint()[2:] == list(cons)

        got, names = engine_rows(p)
        assert got[:2] == [("L", 7.0, {0: 1.0, n // 2: 1.0}), ("E", 2.0, {1: 1.0})]
        got = got[2:]
        rows = (0, 1, m // 2, m - 1, *range(7, m, 97))
        dense = a[list(rows)].toarray()
        for k, i in enumerate(rows):
            t, rhs, entries = got[i]
            assert t == "G" and rhs == pytest.approx(b[i] - 1.0)
            assert entries == {j: dense[k, j] for j in np.flatnonzero(dense[k])}
        assert names[2:] == [c.name for c in cons]
        assert len(unused) == 50

    def test_quadratic_rows_after_other_rows(self):
        # Quadratic parts land on their own rows wherever the call starts,
        # also past the first part of a large batch.
        p = quiet()
        x = z.vars(3, array=True)
        p.addVariable(x)
        p.addConstraint(x[0] + x[1] <= 10, x[0] - x[1] <= 3)
        disc = x[0] * x[0] + 3 * x[0] * x[1] <= 4
        p.addConstraint(disc)
        many = [x[0] + x[2] <= float(i) for i in range(20000)] + [x[2] * x[2] + x[0] <= 9]
        p.addConstraint(many)
        assert p.attributes.rows == 3 + 20001 and p.attributes.qconstraints == 2

        def quadratic(row):
            a, b, v = [], [], []
            p.getqrowqmatrixtriplets(row, a, b, v)
            return sorted((p.getIndex(u), p.getIndex(w), c) for u, w, c in zip(a, b, v))
        assert quadratic(disc) == [(0, 0, 1.0), (0, 1, 1.5)]
        assert quadratic(many[-1]) == [(2, 2, 1.0)]
        assert all(quadratic(r) == [] for r in (0, 1, 3, 20002))
        assert p.getIndex(many[-1]) == 20003

    @pytest.mark.parametrize("where", ["inside", "after"])
    def test_a_foreign_variable_refuses_the_whole_batch(self, where):
        # "after": the bad row comes after parts of the batch have reached
        # the engine, which must give them back.
        m, n = 40000, 20000
        a, b = self.build(m, n)
        p = quiet()
        x = z.vars(n, array=True)
        inside = z.var(name="between")      # identifier among the problem's
        y = z.vars(10, array=True)
        p.addVariable(x, y)
        stranger = inside if where == "inside" else z.var(name="between")
        cons = list(z.Dot(a, x) <= b) + [stranger + x[0] <= 1]
        with pytest.raises(z.ModelError, match="Variable between not in problem"):
            p.addConstraint(cons)
        assert p.attributes.rows == 0 and p.getConstraint() == []
        p.addConstraint(cons[:-1])
        assert p.attributes.rows == m
        assert [p.getIndex(c) for c in cons[:3]] == [0, 1, 2]

    def test_row_names_given_and_default(self):
        p = quiet()
        x = z.vars(3, array=True)
        p.addVariable(x)
        cons = x <= np.array([1.0, 2.0, 3.0])
        cons[1].name = "middle"
        p.addConstraint(cons)
        names = []
        p.getnames(1, names)
        assert names[1] == "middle"
        assert names[0] == cons[0].name and names[0].startswith("R") and names[0][1:].isdigit()
