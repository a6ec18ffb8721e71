"""The one-to-one members on large batches against highspy's equivalent calls
on one HiGHS instance, in one run:

  loadproblem of an n x n LP with 10 n nonzeros from NumPy arrays  vs passModel
  chgbounds of n columns                                          vs changeColsBounds
  chgobj of n columns                                             vs changeColsCost
  getrows of all rows (10 n coefficients)                          vs getRows + getRowsEntries

Each figure is the best of --repeat runs; the ratio is zorvan / highspy.

Run: .venv/bin/python bench/bench_bindings.py [--n N] [--repeat R]
(highspy comes with the bench extra: pip install .[bench]).
"""
import argparse
import time

import highspy
import numpy as np

import zorvan as z


def instance(n, per_col=10, seed=3):
    rng = np.random.default_rng(seed)
    rows = np.empty(n * per_col, dtype=np.int32)
    for j in range(n):  # distinct rows within a column
        rows[j * per_col:(j + 1) * per_col] = rng.choice(n, per_col, replace=False)
    return dict(
        start=np.arange(0, n * per_col + 1, per_col, dtype=np.int64),
        rows=rows, coefs=rng.uniform(1, 10, n * per_col),
        cost=rng.uniform(-10, 10, n), rhs=rng.uniform(50, 100, n),
        lb=np.zeros(n), ub=np.full(n, 10.0),
        newlb=rng.uniform(0, 1, n), newub=rng.uniform(5, 10, n), newcost=rng.uniform(-5, 5, n))


def best(f, repeat):
    times = []
    for _ in range(repeat):
        t = time.perf_counter()
        f()
        times.append(time.perf_counter() - t)
    return min(times)


def run_zorvan(d, n, repeat):
    p = z.problem()
    p.setOutputEnabled(False)
    cols = np.arange(n, dtype=np.int32)
    rowtype = ["L"] * n
    out = {}
    out["load"] = best(lambda: p.loadproblem(
        "bench", rowtype, d["rhs"], None, d["cost"], d["start"], None, d["rows"], d["coefs"],
        d["lb"], d["ub"]), repeat)
    both = ["L"] * n + ["U"] * n
    allcols = np.concatenate([cols, cols])
    bounds = np.concatenate([d["newlb"], d["newub"]])
    out["bounds"] = best(lambda: p.chgbounds(allcols, both, bounds), repeat)
    out["cost"] = best(lambda: p.chgobj(cols, d["newcost"]), repeat)

    def read():
        start, ind, val = [], [], []
        p.getrows(start, ind, val, 10 * n, 0, n - 1)
        assert len(val) == 10 * n
    out["getrows"] = best(read, repeat)
    return out


def run_highspy(d, n, repeat):
    h = highspy.Highs()
    h.setOptionValue("output_flag", False)
    lp = highspy.HighsLp()
    lp.num_col_ = n
    lp.num_row_ = n
    lp.col_cost_ = d["cost"]
    lp.col_lower_ = d["lb"]
    lp.col_upper_ = d["ub"]
    lp.row_lower_ = np.full(n, -highspy.kHighsInf)
    lp.row_upper_ = d["rhs"]
    lp.a_matrix_.format_ = highspy.MatrixFormat.kColwise
    lp.a_matrix_.start_ = d["start"].astype(np.int32)
    lp.a_matrix_.index_ = d["rows"]
    lp.a_matrix_.value_ = d["coefs"]
    cols = np.arange(n, dtype=np.int32)
    out = {}
    out["load"] = best(lambda: h.passModel(lp), repeat)
    out["bounds"] = best(lambda: h.changeColsBounds(n, cols, d["newlb"], d["newub"]), repeat)
    out["cost"] = best(lambda: h.changeColsCost(n, cols, d["newcost"]), repeat)

    def read():
        h.getRows(n, cols)
        _, start, index, value = h.getRowsEntries(n, cols)
        assert len(value) == 10 * n
    out["getrows"] = best(read, repeat)
    return out


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--n", type=int, default=100_000)
    ap.add_argument("--repeat", type=int, default=3)
    a = ap.parse_args()
    d = instance(a.n)
    zo = run_zorvan(d, a.n, a.repeat)
    hi = run_highspy(d, a.n, a.repeat)
    print(f"n = {a.n}, nonzeros = {10 * a.n}")
    print(f"{'call':10} {'zorvan s':>10} {'highspy s':>10} {'ratio':>7}")
    for k in ("load", "bounds", "cost", "getrows"):
        print(f"{k:10} {zo[k]:10.4f} {hi[k]:10.4f} {zo[k] / hi[k]:7.2f}")


if __name__ == "__main__":
    main()
