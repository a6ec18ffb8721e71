"""Nonlinear expression trees: building, arithmetic, printing, extraction and
the module's mathematical functions."""
import gc
import math

import numpy as np
import pytest

import zorvan as z


@pytest.fixture
def xyz():
    return z.var(name="x"), z.var(name="y"), z.var(name="z")


def nl_type():
    return type(z.sin(z.var()))


# --- the type ---------------------------------------------------------------

def test_type_is_internal_and_not_constructible():
    t = nl_type()
    assert t.__name__ == "nonlinear" and not hasattr(z, "nonlinear")
    with pytest.raises(z.ModelError):
        t()
    for section in ("Purpose:", "Synopsis:", "Example:", "Related topics:"):
        assert section in t.__doc__ and section in t.extractLinear.__doc__


# --- module functions ---------------------------------------------------------

@pytest.mark.parametrize("name, ref", [
    ("sin", math.sin), ("cos", math.cos), ("tan", math.tan), ("asin", math.asin),
    ("acos", math.acos), ("atan", math.atan), ("exp", math.exp), ("log", math.log),
    ("abs", abs), ("sqrt", math.sqrt), ("erf", math.erf), ("erfc", math.erfc),
    ("log10", math.log10)])
def test_functions_compute_on_numbers_and_build_nodes_otherwise(name, ref, xyz):
    f = getattr(z, name)
    for v in (0.5, 1, np.float64(0.25), np.int32(1)):
        r = f(v)
        assert type(r) is float and r == pytest.approx(ref(float(v)), rel=1e-15)
    node = f(xyz[0])
    assert type(node) is nl_type() and str(node) == name + " (x)"


def test_sign_and_abs_of_numbers():
    assert [z.sign(v) for v in (-2, 0, 0.0, 3.5)] == [-1.0, 0.0, 0.0, 1.0]
    assert z.abs(-3) == 3.0 and type(z.abs(-3)) is float


def test_functions_reject_bad_arguments(xyz):
    x = xyz[0]
    with pytest.raises(z.ModelError, match="Could not create a unary nonlinear expression: "
                       "the argument must be a single expression"):
        z.sin([x, 1])
    with pytest.raises(z.ModelError, match="^Invalid object in unary operation$"):
        z.cos("x")
    with pytest.raises(z.ModelError):
        z.exp(None)


def test_functions_map_numpy_arrays(xyz):
    x = xyz[0]
    a = z.sin(np.array([0.0, x], dtype=object))
    assert isinstance(a, np.ndarray) and a.shape == (2,)
    assert a[0] == 0.0 and str(a[1]) == "sin (x)"
    b = z.exp(np.array([[0.0, 1.0], [2.0, 3.0]]))
    assert b.dtype == np.float64 and b.shape == (2, 2)
    assert np.allclose(b, np.exp([[0.0, 1.0], [2.0, 3.0]]))
    with pytest.raises(z.ModelError, match="Invalid object in unary operation"):
        z.sin(np.array([x, "bad"], dtype=object))


def test_max_and_min(xyz):
    x, y, _ = xyz
    assert z.max(x) is x and z.min(3) == 3
    assert str(z.max(x, y, 2)) == "max (x, y, 2)"
    assert str(z.min([x, y, 2])) == "min (x, y, 2)"
    assert str(z.max((x, y))) == "max (x, y)"
    assert str(z.min(np.array([x, y], dtype=object))) == "min (x, y)"
    assert str(z.max(np.array([4.0]))) == "4.0"
    for f, name in ((z.max, "max"), (z.min, "min")):
        with pytest.raises(z.ModelError,
                           match=f"The function zorvan.{name} must have at least one argument"):
            f()
        with pytest.raises(z.ModelError,
                           match=f"The function zorvan.{name} must have at least one argument"):
            f([])
    with pytest.raises(z.ModelError, match="Only a 1-dimensional array"):
        z.max(np.zeros((2, 2)))
    with pytest.raises(z.ModelError, match="Incorrect argument for expression"):
        z.max("abc")
    with pytest.raises(z.ModelError, match="Invalid object in n-ary operation"):
        z.max(x, [y])


def test_pwl_builds_breakpoints(xyz):
    x, y, _ = xyz
    # A gap after the first piece keeps its end point.
    assert str(z.pwl({(0, 1): x, (2, 3): 2 * x})) == \
        "pwl (x, 0.0, 0.0, 1.0, 1.0, 2.0, 4.0, 3.0, 6.0)"
    # Continuous pieces share their point; keys are sorted.
    assert str(z.pwl({(1, 2): 3 - x, (0, 1): x + 1})) == \
        "pwl (x, 0.0, 1.0, 1.0, 2.0, 2.0, 1.0)"
    # A jump at a shared point keeps both values.
    assert str(z.pwl({(0, 1): 0, (1, 2): 5, None: x})) == \
        "pwl (x, 0.0, 0.0, 1.0, 0.0, 1.0, 5.0, 2.0, 5.0)"
    # An infinite end is brought to 0.88 from the other end.
    assert str(z.pwl({(-1e20, 0): 2 * x, (0, 1e20): x})) == \
        "pwl (x, -0.88, -1.76, 0.0, 0.0, 0.88, 0.88)"


def test_pwl_errors(xyz):
    x, y, _ = xyz
    with pytest.raises(z.ModelError, match="Function zorvan.pwl only accepts a dictionary"):
        z.pwl([(0, 1), x])
    with pytest.raises(z.ModelError, match="No variable specified for this piecewise linear"):
        z.pwl({(0, 1): 5, (1, 2): 6})
    with pytest.raises(z.ModelError, match="must be two-tuples; <1> is not"):
        z.pwl({1: x})
    with pytest.raises(z.ModelError, match="two constant numbers"):
        z.pwl({(2, 1): x})
    with pytest.raises(z.ModelError, match="must have an zorvan.var"):
        z.pwl({None: 3})
    with pytest.raises(z.ModelError, match="while another variable has been used"):
        z.pwl({(0, 1): x, (1, 2): y})
    with pytest.raises(z.ModelError, match="overlaps with"):
        z.pwl({(0, 2): x, (1, 3): x})
    with pytest.raises(z.ModelError, match="it must contain one variable only"):
        z.pwl({(0, 1): x + y})
    with pytest.raises(z.ModelError, match="it must be a constant or a linear function"):
        z.pwl({(0, 1): x * y})
    assert str(z.pwl({(0, 1): 5, (1, 2): 6, None: x})).startswith("pwl (x, ")


def test_user(xyz):
    x, y, _ = xyz

    def f(a, b):
        return a * b

    assert str(z.user(f, x, y)) == "user (user, x, y)"
    for value in (None, "never", "", False, 0):
        z.user(f, x, derivatives=value)
    for value in ("always", "ondemand", True, 1):
        z.user(f, x, derivatives=value)
    with pytest.raises(z.InterfaceError, match="Unknown value for argument derivatives: maybe"):
        z.user(f, x, derivatives="maybe")
    with pytest.raises(z.ModelError, match="Insufficient number of arguments"):
        z.user()
    with pytest.raises(z.ModelError, match="Invalid object in n-ary operation"):
        z.user(f, "x")


# --- arithmetic -------------------------------------------------------------

def test_sums_keep_numbers_last_and_flatten(xyz):
    x, y, _ = xyz
    s = z.sin(x)
    assert str(s + 3) == "(sin (x) + 3)" and str(3 + s) == "(sin (x) + 3)"
    assert str(s + x + y) == "(sin (x) + x + y)"
    assert str((s + x) + (z.cos(y) + 2)) == "(sin (x) + x + cos (y) + 2)"
    assert str(s + 0) == "sin (x)" and str(0 + s) == "sin (x)"
    assert str(s - x) == "(sin (x) - x)" and str(2 - s) == "(2 - sin (x))"
    assert str(0 - s) == "- (sin (x))" and str(-s) == "- (sin (x))"
    assert str((s + x) - y) == "(sin (x) + x + -1*y)"


def test_products_quotients_and_powers(xyz):
    x, y, _ = xyz
    s = z.sin(x)
    assert s * 0 == 0.0 and type(0 * s) is float
    assert str(s * 1) == "sin (x)" and str(-1 * s) == "- (sin (x))"
    assert str(2 * s) == "(sin (x) * 2)" and str(s * y) == "(sin (x) * y)"
    assert str(s / 2) == "(sin (x) / 2)" and str(1 / s) == "(1 / sin (x))"
    assert 0 / s == 0.0 and str(s / 1) == "sin (x)"
    with pytest.raises(z.ModelError, match="^Division by zero$"):
        s / 0
    with pytest.raises(z.ModelError, match="^Division by zero$"):
        s / z.Sum()
    assert s ** 0 == 1.0 and 1 ** s == 1.0
    assert str(s ** 1) == "sin (x)" and str(s ** 2) == "(sin (x) ** 2)"
    assert str(2 ** s) == "(2 ** sin (x))"
    assert str(abs(s)) == "abs (sin (x))"
    assert str(s & x) == "and (sin (x), x)" and str(s | x) == "or (sin (x), x)"
    with pytest.raises(z.ModelError, match="Cannot obtain a power with a vector as an exponent"):
        s ** [1, 2]


def test_plain_operators_never_change_operands(xyz):
    x, y, _ = xyz
    a = z.sin(x) + y
    b = z.cos(x) * y
    text_a, text_b = str(a), str(b)
    for r in (a + 1, a - 1, a * 2, a / 2, a ** 3, b * x, b + a, -a):
        assert r is not a and r is not b
    assert (str(a), str(b)) == (text_a, text_b)


def test_inplace_operators_extend_nodes(xyz):
    x, y, w = xyz
    a = z.sin(x) + y
    alias = a
    a += w
    assert a is alias and str(alias) == "(sin (x) + y + z)"
    a -= 1
    assert a is alias and str(a) == "(sin (x) + y + z + -1)"
    p = z.sin(x) * y
    p *= w
    assert str(p) == "(sin (x) * y * z)"
    q = z.cos(x)
    q += 0
    assert q is not None and str(q) == "cos (x)"
    q /= 1
    assert str(q) == "cos (x)"
    with pytest.raises(z.ModelError, match="^Division by zero$"):
        q /= 0


def test_inplace_power_merges_exponents(xyz):
    x, y, _ = xyz
    p = z.sin(x) ** y
    alias = p
    p **= 3
    assert p is alias and str(p) == "(sin (x) ** 3*y)"
    p **= 1
    assert p is alias
    p **= 0
    assert p == 1.0
    q = z.sin(x) ** (z.cos(y) * 2)
    q **= x
    assert str(q) == "(sin (x) ** (cos (y) * x * 2))"


def test_vector_operands_go_to_numpy(xyz):
    x = xyz[0]
    s = z.sin(x)
    r = s + np.array([1.0, 2.0])
    assert isinstance(r, np.ndarray) and [str(e) for e in r] == ["(sin (x) + 1.0)",
                                                                  "(sin (x) + 2.0)"]
    r = s * np.array([0.0, 2.0])
    assert r[0] == 0.0 and str(r[1]) == "(sin (x) * 2.0)"
    r = s / np.array([2.0])
    assert str(r[0]) == "(sin (x) * 0.5)"
    # NumPy scalars enter trees as plain floats
    assert str(s + np.float64(2)) == "(sin (x) + 2.0)"
    assert str(s * np.int64(3)) == "(sin (x) * 3.0)"
    assert str(s ** np.int32(3)) == "(sin (x) ** 3.0)"
    assert len({s, s, z.sin(x)}) == 2  # hashed by identity


def test_invalid_operands(xyz):
    s = z.sin(xyz[0])
    for op in (lambda: s + "a", lambda: s * None, lambda: s - {}, lambda: s / object()):
        with pytest.raises(z.ModelError, match="Invalid object in operation: <"):
            op()


# --- printing and depth -----------------------------------------------------

def test_printing_leaves(xyz):
    x, y, _ = xyz
    f = z.user(print, x, 2 * x, 1 * x, 3 * x * y, x * x, x + 2 * y, 2.5)
    assert str(f) == "user (user, x, 2*x, x, 3*x*y, x**2,   x +2 y, 2.5)"
    assert repr(f) == str(f)


def test_deep_trees_print_with_a_budget_and_release_without_recursion(xyz):
    x = xyz[0]
    f = x
    for _ in range(100):
        f = z.sin(f)
    text = str(f)
    assert text.startswith("sin (" * 65) and "[MAX RECURS LEV]" in text
    assert text.count("sin") == 65
    g = x
    for _ in range(300000):
        g = z.exp(g)
    del g  # must not exhaust the C stack
    gc.collect()


# --- extraction -------------------------------------------------------------

def test_extract_linear_and_quadratic(xyz):
    x, y, w = xyz
    f = 2 * x + z.sin(y) - 3 * w + x * y + 4
    assert f.extractLinear() == ([x, w], [2.0, -3.0])
    assert f.extractQuadratic() == ([x], [y], [1.0])
    g = -(z.cos(x) + 2 * (x + y) * 3) / 2
    vars_, coefs = g.extractLinear()
    assert vars_ == [x, y] and coefs == pytest.approx([-3.0, -3.0])
    h = z.sin(x) * y + z.exp(x * w)
    assert h.extractLinear() == ([], []) and h.extractQuadratic() == ([], [], [])
    k = (z.sin(x) - (y + x)) * 2
    assert k.extractLinear() == ([x, y], [-2.0, -2.0])
