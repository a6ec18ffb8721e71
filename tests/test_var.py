"""Variables: construction, attributes and their store, printing, hashing,
extraction and the result types of their operators."""
import math
import sys

import numpy as np
import pytest

import zorvan
from conftest import run_python

INF = zorvan.infinity


class TestConstruction:
    def test_defaults_and_size(self):
        x = zorvan.var()
        assert (x.lb, x.ub, x.threshold, x.vartype) == (0.0, INF, -INF, zorvan.continuous)
        assert x.name == str(x) == repr(x) and x.name.startswith("C")
        assert sys.getsizeof(x) == 24

    def test_identifiers_follow_each_other_and_name_by_default(self):
        result = run_python("""
            import zorvan
            a, b = zorvan.var(), zorvan.var(name="b")
            c = zorvan.var.__new__(zorvan.var)
            print(a, b, c, zorvan.var())
        """)
        assert result.returncode == 0, result.stderr
        assert result.stdout.split() == ["C1", "b", "C0", "C3"]

    def test_binary_and_integer_bounds(self):
        b = zorvan.var(vartype=zorvan.binary)
        assert (b.lb, b.ub, b.vartype) == (0.0, 1.0, 1)
        i = zorvan.var(lb=0.5, ub=3.7, vartype=zorvan.integer)
        assert (i.lb, i.ub) == (1.0, 3.0)
        crossed = zorvan.var(lb=3.7, ub=0.5, vartype=zorvan.integer)
        assert (crossed.lb, crossed.ub) == (3.7, 0.5)

    def test_positional_arguments_and_bytes_name(self):
        x = zorvan.var(b"bx", -2, 7.5, 1.5, zorvan.semicontinuous)
        assert (x.name, x.lb, x.ub, x.threshold, x.vartype) == (b"bx", -2.0, 7.5, 1.5, 3)
        assert str(x) == "b'bx'"

    @pytest.mark.parametrize("kwargs, message", [
        ({"vartype": 6}, "Invalid variable type"),
        ({"vartype": -1}, "Invalid variable type"),
        ({"name": 5}, r"Invalid variable name \(must be a string\)"),
    ])
    def test_rejected(self, kwargs, message):
        with pytest.raises(zorvan.ModelError, match=message):
            zorvan.var(**kwargs)

    def test_parse_failure(self):
        with pytest.raises(TypeError):
            zorvan.var(lb="low")


class TestAttributes:
    def test_bounds_round_trip_and_infinities(self):
        x = zorvan.var()
        for lb in (2.5, -3.0, 1.0, 0.0, -1e30):
            x.lb = lb
            assert x.lb == max(lb, -INF)
        for ub in (7.25, 0.0, 1.0, 3e25, -4.0):
            x.ub = ub
            assert x.ub == min(ub, INF)
        x.lb = float("nan")
        assert math.isnan(x.lb)
        x.lb = 0.0
        assert x.lb == 0.0

    def test_threshold_keeps_value_when_given_minus_infinity(self):
        x = zorvan.var(threshold=4)
        x.threshold = -INF
        assert x.threshold == 4.0
        x.threshold = 9
        assert x.threshold == 9.0

    def test_integer_rules(self):
        b = zorvan.var(vartype=zorvan.binary)
        b.lb = -1
        assert (b.vartype, b.lb, b.ub) == (zorvan.integer, -1.0, 1.0)
        i = zorvan.var(vartype=zorvan.integer)
        i.lb, i.ub = 0.2, 5.9
        assert (i.lb, i.ub) == (1.0, 5.0)
        c = zorvan.var(lb=-2.5, ub=8.5)
        c.vartype = zorvan.integer
        assert (c.lb, c.ub) == (-2.0, 8.0)
        c.vartype = zorvan.binary
        assert (c.lb, c.ub, c.vartype) == (0.0, 1.0, 1)
        c.ub = 0.5  # stays binary, rounded down
        assert (c.ub, c.vartype) == (0.0, 1)
        for bad in (6, -1):
            with pytest.raises(zorvan.ModelError, match="Invalid variable type"):
                c.vartype = bad
        assert c.vartype == 1

    def test_names(self):
        x = zorvan.var(name="first")
        first = x.name
        before = sys.getrefcount(first)
        x.name = "second"
        assert sys.getrefcount(first) == before - 1
        x.name = 5  # any object after construction
        assert x.name == 5 and str(x) == "5"

    def test_dict_class_and_unknown_members(self):
        x = zorvan.var()
        assert x.__class__ is zorvan.var
        assert x.__dict__ == dict.fromkeys(["lb", "ub", "threshold", "vartype", "name"])
        with pytest.raises(zorvan.InterfaceError, match="Incorrect member name of type zorvan.var"):
            x.foo = 1
        with pytest.raises(AttributeError):
            x.__array_interface__

    def test_store_released_with_variables(self):
        # Variables with stored attributes come and go without growing memory.
        result = run_python("""
            import gc, resource, zorvan
            def churn():
                for _ in range(200000):
                    zorvan.var(name="n", lb=2.5, ub=7.5, threshold=3)
            churn()
            start = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
            for _ in range(5):
                churn()
            print(resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - start)
        """)
        assert result.returncode == 0, result.stderr
        assert int(result.stdout) < 5000  # kilobytes

    def test_variable_outliving_module_teardown(self):
        result = run_python("""
            import zorvan
            keep = [zorvan.var(name="late", lb=3)]
            zorvan.keep = keep
        """)
        assert result.returncode == 0, result.stderr


class TestHashAndExtraction:
    def test_hash_is_low_bits_of_identifier(self):
        x = zorvan.var()
        assert hash(x) == int(str(x)[1:]) & 0xFFFFFFFF
        assert {x: 1}[x] == 1

    def test_extract(self):
        x = zorvan.var()
        vs, cs = x.extractLinear()
        assert vs[0] is x and cs == [1.0]
        assert x.extractQuadratic() == ([], [], [])


@pytest.fixture
def xy():
    return zorvan.var(name="x"), zorvan.var(name="y")


class TestOperators:
    def test_addition_and_subtraction(self, xy):
        x, y = xy
        assert x + 0 is x and x - 0 is x
        assert type(0 + x) is zorvan.expression and str(0 + x) == "  x"
        assert str(x + 2) == "2 + x" and str(2 + x) == "2 + x"
        assert str(x - 2) == "-2 + x" and str(2 - x) == "2 - x"
        assert str(x + x) == "2*x" and type(x + x).__name__ == "linterm"
        assert str(x + y) == "  x + y" and str(x - y) == "  x - y"
        assert x - x == 0.0 and type(x - x) is float
        assert str(sum([x, y])) == "  x + y"

    def test_multiplication(self, xy):
        x, y = xy
        assert x * 0 == 0.0 and 0 * x == 0.0 and type(x * 0) is float
        assert x * 1 is x and 1 * x is x
        assert str(x * 3) == str(3 * x) == "3*x"
        assert str(x * np.int32(3)) == "3*x" and str(np.float64(0.5) * x) == "0.5*x"
        assert str(y * x) == "x*y" and str(x * x) == "x**2"
        assert type(x * y).__name__ == "quadterm"

    def test_division(self, xy):
        x, y = xy
        for zero in (0, zorvan.expression()):
            with pytest.raises(zorvan.ModelError, match="^Division of variable by zero$"):
                x / zero
        assert x / 1 is x and str(x / 4) == "0.25*x"
        assert x / x == 1.0 and 0 / x == 0.0
        two = zorvan.expression() + 2
        assert str(x / two) == "0.5*x"
        assert str(x / y) == "(x / y)" and str(2 / x) == "(2 / x)"
        assert str(x / (x + y)) == "(x /   x + y)"

    def test_power(self, xy):
        x, y = xy
        assert x ** 1 is x and x ** 0 == 1.0 and 1 ** x == 1.0
        assert str(x ** 2) == "x**2"
        assert str(x ** 3) == "(x ** 3)" and str(2 ** x) == "(2 ** x)"
        assert str(x ** y) == "(x ** y)" and str(y ** (2 * x)) == "(y ** 2*x)"
        with pytest.raises(zorvan.ModelError, match="Cannot obtain a power with a vector"):
            x ** np.array([1.0, 2.0])
        with pytest.raises(zorvan.ModelError, match="Invalid operands in exponentiation"):
            pow(x, 2, 3)

    def test_unary_and_logical(self, xy):
        x, y = xy
        assert str(-x) == "-1*x" and +x is x
        assert str(abs(x)) == "abs (x)"
        assert str(x & y) == "and (x, y)" and str(x | 1) == "or (x, 1)"

    def test_in_place_forms_never_change_the_variable(self, xy):
        x, y = xy
        z = x
        z += 0
        assert z is x
        z *= 1
        z /= 1
        z **= 1
        assert z is x
        z **= 0
        assert z == 1.0
        z = x
        with pytest.raises(zorvan.ModelError, match="^Division by zero$"):
            z /= 0
        z += y
        assert type(z) is zorvan.expression and type(x) is zorvan.var

    @pytest.mark.parametrize("op, message", [
        (lambda x: x + None, "Invalid operands in addition"),
        (lambda x: x - None, "Invalid object in subtraction"),
        (lambda x: x * None, "Invalid operands in multiplication"),
        (lambda x: x / None, "Invalid operands in division"),
        (lambda x: x ** None, "Invalid operands in exponentiation"),
        (lambda x: x + np.uint8(3), "Invalid operands in addition"),
        (lambda x: abs(x) + "s", r"Invalid object in operation: <s>"),
    ])
    def test_invalid_operands(self, xy, op, message):
        with pytest.raises(zorvan.ModelError, match=message):
            op(xy[0])

    def test_vector_operands_go_to_numpy(self, xy):
        x, y = xy
        a = np.array([1.0, 2.0])
        assert [str(t) for t in x * a] == ["x", "2*x"]
        assert [str(t) for t in x + a] == ["1 + x", "2 + x"]
        assert [str(t) for t in x - a] == ["-1 + x", "-2 + x"]
        assert [str(t) for t in x / a] == ["x", "0.5*x"]
        assert [str(t) for t in x + np.array([y, x])] == ["  x + y", "2*x"]
        with pytest.raises(TypeError):
            x + [1, 2]


def test_released_objects_leave_no_store_entries():
    # Non-default bounds, thresholds and names live in module-wide stores;
    # releasing the objects must remove every entry they made.
    import gc

    gc.collect()
    before = zorvan._storesizes()
    xs = [zorvan.var(lb=-2.5, ub=7.5, threshold=1.5, name=f"x{i}") for i in range(1000)]
    ys = [zorvan.var(lb=float("nan")) for _ in range(10)]
    cons = [zorvan.constraint(body=x, lb=-3.5, ub=4.5, name=f"c{i}") for i, x in enumerate(xs)]
    during = zorvan._storesizes()
    for store in ("varLbMap", "varUbMap", "varThresholdMap", "varNameMap"):
        assert during[store] >= before[store] + 1000
    for store in ("conLbMap", "conUbMap", "conNameMap"):
        assert during[store] >= before[store] + 1000
    del xs, ys, cons
    gc.collect()
    assert zorvan._storesizes() == before
    # A million default variables touch no store at all.
    many = [zorvan.var() for _ in range(10**6)]
    assert zorvan._storesizes() == before
    del many
