"""Expressions: ordered parts, printing, extraction, arithmetic and in-place
accumulation."""
import numpy as np
import pytest

import zorvan


@pytest.fixture
def xyz():
    return zorvan.var(name="x"), zorvan.var(name="y"), zorvan.var(name="z")


def expr(constant=0.0):
    return zorvan.expression() + constant


class TestPrinting:
    def test_constant_and_leading_terms(self, xyz):
        x, y, _ = xyz
        assert str(zorvan.expression()) == "0" and str(expr(2.5)) == "2.5"
        e = zorvan.expression()
        e += x
        assert str(e) == "  x"
        e = zorvan.expression()
        e -= x
        assert str(e) == " - x"
        assert str(3 + 2 * x - y) == "3 +2 x - y"
        assert str(2 * x + y) == " 2 x + y"
        assert repr(2 * x + y) == str(2 * x + y)

    def test_order_is_by_identifier_and_zeros_are_skipped(self, xyz):
        x, y, z = xyz
        e = z + y + x + x * z + y * x + x * x
        assert str(e) == "  x + y + z + x**2 + x*y + x*z"
        d = (x + y) * (x - y)
        assert str(d) == "  x**2 - y**2"
        assert d.extractQuadratic()[2] == [1.0, 0.0, -1.0]
        # Entries that cancel stay (with coefficient 0): the constant 0 is
        # printed only by an expression without entries.
        assert str(x + y - x - y) == "" and str((0 + x) - x) == ""
        assert str(x + y - x - y + 2) == "2"

    def test_names_from_the_store(self, xyz):
        x, y, _ = xyz
        e = x + y
        x.name = "renamed"
        assert str(e) == "  renamed + y"


class TestExtraction:
    def test_linear_and_quadratic_parts(self, xyz):
        x, y, z = xyz
        e = 4 + 3 * z - x + x * y + y * x + 2 * z * z
        vs, cs = e.extractLinear()
        assert vs == [x, z] or (vs[0] is x and vs[1] is z)
        assert cs == [-1.0, 3.0]
        v1, v2, qc = e.extractQuadratic()
        assert [v.name for v in v1] == ["x", "z"] and [v.name for v in v2] == ["y", "z"]
        assert qc == [2.0, 2.0]
        assert zorvan.expression().extractLinear() == ([], [])

    def test_many_entries_in_any_order(self):
        xs = [zorvan.var() for _ in range(3000)]
        e = zorvan.expression()
        for i in reversed(range(3000)):
            e += (i + 1) * xs[i]
        for i in range(0, 3000, 2):
            e -= xs[i]
        vs, cs = e.extractLinear()
        assert all(a is b for a, b in zip(vs, xs))
        assert cs == [float(i + 1 - (i % 2 == 0)) for i in range(3000)]


class TestArithmetic:
    def test_addition_and_subtraction_make_new_objects(self, xyz):
        x, y, z = xyz
        e = x + y
        f = e + z
        g = 1 - e
        assert str(e) == "  x + y" and str(f) == "  x + y + z" and str(g) == "1 - x - y"
        assert str(e + e) == " 2 x +2 y" and str(e - e) == ""
        assert str(e + 2 * x * y) == "  x + y +2 x*y"

    def test_multiplication(self, xyz):
        x, y, z = xyz
        e = x + 2
        assert str(e * 3) == str(3 * e) == "6 +3 x"
        assert str(e * 0) == "0" and type(e * 0) is zorvan.expression
        assert str(e * y) == " 2 y + x*y"
        assert str(e * (y - 1)) == "-2 - x +2 y + x*y"
        assert str(e * e) == "4 +4 x + x**2"
        assert str((x * y + 1) * expr(2)) == "2 +2 x*y"
        assert str((x * y + 1) * z) == "(1 + x*y * z)"
        assert str(e * zorvan.sin(x)) == "(sin (x) * 2 + x)"

    def test_division(self, xyz):
        x, y, _ = xyz
        e = 2 * x + 4
        assert str(e / 2) == "2 + x" and str(e / expr(4)) == "1 +0.5 x"
        for zero in (0, 0.0, zorvan.expression()):
            with pytest.raises(zorvan.ModelError, match="^Division by zero$"):
                e / zero
        assert type(e / x).__name__ == "nonlinear" and type(3 / e).__name__ == "nonlinear"

    def test_power(self, xyz):
        x, y, _ = xyz
        e = x + y
        assert e ** 0 == 1.0 and type(e ** 0) is float
        one = e ** 1
        assert one is not e and str(one) == str(e)
        assert str(e ** 2) == str(e * e) == "  x**2 +2 x*y + y**2"
        assert type(e ** 3).__name__ == "nonlinear" and type(e ** x).__name__ == "nonlinear"
        with pytest.raises(zorvan.ModelError, match="Cannot obtain a power with a vector"):
            e ** np.array([1.0])

    def test_negation_and_abs(self, xyz):
        x, y, _ = xyz
        assert str(-(x - y + 1)) == "-1 - x + y"
        assert str(abs(x + 1)) == "abs (1 + x)"

    def test_invalid_operand(self, xyz):
        x, _, _ = xyz
        e = x + 1
        with pytest.raises(zorvan.ModelError, match="Invalid object in operation"):
            e + object()
        with pytest.raises(zorvan.ModelError, match="Invalid object in operation"):
            e += None
        assert str(e) == "1 + x"

    def test_nonlinear_operands(self, xyz):
        x, _, _ = xyz
        e = x + 1
        s = zorvan.sin(x)
        r = e + s
        assert type(r).__name__ == "nonlinear" and str(e) == "1 + x"
        f = e
        f += s
        assert f is not e and str(e) == "1 + x"

    def test_vectors_go_to_numpy(self, xyz):
        x, _, _ = xyz
        e = x + 1
        a = np.array([1.0, 2.0])
        assert [str(t) for t in e + a] == ["2 + x", "3 + x"]
        assert [str(t) for t in e * a] == ["1 + x", "2 +2 x"]
        assert [str(t) for t in e / a] == ["1 + x", "0.5 +0.5 x"]
        f = e
        f += a
        assert isinstance(f, np.ndarray) and str(e) == "1 + x"


class TestInPlace:
    def test_accumulation_changes_the_object(self, xyz):
        x, y, z = xyz
        e = x + 1
        f = e
        e += y
        e -= 2 * x
        e += x * z
        e += 3
        e += x + y
        assert f is e and str(f) == "4 +2 y + x*z"
        g = e
        e = e + z
        assert g is not e and "z" not in str(g).split()

    def test_adding_itself(self, xyz):
        x, _, _ = xyz
        e = x + 1
        e += e
        assert str(e) == "2 +2 x"
        e -= e   # entries with coefficient 0 remain: nothing is printed
        assert str(e) == "" and e.extractLinear()[1] == [0.0]

    def test_scaling(self, xyz):
        x, y, _ = xyz
        e = x + 2 * y + 1
        f = e
        e *= 2
        assert e is f and str(e) == "2 +2 x +4 y"
        e /= 4
        assert e is f and str(e) == "0.5 +0.5 x + y"
        e /= 1
        e *= 1
        assert e is f
        e *= expr(2)
        assert e is f and str(e) == "1 + x +2 y"
        with pytest.raises(zorvan.ModelError, match="^Division by zero$"):
            e /= 0
        e *= 0
        assert e == 0.0 and type(e) is float and str(f) == "1 + x +2 y"

    def test_copies_and_constraints_keep_their_entries(self, xyz):
        # Copies share entries until one side changes: every change must
        # stay on its own side, in every order of changes.
        x, y, z = xyz
        e = 2 * x + 3 * y + 1
        c = e <= 5
        d = e + 0.0  # a copy through plain addition
        e += z
        e *= 2
        assert str(c.body) == " 2 x +3 y" and (c.lb, c.ub) == (-1e20, 4.0)
        assert str(d) == "1 +2 x +3 y" and str(e) == "2 +4 x +6 y +2 z"
        d -= 3 * y
        assert str(d) == "1 +2 x" and str(c.body) == " 2 x +3 y"
        c.body += x
        assert str(c.body) == " 3 x +3 y" and str(e) == "2 +4 x +6 y +2 z"

    def test_accumulator_taking_an_expression(self, xyz):
        x, y, z = xyz
        f = x + y
        acc = zorvan.expression()
        acc += f
        f += z
        acc -= x
        assert str(f) == "  x + y + z" and str(acc) == "  y"
        # Entries added out of order are merged before anyone reads them,
        # in the copy and the source alike.
        g = zorvan.expression()
        for v in (z, y, x, z):
            g += v
        h = g + 0.0
        assert str(g) == "  x + y +2 z" and str(h) == "  x + y +2 z"
        assert h.extractLinear()[1] == [1.0, 1.0, 2.0]

    def test_copies_hold_their_variables(self):
        # Variables stay alive as long as any copy uses them.
        v = zorvan.var(name="v")
        e = 4 * v + 1
        c = e >= 2
        del v, e
        assert str(c.body) == " 4 v"
        body = c.body
        del c
        assert body.extractLinear()[0][0].name == "v"

    def test_non_numbers_fall_back(self, xyz):
        x, y, _ = xyz
        e = x + 1
        f = e
        f *= y
        assert f is not e and str(f) == "  y + x*y"
        f = e
        f /= y
        assert type(f).__name__ == "nonlinear" and str(e) == "1 + x"

    def test_sum_builtin_and_Sum(self, xyz):
        x, y, z = xyz
        assert str(sum([x, y, z, x])) == " 2 x + y + z"
        assert str(zorvan.Sum(2 * v for v in (x, y, z))) == " 2 x +2 y +2 z"
