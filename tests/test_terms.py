"""Linear and quadratic terms: printing, canonical order, extraction and the
result types of their operators."""
import numpy as np
import pytest

import zorvan


@pytest.fixture
def xyz():
    return zorvan.var(name="x"), zorvan.var(name="y"), zorvan.var(name="z")


def kind(o):
    return type(o).__name__


class TestPrintingAndOrder:
    def test_linterm_printing(self, xyz):
        x, _, _ = xyz
        assert [str(t) for t in (3 * x, -x, 0.5 * x, x * 1e-7)] == ["3*x", "-1*x", "0.5*x", "1e-07*x"]
        assert repr(3 * x) == "3*x"
        assert str(-(-x)) == "x"  # coefficient exactly 1 prints the bare name

    def test_quadterm_canonical_order(self, xyz):
        x, y, _ = xyz
        assert str(2 * x * y) == str(2 * y * x) == "2*x*y"
        assert str(y * x) == "x*y" and str(x * x) == "x**2" and str(-(x * x)) == "-1*x**2"
        v1, v2, c = (y * (3 * x)).extractQuadratic()
        assert v1[0] is x and v2[0] is y and c == [3.0]
        assert (x * y).extractLinear() == ([], [])

    def test_linterm_extraction(self, xyz):
        x, _, _ = xyz
        vs, cs = (4 * x).extractLinear()
        assert vs[0] is x and cs == [4.0]
        assert (4 * x).extractQuadratic() == ([], [], [])

    def test_not_callable(self, xyz):
        x, y, _ = xyz
        with pytest.raises(zorvan.ModelError):
            type(2 * x)()
        with pytest.raises(zorvan.ModelError):
            type(x * y)()


class TestLinearTermOperators:
    def test_scaling_and_zero(self, xyz):
        x, _, _ = xyz
        t = 3 * x
        assert t * 0 == 0.0 and 0 * t == 0.0 and type(t * 0) is float
        assert str(t * 2) == str(2 * t) == "6*x" and str(-t) == "-3*x"
        assert str(t / 2) == "1.5*x" and str(t / (zorvan.expression() + 3)) == "x"
        with pytest.raises(zorvan.ModelError, match="^Division by zero$"):
            t / 0

    def test_products(self, xyz):
        x, y, z = xyz
        assert str((2 * x) * y) == "2*x*y" and str(y * (2 * x)) == "2*x*y"
        assert str((2 * x) * (3 * y)) == "6*x*y" and kind((2 * x) * (3 * y)) == "quadterm"
        assert str((3 * x) ** 2) == "9*x**2"
        assert str((2 * x) * (y * z)) == "(y*z * 2*x)"

    def test_divisions(self, xyz):
        x, y, _ = xyz
        assert (3 * x) / x == 3.0 and x / (4 * x) == 0.25 and (3 * x) / (6 * x) == 0.5
        assert str((3 * x) / y) == "(3*x / y)" and str(2 / (3 * x)) == "(2 / 3*x)"
        assert str((3 * x) / (x + y)) == "(3*x /   x + y)"
        with pytest.raises(zorvan.ModelError, match="Invalid operands in product of linear terms"):
            (3 * x) / None

    def test_powers(self, xyz):
        x, y, _ = xyz
        t = 3 * x
        assert t ** 0 == 1.0 and t ** 1 is t and 1 ** t == 1.0
        assert str(t ** 3) == "(3*x ** 3)" and str(2 ** t) == "(2 ** 3*x)"
        assert str(t ** y) == "(3*x ** y)"
        with pytest.raises(zorvan.ModelError, match="Cannot obtain a power with a vector"):
            t ** np.array([2.0])

    def test_sums_are_expressions(self, xyz):
        x, y, _ = xyz
        assert str(3 * x + 1) == "1 +3 x" and str(1 - 3 * x) == "1 -3 x"
        assert str(3 * x + x) == " 4 x" and kind(3 * x + x) == "expression"
        assert str(3 * x - 2 * y) == " 3 x -2 y"


class TestQuadraticTermOperators:
    def test_scaling(self, xyz):
        x, y, _ = xyz
        q = 2 * x * y
        assert str(q * 3) == str(3 * q) == "6*x*y" and str(-q) == "-2*x*y"
        assert kind(q * 0) == "quadterm" and str(q * 0) == "0*x*y"
        assert str(q / 4) == "0.5*x*y"
        with pytest.raises(zorvan.ModelError, match="^Division by zero of a bilinear term$"):
            q / 0
        with pytest.raises(zorvan.ModelError, match="^Division by zero of a bilinear term$"):
            q / zorvan.expression()

    def test_divisions_sharing_variables(self, xyz):
        x, y, z = xyz
        q = 6 * x * y
        assert str(q / y) == "6*x" and str(q / x) == "6*y" and str(q / z) == "(6*x*y / z)"
        assert q / (2 * x * y) == 3.0
        assert str(q / (2 * x * z)) == "(3*y / z)"
        assert str(q / (2 * z * y)) == "(3*x / z)"
        assert str((6 * y * z) / (2 * x * y)) == "(3*z / x)"
        assert str(q / (2 * z * z)) == "(6*x*y / 2*z**2)"
        assert str(x / q) == f"({1 / 6!r} / y)" and str(y / q) == f"({1 / 6!r} / x)"
        assert str((3 * x) / q) == "(0.5 / y)" and str(z / q) == "(z / 6*x*y)"
        with pytest.raises(zorvan.ModelError, match="^Division by zero of a variable$"):
            x / ((x * y) * 0)
        with pytest.raises(zorvan.ModelError, match="^Division by zero of a linear term$"):
            (2 * x) / ((x * y) * 0)

    def test_products_and_powers(self, xyz):
        x, y, z = xyz
        q = x * y
        assert str(q * z) == "(x*y * z)" and str(z * q) == "(x*y * z)"
        assert str(q * q) == "(x*y * x*y)"
        p = q ** 1
        assert p is not q and str(p) == "x*y" and q ** 0 == 1.0
        assert str(q ** 2) == "(x*y ** 2)"
        with pytest.raises(zorvan.ModelError, match="Cannot obtain a power with a vector"):
            q ** [1, 2]

    def test_sums(self, xyz):
        x, y, _ = xyz
        assert str(x * y + 1) == "1 + x*y" and str(x * y + x * y) == " 2 x*y"
        assert str(x * y + 2 * x) == " 2 x + x*y"
        with pytest.raises(zorvan.ModelError, match="Invalid operands in sum with quadratic term"):
            x * y + None


def test_in_place_forms_leave_terms_unchanged(xyz):
    x, y, _ = xyz
    for t in (3 * x, 2 * x * y):
        original = t
        t += 0
        t -= 0
        t *= 1
        t /= 1
        t **= 1
        assert t is original
        with pytest.raises(zorvan.ModelError, match="^Division by zero$"):
            t /= 0
        t *= 2
        assert t is not original and str(original) in ("3*x", "2*x*y")
        t = original
        t += x
        assert type(t) is zorvan.expression and type(original) is not zorvan.expression
