"""Checks the include graph of the extension (zorvanlib/) against its floor
plan: each folder may include its own headers, the folders listed for it
below, and the engine's public headers. Prints every include that breaks a
rule and exits with 1 when there is one.

    python tools/check_ext_layers.py [root]
"""
import pathlib
import re
import sys

# Folder -> folders it may include besides itself. The floors from the
# bottom: base; model; nonlinear; numpy; algebra; aggregate. controls stands
# on base only; problem on everything below it; bindings and callbacks on
# problem; module (the composition root) on everything.
BELOW = {
    "base": set(),
    "model": {"base"},
    "nonlinear": {"base", "model"},
    "numpy": {"base", "model", "nonlinear"},
    "algebra": {"base", "model", "nonlinear", "numpy"},
    "aggregate": {"base", "model", "nonlinear", "numpy", "algebra"},
    "controls": {"base"},
    "problem": {"base", "model", "nonlinear", "numpy", "algebra", "controls"},
    "bindings": {"base", "model", "nonlinear", "numpy", "algebra", "controls", "problem"},
    "callbacks": {"base", "model", "nonlinear", "numpy", "algebra", "controls", "problem"},
}
PUBLIC = {"zorvan"}  # the engine's public headers, zorvan/zrvs.h and zorvan/zslp.h
ROOT_ONLY = "module"

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def violations(root):
    ext = pathlib.Path(root) / "zorvanlib"
    found = []
    for path in sorted(ext.rglob("*")):
        if path.suffix not in (".h", ".cpp") or path.parent == ext:
            continue
        folder = path.relative_to(ext).parts[0]
        for target in INCLUDE.findall(path.read_text()):
            parts = target.split("/")
            if len(parts) < 2:
                found.append(f"{path.relative_to(root)}: \"{target}\" names no folder")
                continue
            to = parts[0]
            if to == folder or to in PUBLIC:
                continue
            if to == ROOT_ONLY:
                found.append(f"{path.relative_to(root)}: includes {target} (only the module "
                             "folder includes its own headers)")
            elif folder == ROOT_ONLY:
                continue
            elif folder not in BELOW:
                found.append(f"{path.relative_to(root)}: folder {folder} has no floor")
            elif to not in BELOW[folder]:
                found.append(f"{path.relative_to(root)}: includes {target} "
                             f"({folder} stands below {to})")
    return found


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                        pathlib.Path(__file__).resolve().parent.parent)
    found = violations(root)
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
