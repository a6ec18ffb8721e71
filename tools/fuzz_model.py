"""Fuzzes zorvan models: random operation sequences (add and delete variables,
rows, sets and indicators, change bounds and objectives, solve, write and read
back, copy) run against the module and against an independent shadow model
solved with scipy and enumeration. Each case runs in a worker subprocess, so
crashes and hangs are counted; every new kind of finding is shrunk to a short
standalone script in the --out folder.

    .venv/bin/python tools/fuzz_model.py --cases 500 --seed 1

The last line printed sums up: cases, crashes, hangs, wrong answers, errors
(unexpected exceptions), then the count of each category.
"""
import argparse
import collections
import json
import os
import signal
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from fuzz.gen import PROFILES, make_case  # noqa: E402
from fuzz.pool import Pool  # noqa: E402
from fuzz.repro import script, shrink  # noqa: E402
from fuzz.runner import KNOWN  # noqa: E402


def parse(argv):
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("--cases", type=int, default=200)
    ap.add_argument("--seed", type=int, default=1)
    ap.add_argument("--first", type=int, default=0, help="index of the first case")
    ap.add_argument("--out", default="/tmp/zorvan-fuzz", help="folder for repro scripts")
    ap.add_argument("--profiles", default=",".join(PROFILES))
    ap.add_argument("--no-known", action="store_true",
                    help="leave out operations that hit the known open faults")
    ap.add_argument("--timeout", type=float, default=60.0, help="seconds per case")
    ap.add_argument("--shrink-per-category", type=int, default=2,
                    help="findings of one category shrunk into scripts (0: none)")
    ap.add_argument("--quiet", action="store_true")
    return ap.parse_args(argv)


def main(argv=None):
    args = parse(argv)
    profiles = tuple(args.profiles.split(","))
    os.makedirs(args.out, exist_ok=True)
    pool = Pool(timeout=args.timeout, log=os.path.join(args.out, "worker.log"))
    counts = collections.Counter()
    kinds = collections.Counter()
    shrunk = collections.Counter()
    start = time.time()
    done = 0
    signal.signal(signal.SIGTERM, lambda *a: (_ for _ in ()).throw(KeyboardInterrupt()))
    try:
        for i in range(args.first, args.first + args.cases):
            profile, op_list = make_case(args.seed, i, profiles, known=not args.no_known)
            res = pool.run(op_list)
            done += 1
            if res["ok"]:
                continue
            if res["kind"] == "hang":
                res["category"] = f"hang({profile})"
            cat = ("known:" if res.get("known") else "") + res["category"]
            counts[f"{res['kind']}:{cat}" if not cat.startswith(res["kind"]) else cat] += 1
            kinds[res["kind"]] += 1
            if res.get("known"):
                kinds["known"] += 1
            if not args.quiet:
                print(f"case {i} ({profile}): {res['kind']} {cat}: {res['detail'][:200]}", flush=True)
            if shrunk[cat] < args.shrink_per_category:
                shrunk[cat] += 1
                write_repro(args, i, profile, op_list, res, cat, pool)
    except KeyboardInterrupt:
        print("stopped early", flush=True)
    finally:
        pool.stop()
    n = done
    new_wrong = kinds["wrong"] - sum(v for k, v in counts.items() if k.startswith("wrong:known:"))
    new_err = kinds["error"] - sum(v for k, v in counts.items() if k.startswith("error:known:"))
    print(f"cases {n}, crashes {kinds['crash']}, hangs {kinds['hang']}, "
          f"wrong answers {kinds['wrong']} (new {new_wrong}), errors {kinds['error']} (new {new_err}), "
          f"harness {kinds['harness']}; seed {args.seed}, {time.time() - start:.0f} s; "
          + ", ".join(f"{k} {v}" for k, v in sorted(counts.items())), flush=True)
    return 0


def write_repro(args, i, profile, op_list, res, cat, pool):
    timeout = pool.timeout
    if res["kind"] == "hang":
        pool.timeout = min(timeout, 10.0)
    try:
        small, tries = shrink(op_list, res, pool)
        check = pool.run(small)
    finally:
        pool.timeout = timeout
    final = check if not check["ok"] else res
    name = "".join(ch if ch.isalnum() else "_" for ch in cat).strip("_")
    path = os.path.join(args.out, f"{name}__seed{args.seed}_case{i}.py")
    title = f"{cat}: seed {args.seed}, case {i} ({profile}), {len(small)} of {len(op_list)} operations"
    if res.get("known"):
        title += f"\nKnown fault: {KNOWN.get(res['category'], '')}"
    with open(path, "w") as f:
        f.write(script(small, final, title))
    with open(path[:-3] + ".json", "w") as f:
        json.dump({"ops": small, "result": final}, f)
    if not args.quiet:
        print(f"    repro ({tries} shrink runs): {path}", flush=True)


if __name__ == "__main__":
    sys.exit(main())
