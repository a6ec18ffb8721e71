"""Reading results: values, slacks, duals and reduced costs by object, name,
index and whole vector; expressions evaluated at the solution; zorvan.evaluate
at any point."""
import math

import numpy as np
import pytest

import zorvan as z


# --- zorvan.evaluate at a point given as a dictionary -------------------------

@pytest.fixture
def xy():
    return z.var(name="x"), z.var(name="y")


def test_evaluate_variables_terms_and_expressions(xy):
    x, y = xy
    at = {x: 2, y: 3}
    assert z.evaluate(x, solution={x: 2}) == 2.0
    assert z.evaluate(x, y, solution=at) == (2.0, 3.0)
    assert z.evaluate(4 * x, solution=at) == 8.0
    assert z.evaluate(-2 * x * y, solution=at) == -12.0
    assert z.evaluate(x**2, solution=at) == 4.0
    assert z.evaluate(3 * x + 2 * y * y - x * y + 7, solution=at) == 6 + 18 - 6 + 7
    assert z.evaluate(5, solution=at) == 5.0 and type(z.evaluate(5, solution=at)) is float


def test_evaluate_keeps_the_shape_of_containers(xy):
    x, y = xy
    at = {x: 2, y: 3}
    assert z.evaluate([[x, 2 * x], [x * y, (x + y, 1)]], solution=at) == \
        [[2.0, 4.0], [6.0, (5.0, 1.0)]]
    assert z.evaluate({"a": x - y, 7: [y]}, solution=at) == {"a": -1.0, 7: [3.0]}
    a = z.evaluate(np.array([[x, 2 * x], [x * y, 3]]), solution=at)
    assert isinstance(a, np.ndarray) and a.shape == (2, 2) and a.dtype == np.float64
    assert a.tolist() == [[2.0, 4.0], [6.0, 3.0]]


def test_evaluate_nonlinear_nodes(xy):
    x, y = xy
    at = {x: 2, y: 3}
    e = z.sin(x) + z.exp(y) / x - x**y + z.log10(y) + z.max(x, y, 4) - z.min(x, y) \
        + z.sign(-x) + z.sqrt(y) * z.abs(-x) + z.atan(x) - z.erf(y / 4)
    ref = math.sin(2) + math.exp(3) / 2 - 8 + math.log10(3) + 4 - 2 - 1 \
        + math.sqrt(3) * 2 + math.atan(2) - math.erf(0.75)
    assert z.evaluate(e, solution=at) == pytest.approx(ref, rel=1e-14)
    assert z.evaluate(x * y * x * y, solution=at) == 36.0
    assert z.evaluate(-(x**3), solution=at) == -8.0


def test_evaluate_logic_uses_the_mip_tolerance(xy, clean_defaults):
    # The tolerance is "miptol" of a fresh problem (the module's table of
    # default values), whatever the user's defaults say.
    x, y = xy
    tol = clean_defaults.__dict__["miptol"]
    assert tol == z.problem().controls.miptol
    clean_defaults.miptol = 0.1   # a user default does not change evaluation
    for _ in range(2):
        assert z.evaluate(z.And(x, y), solution={x: 1.0, y: tol / 2}) == 0.0
        assert z.evaluate(z.And(x, y), solution={x: 1.0, y: 2 * tol}) == 1.0
        assert z.evaluate(z.And(x, y), solution={x: 1.0, y: 0.5}) == 1.0
        assert z.evaluate(z.Or(x, y), solution={x: 1 - tol / 2, y: 0.0}) == 1.0
        assert z.evaluate(z.Or(x, y), solution={x: 1 - 2 * tol, y: 0.0}) == 0.0
        assert z.evaluate(z.Or(x, y), solution={x: 0.99, y: 0.0}) == 0.0
        z.setdefaults()


def test_evaluate_piecewise_linear_inside_and_beyond_its_breakpoints(xy):
    x, _ = xy
    f = z.pwl({(0, 1): x, (1, 3): 2 * x - 1})  # breakpoints (0,0), (1,1), (3,5)
    values = [z.evaluate(f, solution={x: v}) for v in (-1, 0, 0.5, 1, 2, 3, 4)]
    assert values == [-1.0, 0.0, 0.5, 1.0, 3.0, 5.0, 7.0]


def test_evaluate_user_function_with_the_operand_values(xy):
    x, y = xy
    calls = []

    def f(a, b):
        calls.append((a, b))
        return (a * b + 1, b, a)  # a tuple: its first item is the value

    assert z.evaluate(z.user(f, x, y + 1), solution={x: 2, y: 3}) == 9.0
    assert calls == [(2.0, 4.0)]
    assert z.evaluate(z.user(lambda a: a / 2, x), solution={x: 3}) == 1.5


def test_evaluate_division_by_exactly_zero(xy):
    x, y = xy
    with pytest.raises(ZeroDivisionError,
                       match="Division by zero in evaluation of expression containing fraction"):
        z.evaluate(1 / (x - y) + z.sin(x), solution={x: 2, y: 2})
    assert z.evaluate(1 / x, solution={x: 1e-300}) == pytest.approx(1e300)


def test_evaluate_refuses_what_it_cannot_compute(xy):
    x, y = xy
    with pytest.raises(z.ModelError, match="Variable has no value"):
        z.evaluate(x + y, solution={x: 1})
    with pytest.raises(z.ModelError, match="Cannot evaluate type of sequence"):
        z.evaluate("ab", solution={x: 1})
    with pytest.raises(z.ModelError, match="Cannot evaluate object"):
        z.evaluate([x, object()], solution={x: 1})
    deep_list, deep_tree = [x], x
    for _ in range(70):
        deep_list, deep_tree = [deep_list], z.sin(deep_tree)
    for deep in (deep_list, deep_tree):
        with pytest.raises(z.ModelError, match="exceeded recursion depth limit"):
            z.evaluate(deep, solution={x: 1})


def test_evaluate_argument_errors(xy):
    x, _ = xy
    with pytest.raises(z.InterfaceError) as e:
        z.evaluate(x)
    assert str(e.value) == ('zorvan.evaluate() requires at least one of the two arguments '
                            '"solution" and "problem".\nSee the documentation of '
                            'zorvan.evaluate for details.')
    with pytest.raises(z.InterfaceError, match='Argument "problem" is necessary'):
        z.evaluate(x, solution=[1.0])
    with pytest.raises(z.InterfaceError, match='Argument "solution" must be a dictionary'):
        z.evaluate(x, solution=3)
    with pytest.raises(z.InterfaceError,
                       match='Argument "problem" must be an zorvan.problem object'):
        z.evaluate(x, problem=3)
    with pytest.raises(z.ModelError, match="Object does not belong to problem"):
        z.evaluate(x, problem=z.problem(), solution=[1.0])


# --- results of a solved LP ---------------------------------------------------
#
# min 2x + 3y + 4w + 1   s.t.  c1: x + y >= 4,  c2: x + 2w <= 10,  c3: y + w == 2,
#                              0 <= x <= 3, y, w >= 0
# With w = 2 - y the cost is 2x - y + 9: y = 2, w = 0, x = 2, objective 11.
# Duals (change of the objective per unit of rhs): c1 2, c2 0, c3 1; reduced
# costs x 0, y 0, w 4 - 1 = 3; slacks (rhs - activity) 0, 8, 0.

def rounded(o):
    if isinstance(o, dict):
        return {k: rounded(v) for k, v in o.items()}
    if isinstance(o, (list, tuple)):
        return type(o)(rounded(i) for i in o)
    return round(o, 9) + 0.0


@pytest.fixture
def lp():
    x = z.var(name="x", ub=3)
    y = z.var(name="y")
    w = z.var(name="w")
    c1 = z.constraint(x + y >= 4, name="c1")
    c2 = z.constraint(x + 2 * w <= 10, name="c2")
    c3 = z.constraint(y + w == 2, name="c3")
    p = z.problem(name="lp")
    p.setOutputEnabled(False)
    p.addVariable(x, y, w)
    p.addConstraint(c1, c2, c3)
    p.setObjective(2 * x + 3 * y + 4 * w + 1)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    return p, (x, y, w), (c1, c2, c3)


def test_values_by_object_name_index_and_whole_vector(lp):
    p, (x, y, w), _ = lp
    assert p.getObjVal() == pytest.approx(11.0)
    assert p.getSolution() == pytest.approx([2.0, 2.0, 0.0])
    assert p.getSolution(y) == pytest.approx(2.0)
    assert p.getSolution(y, flatten=True) == pytest.approx(2.0)
    assert p.getSolution("x", 2, flatten=True) == pytest.approx([2.0, 0.0])
    assert p.getSolution(x, w) == pytest.approx([2.0, 0.0])
    assert rounded(p.getSolution([w, [x, (y,)]], flatten=True)) == [0.0, [2.0, (2.0,)]]
    assert p.getSolution(range(3), flatten=True) == pytest.approx([2.0, 2.0, 0.0])


def test_solution_evaluates_expressions_and_structures(lp):
    p, (x, y, w), (c1, _, _) = lp
    assert p.getSolution(2 * x + 1) == pytest.approx(5.0)
    assert p.getSolution(x * y - w) == pytest.approx(4.0)
    assert p.getSolution(z.exp(w) + z.sqrt(x + y)) == pytest.approx(3.0)
    assert p.getSolution(c1.body) == pytest.approx(4.0)
    assert rounded(p.getSolution({"cost": 2 * x + 3 * y + 4 * w + 1, "pair": (x, y)})) == \
        {"cost": 11.0, "pair": (2.0, 2.0)}
    a = p.getSolution(np.array([x, y, w]))
    assert isinstance(a, np.ndarray) and a.tolist() == pytest.approx([2.0, 2.0, 0.0])
    assert z.evaluate(x + y, problem=p) == pytest.approx(4.0)
    assert z.evaluate(x + y, problem=p, solution=[10.0, 20.0, 30.0]) == 30.0
    assert z.evaluate(w, problem=p, solution=np.array([10.0, 20.0, 30.0])) == 30.0


def test_slacks_duals_and_reduced_costs(lp):
    p, (x, y, w), (c1, c2, c3) = lp
    # Slack is rhs minus activity.
    assert p.getSlack() == pytest.approx([0.0, 8.0, 0.0], abs=1e-9)
    assert p.getSlack(c2) == pytest.approx(8.0)
    assert p.getSlack("c2") == pytest.approx(8.0)
    assert p.getSlack(1) == pytest.approx(8.0)
    assert rounded(p.getSlack([c1, "c2"], (2,))) == [[0.0, 8.0], (0.0,)]
    assert p.getSlack(c for c in (c2, c2)) == pytest.approx([8.0, 8.0])
    assert rounded(p.getSlack({"b": c2, 0: [c1, "c2"]})) == {"b": 8.0, 0: [0.0, 8.0]}
    assert p.getDual() == pytest.approx([2.0, 0.0, 1.0], abs=1e-9)
    assert p.getDual(c3) == pytest.approx(1.0)
    assert p.getDual("c1", 2) == pytest.approx([2.0, 1.0], abs=1e-9)
    assert p.getRCost() == pytest.approx([0.0, 0.0, 3.0], abs=1e-9)
    assert p.getRCost(w) == pytest.approx(3.0)
    assert p.getRCost("x") == pytest.approx(0.0, abs=1e-9)
    assert p.getRCost(np.array([0, 2])) == pytest.approx([0.0, 3.0], abs=1e-9)


def test_positions_out_of_range_and_of_the_wrong_kind(lp):
    p, (x, _, _), (c1, _, _) = lp
    for getter, bad in ((p.getSlack, -1), (p.getSlack, 3), (p.getRCost, 3), (p.getDual, 2**70),
                        (p.getSolution, -1)):
        with pytest.raises(z.ModelError, match="Index out of range"):
            if getter == p.getSolution:
                getter(bad, flatten=True)
            else:
                getter(bad)
    for getter, bad in ((p.getSlack, x), (p.getRCost, c1), (p.getDual, 1.5)):
        with pytest.raises(z.ModelError, match="Incorrect object.s. passed: need index, "
                                               "variable, constraint, or SOS"):
            getter(bad)
    with pytest.raises(z.ModelError, match="Constraint .* not in problem"):
        p.getSlack(z.constraint(x <= 1))
    stranger = z.var(name="stranger")
    with pytest.raises(z.ModelError, match="Variable stranger not in problem"):
        p.getSolution(stranger, flatten=True)
    with pytest.raises(z.ModelError, match="Object does not belong to problem"):
        p.getSolution(stranger + x)
    with pytest.raises(z.ModelError, match="Index out of range"):
        p.getSlack("no such row")


def test_results_after_the_model_changes_are_refused(lp):
    p, _, _ = lp
    p.addVariable(z.var(name="late"))
    with pytest.raises(z.SolverError):
        p.getSolution()


def test_getters_on_a_released_problem():
    with z.problem() as p:
        pass
    for call in (p.getSolution, p.getSlack, p.getDual, p.getRCost, p.getObjVal,
                 p.getProbStatus, p.getProbStatusString, p.optimize):
        with pytest.raises(z.ModelError, match="Problem is not initialized"):
            call()


# --- a MIP has values and slacks but no duals or reduced costs ----------------

def test_mip_results_and_refused_duals():
    a, b, c = (z.var(name=n, vartype=z.binary) for n in "abc")
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(a, b, c)
    cap = z.constraint(2 * a + 3 * b + c <= 5, name="cap")
    p.addConstraint(cap)
    p.setObjective(5 * a + 4 * b + 3 * c, sense=z.maximize)
    p.optimize()
    assert p.getObjVal() == pytest.approx(9.0)
    assert p.getSolution() == pytest.approx([1.0, 1.0, 0.0])
    assert p.getSolution(a + b + c) == pytest.approx(2.0)
    assert p.getSlack(cap) == pytest.approx(0.0, abs=1e-9)
    with pytest.raises(z.SolverError, match="Cannot retrieve dual variables in a MIP"):
        p.getDual()
    with pytest.raises(z.SolverError, match="Cannot retrieve reduced cost in a MIP"):
        p.getRCost(a)
