"""Irreducible infeasible subsystems through the members: each subsystem is
infeasible, each proper subset feasible (checked with scipy), and the
members refuse what they do not compute."""
import itertools

import numpy as np
import pytest
from scipy.optimize import linprog

import zorvan as z

INF = z.infinity
A = np.array([[1.0, 1.0], [1.0, 0.0], [1.0, -1.0]])
TYPES = "GGL"
RHS = [5.0, 3.0, 3.0]


def problem():
    """x, y in [0, 1]; x + y >= 5 and x >= 3 clash with the bounds; x - y <= 3 does not."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(list(TYPES), RHS, [0, 0, 0], [], [], names=["sum", "big", "diff"])
    p.addcols([0, 0], [0, 3], [0, 1, 2, 0, 2], [1, 1, 1, 1, -1], [0, 0], [1, 1],
              names=["x", "y"])
    return p


def feasible(rows, upper):
    """Whether the given rows with the given upper bounds (lower 0) hold."""
    a_ub, b_ub = [], []
    for i in rows:
        sign = -1.0 if TYPES[i] == "G" else 1.0
        a_ub.append(sign * A[i])
        b_ub.append(sign * RHS[i])
    res = linprog([0, 0], A_ub=a_ub or None, b_ub=b_ub or None,
                  bounds=[(0, upper.get(j)) for j in range(2)], method="highs")
    return res.status == 0


def test_every_subsystem_is_infeasible_and_each_proper_subset_feasible():
    p = problem()
    constraints, variables = p.getConstraint(), p.getVariable()
    p.iisall()
    sizes_r, sizes_c = [], []
    assert p.iisstatus(sizes_r, colsizes=sizes_c) == 2
    for k in (1, 2):
        rows, cols, types, bounds = [], [], [], []
        assert p.getiisdata(k, rows, cols, types, bounds) == (sizes_r[k - 1], sizes_c[k - 1])
        ri = [next(i for i, c in enumerate(constraints) if c is r) for r in rows]
        ci = [next(j for j, v in enumerate(variables) if v is c) for c in cols]
        assert bounds == ["U"] * len(ci) and types == [TYPES[i] for i in ri]
        members = [("row", i) for i in ri] + [("ub", j) for j in ci]
        assert not feasible(ri, {j: 1 for j in ci})
        for drop in members:
            rest = [m for m in members if m != drop]
            assert feasible([i for t, i in rest if t == "row"],
                            {j: 1 for t, j in rest if t == "ub"})
    p.iisclear()
    assert p.iisstatus() == 0


def test_first_and_next_and_refusals():
    p = problem()
    assert p.iisfirst(iismode=0) == 0
    assert p.iisnext() == 0
    assert p.iisnext() == 1
    with pytest.raises(z.InterfaceError, match="suminfeas is not available"):
        p.iisstatus([], [], [])
    with pytest.raises(z.InterfaceError, match="duals is not available"):
        p.getiisdata(1, duals=[])
    with pytest.raises(z.SolverError, match="no subsystem 3"):
        p.getiisdata(3, [])
    p.chgrhs([0, 1], [1, 0])  # now feasible; the subsystems are forgotten
    assert p.iisstatus() == 0
    assert p.iisfirst() == 1
