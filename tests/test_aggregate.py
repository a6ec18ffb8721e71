"""Sum, Dot, Prod, And, Or and vars."""
import numpy as np
import pytest

import zorvan as z


@pytest.fixture
def xs():
    return [z.var(name=f"x{i}") for i in range(4)]


def expression_type():
    return z.expression


def test_empty_aggregates():
    s = z.Sum()
    assert type(s) is z.expression and str(s) == "0"
    assert type(z.Sum([])) is z.expression and type(z.Sum(iter(()))) is z.expression
    assert z.Prod() == 1.0
    assert z.And() is True and z.Or() is True and z.And([]) is True


def test_sum_accepts_every_kind_of_collection(xs):
    x0, x1, x2, x3 = xs
    expected = ([x0, x1, x2], [1.0, 2.0, 1.0])
    forms = [
        z.Sum(x0, 2 * x1, x2),
        z.Sum([x0, 2 * x1, x2]),
        z.Sum((x0, 2 * x1, x2)),
        z.Sum(v for v in (x0, 2 * x1, x2)),
        z.Sum({"a": x0, "b": 2 * x1, "c": x2}),
        z.Sum(np.array([x0, 2 * x1, x2], dtype=object)),
        z.Sum([x0, [x1, (x1,)]], {1: x2}),
    ]
    for s in forms:
        assert type(s) is z.expression and s.extractLinear() == expected
    assert z.Sum(np.array([[1.0, 2.0], [3.0, 4.0]])).extractLinear() == ([], [])
    assert str(z.Sum(np.array([[1.0, 2.0], [3.0, 4.0]]))) == "10"


def test_sum_of_terms_numbers_and_quadratics(xs):
    x0, x1, _, _ = xs
    s = z.Sum(3, x0 * x1, x1 * x0, 2.5 * x0, np.float64(1.5), np.int64(2))
    assert s.extractQuadratic() == ([x0], [x1], [2.0])
    assert s.extractLinear() == ([x0], [2.5])
    assert str(s).startswith("6.5")


def test_sum_never_changes_its_operands(xs):
    x0, x1, _, _ = xs
    e = x0 + x1
    before = str(e)
    s = z.Sum(e, e, x0)
    assert s is not e and str(e) == before
    assert s.extractLinear() == ([x0, x1], [3.0, 2.0])
    single = z.Sum(e)
    assert single is not e and str(single) == before


def test_sum_with_nonlinear_operands(xs):
    x0, x1, _, _ = xs
    s = z.Sum(z.sin(x0), x1, 2, z.cos(x1))
    assert str(s) == "(sin (x0) + cos (x1) + 2 + x1)"
    assert str(z.Sum(z.sin(x0), 3)) == "(sin (x0) + 3.0)"
    only = z.sin(x0)
    t = z.Sum([only])
    assert t is not only and str(t) == "sin (x0)"
    # a sum node's operands join the sum
    assert str(z.Sum(z.sin(x0) + 1, z.exp(x1))) == "(sin (x0) + exp (x1) + 1.0)"


def test_sum_errors(xs):
    with pytest.raises(z.ModelError, match="Invalid object in operation: <abc>"):
        z.Sum(xs[0], "abc")
    with pytest.raises(z.ModelError, match="Invalid object in operation: <None>"):
        z.Sum([xs[0], None])

    def broken():
        yield xs[0]
        raise KeyError("stop")

    with pytest.raises(KeyError):
        z.Sum(broken())


def test_sum_is_linear_in_time_and_exact(xs):
    n = 200000
    v = [z.var() for _ in range(1000)]
    s = z.Sum(v[i % 1000] * (i % 7) for i in range(n))
    vars_, coefs = s.extractLinear()
    assert len(vars_) == 1000
    assert coefs[3] == sum(i % 7 for i in range(3, n, 1000))


def test_dot(xs):
    x0, x1, x2, _ = xs
    d = z.Dot([1, 2, 3], [x0, x1, x2])
    assert d.extractLinear() == ([x0, x1, x2], [1.0, 2.0, 3.0])
    q = z.Dot(np.array([x0, x1], dtype=object), (x1, x1))
    assert q.extractQuadratic() == ([x0, x1], [x1, x1], [1.0, 1.0])
    assert z.Dot([2, 3], [x0, x1], [4, 5]).extractLinear() == ([x0, x1], [8.0, 15.0])
    assert str(z.Dot([], [])) == "0"
    with pytest.raises(z.InterfaceError, match="same number of elements"):
        z.Dot([1, 2], [x0])
    with pytest.raises(z.InterfaceError, match="at least two arguments"):
        z.Dot([x0])


def test_prod(xs):
    x0, x1, x2, _ = xs
    assert z.Prod(2, 3.5) == 7.0
    assert str(z.Prod(x0)) == "x0" and str(z.Prod([2, x0])) == "2*x0"
    assert str(z.Prod(x0, x1)) == "x0*x1"
    p = z.Prod(x0, x1, x2)
    assert type(p).__name__ == "nonlinear"
    assert z.Prod(x0, 0) == 0.0
    s = z.sin(x0)
    before = str(s)
    z.Prod(s, x1, x2)
    assert str(s) == before
    with pytest.raises(z.ModelError, match="Invalid object in operation"):
        z.Prod(x0, "a")


def test_and_or(xs):
    x0, x1, x2, _ = xs
    assert str(z.And(x0, x1)) == "and (x0, x1)"
    assert str(z.Or([x0, x1], x2)) == "or (x0, x1, x2)"
    assert str(z.And(z.And(x0, x1), x2)) == "and (x0, x1, x2)"
    assert z.And(x0) is x0
    assert z.And(1, True) is True and z.And(1, 0) is False
    assert z.Or(0, False) is False and z.Or(0, 2) is True
    with pytest.raises(z.ModelError):
        z.Or(x0, "a")


def test_vars_indexing_and_names():
    x = z.vars(3, name="x")
    assert list(x) == [0, 1, 2] and [v.name for v in x.values()] == ["x(0)", "x(1)", "x(2)"]
    ids = [int(str(v)[1:]) for v in z.vars(3).values()]
    assert ids == list(range(ids[0], ids[0] + 3))  # one block of identifiers
    y = z.vars(["a", "b"], range(1, 3), name="y")
    assert list(y) == [("a", 1), ("a", 2), ("b", 1), ("b", 2)]
    assert y["b", 2].name == "y(b,2)"
    assert len(z.vars(2, 3, 4)) == 24 and z.vars(0) == {}


def test_vars_attributes():
    b = z.vars(2, vartype=z.binary)
    assert all(v.vartype == z.binary and v.lb == 0 and v.ub == 1 for v in b.values())
    c = z.vars(["p"], lb=-1, ub=5.5, threshold=2, name="c")
    v = c["p"]
    assert (v.lb, v.ub, v.threshold, v.vartype, v.name) == (-1, 5.5, 2, z.continuous, "c(p)")
    i = z.vars(1, lb=0.5, ub=3.7, vartype=z.integer)[0]
    assert (i.lb, i.ub) == (1, 3)


def test_vars_errors():
    with pytest.raises(z.InterfaceError, match="at least one index set"):
        z.vars()
    with pytest.raises(z.InterfaceError, match="must be an integer or an iterable"):
        z.vars(2.5)
    with pytest.raises(z.InterfaceError, match="Unknown keyword argument"):
        z.vars(2, nmae="x")
    with pytest.raises(z.ModelError, match="Invalid variable name"):
        z.vars(2, name=5)
    with pytest.raises(z.ModelError, match="Invalid variable type"):
        z.vars(2, vartype=9)
