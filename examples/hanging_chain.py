"""A nonlinear model: the shape of a hanging chain of length 4 whose ends
are held at heights 1 and 3, one unit apart. The chain takes the shape of
least potential energy; on a grid of n pieces the heights x_0..x_n give

    min  h * sum_i (x_i + x_{i+1}) / 2 * sqrt(1 + ((x_{i+1} - x_i) / h)^2)
    s.t. h * sum_i sqrt(1 + ((x_{i+1} - x_i) / h)^2) = 4,  x_0 = 1,  x_n = 3

with h = 1/n. Run as `python hanging_chain.py [n]` (n = 100 by default)."""
import sys

import zorvan

n = int(sys.argv[1]) if len(sys.argv) > 1 else 100
h = 1.0 / n
x = [zorvan.var(name=f"x{i}", lb=-10, ub=10) for i in range(n + 1)]
x[0].lb = x[0].ub = 1.0
x[n].lb = x[n].ub = 3.0

p = zorvan.problem(name="hanging chain")
p.setOutputEnabled(False)
p.addVariable(x)
piece = [zorvan.sqrt(1 + ((x[i + 1] - x[i]) / h) ** 2) for i in range(n)]
length = zorvan.constraint(h * zorvan.Sum(piece) == 4, name="length")
p.addConstraint(length)
p.setObjective(zorvan.Sum(h * (x[i] + x[i + 1]) / 2 * piece[i] for i in range(n)))

print("status:", p.optimize()[1].name, p.getProbStatusString())
print("energy = %.8f" % p.getObjVal())
print("length = %.8f" % p.getSolution(length.body))
print("lowest point = %.6f" % min(p.getSolution(x)))
print("heights:", " ".join("%.4f" % v for v in p.getSolution(x[:: max(1, n // 10)])))
