"""Building a model from arrays (addrows, addcols, addnames, addqmatrix,
setindicators, setprobname) and reading it back with the one-to-one readers:
what is read equals what was loaded, the var and constraint lists follow the
engine, legacy keywords by group, and refused batches change nothing."""
import pytest

import zorvan as z

INF = z.infinity


def model():
    """rows  c1: x + 2y <= 8 (L),  c2: 3x - z >= 1 (G),  c3: y + z = 5 (E);
    columns x in [0, 4] cost 1, y in [1, 6] cost -2, z in [0, inf) cost 3."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["L", "G", "E"], [8, 1, 5], [0, 0, 0], [], [], names=["c1", "c2", "c3"])
    p.addcols([1, -2, 3], [0, 2, 4], [0, 1, 0, 2, 1, 2], [1, 3, 2, 1, -1, 1],
              [0, 1, 0], [4, 6, INF], names=["x", "y", "z"])
    return p


def matrix_rows(p):
    start, cols, coefs = [], [], []
    p.getrows(start, cols, coefs, 100, 0, 2)
    return start, [c.name for c in cols], coefs


class TestReadWhatWasLoaded:
    def test_rows_columns_and_names(self):
        p = model()
        assert matrix_rows(p) == ([0, 2, 4, 6], ["x", "y", "x", "z", "y", "z"],
                                  [1, 2, 3, -1, 1, 1])
        start, rows, coefs = [], [], []
        p.getcols(start, rows, coefs, 100, "y", "z")
        assert start == [0, 2, 4]
        assert [r.name for r in rows] == ["c1", "c3", "c2", "c3"]
        assert coefs == [2, 1, -1, 1]
        lb, ub, rhs, types, obj = [], [], [], [], []
        p.getlb(lb)
        p.getub(ub)
        p.getrhs(rhs)
        p.getrowtype(types)
        p.getobj(obj)
        assert (lb, ub, rhs, types, obj) == ([0, 1, 0], [4, 6, INF], [8, 1, 5],
                                             ["L", "G", "E"], [1, -2, 3])
        assert p.getnamelist(2) == ["x", "y", "z"]
        assert p.getnamelist(1, 1, 2) == ["c2", "c3"]
        assert p.getIndexFromName(2, "z") == 2
        assert p.getIndexFromName(1, "c2") == 1
        assert p.getIndexFromName(1, "nothing") == -1

    def test_the_lists_of_objects_follow_the_engine(self):
        p = model()
        x, y, zz = p.getVariable()
        assert [v.name for v in (x, y, zz)] == ["x", "y", "z"]
        assert (x.lb, x.ub, y.lb, zz.ub) == (0, 4, 1, INF)
        assert [p.getIndex(v) for v in (x, y, zz)] == [0, 1, 2]
        c1, c2, c3 = p.getConstraint()
        assert [c.name for c in (c1, c2, c3)] == ["c1", "c2", "c3"]
        assert p.getIndex(c3) == 2
        # The objects made by addcols serve as arguments of other members.
        p.chgbounds([y], ["U"], [2])
        ub = []
        p.getub(ub, y, y)
        assert ub == [2]

    def test_the_loaded_model_solves_to_its_optimum(self):
        # z = 5 - y leaves min x - 5y + 15 with 3x >= 6 - y and x + 2y <= 8;
        # x = (6 - y) / 3 at the optimum, and both rows bind at y = 3.6.
        p = model()
        p.optimize()
        assert p.getObjVal() == pytest.approx(-2.2)
        assert p.getSolution() == pytest.approx([0.8, 3.6, 1.4])

    def test_maxcoefs_limits_the_entries_read(self):
        p = model()
        start, cols, coefs = [], [], []
        p.getrows(start, cols, coefs, 3, 0, 2)
        assert len(cols) == len(coefs) == 3
        with pytest.raises(z.InterfaceError,
                           match="Must provide at least one of arguments start, colind, colcoef"):
            p.getrows(None, None, None, 10, 0, 1)

    def test_reader_messages(self):
        p = model()
        with pytest.raises(z.InterfaceError, match="^Must provide argument objcoef$"):
            p.getobjn(0, None, 0, 2)
        with pytest.raises(z.InterfaceError, match="Empty range of columns requested"):
            p.getobjn(0, [], 2, 1)
        with pytest.raises(z.InterfaceError, match="Empty range of rows requested"):
            p.getrhs([], 2, 0)
        with pytest.raises(z.InterfaceError, match=r"Argument type must be 1 \(rows\)"):
            p.getnamelist(4)
        with pytest.raises(TypeError):
            p.getlb(lb=[])  # positional arguments only
        with pytest.raises(z.ModelError, match="Unexpected argument to conv_arr2obj"):
            p.getlb(())


class TestLegacyKeywordsOfTheReaders:
    def test_current_and_legacy_names_read_the_same(self):
        p = model()
        for current, legacy in [
            (dict(start=[], colind=[], colcoef=[], maxcoefs=10, first=0, last=2),
             dict(mstart=[], mclind=[], dmatval=[], size=10, first=0, last=2)),
        ]:
            p.getrows(**current)
            p.getrows(**legacy)
            assert current["colcoef"] == legacy["dmatval"] == [1, 2, 3, -1, 1, 1]
        a, b = [], []
        p.getrowtype(rowtype=a, first=1, last=2)
        p.getrowtype(qrtype=b, first=1, last=2)
        assert a == b == ["G", "E"]
        a, b = [], []
        p.getobj(objcoef=a)
        p.getobj(obj=b)
        assert a == b == [1, -2, 3]
        assert p.getnamelist(type=2, start=1, end=1) == p.getnamelist(type=2, first=1, last=1)
        a, b = [], []
        p.getindicators(inds=a, comps=b)
        assert b == [0, 0, 0]
        with pytest.raises(TypeError, match="colcoef"):
            p.getrows(start=[], colind=[], rowcoef=[], maxcoefs=1, first=0, last=0)


class TestAddColumnsAndRows:
    def test_types_and_legacy_keywords_of_addcols(self):
        p = model()
        p.addcols(objx=[0, 0], mstart=[0, 1], mrwind=["c1", 2], dmatval=[1, 1],
                  bdl=[0, 0], bdu=[1, 10], names=["b", "n"], types=["B", "I"])
        t = []
        p.getcoltype(t)
        assert t == ["C", "C", "C", "B", "I"]
        b, n = p.getVariable()[3:]
        assert (b.vartype, n.vartype) == (z.binary, z.integer)
        start, rows, coefs = [], [], []
        p.getcols(start, rows, coefs, 10, b, n)
        assert [r.name for r in rows] == ["c1", "c3"]

    def test_legacy_keywords_of_addrows_and_range_rows(self):
        p = model()
        p.addrows(qrtype=["R"], rhs=[10], mstart=[0], mclind=["x", "y"], dmatval=[1, 1],
                  range=[4], names=["r"])
        rng, t = [], []
        p.getrhsrange(rng, 3, 3)
        p.getrowtype(t, "r", "r")
        assert (rng, t) == ([4], ["R"])
        r = p.getConstraint()[3]
        assert (r.lb, r.ub) == (6, 10)

    def test_bad_batches_add_nothing(self):
        p = model()
        cases = [
            (z.ModelError, "Incorrect length of variable name list",
             lambda: p.addcols([1], None, None, None, None, None, names=["a", "b"])),
            (z.ModelError, "Erroneous name for variable 1",
             lambda: p.addcols([1, 1], None, None, None, None, None, names=["a", 5])),
            (z.ModelError, "Incorrect length of variable type list",
             lambda: p.addcols([1], None, None, None, None, None, types=[])),
            (z.ModelError, "Cannot get variable type with index 0",
             lambda: p.addcols([1], None, None, None, None, None, types=["II"])),
            (z.ModelError, "Incorrect variable type",
             lambda: p.addcols([1], None, None, None, None, None, types=["Q"])),
            (z.InterfaceError, "Mismatched lengths in arguments: expected 2, found 1",
             lambda: p.addcols([1, 2], None, None, None, [0], None)),
            (z.SolverError, None,
             lambda: p.addcols([1], [0], [7], [1], None, None)),  # no row 7
            (z.InterfaceError, "^Must provide argument rowtype$",
             lambda: p.addrows(None, [1], [0], [], [])),
            (z.SolverError, None, lambda: p.addrows(["X"], [1], [0], [], [])),
            (z.ModelError, "Incorrect length of constraint name list",
             lambda: p.addrows(["L"], [1], [0], [], [], names=[])),
        ]
        for error, text, call in cases:
            with pytest.raises(error, match=text):
                call()
        assert len(p.getVariable()) == p.attributes.cols == 3
        assert len(p.getConstraint()) == p.attributes.rows == 3
        assert matrix_rows(p)[2] == [1, 2, 3, -1, 1, 1]

    def test_addnames_and_addqmatrix(self):
        p = model()
        p.addnames(1, ["first", "second"], 0, 1)
        assert p.getnamelist(1) == ["first", "second", "c3"]
        with pytest.raises(z.InterfaceError, match="Expected 2 strings but found 1"):
            p.addnames(2, ["only"], 0, 1)
        p.addqmatrix(2, ["x", "x"], ["x", "y"], [1, 0.5])
        a, b, v = [], [], []
        assert p.getqrowqmatrixtriplets(2, a, b, v) == 2
        assert ([c.name for c in a], [c.name for c in b], v) == (["x", "x"], ["x", "y"],
                                                                  [1, 0.5])
        q = model()
        q.addqmatrix(irow=0, mqc1=[0], mqc2=[0], dqe=[2])
        assert q.getqrowqmatrixtriplets(0, None, None, None) == 1


class TestSolverState:
    def test_setindicators_switches_a_row_on_and_off(self):
        # max x + y with x, y in [0, 10], b binary; row x + y <= 3 only when b = 1,
        # and b costs nothing: the solver leaves b = 0 and gets 20. Forcing b = 1
        # through its bounds gives 3.
        p = z.problem()
        p.setOutputEnabled(False)
        p.addrows(["L"], [3], [0], [], [])
        p.addcols([1, 1, 0], [0, 1, 2], [0, 0], [1, 1], [0, 0, 0], [10, 10, 1],
                  types=["C", "C", "B"])
        p.chgobjsense(z.maximize)
        p.setindicators(["R0"], [2], [1])
        cols, comps = [], []
        p.getindicators(cols, comps)
        assert cols[0] is p.getVariable()[2] and comps == [1]
        p.optimize()
        assert p.getObjVal() == pytest.approx(20)
        p.chgbounds([2], ["L"], [1])
        p.optimize()
        assert p.getObjVal() == pytest.approx(3)
        p.setindicators(mrows=[0], inds=[2], comps=[0])
        p.optimize()
        assert p.getObjVal() == pytest.approx(3)  # an ordinary row again

    def test_name_errors_and_controls(self):
        p = model()
        p.setprobname("diet")
        assert p.name() == "diet"
        with pytest.raises(z.ModelError, match="Invalid string argument"):
            p.setprobname(3)
        assert p.getlasterror() == ""
        with pytest.raises(z.SolverError) as failure:
            p.chgbounds([0], ["U"], [float("nan")])
        assert p.getlasterror() == str(failure.value)
        cols = p.getattribinfo("cols")
        assert cols[0] == 1018 and p.getattribinfo("nonsense") == (0, 0)
        ident, kind = p.getcontrolinfo("outputlog")
        assert ident == 8035
        p.controls.outputlog = 0
        p.setdefaultcontrol(ident)
        assert p.controls.outputlog == 1
        p.controls.outputlog = 0
        p.setdefaultcontrol(ipar=ident)
        assert p.controls.outputlog == 1
        p.controls.presolve = 0
        p.setdefaults()
        assert p.controls.presolve == 1
