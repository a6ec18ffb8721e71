"""Calls that fail leave the problem as it was: sense, objective, objective
controls, counts and the solve's result."""
import pytest

import zorvan as z


@pytest.fixture
def model():
    """max x + 2 y, x <= 4, y <= 3, x + y <= 5: optimum 8 at (2, 3)."""
    x, y = z.var(ub=4, name="x"), z.var(ub=3, name="y")
    p = z.problem(sense=z.maximize)
    p.addVariable(x, y)
    p.addConstraint(x + y <= 5)
    p.setObjective(x + 2 * y)
    return p, x, y


def snapshot(p, x, y):
    status = p.optimize()
    return {
        "sense": p.attributes.objsense,
        "counts": (p.attributes.cols, p.attributes.rows, p.attributes.objectives),
        "status": status,
        "objective": p.getObjVal(),
        "solution": p.getSolution([x, y]),
    }


class TestSetObjective:
    # Each failing call, given the fixture's variables, and its error.
    failures = {
        "unknown variable": (lambda x, y: dict(objective=x + z.var(), sense=z.minimize),
                             z.ModelError),
        "not an objective": (lambda x, y: dict(objective="x", sense=z.minimize), z.ModelError),
        "nonlinear": (lambda x, y: dict(objective=z.exp(z.var()) + x, sense=z.minimize),
                      z.ModelError),
        "bad sense": (lambda x, y: dict(objective=y, sense=7), z.ModelError),
        "bad index": (lambda x, y: dict(objective=y, objidx=3, sense=z.minimize),
                      z.ModelError),
        "negative tolerance": (lambda x, y: dict(objective=y, sense=z.minimize, abstol=-1.0),
                               z.SolverError),
        "weight not finite": (lambda x, y: dict(sense=z.minimize, weight=float("nan")),
                              z.SolverError),
        "priority out of range": (lambda x, y: dict(sense=z.minimize, priority=2**40),
                                  z.ModelError),
        "integer weight": (lambda x, y: dict(objective=y, sense=z.minimize, weight=2),
                           z.ModelError),
        "after valid controls": (lambda x, y: dict(objective=y, sense=z.minimize, priority=5,
                                                   weight=3.0, reltol=-1.0), z.SolverError),
    }

    @pytest.mark.parametrize("case", sorted(failures))
    def test_a_failure_changes_nothing(self, model, case):
        p, x, y = model
        before = snapshot(p, x, y)
        arguments, error = self.failures[case]
        with pytest.raises(error):
            p.setObjective(**arguments(x, y))
        assert snapshot(p, x, y) == before
        assert before["sense"] == -1.0 and before["objective"] == pytest.approx(8.0)

    def test_objective_controls_are_kept(self, model):
        p, x, y = model
        p.setObjective(priority=3, weight=2.0, abstol=0.5)
        with pytest.raises(z.SolverError):
            p.setObjective(x, priority=9, weight=4.0, reltol=-2.0)
        with pytest.raises(z.ModelError):
            p.setObjective(z.var(), priority=7, abstol=0.25)
        assert p.getControl("priority", "weight", "abstol", objidx=0) == \
            {"priority": 3, "weight": 2.0, "abstol": 0.5}

    def test_a_success_still_changes_everything(self, model):
        p, x, y = model
        p.setObjective(x - y, sense=z.minimize, priority=2, weight=1.5)
        assert snapshot(p, x, y)["objective"] == pytest.approx(-3.0)
        assert p.attributes.objsense == 1.0
        assert p.getControl("priority", "weight", objidx=0) == {"priority": 2, "weight": 1.5}


def test_failed_add_objective_keeps_the_objectives(model):
    p, x, y = model
    before = snapshot(p, x, y)
    with pytest.raises(z.ModelError):
        p.addObjective(x, z.var())
    with pytest.raises(z.SolverError):
        p.addObjective(x, y, abstol=-1.0)
    assert snapshot(p, x, y) == before


def test_reset_keeps_the_views_working(model):
    p, x, y = model
    controls = p.controls
    p.reset()
    assert p.attributes.cols == 0 and p.attributes.objsense == 1.0
    assert p.controls.presolve == 1
    # A view taken before the reset belonged to the released problem.
    with pytest.raises(z.ModelError, match="Problem is not initialized"):
        controls.presolve


def test_bad_module_default_leaves_new_problems_working(clean_defaults):
    for name, value in (("randomseed", -1), ("presolve", 9), ("threads", -5)):
        with pytest.raises(z.SolverError, match=name):
            setattr(clean_defaults, name, value)
        p = z.problem()
        p.reset()
        assert p.attributes.cols == 0
    # Nothing was stored: the defaults object shows a fresh problem's values.
    fresh_problem = z.problem()
    fresh = fresh_problem.controls
    assert (clean_defaults.randomseed, clean_defaults.presolve, clean_defaults.threads) == \
        (fresh.randomseed, fresh.presolve, fresh.threads)
