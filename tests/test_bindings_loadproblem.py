"""loadproblem: LP, MIP, QP, sets and semi-continuous columns loaded from
arrays and solved to known optima; the var, constraint and sos lists made
anew; legacy keywords; a failed load leaves the problem as it was."""
import pytest

import zorvan as z

INF = z.infinity


def quiet():
    p = z.problem()
    p.setOutputEnabled(False)
    return p


def load_lp(p, **extra):
    # min -x - 2y  s.t.  x + y <= 4,  x + 3y <= 6,  x in [0, 3], y >= 0
    p.loadproblem("lp", ["L", "L"], [4, 6], None, [-1, -2], [0, 2], None, [0, 1, 0, 1],
                  [1, 1, 1, 3], [0, 0], [3, INF], **extra)


def optimum(p):
    p.optimize()
    return p.getObjVal()


def test_lp_with_names_replaces_the_model_and_its_objects():
    p = quiet()
    old = z.var(name="old")
    p.addVariable(old)
    load_lp(p, colnames=["x", "y"], rownames=["a", "b"])
    assert p.name() == "lp"
    assert [v.name for v in p.getVariable()] == ["x", "y"]
    assert [c.name for c in p.getConstraint()] == ["a", "b"]
    with pytest.raises(z.ModelError, match="not in problem"):
        p.getIndex(old)
    assert optimum(p) == pytest.approx(-5)
    start, rows, coefs = [], [], []
    p.getcols(start, rows, coefs, 10, 0, 1)
    assert (start, coefs) == ([0, 2, 4], [1, 1, 1, 3])


def test_start_with_its_closing_offset_and_collen():
    p = quiet()
    p.loadproblem("lp", ["L", "L"], [4, 6], None, [-1, -2], [0, 2, 4], [2, 2], [0, 1, 0, 1],
                  [1, 1, 1, 3], [0, 0], [3, INF])
    assert optimum(p) == pytest.approx(-5)


def test_mip_and_semicontinuous_columns():
    p = quiet()
    # x <= 1 and y integer: y = 2, x = 0 (the relaxation gives -13/3)
    p.loadproblem("mip", ["L", "L"], [4, 6], None, [-1, -2], [0, 2], None, [0, 1, 0, 1],
                  [1, 1, 1, 3], [0, 0], [1, INF], coltype=["I"], entind=[1])
    assert optimum(p) == pytest.approx(-4)
    assert p.getVariable()[1].vartype == z.integer
    q = quiet()
    # min x  s.t.  x >= 1, x semi-continuous with threshold 2.5
    q.loadproblem("sc", ["G"], [1], None, [1], [0], None, [0], [1], [0], [10],
                  coltype=["S"], entind=[0], limit=[2.5])
    assert optimum(q) == pytest.approx(2.5)


def test_quadratic_objective_and_sets():
    p = quiet()
    # min x^2 - 2x on [0, 10]: -1 at x = 1
    p.loadproblem("qp", [], [], None, [-2], [0], None, [], [], [0], [10],
                  objqcol1=[0], objqcol2=[0], objqcoef=[2])
    assert optimum(p) == pytest.approx(-1)
    start, cols, q = [], [], []
    p.getmqobj(start, cols, q, 5, 0, 0)
    assert q == [2]
    s = quiet()
    # max x + y with x, y <= 3, x + y <= 4, at most one of them non-zero: 3
    s.loadproblem("sos", ["L"], [4], None, [-1, -1], [0, 1], None, [0, 0], [1, 1], [0, 0],
                  [3, 3], settype=["1"], setstart=[0], setind=[0, 1], refval=[1, 2])
    assert len(s.getSOS()) == 1
    assert optimum(s) == pytest.approx(-3)


def test_quadratic_rows_are_loaded():
    p = quiet()
    p.loadproblem("qc", ["L"], [4], None, [-1, -1], [0, 1], None, [0, 0], [1, 1], [0, 0],
                  [3, 3], qrowind=[0], nrowqcoefs=[2], rowqcol1=[0, 0], rowqcol2=[0, 1],
                  rowqcoef=[1, 0.5])
    a, b, v = [], [], []
    assert p.getqrowqmatrixtriplets(0, a, b, v) == 2
    assert v == [1, 0.5]


def test_legacy_keywords():
    p = quiet()
    p.loadproblem(probname="old", qrtypes=["L", "L"], rhs=[4, 6], range=None, obj=[-1, -2],
                  mstart=[0, 2], mnel=None, mrwind=[0, 1, 0, 1], dmatval=[1, 1, 1, 3],
                  dlb=[0, 0], dub=[1, INF], qgtype=["I"], mgcols=[1])
    assert optimum(p) == pytest.approx(-4)


def test_a_failed_load_leaves_the_problem_as_it_was():
    p = quiet()
    load_lp(p, colnames=["x", "y"])
    before = p.getVariable()
    cases = [
        (z.SolverError, None, lambda: load_lp(p, coltype=["I"], entind=[7])),
        (z.SolverError, None, lambda: load_lp(p, objqcol1=[0], objqcol2=[9], objqcoef=[1])),
        (z.InterfaceError, "quadratic row entries",
         lambda: load_lp(p, qrowind=[0], nrowqcoefs=[3], rowqcol1=[0], rowqcol2=[0],
                         rowqcoef=[1])),
        (z.InterfaceError, "^Must provide argument entind$", lambda: load_lp(p, coltype=["I"])),
        (z.InterfaceError, "Mismatched lengths in arguments: expected 2, found 1",
         lambda: p.loadproblem("x", ["L", "L"], [4], None, [1], [0], None, [], [], None, None)),
        (z.InterfaceError, "Expected 2 strings but found 1",
         lambda: load_lp(p, colnames=["x"])),
        (z.SolverError, None,
         lambda: p.loadproblem("x", ["Q"], [4], None, [1], [0], None, [], [], None, None)),
    ]
    for error, text, call in cases:
        with pytest.raises(error, match=text):
            call()
        assert p.getVariable() == before
        assert p.getnamelist(2) == ["x", "y"]
        assert p.name() == "lp"
    assert optimum(p) == pytest.approx(-5)
