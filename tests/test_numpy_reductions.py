"""Sums over arrays of variables and expressions (sum, sum along an axis,
numpy.add.reduce, numpy.dot, in-place adds): the running sum grows in place,
and every result must equal, term for term and in print, the left fold of
the same elements through the ordinary operators."""
import functools
import operator

import numpy as np
import pytest

import zorvan


def fold(items, start=None):
    """The general path: each step a new object from a + b."""
    items = list(items)
    if start is not None:
        items = [start] + items
    return functools.reduce(operator.add, items)


def same(a, b):
    assert type(a) is type(b)
    assert str(a) == str(b)
    if isinstance(a, zorvan.expression):
        assert a.extractLinear() == b.extractLinear()
        assert a.extractQuadratic() == b.extractQuadratic()


def random_elements(rng, x, n):
    """Numbers, variables, linear and quadratic terms and expressions over
    the few variables of x, so that the same variable comes back often."""
    out = []
    for _ in range(n):
        kind = rng.integers(6)
        v, w = x[rng.integers(len(x))], x[rng.integers(len(x))]
        c = float(rng.integers(-4, 5)) / 4
        out.append([float(rng.integers(-3, 4)), v, c * v, c * v * w,
                    c * v + 2.5 * w - 1, v - v + c][kind])
    return out


@pytest.fixture
def x():
    return zorvan.vars(5, name="x", array=False)


class TestReductions:
    @pytest.mark.parametrize("seed", range(6))
    def test_sum_of_random_expressions(self, x, seed):
        rng = np.random.default_rng(seed)
        items = random_elements(rng, x, 60)
        arr = np.array(items + [0 * x[0]], dtype=zorvan.npexpr)[:-1]
        same(arr.sum(), fold(items))
        same(np.add.reduce(arr), fold(items))
        grid = arr.reshape(6, 10)
        for axis in (0, 1):
            got = grid.sum(axis=axis)
            want = [fold(line) for line in np.moveaxis(np.array(items, dtype=object)
                                                     .reshape(6, 10), axis, -1)]
            assert got.dtype == zorvan.npexpr and got.shape == (10 if axis == 0 else 6,)
            for g, w in zip(got, want):
                same(g, w)

    def test_weighted_sum_of_variable_array(self):
        rng = np.random.default_rng(3)
        X = zorvan.vars(20, 30, name="y", array=True)
        c = rng.integers(-5, 6, size=(20, 30)) / 8
        products = [ci * xi for ci, xi in zip(c.ravel(), X.ravel())]
        same((c * X).sum(), fold(products))
        same(X.sum(), fold(X.ravel()))
        for g, w in zip(X.sum(axis=0), X.T):
            same(g, fold(w))

    def test_nonlinear_elements_take_the_general_path(self, x):
        items = [x[0] + 1, zorvan.sin(x[1]), 2 * x[2], x[0] * x[3], 4.0]
        arr = np.array(items, dtype=zorvan.npexpr)
        same(arr.sum(), fold(items))

    def test_elements_held_elsewhere_are_not_changed(self, x):
        first = 2 * x[0] + 3 * x[1] + 1
        text = str(first)
        arr = np.array([first, x[1], x[2] * x[3]], dtype=zorvan.npexpr)
        total = arr.sum()
        assert str(first) == text and str(arr[0]) == text
        same(total, fold([first, x[1], x[2] * x[3]]))
        # An in-place add leaves expressions held by other names as they were.
        other = np.array([x[4], 1.0, x[0]], dtype=zorvan.npexpr)
        kept = arr[2]
        before = str(kept)
        arr += other
        assert str(kept) == before
        assert [str(e) for e in arr] == [str(fold([first, x[4]])), str(fold([x[1], 1.0])),
                                         str(fold([kept, x[0]]))]

    def test_array_added_to_itself(self, x):
        arr = np.array([x[0] + 1, 2 * x[1] - x[0]], dtype=zorvan.npexpr)
        want = [str(e + e) for e in arr]
        np.add(arr, arr, out=arr)
        assert [str(e) for e in arr] == want

    def test_subtract_in_place(self, x):
        arr = np.array([x[0] + 1, 2 * x[1] - x[0]], dtype=zorvan.npexpr)
        other = np.array([x[0], x[0] * x[1]], dtype=zorvan.npexpr)
        want = [a - b for a, b in zip(arr, other)]
        np.subtract(arr, other, out=arr)
        for g, w in zip(arr, want):
            same(g, w)

    def test_bad_element_in_a_sum_keeps_its_message(self, x):
        arr = np.array([x[0] + 1, x[1], x[2]], dtype=zorvan.npexpr)
        arr[1] = "text"
        with pytest.raises(zorvan.ModelError) as fast:
            arr.sum()
        with pytest.raises(zorvan.ModelError) as general:
            fold(list(arr))
        assert str(fast.value) == str(general.value)


class TestDot:
    @pytest.mark.parametrize("seed", range(4))
    def test_vector_dot_vector(self, x, seed):
        rng = np.random.default_rng(10 + seed)
        a = random_elements(rng, x, 25)
        b = [float(rng.integers(-3, 4)) if rng.random() < 0.6 else x[rng.integers(5)]
             for _ in range(25)]
        # Quadratic elements would make cubic products: keep degree two.
        quadratic = type(x[0] * x[1])
        a = [1.0 if isinstance(e, quadratic) or (isinstance(e, zorvan.expression)
                                                 and e.extractQuadratic()[0]) else e
             for e in a]
        left = np.array(a, dtype=zorvan.npexpr)
        right = np.array(b, dtype=zorvan.npexpr)
        same(np.dot(left, right), fold(p * q for p, q in zip(a, b)))

    def test_matrix_dot_matrix(self):
        A = zorvan.vars(4, 6, name="a", array=True)
        y = zorvan.vars(2, name="b")
        B = np.array([[k * y[k % 2] + k for k in range(3 * i, 3 * i + 3)] for i in range(6)],
                     dtype=zorvan.npexpr)
        got = np.dot(A, B)
        assert got.shape == (4, 3)
        for i in range(4):
            for j in range(3):
                same(got[i, j], fold(A[i, k] * B[k, j] for k in range(6)))

    def test_single_product_stays_a_term(self, x):
        a = np.array([x[0]], dtype=zorvan.npvar)
        b = np.array([3.0], dtype=zorvan.npexpr)
        same(np.dot(a, b), x[0] * 3.0)


class TestWeightedTerms:
    def test_numbers_times_variables_as_elementwise_products(self):
        X = zorvan.vars(3, 4, name="w", array=True)
        c = np.array([[0.0, 1.0, -1.0, 2.5], [1e-300, -0.0, 3.0, 1.0], [np.inf, 7.0, 0.5, -2.0]])
        for got, want in ((c * X, [ci * xi for ci, xi in zip(c.ravel(), X.ravel())]),
                          (X * c, [xi * ci for ci, xi in zip(c.ravel(), X.ravel())])):
            assert got.dtype == zorvan.npexpr
            for g, w in zip(got.ravel(), want):
                assert type(g) is type(w) and str(g) == str(w)
        mixed = np.array([X[0, 0], 2 * X[0, 1] + 1, X[0, 2] * X[0, 3]], dtype=zorvan.npexpr)
        for g, w in zip(mixed * np.array([2.0, 0.0, 1.0]),
                        [X[0, 0] * 2.0, (2 * X[0, 1] + 1) * 0.0, X[0, 2] * X[0, 3] * 1.0]):
            assert type(g) is type(w) and str(g) == str(w)


def test_running_sums_keep_every_prefix(x):
    # numpy.cumsum writes each prefix from the one before; growing a prefix
    # in place would change the earlier ones.
    items = [x[0] + 1, 2 * x[1], x[0] * x[2], x[3], 1.5]
    arr = np.array(items, dtype=zorvan.npexpr)
    for k, got in enumerate(np.cumsum(arr)):
        same(got, fold(items[:k + 1]))
