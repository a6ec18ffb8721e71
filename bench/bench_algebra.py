"""Building models with zorvan's operators against other Python modelling
layers, in one run on the same machine.

Cases: creating 10^6 variables; summing 10^6 terms; the constraints and
objective of a capacitated facility location MIP and of the linear-quadratic
control problem (lqcp), each at two sizes. Only the model objects are built
(nothing is handed to a solver). Peers without quadratic expressions (highspy,
PuLP) build the lqcp constraints and the linear part of its objective only;
zorvan's row in that case includes the quadratic objective. pyoptinterface
needs a HiGHS library to make a model: it loads the one from highsbox. linopy
builds whole arrays at once and has no per-element operators, so it is
measured by the array benchmark instead.

Peers are optional (pip install .[bench]); missing ones are skipped.
Run: .venv/bin/python bench/bench_algebra.py [--small]
"""
import sys

import zorvan as z

from timing import best_of, pyoptinterface_on_highs

try:
    import highspy
except ImportError:  # pragma: no cover
    highspy = None
try:
    import pulp
except ImportError:  # pragma: no cover
    pulp = None
poi, poi_highs = pyoptinterface_on_highs()
try:
    import pyomo.environ as pyo
except ImportError:  # pragma: no cover
    pyo = None


class Zorvan:
    name = "zorvan"
    quadratic = True

    def model(self):
        return None

    def variables(self, m, n, binary=False):
        t = z.binary if binary else z.continuous
        return [z.var(vartype=t) for _ in range(n)]

    def sum(self, m, items):
        return z.Sum(items)

    def constraint(self, m, c):
        return c


class Highs:
    name = "highspy"
    quadratic = False

    def model(self):
        h = highspy.Highs()
        h.silent()
        return h

    def variables(self, m, n, binary=False):
        if binary:
            return [m.addBinary() for _ in range(n)]
        return [m.addVariable() for _ in range(n)]

    def sum(self, m, items):
        return m.qsum(items)

    def constraint(self, m, c):
        return c


class Pulp:
    name = "pulp"
    quadratic = False

    def model(self):
        return pulp.LpProblem("bench", pulp.LpMinimize)

    def variables(self, m, n, binary=False):
        cat = pulp.LpBinary if binary else pulp.LpContinuous
        return [pulp.LpVariable(f"v{i}", lowBound=0, cat=cat) for i in range(n)]

    def sum(self, m, items):
        return pulp.lpSum(items)

    def constraint(self, m, c):
        return c


class PyOptInterface:
    name = "pyoptinterface"
    quadratic = True

    def model(self):
        m = poi_highs.Model()
        m.set_model_attribute(poi.ModelAttribute.Silent, True)
        return m

    def variables(self, m, n, binary=False):
        domain = poi.VariableDomain.Binary if binary else poi.VariableDomain.Continuous
        return [m.add_variable(lb=0.0, domain=domain) for _ in range(n)]

    def sum(self, m, items):
        return poi.quicksum(items)

    def constraint(self, m, c):
        return c


class Pyomo:
    name = "pyomo"
    quadratic = True
    counter = 0

    def model(self):
        return pyo.ConcreteModel()

    def variables(self, m, n, binary=False):
        domain = pyo.Binary if binary else pyo.NonNegativeReals
        v = pyo.Var(range(n), domain=domain)
        Pyomo.counter += 1
        m.add_component(f"v{Pyomo.counter}", v)
        return [v[i] for i in range(n)]

    def sum(self, m, items):
        return pyo.quicksum(items)

    def constraint(self, m, c):
        return c


def facility(b, nf, nc):
    """Capacitated facility location: open facilities y, assignments x."""
    m = b.model()
    demand = [1.0 + (c * 7) % 5 for c in range(nc)]
    cap = [sum(demand) / nf * 2.5] * nf
    fixed = [100.0 + (f * 13) % 50 for f in range(nf)]
    y = b.variables(m, nf, binary=True)
    x = [b.variables(m, nc) for _ in range(nf)]
    rows = []
    for c in range(nc):
        rows.append(b.constraint(m, b.sum(m, (x[f][c] for f in range(nf))) == 1))
    for f in range(nf):
        xf, yf = x[f], y[f]
        for c in range(nc):
            rows.append(b.constraint(m, xf[c] - yf <= 0))
        rows.append(b.constraint(
            m, b.sum(m, (demand[c] * xf[c] for c in range(nc))) - cap[f] * yf <= 0))
    obj = b.sum(m, (fixed[f] * y[f] for f in range(nf))) + b.sum(
        m, (float((f * 31 + c * 17) % 97) * x[f][c] for f in range(nf) for c in range(nc)))
    return rows, obj


def lqcp(b, n):
    """Linear-quadratic control of a discretised heat equation."""
    m = b.model()
    dx = 1.0 / n
    dt = 1.58 / n
    h2 = dx * dx
    a = 0.001
    yt = [0.5 * (1 - (j * dx) ** 2) for j in range(n + 1)]
    y = [b.variables(m, n + 1) for _ in range(n + 1)]
    u = b.variables(m, n + 1)
    rows = []
    for i in range(n):
        yi, yn = y[i], y[i + 1]
        for j in range(1, n):
            rows.append(b.constraint(
                m, (yn[j] - yi[j]) * (1 / dt)
                - (0.5 / h2) * (yi[j - 1] - 2 * yi[j] + yi[j + 1] + yn[j - 1] - 2 * yn[j] + yn[j + 1])
                == 0))
    for i in range(1, n + 1):
        yi = y[i]
        rows.append(b.constraint(m, yi[2] - 4 * yi[1] + 3 * yi[0] == 0))
        rows.append(b.constraint(
            m, yi[n - 2] - 4 * yi[n - 1] + 3 * yi[n] - 2 * dx * (u[i] - yi[n]) == 0))
    if b.quadratic:
        obj = b.sum(m, ((0.5 * dx) * (y[n][j] - yt[j]) ** 2 for j in range(n + 1))) + b.sum(
            m, ((0.5 * a * dt) * u[i] ** 2 for i in range(1, n + 1)))
    else:
        obj = b.sum(m, ((-dx * yt[j]) * y[n][j] for j in range(n + 1)))
    return rows, obj


def main():
    small = "--small" in sys.argv
    nvars = 10**5 if small else 10**6
    backends = [Zorvan()] + ([PyOptInterface()] if poi else []) + (
        [Highs()] if highspy else []) + ([Pyomo()] if pyo else []) + ([Pulp()] if pulp else [])

    def create(b):
        return lambda: b.variables(b.model(), nvars)

    def summing(b):
        m = b.model()
        xs = b.variables(m, nvars)
        coefs = [float(i % 13 + 1) for i in range(nvars)]
        return lambda: b.sum(m, (c * v for c, v in zip(coefs, xs)))

    sizes_f = [(20, 100), (50, 500)] if small else [(50, 200), (100, 1000)]
    sizes_l = [(50,), (100,)] if small else [(100,), (200,)]
    cases = [(f"create {nvars} variables", create), (f"Sum of {nvars} terms", summing)]
    for s in sizes_f:
        cases.append((f"facility {s[0]}x{s[1]}", lambda b, s=s: (lambda: facility(b, *s))))
    for s in sizes_l:
        cases.append((f"lqcp N={s[0]}", lambda b, s=s: (lambda: lqcp(b, *s))))

    print(f"{'case':28s}" + "".join(f"{b.name:>15s}" for b in backends) + "   ratios to zorvan")
    for title, make in cases:
        times = []
        for b in backends:
            try:
                times.append(best_of(1 if b.name in ("pulp", "pyomo") else 3, make(b)))
            except Exception as e:  # a peer without the feature
                print(f"  ({b.name}: {type(e).__name__}: {e})")
                times.append(float("nan"))
        ratios = " ".join(f"{b.name}={t / times[0]:.2f}" for b, t in zip(backends[1:], times[1:]))
        print(f"{title:28s}" + "".join(f"{t:14.3f}s" for t in times) + "   " + ratios)


if __name__ == "__main__":
    main()
