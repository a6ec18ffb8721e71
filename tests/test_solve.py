"""Solving: optimize/solve and their statuses, the LP and MIP solves, the
objective value and the problem status; LP, MIP with sets and indicators,
convex QP, infeasible and unbounded models."""
import pytest

import zorvan as z



def quiet():
    p = z.problem()
    p.setOutputEnabled(False)
    return p


def knapsack():
    # max 5a + 4b + 3c, 2a + 3b + c <= 5, binary: a = b = 1, value 9.
    # Its relaxation takes c, a and 2/3 of b: 5 + 3 + 8/3.
    a, b, c = (z.var(name=n, vartype=z.binary) for n in "abc")
    p = quiet()
    p.addVariable(a, b, c)
    p.addConstraint(z.constraint(2 * a + 3 * b + c <= 5, name="cap"))
    p.setObjective(5 * a + 4 * b + 3 * c, sense=z.maximize)
    return p, (a, b, c)


def test_fresh_problem_status():
    p = quiet()
    assert p.getProbStatus() == z.lp_unstarted
    assert p.getProbStatusString() == "lp_unstarted"


def test_overview_model_end_to_end():
    x = z.var(ub=10)
    c = 2 * x + 3 <= 7
    p = quiet()
    p.addVariable(x)
    p.addConstraint(c)
    p.setObjective(x, sense=z.maximize)
    result = p.optimize()
    assert result == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert type(result[0]) is z.SolveStatus and type(result[1]) is z.SolStatus
    assert p.getSolution(x) == pytest.approx(2.0)
    assert p.getSlack(c) == pytest.approx(0.0, abs=1e-9)
    assert p.getDual(c) == pytest.approx(0.5)
    assert p.getProbStatus() == z.lp_optimal
    assert p.getProbStatusString() == "lp_optimal"


def test_solve_is_optimize_and_flags_choose_the_algorithm():
    for flags in ("", "d", "p", "b"):
        x, y = z.var(ub=4), z.var(ub=4)
        p = quiet()
        p.addVariable(x, y)
        p.addConstraint(x + 2 * y <= 6, 3 * x + y <= 8)
        p.setObjective(x + y, sense=z.maximize)
        assert p.solve(flags) == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
        # x + 2y = 6 and 3x + y = 8: x = 2, y = 2.
        assert p.getSolution() == pytest.approx([2.0, 2.0], abs=1e-6)
        assert p.getObjVal() == pytest.approx(4.0, abs=1e-6)


def test_infeasible_and_unbounded_models():
    x = z.var()
    p = quiet()
    p.addVariable(x)
    p.addConstraint(x >= 3, x <= 1)
    assert p.optimize()[1] == z.SolStatus.INFEASIBLE
    assert p.getProbStatusString() == "lp_infeas"
    y = z.var()
    q = quiet()
    q.addVariable(y)
    q.setObjective(y, sense=z.maximize)
    assert q.optimize()[1] == z.SolStatus.UNBOUNDED
    assert q.getProbStatusString() == "lp_unbounded"
    assert q.getProbStatus() == z.lp_unbounded


def test_rows_left_without_columns_keep_their_verdict():
    # x >= 5 with x <= 3 is infeasible; without x the row reads 0 >= 5.
    x = z.var(ub=3)
    p = quiet()
    p.addVariable(x)
    p.addConstraint(x >= 5)
    assert p.optimize()[1] == z.SolStatus.INFEASIBLE
    p.delVariable(x)
    assert p.attributes.cols == 0 and p.attributes.rows == 1
    assert p.optimize()[1] == z.SolStatus.INFEASIBLE
    assert p.getProbStatusString() == "lp_infeas"
    q = quiet()
    q.addConstraint(z.constraint(body=z.Sum([]) + 0, lb=-1, ub=2))
    assert q.optimize()[1] == z.SolStatus.OPTIMAL


def test_a_problem_without_columns_keeps_its_objective_constant_and_slacks():
    x, y = z.var(vartype=z.binary), z.var(ub=2)
    p = quiet()
    p.addVariable(x, y)
    p.addConstraint(x + y <= 11)
    p.setObjective(4 * x + y - 2.5)
    p.delVariable(x)
    p.delVariable(y)
    assert p.optimize()[1] == z.SolStatus.OPTIMAL
    assert p.getObjVal() == -2.5
    assert p.getSolution() == []
    assert p.getSlack() == [11.0]
    assert p.getDual() == [0.0]
    assert p.getRCost() == []


def test_mip_solve_and_its_relaxation():
    p, (a, b, c) = knapsack()
    assert p.getProbStatusString() == "mip_not_loaded"
    assert p.lpoptimize() is None
    assert p.attributes.lpobjval == pytest.approx(8 + 8 / 3, abs=1e-6)
    assert p.mipoptimize() is None
    assert p.getProbStatus() == z.mip_optimal
    assert p.getProbStatusString() == "mip_optimal"
    assert p.getObjVal() == pytest.approx(9.0)
    assert p.getSolution(a, b, c) == pytest.approx([1.0, 1.0, 0.0])


def test_the_solution_read_follows_the_model_class_not_the_entry_point():
    # An LP solved by mipoptimize is an LP solve: primal, duals, LP status.
    # max 3x + 2y, x + y <= 4.5, x <= 3: x = 3, y = 1.5, dual 2, cost 12.
    x, y = z.var(ub=3), z.var(ub=3)
    p = quiet()
    p.addVariable(x, y)
    row = z.constraint(x + y <= 4.5)
    p.addConstraint(row)
    p.setObjective(3 * x + 2 * y, sense=z.maximize)
    assert p.mipoptimize() is None
    assert p.getProbStatusString() == "lp_optimal"
    assert p.getSolution(x, y) == pytest.approx([3.0, 1.5])
    assert p.getDual(row) == pytest.approx(2.0)
    assert p.getObjVal() == pytest.approx(12.0)

    # A MIP solved by lpoptimize leaves its relaxation as its solution.
    p, (a, b, c) = knapsack()
    assert p.lpoptimize() is None
    assert p.getProbStatusString() == "mip_lp_optimal"
    assert p.getProbStatus() == z.mip_lp_optimal
    assert p.getSolution(a, b, c) == pytest.approx([1.0, 2 / 3, 1.0])
    assert p.getObjVal() == pytest.approx(8 + 8 / 3)


def test_infeasible_relaxation_of_a_mip_is_not_optimal():
    a = z.var(vartype=z.integer, ub=1)
    p = quiet()
    p.addVariable(a)
    p.addConstraint(a >= 2)
    p.lpoptimize()
    assert p.getProbStatusString() == "mip_lp_not_optimal"
    with pytest.raises(z.SolverError):
        p.getSolution(a)


def test_mip_infeasible():
    a = z.var(vartype=z.integer, ub=10)
    p = quiet()
    p.addVariable(a)
    p.addConstraint(2 * a == 3)
    assert p.optimize()[1] == z.SolStatus.INFEASIBLE
    assert p.getProbStatusString() == "mip_infeas"


def test_mip_with_special_ordered_set():
    # max x1 + 2x2 + 3x3 with x1 + x2 + x3 <= 2, each <= 1: 5 without the set,
    # 3 when at most one may be non-zero, 5 again with two adjacent (type 2).
    for settype, best, values in ((1, 3.0, [0, 0, 1]), (2, 5.0, [0, 1, 1])):
        x = [z.var(ub=1, name=f"x{i}") for i in range(3)]
        p = quiet()
        p.addVariable(x)
        p.addConstraint(z.Sum(x) <= 2)
        p.addSOS(z.sos(x, [1.0, 2.0, 3.0], type=settype))
        p.setObjective(x[0] + 2 * x[1] + 3 * x[2], sense=z.maximize)
        p.optimize()
        assert p.getObjVal() == pytest.approx(best)
        assert p.getSolution(x) == pytest.approx(values, abs=1e-6)


def test_mip_with_indicator():
    # max x + 9b with b = 1 -> x <= 2, x <= 10: b = 1, x = 2, value 11
    # (without the indicator 19).
    x = z.var(ub=10, name="x")
    b = z.var(vartype=z.binary, name="b")
    p = quiet()
    p.addVariable(x, b)
    p.addIndicator(b == 1, x <= 2)
    p.setObjective(x + 9 * b, sense=z.maximize)
    p.optimize()
    assert p.getObjVal() == pytest.approx(11.0)
    assert p.getSolution(x, b) == pytest.approx([2.0, 1.0])
    # The other way round: b = 0 -> x <= 2 and the bonus small.
    q = quiet()
    x2, b2 = z.var(ub=10), z.var(vartype=z.binary)
    q.addVariable(x2, b2)
    q.addIndicator((b2 == 0, x2 <= 2))
    q.setObjective(x2 + 3 * b2, sense=z.maximize)
    q.optimize()
    assert q.getObjVal() == pytest.approx(13.0)


def test_convex_qp_with_linear_constraints():
    # min x^2 + y^2 + z^2 - xy with x + y + z >= 3: by symmetry of x and y
    # and the first-order conditions 2x - y = 2z = 2y - x = lam: x = y = 2z,
    # 5z = 3: x = y = 1.2, z = 0.6, value 1.44 + 1.44 + 0.36 - 1.44 = 1.8.
    x, y, w = z.var(lb=-5), z.var(lb=-5), z.var(lb=-5)
    p = quiet()
    p.addVariable(x, y, w)
    c = z.constraint(x + y + w >= 3, name="sum")
    p.addConstraint(c)
    p.setObjective(x * x + y**2 + w * w - x * y)
    assert p.optimize() == (z.SolveStatus.COMPLETED, z.SolStatus.OPTIMAL)
    assert p.getSolution() == pytest.approx([1.2, 1.2, 0.6], abs=1e-6)
    assert p.getObjVal() == pytest.approx(1.8, abs=1e-6)
    assert p.getDual(c) == pytest.approx(1.2, abs=1e-5)


def test_bad_flags_are_reported():
    x = z.var()
    p = quiet()
    p.addVariable(x)
    with pytest.raises(TypeError):
        p.optimize(3)
    with pytest.raises(z.SolverError):
        p.optimize("q")


def test_methods_document_themselves():
    for name in ("optimize", "solve", "lpoptimize", "mipoptimize", "getObjVal",
                 "getProbStatus", "getProbStatusString", "getSolution", "getSlack", "getDual",
                 "getRCost"):
        doc = getattr(z.problem, name).__doc__
        for section in ("Purpose:", "Synopsis:", "Arguments:", "Example:",
                        "Further information:", "Related topics:"):
            assert section in doc, (name, section)
    assert "Purpose:" in z.evaluate.__doc__


def test_a_resolve_from_kept_solver_state_reaches_a_verdict():
    # Found by the model fuzzer: the relaxation's second solve, after a row
    # was added, started from what HiGHS kept of the first and ended without
    # a verdict ("HiGHS failed to solve the problem (unknown)"). The
    # relaxation is infeasible (v1 >= 3 and 3 v1 + 0.5 v2 <= -4 with v2 >= 0),
    # as a fresh problem says.
    v1 = z.var(ub=6, vartype=z.integer)
    v2 = z.var(ub=10, vartype=z.integer)
    v3 = z.var(lb=-z.infinity, ub=6, vartype=z.integer)
    p = quiet()
    p.addVariable(v1, v2, v3)
    p.addConstraint(4 * v1 >= 12, 3 * v1 + 0.5 * v2 <= -4, 5 * v2 + 0.5 * v1 >= 4)
    p.setObjective(-v3 + 3 * v2, sense=z.maximize)
    p.lpoptimize()
    assert p.getProbStatusString() == "mip_lp_not_optimal"
    p.addConstraint(-3 * v3 - 1.5 * v2 - 2 * v1 >= -2)
    p.lpoptimize()
    assert p.getProbStatusString() == "mip_lp_not_optimal"
    assert p.attributes.solstatus == z.SolStatus.INFEASIBLE
