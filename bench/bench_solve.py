"""Building and solving whole models with zorvan against other Python
modelling layers on the same HiGHS, in one run.

Cases: the capacitated facility location MIP and the linear-quadratic control
problem (lqcp, a convex QP) of bench_algebra.py, built with the same model
generators. Every layer gets the same HiGHS options (one thread, the same MIP
gaps and tolerances, output off) and the same rows in the same order, and must
end optimal with the same objective (to 1e-6 relative). The columns come in
creation order too, except under Pyomo, which numbers them in order of first
use in the rows; its facility solve then takes another path through HiGHS.
The HiGHS iteration and node counts are printed, so a different path shows.

Each layer's time, from its first variable to the values read back, is split
into
  build  making the variables, expressions and constraint objects,
  hand   giving them to the engine (model components, translation to HiGHS
         where the layer does it inside its solve call),
  solve  the solve call (for zorvan this includes the engine copying its model
         into HiGHS),
  read   reading the values of all variables and the objective.
Each figure is the median of --reps runs (default 5); the total is the median
of the totals. Ratios compare zorvan's total with the fastest peer's and with
Pyomo's, and the same for the time besides the solve (build, hand and read),
the part a modelling layer decides: the HiGHS run is the same for all.

All layers run HiGHS 1.15.1: zorvan and pyoptinterface the library of
highsbox, highspy, Pyomo and PuLP the copy built into highspy.

PuLP and highspy's modelling layer have no quadratic objectives and run the
facility case only. Pyomo uses its HiGHS interface of pyomo.contrib.solver
("highs"), which takes quadratic objectives (the older appsi one does not).

The lqcp sizes are those at which HiGHS 1.15.1's QP solver ends optimal: from
N=30 on it stops with "unbounded" (or runs into a time limit) on this instance
under every layer alike, though the problem is bounded below by 0.

Peers are optional (pip install .[bench]); missing ones are skipped.
Run: .venv/bin/python bench/bench_solve.py [--small] [--reps N]
"""
import gc
import os
import statistics
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench_algebra as ba  # noqa: E402

import zorvan as z  # noqa: E402

try:
    from pyomo.common.timing import HierarchicalTimer
    from pyomo.contrib.solver.common.factory import SolverFactory as PyomoSolvers
except ImportError:  # pragma: no cover
    PyomoSolvers = None

# The HiGHS options every layer solves with.
HIGHS_OPTIONS = {
    "output_flag": False,
    "threads": 1,
    "random_seed": 0,
    "presolve": "on",
    "mip_rel_gap": 1e-6,
    "mip_abs_gap": 1e-6,
    "mip_feasibility_tolerance": 1e-6,
    "primal_feasibility_tolerance": 1e-7,
    "dual_feasibility_tolerance": 1e-7,
}
# The same settings as zorvan controls.
ZORVAN_CONTROLS = {
    "outputlog": 0,
    "threads": 1,
    "randomseed": 0,
    "presolve": 1,
    "miprelstop": 1e-6,
    "mipabsstop": 1e-6,
    "miptol": 1e-6,
    "feastol": 1e-7,
    "optimalitytol": 1e-7,
}


class NotOptimal(Exception):
    pass


def iterations(*counts):
    """HiGHS reports -1 for a count that does not apply."""
    return sum(max(c, 0) for c in counts)


def highs_path(info):
    """Simplex and QP iterations and MIP nodes of a HiGHS solve."""
    return (iterations(info.simplex_iteration_count, info.qp_iteration_count),
            iterations(info.mip_node_count))


class Layer:
    """A modelling layer: the generator hooks of bench_algebra plus hand,
    solve, read and path. `moved` holds seconds that the solve call spent
    handing the model over (hand) or loading results (read)."""

    def reset(self):
        self.vars = []
        self.m = None
        self.moved = {}

    def model(self):
        self.m = super().model()
        return self.m

    def variables(self, m, n, binary=False):
        vs = super().variables(m, n, binary)
        self.vars.extend(vs)
        return vs


class Zorvan(Layer, ba.Zorvan):
    def hand(self, rows, obj):
        p = z.problem()
        p.setControl(ZORVAN_CONTROLS)
        p.addVariable(self.vars)
        p.addConstraint(rows)
        p.setObjective(obj)
        return p

    def solve(self, p):
        p.optimize()
        # The engine's time inside HiGHS's run, without copying the model in
        # and the results out.
        self.highs_time = p.objattribs[0].solvetime
        status = p.getProbStatusString()
        if status not in ("lp_optimal", "mip_optimal"):
            raise NotOptimal(status)

    def read(self, p):
        return p.getSolution(self.vars), p.getObjVal()

    def path(self, p):
        a = p.attributes
        return a.simplexiter, a.nodes


class Highs(Layer, ba.Highs):
    def hand(self, rows, obj):
        h = self.m
        for k, v in HIGHS_OPTIONS.items():
            h.setOptionValue(k, v)
        h.addConstrs(rows)
        h.setObjective(obj)
        return h

    def solve(self, h):
        h.run()
        if h.getModelStatus() != ba.highspy.HighsModelStatus.kOptimal:
            raise NotOptimal(h.modelStatusToString(h.getModelStatus()))

    def read(self, h):
        return list(h.vals(self.vars)), h.getInfo().objective_function_value

    def path(self, h):
        return highs_path(h.getInfo())


class PyOptInterface(Layer, ba.PyOptInterface):
    def hand(self, rows, obj):
        m = self.m
        for k, v in HIGHS_OPTIONS.items():
            m.set_raw_parameter(k, v)
        for r in rows:
            m.add_linear_constraint(r)
        m.set_objective(obj, ba.poi.ObjectiveSense.Minimize)
        return m

    def solve(self, m):
        m.optimize()
        status = m.get_model_attribute(ba.poi.ModelAttribute.TerminationStatus)
        if status != ba.poi.TerminationStatusCode.OPTIMAL:
            raise NotOptimal(m.get_model_attribute(ba.poi.ModelAttribute.RawStatusString))

    def read(self, m):
        return ([m.get_value(v) for v in self.vars],
                m.get_model_attribute(ba.poi.ModelAttribute.ObjectiveValue))

    def path(self, m):
        return (iterations(m.get_raw_info_int("simplex_iteration_count"),
                           m.get_raw_info_int("qp_iteration_count")),
                iterations(m.get_raw_info_int64("mip_node_count")))


class Pyomo(Layer, ba.Pyomo):
    def hand(self, rows, obj):
        pyo = ba.pyo
        m = self.m
        m.rows = pyo.ConstraintList()
        for r in rows:
            m.rows.add(r)
        m.obj = pyo.Objective(expr=obj)
        return m

    def solve(self, m):
        # solve() translates the model (set_instance) before it runs HiGHS;
        # that part is counted as handing over.
        self.opt = PyomoSolvers("highs")
        timer = HierarchicalTimer()
        self.results = self.opt.solve(
            m, timer=timer, load_solutions=False, raise_exception_on_nonoptimal_result=False,
            solver_options=dict(HIGHS_OPTIONS))
        self.moved["hand"] = timer.get_total_time("set_instance")
        status = self.opt._solver_model.getModelStatus()
        if status != ba.highspy.HighsModelStatus.kOptimal:
            raise NotOptimal(str(self.results.termination_condition))

    def read(self, m):
        self.results.solution_loader.load_vars()
        return [v.value for v in self.vars], ba.pyo.value(m.obj)

    def path(self, m):
        return highs_path(self.opt._solver_model.getInfo())


if ba.pulp:
    class TimedPulpHighs(ba.pulp.HiGHS):
        """PuLP's HiGHS interface with its translation and its reading of the
        solution timed, so they count as handing over and reading."""

        def __init__(self, moved, **kwargs):
            super().__init__(**kwargs)
            self.moved = moved

        def buildSolverModel(self, lp):
            t = time.perf_counter()
            super().buildSolverModel(lp)
            self.moved["hand"] = time.perf_counter() - t

        def findSolutionValues(self, lp):
            t = time.perf_counter()
            status = super().findSolutionValues(lp)
            self.moved["read"] = time.perf_counter() - t
            return status


class Pulp(Layer, ba.Pulp):
    def variables(self, m, n, binary=False):
        # Names are unique (PuLP refuses repeated names) and sort in creation
        # order, since PuLP hands its columns to HiGHS sorted by name.
        first = len(self.vars)
        cat = ba.pulp.LpBinary if binary else ba.pulp.LpContinuous
        vs = [ba.pulp.LpVariable(f"v{first + i:08d}", lowBound=0, upBound=1 if binary else None,
                                 cat=cat) for i in range(n)]
        self.vars.extend(vs)
        return vs

    def hand(self, rows, obj):
        m = self.m
        m += obj
        for i, r in enumerate(rows):
            m += r, f"r{i}"
        return m

    def solve(self, m):
        options = {k: v for k, v in HIGHS_OPTIONS.items() if k != "output_flag"}
        self.solver = TimedPulpHighs(self.moved, msg=False, **options)
        m.solve(self.solver)
        if m.status != ba.pulp.LpStatusOptimal:
            raise NotOptimal(ba.pulp.LpStatus[m.status])

    def read(self, m):
        return [v.value() for v in self.vars], ba.pulp.value(m.objective)

    def path(self, m):
        return highs_path(m.solverModel.getInfo())


def measure(layer, generate):
    """One run: the four phases in seconds, the objective and the path."""
    layer.reset()
    gc.collect()
    t0 = time.perf_counter()
    rows, obj = generate(layer)
    t1 = time.perf_counter()
    handle = layer.hand(rows, obj)
    t2 = time.perf_counter()
    layer.solve(handle)
    t3 = time.perf_counter()
    values, objval = layer.read(handle)
    t4 = time.perf_counter()
    if len(values) != len(layer.vars):
        raise RuntimeError(f"read {len(values)} values of {len(layer.vars)} variables")
    hand_in_solve = layer.moved.get("hand", 0.0)
    read_in_solve = layer.moved.get("read", 0.0)
    split = {"build": t1 - t0, "hand": t2 - t1 + hand_in_solve,
             "solve": t3 - t2 - hand_in_solve - read_in_solve, "read": t4 - t3 + read_in_solve}
    return split, objval, layer.path(handle), getattr(layer, "highs_time", None)


PHASES = ("build", "hand", "solve", "read")


def run_case(layers, generate, reps):
    """Runs every layer reps times, taking turns so that a change in the
    machine's load hits all of them alike. Per layer: the runs, or the
    exception that stopped it."""
    runs = {layer.name: [] for layer in layers}
    for _ in range(reps):
        for layer in layers:
            if isinstance(runs[layer.name], Exception):
                continue
            try:
                runs[layer.name].append(measure(layer, generate))
            except Exception as e:  # a peer that cannot express or solve the model
                runs[layer.name] = e
    return runs


def summarise(runs):
    split = {k: statistics.median(r[0][k] for r in runs) for k in PHASES}
    total = statistics.median(sum(r[0].values()) for r in runs)
    besides = statistics.median(sum(r[0].values()) - r[0]["solve"] for r in runs)
    highs = [r[3] for r in runs if r[3] is not None]
    return (split, total, besides, [r[1] for r in runs], {r[2] for r in runs},
            statistics.median(highs) if highs else None)


def ratios(title, times):
    zt = times.get("zorvan")
    peers = {k: v for k, v in times.items() if k != "zorvan"}
    if not zt or not peers:
        return ""
    fastest = min(peers, key=peers.get)
    line = f"zorvan / fastest peer ({fastest}) {zt / peers[fastest]:5.2f}"
    if "pyomo" in peers:
        line += f"   pyomo / zorvan {peers['pyomo'] / zt:5.1f}"
    return line


def main():
    small = "--small" in sys.argv
    reps = 5
    if "--reps" in sys.argv:
        reps = int(sys.argv[sys.argv.index("--reps") + 1])
    layers = [Zorvan()]
    if ba.poi:
        layers.append(PyOptInterface())
    if ba.highspy:
        layers.append(Highs())
    if ba.pyo and PyomoSolvers and ba.highspy:
        layers.append(Pyomo())
    if ba.pulp and ba.highspy:
        layers.append(Pulp())
    # Sizes at which the facility MIP is solved at the root node and the
    # lqcp QP ends optimal, so that every layer does the same work in HiGHS.
    sizes_f = [(10, 50)] if small else [(10, 100), (20, 200)]
    sizes_l = [(15,)] if small else [(20,), (25,)]
    cases = [(f"facility {s[0]}x{s[1]}", lambda b, s=s: ba.facility(b, *s), False)
             for s in sizes_f]
    cases += [(f"lqcp N={s[0]}", lambda b, s=s: ba.lqcp(b, *s), True) for s in sizes_l]

    print(f"HiGHS options of every layer: {HIGHS_OPTIONS}")
    print(f"medians of {reps} runs, seconds; 'besides' is the total without the solve; "
          "'!' marks a HiGHS path (iterations/nodes) other than zorvan's\n")
    print(f"{'case':16s} {'layer':14s}" + "".join(f" {k:>8s}" for k in PHASES)
          + f" {'total':>8s} {'besides':>8s} {'objective':>16s} {'iter/nodes':>12s}")
    failures = []
    summary = []
    for title, generate, quadratic in cases:
        able = [layer for layer in layers if layer.quadratic or not quadratic]
        runs = run_case(able, generate, reps)
        totals, besides_solve = {}, {}
        reference = ref_path = highs_time = None
        for layer in layers:
            name = layer.name
            if name not in runs:
                print(f"{title:16s} {name:14s} n/a: no quadratic objectives")
                continue
            if isinstance(runs[name], Exception):
                e = runs[name]
                print(f"{title:16s} {name:14s} failed: {type(e).__name__}: {e}")
                failures.append(f"{title} {name}: {type(e).__name__}: {e}")
                continue
            split, total, besides, objvals, paths, highs = summarise(runs[name])
            if highs is not None:
                highs_time = highs
            reference = objvals[0] if reference is None else reference
            agree = all(abs(v - reference) <= 1e-6 * max(1.0, abs(reference)) for v in objvals)
            if not agree:
                failures.append(f"{title} {name}: objective {objvals} against {reference}")
            ref_path = ref_path or paths
            path = ",".join("/".join(str(x) for x in p) for p in sorted(paths))
            path += "" if paths == ref_path else "!"
            totals[name], besides_solve[name] = total, besides
            print(f"{title:16s} {name:14s}" + "".join(f" {split[k]:8.4f}" for k in PHASES)
                  + f" {total:8.4f} {besides:8.4f} {objvals[0]:16.10g} {path:>12s}"
                  + ("" if agree else "  OBJECTIVE DIFFERS"))
        summary.append(f"{title:16s} total:   {ratios(title, totals)}")
        summary.append(f"{'':16s} besides: {ratios(title, besides_solve)}")
        if highs_time and "pyomo" in totals:
            # No layer's total is below the HiGHS run itself.
            bound = totals["pyomo"] / highs_time
            summary.append(f"{'':16s} HiGHS run in zorvan's solve {highs_time:.4f}s: "
                           f"pyomo / zorvan cannot exceed {bound:.1f}")
    print()
    for line in summary:
        print(line)
    if failures:
        print("\nfailures:\n  " + "\n  ".join(failures))
        sys.exit(1)


if __name__ == "__main__":
    main()
