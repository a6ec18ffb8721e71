"""A worker subprocess that runs operation lists, so that a crash (a signal)
or a hang of the module costs one case, not the fuzz run.

Protocol: one JSON line per case on the worker's stdin ({"ops": [...]}), one
JSON line back (the result of runner.run_ops). The worker's own stdout and
stderr (solver output, warnings) go to a log file, away from the protocol.
"""
import json
import os
import select
import signal
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
MEMORY_LIMIT = 1536 * 2**20     # a runaway solve fails instead of filling the machine


def worker_main():
    import resource
    import warnings

    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    warnings.simplefilter("ignore")
    proto = os.fdopen(os.dup(1), "w")
    devnull = os.open(os.devnull, os.O_WRONLY)
    os.dup2(devnull, 1)
    sys.path.insert(0, os.path.dirname(HERE))
    from fuzz.runner import run_ops

    for line in sys.stdin:
        req = json.loads(line)
        try:
            res = run_ops(req["ops"], classify=req.get("classify", True))
        except MemoryError:
            res = {"ok": False, "kind": "crash", "category": "memory", "known": False,
                   "detail": "MemoryError", "index": -1}
        except Exception as e:  # noqa: BLE001 - a fault of the harness itself
            import traceback
            res = {"ok": False, "kind": "harness", "category": f"harness:{type(e).__name__}",
                   "known": False, "detail": traceback.format_exc()[-1500:], "index": -1}
        proto.write(json.dumps(res) + "\n")
        proto.flush()


class Pool:
    """One worker at a time, restarted after a crash or a hang."""

    def __init__(self, timeout=60.0, log=os.devnull):
        self.timeout, self.log = timeout, log
        self.proc = None

    def _start(self):
        logf = open(self.log, "ab")
        self.proc = subprocess.Popen(
            [sys.executable, "-X", "faulthandler", os.path.join(HERE, "pool.py")],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=logf, text=True, bufsize=1)
        logf.close()

    def stop(self):
        if self.proc:
            try:
                self.proc.kill()
            except OSError:
                pass
            self.proc.wait()
            self.proc = None

    def run(self, op_list, classify=True):
        if self.proc is None or self.proc.poll() is not None:
            self._start()
        try:
            self.proc.stdin.write(json.dumps({"ops": op_list, "classify": classify}) + "\n")
            self.proc.stdin.flush()
        except BrokenPipeError:
            pass
        ready, _, _ = select.select([self.proc.stdout], [], [], self.timeout)
        if not ready:
            self.stop()
            return {"ok": False, "kind": "hang", "category": "hang", "known": False,
                    "detail": f"no answer within {self.timeout} s", "index": -1}
        line = self.proc.stdout.readline()
        if not line:
            code = self.proc.wait()
            self.proc = None
            name = signal.Signals(-code).name if code < 0 else f"exit {code}"
            return {"ok": False, "kind": "crash", "category": f"crash:{name}", "known": False,
                    "detail": f"worker died with {name}", "index": -1}
        return json.loads(line)


if __name__ == "__main__":
    worker_main()
