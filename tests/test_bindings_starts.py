"""The members that load solver state: bases, LP and MIP starts and branching
directives, checked by what the next solve does, by reading them back, and
by the refusals of the presolved-space loaders."""
import pytest

import zorvan as z

INF = z.infinity


def transport():
    """5 sources, 6 sinks: a cold LP solve needs several simplex iterations."""
    p = z.problem()
    p.setOutputEnabled(False)
    s, d = 5, 6
    p.addrows(["L"] * s + ["G"] * d, [30 + 5 * i for i in range(s)] + [20 + 3 * j for j in range(d)],
              [0] * (s + d), [], [])
    start, rows, vals, cost = [], [], [], []
    for i in range(s):
        for j in range(d):
            start.append(len(rows))
            rows += [i, s + j]
            vals += [1, 1]
            cost.append(1 + (i * 7 + j * 3) % 11)
    p.addcols(cost, start, rows, vals, [0] * (s * d), [INF] * (s * d))
    return p


def knapsack():
    """max 5a + 4b + 3c + 7d  s.t.  2a + 3b + c + 4d <= 6, binaries: best 12."""
    p = z.problem()
    p.setOutputEnabled(False)
    p.addrows(["L"], [6], [0], [], [])
    p.addcols([5, 4, 3, 7], [0, 1, 2, 3], [0, 0, 0, 0], [2, 3, 1, 4], [0] * 4, [1] * 4,
              names=list("abcd"))
    p.chgcoltype([0, 1, 2, 3], ["B"] * 4)
    p.chgobjsense(z.maximize)
    return p


def test_a_loaded_optimal_basis_resolves_in_zero_iterations():
    p = transport()
    p.lpoptimize()
    assert p.attributes.simplexiter > 0
    r, c = [], []
    p.getbasis(r, c)
    q = transport()
    q.loadbasis(rstatus=r, cstatus=c)  # legacy keywords
    q.lpoptimize()
    assert q.attributes.simplexiter == 0
    assert q.attributes.lpobjval == pytest.approx(p.attributes.lpobjval)
    with pytest.raises(z.InterfaceError, match="Mismatched lengths"):
        q.loadbasis(r[:-1], c)
    bad = [1] * len(r)
    bad[0] = 7
    with pytest.raises(z.SolverError):
        q.loadbasis(bad, c)


def test_a_loaded_lp_solution_gives_the_same_optimum():
    p = transport()
    p.lpoptimize()
    x = []
    p.getlpsol(x)
    q = transport()
    q.loadlpsol(x)
    q.lpoptimize()
    assert q.attributes.lpobjval == pytest.approx(p.attributes.lpobjval)
    with pytest.raises(z.InterfaceError, match="Must provide argument x"):
        q.loadlpsol(None)


def test_mip_starts_are_checked_and_stored():
    p = knapsack()
    assert p.loadmipsol([1, 1, 1, 1]) == 1  # too heavy
    assert p.loadmipsol(dsol=[0.5, 0, 0, 0]) == 1  # fractional
    assert p.loadmipsol([0, 0, 1, 1]) == 0
    p.addmipsol([1, 1], ["b", "c"], "partial")
    p.addmipsol(mipsolval=[1], mipsolcol=[0], solname="a only")
    with pytest.raises(z.SolverError, match="given twice"):
        p.addmipsol([1, 1], [0, "a"])
    with pytest.raises(z.InterfaceError, match="Mismatched lengths"):
        p.addmipsol([1, 1], [0])
    p.mipoptimize()
    # Enumeration of the 16 points: the best value is 12.
    best = max(5 * a + 4 * b + 3 * c + 7 * d
               for a in (0, 1) for b in (0, 1) for c in (0, 1) for d in (0, 1)
               if 2 * a + 3 * b + c + 4 * d <= 6)
    assert p.attributes.mipobjval == pytest.approx(best)


def test_branching_directives_round_trip_and_follow_deletions():
    p = knapsack()
    a, b, c, d = p.getVariable()
    p.loaddirs([d, "b", 2], [1, 2, 3], ["U", "D", "N"], [1.5, 2.5, 3.5], [0.5, 0.25, 0.125])
    p.loadbranchdirs([c], [-1])
    cols, prios, dirs, up, down = [], [], [], [], []
    assert p.getdirs(cols, prios, dirs, up, down) == 3
    assert cols == [b, c, d] and prios == [2, 3, 1] and dirs == ["D", "D", "U"]
    assert up == [2.5, 3.5, 1.5] and down == [0.25, 0.125, 0.5]
    p.delVariable(b)
    cols = []
    assert p.getdirs(mcols=cols) == 2
    assert cols == [c, d]
    with pytest.raises(z.SolverError, match="'X'"):
        p.loaddirs([a], None, ["X"])


def test_presolved_space_loaders_say_why_they_cannot_work():
    p = knapsack()
    with pytest.raises(z.SolverError, match="keeps no presolved problem"):
        p.loadpresolvebasis([1], [0, 0, 0, 0])
    with pytest.raises(z.SolverError, match="keeps no presolved problem"):
        p.loadpresolvedirs([0], [1])
    with pytest.raises(z.SolverError, match="cannot be told"):
        p.loadsecurevecs([0], None)
