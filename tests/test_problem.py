import threading
import tracemalloc

import pytest

import zorvan

NOT_INIT = "Problem is not initialized"


class TestCreation:
    def test_names(self):
        assert zorvan.problem().name() == "noname"
        assert zorvan.problem(name="diet").name() == "diet"
        assert str(zorvan.problem("plan")) == "plan"
        assert zorvan.problem(b"bytes").name() == "bytes"
        assert zorvan.problem("pos", name="kw").name() == "pos"

    def test_declaration_errors(self):
        with pytest.raises(zorvan.ModelError, match="More than one string passed"):
            zorvan.problem("a", "b")
        with pytest.raises(zorvan.ModelError, match="Invalid optimization sense"):
            zorvan.problem(sense=0)
        with pytest.raises(TypeError):
            zorvan.problem(name=5)
        with pytest.raises(zorvan.ModelError, match="Erroneous problem declaration"):
            zorvan.problem(5)
        with pytest.raises(zorvan.ModelError, match="Erroneous problem declaration"):
            zorvan.problem([[3.0]])
        # Empty collections add nothing.
        assert zorvan.problem([], (), "x").name() == "x"

    def test_sense(self):
        p = zorvan.problem(sense=zorvan.maximize)
        assert p.attributes.objsense == -1.0 and p.controls.zslp_objsense == -1.0
        assert p.copy().attributes.objsense == -1.0
        p.reset()
        assert p.attributes.objsense == 1.0 and p.controls.zslp_objsense == 1.0
        assert zorvan.problem(sense=zorvan.minimize).attributes.objsense == 1.0

    def test_initialising_twice(self):
        p = zorvan.problem()
        with pytest.raises(zorvan.ModelError, match="Problem is already initialized"):
            p.__init__()

    def test_uninitialised_problem(self):
        p = zorvan.problem.__new__(zorvan.problem)
        for call in (p.name, p.copy, p.reset, p.getOutputEnabled, p.__enter__):
            with pytest.raises(zorvan.ModelError, match=NOT_INIT):
                call()
        p.__init__(name="late")
        assert p.name() == "late"

    def test_failed_initialisation_leaves_problem_uninitialised(self):
        p = zorvan.problem.__new__(zorvan.problem)
        with pytest.raises(zorvan.ModelError):
            p.__init__("a", "b")
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            p.name()


class TestLifecycle:
    def test_context_manager_releases(self):
        with zorvan.problem(name="ctx") as p:
            assert p.name() == "ctx"
            controls = p.controls
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            p.name()
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            controls.presolve
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            controls.presolve = 0
        # The views are gone with the engine problem; reaching for them (as in
        # p.controls.presolve) says why.
        for view in ("controls", "attributes", "objattribs"):
            with pytest.raises(zorvan.ModelError, match=NOT_INIT):
                getattr(p, view)
        p.__exit__(None, None, None)  # releasing twice is harmless

    def test_views_outliving_their_problem(self):
        import gc
        controls = zorvan.problem().controls
        attributes = zorvan.problem().attributes
        objattribs = zorvan.problem().objattribs
        gc.collect()
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            controls.presolve
        with pytest.raises(zorvan.ModelError, match=NOT_INIT):
            attributes.cols
        with pytest.raises(zorvan.InterfaceError, match="Object is not initialized"):
            len(objattribs)
        assert "uninitialized" in repr(controls) and "uninitialized" in repr(attributes)

    def test_reset(self, clean_defaults):
        p = zorvan.problem("before")
        p.controls.presolve = 0
        clean_defaults.threads = 2
        p.reset()
        assert p.name() == "noname"
        assert p.controls.presolve == 1
        assert p.controls.threads == 2

    def test_copy_and_original_change_their_positions_apart(self):
        # A copy shares the original's maps until one side changes them.
        p = zorvan.problem()
        xs = [zorvan.var() for _ in range(6)]
        p.addVariable(xs)
        cons = [x <= k for k, x in enumerate(xs)]
        p.addConstraint(cons)
        q = p.copy()
        q.delVariable(xs[0])
        q.delConstraint(cons[1])
        assert [p.getIndex(x) for x in xs] == list(range(6))
        assert [p.getIndex(c) for c in cons] == list(range(6))
        assert [q.getIndex(x) for x in xs[1:]] == list(range(5))
        assert [q.getIndex(c) for c in cons[:1] + cons[2:]] == list(range(5))
        p.delVariable(xs[5])
        y = zorvan.var()
        q.addVariable(y)
        assert q.getIndex(xs[5]) == 4 and q.getIndex(y) == 5
        with pytest.raises(zorvan.ModelError, match="not in problem"):
            p.getIndex(y)
        with pytest.raises(zorvan.ModelError, match="not in problem"):
            p.getIndex(xs[5])

    def test_copy(self):
        p = zorvan.problem("orig")
        p.controls.miprelstop = 0.5
        q = p.copy()
        assert type(q) is zorvan.problem
        assert q.name() == "orig" and q.controls.miprelstop == 0.5
        q.controls.miprelstop = 0.25
        assert p.controls.miprelstop == 0.5
        p.setOutputEnabled(False)
        assert p.copy().getOutputEnabled() is False
        del p
        assert q.name() == "orig"

    def test_output_switch_per_problem(self):
        p = zorvan.problem()
        assert p.getOutputEnabled() is True
        p.setOutputEnabled(0)
        assert p.getOutputEnabled() is False
        with pytest.raises(zorvan.ModelError, match="should be True or False"):
            p.setOutputEnabled("no")

    def test_many_problems_are_freed(self):
        def churn(n):
            for _ in range(n):
                p = zorvan.problem("loop")
                p.controls.presolve = 0
                p.copy()
                with zorvan.problem():
                    pass

        churn(50)
        tracemalloc.start()
        before = tracemalloc.get_traced_memory()[0]
        churn(500)
        grown = tracemalloc.get_traced_memory()[0] - before
        tracemalloc.stop()
        assert grown < 100_000

    def test_threads_create_problems(self):
        errors = []

        def work():
            try:
                for i in range(100):
                    p = zorvan.problem(f"t{i}")
                    assert p.name() == f"t{i}"
                    p.controls.threads = 1
            except Exception as e:  # pragma: no cover - reported below
                errors.append(e)

        threads = [threading.Thread(target=work) for _ in range(4)]
        for t in threads:
            t.start()
        for t in threads:
            t.join()
        assert errors == []


def test_subclass_and_unicode_names():
    class Model(zorvan.problem):
        pass

    m = Model(name="modèle")
    assert m.name() == "modèle" and str(m) == "modèle"
    copied = m.copy()
    assert type(copied) is Model and copied.name() == "modèle"
