"""The extension's include graph follows its floor plan (tools/check_ext_layers.py)."""
import importlib.util
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
SPEC = importlib.util.spec_from_file_location("check_ext_layers",
                                              ROOT / "tools" / "check_ext_layers.py")
layers = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(layers)


def test_no_include_runs_up_a_floor():
    assert layers.violations(ROOT) == []


def write(root, path, text):
    f = root / "zorvanlib" / path
    f.parent.mkdir(parents=True, exist_ok=True)
    f.write_text(text)


def test_the_check_reports_upward_and_unplaced_includes(tmp_path):
    write(tmp_path, "base/errors.cpp", '#include "problem/problem.h"\n#include "base/errors.h"\n')
    write(tmp_path, "model/var.cpp", '#include "base/globals.h"\n#include "zorvan/zrvs.h"\n')
    write(tmp_path, "problem/solve.cpp", '#include "module/functions.h"\n')
    write(tmp_path, "module/zorvanlib.cpp", '#include "problem/problem.h"\n')
    write(tmp_path, "attic/old.cpp", '#include "base/globals.h"\n')
    found = layers.violations(tmp_path)
    assert len(found) == 3
    assert any("base/errors.cpp" in line and "problem/problem.h" in line for line in found)
    assert any("problem/solve.cpp" in line and "module" in line for line in found)
    assert any("attic" in line and "no floor" in line for line in found)
