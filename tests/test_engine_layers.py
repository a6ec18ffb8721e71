"""The include graph of the engine runs down its floors (tools/check_layers.py)."""
import importlib.util
import io
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SCRIPT = ROOT / "tools" / "check_layers.py"


def load_checker():
    spec = importlib.util.spec_from_file_location("check_layers", SCRIPT)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def test_engine_includes_run_down_the_floors():
    result = subprocess.run([sys.executable, str(SCRIPT), "--layer", "engine"],
                            capture_output=True, text=True)
    assert result.returncode == 0, result.stdout + result.stderr


def write(root, path, *includes):
    file = root / path
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text("".join(f'#include "{i}"\n' for i in includes))


def test_checker_finds_upward_includes_stale_entries_and_unplanned_folders(tmp_path, monkeypatch):
    checker = load_checker()
    src = "engine/src"
    write(tmp_path, f"{src}/model/model.h", "core/errors.h", "zorvan/zrvs.h")
    write(tmp_path, f"{src}/core/errors.h", "interfaces/highs_c_api.h")
    write(tmp_path, f"{src}/api/columns.cpp", "model/model.h", "nlp/slp.h", "solve/solve.h")
    write(tmp_path, f"{src}/solve/solve.h", "events/hub.h", "model/model.h")
    monkeypatch.setattr(checker, "PENDING", {})
    out = io.StringIO()
    assert checker.check(tmp_path, ["engine"], out)
    assert out.getvalue() == ""

    # Downward and external includes pass; an upward one is reported with
    # its place.
    write(tmp_path, f"{src}/core/catalogue.cpp", "core/errors.h", "model/model.h")
    write(tmp_path, f"{src}/solve/reformulate.cpp", "nlp/formula.h")
    out = io.StringIO()
    assert not checker.check(tmp_path, ["engine"], out)
    lines = out.getvalue().splitlines()
    assert len(lines) == 2
    assert lines[0].startswith(f"{src}/core/catalogue.cpp:2: core includes model/model.h")
    assert lines[1].startswith(f"{src}/solve/reformulate.cpp:1: solve includes nlp/formula.h")

    # A pending include is printed but passes; a pending entry that no
    # longer occurs fails, so the list only shrinks.
    monkeypatch.setattr(checker, "PENDING", {
        (f"{src}/core/catalogue.cpp", "model/model.h"): "moves later",
        (f"{src}/solve/reformulate.cpp", "nlp/formula.h"): "moves later",
        (f"{src}/core/gone.h", "model/model.h"): "already moved",
    })
    out = io.StringIO()
    assert not checker.check(tmp_path, ["engine"], out)
    assert "pending: core includes model/model.h" in out.getvalue()
    assert "core/gone.h: no longer includes model/model.h" in out.getvalue()
    del checker.PENDING[(f"{src}/core/gone.h", "model/model.h")]
    assert checker.check(tmp_path, ["engine"], io.StringIO())

    # A folder of sources that is not on the floor plan fails.
    write(tmp_path, f"{src}/misc/helpers.h", "core/errors.h")
    out = io.StringIO()
    assert not checker.check(tmp_path, ["engine"], out)
    assert "engine/src/misc: not a floor of the plan" in out.getvalue()


def test_extension_rules_let_module_include_every_floor(tmp_path):
    checker = load_checker()
    write(tmp_path, "zorvanlib/module/zorvanlib.cpp", "problem/problem.h", "callbacks/kinds.h",
          "base/errors.h")
    write(tmp_path, "zorvanlib/base/errors.h", "problem/problem.h")
    out = io.StringIO()
    assert not checker.check(tmp_path, ["extension"], out)
    assert out.getvalue().splitlines() == [
        "zorvanlib/base/errors.h:1: base includes problem/problem.h, a file of problem, "
        "which base may not use"]
