"""problem.read and problem.write: models written in each format and read into
a new problem keep their objects, names, bounds, types and optimum; external
files read; bad files refused without touching the problem."""

import os

import pytest

import zorvan as z

GLPK_EXAMPLES = "/usr/share/doc/glpk-utils/examples"
FORMATS = [".mps", ".lp", ".mps.gz"]


def quiet(p):
    p.setOutputEnabled(False)
    return p


def lp_model():
    p = quiet(z.problem("lpmodel"))
    x = z.var(name="x", ub=4)
    y = z.var(name="y", ub=5)
    p.addVariable(x, y)
    p.addConstraint(
        z.constraint(body=x + y, lb=6, ub=10, name="rng"),  # rhs 10, range 4
        z.constraint(x + 3 * y <= 15, name="cap"),
        z.constraint(x - y >= -2, name="diff"),
    )
    p.setObjective(3 * x + 2 * y, sense=z.maximize)
    return p, 58 / 3


def mip_model():
    p = quiet(z.problem("mipmodel"))
    i = z.var(name="i", vartype=z.integer, ub=10)
    b = z.var(name="b", vartype=z.binary)
    s = z.var(name="s", vartype=z.semicontinuous, ub=5, threshold=2)
    t = z.var(name="t", vartype=z.semicontinuous, ub=5, threshold=2)
    u = z.var(name="u", ub=3)
    v = z.var(name="v", ub=3)
    w = z.var(name="w", ub=4)
    p.addVariable(i, b, s, t, u, v, w)
    p.addConstraint(
        z.constraint(2 * i + s <= 9.5, name="c1"),
        z.constraint(i + b <= 4.5, name="c2"),
        # Semi-continuity keeps t at 0 here; a plain column would take 1.5.
        z.constraint(t <= 1.5, name="c3"),
    )
    p.addSOS(z.sos([u, v], [1, 2], type=1, name="set1"))
    p.setObjective(i + 3 * b + s + t + u + 2 * v - w, sense=z.maximize)
    return p, 16.0


def qp_model():
    p = quiet(z.problem("qpmodel"))
    x = z.var(name="x", lb=-10)
    y = z.var(name="y", lb=-10)
    p.addVariable(x, y)
    p.addConstraint(z.constraint(x + y <= 3, name="budget"))
    p.setObjective(x * x + y * y - 4 * x - 6 * y)
    return p, -11.0


def read_back(p, path):
    p.write(str(path))
    q = quiet(z.problem())
    q.read(str(path))
    return q


def solved_objective(p):
    p.solve()
    return p.getObjVal()


@pytest.mark.parametrize("ext", FORMATS)
@pytest.mark.parametrize("build", [lp_model, mip_model, qp_model])
def test_written_model_reads_back_with_its_objects_and_optimum(tmp_path, ext, build):
    p, optimum = build()
    q = read_back(p, tmp_path / ("model" + ext))
    old_vars, new_vars = p.getVariable(), q.getVariable()
    old_cons, new_cons = p.getConstraint(), q.getConstraint()
    assert [v.name for v in new_vars] == [v.name for v in old_vars]
    assert [str(c) for c in new_cons] == [str(c) for c in old_cons]
    assert [q.getIndex(v) for v in new_vars] == list(range(len(old_vars)))
    assert [q.getIndex(c) for c in new_cons] == list(range(len(old_cons)))
    for old, new in zip(old_vars, new_vars):
        assert new.vartype == old.vartype
        assert new.ub == old.ub
        if old.vartype == z.semicontinuous:
            # The file holds the threshold as the column's lower bound.
            assert max(new.lb, new.threshold) == old.threshold
        else:
            assert new.lb == old.lb
    for old, new in zip(old_cons, new_cons):
        assert (new.lb, new.ub) == (old.lb, old.ub)
    assert [str(s) for s in q.getSOS()] == [str(s) for s in p.getSOS()]
    assert solved_objective(q) == pytest.approx(optimum, abs=1e-6)
    assert solved_objective(p) == pytest.approx(optimum, abs=1e-6)
    # The solution reaches the read objects through the column map.
    assert q.getSolution(new_vars) == pytest.approx(p.getSolution(old_vars), abs=1e-6)


def test_range_row_becomes_two_sided_constraint(tmp_path):
    p, _ = lp_model()
    q = read_back(p, tmp_path / "m.lp")
    rng, cap, diff = q.getConstraint()
    assert (rng.lb, rng.ub) == (6, 10)
    assert cap.ub == 15 and cap.lb <= -1e20
    assert diff.lb == -2 and diff.ub >= 1e20
    assert q.getConstraint(index=0) is rng


@pytest.mark.parametrize(
    "name, flags, optimum",
    [("plan.lp", "", 296.2166065), ("samp2.mps", "f", 73 / 3)],
)
def test_external_glpk_models(name, flags, optimum):
    path = os.path.join(GLPK_EXAMPLES, name)
    if not os.path.exists(path):
        pytest.skip("glpk example files are not installed")
    q = quiet(z.problem())
    q.read(path, flags)
    ncols = q.attributes.cols
    assert len(q.getVariable()) == ncols > 0
    assert len(q.getConstraint()) == q.attributes.rows
    assert solved_objective(q) == pytest.approx(optimum, rel=1e-6)


def test_bad_files_are_refused_and_leave_the_problem_as_it_was(tmp_path):
    p, optimum = lp_model()
    vars_before, cons_before = p.getVariable(), p.getConstraint()
    bad = tmp_path / "bad.mps"
    bad.write_text("NAME bad\nROWS\n N obj\n L c1\nCOLUMNS\n    x  obj  1  c9  2\nRHS\nENDATA\n")
    with pytest.raises(z.SolverError, match=r"bad\.mps', line 6: unknown row 'c9'"):
        p.read(str(bad))
    with pytest.raises(z.SolverError, match="cannot open"):
        p.read(str(tmp_path / "missing.mps"))
    with pytest.raises(z.SolverError, match="cannot tell the format"):
        p.read(str(tmp_path / "model.txt"))
    with pytest.raises(z.SolverError, match="cannot tell the format"):
        p.write(str(tmp_path / "model.txt"))
    with pytest.raises(z.SolverError, match="cannot create"):
        p.write(str(tmp_path / "no" / "such" / "dir.lp"))
    assert not (tmp_path / "model.txt").exists()
    assert p.getVariable() == vars_before and p.getConstraint() == cons_before
    assert [p.getIndex(v) for v in vars_before] == [0, 1]
    assert solved_objective(p) == pytest.approx(optimum)


def test_nonlinear_writer_is_refused(tmp_path):
    p, _ = lp_model()
    target = tmp_path / "m.lp"
    with pytest.raises(z.ModelError, match="Writing nonlinear problems is not available yet"):
        p.write(str(target), "g")
    assert not target.exists()


def test_objects_from_before_a_read_are_foreign(tmp_path):
    p, _ = lp_model()
    p.write(str(tmp_path / "m.mps"))
    x = p.getVariable()[0]
    rng = p.getConstraint()[0]
    q, _ = qp_model()
    qx = q.getVariable()[0]
    q.read(str(tmp_path / "m.mps"))
    for old in (x, qx):
        with pytest.raises(z.ModelError, match="Variable x not in problem"):
            q.getIndex(old)
    with pytest.raises(z.ModelError, match="not in problem"):
        q.getIndex(rng)
    q.solve()
    with pytest.raises(z.ModelError, match="does not belong to problem"):
        q.getSolution(qx)
    # The old objects can join the read model as new columns.
    q.addVariable(qx)
    assert q.getIndex(qx) == 2


def test_read_model_is_extended_and_solved(tmp_path):
    p, _ = lp_model()
    q = read_back(p, tmp_path / "m.mps.gz")
    x, y = q.getVariable()
    zz = z.var(name="z", ub=2)
    q.addVariable(zz)
    ext = z.constraint(x + y + zz <= 10, name="ext")
    q.addConstraint(ext)
    assert q.getIndex(zz) == 2 and q.getIndex(ext) == 3
    q.setObjective(3 * x + 2 * y + zz, sense=z.maximize)
    assert solved_objective(q) == pytest.approx(64 / 3, abs=1e-6)
    assert q.getSolution([x, y, zz]) == pytest.approx([4, 11 / 3, 2], abs=1e-6)
    # What was added is written and read again with the rest.
    r = read_back(q, tmp_path / "ext.lp")
    assert [v.name for v in r.getVariable()] == ["x", "y", "z"]
    assert [str(c) for c in r.getConstraint()] == ["rng", "cap", "diff", "ext"]
    assert solved_objective(r) == pytest.approx(64 / 3, abs=1e-6)
