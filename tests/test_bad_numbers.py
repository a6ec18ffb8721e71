"""Models with numbers no solve can use: optimize names the variable or
constraint and says what is wrong."""
import pytest

import zorvan as z


def model(xlb=0.0, xub=10.0, coef=1.0, rhs=5.0, quad=0.0):
    x, y = z.var(name="x", lb=xlb, ub=xub), z.var(name="y", ub=10)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x, y)
    p.addConstraint(z.constraint(coef * x + y <= rhs, name="cap"))
    p.setObjective(x + y + quad * x * y if quad else x + y)
    return p


@pytest.mark.parametrize("kwargs, text", [
    ({"xlb": z.infinity}, "column 0 (x) has its lower bound at plus infinity"),
    ({"xlb": -1e30, "xub": -1e21}, "column 0 (x) has its upper bound at minus infinity"),
    ({"rhs": -z.infinity}, "row 0 (cap) has its upper side at minus infinity"),
    ({"coef": 1e300}, "the coefficient of column 0 (x) in row 0 (cap) is 1e+300"),
    ({"quad": 1e300}, "the quadratic objective coefficient of column 0 (x) and column 1 (y)"),
])
def test_optimize_names_what_cannot_be_solved(kwargs, text):
    p = model(**kwargs)
    # x*y is not convex: that model goes to Ipopt, the others to HiGHS.
    with pytest.raises(z.SolverError, match="(HiGHS|Ipopt) rejected the model: ") as error:
        p.optimize()
    assert text in str(error.value)


def test_sound_numbers_still_solve():
    p = model()
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getObjVal() == pytest.approx(0.0)
