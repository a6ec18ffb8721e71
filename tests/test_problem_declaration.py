"""A whole model in the problem constructor: variables, constraints, sets and
an objective given as positional arguments."""
import pytest

import zorvan as z


def test_a_model_declared_in_one_call_solves():
    x, y = z.var(name="x", ub=4), z.var(name="y", ub=4)
    c1, c2 = x + 2 * y <= 6, 3 * x + y <= 8
    p = z.problem([x, y], (c for c in (c1, c2)), x + y, "declared", sense=z.maximize)
    p.setOutputEnabled(False)
    assert p.name() == "declared"
    assert p.getVariable() == [x, y] and p.getConstraint() == [c1, c2]
    p.optimize()
    assert p.getObjVal() == pytest.approx(4.0)
    assert p.getSolution() == pytest.approx([2.0, 2.0])


def test_constraints_before_their_variables_and_sets():
    a, b = z.var(name="a", ub=1), z.var(name="b", ub=1)
    s = z.sos([a, b], [1, 2], name="pick")
    p = z.problem([a + b <= 2], {"s": s}, [[a, (b,)]], a + 2 * b, sense=z.maximize)
    p.setOutputEnabled(False)
    assert p.getSOS() == [s] and p.getVariable() == [a, b]
    p.optimize()
    assert p.getObjVal() == pytest.approx(2.0)


def test_a_repeated_variable_is_the_objective():
    x, y = z.var(ub=3), z.var(ub=5)
    p = z.problem(x, y, x + y <= 6, y, sense=z.maximize)
    p.setOutputEnabled(False)
    assert p.attributes.cols == 2
    p.optimize()
    assert p.getSolution(y) == pytest.approx(5.0)


@pytest.mark.parametrize("args, error, message", [
    ((["a", "b"],), z.ModelError, "Erroneous problem declaration"),
    (([3.0, z.var()],), z.ModelError, "Erroneous problem declaration"),
    (([2 * z.var(), z.var() <= 1],), z.ModelError, "Erroneous problem declaration"),
    (([z.var(), z.var() <= 1],), z.ModelError, "Incorrect objects added as variables"),
    ((z.var() <= 1,), z.ModelError, "Variable .* not in problem"),
    ((z.sin(z.var()),), z.ModelError, "Variable in nonlinear part of constraint has not been"),
    ((z.var() + 1, z.var() + 2), z.ModelError, "More than one objective passed"),
])
def test_declaration_errors(args, error, message):
    with pytest.raises(error, match=message):
        z.problem(*args)


def test_nesting_deeper_than_32_levels():
    deep = z.var()
    for _ in range(40):
        deep = [deep]
    with pytest.raises(z.ModelError, match="Error declaring problem"):
        z.problem(deep)
    shallow = z.var()
    for _ in range(30):
        shallow = [shallow]
    assert z.problem(shallow).attributes.cols == 1
