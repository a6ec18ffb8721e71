"""Random operation lists for one case, from a seed and a profile.

The generator keeps its own shadow so that most operations make sense (they
name objects that exist); `ops.emit` still re-checks every operation when a
list is run, so shrinking may drop any of them.

Profiles: "lp" (continuous), "mip" (binaries and integers), "qp" (convex
quadratic objective on continuous variables), "logic" (bounded models with
semi-continuous variables, sets and indicators), "mixed" (all but QP).
"""
import random

import numpy as np

from . import ops
from .shadow import INF, Shadow

PROFILES = ("lp", "mip", "qp", "logic", "mixed")


class Generator:
    def __init__(self, seed, profile, known=True, max_vars=7, max_rows=6):
        self.rng = random.Random(seed)
        self.profile = profile
        self.known = known      # also make operations that hit known faults
        self.max_vars, self.max_rows = max_vars, max_rows
        self.sh = Shadow()
        self.nv = self.nc = self.ns = 0
        self.ops = []

    # ----- small random pieces -----
    def coef(self):
        r = self.rng
        a = r.choice([1, 1, 2, 3, -1, -2, 4, 5, -3, 0.5, -1.5])
        return float(a)

    def bounded(self):
        return self.profile == "logic"

    def var_spec(self):
        r, prof = self.rng, self.profile
        self.nv += 1
        vid = f"v{self.nv}"
        kinds = {"lp": "C", "qp": "C", "mip": "CCBI", "logic": "CBBISS", "mixed": "CCBIS"}[prof]
        kind = r.choice(kinds)
        if kind == "S":
            ub = float(r.randint(2, 9))
            return [vid, kind, 0.0, ub, float(r.randint(1, int(ub)))]
        if kind == "B":
            return [vid, kind, 0.0, INF, -INF] if r.random() < 0.8 else [vid, kind, 0.0, float(r.choice([0, 1])), -INF]
        lb = r.choice([0.0, 0.0, 0.0, -5.0, -2.0, 1.0, -INF])
        ub = r.choice([INF, 10.0, 4.0, 6.0, 3.0])
        if kind == "I" and r.random() < 0.2:
            lb, ub = lb + 0.5 if lb > -INF else lb, ub - 0.5 if ub < INF else ub
        if self.bounded():
            lb = -3.0 if lb <= -INF else lb
            ub = 8.0 if ub >= INF else ub
        if ub < lb and lb > -INF:
            ub = lb + 2
        if self.known and r.random() < 0.01:
            lb, ub = (INF, INF) if r.random() < 0.5 else (-5.0, -INF)
        return [vid, kind, lb, ub, -INF]

    def terms(self, k=None, among=None):
        cols = among if among is not None else self.sh.cols
        if not cols:
            return []
        k = k or self.rng.randint(1, min(4, len(cols)))
        picked = self.rng.sample(cols, min(k, len(cols)))
        if self.rng.random() < 0.1:
            picked.append(picked[0])
        return [[v, self.coef()] for v in picked]

    def rhs_pair(self, form):
        r = self.rng
        a = float(r.randint(-6, 12))
        if form == "rng":
            lo = a - r.randint(0, 8)
            return (lo, a) if r.random() < 0.9 else (-INF, a)
        return a, a

    # ----- operations -----
    def add(self, op):
        code = ops.emit(op, self.sh)
        if code is not None:
            self.ops.append(op)

    def op_addvars(self):
        n = 1 if self.rng.random() < 0.5 else self.rng.randint(2, 3)
        n = min(n, self.max_vars - len(self.sh.cols))
        if n > 0:
            self.add(["addvars", [self.var_spec() for _ in range(n)]])

    def op_addcons(self):
        r = self.rng
        n = min(r.randint(1, 3), self.max_rows - len(self.sh.rows))
        cons = []
        for _ in range(max(n, 0)):
            self.nc += 1
            form = r.choice(["le", "le", "ge", "ge", "eq", "rng"])
            lb, ub = self.rhs_pair(form)
            const = float(r.choice([0, 0, 0, 1, -2]))
            cons.append([f"c{self.nc}", form, self.terms(), const, lb, ub])
        if cons:
            self.add(["addcons", cons, r.random() < 0.5])

    def op_delvar(self):
        sh, r = self.sh, self.rng
        free = [v for v in sh.cols if not sh.pinned(v)]
        if not self.known and len(free) == len(sh.cols):
            free = free[:-1]     # an empty problem hits a known fault
        if not free:
            return
        how = r.choice(["obj", "index", "list", "range"])
        if how == "range":
            k = r.randrange(len(sh.cols))
            picked = [v for v in sh.cols[k:k + r.randint(1, 2)] if v in free]
        else:
            picked = r.sample(free, 1 if how != "list" else min(2, len(free)))
        if picked:
            self.add(["delvar", picked, how])

    def op_delcon(self):
        sh, r = self.sh, self.rng
        if not sh.rows:
            return
        how = r.choice(["obj", "index", "list", "range"])
        picked = r.sample(sh.rows, 1 if how in ("obj", "index") else min(2, len(sh.rows)))
        self.add(["delcon", picked, how])

    def op_setattr(self):
        sh = self.sh
        if not sh.obj_attr:
            return
        vid = self.rng.choice(sorted(sh.obj_attr))
        attr = self.rng.choice(["lb", "ub"])
        self.add(["setattr", vid, attr, float(self.rng.randint(-2, 6))])

    def op_readd(self):
        gone = [v for v in self.sh.obj_attr if v not in self.sh.col]
        if gone and len(self.sh.cols) < self.max_vars:
            self.add(["readd", self.rng.choice(sorted(gone))])

    def op_setobj(self):
        r, sh = self.rng, self.sh
        sense = 1 if r.random() < 0.6 else -1
        lin = self.terms(k=r.randint(0, len(sh.cols))) if sh.cols else []
        const = float(r.choice([0, 0, 3, -2.5]))
        quad = []
        if self.profile == "qp" and sh.cols and r.random() < 0.8:
            quad = self.convex_quad(sense)
        self.add(["setobj", lin, quad, const, sense])

    def convex_quad(self, sense):
        """x'Qx with Q = B'B + I/2 over a few columns, as (u, v, coef) terms;
        negated for maximisation so that the problem stays convex."""
        r, cols = self.rng, self.sh.cols
        vids = r.sample(cols, r.randint(1, min(4, len(cols))))
        k = len(vids)
        B = np.array([[r.randint(-2, 2) for _ in range(k)] for _ in range(r.randint(1, k + 1))], float)
        Q = B.T @ B + 0.5 * np.eye(k)
        out = []
        for i in range(k):
            for j in range(i, k):
                q = Q[i, j] if i == j else 2 * Q[i, j]
                if q:
                    out.append([vids[i], vids[j], float(sense * q)])
        return out

    def op_addsos(self):
        sh, r = self.sh, self.rng
        cand = [v for v in sh.cols if -INF < sh.col[v]["lb"] <= 0 and sh.col[v]["ub"] < INF]
        if len(cand) < 2 or len(sh.sets) >= 2:
            return
        vids = r.sample(cand, r.randint(2, min(4, len(cand))))
        weights = [float(w) for w in range(1, len(vids) + 1)]
        self.ns += 1
        self.add(["addsos", f"set{self.ns}", r.choice([1, 2]), vids, weights])

    def op_delsos(self):
        if self.sh.sets:
            self.add(["delsos", self.rng.choice(self.sh.sets), self.rng.choice(["obj", "index"])])

    def op_addind(self):
        sh, r = self.sh, self.rng
        bins = [v for v in sh.cols if sh.col[v]["kind"] == "B"]
        ind_bins = {sh.row[c]["ind"][0] for c in sh.indicator_rows()}
        if len(ind_bins) >= 3:
            bins = sorted(ind_bins)
        fin = [v for v in sh.cols if sh.col[v]["lb"] > -INF and sh.col[v]["ub"] < INF]
        if not bins or not fin:
            return
        forms = ["le", "ge"] + (["eq", "rng"] if self.known else [])
        form = r.choice(forms)
        lb, ub = self.rhs_pair(form)
        self.nc += 1
        self.add(["addind", f"c{self.nc}", r.choice(bins), r.choice([0, 1]), form,
                  self.terms(among=fin), 0.0, lb, ub, r.random() < 0.5])

    def op_solve(self):
        r = self.rng
        method = "optimize"
        if self.known and r.random() < 0.25:
            method = r.choice(["lpoptimize", "mipoptimize"])
        elif r.random() < 0.2:
            method = "mipoptimize" if self.sh.is_mip() else "lpoptimize"
        flags = r.choice(["", "", "", "d", "p", "b"]) if not self.sh.is_mip() else ""
        self.add(["solve", method, flags])

    def op_wr(self):
        self.add(["wr", self.rng.choice(["lp", "mps"]), self.rng.random() < 0.5])

    def op_copy(self):
        self.add(["copy"])

    def weights(self):
        w = {"addvars": 3, "addcons": 3, "delvar": 1, "delcon": 1, "setattr": 0.5, "readd": 0.5,
             "setobj": 1.5, "solve": 1.5, "wr": 0.3, "copy": 0.3}
        if self.profile in ("logic", "mixed"):
            w.update(addsos=0.8, delsos=0.3, addind=1.2)
        return w

    def case(self, n_ops):
        """n_ops random operations ending with a solve."""
        self.op_addvars()
        self.op_addvars()
        self.op_addcons()
        self.op_setobj()
        names, weights = zip(*self.weights().items())
        while len(self.ops) < n_ops:
            getattr(self, "op_" + self.rng.choices(names, weights)[0])()
        self.op_solve()
        return self.ops


def make_case(seed, index, profiles=PROFILES, known=True):
    """The operation list of case `index` of a run with `seed`."""
    r = random.Random(f"{seed}:{index}")
    profile = r.choice(profiles)
    g = Generator(r.randrange(2**32), profile, known=known)
    return profile, g.case(r.randint(8, 30))
