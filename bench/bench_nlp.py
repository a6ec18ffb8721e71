"""Building and solving nonlinear models with zorvan against casadi (Opti, its
bundled Ipopt), in one run; scipy.optimize as the floor at small sizes.

Models (both layers build them with the same scalar loops a user writes):
  clnlbeam  N pieces: 3(N+1) variables, 2N nonlinear equality rows, an
            objective with N cosines and 2N squares (optimum 350 for every N
            from the start used here, t = x = 0.05 cos(ih), u = 0);
  rosen     the chained Rosenbrock function of n variables, unconstrained,
            from x = 0; optimum 0 at x = 1.
Each layer's time from its first variable to the values read back is split
into
  build  variables, expressions, constraints and objective, handed to the
         layer (for zorvan: to the engine);
  solve  the solve call: for zorvan the formulas' compilation and Ipopt, for
         casadi the solver's construction (its derivative functions) and Ipopt;
  read   the values of all variables.
Beside them: Ipopt's iterations and the time spent in function and
derivative evaluations inside Ipopt (zorvan: the attribute zslp_nlpevaltime;
casadi: its nlp_f, nlp_g, nlp_grad_f, nlp_jac_g and nlp_hess_l timers), also
per iteration.
The Ipopt versions differ: zorvan links Debian's 3.11.9 (MUMPS), casadi bundles
its own (3.14, MUMPS); both run with tol 1e-8 and print level 0.

Ratios: zorvan's build and total over casadi's.
Run: .venv/bin/python bench/bench_nlp.py [--small] [--reps N]
"""
import argparse
import gc
import math
import statistics
import sys
import time

import zorvan as z

try:
    import casadi
except ImportError:  # pragma: no cover
    casadi = None
try:
    import numpy as np
    from scipy import optimize as sciopt
except ImportError:  # pragma: no cover
    sciopt = None

ALPHA = 350.0


def clnlbeam_start(N):
    h = 1.0 / N
    return [0.05 * math.cos(i * h) for i in range(N + 1)]


def rosen_start(n):
    return [0.0] * n


# --- zorvan ---------------------------------------------------------------------

def set_start(p, variables, values):
    """The start point: each variable's value for the first iterate."""
    p.nlpsetinitval(variables, values)


def zorvan_clnlbeam(N):
    h = 1.0 / N
    t0 = time.perf_counter()
    t = [z.var(lb=-1, ub=1) for _ in range(N + 1)]
    x = [z.var(lb=-0.05, ub=0.05) for _ in range(N + 1)]
    u = [z.var(lb=-1e20) for _ in range(N + 1)]
    p = z.problem()
    p.addVariable(t, x, u)
    p.addConstraint([x[i + 1] - x[i] - 0.5 * h * (z.sin(t[i + 1]) + z.sin(t[i])) == 0
                     for i in range(N)])
    p.addConstraint([t[i + 1] - t[i] - 0.5 * h * u[i + 1] - 0.5 * h * u[i] == 0
                     for i in range(N)])
    p.setObjective(z.Sum(0.5 * h * (u[i + 1] ** 2 + u[i] ** 2)
                         + 0.5 * ALPHA * h * (z.cos(t[i + 1]) + z.cos(t[i])) for i in range(N)))
    start = clnlbeam_start(N)
    return p, t + x + u, start + start + [0.0] * (N + 1), t0


def zorvan_rosen(n):
    t0 = time.perf_counter()
    x = [z.var(lb=-1e20) for _ in range(n)]
    p = z.problem()
    p.addVariable(x)
    p.setObjective(z.Sum(100 * (x[i + 1] - x[i] ** 2) ** 2 + (1 - x[i]) ** 2
                         for i in range(n - 1)))
    return p, x, rosen_start(n), t0


def run_zorvan(make, size):
    p, variables, start, t0 = make(size)
    p.controls.outputlog = 0
    set_start(p, variables, start)
    t1 = time.perf_counter()
    p.optimize()
    t2 = time.perf_counter()
    values = p.getSolution()
    t3 = time.perf_counter()
    assert len(values) == len(variables)
    return dict(build=t1 - t0, solve=t2 - t1, read=t3 - t2, obj=p.getObjVal(),
                status=p.getProbStatusString(), iter=p.attributes.zslp_nlpiter,
                deriv=p.attributes.zslp_nlpevaltime)


# --- casadi -----------------------------------------------------------------------

def casadi_clnlbeam(N):
    h = 1.0 / N
    t0 = time.perf_counter()
    opti = casadi.Opti()
    t = [opti.variable() for _ in range(N + 1)]
    x = [opti.variable() for _ in range(N + 1)]
    u = [opti.variable() for _ in range(N + 1)]
    for i in range(N + 1):
        opti.subject_to(opti.bounded(-1, t[i], 1))
        opti.subject_to(opti.bounded(-0.05, x[i], 0.05))
    for i in range(N):
        opti.subject_to(x[i + 1] - x[i] - 0.5 * h * (casadi.sin(t[i + 1]) + casadi.sin(t[i])) == 0)
        opti.subject_to(t[i + 1] - t[i] - 0.5 * h * u[i + 1] - 0.5 * h * u[i] == 0)
    opti.minimize(sum(0.5 * h * (u[i + 1] ** 2 + u[i] ** 2)
                      + 0.5 * ALPHA * h * (casadi.cos(t[i + 1]) + casadi.cos(t[i]))
                      for i in range(N)))
    start = clnlbeam_start(N)
    for i in range(N + 1):
        opti.set_initial(t[i], start[i])
        opti.set_initial(x[i], start[i])
    return opti, t + x + u, t0


def casadi_rosen(n):
    t0 = time.perf_counter()
    opti = casadi.Opti()
    x = [opti.variable() for _ in range(n)]
    opti.minimize(sum(100 * (x[i + 1] - x[i] ** 2) ** 2 + (1 - x[i]) ** 2
                      for i in range(n - 1)))
    for v, s in zip(x, rosen_start(n)):
        opti.set_initial(v, s)
    return opti, x, t0


def run_casadi(make, size):
    opti, variables, t0 = make(size)
    opti.solver("ipopt", {"print_time": False}, {"print_level": 0, "sb": "yes", "tol": 1e-8})
    t1 = time.perf_counter()
    sol = opti.solve()
    t2 = time.perf_counter()
    values = [sol.value(v) for v in variables]
    t3 = time.perf_counter()
    assert len(values) == len(variables)
    stats = sol.stats()
    deriv = sum(stats.get(f"t_wall_{k}", 0.0)
                for k in ("nlp_f", "nlp_g", "nlp_grad_f", "nlp_jac_g", "nlp_hess_l"))
    return dict(build=t1 - t0, solve=t2 - t1, read=t3 - t2, obj=float(sol.value(opti.f)),
                status=stats["return_status"], iter=stats["iter_count"], deriv=deriv)


# --- scipy (floor) ------------------------------------------------------------------

def scipy_rosen(n):
    t0 = time.perf_counter()
    res = sciopt.minimize(sciopt.rosen, np.array(rosen_start(n)), jac=sciopt.rosen_der,
                          hess=sciopt.rosen_hess, method="trust-ncg",
                          options={"gtol": 1e-8})
    t1 = time.perf_counter()
    return dict(build=0.0, solve=t1 - t0, read=0.0, obj=res.fun, status=str(res.success),
                iter=res.nit, deriv=float("nan"))


def scipy_clnlbeam(N):
    h = 1.0 / N
    t0 = time.perf_counter()

    def split(v):
        return v[:N + 1], v[N + 1:2 * N + 2], v[2 * N + 2:]

    def objective(v):
        t, _, u = split(v)
        return (0.5 * h * np.sum(u[1:] ** 2 + u[:-1] ** 2)
                + 0.5 * ALPHA * h * np.sum(np.cos(t[1:]) + np.cos(t[:-1])))

    def equalities(v):
        t, x, u = split(v)
        return np.concatenate((x[1:] - x[:-1] - 0.5 * h * (np.sin(t[1:]) + np.sin(t[:-1])),
                               t[1:] - t[:-1] - 0.5 * h * (u[1:] + u[:-1])))

    start = np.array(clnlbeam_start(N) * 2 + [0.0] * (N + 1))
    bounds = [(-1, 1)] * (N + 1) + [(-0.05, 0.05)] * (N + 1) + [(None, None)] * (N + 1)
    res = sciopt.minimize(objective, start, method="SLSQP", bounds=bounds,
                          constraints=[{"type": "eq", "fun": equalities}],
                          options={"maxiter": 1000, "ftol": 1e-10})
    t1 = time.perf_counter()
    return dict(build=0.0, solve=t1 - t0, read=0.0, obj=res.fun, status=str(res.success),
                iter=res.nit, deriv=float("nan"))


# --- driver ---------------------------------------------------------------------------

def median_run(run, make, size, reps):
    runs = []
    for _ in range(reps):
        gc.collect()
        runs.append(run(make, size) if make else run(size))
    out = dict(runs[-1])
    for k in ("build", "solve", "read"):
        out[k] = statistics.median(r[k] for r in runs)
    out["total"] = statistics.median(r["build"] + r["solve"] + r["read"] for r in runs)
    return out


def show(model, size, layer, r):
    print(f"{model:9s} {size:>7d} {layer:7s} build {r['build']:8.3f}s  solve {r['solve']:8.3f}s  "
          f"read {r['read']:7.3f}s  total {r['total']:8.3f}s  iter {r['iter']!s:>5}  "
          f"deriv {r['deriv']:7.3f}s ({1e3 * r['deriv'] / max(1, r['iter']):.2f} ms/iter)  "
          f"obj {r['obj']:.8g}  {r['status']}")


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--small", action="store_true", help="only the smallest sizes")
    ap.add_argument("--reps", type=int, default=3)
    args = ap.parse_args()
    cases = [("clnlbeam", zorvan_clnlbeam, casadi_clnlbeam, scipy_clnlbeam,
              [1000, 10000, 100000], 200),
             ("rosen", zorvan_rosen, casadi_rosen, scipy_rosen, [10000, 100000], 100000)]
    for model, zmake, cmake, sfloor, sizes, scipy_max in cases:
        for size in sizes[:1] if args.small else sizes:
            reps = args.reps if size <= 10000 else 1
            rz = median_run(run_zorvan, zmake, size, reps)
            show(model, size, "zorvan", rz)
            if casadi is not None:
                rc = median_run(run_casadi, cmake, size, reps)
                show(model, size, "casadi", rc)
                print(f"{'':17s} ratios zorvan/casadi: build {rz['build'] / rc['build']:.3f}  "
                      f"total {rz['total'] / rc['total']:.3f}")
            if sciopt is not None and size <= scipy_max:
                show(model, size, "scipy", median_run(sfloor, None, size, 1))
        if sciopt is not None and model == "clnlbeam":
            show(model, scipy_max, "scipy", median_run(sfloor, None, scipy_max, 1))
            show(model, scipy_max, "zorvan", median_run(run_zorvan, zmake, scipy_max, 1))
        sys.stdout.flush()


if __name__ == "__main__":
    main()
