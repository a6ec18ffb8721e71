"""The engine's own branch-and-cut against HiGHS's MIP solver on ten small
generated MIPs (knapsack, set cover, facility location, lot sizing): the
optima must agree; nodes and times side by side, and the geometric mean of
the time ratios (target: at most 3)."""
import math
import random
import time

import zorvan


def knapsack(p, rng, n):
    w = [rng.randint(10, 60) for _ in range(n)]
    v = [wi + rng.randint(0, 15) for wi in w]
    x = [zorvan.var(vartype=zorvan.binary) for _ in range(n)]
    p.addVariable(x)
    p.addConstraint(zorvan.Sum(a * b for a, b in zip(w, x)) <= sum(w) // 2)
    p.setObjective(zorvan.Sum(a * b for a, b in zip(v, x)), sense=zorvan.maximize)


def set_cover(p, rng, elements, sets):
    x = [zorvan.var(vartype=zorvan.binary) for _ in range(sets)]
    p.addVariable(x)
    for e in range(elements):
        members = [s for s in range(sets) if rng.random() < 0.15 or s == (7 * e) % sets]
        p.addConstraint(zorvan.Sum(x[s] for s in members) >= 1)
    p.setObjective(zorvan.Sum(rng.randint(1, 9) * xi for xi in x))


def facility(p, rng, nf, nc):
    cap = (nc + 1) // 2
    y = [zorvan.var(vartype=zorvan.binary) for _ in range(nf)]
    x = [[zorvan.var(ub=1) for _ in range(nf)] for _ in range(nc)]
    p.addVariable(y, [v for row in x for v in row])
    for c in range(nc):
        p.addConstraint(zorvan.Sum(x[c]) == 1)
    for f in range(nf):
        p.addConstraint(zorvan.Sum(x[c][f] for c in range(nc)) <= cap * y[f])
    p.setObjective(zorvan.Sum(rng.randint(30, 60) * yf for yf in y) +
                   zorvan.Sum(rng.randint(1, 20) * x[c][f] for c in range(nc) for f in range(nf)))


def lot_sizing(p, rng, periods):
    demand = [rng.randint(5, 30) for _ in range(periods)]
    big = sum(demand)
    y = [zorvan.var(vartype=zorvan.binary) for _ in range(periods)]
    q = [zorvan.var(ub=big) for _ in range(periods)]
    s = [zorvan.var(ub=big) for _ in range(periods)]
    p.addVariable(y, q, s)
    for t in range(periods):
        p.addConstraint(q[t] <= big * y[t])
        p.addConstraint((s[t - 1] if t else 0) + q[t] - s[t] == demand[t])
    p.setObjective(zorvan.Sum(rng.randint(40, 90) * y[t] + rng.randint(1, 4) * q[t] + s[t]
                              for t in range(periods)))


INSTANCES = [
    ("knapsack-30", knapsack, (30,)), ("knapsack-45", knapsack, (45,)),
    ("setcover-40x25", set_cover, (40, 25)), ("setcover-60x35", set_cover, (60, 35)),
    ("setcover-80x40", set_cover, (80, 40)),
    ("facility-5x15", facility, (5, 15)), ("facility-6x20", facility, (6, 20)),
    ("lotsizing-12", lot_sizing, (12,)), ("lotsizing-18", lot_sizing, (18,)),
    ("lotsizing-24", lot_sizing, (24,)),
]


def solve(build, args, seed, search):
    p = zorvan.problem()
    p.setOutputEnabled(False)
    build(p, random.Random(seed), *args)
    p.setControl({"mipsearch": search, "miprelstop": 1e-9, "mipabsstop": 1e-9, "threads": 1})
    t = time.perf_counter()
    p.optimize()
    elapsed = time.perf_counter() - t
    return p.getObjVal(), p.getAttrib("nodes"), elapsed


def main():
    print(f"{'instance':16} {'optimum':>12} {'HiGHS nodes':>12} {'own nodes':>10} "
          f"{'HiGHS s':>9} {'own s':>9} {'ratio':>7}")
    logs = []
    for k, (name, build, args) in enumerate(INSTANCES):
        obj_h, nodes_h, t_h = solve(build, args, 100 + k, 0)
        obj_o, nodes_o, t_o = solve(build, args, 100 + k, 1)
        if abs(obj_h - obj_o) > 1e-6 * max(1.0, abs(obj_h)):
            raise SystemExit(f"{name}: optima differ ({obj_h} against {obj_o})")
        ratio = t_o / t_h
        logs.append(math.log(ratio))
        print(f"{name:16} {obj_h:12.4f} {nodes_h:12d} {nodes_o:10d} {t_h:9.4f} {t_o:9.4f} "
              f"{ratio:7.2f}")
    print(f"geometric mean of own/HiGHS time: {math.exp(sum(logs) / len(logs)):.2f} (target 3)")


if __name__ == "__main__":
    main()
