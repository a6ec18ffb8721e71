"""Time of zorvan.Sum, Dot and nonlinear tree building as the number of terms
grows: the time per term must stay flat (linear total time).

Run: .venv/bin/python bench/bench_sum.py [max_terms]
"""
import sys

import zorvan as z

from timing import best_of


def main():
    top = int(sys.argv[1]) if len(sys.argv) > 1 else 10**6
    sizes = [top // 100, top // 10, top]
    x = [z.var() for _ in range(top)]
    coefs = [float(i % 13 + 1) for i in range(top)]
    terms = [c * v for c, v in zip(coefs, x)]
    cases = {
        "Sum(list of terms)": lambda n: (lambda: z.Sum(terms[:n])),
        "Sum(generator c*x)": lambda n: (lambda: z.Sum(coefs[i] * x[i] for i in range(n))),
        "Sum(same 1000 vars)": lambda n: (lambda: z.Sum(terms[i % 1000] for i in range(n))),
        "Dot(coefs, vars)": lambda n: (lambda: z.Dot(coefs[:n], x[:n])),
        "Sum(sin(x) nodes)": lambda n: (lambda: z.Sum(z.sin(v) for v in x[:n])),
        "nonlinear += (in place)": lambda n: (lambda: accumulate(x[:n])),
    }
    print(f"{'case':26s}" + "".join(f"{n:>14d}" for n in sizes) + "   ns/term at each size")
    for name, make in cases.items():
        times = [best_of(3, make(n)) for n in sizes]
        per = [t / n * 1e9 for t, n in zip(times, sizes)]
        print(f"{name:26s}" + "".join(f"{t:13.4f}s" for t in times) + "   " +
              " ".join(f"{p:7.1f}" for p in per))


def accumulate(vs):
    f = z.sin(vs[0]) + 0.5
    for v in vs:
        f += v
    return f


if __name__ == "__main__":
    main()
