"""Quickstart: create a problem and report what the engine is."""
import zorvan

p = zorvan.problem(name="quickstart")
print(zorvan.getbanner())
print("problem:", p.name())
