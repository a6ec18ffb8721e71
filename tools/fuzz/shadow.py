"""The shadow model: a plain-Python copy of what a zorvan problem should hold
after a sequence of operations, and its own solution by scipy and enumeration.

Nothing here imports zorvan: the shadow is updated by the same operations as
the problem, but through its own bookkeeping, so that a fault in the module's
index maps, deletions, file round trips or copies shows up as a difference.
"""
import copy
import itertools
import math

import numpy as np
from scipy.optimize import Bounds, LinearConstraint, linprog, milp, minimize

INF = 1e20
DISCRETE = ("B", "I", "S")


def is_inf(v):
    return v >= INF or v <= -INF


def finite(v):
    """A bound as numpy sees it: infinite beyond +-1e20."""
    if v >= INF:
        return np.inf
    if v <= -INF:
        return -np.inf
    return float(v)


def var_bounds(kind, lb, ub):
    """Bounds a new variable gets from its constructor: binaries have ub 1 by
    default and integer types round their bounds inwards (when ub >= lb)."""
    if kind == "B" and ub >= INF:
        ub = 1.0
    if kind in ("B", "I") and ub >= lb:
        lb, ub = float(math.ceil(lb)), float(math.floor(ub))
    return lb, ub


class Shadow:
    """Columns, rows, sets, indicators and the objective of one problem."""

    def __init__(self):
        self.cols = []          # variable ids in column order
        self.col = {}           # vid -> {"kind", "lb", "ub", "thr"} as in the problem
        self.obj_attr = {}      # vid -> the variable object's own attributes
        self.rows = []          # constraint ids in row order
        self.row = {}           # cid -> {"coefs": {vid: a}, "lb", "ub", "ind": None | [vid, val]}
        self.sets = []          # set ids in order
        self.sos = {}           # sid -> {"type", "vids", "weights"}
        self.obj = {"lin": {}, "quad": {}, "const": 0.0, "sense": 1}
        self.con_objs = set()   # constraint ids ever created (never re-added)
        self.sos_objs = set()   # set ids ever created

    def clone(self):
        return copy.deepcopy(self)

    # ----- questions the generator and the checks ask -----
    def is_mip(self):
        return (any(self.col[v]["kind"] in DISCRETE for v in self.cols) or bool(self.sets)
                or any(self.row[c]["ind"] for c in self.rows))

    def has_quad(self):
        return any(c != 0 for c in self.obj["quad"].values())

    def bad_bound_cols(self):
        return [v for v in self.cols if self.col[v]["lb"] >= INF or self.col[v]["ub"] <= -INF]

    def pinned(self, vid):
        """A variable that a set or an indicator depends on (not deleted)."""
        return (any(vid in self.sos[s]["vids"] for s in self.sets)
                or any(self.row[c]["ind"] and self.row[c]["ind"][0] == vid for c in self.rows))

    def indicator_rows(self):
        return [c for c in self.rows if self.row[c]["ind"]]

    # ----- the operations -----
    def add_col(self, vid, attrs):
        self.cols.append(vid)
        self.col[vid] = dict(attrs)

    def del_cols(self, vids):
        for v in vids:
            self.cols.remove(v)
            del self.col[v]
            for c in self.rows:
                self.row[c]["coefs"].pop(v, None)
            self.obj["lin"].pop(v, None)
            self.obj["quad"] = {k: q for k, q in self.obj["quad"].items() if v not in k}

    def add_row(self, cid, coefs, lb, ub, ind=None):
        self.rows.append(cid)
        self.row[cid] = {"coefs": dict(coefs), "lb": lb, "ub": ub, "ind": ind}

    def del_rows(self, cids):
        for c in cids:
            self.rows.remove(c)
            del self.row[c]

    def add_set(self, sid, stype, vids, weights):
        self.sets.append(sid)
        self.sos[sid] = {"type": stype, "vids": list(vids), "weights": list(weights)}

    def del_sets(self, sids):
        for s in sids:
            self.sets.remove(s)
            del self.sos[s]

    def set_objective(self, lin, quad, const, sense):
        live = set(self.cols)
        self.obj = {"lin": {v: a for v, a in lin.items() if v in live},
                    "quad": {k: q for k, q in quad.items() if k[0] in live and k[1] in live},
                    "const": const, "sense": sense}

    # ----- evaluation at a point -----
    def objective_at(self, x):
        pos = {v: j for j, v in enumerate(self.cols)}
        val = self.obj["const"]
        for v, a in self.obj["lin"].items():
            val += a * x[pos[v]]
        for (u, v), q in self.obj["quad"].items():
            val += q * x[pos[u]] * x[pos[v]]
        return val

    def activity(self, cid, x):
        pos = {v: j for j, v in enumerate(self.cols)}
        return sum(a * x[pos[v]] for v, a in self.row[cid]["coefs"].items())

    def violations(self, x, relaxed=False, tol=1e-6):
        """What a point breaks: bounds, rows, integrality, thresholds, sets,
        indicators. With relaxed, only what the LP relaxation keeps."""
        out = []
        pos = {v: j for j, v in enumerate(self.cols)}
        for v in self.cols:
            c, xv = self.col[v], x[pos[v]]
            lb, ub = finite(c["lb"]), finite(c["ub"])
            t = tol * max(1.0, abs(xv))
            if c["kind"] == "S" and not relaxed:
                low = max(lb, c["thr"])
                if abs(xv) > t and (xv < low - t or xv > ub + t):
                    out.append(f"{v}={xv} outside 0 or [{low}, {ub}]")
                continue
            if c["kind"] == "S":
                lb = min(lb, 0.0)
            if xv < lb - t or xv > ub + t:
                out.append(f"{v}={xv} outside [{lb}, {ub}]")
            if c["kind"] in ("B", "I") and not relaxed and abs(xv - round(xv)) > 1e-5:
                out.append(f"{v}={xv} not integral")
        for cid in self.rows:
            r = self.row[cid]
            if r["ind"]:
                if relaxed:
                    continue
                b, val = r["ind"]
                if abs(x[pos[b]] - val) > 0.5:
                    continue
            act = self.activity(cid, x)
            scale = 1.0 + sum(abs(a * x[pos[v]]) for v, a in r["coefs"].items())
            if act < finite(r["lb"]) - tol * scale or act > finite(r["ub"]) + tol * scale:
                out.append(f"row {cid}: {act} outside [{r['lb']}, {r['ub']}]"
                           + (f" (indicator {r['ind']})" if r["ind"] else ""))
        if not relaxed:
            for s in self.sets:
                nz = [k for k, v in enumerate(self.sorted_set(s))
                      if abs(x[pos[v]]) > 1e-6 * max(1.0, abs(x[pos[v]]))]
                st = self.sos[s]["type"]
                if (st == 1 and len(nz) > 1) or (st == 2 and (len(nz) > 2 or (len(nz) == 2 and nz[1] != nz[0] + 1))):
                    out.append(f"set {s} (type {st}) has non-zeros at {nz}")
        return out

    def sorted_set(self, sid):
        s = self.sos[sid]
        return [v for _, v in sorted(zip(s["weights"], s["vids"]))]

    # ----- solving -----
    def solve(self, relaxed=False):
        """The shadow's own answer: {"status": optimal|infeasible|unbounded,
        "obj": value or None, "x": point or None}. With relaxed, the LP
        relaxation (no integrality, thresholds, sets or indicator rows)."""
        if self.has_quad() and not relaxed:
            return solve_qp(self)
        if self.has_quad():
            return solve_qp(self, relaxed=True)
        return solve_linear(self, relaxed)


class _Arrays:
    """The shadow as matrices: objective, bounds, rows; sense folded into c."""

    def __init__(self, sh, relaxed):
        n = len(sh.cols)
        pos = {v: j for j, v in enumerate(sh.cols)}
        self.n, self.pos = n, pos
        self.c = np.zeros(n)
        for v, a in sh.obj["lin"].items():
            self.c[pos[v]] += a
        self.c *= sh.obj["sense"]
        self.lb = np.array([finite(sh.col[v]["lb"]) for v in sh.cols])
        self.ub = np.array([finite(sh.col[v]["ub"]) for v in sh.cols])
        self.integ = np.zeros(n)
        self.semi = []
        self.thr = {}
        for j, v in enumerate(sh.cols):
            k = sh.col[v]["kind"]
            if k in ("B", "I") and not relaxed:
                self.integ[j] = 1
            if k == "S":
                if relaxed:
                    self.lb[j] = min(self.lb[j], 0.0)
                else:
                    self.semi.append(j)
                    self.thr[j] = sh.col[v]["thr"]
        self.A, self.rl, self.ru, self.ind = [], [], [], []
        for cid in sh.rows:
            r = sh.row[cid]
            a = np.zeros(n)
            for v, coef in r["coefs"].items():
                a[pos[v]] += coef
            if r["ind"]:
                if not relaxed:
                    self.ind.append((pos[r["ind"][0]], r["ind"][1], a, finite(r["lb"]), finite(r["ub"])))
                continue
            self.A.append(a)
            self.rl.append(finite(r["lb"]))
            self.ru.append(finite(r["ub"]))
        self.sets = []
        if not relaxed:
            for s in sh.sets:
                self.sets.append((sh.sos[s]["type"], [pos[v] for v in sh.sorted_set(s)]))


def _supports(stype, members):
    """Each way a set may pick its non-zero members."""
    yield ()
    for k in range(len(members)):
        yield (members[k],)
        if stype == 2 and k + 1 < len(members):
            yield (members[k], members[k + 1])


def _combos(arr):
    """All fixings of indicator binaries, threshold branches and set supports:
    a list of (extra lb, extra ub, extra rows) to solve as plain MIPs."""
    ind_cols = sorted({i[0] for i in arr.ind})
    choices = []
    for j in ind_cols:
        choices.append([("fix", j, 0.0), ("fix", j, 1.0)])
    for j in arr.semi:
        choices.append([("fix", j, 0.0), ("semi", j, None)])
    for stype, members in arr.sets:
        choices.append([("sos", tuple(members), sup) for sup in _supports(stype, members)])
    for pick in itertools.product(*choices):
        lb, ub = arr.lb.copy(), arr.ub.copy()
        ok = True
        fixed = {}
        for ch in pick:
            if ch[0] == "fix":
                _, j, val = ch
                fixed[j] = val
                lb[j], ub[j] = max(lb[j], val), min(ub[j], val)
            elif ch[0] == "semi":
                j = ch[1]
                lb[j] = max(lb[j], arr.thr[j])
            else:
                _, members, sup = ch
                for j in members:
                    if j not in sup:
                        lb[j], ub[j] = max(lb[j], 0.0), min(ub[j], 0.0)
        if np.any(lb > ub + 1e-12):
            ok = False
        rows = []
        for j, val, a, rl, ru in arr.ind:
            if fixed.get(j) == val:
                rows.append((a, rl, ru))
        if ok:
            yield lb, ub, rows



def _milp(c, integ, lb, ub, A, rl, ru):
    n = len(c)
    cons = [LinearConstraint(np.array(A).reshape(-1, n), rl, ru)] if A else []
    return milp(c, integrality=integ, bounds=Bounds(lb, ub), constraints=cons,
                options={"mip_rel_gap": 0.0, "presolve": True})


def _linprog(c, lb, ub, A, rl, ru):
    n = len(c)
    A_ub, b_ub, A_eq, b_eq = [], [], [], []
    for a, l, u in zip(A, rl, ru):
        if l == u:
            A_eq.append(a), b_eq.append(u)
            continue
        if u < np.inf:
            A_ub.append(a), b_ub.append(u)
        if l > -np.inf:
            A_ub.append(-a), b_ub.append(-l)
    return linprog(c, A_ub=np.array(A_ub).reshape(-1, n) if A_ub else None, b_ub=b_ub or None,
                   A_eq=np.array(A_eq).reshape(-1, n) if A_eq else None, b_eq=b_eq or None,
                   bounds=list(zip(lb, ub)), method="highs")


def _solve_plain(arr, lb, ub, rows):
    """One fixing: returns (status, value, x) for the minimisation of arr.c."""
    A = list(arr.A) + [r[0] for r in rows]
    rl = list(arr.rl) + [r[1] for r in rows]
    ru = list(arr.ru) + [r[2] for r in rows]
    n = arr.n
    if n == 0:
        ok = all(l <= 1e-9 and u >= -1e-9 for l, u in zip(rl, ru))
        return ("optimal", 0.0, np.zeros(0)) if ok else ("infeasible", None, None)
    integ = arr.integ
    # Feasibility first (zero objective), then boundedness of the relaxation:
    # a feasible MIP with rational data whose relaxation is unbounded is unbounded.
    feas = _milp(np.zeros(n), integ, lb, ub, A, rl, ru)
    if feas.status == 2:
        return "infeasible", None, None
    if feas.status != 0:
        raise RuntimeError(f"shadow feasibility solve failed: {feas.message}")
    rel = _linprog(arr.c, lb, ub, A, rl, ru)
    if rel.status == 3:
        return "unbounded", None, None
    if rel.status == 2:
        # The two HiGHS paths disagree on a barely feasible model: let the
        # MIP solve with the objective decide.
        res = _milp(arr.c, integ, lb, ub, A, rl, ru)
        if res.status == 0:
            return "optimal", float(res.fun), res.x
    if rel.status != 0:
        raise RuntimeError(f"shadow relaxation failed: {rel.message}")
    if not integ.any():
        return "optimal", float(rel.fun), rel.x
    res = _milp(arr.c, integ, lb, ub, A, rl, ru)
    if res.status != 0:
        raise RuntimeError(f"shadow MIP failed: {res.message}")
    return "optimal", float(res.fun), res.x


def solve_linear(sh, relaxed=False):
    arr = _Arrays(sh, relaxed)
    best = None
    any_feasible = False
    for lb, ub, rows in _combos(arr):
        st, val, x = _solve_plain(arr, lb, ub, rows)
        if st == "unbounded":
            return {"status": "unbounded", "obj": None, "x": None}
        if st == "optimal":
            any_feasible = True
            if best is None or val < best[0]:
                best = (val, x)
    if not any_feasible:
        return {"status": "infeasible", "obj": None, "x": None}
    sense = sh.obj["sense"]
    return {"status": "optimal", "obj": sense * best[0] + sh.obj["const"], "x": best[1]}


def solve_qp(sh, relaxed=False, starts=(), seed=0):
    """A convex QP by SLSQP from several starting points; the best feasible
    point found. Only an upper bound on the optimum (for minimisation): the
    checks use it to prove a reported optimum is not one."""
    arr = _Arrays(sh, True)
    n = arr.n
    if n == 0:
        return solve_linear(sh, relaxed)
    feas = _linprog(np.zeros(n), arr.lb, arr.ub, arr.A, arr.rl, arr.ru)
    if feas.status == 2:
        return {"status": "infeasible", "obj": None, "x": None}
    sense = sh.obj["sense"]
    # With Q positive definite on its own columns, the QP is unbounded exactly
    # when the LP over the other columns (those fixed) is.
    in_quad = {arr.pos[v] for key in sh.obj["quad"] for v in key}
    lb, ub = arr.lb.copy(), arr.ub.copy()
    for j in in_quad:
        lb[j] = ub[j] = feas.x[j]
    if _linprog(arr.c, lb, ub, arr.A, arr.rl, arr.ru).status == 3:
        return {"status": "unbounded", "obj": None, "x": None}
    Q = np.zeros((n, n))
    for (u, v), q in sh.obj["quad"].items():
        i, j = arr.pos[u], arr.pos[v]
        Q[i, j] += q / 2
        Q[j, i] += q / 2
    Q *= sense
    c = arr.c

    def f(x):
        return float(c @ x + x @ Q @ x)

    def g(x):
        return c + 2 * Q @ x

    cons = []
    if arr.A:
        A = np.array(arr.A)
        cons.append(LinearConstraint(A, arr.rl, arr.ru))
    bounds = Bounds(arr.lb, arr.ub)
    rng = np.random.default_rng(seed)
    points = [feas.x] + [np.asarray(s, float) for s in starts if s is not None and len(s) == n]
    for _ in range(3):
        r = _linprog(rng.normal(size=n), arr.lb, arr.ub, arr.A, arr.rl, arr.ru)
        if r.status == 0:
            points.append(r.x)
    best = None
    for x0 in points:
        try:
            res = minimize(f, x0, jac=g, method="SLSQP", bounds=bounds, constraints=cons,
                           options={"ftol": 1e-14, "maxiter": 500})
        except Exception:  # noqa: BLE001 - a failed start is only a missing start
            continue
        x = np.clip(res.x, arr.lb, arr.ub)
        if sh.violations(x, relaxed=True, tol=1e-8):
            continue
        if best is None or f(x) < best[0]:
            best = (f(x), x)
    if best is None:
        return {"status": "optimal", "obj": None, "x": None, "upper_only": True}
    return {"status": "optimal", "obj": sense * best[0] + sh.obj["const"], "x": best[1],
            "upper_only": True}
