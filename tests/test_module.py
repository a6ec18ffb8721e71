import re

import pytest

import zorvan
from zorvan import zorvanlib

from conftest import run_python

SECTIONS = ("Purpose:", "Synopsis:", "Arguments:", "Example:",
            "Further information:", "Related topics:")


def test_constants_have_their_values_and_kinds():
    assert zorvan.maximize == -1 and type(zorvan.maximize) is int
    assert zorvan.minimize == 1
    assert zorvan.infinity == 1e20 and type(zorvan.infinity) is float
    assert zorvan.nlp_solution == zorvan.nlp_locally_optimal == 1
    assert zorvan.nlp_optimal == zorvan.nlp_globally_optimal == 2
    assert (zorvan.continuous, zorvan.binary, zorvan.integer, zorvan.semicontinuous,
            zorvan.semiinteger, zorvan.partiallyinteger) == (0, 1, 2, 3, 4, 5)
    assert (zorvan.leq, zorvan.geq, zorvan.eq, zorvan.rng) == (1, 2, 3, 4)
    assert zorvan.stop_numericalerror == 13 and zorvan.stop_solvecomplete == 10
    assert zorvan.msset_initialfiltered == 6 and zorvan.msset_knitro_extended == 5
    assert (zorvan.tok_col, zorvan.tok_op, zorvan.ifun_erfc, zorvan.op_colon) == (10, 31, 50, 2)
    assert zorvan.names_internalfunc == 8 and zorvan.rowinfo_penaltycolumnminusdj == 13


def test_unpublished_stop_reasons():
    stops = {v for k, v in vars(zorvanlib).items() if k.startswith("stop_")}
    assert stops == set(range(1, 11)) | {13}


def test_msset_constants_are_published_in_their_order():
    names = [k for k in vars(zorvanlib) if k.startswith("msset_")]
    assert names == ["msset_initialvalues", "msset_initialfiltered", "msset_solvers",
                     "msset_slp_basic", "msset_slp_extended", "msset_knitro_basic",
                     "msset_knitro_extended"]


def test_public_and_internal_types():
    for name in ("var", "expression", "sos", "constraint", "problem", "branchobj", "poolcut"):
        assert isinstance(getattr(zorvanlib, name), type)
        assert getattr(zorvanlib, name).__name__ == name
    for name in ("control", "attribute", "objattrib", "linterm", "quadterm", "nonlinear",
                 "generic", "zrvsobject"):
        assert not hasattr(zorvanlib, name)


def test_exceptions():
    errors = (zorvan.ModelError, zorvan.InterfaceError, zorvan.SolverError)
    assert [e.__module__ + "." + e.__name__ for e in errors] == [
        "zorvan.ModelError", "zorvan.InterfaceError", "zorvan.SolverError"]
    assert all(issubclass(e, Exception) for e in errors)
    assert len(set(errors)) == 3


def _documented_objects():
    p = zorvan.problem()
    types = [zorvan.var, zorvan.expression, zorvan.sos, zorvan.constraint, zorvan.problem,
             zorvan.branchobj, zorvan.poolcut, type(p.controls), type(p.attributes),
             type(p.objattribs)]
    for t in types:
        yield t.__name__, t.__doc__
        for name, member in vars(t).items():
            if callable(member) and not name.startswith("__") or name in ("__enter__", "__exit__"):
                yield t.__name__ + "." + name, member.__doc__
    for name, member in vars(zorvanlib).items():
        if callable(member) and not isinstance(member, type):
            yield name, member.__doc__


def test_every_type_and_method_has_a_help_text():
    for name, doc in _documented_objects():
        assert doc, name
        positions = [doc.find(s) for s in SECTIONS]
        assert -1 not in positions and positions == sorted(positions), name


def test_enumerations():
    assert [int(s) for s in zorvan.SolveStatus] == [0, 1, 2, 3]
    assert [int(s) for s in zorvan.SolStatus] == [0, 1, 2, 3, 4]
    assert zorvan.SolStatus(1) == zorvan.solstatus_optimal


def test_first_variable_gets_identifier_one():
    result = run_python("""
        import zorvan
        print(repr(zorvan.var()), str(zorvan.var()))
    """)
    assert result.returncode == 0, result.stderr
    assert result.stdout.split() == ["C1", "C2"]


def test_unfinished_types_refuse():
    with pytest.raises(zorvan.ModelError, match="not available yet"):
        zorvan.branchobj(zorvan.problem())
    a, b = zorvan.var(), zorvan.var()
    assert int(re.sub("C", "", repr(b))) == int(re.sub("C", "", repr(a))) + 1
