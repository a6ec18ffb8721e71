"""Solver callbacks through real solves: registration, removal, priorities
and copying; when each kind fires on HiGHS's algorithms, what it reads and
what its result changes; failures inside callbacks."""
import itertools
import threading

import numpy as np
import pytest

import zorvan as z


def knapsack(n=16, seed=7):
    """A two-row binary knapsack (maximise) small enough to enumerate; the
    search, not presolve, finds its solutions."""
    rng = np.random.default_rng(seed)
    value = rng.integers(20, 100, n).astype(float)
    w1 = rng.integers(10, 70, n).astype(float)
    w2 = rng.integers(10, 70, n).astype(float)
    cap1, cap2 = float(w1.sum() // 3), float(w2.sum() // 3)
    x = [z.var(vartype=z.binary) for _ in range(n)]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(x)
    p.addConstraint(z.Dot(w1, x) <= cap1, z.Dot(w2, x) <= cap2)
    p.setObjective(z.Dot(value, x), sense=z.maximize)
    p.setControl({"presolve": 0, "threads": 1})
    return p, x, (value, w1, w2, cap1, cap2)


def enumerate_best(data, allowed=lambda bits: True):
    """Best value over the feasible assignments that `allowed` accepts."""
    value, w1, w2, cap1, cap2 = data
    best, arg = -1.0, None
    for bits in itertools.product((0, 1), repeat=len(value)):
        b = np.array(bits)
        if b @ w1 <= cap1 and b @ w2 <= cap2 and allowed(b) and b @ value > best:
            best, arg = float(b @ value), b
    return best, arg


@pytest.fixture(scope="module")
def knapsack_optimum():
    _, _, data = knapsack()
    return enumerate_best(data)


def lp():
    xs = [z.var(ub=10) for _ in range(6)]
    p = z.problem()
    p.setOutputEnabled(False)
    p.addVariable(xs)
    for k in range(6):
        p.addConstraint(z.Sum((k + j) % 4 * xs[j] for j in range(6)) + xs[k] <= 10 + k)
    p.setObjective(z.Sum(xs), sense=z.maximize)
    return p, xs


# ---- registration, removal, priority, copying -------------------------------

class TestRegistration:
    def test_add_needs_a_callable_and_remove_checks_what_it_names(self):
        p, _, _ = knapsack()
        with pytest.raises(z.InterfaceError, match="Cannot add callback"):
            p.addcbintsol(42)
        with pytest.raises(z.InterfaceError, match="Cannot add callback"):
            p.addcbintsol(lambda q, d: None, None, "high")
        with pytest.raises(z.InterfaceError, match="Cannot remove callback from an empty set"):
            p.removecbintsol(lambda q, d: None)
        p.removecbintsol()  # nothing registered, nothing named: fine
        with pytest.raises(z.InterfaceError, match="Cannot remove callback$"):
            p.removecbintsol(3)
        f = lambda q, d: None
        p.addcbintsol(f, "mine")
        with pytest.raises(z.InterfaceError, match="Callback not found"):
            p.removecbintsol(None, "other")
        with pytest.raises(z.InterfaceError, match="Callback not found"):
            p.removecbintsol(lambda q, d: None)
        p.removecbintsol(f, "mine")
        with pytest.raises(z.ModelError, match="not initialized"):
            z.problem.addcbintsol(z.problem.__new__(z.problem), f)

    def test_same_callable_twice_fires_twice_and_removal_takes_both(self):
        p, _, _ = knapsack()
        calls = []
        f = lambda q, d: calls.append(d)
        p.addcbintsol(f, "a")
        p.addcbintsol(f, "a")
        p.optimize()
        assert calls and len(calls) % 2 == 0
        p.removecbintsol(f)
        calls.clear()
        p.optimize()
        assert calls == []

    def test_removal_by_data_leaves_the_others(self):
        p, _, _ = knapsack()
        calls = []
        f = lambda q, d: calls.append(d)
        p.addcbintsol(f, "keep")
        p.addcbintsol(f, "drop")
        p.removecbintsol(None, "drop")
        p.optimize()
        assert calls and set(calls) == {"keep"}

    def test_priority_orders_the_calls(self):
        p, _, _ = knapsack()
        order = []
        p.addcbintsol(lambda q, d: order.append("low"), None, -1)
        p.addcbintsol(lambda q, d: order.append("high"), None, 10)
        p.addcbintsol(lambda q, d: order.append("mid"), None)
        p.optimize()
        assert order and order == ["high", "mid", "low"] * (len(order) // 3)

    def test_copy_and_copycallbacks_carry_callable_data_and_priority(self, knapsack_optimum):
        p, x, _ = knapsack()
        seen = []
        p.addcbintsol(lambda q, d: seen.append((d, q.attributes.mipobjval)), "tag", 3)
        q = p.copy()
        q.optimize()
        assert seen and all(d == "tag" for d, _ in seen)
        assert seen[-1][1] == pytest.approx(knapsack_optimum[0])
        # copycallbacks replaces the target's own callbacks.
        r, _, _ = knapsack()
        own = []
        r.addcbintsol(lambda q, d: own.append(d))
        seen.clear()
        r.copycallbacks(p)
        r.optimize()
        assert own == [] and seen
        with pytest.raises(z.InterfaceError):
            r.copycallbacks("not a problem")

    def test_every_kind_registers_and_removes(self):
        kinds = ["bariteration", "barlog", "chgbranchobject", "cutlog", "destroymt",
                 "gapnotify", "miplog", "infnode", "intsol", "lplog", "message",
                 "mipthread", "newnode", "nodecutoff", "nodelpsolved", "optnode",
                 "preintsol", "prenode", "usersolnotify", "checktime", "beforeobjective",
                 "afterobjective"]
        p, _, _ = knapsack()
        f = lambda *a: None
        for k in kinds:
            getattr(p, "addcb" + k)(callback=f, data=k, priority=1)
        for k in kinds:
            getattr(p, "removecb" + k)(callback=f, data=k)
            with pytest.raises(z.InterfaceError, match="empty set"):
                getattr(p, "removecb" + k)(f)
        # Help texts say when a kind fires, and that node events need the tree search.
        assert "HiGHS" in p.addcboptnode.__doc__
        assert "priority" in p.addcbintsol.__doc__


# ---- kinds fired by HiGHS's search and algorithms ---------------------------

class TestMipKinds:
    def test_intsol_reads_each_improving_incumbent(self, knapsack_optimum):
        p, x, (value, *_) = knapsack()
        seen = []

        def intsol(prob, data):
            sol = prob.getSolution(x)
            seen.append((prob.attributes.mipobjval, float(np.dot(value, sol))))

        p.addcbintsol(intsol)
        p.optimize()
        assert seen
        for reported, computed in seen:
            assert reported == pytest.approx(computed)
        values = [r for r, _ in seen]
        assert values == sorted(values) and len(set(values)) == len(values)
        assert values[-1] == pytest.approx(knapsack_optimum[0])

    def test_preintsol_rejection_changes_the_optimum(self, knapsack_optimum):
        p, x, data = knapsack()
        best, arg = knapsack_optimum
        banned = int(np.flatnonzero(arg)[0])
        expected, _ = enumerate_best(data, lambda b: b[banned] == 0)
        calls = []

        def preintsol(prob, data, soltype, cutoff):
            candidate = prob.getSolution(x)
            calls.append((soltype, cutoff))
            return (1 if candidate[banned] > 0.5 else 0), None

        p.addcbpreintsol(preintsol)
        incumbents = []
        p.addcbintsol(lambda prob, data: incumbents.append(prob.getSolution(x[banned])))
        p.optimize()
        assert calls
        # A rejected candidate never becomes an incumbent.
        assert incumbents and max(incumbents) < 0.5
        assert p.getObjVal() == pytest.approx(expected)
        assert p.getSolution(x[banned]) < 0.5
        assert expected < best

    def test_preintsol_bad_result_stops_with_reason_7(self, capfd):
        p, _, _ = knapsack()
        p.addcbpreintsol(lambda prob, data, t, c: "no")
        p.optimize()
        err = capfd.readouterr().err
        assert "Problem in PreIntSol callback: must return tuple of two elements" in err
        assert "Problem in callback preintsol(), stopping optimization" in err
        assert p.attributes.stopstatus == 7

    def test_gapnotify_fires_at_the_target_and_new_targets_take_effect(self):
        p, _, _ = knapsack(n=22, seed=3)
        p.controls.miprelgapnotify = 0.5
        gaps = []

        def gapnotify(prob, data):
            gaps.append(prob.attributes.mipgap)
            # A tighter relative target each time, absolute gap left alone.
            return gaps[-1] / 2, None, None, None

        p.addcbgapnotify(gapnotify)
        p.optimize()
        assert len(gaps) >= 2
        assert gaps[0] <= 0.5
        for earlier, later in zip(gaps, gaps[1:]):
            assert later <= earlier / 2 + 1e-12

    def test_gapnotify_tuple_changes_only_the_targets_it_names(self):
        p, _, _ = knapsack(n=22, seed=3)
        p.controls.miprelgapnotify = 0.5
        calls = []

        def gapnotify(prob, data):
            a = prob.attributes
            calls.append((a.mipgap, abs(a.mipobjval - a.bestbound)))
            # First call: arm an absolute gap of 1 and leave the relative
            # target as it is (spent); later calls change nothing.
            return (None, 1.0, None, None) if len(calls) == 1 else None

        p.addcbgapnotify(gapnotify)
        p.optimize()
        assert len(calls) == 2
        assert calls[0][0] <= 0.5
        assert calls[1][1] <= 1.0 + 1e-9

    def test_gapnotify_bound_target_follows_the_sense(self, knapsack_optimum):
        # Maximising: the bound comes down towards the optimum.
        target = knapsack_optimum[0] + 5
        p, _, _ = knapsack()
        p.controls.mipabsgapnotifybound = target
        bounds = []
        p.addcbgapnotify(lambda prob, data: bounds.append(prob.attributes.bestbound))
        p.optimize()
        assert len(bounds) == 1 and bounds[0] <= target + 1e-9

    def test_gapnotify_lets_the_user_stop_early(self):
        full, _, _ = knapsack(n=22, seed=3)
        full.optimize()
        p, _, _ = knapsack(n=22, seed=3)
        p.controls.miprelgapnotify = 0.2
        p.addcbgapnotify(lambda prob, data: prob.interrupt())
        p.optimize()
        assert p.attributes.stopstatus == 9  # the user's request
        assert p.attributes.mipgap <= 0.2
        assert p.attributes.nodes <= full.attributes.nodes

    def test_gapnotify_bad_result_is_reported(self, capfd):
        p, _, _ = knapsack()
        p.controls.miprelgapnotify = 10.0
        p.addcbgapnotify(lambda prob, data: (1, 2))
        p.optimize()
        err = capfd.readouterr().err
        assert "Problem in GapNotify callback: must return tuple of four elements" in err
        assert p.attributes.stopstatus == 7

    def test_checktime_stops_the_search(self):
        p, _, _ = knapsack(n=22, seed=3)
        calls = []
        p.addcbchecktime(lambda prob, data: calls.append(1) or (1 if len(calls) >= 3 else 0))
        status, _ = p.optimize()
        assert status == z.SolveStatus.STOPPED
        assert p.attributes.stopstatus == 1  # as at the time limit
        assert len(calls) == 3

    def test_miplog_lines_arrive_and_can_stop(self):
        p, _, _ = knapsack(n=22, seed=3)
        lines = []
        p.addcbmiplog(lambda prob, data: lines.append(prob.attributes.nodes) or 0)
        p.optimize()
        assert lines
        q, _, _ = knapsack(n=22, seed=3)
        q.addcbmiplog(lambda prob, data: 1)
        status, _ = q.optimize()
        assert status == z.SolveStatus.STOPPED and q.attributes.stopstatus == 9


    def test_cutlog_follows_the_root_cut_rounds_and_can_stop(self):
        def cut_model():
            p, _, _ = knapsack(n=40, seed=5)
            p.setControl({"presolve": 1})
            return p

        p = cut_model()
        rounds = []
        p.addcbcutlog(lambda prob, data: rounds.append(prob.attributes.nodes) or 0)
        p.optimize()
        assert rounds and rounds[0] <= p.attributes.nodes
        q = cut_model()
        q.addcbcutlog(lambda prob, data: 1)
        status, _ = q.optimize()
        assert status == z.SolveStatus.STOPPED and q.attributes.stopstatus == 9


class TestLpKinds:
    def test_lplog_follows_the_simplex_iterations(self):
        p, _ = lp()
        iters = []
        p.addcblplog(lambda prob, data: iters.append(prob.attributes.simplexiter) or 0)
        p.optimize("d")
        assert iters and iters == sorted(iters)
        assert iters[-1] <= p.attributes.simplexiter
        q, _ = lp()
        q.addcblplog(lambda prob, data: 1)
        q.optimize("d")
        assert q.attributes.stopstatus == 9 and q.getProbStatus() == z.lp_unfinished

    def test_barrier_kinds_follow_its_iterations(self):
        p, _ = lp()
        p.controls.crossover = 0
        log, it = [], []
        p.addcbbarlog(lambda prob, data: log.append(prob.attributes.bariter) or 0)
        p.addcbbariteration(lambda prob, data: it.append(1))
        p.optimize("b")
        assert log and len(log) == len(it)
        assert log == sorted(log) and log[-1] <= p.attributes.bariter
        q, _ = lp()
        q.addcbbariteration(lambda prob, data: 1 if prob.attributes.bariter >= 2 else 0)
        q.optimize("b")
        assert q.attributes.stopstatus == 9
        # A float is not an integer result: it counts as -1, which stops.
        r, _ = lp()
        calls = []
        r.addcbbarlog(lambda prob, data: calls.append(1) or 0.0)
        r.optimize("b")
        assert calls == [1] and r.attributes.stopstatus == 9

    def test_message_lines_arrive_with_their_type(self):
        p, _ = lp()
        p.setOutputEnabled(False)
        got = []
        p.addcbmessage(lambda prob, data, text, kind: got.append((data, text, kind)), "d")
        p.optimize()
        assert any("solve optimal" in t for _, t, k in got if k == 1)
        assert all(d == "d" for d, _, _ in got)
        # With outputlog 2 the solver's own log arrives too, line by line.
        got.clear()
        p.controls.outputlog = 2
        p.optimize()
        texts = [t for _, t, _ in got]
        assert any(t.startswith("LP has 6 rows; 6 cols") for t in texts)
        assert all("\n" not in t for t in texts)

    def test_objective_levels_are_bracketed(self):
        x, y = z.var(ub=4), z.var(ub=4)
        p = z.problem()
        p.setOutputEnabled(False)
        p.addVariable(x, y)
        p.addConstraint(x + y <= 5)
        p.setObjective(x, sense=z.maximize)
        p.addObjective(y, priority=-1, weight=1.0)
        events = []
        p.addcbbeforeobjective(lambda prob, data: events.append("before"))
        p.addcbafterobjective(lambda prob, data: events.append(("after",
                                                                  prob.attributes.lpobjval)))
        p.optimize()
        assert events[0] == "before" and events[2] == "before"
        assert events[1] == ("after", pytest.approx(4.0))
        assert events[3] == ("after", pytest.approx(1.0, abs=1e-5))  # within level 1's tolerance


# ---- failures inside callbacks ----------------------------------------------

class TestFailures:
    def test_raising_callback_reaches_optimize_and_stops_later_callbacks(self, capfd):
        p, _, _ = knapsack(n=22, seed=3)
        calls = []

        def intsol(prob, data):
            calls.append(1)
            raise ValueError("mine")

        p.addcbintsol(intsol)
        after = []
        p.addcbchecktime(lambda prob, data: after.append(1) or 0)
        with pytest.raises(ValueError, match="mine"):
            p.optimize()
        assert calls == [1]
        assert p.attributes.stopstatus == 7
        assert "Problem in callback, stopping optimization" in capfd.readouterr().err
        checks_before = len(after)
        # The next solve starts clean.
        calls.clear()
        p.removecbintsol()
        p.optimize()
        assert len(after) > checks_before

    def test_raising_message_callback_outside_a_solve_is_reported_and_kept(self, tmp_path,
                                                                          monkeypatch):
        p, _ = lp()
        path = str(tmp_path / "m.lp")
        p.write(path)
        unraisable, texts = [], []
        monkeypatch.setattr("sys.unraisablehook", lambda u: unraisable.append(u.exc_value))

        def message(prob, data, text, kind):
            texts.append(text)
            if "read from" in (text or ""):
                raise KeyError("reading")

        p.addcbmessage(message)
        p.read(path)  # the message of the read raises: nobody waits for it
        assert len(unraisable) == 1 and isinstance(unraisable[0], KeyError)
        p.optimize()  # and later messages still arrive
        assert any("solve optimal" in t for t in texts)

    def test_model_changes_inside_a_callback_are_refused(self):
        p, x, _ = knapsack()
        p.addcbintsol(lambda prob, data: prob.chgbounds([x[0]], ["U"], [0]))
        with pytest.raises(z.ModelError, match="being solved"):
            p.optimize()
        r, _, _ = knapsack()
        r.addcbintsol(lambda prob, data: r.removecbintsol())
        with pytest.raises(z.ModelError, match="removecbintsol cannot change it"):
            r.optimize()
        q, _, _ = knapsack()
        q.addcbintsol(lambda prob, data: q.reset())
        with pytest.raises(z.ModelError, match="being solved"):
            q.optimize()
        assert q.attributes.cols == 16  # the problem survived

    def test_a_callback_may_solve_another_problem(self, knapsack_optimum):
        p, _, _ = knapsack()
        inner = []

        def intsol(prob, data):
            q, _, _ = knapsack()
            q.addcbintsol(lambda prob2, d: inner.append(prob2.attributes.mipobjval))
            q.optimize()
            inner.append(("done", q.getObjVal()))

        p.addcbintsol(intsol)
        p.optimize()
        assert p.getObjVal() == pytest.approx(knapsack_optimum[0])
        assert ("done", pytest.approx(knapsack_optimum[0])) in inner

    def test_callbacks_run_when_the_solve_runs_on_another_thread(self, knapsack_optimum):
        p, x, (value, *_) = knapsack()
        seen, threads = [], set()

        def intsol(prob, data):
            threads.add(threading.get_ident())
            seen.append(float(np.dot(value, prob.getSolution(x))))

        p.addcbintsol(intsol)
        worker = threading.Thread(target=p.optimize)
        worker.start()
        worker.join()
        assert threads == {worker.ident}
        assert seen and seen[-1] == pytest.approx(knapsack_optimum[0])
        assert p.getObjVal() == pytest.approx(knapsack_optimum[0])

    def test_interrupt_inside_a_callback_gives_its_reason(self):
        p, _, _ = knapsack()
        p.addcbintsol(lambda prob, data: prob.interrupt(5))
        status, _ = p.optimize()
        assert status == z.SolveStatus.STOPPED
        assert p.attributes.stopstatus == 5

    def test_interrupt_from_another_thread(self):
        p, _, _ = knapsack(n=22, seed=3)
        started = threading.Event()
        p.addcbchecktime(lambda prob, data: started.set() or 0)
        t = threading.Thread(target=lambda: (started.wait(10), p.interrupt()))
        t.start()
        p.optimize()
        t.join()
        assert p.attributes.stopstatus in (9, 10)  # stopped, unless it finished first
        with pytest.raises(z.SolverError, match="stop reason"):
            p.interrupt(0)
