"""First-order optimality of a solved problem, checked from outside: the
gradients come from central differences of zorvan.evaluate, the multipliers
from getDual and getRCost (d = grad f - J^T y, as for linear programs)."""
import zorvan as z


def gradient(expr, point, variables, h=1e-6):
    g = []
    for v in variables:
        hi, lo = dict(point), dict(point)
        hi[v] += h
        lo[v] -= h
        g.append((z.evaluate(expr, solution=hi) - z.evaluate(expr, solution=lo)) / (2 * h))
    return g


def kkt_residuals(p, objective, constraints, variables, sense=1):
    """Stationarity, sign and complementarity violations at p's solution for
    min sense*objective s.t. the constraints (bodies with bounds lb/ub) and
    the variables' bounds. Returns the largest of each kind."""
    x = p.getSolution(variables)
    point = dict(zip(variables, x))
    duals = p.getDual(constraints) if constraints else []
    rcost = p.getRCost(variables)
    grad = [sense * gi for gi in gradient(objective, point, variables)]
    for y, c in zip(duals, constraints):
        gc = gradient(c.body, point, variables)
        grad = [g - sense * y * d for g, d in zip(grad, gc)]
    stationarity = max(abs(g - sense * d) for g, d in zip(grad, rcost))
    sign = compl = 0.0
    for y, c in zip(duals, constraints):
        act = z.evaluate(c.body, solution=point)
        ys = sense * y
        if c.lb == c.ub:
            continue
        if c.ub < 1e20 and c.lb <= -1e20:      # body <= ub: y <= 0
            sign = max(sign, ys)
            compl = max(compl, abs(ys * (c.ub - act)))
        elif c.lb > -1e20 and c.ub >= 1e20:    # body >= lb: y >= 0
            sign = max(sign, -ys)
            compl = max(compl, abs(ys * (act - c.lb)))
    for d, v, xv in zip(rcost, variables, x):
        ds = sense * d
        at_lb = v.lb > -1e20 and abs(xv - v.lb) < 1e-5
        at_ub = v.ub < 1e20 and abs(xv - v.ub) < 1e-5
        if at_lb and not at_ub:
            sign = max(sign, -ds)
        elif at_ub and not at_lb:
            sign = max(sign, ds)
        elif not at_lb and not at_ub:
            compl = max(compl, abs(ds))
    return stationarity, sign, compl


def assert_kkt(p, objective, constraints, variables, sense=1, tol=1e-4):
    st, sign, compl = kkt_residuals(p, objective, constraints, variables, sense)
    scale = 1 + max(abs(v) for v in p.getSolution(variables))
    assert st < tol * scale, f"stationarity {st}"
    assert sign < tol * scale, f"multiplier signs {sign}"
    assert compl < tol * scale, f"complementarity {compl}"
