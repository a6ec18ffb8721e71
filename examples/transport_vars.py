"""A transportation LP built with zorvan.vars: ship from plants to markets
at least cost; variables indexed by (plant, market) pairs."""
import zorvan

supply = {"seattle": 350, "san-diego": 600}
demand = {"new-york": 325, "chicago": 300, "topeka": 275}
distance = {("seattle", "new-york"): 2.5, ("seattle", "chicago"): 1.7,
            ("seattle", "topeka"): 1.8, ("san-diego", "new-york"): 2.5,
            ("san-diego", "chicago"): 1.8, ("san-diego", "topeka"): 1.4}

ship = zorvan.vars(list(supply), list(demand), name="ship")
p = zorvan.problem(name="transport")
p.setOutputEnabled(False)
p.addVariable(list(ship.values()))
limits = [zorvan.constraint(zorvan.Sum(ship[i, j] for j in demand) <= supply[i], name=i)
          for i in supply]
needs = [zorvan.constraint(zorvan.Sum(ship[i, j] for i in supply) >= demand[j], name=j)
         for j in demand]
p.addConstraint(limits, needs)
p.setObjective(zorvan.Sum(90 * distance[k] / 1000 * ship[k] for k in distance))
p.optimize()
print("cost: %.4f" % p.getObjVal())
for (i, j), v in zip(ship.keys(), p.getSolution(list(ship.values()))):
    if v > 1e-9:
        print(f"{i} -> {j}: {v:g}")
print("market prices:", {j: round(d, 6) for j, d in zip(demand, p.getDual(needs))})
