"""The NumPy data types npvar, npexpr and npconstraint: element-wise
arithmetic and comparisons, casts, products of arrays (dense and sparse),
arrays of variables from zorvan.vars, and binding NumPy at import."""
import gc
import sys

import numpy as np
import pytest

import zorvan
from conftest import run_python

INF = zorvan.infinity


@pytest.fixture
def x():
    return zorvan.vars(4, name="x", array=True)


def texts(a):
    return [str(e) for e in np.asarray(a, dtype=object).ravel()]


def linear(e):
    """{name: coefficient} of the linear part."""
    vs, cs = e.extractLinear()
    return {str(v): c for v, c in zip(vs, cs) if c != 0.0}


class TestDataTypes:
    def test_module_attributes_are_dtypes_of_the_object_types(self):
        for dt, scalar in ((zorvan.npvar, zorvan.var), (zorvan.npexpr, zorvan.expression),
                           (zorvan.npconstraint, zorvan.constraint)):
            assert isinstance(dt, np.dtype)
            assert dt.type is scalar
            assert dt.itemsize == np.dtype(object).itemsize
        assert len({zorvan.npvar.num, zorvan.npexpr.num, zorvan.npconstraint.num}) == 3

    def test_casts_keep_the_same_objects(self, x):
        e = x.astype(zorvan.npexpr)
        assert e.dtype == zorvan.npexpr
        assert all(a is b for a, b in zip(e, x))
        back = e.astype(zorvan.npvar).astype(object).astype(zorvan.npvar)
        assert all(a is b for a, b in zip(back, x))
        assert np.array(list(x), dtype=zorvan.npvar).dtype == zorvan.npvar

    def test_casts_to_numbers_refused(self, x):
        with pytest.raises(TypeError):
            x.astype(float)

    def test_copies_views_and_slices_hold_references(self, x):
        first = x[0]
        before = sys.getrefcount(first)
        copies = [x.copy(), x[::-1], x.reshape(2, 2).T, np.concatenate([x, x])]
        assert sys.getrefcount(first) > before
        del copies
        gc.collect()
        assert sys.getrefcount(first) == before


class TestElementwise:
    def test_arithmetic_matches_the_elements(self, x):
        y = zorvan.vars(4, name="y", array=True)
        c = np.array([1.0, -2.0, 0.5, 3.0])
        cases = [
            (x + c, lambda a, b, k: a + k), (c + x, lambda a, b, k: k + a),
            (x - c, lambda a, b, k: a - k), (c - x, lambda a, b, k: k - a),
            (x * c, lambda a, b, k: a * k), (x / c, lambda a, b, k: a / k),
            (c / x, lambda a, b, k: k / a), (x ** c, lambda a, b, k: a ** k),
            (x + y, lambda a, b, k: a + b), (x - y, lambda a, b, k: a - b),
            (x * y, lambda a, b, k: a * b), (x / y, lambda a, b, k: a / b),
            (x & y, lambda a, b, k: a & b), (x | y, lambda a, b, k: a | b),
            ((x + 1) * (y - 1), lambda a, b, k: (a + 1) * (b - 1)),
            (-x, lambda a, b, k: -a),
        ]
        for result, op in cases:
            assert result.dtype == zorvan.npexpr
            assert texts(result) == [str(op(a, b, k)) for a, b, k in zip(x, y, c.tolist())]

    def test_integer_arrays_and_python_numbers(self, x):
        assert texts(x * np.arange(4)) == texts(x * np.arange(4.0))
        assert texts(2 * x) == texts(x * 2.0) == [str(2 * v) for v in x]
        assert texts(x + 1) == [str(v + 1) for v in x]
        assert texts(x * 0)[0] == "0.0" and texts(x * 1)[1] == str(x[1])

    def test_square_gives_quadratic_expressions(self, x):
        sq = np.square(x)
        assert sq.dtype == zorvan.npexpr
        for v, s in zip(x, sq):
            assert s.extractQuadratic() == ([v], [v], [1.0])
        q = np.square(x + 1)
        assert [e.extractQuadratic()[2] for e in q] == [[1.0]] * 4

    def test_broadcasting_and_non_contiguous_operands(self, x):
        m = x.reshape(2, 2)
        r = m + np.array([10.0, 20.0])
        assert r.shape == (2, 2)
        assert str(r[1, 0]) == str(x[2] + 10.0) and str(r[1, 1]) == str(x[3] + 20.0)
        col = m[:, 1]  # strided view
        assert texts(col * np.array([3.0, 4.0])) == [str(3.0 * x[1]), str(4.0 * x[3])]
        assert texts(x[::-2] + x[::2]) == [str(x[3] + x[0]), str(x[1] + x[2])]
        outer = x[:, None] * x[None, :]
        assert outer.shape == (4, 4) and str(outer[1, 2]) == str(x[1] * x[2])

    def test_empty_and_zero_dimensional_arrays(self, x):
        empty = x[:0]
        for r in (empty + 1.0, empty * empty, -empty, empty <= 1.0, np.square(empty)):
            assert r.shape == (0,)
        assert (x.reshape(2, 2)[:, :0] @ np.ones((0, 3))).shape == (2, 3)
        zero = np.array(x[1], dtype=zorvan.npvar)
        assert zero.ndim == 0
        assert str(zero * 3.0) == str(3.0 * x[1])
        assert str(zero + zero) == str(x[1] + x[1])

    def test_errors_inside_a_loop_are_raised(self, x):
        with pytest.raises(zorvan.ModelError, match="Division of variable by zero"):
            x / np.array([1.0, 2.0, 0.0, 1.0])
        with pytest.raises(zorvan.ModelError, match="Division by zero"):
            (x + 1) / 0.0
        with pytest.raises(zorvan.ModelError, match="vector as an exponent"):
            x[0] ** x

    def test_operations_without_loops_are_refused(self, x):
        for op in (lambda: x < 1.0, lambda: x > x, lambda: x + 1j,
                   lambda: np.sin(x)):
            with pytest.raises(TypeError):
                op()

    def test_variable_operands_on_either_side(self, x):
        v = zorvan.var(name="v")
        assert texts(v + x) == [str(v + e) for e in x]
        assert texts(x * v) == [str(e * v) for e in x]
        assert texts(v - x) == [str(v - e) for e in x]
        assert texts(zorvan.sin(x)) == [str(zorvan.sin(e)) for e in x]


class TestComparisons:
    def test_arrays_of_constraints(self, x):
        b = np.array([1.0, 2.0, 3.0, 4.0])
        for cons, bounds in ((x <= b, lambda k: (-INF, k)), (x >= b, lambda k: (k, INF)),
                             (x == b, lambda k: (k, k)), (b >= x, lambda k: (-INF, k)),
                             (b <= x, lambda k: (k, INF))):
            assert cons.dtype == zorvan.npconstraint and cons.shape == (4,)
            for c, v, k in zip(cons, x, b):
                assert type(c) is zorvan.constraint
                assert linear(c.body) == {str(v): 1.0} and (c.lb, c.ub) == bounds(k)

    def test_expressions_on_both_sides(self, x):
        cons = 2 * x + 1 <= x[::-1] - 3
        assert cons.dtype == zorvan.npconstraint
        c = cons[0]
        assert linear(c.body) == {"x(0)": 2.0, "x(3)": -1.0} and c.ub == -4.0

    def test_each_comparison_makes_new_constraints(self, x):
        a, b = x <= 1.0, x <= 1.0
        assert len({str(c) for c in np.concatenate([a, b])}) == 8


class TestProducts:
    def test_matrix_times_vector_matches_rows(self, x):
        rng = np.random.default_rng(3)
        A = rng.normal(size=(3, 4))
        A[1, 2] = 0.0
        r = A @ x
        assert r.dtype == zorvan.npexpr and r.shape == (3,)
        for row, e in zip(A, r):
            assert linear(e) == {str(v): c for v, c in zip(x, row) if c != 0.0}
        assert texts(zorvan.Dot(A, x)) == texts(r)
        assert texts(x @ A.T) == texts(r)
        assert texts(np.matmul(A, x.astype(zorvan.npexpr))) == texts(r)

    def test_vector_and_matrix_products(self, x):
        v = x @ np.arange(4.0)
        assert type(v) is zorvan.expression and linear(v) == {"x(1)": 1.0, "x(2)": 2.0, "x(3)": 3.0}
        q = x @ x
        assert sorted(q.extractQuadratic()[2]) == [1.0] * 4
        M = x.reshape(2, 2)
        P = M @ M
        assert P.shape == (2, 2)
        assert str(P[0, 1]) == str(zorvan.Sum(M[0, k] * M[k, 1] for k in range(2)))
        stacked = np.ones((2, 3, 4)) @ x
        assert stacked.shape == (2, 3) and linear(stacked[1, 2]) == {str(v): 1.0 for v in x}

    def test_constants_and_objects_in_products(self, x):
        e = np.array([x[0] + 5, 2.0, x[1] * x[2], zorvan.sin(x[3])], dtype=object)
        r = np.array([[1.0, 2.0, 3.0, 0.0]]) @ e
        assert r.shape == (1,)
        assert str(r[0]) == str(x[0] + 5 + 4.0 + 3 * (x[1] * x[2]))
        nl = zorvan.Dot(np.ones((1, 4)), e)[0]
        assert type(nl).__name__ == "nonlinear"
        assert str(zorvan.sin(x[3])) in str(nl)

    def test_sparse_matrices(self, x):
        sparse = pytest.importorskip("scipy.sparse")
        rng = np.random.default_rng(5)
        dense = rng.normal(size=(5, 4)) * (rng.random((5, 4)) < 0.4)
        for fmt in ("csr", "csc", "coo"):
            A = sparse.random(5, 4, density=0.4, format=fmt, random_state=1)
            assert texts(zorvan.Dot(A, x)) == texts(A.toarray() @ x)
        A = sparse.csr_array(dense)
        assert texts(zorvan.Dot(A, x)) == texts(dense @ x)
        assert texts(zorvan.Dot(x, A.T)) == texts(dense @ x)
        X = x.reshape(4, 1)
        assert zorvan.Dot(A, X).shape == (5, 1)
        # duplicates in a coordinate matrix add up
        coo = sparse.coo_matrix(([1.0, 2.0], ([0, 0], [1, 1])), shape=(1, 4))
        assert linear(zorvan.Dot(coo, x)[0]) == {"x(1)": 3.0}
        assert np.allclose(zorvan.Dot(A, np.ones(4)), dense @ np.ones(4))

    def test_bad_operands(self, x):
        A = np.ones((2, 4))
        with pytest.raises(zorvan.ModelError, match="^Dot product can only occur between NumPy arrays$"):
            zorvan.Dot(A, {0: x[0]})
        with pytest.raises(zorvan.ModelError, match="^Dot product must be between long, double, and expressions/variables$"):
            zorvan.Dot(A, np.array(["a", "b", "c", "d"]))
        with pytest.raises(zorvan.ModelError, match="long, double"):
            zorvan.Dot(A.astype(complex), x)
        with pytest.raises(zorvan.InterfaceError, match=r"shapes \(2, 4\) and \(3,\)"):
            zorvan.Dot(A, x[:3])
        with pytest.raises(zorvan.InterfaceError):
            zorvan.Dot(np.ones((2, 2)), np.array(x[0], dtype=zorvan.npvar))
        sparse = pytest.importorskip("scipy.sparse")
        with pytest.raises(zorvan.InterfaceError, match="4 columns"):
            zorvan.Dot(sparse.eye(4, format="csr"), x[:2])
        with pytest.raises(ValueError):
            np.ones((2, 3)) @ x


class TestVarsArray:
    def test_shape_names_and_identifiers(self):
        y = zorvan.vars(2, 3, name="y", lb=-1, vartype=zorvan.integer, array=True)
        assert y.dtype == zorvan.npvar and y.shape == (2, 3)
        assert y[1, 2].name == "y(1,2)" and y[0, 0].lb == -1
        assert all(v.vartype == zorvan.integer for v in y.ravel())
        d = zorvan.vars(2, 3, name="y")
        assert [str(v) for v in d.values()] == texts(y)

    def test_default_names_number_in_order(self):
        y = zorvan.vars(np.int64(2), 2, array=True)
        nums = [int(s[1:]) for s in texts(y)]
        assert nums == list(range(nums[0], nums[0] + 4))

    def test_empty_dimensions_and_bad_index_sets(self):
        assert zorvan.vars(0, 3, array=True).shape == (0, 3)
        with pytest.raises(zorvan.InterfaceError, match="integer dimensions"):
            zorvan.vars(["a", "b"], array=True)
        assert type(zorvan.vars(2, array=False)) is dict


class TestReferences:
    def test_no_references_left_behind(self, x):
        sparse = pytest.importorskip("scipy.sparse")
        A = sparse.random(6, 4, density=0.5, format="csr", random_state=2)
        counts = [sys.getrefcount(v) for v in x]
        for _ in range(3):
            r = [x + 1, x * x, np.square(x), -x, x <= 2.0, (x + x) == x, A @ np.ones(4),
                 zorvan.Dot(A, x), np.ones((3, 4)) @ x, x @ x, x & x, x.astype(zorvan.npexpr)]
            with pytest.raises(zorvan.ModelError):
                x / 0.0
            del r
        gc.collect()
        assert [sys.getrefcount(v) for v in x] == counts

    def test_memory_stays_flat_over_large_operations(self):
        import tracemalloc
        x = zorvan.vars(20000, array=True)
        b = np.ones(20000)
        def work():
            c = (2.0 * x + 1.0) <= b
            e = np.ones((2, 20000)) @ x
            del c, e
        work()
        tracemalloc.start()
        work()
        first = tracemalloc.get_traced_memory()[0]
        for _ in range(5):
            work()
        gc.collect()
        grown = tracemalloc.get_traced_memory()[0] - first
        tracemalloc.stop()
        assert grown < 1_000_000


class TestBinding:
    @pytest.mark.parametrize("setup, printed", [
        ("m.__dict__.pop('_ARRAY_API', None)", "_ARRAY_API not found"),
        ("m._ARRAY_API = 1", "_ARRAY_API is not PyCapsule object"),
    ])
    def test_import_errors(self, setup, printed):
        code = f"""
            import sys, types
            m = types.ModuleType("numpy._core._multiarray_umath")
            {setup}
            import numpy
            sys.modules["numpy._core._multiarray_umath"] = m
            sys.modules["numpy.core._multiarray_umath"] = m
            try:
                import zorvan
            except ImportError as e:
                print("ImportError:", e)
        """
        p = run_python(code)
        assert "ImportError: numpy.core.multiarray failed to import" in p.stdout, p.stderr
        assert printed in p.stderr

    def test_missing_ufunc_table(self):
        code = """
            import sys, types
            import numpy
            real = (sys.modules.get("numpy._core._multiarray_umath")
                    or sys.modules["numpy.core._multiarray_umath"])
            m = types.ModuleType("numpy._core._multiarray_umath")
            m._ARRAY_API = real._ARRAY_API
            sys.modules["numpy._core._multiarray_umath"] = m
            sys.modules["numpy.core._multiarray_umath"] = m
            try:
                import zorvan
            except ImportError as e:
                print("ImportError:", e)
        """
        p = run_python(code)
        assert "ImportError: numpy.core.umath failed to import" in p.stdout, p.stderr
        assert "_UFUNC_API not found" in p.stderr
