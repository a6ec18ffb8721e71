"""Objectives: the primary objective (linear or quadratic, with a constant and
a sense), further linear objectives with priorities, weights and tolerances,
their controls and per-objective attributes."""
import pytest

import zorvan as z



def model(*bounds):
    """A quiet problem with one variable per (lb, ub) pair."""
    p = z.problem()
    p.setOutputEnabled(False)
    xs = [z.var(name=f"v{i}", lb=lb, ub=ub) for i, (lb, ub) in enumerate(bounds)]
    p.addVariable(xs)
    return p, xs


# --- the primary objective ----------------------------------------------------

def test_linear_objective_with_constant_and_sense():
    p, (x, y) = model((0, 4), (0, 5))
    p.setObjective(3 * x + 2 * y + 7, sense=z.maximize)
    p.optimize()
    assert p.getObjVal() == pytest.approx(12 + 10 + 7)
    p.setObjective(3 * x - 2 * y + 7, sense=z.minimize)
    p.optimize()
    assert p.getSolution() == pytest.approx([0.0, 5.0])
    assert p.getObjVal() == pytest.approx(-3.0)
    # Without a sense the sense stays; a single variable is an objective too.
    p.setObjective(y)
    p.optimize()
    assert p.getObjVal() == pytest.approx(0.0)
    assert p.attributes.objsense == 1.0


def test_replacing_a_quadratic_objective_clears_every_old_coefficient():
    p, (x, y) = model((-10, 10), (-10, 10))
    p.addConstraint(x + y == 3)
    # With y = 3 - x the objective is x^2 + x + 1: x = -0.5, y = 3.5, value 0.75.
    p.setObjective(x**2 - 2 * x + y * y - 6 * y + x * y + 10)
    assert p.attributes.qelems > 0
    p.optimize()
    assert p.getSolution() == pytest.approx([-0.5, 3.5], abs=1e-6)
    assert p.getObjVal() == pytest.approx(0.75, abs=1e-6)
    p.setObjective(x - y)
    assert p.attributes.qelems == 0
    p.optimize()
    assert p.getSolution() == pytest.approx([-7.0, 10.0])
    assert p.getObjVal() == pytest.approx(-17.0)


def test_quadratic_terms_and_squares():
    # min (x - 1)^2 + (y - 2)^2 with x + y <= 2: the projection (0.5, 1.5).
    p, (x, y) = model((0, 10), (0, 10))
    c = z.constraint(x + y <= 2, name="c")
    p.addConstraint(c)
    p.setObjective((x - 1)**2 + (y - 2)**2)
    p.optimize()
    assert p.getSolution() == pytest.approx([0.5, 1.5], abs=1e-6)
    assert p.getObjVal() == pytest.approx(0.5, abs=1e-6)
    assert p.getDual(c) == pytest.approx(-1.0, abs=1e-6)
    # A weight scales the whole objective, its squares as well as its linear
    # part: the minimiser stays where it is.
    p.setObjective((x - 1)**2 + (y - 2)**2, weight=3.0)
    p.optimize()
    assert p.getSolution() == pytest.approx([0.5, 1.5], abs=1e-6)
    assert p.getObjVal() == pytest.approx(0.5, abs=1e-6)
    # Without rows HiGHS leaves no duals and the QP is solved again by the
    # engine's interior point: the weight must not leak into the value.
    b, (u,) = model((-10, 10))
    b.setObjective(u * u - 2 * u, weight=3.0)
    b.optimize()
    assert b.getSolution(u) == pytest.approx(1.0, abs=1e-6)
    assert b.getObjVal() == pytest.approx(-1.0, abs=1e-6)
    # A square on its own: 3 x^2 is the matrix entry 6 of 0.5 x'Qx.
    q, (v,) = model((1, 10))
    q.setObjective(3 * v * v)
    q.optimize()
    assert q.getSolution(v) == pytest.approx(1.0, abs=1e-6)
    assert q.getObjVal() == pytest.approx(3.0, abs=1e-6)


def test_refused_objectives_change_nothing():
    p, (x, y) = model((0, 1), (0, 1))
    p.setObjective(x + y)
    with pytest.raises(z.ModelError, match="Invalid object set as objective"):
        p.setObjective("x")
    with pytest.raises(z.ModelError, match="Variable in nonlinear part of constraint has not"):
        p.setObjective(z.sin(z.var(name="stranger")) + y)
    with pytest.raises(z.ModelError, match="Variable stranger not in problem"):
        p.setObjective(x + z.var(name="stranger"))
    with pytest.raises(z.ModelError, match="Invalid optimization sense"):
        p.setObjective(x, sense=0)
    with pytest.raises(z.ModelError, match="Invalid objective index"):
        p.setObjective(x, objidx=1)
    with pytest.raises(z.ModelError, match="Control 'weight' requires a float value"):
        p.setObjective(x, weight=1)
    p.setObjective(sense=z.maximize)
    p.optimize()
    assert p.getObjVal() == pytest.approx(2.0)


# --- several objectives ---------------------------------------------------------

def test_objectives_by_priority():
    # max x + y first (optimum 10 on the whole face x + y = 10), then max 2y + 1.
    p, (x, y) = model((0, 10), (0, 10))
    p.addConstraint(x + y <= 10)
    p.setObjective(x + y, sense=z.maximize, priority=2)
    p.addObjective(2 * y + 1, priority=1)
    assert len(p.objattribs) == 2
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getSolution() == pytest.approx([0.0, 10.0], abs=1e-5)
    assert p.objattribs[0].lpobjval == pytest.approx(10.0, abs=1e-5)
    assert p.objattribs[1].lpobjval == pytest.approx(21.0, abs=1e-5)
    # The constant of a further objective is its control 'rhs'.
    assert p.getControl("rhs", objidx=1) == 1.0
    assert p.getControl(20001, objidx=1) == 1


def test_objectives_of_one_priority_are_blended_by_weight():
    p, (x, y) = model((0, 10), (0, 10))
    p.addConstraint(x + y <= 10)
    p.setObjective(x, sense=z.maximize)
    p.addObjective(y, weight=2.0)
    p.optimize()
    assert p.getSolution() == pytest.approx([0.0, 10.0], abs=1e-6)
    p.setObjective(y, objidx=1, weight=0.25)
    assert p.getControl("WEIGHT", objidx=1) == 0.25
    p.optimize()
    assert p.getSolution() == pytest.approx([10.0, 0.0], abs=1e-6)


def test_tolerances_let_the_first_level_give_way():
    # max x + y (optimum 10 with x <= 6), then min y: with abstol 4 the first
    # level may drop to 6, which allows y = 0, x = 6; without, y = 4.
    p, (x, y) = model((0, 6), (0, 10))
    p.addConstraint(x + y <= 10)
    p.setObjective(x + y, sense=z.maximize, priority=2, abstol=4.0, reltol=0.0)
    p.addObjective(-y, priority=1)
    p.optimize()
    assert p.getSolution() == pytest.approx([6.0, 0.0], abs=1e-6)
    p.setControl("abstol", 1e-9, objidx=0)
    p.optimize()
    assert p.getSolution() == pytest.approx([6.0, 4.0], abs=1e-5)


def test_add_several_objectives_with_controls():
    p, (x, y) = model((0, 1), (0, 1))
    p.addObjective([x, (y, x - y)], priority=3, weight=0.5, abstol=0.1, reltol=0.2)
    assert len(p.objattribs) == 4
    for k in (1, 2, 3):
        assert p.getControl(objidx=k) == {"priority": 3, "weight": 0.5, "abstol": 0.1,
                                          "reltol": 0.2, "rhs": 0.0}
    assert p.getControl(objidx=0)["priority"] == 0


def test_refused_further_objectives_leave_the_problem_as_it_was():
    p, (x, y) = model((0, 1), (0, 1))
    p.addObjective(x)
    with pytest.raises(z.ModelError, match="Quadratic and nonlinear objectives are not "
                                           "supported in multi-objective problems"):
        p.addObjective(y, x * y)
    with pytest.raises(z.ModelError, match="Control 'weight' requires a float value"):
        p.addObjective(y, weight=1)
    with pytest.raises(z.ModelError, match="Control 'priority' requires an integer value"):
        p.addObjective(y, priority=1.0)
    with pytest.raises(z.ModelError, match="Invalid object set as objective"):
        p.addObjective(y, None)
    assert len(p.objattribs) == 2
    with pytest.raises(z.ModelError, match="Invalid objective index"):
        p.objattribs[2]
    # A quadratic primary objective is accepted, but then no further ones.
    p2, (a, b) = model((0, 1), (0, 1))
    p2.setObjective(a * a + b)
    with pytest.raises(z.ModelError, match="multi-objective"):
        p2.addObjective(a)
    assert len(p2.objattribs) == 1


def test_methods_document_themselves():
    for m in (z.problem.setObjective, z.problem.addObjective):
        for section in ("Purpose:", "Synopsis:", "Arguments:", "Example:",
                        "Further information:", "Related topics:"):
            assert section in m.__doc__
