"""A per-element model whose coefficients are NumPy scalars against the same
model with Python floats, in one run, best of 5: a p-median with n x n
assignment binaries plus n location binaries (n = 316 gives about 10^5),
built with the same loops over rows of coefficients that are either the
numpy.float64 scalars of a NumPy distance matrix (list(row) for each row)
or the same values as Python floats (matrix.tolist()), so that only the
scalar type differs. Also the single product
c * x for NumPy scalars of several widths against a Python float.

Run: .venv/bin/python bench/bench_numpy_scalars.py [n]
"""
import sys

import numpy as np

import zorvan as z

import timing

REPEATS = 5


def best_of(build):
    return timing.best_of(REPEATS, build)


def p_median(d, n, p):
    prob = z.problem("pmedian")
    x = [[z.var(vartype=z.binary) for _ in range(n)] for _ in range(n)]
    y = [z.var(vartype=z.binary) for _ in range(n)]
    prob.addVariable(x, y)
    prob.addConstraint(z.Sum(x[i][j] for j in range(n)) == 1 for i in range(n))
    prob.addConstraint(x[i][j] <= y[j] for i in range(n) for j in range(n))
    prob.addConstraint(z.Sum(y) == p)
    prob.setObjective(z.Sum(d[i][j] * x[i][j] for i in range(n) for j in range(n)))
    return prob


def main():
    n = int(sys.argv[1]) if len(sys.argv) > 1 else 316
    pts = np.random.default_rng(7).uniform(0, 100, size=(n, 2))
    dist = np.sqrt(((pts[:, None, :] - pts[None, :, :]) ** 2).sum(axis=2))
    as_floats = dist.tolist()
    as_scalars = [list(row) for row in dist]
    assert type(as_scalars[0][0]) is np.float64
    print(f"p-median, n = {n} ({n * n + n} binaries): seconds, best of {REPEATS}")
    t_numpy = best_of(lambda: p_median(as_scalars, n, 5))
    t_float = best_of(lambda: p_median(as_floats, n, 5))
    print(f"{'numpy.float64 coefficients':32s}{t_numpy:10.4f}")
    print(f"{'Python float coefficients':32s}{t_float:10.4f}")
    print(f"{'ratio numpy / float':32s}{t_numpy / t_float:9.2f}x")

    v = z.var()
    count = 10**5
    print(f"\nc * x, {count} products: seconds, best of {REPEATS}; ratio against a float")
    base = best_of(lambda: [2.5 * v for _ in range(count)])
    for c in (np.float64(2.5), np.float32(2.5), np.float16(2.5), np.int64(2), np.int32(2),
              np.int8(2)):
        t = best_of(lambda: [c * v for _ in range(count)])
        print(f"{type(c).__name__:32s}{t:10.4f}{t / base:9.2f}x")
    print(f"{'float':32s}{base:10.4f}")


if __name__ == "__main__":
    main()
