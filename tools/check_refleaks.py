"""Runs the pytest suite several times in one interpreter and reports how the
number of allocated memory blocks and live objects moves between runs. After
the first run (which fills caches and interned names) a leak shows as steady
growth from run to run.

    .venv/bin/python -X dev tools/check_refleaks.py [runs] [pytest args...]
"""
import gc
import sys

import pytest


def main():
    runs = int(sys.argv[1]) if len(sys.argv) > 1 else 3
    args = sys.argv[2:] or ["-q", "-p", "no:cacheprovider", "tests"]
    counts = []
    for k in range(runs):
        rc = pytest.main(list(args))
        if rc not in (0, pytest.ExitCode.NO_TESTS_COLLECTED):
            print(f"run {k + 1} failed with exit code {rc}")
            return 1
        gc.collect()
        counts.append((sys.getallocatedblocks(), len(gc.get_objects())))
        print(f"run {k + 1}: {counts[-1][0]} blocks, {counts[-1][1]} tracked objects")
    if runs >= 3:
        growth = [b[0] - a[0] for a, b in zip(counts[1:], counts[2:])]
        print("blocks gained per run after the second:", growth)
    return 0


if __name__ == "__main__":
    sys.exit(main())
