"""Quickstart: state a small model with ordinary Python operators, solve it
and read the results back."""
import zorvan

# The model of the overview: one variable, one constraint.
x = zorvan.var(ub=10)
c = 2 * x + 3 <= 7  # becomes the row 2x <= 4

p = zorvan.problem(name="quickstart")
p.setOutputEnabled(False)
p.addVariable(x)
p.addConstraint(c)
p.setObjective(x, sense=zorvan.maximize)
solvestatus, solstatus = p.optimize()
print("status:", solvestatus.name, solstatus.name)
print("x =", p.getSolution(x))
print("slack of c =", p.getSlack(c), " dual of c =", p.getDual(c))

# A bit more: a second variable, named constraints and an expression read
# at the solution.
y = zorvan.var(name="y", lb=1)
p.addVariable(y)
budget = zorvan.constraint(x + 4 * y <= 10, name="budget")
p.addConstraint(budget)
p.setObjective(3 * x + 2 * y + 1, sense=zorvan.maximize)
p.optimize()
print("objective =", p.getObjVal())
print("x, y =", p.getSolution(x, y))
print("3x + 2y + 1 at the solution =", p.getSolution(3 * x + 2 * y + 1))
print("slack of budget =", p.getSlack("budget"), " dual =", p.getDual(budget))
print("reduced costs =", [round(d, 6) + 0.0 for d in p.getRCost()])
