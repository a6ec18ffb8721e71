"""Names a file format cannot hold: the user sees which names were replaced,
and the file reads back."""
import pytest

import zorvan as z


def model():
    x, y = z.var(name="my x", ub=4), z.var(name="y", ub=4)
    p = z.problem()
    p.addVariable(x, y)
    p.addConstraint(z.constraint(x + y <= 5, name="a row"))
    p.setObjective(x + 2 * y, sense=z.maximize)
    return p


@pytest.mark.parametrize("suffix", ["lp", "mps"])
def test_blanks_in_names_warn_and_read_back(tmp_path, capfd, suffix):
    p = model()
    path = str(tmp_path / f"m.{suffix}")
    p.write(path)
    out = capfd.readouterr()
    said = out.out + out.err
    assert "'my x' as C0" in said and "'a row' as R0" in said
    q = z.problem()
    q.setOutputEnabled(False)
    q.read(path)
    assert [v.name for v in q.getVariable()] == ["C0", "y"]
    assert [c.name for c in q.getConstraint()] == ["R0"]
    q.optimize()
    assert q.getObjVal() == pytest.approx(9.0)


def test_fixed_mps_keeps_blanks(tmp_path, capfd):
    p = model()
    path = str(tmp_path / "m.mps")
    p.write(path, "f")
    out = capfd.readouterr()
    assert "generated names" not in out.out + out.err
    q = z.problem()
    q.setOutputEnabled(False)
    q.read(path, "f")
    assert [v.name for v in q.getVariable()] == ["my x", "y"]
    assert [c.name for c in q.getConstraint()] == ["a row"]
