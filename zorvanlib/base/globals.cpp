// The module's process-wide state: locks, serial counters, property maps,
// exceptions, tables of controls and the environment bookkeeping.
#include "base/globals.h"

namespace zrv {

std::mutex VarCounterLock;
std::mutex ConstraintCounterLock;
std::mutex SosCounterLock;
std::mutex ControlNameLock;
std::mutex DefaultControlsLock;
std::mutex MessageHandlerLock;
std::mutex EnvironmentLock;
std::mutex OutputLock;

uint64_t varCounter = 1;
uint64_t conCounter = 1;
uint64_t sosCounter = 1;

void ResetSerialCounters() {
  {
    std::lock_guard<std::mutex> lock(VarCounterLock);
    varCounter = 1;
  }
  {
    std::lock_guard<std::mutex> lock(ConstraintCounterLock);
    conCounter = 1;
  }
  {
    std::lock_guard<std::mutex> lock(SosCounterLock);
    sosCounter = 1;
  }
}

uint64_t NextVarId() {
  std::lock_guard<std::mutex> lock(VarCounterLock);
  return varCounter++;
}
uint64_t NextConId() {
  std::lock_guard<std::mutex> lock(ConstraintCounterLock);
  return conCounter++;
}
uint64_t NextVarIds(uint64_t n) {
  std::lock_guard<std::mutex> lock(VarCounterLock);
  uint64_t first = varCounter;
  varCounter += n;
  return first;
}
uint64_t NextConIds(uint64_t n) {
  std::lock_guard<std::mutex> lock(ConstraintCounterLock);
  uint64_t first = conCounter;
  conCounter += n;
  return first;
}
uint64_t NextSosId() {
  std::lock_guard<std::mutex> lock(SosCounterLock);
  return sosCounter++;
}

DoubleMap *conLbMap = nullptr;
DoubleMap *conUbMap = nullptr;
DoubleMap *varLbMap = nullptr;
DoubleMap *varUbMap = nullptr;
DoubleMap *varThresholdMap = nullptr;
NameMap *conNameMap = nullptr;
NameMap *varNameMap = nullptr;

void CreateMaps() {
  conLbMap = new DoubleMap();
  conUbMap = new DoubleMap();
  varLbMap = new DoubleMap();
  varUbMap = new DoubleMap();
  varThresholdMap = new DoubleMap();
  conNameMap = new NameMap();
  varNameMap = new NameMap();
}

namespace {
void FreeNames(NameMap *&map) {
  if (!map) return;
  NameMap *m = map;
  map = nullptr;
  for (auto &entry : *m) Py_XDECREF(entry.second);
  delete m;
}
void FreeDoubles(DoubleMap *&map) {
  delete map;
  map = nullptr;
}
}  // namespace

void FreeMaps() {
  FreeDoubles(conLbMap);
  FreeDoubles(conUbMap);
  FreeDoubles(varLbMap);
  FreeDoubles(varUbMap);
  FreeDoubles(varThresholdMap);
  FreeNames(conNameMap);
  FreeNames(varNameMap);
}

PyObject *ModelError = nullptr;
PyObject *InterfaceError = nullptr;
PyObject *SolverError = nullptr;

PyObject *DefaultControls = nullptr;
PyObject *UserDefaults = nullptr;
PyObject *ControlDict = nullptr;
PyObject *AttributeDict = nullptr;
PyObject *CatalogueDict = nullptr;
PyObject *MessageHandlers = nullptr;

int32_t SlpStarted = -1;
int32_t EnvCount = 0;
int64_t OutputEnabled = 1;

PyObject *Module = nullptr;
ProblemObject *LiveProblems = nullptr;

int32_t GetEnvCount() {
  std::lock_guard<std::mutex> lock(EnvironmentLock);
  return EnvCount;
}
int32_t GetSlpStarted() {
  std::lock_guard<std::mutex> lock(EnvironmentLock);
  return SlpStarted;
}
bool GetOutputEnabled() {
  std::lock_guard<std::mutex> lock(OutputLock);
  return OutputEnabled != 0;
}

}  // namespace zrv
