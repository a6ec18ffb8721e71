"""problem.read and problem.write: models written in each format and read into
a new problem keep their objects, names, bounds, types and optimum; external
files read; bad files refused without touching the problem."""

import os
import shutil
import subprocess

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
    assert [q.getIndex(s) for s in q.getSOS()] == list(range(len(p.getSOS())))
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


def test_degenerate_glpk_model_solves_to_its_optimum_with_default_controls(tmp_path):
    # dea is degenerate: with feasibility and optimality tolerances of 1e-6
    # its optimum comes out 3e-5 too high.
    model = os.path.join(GLPK_EXAMPLES, "dea.mod")
    if not (os.path.exists(model) and shutil.which("glpsol")):
        pytest.skip("glpsol and the glpk example models are not installed")
    target = tmp_path / "dea.mps"
    subprocess.run(["glpsol", "-m", model, "--check", "--wfreemps", str(target)],
                   check=True, capture_output=True)
    q = quiet(z.problem())
    q.read(str(target))
    assert solved_objective(q) == pytest.approx(59.63109337, rel=1e-6)


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


# ---------------------------------------------------------------------------
# Free columns, equality rows, negative integer bounds, the SOS members, name
# chunks, gzip and format flags, repeated reads and the argument forms.

INF = z.infinity


def free_model():
    """Maximise x + 3y + 2w: a range row, a >= row, an = row, a free column
    and a negative lower bound. Optimum x = 4, y = 3, w = 4.5: 22."""
    p = quiet(z.problem())
    x = z.var(name="x", ub=4)
    y = z.var(name="y", lb=-1, ub=5)
    w = z.var(name="w", lb=-INF, ub=INF)
    p.addVariable(x, y, w)
    p.addConstraint(z.constraint(body=x + 2 * y, lb=6, ub=10, name="rng"),
                    z.constraint(x + y >= 1, name="cov"),
                    z.constraint(w - x == 0.5, name="tie"))
    p.setObjective(x + 3 * y + 2 * w, sense=z.maximize)
    return p


def sos_model():
    """Integer column with a negative lower bound, a binary, a semi-continuous
    column and an SOS1 over u, v. Without the set u = 1, v = 3 would give 7
    from u + 2v; with it v = 3 alone gives 6. b = 1, s = 4.5, i = 2: 14.5."""
    p = quiet(z.problem())
    i = z.var(name="i", vartype=z.integer, lb=-3, ub=7)
    b = z.var(name="b", vartype=z.binary)
    s = z.var(name="s", vartype=z.semicontinuous, ub=9, threshold=2)
    u = z.var(name="u", ub=3)
    v = z.var(name="v", ub=3)
    p.addVariable(i, b, s, u, v)
    p.addConstraint(z.constraint(i + s + 2 * b <= 8.5, name="cap"),
                    z.constraint(s - 3 * b <= 1.5, name="link"),
                    z.constraint(u + v <= 4, name="uv"))
    p.addSOS(z.sos([u, v], [1, 2], type=1, name="pick"))
    p.setObjective(i + s + 2 * b + u + 2 * v, sense=z.maximize)
    return p


def sides(p):
    return [(c.name, c.lb, c.ub) for c in p.getConstraint()]


def columns(p):
    return [(v.name, v.lb, v.ub, v.vartype) for v in p.getVariable()]


@pytest.mark.parametrize("ext", FORMATS)
def test_free_columns_and_equality_rows_read_back(tmp_path, ext):
    p = free_model()
    q = read_back(p, tmp_path / ("free" + ext))
    assert columns(q) == [("x", 0.0, 4.0, z.continuous), ("y", -1.0, 5.0, z.continuous),
                          ("w", -INF, INF, z.continuous)]
    assert sides(q) == [("rng", 6.0, 10.0), ("cov", 1.0, INF), ("tie", 0.5, 0.5)]
    assert [c.body for c in q.getConstraint()] == [None, None, None]
    assert solved_objective(q) == pytest.approx(22.0)
    assert q.getSolution(q.getVariable()) == pytest.approx([4.0, 3.0, 4.5])


@pytest.mark.parametrize("ext", FORMATS)
def test_integer_bounds_and_set_members_survive(tmp_path, ext):
    q = read_back(sos_model(), tmp_path / ("sos" + ext))
    assert columns(q)[:2] == [("i", -3.0, 7.0, z.integer), ("b", 0.0, 1.0, z.binary)]
    (pick,) = q.getSOS()
    assert str(pick) == "pick"
    assert q.getIndex(pick) == 0
    assert solved_objective(q) == pytest.approx(14.5)
    sol = dict(zip((v.name for v in q.getVariable()), q.getSolution(q.getVariable())))
    assert min(sol["u"], sol["v"]) == pytest.approx(0.0, abs=1e-9)
    assert sol["v"] == pytest.approx(3.0)


def test_hand_written_ranges_section(tmp_path):
    path = tmp_path / "range.mps"
    path.write_text("NAME rangetest\nROWS\n N obj\n L r1\nCOLUMNS\n x obj 1 r1 1\n"
                    "RHS\n rhs r1 10\nRANGES\n rng r1 4\nBOUNDS\n UP bnd x 20\nENDATA\n")
    q = quiet(z.problem())
    q.read(str(path))
    (c,) = q.getConstraint()
    assert (c.name, c.lb, c.ub) == ("r1", 6.0, 10.0)
    assert solved_objective(q) == pytest.approx(6.0)


def test_names_cross_the_fetch_chunks(tmp_path):
    p = quiet(z.problem())
    xs = [z.var(name=f"x{k}", ub=k + 1) for k in range(600)]
    p.addVariable(xs)
    p.addConstraint([z.constraint(x <= k, name=f"r{k}") for k, x in enumerate(xs)])
    q = read_back(p, tmp_path / "big.lp")
    assert [v.name for v in q.getVariable()] == [f"x{k}" for k in range(600)]
    assert [c.name for c in q.getConstraint()] == [f"r{k}" for k in range(600)]
    assert [v.ub for v in q.getVariable()] == [float(k + 1) for k in range(600)]
    assert q.getIndex(q.getVariable(599)) == 599


def test_gzip_output_and_format_flags_over_the_name(tmp_path):
    import gzip

    p = free_model()
    p.write(str(tmp_path / "m.mps.gz"))
    with gzip.open(tmp_path / "m.mps.gz", "rt") as f:
        assert "ROWS" in f.read()
    p.write(str(tmp_path / "m.txt"), "l")
    q = quiet(z.problem())
    q.read(str(tmp_path / "m.txt"), "l")
    assert sides(q) == sides(p)


def test_a_second_read_replaces_the_first(tmp_path):
    free_model().write(str(tmp_path / "a.lp"))
    sos_model().write(str(tmp_path / "b.mps"))
    q = quiet(z.problem())
    q.read(str(tmp_path / "a.lp"))
    first = q.getVariable()
    q.read(str(tmp_path / "b.mps"))
    assert [v.name for v in q.getVariable()] == ["i", "b", "s", "u", "v"]
    assert len(q.getConstraint()) == q.attributes.rows == 3
    assert len(q.getSOS()) == q.attributes.sets == 1
    with pytest.raises(z.ModelError, match="not in problem"):
        q.getIndex(first[0])


def test_failed_read_keeps_sets_and_sides(tmp_path):
    p = sos_model()
    before = (columns(p), sides(p), p.getSOS())
    bad = tmp_path / "bad.lp"
    bad.write_text("Maximize\n obj: x +\nSubject To\n c: x <= @\nEnd\n")
    with pytest.raises(z.SolverError, match="bad.lp"):
        p.read(str(bad))
    assert (columns(p), sides(p), p.getSOS()) == before
    assert solved_objective(p) == pytest.approx(14.5)


@pytest.mark.skipif(not os.path.exists(os.path.join(GLPK_EXAMPLES, "plan.lp")),
                    reason="glpk example files are not installed")
def test_external_names_bounds_and_sides():
    q = quiet(z.problem())
    q.read(os.path.join(GLPK_EXAMPLES, "plan.lp"))
    assert len(q.getVariable()) == 7 and len(q.getConstraint()) == 8
    got = {v.name: (v.lb, v.ub) for v in q.getVariable()}
    assert got["bin3"] == (400.0, 800.0)
    assert got["bin1"] == (0.0, 200.0)
    assert got["alum"] == (0.0, INF)
    cons = {c.name: (c.lb, c.ub) for c in q.getConstraint()}
    assert cons["yield"] == (2000.0, 2000.0)
    assert cons["al"] == (1500.0, INF)
    assert cons["fe"] == (-INF, 60.0)


def test_keywords_types_and_released_problem(tmp_path):
    p = free_model()
    with pytest.raises(TypeError):
        p.write()
    with pytest.raises(TypeError):
        p.read(3)
    p.write(filename=str(tmp_path / "k.lp"), flags="")
    q = quiet(z.problem())
    q.read(filename=str(tmp_path / "k.lp"), options="")
    assert len(q.getVariable()) == 3
    q.__exit__(None, None, None)
    for call in (q.read, q.write):
        with pytest.raises(z.ModelError, match="Problem is not initialized"):
            call(str(tmp_path / "k.lp"))
