"""Solve time through the engine against highspy on the same arrays.

Three sides get the same column-wise arrays of an LP (a transportation
problem) and a MIP (capacitated facility location): the engine, highspy
(HiGHS 1.15.1 as built into its wheel) and raw HiGHS, that is the C interface
of the very libhighs.so the engine links (from highsbox). The last isolates
the engine's own overhead from differences between the two HiGHS builds. The
script reports the best of several interleaved runs and the ratios, measured
in one run. It also times appending columns and
rows in batches to show that building is linear in the model size.

    .venv/bin/pip install -e '.[bench]'   # or: pip install highspy==1.15.1
    .venv/bin/python bench/engine_vs_highspy.py [--repeat 3]
"""
import argparse
import ctypes
import os
import time

import numpy as np

import zorvan

try:
    import highspy
except ImportError:  # pragma: no cover - the bench extra is missing
    raise SystemExit("highspy is needed: pip install highspy==1.15.1")

INF = 1e20
LIB = ctypes.CDLL(os.path.join(os.path.dirname(zorvan.__file__), "libzorvan.so"))
P = ctypes.c_void_p
I64 = ctypes.c_int64
DBL_P = np.ctypeslib.ndpointer(np.float64, flags="C_CONTIGUOUS")
I32_P = np.ctypeslib.ndpointer(np.int32, flags="C_CONTIGUOUS")
I64_P = np.ctypeslib.ndpointer(np.int64, flags="C_CONTIGUOUS")

LIB.ZRVSinit.argtypes = [ctypes.c_char_p]
LIB.ZRVScreateprob.argtypes = [ctypes.POINTER(P)]
LIB.ZRVSdestroyprob.argtypes = [P]
LIB.ZRVSsetintcontrol.argtypes = [P, ctypes.c_int, ctypes.c_int]
LIB.ZRVSaddrows64.argtypes = [P, ctypes.c_int, I64, ctypes.c_char_p, DBL_P, P, P, P, P]
LIB.ZRVSaddcols64.argtypes = [P, ctypes.c_int, I64, DBL_P, I64_P, I32_P, DBL_P, DBL_P, DBL_P]
LIB.ZRVSchgcoltype.argtypes = [P, ctypes.c_int, I32_P, ctypes.c_char_p]
LIB.ZRVSoptimize.argtypes = [P, ctypes.c_char_p, ctypes.POINTER(ctypes.c_int),
                             ctypes.POINTER(ctypes.c_int)]
LIB.ZRVSgetdblattrib.argtypes = [P, ctypes.c_int, ctypes.POINTER(ctypes.c_double)]
LIB.ZRVSgetintattrib.argtypes = [P, ctypes.c_int, ctypes.POINTER(ctypes.c_int)]
OUTPUTLOG, THREADS, LPOBJVAL, MIPOBJVAL = 8035, 8278, 2001, 2003

import highsbox  # noqa: E402

RAW = ctypes.CDLL(os.path.join(highsbox.highs_lib_dir(), "libhighs.so"))
RAW.Highs_create.restype = P
RAW.Highs_destroy.argtypes = [P]
RAW.Highs_setBoolOptionValue.argtypes = [P, ctypes.c_char_p, ctypes.c_int]
RAW.Highs_setDoubleOptionValue.argtypes = [P, ctypes.c_char_p, ctypes.c_double]
RAW.Highs_passModel.argtypes = [P, ctypes.c_int, ctypes.c_int, ctypes.c_int, ctypes.c_int,
                                ctypes.c_int, ctypes.c_int, ctypes.c_int, ctypes.c_double,
                                DBL_P, DBL_P, DBL_P, DBL_P, DBL_P, I32_P, I32_P, DBL_P,
                                P, P, P, P]
RAW.Highs_run.argtypes = [P]
RAW.Highs_getObjectiveValue.argtypes = [P]
RAW.Highs_getObjectiveValue.restype = ctypes.c_double
TOLERANCES = (("primal_feasibility_tolerance", 1e-6), ("dual_feasibility_tolerance", 1e-6),
              ("mip_feasibility_tolerance", 1e-6), ("mip_rel_gap", 1e-4),
              ("mip_abs_gap", 1e-6))


class Model:
    """A model as column-wise arrays: minimise c'x subject to row bounds."""

    def __init__(self, obj, lb, ub, start, index, value, rowtype, rhs, integer):
        self.obj, self.lb, self.ub = obj, lb, ub
        self.start, self.index, self.value = start, index, value
        self.rowtype, self.rhs, self.integer = rowtype, rhs, integer


def transportation(m, n, seed):
    rng = np.random.default_rng(seed)
    supply = rng.integers(50, 150, m).astype(float)
    demand = rng.integers(10, 60, n).astype(float)
    demand *= supply.sum() / demand.sum() * 0.95
    cost = rng.uniform(1, 100, (m, n))
    ncols = m * n
    # Column (i, j) appears in supply row i and demand row m + j.
    start = np.arange(0, 2 * ncols + 1, 2, dtype=np.int64)
    index = np.empty(2 * ncols, dtype=np.int32)
    index[0::2] = np.repeat(np.arange(m), n)
    index[1::2] = m + np.tile(np.arange(n), m)
    value = np.ones(2 * ncols)
    rowtype = b"L" * m + b"G" * n
    rhs = np.concatenate([supply, demand])
    return Model(cost.ravel(), np.zeros(ncols), np.full(ncols, INF), start, index, value,
                 rowtype, rhs, np.zeros(0, dtype=np.int32))


def facility_location(nf, nc, seed):
    rng = np.random.default_rng(seed)
    fixed = rng.uniform(500, 1500, nf)
    capacity = rng.uniform(40, 120, nf)
    demand = rng.uniform(5, 35, nc)
    capacity *= 2.5 * demand.sum() / capacity.sum()
    cost = rng.uniform(1, 50, (nf, nc)) * demand
    # Columns: open[f] (binary), then x[f, c] fraction of c served by f.
    # Rows: demand c (sum_f x = 1), capacity f (sum_c d_c x - cap_f open_f <= 0),
    # and x[f, c] <= open[f].
    starts, idx, val = [0], [], []
    nrows_dem, nrows_cap = nc, nf
    link_row = lambda f, c: nrows_dem + nrows_cap + f * nc + c  # noqa: E731
    for f in range(nf):
        rows = [nrows_dem + f] + [link_row(f, c) for c in range(nc)]
        idx += rows
        val += [-capacity[f]] + [-1.0] * nc
        starts.append(len(idx))
    for f in range(nf):
        for c in range(nc):
            idx += [c, nrows_dem + f, link_row(f, c)]
            val += [1.0, demand[c], 1.0]
            starts.append(len(idx))
    ncols = nf + nf * nc
    rowtype = b"E" * nc + b"L" * nf + b"L" * (nf * nc)
    rhs = np.concatenate([np.ones(nc), np.zeros(nf), np.zeros(nf * nc)])
    obj = np.concatenate([fixed, cost.ravel()])
    ub = np.concatenate([np.ones(nf), np.full(nf * nc, INF)])
    return Model(obj, np.zeros(ncols), ub, np.array(starts, dtype=np.int64),
                 np.array(idx, dtype=np.int32), np.array(val), rowtype, rhs,
                 np.arange(nf, dtype=np.int32))


def solve_engine(model):
    prob = P()
    assert LIB.ZRVScreateprob(ctypes.byref(prob)) == 0
    try:
        LIB.ZRVSsetintcontrol(prob, OUTPUTLOG, 0)
        t0 = time.perf_counter()
        nrows = len(model.rowtype)
        assert LIB.ZRVSaddrows64(prob, nrows, 0, model.rowtype, model.rhs,
                                 None, None, None, None) == 0
        assert LIB.ZRVSaddcols64(prob, len(model.obj), len(model.value), model.obj,
                                 model.start, model.index, model.value, model.lb,
                                 model.ub) == 0
        if len(model.integer):
            kinds = b"B" * len(model.integer)
            assert LIB.ZRVSchgcoltype(prob, len(model.integer), model.integer, kinds) == 0
        solvestatus, solstatus = ctypes.c_int(), ctypes.c_int()
        assert LIB.ZRVSoptimize(prob, b"", ctypes.byref(solvestatus),
                                ctypes.byref(solstatus)) == 0
        elapsed = time.perf_counter() - t0
        value = ctypes.c_double()
        attrib = MIPOBJVAL if len(model.integer) else LPOBJVAL
        LIB.ZRVSgetdblattrib(prob, attrib, ctypes.byref(value))
        return elapsed, value.value
    finally:
        LIB.ZRVSdestroyprob(prob)


def solve_highspy(model):
    h = highspy.Highs()
    h.setOptionValue("output_flag", False)
    # The engine's default tolerances, so that both run the same search.
    for option, value in TOLERANCES:
        h.setOptionValue(option, value)
    t0 = time.perf_counter()
    lp = highspy.HighsLp()
    ncols, nrows = len(model.obj), len(model.rowtype)
    lp.num_col_, lp.num_row_ = ncols, nrows
    lp.col_cost_ = model.obj
    lp.col_lower_ = model.lb
    lp.col_upper_ = np.where(model.ub >= INF, highspy.kHighsInf, model.ub)
    kinds = np.frombuffer(model.rowtype, dtype="S1")
    lower = np.where((kinds == b"G") | (kinds == b"E"), model.rhs, -highspy.kHighsInf)
    upper = np.where((kinds == b"L") | (kinds == b"E"), model.rhs, highspy.kHighsInf)
    lp.row_lower_, lp.row_upper_ = lower, upper
    lp.a_matrix_.format_ = highspy.MatrixFormat.kColwise
    lp.a_matrix_.start_ = model.start.astype(np.int32)
    lp.a_matrix_.index_ = model.index
    lp.a_matrix_.value_ = model.value
    if len(model.integer):
        integrality = [highspy.HighsVarType.kContinuous] * ncols
        for j in model.integer:
            integrality[j] = highspy.HighsVarType.kInteger
        lp.integrality_ = integrality
    h.passModel(lp)
    h.run()
    elapsed = time.perf_counter() - t0
    return elapsed, h.getInfo().objective_function_value


def row_bounds(model):
    kinds = np.frombuffer(model.rowtype, dtype="S1")
    lower = np.where((kinds == b"G") | (kinds == b"E"), model.rhs, -INF)
    upper = np.where((kinds == b"L") | (kinds == b"E"), model.rhs, INF)
    return np.ascontiguousarray(lower), np.ascontiguousarray(upper)


def solve_raw(model):
    h = RAW.Highs_create()
    try:
        RAW.Highs_setBoolOptionValue(h, b"output_flag", 0)
        for option, value in TOLERANCES:
            RAW.Highs_setDoubleOptionValue(h, option.encode(), value)
        t0 = time.perf_counter()
        lower, upper = row_bounds(model)
        ncols = len(model.obj)
        integrality = None
        if len(model.integer):
            integrality = np.zeros(ncols, dtype=np.int32)
            integrality[model.integer] = 1
            integrality = integrality.ctypes.data_as(P)
        start = model.start[:-1].astype(np.int32)
        assert RAW.Highs_passModel(h, ncols, len(model.rowtype), len(model.value), 0, 1, 0, 1,
                                   0.0, model.obj, model.lb, model.ub, lower, upper, start,
                                   model.index, model.value, None, None, None,
                                   integrality) != -1
        RAW.Highs_run(h)
        elapsed = time.perf_counter() - t0
        return elapsed, RAW.Highs_getObjectiveValue(h)
    finally:
        RAW.Highs_destroy(h)


def append_in_batches(n, batch):
    """Seconds to add n rows then n columns (3 nonzeros each) in batches."""
    prob = P()
    assert LIB.ZRVScreateprob(ctypes.byref(prob)) == 0
    rhs = np.ones(batch)
    obj, lb, ub = np.ones(batch), np.zeros(batch), np.full(batch, INF)
    start = np.arange(0, 3 * batch + 1, 3, dtype=np.int64)
    value = np.ones(3 * batch)
    t0 = time.perf_counter()
    for b in range(n // batch):
        assert LIB.ZRVSaddrows64(prob, batch, 0, b"L" * batch, rhs, None, None, None,
                                 None) == 0
    rows = (b + 1) * batch
    rng = np.random.default_rng(0)
    for b in range(n // batch):
        index = rng.integers(0, rows, 3 * batch).astype(np.int32)
        index[1::3] = (index[0::3] + 1) % rows
        index[2::3] = (index[0::3] + 2) % rows
        assert LIB.ZRVSaddcols64(prob, batch, 3 * batch, obj, start, index, value, lb,
                                 ub) == 0
    elapsed = time.perf_counter() - t0
    LIB.ZRVSdestroyprob(prob)
    return elapsed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--repeat", type=int, default=3)
    args = parser.parse_args()
    assert LIB.ZRVSinit(None) == 0
    cases = [("LP transportation 300x800", transportation(300, 800, 1)),
             ("MIP facility location 25x60", facility_location(25, 60, 2))]
    print(f"{'model':30} {'engine s':>9} {'highspy s':>9} {'raw s':>7} "
          f"{'/highspy':>8} {'/raw':>6}  objective")
    for name, model in cases:
        engine, peer, raw = [], [], []
        for _ in range(args.repeat):  # interleaved so load changes hit all
            engine.append(solve_engine(model))
            peer.append(solve_highspy(model))
            raw.append(solve_raw(model))
        e, p, r = (min(t for t, _ in runs) for runs in (engine, peer, raw))
        obj_e = engine[0][1]
        for _, obj in peer[:1] + raw[:1]:
            assert abs(obj_e - obj) <= 1e-6 * max(1.0, abs(obj)), (obj_e, obj)
        print(f"{name:30} {e:9.3f} {p:9.3f} {r:7.3f} {e / p:8.3f} {e / r:6.3f}  {obj_e:.6g}")
    print()
    print("appending rows then columns in batches of 10^4 (3 nonzeros per column)")
    base = None
    for n in (10**5, 10**6):
        t = min(append_in_batches(n, 10**4) for _ in range(args.repeat))
        base = base or t / n
        print(f"  n = {n:>8}: {t:7.3f} s, {t / n * 1e6:6.3f} us per row+column "
              f"({t / n / base:4.2f} x the per-item time at 10^5)")
    LIB.ZRVSfree()


if __name__ == "__main__":
    main()
