"""A MIP: choose items of a knapsack (binary variables), then require that
at most one of two rival items is taken (a special ordered set) and that a
bonus item needs the first one (an indicator)."""
import zorvan

values = [10, 13, 5, 6, 3]
weights = [5, 7, 4, 3, 2]
capacity = 14

take = [zorvan.var(vartype=zorvan.binary, name=f"take{i}") for i in range(len(values))]
p = zorvan.problem(name="knapsack")
p.setOutputEnabled(False)
p.addVariable(take)
p.addConstraint(zorvan.Sum(w * t for w, t in zip(weights, take)) <= capacity)
p.setObjective(zorvan.Sum(v * t for v, t in zip(values, take)), sense=zorvan.maximize)
p.optimize()
print("knapsack value:", p.getObjVal())
print("taken:", [i for i, t in enumerate(p.getSolution(take)) if t > 0.5])

# Items 0 and 1 are rivals: at most one of them (SOS of type 1).
p.addSOS(zorvan.sos([take[0], take[1]], [1.0, 2.0], type=1))
# A bonus of 6 counts only if item 0 is taken: bonus = 1 -> take0 >= 1.
bonus = zorvan.var(vartype=zorvan.binary, name="bonus")
p.addVariable(bonus)
p.addIndicator(bonus == 1, take[0] >= 1)
p.setObjective(zorvan.Sum(v * t for v, t in zip(values, take)) + 6 * bonus,
               sense=zorvan.maximize)
p.optimize()
print("with rivals and bonus:", p.getObjVal(), p.getProbStatusString())
print("taken:", [i for i, t in enumerate(p.getSolution(take)) if t > 0.5],
      "bonus:", round(p.getSolution(bonus)))
