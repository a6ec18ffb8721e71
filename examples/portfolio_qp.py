"""A convex QP: the portfolio of three assets with the least variance that
reaches an expected return of 10%."""
import zorvan

returns = [0.06, 0.10, 0.15]
cov = [[0.010, 0.002, 0.001],
       [0.002, 0.040, 0.010],
       [0.001, 0.010, 0.090]]

w = [zorvan.var(name=f"w{i}", ub=1) for i in range(3)]
p = zorvan.problem(name="portfolio")
p.setOutputEnabled(False)
p.addVariable(w)
total = zorvan.constraint(zorvan.Sum(w) == 1, name="total")
target = zorvan.constraint(zorvan.Dot(returns, w) >= 0.10, name="target")
p.addConstraint(total, target)
variance = zorvan.Sum(cov[i][j] * w[i] * w[j] for i in range(3) for j in range(3))
p.setObjective(variance)
print("status:", p.optimize()[1].name)
print("weights:", [round(v, 4) for v in p.getSolution(w)])
print("variance: %.6f" % p.getObjVal())
print("return: %.4f" % p.getSolution(zorvan.Dot(returns, w)))
print("price of return (dual of target): %.6f" % p.getDual(target))
