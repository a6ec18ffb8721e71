"""The members that change the model in batches (chgbounds, chgobj,
chgcoltype, chgglblimit, chgmqobj, chgobjn, chgobjsense, delobj): each
change followed by a solve with a known optimum or a read-back, the legacy
keyword forms, and bad batches that leave the model as it was."""
import pytest

import zorvan as z

INF = z.infinity


def lp():
    """min -x - 2y  s.t.  x + y <= 4,  x + 3y <= 6,  0 <= x <= 3,  y >= 0.
    Optimum -5 at (3, 1)."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["L", "L"], [4, 6], [0, 0], [], [])
    p.addcols([-1, -2], [0, 2], [0, 1, 0, 1], [1, 1, 1, 3], [0, 0], [3, INF],
              names=["x", "y"])
    return p


def solved(p):
    p.optimize()
    return p.getObjVal()


def bounds(p):
    lb, ub = [], []
    p.getlb(lb)
    p.getub(ub)
    return lb, ub


def test_the_base_model_solves_to_its_known_optimum():
    p = lp()
    assert solved(p) == pytest.approx(-5)
    assert p.getSolution() == pytest.approx([3, 1])


def test_chgbounds_by_index_name_and_var_then_resolve():
    p = lp()
    x, y = p.getVariable()
    p.chgbounds(["x"], ["U"], [1])
    assert solved(p) == pytest.approx(-13 / 3)
    p.chgbounds([x, 1], ["B", "L"], [2, 0.5])  # x fixed at 2
    assert bounds(p) == ([2, 0.5], [2, INF])
    assert solved(p) == pytest.approx(-2 - 2 * 4 / 3)


def test_chgobj_and_chgobjsense():
    p = lp()
    p.chgobj([0, "y"], [-3, -1])
    assert solved(p) == pytest.approx(-10)
    obj = []
    p.getobj(obj)
    assert obj == [-3, -1]
    p.chgobj([0, 1], [1, 1])
    p.chgobjsense(z.maximize)
    assert solved(p) == pytest.approx(4)


def test_chgcoltype_makes_a_column_integer():
    p = lp()
    p.chgbounds([0], ["U"], [1])
    p.chgcoltype(["y"], ["I"])
    types = []
    p.getcoltype(types)
    assert types == ["C", "I"]
    assert solved(p) == pytest.approx(-4)  # y = 2, x = 0 (the relaxation gives -13/3)


def test_chgglblimit_reads_back_and_changes_the_solution():
    # min x  s.t. x >= 1 (row), x semi-continuous in {0} or [limit, 10]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["G"], [1], [0], [], [])
    p.addcols([1], [0], [0], [1], [0], [10], types=["S"])
    p.chgglblimit([0], [2.5])
    limit = []
    p.getglblimit(limit)
    assert limit == [2.5]
    assert solved(p) == pytest.approx(2.5)


def test_chgmqobj_sets_the_quadratic_objective():
    # min x^2 - 2x on [0, 10]: optimum -1 at x = 1
    p = z.problem()
    p.setOutputEnabled(False)
    p.addcols([-2], None, None, None, [0], [10])
    p.chgmqobj([0], [0], [2])
    start, cols, q = [], [], []
    p.getmqobj(start, cols, q, 10, 0, 0)
    assert (start, q) == ([0, 1], [2])
    assert solved(p) == pytest.approx(-1)


def test_chgobjn_adds_an_objective_and_delobj_removes_it():
    p = lp()
    p.chgobjn(1, [0, 1], [5, 6])
    assert p.attributes.objectives == 2
    c = []
    p.getobjn(1, c, 0, 1)
    assert c == [5, 6]
    p.delobj(1)
    assert p.attributes.objectives == 1


def test_legacy_keywords_of_the_change_group():
    p = lp()
    p.chgbounds(mindex=[0], qbtype=["U"], bnd=[1])
    p.chgobj(mindex=[0, 1], obj=[-1, -2])
    p.chgcoltype(mindex=[1], qctype=["C"])
    p.chgobjsense(sense=z.minimize)
    assert solved(p) == pytest.approx(-13 / 3)
    p.chgbounds(colind=[0], bndtype=["U"], bndval=[3])
    p.chgobj(colind=[0], objcoef=[-1])
    assert solved(p) == pytest.approx(-5)
    q = z.problem()
    q.addcols([0], None, None, None, [0], [1])
    q.chgmqobj(mqcol1=[0], mqcol2=[0], dval=[4])
    q.chgmqobj(objqcol1=[0], objqcol2=[0], objqcoef=[2])
    q.chgcoltype([0], ["S"])
    q.chgglblimit(mindex=[0], dlimit=[0.5])
    q.chgglblimit(colind=[0], limit=[0.25])
    limit = []
    q.getglblimit(limit)
    assert limit == [0.25]


def test_bad_batches_leave_the_model_unchanged():
    p = lp()
    before = bounds(p)
    with pytest.raises(z.InterfaceError,
                       match="Mismatched lengths in arguments: expected 2, found 1"):
        p.chgbounds([0, 1], ["U"], [1])
    with pytest.raises(z.InterfaceError, match="^Must provide argument bndtype$"):
        p.chgbounds([0], None, [1])
    with pytest.raises(z.SolverError):
        p.chgbounds([0, 1], ["U", "Q"], [1, 1])  # unknown bound type
    with pytest.raises(z.SolverError):
        p.chgbounds([0, 7], ["U", "U"], [1, 1])  # column out of range
    other = z.var()
    with pytest.raises(z.ModelError, match="not in problem"):
        p.chgbounds([0, other], ["U", "U"], [1, 1])
    with pytest.raises(z.SolverError):
        p.chgcoltype([0, 1], ["I", "X"])
    assert bounds(p) == before
    types = []
    p.getcoltype(types)
    assert types == ["C", "C"]
    assert solved(p) == pytest.approx(-5)


def test_members_need_an_initialized_problem():
    with z.problem() as gone:
        pass
    for call in (lambda: gone.chgbounds([0], ["U"], [1]), lambda: gone.getobjn(0, [], 0, 0),
                 lambda: gone.addcols([1], None, None, None, None, None), gone.getlasterror):
        with pytest.raises(z.ModelError, match="Problem is not initialized"):
            call()


def test_numpy_arrays_of_every_layout_give_the_same_batch():
    import numpy as np

    for cols in (np.array([0, 1], dtype=np.int32), np.array([0, 1], dtype=np.int64),
                 np.array([1, 9, 0])[::-2], np.array([0, 1], dtype=np.int64).astype(">i8")):
        p = lp()
        p.chgbounds(cols, ["U", "U"], np.array([1.0, 1.0]))
        p.chgobj(cols, np.array([-1, -3], dtype=np.int32))  # integers as costs
        assert bounds(p)[1] == [1, 1]
        assert solved(p) == pytest.approx(-4)
    p = lp()
    with pytest.raises(z.InterfaceError, match="expected 2, found 3"):
        p.chgobj(np.array([0, 1]), np.zeros(3))
    with pytest.raises(OverflowError):
        p.chgobj(np.array([2**40]), np.zeros(1))
    assert solved(p) == pytest.approx(-5)


def test_chgrhs_chgrhsrange_and_chgrowtype_then_resolve():
    p = lp()  # rows x + y <= 4, x + 3y <= 6
    p.chgrhs(["R0", 1], [3, 6])
    assert solved(p) == pytest.approx(-4.5)  # x = 1.5, y = 1.5
    p.chgrowtype([0], ["E"])
    p.chgrhs(mindex=[0], rhs=[2])
    assert solved(p) == pytest.approx(-4)  # x + y = 2: x = 0, y = 2
    # the first row free, the second the range 5 <= x + 3y <= 6
    p.chgrowtype(rowind=[0], rowtype=["N"])
    p.chgrhsrange([1], [1])
    types, rng = [], []
    p.getrowtype(types)
    p.getrhsrange(rng)
    assert types == ["N", "R"] and rng[1] == 1
    assert solved(p) == pytest.approx(-5)  # (3, 1) on the upper side
    p.chgobj([0, 1], [1, 2])  # min x + 2y on 5 <= x + 3y: y is cheaper, (0, 5/3)
    assert solved(p) == pytest.approx(10 / 3)
    p.chgrowtype(mindex=[0], qrtype=["L"])
    p.chgrhsrange(mindex=[1], rng=[0])
    with pytest.raises(z.SolverError, match="rowtype\\[1\\] is 'X'"):
        p.chgrowtype([0, 1], ["G", "X"])
    with pytest.raises(z.SolverError, match="non-negative"):
        p.chgrhsrange([1], [-1])
    types = []
    p.getrowtype(types)
    assert types == ["L", "R"]
