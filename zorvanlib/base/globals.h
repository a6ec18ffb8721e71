// Process-wide state of the module: locks, serial counters, property maps,
// dictionaries of controls and the environment bookkeeping.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <mutex>
#include <string>

struct ProblemObject;

namespace zrv {

// The eight locks. They guard only the variables named after them and are
// never held while Python code could run on another thread's behalf.
extern std::mutex VarCounterLock;
extern std::mutex ConstraintCounterLock;
extern std::mutex SosCounterLock;
extern std::mutex ControlNameLock;
extern std::mutex DefaultControlsLock;
extern std::mutex MessageHandlerLock;
extern std::mutex EnvironmentLock;
extern std::mutex OutputLock;

// Takes a lock while holding the interpreter lock without risking a deadlock:
// when the lock is busy, the interpreter lock is released while waiting.
class GilSafeLock {
 public:
  explicit GilSafeLock(std::mutex &m) : m_(m) {
    if (!m_.try_lock()) {
      Py_BEGIN_ALLOW_THREADS m_.lock();
      Py_END_ALLOW_THREADS
    }
  }
  ~GilSafeLock() { m_.unlock(); }
  GilSafeLock(const GilSafeLock &) = delete;
  GilSafeLock &operator=(const GilSafeLock &) = delete;

 private:
  std::mutex &m_;
};

// Serial counters of variables, constraints and SOS (each under its lock).
extern uint64_t varCounter;
extern uint64_t conCounter;
extern uint64_t sosCounter;
// Numbering starts at 1 again (module start-up).
void ResetSerialCounters();
uint64_t NextVarId();
uint64_t NextConId();
// The first of n consecutive identifiers, taken under one lock.
uint64_t NextVarIds(uint64_t n);
uint64_t NextConIds(uint64_t n);
uint64_t NextSosId();

using DoubleMap = boost::unordered_flat_map<uint64_t, double>;
using NameMap = boost::unordered_flat_map<uint64_t, PyObject *>;  // owned references

extern DoubleMap *conLbMap;
extern DoubleMap *conUbMap;
extern DoubleMap *varLbMap;
extern DoubleMap *varUbMap;
extern DoubleMap *varThresholdMap;
extern NameMap *conNameMap;
extern NameMap *varNameMap;
void CreateMaps();
void FreeMaps();

// Exceptions.
extern PyObject *ModelError;
extern PyObject *InterfaceError;
extern PyObject *SolverError;

// Control tables and user defaults.
extern PyObject *DefaultControls;   // module-level `control` object
extern PyObject *UserDefaults;      // name -> value set by the user
extern PyObject *ControlDict;       // control name -> (id, kind, source)
extern PyObject *AttributeDict;     // attribute name -> (id, kind, source)
extern PyObject *CatalogueDict;     // every name -> (id, kind, source)
extern PyObject *MessageHandlers;   // list of [handler, data]

// Environment bookkeeping (under EnvironmentLock).
extern int32_t SlpStarted;   // -1 not tried, 1 started, 0 unavailable
extern int32_t EnvCount;     // starts not matched by a stop
// Output switch (under OutputLock).
extern int64_t OutputEnabled;

// The module object (borrowed: problems hold their own references).
extern PyObject *Module;
// Head of the list of live problems (guarded by the interpreter lock).
extern ProblemObject *LiveProblems;

int32_t GetEnvCount();
int32_t GetSlpStarted();
bool GetOutputEnabled();

}  // namespace zrv
