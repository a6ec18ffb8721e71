"""Runs an operation list against zorvan and the shadow side by side and
checks every solve: statuses, objective values, feasibility of the reported
point, the reported objective at that point, index maps (whole vectors
against per-object queries), slacks, and for LPs the duals and reduced costs.

A run ends at the first finding, a dict with "kind" (wrong, error), a
"category", whether it is one of the known open faults, a "detail" text and
the index of the operation where it showed.
"""
import shutil

import numpy as np

from . import ops
from .shadow import INF, Shadow, finite, is_inf

# Known open faults; a finding that matches one is counted under its name.
KNOWN = {
    "indicator_eq_range": "indicators on equality or ranged rows give wrong answers",
    "qp_nonoptimal": "HiGHS QP returns non-optimal points or fails to solve",
    "cross_solve": "after mipoptimize on an LP or lpoptimize on a MIP, getSolution raises "
                   "(and after mipoptimize on an LP the LP status reads unstarted)",
    "empty_getsolution": "getSolution() of an empty problem raises",
    "bad_bounds_unclear": "lb=+inf or ub=-inf gives an unclear error",
}


class Finding(Exception):
    def __init__(self, kind, category, detail, known=False):
        super().__init__(detail)
        self.kind, self.category, self.detail, self.known = kind, category, detail, known


def wrong(category, detail):
    raise Finding("wrong", category, detail)


def tol_for(*values):
    return 1e-6 * max([1.0] + [abs(v) for v in values if v is not None and np.isfinite(v)])


# ----- reading zorvan's answer -----
STATUS_NAMES = {"lp_optimal": "optimal", "mip_optimal": "optimal", "lp_infeas": "infeasible",
                "mip_infeas": "infeasible", "lp_unbounded": "unbounded", "mip_unbounded": "unbounded"}
LP_STATUS = {1: "optimal", 2: "infeasible", 5: "unbounded"}


def zorvan_status(ns, method, relaxed):
    z, p = ns["z"], ns["p"]
    if method == "optimize":
        sol = ns["R"][1]
        st = {z.SolStatus.OPTIMAL: "optimal", z.SolStatus.INFEASIBLE: "infeasible",
              z.SolStatus.UNBOUNDED: "unbounded"}.get(sol, f"other({sol!r})")
        name = p.getProbStatusString()
        if STATUS_NAMES.get(name, "other") != st and st != f"other({sol!r})":
            wrong("status_string", f"optimize returned {ns['R']} but getProbStatusString() is {name!r}")
        return st
    if relaxed:
        return LP_STATUS.get(p.attributes.lpstatus, f"other(lpstatus {p.attributes.lpstatus})")
    name = p.getProbStatusString()
    if method == "mipoptimize" and name == "lp_unstarted":
        raise Finding("wrong", "cross_solve", "mipoptimize on an LP: status lp_unstarted", known=True)
    return STATUS_NAMES.get(name, f"other({name})")


def _call(what, fn, known=None):
    """Calls fn; an exception becomes an error finding (a known one when
    `known` names the fault it matches)."""
    try:
        return fn()
    except Exception as e:  # noqa: BLE001 - every exception is a finding here
        if known:
            raise Finding("error", known, f"{what}: {type(e).__name__}: {e}", known=True)
        raise Finding("error", f"{what}:{type(e).__name__}", f"{what}: {type(e).__name__}: {e}")


# ----- the checks -----
def check_solve(ns, sh, op):
    p, V, C = ns["p"], ns["V"], ns["C"]
    method = op[1]
    mip = sh.is_mip()
    relaxed = method == "lpoptimize" and mip
    bad = sh.bad_bound_cols()
    got = zorvan_status(ns, method, relaxed)
    if bad:
        # No right answer but "infeasible" or a refusal (handled at the solve).
        if got != "infeasible":
            wrong("bad_bounds_accepted", f"columns {bad} have lb=+inf or ub=-inf; status {got}")
        return
    quad = sh.has_quad()
    expect = sh.solve(relaxed)
    if got != expect["status"]:
        wrong("status", f"status {got}, expected {expect['status']}"
              + (f" (objective {expect['obj']})" if expect["obj"] is not None else ""))
    if got != "optimal":
        return
    objval = _call("getObjVal", lambda: p.attributes.lpobjval if relaxed else p.getObjVal())
    cross = (relaxed or (method == "mipoptimize" and not mip))
    known = "cross_solve" if cross else ("empty_getsolution" if not sh.cols else None)
    x = _call("getSolution", p.getSolution, known)
    if len(x) != len(sh.cols):
        wrong("vector_length", f"getSolution() has {len(x)} values for {len(sh.cols)} columns")
    x = np.array(x, float)
    s_obj = expect["obj"]
    if s_obj is not None:
        gap = sh.obj["sense"] * (objval - s_obj)
        tol = tol_for(s_obj, objval) * (10 if quad else 1)
        if gap > tol or (gap < -tol and not expect.get("upper_only")):
            wrong("objective", f"objective {objval!r}, expected {s_obj!r}"
                  + (" (a feasible point with this value was found)" if expect.get("upper_only") else ""))
    bad_points = sh.violations(x, relaxed=relaxed)
    if bad_points:
        wrong("infeasible_point", "; ".join(bad_points[:4]))
    at_x = sh.objective_at(x)
    if abs(at_x - objval) > tol_for(at_x, objval, *(a * xv for a, xv in zip(lin_vector(sh), x))):
        wrong("objval_mismatch", f"getObjVal() {objval!r} but the objective at the solution is {at_x!r}")
    if sh.cols:
        by_obj = _call("getSolution(objects)", lambda: p.getSolution([V[v] for v in sh.cols]))
        if not np.allclose(by_obj, x, rtol=0, atol=1e-12):
            wrong("index_map", f"getSolution(objects) {by_obj} differs from getSolution() {list(x)}")
        check_evaluation(ns, sh, x)
    if sh.rows:
        check_slacks(ns, sh, x)
    if not mip and not quad and method in ("optimize", "lpoptimize"):
        check_duals(ns, sh, x)


def check_evaluation(ns, sh, x):
    """The objective as an expression over the problem's variables,
    evaluated by getSolution, against the shadow's value at x."""
    z, p, V = ns["z"], ns["p"], ns["V"]
    terms = [a * V[v] for v, a in sh.obj["lin"].items()]
    terms += [q * V[u] * V[w] for (u, w), q in sh.obj["quad"].items()]
    if not terms:
        return
    expr = z.Sum(terms) + sh.obj["const"]
    got = _call("getSolution(expression)", lambda: p.getSolution(expr))
    want = sh.objective_at(x)
    if abs(got - want) > tol_for(got, want):
        wrong("evaluation", f"getSolution(objective expression) {got!r}, objective at the solution {want!r}")


def check_structure(ns, sh):
    """The problem's own lists of variables, rows and sets, by name, in order."""
    p = ns["p"]
    for what, getter, want in (("variables", p.getVariable, sh.cols),
                               ("constraints", p.getConstraint, sh.rows),
                               ("sets", p.getSOS, sh.sets)):
        got = [str(o.name) for o in _call(getter.__name__, getter)]
        if got != want:
            wrong("structure", f"{what} {got}, expected {want}")


def lin_vector(sh):
    return [sh.obj["lin"].get(v, 0.0) for v in sh.cols]


def row_rhs(r):
    return r["lb"] if is_inf(r["ub"]) else r["ub"]


def check_slacks(ns, sh, x):
    p, C = ns["p"], ns["C"]
    s = _call("getSlack", p.getSlack)
    if len(s) != len(sh.rows):
        wrong("vector_length", f"getSlack() has {len(s)} values for {len(sh.rows)} rows")
    by_obj = _call("getSlack(objects)", lambda: p.getSlack([C[c] for c in sh.rows]))
    if not np.allclose(by_obj, s, rtol=0, atol=1e-12):
        wrong("index_map", f"getSlack(objects) {by_obj} differs from getSlack() {s}")
    for k, cid in enumerate(sh.rows):
        r = sh.row[cid]
        if is_inf(r["lb"]) and is_inf(r["ub"]):
            continue
        act = sh.activity(cid, x)
        want = row_rhs(r) - act
        if abs(s[k] - want) > tol_for(act, row_rhs(r)):
            wrong("slack", f"slack of {cid} is {s[k]!r}, expected rhs - activity = {want!r}")


def check_duals(ns, sh, x):
    """Duals and reduced costs are sensitivities of the objective to the
    right-hand sides and bounds: c = A'y + d, and each is non-zero only on
    an active side, with the sign that side gives."""
    p = ns["p"]
    y = np.array(_call("getDual", p.getDual), float)
    d = np.array(_call("getRCost", p.getRCost), float)
    if len(y) != len(sh.rows) or len(d) != len(sh.cols):
        wrong("vector_length", f"{len(y)} duals / {len(d)} reduced costs for {len(sh.rows)} rows / {len(sh.cols)} columns")
    pos = {v: j for j, v in enumerate(sh.cols)}
    c = np.array(lin_vector(sh))
    A = np.zeros((len(sh.rows), len(sh.cols)))
    for i, cid in enumerate(sh.rows):
        for v, a in sh.row[cid]["coefs"].items():
            A[i, pos[v]] += a
    scale = 1.0 + np.abs(c).sum() + np.abs(y).sum()
    resid = c - A.T @ y - d
    if np.abs(resid).max(initial=0) > 1e-6 * scale:
        wrong("dual", f"c - A'y - d = {resid.tolist()} (duals {y.tolist()}, reduced costs {d.tolist()})")
    sense = sh.obj["sense"]

    def side_ok(mult, val, lo, hi, what):
        t = 1e-6 * scale
        at_lo = lo > -np.inf and abs(val - lo) <= tol_for(lo, val) * 10
        at_hi = hi < np.inf and abs(val - hi) <= tol_for(hi, val) * 10
        if sense * mult > t and not at_lo:
            wrong("dual", f"{what}: multiplier {mult!r} needs the lower side {lo} active, value {val!r}")
        if sense * mult < -t and not at_hi:
            wrong("dual", f"{what}: multiplier {mult!r} needs the upper side {hi} active, value {val!r}")

    for i, cid in enumerate(sh.rows):
        r = sh.row[cid]
        side_ok(y[i], sh.activity(cid, x), finite(r["lb"]), finite(r["ub"]), f"row {cid}")
    for j, v in enumerate(sh.cols):
        side_ok(d[j], x[j], finite(sh.col[v]["lb"]), finite(sh.col[v]["ub"]), f"column {v}")


# ----- errors raised by operations -----
def op_error(op, sh, e):
    """An exception from an operation: None when the shadow expects it."""
    text = f"{type(e).__name__}: {e}"
    if op[0] == "addvars" and any(lb >= INF or ub <= -INF for _, _, lb, ub, _ in op[1]):
        return None    # refusing lb=+inf / ub=-inf at the add is right
    if op[0] == "solve":
        if sh.bad_bound_cols():
            names = sh.bad_bound_cols()
            if any(n in str(e) for n in names) or "column" in str(e):
                return None
            return Finding("error", "bad_bounds_unclear", f"solve: {text}", known=True)
        if sh.has_quad():
            return Finding("error", "qp_nonoptimal", f"solve: {text}", known=True)
        if op[1] != "optimize" and ((op[1] == "lpoptimize") == sh.is_mip()):
            return Finding("error", f"solve:{type(e).__name__}", f"{op[1]}: {text}")
    return Finding("error", f"{op[0]}:{type(e).__name__}", text)


# ----- running a list -----
def rebuild_ops(sh, method, split_indicators=False):
    """Operations that build the shadow's model in one go, then solve."""
    out = [["addvars", [[v, c["kind"], c["lb"], c["ub"], c["thr"]] for v, c in sh.col.items()
                        if v in sh.cols]]]
    out[0][1].sort(key=lambda e: sh.cols.index(e[0]))
    cons = []
    for cid in sh.rows:
        r = sh.row[cid]
        terms = [[v, a] for v, a in r["coefs"].items()]
        lb, ub = r["lb"], r["ub"]
        form = "eq" if lb == ub else "le" if is_inf(lb) and not is_inf(ub) else \
            "ge" if is_inf(ub) and not is_inf(lb) else "rng"
        if not r["ind"]:
            cons.append([cid, form, terms, 0.0, lb, ub])
        elif split_indicators and form in ("eq", "rng"):
            b, val = r["ind"]
            out.append(["addind", cid + "u", b, val, "le", terms, 0.0, -INF, ub, False])
            out.append(["addind", cid + "l", b, val, "ge", terms, 0.0, lb, INF, False])
        else:
            b, val = r["ind"]
            out.append(["addind", cid, b, val, form, terms, 0.0, lb, ub, False])
    if cons:
        out.insert(1, ["addcons", cons, True])
    for s in sh.sets:
        out.append(["addsos", s, sh.sos[s]["type"], sh.sos[s]["vids"], sh.sos[s]["weights"]])
    o = sh.obj
    out.append(["setobj", [[v, a] for v, a in o["lin"].items()],
                [[u, v, q] for (u, v), q in o["quad"].items()], o["const"], o["sense"]])
    out.append(["solve", method, ""])
    return out


def run_ops(op_list, classify=True):
    """Runs the list; returns {"ok": True} or the first finding as a dict."""
    ns = {}
    exec(ops.PREAMBLE, ns)
    sh = Shadow()
    try:
        for i, op in enumerate(op_list):
            new = sh.clone()
            code = ops.emit(op, new)
            if code is None:
                continue
            try:
                exec(code, ns)
            except Exception as e:  # noqa: BLE001
                f = op_error(op, new, e)
                if f is None:
                    continue
                return finding_dict(f, i, sh, op, classify)
            sh = new
            try:
                if op[0] == "solve":
                    check_solve(ns, sh, op)
                elif op[0] in ("wr", "copy", "delvar", "delcon", "delsos"):
                    check_structure(ns, sh)
            except Finding as f:
                return finding_dict(f, i, sh, op, classify)
        return {"ok": True}
    finally:
        shutil.rmtree(ns.get("TMP", ""), ignore_errors=True)


def finding_dict(f, index, sh, op, classify):
    out = {"ok": False, "kind": f.kind, "category": f.category, "known": f.known,
           "detail": f.detail, "index": index}
    if op[0] == "solve":
        out["rebuild"] = rebuild_ops(sh, op[1])
    if classify and not f.known and f.kind == "wrong" and op[0] == "solve":
        classify_wrong(out, sh, op)
    return out


def classify_wrong(out, sh, op):
    """Names the known fault behind a wrong answer, or tells whether the
    model alone (built afresh) shows it."""
    if sh.has_quad() and out["category"] == "objective":
        out.update(category="qp_nonoptimal", known=True)
        return
    if sh.has_quad() and out["category"] == "status":
        out["category"] = "qp_status"      # bounded called unbounded, or the reverse
        return
    if not sh.cols and out["category"] in ("status", "objective"):
        # Rows like 0 >= 5, or the objective constant, left after deletes.
        out["category"] = "no_columns_" + out["category"]
        return
    eq_ind = [c for c in sh.indicator_rows()
              if not is_inf(sh.row[c]["lb"]) and not is_inf(sh.row[c]["ub"])]
    if eq_ind:
        split = run_ops(rebuild_ops(sh, op[1], split_indicators=True), classify=False)
        if split["ok"]:
            out.update(category="indicator_eq_range", known=True,
                       detail=out["detail"] + f" (right once rows {eq_ind} are split in two)")
            return
    fresh = run_ops(out["rebuild"], classify=False)
    if fresh["ok"]:
        out["category"] += "[history]"
        out["detail"] += " (the same model built afresh solves right)"
