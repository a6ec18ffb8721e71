"""Models written with NumPy arrays of variables and constraints, added whole
and solved end to end; results compared with scipy's linprog."""
import numpy as np
import pytest

import zorvan

linprog = pytest.importorskip("scipy.optimize").linprog
sparse = pytest.importorskip("scipy.sparse")


@pytest.fixture
def quiet():
    p = zorvan.problem("arrays")
    p.controls.outputlog = 0
    return p


def test_transport_model_from_arrays(quiet):
    rng = np.random.default_rng(4)
    supply = np.array([30.0, 45.0, 25.0])
    demand = np.array([20.0, 15.0, 35.0, 20.0])
    cost = rng.uniform(1, 9, size=(3, 4))
    p = quiet
    x = zorvan.vars(3, 4, name="ship", array=True)
    p.addVariable(x)
    p.addConstraint(x.sum(axis=1) <= supply, x.sum(axis=0) >= demand)
    p.setObjective((cost * x).sum())
    assert p.optimize()[1] is zorvan.SolStatus.OPTIMAL

    a_ub = np.vstack([np.kron(np.eye(3), np.ones(4)), -np.kron(np.ones(3), np.eye(4))])
    ref = linprog(cost.ravel(), A_ub=a_ub, b_ub=np.concatenate([supply, -demand]))
    assert p.getObjVal() == pytest.approx(ref.fun, rel=1e-9)
    shipped = p.getSolution(x)
    assert isinstance(shipped, np.ndarray) and shipped.shape == (3, 4)
    assert (shipped.sum(axis=0) >= demand - 1e-7).all()
    assert p.getSolution(x[1, 2]) == shipped[1, 2]


@pytest.mark.parametrize("as_sparse", [False, True])
def test_matrix_rows_from_dense_and_sparse_matrices(quiet, as_sparse):
    rng = np.random.default_rng(11)
    m, n = 30, 20
    a = rng.uniform(0, 5, size=(m, n)) * (rng.random((m, n)) < 0.3)
    b = rng.uniform(10, 20, size=m)
    c = rng.uniform(1, 3, size=n)
    p = quiet
    x = zorvan.vars(n, ub=4, array=True)
    p.addVariable(x)
    # scipy's own @ does not take arrays of variables: zorvan.Dot does.
    rows = (zorvan.Dot(sparse.csr_matrix(a), x) if as_sparse else a @ x) <= b
    p.addConstraint(rows)
    p.setObjective(zorvan.Dot(c, x), sense=zorvan.maximize)
    p.optimize()
    ref = linprog(-c, A_ub=a, b_ub=b, bounds=[(0, 4)] * n)
    assert p.getObjVal() == pytest.approx(-ref.fun, rel=1e-9)
    assert p.attributes.rows == m
    # The rows are the array's constraints, in order.
    assert [p.getIndex(con) for con in rows] == list(range(m))
    assert np.allclose(p.getSlack(list(rows)), b - a @ p.getSolution(list(x)), atol=1e-7)


class TestAddingArrays:
    def test_any_shape_and_layout(self, quiet):
        p = quiet
        x = zorvan.vars(3, 4, array=True)
        p.addVariable(x[:, ::2].T)                    # strided view, transposed
        p.addVariable(x[:, 1::2], np.array([], dtype=object))
        assert p.attributes.cols == 12
        assert [p.getIndex(v) for v in x[0]] == [0, 6, 3, 7]
        y = zorvan.var()
        p.addVariable(np.array(y, dtype=object))      # zero-dimensional
        assert p.getIndex(y) == 12
        cons = np.array([[x[0, 0] <= 1, x[0, 1] <= 2], [x[1, 0] >= 0, y <= 3]])
        p.addConstraint(cons[:, ::-1])
        assert [p.getIndex(c) for c in cons.ravel()] == [1, 0, 3, 2]

    def test_arrays_mixed_with_lists_and_deleted_as_arrays(self, quiet):
        p = quiet
        x = zorvan.vars(4, array=True)
        y = [zorvan.var() for _ in range(2)]
        p.addVariable([x[:2], y], (x[2:],))
        assert p.attributes.cols == 6 and p.getIndex(x[2]) == 4
        p.delVariable(x[::2])
        assert p.attributes.cols == 4
        assert [p.getIndex(v) for v in (x[1], y[0], y[1], x[3])] == [0, 1, 2, 3]

    def test_bad_arrays_add_nothing(self, quiet):
        p = quiet
        x = zorvan.vars(3, array=True)
        for bad in (np.ones(3), np.empty(2, dtype=zorvan.npvar),
                    np.array([zorvan.var(), 1.5], dtype=object)):
            with pytest.raises(zorvan.ModelError, match="Incorrect objects added as variables"):
                p.addVariable(x, bad)
            assert p.attributes.cols == 0
        with pytest.raises(zorvan.ModelError):
            p.addConstraint(np.array([x[0] <= 1, x[1]], dtype=object))
        assert p.attributes.rows == 0


class TestRowsFromProducts:
    def test_sparse_rows_with_unsorted_and_repeated_columns(self, quiet):
        # A CSR matrix whose rows list columns out of order and repeat some:
        # each row must come out as the sum of its entries, column by column.
        data = np.array([1.0, 2.0, 3.0, 4.0, -1.0, 5.0, 0.5])
        indices = np.array([2, 0, 2, 1, 1, 0, 0])
        indptr = np.array([0, 4, 7])
        a = sparse.csr_array((data, indices, indptr), shape=(2, 3))
        dense = np.array([[2.0, 4.0, 4.0], [5.5, -1.0, 0.0]])
        assert np.array_equal(a.toarray(), dense)
        x = zorvan.vars(3, ub=3, array=True)
        rows = zorvan.Dot(a, x)
        assert [str(r) for r in rows] == [str(r) for r in dense @ x]

        p = quiet
        p.addVariable(x)
        p.addConstraint(rows <= np.array([10.0, 6.0]))
        c = np.array([1.0, 2.0, 1.5])
        p.setObjective(zorvan.Dot(c, x), sense=zorvan.maximize)
        p.optimize()
        ref = linprog(-c, A_ub=dense, b_ub=[10.0, 6.0], bounds=[(0, 3)] * 3)
        assert p.getObjVal() == pytest.approx(-ref.fun, rel=1e-9)

    def test_constraints_keep_the_rows_they_were_made_from(self, quiet):
        # A comparison copies its expression: changing the expression in
        # place afterwards changes neither the constraint nor the row.
        x = zorvan.vars(3, array=True)
        e = x[2] + x[0] + 2 * x[2]  # entries added out of order, x[2] twice
        con = e <= 5
        text = str(con.body)
        e += x[1]
        e *= 2
        assert str(con.body) == text == str(x[0] + 3 * x[2])
        scaled = -1.0 * e - 3  # a scaled copy of a changed expression
        assert str(scaled) == str(-3 - 2 * x[0] - 2 * x[1] - 6 * x[2])

        p = quiet
        p.addVariable(x)
        p.addConstraint(con, e >= 1)
        p.setObjective(x.sum(), sense=zorvan.maximize)
        p.addConstraint(x <= 4)
        p.optimize()
        # x0 + 3 x2 <= 5 with all variables in [0, 4]: x1 = 4, x0 = 4, x2 = 1/3
        assert p.getObjVal() == pytest.approx(4 + 4 + 1 / 3, rel=1e-9)


class TestDeletingArrays:
    def test_arrays_of_any_shape_delete_their_objects(self, quiet):
        p = quiet
        x = zorvan.vars(3, 4, array=True)
        p.addVariable(x)
        cons = x <= np.arange(12.0).reshape(3, 4)
        p.addConstraint(cons)
        p.delVariable(x[:, 1:3].T)                   # 2-D, strided, transposed
        assert p.attributes.cols == 6
        assert [p.getIndex(v) for v in x[:, [0, 3]].ravel()] == list(range(6))
        p.delVariable(np.array(x[2, 3], dtype=object))  # zero-dimensional
        p.delVariable(x[:0])                             # empty
        assert p.attributes.cols == 5
        p.delConstraint(cons[::2])
        assert p.attributes.rows == 4
        assert [p.getIndex(c) for c in cons[1]] == [0, 1, 2, 3]
        p.delConstraint(np.array([0, 3]))                # an array of indices
        assert [p.getIndex(c) for c in cons[1, 1:3]] == [0, 1]

    def test_bad_arrays_delete_nothing(self, quiet):
        p = quiet
        x = zorvan.vars(4, array=True)
        p.addVariable(x)
        for bad in (np.array([x[0], None], dtype=object), np.array([x[1], zorvan.var()])):
            with pytest.raises(zorvan.ModelError):
                p.delVariable(bad)
            assert p.attributes.cols == 4
