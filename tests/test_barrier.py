"""The barrier with and without crossover, on problems that presolve
removes entirely and on problems it leaves."""
import pytest

import zorvan as z


@pytest.mark.parametrize("crossover", [0, 1])
@pytest.mark.parametrize("presolve", [0, 1])
def test_barrier_reports_the_optimum_and_its_duals(crossover, presolve):
    # max x + 2y, x <= 4, y <= 3, x + y <= 10: bounds alone decide it, so
    # presolve leaves nothing to solve.
    x, y = z.var(ub=4), z.var(ub=3)
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x, y)
    row = x + y <= 10
    p.addConstraint(row)
    p.setObjective(x + 2 * y, sense=z.maximize)
    p.controls.crossover = crossover
    p.controls.presolve = presolve
    assert p.optimize("b") == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getObjVal() == pytest.approx(10.0)
    assert p.getSolution(x, y) == pytest.approx([4.0, 3.0])
    assert p.getRCost(x, y) == pytest.approx([1.0, 2.0], abs=1e-6)
    assert p.getDual(row) == pytest.approx(0.0, abs=1e-6)
    assert p.getProbStatusString() == "lp_optimal"
