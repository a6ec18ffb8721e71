"""Sums over arrays of variables against linopy (and pyoptinterface where it
has the same operation), in one run on the same machine, best of 5.

Cases on an n x n array of variables (n = 1000 unless given): the weighted
sum (c * x).sum(), and the sums along each axis x.sum(axis=0) and
x.sum(axis=1). Only the expressions are built; the variables exist before
the clock starts. pyoptinterface has no arrays of variables: its row is
quicksum over the same weighted terms of a list (a per-element loop).

Peers are optional (pip install .[bench]); missing ones are skipped.
Run: .venv/bin/python bench/bench_reductions.py [n]
"""
import sys

import numpy as np

import zorvan as z

import timing

try:
    import linopy
except ImportError:  # pragma: no cover
    linopy = None
poi, poi_highs = timing.pyoptinterface_on_highs()

REPEATS = 5


def best_of(build):
    return timing.best_of(REPEATS, build)


def main():
    n = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
    c = np.random.default_rng(1).uniform(1, 9, size=(n, n))
    rows = {}

    x = z.vars(n, n, name="x", array=True)
    rows["zorvan"] = {
        "(c*x).sum()": best_of(lambda: (c * x).sum()),
        "x.sum(axis=0)": best_of(lambda: x.sum(axis=0)),
        "x.sum(axis=1)": best_of(lambda: x.sum(axis=1)),
    }
    del x

    if linopy is not None:
        m = linopy.Model()
        y = m.add_variables(lower=0, coords=[range(n), range(n)], name="x")
        cl = linopy.DataArray(c, coords=[range(n), range(n)]) if hasattr(linopy, "DataArray") \
            else __import__("xarray").DataArray(c, coords=[range(n), range(n)])
        dims = y.dims
        rows["linopy"] = {
            "(c*x).sum()": best_of(lambda: (cl * y).sum()),
            "x.sum(axis=0)": best_of(lambda: y.sum(dims[0])),
            "x.sum(axis=1)": best_of(lambda: y.sum(dims[1])),
        }
        del m, y

    if poi is not None:
        model = poi_highs.Model()
        v = [model.add_variable() for _ in range(n * n)]
        flat = c.ravel().tolist()
        rows["pyoptinterface"] = {
            "(c*x).sum()": best_of(lambda: poi.quicksum(a * b for a, b in zip(flat, v))),
        }
        del model, v

    cases = list(rows["zorvan"])
    print(f"n = {n}: seconds, best of {REPEATS}; ratio = zorvan / peer")
    print(f"{'case':16s}" + "".join(f"{name:>16s}" for name in rows)
          + "".join(f"{'vs ' + name:>20s}" for name in rows if name != "zorvan"))
    for case in cases:
        line = f"{case:16s}"
        for name in rows:
            t = rows[name].get(case)
            line += f"{t:16.4f}" if t is not None else f"{'-':>16s}"
        for name in rows:
            if name == "zorvan":
                continue
            t = rows[name].get(case)
            line += f"{rows['zorvan'][case] / t:19.2f}x" if t else f"{'-':>20s}"
        print(line)


if __name__ == "__main__":
    main()
