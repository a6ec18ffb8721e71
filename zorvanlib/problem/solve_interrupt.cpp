#include "problem/solve_interrupt.h"

#include <pythread.h>

#include <atomic>
#include <chrono>
#include <csignal>

namespace zrv {

namespace {

// Set by the handler; an atomic flag is all a signal handler may touch.
std::atomic<int> sigint_seen{0};

void OnSigint(int) { sigint_seen.store(1); }

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

SigintDuringSolve::SigintDuringSolve(ZRVSprob prob) : prob_(prob) {
  if (!OnMainThread()) return;
  PyOS_sighandler_t current = PyOS_getsig(SIGINT);
  // Ignored, or left to the system (Python does not handle it): keep that.
  if (current == SIG_IGN || current == SIG_DFL || current == SIG_ERR) return;
  sigint_seen.store(0);
  previous_ = PyOS_setsig(SIGINT, OnSigint);
  if (previous_ == SIG_ERR) return;
  active_ = true;
  watcher_ = std::thread([this] {
    std::unique_lock<std::mutex> lock(mutex_);
    bool sent = false;
    while (!done_) {
      wake_.wait_for(lock, std::chrono::milliseconds(20));
      if (!sent && sigint_seen.load()) {
        ZRVSinterrupt(prob_, ZRVS_STOP_USER);
        sent = true;
      }
    }
  });
}

void SigintDuringSolve::Restore() {
  if (!active_) return;
  active_ = false;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  wake_.notify_one();
  watcher_.join();
  PyOS_setsig(SIGINT, previous_);
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
