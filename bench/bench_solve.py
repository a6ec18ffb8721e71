"""Building and solving whole models with zorvan against other Python
modelling layers on the same HiGHS, in one run.

Cases: the capacitated facility location MIP and the linear-quadratic control
problem (lqcp, a convex QP) of bench_algebra.py, built with the same model
generators. Each layer's time is split into building the model objects,
handing them to the engine, solving, and reading the values of all variables
back. PuLP and highspy's modelling layer have no quadratic objectives and
run the facility case only.

Peers are optional (pip install .[bench]); missing ones are skipped.
Run: .venv/bin/python bench/bench_solve.py [--small]
"""
import gc
import os
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench_algebra as ba  # noqa: E402

import zorvan as z  # noqa: E402


class Recorder:
    """Keeps every variable and the model a generator makes."""

    def reset(self):
        self.vars = []
        self.m = None

    def model(self):
        self.m = super().model()
        return self.m

    def variables(self, m, n, binary=False):
        vs = super().variables(m, n, binary)
        self.vars.extend(vs)
        return vs


class Zorvan(Recorder, ba.Zorvan):
    def hand(self, rows, obj):
        p = z.problem()
        p.setOutputEnabled(False)
        p.addVariable(self.vars)
        p.addConstraint(rows)
        p.setObjective(obj)
        return p

    def solve(self, p):
        p.optimize()

    def read(self, p):
        return p.getSolution(), p.getObjVal()


class Highs(Recorder, ba.Highs):
    def hand(self, rows, obj):
        h = self.m
        h.addConstrs(rows)
        h.setObjective(obj)
        return h

    def solve(self, h):
        h.run()

    def read(self, h):
        return list(h.getSolution().col_value), h.getInfo().objective_function_value


class Pulp(Recorder, ba.Pulp):
    def hand(self, rows, obj):
        m = self.m
        m += obj
        for i, r in enumerate(rows):
            m += r, f"r{i}"
        return m

    def solve(self, m):
        m.solve(ba.pulp.HiGHS(msg=False))

    def read(self, m):
        return [v.value() for v in self.vars], ba.pulp.value(m.objective)


class PyOptInterface(Recorder, ba.PyOptInterface):
    def hand(self, rows, obj):
        m = self.m
        for r in rows:
            m.add_linear_constraint(r)
        m.set_objective(obj, ba.poi.ObjectiveSense.Minimize)
        return m

    def solve(self, m):
        m.optimize()

    def read(self, m):
        value = ba.poi.VariableAttribute.Value
        return ([m.get_variable_attribute(v, value) for v in self.vars],
                m.get_model_attribute(ba.poi.ModelAttribute.ObjectiveValue))


class Pyomo(Recorder, ba.Pyomo):
    def hand(self, rows, obj):
        pyo = ba.pyo
        m = self.m
        m.rows = pyo.ConstraintList()
        for r in rows:
            m.rows.add(r)
        m.obj = pyo.Objective(expr=obj)
        return m

    def solve(self, m):
        ba.pyo.SolverFactory("appsi_highs").solve(m)

    def read(self, m):
        return [ba.pyo.value(v) for v in self.vars], ba.pyo.value(m.obj)


def measure(b, generate):
    b.reset()
    gc.collect()
    t0 = time.perf_counter()
    rows, obj = generate(b)
    t1 = time.perf_counter()
    handle = b.hand(rows, obj)
    t2 = time.perf_counter()
    b.solve(handle)
    t3 = time.perf_counter()
    values, objval = b.read(handle)
    t4 = time.perf_counter()
    return (t1 - t0, t2 - t1, t3 - t2, t4 - t3), objval, len(values)


def main():
    small = "--small" in sys.argv
    backends = [Zorvan()]
    if ba.poi:
        backends.append(PyOptInterface())
    if ba.highspy:
        backends.append(Highs())
    if ba.pyo:
        backends.append(Pyomo())
    if ba.pulp:
        backends.append(Pulp())
    sizes_f = [(10, 50)] if small else [(20, 100), (40, 200)]
    sizes_l = [(30,)] if small else [(50,), (100,)]
    cases = [(f"facility {s[0]}x{s[1]}", lambda b, s=s: ba.facility(b, *s), False)
             for s in sizes_f]
    cases += [(f"lqcp N={s[0]}", lambda b, s=s: ba.lqcp(b, *s), True) for s in sizes_l]
    print(f"{'case':18s} {'layer':15s} {'build':>8s} {'hand':>8s} {'solve':>8s} {'read':>8s}"
          f" {'total':>8s} {'objective':>14s}  ratio to zorvan")
    for title, generate, quadratic in cases:
        base = None
        for b in backends:
            if quadratic and not b.quadratic:
                continue
            try:
                split, objval, n = measure(b, generate)
            except Exception as e:  # a peer that cannot express or solve the model
                print(f"{title:18s} {b.name:15s} failed: {type(e).__name__}: {e}")
                continue
            total = sum(split)
            base = base or total
            print(f"{title:18s} {b.name:15s}" + "".join(f" {t:8.3f}" for t in split)
                  + f" {total:8.3f} {objval:14.6g}  {total / base:6.2f}")


if __name__ == "__main__":
    main()
