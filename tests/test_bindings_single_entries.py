"""Members of single entries and model parts: chgcoef, chgmcoef, getcoef,
chgqobj, getqobj, chgqrowcoeff, getqrowcoeff, getqrowqmatrix, getqrows,
delqmatrix, addobj, addsetnames, delindicators, getmipentities, the message
status members, setlogfile, and chgcoltype keeping the var objects in step.
Each change is followed by a read-back or a solve with a known optimum."""
import pytest

import zorvan as z

INF = z.infinity


def lp():
    """max x + y  s.t.  c0: x + y <= 4,  c1: x <= 3,  0 <= x, y <= 10."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["L", "L"], [4, 3], [0, 0], [], [], names=["c0", "c1"])
    p.addcols([1, 1], [0, 2], [0, 1, 0], [1, 1, 1], [0, 0], [10, 10], names=["x", "y"])
    p.chgobjsense(z.maximize)
    return p


def solved(p):
    p.optimize()
    return p.getObjVal()


def test_coefficients_by_index_name_object_and_legacy_keywords():
    p = lp()
    x, y = p.getVariable()
    c0, c1 = p.getConstraint()
    assert p.getcoef(0, 1) == 1.0
    assert p.getcoef("c1", "y") == 0.0
    p.chgcoef(c0, y, 2.0)  # x + 2y <= 4 with x <= 3: (3, 0.5)
    assert p.getcoef(irow="c0", icol=y) == 2.0
    assert solved(p) == pytest.approx(3.5)
    # One batch: a new entry, a removal, a pair given twice (the last wins).
    p.chgmcoef(mrow=[c1, "c0", 1], mcol=[y, x, y], dval=[5, 0, 1])
    assert [p.getcoef(0, 0), p.getcoef(1, 1)] == [0.0, 1.0]
    assert solved(p) == pytest.approx(3.0)  # 2y <= 4, x + y <= 3
    start, ind, val = [], [], []
    p.getrows(start, ind, val, 10, 0, 1)
    assert start == [0, 1, 3] and ind[0] is y and val == [2.0, 1.0, 1.0]
    with pytest.raises(z.SolverError, match="rowind\\[1\\] = 7"):
        p.chgmcoef([0, 7], [0, 0], [1, 1])
    with pytest.raises(z.InterfaceError, match="Mismatched lengths"):
        p.chgmcoef([0, 1], [0], [1, 1])
    assert p.getcoef(0, 1) == 2.0
    with pytest.raises(z.ModelError, match="Variable .* not in problem"):
        p.getcoef(0, z.var())


def test_quadratic_objective_entries():
    p = z.problem()
    p.setOutputEnabled(False)
    p.addcols([-2, -4], [0, 0], [], [], [0, 0], [10, 10], names=["x", "y"])
    # 0.5 x'Qx with Q = [[2, 1], [1, 2]]: min x^2 + xy + y^2 - 2x - 4y at (0, 2), value -4.
    p.chgqobj("x", "x", 2)
    p.chgqobj(icol=1, jcol=1, dval=2)
    p.chgqobj(0, 1, 1)
    assert [p.getqobj(0, 0), p.getqobj(1, 0), p.getqobj(icol="y", jcol="y")] == [2, 1, 2]
    assert solved(p) == pytest.approx(-4)
    p.chgqobj(0, 1, 0)  # removes the cross term: (1, 2), value -5
    assert p.getqobj(0, 1) == 0.0
    assert solved(p) == pytest.approx(-5)


def test_quadratic_row_entries_read_and_delete():
    p = lp()
    p.chgqrowcoeff("c0", "x", "y", 1.5)
    p.chgqrowcoeff(irow=0, icol=1, jcol=1, dval=-0.5)
    assert p.getqrowcoeff(0, "y", "x") == 1.5
    assert p.getqrowcoeff(irow="c0", icol=1, jcol=1) == -0.5
    rows = [None, None, None]
    assert p.getqrows(rows) == 1
    assert rows == [p.getConstraint(0)]
    start, ind, val = [], [], []
    p.getqrowqmatrix(0, start, ind, val, 10, 0, 1)
    x, y = p.getVariable()
    assert start == [0, 1, 3] and ind == [y, x, y] and val == [1.5, 1.5, -0.5]
    start, ind = [], []
    p.getqrowqmatrix(irow=0, mstart=start, mclind=ind, dqe=None, size=1, first=1, last=1)
    assert start == [0, 1] and ind == [x]
    with pytest.raises(z.InterfaceError, match="Must provide at least one of arguments "
                                              "start, colind, rowqcoef"):
        p.getqrowqmatrix(0, None, None, None, 10, 0, 1)
    p.delqmatrix("c0")
    assert p.getqrows() == 0
    assert p.attributes.qcelems == 0
    assert p.getcoef(0, 0) == 1.0  # the linear part stays


def test_addobj_adds_a_blended_objective():
    p = lp()
    x, y = p.getVariable()
    p.addobj([x], [-1.0], 0, 2.0)  # same priority: x + y - 2x = y - x
    assert p.attributes.objectives == 2
    obj = []
    p.getobjn(1, obj, 0, 1)
    assert obj == [-1.0, 0.0]
    assert solved(p) == pytest.approx(4)  # x = 0, y = 4
    with pytest.raises(z.ModelError, match="not in problem"):
        p.addobj([z.var()], [1.0], 0, 1.0)
    assert p.attributes.objectives == 2


def test_addsetnames_and_getmipentities():
    p = lp()
    p.chgcoltype([0, 1], ["I", "S"])
    p.chgglblimit([1], [2.5])
    p.addSOS(z.sos(p.getVariable(), [1, 2], type=1))
    p.addsetnames(["pick"], 0, 0)
    assert p.getnamelist(3, 0, 0) == ["pick"]
    p.addsetnames(names=["again"], start=0, end=0)
    assert p.getIndexFromName(3, "again") == 0
    t, c, lim, st, ss, sc, rv = [], [], [], [], [], [], []
    assert p.getmipentities(t, c, lim, st, ss, sc, rv) == (2, 1)
    x, y = p.getVariable()
    assert (t, c, lim[1]) == (["I", "S"], [x, y], 2.5)
    assert (st, ss, sc, rv) == (["1"], [0, 2], [x, y], [1.0, 2.0])
    t = []
    assert p.getmipentities(qgtype=t) == (2, 1) and t == ["I", "S"]


def test_delindicators_makes_rows_ordinary():
    p = lp()
    p.addcols([0], [0], [], [], [1], [1], names=["b"], types=["B"])
    p.chgbounds(["b"], ["L"], [1])
    p.setindicators(["c0"], ["b"], [1])
    assert solved(p) == pytest.approx(4)
    p.chgbounds(["b"], ["L"], [0])
    assert solved(p) == pytest.approx(13)  # b = 0 lifts x + y <= 4
    p.delindicators(start=0, end=0)
    assert p.attributes.indicators == 0
    assert solved(p) == pytest.approx(4)


def test_chgcoltype_keeps_the_var_objects_in_step():
    p = lp()
    x, y = p.getVariable()
    p.chgcoltype([x, "y"], ["I", "B"])
    assert (x.vartype, y.vartype) == (z.integer, z.binary)
    assert (y.lb, y.ub) == (0, 1)
    p.chgcoltype(mindex=[1], qctype=["C"])
    assert y.vartype == z.continuous
    with pytest.raises(z.SolverError):
        p.chgcoltype([0], ["Q"])
    assert x.vartype == z.integer


def test_message_status_and_log_file(tmp_path):
    p = lp()
    p.setOutputEnabled(True)
    p.controls.outputlog = 1
    log = tmp_path / "run.log"
    p.setlogfile(str(log))
    assert p.getmessagestatus(103) == 1
    p.optimize()

    def summaries():
        return [line for line in log.read_text().splitlines() if " solve " in line]

    assert len(summaries()) == 1
    p.setmessagestatus(errcode=103, status=0)
    assert p.getmessagestatus(msgcode=103) == 0
    p.chgobj([0], [2])
    p.optimize()
    assert len(summaries()) == 1
    p.setmessagestatus(103, 1)
    p.optimize()
    assert len(summaries()) == 2
    p.setlogfile(None)
    p.optimize()
    assert len(summaries()) == 2
    with pytest.raises(z.SolverError, match="not a message code"):
        p.setmessagestatus(7, 0)
    with pytest.raises(z.SolverError, match="cannot open log file"):
        p.setlogfile(str(tmp_path / "missing" / "x.log"))
