// Ctrl-C during a solve. The solving thread runs without the interpreter lock,
// so Python's own SIGINT handling would only act once the solve is over. While
// a solve runs on the main thread, a C-level SIGINT handler takes over: it
// records the signal and wakes a watcher thread (started once, asleep
// otherwise) that asks the engine to stop (ZRVSinterrupt with the user stop
// reason): the engine's calls are not safe inside a signal handler. After the
// solve the previous handler is back and the signal is handed to Python,
// which raises KeyboardInterrupt (or runs the user's own handler).
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "zorvan/zrvs.h"

namespace zrv {

class SigintDuringSolve {
 public:
  // Takes over SIGINT when called from the main thread while Python handles
  // SIGINT; does nothing otherwise. Call with the interpreter lock held.
  explicit SigintDuringSolve(ZRVSprob prob);
  ~SigintDuringSolve();
  SigintDuringSolve(const SigintDuringSolve &) = delete;
  SigintDuringSolve &operator=(const SigintDuringSolve &) = delete;

  // After the solve, with the interpreter lock held: when SIGINT arrived,
  // passes it on to Python and returns -1 with the resulting exception set
  // (KeyboardInterrupt by default); else 0.
  int Deliver();

 private:
  void Restore();

  bool active_ = false;
  bool fired_ = false;
  PyOS_sighandler_t previous_ = nullptr;
};

}  // namespace zrv
