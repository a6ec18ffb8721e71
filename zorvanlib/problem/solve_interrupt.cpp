#include "problem/solve_interrupt.h"

#include <pythread.h>
#include <semaphore.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <thread>

namespace zrv {

namespace {

// Touched by the signal handler: a lock-free flag and sem_post, both safe
// there.
std::atomic<int> sigint_seen{0};
sem_t wake_watcher;

// The problem being solved on the main thread, or null.
std::mutex solving_mutex;
ZRVSprob solving_prob = nullptr;

void OnSigint(int) {
  sigint_seen.store(1);
  sem_post(&wake_watcher);
}

void Watch() {
  for (;;) {
    while (sem_wait(&wake_watcher) != 0 && errno == EINTR) {
    }
    std::lock_guard<std::mutex> lock(solving_mutex);
    if (solving_prob && sigint_seen.load()) ZRVSinterrupt(solving_prob, ZRVS_STOP_USER);
  }
}

// Starts the watcher the first time; false when it cannot run.
bool WatcherRunning() {
  static bool running = [] {
    if (sem_init(&wake_watcher, 0, 0) != 0) return false;
    try {
      std::thread(Watch).detach();
    } catch (...) {
      return false;
    }
    return true;
  }();
  return running;
}

bool OnMainThread() {
  PyObject *threading = PyImport_ImportModule("threading");
  if (!threading) {
    PyErr_Clear();
    return false;
  }
  PyObject *main = PyObject_CallMethod(threading, "main_thread", nullptr);
  Py_DECREF(threading);
  PyObject *ident = main ? PyObject_GetAttrString(main, "ident") : nullptr;
  Py_XDECREF(main);
  unsigned long id = ident ? PyLong_AsUnsignedLong(ident) : 0;
  Py_XDECREF(ident);
  if (PyErr_Occurred()) {
    PyErr_Clear();
    return false;
  }
  return id == PyThread_get_thread_ident();
}

}  // namespace

SigintDuringSolve::SigintDuringSolve(ZRVSprob prob) {
  if (!OnMainThread()) return;
  PyOS_sighandler_t current = PyOS_getsig(SIGINT);
  // Ignored, or left to the system (Python does not handle it): keep that.
  if (current == SIG_IGN || current == SIG_DFL || current == SIG_ERR) return;
  if (!WatcherRunning()) return;
  {
    std::lock_guard<std::mutex> lock(solving_mutex);
    solving_prob = prob;
  }
  sigint_seen.store(0);
  previous_ = PyOS_setsig(SIGINT, OnSigint);
  if (previous_ == SIG_ERR) {
    std::lock_guard<std::mutex> lock(solving_mutex);
    solving_prob = nullptr;
    return;
  }
  active_ = true;
}

void SigintDuringSolve::Restore() {
  if (!active_) return;
  active_ = false;
  PyOS_setsig(SIGINT, previous_);
  {
    // Once this returns the watcher no longer reaches the problem.
    std::lock_guard<std::mutex> lock(solving_mutex);
    solving_prob = nullptr;
  }
  fired_ = sigint_seen.exchange(0) != 0;
}

SigintDuringSolve::~SigintDuringSolve() { Restore(); }

int SigintDuringSolve::Deliver() {
  Restore();
  if (!fired_) return 0;
  fired_ = false;
  // As if the signal arrived now: Python's handler runs at once.
  PyErr_SetInterruptEx(SIGINT);
  return PyErr_CheckSignals();
}

}  // namespace zrv
