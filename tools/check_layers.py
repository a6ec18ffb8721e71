#!/usr/bin/env python3
"""Checks that includes run down the floors of each layer, never up.

Reads the #include "..." lines of engine/src/** and zorvanlib/**, finds the
floor of the including file and of the included one (the first folder of the
path), and prints every include of a floor that the including floor may not
use. Includes of files outside the floors (the public headers zorvan/*.h,
HiGHS, Python, NumPy) are not checked.

Some upward includes are known and wait for a later move; they are listed in
PENDING with the reason. The check fails on any other upward include, and
also on a PENDING entry that no longer occurs, so that the list only shrinks.

A folder of sources that is not a floor of the plan fails the check too.

Usage: check_layers.py [--layer engine|extension] [--root DIR]
Exit status 0 when every checked layer is clean, 1 otherwise.
"""
import argparse
import re
import sys
from pathlib import Path

# For each floor, the floors it may include (itself always). The engine:
# core <- model <- events <- problem (the problem object: model, controls,
# results, callbacks and solver state together) <- {solve, nlp}; io reads
# and writes models only; nlp may use solve; search and optimize sit above
# solve; api may use everything.
ENGINE = {
    "core": set(),
    "events": {"core"},
    "model": {"core"},
    "io": {"core", "model"},
    "problem": {"core", "events", "model"},
    "solve": {"core", "events", "model", "problem"},
    "search": {"core", "events", "model", "problem", "solve"},
    "nlp": {"core", "events", "model", "problem", "solve"},
    "optimize": {"core", "events", "model", "problem", "solve", "search", "nlp"},
    "api": {"core", "events", "model", "io", "problem", "solve", "search", "nlp", "optimize"},
}

# The extension's floors are those of tools/check_ext_layers.py (one table
# for both scripts); module, the composition root, may include every floor.
sys.path.insert(0, str(Path(__file__).resolve().parent))
from check_ext_layers import BELOW as _EXT_BELOW  # noqa: E402

EXTENSION = {floor: set(below) for floor, below in _EXT_BELOW.items()}
EXTENSION["module"] = set(_EXT_BELOW)

LAYERS = {
    "engine": ("engine/src", ENGINE),
    "extension": ("zorvanlib", EXTENSION),
}

# Upward includes that are known, with the reason they remain:
# (including file, included path) -> reason.
PENDING = {}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def floor_of(path, floors):
    """The floor named by the first folder of a path under the layer root."""
    first = path.split("/", 1)[0]
    return first if "/" in path and first in floors else None


def unplanned_folders(root, layer):
    """Folders of the layer that hold sources but are no floor of the plan."""
    base, floors = LAYERS[layer]
    return sorted({p.relative_to(root / base).parts[0]
                   for p in (root / base).rglob("*")
                   if p.is_file() and p.suffix in (".h", ".hpp", ".c", ".cc", ".cpp")
                   and len(p.relative_to(root / base).parts) > 1}
                  - set(floors))


def upward_includes(root, layer):
    """(file, line number, included path, floor, included floor) of every
    include that runs upward in the layer."""
    base, floors = LAYERS[layer]
    found = []
    for path in sorted((root / base).rglob("*")):
        if path.suffix not in (".h", ".hpp", ".c", ".cc", ".cpp") or not path.is_file():
            continue
        rel = path.relative_to(root / base).as_posix()
        floor = floor_of(rel, floors)
        if floor is None:
            continue
        for number, text in enumerate(path.read_text(errors="replace").splitlines(), 1):
            match = INCLUDE.match(text)
            if not match:
                continue
            included = match.group(1)
            target = floor_of(included, floors)
            if target is None or target == floor or target in floors[floor]:
                continue
            found.append((path.relative_to(root).as_posix(), number, included, floor, target))
    return found


def check(root, layers, out=sys.stdout):
    """Prints the upward includes of the layers; returns True when none is
    new and no PENDING entry of these layers is stale."""
    clean = True
    seen = set()
    for layer in layers:
        for folder in unplanned_folders(root, layer):
            clean = False
            print(f"{LAYERS[layer][0]}/{folder}: not a floor of the plan; add it to "
                  f"check_layers.py and DESIGN.md", file=out)
        for file, number, included, floor, target in upward_includes(root, layer):
            key = (file, included)
            seen.add(key)
            if key in PENDING:
                print(f"{file}:{number}: pending: {floor} includes {included} ({target}): "
                      f"{PENDING[key]}", file=out)
                continue
            clean = False
            print(f"{file}:{number}: {floor} includes {included}, a file of {target}, "
                  f"which {floor} may not use", file=out)
    prefixes = tuple(LAYERS[layer][0] + "/" for layer in layers)
    for key in PENDING:
        if key[0].startswith(prefixes) and key not in seen:
            clean = False
            print(f"{key[0]}: no longer includes {key[1]}; remove it from PENDING", file=out)
    return clean


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--layer", choices=sorted(LAYERS), action="append",
                        help="check this layer only (may be repeated; default: all)")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent,
                        help="repository root")
    args = parser.parse_args(argv)
    return 0 if check(args.root, args.layer or sorted(LAYERS)) else 1


if __name__ == "__main__":
    sys.exit(main())
