import pytest

import zorvan

from conftest import run_python


def test_version_and_banner():
    major, minor, build = zorvan.getversionnumbers()
    assert zorvan.getversion() == f"{major}.{minor}.{build}"
    assert zorvan.getversion() in zorvan.getbanner()


def test_checked_mode_is_on_only_for_true():
    try:
        zorvan.setcheckedmode(1)
        assert zorvan.getcheckedmode() is False
        zorvan.setcheckedmode(True)
        assert zorvan.getcheckedmode() is True
        zorvan.setcheckedmode(checked_mode="yes")
        assert zorvan.getcheckedmode() is False
    finally:
        zorvan.setcheckedmode(True)


def test_feature_query():
    assert zorvan.featurequery("highs") is True
    assert zorvan.featurequery(feature="HIGHS") is True
    assert zorvan.featurequery("remotecompute") is False
    assert zorvan.featurequery("no such feature") is False
    with pytest.raises(zorvan.InterfaceError):
        zorvan.featurequery(5)
    with pytest.raises(zorvan.InterfaceError):
        zorvan.setdefaultcontrol(b"presolve")


def test_compute_allowed_and_global_errors():
    assert zorvan.getcomputeallowed() == 0
    assert zorvan.setcomputeallowed(0) is None
    with pytest.raises(zorvan.InterfaceError, match="remote computation is not available"):
        zorvan.setcomputeallowed(1)
    code, text = zorvan.getlasterror()
    assert code != 0 and "remote computation" in text


def test_bad_arguments_set_model_error_and_return_none():
    # The functions set the error and still return None; the interpreter turns
    # that into a SystemError caused by the ModelError.
    with pytest.raises(SystemError) as info:
        zorvan.setcomputeallowed("1")
    assert isinstance(info.value.__cause__, zorvan.ModelError)
    assert "should be integer" in str(info.value.__cause__)
    with pytest.raises(SystemError) as info:
        zorvan.setOutputEnabled(None)
    assert "should be True or False" in str(info.value.__cause__)
    assert zorvan.getOutputEnabled() is True


def test_output_switch():
    try:
        zorvan.setOutputEnabled(False)
        assert zorvan.getOutputEnabled() is False
        zorvan.setOutputEnabled(2)
        assert zorvan.getOutputEnabled() is True
    finally:
        zorvan.setOutputEnabled(True)


def test_init_argument_must_be_a_path_or_none():
    with pytest.raises(zorvan.InterfaceError):
        zorvan._init(5)
    with pytest.raises(zorvan.InterfaceError, match="does not exist"):
        zorvan._init("/no/such/zorvan/directory")


def test_start_count_in_a_fresh_process():
    result = run_python("""
        import zorvan
        out = []
        zorvan.getbanner(); zorvan.getcheckedmode()   # two lazy starts: one count
        out.append(zorvan.free())                     # False: stopped
        zorvan._init(None); zorvan._init(None)
        out.append(zorvan.free())                     # True: one start left
        out.append(zorvan.free())                     # False
        out.append(zorvan.free())                     # False: nothing to stop
        try:
            zorvan._init("/no/such/dir")
        except zorvan.InterfaceError:
            out.append("refused")
        out.append(zorvan.free())                     # the failed start left no count
        print(out)
    """)
    assert result.returncode == 0, result.stderr
    assert result.stdout.strip() == "[False, True, False, False, 'refused', False]"


def test_problems_do_not_outlive_the_engine():
    result = run_python("""
        import zorvan
        p = zorvan.problem(name="kept")
        controls = p.controls
        zorvan._init(None)
        assert zorvan.free() is True
        assert p.name() == "kept"          # one start remains
        assert zorvan.free() is False
        for call in (p.name, p.copy, p.reset, lambda: controls.presolve, lambda: str(p),
                     lambda: p.controls, lambda: p.attributes.cols):
            try:
                call()
            except zorvan.ModelError as e:
                assert str(e) == "Problem is not initialized", e
            else:
                raise AssertionError("call after the last stop succeeded")
        q = zorvan.problem(name="again")   # restarts the engine
        print(q.name(), q.controls.presolve)
        # module teardown with a live problem must not crash
    """)
    assert result.returncode == 0, result.stderr
    assert result.stdout.split() == ["again", "1"]


def test_message_handler_registration():
    def handler(*args):
        pass

    def other(*args):
        pass

    with pytest.raises(zorvan.InterfaceError, match="Incorrect arguments in addcbmsghandler"):
        zorvan.addcbmsghandler("not callable", None, 0)
    with pytest.raises(zorvan.InterfaceError, match="Incorrect arguments in addcbmsghandler"):
        zorvan.addcbmsghandler(handler, None, "high")
    with pytest.raises(zorvan.InterfaceError, match="Incorrect arguments in removecbmsghandler"):
        zorvan.removecbmsghandler(5)
    assert zorvan.removecbmsghandler(None, None) is None  # nothing registered: fine
    with pytest.raises(zorvan.InterfaceError, match="Cannot remove callback from an empty set"):
        zorvan.removecbmsghandler(handler, None)
    data = object()
    zorvan.addcbmsghandler(handler, data, 1)
    zorvan.addcbmsghandler(msghandler=handler, data=None, priority=2)
    with pytest.raises(zorvan.InterfaceError, match="Callback not found"):
        zorvan.removecbmsghandler(other, None)
    with pytest.raises(zorvan.InterfaceError, match="Callback not found"):
        zorvan.removecbmsghandler(handler, object())
    zorvan.removecbmsghandler(handler, data)          # the first only
    zorvan.removecbmsghandler(handler)                # then the second
    with pytest.raises(zorvan.InterfaceError, match="empty set"):
        zorvan.removecbmsghandler(handler)


def test_failed_lazy_start_is_undone():
    # ZORVANDIR names the engine's installation directory; a missing one
    # makes every start fail with the engine's own text.
    result = run_python("""
        import os, zorvan
        os.environ["ZORVANDIR"] = "/no/such/zorvan/install"
        def handler(*args):
            pass
        out = []
        for call in (zorvan.problem, zorvan.getbanner,
                     lambda: zorvan.addcbmsghandler(handler, None, 0)):
            try:
                call()
            except zorvan.InterfaceError as e:
                out.append("does not exist" in str(e))
        out.append(zorvan.free())
        zorvan.removecbmsghandler(handler)   # the entry was kept and can go
        del os.environ["ZORVANDIR"]
        out.append(zorvan.problem("late").name())
        print(out)
    """)
    assert result.returncode == 0, result.stderr
    assert result.stdout.strip() == "[True, True, True, False, 'late']"
