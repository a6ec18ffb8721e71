"""A travelling salesman tour through 50 cities, with the subtour
constraints added lazily: an optnode callback finds the cities that the
node's solution cuts off from city 0 and adds the cut that joins them
(addcuts). The engine's own branch-and-cut runs the search."""
import itertools
import math
import random
import sys

import zorvan


def components(n, edges, x):
    """The connected parts of the graph of edges with a positive value."""
    adj = [[] for _ in range(n)]
    for (i, j), v in zip(edges, x):
        if v > 1e-6:
            adj[i].append(j)
            adj[j].append(i)
    seen, parts = [False] * n, []
    for s in range(n):
        if seen[s]:
            continue
        seen[s], stack, part = True, [s], []
        while stack:
            v = stack.pop()
            part.append(v)
            for w in adj[v]:
                if not seen[w]:
                    seen[w] = True
                    stack.append(w)
        parts.append(part)
    return parts


def solve_tour(points):
    n = len(points)
    edges = list(itertools.combinations(range(n), 2))
    x = [zorvan.var(vartype=zorvan.binary) for _ in edges]
    p = zorvan.problem(name="tsp")
    p.setOutputEnabled(False)
    p.addVariable(x)
    for v in range(n):
        p.addConstraint(zorvan.Sum(x[k] for k, e in enumerate(edges) if v in e) == 2)
    p.setObjective(zorvan.Sum(math.dist(points[i], points[j]) * x[k]
                              for k, (i, j) in enumerate(edges)))
    index = {e: k for k, e in enumerate(edges)}

    def cut_subtours(prob, data):
        sol = prob.getSolution(x)  # the node's LP solution
        parts = components(n, edges, sol)
        if len(parts) == 1:
            return 0
        types, rowtypes, rhs, start, cols, coefs = [], [], [], [], [], []
        for part in parts:
            start.append(len(cols))
            inside = [index[e] for e in itertools.combinations(sorted(part), 2)]
            cols += [x[k] for k in inside]
            coefs += [1.0] * len(inside)
            types.append(1), rowtypes.append("L"), rhs.append(len(part) - 1)
        prob.addcuts(types, rowtypes, rhs, start, cols, coefs)
        return 0

    p.addcboptnode(cut_subtours, None, 0)
    p.optimize()
    tour = [edges[k] for k, v in enumerate(p.getSolution(x)) if v > 0.5]
    return p.getObjVal(), tour, p


def main(n=50, seed=1):
    rng = random.Random(seed)
    points = [(rng.uniform(0, 100), rng.uniform(0, 100)) for _ in range(n)]
    length, tour, p = solve_tour(points)
    print(f"{n} cities: tour length {length:.4f}, {len(tour)} edges,",
          p.getProbStatusString(), f"{p.getAttrib('nodes')} nodes")


if __name__ == "__main__":
    main(*(int(a) for a in sys.argv[1:]))
