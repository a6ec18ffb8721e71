"""Small deviations and misleading texts: empty solutions, per-objective
listings, _init without argument, vars() against var(), the truth value of
constraints, and error texts that say what is wrong."""
import pytest

import zorvan as z
from conftest import run_python


def test_solved_empty_problem_has_empty_solution():
    p = z.problem()
    with pytest.raises(z.SolverError, match="no LP solution"):
        p.getSolution()  # not solved yet
    p.optimize()
    assert p.getSolution() == [] and p.getSlack() == [] and p.getDual() == []
    assert p.getRCost() == []
    x = z.var(vartype=z.integer)
    p.addVariable(x)
    p.delVariable(x)
    p.optimize()
    assert p.getSolution() == [] and p.getSlack() == []


class TestObjectiveAttributes:
    @pytest.fixture
    def two_objectives(self):
        x, y = z.var(ub=4), z.var(ub=3)
        p = z.problem()
        p.addVariable(x, y)
        p.addConstraint(x + y <= 5)
        p.setObjective(-x, priority=2)
        p.addObjective(-y, priority=1)
        p.controls.outputlog = 0
        p.optimize()
        return p

    def test_listings_hold_only_per_objective_attributes(self, two_objectives):
        p = two_objectives
        every = p.getAttrib(solveidx=0)
        assert "cols" not in every and "rows" not in every
        assert {"lpobjval", "solstatus", "bestbound"} <= set(every)
        assert every["lpobjval"] == pytest.approx(-4.0, abs=1e-4)
        assert p.getAttrib(solveidx=1)["lpobjval"] == pytest.approx(-1.0, abs=1e-4)
        assert repr(p.objattribs[0]) == repr(every)
        listing = repr(p.objattribs)
        assert listing.startswith("[{") and listing.count("lpobjval") == 2

    def test_indices_are_not_counted_from_the_end(self, two_objectives):
        p = two_objectives
        assert len(p.objattribs) == 2 and p.objattribs[1] is p.objattribs[1]
        for index in (-1, -2, 2):
            with pytest.raises(z.ModelError, match="Invalid objective index"):
                p.objattribs[index]
        assert [a.solstatus for a in p.objattribs] == [z.SolStatus.OPTIMAL] * 2
        assert list(p.objattribs) == [p.objattribs[0], p.objattribs[1]]


def test_init_without_argument_means_none():
    result = run_python("""
        import zorvan as z
        z._init(); z._init(None)
        print(z.free(), z.free())
        for bad in ((1,), (None, None)):
            try: z._init(*bad)
            except z.InterfaceError: print("refused")
    """)
    assert result.returncode == 0, result.stderr
    assert result.stdout.split() == ["True", "False", "refused", "refused"]


@pytest.mark.parametrize("arguments", [
    dict(vartype=z.binary, ub=z.infinity),
    dict(vartype=z.binary),
    dict(vartype=z.binary, ub=5),
    dict(vartype=z.binary, lb=-2.5, ub=0.5),
    dict(vartype=z.integer, lb=0.5, ub=3.7),
    dict(vartype=z.integer, lb=3.7, ub=0.5),
    dict(vartype=z.semicontinuous, lb=1, ub=8, threshold=2),
    dict(lb=-z.infinity, ub=7),
    dict(),
])
def test_vars_makes_what_var_makes(arguments):
    def attributes(v):
        return (v.vartype, v.lb, v.ub, v.threshold)
    expected = attributes(z.var(**arguments))
    by_dict = [attributes(v) for v in z.vars(3, **arguments).values()]
    by_array = [attributes(v) for v in z.vars(2, 2, array=True, **arguments).flat]
    assert by_dict == [expected] * 3 and by_array == [expected] * 4


def test_vars_refuses_a_bad_type_like_var():
    with pytest.raises(z.ModelError, match="Invalid variable type") as by_var:
        z.var(vartype=9)
    with pytest.raises(z.ModelError) as by_vars:
        z.vars(2, vartype=9)
    assert str(by_vars.value) == str(by_var.value)


class TestTruthOfConstraints:
    def test_constraints_have_no_truth_value(self):
        x, y = z.var(name="x"), z.var(name="y")
        for c in (x <= 1, x + y >= 2, x == y, 2 * x * y <= 3, z.constraint(body=x, ub=1)):
            with pytest.raises(z.ModelError, match="addConstraint"):
                bool(c)
            with pytest.raises(z.ModelError):
                if c:
                    pass
            with pytest.raises(z.ModelError):
                not c  # noqa: B015
        with pytest.raises(z.ModelError):
            x in [y]  # compares with ==, which builds a constraint  # noqa: B015

    def test_containers_of_objects_still_work(self):
        x, y = z.var(), z.var()
        c1, c2 = x <= 1, y <= 1
        assert x in [x] and {x: 1, y: 2}[y] == 2 and len({x, y, x}) == 2
        cons = [c1, c2]
        assert c2 in cons and cons.index(c2) == 1
        cons.remove(c1)
        assert cons == [c2]
        p = z.problem(x, y, c1, c2)
        assert p.attributes.rows == 2 and p.getConstraint(1) is c2


class TestErrorTexts:
    def test_output_arguments_must_be_lists(self):
        p = z.problem()
        p.addVariable(z.var())
        with pytest.raises(z.ModelError,
                           match="Unexpected argument to conv_arr2obj: .* not a tuple"):
            p.getlb(())
        with pytest.raises(z.ModelError,
                           match="Unexpected argument to conv_arr2obj: .* not a int"):
            p.getnames(2, 0, 0, 0)

    @pytest.mark.parametrize("getter, prefix", [
        ("getSlack", "Could not get constraints' slack"),
        ("getDual", "Could not get dual solution"),
        ("getRCost", "Could not retrieve reduced costs"),
    ])
    def test_results_before_a_solve_say_why(self, getter, prefix):
        x = z.var()
        p = z.problem(x, x <= 1)
        with pytest.raises(z.SolverError) as error:
            getattr(p, getter)()
        assert str(error.value).startswith(prefix + ": ")
        assert "no LP solution is available" in str(error.value)
        p.optimize()
        assert len(getattr(p, getter)()) == 1

    def test_views_of_released_problems(self):
        with z.problem() as p:
            pass
        for reach in (lambda: p.controls.presolve, lambda: p.attributes.cols,
                      lambda: p.objattribs[0]):
            with pytest.raises(z.ModelError, match="Problem is not initialized"):
                reach()
