"""The type stubs shipped with the package describe the module as it is:
the same public names, the same methods on the main types, signatures that
Python accepts, and the files installed next to the package."""
import ast
import pathlib

import pytest

import zorvan

PACKAGE = pathlib.Path(zorvan.__file__).parent
STUB = ast.parse((PACKAGE / "__init__.pyi").read_text(), filename="__init__.pyi")
# Private names the package exports on purpose.
EXPORTED_PRIVATE = {"_init", "_getcontrols", "_storesizes"}


def stub_names():
    names = set()
    for node in STUB.body:
        if isinstance(node, (ast.ClassDef, ast.FunctionDef)):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
        elif isinstance(node, ast.ImportFrom):
            names.update(a.asname for a in node.names if a.asname)
        elif isinstance(node, ast.Assign):
            names.update(t.id for t in node.targets)
    return {n for n in names if not n.startswith("_") or n in EXPORTED_PRIVATE}


def stub_class(name):
    classes = {n.name: n for n in STUB.body if isinstance(n, ast.ClassDef)}
    members = set()
    todo = [classes[name]]
    while todo:
        cls = todo.pop()
        for node in cls.body:
            if isinstance(node, ast.FunctionDef):
                members.add(node.name)
            elif isinstance(node, ast.AnnAssign):
                members.add(node.target.id)
        todo += [classes[b.id] for b in cls.bases if isinstance(b, ast.Name) and b.id in classes]
    return members


def test_package_ships_the_stubs():
    assert (PACKAGE / "py.typed").is_file() and (PACKAGE / "__init__.pyi").is_file()


def test_every_public_name_is_declared_and_nothing_else():
    module = {n for n in dir(zorvan)
              if not n.startswith("_") or n in EXPORTED_PRIVATE} | {"__version__"}
    declared = stub_names() | {"__version__"}
    assert sorted(module - declared) == [], "names missing from the stubs"
    assert sorted(declared - module) == [], "stub names the module does not have"


def sample(name):
    x = zorvan.var()
    return {"problem": zorvan.problem, "var": zorvan.var, "expression": zorvan.expression,
            "constraint": lambda: zorvan.constraint(body=x, ub=1),
            "sos": lambda: zorvan.sos([x], [1.0])}[name]()


@pytest.mark.parametrize("name", ["problem", "var", "constraint", "sos", "expression"])
def test_members_of_the_main_types_match(name):
    runtime = {m for m in dir(getattr(zorvan, name)) if not m.startswith("_")}
    if name == "problem":
        runtime |= {"__enter__", "__exit__"}
    declared = {m for m in stub_class(name) if not m.startswith("_") or m in runtime}
    assert sorted(runtime - declared) == [], f"{name}: members missing from the stubs"
    # Attributes served by the type's own lookup do not show in dir().
    instance = sample(name)
    extra = sorted(m for m in declared - runtime if not hasattr(instance, m))
    assert extra == [], f"{name}: stub members the type does not have"


def refuses_keyword(call, keyword):
    """Whether call(keyword=None) fails because of the keyword itself (other
    failures, such as a missing argument, do not count)."""
    try:
        call(**{keyword: None})
    except Exception as e:  # noqa: BLE001 - any refusal of the keyword
        text = str(e)
        return keyword in text and "keyword" in text
    return False


def test_declared_keywords_are_accepted():
    # Every keyword-only argument of a stub function is one the module
    # function takes.
    functions = {n.name: n for n in STUB.body if isinstance(n, ast.FunctionDef)}
    calls = {"vars": lambda **kw: zorvan.vars(2, **kw),
             "evaluate": lambda **kw: zorvan.evaluate(1.0, **kw)}
    checked = 0
    for name, node in functions.items():
        call = calls.get(name) or getattr(zorvan, name)
        for keyword in [a.arg for a in node.args.kwonlyargs]:
            assert not refuses_keyword(call, keyword), f"{name} refuses {keyword}"
            checked += 1
    assert not refuses_keyword(calls["vars"], "vartype")
    assert refuses_keyword(calls["vars"], "no_such_keyword")
    assert checked >= 8


def test_problem_methods_take_their_keywords():
    cls = {n.name: n for n in STUB.body if isinstance(n, ast.ClassDef)}["problem"]
    p = zorvan.problem()
    checked = 0
    for node in cls.body:
        if isinstance(node, ast.FunctionDef) and not node.name.startswith("_"):
            method = getattr(p, node.name)
            if not callable(method):
                continue
            for keyword in [a.arg for a in node.args.kwonlyargs]:
                assert not refuses_keyword(method, keyword), f"problem.{node.name}: {keyword}"
                checked += 1
    assert refuses_keyword(p.optimize, "no_such_keyword") and checked >= 8
