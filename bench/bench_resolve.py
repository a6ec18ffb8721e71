"""LP re-solves after small changes: zorvan (whose engine starts each LP solve
from the basis of the one before) against highspy keeping one HiGHS instance
(which also starts from its last basis), on the same HiGHS and model.

A sparse random LP (n columns, n rows, about 8 entries per column, maximise
c.x subject to A x <= b, 0 <= x <= 10) is solved once, then re-solved
--rounds times, each after changing the costs of 5 columns. The table gives
the first solve, the median re-solve and the total simplex iterations of the
re-solves; objectives must agree to 1e-9 relative.

Run: .venv/bin/python bench/bench_resolve.py [--n N] [--rounds R]
(highspy comes with the bench extra: pip install .[bench]).
"""
import argparse
import random
import statistics
import time

import zorvan as z


def instance(n, seed=5):
    rng = random.Random(seed)
    cols = [[(rng.randrange(n), rng.uniform(1, 10)) for _ in range(8)] for _ in range(n)]
    cost = [rng.uniform(1, 20) for _ in range(n)]
    rhs = [rng.uniform(50, 100) for _ in range(n)]
    changes = [[(rng.randrange(n), rng.uniform(1, 20)) for _ in range(5)] for _ in range(100)]
    rows = [dict() for _ in range(n)]
    for j, entries in enumerate(cols):
        for i, a in entries:
            rows[i][j] = rows[i].get(j, 0.0) + a
    return rows, cost, rhs, changes


def run_zorvan(data, rounds):
    rows, cost, rhs, changes = data
    n = len(cost)
    p = z.problem("resolve")
    p.setControl({"outputlog": 0, "threads": 1})
    x = [z.var(ub=10) for _ in range(n)]
    p.addVariable(x)
    p.addConstraint(z.Sum(a * x[j] for j, a in row.items()) <= b for row, b in zip(rows, rhs))
    p.setObjective(z.Dot(cost, x), sense=z.maximize)
    t = time.perf_counter()
    p.lpoptimize()
    first = time.perf_counter() - t
    times, iters, objs = [], 0, [p.getObjVal()]
    cost = list(cost)
    for k in range(rounds):
        for j, c in changes[k]:
            cost[j] = c
        p.setObjective(z.Dot(cost, x), sense=z.maximize)
        t = time.perf_counter()
        p.lpoptimize()
        times.append(time.perf_counter() - t)
        iters += p.attributes.simplexiter
        objs.append(p.getObjVal())
    return first, times, iters, objs


def run_highspy(data, rounds):
    import highspy
    import numpy as np
    rows, cost, rhs, changes = data
    n = len(cost)
    h = highspy.Highs()
    h.setOptionValue("output_flag", False)
    h.setOptionValue("threads", 1)
    h.addVars(n, np.zeros(n), np.full(n, 10.0))
    h.changeColsCost(n, np.arange(n, dtype=np.int32), np.array(cost))
    for row, b in zip(rows, rhs):
        idx = np.array(list(row.keys()), dtype=np.int32)
        h.addRow(-highspy.kHighsInf, b, len(idx), idx, np.array(list(row.values())))
    h.changeObjectiveSense(highspy.ObjSense.kMaximize)
    t = time.perf_counter()
    h.run()
    first = time.perf_counter() - t
    times, iters, objs = [], 0, [h.getInfo().objective_function_value]
    for k in range(rounds):
        idx, val = zip(*changes[k])
        h.changeColsCost(len(idx), np.array(idx, dtype=np.int32), np.array(val))
        t = time.perf_counter()
        h.run()
        times.append(time.perf_counter() - t)
        iters += h.getInfo().simplex_iteration_count
        objs.append(h.getInfo().objective_function_value)
    return first, times, iters, objs


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--n", type=int, default=2000)
    ap.add_argument("--rounds", type=int, default=10)
    args = ap.parse_args()
    data = instance(args.n)
    results = {"zorvan": run_zorvan(data, args.rounds)}
    try:
        results["highspy"] = run_highspy(data, args.rounds)
    except ImportError:
        print("highspy not installed: pip install .[bench]")
    print(f"n = {args.n}, {args.rounds} re-solves after 5 cost changes each")
    print(f"{'layer':10} {'first s':>9} {'re-solve s':>11} {'re-solve iters':>15}")
    for name, (first, times, iters, _) in results.items():
        print(f"{name:10} {first:9.3f} {statistics.median(times):11.4f} {iters:15d}")
    if "highspy" in results:
        zo, hi = results["zorvan"][3], results["highspy"][3]
        worst = max(abs(a - b) / max(1.0, abs(b)) for a, b in zip(zo, hi))
        print(f"largest relative objective difference: {worst:.1e}")
        ratio = statistics.median(results["zorvan"][1]) / statistics.median(results["highspy"][1])
        print(f"zorvan / highspy, median re-solve: {ratio:.2f}")
        if worst > 1e-9:
            raise SystemExit("objectives disagree")


if __name__ == "__main__":
    main()
