// Reading the engine's catalogue of controls and attributes into the module's
// dictionaries, with the value every control has in a fresh problem.
#include <cctype>
#include <string>

#include "controls/catalogue.h"
#include "controls/accessors.h"
#include "base/errors.h"
#include "base/globals.h"
#include "controls/control.h"
#include "zorvan/zslp.h"

namespace zrv {

namespace {

std::string Lower(const char *name) {
  std::string s(name);
  if (s.size() > 128) s.resize(128);
  for (char &c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// Reads a control's value from the temporary problems; null when it fails.
PyObject *ReadDefault(ZRVSprob prob, ZSLPprob slp, int id, int kind, int source) {
  if (source != kMain && !slp) return nullptr;
  ControlValue v;
  return GetControl(prob, slp, source, kind, id, v) == 0 ? ControlValueObject(kind, v) : nullptr;
}

// Stores one entry. Returns 0, or -1 with a Python error.
int StoreEntry(const char *raw_name, int id, int kind, int source, bool is_control,
               ZRVSprob prob, ZSLPprob slp, PyObject *defaults) {
  std::string name = Lower(raw_name);
  PyObject *tuple = Py_BuildValue("(iii)", id, kind, source);
  if (!tuple) return -1;
  int rc = 0;
  if (is_control) {
    PyObject *value = ReadDefault(prob, slp, id, kind, source);
    if (!value && PyErr_Occurred()) rc = -1;
    if (value) {
      if (PyDict_SetItemString(ControlDict, name.c_str(), tuple) < 0 ||
          PyDict_SetItemString(defaults, name.c_str(), value) < 0 ||
          PyDict_SetItemString(CatalogueDict, name.c_str(), tuple) < 0)
        rc = -1;
      Py_DECREF(value);
    }
    if (rc < 0 && !PyErr_Occurred())
      PyErr_SetString(PyExc_RuntimeError, "Erroneous control value/type in initialization");
  } else {
    if (PyDict_SetItemString(AttributeDict, name.c_str(), tuple) < 0 ||
        PyDict_SetItemString(CatalogueDict, name.c_str(), tuple) < 0)
      rc = -1;
    if (rc < 0 && !PyErr_Occurred())
      PyErr_SetString(PyExc_RuntimeError, "Erroneous attribute value/type in initialization");
  }
  Py_DECREF(tuple);
  return rc;
}

int FillMain(ZRVSprob prob, PyObject *defaults) {
  const int *ids = nullptr;
  const char *const *names = nullptr;
  const int *flags = nullptr;
  if (ZRVSgetcalist_c(&ids, &names, &flags) != 0 || !ids || !names || !flags) {
    PyErr_SetString(PyExc_RuntimeError, "Could not get control/attribute list from Zorvan");
    return -1;
  }
  for (int i = 0; ids[i] != 0; ++i) {
    if (!names[i]) continue;
    int f = flags[i];
    int kind = (f & ZRVS_CAFLAG_INT) ? kInt : (f & ZRVS_CAFLAG_DOUBLE) ? kReal : kString;
    bool is_control = (f & ZRVS_CAFLAG_CONTROL) != 0;
    if (StoreEntry(names[i], ids[i], kind, kMain, is_control, prob, nullptr, defaults) < 0)
      return -1;
  }
  return 0;
}

int FillSlp(int source, ZSLPprob slp, PyObject *defaults) {
  const int *ids = nullptr;
  const char *const *names = nullptr;
  int rc = source == kSlp ? ZSLPgetcalist(&ids, &names) : ZSLPgetKTRcalist(&ids, &names);
  if (rc != 0 || !ids || !names) {
    PyErr_SetString(PyExc_RuntimeError, "Could not get control/attribute list from Zorvan");
    return -1;
  }
  for (int i = 0; names[i] && names[i][0]; ++i) {
    int id = 0, f = 0;
    if (ZSLPcontrolcode(names[i], &id, &f) != 0 || (f & ZSLP_CAFLAG_HIDDEN)) continue;
    int kind = (f & ZSLP_CAFLAG_INT)      ? kInt
               : (f & ZSLP_CAFLAG_DOUBLE) ? kReal
               : (f & ZSLP_CAFLAG_STRING) ? kString
                                          : 0;
    if (!kind) continue;
    bool is_control = (f & ZSLP_CAFLAG_CONTROL) != 0;
    if (StoreEntry(names[i], id, kind, source, is_control, nullptr, slp, defaults) < 0)
      return -1;
  }
  return 0;
}

// Reads the engine's lists of controls and attributes, with a start of the
// engine of its own.
int LoadCatalogue() {
  if (ZRVSinit(nullptr) != 0) return ReportFailure(nullptr);
  bool slp = ZSLPinit() == 0;
  {
    std::lock_guard<std::mutex> lock(EnvironmentLock);
    SlpStarted = slp ? 1 : 0;
  }
  ZRVSprob prob = nullptr;
  ZSLPprob slpprob = nullptr;
  int rc = 0;
  if (ZRVScreateprob(&prob) != 0 || (slp && ZSLPcreateprob(&slpprob, &prob) != 0)) {
    PyErr_SetString(PyExc_RuntimeError, "Could not create temporary problem");
    rc = -1;
  }
  if (rc == 0) {
    PyObject *defaults = reinterpret_cast<ControlObject *>(DefaultControls)->table;
    // Held across the whole fill; the interpreter lock is not released inside,
    // so no other thread waits on it while holding the interpreter lock.
    GilSafeLock lock(ControlNameLock);
    rc = FillMain(prob, defaults);
    if (rc == 0 && slp) rc = FillSlp(kSlp, slpprob, defaults);
    if (rc == 0 && slp) rc = FillSlp(kSlpSolver, slpprob, defaults);
  }
  if (slpprob) ZSLPdestroyprob(slpprob);
  if (prob) ZRVSdestroyprob(prob);
  if (slp) ZSLPfree();
  ZRVSfree();
  if (rc < 0) {
    PyDict_Clear(ControlDict);
    PyDict_Clear(AttributeDict);
    PyDict_Clear(CatalogueDict);
    if (!PyErr_Occurred())
      PyErr_SetString(PyExc_RuntimeError, "Error initializing optimization environment");
  }
  return rc;
}

}  // namespace

int EnsureCatalogue() {
  if (CatalogueDict && PyDict_GET_SIZE(CatalogueDict) > 0) return 0;
  if (LoadCatalogue() < 0) return -1;
  // Every new problem returns the solution of the original nonlinear problem
  // unless the user sets otherwise.
  if (PyDict_GetItemString(ControlDict, "zslp_postsolve")) {
    PyObject *one = PyLong_FromLong(1);
    if (!one) return -1;
    PyObject *table = reinterpret_cast<ControlObject *>(DefaultControls)->table;
    int rc = PyDict_SetItemString(table, "zslp_postsolve", one);
    if (rc == 0) {
      GilSafeLock lock(DefaultControlsLock);
      rc = PyDict_SetItemString(UserDefaults, "zslp_postsolve", one);
    }
    Py_DECREF(one);
    if (rc < 0) return -1;
  }
  return 0;
}

}  // namespace zrv
