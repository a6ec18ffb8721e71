"""Operations on a problem: each turns into a few lines of plain zorvan code
and into the matching change of the shadow model.

An operation is a JSON-able list, for instance ["addcons", [...]]. It names
variables, constraints and sets by ids ("v3", "c5", "s1") that are also the
objects' names, so an operation list can be cut down (shrunk) freely:
`emit` skips what no longer applies (a variable that was never added, a row
already deleted) and returns None for an operation that is left empty.

The generated code runs in a namespace holding `z` (zorvan), `p` (the
problem), the dicts `V`, `C`, `S` of variables, constraints and sets by id,
`TMP` (a folder for files) and the helpers of PREAMBLE.
"""
import math

from .shadow import INF, is_inf, var_bounds

PREAMBLE = '''\
import os, tempfile
import zorvan as z

TMP = tempfile.mkdtemp()
V, C, S = {}, {}, {}


def new_problem():
    p = z.problem()
    p.setOutputEnabled(False)
    p.controls.miprelstop = 0.0
    return p


def refresh(p):
    """After a read the problem holds new objects: find them by name."""
    V.update({str(v.name): v for v in p.getVariable()})
    C.update({str(c.name): c for c in p.getConstraint()})
    S.update({str(s.name): s for s in p.getSOS()})


p = new_problem()
'''

TYPE_NAMES = {"C": "z.continuous", "B": "z.binary", "I": "z.integer", "S": "z.semicontinuous"}


def num(v):
    """A float literal; +-1e20 is written as the module's infinity."""
    if v >= INF:
        return "z.infinity"
    if v <= -INF:
        return "-z.infinity"
    return repr(float(v))


def body_code(terms, const):
    """terms: [[vid, coef], ...] -> a Python expression over V."""
    parts = []
    for vid, a in terms:
        parts.append(f"V[{vid!r}]" if a == 1 else f"{num(a)} * V[{vid!r}]")
    if const:
        parts.append(num(const))
    if not parts:
        return "z.Sum([])"
    return " + ".join(parts)


def sum_terms(terms):
    out = {}
    for vid, a in terms:
        out[vid] = out.get(vid, 0.0) + a
    return out


def _live_terms(terms, sh):
    return [[v, a] for v, a in terms if v in sh.col]


def emit(op, sh):
    """The code of one operation, applied to the shadow sh (changed in
    place); None when the operation does not apply in this state."""
    return globals()["_op_" + op[0]](op, sh)


def _new_var_attrs(kind, lb, ub, thr):
    lb, ub = var_bounds(kind, lb, ub)
    return {"kind": kind, "lb": lb, "ub": ub, "thr": thr if kind == "S" else -INF}


def _op_addvars(op, sh):
    lines, added = [], []
    for vid, kind, lb, ub, thr in op[1]:
        if vid in sh.obj_attr or (kind != "C" and sh.has_quad()):
            continue
        args = f"name={vid!r}"
        if lb != 0:
            args += f", lb={num(lb)}"
        if ub < INF:
            args += f", ub={num(ub)}"
        if kind != "C":
            args += f", vartype={TYPE_NAMES[kind]}"
        if kind == "S":
            args += f", threshold={num(thr)}"
        lines.append(f"V[{vid!r}] = z.var({args})")
        sh.obj_attr[vid] = _new_var_attrs(kind, lb, ub, thr)
        sh.add_col(vid, sh.obj_attr[vid])
        added.append(f"V[{vid!r}]")
    if not added:
        return None
    arg = added[0] if len(added) == 1 else "[" + ", ".join(added) + "]"
    lines.append(f"p.addVariable({arg})")
    return "\n".join(lines)


def _op_readd(op, sh):
    vid = op[1]
    if vid not in sh.obj_attr or vid in sh.col:
        return None
    attrs = sh.obj_attr[vid]
    if attrs["kind"] != "C" and sh.has_quad():
        return None
    if attrs["kind"] == "S" and not attrs["lb"] <= attrs["thr"] <= attrs["ub"]:
        return None   # refused by addVariable: a read variable has no threshold
    sh.add_col(vid, attrs)
    return f"p.addVariable(V[{vid!r}])"


def _index_code(kind, ids, order, how, sh):
    """A delete call by object, index, mixed list or first/last range."""
    method = {"V": "delVariable", "C": "delConstraint", "S": "delSOS"}[kind]
    pos = sorted(order.index(i) for i in ids)
    if how == "range" and pos == list(range(pos[0], pos[-1] + 1)):
        return f"p.{method}(first={pos[0]}, last={pos[-1]})"
    if len(ids) == 1 and how == "index":
        return f"p.{method}(index={order.index(ids[0])})"
    if len(ids) == 1:
        return f"p.{method}({kind}[{ids[0]!r}])"
    items = [str(order.index(i)) if k % 2 else f"{kind}[{i!r}]" for k, i in enumerate(ids)]
    return f"p.{method}(index=[{', '.join(items)}])"


def _op_delvar(op, sh):
    vids = [v for v in dict.fromkeys(op[1]) if v in sh.col and not sh.pinned(v)]
    if not vids:
        return None
    code = _index_code("V", vids, sh.cols, op[2], sh)
    sh.del_cols(vids)
    return code


def _op_setattr(op, sh):
    _, vid, attr, value = op
    a = sh.obj_attr.get(vid)
    if a is None or a["kind"] == "S":
        return None
    if a["kind"] == "B" and not 0 <= value <= 1:
        a["kind"] = "I"
    if a["kind"] in ("B", "I"):
        value = float(math.ceil(value) if attr == "lb" else math.floor(value))
    a[attr] = value
    # The column in the problem keeps its bounds: attribute writes never reach it.
    return f"V[{vid!r}].{attr} = {num(value)}"


def _con_code(cid, form, terms, const, lb, ub):
    body = body_code(terms, const)
    if form == "le":
        return f"C[{cid!r}] = z.constraint({body} <= {num(ub)}, name={cid!r})", -INF, ub - const
    if form == "ge":
        return f"C[{cid!r}] = z.constraint({body} >= {num(lb)}, name={cid!r})", lb - const, INF
    if form == "eq":
        return f"C[{cid!r}] = z.constraint({body} == {num(lb)}, name={cid!r})", lb - const, lb - const
    code = f"C[{cid!r}] = z.constraint(body={body}, lb={num(lb)}, ub={num(ub)}, name={cid!r})"
    return code, (lb - const if not is_inf(lb) else lb), (ub - const if not is_inf(ub) else ub)


def _usable_terms(terms, sh):
    terms = _live_terms(terms, sh)
    summed = sum_terms(terms)
    if not terms or any(a == 0 for a in summed.values()):
        return None, None
    return terms, summed


def _op_addcons(op, sh):
    lines, added = [], []
    for cid, form, terms, const, lb, ub in op[1]:
        if cid in sh.con_objs:
            continue
        terms, summed = _usable_terms(terms, sh)
        if terms is None:
            continue
        code, rlb, rub = _con_code(cid, form, terms, const, lb, ub)
        lines.append(code)
        sh.con_objs.add(cid)
        sh.add_row(cid, summed, rlb, rub)
        added.append(f"C[{cid!r}]")
    if not added:
        return None
    if len(added) == 1:
        lines.append(f"p.addConstraint({added[0]})")
    elif op[2] if len(op) > 2 else False:
        lines.append(f"p.addConstraint([{', '.join(added)}])")
    else:
        lines.append(f"p.addConstraint({', '.join(added)})")
    return "\n".join(lines)


def _op_delcon(op, sh):
    cids = [c for c in dict.fromkeys(op[1]) if c in sh.row]
    if not cids:
        return None
    code = _index_code("C", cids, sh.rows, op[2], sh)
    sh.del_rows(cids)
    return code


def _op_addsos(op, sh):
    _, sid, stype, vids, weights = op
    keep = [(v, w) for v, w in zip(vids, weights) if v in sh.col]
    if sid in sh.sos_objs or len(keep) < 2 or sh.has_quad():
        return None
    vids, weights = [v for v, _ in keep], [w for _, w in keep]
    sh.sos_objs.add(sid)
    sh.add_set(sid, stype, vids, weights)
    vlist = ", ".join(f"V[{v!r}]" for v in vids)
    wlist = ", ".join(num(w) for w in weights)
    return (f"S[{sid!r}] = z.sos([{vlist}], [{wlist}], type={stype}, name={sid!r})\n"
            f"p.addSOS(S[{sid!r}])")


def _op_delsos(op, sh):
    sid = op[1]
    if sid not in sh.sos:
        return None
    code = _index_code("S", [sid], sh.sets, op[2], sh)
    sh.del_sets([sid])
    return code


def _op_addind(op, sh):
    _, cid, bvid, val, form, terms, const, lb, ub, as_tuple = op
    if cid in sh.con_objs or sh.has_quad():
        return None
    if bvid not in sh.col or sh.col[bvid]["kind"] != "B" or sh.obj_attr[bvid]["kind"] != "B":
        return None   # the condition is checked on the variable object's own type
    terms, summed = _usable_terms(terms, sh)
    if terms is None or any(is_inf(sh.col[v]["lb"]) or is_inf(sh.col[v]["ub"]) for v in summed):
        return None
    code, rlb, rub = _con_code(cid, form, terms, const, lb, ub)
    sh.con_objs.add(cid)
    sh.add_row(cid, summed, rlb, rub, ind=[bvid, val])
    cond = f"V[{bvid!r}] == {val}"
    call = f"p.addIndicator(({cond}, C[{cid!r}]))" if as_tuple else f"p.addIndicator({cond}, C[{cid!r}])"
    return code + "\n" + call


def _op_setobj(op, sh):
    _, lin, quad, const, sense = op
    lin = _live_terms(lin, sh)
    quad = [[u, v, q] for u, v, q in quad if u in sh.col and v in sh.col]
    if (quad and sh.is_mip()) or not (lin or quad):
        return None   # a plain number is no objective
    parts = []
    body = body_code(lin, const) if lin or const or not quad else ""
    if body:
        parts.append(body)
    for u, v, q in quad:
        parts.append(f"{num(q)} * V[{u!r}] * V[{v!r}]")
    qsum = {}
    for u, v, q in quad:
        key = tuple(sorted((u, v)))
        qsum[key] = qsum.get(key, 0.0) + q
    sh.set_objective(sum_terms(lin), qsum, const, sense)
    sense_name = "z.maximize" if sense < 0 else "z.minimize"
    return f"p.setObjective({' + '.join(parts)}, sense={sense_name})"


def _op_solve(op, sh):
    _, method, flags = op
    if method == "optimize":
        return f"R = p.optimize({flags!r})"
    return f"R = p.{method}({flags!r})"


def _op_wr(op, sh):
    _, fmt, same = op
    path = f"os.path.join(TMP, 'm.{fmt}')"
    reader = "p.read" if same else "p = new_problem()\np.read"
    for vid in sh.cols:
        # The objects rebuilt by the read carry the column's bounds and type.
        sh.obj_attr[vid] = dict(sh.col[vid], thr=-INF)
    return f"p.write({path})\n{reader}({path})\nrefresh(p)"


def _op_copy(op, sh):
    return "p = p.copy()"
