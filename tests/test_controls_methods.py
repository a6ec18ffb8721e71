"""getControl, setControl and getAttrib: every argument form, identifiers,
objective controls, per-solve reads and the failure rules."""
import threading

import pytest

import zorvan

PRESOLVE, THREADS, MIPRELSTOP, OUTPUTPREFIX = 8011, 8278, 7003, 8901
ROWS, COLS, SOLSTATUS, SOLVESTATUS, PROBNAME = 1001, 1018, 1053, 1394, 3001
OBJ_CONTROLS = ("priority", "weight", "abstol", "reltol", "rhs")


@pytest.fixture
def p():
    return zorvan.problem("forms")


class TestGetControlForms:
    def test_single_values(self, p):
        assert p.getControl("presolve") == 1
        assert p.getControl("PRESOLVE") == 1
        assert p.getControl(b"presolve") == 1
        assert p.getControl(PRESOLVE) == 1
        assert p.getControl(MIPRELSTOP) == p.controls.miprelstop
        assert type(p.getControl(MIPRELSTOP)) is float
        assert p.getControl(OUTPUTPREFIX) == ""

    def test_several_values_give_dicts(self, p):
        expected = {"presolve": 1, "threads": -1}
        assert p.getControl("presolve", "threads") == expected
        assert p.getControl(["presolve", "THREADS"]) == expected
        assert p.getControl(("presolve", "threads")) == expected
        assert p.getControl(iter(["presolve", "threads"])) == expected
        assert p.getControl(n for n in ("presolve", "threads")) == expected
        # A value asked for by identifier is keyed by the identifier.
        assert p.getControl(["presolve", THREADS]) == {"presolve": 1, THREADS: -1}
        assert p.getControl(PRESOLVE, THREADS) == {PRESOLVE: 1, THREADS: -1}
        assert p.getControl([]) == {}
        assert p.getControl(["presolve"]) == {"presolve": 1}

    def test_no_argument_lists_every_control(self, p):
        p.controls.threads = 2
        everything = p.getControl()
        assert set(everything) == set(p.controls.__dict__)
        assert everything["threads"] == 2
        for name in ("presolve", "miprelstop", "outputprefix", "zslp_postsolve"):
            assert everything[name] == getattr(p.controls, name)
        assert eval(repr(p.controls)) == everything

    def test_values_follow_settings(self, p):
        p.setControl("miprelstop", 0.5)
        assert p.getControl("miprelstop") == 0.5
        p.controls.outputprefix = "[x] "
        assert p.getControl(OUTPUTPREFIX) == "[x] "


class TestSetControlForms:
    def test_name_and_value(self, p):
        assert p.setControl("presolve", 0) is None
        assert p.controls.presolve == 0
        p.setControl("MIPRELSTOP", 1)          # an int suits a real control
        assert p.controls.miprelstop == 1.0
        p.setControl(b"outputprefix", "> ")
        assert p.controls.outputprefix == "> "
        p.setControl("lpiterlimit", 2**40)
        assert p.getControl("lpiterlimit") == 2**40

    def test_identifier_and_value(self, p):
        p.setControl(THREADS, 3)
        p.setControl(MIPRELSTOP, 0.25)
        p.setControl(OUTPUTPREFIX, "id ")
        assert p.getControl("threads", "miprelstop", "outputprefix") == {
            "threads": 3, "miprelstop": 0.25, "outputprefix": "id "}

    def test_dictionary_in_order(self, p):
        p.setControl({"presolve": 0, THREADS: 4, "MIPRELSTOP": 0.125})
        assert p.getControl(["presolve", "threads", "miprelstop"]) == {
            "presolve": 0, "threads": 4, "miprelstop": 0.125}
        p.setControl({"threads": 1, THREADS: 6})   # the later pair wins
        assert p.controls.threads == 6
        p.setControl({})
        # A failing pair stops the loop; the pairs before it stay set.
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            p.setControl({"presolve": 1, "nosuch": 1, "threads": 8})
        assert p.controls.presolve == 1 and p.controls.threads == 6

    def test_argument_errors(self, p):
        with pytest.raises(zorvan.ModelError,
                           match="setControl requires at least one argument of type "
                                 "dictionary or two elements: parameter, value"):
            p.setControl()
        with pytest.raises(zorvan.ModelError,
                           match="Single argument to setControl must be a dictionary"):
            p.setControl([("presolve", 0)])
        with pytest.raises(zorvan.ModelError, match="setControl: arguments mismatch"):
            p.setControl("presolve", 0, "threads")
        with pytest.raises(zorvan.InterfaceError,
                           match="Control name cannot be interpreted as string"):
            p.setControl(None, 0)
        with pytest.raises(zorvan.InterfaceError,
                           match="Control name cannot be interpreted as string"):
            p.setControl({1.5: 0})
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            p.setControl("nosuch", 0)
        with pytest.raises(zorvan.ModelError, match="neither all-lower nor all-upper"):
            p.setControl("PreSolve", 0)
        assert p.controls.presolve == 1

    def test_value_errors(self, p):
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-integer value to an integer control"):
            p.setControl("presolve", "0")
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-integer value to an integer control"):
            p.setControl(PRESOLVE, 0.0)
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-numerical value to a floating-point control"):
            p.setControl(MIPRELSTOP, "tight")
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-string value to a string control"):
            p.setControl(OUTPUTPREFIX, 1)
        # The right type but a value out of the engine's range.
        with pytest.raises(zorvan.SolverError):
            p.setControl("presolve", 5)
        assert p.controls.presolve == 1


class TestIdentifiers:
    def test_unknown_identifiers(self, p):
        for call in (lambda: p.getControl(99999), lambda: p.getAttrib(99999),
                     lambda: p.setControl(99999, 1), lambda: p.getControl([PRESOLVE, 0])):
            with pytest.raises(zorvan.InterfaceError, match=r"Unknown control ID (99999|0)"):
                call()
        with pytest.raises(zorvan.InterfaceError, match="Unknown control ID"):
            p.getControl(2**70)

    def test_identifier_of_the_other_class(self, p):
        # An attribute's identifier is no control: the engine refuses it.
        with pytest.raises(zorvan.SolverError):
            p.getControl(ROWS)
        with pytest.raises(zorvan.SolverError):
            p.setControl(COLS, 3)
        assert p.attributes.cols == 0

    def test_identifiers_match_the_catalogue(self, p):
        for name, (ident, kind, source) in p.controls.__dict__.items():
            if source == 0:
                assert p.getControl(ident) == p.getControl(name), name
        for name, (ident, kind, source) in p.attributes.__dict__.items():
            if source == 0:
                assert p.getAttrib(ident) == p.getAttrib(name), name


class TestGetAttribForms:
    def test_single_values(self, p):
        assert p.getAttrib("cols") == 0
        assert p.getAttrib("PROBNAME") == "forms"
        assert p.getAttrib(PROBNAME) == "forms"
        assert p.getAttrib(b"rows") == 0

    def test_statuses_are_enumeration_members(self, p):
        assert p.getAttrib("solstatus") is zorvan.SolStatus.NOTFOUND
        assert p.getAttrib(SOLVESTATUS) is zorvan.SolveStatus.UNSTARTED
        both = p.getAttrib("solstatus", SOLVESTATUS)
        assert both["solstatus"] is zorvan.SolStatus.NOTFOUND
        assert both[SOLVESTATUS] is zorvan.SolveStatus.UNSTARTED

    def test_several_values_give_dicts(self, p):
        assert p.getAttrib("rows", "cols") == {"rows": 0, "cols": 0}
        assert p.getAttrib(["ROWS", COLS]) == {"rows": 0, COLS: 0}
        assert p.getAttrib(("probname",)) == {"probname": "forms"}

    def test_no_argument_lists_every_attribute(self, p):
        everything = p.getAttrib()
        assert set(everything) == set(p.attributes.__dict__)
        assert everything["probname"] == "forms"
        assert everything["solvestatus"] is zorvan.SolveStatus.UNSTARTED
        assert everything["objectives"] == len(p.objattribs)
        assert repr(p.attributes) == repr(everything)

    def test_errors(self, p):
        with pytest.raises(zorvan.InterfaceError, match="Requested value of an unknown attribute"):
            p.getAttrib("presolve")                  # a control, not an attribute
        with pytest.raises(zorvan.ModelError, match="Bad attribute request"):
            p.getAttrib(2.5)
        with pytest.raises(zorvan.ModelError, match="Bad attribute request"):
            p.getAttrib(["cols", None])
        with pytest.raises(zorvan.ModelError, match="neither all-lower nor all-upper"):
            p.getAttrib("Cols")
        with pytest.raises(zorvan.ModelError, match="Control or attribute name is too long"):
            p.getAttrib("c" * 1025)

    def test_solve_index(self, p):
        for bad in (-1, -(2**70)):
            with pytest.raises(zorvan.InterfaceError, match="Invalid solve index"):
                p.getAttrib(solveidx=bad)
        with pytest.raises(TypeError, match="solveidx"):
            p.getAttrib("cols", solveidx="0")
        assert p.getAttrib("cols", solveidx=None) == 0
        with pytest.raises(zorvan.InterfaceError,
                           match="Multi-objective string attributes are not supported"):
            p.getAttrib("probname", solveidx=0)
        with pytest.raises(zorvan.InterfaceError, match="Only ZRVS attributes are supported"):
            p.getAttrib("zslp_nlpstatus", solveidx=0)
        # Before any solve there are no per-solve results: the engine says so.
        with pytest.raises(zorvan.SolverError, match="not an objective of the last solve"):
            p.getAttrib("lpobjval", solveidx=0)
        with pytest.raises(zorvan.SolverError, match="not an objective of the last solve"):
            p.getAttrib(solveidx=2**40)


class TestNothingPartial:
    def test_unknown_name_abandons_the_request(self, p):
        for call in (lambda: p.getControl("presolve", "nosuch"),
                     lambda: p.getControl(["threads", "nosuch", "presolve"]),
                     lambda: p.getControl("nosuch")):
            with pytest.raises(zorvan.InterfaceError,
                               match="Requested value of an unknown control"):
                call()

    def test_failed_engine_read_abandons_the_request(self, p):
        # The first value reads fine, the second fails in the engine.
        with pytest.raises(zorvan.SolverError):
            p.getControl("presolve", ROWS)
        with pytest.raises(zorvan.SolverError):
            p.getAttrib(["solstatus", "lpobjval"], solveidx=0)
        with pytest.raises(zorvan.ModelError, match="Bad control request"):
            p.getControl("presolve", 1.5)
        with pytest.raises(zorvan.ModelError, match="Bad control request"):
            p.getControl(None)


class TestObjectiveControls:
    def test_read_forms(self, p):
        everything = p.getControl(objidx=0)
        assert tuple(everything) == OBJ_CONTROLS
        assert everything == {"priority": 0, "weight": 1.0, "abstol": 1e-6,
                              "reltol": 1e-6, "rhs": 0.0}
        assert p.getControl("Weight", objidx=0) == 1.0
        assert p.getControl(20001, objidx=0) == 0
        assert p.getControl("priority", 20005, objidx=0) == {"priority": 0, 20005: 0.0}
        assert p.getControl(["RELTOL"], objidx=0) == {"reltol": 1e-6}

    def test_set_forms(self, p):
        p.setControl("weight", 2.5, objidx=0)
        p.setControl({"PRIORITY": 3, 20003: 0.5, "rhs": 4.0}, objidx=0)
        assert p.getControl(objidx=0) == {"priority": 3, "weight": 2.5, "abstol": 0.5,
                                          "reltol": 1e-6, "rhs": 4.0}
        # The problem's own controls are untouched by objective controls.
        assert p.getControl("presolve") == 1

    def test_value_types(self, p):
        with pytest.raises(zorvan.ModelError, match="Control 'weight' requires a float value"):
            p.setControl("weight", 1, objidx=0)
        with pytest.raises(zorvan.ModelError, match="Control 20001 requires an integer value"):
            p.setControl(20001, 1.0, objidx=0)
        assert p.getControl(objidx=0)["weight"] == 1.0

    def test_errors(self, p):
        for call in (lambda: p.getControl(objidx=-1),
                     lambda: p.setControl("weight", 1.0, objidx=-3)):
            with pytest.raises(zorvan.ModelError, match="Invalid objective index"):
                call()
        with pytest.raises(zorvan.InterfaceError, match="Invalid objective control id: 20006"):
            p.getControl(20006, objidx=0)
        with pytest.raises(zorvan.InterfaceError, match="Invalid objective control: presolve"):
            p.setControl("presolve", 0, objidx=0)
        with pytest.raises(zorvan.InterfaceError,
                           match="Expected a string control name or integer id"):
            p.getControl(None, objidx=0)
        with pytest.raises(zorvan.InterfaceError,
                           match="Expected a string control name or integer id"):
            p.getControl(["weight", 2.0], objidx=0)
        with pytest.raises(TypeError, match="objidx"):
            p.getControl(objidx=0.0)
        with pytest.raises(TypeError):
            p.getControl(objindex=0)
        # Only objective 0 exists: the engine refuses objective 1.
        with pytest.raises(zorvan.SolverError):
            p.getControl(objidx=1)
        with pytest.raises(zorvan.SolverError):
            p.setControl("weight", 1.0, objidx=1)


def test_released_problem_refuses_every_method(p):
    p.__exit__(None, None, None)
    for call in (lambda: p.getControl(), lambda: p.setControl("presolve", 0),
                 lambda: p.getAttrib("cols"), lambda: p.getControl(objidx=-1)):
        with pytest.raises(zorvan.ModelError, match="Problem is not initialized"):
            call()


def test_new_problems_list_user_defaults(clean_defaults):
    clean_defaults.threads = 2
    clean_defaults.outputprefix = "d "
    listed = zorvan.problem().getControl()
    assert listed["threads"] == 2 and listed["outputprefix"] == "d "
    zorvan.setdefaults()
    listed = zorvan.problem().getControl()
    assert listed["threads"] == -1 and listed["outputprefix"] == ""
    assert repr(clean_defaults) == repr(clean_defaults.__dict__)


def test_requests_from_several_threads(p):
    problems = [zorvan.problem(f"t{i}") for i in range(4)]
    failures = []

    def work(q, n):
        try:
            for k in range(200):
                q.setControl({"threads": n, "miprelstop": k / 1000})
                got = q.getControl(["threads", "miprelstop"])
                if got != {"threads": n, "miprelstop": k / 1000}:
                    failures.append(got)
                q.getAttrib()
        except Exception as e:  # reported below, in the main thread
            failures.append(e)

    threads = [threading.Thread(target=work, args=(q, i + 1)) for i, q in enumerate(problems)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert failures == []


def test_help_texts():
    for method in (zorvan.problem.getControl, zorvan.problem.setControl,
                   zorvan.problem.getAttrib):
        doc = method.__doc__
        for section in ("Purpose:", "Synopsis:", "Arguments:", "Example:",
                        "Further information:", "Related topics:"):
            assert section in doc, (method, section)


def test_mip_and_barrier_controls_through_python(p):
    assert p.getControl("mipabscutoff", "bargapstop", "bariterlimit", "maxmipsol",
                        "crossover") == {"mipabscutoff": 1e20, "bargapstop": 1e-8,
                                         "bariterlimit": 2**31 - 1, "maxmipsol": 0,
                                         "crossover": 1}
    p.setControl({"MIPABSCUTOFF": -12, "maxmipsol": 3, "crossover": 0})
    assert p.getControl(7006) == -12.0 and p.controls.maxmipsol == 3
    assert p.controls.crossover == 0
    # The engine's ranges: the value is refused and the control keeps its value.
    for name, value in (("crossover", 2), ("maxmipsol", -1), ("bargapstop", 0.0),
                        ("bariterlimit", 2**31)):
        before = p.getControl(name)
        with pytest.raises(zorvan.SolverError, match=name):
            p.setControl(name, value)
        assert p.getControl(name) == before
