"""Re-solves after small changes: zorvan (whose engine keeps its HiGHS
instance with the problem and hands it only the changes) against highspy
keeping one HiGHS instance, on the same model.

LP: a sparse random LP (n columns, n rows, about 8 entries per column,
maximise c.x subject to A x <= b, 0 <= x <= 10) is solved once, then
re-solved --rounds times, each after changing 5 values of one kind: costs
(chgobj / changeColsCost), upper bounds (chgbounds / changeColsBounds) or
right-hand sides (chgrhs / changeRowsBounds).

MIP: a random integer knapsack with several rows (--mip-n integer columns in
[0, 5], 8 rows, maximise c.x) is solved once, then re-solved --rounds times,
each after changing the upper bound of one column.

Each side runs --repeat times, interleaved; a round's time is its best over
the repeats (the machine may be shared), and the table gives the first solve,
the median re-solve and the total simplex iterations (LP) or nodes (MIP) of
the re-solves. Objectives must agree to 1e-9 relative.

Run: .venv/bin/python bench/bench_resolve.py [--n N] [--rounds R] [--repeat K]
(highspy comes with the bench extra: pip install .[bench]).
"""
import argparse
import random
import statistics
import time

import numpy as np

import zorvan as z

KINDS = ("costs", "bounds", "rhs")


def instance(n, seed=5):
    rng = random.Random(seed)
    cols = [[(rng.randrange(n), rng.uniform(1, 10)) for _ in range(8)] for _ in range(n)]
    cost = [rng.uniform(1, 20) for _ in range(n)]
    rhs = [rng.uniform(50, 100) for _ in range(n)]
    # Per kind and round: 5 (index, new value) pairs.
    changes = {
        "costs": [[(rng.randrange(n), rng.uniform(1, 20)) for _ in range(5)]
                  for _ in range(100)],
        "bounds": [[(rng.randrange(n), rng.uniform(2, 10)) for _ in range(5)]
                   for _ in range(100)],
        "rhs": [[(rng.randrange(n), rng.uniform(40, 100)) for _ in range(5)]
                for _ in range(100)],
    }
    rows = [dict() for _ in range(n)]
    for j, entries in enumerate(cols):
        for i, a in entries:
            rows[i][j] = rows[i].get(j, 0.0) + a
    return rows, cost, rhs, changes


def run_zorvan(data, kind, rounds):
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
    for k in range(rounds):
        idx, val = (list(v) for v in zip(*changes[kind][k]))
        if kind == "costs":
            p.chgobj(idx, val)
        elif kind == "bounds":
            p.chgbounds(idx, ["U"] * len(idx), val)
        else:
            p.chgrhs(idx, val)
        t = time.perf_counter()
        p.lpoptimize()
        times.append(time.perf_counter() - t)
        iters += p.attributes.simplexiter
        objs.append(p.getObjVal())
    return first, times, iters, objs


def run_highspy(data, kind, rounds):
    import highspy
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
        idx, val = zip(*changes[kind][k])
        idx, val = np.array(idx, dtype=np.int32), np.array(val)
        if kind == "costs":
            h.changeColsCost(len(idx), idx, val)
        elif kind == "bounds":
            # Repeated columns: the last change holds, as in zorvan.
            for j, v in zip(idx, val):
                h.changeColBounds(int(j), 0.0, float(v))
        else:
            for i, v in zip(idx, val):
                h.changeRowBounds(int(i), -highspy.kHighsInf, float(v))
        t = time.perf_counter()
        h.run()
        times.append(time.perf_counter() - t)
        iters += h.getInfo().simplex_iteration_count
        objs.append(h.getInfo().objective_function_value)
    return first, times, iters, objs


def mip_instance(n, seed=11):
    rng = random.Random(seed)
    m = 8
    a = [[rng.uniform(1, 10) for _ in range(n)] for _ in range(m)]
    b = [sum(row) * 1.2 for row in a]
    c = [rng.uniform(5, 15) for _ in range(n)]
    changes = [(rng.randrange(n), float(rng.randrange(0, 6))) for _ in range(100)]
    return a, b, c, changes


def run_mip_zorvan(data, rounds):
    a, b, c, changes = data
    n = len(c)
    p = z.problem("mip-resolve")
    p.setControl({"outputlog": 0, "threads": 1, "mipabsstop": 0.0, "miprelstop": 0.0})
    x = [z.var(vartype=z.integer, ub=5) for _ in range(n)]
    p.addVariable(x)
    p.addConstraint(z.Dot(row, x) <= rhs for row, rhs in zip(a, b))
    p.setObjective(z.Dot(c, x), sense=z.maximize)

    def solve():
        t = time.perf_counter()
        p.mipoptimize()
        elapsed = time.perf_counter() - t
        return elapsed, p.getObjVal(), p.attributes.nodes

    first, obj, _ = solve()
    times, nodes, objs = [], 0, [obj]
    for j, ub in changes[:rounds]:
        p.chgbounds([j], ["U"], [ub])
        elapsed, obj, count = solve()
        times.append(elapsed)
        nodes += count
        objs.append(obj)
    return first, times, nodes, objs


def run_mip_highspy(data, rounds):
    import highspy
    a, b, c, changes = data
    n, m = len(c), len(b)
    h = highspy.Highs()
    for name, v in (("output_flag", False), ("threads", 1), ("mip_rel_gap", 0.0),
                    ("mip_abs_gap", 0.0)):
        h.setOptionValue(name, v)
    h.addVars(n, np.zeros(n), np.full(n, 5.0))
    h.changeColsCost(n, np.arange(n, dtype=np.int32), np.array(c))
    h.changeColsIntegrality(n, np.arange(n, dtype=np.int32),
                            np.array([highspy.HighsVarType.kInteger] * n))
    for row, rhs in zip(a, b):
        h.addRow(-highspy.kHighsInf, rhs, n, np.arange(n, dtype=np.int32), np.array(row))
    h.changeObjectiveSense(highspy.ObjSense.kMaximize)

    def solve():
        t = time.perf_counter()
        h.run()
        elapsed = time.perf_counter() - t
        info = h.getInfo()
        return elapsed, info.objective_function_value, info.mip_node_count

    first, obj, _ = solve()
    times, nodes, objs = [], 0, [obj]
    for j, ub in changes[:rounds]:
        h.changeColBounds(j, 0.0, ub)
        elapsed, obj, count = solve()
        times.append(elapsed)
        nodes += count
        objs.append(obj)
    return first, times, nodes, objs


def best_of(runs):
    """Per round the best time over repeated runs; counts and objectives of the first."""
    first = min(r[0] for r in runs)
    times = [min(r[1][k] for r in runs) for k in range(len(runs[0][1]))]
    return first, times, runs[0][2], runs[0][3]


def compare(title, count_name, runners, repeat):
    runs = {name: [] for name in runners}
    for _ in range(repeat):
        for name, run in runners.items():
            try:
                runs[name].append(run())
            except ImportError:
                print("highspy not installed: pip install .[bench]")
    results = {name: best_of(r) for name, r in runs.items() if r}
    print(title)
    print(f"{'layer':10} {'first s':>9} {'re-solve s':>11} {count_name:>15}")
    for name, (first, times, count, _) in results.items():
        print(f"{name:10} {first:9.3f} {statistics.median(times):11.4f} {count:15d}")
    if "highspy" in results:
        zo, hi = results["zorvan"][3], results["highspy"][3]
        worst = max(abs(a - b) / max(1.0, abs(b)) for a, b in zip(zo, hi))
        print(f"largest relative objective difference: {worst:.1e}")
        ratio = statistics.median(results["zorvan"][1]) / statistics.median(results["highspy"][1])
        print(f"zorvan / highspy, median re-solve: {ratio:.2f}")
        if worst > 1e-9:
            raise SystemExit("objectives disagree")
    print()


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--n", type=int, default=2000)
    ap.add_argument("--mip-n", type=int, default=30)
    ap.add_argument("--rounds", type=int, default=10)
    ap.add_argument("--repeat", type=int, default=3)
    args = ap.parse_args()
    data = instance(args.n)
    for kind in KINDS:
        compare(f"LP, n = {args.n}, {args.rounds} re-solves after changing 5 {kind} each",
                "re-solve iters",
                {"zorvan": lambda: run_zorvan(data, kind, args.rounds),
                 "highspy": lambda: run_highspy(data, kind, args.rounds)}, args.repeat)
    mip = mip_instance(args.mip_n)
    compare(f"MIP, {args.mip_n} integer columns, {args.rounds} re-solves after a bound change "
            "each", "re-solve nodes",
            {"zorvan": lambda: run_mip_zorvan(mip, args.rounds),
             "highspy": lambda: run_mip_highspy(mip, args.rounds)}, args.repeat)


if __name__ == "__main__":
    main()
