"""Names going to the engine and text coming back from it: NUL characters are
refused where names enter, and bytes that are not UTF-8 decode with
replacement characters instead of raising UnicodeDecodeError."""
import pytest

import zorvan as z

NUL = "cannot contain NUL characters"


class TestNulInNames:
    def test_variables(self):
        p = z.problem()
        xs = [z.var(name="a"), z.var(name="b\0c"), z.var(name="d")]
        with pytest.raises(z.ModelError, match=NUL) as error:
            p.addVariable(xs)
        assert "variable" in str(error.value)
        assert p.attributes.cols == 0  # none of the call was added
        with pytest.raises(z.ModelError, match=NUL):
            p.addVariable(z.var(name=b"e\0f"))
        good = [z.var(name="a"), z.var(name="d")]
        p.addVariable(good)
        names = []
        p.getnames(2, names)
        assert names == ["a", "d"]

    def test_constraints_and_sets(self):
        p = z.problem()
        x = z.var(name="x")
        p.addVariable(x)
        for name in ("r\0s", b"r\0s"):
            with pytest.raises(z.ModelError, match=NUL):
                p.addConstraint(z.constraint(body=x, ub=1, name=name))
        with pytest.raises(z.ModelError, match=NUL):
            p.addSOS(z.sos([x], [1.0], name="s\0t"))
        assert (p.attributes.rows, p.attributes.sets) == (0, 0)
        p.addConstraint(z.constraint(body=x, ub=1, name="r"))
        names = []
        p.getnames(1, names)
        assert names == ["r"]

    def test_problem_names_and_lookups_by_name(self):
        with pytest.raises(z.ModelError, match=NUL):
            z.problem("n\0m")
        p = z.problem()
        p.addVariable(z.var(name="a"), z.var(name="b"))
        # "a\0b" would be looked up as "a".
        with pytest.raises(z.ModelError, match=NUL):
            p.getlb([], "a\0b", "b")
        p.optimize()
        with pytest.raises(z.ModelError, match=NUL):
            p.getSolution("a\0b", flatten=True)


class TestTextFromTheEngine:
    def test_names_that_are_not_utf8(self):
        p = z.problem()
        p.addVariable(z.var(name=b"\xff\xfeab"), z.var(name="é"), z.var(name=b"c\xc3"))
        names = []
        p.getnames(2, names)
        assert names == ["\ufffd\ufffdab", "é", "c\ufffd"]

    @pytest.mark.parametrize("shift", [0, 1])
    def test_error_texts_cut_inside_a_character(self, shift, tmp_path):
        # The engine's texts have a fixed size: a long name of two-byte
        # characters is cut somewhere, with one shift or the other inside a
        # character.
        missing = str(tmp_path / ("x" * shift + "é" * 700 + ".lp"))
        p = z.problem()
        with pytest.raises(z.SolverError) as error:
            p.read(missing)
        text = str(error.value)
        assert text.startswith("ZRVSreadprob") and "éééé" in text
        code, last = z.getlasterror()
        assert code != 0 and last.startswith("ZRVSreadprob") and "éééé" in last
        assert len(last.encode("utf-8", "surrogatepass")) <= 1030
