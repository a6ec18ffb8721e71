"""Re-solves after small changes: zorvan (whose engine keeps its HiGHS
instance with the problem and hands it only the changes) against highspy
keeping one HiGHS instance, on the same model.

LP: a sparse random LP (n columns, n rows, about 8 entries per column,
maximise c.x subject to A x <= b, 0 <= x <= 10) is solved once, then
re-solved --rounds times, each after changing the costs of 5 columns
(through zorvan's setObjective).

MIP: a random integer knapsack with several rows (--mip-n integer columns in
[0, 5], 8 rows, maximise c.x) is solved once, then re-solved --rounds times,
each after changing the upper bound of one column. The Python module has no
call that changes a bound of a column already in a problem, so this part
drives the engine through its C interface (ZRVSchgbounds, ZRVSmipoptimize).

Each side runs --repeat times, interleaved; a round's time is its best over
the repeats (the machine may be shared), and the table gives the first solve,
the median re-solve and the total simplex iterations (LP) or nodes (MIP) of
the re-solves. Objectives must agree to 1e-9 relative.

Run: .venv/bin/python bench/bench_resolve.py [--n N] [--rounds R] [--repeat K]
(highspy comes with the bench extra: pip install .[bench]).
"""
import argparse
import ctypes
import os
import random
import statistics
import time

import numpy as np

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


def mip_instance(n, seed=11):
    rng = random.Random(seed)
    m = 8
    a = [[rng.uniform(1, 10) for _ in range(n)] for _ in range(m)]
    b = [sum(row) * 1.2 for row in a]
    c = [rng.uniform(5, 15) for _ in range(n)]
    changes = [(rng.randrange(n), float(rng.randrange(0, 6))) for _ in range(100)]
    return a, b, c, changes


def engine_library():
    lib = ctypes.CDLL(os.path.join(os.path.dirname(z.__file__), "libzorvan.so"))
    p, dbl = ctypes.c_void_p, ctypes.c_double
    dbl_p = np.ctypeslib.ndpointer(np.float64, flags="C_CONTIGUOUS")
    i32_p = np.ctypeslib.ndpointer(np.int32, flags="C_CONTIGUOUS")
    i64_p = np.ctypeslib.ndpointer(np.int64, flags="C_CONTIGUOUS")
    lib.ZRVSinit.argtypes = [ctypes.c_char_p]
    lib.ZRVScreateprob.argtypes = [ctypes.POINTER(p)]
    lib.ZRVSdestroyprob.argtypes = [p]
    lib.ZRVSsetintcontrol.argtypes = [p, ctypes.c_int, ctypes.c_int]
    lib.ZRVSsetdblcontrol.argtypes = [p, ctypes.c_int, dbl]
    lib.ZRVSaddrows64.argtypes = [p, ctypes.c_int, ctypes.c_int64, ctypes.c_char_p, dbl_p,
                                  p, p, p, p]
    lib.ZRVSaddcols64.argtypes = [p, ctypes.c_int, ctypes.c_int64, dbl_p, i64_p, i32_p, dbl_p,
                                  dbl_p, dbl_p]
    lib.ZRVSchgcoltype.argtypes = [p, ctypes.c_int, i32_p, ctypes.c_char_p]
    lib.ZRVSchgobjsense.argtypes = [p, ctypes.c_int]
    lib.ZRVSchgbounds.argtypes = [p, ctypes.c_int, i32_p, ctypes.c_char_p, dbl_p]
    lib.ZRVSmipoptimize.argtypes = [p, ctypes.c_char_p]
    lib.ZRVSgetdblattrib.argtypes = [p, ctypes.c_int, ctypes.POINTER(dbl)]
    lib.ZRVSgetintattrib.argtypes = [p, ctypes.c_int, ctypes.POINTER(ctypes.c_int)]
    return lib


# Identifiers of the engine's public header.
OUTPUTLOG, THREADS, MIPABSSTOP, MIPRELSTOP = 8035, 8278, 7002, 7003
MIPOBJVAL, NODES, OBJ_MAXIMIZE = 2003, 1502, -1


def run_mip_engine(data, rounds):
    a, b, c, changes = data
    n, m = len(c), len(b)
    lib = engine_library()
    assert lib.ZRVSinit(None) == 0
    prob = ctypes.c_void_p()
    assert lib.ZRVScreateprob(ctypes.byref(prob)) == 0
    try:
        lib.ZRVSsetintcontrol(prob, OUTPUTLOG, 0)
        lib.ZRVSsetintcontrol(prob, THREADS, 1)
        lib.ZRVSsetdblcontrol(prob, MIPABSSTOP, 0.0)
        lib.ZRVSsetdblcontrol(prob, MIPRELSTOP, 0.0)
        assert lib.ZRVSaddrows64(prob, m, 0, b"L" * m, np.array(b), None, None, None,
                                 None) == 0
        start = np.arange(0, m * n + 1, m, dtype=np.int64)
        index = np.tile(np.arange(m, dtype=np.int32), n)
        value = np.array(a).T.ravel().copy()
        assert lib.ZRVSaddcols64(prob, n, m * n, np.array(c), start, index, value,
                                 np.zeros(n), np.full(n, 5.0)) == 0
        assert lib.ZRVSchgcoltype(prob, n, np.arange(n, dtype=np.int32), b"I" * n) == 0
        assert lib.ZRVSchgobjsense(prob, OBJ_MAXIMIZE) == 0
        value, count = ctypes.c_double(), ctypes.c_int()

        def solve():
            t = time.perf_counter()
            assert lib.ZRVSmipoptimize(prob, b"") == 0
            elapsed = time.perf_counter() - t
            lib.ZRVSgetdblattrib(prob, MIPOBJVAL, ctypes.byref(value))
            lib.ZRVSgetintattrib(prob, NODES, ctypes.byref(count))
            return elapsed, value.value, count.value

        first, obj, _ = solve()
        times, nodes, objs = [], 0, [obj]
        for j, ub in changes[:rounds]:
            lib.ZRVSchgbounds(prob, 1, np.array([j], dtype=np.int32), b"U", np.array([ub]))
            elapsed, obj, count_ = solve()
            times.append(elapsed)
            nodes += count_
            objs.append(obj)
        return first, times, nodes, objs
    finally:
        lib.ZRVSdestroyprob(prob)
        lib.ZRVSfree()


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
    compare(f"LP, n = {args.n}, {args.rounds} re-solves after 5 cost changes each",
            "re-solve iters",
            {"zorvan": lambda: run_zorvan(data, args.rounds),
             "highspy": lambda: run_highspy(data, args.rounds)}, args.repeat)
    mip = mip_instance(args.mip_n)
    compare(f"MIP, {args.mip_n} integer columns, {args.rounds} re-solves after a bound change "
            "each", "re-solve nodes",
            {"zorvan": lambda: run_mip_engine(mip, args.rounds),
             "highspy": lambda: run_mip_highspy(mip, args.rounds)}, args.repeat)


if __name__ == "__main__":
    main()
