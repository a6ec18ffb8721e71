"""Constraints from comparisons and keywords, their store and copies; special
ordered sets."""
import numpy as np
import pytest

import zorvan
from conftest import run_python

INF = zorvan.infinity


@pytest.fixture
def xy():
    return zorvan.var(name="x"), zorvan.var(name="y")


def ident(c):
    return int(str(c)[1:])


class TestComparisons:
    def test_constant_moves_to_the_bound(self, xy):
        x, y = xy
        c = x + 2 <= 5
        assert type(c) is zorvan.constraint
        assert type(c.body) is zorvan.expression and str(c.body) == "  x"
        assert (c.lb, c.ub) == (-INF, 3.0)
        c = 3 <= x
        assert str(c.body) == "  x" and (c.lb, c.ub) == (3.0, INF)
        c = 2 * x + y == 4 - y
        assert str(c.body) == " 2 x +2 y" and (c.lb, c.ub) == (4.0, 4.0)
        c = x * y >= x
        assert str(c.body) == " - x + x*y" and (c.lb, c.ub) == (0.0, INF)

    def test_bodies_kept_as_they_are(self, xy):
        x, y = xy
        c = x <= 0
        assert c.body is x and (c.lb, c.ub) == (-INF, 0.0)
        c = 0 >= x
        assert c.body is x and (c.lb, c.ub) == (-INF, 0.0)

    def test_nonlinear_bodies(self, xy):
        x, y = xy
        c = zorvan.sin(x) + 3 <= 4
        assert c.ub == 4.0 and str(c.body) == "(sin (x) + 3)"
        c = zorvan.sin(x) >= 0.5
        assert str(c.body) == "sin (x)" and (c.lb, c.ub) == (0.5, INF)
        c = zorvan.sin(x) <= 0.5
        assert str(c.body) == "sin (x)" and (c.lb, c.ub) == (-INF, 0.5)
        c = x / y == 2
        assert str(c.body) == "(x / y)" and (c.lb, c.ub) == (2.0, 2.0)

    @pytest.mark.parametrize("make", [
        lambda x: x != 1, lambda x: x < 1, lambda x: x > 1, lambda x: 2 * x + 1 < x,
    ])
    def test_strict_and_unequal_refused(self, xy, make):
        with pytest.raises(zorvan.ModelError,
                           match=r"^Invalid constraint: cannot enforce f\(x\) != 0, f\(x\) > 0, or f\(x\) < 0$"):
            make(xy[0])

    def test_arrays(self, xy):
        x, y = xy
        with pytest.raises(zorvan.ModelError, match="Invalid object in subtraction"):
            x <= None

    def test_identifiers_one_per_comparison(self, xy):
        x, y = xy
        a, b = x <= 1, x <= 2
        assert ident(b) == ident(a) + 1


class TestKeywords:
    def test_bounds_and_sense(self, xy):
        x, y = xy
        c = zorvan.constraint(body=x + y, lb=1, ub=5, name="cap")
        assert (c.lb, c.ub, c.name, str(c)) == (1.0, 5.0, "cap", "cap")
        c = zorvan.constraint(body=x, sense=zorvan.eq, rhs=4)
        assert (c.lb, c.ub) == (4.0, 4.0)
        c = zorvan.constraint(body=x, sense=zorvan.leq, rhs=4)
        assert (c.lb, c.ub) == (-INF, 4.0)
        c = zorvan.constraint(body=x, sense=zorvan.geq, rhs=-2.5)
        assert (c.lb, c.ub) == (-2.5, INF)
        c = zorvan.constraint(body=x, lb=1.0000005, ub=1)
        assert c.lb == 1.0000005
        c = zorvan.constraint(None, x * y, 0, 0.5)
        assert str(c.body) == "x*y" and (c.lb, c.ub) == (0.0, 0.5)

    def test_from_another_constraint(self, xy):
        x, y = xy
        src = x + y <= 3
        c = zorvan.constraint(constraint=src)
        assert c.body is src.body and (c.lb, c.ub) == (-INF, 3.0)

    def test_array_body_uses_first_element(self, xy):
        x, y = xy
        c = zorvan.constraint(body=np.array([[x, y]], dtype=object), ub=1)
        assert c.body is x
        c = zorvan.constraint(body=np.array(2.5), lb=0)
        assert c.body == 2.5

    @pytest.mark.parametrize("kwargs, message", [
        ({"lb": 2, "ub": 1}, "Constraint defined infeasible: lower bound > upper bound"),
        ({"lb": 1}, r"Arguments required for zorvan.constraint\(\)"),
        ({"body": "x", "lb": 1}, "Invalid expression passed as body of constraint"),
        ({"body": 1.0}, r"Arguments required for zorvan.constraint\(\)"),
        ({"body": 1.0, "sense": 1, "rhs": 2, "lb": 0},
         r"Cannot create constraint by specifying both rhs AND lb/ub."),
        ({"constraint": 5}, "Attempt to generate an empty constraint failed"),
    ])
    def test_rejected(self, kwargs, message):
        with pytest.raises(zorvan.ModelError, match=message):
            zorvan.constraint(**kwargs)

    def test_identifiers_two_per_call(self, xy):
        x, _ = xy
        a = zorvan.constraint(body=x, ub=1)
        b = zorvan.constraint(body=x, ub=1)
        assert ident(b) == ident(a) + 2


class TestAttributesAndCopy:
    def test_attributes(self, xy):
        x, y = xy
        c = x + y <= 3
        c.lb, c.ub = -1, 7.5
        assert (c.lb, c.ub) == (-1.0, 7.5)
        c.lb, c.ub = -5e20, 5e20
        assert (c.lb, c.ub) == (-INF, INF)
        c.lb, c.ub = 0, 1
        assert (c.lb, c.ub) == (0.0, 1.0)
        c.name = ("any", "object")
        assert c.name == ("any", "object")
        c.body = x
        assert c.body is x
        assert c.__class__ is zorvan.constraint
        assert c.__dict__ == dict.fromkeys(["lb", "ub", "name", "body", "copy"])
        with pytest.raises(AttributeError):
            c.other = 1

    def test_copy_is_independent(self, xy):
        x, y = xy
        c = zorvan.constraint(body=x + y, lb=1, ub=2, name="row")
        d = c.copy()
        assert d.name.startswith("R") and d.name.endswith("_copy_row") and ident(d.name[:-9]) > 0
        assert (d.lb, d.ub) == (1.0, 2.0) and d.body is not c.body and str(d.body) == "  x + y"
        c.body += x
        assert str(d.body) == "  x + y"
        src = x <= 4
        e = src.copy()
        assert type(e.body) is zorvan.expression and str(e.body) == "  x"
        assert e.name == f"{src}_copy_{src}"


class TestSos:
    def test_construction_and_copy(self, xy):
        x, y = xy
        s = zorvan.sos([x, y], [1.0, 2.0], type=2, name="pair")
        assert str(s) == "pair" and s.name == "pair"
        t = zorvan.sos(indices=[x], weights=[1])
        assert str(t).startswith("sos")
        u = s.copy()
        assert u.name.endswith("_copy_pair")
        s.name = "renamed"
        assert str(s) == "renamed"

    @pytest.mark.parametrize("args, kwargs, message", [
        (([], []), {"type": 3}, "SOS type must be 1 or 2"),
        (((), []), {}, "SOS indices must be passed as a list"),
        (((), ()), {}, "SOS weights must be passed as a list"),
    ])
    def test_rejected(self, args, kwargs, message):
        with pytest.raises(zorvan.ModelError, match=message):
            zorvan.sos(*args, **kwargs)

    def test_default_names_and_identifiers(self):
        result = run_python("""
            import zorvan
            x = zorvan.var()
            a = zorvan.sos([x], [1])
            b = zorvan.sos([x], [1])
            print(a, b, a.copy(), zorvan.constraint(body=x, ub=1), x <= 1)
        """)
        assert result.returncode == 0, result.stderr
        assert result.stdout.split() == ["sos2", "sos4", "sos2_copy_sos2", "R2", "R3"]
