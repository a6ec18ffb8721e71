"""NumPy scalars on the left of variables, terms and expressions: the
modelling types take the operation over from NumPy, and every result (or
error) must be what the same operation gives with the Python number the
scalar holds, which is what NumPy's own object loops used to compute."""
import operator

import numpy as np
import pytest

import zorvan

SCALARS = [np.float64(2.5), np.float32(0.1), np.float16(-1.5),
           np.int8(-3), np.int16(2), np.int32(0), np.int64(1), np.uint8(4), np.uint64(2),
           np.bool_(True), np.complex128(1 + 2j)]

OPERATORS = [operator.add, operator.sub, operator.mul, operator.truediv, operator.pow,
             operator.and_, operator.or_, operator.floordiv, operator.mod, divmod,
             operator.lshift, operator.rshift, operator.xor,
             operator.le, operator.ge, operator.eq, operator.lt, operator.gt, operator.ne]


def operands():
    x, y = zorvan.var(name="x"), zorvan.var(name="y")
    return [x, 3 * x, 2 * x * y, x + 2 * y - 1]


def outcome(op, a, b):
    """What op(a, b) gives, in a form that can be compared: the type and the
    printing (constraints by their body and bounds), or the error."""
    try:
        r = op(a, b)
    except Exception as e:  # the error itself is the outcome
        return ("error", type(e), str(e))
    if isinstance(r, zorvan.constraint):
        return ("constraint", str(r.body), r.lb, r.ub)
    return (type(r), str(r))


@pytest.mark.parametrize("op", OPERATORS, ids=lambda f: f.__name__)
@pytest.mark.parametrize("scalar", SCALARS, ids=lambda s: type(s).__name__)
def test_scalar_on_the_left_acts_as_its_number(scalar, op):
    number = scalar.item()
    for b in operands():
        if isinstance(scalar, np.complexfloating) and op in (operator.floordiv, operator.mod,
                                                             divmod):
            # NumPy refuses these for complex numbers itself, naming its type.
            with pytest.raises(TypeError, match="'numpy.complex128' and 'zorvan"):
                op(scalar, b)
            continue
        assert outcome(op, scalar, b) == outcome(op, number, b)


def test_long_double_on_the_left():
    # NumPy never takes a long double into its object loops: the scalar
    # itself reaches the modelling types, as a number where one is allowed.
    x = zorvan.var(name="x")
    assert str(np.longdouble(3) * x) == str(3.0 * x)
    assert str(np.longdouble(3) - x) == str(3.0 - x)
    with pytest.raises(TypeError, match="'numpy.longdouble' and 'zorvan.var'"):
        np.longdouble(3) // x


def test_unsigned_scalar_compared_either_way():
    # The comparison slot cannot tell which side the scalar came from, so an
    # unsigned scalar counts as its number on both sides alike.
    x = zorvan.var(name="x")
    for c in (x >= np.uint8(3), np.uint8(3) <= x):
        assert (str(c.body), c.lb, c.ub) == (str((x >= 3).body), 3.0, zorvan.infinity)


def test_scalars_on_the_right_keep_their_meaning():
    x = zorvan.var(name="x")
    for s in (np.float64(2.5), np.float32(0.5), np.int64(3), np.int8(-2)):
        assert str(x * s) == str(x * s.item())
        assert str(x + s) == str(x + s.item())
    with pytest.raises(zorvan.ModelError, match="Invalid operands in multiplication"):
        x * np.uint8(3)


def test_arrays_keep_their_element_loops():
    x = zorvan.var(name="x")
    a = np.array([1.0, 2.0])
    assert [str(e) for e in a * x] == ["x", "2*x"]
    assert [str(e) for e in x * a] == ["x", "2*x"]
    kept = a.astype(object)
    alias = kept
    kept += x
    assert alias is kept  # still added in place by NumPy
    assert [str(e) for e in kept] == [str(1.0 + x), str(2.0 + x)]
    with pytest.raises(TypeError, match="'float' and 'zorvan.var'"):
        a // x


def test_models_built_with_numpy_coefficients_match_float_ones():
    rng = np.random.default_rng(5)
    d = rng.uniform(0, 10, size=(6, 5))
    x = [[zorvan.var() for _ in range(5)] for _ in range(6)]
    with_scalars = zorvan.Sum(d[i, j] * x[i][j] for i in range(6) for j in range(5))
    with_floats = zorvan.Sum(float(d[i, j]) * x[i][j] for i in range(6) for j in range(5))
    assert str(with_scalars) == str(with_floats)
    assert with_scalars.extractLinear() == with_floats.extractLinear()
