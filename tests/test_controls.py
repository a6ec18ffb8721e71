import pytest

import zorvan


@pytest.fixture
def p():
    return zorvan.problem("ctl")


class TestBoundControls:
    def test_read_and_write_by_name(self, p):
        assert p.controls.presolve == 1
        p.controls.PRESOLVE = 0
        assert p.controls.presolve == 0
        p.controls.miprelstop = 1          # an int is fine for a real control
        assert p.controls.miprelstop == 1.0
        p.controls.outputprefix = "> "
        assert p.controls.outputprefix == "> "
        p.controls.lpiterlimit = 2**40     # 64-bit integer control
        assert p.controls.lpiterlimit == 2**40

    def test_name_rules(self, p):
        with pytest.raises(zorvan.ModelError,
                           match="Control or attribute is neither all-lower nor all-upper case"):
            p.controls.MipRelStop
        with pytest.raises(zorvan.ModelError, match="Control or attribute name is too long"):
            getattr(p.controls, "a" * 1025)
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            p.controls.nosuchcontrol
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            p.controls.nosuchcontrol = 1

    def test_value_types(self, p):
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-integer value to an integer control"):
            p.controls.presolve = "0"
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-integer value to an integer control"):
            p.controls.presolve = 1.0
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-numerical value to a floating-point control"):
            p.controls.miprelstop = "small"
        with pytest.raises(zorvan.ModelError,
                           match="Cannot set non-string value to a string control"):
            p.controls.outputprefix = 3

    def test_engine_refusal_reaches_python(self, p):
        with pytest.raises(zorvan.SolverError) as info:
            p.controls.presolve = 7
        assert str(info.value)  # the engine's own text
        assert p.controls.presolve == 1

    def test_dict_and_repr(self, p):
        table = p.controls.__dict__
        assert table["presolve"][1:] == (1, 0)
        assert table["miprelstop"][1] == 2 and table["outputprefix"][1] == 3
        assert "zslp_postsolve" in table and table["zslp_postsolve"][2] == 1
        shown = eval(repr(p.controls))
        assert shown["presolve"] == 1 and shown["zslp_postsolve"] == 1
        assert set(shown) == set(table)


class TestAttributes:
    def test_read_by_name(self, p):
        assert p.attributes.cols == 0 and p.attributes.ROWS == 0
        assert p.attributes.probname == "ctl"
        assert p.attributes.probnamelength == 3
        assert p.attributes.solvestatus is zorvan.SolveStatus.UNSTARTED
        assert p.attributes.solstatus is zorvan.SolStatus.NOTFOUND
        assert p.attributes.zslp_nlpstatus == 0
        assert len(p.objattribs) == p.attributes.objectives

    def test_objective_views(self, p):
        first = p.objattribs[0]
        assert first is p.objattribs[0]
        # Before any solve the engine has no per-objective results: its refusal
        # arrives with its own text.
        with pytest.raises(zorvan.SolverError, match="not an objective of the last solve"):
            first.lpobjval
        with pytest.raises(zorvan.ModelError, match="Invalid objective index"):
            p.objattribs[len(p.objattribs)]
        with pytest.raises(zorvan.InterfaceError,
                           match="Multi-objective string attributes are not supported"):
            first.probname
        with pytest.raises(zorvan.InterfaceError, match="Only ZRVS attributes are supported"):
            first.zslp_nlpstatus
        p.reset()
        with pytest.raises(zorvan.ModelError, match="Problem is not initialized"):
            first.lpobjval

    def test_objective_views_show_before_and_after_a_solve(self, p):
        x = zorvan.var(ub=4)
        p.addVariable(x)
        p.setObjective(2 * x + 1, sense=zorvan.maximize)
        p.addObjective(x, priority=-1, weight=1.0)
        # Before a solve the per-objective results are not there: they show
        # as None, and the listing has one entry per objective.
        shown = eval(repr(p.objattribs))
        assert len(shown) == 2
        per_objective = {"lpstatus", "mipstatus", "solvestatus", "solstatus", "stopstatus",
                         "simplexiter", "bariter", "nodes", "lpobjval", "mipobjval",
                         "bestbound", "solvetime"}
        assert set(shown[0]) == set(shown[1]) == per_objective
        assert all(v is None for v in shown[0].values())
        assert eval(repr(p.objattribs[1])) == shown[1]
        p.lpoptimize()
        first, second = repr(p.objattribs).split("}, {")
        assert "'lpobjval': 9.0" in first and "'lpobjval': 4.0" in second
        assert "None" not in first + second
        assert p.objattribs[1].lpstatus == 1
        # Reading one value still says why it is missing.
        p.chgbounds([x], ["U"], [3.0])
        with pytest.raises(zorvan.SolverError, match="not an objective of the last solve"):
            p.objattribs[0].lpobjval

    def test_errors(self, p):
        with pytest.raises(zorvan.ModelError, match="A problem's attribute cannot be set"):
            p.attributes.cols = 3
        with pytest.raises(zorvan.InterfaceError, match="Incorrect attribute name"):
            p.attributes.presolve
        with pytest.raises(zorvan.ModelError, match="neither all-lower nor all-upper"):
            p.attributes.Cols

    def test_repr_lists_every_attribute(self, p):
        text = repr(p.attributes)
        assert "'cols': 0" in text and "'probname': 'ctl'" in text


class TestUserDefaults:
    def test_defaults_reach_new_problems(self, clean_defaults):
        assert clean_defaults.presolve == 1
        assert clean_defaults.zslp_postsolve == 1
        clean_defaults.presolve = 0
        clean_defaults.MIPRELSTOP = 0.125
        assert clean_defaults.presolve == 0
        p = zorvan.problem()
        assert p.controls.presolve == 0 and p.controls.miprelstop == 0.125
        assert p.controls.zslp_postsolve == 1

    def test_removing_defaults(self, clean_defaults):
        clean_defaults.presolve = 0
        zorvan.setdefaultcontrol("PRESOLVE")
        zorvan.setdefaultcontrol(ipar="presolve")   # absent: no error
        assert zorvan.problem().controls.presolve == 1
        with pytest.raises(zorvan.ModelError, match="neither all-lower nor all-upper"):
            zorvan.setdefaultcontrol("PreSolve")
        with pytest.raises(zorvan.ModelError, match="too long"):
            zorvan.setdefaultcontrol("x" * 1025)
        clean_defaults.threads = 3
        zorvan.setdefaults()
        p = zorvan.problem()
        assert p.controls.threads == -1
        assert p.controls.zslp_postsolve == 0      # the engine's own default

    def test_defaults_are_checked(self, clean_defaults):
        with pytest.raises(zorvan.ModelError, match="Cannot set non-integer value"):
            clean_defaults.presolve = "off"
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            clean_defaults.nosuchcontrol = 1
        with pytest.raises(zorvan.InterfaceError, match="Incorrect control name"):
            clean_defaults.nosuchcontrol

    def test_engine_refusal_when_the_default_is_set(self, clean_defaults):
        # The right type, a value the engine refuses: refused at once with the
        # text a problem's own control gives, and never stored.
        p = zorvan.problem()
        with pytest.raises(zorvan.SolverError) as on_problem:
            p.controls.presolve = 9
        with pytest.raises(zorvan.SolverError) as on_default:
            clean_defaults.presolve = 9
        assert str(on_default.value) == str(on_problem.value)
        assert "presolve" in str(on_default.value)
        with pytest.raises(zorvan.SolverError, match="randomseed"):
            clean_defaults.randomseed = -1
        assert zorvan.problem().controls.presolve == 1
        assert zorvan.problem().controls.randomseed >= 0
        clean_defaults.randomseed = 7   # a good value is still taken
        assert zorvan.problem().controls.randomseed == 7

    def test_defaults_object_is_shared(self):
        assert zorvan._getcontrols() is zorvan._getcontrols()
        assert "presolve" in zorvan._getcontrols().__dict__


def test_views_are_made_by_the_module_only(p):
    with pytest.raises(TypeError):
        type(p.attributes)()
    with pytest.raises(TypeError):
        type(p.objattribs)()
    control = type(p.controls)
    with pytest.raises(zorvan.ModelError, match="made by the module"):
        control()
    bare = control.__new__(control)      # never initialised: refuses, never crashes
    with pytest.raises(zorvan.ModelError, match="Problem is not initialized"):
        bare.presolve
    with pytest.raises(zorvan.ModelError, match="Problem is not initialized"):
        bare.presolve = 0
    assert bare.__dict__ is None
    assert "uninitialized" in repr(bare)


def test_catalogue_kinds_match_values(p):
    python_types = {1: int, 2: float, 3: str}
    values = eval(repr(p.controls))
    defaults = zorvan._getcontrols().__dict__
    assert len(values) >= 10
    for name, (ident, kind, source) in p.controls.__dict__.items():
        assert name == name.lower() and ident > 0 and source in (0, 1, 2)
        assert type(values[name]) is python_types[kind], name
        assert type(defaults[name]) is python_types[kind], name
        # A new problem switches the nonlinear presolve off and postsolve on.
        if name not in ("zslp_postsolve", "zslp_presolve"):
            assert defaults[name] == values[name], name
    for name, (ident, kind, source) in p.attributes.__dict__.items():
        assert name not in p.controls.__dict__
