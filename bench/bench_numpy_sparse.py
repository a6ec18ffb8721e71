"""Building A @ x <= b for a sparse A with 10^6 nonzeros (10^5 rows and
columns, 10 nonzeros a row) and adding it to a problem, with zorvan, linopy
and pyoptinterface in one run on the same machine.

Each timing covers creating the 10^5 variables, building the 10^5 rows and
adding them to a model: zorvan.Dot(A, x) <= b and problem.addVariable /
addConstraint of the arrays (the rows reach the engine's problem);
linopy's labelled-array form of the same rows (it has no sparse matrix
product) and Model.add_constraints, which keeps the rows in its own arrays
until a solve hands them to a solver; pyoptinterface's
ScalarAffineFunction per row from the matrix's slices and add_linear_constraint on its HiGHS model
(the library from highsbox). The best of several runs is reported.

Peers are optional (pip install .[bench]); missing ones are skipped.
Run: .venv/bin/python bench/bench_numpy_sparse.py [--small]
"""
import sys

import numpy as np
import scipy.sparse as sp

import zorvan as z

from timing import best_of, pyoptinterface_on_highs

try:
    import linopy
    import xarray as xr
except ImportError:  # pragma: no cover
    linopy = None
poi, poi_highs = pyoptinterface_on_highs()


def data(m, n, k, seed=0):
    rng = np.random.default_rng(seed)
    # k distinct columns a row, spread over all columns
    base = rng.integers(0, n, size=m)
    cols = np.sort((base[:, None] + np.arange(k) * (n // k)) % n, axis=1)
    vals = rng.uniform(1.0, 2.0, size=(m, k))
    A = sp.csr_array((vals.ravel(), cols.ravel(), np.arange(0, m * k + 1, k)), shape=(m, n))
    return A, cols, vals, rng.uniform(10.0, 20.0, size=m)


# Whether the problem type can take arrays of variables and constraints yet;
# without it only zorvan's building of the rows is measured (and said so).
CAN_ADD = hasattr(z.problem, "addVariable") and hasattr(z.problem, "addConstraint")


def with_zorvan(A, cols, vals, b):
    def build():
        x = z.vars(A.shape[1], array=True)
        cons = z.Dot(A, x) <= b
        if not CAN_ADD:
            return cons
        p = z.problem()
        p.addVariable(x)
        p.addConstraint(cons)
        return p
    return build


def with_linopy(A, cols, vals, b):
    m, k = cols.shape
    cols_da = xr.DataArray(cols, dims=("row", "k"))
    vals_da = xr.DataArray(vals, dims=("row", "k"))
    b_da = xr.DataArray(b, dims="row")

    def build():
        model = linopy.Model()
        x = model.add_variables(lower=0, coords=[np.arange(A.shape[1])], dims=["col"], name="x")
        lhs = (vals_da * x.isel(col=cols_da)).sum("k")
        model.add_constraints(lhs <= b_da, name="c")
        return model
    return build


def with_pyoptinterface(A, cols, vals, b):
    indptr, indices, data_ = A.indptr, A.indices, A.data

    def build():
        model = poi_highs.Model()
        model.set_model_attribute(poi.ModelAttribute.Silent, True)
        x = [model.add_variable(lb=0.0) for _ in range(A.shape[1])]
        # The function takes variable indices: the matrix's columns mapped once.
        col = np.array([v.index for v in x])[indices]
        for i in range(A.shape[0]):
            s, e = indptr[i], indptr[i + 1]
            f = poi.ScalarAffineFunction(data_[s:e].tolist(), col[s:e].tolist())
            model.add_linear_constraint(f, poi.Leq, b[i])
        return model
    return build


def main():
    small = "--small" in sys.argv
    m = n = 10_000 if small else 100_000
    A, cols, vals, b = data(m, n, 10)
    print(f"A @ x <= b, {m} rows and columns, {A.nnz} nonzeros (best of 5, seconds)")
    times = {"zorvan": best_of(5, with_zorvan(A, cols, vals, b))}
    if not CAN_ADD:
        print("  (zorvan: rows built only; problem.addVariable/addConstraint not available)")
    if linopy is not None:
        times["linopy"] = best_of(5, with_linopy(A, cols, vals, b))
    if poi is not None:
        times["pyoptinterface"] = best_of(5, with_pyoptinterface(A, cols, vals, b))
    for name, t in times.items():
        print(f"  {name:15s} {t:8.3f}")
    peers = {name: t for name, t in times.items() if name != "zorvan"}
    for name, t in peers.items():
        print(f"  zorvan / {name}: {times['zorvan'] / t:.2f}")
    if peers:
        print(f"  zorvan / fastest peer: {times['zorvan'] / min(peers.values()):.2f}")


if __name__ == "__main__":
    main()
