"""LP verdicts that HiGHS's presolve got wrong, and reduced costs of a model
without rows. Known answers are worked out in the comments."""
import pytest

import zorvan as z


def unbounded_lp():
    # (0, -0.4, -0.5) is feasible; along d = (-1, 1/3, -1.5) every row holds
    # and the objective falls by 8 per step: unbounded.
    x0 = z.var(lb=-z.infinity, ub=0)
    x1 = z.var(lb=-0.4)
    x2 = z.var(lb=-z.infinity, ub=-0.5)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x0, x1, x2)
    p.addConstraint(-0.3 * x0 - 0.9 * x1 >= -0.64, -0.6 * x0 + 0.4 * x2 >= -0.62,
                    -0.9 * x0 - 0.1 * x1 + 0.7 * x2 <= 0.07)
    p.setObjective(2.5 * x0 - 1.7 * x1 + 3.3 * x2)
    return p


@pytest.mark.parametrize("presolve", [1, 0])
def test_feasible_unbounded_lp_is_not_called_infeasible(presolve):
    p = unbounded_lp()
    p.controls.presolve = presolve
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.UNBOUNDED)


def test_feasible_mip_is_not_called_infeasible():
    p = unbounded_lp()
    b = z.var(vartype=z.binary)
    p.addVariable(b)
    p.addConstraint(b <= 1)
    solve, sol = p.optimize()
    assert solve == z.SolveStatus.COMPLETED
    assert sol != z.SolStatus.INFEASIBLE


def test_infeasible_lp_stays_infeasible():
    x, y = z.var(lb=-z.infinity), z.var(lb=-z.infinity)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x, y)
    p.addConstraint(x + y <= 1, x + y >= 3)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.INFEASIBLE)


@pytest.mark.parametrize("presolve", [1, 0])
def test_model_without_rows_reports_reduced_costs(presolve):
    # min 4v + 2w, v >= 1, w in [-1, 3]: v = 1, w = -1, reduced costs 4 and 2.
    v, w = z.var(lb=1), z.var(lb=-1, ub=3)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(v, w)
    p.setObjective(4 * v + 2 * w)
    p.controls.presolve = presolve
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getSolution([v, w]) == pytest.approx([1.0, -1.0])
    assert p.getRCost([v, w]) == pytest.approx([4.0, 2.0])
